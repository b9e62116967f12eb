// A tab strip: tabs with a key and a caption, numbered from 1 as on the platform; the
// selected tab; BeforeClick may refuse a change and Click follows every selection.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "ui/control.h"

namespace kiv::ui {

class TabStrip : public Control {
 public:
  explicit TabStrip(std::string name);
  //! Adds a tab at the end and returns its index (from 1); a duplicate key raises VbError 35602.
  int AddTab(const std::string& key, const std::string& caption);
  //! Removes every tab; nothing is selected.
  void Clear();
  //! Removes tab `index`; VbError 35600 outside.
  void RemoveTab(int index);
  int Count() const { return static_cast<int>(tabs_.size()); }
  //! Key and caption of tab `index` (from 1); VbError 35600 outside.
  const std::string& TabKey(int index) const;
  const std::string& TabCaption(int index) const;
  void SetTabCaption(int index, std::string caption);
  //! The tab with this key (without regard to case); 0 when none.
  int FindKey(const std::string& key) const;
  //! The tab named by `item`: its key, its caption ("&" ignored) or its index; 0 when none.
  int FindTab(const std::string& item) const;

  //! The selected tab's index; 0 when there are no tabs.
  int SelectedIndex() const { return selected_; }
  //! Key and caption of the selected tab; empty when none.
  std::string SelectedKey() const;
  std::string SelectedCaption() const;
  //! Selects a tab from code (VbError 35600 outside) and fires Click, as the platform does.
  void SetSelectedIndex(int index);
  //! The clerk's click on a tab: BeforeClick (may cancel), then the selection and Click.
  //! False when BeforeClick cancelled.
  bool ClickTab(int index);

  std::function<void(bool& cancel)> on_before_click;

  //! The selected tab's caption.
  std::string ShownCaption() const override { return SelectedCaption(); }
  //! value reads the selected index, selected its key (its caption when it has none), count
  //! the tabs.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click or choice names a tab by key, caption or index; a missing one is refused.
  std::string RefuseAction(const Action& action) const override;
  //! The clerk's click on the tab (BeforeClick may keep the old one).
  UiResult ApplyAction(const Action& action) override;

 private:
  struct Tab {
    std::string key;
    std::string caption;
  };
  void CheckIndex(int index) const;
  std::vector<Tab> tabs_;
  int selected_ = 0;
};

}  // namespace kiv::ui

// A status bar: keyed panels of text, numbered from 1 as on the platform, and a simple
// text for the one-panel style.
#pragma once
#include <string>
#include <vector>

#include "ui/control.h"

namespace kiv::ui {

class StatusBar : public Control {
 public:
  explicit StatusBar(std::string name);
  //! Adds a panel and returns its index (from 1); a duplicate key raises VbError 35602.
  int AddPanel(const std::string& key, const std::string& text = {});
  int PanelCount() const { return static_cast<int>(panels_.size()); }
  //! The panel with this key (without regard to case) or index text; 0 when none.
  int FindPanel(const std::string& key_or_index) const;
  //! Text of the panel keyed `key`; VbError 35601 "Element not found" when none.
  const std::string& PanelText(const std::string& key) const;
  void SetPanelText(const std::string& key, const std::string& text);
  //! Text of panel `index` (from 1); VbError 35600 outside.
  const std::string& PanelTextAt(int index) const;
  void SetPanelTextAt(int index, const std::string& text);
  const std::string& PanelKey(int index) const;
  const std::string& SimpleText() const { return simple_text_; }
  void SetSimpleText(std::string v) { simple_text_ = std::move(v); }
  bool Focusable() const override { return false; }

  //! text reads the simple text, count the panels, panel[KEY] a panel's text by key or
  //! index (VbError 35601 when there is none).
  std::optional<std::string> QueryState(const std::string& name) const override;

 private:
  struct Panel {
    std::string key;
    std::string text;
  };
  int IndexOfKey(const std::string& key) const;
  std::vector<Panel> panels_;
  std::string simple_text_;
};

}  // namespace kiv::ui

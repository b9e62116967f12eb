// A group of option buttons that share one name (the platform's control array, as
// optGender(0..2)): at most one chosen, by index from 0; Click runs when one is chosen.
#pragma once
#include <string>
#include <vector>

#include "ui/control.h"

namespace kiv::ui {

class OptionGroup : public Control {
 public:
  explicit OptionGroup(std::string name, std::vector<std::string> captions = {});
  //! Adds an option and returns its index.
  int AddOption(std::string caption);
  int Count() const { return static_cast<int>(options_.size()); }
  //! Caption of option `index`; VbError 9 outside.
  const std::string& Caption(int index) const;
  void SetCaption(int index, std::string v);
  bool OptionEnabled(int index) const;
  void SetOptionEnabled(int index, bool v);
  bool OptionVisible(int index) const;
  void SetOptionVisible(int index, bool v);
  //! The chosen option's index; -1 when none.
  int Value() const { return value_; }
  //! Chooses option `index` (-1 clears); VbError 9 outside. Fires Click when the choice
  //! changes to an option; clearing fires nothing.
  void SetValue(int index);
  //! True when option `index` is the chosen one.
  bool IsChosen(int index) const { return value_ == index; }
  //! The option whose caption (its "&" accelerator marks ignored, without regard to case)
  //! or index text is `item`; -1 when none.
  int FindOption(const std::string& item) const;

  //! The chosen option's caption; empty when none.
  std::string ShownCaption() const override;
  //! value reads the chosen index, selected its caption without "&" marks, count the options.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click or choice names an option by caption or index; a missing, disabled or hidden
  //! option is refused before the focus moves.
  std::string RefuseAction(const Action& action) const override;
  //! Chooses the option; a click on the chosen one clicks again, though nothing changes.
  UiResult ApplyAction(const Action& action) override;

 private:
  struct Option {
    std::string caption;
    bool enabled = true;
    bool visible = true;
  };
  void CheckIndex(int index) const;
  std::vector<Option> options_;
  int value_ = -1;
};

}  // namespace kiv::ui

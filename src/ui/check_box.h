// A check box: Value 0 unchecked, 1 checked, 2 grayed; Click runs whenever the value
// changes, from the clerk or from code.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

enum CheckValue : int { vbUnchecked = 0, vbChecked = 1, vbGrayed = 2 };

class CheckBox : public CaptionedControl {
 public:
  explicit CheckBox(std::string name, std::string caption = {});
  int Value() const { return value_; }
  //! Sets 0, 1 or 2 (else VbError 380); fires Click when the value changes.
  void SetValue(int v);
  //! The clerk's click: checked becomes unchecked, anything else checked.
  void Toggle();
  //! Space toggles.
  void DefaultKeyPress(int key_ascii) override;

  //! value reads 0, 1 or 2; checked whether it is checked.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click toggles.
  UiResult ApplyAction(const Action& action) override;

 private:
  int value_ = vbUnchecked;
};

}  // namespace kiv::ui

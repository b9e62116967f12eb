// A check box: Value 0 unchecked, 1 checked, 2 grayed; Click runs whenever the value
// changes, from the clerk or from code.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

enum CheckValue : int { vbUnchecked = 0, vbChecked = 1, vbGrayed = 2 };

class CheckBox : public Control {
 public:
  explicit CheckBox(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }
  int Value() const { return value_; }
  //! Sets 0, 1 or 2 (else VbError 380); fires Click when the value changes.
  void SetValue(int v);
  //! The clerk's click: checked becomes unchecked, anything else checked.
  void Toggle();
  //! Space toggles.
  void DefaultKeyPress(int key_ascii) override;

 private:
  std::string caption_;
  int value_ = vbUnchecked;
};

}  // namespace kiv::ui

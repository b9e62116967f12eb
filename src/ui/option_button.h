// A single option button. Option buttons in the same container form a group: setting
// one on clears the others. A control array of options is better served by OptionGroup.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class OptionButton : public CaptionedControl {
 public:
  explicit OptionButton(std::string name, std::string caption = {});
  bool Value() const { return value_; }
  //! Turning it on clears the other option buttons of its container and fires Click when
  //! it was off; turning it off fires nothing.
  void SetValue(bool v);

  //! value, checked and selected read whether it is on.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click turns it on; a click on an option already on clicks again, though nothing changes.
  UiResult ApplyAction(const Action& action) override;

 private:
  bool value_ = false;
};

}  // namespace kiv::ui

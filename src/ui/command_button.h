// A command button: Click from the mouse, Space, Enter while focused, or Enter/Esc on the
// form when it is the form's default/cancel button.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class CommandButton : public CaptionedControl {
 public:
  explicit CommandButton(std::string name, std::string caption = {});
  //! The form's default button: Enter clicks it. Setting it clears it on the form's others.
  bool Default() const { return default_; }
  void SetDefault(bool v);
  //! The form's cancel button: Esc clicks it. Setting it clears it on the form's others.
  bool Cancel() const { return cancel_; }
  void SetCancel(bool v);
  //! Setting Value to true clicks the button from code, as on the platform.
  void SetValue(bool v);

  void DefaultKeyPress(int key_ascii) override;
  bool ConsumesKey(int key_code, int shift) const override;

 private:
  bool default_ = false;
  bool cancel_ = false;
};

}  // namespace kiv::ui

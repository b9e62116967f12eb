// A menu item: caption, checked mark, Click. A submenu's items sit in their menu as
// their container, so a hidden or disabled menu hides or disables what it holds.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class MenuItem : public CaptionedControl {
 public:
  explicit MenuItem(std::string name, std::string caption = {});
  bool Checked() const { return checked_; }
  void SetChecked(bool v) { checked_ = v; }
  bool Focusable() const override { return false; }

  //! value and checked read the check mark.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click opens the menus above the item first (running each one's Click, which may
  //! enable or disable what it holds), then clicks the item when it is still reachable.
  UiResult ApplyAction(const Action& action) override;

 private:
  bool checked_ = false;
};

}  // namespace kiv::ui

// A menu item: caption, checked mark, Click. A submenu's items sit in their menu as
// their container, so a hidden or disabled menu hides or disables what it holds.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class MenuItem : public Control {
 public:
  explicit MenuItem(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }
  bool Checked() const { return checked_; }
  void SetChecked(bool v) { checked_ = v; }
  bool Focusable() const override { return false; }

 private:
  std::string caption_;
  bool checked_ = false;
};

}  // namespace kiv::ui

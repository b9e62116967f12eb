// A single option button. Option buttons in the same container form a group: setting
// one on clears the others. A control array of options is better served by OptionGroup.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class OptionButton : public Control {
 public:
  explicit OptionButton(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }
  bool Value() const { return value_; }
  //! Turning it on clears the other option buttons of its container and fires Click when
  //! it was off; turning it off fires nothing.
  void SetValue(bool v);

 private:
  std::string caption_;
  bool value_ = false;
};

}  // namespace kiv::ui

// A frame: a captioned container; hiding or disabling it hides or disables what it holds.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class Frame : public CaptionedControl {
 public:
  explicit Frame(std::string name, std::string caption = {});
  bool Focusable() const override { return false; }
};

}  // namespace kiv::ui

// A panel (picture box used as a container): holds controls like a frame and may carry
// a caption; switching panels is how screens show one group of fields or another.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class Panel : public CaptionedControl {
 public:
  explicit Panel(std::string name, std::string caption = {});
  bool Focusable() const override { return false; }
};

}  // namespace kiv::ui

// A label: a caption the clerk reads; it takes no focus.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class Label : public CaptionedControl {
 public:
  explicit Label(std::string name, std::string caption = {});
  bool Focusable() const override { return false; }

 protected:
  //! A label fires Change when its caption changes.
  void CaptionChanged() override { FireChange(); }
};

}  // namespace kiv::ui

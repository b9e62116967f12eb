// A frame: a captioned container; hiding or disabling it hides or disables what it holds.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class Frame : public Control {
 public:
  explicit Frame(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }
  bool Focusable() const override { return false; }

 private:
  std::string caption_;
};

}  // namespace kiv::ui

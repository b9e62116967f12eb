// A panel (picture box used as a container): holds controls like a frame and may carry
// a caption; switching panels is how screens show one group of fields or another.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class Panel : public Control {
 public:
  explicit Panel(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }
  bool Focusable() const override { return false; }

 private:
  std::string caption_;
};

}  // namespace kiv::ui

// A label: a caption the clerk reads; it takes no focus.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class Label : public Control {
 public:
  explicit Label(std::string name, std::string caption = {});
  const std::string& Caption() const { return caption_; }
  //! Sets the caption; a label fires Change when its caption changes.
  void SetCaption(const std::string& v);
  bool Focusable() const override { return false; }

 private:
  std::string caption_;
};

}  // namespace kiv::ui

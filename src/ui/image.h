// An image: the bytes of a picture (a photograph) or none, shown stretched or not.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "ui/control.h"

namespace kiv::ui {

class Image : public Control {
 public:
  explicit Image(std::string name);
  const std::vector<uint8_t>& Picture() const { return picture_; }
  //! Sets the picture's bytes; empty clears it.
  void SetPicture(std::vector<uint8_t> bytes) { picture_ = std::move(bytes); }
  bool HasPicture() const { return !picture_.empty(); }
  bool Stretch() const { return stretch_; }
  void SetStretch(bool v) { stretch_ = v; }
  bool Focusable() const override { return false; }

 private:
  std::vector<uint8_t> picture_;
  bool stretch_ = false;
};

}  // namespace kiv::ui

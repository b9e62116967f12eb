// A captioned container.
#include "ui/frame.h"

namespace kiv::ui {

Frame::Frame(std::string name, std::string caption) : CaptionedControl(std::move(name), "Frame", std::move(caption)) {}

}  // namespace kiv::ui

// A captioned container.
#include "ui/frame.h"

namespace kiv::ui {

Frame::Frame(std::string name, std::string caption) : Control(std::move(name), "Frame"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
}

}  // namespace kiv::ui

// A control with a caption of its own, registered once for every such kind.
#include "ui/captioned_control.h"

namespace kiv::ui {

CaptionedControl::CaptionedControl(std::string name, std::string type_name, std::string caption)
    : Control(std::move(name), std::move(type_name)), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
}

void CaptionedControl::SetCaption(std::string v) {
  if (v == caption_) return;
  caption_ = std::move(v);
  CaptionChanged();
}

}  // namespace kiv::ui

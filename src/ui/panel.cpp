// A captioned container.
#include "ui/panel.h"

namespace kiv::ui {

Panel::Panel(std::string name, std::string caption) : Control(std::move(name), "Panel"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
}

}  // namespace kiv::ui

// A captioned container.
#include "ui/panel.h"

namespace kiv::ui {

Panel::Panel(std::string name, std::string caption) : CaptionedControl(std::move(name), "Panel", std::move(caption)) {}

}  // namespace kiv::ui

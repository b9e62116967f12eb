// A label: a caption, Change when it changes.
#include "ui/label.h"

namespace kiv::ui {

Label::Label(std::string name, std::string caption) : CaptionedControl(std::move(name), "Label", std::move(caption)) {}

}  // namespace kiv::ui

// A label: a caption, Change when it changes.
#include "ui/label.h"

namespace kiv::ui {

Label::Label(std::string name, std::string caption) : CaptionedControl(std::move(name), "Label", std::move(caption)) {
  RegisterProperty("Buddy", [this] { return buddy_; });
}

void Label::SetBuddy(const Control& control) { buddy_ = control.Name(); }

}  // namespace kiv::ui

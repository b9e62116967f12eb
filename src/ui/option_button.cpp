// A single option button; the option buttons of one container exclude each other.
#include "ui/option_button.h"

#include "ui/form.h"
#include "ui/prop_text.h"

namespace kiv::ui {

OptionButton::OptionButton(std::string name, std::string caption)
    : Control(std::move(name), "OptionButton"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
  RegisterProperty("Value", [this] { return BoolText(value_); },
                   [this](const std::string& v) { SetValue(ParseBoolText(v)); });
}

void OptionButton::SetValue(bool v) {
  if (!v || value_) {
    value_ = v;
    return;
  }
  if (Parent() != nullptr) {
    for (Control* c : Parent()->Controls()) {
      auto* o = dynamic_cast<OptionButton*>(c);
      if (o != nullptr && o != this && o->Container() == Container()) o->value_ = false;
    }
  }
  value_ = true;
  FireClick();
}

}  // namespace kiv::ui

// A single option button; the option buttons of one container exclude each other.
#include "ui/option_button.h"

#include "core/text.h"
#include "ui/form.h"
#include "ui/prop_text.h"

namespace kiv::ui {

OptionButton::OptionButton(std::string name, std::string caption)
    : CaptionedControl(std::move(name), "OptionButton", std::move(caption)) {
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

std::optional<std::string> OptionButton::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "value" || p == "checked" || p == "selected") return BoolText(value_);
  return Control::QueryState(name);
}

UiResult OptionButton::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Click) return Control::ApplyAction(action);
  if (value_) FireClick();
  SetValue(true);
  return UiResult::Ok();
}

}  // namespace kiv::ui

// A check box: Value 0/1/2, Click on every change.
#include "ui/check_box.h"

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

CheckBox::CheckBox(std::string name, std::string caption)
    : CaptionedControl(std::move(name), "CheckBox", std::move(caption)) {
  RegisterProperty("Value", [this] { return std::to_string(value_); },
                   [this](const std::string& v) { SetValue(ParseIntText(v)); });
}

void CheckBox::SetValue(int v) {
  if (v < vbUnchecked || v > vbGrayed) RaiseControlError(380);
  if (v == value_) return;
  value_ = v;
  FireClick();
}

void CheckBox::Toggle() { SetValue(value_ == vbChecked ? vbUnchecked : vbChecked); }

void CheckBox::DefaultKeyPress(int key_ascii) {
  if (key_ascii == ' ') Toggle();
}

std::optional<std::string> CheckBox::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "value") return std::to_string(value_);
  if (p == "checked") return BoolText(value_ == vbChecked);
  return Control::QueryState(name);
}

UiResult CheckBox::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Click) return Control::ApplyAction(action);
  Toggle();
  return UiResult::Ok();
}

}  // namespace kiv::ui

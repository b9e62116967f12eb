// A check box: Value 0/1/2, Click on every change.
#include "ui/check_box.h"

#include "ui/prop_text.h"

namespace kiv::ui {

CheckBox::CheckBox(std::string name, std::string caption)
    : Control(std::move(name), "CheckBox"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
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

}  // namespace kiv::ui

// A command button and its default/cancel roles on the form.
#include "ui/command_button.h"

#include "ui/form.h"
#include "ui/keys.h"
#include "ui/prop_text.h"

namespace kiv::ui {

CommandButton::CommandButton(std::string name, std::string caption)
    : CaptionedControl(std::move(name), "CommandButton", std::move(caption)) {
  RegisterProperty("Default", [this] { return BoolText(default_); },
                   [this](const std::string& v) { SetDefault(ParseBoolText(v)); });
  RegisterProperty("Cancel", [this] { return BoolText(cancel_); },
                   [this](const std::string& v) { SetCancel(ParseBoolText(v)); });
}

void CommandButton::SetDefault(bool v) {
  if (v && Parent() != nullptr) {
    for (Control* c : Parent()->Controls()) {
      if (auto* b = dynamic_cast<CommandButton*>(c); b != nullptr && b != this) b->default_ = false;
    }
  }
  default_ = v;
}

void CommandButton::SetCancel(bool v) {
  if (v && Parent() != nullptr) {
    for (Control* c : Parent()->Controls()) {
      if (auto* b = dynamic_cast<CommandButton*>(c); b != nullptr && b != this) b->cancel_ = false;
    }
  }
  cancel_ = v;
}

void CommandButton::SetValue(bool v) {
  if (v) FireClick();
}

void CommandButton::DefaultKeyPress(int key_ascii) {
  if (key_ascii == ' ' || key_ascii == vbKeyReturn) FireClick();
}

bool CommandButton::ConsumesKey(int key_code, int) const { return key_code == vbKeyReturn; }

}  // namespace kiv::ui

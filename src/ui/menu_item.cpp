// A menu item: caption, checked mark, Click.
#include "ui/menu_item.h"

#include <vector>

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

MenuItem::MenuItem(std::string name, std::string caption)
    : CaptionedControl(std::move(name), "MenuItem", std::move(caption)) {
  RegisterProperty("Checked", [this] { return BoolText(checked_); },
                   [this](const std::string& v) { SetChecked(ParseBoolText(v)); });
}

std::optional<std::string> MenuItem::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "value" || p == "checked") return BoolText(checked_);
  return Control::QueryState(name);
}

UiResult MenuItem::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Click) return Control::ApplyAction(action);
  std::vector<MenuItem*> chain;
  for (Control* up = Container(); up != nullptr; up = up->Container()) {
    if (auto* m = dynamic_cast<MenuItem*>(up)) chain.insert(chain.begin(), m);
  }
  for (MenuItem* m : chain) m->FireClick();
  if (!IsEffectivelyEnabled() || !IsEffectivelyVisible()) return UiResult::Fail(Name() + " is disabled");
  FireClick();
  return UiResult::Ok();
}

}  // namespace kiv::ui

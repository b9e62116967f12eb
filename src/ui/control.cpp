// The base of every headless control: common properties, focus helpers and the registry
// of properties as text.
#include "ui/control.h"

#include "core/text.h"
#include "ui/form.h"
#include "ui/prop_text.h"

namespace kiv::ui {

Control::Control(std::string name, std::string type_name)
    : name_(std::move(name)), type_name_(std::move(type_name)) {
  RegisterProperty("Name", [this] { return name_; });
  RegisterProperty("Enabled", [this] { return BoolText(enabled_); },
                   [this](const std::string& v) { SetEnabled(ParseBoolText(v)); });
  RegisterProperty("Visible", [this] { return BoolText(visible_); },
                   [this](const std::string& v) { SetVisible(ParseBoolText(v)); });
  RegisterProperty("TabIndex", [this] { return std::to_string(tab_index_); },
                   [this](const std::string& v) { SetTabIndex(ParseIntText(v)); });
  RegisterProperty("TabStop", [this] { return BoolText(tab_stop_); },
                   [this](const std::string& v) { SetTabStop(ParseBoolText(v)); });
  RegisterProperty("Tag", [this] { return tag_; }, [this](const std::string& v) { SetTag(v); });
  RegisterProperty("ToolTipText", [this] { return tool_tip_; }, [this](const std::string& v) { SetToolTipText(v); });
}

bool Control::IsEffectivelyEnabled() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->enabled_) return false;
  }
  return true;
}

bool Control::IsEffectivelyVisible() const {
  for (const Control* c = this; c != nullptr; c = c->container_) {
    if (!c->visible_) return false;
  }
  return true;
}

bool Control::CanFocus() const { return Focusable() && IsEffectivelyEnabled() && IsEffectivelyVisible(); }

bool Control::HasFocus() const { return parent_ != nullptr && parent_->ActiveControl() == this; }

bool Control::SetFocus() {
  if (parent_ == nullptr) return false;
  return parent_->MoveFocus(*this);
}

const Control::Property* Control::FindProperty(const std::string& name) const {
  for (const auto& p : properties_) {
    if (EqualsNoCase(p.name, name)) return &p;
  }
  return nullptr;
}

std::vector<std::string> Control::PropertyNames() const {
  std::vector<std::string> names;
  names.reserve(properties_.size());
  for (const auto& p : properties_) names.push_back(p.name);
  return names;
}

bool Control::HasProperty(const std::string& name) const { return FindProperty(name) != nullptr; }

std::string Control::GetProperty(const std::string& name) const {
  const Property* p = FindProperty(name);
  if (p == nullptr) RaiseControlError(438);
  return p->get();
}

void Control::SetProperty(const std::string& name, const std::string& text) {
  const Property* p = FindProperty(name);
  if (p == nullptr) RaiseControlError(438);
  if (!p->set) RaiseControlError(383);
  p->set(text);
}

std::vector<std::pair<std::string, std::string>> Control::PropertyValues() const {
  std::vector<std::pair<std::string, std::string>> values;
  values.reserve(properties_.size());
  for (const auto& p : properties_) values.emplace_back(p.name, p.get());
  return values;
}

void Control::DefaultKeyDown(int, int) {}
void Control::DefaultKeyPress(int) {}
bool Control::ConsumesKey(int, int) const { return false; }

std::string Control::ShownCaption() const { return HasProperty("Caption") ? GetProperty("Caption") : std::string(); }

std::optional<std::string> Control::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "enabled") return BoolText(enabled_);
  if (p == "visible") return BoolText(visible_);
  if (p == "focus") return BoolText(HasFocus());
  if (p == "text" || p == "caption") return ShownCaption();
  return std::nullopt;
}

std::string Control::RefuseAction(const Action& action) const {
  switch (action.kind) {
    case ActionKind::Type: return name_ + " does not take typing";
    case ActionKind::Paste: return name_ + " does not take pasted text";
    case ActionKind::Click: return action.text.empty() ? std::string() : name_ + " has no items to click";
    case ActionKind::Choose: return name_ + " has no list to choose from";
    case ActionKind::Date: return name_ + " is not a date picker";
    case ActionKind::Select:
    case ActionKind::Edit:
    case ActionKind::Expand: return name_ + " is not a grid";
    case ActionKind::DblClick: return action.rows.empty() ? std::string() : name_ + " is not a grid";
    default: return "unknown action";
  }
}

UiResult Control::ApplyAction(const Action& action) {
  if (action.kind == ActionKind::Click) {
    FireClick();
    return UiResult::Ok();
  }
  if (action.kind == ActionKind::DblClick) {
    FireDblClick();
    return UiResult::Ok();
  }
  std::string refusal = RefuseAction(action);
  return UiResult::Fail(refusal.empty() ? "unknown action" : refusal);
}

void Control::FireChange() {
  if (!on_change) return;
  auto handler = on_change;  // a handler may replace itself
  handler();
}
void Control::FireClick() {
  if (!on_click) return;
  auto handler = on_click;  // a handler may replace itself
  handler();
}
void Control::FireDblClick() {
  if (!on_dbl_click) return;
  auto handler = on_dbl_click;  // a handler may replace itself
  handler();
}

void Control::RegisterProperty(std::string name, std::function<std::string()> get,
                               std::function<void(const std::string&)> set) {
  for (auto& p : properties_) {
    if (EqualsNoCase(p.name, name)) {
      p = Property{std::move(name), std::move(get), std::move(set)};
      return;
    }
  }
  properties_.push_back(Property{std::move(name), std::move(get), std::move(set)});
}

}  // namespace kiv::ui

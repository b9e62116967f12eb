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

// A date picker holding a date or none.
#include "ui/date_picker.h"

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

DatePicker::DatePicker(std::string name) : Control(std::move(name), "DatePicker") {
  RegisterProperty("Value", [this] { return Text(); }, [this](const std::string& v) {
    if (!SetFromText(v)) RaiseControlError(380);
  });
  RegisterProperty("CheckBox", [this] { return BoolText(allow_none_); },
                   [this](const std::string& v) { SetAllowNone(ParseBoolText(v)); });
}

void DatePicker::SetValue(const std::optional<Date>& v, bool fire_events) {
  std::optional<Date> next;
  if (v) next = v->DateOnly();
  if (next == value_) return;
  value_ = next;
  if (fire_events) FireChange();
}

std::string DatePicker::Text() const { return value_ ? value_->ToIso().substr(0, 10) : std::string(); }

bool DatePicker::SetFromText(const std::string& text) {
  std::string t = Trim(text);
  if (t.empty() || EqualsNoCase(t, "none")) {
    SetValue(std::nullopt);
    return true;
  }
  auto d = Date::Parse(t);
  if (!d) return false;
  SetValue(*d);
  return true;
}

std::optional<std::string> DatePicker::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "text") return Text();
  if (p == "value") return HasValue() ? Text() : std::string("none");
  return Control::QueryState(name);
}

std::string DatePicker::RefuseAction(const Action& action) const {
  if (action.kind != ActionKind::Date) return Control::RefuseAction(action);
  std::string t = Trim(action.text);
  bool none = t.empty() || EqualsNoCase(t, "none");
  if (none && !allow_none_) return Name() + " cannot be left without a date";
  if (!none && !Date::Parse(t)) return "not a date: " + action.text;
  return {};
}

UiResult DatePicker::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Date) return Control::ApplyAction(action);
  if (!SetFromText(action.text)) return UiResult::Fail("not a date: " + action.text);
  return UiResult::Ok();
}

}  // namespace kiv::ui

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

}  // namespace kiv::ui

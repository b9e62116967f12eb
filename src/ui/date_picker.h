// A date picker: a date or none (the picker's check box cleared). Change runs whenever
// the value changes, from the clerk or from code.
#pragma once
#include <optional>
#include <string>

#include "core/date.h"
#include "ui/control.h"

namespace kiv::ui {

class DatePicker : public Control {
 public:
  explicit DatePicker(std::string name);
  const std::optional<Date>& Value() const { return value_; }
  //! Sets a date (its time dropped) or none; fires Change when it differs.
  void SetValue(const std::optional<Date>& v, bool fire_events = true);
  bool HasValue() const { return value_.has_value(); }
  //! "YYYY-MM-DD", or empty when none.
  std::string Text() const;
  //! Reads "YYYY-MM-DD" or another date text, or "none"/empty for none; false when unreadable.
  bool SetFromText(const std::string& text);
  //! Whether the picker offers "none" (its check box); the platform's CheckBox property.
  bool AllowNone() const { return allow_none_; }
  void SetAllowNone(bool v) { allow_none_ = v; }

  //! text reads the date (empty when none), value the date or "none".
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! Takes a date action: a readable date, or none when the picker offers it.
  std::string RefuseAction(const Action& action) const override;
  UiResult ApplyAction(const Action& action) override;

 private:
  std::optional<Date> value_;
  bool allow_none_ = true;
};

}  // namespace kiv::ui

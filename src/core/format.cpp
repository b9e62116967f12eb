// Format: chooses between the named formats, the number masks and the date masks, and
// decides how a value of each kind enters them.
#include "core/format.h"

#include <cmath>
#include <optional>

#include "core/format_masks.h"
#include "core/text.h"

namespace kiv {

namespace {

using format_detail::FormatDate;
using format_detail::FormatNumber;

struct NamedFormat {
  const char* name;
  const char* mask;  // null for the formats that are not a mask
  bool is_date;
};

constexpr NamedFormat kNamed[] = {
    {"General Number", nullptr, false},
    {"Currency", "$#,##0.00;($#,##0.00)", false},
    {"Fixed", "0.00", false},
    {"Standard", "#,##0.00", false},
    {"Percent", "0.00%", false},
    {"Scientific", "0.00E+00", false},
    {"Yes/No", nullptr, false},
    {"True/False", nullptr, false},
    {"On/Off", nullptr, false},
    {"General Date", nullptr, true},
    {"Long Date", "dddd, mmmm d, yyyy", true},
    {"Medium Date", "dd-mmm-yy", true},
    {"Short Date", "m/d/yyyy", true},
    {"Long Time", "h:mm:ss AM/PM", true},
    {"Medium Time", "hh:mm AM/PM", true},
    {"Short Time", "hh:mm", true},
};

const NamedFormat* FindNamed(std::string_view format) {
  for (const NamedFormat& f : kNamed)
    if (EqualsNoCase(format, f.name)) return &f;
  return nullptr;
}

// The number a value stands for, when it stands for one (numeric text included).
std::optional<double> AsNumber(const Variant& value) {
  if (value.Type() == VarType::String || value.Type() == VarType::Bytes) {
    if (value.Type() == VarType::Bytes || !IsNumeric(value)) return std::nullopt;
    const double v = value.ToDouble();
    return std::isfinite(v) ? std::optional<double>(v) : std::nullopt;
  }
  return value.ToDouble();
}

// The date a value stands for: a date, a number as its serial, date or numeric text.
// A serial outside the calendar stands for no date.
std::optional<Date> AsDate(const Variant& value) {
  std::optional<Date> date;
  if (value.Type() == VarType::Date) date = value.ToDate();
  else if (value.Type() == VarType::String) date = Date::Parse(value.ToString());
  if (!date) {
    const std::optional<double> serial = AsNumber(value);
    if (!serial) return std::nullopt;
    date = Date(*serial);
  }
  try {
    date->WholeDays();
  } catch (const VbError&) {
    return std::nullopt;
  }
  return date;
}

// The value's own text; a date outside the calendar shows as its serial number.
std::string PlainText(const Variant& value) {
  try {
    return value.ToString();
  } catch (const VbError&) {
    return NumberToText(value.ToDate().Serial());
  }
}

std::string Named(const Variant& value, const NamedFormat& f) {
  const std::string plain = PlainText(value);
  if (f.is_date) {
    const std::optional<Date> date = AsDate(value);
    if (!date) return plain;
    if (!f.mask) return Variant(*date).ToString();
    return *FormatDate(*date, f.mask);
  }
  const std::optional<double> number = AsNumber(value);
  if (!number) return plain;
  if (f.mask) return FormatNumber(*number, f.mask);
  const std::string_view name = f.name;
  if (name == "Yes/No") return *number != 0.0 ? "Yes" : "No";
  if (name == "True/False") return *number != 0.0 ? "True" : "False";
  if (name == "On/Off") return *number != 0.0 ? "On" : "Off";
  return NumberToText(*number);
}

}  // namespace

std::string Format(const Variant& value, std::string_view format) {
  if (value.IsNull() || value.IsEmpty()) return "";
  if (format.empty()) return PlainText(value);
  if (const NamedFormat* named = FindNamed(Trim(format))) return Named(value, *named);
  if (format_detail::IsNumberMask(format)) {
    const std::optional<double> number = AsNumber(value);
    return number ? FormatNumber(*number, format) : PlainText(value);
  }
  const std::optional<Date> date = AsDate(value);
  if (!date) return PlainText(value);
  return FormatDate(*date, format).value_or(PlainText(value));
}

}  // namespace kiv

// Conversions of the dynamic value with the platform's rules: strict conversions raise
// the platform's errors (6, 13, 94), the null conversions used on database reads do not.
#include "core/variant.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace kiv {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c; }

bool EqualsAsciiNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (Lower(a[i]) != Lower(b[i])) return false;
  return true;
}

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

// A whole text read as a number: blanks around it, a sign, digits (thousands commas
// after the first digit), a decimal point, an exponent (E or D). Nothing else may follow.
bool ParseWholeNumber(std::string_view text, double& out) {
  const std::string_view s = TrimBlanks(text);
  std::string clean;
  size_t i = 0;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) clean += s[i++];
  int mantissa_digits = 0;
  while (i < s.size() && ((s[i] >= '0' && s[i] <= '9') || (s[i] == ',' && mantissa_digits > 0))) {
    if (s[i] != ',') {
      clean += s[i];
      ++mantissa_digits;
    }
    ++i;
  }
  if (i < s.size() && s[i] == '.') {
    clean += s[i++];
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
      clean += s[i++];
      ++mantissa_digits;
    }
  }
  if (mantissa_digits == 0) return false;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
    clean += 'e';
    ++i;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) clean += s[i++];
    int exponent_digits = 0;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') {
      clean += s[i++];
      ++exponent_digits;
    }
    if (exponent_digits == 0) return false;
  }
  if (i != s.size()) return false;
  const char* begin = clean.data();
  if (*begin == '+') ++begin;
  double value = 0;
  const auto [end, ec] = std::from_chars(begin, clean.data() + clean.size(), value);
  if (ec == std::errc::result_out_of_range) {
    // Too small is zero; too large overflows.
    if (std::fabs(value) < 1.0) {
      out = 0.0;
      return true;
    }
    RaiseError(kErrOverflow);
  }
  if (ec != std::errc() || end != clean.data() + clean.size()) return false;
  out = value;
  return true;
}

double RoundHalfEven(double x) {
  const double floor = std::floor(x);
  const double diff = x - floor;
  if (diff > 0.5) return floor + 1.0;
  if (diff < 0.5) return floor;
  return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

template <class Int>
Int RoundToInt(double v) {
  if (std::isnan(v)) RaiseError(kErrOverflow);
  const double r = RoundHalfEven(v);
  if (r < static_cast<double>(std::numeric_limits<Int>::min()) || r > static_cast<double>(std::numeric_limits<Int>::max()))
    RaiseError(kErrOverflow);
  return static_cast<Int>(r);
}

std::string CurrencyText(Currency c) {
  const bool negative = c.scaled < 0;
  const uint64_t magnitude = negative ? uint64_t{0} - static_cast<uint64_t>(c.scaled) : static_cast<uint64_t>(c.scaled);
  std::string text = (negative ? "-" : "") + std::to_string(magnitude / 10000);
  uint64_t fraction = magnitude % 10000;
  if (fraction == 0) return text;
  std::string digits = std::to_string(10000 + fraction).substr(1);
  while (digits.back() == '0') digits.pop_back();
  return text + "." + digits;
}

// The platform's general date text: "M/D/YYYY", " h:mm:ss AM/PM" after it when there
// is a time; a date on the zero day shows only its time ("12:00:00 AM" for the zero date).
std::string DateText(const Date& d) {
  char date_part[24];
  std::snprintf(date_part, sizeof date_part, "%d/%d/%d", d.Month(), d.Day(), d.Year());
  const int hour = d.Hour();
  const bool has_time = hour != 0 || d.Minute() != 0 || d.Second() != 0;
  char time_part[24];
  std::snprintf(time_part, sizeof time_part, "%d:%02d:%02d %s", hour % 12 == 0 ? 12 : hour % 12, d.Minute(),
                d.Second(), hour < 12 ? "AM" : "PM");
  if (d.WholeDays() == 0) return time_part;
  if (!has_time) return date_part;
  return std::string(date_part) + " " + time_part;
}

}  // namespace

Currency Currency::FromDouble(double v) {
  const double scaled = RoundHalfEven(v * 10000.0);
  // 2^63 is exact as a double; the scaled value must stay below it in magnitude.
  constexpr double kLimit = 9223372036854775808.0;
  if (std::isnan(scaled) || scaled >= kLimit || scaled < -kLimit) RaiseError(kErrOverflow);
  return Currency{static_cast<int64_t>(scaled)};
}

Variant::Variant(int64_t v) {
  if (v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max()) {
    v_ = static_cast<int32_t>(v);
    return;
  }
  v_ = static_cast<double>(v);
}

Variant Variant::Null() {
  Variant v;
  v.v_ = NullTag{};
  return v;
}

VarType Variant::Type() const { return static_cast<VarType>(v_.index()); }

bool Variant::IsNumber() const {
  switch (Type()) {
    case VarType::Boolean:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Double:
    case VarType::Currency: return true;
    default: return false;
  }
}

double Variant::ToDouble() const {
  switch (Type()) {
    case VarType::Empty: return 0.0;
    case VarType::Null: RaiseError(kErrInvalidUseOfNull);
    case VarType::Boolean: return std::get<bool>(v_) ? -1.0 : 0.0;
    case VarType::Integer: return std::get<int16_t>(v_);
    case VarType::Long: return std::get<int32_t>(v_);
    case VarType::Double: return std::get<double>(v_);
    case VarType::Currency: return std::get<Currency>(v_).ToDouble();
    case VarType::Date: return std::get<Date>(v_).Serial();
    case VarType::String: {
      double value = 0;
      if (!ParseWholeNumber(std::get<std::string>(v_), value)) RaiseError(kErrTypeMismatch);
      return value;
    }
    case VarType::Bytes: break;
  }
  RaiseError(kErrTypeMismatch);
}

bool Variant::ToBool() const {
  if (Type() == VarType::String) {
    const std::string_view text = TrimBlanks(std::get<std::string>(v_));
    if (EqualsAsciiNoCase(text, "true")) return true;
    if (EqualsAsciiNoCase(text, "false")) return false;
  }
  if (Type() == VarType::Boolean) return std::get<bool>(v_);
  if (Type() == VarType::Currency) return std::get<Currency>(v_).scaled != 0;
  return ToDouble() != 0.0;
}

int16_t Variant::ToInt() const {
  if (Type() == VarType::Integer) return std::get<int16_t>(v_);
  return RoundToInt<int16_t>(ToDouble());
}

int32_t Variant::ToLong() const {
  if (Type() == VarType::Long) return std::get<int32_t>(v_);
  return RoundToInt<int32_t>(ToDouble());
}

Currency Variant::ToCurrency() const {
  if (Type() == VarType::Currency) return std::get<Currency>(v_);
  return Currency::FromDouble(ToDouble());
}

Date Variant::ToDate() const {
  switch (Type()) {
    case VarType::Date: return std::get<Date>(v_);
    case VarType::String: {
      if (auto d = Date::Parse(std::get<std::string>(v_))) return *d;
      double serial = 0;
      if (ParseWholeNumber(std::get<std::string>(v_), serial)) return Date(serial);
      RaiseError(kErrTypeMismatch);
    }
    default: {
      const Date d(ToDouble());
      d.WholeDays();  // a serial outside the calendar overflows here, not later
      return d;
    }
  }
}

std::string Variant::ToString() const {
  switch (Type()) {
    case VarType::Empty: return "";
    case VarType::Null: RaiseError(kErrInvalidUseOfNull);
    case VarType::Boolean: return std::get<bool>(v_) ? "True" : "False";
    case VarType::Integer: return std::to_string(std::get<int16_t>(v_));
    case VarType::Long: return std::to_string(std::get<int32_t>(v_));
    case VarType::Double: return NumberToText(std::get<double>(v_));
    case VarType::Currency: return CurrencyText(std::get<Currency>(v_));
    case VarType::Date: return DateText(std::get<Date>(v_));
    case VarType::String: return std::get<std::string>(v_);
    case VarType::Bytes: {
      const Bytes& b = std::get<Bytes>(v_);
      return std::string(b.begin(), b.end());
    }
  }
  return "";
}

Bytes Variant::ToBytes() const {
  if (Type() == VarType::Bytes) return std::get<Bytes>(v_);
  if (Type() == VarType::Null) RaiseError(kErrInvalidUseOfNull);
  if (Type() != VarType::String) RaiseError(kErrTypeMismatch);
  const std::string& s = std::get<std::string>(v_);
  return Bytes(s.begin(), s.end());
}

bool Variant::Equals(const Variant& other) const {
  const VarType a = Type();
  const VarType b = other.Type();
  if (a == VarType::Null || b == VarType::Null) return false;
  if (a == VarType::Empty && b == VarType::Empty) return true;
  if (a == VarType::Bytes || b == VarType::Bytes) return a == b && std::get<Bytes>(v_) == std::get<Bytes>(other.v_);
  if (a == VarType::String && b == VarType::String) return std::get<std::string>(v_) == std::get<std::string>(other.v_);
  // Empty reads as "" beside text and as 0 beside a number.
  if (a == VarType::Empty) return b == VarType::String ? other.ToString().empty() : other.ToDouble() == 0.0;
  if (b == VarType::Empty) return a == VarType::String ? ToString().empty() : ToDouble() == 0.0;
  if (a == VarType::Currency && b == VarType::Currency) return std::get<Currency>(v_) == std::get<Currency>(other.v_);
  if (a != VarType::String && b != VarType::String) return ToDouble() == other.ToDouble();
  // Text beside a number or date: by number when the text is one, else by text.
  const Variant& text = a == VarType::String ? *this : other;
  const Variant& value = a == VarType::String ? other : *this;
  double number = 0;
  if (value.Type() != VarType::Date && value.Type() != VarType::Boolean &&
      ParseWholeNumber(std::get<std::string>(text.v_), number))
    return number == value.ToDouble();
  return text.ToString() == value.ToString();
}

double Val(std::string_view text) {
  // Blanks are skipped anywhere; reading stops at the first character that cannot
  // continue the number.
  std::string clean;
  bool seen_point = false;
  int mantissa_digits = 0;
  size_t i = 0;
  auto skip = [&] {
    while (i < text.size() && IsBlank(text[i])) ++i;
  };
  skip();
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
    if (text[i] == '-') clean += '-';
    ++i;
  }
  for (skip(); i < text.size(); ++i, skip()) {
    const char c = text[i];
    if (c >= '0' && c <= '9') {
      clean += c;
      ++mantissa_digits;
    } else if (c == '.' && !seen_point) {
      clean += c;
      seen_point = true;
    } else {
      break;
    }
  }
  if (mantissa_digits == 0) return 0.0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
    std::string exponent = "e";
    size_t j = i + 1;
    while (j < text.size() && IsBlank(text[j])) ++j;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) exponent += text[j++];
    int exponent_digits = 0;
    for (; j < text.size(); ++j) {
      if (IsBlank(text[j])) continue;
      if (text[j] < '0' || text[j] > '9') break;
      exponent += text[j];
      ++exponent_digits;
    }
    if (exponent_digits > 0) clean += exponent;
  }
  double value = 0;
  const auto [end, ec] = std::from_chars(clean.data(), clean.data() + clean.size(), value);
  (void)end;
  if (ec == std::errc::result_out_of_range) {
    if (std::fabs(value) < 1.0) return 0.0;
    RaiseError(kErrOverflow);
  }
  return ec == std::errc() ? value : 0.0;
}

bool IsNumeric(const Variant& v) {
  switch (v.Type()) {
    case VarType::Empty: return true;
    case VarType::String: {
      double ignored = 0;
      try {
        return ParseWholeNumber(v.ToString(), ignored);
      } catch (const VbError&) {
        return true;  // a number too large for a Double is still a number
      }
    }
    default: return v.IsNumber();
  }
}

std::string NzString(const Variant& v) {
  if (v.IsNull() || v.IsEmpty()) return "";
  return v.ToString();
}

int16_t NzInt(const Variant& v) {
  if (v.IsNull() || v.IsEmpty() || (!IsNumeric(v) && v.Type() != VarType::Date)) return 0;
  return v.ToInt();
}

int32_t NzLong(const Variant& v) {
  if (v.IsNull() || v.IsEmpty() || (!IsNumeric(v) && v.Type() != VarType::Date)) return 0;
  return v.ToLong();
}

double NzDouble(const Variant& v) {
  if (v.IsNull() || v.IsEmpty() || (!IsNumeric(v) && v.Type() != VarType::Date)) return 0.0;
  return v.ToDouble();
}

bool NzBool(const Variant& v) {
  if (v.IsNull() || v.IsEmpty()) return false;
  try {
    return v.ToBool();
  } catch (const VbError&) {
    return false;
  }
}

Date NzDate(const Variant& v) {
  if (v.IsNull() || v.IsEmpty()) return Date();
  try {
    return v.ToDate();
  } catch (const VbError&) {
    return Date();
  }
}

double FiniteNumber(double v) {
  if (!std::isfinite(v)) RaiseError(kErrOverflow);
  return v;
}

std::string NumberToText(double v) {
  if (v == 0.0) return "0";  // also -0
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v < 0 ? "-Inf" : "Inf";
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.15G", v);
  // The platform writes exponents as "E+15" / "E-05": at least two digits, which %G already does.
  return buf;
}

}  // namespace kiv

// Calendar arithmetic of the platform's date: whole days from 30 Dec 1899 with the time
// of day as the fraction. Before the zero date the day counts down while the fraction
// still counts the time forward, so -1.25 is 29 Dec 1899 06:00.
#include "core/date.h"

#include <cctype>
#include <cmath>
#include <cstdio>

#include "core/vb_error.h"

namespace kiv {

namespace {

constexpr int32_t kDaysFrom1970 = -25569;   // 30 Dec 1899 counted from 1 Jan 1970
constexpr double kFirstSerial = -657434.0;  // 1 Jan 100
constexpr double kLastSerial = 2958465.0;   // 31 Dec 9999

struct Civil {
  int year;
  int month;
  int day;
};

// Days from 1 Jan 1970 to a civil date (proleptic Gregorian).
int64_t DaysFromCivil(int y, int m, int d) {
  y -= m <= 2 ? 1 : 0;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yoe = y - era * 400;
  const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

Civil CivilFromDays(int64_t z) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const int64_t doe = z - era * 146097;
  const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const int64_t mp = (5 * doy + 2) / 153;
  const int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  const int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  const int y = static_cast<int>(yoe + era * 400 + (m <= 2 ? 1 : 0));
  return {y, m, d};
}

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(int y, int m) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

// The day (counted from the zero date) and the second of that day that a serial stands
// for, rounded to the second as the platform shows it. Out-of-range serials overflow.
struct DayAndSecond {
  int32_t day;
  int second;
};

DayAndSecond SplitSerial(double serial) {
  if (!std::isfinite(serial) || serial < kFirstSerial - 1.0 || serial > kLastSerial + 1.0) RaiseError(kErrOverflow);
  const double whole = std::trunc(serial);
  auto day = static_cast<int32_t>(whole);
  auto second = static_cast<int>(std::llround(std::fabs(serial - whole) * 86400.0));
  if (second >= 86400) {
    second -= 86400;
    day += serial < 0 ? -1 : 1;
  }
  if (day < kFirstSerial || day > kLastSerial) RaiseError(kErrOverflow);
  return {day, second};
}

// A tiny cursor over the text being parsed.
struct Cursor {
  const std::string& s;
  size_t i = 0;

  bool AtEnd() const { return i >= s.size(); }
  void SkipBlanks() {
    while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
  }
  bool Eat(char c) {
    if (i < s.size() && s[i] == c) {
      ++i;
      return true;
    }
    return false;
  }
  // Reads 1..max_digits digits; digit count in *count.
  bool Number(int& out, int max_digits, int* count = nullptr) {
    int n = 0;
    int value = 0;
    while (i < s.size() && n < max_digits && std::isdigit(static_cast<unsigned char>(s[i]))) {
      value = value * 10 + (s[i] - '0');
      ++i;
      ++n;
    }
    if (count) *count = n;
    if (n == 0) return false;
    out = value;
    return true;
  }
  std::string Word() {
    std::string w;
    while (i < s.size() && std::isalpha(static_cast<unsigned char>(s[i]))) {
      w += static_cast<char>(std::tolower(static_cast<unsigned char>(s[i])));
      ++i;
    }
    return w;
  }
};

int TwoDigitYear(int y) { return y < 30 ? 2000 + y : 1900 + y; }

bool ValidDate(int y, int m, int d) { return y >= 100 && y <= 9999 && m >= 1 && m <= 12 && d >= 1 && d <= DaysInMonth(y, m); }

// "h:mm[:ss] [AM|PM]" from the cursor to the end of the text.
bool ParseTime(Cursor& c, int& h, int& mi, int& se) {
  se = 0;
  if (!c.Number(h, 2) || !c.Eat(':') || !c.Number(mi, 2)) return false;
  if (c.Eat(':') && !c.Number(se, 2)) return false;
  c.SkipBlanks();
  const std::string ampm = c.Word();
  if (!ampm.empty()) {
    if (ampm != "am" && ampm != "pm" && ampm != "a" && ampm != "p") return false;
    if (h < 1 || h > 12) return false;
    h = h % 12 + (ampm[0] == 'p' ? 12 : 0);
  }
  c.SkipBlanks();
  return c.AtEnd() && h <= 23 && mi <= 59 && se <= 59;
}

int MonthFromName(const std::string& w) {
  static constexpr const char* kNames[] = {"january", "february", "march",     "april",   "may",      "june",
                                           "july",    "august",   "september", "october", "november", "december"};
  if (w.size() < 3) return 0;
  for (int m = 0; m < 12; ++m) {
    const std::string name = kNames[m];
    if (name.compare(0, w.size(), w) == 0) return m + 1;
  }
  return 0;
}

}  // namespace

Date Date::FromParts(int year, int month, int day, int hour, int minute, int second) {
  if (!ValidDate(year, month, day) || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
    RaiseError(kErrInvalidCall);
  const auto days = static_cast<double>(DaysFromCivil(year, month, day) - kDaysFrom1970);
  const double time = (hour * 3600 + minute * 60 + second) / 86400.0;
  return Date(days < 0 ? days - time : days + time);
}

std::optional<Date> Date::Parse(const std::string& text) {
  Cursor c{text};
  c.SkipBlanks();
  int y = 0, m = 0, d = 0, h = 0, mi = 0, se = 0;
  const size_t start = c.i;
  int first = 0;
  int digits = 0;
  if (!c.Number(first, 4, &digits)) {
    // "March 5, 2026" / "Mar 5 2026"
    m = MonthFromName(c.Word());
    c.SkipBlanks();
    if (m == 0 || !c.Number(d, 2)) return std::nullopt;
    c.Eat(',');
    c.SkipBlanks();
    if (!c.Number(y, 4, &digits)) return std::nullopt;
    if (digits <= 2) y = TwoDigitYear(y);
  } else if (c.Eat('-')) {
    // ISO: YYYY-MM-DD
    if (digits != 4) return std::nullopt;
    y = first;
    if (!c.Number(m, 2) || !c.Eat('-') || !c.Number(d, 2)) return std::nullopt;
    if (!c.Eat('T')) c.SkipBlanks();
  } else if (c.Eat('/')) {
    // M/D/YYYY or M/D/YY
    m = first;
    if (!c.Number(d, 2) || !c.Eat('/') || !c.Number(y, 4, &digits)) return std::nullopt;
    if (digits <= 2) y = TwoDigitYear(y);
  } else {
    // A time alone belongs to the zero date.
    c.i = start;
    if (!ParseTime(c, h, mi, se)) return std::nullopt;
    return Date(0.0 + (h * 3600 + mi * 60 + se) / 86400.0);
  }
  if (!ValidDate(y, m, d)) return std::nullopt;
  c.SkipBlanks();
  if (!c.AtEnd() && !ParseTime(c, h, mi, se)) return std::nullopt;
  return FromParts(y, m, d, h, mi, se);
}

int Date::Year() const { return CivilFromDays(int64_t{SplitSerial(serial_).day} + kDaysFrom1970).year; }
int Date::Month() const { return CivilFromDays(int64_t{SplitSerial(serial_).day} + kDaysFrom1970).month; }
int Date::Day() const { return CivilFromDays(int64_t{SplitSerial(serial_).day} + kDaysFrom1970).day; }
int Date::Hour() const { return SplitSerial(serial_).second / 3600; }
int Date::Minute() const { return SplitSerial(serial_).second / 60 % 60; }
int Date::Second() const { return SplitSerial(serial_).second % 60; }

int Date::Weekday() const {
  // The zero date was a Saturday.
  const int32_t day = SplitSerial(serial_).day;
  return static_cast<int>(((day + 6) % 7 + 7) % 7) + 1;
}

int32_t Date::WholeDays() const { return SplitSerial(serial_).day; }

std::string Date::ToIso() const {
  const auto [day, second] = SplitSerial(serial_);
  const Civil c = CivilFromDays(int64_t{day} + kDaysFrom1970);
  char buf[40];
  if (second == 0) {
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d", c.year, c.month, c.day);
  } else {
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, second / 3600,
                  second / 60 % 60, second % 60);
  }
  return buf;
}

std::optional<int> Age(const Date& birth, const Date& today) {
  if (birth.IsZero()) return std::nullopt;
  int years = today.Year() - birth.Year();
  const bool birthday_ahead =
      today.Month() < birth.Month() || (today.Month() == birth.Month() && today.Day() < birth.Day());
  if (birthday_ahead) --years;
  return years;
}

}  // namespace kiv

// The date mask engine, letters without regard to case: d dd ddd dddd ddddd dddddd,
// w ww, m mm mmm mmmm, q, y yy yyyy, h hh, n nn, s ss, ttttt, c, AM/PM am/pm A/P a/p
// AMPM; "/" and ":" are the date and time separators; quotes and "\" make literals.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <vector>

#include "core/format_masks.h"
#include "core/variant.h"

namespace kiv::format_detail {

namespace {

constexpr const char* kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kDayNames[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

enum class Tok {
  Literal, Day, Day2, DayAbbr, DayName, ShortDate, LongDate, Weekday, Week, Month, Month2, MonthAbbr, MonthName,
  Quarter, DayOfYear, Year2, Year4, Hour, Hour2, Minute, Minute2, Second, Second2, LongTime, General, AmPm
};

struct Token {
  Tok kind;
  std::string text;  // Literal: the text; AmPm: the chosen AM and PM texts as "AM|PM"
};

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool StartsNoCase(std::string_view s, size_t at, std::string_view word) {
  if (s.size() - at < word.size()) return false;
  for (size_t i = 0; i < word.size(); ++i)
    if (Lower(s[at + i]) != Lower(word[i])) return false;
  return true;
}

size_t RunLength(std::string_view s, size_t at) {
  size_t n = 1;
  while (at + n < s.size() && Lower(s[at + n]) == Lower(s[at])) ++n;
  return n;
}

// Tokens of a date mask; nullopt when a letter is not part of any date token.
std::optional<std::vector<Token>> Tokenize(std::string_view mask) {
  std::vector<Token> out;
  auto literal = [&](std::string text) {
    if (!out.empty() && out.back().kind == Tok::Literal) out.back().text += text;
    else out.push_back({Tok::Literal, std::move(text)});
  };
  for (size_t i = 0; i < mask.size();) {
    const char c = mask[i];
    if (c == '"') {
      const size_t close = mask.find('"', i + 1);
      const size_t end = close == std::string_view::npos ? mask.size() : close;
      literal(std::string(mask.substr(i + 1, end - i - 1)));
      i = end + 1;
      continue;
    }
    if (c == '\\' && i + 1 < mask.size()) {
      literal(std::string(1, mask[i + 1]));
      i += 2;
      continue;
    }
    if (StartsNoCase(mask, i, "am/pm")) {
      out.push_back({Tok::AmPm, std::islower(static_cast<unsigned char>(c)) ? "am|pm" : "AM|PM"});
      i += 5;
      continue;
    }
    if (StartsNoCase(mask, i, "a/p")) {
      out.push_back({Tok::AmPm, std::islower(static_cast<unsigned char>(c)) ? "a|p" : "A|P"});
      i += 3;
      continue;
    }
    if (StartsNoCase(mask, i, "ampm")) {
      out.push_back({Tok::AmPm, "AM|PM"});
      i += 4;
      continue;
    }
    if (!std::isalpha(static_cast<unsigned char>(c))) {
      literal(std::string(1, c));
      ++i;
      continue;
    }
    const size_t run = RunLength(mask, i);
    size_t used = run;
    switch (Lower(c)) {
      case 'd': {
        static constexpr Tok kByLength[] = {Tok::Day, Tok::Day2, Tok::DayAbbr, Tok::DayName, Tok::ShortDate, Tok::LongDate};
        used = std::min<size_t>(run, 6);
        out.push_back({kByLength[used - 1], ""});
        break;
      }
      case 'm': {
        static constexpr Tok kByLength[] = {Tok::Month, Tok::Month2, Tok::MonthAbbr, Tok::MonthName};
        used = std::min<size_t>(run, 4);
        out.push_back({kByLength[used - 1], ""});
        break;
      }
      case 'y':
        used = run >= 4 ? 4 : (run >= 2 ? 2 : 1);
        out.push_back({used == 4 ? Tok::Year4 : used == 2 ? Tok::Year2 : Tok::DayOfYear, ""});
        break;
      case 'h':
        used = std::min<size_t>(run, 2);
        out.push_back({used == 2 ? Tok::Hour2 : Tok::Hour, ""});
        break;
      case 'n':
        used = std::min<size_t>(run, 2);
        out.push_back({used == 2 ? Tok::Minute2 : Tok::Minute, ""});
        break;
      case 's':
        used = std::min<size_t>(run, 2);
        out.push_back({used == 2 ? Tok::Second2 : Tok::Second, ""});
        break;
      case 'w':
        used = std::min<size_t>(run, 2);
        out.push_back({used == 2 ? Tok::Week : Tok::Weekday, ""});
        break;
      case 'q':
        used = 1;
        out.push_back({Tok::Quarter, ""});
        break;
      case 'c':
        used = 1;
        out.push_back({Tok::General, ""});
        break;
      case 't':
        if (run < 5) return std::nullopt;
        used = 5;
        out.push_back({Tok::LongTime, ""});
        break;
      default: return std::nullopt;
    }
    i += used;
  }
  return out;
}

// "m"/"mm" is the minute right after an hour or right before seconds (literals between
// do not count), otherwise the month.
void ResolveMinutes(std::vector<Token>& tokens) {
  auto neighbour = [&](size_t at, int step) -> const Token* {
    for (auto j = static_cast<long>(at) + step; j >= 0 && j < static_cast<long>(tokens.size()); j += step)
      if (tokens[j].kind != Tok::Literal) return &tokens[j];
    return nullptr;
  };
  for (size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].kind != Tok::Month && tokens[i].kind != Tok::Month2) continue;
    const Token* before = neighbour(i, -1);
    const Token* after = neighbour(i, 1);
    const bool after_hour = before && (before->kind == Tok::Hour || before->kind == Tok::Hour2);
    const bool before_second = after && (after->kind == Tok::Second || after->kind == Tok::Second2);
    if (after_hour || before_second) tokens[i].kind = tokens[i].kind == Tok::Month ? Tok::Minute : Tok::Minute2;
  }
}

std::string Num(int v, int width) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%0*d", width, v);
  return buf;
}

int DayOfYear(const Date& d) { return d.WholeDays() - Date::FromParts(d.Year(), 1, 1).WholeDays() + 1; }

std::string Render(const Date& d, const std::vector<Token>& tokens) {
  bool twelve_hour = false;
  for (const Token& t : tokens) twelve_hour = twelve_hour || t.kind == Tok::AmPm;
  const int hour = d.Hour();
  const int shown_hour = twelve_hour ? (hour % 12 == 0 ? 12 : hour % 12) : hour;
  std::string out;
  for (const Token& t : tokens) {
    switch (t.kind) {
      case Tok::Literal: out += t.text; break;
      case Tok::Day: out += std::to_string(d.Day()); break;
      case Tok::Day2: out += Num(d.Day(), 2); break;
      case Tok::DayAbbr: out += std::string(kDayNames[d.Weekday() - 1]).substr(0, 3); break;
      case Tok::DayName: out += kDayNames[d.Weekday() - 1]; break;
      case Tok::ShortDate: out += *FormatDate(d, "m/d/yyyy"); break;
      case Tok::LongDate: out += *FormatDate(d, "dddd, mmmm d, yyyy"); break;
      case Tok::Weekday: out += std::to_string(d.Weekday()); break;
      case Tok::Week: {
        // Weeks start on Sunday; the week holding 1 January is the first.
        const int jan1_weekday = Date::FromParts(d.Year(), 1, 1).Weekday();
        out += std::to_string((DayOfYear(d) - 1 + jan1_weekday - 1) / 7 + 1);
        break;
      }
      case Tok::Month: out += std::to_string(d.Month()); break;
      case Tok::Month2: out += Num(d.Month(), 2); break;
      case Tok::MonthAbbr: out += std::string(kMonthNames[d.Month() - 1]).substr(0, 3); break;
      case Tok::MonthName: out += kMonthNames[d.Month() - 1]; break;
      case Tok::Quarter: out += std::to_string((d.Month() - 1) / 3 + 1); break;
      case Tok::DayOfYear: out += std::to_string(DayOfYear(d)); break;
      case Tok::Year2: out += Num(d.Year() % 100, 2); break;
      case Tok::Year4: out += std::to_string(d.Year()); break;
      case Tok::Hour: out += std::to_string(shown_hour); break;
      case Tok::Hour2: out += Num(shown_hour, 2); break;
      case Tok::Minute: out += std::to_string(d.Minute()); break;
      case Tok::Minute2: out += Num(d.Minute(), 2); break;
      case Tok::Second: out += std::to_string(d.Second()); break;
      case Tok::Second2: out += Num(d.Second(), 2); break;
      case Tok::LongTime: out += *FormatDate(d, "h:mm:ss AM/PM"); break;
      case Tok::General: out += Variant(d).ToString(); break;
      case Tok::AmPm: {
        const size_t bar = t.text.find('|');
        out += hour < 12 ? t.text.substr(0, bar) : t.text.substr(bar + 1);
        break;
      }
    }
  }
  return out;
}

}  // namespace

std::optional<std::string> FormatDate(const Date& date, std::string_view mask) {
  auto tokens = Tokenize(mask);
  if (!tokens) return std::nullopt;
  const bool has_date_token =
      std::any_of(tokens->begin(), tokens->end(), [](const Token& t) { return t.kind != Tok::Literal; });
  if (!has_date_token) return std::nullopt;
  ResolveMinutes(*tokens);
  return Render(date, *tokens);
}

}  // namespace kiv::format_detail

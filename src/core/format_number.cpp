// The number mask engine: digit placeholders "0" (always a digit) and "#" (a digit only
// when there is one), "." the decimal point, "," grouping (or thousands scaling right
// before the point), "%" percent, "E+"/"E-" scientific, anything else literal. Rounding
// is half away from zero on the 15 significant digits the platform keeps.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/format_masks.h"
#include "core/variant.h"

namespace kiv::format_detail {

namespace {

// Splits a mask at ";" outside quotes and backslash escapes.
std::vector<std::string> SplitSections(std::string_view mask) {
  std::vector<std::string> sections(1);
  bool quoted = false;
  for (size_t i = 0; i < mask.size(); ++i) {
    const char c = mask[i];
    if (c == '"') quoted = !quoted;
    if (!quoted && c == '\\' && i + 1 < mask.size()) {
      sections.back() += c;
      sections.back() += mask[++i];
      continue;
    }
    if (!quoted && c == ';') {
      sections.emplace_back();
      continue;
    }
    sections.back() += c;
  }
  return sections;
}

// A non-negative number as decimal digits rounded to `places` decimals.
struct Decimal {
  std::string whole;     // no leading zeros; "" when the whole part is zero
  std::string fraction;  // exactly `places` digits
  bool IsZero() const { return whole.empty() && fraction.find_first_not_of('0') == std::string::npos; }
};

// The 15 significant digits of a finite non-negative number and the decimal exponent of
// the first. Percent and thousands scaling move the exponent instead of multiplying, so a
// number near the top of the range scales without overflowing.
struct Significant {
  std::string digits;  // exactly 15
  int exponent = 0;
};

Significant SignificantDigits(double v) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.14e", v);
  Significant s;
  s.digits.assign(1, buf[0]);
  s.digits.append(buf + 2, 14);
  s.exponent = std::atoi(std::strchr(buf, 'e') + 1);
  return s;
}

Decimal ToDecimal(Significant s, int places) {
  std::string& digits = s.digits;
  int exp = s.exponent;
  const long keep = static_cast<long>(exp) + 1 + places;
  if (keep < 0) {
    digits.clear();
  } else if (keep < static_cast<long>(digits.size())) {
    const bool up = digits[keep] >= '5';
    digits.resize(keep);
    if (up) {
      long j = keep - 1;
      for (; j >= 0 && digits[j] == '9'; --j) digits[j] = '0';
      if (j >= 0) {
        ++digits[j];
      } else {
        digits.insert(digits.begin(), '1');
        ++exp;
      }
    }
  }
  Decimal d;
  const int whole_len = exp + 1;
  for (int i = 0; i < whole_len; ++i) d.whole += i < static_cast<int>(digits.size()) ? digits[i] : '0';
  for (int i = 0; i < places; ++i) {
    const int at = whole_len + i;
    d.fraction += at >= 0 && at < static_cast<int>(digits.size()) ? digits[at] : '0';
  }
  const size_t first = d.whole.find_first_not_of('0');
  d.whole = first == std::string::npos ? "" : d.whole.substr(first);
  return d;
}

struct Item {
  enum Kind { Digit, Point, Percent, Exponent, Literal } kind;
  std::string text;  // Digit: "0" or "#"; Exponent: "E+", "e-"...; Literal: the text
};

// A parsed section of a number mask.
struct Section {
  std::vector<Item> items;
  size_t point = std::string::npos;  // index of the Point item
  bool grouping = false;
  int scale_thousands = 0;
  int percents = 0;
  bool scientific = false;
  size_t exponent_item = 0;

  int WholePlaceholders() const {
    int n = 0;
    for (size_t i = 0; i < items.size() && i < point; ++i)
      if (items[i].kind == Item::Exponent) break;
      else if (items[i].kind == Item::Digit) ++n;
    return n;
  }
  int MinWholeDigits() const {
    int n = 0;
    bool counting = false;
    for (size_t i = 0; i < items.size() && i < point; ++i) {
      if (items[i].kind == Item::Exponent) break;
      if (items[i].kind != Item::Digit) continue;
      counting = counting || items[i].text == "0";
      if (counting) ++n;
    }
    return n;
  }
  int Places() const {
    if (point == std::string::npos) return 0;
    int n = 0;
    for (size_t i = point + 1; i < items.size() && items[i].kind != Item::Exponent; ++i)
      if (items[i].kind == Item::Digit) ++n;
    return n;
  }
};

Section ParseSection(std::string_view mask) {
  Section s;
  bool after_point = false;
  bool seen_digit = false;
  std::vector<int> pending_commas;  // commas after the last whole-part digit so far
  auto literal = [&](std::string text) {
    if (!s.items.empty() && s.items.back().kind == Item::Literal) s.items.back().text += text;
    else s.items.push_back({Item::Literal, std::move(text)});
  };
  for (size_t i = 0; i < mask.size(); ++i) {
    const char c = mask[i];
    if (c == '"') {
      const size_t close = mask.find('"', i + 1);
      const size_t end = close == std::string_view::npos ? mask.size() : close;
      literal(std::string(mask.substr(i + 1, end - i - 1)));
      i = end;
      continue;
    }
    if (c == '\\' && i + 1 < mask.size()) {
      literal(std::string(1, mask[++i]));
      continue;
    }
    if ((c == '0' || c == '#') && !s.scientific) {
      if (!after_point && !pending_commas.empty()) s.grouping = true;
      pending_commas.clear();
      seen_digit = true;
      s.items.push_back({Item::Digit, std::string(1, c)});
      continue;
    }
    if ((c == '0' || c == '#') && s.scientific) {
      s.items[s.exponent_item].text += c;
      continue;
    }
    if (c == '.' && !after_point && !s.scientific) {
      s.scale_thousands += static_cast<int>(pending_commas.size());
      pending_commas.clear();
      after_point = true;
      s.point = s.items.size();
      s.items.push_back({Item::Point, "."});
      continue;
    }
    if (c == ',' && !after_point && seen_digit) {
      pending_commas.push_back(1);
      continue;
    }
    if (c == '%') {
      ++s.percents;
      s.items.push_back({Item::Percent, "%"});
      continue;
    }
    if ((c == 'E' || c == 'e') && i + 1 < mask.size() && (mask[i + 1] == '+' || mask[i + 1] == '-') && !s.scientific &&
        seen_digit) {
      s.scientific = true;
      s.exponent_item = s.items.size();
      s.items.push_back({Item::Exponent, std::string{c, mask[i + 1]}});
      ++i;
      continue;
    }
    literal(std::string(1, c));
  }
  if (!after_point) s.scale_thousands += static_cast<int>(pending_commas.size());
  return s;
}

std::string Group(const std::string& digits) {
  std::string out;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) out += ',';
    out += digits[i];
  }
  return out;
}

// Places the whole-part text into the digit placeholders before the point: the last
// placeholders take one digit each from the right, the first takes all that remain.
std::vector<std::string> DistributeWhole(const Section& s, std::string text) {
  std::vector<std::string> slots(s.items.size());
  std::vector<size_t> positions;
  for (size_t i = 0; i < s.items.size() && i < s.point; ++i) {
    if (s.items[i].kind == Item::Exponent) break;
    if (s.items[i].kind == Item::Digit) positions.push_back(i);
  }
  if (positions.empty()) return slots;
  if (s.grouping) {
    slots[positions.front()] = text;
    return slots;
  }
  for (size_t k = positions.size(); k-- > 1;) {
    if (text.empty()) break;
    slots[positions[k]] = text.back();
    text.pop_back();
  }
  slots[positions.front()] = text;
  return slots;
}

// The magnitude's significant digits with the section's percent and thousands scaling.
Significant Scaled(const Section& s, double magnitude) {
  Significant sig = SignificantDigits(magnitude);
  if (magnitude != 0.0) sig.exponent += 2 * s.percents - 3 * s.scale_thousands;
  return sig;
}

std::string Render(const Section& s, double magnitude) {
  const int places = s.Places();
  int exponent = 0;
  Decimal d;
  Significant sig = Scaled(s, magnitude);
  if (s.scientific) {
    // The mantissa keeps as many whole digits as the mask has placeholders before the point.
    const int whole_places = std::max(1, s.WholePlaceholders());
    if (magnitude != 0.0) exponent = sig.exponent - (whole_places - 1);
    sig.exponent -= exponent;
    d = ToDecimal(sig, places);
    if (static_cast<int>(d.whole.size()) > whole_places) {  // rounding carried into a new digit
      ++exponent;
      --sig.exponent;
      d = ToDecimal(sig, places);
    }
  } else {
    d = ToDecimal(sig, places);
  }
  std::string whole = d.whole;
  const int min_whole = s.MinWholeDigits();
  if (static_cast<int>(whole.size()) < min_whole) whole.insert(0, min_whole - whole.size(), '0');
  if (s.grouping) whole = Group(whole);
  const std::vector<std::string> slots = DistributeWhole(s, whole);
  const bool has_whole_placeholder = s.WholePlaceholders() > 0;

  // Trailing "#" places after the point drop their zeros.
  std::string fraction = d.fraction;
  std::vector<char> fraction_marks;
  if (s.point != std::string::npos)
    for (size_t i = s.point + 1; i < s.items.size() && s.items[i].kind != Item::Exponent; ++i)
      if (s.items[i].kind == Item::Digit) fraction_marks.push_back(s.items[i].text[0]);
  size_t shown = fraction.size();
  while (shown > 0 && fraction_marks[shown - 1] == '#' && fraction[shown - 1] == '0') --shown;

  std::string out;
  size_t next_fraction = 0;
  bool whole_written = false;
  for (size_t i = 0; i < s.items.size(); ++i) {
    const Item& item = s.items[i];
    switch (item.kind) {
      case Item::Digit:
        if (s.point != std::string::npos && i > s.point) {
          if (next_fraction < shown) out += fraction[next_fraction];
          ++next_fraction;
        } else {
          out += slots[i];
        }
        break;
      case Item::Point:
        if (!has_whole_placeholder && !whole_written) out += whole;
        whole_written = true;
        out += '.';
        break;
      case Item::Percent: out += '%'; break;
      case Item::Exponent: {
        out += item.text[0];
        if (exponent < 0) out += '-';
        else if (item.text[1] == '+') out += '+';
        std::string digits = std::to_string(std::abs(exponent));
        const int min_digits = static_cast<int>(item.text.size()) - 2;
        if (static_cast<int>(digits.size()) < min_digits) digits.insert(0, min_digits - digits.size(), '0');
        out += digits;
        break;
      }
      case Item::Literal: out += item.text; break;
    }
  }
  return out;
}

}  // namespace

bool IsNumberMask(std::string_view mask) {
  bool quoted = false;
  for (size_t i = 0; i < mask.size(); ++i) {
    const char c = mask[i];
    if (c == '"') quoted = !quoted;
    else if (!quoted && c == '\\') ++i;
    else if (!quoted && (c == '0' || c == '#')) return true;
  }
  return false;
}

std::string FormatNumber(double value, std::string_view mask) {
  // No mask can place the digits of an infinity or of NaN: they show as their plain text.
  if (!std::isfinite(value)) return NumberToText(value);
  std::vector<std::string> sections = SplitSections(mask);
  // A grid column mask wholly in parentheses: negatives in parentheses, positives bare.
  if (sections.size() == 1 && sections[0].size() >= 2 && sections[0].front() == '(' && sections[0].back() == ')') {
    const std::string inner = sections[0].substr(1, sections[0].size() - 2);
    sections = {inner, "(" + inner + ")"};
  }
  const Section positive = ParseSection(sections[0]);
  const bool own_negative = sections.size() >= 2 && !sections[1].empty();
  const Section negative = own_negative ? ParseSection(sections[1]) : positive;
  const bool own_zero = sections.size() >= 3 && !sections[2].empty();

  const bool is_negative = value < 0.0;
  const Section& chosen = is_negative ? negative : positive;
  const double magnitude = std::fabs(value);
  const bool shows_zero =
      chosen.scientific ? magnitude == 0.0 : ToDecimal(Scaled(chosen, magnitude), chosen.Places()).IsZero();
  if (shows_zero) return own_zero ? Render(ParseSection(sections[2]), 0.0) : Render(positive, 0.0);
  if (!is_negative) return Render(positive, magnitude);
  return own_negative ? Render(negative, magnitude) : "-" + Render(positive, magnitude);
}

}  // namespace kiv::format_detail

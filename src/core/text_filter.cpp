// Character classes of the typed-text filter.
#include "core/text_filter.h"

namespace kiv {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool KeepsChar(char c, FilterMode mode) {
  switch (mode) {
    case FilterMode::Numeric: return IsDigit(c) || c == '.';
    case FilterMode::AlphaNumeric: return IsDigit(c) || IsLetter(c) || c == ' ';
    case FilterMode::Phone: return IsDigit(c) || c == '-' || c == '(' || c == ')';
    case FilterMode::General:
      if (IsDigit(c) || IsLetter(c) || c == ' ') return true;
      return std::string_view("@-_.,!?$%*();:").find(c) != std::string_view::npos;
  }
  return false;
}

std::string FilterText(std::string_view text, FilterMode mode) {
  std::string kept;
  kept.reserve(text.size());
  for (const char c : text)
    if (KeepsChar(c, mode)) kept += c;
  return kept;
}

}  // namespace kiv

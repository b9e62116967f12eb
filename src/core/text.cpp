// Text functions. The Latin-1 letters are U+00C0..U+00FE in UTF-8 (C3 80..C3 BE), with
// × and ÷ (C3 97, C3 B7) not letters; ÿ (C3 BF) pairs with Ÿ (U+0178, C5 B8).
#include "core/text.h"

#include "core/vb_error.h"

namespace kiv {

namespace {

constexpr unsigned char kLatinLead = 0xC3;

// Every mapping keeps the byte length (ÿ and Ÿ are both two bytes), so the text is copied
// once and changed in place. Screens fold a whole field on every keystroke, so the ASCII
// letters are mapped in one branch-free pass and the Latin-1 pass runs only when needed.
std::string MapCase(std::string_view text, bool upper) {
  std::string out(text);
  const size_t n = out.size();
  const unsigned char first = upper ? 'a' : 'A';
  unsigned char high = 0;  // any byte of 0x80 and above
  for (size_t i = 0; i < n; ++i) {
    const auto c = static_cast<unsigned char>(out[i]);
    high |= c;
    // Bytes of multi-byte sequences are 0x80 and above and never in the letter range.
    const bool letter = static_cast<unsigned char>(c - first) < 26;
    out[i] = static_cast<char>(upper ? c - (letter ? 32 : 0) : c + (letter ? 32 : 0));
  }
  if ((high & 0x80) == 0) return out;
  for (size_t i = 0; i + 1 < n; ++i) {
    const auto c = static_cast<unsigned char>(out[i]);
    if (c < 0x80) continue;
    const auto next = static_cast<unsigned char>(out[i + 1]);
    if (c == kLatinLead && upper && next >= 0xA0 && next <= 0xBE && next != 0xB7) {
      out[++i] = static_cast<char>(next - 0x20);
    } else if (c == kLatinLead && upper && next == 0xBF) {  // ÿ -> Ÿ
      out[i] = '\xC5';
      out[++i] = '\xB8';
    } else if (c == kLatinLead && !upper && next >= 0x80 && next <= 0x9E && next != 0x97) {
      out[++i] = static_cast<char>(next + 0x20);
    } else if (c == 0xC5 && !upper && next == 0xB8) {  // Ÿ -> ÿ
      out[i] = '\xC3';
      out[++i] = '\xBF';
    }
  }
  return out;
}

bool IsAsciiOnly(std::string_view s) {
  for (const char c : s)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c; }

}  // namespace

std::string UCase(std::string_view text) { return MapCase(text, true); }
std::string LCase(std::string_view text) { return MapCase(text, false); }

std::string LTrim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string RTrim(std::string_view text) {
  const size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (IsAsciiOnly(a) && IsAsciiOnly(b)) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
      if (AsciiUpper(a[i]) != AsciiUpper(b[i])) return false;
    return true;
  }
  return UCase(a) == UCase(b);
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  if (prefix.size() > text.size()) return false;
  return EqualsNoCase(text.substr(0, prefix.size()), prefix);
}

std::string Left(std::string_view text, long n) {
  if (n < 0) RaiseError(kErrInvalidCall);
  return std::string(text.substr(0, static_cast<size_t>(n)));
}

std::string Right(std::string_view text, long n) {
  if (n < 0) RaiseError(kErrInvalidCall);
  const auto count = static_cast<size_t>(n);
  return count >= text.size() ? std::string(text) : std::string(text.substr(text.size() - count));
}

std::string Mid(std::string_view text, long start, long length) {
  if (start < 1) RaiseError(kErrInvalidCall);
  const auto from = static_cast<size_t>(start - 1);
  if (from >= text.size()) return "";
  if (length < 0) return std::string(text.substr(from));
  return std::string(text.substr(from, static_cast<size_t>(length)));
}

size_t InStr(std::string_view text, std::string_view find, size_t start) {
  if (start < 1) RaiseError(kErrInvalidCall);
  if (start - 1 > text.size()) return 0;
  const size_t at = text.find(find, start - 1);
  return at == std::string_view::npos ? 0 : at + 1;
}

std::string Replace(std::string_view text, std::string_view find, std::string_view replacement) {
  if (find.empty()) return std::string(text);
  std::string out;
  size_t from = 0;
  for (size_t at = text.find(find); at != std::string_view::npos; at = text.find(find, from)) {
    out.append(text.substr(from, at - from));
    out.append(replacement);
    from = at + find.size();
  }
  out.append(text.substr(from));
  return out;
}

std::vector<std::string> Split(std::string_view text, std::string_view delimiter) {
  if (text.empty()) return {};
  if (delimiter.empty()) return {std::string(text)};
  std::vector<std::string> parts;
  size_t from = 0;
  for (size_t at = text.find(delimiter); at != std::string_view::npos; at = text.find(delimiter, from)) {
    parts.emplace_back(text.substr(from, at - from));
    from = at + delimiter.size();
  }
  parts.emplace_back(text.substr(from));
  return parts;
}

std::string Join(const std::vector<std::string>& parts, std::string_view delimiter) {
  std::string out;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) out.append(delimiter);
    out.append(parts[i]);
  }
  return out;
}

}  // namespace kiv

// Text functions. The Latin-1 letters are U+00C0..U+00FE in UTF-8 (C3 80..C3 BE), with
// × and ÷ (C3 97, C3 B7) not letters; ÿ (C3 BF) pairs with Ÿ (U+0178, C5 B8).
#include "core/text.h"

#include "core/vb_error.h"

namespace kiv {

namespace {

constexpr unsigned char kLatinLead = 0xC3;

std::string MapCase(std::string_view text, bool upper) {
  std::string out;
  out.reserve(text.size() + 1);
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c < 0x80) {
      if (upper && c >= 'a' && c <= 'z') out += static_cast<char>(c - 32);
      else if (!upper && c >= 'A' && c <= 'Z') out += static_cast<char>(c + 32);
      else out += static_cast<char>(c);
      continue;
    }
    const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0;
    if (c == kLatinLead && upper && next >= 0xA0 && next <= 0xBE && next != 0xB7) {
      out += static_cast<char>(c);
      out += static_cast<char>(next - 0x20);
      ++i;
      continue;
    }
    if (c == kLatinLead && upper && next == 0xBF) {  // ÿ -> Ÿ
      out += "\xC5\xB8";
      ++i;
      continue;
    }
    if (c == kLatinLead && !upper && next >= 0x80 && next <= 0x9E && next != 0x97) {
      out += static_cast<char>(c);
      out += static_cast<char>(next + 0x20);
      ++i;
      continue;
    }
    if (c == 0xC5 && !upper && next == 0xB8) {  // Ÿ -> ÿ
      out += "\xC3\xBF";
      ++i;
      continue;
    }
    out += static_cast<char>(c);
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

// Text forms of property values shared by the controls' property registries.
#include "ui/prop_text.h"

#include <cerrno>
#include <cstdlib>

#include "core/text.h"
#include "core/vb_error.h"

namespace kiv::ui {

std::string BoolText(bool v) { return v ? "True" : "False"; }

bool ParseBoolText(const std::string& text) {
  std::string t = Trim(text);
  if (EqualsNoCase(t, "true") || t == "1" || t == "-1") return true;
  if (EqualsNoCase(t, "false") || t == "0") return false;
  RaiseError(kErrTypeMismatch);
}

bool ReadPair(const std::string& text, int& a, int& b) {
  if (text.size() < 5 || text.front() != '[' || text.back() != ']') return false;
  std::string inner = text.substr(1, text.size() - 2);
  size_t comma = inner.find(',');
  if (comma == std::string::npos) return false;
  return TryParseInt(inner.substr(0, comma), a) && TryParseInt(inner.substr(comma + 1), b);
}

bool ReadIndexed(const std::string& text, const std::string& name, std::string& arg) {
  if (text.size() < name.size() + 2 || !StartsWithNoCase(text, name) || text[name.size()] != '[' ||
      text.back() != ']') {
    return false;
  }
  arg = text.substr(name.size() + 1, text.size() - name.size() - 2);
  return true;
}

bool TryParseInt(const std::string& text, int& out) {
  std::string t = Trim(text);
  if (t.empty()) return false;
  errno = 0;
  char* end = nullptr;
  long v = std::strtol(t.c_str(), &end, 10);
  if (errno != 0 || end == t.c_str() || *end != '\0' || v < -2147483647L - 1 || v > 2147483647L) return false;
  out = static_cast<int>(v);
  return true;
}

int ParseIntText(const std::string& text) {
  int v = 0;
  if (!TryParseInt(text, v)) RaiseError(kErrTypeMismatch);
  return v;
}

void RaiseControlError(int number) {
  switch (number) {
    case 380: throw VbError(380, "Invalid property value");
    case 381: throw VbError(381, "Invalid property array index");
    case 383: throw VbError(383, "Property is read-only");
    case 438: throw VbError(438, "Object doesn't support this property or method");
    case 35600: throw VbError(35600, "Index out of bounds");
    case 35601: throw VbError(35601, "Element not found");
    case 35602: throw VbError(35602, "Key is not unique in collection");
    default: RaiseError(number);
  }
}

std::string StripAccelerator(const std::string& caption) {
  std::string out;
  out.reserve(caption.size());
  for (size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] != '&') {
      out += caption[i];
      continue;
    }
    if (i + 1 < caption.size() && caption[i + 1] == '&') {
      out += '&';
      ++i;
    }
  }
  return out;
}

}  // namespace kiv::ui

// Reading key names into keystrokes.
#include "ui/keys.h"

#include <array>
#include <utility>

#include "core/text.h"

namespace kiv::ui {

namespace {

//! Decodes one UTF-8 code point filling the whole text; -1 otherwise.
int SingleCodePoint(std::string_view s) {
  if (s.empty()) return -1;
  auto b0 = static_cast<unsigned char>(s[0]);
  size_t len = b0 < 0x80 ? 1 : (b0 >> 5) == 0x6 ? 2 : (b0 >> 4) == 0xE ? 3 : (b0 >> 3) == 0x1E ? 4 : 0;
  if (len == 0 || s.size() != len) return -1;
  int cp = len == 1 ? b0 : len == 2 ? (b0 & 0x1F) : len == 3 ? (b0 & 0x0F) : (b0 & 0x07);
  for (size_t i = 1; i < len; ++i) {
    auto b = static_cast<unsigned char>(s[i]);
    if ((b & 0xC0) != 0x80) return -1;
    cp = (cp << 6) | (b & 0x3F);
  }
  return cp;
}

}  // namespace

KeyStroke CharKey(int code_point) {
  KeyStroke k;
  k.key_ascii = code_point;
  if (code_point >= 'a' && code_point <= 'z') {
    k.key_code = code_point - 'a' + 'A';
  } else if (code_point >= 'A' && code_point <= 'Z') {
    k.key_code = code_point;
    k.shift = vbShiftMask;
  } else if ((code_point >= '0' && code_point <= '9') || code_point == ' ') {
    k.key_code = code_point;
  } else {
    k.key_code = 0;  // punctuation and other characters: no key code worth naming
  }
  return k;
}

std::optional<KeyStroke> ParseKey(std::string_view text) {
  int shift = 0;
  static const std::array<std::pair<std::string_view, int>, 3> kPrefixes{
      {{"ctrl+", vbCtrlMask}, {"shift+", vbShiftMask}, {"alt+", vbAltMask}}};
  for (bool found = true; found && text.size() > 1;) {
    found = false;
    for (const auto& [prefix, mask] : kPrefixes) {
      if (text.size() > prefix.size() && StartsWithNoCase(text, prefix)) {
        shift |= mask;
        text.remove_prefix(prefix.size());
        found = true;
      }
    }
  }
  static const std::array<std::pair<std::string_view, KeyStroke>, 16> kNamed{{
      {"enter", {vbKeyReturn, 0, 13}},
      {"return", {vbKeyReturn, 0, 13}},
      {"esc", {vbKeyEscape, 0, 27}},
      {"escape", {vbKeyEscape, 0, 27}},
      {"tab", {vbKeyTab, 0, 0}},
      {"delete", {vbKeyDelete, 0, 0}},
      {"del", {vbKeyDelete, 0, 0}},
      {"backspace", {vbKeyBack, 0, 8}},
      {"space", {vbKeySpace, 0, 32}},
      {"home", {vbKeyHome, 0, 0}},
      {"end", {vbKeyEnd, 0, 0}},
      {"left", {vbKeyLeft, 0, 0}},
      {"right", {vbKeyRight, 0, 0}},
      {"up", {vbKeyUp, 0, 0}},
      {"down", {vbKeyDown, 0, 0}},
      {"insert", {vbKeyInsert, 0, 0}},
  }};
  for (const auto& [name, key] : kNamed) {
    if (!EqualsNoCase(text, name)) continue;
    KeyStroke k = key;
    k.shift = shift;
    if (k.key_code == vbKeyReturn && (shift & vbCtrlMask) != 0) k.key_ascii = 10;
    return k;
  }
  if (text.size() >= 2 && (text[0] == 'F' || text[0] == 'f')) {
    int n = 0;
    for (char c : text.substr(1)) {
      if (c < '0' || c > '9') return std::nullopt;
      n = n * 10 + (c - '0');
      if (n > 12) return std::nullopt;
    }
    if (n < 1) return std::nullopt;
    return KeyStroke{vbKeyF1 + n - 1, shift, 0};
  }
  int cp = SingleCodePoint(text);
  if (cp < 0) return std::nullopt;
  KeyStroke k = CharKey(cp);
  // With a prefix the letter names the key whatever its case; only "Shift+" adds Shift.
  if (shift != 0) k.shift = shift;
  if ((shift & vbShiftMask) != 0 && cp >= 'a' && cp <= 'z') k.key_ascii = cp - 'a' + 'A';
  if ((shift & vbCtrlMask) != 0 && k.key_code >= 'A' && k.key_code <= 'Z') k.key_ascii = k.key_code - 'A' + 1;
  if ((shift & vbAltMask) != 0) k.key_ascii = 0;  // Alt combinations type nothing
  return k;
}

}  // namespace kiv::ui

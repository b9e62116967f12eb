// Key codes and shift masks with the platform's values, and the reading of a key name
// ("Enter", "Ctrl+F5", "a") into the keystroke that a front end delivers to a form.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace kiv::ui {

//! Key codes (KeyDown) with the platform's values; letters are their upper-case codes.
enum KeyCode : int {
  vbKeyBack = 8,
  vbKeyTab = 9,
  vbKeyReturn = 13,
  vbKeyShift = 16,
  vbKeyControl = 17,
  vbKeyEscape = 27,
  vbKeySpace = 32,
  vbKeyPageUp = 33,
  vbKeyPageDown = 34,
  vbKeyEnd = 35,
  vbKeyHome = 36,
  vbKeyLeft = 37,
  vbKeyUp = 38,
  vbKeyRight = 39,
  vbKeyDown = 40,
  vbKeyInsert = 45,
  vbKeyDelete = 46,
  vbKeyF1 = 112,
  vbKeyF12 = 123,
};

//! Shift argument of KeyDown: any combination of these bits.
enum ShiftMask : int { vbShiftMask = 1, vbCtrlMask = 2, vbAltMask = 4 };

//! One keystroke: the KeyDown code with its shift state, and the character code that
//! KeyPress receives (0 when the key produces no character, as F-keys and Delete).
struct KeyStroke {
  int key_code = 0;
  int shift = 0;
  int key_ascii = 0;
};

//! Reads "Enter", "Esc", "Tab", "Delete", "Backspace", "Space", "Home", "End", "Left",
//! "Right", "Up", "Down", "F1".."F12" or a single character (UTF-8), each with optional
//! "Ctrl+", "Shift+", "Alt+" prefixes (names without regard to case). Ctrl with a letter
//! gives the control character (Ctrl+A is 1); Ctrl+Enter gives 10. nullopt when unreadable.
std::optional<KeyStroke> ParseKey(std::string_view text);

//! The keystroke that types one character (a Unicode code point); letters map to their key.
KeyStroke CharKey(int code_point);

}  // namespace kiv::ui

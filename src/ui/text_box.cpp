// A text box: caret and selection editing, typed characters after KeyPress, Delete,
// and Change on every real change of the text.
#include "ui/text_box.h"

#include <algorithm>

#include "core/text.h"
#include "ui/keys.h"
#include "ui/prop_text.h"

namespace kiv::ui {

namespace {

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

//! Start of the code point before byte `pos`.
int PrevCodePoint(const std::string& s, int pos) {
  int p = pos - 1;
  while (p > 0 && IsContinuation(static_cast<unsigned char>(s[p]))) --p;
  return std::max(p, 0);
}

//! End of the code point starting at byte `pos`.
int NextCodePoint(const std::string& s, int pos) {
  int p = pos + 1;
  int n = static_cast<int>(s.size());
  while (p < n && IsContinuation(static_cast<unsigned char>(s[p]))) ++p;
  return std::min(p, n);
}

//! Characters (code points) in UTF-8 text; a stray byte counts as one.
int CharCount(const std::string& s) {
  int n = 0;
  for (char c : s) n += IsContinuation(static_cast<unsigned char>(c)) ? 0 : 1;
  return n;
}

//! The first `chars` characters of `s`, never cutting one in two.
std::string FirstChars(const std::string& s, int chars) {
  int end = 0;
  int n = static_cast<int>(s.size());
  for (int i = 0; i < chars && end < n; ++i) end = NextCodePoint(s, end);
  return s.substr(0, end);
}

std::string Utf8(int code_point) {
  std::string out;
  auto cp = static_cast<uint32_t>(code_point);
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | ((cp >> 18) & 0x07));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
  return out;
}

}  // namespace

TextBox::TextBox(std::string name) : Control(std::move(name), "TextBox") {
  RegisterProperty("Text", [this] { return text_; }, [this](const std::string& v) { SetText(v); });
  RegisterProperty("SelStart", [this] { return std::to_string(sel_start_); },
                   [this](const std::string& v) { SetSelStart(ParseIntText(v)); });
  RegisterProperty("SelLength", [this] { return std::to_string(sel_length_); },
                   [this](const std::string& v) { SetSelLength(ParseIntText(v)); });
  RegisterProperty("SelText", [this] { return SelText(); }, [this](const std::string& v) { SetSelText(v); });
  RegisterProperty("DataChanged", [this] { return BoolText(data_changed_); },
                   [this](const std::string& v) { SetDataChanged(ParseBoolText(v)); });
  RegisterProperty("Locked", [this] { return BoolText(locked_); },
                   [this](const std::string& v) { SetLocked(ParseBoolText(v)); });
  RegisterProperty("MultiLine", [this] { return BoolText(multi_line_); });
  RegisterProperty("MaxLength", [this] { return std::to_string(max_length_); },
                   [this](const std::string& v) { SetMaxLength(ParseIntText(v)); });
}

void TextBox::SetText(const std::string& v, bool fire_events) {
  Replace(0, static_cast<int>(text_.size()), v, fire_events);
}

void TextBox::SetSelStart(int v) {
  sel_start_ = std::clamp(v, 0, static_cast<int>(text_.size()));
  sel_length_ = 0;
}

void TextBox::SetSelLength(int v) {
  sel_length_ = std::clamp(v, 0, static_cast<int>(text_.size()) - sel_start_);
}

std::string TextBox::SelText() const { return text_.substr(sel_start_, sel_length_); }

void TextBox::SetSelText(const std::string& v) { Replace(sel_start_, sel_length_, v, true); }

void TextBox::SelectAll() {
  sel_start_ = 0;
  sel_length_ = static_cast<int>(text_.size());
}

int TextBox::Room(int start, int length) const {
  if (max_length_ == 0) return -1;
  int kept = CharCount(text_) - CharCount(text_.substr(start, length));
  return std::max(max_length_ - kept, 0);
}

void TextBox::Replace(int start, int length, const std::string& text, bool fire_events) {
  int room = Room(start, length);
  std::string with = room < 0 ? text : FirstChars(text, room);
  // Edited in place: typing at the end of a long text costs the keystroke, not the text.
  const bool same = text_.compare(static_cast<size_t>(start), static_cast<size_t>(length), with) == 0;
  sel_start_ = start + static_cast<int>(with.size());
  sel_length_ = 0;
  if (same) return;
  text_.replace(static_cast<size_t>(start), static_cast<size_t>(length), with);
  data_changed_ = true;
  if (fire_events) FireChange();
}

void TextBox::DefaultKeyPress(int key_ascii) {
  if (locked_) return;
  if (key_ascii == vbKeyBack) {
    if (sel_length_ > 0) {
      Replace(sel_start_, sel_length_, "", true);
      return;
    }
    if (sel_start_ == 0) return;
    int from = PrevCodePoint(text_, sel_start_);
    Replace(from, sel_start_ - from, "", true);
    return;
  }
  std::string insert;
  if (key_ascii == vbKeyReturn || key_ascii == 10) {
    if (!multi_line_) return;
    insert = "\r\n";
  } else if (key_ascii < 32 || key_ascii == 127) {
    return;  // control characters (Ctrl+letter) type nothing
  } else {
    insert = Utf8(key_ascii);
  }
  int room = Room(sel_start_, sel_length_);
  if (room >= 0 && CharCount(insert) > room) return;  // a full box swallows the key, "\r\n" whole
  Replace(sel_start_, sel_length_, insert, true);
}

void TextBox::DefaultKeyDown(int key_code, int) {
  int length = static_cast<int>(text_.size());
  switch (key_code) {
    case vbKeyHome: SetSelStart(0); return;
    case vbKeyEnd: SetSelStart(length); return;
    case vbKeyLeft: SetSelStart(sel_length_ > 0 ? sel_start_ : PrevCodePoint(text_, sel_start_)); return;
    case vbKeyRight:
      SetSelStart(sel_length_ > 0 ? sel_start_ + sel_length_
                                  : (sel_start_ < length ? NextCodePoint(text_, sel_start_) : length));
      return;
    default: break;
  }
  if (key_code != vbKeyDelete || locked_) return;
  if (sel_length_ > 0) {
    Replace(sel_start_, sel_length_, "", true);
    return;
  }
  if (sel_start_ >= static_cast<int>(text_.size())) return;
  int to = NextCodePoint(text_, sel_start_);
  Replace(sel_start_, to - sel_start_, "", true);
}

bool TextBox::ConsumesKey(int key_code, int shift) const {
  // Ctrl+Enter breaks the line of a multi-line box whatever the form's default button.
  return multi_line_ && key_code == vbKeyReturn && (shift & vbCtrlMask) != 0;
}

std::optional<std::string> TextBox::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "text" || p == "value") return text_;
  return Control::QueryState(name);
}

std::string TextBox::RefuseAction(const Action& action) const {
  if (action.kind == ActionKind::Type || action.kind == ActionKind::Paste) return {};
  return Control::RefuseAction(action);
}

UiResult TextBox::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Paste) return Control::ApplyAction(action);
  SetText(action.text);
  return UiResult::Ok();
}

}  // namespace kiv::ui

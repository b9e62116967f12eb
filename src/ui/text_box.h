// A text box: text with a caret and a selection, a changed marker, locked and multi-line
// modes and a maximum length. Typing runs KeyPress and inserts at the caret; every change
// of the text, from the clerk or from code, fires Change unless code says otherwise.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class TextBox : public Control {
 public:
  explicit TextBox(std::string name);

  const std::string& Text() const { return text_; }
  //! Replaces the text (cut at MaxLength) and puts the caret at its end with nothing
  //! selected. Fires Change
  //! when the text differs and `fire_events` is true (setting from code fires it, as on
  //! the platform); the changed marker is set by any real change either way.
  void SetText(const std::string& v, bool fire_events = true);

  //! Caret position in bytes from the start (0..length).
  int SelStart() const { return sel_start_; }
  //! Moves the caret, clamped to the text, and empties the selection.
  void SetSelStart(int v);
  int SelLength() const { return sel_length_; }
  //! Selects from the caret on, clamped to the text.
  void SetSelLength(int v);
  std::string SelText() const;
  //! Replaces the selection with `v` (cut to what MaxLength leaves room for) and puts the
  //! caret after it; fires Change.
  void SetSelText(const std::string& v);
  //! Selects the whole text (what a field does on entry).
  void SelectAll();

  //! The changed marker: set whenever the text changes, cleared only by code.
  bool DataChanged() const { return data_changed_; }
  void SetDataChanged(bool v) { data_changed_ = v; }

  //! A locked box still runs KeyPress but keeps its text.
  bool Locked() const { return locked_; }
  void SetLocked(bool v) { locked_ = v; }
  bool MultiLine() const { return multi_line_; }
  void SetMultiLine(bool v) { multi_line_ = v; }
  //! Longest text in characters (not bytes); 0 is unlimited. Typing beyond it is swallowed
  //! (KeyPress still runs); text set from code, pasted or put over the selection is cut at
  //! it. Lowering it leaves a longer text as it stands until it is replaced.
  int MaxLength() const { return max_length_; }
  void SetMaxLength(int v) { max_length_ = v < 0 ? 0 : v; }
  //! Masking character shown instead of the text (for passwords); empty shows the text.
  const std::string& PasswordChar() const { return password_char_; }
  void SetPasswordChar(std::string v) { password_char_ = std::move(v); }

  //! Inserts one typed character at the caret (replacing the selection) as the clerk's
  //! keystroke does after KeyPress: Backspace deletes, Enter breaks the line in a multi-line
  //! box, control characters are dropped; Locked and MaxLength hold.
  void DefaultKeyPress(int key_ascii) override;
  //! Delete removes the selection or the character after the caret; Home, End, Left and
  //! Right move the caret.
  void DefaultKeyDown(int key_code, int shift) override;
  bool ConsumesKey(int key_code, int shift) const override;

  //! text and value read the text.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! Takes typing and pasted text; a paste replaces the whole text.
  std::string RefuseAction(const Action& action) const override;
  UiResult ApplyAction(const Action& action) override;

 private:
  //! Characters MaxLength leaves for replacing `length` bytes at `start`; -1 when unlimited.
  int Room(int start, int length) const;
  void Replace(int start, int length, const std::string& text, bool fire_events);

  std::string text_;
  int sel_start_ = 0;
  int sel_length_ = 0;
  bool data_changed_ = false;
  bool locked_ = false;
  bool multi_line_ = false;
  int max_length_ = 0;
  std::string password_char_;
};

}  // namespace kiv::ui

// Everything a screen or a record needs from whoever presents it: message boxes, the
// wait cursor, modal showing and the pending-event pump. Tests and front ends supply it.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kiv::ui {

class Form;

//! Message box flags and answers, with the platform's values.
enum MsgBoxStyle : int32_t {
  vbOKOnly = 0,
  vbOKCancel = 1,
  vbAbortRetryIgnore = 2,
  vbYesNoCancel = 3,
  vbYesNo = 4,
  vbRetryCancel = 5,
  vbCritical = 16,
  vbQuestion = 32,
  vbExclamation = 48,
  vbInformation = 64,
  vbDefaultButton1 = 0,
  vbDefaultButton2 = 256,
  vbDefaultButton3 = 512,
};
enum MsgBoxResult : int32_t { vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6, vbNo = 7 };

//! The first button of a box of the given style (what a box answers when nobody is there).
MsgBoxResult FirstButton(int32_t style);
//! The buttons a message box of this style shows, left to right.
std::vector<MsgBoxResult> BoxButtons(int32_t style);
//! The icon of the style: "critical", "question", "exclamation", "information", or empty.
std::string BoxIconName(int32_t style);

class Ui {
 public:
  virtual ~Ui() = default;
  //! Shows a message box and returns the button pressed.
  virtual MsgBoxResult MsgBox(const std::string& prompt, int32_t style, const std::string& title) = 0;
  //! Turns the wait (hourglass) cursor on or off.
  virtual void SetWaitCursor(bool on) = 0;
  //! Shows the form modally and returns when it hides or unloads; `owner` may be null.
  virtual void ShowModal(Form& form, Form* owner) = 0;
  //! Lets pending events run during a long fill; the fill stops when the pump says so.
  virtual void DoEvents() = 0;

  //! How many scoped wait cursors (WaitCursor) are open over this Ui; 0 when none.
  int WaitDepth() const { return wait_depth_; }

 private:
  friend class WaitCursor;
  int wait_depth_ = 0;
};

//! A Ui with nobody in front of it: every box answers its first button, nothing is shown.
class SilentUi : public Ui {
 public:
  MsgBoxResult MsgBox(const std::string&, int32_t style, const std::string&) override { return FirstButton(style); }
  void SetWaitCursor(bool) override {}
  void ShowModal(Form&, Form*) override {}
  void DoEvents() override {}
};

}  // namespace kiv::ui

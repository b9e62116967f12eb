// The Ui that scripts and the interactive mode put in front of the component: message boxes
// take their answers from a queue, and a modal screen is driven by the following lines until
// it hides.
#pragma once
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "ui/ui.h"

namespace kiv::kivcust {

//! One message box as it was shown.
struct ShownBox {
  std::string prompt;
  int32_t style = 0;
  std::string title;
  ui::MsgBoxResult answer = ui::vbOK;
};

//! Prints a box as the clerk would see it: title, text and buttons.
std::string DescribeBox(const ShownBox& box);

//! Parses "Yes", "No", "OK", "Cancel", "Abort", "Retry", "Ignore" (any case).
std::optional<ui::MsgBoxResult> AnswerFromText(const std::string& text);
std::string AnswerText(ui::MsgBoxResult answer);
//! Does a box of this style have that button.
bool StyleHasButton(int32_t style, ui::MsgBoxResult answer);

//! Whoever runs the statements: drives a modal form, and answers a box nobody queued an
//! answer for (a script fails; the interactive mode asks at the prompt).
class ModalDriver {
 public:
  virtual ~ModalDriver() = default;
  //! Runs statements against `form` until it hides (or the run ends, which hides it).
  virtual void DriveModal(ui::Form& form) = 0;
  //! The answer to a box that the queue cannot answer (`reason` says why); nullopt fails the run.
  virtual std::optional<ui::MsgBoxResult> Unanswered(const ShownBox& box, const std::string& reason) = 0;
};

class ScriptUi : public ui::Ui {
 public:
  void SetDriver(ModalDriver* driver) { driver_ = driver; }

  ui::MsgBoxResult MsgBox(const std::string& prompt, int32_t style, const std::string& title) override;
  void SetWaitCursor(bool on) override { wait_cursor_ = on; }
  void ShowModal(ui::Form& form, ui::Form* owner) override;
  void DoEvents() override {}

  void QueueAnswer(ui::MsgBoxResult answer) { answers_.push_back(answer); }
  size_t QueuedAnswers() const { return answers_.size(); }
  void ClearAnswers() { answers_.clear(); }
  //! Boxes shown since the last ForgetBoxes (each acting statement starts afresh).
  const std::vector<ShownBox>& RecentBoxes() const { return recent_; }
  void ForgetBoxes() { recent_.clear(); }
  //! The topmost modal form; null when none is showing.
  ui::Form* ActiveForm() const { return stack_.empty() ? nullptr : stack_.back(); }
  size_t ModalDepth() const { return stack_.size(); }
  bool WaitCursor() const { return wait_cursor_; }

 private:
  ModalDriver* driver_ = nullptr;
  std::deque<ui::MsgBoxResult> answers_;
  std::vector<ShownBox> recent_;
  std::vector<ui::Form*> stack_;
  bool wait_cursor_ = false;
};

}  // namespace kiv::kivcust

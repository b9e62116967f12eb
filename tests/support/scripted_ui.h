// The scripted Ui for tests: message-box answers are queued before the code runs and
// every box is recorded; a box nobody answered fails the test. Modal forms are handed to
// a callback the test supplies, and the pending-event pump calls an optional hook.
//
//   auto ui = std::make_shared<ScriptedUi>();
//   ui->Answer(kiv::ui::vbNo);                                   // the next box says No
//   ui->OnModal([](kiv::ui::Form& f) { f.Perform({...}); });    // drives each modal form
//   ... run the code ...
//   ASSERT_EQ(ui->Boxes().size(), 1u);
//   EXPECT_EQ(ui->Boxes()[0].prompt, "Are you sure ...");
#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "ui/form.h"
#include "ui/ui.h"

namespace kiv::test {

class ScriptedUi : public kiv::ui::Ui {
 public:
  struct Box {
    std::string prompt;
    int32_t style = 0;
    std::string title;
    kiv::ui::MsgBoxResult answer = kiv::ui::vbOK;  //!< what the box returned
    bool answered = false;                          //!< false when no answer was queued
  };

  //! Queues the answer to the next unanswered box.
  ScriptedUi& Answer(kiv::ui::MsgBoxResult answer);
  //! Answers queued and not yet used.
  size_t PendingAnswers() const { return answers_.size(); }
  //! Every box shown, in order.
  const std::vector<Box>& Boxes() const { return boxes_; }
  //! Prompts of every box shown, in order.
  std::vector<std::string> Prompts() const;
  //! Forgets the boxes shown so far (queued answers stay).
  void ClearBoxes() { boxes_.clear(); }
  //! When false, a box with no queued answer answers its first button without failing.
  void SetStrict(bool v) { strict_ = v; }

  //! Wait cursor: the current state and how many times it was turned on and off.
  bool WaitCursor() const { return wait_cursor_; }
  int WaitCursorOnCount() const { return wait_on_; }
  int WaitCursorOffCount() const { return wait_off_; }

  //! Called with each form shown modally; without one the modal form returns at once.
  void OnModal(std::function<void(kiv::ui::Form&)> driver) { modal_driver_ = std::move(driver); }
  //! Names of the forms shown modally, in order, and the owner each was shown over ("" for none).
  const std::vector<std::string>& ModalForms() const { return modal_forms_; }
  const std::vector<std::string>& ModalOwners() const { return modal_owners_; }
  //! Called by every DoEvents (a test cancels a long fill from here).
  void OnDoEvents(std::function<void()> hook) { do_events_hook_ = std::move(hook); }
  int DoEventsCount() const { return do_events_count_; }

  kiv::ui::MsgBoxResult MsgBox(const std::string& prompt, int32_t style, const std::string& title) override;
  void SetWaitCursor(bool on) override;
  void ShowModal(kiv::ui::Form& form, kiv::ui::Form* owner) override;
  void DoEvents() override;

 private:
  std::deque<kiv::ui::MsgBoxResult> answers_;
  std::vector<Box> boxes_;
  bool strict_ = true;
  bool wait_cursor_ = false;
  int wait_on_ = 0;
  int wait_off_ = 0;
  std::function<void(kiv::ui::Form&)> modal_driver_;
  std::vector<std::string> modal_forms_;
  std::vector<std::string> modal_owners_;
  std::function<void()> do_events_hook_;
  int do_events_count_ = 0;
};

}  // namespace kiv::test

// The scripted Ui: queued message-box answers, a record of every box, modal forms handed
// to the test, and a hook in the pending-event pump.
#include "support/scripted_ui.h"

#include <gtest/gtest.h>

namespace kiv::test {

ScriptedUi& ScriptedUi::Answer(kiv::ui::MsgBoxResult answer) {
  answers_.push_back(answer);
  return *this;
}

std::vector<std::string> ScriptedUi::Prompts() const {
  std::vector<std::string> out;
  out.reserve(boxes_.size());
  for (const Box& b : boxes_) out.push_back(b.prompt);
  return out;
}

kiv::ui::MsgBoxResult ScriptedUi::MsgBox(const std::string& prompt, int32_t style, const std::string& title) {
  Box box{prompt, style, title, kiv::ui::FirstButton(style), false};
  if (!answers_.empty()) {
    box.answer = answers_.front();
    box.answered = true;
    answers_.pop_front();
  } else if (strict_) {
    ADD_FAILURE() << "message box with no queued answer: \"" << prompt << "\" titled \"" << title
                  << "\" (style " << style << ")";
  }
  boxes_.push_back(box);
  return box.answer;
}

void ScriptedUi::SetWaitCursor(bool on) {
  wait_cursor_ = on;
  (on ? wait_on_ : wait_off_) += 1;
}

void ScriptedUi::ShowModal(kiv::ui::Form& form, kiv::ui::Form* owner) {
  modal_forms_.push_back(form.Name());
  modal_owners_.push_back(owner != nullptr ? owner->Name() : std::string());
  if (!modal_driver_) return;
  auto driver = modal_driver_;  // the driver may show further forms, or replace itself
  driver(form);
}

void ScriptedUi::DoEvents() {
  ++do_events_count_;
  if (!do_events_hook_) return;
  auto hook = do_events_hook_;
  hook();
}

}  // namespace kiv::test

// Message boxes answered from the queue (or refused), and modal forms handed to the driver.
#include "apps/kivcust/script_ui.h"

#include <algorithm>
#include <cctype>

#include "ui/form.h"

namespace kiv::kivcust {
namespace {

struct Button {
  ui::MsgBoxResult answer;
  const char* text;
};
constexpr Button kButtons[] = {{ui::vbOK, "OK"},       {ui::vbCancel, "Cancel"}, {ui::vbAbort, "Abort"},
                               {ui::vbRetry, "Retry"}, {ui::vbIgnore, "Ignore"}, {ui::vbYes, "Yes"},
                               {ui::vbNo, "No"}};

//! What a box answers when the run fails on it: the harmless way out, never a Yes.
ui::MsgBoxResult SafeAnswer(int32_t style) {
  auto buttons = ui::BoxButtons(style);
  for (auto safe : {ui::vbCancel, ui::vbNo, ui::vbOK, ui::vbAbort})
    if (std::find(buttons.begin(), buttons.end(), safe) != buttons.end()) return safe;
  return buttons.front();
}

}  // namespace

std::optional<ui::MsgBoxResult> AnswerFromText(const std::string& text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
  for (const auto& b : kButtons) {
    std::string name(b.text);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    if (name == lower) return b.answer;
  }
  return std::nullopt;
}

std::string AnswerText(ui::MsgBoxResult answer) {
  for (const auto& b : kButtons)
    if (b.answer == answer) return b.text;
  return "?";
}

bool StyleHasButton(int32_t style, ui::MsgBoxResult answer) {
  auto buttons = ui::BoxButtons(style);
  return std::find(buttons.begin(), buttons.end(), answer) != buttons.end();
}

std::string DescribeBox(const ShownBox& box) {
  std::string icon = ui::BoxIconName(box.style);
  if (icon.empty()) icon = "no icon";
  auto buttons = ui::BoxButtons(box.style);
  size_t default_index = static_cast<size_t>((box.style & 0xF00) >> 8);
  std::string text = "message box \"" + box.title + "\" (" + icon + "): \"" + box.prompt + "\" [";
  for (size_t i = 0; i < buttons.size(); ++i) {
    if (i > 0) text += " ";
    text += AnswerText(buttons[i]);
    if (i == default_index) text += "*";
  }
  return text + "]";
}

ui::MsgBoxResult ScriptUi::MsgBox(const std::string& prompt, int32_t style, const std::string& title) {
  ShownBox box{prompt, style, title, ui::vbOK};
  std::string problem = "a message box appeared with no answer queued";
  if (!answers_.empty()) {
    ui::MsgBoxResult queued = answers_.front();
    answers_.pop_front();
    if (StyleHasButton(style, queued)) {
      box.answer = queued;
      recent_.push_back(box);
      return box.answer;
    }
    problem = "the queued answer " + AnswerText(queued) + " is not a button of the message box";
  }
  std::optional<ui::MsgBoxResult> answer = driver_ != nullptr ? driver_->Unanswered(box, problem) : std::nullopt;
  box.answer = answer.value_or(SafeAnswer(style));
  recent_.push_back(box);
  return box.answer;
}

void ScriptUi::ShowModal(ui::Form& form, ui::Form* /*owner*/) {
  stack_.push_back(&form);
  if (driver_ != nullptr) driver_->DriveModal(form);
  // Nobody to drive it: a modal form cannot stay up, so it is hidden as a close would.
  if (form.Visible()) form.Hide();
  stack_.pop_back();
}

}  // namespace kiv::kivcust

// The scripted Ui that screen tests rely on: queued answers, the record of boxes, and the
// failure of a box nobody answered.
#include "support/scripted_ui.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace kiv::test {
namespace {

using kiv::ui::vbInformation;
using kiv::ui::vbQuestion;
using kiv::ui::vbYesNo;

TEST(ScriptedUiTest, AnswersAreUsedInOrderAndEveryBoxIsRecorded) {
  ScriptedUi ui;
  ui.Answer(kiv::ui::vbNo).Answer(kiv::ui::vbYes);
  EXPECT_EQ(ui.MsgBox("First?", vbYesNo | vbQuestion, "One"), kiv::ui::vbNo);
  EXPECT_EQ(ui.MsgBox("Second?", vbYesNo, "Two"), kiv::ui::vbYes);
  ASSERT_EQ(ui.Boxes().size(), 2u);
  EXPECT_EQ(ui.Boxes()[0].style, vbYesNo | vbQuestion);
  EXPECT_EQ(ui.Boxes()[1].title, "Two");
  EXPECT_EQ(ui.Prompts(), (std::vector<std::string>{"First?", "Second?"}));
  EXPECT_EQ(ui.PendingAnswers(), 0u);
}

TEST(ScriptedUiTest, ABoxWithNoQueuedAnswerFailsTheTestAndAnswersItsFirstButton) {
  ScriptedUi ui;
  kiv::ui::MsgBoxResult answer = kiv::ui::vbCancel;
  EXPECT_NONFATAL_FAILURE(answer = ui.MsgBox("Nobody expected me", vbYesNo, "Surprise"), "Nobody expected me");
  EXPECT_EQ(answer, kiv::ui::vbYes);
  EXPECT_FALSE(ui.Boxes().at(0).answered);
  ui.SetStrict(false);
  EXPECT_EQ(ui.MsgBox("Tolerated", vbInformation, ""), kiv::ui::vbOK);
}

TEST(ScriptedUiTest, CursorAndPumpAreCounted) {
  ScriptedUi ui;
  int hooked = 0;
  ui.OnDoEvents([&] { ++hooked; });
  ui.SetWaitCursor(true);
  ui.DoEvents();
  ui.DoEvents();
  ui.SetWaitCursor(false);
  EXPECT_FALSE(ui.WaitCursor());
  EXPECT_EQ(ui.WaitCursorOnCount(), 1);
  EXPECT_EQ(ui.WaitCursorOffCount(), 1);
  EXPECT_EQ(ui.DoEventsCount(), 2);
  EXPECT_EQ(hooked, 2);
}

}  // namespace
}  // namespace kiv::test

// The history log over the scripted host: nothing read until the box is ticked, the first
// question only above a hundred records, the pause after 99 rows (the header counts) and
// each Cancel keeping what is shown.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/history_log_page.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

const std::string kGetHistory = "KIV_SP_CUSTOMER_GetHistory";

struct HistoryRig : DetailRig {
  explicit HistoryRig(int records) {
    auto builder = host.OnProcedure(kGetHistory);
    for (int i = 1; i <= records; ++i)
      builder.Row({{"log_datetime", Date::FromParts(2026, 1, 2, 14, 5, 0)}, {"access_no", 7},
                   {"control_id", "LIFT" + std::to_string(i)}, {"trans_type_id", "SCAN"}, {"status_id", "OK"},
                   {"Units", 1}, {"post_amount", -12.5}, {"response_type", "OK"}, {"response_text", "WELCOME"}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "5");
  }
  ui::CheckBox& Box() const { return *screen->FindAs<ui::CheckBox>("ckbShowHistoryLog"); }
  void Tick() { Do(ActionKind::Click, "ckbShowHistoryLog"); }
  int Shown() const { return screen->grdMaster.Rows() - screen->grdMaster.FixedRows(); }
};

TEST(HistoryLogPage, ReadsNothingUntilTheBoxIsTickedAndShowsEachRecordsCells) {
  HistoryRig rig(3);
  EXPECT_TRUE(rig.Box().Visible());
  EXPECT_EQ(rig.Box().Caption(), "Show History Log");
  EXPECT_TRUE(rig.host.db->Executions(kGetHistory).empty());
  rig.Tick();
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_EQ(rig.host.db->AssignedValue(kGetHistory, "@customer_no"), Variant(42));
  const ui::Grid& grid = rig.screen->grdMaster;
  EXPECT_EQ(grid.FormatString(), HistoryLogPage::kHistoryFormat);
  ASSERT_EQ(rig.Shown(), 3);
  EXPECT_EQ(grid.TextMatrix(1, 0), "01/02/2026 02:05 PM");
  EXPECT_EQ(grid.TextMatrix(1, 6), "($12.50)");
  EXPECT_EQ(grid.TextMatrix(1, 7), "OK:WELCOME");
  rig.Tick();
  EXPECT_EQ(rig.Shown(), 0) << "unticked, only the header";
  rig.Do(ActionKind::Click, "tabCustomer", "4");
  EXPECT_FALSE(rig.Box().Visible());
}

TEST(HistoryLogPage, OnlyAboveAHundredIsTheFirstQuestionAskedAndTheHeaderCountsTowardsAPause) {
  // No first question for a hundred, yet the header row makes the pause come after 99.
  HistoryRig hundred(100);
  hundred.ui->Answer(ui::vbOK);
  hundred.Tick();
  EXPECT_EQ(hundred.ui->Prompts(), (std::vector<std::string>{HistoryLogPage::NextQuestion(1)}));
  EXPECT_EQ(hundred.Shown(), 100);

  HistoryRig ninety_nine(99);
  ninety_nine.Tick();
  EXPECT_TRUE(ninety_nine.ui->Boxes().empty()) << "nothing is left when the grid reaches a hundred rows";
  EXPECT_EQ(ninety_nine.Shown(), 99);

  HistoryRig more(101);
  more.ui->Answer(ui::vbCancel);
  more.Tick();
  ASSERT_EQ(more.ui->Boxes().size(), 1u);
  EXPECT_EQ(more.ui->Boxes()[0].prompt, HistoryLogPage::FirstQuestion(101));
  EXPECT_EQ(more.ui->Boxes()[0].prompt, "101 History Records found.\r\nOK - load the first 100 records\r\nCancel");
  EXPECT_EQ(more.ui->Boxes()[0].title, "Results Over Limit");
  EXPECT_EQ(more.ui->Boxes()[0].style, ui::vbOKCancel | ui::vbQuestion | ui::vbDefaultButton2);
  EXPECT_EQ(more.Shown(), 0) << "Cancel loads nothing";
}

TEST(HistoryLogPage, PausesAfterNinetyNineRowsThenEveryHundred) {
  HistoryRig rig(250);
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK).Answer(ui::vbCancel);
  rig.Tick();
  EXPECT_EQ(rig.ui->Prompts(),
            (std::vector<std::string>{
                HistoryLogPage::FirstQuestion(250),
                "151 History Records left.\r\nOK - load the next 100 or fewer records\r\nCancel",
                HistoryLogPage::NextQuestion(51)}));
  EXPECT_EQ(rig.Shown(), 199) << "Cancel at the third question keeps what is shown";

  rig.ui->ClearBoxes();
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK).Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdRefresh");
  EXPECT_EQ(rig.ui->Boxes().size(), 3u);
  EXPECT_EQ(rig.Shown(), 250);
}

}  // namespace
}  // namespace kiv

// The merge screen over the scripted host: customers loaded as their fields are left, the
// summaries, the checks and both confirmations in their order and wording, and the
// procedure's values by position with its return-value rule.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "frm_find_rig.h"
#include "screens/dedup/frm_de_dup.h"

namespace kiv {
namespace {

using test::CustomerRow;
using test::ParamSpec;
using ui::ActionKind;

const std::string kMerge = "SP_CUSTOMER_DEDUP";
const std::vector<ParamSpec> kWithReturn{"@RETURN_VALUE", "@old_customer_no", "@new_customer_no", test::Out("@message")};

test::Cells Named(test::Cells row, const std::string& full_name) {
  for (auto& cell : row)
    if (cell.first == "full_name") cell.second = Variant(full_name);
  return row;
}

struct DeDupRig {
  test::FindRig find;
  frmDeDup screen;

  explicit DeDupRig(std::vector<ParamSpec> params = kWithReturn, const Variant& result = Variant(0),
                    const Variant& message = Variant("")) {
    // Customers open in the order their numbers are entered.
    test::Cells from = Named(CustomerRow(31, "GREEN"), "NCIOLE GREEN");
    test::Cells to = Named(CustomerRow(7, "GREEN"), "NICOLE GREEN");
    find.host.OnProcedure("KIV_SP_GetCustomer").Once().Row(from);
    find.host.OnProcedure("KIV_SP_GetCustomer").Once().Row(to);
    find.host.OnProcedure(kMerge).Params(std::move(params)).ReturnValue(result).Outputs({{"@message", message}});
    screen.SetUi(find.ui);
    screen.SetDBConnection(find.host.db);
    screen.SetErrorObject(find.host.errors);
    screen.SetCustomerEngine(&find.engine);
    screen.Load();
    screen.Show();
  }
  void Do(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen.Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << control << " " << text << ": " << r.error;
  }
  void Enter(const std::string& field, const std::string& text) {
    Do(ActionKind::Type, field, text);
    Do(ActionKind::Key, field, "Enter");
  }
  void LoadBoth() {
    Enter("txtFromCustomer", "31");
    Enter("txtToCustomer", "7");
  }
  std::vector<std::string> Prompts() const { return find.ui->Prompts(); }
  size_t Merges() const { return find.host.db->Executions(kMerge).size(); }
};

TEST(DeDup, EnterMovesOnAndLoadsTheCustomerWithItsSixLineSummary) {
  DeDupRig rig;
  EXPECT_EQ(rig.screen.Caption(), "Merge Customer");
  rig.Enter("txtFromCustomer", "31");
  EXPECT_EQ(rig.screen.ActiveControl(), &rig.screen.txtToCustomer) << "Enter acts as Tab";
  EXPECT_EQ(rig.screen.txtFromCustomer.Text(), "31") << "the Enter itself is swallowed";
  ASSERT_NE(rig.screen.FromCustomer(), nullptr);
  EXPECT_EQ(rig.screen.txtFromCustomerInfo.Text(),
            "CustomerNo: 31\r\nFullName: NCIOLE GREEN\r\nGender: \r\nDOB: 12:00:00 AM\r\nCompanyName: \r\nZip: ");
  EXPECT_GE(rig.find.ui->WaitCursorOnCount(), 1) << "the hourglass while it loads";
  EXPECT_FALSE(rig.find.ui->WaitCursor());
}

TEST(DeDup, TextThatIsNotANumberLoadsNothingAndKeepsTheSummary) {
  DeDupRig rig;
  rig.Enter("txtFromCustomer", "31");
  const std::string summary = rig.screen.txtFromCustomerInfo.Text();
  for (const char* text : {"3x", "abc", "-4", ""}) {
    rig.Do(ActionKind::Paste, "txtFromCustomer", text);
    rig.Do(ActionKind::Focus, "txtFromCustomer");
    rig.Do(ActionKind::Focus, "txtToCustomer");
    EXPECT_EQ(rig.screen.txtFromCustomerInfo.Text(), summary) << text;
    EXPECT_EQ(rig.screen.FromCustomer()->CustomerNo(), 31) << text;
  }
  EXPECT_EQ(rig.find.host.db->Executions("KIV_SP_GetCustomer").size(), 1u);
}

TEST(DeDup, MissingCustomersAreRefusedBeforeAnyQuestion) {
  DeDupRig rig;
  rig.find.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdOK");
  rig.Enter("txtFromCustomer", "31");
  rig.find.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdOK");
  // The second look at the "to" customer never shows a second box.
  EXPECT_EQ(rig.Prompts(), (std::vector<std::string>{"Invalid For Customer", "Invalid To Customer"}));
  EXPECT_EQ(rig.find.ui->Boxes()[1].style, ui::vbOKOnly);
  EXPECT_EQ(rig.Merges(), 0u);
  EXPECT_TRUE(rig.screen.Visible());
}

TEST(DeDup, BothConfirmationsAreAskedAndOnlyYesToBothMerges) {
  struct Case {
    std::vector<ui::MsgBoxResult> answers;
    size_t boxes;
    size_t merges;
  };
  for (const Case& c : {Case{{ui::vbNo}, 1, 0}, Case{{ui::vbYes, ui::vbNo}, 2, 0}, Case{{ui::vbYes, ui::vbYes}, 2, 1}}) {
    DeDupRig rig;
    rig.LoadBoth();
    for (auto answer : c.answers) rig.find.ui->Answer(answer);
    rig.Do(ActionKind::Click, "cmdOK");
    ASSERT_EQ(rig.find.ui->Boxes().size(), c.boxes);
    EXPECT_EQ(rig.Merges(), c.merges);
    EXPECT_EQ(rig.screen.Visible(), c.merges == 0);
    const auto& first = rig.find.ui->Boxes()[0];
    EXPECT_EQ(first.prompt, "Are you Sure you want Merge these two customers?");
    EXPECT_EQ(first.title, "Confirm Merge of customers");
    EXPECT_EQ(first.style, 292);
    if (c.boxes < 2) continue;
    const auto& second = rig.find.ui->Boxes()[1];
    EXPECT_EQ(second.prompt,
              "Are you really really sure you want Merge these two customers?\r\nThis action cannot be undone!");
    EXPECT_EQ(second.title, "Confirm Merge of customers");
    EXPECT_EQ(second.style, 292);
  }
}

TEST(DeDup, TheCustomersGoByPositionWhateverTheServerCallsThem) {
  for (const auto& params : {kWithReturn, std::vector<ParamSpec>{"@from", "@to", test::Out("@message")}}) {
    DeDupRig rig(params);
    rig.LoadBoth();
    rig.find.ui->Answer(ui::vbYes).Answer(ui::vbYes);
    rig.Do(ActionKind::Click, "cmdOK");
    const auto sent = rig.find.host.AssignmentsOf(kMerge);
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent[0].value, Variant(31));
    EXPECT_EQ(sent[1].value, Variant(7));
  }
}

TEST(DeDup, ARefusalOrANullReturnValueIsAFailureUnderItsTitle) {
  struct Case {
    Variant result;
    Variant message;
    std::string shown;
  };
  for (const Case& c : {Case{Variant(-1), Variant("A customer cannot be merged into itself."),
                             "A customer cannot be merged into itself."},
                        Case{Variant::Null(), Variant::Null(), ""}}) {
    DeDupRig rig(kWithReturn, c.result, c.message);
    rig.LoadBoth();
    rig.find.ui->Answer(ui::vbYes).Answer(ui::vbYes).Answer(ui::vbOK);
    rig.Do(ActionKind::Click, "cmdOK");
    ASSERT_EQ(rig.find.ui->Boxes().size(), 3u);
    EXPECT_EQ(rig.find.ui->Boxes()[2].prompt, c.shown);
    EXPECT_EQ(rig.find.ui->Boxes()[2].title, "Error DeDuping Customer");
    EXPECT_EQ(rig.find.ui->Boxes()[2].style, ui::vbInformation);
    EXPECT_FALSE(rig.screen.Merged());
    EXPECT_TRUE(rig.screen.Visible()) << "the screen stays open with both customers";
    EXPECT_NE(rig.screen.ToCustomer(), nullptr);
  }
  // A zero return value, even with a message, is success.
  DeDupRig ok(kWithReturn, Variant(0), Variant("merged"));
  ok.LoadBoth();
  ok.find.ui->Answer(ui::vbYes).Answer(ui::vbYes);
  ok.Do(ActionKind::Click, "cmdOK");
  EXPECT_TRUE(ok.screen.Merged());
  EXPECT_EQ(ok.find.ui->Boxes().size(), 2u);
}

TEST(DeDup, AMergeFromTheSearchScreenForgetsEveryCachedCustomer) {
  for (bool yes : {false, true}) {
    test::FindRig rig;
    rig.host.OnProcedure("KIV_SP_GetCustomer").Once().Row(CustomerRow(31));
    rig.host.OnProcedure("KIV_SP_GetCustomer").Once().Row(CustomerRow(7));
    rig.host.OnProcedure(kMerge).Params(kWithReturn).ReturnValue(0);
    size_t cached_before_closing = 0;
    rig.ui->OnModal([&](ui::Form& form) {
      ASSERT_EQ(form.Name(), "frmDeDup");
      for (const char* step : {"txtFromCustomer=31", "txtToCustomer=7"}) {
        std::string field(step, std::string(step).find('='));
        form.Perform(ui::Action{ActionKind::Type, field, std::string(step).substr(field.size() + 1), {}, 0});
        form.Perform(ui::Action{ActionKind::Key, field, "Enter", {}, 0});
      }
      cached_before_closing = rig.engine.CacheCount();
      rig.ui->Answer(ui::vbYes).Answer(yes ? ui::vbYes : ui::vbNo);
      form.Perform(ui::Action{ActionKind::Click, "cmdOK", {}, {}, 0});
      if (form.Visible()) form.Perform(ui::Action{ActionKind::Click, "cmdCancel", {}, {}, 0});
    });
    rig.screen->open_dedup = [](frmFind& owner) { ComponentScreens::ShowDeDup(owner); };
    rig.Open();
    rig.Do(ActionKind::Click, "mnuDeDup");
    EXPECT_EQ(rig.ui->ModalForms(), std::vector<std::string>{"frmDeDup"});
    EXPECT_EQ(cached_before_closing, 2u) << "the two customers came through the engine";
    // A survivor kept from before the merge, saved later, would undo what the merge moved.
    EXPECT_EQ(rig.engine.CacheCount(), yes ? 0u : 2u) << (yes ? "merged" : "not merged");
  }
}

}  // namespace
}  // namespace kiv

// The engine's search entries driving the search screen: what SelectCustomer returns when
// the clerk cancels, closes without a choice or chooses, that the shared screen keeps its
// criteria and a spawned one leaves it alone, and that browsing never returns a customer.
#include <gtest/gtest.h>

#include "frm_find_rig.h"

namespace kiv {
namespace {

using test::CustomerRow;
using test::FindRig;
using test::SearchRow;

ui::UiResult Act(ui::Form& form, ui::ActionKind kind, const std::string& control, const std::string& text = {}) {
  ui::UiResult r = form.Perform(ui::Action{kind, control, text, {}, 0});
  EXPECT_TRUE(r.ok) << control << ": " << r.error;
  return r;
}

//! Finds last name "S" and chooses the first row.
void FindAndChoose(ui::Form& form) {
  Act(form, ui::ActionKind::Paste, "txtLastName", "S");
  Act(form, ui::ActionKind::Click, "cmdFind");
  form.Perform(ui::Action{ui::ActionKind::Select, "fxgCustomers", {}, {1}, 0});
  Act(form, ui::ActionKind::Click, "cmdOk");
}

TEST(SelectCustomer, CancelledReturnsNoneAndClosedWithoutAChoiceAnEmptyCustomer) {
  FindRig rig;
  rig.engine.SetFiscalYear(2026);
  rig.ui->OnModal([](ui::Form& form) { Act(form, ui::ActionKind::Click, "cmdCancel"); });
  CCustEngine::SelectCustomerArgs cancelled;
  EXPECT_EQ(rig.engine.SelectCustomer(cancelled), nullptr);
  EXPECT_TRUE(cancelled.bError);

  rig.ui->OnModal([](ui::Form& form) { Act(form, ui::ActionKind::Close, ""); });
  CCustEngine::SelectCustomerArgs closed;
  std::shared_ptr<CCustomer> empty = rig.engine.SelectCustomer(closed);
  ASSERT_NE(empty, nullptr);
  EXPECT_TRUE(closed.bError);
  EXPECT_EQ(empty->CustomerNo(), 0);
  EXPECT_EQ(empty->FiscalYear(), 2026);
  EXPECT_TRUE(rig.engine.SearchScreen()->Loaded());  // the shared screen stays for the next pick
}

TEST(SelectCustomer, AChosenCustomerIsReturnedCachedAndTheSharedScreenKeepsItsCriteria) {
  FindRig rig;
  rig.Search(1).Row(SearchRow(5, "P", "SMITH"));
  rig.host.OnProcedure("KIV_SP_GetCustomer").Row(CustomerRow(5));
  rig.ui->OnModal(FindAndChoose);
  auto other_db = std::make_shared<test::ScriptedConnection>();
  CCustEngine::SelectCustomerArgs args;
  args.sGroupId = "";
  std::shared_ptr<CCustomer> chosen = rig.engine.SelectCustomer(args);
  ASSERT_NE(chosen, nullptr);
  EXPECT_FALSE(args.bError);
  EXPECT_EQ(chosen->CustomerNo(), 5);
  EXPECT_EQ(rig.engine.CachedCustomer(5), chosen);
  EXPECT_EQ(args.oDB, rig.host.db);  // the caller's argument receives the engine's connection

  std::string kept;
  rig.ui->OnModal([&kept](ui::Form& form) {
    kept = form.Query("txtLastName", "text").value;
    Act(form, ui::ActionKind::Click, "cmdCancel");
  });
  rig.engine.SelectCustomer();
  EXPECT_EQ(kept, "S");

  CCustEngine::SelectCustomerArgs spawned;
  spawned.bSpawnNew = true;
  spawned.sDefaultTab = "Company";
  std::string spawned_tab;
  rig.ui->OnModal([&](ui::Form& form) {
    kept = form.Query("txtLastName", "text").value;
    spawned_tab = form.Query("tabFind", "selected").value;
    Act(form, ui::ActionKind::Click, "cmdCancel");
  });
  rig.engine.SelectCustomer(spawned);
  EXPECT_EQ(kept, "");
  EXPECT_EQ(spawned_tab, "Company");
  EXPECT_EQ(dynamic_cast<frmFind&>(*rig.engine.SearchScreen()).txtLastName.Text(), "S");
}

TEST(SelectCustomer, TheSharedScreenIsUnloadedWithTheEngine) {
  FindRig rig;
  rig.ui->OnModal([](ui::Form& form) { Act(form, ui::ActionKind::Click, "cmdCancel"); });
  {
    CCustEngine engine;
    engine.SetUi(rig.ui);
    InstallComponentScreens(engine);
    engine.SetAppServer(rig.host.app);
    engine.SelectCustomer();
    EXPECT_FALSE(rig.host.settings->Stored("AppData", "Customer", "Top").has_value());
  }
  EXPECT_EQ(rig.host.settings->Stored("AppData", "Customer", "Top"), "0");
}

TEST(SelectCustomer, BrowsingShowsOverTheParentAndNeverReturnsACustomer) {
  FindRig rig;
  rig.Search(1).Row(SearchRow(5, "P", "SMITH"));
  rig.host.OnProcedure("KIV_SP_GetCustomer").Row(CustomerRow(5));
  rig.ui->OnModal(FindAndChoose);
  ui::Form parent("frmHost");
  CCustEngine::ShowSearchCustomerArgs args;
  args.ParentForm = &parent;
  EXPECT_EQ(rig.engine.ShowSearchCustomer(args), nullptr);
  EXPECT_EQ(rig.ui->ModalOwners(), (std::vector<std::string>{"frmHost"}));
  EXPECT_FALSE(rig.engine.SearchScreen()->Loaded());
  EXPECT_EQ(rig.host.settings->Stored("AppData", "Customer", "Width"), "11280");
}

}  // namespace
}  // namespace kiv

// The search screen's commands on the current row: OK only on a data row with a number,
// the customer that cannot be opened, the account right, related rows, and Add through
// the editor hook.
#include <gtest/gtest.h>

#include "frm_find_rig.h"

namespace kiv {
namespace {

using test::CustomerRow;
using test::FindRig;
using test::SearchRow;
using ui::ActionKind;
constexpr const char* kNotAccessible = "Customer could not be accessed at this time";

//! A screen listing customers 5 and 6 (found by last name "S").
void ListTwo(FindRig& rig) {
  rig.Search(2).Row(SearchRow(5, "P", "SMITH")).Row(SearchRow(6, "P", "STONE"));
  rig.Open();
  rig.Do(ActionKind::Paste, "txtLastName", "S");
  rig.Do(ActionKind::Click, "cmdFind");
}

TEST(FindCommands, OkChoosesOnlyADataRowThatCarriesACustomerNumber) {
  FindRig rig;
  rig.host.OnProcedure("KIV_SP_GetCustomer").Row(CustomerRow(6));
  ListTwo(rig);
  ui::Grid& grid = rig.screen->fxgCustomers;
  grid.SetRow(0);
  rig.Do(ActionKind::Click, "cmdOk");
  grid.AddItem("NOBODY");
  grid.SelectRows({3});
  rig.Do(ActionKind::Click, "cmdOk");
  EXPECT_TRUE(rig.screen->Visible());
  EXPECT_TRUE(rig.host.db->Executions("KIV_SP_GetCustomer").empty());

  grid.SelectRows({2});
  rig.Do(ActionKind::Click, "cmdOk");
  EXPECT_FALSE(rig.screen->Visible());
  EXPECT_FALSE(rig.screen->Cancelled());
  ASSERT_NE(rig.screen->SelectedCustomer(), nullptr);
  EXPECT_EQ(rig.screen->SelectedCustomer()->CustomerNo(), 6);
}

TEST(FindCommands, ACustomerThatCannotBeOpenedIsReportedAndNothingOpens) {
  FindRig rig;  // KIV_SP_GetCustomer answers no row
  ListTwo(rig);
  bool opened = false;
  rig.screen->open_detail = [&](frmFind&, const std::shared_ptr<CCustomer>&) {
    opened = true;
    return DetailOutcome{};
  };
  rig.screen->open_account_info = [&](frmFind&, const std::shared_ptr<CCustomer>&) { opened = true; };
  rig.screen->fxgCustomers.SelectRows({1});
  for (const char* command : {"cmdOk", "mnuCustomerDetails", "mnuAccountInfo"}) {
    rig.ui->Answer(ui::vbOK);
    rig.Do(ActionKind::Click, command);
  }
  EXPECT_EQ(rig.ui->Prompts(), (std::vector<std::string>(3, kNotAccessible)));
  EXPECT_FALSE(opened);
  EXPECT_TRUE(rig.screen->Visible());
}

TEST(FindCommands, AccountInformationNeedsTheAccountRight) {
  FindRig rig;
  rig.host.OnProcedure("KIV_SP_GetCustomer").Row(CustomerRow(5));
  rig.host.app->Grant("CUSTACTEDIT", false);
  rig.engine.SetAppServer(rig.host.app);
  ListTwo(rig);
  std::vector<int32_t> opened_for;
  rig.screen->open_account_info = [&](frmFind&, const std::shared_ptr<CCustomer>& c) {
    opened_for.push_back(c->CustomerNo());
  };
  rig.screen->fxgCustomers.SelectRows({1});
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "mnuAccountInfo");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Security Access Required");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Edit Account Canceled");
  EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbInformation);
  EXPECT_TRUE(opened_for.empty());

  rig.host.app->Grant("CUSTACTEDIT");
  rig.engine.SetAppServer(rig.host.app);
  rig.Do(ActionKind::Click, "mnuAccountInfo");
  EXPECT_EQ(opened_for, (std::vector<int32_t>{5}));
}

TEST(FindCommands, ExpandingARowListsItsRelatedCustomersBelowItOnce) {
  FindRig rig;
  rig.engine.SetFiscalYear(2026);
  test::Cells spouse = SearchRow(8, "P", "SMITH"), child = SearchRow(9, "P", "SMITH");
  spouse.push_back({"rel_type_id", "SPOUSE"});
  child.push_back({"rel_type_id", "CHILD"});
  rig.host.OnProcedure("KIV_SP_GetCustomerRelationships").Row(spouse).Row(child);
  ListTwo(rig);
  ui::Grid& grid = rig.screen->fxgCustomers;
  ASSERT_TRUE(grid.ToggleOutline(1).empty());

  ASSERT_EQ(rig.host.db->Executions("KIV_SP_GetCustomerRelationships").size(), 1u);
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_GetCustomerRelationships", "@customer_no").ToLong(), 5);
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_GetCustomerRelationships", "@fiscal_year").ToLong(), 2026);
  ASSERT_EQ(grid.Rows(), 5);
  EXPECT_EQ(grid.TextMatrix(2, frmFind::kColRelation), "SPOUSE");
  EXPECT_EQ(grid.TextMatrix(3, frmFind::kColCustNo), "9");
  EXPECT_EQ(grid.TextMatrix(4, frmFind::kColCustNo), "6");  // the next search row moved down
  EXPECT_TRUE(grid.RowShown(3));

  grid.ToggleOutline(1);
  EXPECT_FALSE(grid.RowShown(3));
  grid.ToggleOutline(1);
  EXPECT_TRUE(grid.RowShown(3));
  EXPECT_EQ(rig.host.db->Executions("KIV_SP_GetCustomerRelationships").size(), 1u);
}

TEST(FindCommands, AddStartsFromTheCriteriaAndListsTheCustomerUnlessTheEditorWasCancelled) {
  FindRig rig;
  ListTwo(rig);
  std::vector<std::shared_ptr<CCustomer>> edited;
  DetailOutcome outcome{true, false};
  rig.screen->open_detail = [&](frmFind&, const std::shared_ptr<CCustomer>& c) {
    edited.push_back(c);
    if (!outcome.UserCanceled) c->SetCustomerNo(77);
    return outcome;
  };
  rig.Do(ActionKind::Paste, "txtFirstName", " ANN ");
  rig.Do(ActionKind::Click, "tabFind", "Company");
  rig.Do(ActionKind::Paste, "txtCompanyName", "  ACME  ");
  rig.Do(ActionKind::Click, "mnuAdd");
  outcome.UserCanceled = false;
  rig.Do(ActionKind::Click, "mnuAdd");

  ASSERT_EQ(edited.size(), 2u);
  EXPECT_TRUE(edited[0]->IsNewCustomer());
  EXPECT_EQ(edited[0]->CustomerType(), "C");  // a company name makes a company, whatever else was typed
  EXPECT_EQ(edited[0]->CompanyName(), "ACME");
  EXPECT_EQ(edited[0]->FullName(), "ACME");
  ASSERT_EQ(rig.screen->fxgCustomers.Rows(), 4);  // one row: the first Add was cancelled
  EXPECT_EQ(rig.screen->fxgCustomers.TextMatrix(3, frmFind::kColName), "ACME");
  EXPECT_EQ(rig.screen->fxgCustomers.TextMatrix(3, frmFind::kColCustNo), "77");
  EXPECT_EQ(rig.Panel("DISPLAY"), "Displaying 3 Record(s)");
}

}  // namespace
}  // namespace kiv

// The search screen over the scripted host: what each tab sends to the search procedure and
// when a search is refused, paging and its status texts, the numeric fields, the view
// options kept per user, and the commands on the current row.
#include "screens/search/frm_find.h"

#include <gtest/gtest.h>

#include "frm_find_rig.h"

namespace kiv {
namespace {

using test::FindRig;
using test::SearchRow;
using ui::ActionKind;
constexpr const char* kNoCriteria = "You must specify a search criteria before running a search.";

TEST(FindCriteria, ASearchCarriesNothingOverFromTheTabSearchedBefore) {
  FindRig rig;
  rig.Search(0);
  rig.Open();
  rig.Do(ActionKind::Click, "tabFind", "Company");
  rig.Do(ActionKind::Paste, "txtCompanyName", "ACME");
  rig.Do(ActionKind::Click, "cmdFind");
  rig.Do(ActionKind::Click, "tabFind", "Person");
  rig.Do(ActionKind::Paste, "txtLastName", "  O'NEIL% ");
  rig.Do(ActionKind::Paste, "txtFirstName", "   ");
  rig.Do(ActionKind::Click, "cmdFind");

  ASSERT_EQ(rig.Searches(), 2u) << rig.host.LogText();
  EXPECT_EQ(rig.Sent("@company_name", 0).ToString(), "ACME");
  EXPECT_TRUE(rig.Sent("@company_name", 1).IsNull());
  EXPECT_EQ(rig.Sent("@customer_type", 1).ToString(), "P");
  EXPECT_EQ(rig.Sent("@last_name", 1).ToString(), "O'NEIL%");  // trimmed, otherwise as typed
  EXPECT_TRUE(rig.Sent("@first_name", 1).IsNull());
  EXPECT_TRUE(rig.Sent("@search_customer_no", 1).IsNull());
  size_t search_commands = 0;
  for (const auto& command : rig.host.db->Commands()) search_commands += command->CommandText() == test::kSearch;
  EXPECT_EQ(search_commands, 1u);
}

TEST(FindCriteria, EachTabCountsOnlyItsOwnCriteria) {
  struct Step {
    ActionKind kind;
    const char* control;
    const char* text;
  };
  struct Case {
    const char* what;
    std::vector<Step> steps;
    bool runs;
  };
  const Case cases[] = {
      {"gender and employer alone",
       {{ActionKind::Click, "optGender", "Female"}, {ActionKind::Paste, "txtPersonCompany", "ACME"}},
       false},
      {"a group alone", {{ActionKind::Choose, "cmbGroup", "SKI"}}, true},
      {"nothing on the company tab", {{ActionKind::Click, "tabFind", "Company"}}, false},
      {"a company zip", {{ActionKind::Click, "tabFind", "Company"}, {ActionKind::Paste, "txtCompanyZip", "05401"}},
       true},
      {"a booking number", {{ActionKind::Click, "tabFind", "Advanced"}, {ActionKind::Paste, "txtBookNo", " B-7 "}},
       true},
      {"a club alone", {{ActionKind::Click, "tabFind", "Club"}, {ActionKind::Choose, "cmbClubId", "C1"}}, false},
      {"a club with Active",
       {{ActionKind::Click, "tabFind", "Club"},
        {ActionKind::Choose, "cmbClubId", "C1"},
        {ActionKind::Click, "optClubStatus", "Active"}},
       true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    FindRig rig;
    rig.Search(0);
    rig.Open();
    for (const Step& step : c.steps) rig.Do(step.kind, step.control, step.text);
    if (!c.runs) rig.ui->Answer(ui::vbOK);
    rig.Do(ActionKind::Click, "cmdFind");
    EXPECT_EQ(rig.Searches(), c.runs ? 1u : 0u);
    if (c.runs) {
      EXPECT_TRUE(rig.ui->Boxes().empty());
      continue;
    }
    ASSERT_EQ(rig.ui->Boxes().size(), 1u);
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, kNoCriteria);
    EXPECT_EQ(rig.ui->Boxes()[0].title, "Search Criteria Required");
    EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbInformation);
  }
}

TEST(FindCriteria, AGroupSearchReadsThePersonTabsLockedGroupOnEveryTab) {
  FindRig rig;
  rig.Search(0);
  rig.Open("SKI");
  EXPECT_EQ(rig.screen->Caption(), "Find Customer of Group Ski Club");
  EXPECT_FALSE(rig.screen->cmbGroup.Enabled());
  EXPECT_FALSE(rig.screen->cmbCompanyGroup.Enabled());

  rig.Do(ActionKind::Click, "tabFind", "Company");
  rig.screen->cmbCompanyGroup.SetListIndex(rig.screen->cmbCompanyGroup.FindKey("GOLF"));
  rig.Do(ActionKind::Click, "cmdFind");  // no criteria typed: the group is enough

  ASSERT_EQ(rig.Searches(), 1u);
  EXPECT_EQ(rig.Sent("@customer_type").ToString(), "C");
  EXPECT_EQ(rig.Sent("@customer_group_id").ToString(), "SKI");

  rig.screen->txtClubLastName.SetText("JONES");
  rig.Do(ActionKind::Click, "cmdNewSearch");
  EXPECT_EQ(rig.screen->cmbGroup.SelectedKey(), "SKI");  // a locked group survives New Search
  EXPECT_EQ(rig.screen->txtClubLastName.Text(), "JONES");  // and so do the club fields
  EXPECT_EQ(rig.Panel("FOUND"), "Ready...");
}

TEST(FindFields, ANonNumericAdvancedNumberIsRefusedAndCleared) {
  struct Field {
    const char* control;
    const char* title;
    const char* text;
  };
  const Field fields[] = {
      {"txtAccessID", "Access Number Validation", "The value for Access Number must be numeric"},
      {"txtCustomerNo", "Customer Number Validation", "The value for Customer Number must be numeric"},
      {"txtSalesOrder", "Sales Order Validation", "The value for Sales Order Number must be numeric"},
  };
  for (const Field& f : fields) {
    SCOPED_TRACE(f.control);
    FindRig rig;
    rig.Search(0);
    rig.Open();
    rig.Do(ActionKind::Click, "tabFind", "Advanced");
    rig.Do(ActionKind::Paste, f.control, "77");
    EXPECT_TRUE(rig.ui->Boxes().empty());
    rig.ui->Answer(ui::vbOK).Answer(ui::vbOK);
    rig.Do(ActionKind::Paste, f.control, "12a");
    rig.Do(ActionKind::Click, "cmdFind");

    EXPECT_EQ(rig.screen->FindAs<ui::TextBox>(f.control)->Text(), "");
    EXPECT_EQ(rig.ui->Prompts(), (std::vector<std::string>{f.text, kNoCriteria}));
    EXPECT_EQ(rig.ui->Boxes()[0].title, f.title);
    EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbOKOnly);
    EXPECT_EQ(rig.Searches(), 0u);
  }
}

TEST(FindPaging, GetMoreContinuesAfterTheLastRowAndIsOfferedOnlyWhileRowsWait) {
  FindRig rig;
  rig.Search(3, true).Row(SearchRow(11, "C", "", "ACME INC")).Row(SearchRow(12, "P", "", "", "ANN LEE"));
  rig.Search(3, true).Row(SearchRow(13, "P", "SMITH"));
  rig.Open();
  rig.Do(ActionKind::Paste, "txtLastName", "A");
  rig.Do(ActionKind::Click, "cmdFind");

  ui::Grid& grid = rig.screen->fxgCustomers;
  EXPECT_EQ(rig.Panel("FOUND"), "Found 3 Customers");
  EXPECT_EQ(rig.Panel("DISPLAY"), "Displaying 2 Record(s)");
  EXPECT_TRUE(rig.screen->cmdMore.Enabled());
  EXPECT_EQ(grid.TextMatrix(1, frmFind::kColName), "ACME INC");
  EXPECT_EQ(grid.TextMatrix(2, frmFind::kColName), "ANN LEE");
  EXPECT_EQ(grid.DisplayText(1, frmFind::kColWillcall), "True");
  EXPECT_EQ(grid.DisplayText(1, frmFind::kColSO), "False");
  EXPECT_TRUE(grid.ColHidden(frmFind::kColHousehold));

  rig.Do(ActionKind::Click, "cmdMore");
  ASSERT_EQ(rig.Searches(), 2u);
  EXPECT_EQ(rig.Sent("@search_customer_no", 1).ToLong(), 12);
  EXPECT_EQ(rig.Panel("DISPLAY"), "Displaying 3 Record(s)");
  EXPECT_FALSE(rig.screen->cmdMore.Enabled());
  EXPECT_EQ(grid.Rows(), 4);
}

TEST(FindPaging, ASearchWithoutMatchesSaysSoAndOffersNoMore) {
  FindRig rig;
  rig.Search(0);
  rig.Open();
  rig.Do(ActionKind::Paste, "txtLastName", "ZZZ");
  rig.Do(ActionKind::Click, "cmdFind");
  EXPECT_EQ(rig.Panel("FOUND"), "Found 0 Customers");
  EXPECT_EQ(rig.Panel("DISPLAY"), "Displaying 0 Record(s)");
  EXPECT_FALSE(rig.screen->cmdMore.Enabled());
}

TEST(FindPaging, CancelDuringTheFillStopsAtTheNextRow) {
  FindRig rig;
  rig.Search(3).Row(SearchRow(1, "P", "A")).Row(SearchRow(2, "P", "B")).Row(SearchRow(3, "P", "C"));
  rig.Open();
  rig.Do(ActionKind::Paste, "txtLastName", "A");
  rig.ui->OnDoEvents([&rig] { rig.Do(ActionKind::Click, "cmdCancel"); });
  rig.Do(ActionKind::Click, "cmdFind");
  EXPECT_EQ(rig.screen->DisplayedCount(), 1);
  EXPECT_TRUE(rig.screen->Cancelled());
  EXPECT_FALSE(rig.screen->Visible());
  EXPECT_EQ(rig.host.db->OpenRecordsetCount(), 0u);
  EXPECT_FALSE(rig.ui->WaitCursor());
}

TEST(FindOptions, StatusColumnsAndTheDefaultTabAreKeptPerUser) {
  FindRig rig;
  rig.host.settings->Seed("AppData", "Customer", "ViewWillCall", "True");
  rig.Open();
  EXPECT_TRUE(rig.screen->mnuOptionsViewWillCall.Checked());
  EXPECT_FALSE(rig.screen->fxgCustomers.ColHidden(frmFind::kColWillcall));
  EXPECT_TRUE(rig.screen->fxgCustomers.ColHidden(frmFind::kColRes));

  rig.Do(ActionKind::Click, "mnuOptionsViewWillCall");
  rig.Do(ActionKind::Click, "mnuViewReservations");
  rig.Do(ActionKind::Click, "mnuDefaultCompany");
  EXPECT_TRUE(rig.screen->fxgCustomers.ColHidden(frmFind::kColWillcall));
  EXPECT_EQ(rig.screen->tabFind.SelectedKey(), "Company");
  EXPECT_EQ(rig.host.settings->SavedKeys(),
            (std::vector<std::string>{"ViewWillCall", "ViewReservations", "Default Search"}));

  rig.screen->SetTop(480);
  rig.screen->Unload();
  auto again = std::make_shared<frmFind>();
  again->SetCustomerEngine(&rig.engine);
  again->Show();
  EXPECT_TRUE(again->fxgCustomers.ColHidden(frmFind::kColWillcall));
  EXPECT_FALSE(again->fxgCustomers.ColHidden(frmFind::kColRes));
  EXPECT_TRUE(again->fxgCustomers.ColHidden(frmFind::kColHousehold));
  EXPECT_TRUE(again->mnuDefaultCompany.Checked());
  EXPECT_FALSE(again->mnuDefaultPerson.Checked());
  EXPECT_EQ(again->tabFind.SelectedKey(), "Company");
  EXPECT_EQ(again->Top(), 480);

  again->SetDefaultTab("Advanced");  // the caller's tab wins over the stored one
  again->Show();
  EXPECT_EQ(again->tabFind.SelectedKey(), "Advanced");
}

}  // namespace
}  // namespace kiv

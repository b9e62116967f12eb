// The detail editor's filling, permission flags, address tabs, page frame, Refresh and
// the close box.
#include <gtest/gtest.h>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

using test::DetailRig;
using test::FakePage;
using ui::ActionKind;

TEST(CustomerDetailFill, ShowsTheRecordWithoutCountingAsAnEdit) {
  DetailRig rig;
  rig.Person();
  rig.customer->SetDOB(Date::FromParts(1990, 3, 16));  // birthday tomorrow: still 35
  rig.customer->SetGender("F");
  rig.customer->SetCommissionPercentage(0.15);
  rig.customer->SetDiscountPercentage(12.5);
  rig.customer->SetCustomerKind("STAFF");
  rig.customer->SetDateOfRelease(Variant::Null());
  rig.Open();
  rig.Open();  // a second filling must not duplicate list items
  frmCustomerDetail& s = *rig.screen;
  EXPECT_EQ(s.cmbCustomerLevel.ListCount(), 2) << "GOLD once, and None";
  EXPECT_EQ(s.tabAddressType.Count(), 3) << "Primary, BILLING, SHIPPING";
  EXPECT_EQ(s.Caption(), "Customer Detail (42)");
  EXPECT_EQ(s.lblAge.Caption(), "Age:35");
  EXPECT_FALSE(s.dtWeddAniv.HasValue()) << "a zero date shows an empty picker";
  EXPECT_EQ(s.optGender.Value(), frmCustomerDetail::kGenderFemale);
  EXPECT_EQ(s.txtDefaultCommission.Text(), "15.00");
  EXPECT_EQ(s.txtDefaultDiscount.Text(), "1,250.00");
  EXPECT_EQ(s.cmbCustomerLevel.SelectedKey(), "None") << "an empty level shows None";
  EXPECT_EQ(s.cmbCustomerKind.SelectedKey(), "STAFF");
  EXPECT_EQ(s.txtStreet1.Text(), "1 MAIN ST");
  EXPECT_FALSE(s.CustomerChanged());
  EXPECT_FALSE(s.txtFullName.DataChanged());
  EXPECT_FALSE(rig.customer->AddressesChanges());
}

TEST(CustomerDetailFill, CompaniesNeedTheCompanyRightAndIndicatorsFollowTheFlags) {
  for (const char* type : {"P", "C"}) {
    DetailRig rig;
    rig.host.app->Grant("CUSTEDITCOMP", false);
    rig.host.app->Grant("CUSTEDITPROFILE", false);
    rig.engine.SetAppServer(rig.host.app);
    rig.Person();
    rig.customer->SetCustomerType(type);
    rig.customer->SetCompanyName("ACME");
    rig.host.OnProcedure("KIV_SP_UpdateCustomerHas").Outputs({{"@so", 1}});
    rig.Open();
    const bool person = std::string(type) == "P";
    EXPECT_EQ(rig.screen->txtCompanyName.Text(), person ? "" : "ACME");
    EXPECT_TRUE(rig.screen->imgAlert.Visible() && rig.screen->lblUninvoiced.Visible());
    EXPECT_FALSE(rig.screen->lblWillCall.Visible());
    EXPECT_EQ(rig.screen->CanEdit(), person) << type;
    EXPECT_EQ(rig.screen->cmdSave.Enabled(), person) << type;
    EXPECT_FALSE(rig.screen->fraRental.Enabled()) << "the profile right";
  }
}

TEST(CustomerDetailAddressTabs, SwitchingStoresTheFieldsAndCreatesAMissingAddress) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Paste, "txtStreet2", "APT 4");
  rig.Do(ActionKind::Click, "tabAddressType", "BILLING");
  std::shared_ptr<CAddress> billing = rig.customer->GetAddress("BILLING");
  ASSERT_NE(billing, nullptr);
  EXPECT_EQ(billing->CountryID() + "/" + std::to_string(billing->CustomerNo()), "USA/42");
  EXPECT_TRUE(billing->DataChanged());
  EXPECT_EQ(rig.screen->txtStreet1.Text(), "");

  rig.Do(ActionKind::Paste, "txtCity", "STOWE");
  rig.Do(ActionKind::Click, "tabAddressType", "Primary");
  EXPECT_EQ(billing->City(), "STOWE");
  EXPECT_EQ(rig.customer->PrimaryAddress()->AddressLine2(), "APT 4");
  EXPECT_EQ(rig.screen->txtStreet2.Text(), "APT 4");
}

TEST(CustomerDetailPages, TabsHandTheButtonsToTheirPageAndLoadItOncePerFilling) {
  DetailRig rig;
  rig.Person();
  FakePage& household = rig.AddPage("household", frmCustomerDetail::kTabRelationships,
                                    DetailSaveSlot::kRelationships);
  rig.Open();
  rig.Do(ActionKind::Click, "tabCustomer", "2");
  EXPECT_FALSE(rig.screen->picGeneral.Visible());
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "household");
  rig.Do(ActionKind::Click, "cmdButton1");
  rig.Do(ActionKind::Click, "tabCustomer", "3");
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "&Invoice") << "the sales page takes the first button";
  rig.Do(ActionKind::Click, "tabCustomer", "2");
  EXPECT_EQ(rig.page_log, (std::vector<std::string>{"load household", "household button 1"}));

  rig.Open();
  EXPECT_FALSE(rig.screen->PageLoaded(household)) << "filling again forces a reload";
}

TEST(CustomerDetailPages, EachPageStartsFromGridsWithNoLayoutOfThePreviousPage) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Click, "tabCustomer", "2");
  // What a list page leaves behind in the shared grid: its columns and their settings.
  ui::Grid& grid = rig.screen->grdMaster;
  grid.SetFormatString("Name|^Gender|>DOB|Relation");
  grid.SetColHidden(3, true);
  grid.SetColFormat(2, "MM/dd/yyyy");
  grid.SetColComboList(1, "|F|M");
  grid.SetEditable(ui::flexEDKbdMouse);
  grid.AddItem("SMITH\tF\t1/2/1990\tSPOUSE");
  rig.Do(ActionKind::Click, "tabCustomer", "1");
  const ui::Grid fresh("fresh");
  EXPECT_EQ(grid.Rows(), fresh.Rows());
  EXPECT_EQ(grid.Cols(), fresh.Cols());
  EXPECT_EQ(grid.Editable(), ui::flexEDNone);
  // The next page's columns carry nothing over either.
  grid.SetCols(4);
  EXPECT_FALSE(grid.ColHidden(3));
  EXPECT_EQ(grid.ColFormat(2), "");
  EXPECT_EQ(grid.ColComboList(1), "");
}

TEST(CustomerDetailPages, ADirtyPageAsksBeforeRefreshAndNoKeepsItsChanges) {
  DetailRig rig;
  rig.Person();
  FakePage& profile = rig.AddPage("profile", frmCustomerDetail::kTabProfile, DetailSaveSlot::kCustomFields);
  profile.question = {"The profile information has been changed.  Are you sure you want to lose those changes "
                      "and refresh the data?",
                      "Confirm Refresh Profile Data"};
  rig.Open();
  rig.Do(ActionKind::Click, "tabCustomer", "7");
  rig.page_log.clear();
  rig.Do(ActionKind::Click, "cmdRefresh");  // clean: reloads without asking
  profile.dirty = true;
  rig.ui->Answer(ui::vbNo);
  rig.Do(ActionKind::Click, "cmdRefresh");
  EXPECT_TRUE(profile.dirty);
  rig.ui->Answer(ui::vbYes);
  rig.Do(ActionKind::Click, "cmdRefresh");
  EXPECT_FALSE(profile.dirty);
  EXPECT_EQ(rig.page_log, (std::vector<std::string>{"load profile", "load profile"}));
  ASSERT_EQ(rig.ui->Boxes().size(), 2u);
  EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2);
}

TEST(CustomerDetailClose, TheCloseBoxCancelsWithoutTouchingTheDatabase) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Paste, "txtCity", "STOWE");
  rig.host.db->ClearLog();
  ASSERT_TRUE(rig.screen->Perform(ui::Action{ActionKind::Close, "", "", {}, 0}).ok);
  EXPECT_TRUE(rig.screen->Cancelled());
  EXPECT_TRUE(rig.screen->Loaded() && !rig.screen->Visible()) << "hidden, and the engine still reads it";
  EXPECT_TRUE(rig.host.Log().empty()) << rig.host.LogText();
}

TEST(CustomerDetailMenus, AlertsOfAnUnsavedCustomerAskForASaveFirst) {
  DetailRig rig;
  rig.Person(0);
  int opened = 0;
  rig.screen->open_alerts = [&](frmCustomerDetail&) { ++opened; };
  rig.Open();
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "mnuAlerts");
  EXPECT_EQ(rig.ui->Prompts(), std::vector<std::string>{"Please Save the Customer before entering the alerts."});
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Update Customer");
  EXPECT_EQ(opened, 0);

  rig.Key("txtCity", "Ctrl+D");
  rig.Key("txtCity", "Ctrl+Shift+D");
  EXPECT_TRUE(rig.screen->mnuToolsViewCCData.Checked()) << "only Ctrl+D alone views the card data";
  rig.Key("txtCity", "Ctrl+D");
  EXPECT_FALSE(rig.screen->mnuToolsViewCCData.Checked());
}

}  // namespace
}  // namespace kiv

// The detail editor's OK, Save and Cancel: validation order and focus, what is written
// into the record, when Update runs, the audit entry, the fixed page order and the one
// difference between OK and Save.
#include <gtest/gtest.h>

#include <functional>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

using test::DetailRig;
using test::FakePage;
using ui::ActionKind;

TEST(CustomerDetailValidation, TheFirstFailureShowsItsBoxAndKeepsTheClerkOnItsField) {
  struct Case {
    const char* what;
    std::function<void(DetailRig&)> edit;
    const char* prompt;  // empty: the save goes through
    const char* title;
    const char* focus;
  };
  const Date today = DetailRig::Today();
  const Case cases[] = {
      {"no full name, and a birth date today", [&](DetailRig& r) {
         r.Do(ActionKind::Paste, "txtFullName", "  ");
         r.screen->dtDOB.SetValue(today);
       }, "The customer must have a name", "Validate Customer", "txtLastName"},
      {"born today", [&](DetailRig& r) { r.screen->dtDOB.SetValue(today); }, "The Date Of Birth is Invalid",
       "Validate Customer", "dtDOB"},
      {"married today", [&](DetailRig& r) { r.screen->dtWeddAniv.SetValue(today); },
       "The Date Of Anniversary is Invalid", "Validate Customer", "dtWeddAniv"},
      {"release signed tomorrow", [&](DetailRig& r) { r.screen->dtDateOfRelease.SetValue(today.AddDays(1)); },
       "The Date Of Release is Invalid", "Validate Customer", "dtDateOfRelease"},
      {"release signed today", [&](DetailRig& r) { r.screen->dtDateOfRelease.SetValue(today); }, "", "", ""},
      {"company without a name", [&](DetailRig& r) { r.Do(ActionKind::Click, "cmdType", "Company Type"); },
       "The company must have a name", "Validate Customer", "txtCompanyName"},
      {"no country", [&](DetailRig& r) { r.Do(ActionKind::Paste, "cmbCountry", ""); }, "Country is required",
       "Validate Customer", "cmbCountry"},
      {"home country without a postal code", [&](DetailRig& r) { r.Do(ActionKind::Paste, "txtZip", " "); },
       "A Postal Code is required for USA", "Validate Customer Failed", "txtZip"},
      {"foreign country without a postal code", [&](DetailRig& r) {
         r.Do(ActionKind::Paste, "txtZip", "");
         r.Do(ActionKind::Paste, "cmbCountry", "CAN");
       }, "", "", ""},
  };
  for (const Case& c : cases) {
    DetailRig rig;
    rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 42}});
    rig.Person();
    rig.Open();
    c.edit(rig);
    rig.Do(ActionKind::Click, "tabCustomer", "3");  // a failure brings the general page back
    if (*c.prompt) rig.ui->Answer(ui::vbOK);
    const bool saved = rig.screen->Save();
    EXPECT_EQ(saved, *c.prompt == '\0') << c.what;
    if (!*c.prompt) {
      EXPECT_TRUE(rig.ui->Boxes().empty()) << c.what;
      continue;
    }
    ASSERT_EQ(rig.ui->Boxes().size(), 1u) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, c.prompt) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].title, c.title) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbInformation) << c.what;
    EXPECT_EQ(rig.Focus(), c.focus) << c.what;
    EXPECT_EQ(rig.Updates(), 0u) << c.what;
  }
}

TEST(CustomerDetailValidation, ANewCompanyNeedsTheRightToAddCompanies) {
  DetailRig rig;
  rig.host.app->Grant("CUSTADDCOMP", false);
  rig.engine.SetAppServer(rig.host.app);
  rig.Person(0);
  rig.Open();
  rig.Do(ActionKind::Click, "cmdType", "Company Type");
  rig.Do(ActionKind::Paste, "txtCompanyName", "ACME");
  rig.ui->Answer(ui::vbOK);
  EXPECT_FALSE(rig.screen->Ok());
  EXPECT_EQ(rig.ui->Prompts(),
            std::vector<std::string>{"Security Access Denied\r\nYou do not have permission to create new companies"});
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Save New Company Canceled");
  EXPECT_EQ(rig.Updates(), 0u);
}

TEST(CustomerDetailSave, WritesTheScreenIntoTheRecordAsTheDatabaseKeepsIt) {
  DetailRig rig;
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 42}});
  rig.Person();
  rig.customer->SetDOB(Date::FromParts(1990, 1, 2));
  rig.customer->SetCustomerLevelID("GOLD");
  rig.Open();
  rig.Do(ActionKind::Paste, "txtFullName", "dr ann lee");
  rig.Do(ActionKind::Date, "dtDOB", "none");
  rig.Do(ActionKind::Paste, "txtDefaultDiscount", "15abc");
  rig.Do(ActionKind::Paste, "txtDefaultCommission", "");
  rig.Do(ActionKind::Choose, "cmbCustomerLevel", "None");
  rig.Do(ActionKind::Click, "optGender", "&Male");
  ASSERT_TRUE(rig.screen->Save());
  const CCustomer& c = *rig.customer;
  EXPECT_EQ(c.FullName() + "/" + c.CustomerLevelID() + "/" + c.Gender(), "DR ANN LEE/None/M");
  EXPECT_TRUE(c.DOB().IsZero());
  EXPECT_DOUBLE_EQ(c.DiscountPercentage(), 0.15);
  EXPECT_DOUBLE_EQ(c.CommissionPercentage(), 0);
  EXPECT_EQ(rig.Updates(), 1u);
  EXPECT_TRUE(rig.screen->Visible() && !rig.screen->Cancelled()) << "Save keeps the screen open";
}

TEST(CustomerDetailSave, ARenameIsAuditedOnlyAfterASuccessfulUpdateOfAnExistingCustomer) {
  DetailRig rig;
  rig.host.OnProcedure(test::kUpdateCustomer).Fails().Once();
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 42}});
  rig.Person();
  rig.Open();
  rig.ui->SetStrict(false);  // the refused update's report
  rig.Do(ActionKind::Paste, "txtFullName", "ANN B LEE");
  EXPECT_FALSE(rig.screen->Ok());
  EXPECT_TRUE(rig.host.app->Activities().empty());
  EXPECT_EQ(rig.customer->FullName(), "ANN LEE") << "a refused save leaves the record as it was";
  EXPECT_TRUE(rig.screen->Visible() && rig.screen->Cancelled());

  EXPECT_TRUE(rig.screen->Ok());
  ASSERT_EQ(rig.host.app->Activities().size(), 1u);
  const test::ActivityCall& audit = rig.host.app->Activities()[0];
  EXPECT_EQ(audit.task_code + " " + audit.screen + " " + audit.detail, "CUSTEDIT CustDetail CN=42;FN=ANN LEE;");
  EXPECT_FALSE(rig.screen->Visible() || rig.screen->Cancelled());

  DetailRig fresh;
  fresh.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 43}});
  fresh.Person(0);
  fresh.Open();
  fresh.Do(ActionKind::Paste, "txtLastName", "NEW");
  EXPECT_TRUE(fresh.screen->Ok());
  EXPECT_TRUE(fresh.host.app->Activities().empty()) << "naming a new customer is no rename";
  EXPECT_EQ(fresh.screen->CustomerNo(), 43);
}

TEST(CustomerDetailSave, NothingEditedMeansNoUpdateButDirtyPagesStillSaveInTheirOrder) {
  DetailRig rig;
  rig.Person();
  std::vector<FakePage*> pages;
  for (auto [name, tab, slot] : {std::tuple{"groups", 7, DetailSaveSlot::kGroupMemberships},
                                 std::tuple{"employer", 2, DetailSaveSlot::kEmployer},
                                 std::tuple{"custom", 7, DetailSaveSlot::kCustomFields},
                                 std::tuple{"household", 2, DetailSaveSlot::kRelationships},
                                 std::tuple{"forecasts", 12, DetailSaveSlot::kForecasts}})
    pages.push_back(&rig.AddPage(name, tab, slot));
  rig.Open();
  for (FakePage* p : pages) p->dirty = true;
  ASSERT_TRUE(rig.screen->Save());
  EXPECT_EQ(rig.Updates(), 0u);
  EXPECT_EQ(rig.page_log, (std::vector<std::string>{"save forecasts", "save household", "save custom",
                                                     "save employer", "save groups"}));
  EXPECT_EQ(rig.host.db->Units(), (std::vector<std::string>{"begin@0", "commit@0"})) << "every page in one unit";
  EXPECT_FALSE(rig.ui->WaitCursor());
  EXPECT_EQ(rig.ui->WaitCursorOnCount(), rig.ui->WaitCursorOffCount());
}

TEST(CustomerDetailSave, OkStopsAfterAFailedHouseholdSaveWhileSaveCarriesOn) {
  for (bool ok : {true, false}) {
    DetailRig rig;
    rig.Person();
    FakePage& household = rig.AddPage("household", 2, DetailSaveSlot::kRelationships);
    FakePage& custom = rig.AddPage("custom", 7, DetailSaveSlot::kCustomFields);
    rig.Open();
    household.dirty = custom.dirty = true;
    household.save_result = false;
    EXPECT_EQ(ok ? rig.screen->Ok() : rig.screen->Save(), !ok);
    EXPECT_EQ(rig.page_log.size(), ok ? 1u : 2u) << "OK saves nothing after the household";
    EXPECT_TRUE(rig.screen->Visible());
    EXPECT_EQ(rig.screen->Cancelled(), ok);
    EXPECT_FALSE(rig.ui->WaitCursor());
  }
}

TEST(CustomerDetailSave, RentalSettingsSaveOnlyWhenChanged) {
  DetailRig rig;
  rig.host.OnQuery("SELECT * FROM kiv_guest_ability ORDER BY description")
      .Row({{"guest_ability", "II"}, {"Description", "Intermediate"}});
  rig.Person();
  rig.Open();
  rig.screen->Save();
  rig.Do(ActionKind::Choose, "cmbGuestAbility", "Intermediate");
  rig.Do(ActionKind::Paste, "txtShoeSize", "9.5");
  rig.screen->Save();
  EXPECT_EQ(rig.host.db->Executions("KIV_SP_CUSTOMER_CUSTOMER_ALERT_update").size(), 1u);
  EXPECT_EQ(rig.customer->GuestAbility() + "/" + std::to_string(rig.customer->GuestShoeSize()), "II/9.500000");
  EXPECT_EQ(rig.Updates(), 0u) << "rental settings are no customer edit";
}

TEST(CustomerDetailCancel, AnExistingCustomerIsReloadedAndANewOneIsNot) {
  for (int32_t number : {42, 0}) {
    DetailRig rig;
    rig.Person(number);
    rig.Open();
    rig.Do(ActionKind::Click, "cmdCancel");
    EXPECT_EQ(rig.host.db->Executions("KIV_SP_GetCustomer").size(), number == 0 ? 0u : 1u) << number;
    EXPECT_TRUE(rig.screen->Cancelled() && !rig.screen->Visible());
  }
}

}  // namespace
}  // namespace kiv

// The relationships page over the scripted host: the household's save in its order, its
// stop on a member without a relationship, a new member created once; the employer list's
// two queries, the past-year refusal and the link procedures.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/employer_page.h"
#include "screens/detail/household_page.h"
#include "screens/related/frm_related_customer.h"

namespace kiv {
namespace {

using test::Assignment;
using test::DetailRig;
using ui::ActionKind;

const std::string kGetRelationship = "KIV_SP_CUSTOMER_GetRelationship";

void Edit(DetailRig& rig, const std::string& grid, int row, int col, const std::string& value) {
  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Edit, grid, value, {row}, col});
  EXPECT_TRUE(r.ok) << grid << "[" << row << "," << col << "] " << value << ": " << r.error;
}

void Select(DetailRig& rig, const std::string& grid, int row) {
  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Select, grid, {}, {row}, 0});
  EXPECT_TRUE(r.ok) << r.error;
}

//! The procedures run since the log was last cleared, but the indicators' refresh after a save.
std::vector<std::string> Ran(const DetailRig& rig) {
  std::vector<std::string> ran = rig.host.ExecutedProcedures();
  std::erase(ran, "KIV_SP_UpdateCustomerHas");
  return ran;
}

//! Ann Lee (42) heads the household; Bob (43) is her spouse, Cy (44) her child.
struct HouseholdRig : DetailRig {
  HouseholdRig() {
    host.OnQuery(frmRelatedCustomer::kRelationshipSql)
        .Row({{"rel_type_id", "CHILD"}, {"Description", "Child"}})
        .Row({{"rel_type_id", "SPOUSE"}, {"Description", "Spouse"}});
    host.OnProcedure(kGetRelationship)
        .Row({{"customer_no", 42}, {"last_name", "LEE"}, {"first_name", "ANN"}, {"household_primary", true},
              {"Gender", "F"}, {"DOB", Variant::Null()}, {"rel_type_id", Variant::Null()}})
        .Row({{"customer_no", 43}, {"last_name", "LEE"}, {"first_name", "BOB"}, {"household_primary", false},
              {"Gender", "M"}, {"DOB", Date::FromParts(1970, 1, 2)}, {"rel_type_id", "SPOUSE"}})
        .Row({{"customer_no", 44}, {"last_name", "LEE"}, {"first_name", "CY"}, {"household_primary", false},
              {"Gender", ""}, {"DOB", Variant::Null()}, {"rel_type_id", "CHILD"}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "2");
  }
};

TEST(HouseholdPage, ListsTheHouseholdWithItsHeadMarked) {
  HouseholdRig rig;
  EXPECT_EQ(rig.host.AssignmentsOf(kGetRelationship),
            (std::vector<Assignment>{{"@parent_customer_no", 42}, {"@child_customer_no", 42}, {"@employee", false}}));
  const ui::Grid& grid = rig.screen->grdMaster;
  EXPECT_EQ(grid.FormatString(), HouseholdPage::kFormatString);
  EXPECT_EQ(grid.ColComboList(HouseholdPage::kColGender), "|F|M");
  EXPECT_EQ(grid.ColComboList(HouseholdPage::kColRelationship), "CHILD|SPOUSE");
  ASSERT_EQ(grid.Rows(), 4);
  EXPECT_EQ(grid.TextMatrix(1, HouseholdPage::kColRelationship), "PRIMARY");
  EXPECT_EQ(grid.CellChecked(1, HouseholdPage::kColPrimary), ui::flexChecked);
  EXPECT_EQ(grid.DisplayText(2, HouseholdPage::kColDOB), "01/02/1970");
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "&Add Family Member");
  EXPECT_EQ(rig.screen->cmdButton2.Caption(), "Add Existing &Customer");
  EXPECT_EQ(rig.screen->cmdButton3.Caption(), "Remove Member");
}

TEST(HouseholdPage, ANewHeadIsWrittenFirstAndAMemberWithoutRelationshipStopsTheSave) {
  HouseholdRig rig;
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 44}});
  // Bob leaves; Cy becomes the head, so Ann has no relationship until the clerk gives one.
  Select(rig, "grdMaster", 2);
  rig.ui->Answer(ui::vbYes);
  rig.Do(ActionKind::Click, "cmdButton3");
  Edit(rig, "grdMaster", 3, HouseholdPage::kColPrimary, "true");
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, HouseholdPage::kColRelationship), "");
  rig.host.db->ClearLog();
  rig.ui->ClearBoxes();
  rig.ui->Answer(ui::vbOK);
  EXPECT_FALSE(rig.screen->Ok());
  EXPECT_EQ(Ran(rig), (std::vector<std::string>{"KIV_SP_CUSTOMER_UpdateCustomer", "KIV_SP_UpdateCustomerHouseholdPrimary"}));
  EXPECT_EQ(rig.host.db->AssignedNames("KIV_SP_CUSTOMER_UpdateCustomer"),
            (std::vector<std::string>{"@customer_no", "@household_no", "@last_name", "@first_name", "@full_name", "@dob",
                                      "@gender", "@zip", "@customer_type", "@kiv_user"}));
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_CUSTOMER_UpdateCustomer", "@full_name"), Variant("CY LEE"));
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Can not save family member ANN LEE without a defined relationship.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Update family member canceled");
  EXPECT_TRUE(rig.screen->Visible());

  // Once Ann has a relationship the save goes through, in row order, to the new head.
  Edit(rig, "grdMaster", 1, HouseholdPage::kColRelationship, "SPOUSE");
  rig.host.db->ClearLog();
  EXPECT_TRUE(rig.screen->Ok());
  EXPECT_EQ(Ran(rig), (std::vector<std::string>{"KIV_SP_CUSTOMER_UpdateCustomer",
                                                "KIV_SP_UpdateCustomerHouseholdPrimary",
                                                "KIV_SP_UpdateCustomerRelationship",
                                                "KIV_SP_DeleteCustomerRelationship"}));
  EXPECT_EQ(rig.host.db->AssignmentsOf("KIV_SP_UpdateCustomerRelationship"),
            (std::vector<Assignment>{{"@parent_customer_no", 44}, {"@child_customer_no", 42}, {"@rel_type_id", "SPOUSE"}}));
  EXPECT_EQ(rig.host.db->AssignmentsOf("KIV_SP_DeleteCustomerRelationship"),
            (std::vector<Assignment>{{"@parent_customer_no", 44}, {"@child_customer_no", 43}}));
}

TEST(HouseholdPage, AHeadThatCannotBeWrittenEndsTheSaveWithItsMessage) {
  HouseholdRig rig;
  rig.host.OnProcedure(test::kUpdateCustomer).ReturnValue(-1);
  Edit(rig, "grdMaster", 2, HouseholdPage::kColPrimary, "true");
  Edit(rig, "grdMaster", 1, HouseholdPage::kColRelationship, "SPOUSE");
  rig.host.db->ClearLog();
  rig.ui->Answer(ui::vbOK);
  EXPECT_FALSE(rig.screen->Ok());
  EXPECT_EQ(Ran(rig), (std::vector<std::string>{"KIV_SP_CUSTOMER_UpdateCustomer"}));
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Unable to crate new primary customer");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Cancel Update Relationship data");
}

TEST(HouseholdPage, AMemberTypedForANewCustomerIsCreatedOnceAndRelatedAfterwards) {
  DetailRig rig;
  rig.host.OnQuery(frmRelatedCustomer::kRelationshipSql)
      .Row({{"rel_type_id", "CHILD"}, {"Description", "Child"}})
      .Row({{"rel_type_id", "SIBLING"}, {"Description", "Sibling"}});
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 77}});
  rig.host.OnProcedure("KIV_SP_INSERTCUSTOMER_ADD_FAMILY").Outputs({{"@new_customer_no", 78}});
  rig.Person(0);
  rig.Open();
  rig.screen->open_related_customer = [](frmCustomerDetail& owner, const std::shared_ptr<CCustomer>& parent,
                                         const std::function<bool(const std::vector<Variant>&)>& collect) {
    return ComponentScreens::ShowRelatedCustomer(owner, parent, collect);
  };
  rig.Do(ActionKind::Click, "tabCustomer", "2");
  rig.ui->OnModal([](ui::Form& form) {
    form.Perform(ui::Action{ActionKind::Type, "txtFirstName", "mia", {}, 0});
    form.Perform(ui::Action{ActionKind::Choose, "lstRelationship", "CHILD", {}, 0});
    form.Perform(ui::Action{ActionKind::Click, "cmdOK", {}, {}, 0});
  });
  rig.Do(ActionKind::Click, "cmdButton1");
  // Nothing is created before the customer exists.
  EXPECT_TRUE(rig.host.db->Executions("SP_INSERTCUSTOMER_ADD_FAMILY").empty());
  ASSERT_EQ(rig.screen->grdMaster.Rows(), 3);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(2, HouseholdPage::kColFirstName), "MIA");

  rig.screen->SetForceCustomerSave(true);
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_EQ(rig.host.db->AssignmentsOf("KIV_SP_INSERTCUSTOMER_ADD_FAMILY"),
            (std::vector<Assignment>{{"@customer_no", 77},
                                     {"@last_name", "LEE"},
                                     {"@first_name", "MIA"},
                                     {"@full_name", "MIA LEE"},
                                     {"@dob", Variant::Null()},
                                     {"@gender", Variant::Null()},
                                     {"@rel_type_id", "CHILD"},
                                     {"@zip", "05401"},
                                     {"@household_no", 77},
                                     {"@user_id", "TESTUSER"}}));
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(2, HouseholdPage::kColCustomerNo), "78");

  // A second save after another change relates the member; it is not created again.
  Edit(rig, "grdMaster", 2, HouseholdPage::kColRelationship, "SIBLING");
  rig.host.db->ClearLog();
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_TRUE(rig.host.db->Executions("KIV_SP_INSERTCUSTOMER_ADD_FAMILY").empty());
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_UpdateCustomerRelationship", "@child_customer_no"), Variant(78));
}

//! A person with employer links of two years.
struct EmployerRig : DetailRig {
  explicit EmployerRig(bool company = false) {
    host.OnQueryContaining("FROM kiv_customer_employer")
        .Row({{"customer_no", 42}, {"fiscal_year", 2026}, {"employer_customer_no", 4}, {"company_name", "ACME"},
              {"full_name", "ANN LEE"}, {"is_active", true}, {"comment_note", Variant::Null()}})
        .Row({{"customer_no", 42}, {"fiscal_year", 2025}, {"employer_customer_no", 4}, {"company_name", "ACME"},
              {"full_name", "ANN LEE"}, {"is_active", false}, {"comment_note", "seasonal"}});
    engine.SetFiscalYear(2026);
    Person(company ? 4 : 42);
    if (company) {
      customer->SetCustomerType("C");
      customer->SetCompanyName("ACME");
    }
    Open();
    Do(ActionKind::Click, "tabCustomer", "2");
  }
};

TEST(EmployerPage, ReadsEmployersOrEmployeesWithTheirOwnQuery) {
  {
    EmployerRig rig;
    EXPECT_EQ(rig.host.SqlTexts().back(),
              "SELECT kiv_customer_employer.customer_no, fiscal_year, employer_customer_no, company_name, "
              "kiv_customer_employer.is_active, kiv_customer_employer.comment_note FROM kiv_customer_employer join "
              "kiv_customer on kiv_customer.customer_no = employer_customer_no  WHERE "
              "kiv_customer_employer.customer_no = 42 order by fiscal_year desc");
    EXPECT_EQ(rig.screen->grdDetail.FormatString(), EmployerPage::kPersonFormat);
    EXPECT_EQ(rig.screen->grdDetail.TextMatrix(2, EmployerPage::kColName), "ACME");
    EXPECT_EQ(rig.screen->cmdEmployeerLookup.Caption(), "Add Employer");
    EXPECT_EQ(rig.screen->cmdEmployerClear.Caption(), "Clear Employer");
  }
  {
    EmployerRig rig(true);
    EXPECT_EQ(rig.host.SqlTexts().back(),
              "SELECT kiv_customer_employer.customer_no, fiscal_year, employer_customer_no, "
              "kiv_customer_employer.customer_no, full_name, kiv_customer_employer.is_active, "
              "kiv_customer_employer.comment_note FROM kiv_customer_employer join kiv_customer on "
              "kiv_customer.customer_no = kiv_customer_employer.customer_no  WHERE "
              "kiv_customer_employer.employer_customer_no = 4 order by fiscal_year desc ");
    EXPECT_EQ(rig.screen->grdDetail.FormatString(), EmployerPage::kCompanyFormat);
    EXPECT_EQ(rig.screen->grdDetail.TextMatrix(1, EmployerPage::kColName), "ANN LEE");
    EXPECT_EQ(rig.screen->cmdEmployeerLookup.Caption(), "Add Employee");
    EXPECT_FALSE(rig.screen->cmdButton1.Visible());
  }
}

TEST(EmployerPage, ClearKeepsPastYearsAndSavesTheCurrentOneAsADelete) {
  EmployerRig rig;
  Select(rig, "grdDetail", 2);
  rig.ui->Answer(ui::vbYes).Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdEmployerClear");
  ASSERT_EQ(rig.ui->Boxes().size(), 2u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Are you sure you want to remove this employer?");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Confirm Clear Employer");
  EXPECT_EQ(rig.ui->Boxes()[1].prompt, "2025 - ACME is inactive and cannot be deleted.");
  EXPECT_EQ(rig.ui->Boxes()[1].title, "Clear Employer");
  EXPECT_FALSE(rig.screen->grdDetail.RowHidden(2));

  // The comment of the old link changes; the current one is cleared.
  Edit(rig, "grdDetail", 2, EmployerPage::kColComment, "rehire");
  Select(rig, "grdDetail", 1);
  rig.ui->Answer(ui::vbYes);
  rig.Do(ActionKind::Click, "cmdEmployerClear");
  EXPECT_TRUE(rig.screen->grdDetail.RowHidden(1));
  rig.host.db->ClearLog();
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_EQ(Ran(rig), (std::vector<std::string>{"SP_DeleteCustomerEmployerRelationship",
                                                "KIV_SP_UpdateCustomerEmployerRelationship"}));
  EXPECT_EQ(rig.host.db->AssignmentsOf("SP_DeleteCustomerEmployerRelationship"),
            (std::vector<Assignment>{{"@customer_no", 42}, {"@fiscal_year", 2026}, {"@employer_customer_no", 4}}));
  EXPECT_EQ(rig.host.db->AssignmentsOf("KIV_SP_UpdateCustomerEmployerRelationship"),
            (std::vector<Assignment>{{"@customer_no", 42},
                                     {"@fiscal_year", 2025},
                                     {"@employer_customer_no", 4},
                                     {"@is_active", false},
                                     {"@comment_note", "rehire"}}));
}

}  // namespace
}  // namespace kiv

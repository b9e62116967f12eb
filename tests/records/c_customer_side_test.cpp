// The customer's side records against the scripted host: employer read and write tables,
// card on file, alerts and settings, has-flags and the relationship, group, club and
// account queries.
#include <gtest/gtest.h>

#include "records/c_customer.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

struct SwipedCard : CardEntry {
  std::string Track1() const override { return "%B4111"; }
  std::string Track2() const override { return ";4111"; }
  std::string CardNo() const override { return "4111111111111111"; }
  Variant ExpDate() const override { return Variant("12/29"); }
  std::string Zip() const override { return "05401"; }
  std::string Address() const override { return "1 MAIN"; }
  std::string XCardNo() const override { return "XXXX1111"; }
  std::string PayMethodID() const override { return "VISA"; }
  void SetCustomerNo(int32_t v) override { customer_no = v; }
  int32_t customer_no = 0;
};

struct CustomerSideTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();
  CustomerSideTest() {
    customer->SetDB(host.db);
    customer->SetErrorObject(host.errors);
    customer->SetUi(ui);
    customer->SetCustomerNo(12);
    customer->SetHouseholdNo(40);
    customer->SetFiscalYear(2026);
  }
};

TEST_F(CustomerSideTest, EmployerIsReadFromTheEmployerTableOnceAndWrittenToTheRelationshipTable) {
  const std::string read =
      "SELECT ace.customer_no, ace.fiscal_year, ace.employer_customer_no, company_name, ace.is_active FROM "
      "kiv_customer_employer ace join kiv_customer on kiv_customer.customer_no = ace.employer_customer_no  WHERE "
      "ace.customer_no = 12 AND fiscal_year = 2026 AND ISNULL(is_active,-1) <> 0";
  const std::string write = "SELECT * FROM kiv_customer_rel WHERE child_customer_no = 12 AND rel_type_id = 'EMPLOYEE'";
  host.OnQuery(read).Row({{"customer_no", 12}, {"employer_customer_no", 90}, {"company_name", "ACME"}});
  host.OnQuery(write).Row({{"parent_customer_no", 80}, {"child_customer_no", 12}, {"rel_type_id", "EMPLOYEE"}});
  EXPECT_TRUE(customer->OpenEmployer());
  EXPECT_TRUE(customer->OpenEmployer());
  EXPECT_EQ(customer->EmployerName(), "ACME");
  EXPECT_EQ(customer->EmployerNo(), 12) << "the select's customer_no is the one kept";

  auto employer = std::make_shared<CCustomer>();
  employer->SetCompanyName("WIDGETS");
  employer->SetCustomerNo(90);
  customer->SetEmployer(employer);
  ASSERT_TRUE(customer->SaveEmployer());
  EXPECT_EQ(host.SqlTexts(), (std::vector<std::string>{read, write}));
  EXPECT_EQ(host.db->RecordsetFor(write)->OpsText(),
            (std::vector<std::string>{"Delete", "AddNew", "Set parent_customer_no=90", "Set child_customer_no=12",
                                      "Set rel_type_id=\"EMPLOYEE\"", "Update", "Close"}));

  customer->SetEmployer(nullptr);
  EXPECT_EQ(customer->EmployerName(), "WIDGETS");
  ASSERT_TRUE(customer->SaveEmployer());
  EXPECT_EQ(host.db->RecordsetFor(write)->OpsText(), (std::vector<std::string>{"Delete", "Close"}));
}

TEST_F(CustomerSideTest, ACompanyNeverReadsOrWritesAnEmployerLink) {
  customer->SetCustomerType("C");
  customer->SetEmployerNo(90);
  EXPECT_TRUE(customer->OpenEmployer());
  EXPECT_FALSE(customer->SaveEmployer());
  EXPECT_TRUE(host.Log().empty()) << host.LogText();
}

TEST_F(CustomerSideTest, StoredCardTakesTheCustomerAndARefusalShowsTheServersMessage) {
  SwipedCard card;
  host.OnProcedure("KIV_SP_CUSTOMER_InsertCreditCard").Once().Outputs({{"@return_value", 0}, {"@card_seq_no", 4}});
  ASSERT_TRUE(customer->StoreCreditCard(card, true));
  EXPECT_EQ(customer->CardCustomerNo(), 12);
  EXPECT_EQ(customer->CardSeqNo(), 4);
  EXPECT_EQ(card.customer_no, 12);
  EXPECT_TRUE(customer->CardStored());

  host.OnProcedure("KIV_SP_CUSTOMER_InsertCreditCard").Outputs({{"@return_value", -3}, {"@message", Variant::Null()}});
  customer->SetCustomerNo(13);
  ui->Answer(ui::vbOK);
  EXPECT_FALSE(customer->StoreCreditCard(card, false));
  ASSERT_EQ(ui->Boxes().size(), 1u);
  EXPECT_EQ(ui->Boxes()[0].prompt, "");
  EXPECT_EQ(ui->Boxes()[0].title, "Error Saving Card");
  EXPECT_EQ(ui->Boxes()[0].style, ui::vbInformation);
  EXPECT_EQ(card.customer_no, 12);
}

TEST_F(CustomerSideTest, AlertsTakeTheProcedureDefaultsUntilARowExists) {
  customer->SetAllergies("NUTS");
  host.OnProcedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_get").Once().Outputs({{"@height_default", 3}, {"@weight_default", 4}});
  ASSERT_TRUE(customer->OpenRentalSettings());
  EXPECT_EQ(customer->GuestHeightRange(), 3);
  EXPECT_EQ(customer->GuestWeightRange(), 4);
  EXPECT_EQ(customer->Allergies(), "NUTS");

  host.OnProcedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_update").Once().Outputs({{"@return_value", 0}});
  EXPECT_TRUE(customer->SaveAlertsAndSettings());
  host.OnProcedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_update").Outputs({{"@return_value", 1}, {"@message", "Locked"}});
  ui->Answer(ui::vbOK);
  EXPECT_FALSE(customer->SaveAlertsAndSettings());
  ASSERT_EQ(ui->Boxes().size(), 1u);
  EXPECT_EQ(ui->Boxes()[0].prompt, "Locked");
  EXPECT_EQ(ui->Boxes()[0].title, "Error Updating Customer Alerts and Settings");
}

TEST_F(CustomerSideTest, FlagsAndMembershipChecks) {
  host.OnProcedure("KIV_SP_UpdateCustomerHas")
      .Outputs({{"@willcall", 1}, {"@club", true}, {"@so", Variant::Null()}, {"@reservation", 1}, {"@relationship", 1}});
  ASSERT_TRUE(customer->OpenFlags());
  EXPECT_TRUE(customer->WillCallsAvailable() && customer->HasClub() && customer->HasReservations());
  EXPECT_TRUE(customer->HasRelationships(true));
  EXPECT_FALSE(customer->HasUnInvoiced());

  const std::string count =
      "SELECT COUNT(rel_type_id) AS countrel FROM kiv_customer_rel WHERE parent_customer_no = 12 OR "
      "child_customer_no = 12 AND rel_type_id = 'EMPLOYEE'";
  host.OnQuery(count).Once().Row({{"countrel", 1}});
  host.OnQuery(count).Row({{"countrel", 0}});
  EXPECT_TRUE(customer->HasEmployeeRelationships());
  EXPECT_FALSE(customer->HasEmployeeRelationships());


  host.OnProcedure("KIV_SP_CLUB_GetClubMembership").Row({{"member_id", "M-77"}});
  EXPECT_EQ(customer->GetClubMemberId(12), "M-77");
  const size_t calls = host.Log().size();
  EXPECT_EQ(customer->GetClubMemberId(0), "");

  customer->SetCustomerNo(0);
  EXPECT_FALSE(customer->HasRelationships());
  EXPECT_FALSE(customer->HasEmployeeRelationships());
  EXPECT_EQ(host.Log().size(), calls) << "nothing asked for an unsaved customer or number 0";
}

TEST_F(CustomerSideTest, AccountBalanceReadsTheReReadAccount) {
  host.OnQuery("SELECT account_id FROM kiv_customer WHERE customer_no = 12").Once().Row({{"account_id", "A-1"}});
  host.OnQuery("SELECT description, account_limit, account_balance FROM kiv_account WHERE account_id = 'A-1'")
      .Row({{"description", "HOUSE"}, {"account_limit", 500.0}, {"account_balance", 125.5}});
  std::string desc = "untouched";
  double limit = -1;
  EXPECT_EQ(customer->GetAccountBalance(desc, limit), 125.5);
  EXPECT_EQ(desc, "HOUSE");
  EXPECT_EQ(limit, 500.0);

  host.OnQuery("SELECT account_id FROM kiv_customer WHERE customer_no = 12").Row({{"account_id", ""}});
  desc = "untouched";
  EXPECT_EQ(customer->GetAccountBalance(desc, limit), 0.0);
  EXPECT_EQ(desc, "untouched");
  EXPECT_EQ(host.SqlTexts().size(), 3u);
}

}  // namespace
}  // namespace kiv

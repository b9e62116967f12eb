// The customer and address records against the reference host: every SQL text and
// procedure call the records make runs on the real schema and round-trips.
#include <gtest/gtest.h>

#include "records/c_address.h"
#include "records/c_customer.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class RecordsOnRefHost : public TempDatabase {
 protected:
  std::shared_ptr<CCustomer> NewCustomer(const std::string& last, const std::string& first, const std::string& street) {
    auto c = std::make_shared<CCustomer>();
    c->SetIsNewCustomer(true);
    c->SetDB(conn_);
    c->SetErrorObject(server_->GetErrorObject());
    c->SetFiscalYear(2026);
    c->SetLastName(last);
    c->SetFirstName(first);
    c->SetFullName(first + " " + last);
    auto primary = std::make_shared<CAddress>();
    primary->SetAddressType("PRIMARY");
    primary->SetAddressLine1(street);
    primary->SetZip("05401");
    c->Addresses()->Add("PRIMARY", primary);
    return c;
  }
  std::shared_ptr<CCustomer> Open(int32_t no) {
    auto c = std::make_shared<CCustomer>();
    c->SetFiscalYear(2026);
    if (!c->OpenCustomer(conn_, server_->GetErrorObject(), Variant(no))) return nullptr;
    return c;
  }
};

TEST_F(RecordsOnRefHost, NewCustomerSavesReopensAndSharesTheHouseholdAddress) {
  auto ann = NewCustomer("SMITH", "ANN", "1 MAIN ST");
  ASSERT_TRUE(ann->Update());
  ASSERT_GT(ann->CustomerNo(), 0);
  EXPECT_EQ(ann->HouseholdNo(), ann->CustomerNo());
  EXPECT_GT(ann->PrimaryAddress()->AddressID(), 0);

  auto again = Open(ann->CustomerNo());
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->LastName(), "SMITH");
  EXPECT_EQ(again->Zip(), "05401");
  ASSERT_NE(again->PrimaryAddress(), nullptr);
  EXPECT_EQ(again->PrimaryAddress()->AddressLine1(), "1 MAIN ST");
  EXPECT_EQ(again->PrimaryAddressID(), ann->PrimaryAddress()->AddressID());

  // A member of Ann's household reads her addresses.
  auto tim = std::make_shared<CCustomer>();
  tim->SetIsNewCustomer(true);
  tim->SetDB(conn_);
  tim->SetErrorObject(server_->GetErrorObject());
  tim->SetLastName("SMITH");
  tim->SetFirstName("TIM");
  ASSERT_TRUE(tim->Update());
  tim->SetHouseholdNo(ann->CustomerNo());
  ASSERT_TRUE(tim->UpdateHouseholdNo());
  auto member = Open(tim->CustomerNo());
  ASSERT_NE(member, nullptr);
  EXPECT_EQ(member->HouseholdNo(), ann->CustomerNo());
  EXPECT_FALSE(member->HouseholdPrimary());
  ASSERT_NE(member->PrimaryAddress(), nullptr);
  EXPECT_EQ(member->PrimaryAddress()->AddressLine1(), "1 MAIN ST");
  EXPECT_EQ(Count("kiv_error_log"), 0);
}

TEST_F(RecordsOnRefHost, SideRecordTextsRunOnTheSchema) {
  auto ann = NewCustomer("SMITH", "ANN", "1 MAIN ST");
  ASSERT_TRUE(ann->Update());
  db_->Execute("INSERT INTO kiv_customer (customer_no, company_name, customer_type) VALUES (900, 'ACME', 'C')");
  db_->Execute("INSERT INTO kiv_customer_employer (customer_no, fiscal_year, employer_customer_no, is_active) "
               "VALUES (?, 2026, 900, NULL)",
               {Variant(ann->CustomerNo())});
  db_->Execute("INSERT INTO kiv_account (account_id, Description, account_limit, account_balance) "
               "VALUES ('A-1', 'House', 500, 123.45)");
  db_->Execute("UPDATE kiv_customer SET account_id = 'A-1' WHERE customer_no = ?", {Variant(ann->CustomerNo())});

  auto c = Open(ann->CustomerNo());
  ASSERT_NE(c, nullptr);
  EXPECT_TRUE(c->OpenEmployer());
  EXPECT_EQ(c->EmployerName(), "ACME");
  c->SetEmployerNo(900);
  EXPECT_TRUE(c->SaveEmployer());
  EXPECT_EQ(NzLong(Scalar("SELECT parent_customer_no FROM kiv_customer_rel WHERE rel_type_id = 'EMPLOYEE'")), 900);
  EXPECT_TRUE(c->HasEmployeeRelationships());
  std::string description;
  double limit = 0;
  EXPECT_DOUBLE_EQ(c->GetAccountBalance(description, limit), 123.45);
  EXPECT_EQ(description, "House");
  EXPECT_DOUBLE_EQ(limit, 500);
  EXPECT_TRUE(c->OpenFlags());
  EXPECT_TRUE(c->HasRelationships(false));
  EXPECT_TRUE(c->OpenAlertsAndSettings());
  EXPECT_EQ(Count("kiv_error_log"), 0);
}

TEST_F(RecordsOnRefHost, DeleteIsRefusedWhileAReservationRefersToTheCustomer) {
  auto ann = NewCustomer("SMITH", "ANN", "1 MAIN ST");
  ASSERT_TRUE(ann->Update());
  db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no) VALUES (1, ?)", {Variant(ann->CustomerNo())});
  EXPECT_FALSE(ann->DeleteCustomer());
  EXPECT_EQ(Count("kiv_customer"), 1);
  EXPECT_GE(Count("kiv_error_log"), 1);
  db_->Execute("DELETE FROM kiv_reservation");
  EXPECT_TRUE(ann->DeleteCustomer());
  EXPECT_EQ(Count("kiv_customer"), 0);
  EXPECT_EQ(Count("kiv_address"), 0);
}

}  // namespace
}  // namespace kiv::refhost::testing

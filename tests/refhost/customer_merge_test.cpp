// The duplicate merge on a real database: everything of the merged customer found under the
// survivor, refusals that change nothing, and every customer-number column of the live
// schema covered by the merge table.
#include <gtest/gtest.h>

#include <string>

#include "refhost/customer_merge.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class CustomerMerge : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    // 1 survives; 3 is its duplicate and heads a household with 4; 5 is someone else.
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, full_name, household_no, "
                 "household_primary, account_id) VALUES (1, 'SMITH', 'ANN', 'ANN SMITH', 1, 1, NULL), "
                 "(3, 'SMITH', 'ANNE', 'ANNE SMITH', 3, 1, 'A3'), (4, 'SMITH', 'KIM', 'KIM SMITH', 3, 0, NULL), "
                 "(5, 'JONES', 'BOB', 'BOB JONES', 5, 1, NULL)");
    db_->Execute("INSERT INTO kiv_account (account_id, account_limit, customer_no) VALUES ('A3', 500, 3)");
  }
  Variant Out(const std::shared_ptr<host::Command>& c, const char* name) { return c->GetParameters()[name].Value(); }
  std::shared_ptr<host::Command> Merge(int32_t from, int32_t to) {
    auto merge = Procedure("SP_CUSTOMER_DEDUP", {{"@old_customer_no", Variant(from)}, {"@new_customer_no", Variant(to)}});
    EXPECT_TRUE(Run(merge));
    return merge;
  }
  int64_t Number(const std::string& sql) { return NzLong(Scalar(sql)); }
  //! Rows anywhere that still hold `customer_no` in a customer-number column.
  std::string LeftPointingAt(int32_t customer_no) {
    std::string left;
    for (const TableColumn& c : CustomerNumberColumns(*db_))
      if (Number("SELECT COUNT(*) FROM " + c.table + " WHERE " + c.column + " = " + std::to_string(customer_no)) > 0)
        left += c.table + "." + c.column + " ";
    return left;
  }
};

TEST_F(CustomerMerge, EveryCustomerNumberColumnOfTheSchemaHasAMergeRule) {
  std::string missing;
  for (const TableColumn& c : UncoveredCustomerColumns(*db_)) missing += c.table + "." + c.column + "\n";
  EXPECT_EQ(missing, "") << "add these columns to MergeColumns() in procedures_dedup.cpp";
  // The scan itself must see the columns it is there to guard.
  auto live = CustomerNumberColumns(*db_);
  auto has = [&](const char* table, const char* column) {
    for (const TableColumn& c : live)
      if (c.table == table && c.column == column) return true;
    return false;
  };
  EXPECT_TRUE(has("kiv_customer_rel", "parent_customer_no"));
  EXPECT_TRUE(has("kiv_sales_order", "for_customer_no"));
  EXPECT_TRUE(has("kiv_customer_profile", "CUSTOMER_NO"));
  EXPECT_TRUE(has("kiv_customer", "household_no"));
}

TEST_F(CustomerMerge, NameRuleFindsEveryWayOfHoldingACustomerNumber) {
  for (const char* name : {"customer_no", "CUSTOMER_NO", "bill_to_customer_no", "owner_no", "household_no",
                           "cust_no", "parent_customer_no", "bill_to"})
    EXPECT_TRUE(HoldsCustomerNumber(name)) << name;
  for (const char* name : {"customer_type", "salesorder_no", "address_no", "customer_group_id", "card_seq_no"})
    EXPECT_FALSE(HoldsCustomerNumber(name)) << name;
}

TEST_F(CustomerMerge, EverythingOfTheMergedCustomerMovesToTheSurvivor) {
  db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no, for_customer_no) VALUES (50, 3, 3), (51, 5, 3)");
  db_->Execute("INSERT INTO kiv_invoice (invoice_no, salesorder_no, customer_no) VALUES (60, 50, 3)");
  db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no) VALUES (70, 3)");
  db_->Execute("INSERT INTO kiv_access_product (access_no, customer_no) VALUES (80, 3)");
  db_->Execute("INSERT INTO kiv_will_call (will_call_no, customer_no, access_no) VALUES (90, 3, 80)");
  db_->Execute("INSERT INTO kiv_customer_forecast (forecast_no, customer_no) VALUES (95, 3)");
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no) VALUES (3, 1, 'X1'), (1, 1, 'X2')");
  db_->Execute("INSERT INTO kiv_payment (payment_no, invoice_no, customer_no, card_customer_no, card_seq_no) "
               "VALUES (7, 60, 3, 3, 1)");
  db_->Execute("INSERT INTO kiv_customer_group_member (customer_group_id, customer_no) VALUES ('SKI', 3), "
               "('GOLF', 3), ('SKI', 1)");
  db_->Execute("INSERT INTO kiv_club_member (club_id, customer_no, member_id) VALUES ('C1', 3, 'M3')");
  db_->Execute("INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES "
               "(3, 4, 'CHILD'), (3, 1, 'SPOUSE'), (1, 4, 'CHILD')");
  db_->Execute("INSERT INTO kiv_customer_employer (customer_no, fiscal_year, employer_customer_no) VALUES (3, 2026, 5)");
  db_->Execute("INSERT INTO kiv_customer_profile (CUSTOMER_NO, PREFERRED_LIFT, LIFETIME_VISITS) VALUES (1, 'M', NULL), "
               "(3, 'XL', 4)");
  db_->Execute("INSERT INTO kiv_customer_alert (customer_no, Allergies) VALUES (3, 'PEANUTS')");
  db_->Execute("INSERT INTO kiv_address (address_no, address_type) VALUES (7, 'PRIMARY'), (8, 'PRIMARY'), "
               "(9, 'MAILING')");
  db_->Execute("INSERT INTO kiv_customer_address (customer_no, address_no, address_type, primary_address) VALUES "
               "(3, 7, 'PRIMARY', 1), (1, 8, 'PRIMARY', 1), (3, 9, 'MAILING', 0)");

  auto merge = Merge(3, 1);
  EXPECT_EQ(Out(merge, "@return_value").ToLong(), 0) << NzString(Out(merge, "@message"));
  EXPECT_EQ(LeftPointingAt(3), "");
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_customer WHERE customer_no = 3"), 0);

  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_sales_order WHERE customer_no = 1"), 1);
  EXPECT_EQ(Number("SELECT has_reservation + has_so + has_willcall FROM kiv_customer WHERE customer_no = 1"), 3)
      << "the survivor's flags answer for what it inherited";
  EXPECT_EQ(Number("SELECT for_customer_no FROM kiv_sales_order WHERE salesorder_no = 51"), 1);
  for (const char* table : {"kiv_invoice", "kiv_reservation", "kiv_access_product", "kiv_will_call",
                            "kiv_customer_forecast", "kiv_club_member", "kiv_customer_alert"})
    EXPECT_EQ(Number(std::string("SELECT COUNT(*) FROM ") + table + " WHERE customer_no = 1"), 1) << table;
  // Cards numbered on after the survivor's own; memberships once each.
  EXPECT_EQ(Number("SELECT COUNT(DISTINCT card_seq_no) FROM kiv_customer_cc WHERE customer_no = 1"), 2);
  EXPECT_EQ(NzString(Scalar("SELECT c.x_card_no FROM kiv_payment p JOIN kiv_customer_cc c ON c.customer_no = "
                            "p.card_customer_no AND c.card_seq_no = p.card_seq_no WHERE p.payment_no = 7")),
            "X1")
      << "a payment keeps pointing at the card it was made with";
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_customer_group_member WHERE customer_no = 1"), 2);
  // The account link follows, and the account knows its new holder.
  EXPECT_EQ(NzString(Scalar("SELECT account_id FROM kiv_customer WHERE customer_no = 1")), "A3");
  EXPECT_EQ(Number("SELECT customer_no FROM kiv_account WHERE account_id = 'A3'"), 1);
  // The household member follows into the survivor's household; the link between the two
  // duplicates themselves is gone rather than pointing at itself.
  EXPECT_EQ(Number("SELECT household_no FROM kiv_customer WHERE customer_no = 4"), 1);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_customer_rel WHERE child_customer_no = 4"), 1) << "once, not twice";
  EXPECT_EQ(Number("SELECT parent_customer_no FROM kiv_customer_rel WHERE child_customer_no = 4"), 1);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_customer_rel WHERE parent_customer_no = child_customer_no"), 0);
  EXPECT_EQ(Number("SELECT employer_customer_no FROM kiv_customer_employer WHERE customer_no = 1"), 5);
  // Profile: the survivor keeps its own values and gains the ones it lacked.
  EXPECT_EQ(NzString(Scalar("SELECT PREFERRED_LIFT FROM kiv_customer_profile WHERE CUSTOMER_NO = 1")), "M");
  EXPECT_EQ(Number("SELECT LIFETIME_VISITS FROM kiv_customer_profile WHERE CUSTOMER_NO = 1"), 4);
  // Addresses: a type the survivor lacked joins as secondary; its own primary stays primary.
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_customer_address WHERE customer_no = 1"), 2);
  EXPECT_EQ(Number("SELECT address_no FROM kiv_customer_address WHERE customer_no = 1 AND primary_address <> 0"), 8);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM kiv_address WHERE address_no = 7"), 0) << "the dropped address went too";
  // The activity log says who merged what into what.
  EXPECT_EQ(NzString(Scalar("SELECT detail FROM kiv_activity_log WHERE task_code = 'CUSTDEDUP'")),
            "FROM=3;FN=ANNE SMITH;TO=1;TN=ANN SMITH;");
  EXPECT_EQ(NzString(Scalar("SELECT user_id FROM kiv_activity_log WHERE task_code = 'CUSTDEDUP'")), "CLERK");
}

TEST_F(CustomerMerge, ASurvivorThatWasAMemberOfTheMergedHouseholdHeadsIt) {
  auto merge = Merge(3, 4);
  EXPECT_EQ(Out(merge, "@return_value").ToLong(), 0);
  EXPECT_EQ(Number("SELECT household_no FROM kiv_customer WHERE customer_no = 4"), 4);
  EXPECT_EQ(Number("SELECT household_primary FROM kiv_customer WHERE customer_no = 4"), 1);
  EXPECT_EQ(LeftPointingAt(3), "");
}

TEST_F(CustomerMerge, RefusalsChangeNothing) {
  db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no) VALUES (50, 3)");
  struct Case {
    int32_t from, to;
    const char* message;
  };
  for (const Case& c : {Case{3, 3, "A customer cannot be merged into itself."},
                        Case{99, 1, "does not exist"}, Case{3, 99, "does not exist"}}) {
    auto merge = Merge(c.from, c.to);
    EXPECT_EQ(Out(merge, "@return_value").ToLong(), -1) << c.from << "->" << c.to;
    EXPECT_NE(NzString(Out(merge, "@message")).find(c.message), std::string::npos) << NzString(Out(merge, "@message"));
  }
  EXPECT_EQ(Count("kiv_customer"), 4);
  EXPECT_EQ(Number("SELECT customer_no FROM kiv_sales_order"), 3);
  EXPECT_EQ(Count("kiv_activity_log"), 0);
}

TEST_F(CustomerMerge, AColumnWithoutARuleStopsTheMergeAndNamesIt) {
  // A table the merge knows nothing about: the merge must not leave it pointing at a
  // deleted customer, so it refuses and puts everything back.
  db_->Execute("CREATE TABLE kiv_gift_card (card_id INTEGER PRIMARY KEY, owner_customer_no INTEGER)");
  db_->Execute("INSERT INTO kiv_gift_card (card_id, owner_customer_no) VALUES (1, 3)");
  db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no) VALUES (50, 3)");
  auto merge = Merge(3, 1);
  EXPECT_EQ(Out(merge, "@return_value").ToLong(), -1);
  EXPECT_NE(NzString(Out(merge, "@message")).find("kiv_gift_card.owner_customer_no"), std::string::npos);
  EXPECT_EQ(Count("kiv_customer"), 4);
  EXPECT_EQ(Number("SELECT customer_no FROM kiv_sales_order"), 3);
  EXPECT_EQ(Number("SELECT household_no FROM kiv_customer WHERE customer_no = 4"), 3);
  EXPECT_EQ(Count("kiv_activity_log"), 0);
}

}  // namespace
}  // namespace kiv::refhost::testing

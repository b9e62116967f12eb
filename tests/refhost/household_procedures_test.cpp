// Household, family, employer and card-file procedures on a real database.
#include <gtest/gtest.h>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class HouseholdProcedures : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, household_no, household_primary, Zip) "
                 "VALUES (1, 'SMITH', 'ANN', 1, 1, '05401'), (2, 'SMITH', 'TIM', 2, 1, NULL), "
                 "(3, 'SMYTH', 'ANNE', 3, 1, NULL)");
  }
  Variant Out(const std::shared_ptr<host::Command>& c, const char* name) { return c->GetParameters()[name].Value(); }
  int32_t HouseholdOf(int32_t no) {
    return NzLong(Scalar("SELECT household_no FROM kiv_customer WHERE customer_no = " + std::to_string(no)));
  }
};

TEST_F(HouseholdProcedures, FamilyMembersJoinAndLeaveTheParentsHousehold) {
  auto add = Procedure("KIV_SP_INSERTCUSTOMER_ADD_FAMILY", {{"@customer_no", Variant(int32_t{1})},
                                                            {"@last_name", Variant("SMITH")},
                                                            {"@first_name", Variant("KIM")},
                                                            {"@full_name", Variant("KIM SMITH")},
                                                            {"@dob", Variant(Date::FromParts(2015, 6, 1))},
                                                            {"@rel_type_id", Variant("CHILD")},
                                                            {"@household_no", Variant(int32_t{1})},
                                                            {"@user_id", Variant("CLERK")}});
  ASSERT_TRUE(Run(add));
  int32_t kim = Out(add, "@new_customer_no").ToLong();
  EXPECT_EQ(kim, 4);
  EXPECT_EQ(HouseholdOf(kim), 1);
  EXPECT_EQ(NzString(Scalar("SELECT rel_type_id FROM kiv_customer_rel WHERE child_customer_no = 4")), "CHILD");

  auto relate = Procedure("KIV_SP_UpdateCustomerRelationship", {{"@parent_customer_no", Variant(int32_t{1})},
                                                                {"@child_customer_no", Variant(int32_t{2})},
                                                                {"@rel_type_id", Variant("SPOUSE")}});
  ASSERT_TRUE(Run(relate));
  EXPECT_EQ(HouseholdOf(2), 1);
  auto none = Procedure("KIV_SP_UpdateCustomerRelationship", {{"@parent_customer_no", Variant(int32_t{1})},
                                                              {"@child_customer_no", Variant(int32_t{3})}});
  ASSERT_TRUE(Run(none));
  EXPECT_EQ(Out(none, "@return_value").ToLong(), -1);
  EXPECT_EQ(HouseholdOf(3), 3);

  ASSERT_TRUE(Run(Procedure("KIV_SP_DeleteCustomerRelationship",
                            {{"@parent_customer_no", Variant(int32_t{1})}, {"@child_customer_no", Variant(int32_t{2})}})));
  EXPECT_EQ(HouseholdOf(2), 2);
  EXPECT_EQ(NzLong(Scalar("SELECT household_primary FROM kiv_customer WHERE customer_no = 2")), 1);
  EXPECT_EQ(Count("kiv_customer_rel"), 1);
}

TEST_F(HouseholdProcedures, AFailedCallLeavesNothingBehind) {
  // The relationship row is refused after the new member and its number were written.
  db_->Execute("CREATE TRIGGER refuse_rel BEFORE INSERT ON kiv_customer_rel BEGIN "
               "SELECT RAISE(ABORT, 'relationships are closed'); END");
  auto add = Procedure("KIV_SP_INSERTCUSTOMER_ADD_FAMILY", {{"@customer_no", Variant(int32_t{1})},
                                                            {"@last_name", Variant("SMITH")},
                                                            {"@rel_type_id", Variant("CHILD")}});
  EXPECT_FALSE(Run(add));
  EXPECT_EQ(Count("kiv_customer"), 3);
  EXPECT_EQ(NzLong(Scalar("SELECT last_no FROM kiv_sequence WHERE sequence_name = 'seq_customer_no'")), 0);
  EXPECT_NE(NzString(Scalar("SELECT description FROM kiv_error_log")).find("relationships are closed"),
            std::string::npos);

  // A value the parameter cannot hold fails the call before it starts.
  auto bad = Procedure("KIV_SP_UpdateCustomerHouseholdPrimary", {{"@customer_no", Variant("twelve")}});
  EXPECT_FALSE(Run(bad));

  // Another program holding the write lock makes a writing call fail after the busy timeout.
  OpenOptions quick;
  quick.busy_timeout_ms = 50;
  auto other = RefHost::Open(path_, quick);
  auto other_conn = std::static_pointer_cast<RefAppServer>(other->SignIn("CLERK"));
  other_conn->Errors()->SetEcho(false);
  db_->Execute("BEGIN IMMEDIATE");
  bool error = false;
  auto primary = other_conn->Connection()->CreateCommand(error);
  primary->SetCommandText("KIV_SP_UpdateCustomerHouseholdPrimary");
  primary->SetCommandType(host::adCmdStoredProc);
  primary->GetParameters().Refresh();
  primary->GetParameters()["@customer_no"].SetValue(Variant(int32_t{2}));
  other_conn->Connection()->ExecuteCommand(primary, error);
  EXPECT_TRUE(error);
  db_->Execute("ROLLBACK");
  error = false;
  other_conn->Connection()->ExecuteCommand(primary, error);
  EXPECT_FALSE(error);
}

TEST_F(HouseholdProcedures, EmployerLinksAreKeptPerFiscalYear) {
  db_->Execute("INSERT INTO kiv_customer (customer_no, company_name, customer_type) VALUES (9, 'ACME', 'C')");
  auto link = [&](bool active) {
    return Run(Procedure("KIV_SP_UpdateCustomerEmployerRelationship", {{"@customer_no", Variant(int32_t{1})},
                                                                       {"@fiscal_year", Variant(int32_t{2026})},
                                                                       {"@employer_customer_no", Variant(int32_t{9})},
                                                                       {"@is_active", Variant(active)},
                                                                       {"@comment_note", Variant("SEASONAL")}}));
  };
  ASSERT_TRUE(link(true));
  ASSERT_TRUE(link(false));
  EXPECT_EQ(Count("kiv_customer_employer"), 1);
  EXPECT_EQ(NzLong(Scalar("SELECT is_active FROM kiv_customer_employer")), 0);
  ASSERT_TRUE(Run(Procedure("SP_DeleteCustomerEmployerRelationship", {{"@customer_no", Variant(int32_t{1})},
                                                                      {"@fiscal_year", Variant(int32_t{2026})},
                                                                      {"@employer_customer_no", Variant(int32_t{9})}})));
  EXPECT_EQ(Count("kiv_customer_employer"), 0);
}

TEST_F(HouseholdProcedures, ActiveCardsAskBeforeTheyAreDeleted) {
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, is_active) VALUES (1, 1, 'X', 1)");
  auto del = [&](bool confirm) {
    auto c = Procedure("KIV_SP_CUSTOMER_CC_delete", {{"@customer_no", Variant(int32_t{1})},
                                                     {"@card_seq_no", Variant(int32_t{1})},
                                                     {"@kiv_user", Variant("CLERK")},
                                                     {"@confirm_delete", Variant(confirm)}});
    EXPECT_TRUE(Run(c));
    return Out(c, "@return_value").ToLong();
  };
  EXPECT_EQ(del(false), 1);
  EXPECT_EQ(Count("kiv_customer_cc"), 1);
  EXPECT_EQ(del(true), 0);
  EXPECT_EQ(Count("kiv_customer_cc"), 0);
  EXPECT_EQ(del(true), -1);

  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, is_active) VALUES (1, 2, 'X', 1)");
  auto off = Procedure("KIV_SP_CUSTOMER_UpdateCreditCard", {{"@customer_no", Variant(int32_t{1})},
                                                            {"@card_seq_no", Variant(int32_t{2})},
                                                            {"@is_active", Variant(false)},
                                                            {"@kiv_user", Variant("MANAGER")}});
  ASSERT_TRUE(Run(off));
  EXPECT_EQ(Out(off, "@modified_on").ToDate(), clock_->Now());
  // The change is the signed-in user's, whatever name the call carries.
  EXPECT_EQ(NzString(Scalar("SELECT modified_by FROM kiv_customer_cc WHERE card_seq_no = 2")), "CLERK");
  EXPECT_EQ(del(false), -1) << "card 1 is gone";
  auto list = Rows(Procedure("KIV_SP_CUSTOMER_GetCC", {{"@customer_no", Variant(int32_t{1})},
                                                       {"@kiv_user", Variant("CLERK")},
                                                       {"@kiv_password", Variant("pw")}}));
  ASSERT_FALSE(list->Eof());
  EXPECT_FALSE((*list)["is_active"].ToBool());
  EXPECT_TRUE((*list)["cc_card_no"].IsNull());
}

}  // namespace
}  // namespace kiv::refhost::testing

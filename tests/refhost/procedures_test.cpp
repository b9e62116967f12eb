// The stored procedures on a real database: parameter lists as a server reports them,
// customer insert, update and delete, address numbering, cards, alerts, search paging.
#include "refhost/procedure_registry.h"

#include <gtest/gtest.h>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class ProceduresTest : public TempDatabase {
 protected:
  //! Saves a customer through the update procedure; returns the number it was stored under.
  int32_t SaveCustomer(int32_t customer_no, const std::string& last, const std::string& first,
                       const std::string& type = "P", int32_t household_no = 0) {
    auto command = Procedure("KiV_SP_CUSTOMER_UpdateCustomer",
                             {{"@customer_no", Variant(customer_no)},
                              {"@first_name", Variant(first)},
                              {"@last_name", Variant(last)},
                              {"@full_name", Variant(first + " " + last)},
                              {"@company_name", Variant(type == "C" ? last : "")},
                              {"@customer_type", Variant(type)},
                              {"@dob", Variant(Date())},
                              {"@preloaded", Variant(int16_t{0})},
                              {"@cust_modified", Variant(int16_t{-1})},
                              {"@kiv_user", Variant("CLERK")},
                              {"@date_of_release", Variant::Null()},
                              {"@household_no", Variant(household_no)},
                              {"@household_primary", Variant(false)}});
    if (!Run(command)) return -1;
    return command->GetParameters()["@customer_no"].Value().ToLong();
  }
  //! Stores an address; returns its number, or the negative return value when refused.
  int32_t SaveAddress(int32_t address_no, int32_t customer_no, const std::string& type, const std::string& line1) {
    auto command = Procedure("KIV_SP_UpdateAddress", {{"@address_no", Variant(address_no)},
                                                      {"@address_1", Variant(line1)},
                                                      {"@zip", Variant("05401")},
                                                      {"@address_type", Variant(type)},
                                                      {"@customer_no", Variant(customer_no)}});
    EXPECT_TRUE(Run(command));
    int32_t rv = command->GetParameters()["@return_value"].Value().ToLong();
    if (rv < 0) return rv;
    return command->GetParameters()["@address_no"].Value().ToLong();
  }
};

TEST_F(ProceduresTest, RefreshListsTheReturnValueFirstThenTheDeclaredParameters) {
  struct Expect {
    const char* procedure;
    std::vector<std::string> names;
  };
  const Expect expected[] = {
      {"kiv_sp_getcustomer", {"@RETURN_VALUE", "@customer_no"}},
      {"SP_DeleteAddress", {"@RETURN_VALUE", "@address_no"}},
      {"KIV_SP_UpdateCustomerHas",
       {"@RETURN_VALUE", "@customer_no", "@willcall", "@club", "@so", "@reservation", "@relationship"}},
      {"KIV_SP_CUSTOMER_CUSTOMER_ALERT_get", {"@RETURN_VALUE", "@customer_no", "@prefill", "@height_default", "@weight_default"}},
      {"KIV_SP_CLUB_GetClubMembership", {"@RETURN_VALUE", "@customer_no", "@is_active", "@num_return"}},
  };
  for (const auto& e : expected) {
    auto command = Procedure(e.procedure, {});
    auto& params = command->GetParameters();
    ASSERT_EQ(params.Count(), static_cast<int32_t>(e.names.size())) << e.procedure;
    for (size_t i = 0; i < e.names.size(); ++i) EXPECT_EQ(params[static_cast<int32_t>(i)].Name(), e.names[i]);
    EXPECT_EQ(params[0].Direction(), host::adParamReturnValue);
  }
  auto update = Procedure("KiV_SP_CUSTOMER_UpdateCustomer", {});
  EXPECT_EQ(update->GetParameters().Count(), 32);  // return value, 30 inputs, the message
  EXPECT_EQ(update->GetParameters()["@customer_no"].Direction(), host::adParamInputOutput);
  EXPECT_EQ(update->GetParameters()["@LAST_NAME"].Type(), host::adVarChar);
  EXPECT_EQ(update->GetParameters()["@last_name"].Size(), 50);
  EXPECT_EQ(update->GetParameters()["@dob"].Type(), host::adDBTimeStamp);
  EXPECT_EQ(update->GetParameters().Find("@nothing"), nullptr);
  EXPECT_THROW(update->GetParameters()["@nothing"], HostError);

  bool error = false;
  auto unknown = conn_->CreateCommand(error);
  unknown->SetCommandText("KIV_SP_NoSuchThing");
  unknown->SetCommandType(host::adCmdStoredProc);
  EXPECT_THROW(unknown->GetParameters().Refresh(), HostError);
  EXPECT_FALSE(Run(unknown));
}

TEST_F(ProceduresTest, NewCustomerGetsANumberAndItsOwnHousehold) {
  int32_t first = SaveCustomer(0, "SMITH", "ANN");
  int32_t second = SaveCustomer(0, "JONES", "BOB", "P", first);
  ASSERT_GT(first, 0);
  EXPECT_EQ(second, first + 1);
  auto rs = Rows(Procedure("KIV_SP_GetCustomer", {{"@customer_no", Variant(first)}}));
  ASSERT_NE(rs, nullptr);
  ASSERT_FALSE(rs->Eof());
  EXPECT_EQ((*rs)["household_no"].ToLong(), first);
  EXPECT_TRUE((*rs)["household_primary"].ToBool());
  EXPECT_TRUE((*rs)["DOB"].IsNull()) << "the zero date is stored as no date";
  EXPECT_EQ((*rs)["created_by"].ToString(), "CLERK");
  EXPECT_EQ((*rs)["create_date"].ToDate(), clock_->Now());
  for (const char* flag : {"has_willcall", "has_reservation", "has_so", "has_club", "has_relationship"}) {
    EXPECT_EQ(rs->FieldByName(flag).Type(), host::adBoolean) << flag;
    EXPECT_FALSE((*rs)[flag].ToBool()) << flag;
  }
  EXPECT_EQ(NzLong(Scalar("SELECT household_no FROM kiv_customer WHERE customer_no = " + std::to_string(second))),
            first);
  EXPECT_EQ(NzLong(Scalar("SELECT household_primary FROM kiv_customer WHERE customer_no = " + std::to_string(second))),
            0);

  // An update keeps the number; an unknown number or a bad type is refused and writes nothing.
  EXPECT_EQ(SaveCustomer(first, "SMYTHE", "ANN"), first);
  EXPECT_EQ(NzString(Scalar("SELECT last_name FROM kiv_customer WHERE customer_no = " + std::to_string(first))),
            "SMYTHE");
  EXPECT_EQ(SaveCustomer(999, "NOBODY", "X"), -1);
  EXPECT_EQ(SaveCustomer(0, "ACME", "", "Q"), -1);
  EXPECT_EQ(Count("kiv_customer"), 2);
  EXPECT_EQ(Count("kiv_error_log"), 2) << "each failure is reported";
}

TEST_F(ProceduresTest, AnUpdateKeepsTheStoredValueOfEveryParameterItNeverAssigned) {
  const int32_t no = SaveCustomer(0, "SMITH", "ANN");
  db_->Execute("UPDATE kiv_customer SET EMail = 'ann@x.org', Occupation = 'GUIDE', Gender = 'F' WHERE customer_no = ?",
               {Variant(no)});
  Rows(Procedure("KIV_SP_GetCustomer", {{"@customer_no", Variant(no)}}));  // this terminal has seen them
  // Only the names and the household, as a household's new head is sent.
  ASSERT_TRUE(Run(Procedure("KiV_SP_CUSTOMER_UpdateCustomer", {{"@customer_no", Variant(no)},
                                                                 {"@last_name", Variant("SMYTHE")},
                                                                 {"@household_no", Variant(no)},
                                                                 {"@Occupation", Variant::Null()},
                                                                 {"@gender", Variant()}})));
  const std::string where = " FROM kiv_customer WHERE customer_no = " + std::to_string(no);
  EXPECT_EQ(NzString(Scalar("SELECT last_name" + where)), "SMYTHE");
  EXPECT_EQ(NzString(Scalar("SELECT first_name" + where)), "ANN");
  EXPECT_EQ(NzString(Scalar("SELECT EMail" + where)), "ann@x.org");
  EXPECT_EQ(NzString(Scalar("SELECT customer_type" + where)), "P");
  EXPECT_EQ(NzString(Scalar("SELECT Occupation" + where)), "") << "a Null sent is a value";
  EXPECT_EQ(NzString(Scalar("SELECT Gender" + where)), "") << "an Empty sent is a value too";
}

TEST_F(ProceduresTest, HasFlagsFollowTheActivityTables) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no) VALUES (10, ?)", {Variant(no)});
  db_->Execute("INSERT INTO kiv_club (club_id) VALUES ('SKI')");
  db_->Execute("INSERT INTO kiv_club_member (club_id, customer_no, member_id) VALUES ('SKI', ?, 'M1')", {Variant(no)});
  auto command = Procedure("KIV_SP_UpdateCustomerHas", {{"@customer_no", Variant(no)}});
  ASSERT_TRUE(Run(command));
  auto& p = command->GetParameters();
  EXPECT_TRUE(p["@so"].Value().ToBool());
  EXPECT_TRUE(p["@club"].Value().ToBool());
  EXPECT_FALSE(p["@reservation"].Value().ToBool());
  EXPECT_FALSE(p["@willcall"].Value().ToBool());
  EXPECT_EQ(NzLong(Scalar("SELECT has_so FROM kiv_customer")), 1);

  auto club = Rows(Procedure("KIV_SP_CLUB_GetClubMembership", {{"@customer_no", Variant(no)},
                                                                {"@is_active", Variant(int16_t{1})},
                                                                {"@num_return", Variant(int16_t{1})}}));
  ASSERT_FALSE(club->Eof());
  EXPECT_EQ((*club)["member_id"].ToString(), "M1");
}

TEST_F(ProceduresTest, DeleteRefusesWhileSalesOrReservationsReferToTheCustomer) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  int32_t member = SaveCustomer(0, "SMITH", "TIM", "P", no);
  SaveAddress(0, no, "PRIMARY", "1 MAIN ST");
  db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no) VALUES (5, ?)", {Variant(no)});
  bool error = false;
  auto command = conn_->CreateCommandText("SP_DeleteCustomer");
  command->SetCommandType(host::adCmdStoredProc);
  command->GetParameters().Refresh();
  command->GetParameters()[1].SetValue(Variant(no));
  conn_->ExecuteCommand(command, error);
  EXPECT_TRUE(error);
  EXPECT_EQ(NzString(Scalar("SELECT description FROM kiv_error_log")),
            "Customer " + std::to_string(no) + " cannot be deleted: it has 1 reservation.");
  EXPECT_EQ(Count("kiv_customer"), 2);

  db_->Execute("DELETE FROM kiv_reservation");
  error = false;
  command->GetParameters()[1].SetValue(Variant(no));
  conn_->ExecuteCommand(command, error);
  EXPECT_FALSE(error);
  EXPECT_EQ(Count("kiv_customer"), 1);
  EXPECT_EQ(Count("kiv_address"), 0);
  EXPECT_EQ(Count("kiv_customer_address"), 0);
  EXPECT_EQ(NzLong(Scalar("SELECT household_no FROM kiv_customer")), member) << "the member is its own household now";
}

TEST_F(ProceduresTest, AddressesAreNumberedFromTheSequenceAndLinkedToTheCustomer) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  int32_t primary = SaveAddress(0, no, "PRIMARY", "1 MAIN ST");
  int32_t billing = SaveAddress(0, no, "BILLING", "PO BOX 4");
  EXPECT_EQ(primary, 1);
  EXPECT_EQ(billing, 2);
  EXPECT_EQ(NzLong(Scalar("SELECT last_no FROM kiv_sequence WHERE sequence_name = 'seq_address_no'")), 2);
  auto rs = Query("SELECT * FROM kiv_customer_address WHERE customer_no = " + std::to_string(no) +
                  " ORDER BY address_no");
  ASSERT_FALSE(rs->Eof());
  EXPECT_TRUE((*rs)["primary_address"].ToBool());
  rs->MoveNext();
  EXPECT_FALSE((*rs)["primary_address"].ToBool());
  EXPECT_EQ((*rs)["address_type"].ToString(), "BILLING");

  // Turning the billing address into the primary one moves the flag.
  EXPECT_EQ(SaveAddress(billing, no, "PRIMARY", "PO BOX 4"), billing);
  EXPECT_EQ(NzLong(Scalar("SELECT address_no FROM kiv_customer_address WHERE primary_address <> 0")), billing);
  EXPECT_EQ(Count("kiv_customer_address"), 2);

  auto read = Rows(Procedure("KIV_SP_ADDRESS_GetAddress", {{"@address_no", Variant(billing)}}));
  EXPECT_EQ((*read)["Address_1"].ToString(), "PO BOX 4");

  // Refusals come back through the return value, and nothing is written.
  EXPECT_EQ(SaveAddress(0, no, "", "X"), -1);
  EXPECT_EQ(SaveAddress(0, 777, "PRIMARY", "X"), -1);
  EXPECT_EQ(SaveAddress(555, no, "PRIMARY", "X"), -1);
  EXPECT_EQ(Count("kiv_address"), 2);

  ASSERT_TRUE(Run(Procedure("SP_DeleteAddress", {{"@address_no", Variant(primary)}})));
  EXPECT_EQ(Count("kiv_address"), 1);
  EXPECT_EQ(Count("kiv_customer_address"), 1);
}

TEST_F(ProceduresTest, CardsKeepOnlyTheMaskedNumberAndLastFourDigits) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  auto store = [&](const std::string& card_no, const std::string& track2, const std::string& masked) {
    auto command = Procedure("KIV_SP_CUSTOMER_InsertCreditCard", {{"@customer_no", Variant(no)},
                                                                  {"@track_1", Variant("")},
                                                                  {"@track_2", Variant(track2)},
                                                                  {"@card_no", Variant(card_no)},
                                                                  {"@exp_date", Variant("12/29")},
                                                                  {"@x_card_no", Variant(masked)},
                                                                  {"@kiv_user", Variant("MANAGER")},
                                                                  {"@is_active", Variant(true)}});
    EXPECT_TRUE(Run(command));
    return command;
  };
  auto typed = store("4111111111111111", "", "XXXXXXXXXXXX1111");
  EXPECT_EQ(typed->GetParameters()["@return_value"].Value().ToLong(), 0);
  EXPECT_EQ(typed->GetParameters()["@card_seq_no"].Value().ToLong(), 1);
  // A "masked" number showing the whole card is masked again; a swipe gives the number.
  store("", ";5500000000000004=29121010000?", "5500000000000004");
  auto refused = store("12", "", "");
  EXPECT_EQ(refused->GetParameters()["@return_value"].Value().ToLong(), -1);
  EXPECT_EQ(refused->GetParameters()["@message"].Value().ToString(), "The card number is not valid.");

  auto all = db_->QueryRows("SELECT * FROM kiv_customer_cc ORDER BY card_seq_no");
  ASSERT_EQ(all.size(), 2u);
  for (const auto& row : all)
    for (const auto& value : row)
      if (value.Type() == VarType::String) {
        EXPECT_EQ(value.ToString().find("411111111111"), std::string::npos);
        EXPECT_EQ(value.ToString().find("550000000000"), std::string::npos);
      }
  EXPECT_EQ(NzString(Scalar("SELECT x_card_no FROM kiv_customer_cc WHERE card_seq_no = 2")), "XXXXXXXXXXXX0004");
  // The card is the signed-in user's entry, whatever name the call carries.
  EXPECT_EQ(NzString(Scalar("SELECT created_by || '/' || modified_by FROM kiv_customer_cc WHERE card_seq_no = 1")),
            "CLERK/CLERK");

  auto read = Rows(Procedure("KIV_SP_CUSTOMER_GetCustomerCC", {{"@household_no", Variant(no)},
                                                               {"@customer_no", Variant(no)},
                                                               {"@card_customer_no", Variant(no)},
                                                               {"@card_seq_no", Variant(int32_t{1})},
                                                               {"@kiv_user", Variant("CLERK")},
                                                               {"@kiv_password", Variant(conn_->UserPassword())}}));
  ASSERT_NE(read, nullptr);
  EXPECT_EQ((*read)["last_four"].ToString(), "1111");
  EXPECT_EQ((*read)["cc_card_no"].ToString(), "XXXXXXXXXXXX1111");
  auto wrong = Procedure("KIV_SP_CUSTOMER_GetCustomerCC", {{"@kiv_user", Variant("CLERK")},
                                                           {"@kiv_password", Variant("guess")}});
  EXPECT_EQ(Rows(wrong), nullptr);
}

TEST_F(ProceduresTest, CardsAreReadOnlyByTheSignedInUserWithTheirOwnPassword) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, is_active) "
               "VALUES (?, 1, 'XXXXXXXXXXXX1111', '1111', 1)",
               {Variant(no)});
  db_->Execute("INSERT INTO kiv_user (user_id, password_hash) VALUES ('MANAGER', ?), ('NOPASS', NULL)",
               {Variant(PasswordHashOf("mpw"))});
  struct Case {
    const char* signed_in;
    const char* sign_in_password;
    const char* kiv_user;
    const char* kiv_password;
    bool reads;
  };
  const Case cases[] = {
      {"CLERK", "pw", "CLERK", "pw", true},
      {"CLERK", "pw", "clerk", "pw", true},
      {"CLERK", "pw", "CLERK", "", false},
      {"CLERK", "pw", "CLERK", "guess", false},
      // Another user's name and password do not open cards to the clerk signed in here.
      {"CLERK", "pw", "MANAGER", "mpw", false},
      {"CLERK", "pw", "NOBODY", "pw", false},
      // A user without a stored password reads no cards, whatever is given.
      {"NOPASS", "", "NOPASS", "", false},
      {"NOPASS", "", "NOPASS", "pw", false},
  };
  for (const auto& c : cases) {
    auto server = std::static_pointer_cast<RefAppServer>(host_->SignIn(c.signed_in, c.sign_in_password));
    server->Errors()->SetEcho(false);
    conn_ = server->Connection();
    auto list = Rows(Procedure("KIV_SP_CUSTOMER_GetCC", {{"@customer_no", Variant(no)},
                                                         {"@kiv_user", Variant(c.kiv_user)},
                                                         {"@kiv_password", Variant(c.kiv_password)}}));
    auto one = Rows(Procedure("KIV_SP_CUSTOMER_GetCustomerCC", {{"@household_no", Variant(no)},
                                                                {"@customer_no", Variant(no)},
                                                                {"@kiv_user", Variant(c.kiv_user)},
                                                                {"@kiv_password", Variant(c.kiv_password)}}));
    EXPECT_EQ(list != nullptr, c.reads) << c.signed_in << " as " << c.kiv_user << "/" << c.kiv_password;
    EXPECT_EQ(one != nullptr, c.reads) << c.signed_in << " as " << c.kiv_user << "/" << c.kiv_password;
    if (c.reads && one != nullptr) {
      EXPECT_EQ((*one)["last_four"].ToString(), "1111");
    }
  }
}

TEST_F(ProceduresTest, PasswordsAreStoredHashedAndCheckedAtSignIn) {
  const std::string& hash = PasswordHashOf("pw");
  EXPECT_EQ(hash.find("pw"), std::string::npos);
  EXPECT_TRUE(PasswordMatches(hash, "pw"));
  EXPECT_FALSE(PasswordMatches(hash, "PW"));
  EXPECT_FALSE(PasswordMatches(hash, ""));
  EXPECT_FALSE(PasswordMatches("", "pw"));
  EXPECT_FALSE(PasswordMatches("not a hash", "pw"));
  EXPECT_NE(HashPassword("pw"), hash) << "each hash has its own salt";
  EXPECT_THROW(host_->SignIn("CLERK", "guess"), HostError);
  EXPECT_EQ(host_->SignIn("CLERK")->GetConnection("")->UserPassword(), "");
}

TEST_F(ProceduresTest, AlertsUseTheListDefaultsUntilSettingsAreSaved) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  db_->Execute("INSERT INTO kiv_guest_height (guest_height_range, Description, is_default) VALUES (1, 'S', 0), (3, 'M', 1)");
  db_->Execute("INSERT INTO kiv_guest_weight (guest_weight_range, Description, is_default) VALUES (4, 'L', 1)");
  auto get = Procedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_get", {{"@customer_no", Variant(no)}});
  auto rs = Rows(get);
  ASSERT_NE(rs, nullptr);
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(get->GetParameters()["@height_default"].Value().ToLong(), 3);
  EXPECT_EQ(get->GetParameters()["@weight_default"].Value().ToLong(), 4);

  auto update = Procedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_update", {{"@customer_no", Variant(no)},
                                                                    {"@allergies", Variant("PEANUTS")},
                                                                    {"@guest_height_range", Variant(int16_t{1})},
                                                                    {"@guest_weight_range", Variant::Null()}});
  ASSERT_TRUE(Run(update));
  EXPECT_EQ(update->GetParameters()["@return_value"].Value().ToLong(), 0);
  rs = Rows(Procedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_get", {{"@customer_no", Variant(no)}}));
  ASSERT_FALSE(rs->Eof());
  EXPECT_EQ((*rs)["Allergies"].ToString(), "PEANUTS");
  EXPECT_EQ((*rs)["guest_height_range"].ToInt(), 1);
  EXPECT_EQ((*rs)["guest_weight_range"].ToInt(), 4) << "a range never saved reads as the default";
}

TEST_F(ProceduresTest, GroupMembershipIsAddedListedAndRemoved) {
  int32_t no = SaveCustomer(0, "SMITH", "ANN");
  db_->Execute("INSERT INTO kiv_customer_group (customer_group_id, Description) VALUES ('LODGE', 'Lodges')");
  auto add = Procedure("KIV_SP_InsertCustomerGroupMembership",
                       {{"@customer_no", Variant(no)}, {"@customer_group_id", Variant("LODGE")}});
  ASSERT_TRUE(Run(add));
  auto bad = Procedure("KIV_SP_InsertCustomerGroupMembership",
                       {{"@customer_no", Variant(no)}, {"@customer_group_id", Variant("NOPE")}});
  ASSERT_TRUE(Run(bad));
  EXPECT_EQ(bad->GetParameters()["@return_value"].Value().ToLong(), -1);
  auto members = Rows(Procedure("KIV_SP_GetGroupMembers", {{"@customer_group_id", Variant("LODGE")}}));
  ASSERT_FALSE(members->Eof());
  EXPECT_EQ((*members)["customer_no"].ToLong(), no);
  EXPECT_EQ((*members)["full_name"].ToString(), "ANN SMITH");
  ASSERT_TRUE(Run(Procedure("KIV_SP_DeleteCustomerGroupMembership",
                            {{"@customer_no", Variant(no)}, {"@customer_group_id", Variant("LODGE")}})));
  auto none = Rows(Procedure("KIV_SP_GetGroupMembers", {{"@customer_group_id", Variant("LODGE")},
                                                        {"@customer_no", Variant(no)}}));
  EXPECT_TRUE(none->Eof());
}

TEST_F(ProceduresTest, ActivityListsShowOpenOrdersCommentsAndWillCalls) {
  int32_t ann = SaveCustomer(0, "SMITH", "ANN");
  int32_t tim = SaveCustomer(0, "SMITH", "TIM");
  db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no, for_customer_no, order_date, is_invoiced, "
               "comment_note) VALUES (10, ?1, ?2, '2026-03-01 10:00:00', 0, 'RUSH'), "
               "(11, ?1, NULL, '2026-03-02 10:00:00', 1, NULL)",
               {Variant(ann), Variant(tim)});
  db_->Execute("INSERT INTO kiv_sales_order_line (salesorder_no, line_no, description, quantity, amount) VALUES "
               "(10, 1, 'LIFT TICKET', 2, 150), (10, 2, 'RENTAL', 1, 40), (11, 1, 'LESSON', 1, 90)");
  db_->Execute("INSERT INTO kiv_will_call (will_call_no, customer_no, salesorder_no, long_description) "
               "VALUES (5, ?, 10, 'SEASON PASS')",
               {Variant(ann)});
  auto lines = Rows(Procedure("KiV_SP_GetSalesOrderLine", {{"@customer_no", Variant(ann)}, {"@open", Variant(true)}}));
  ASSERT_NE(lines, nullptr);
  EXPECT_EQ(lines->RecordCount(), 2) << "the invoiced order is left out";
  EXPECT_EQ((*lines)["for_full_name"].ToString(), "TIM SMITH");
  EXPECT_EQ((*lines)["linenet"].Type(), VarType::Currency);
  EXPECT_EQ((*lines)["salesorder_date"].ToDate(), Date::FromParts(2026, 3, 1, 10, 0, 0));
  auto comments = Rows(Procedure("KiV_SP_CUSTOMER_SALES_ORDER_COMMENT_get", {{"@customer_no", Variant(ann)}}));
  EXPECT_EQ(comments->RecordCount(), 1);
  EXPECT_EQ((*comments)["comment_note"].ToString(), "RUSH");
  auto calls = Rows(Procedure("KIV_SP_GetCustomerWillCalls", {{"@customer_no", Variant(ann)}}));
  ASSERT_FALSE(calls->Eof());
  EXPECT_EQ((*calls)["so_for_full_name"].ToString(), "TIM SMITH");
  EXPECT_EQ((*calls)["so_full_name"].ToString(), "ANN SMITH");
}

}  // namespace
}  // namespace kiv::refhost::testing

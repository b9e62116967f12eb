// Saving and deleting a customer: the customer procedure's thirty parameters, the new number
// and household, the primary-address storage rule, emptied addresses, the error trap, the
// delete position rule and the household statement.
#include <gtest/gtest.h>

#include "records/c_customer.h"
#include "support/scripted_host.h"

namespace kiv {
namespace {

using test::Assignment;

const char* const kUpdate = "KiV_SP_CUSTOMER_UpdateCustomer";

struct CustomerSaveTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();
  CustomerSaveTest() {
    customer->SetDB(host.db);
    customer->SetErrorObject(host.errors);
  }
  std::shared_ptr<CAddress> AddAddress(const std::string& type, int32_t id) {
    auto address = std::make_shared<CAddress>();
    address->SetAddressType(type);
    address->SetAddressID(id);
    customer->Addresses()->Add(type, address);
    return address;
  }
  size_t AddressWrites() const { return host.db->Executions("KIV_SP_UpdateAddress").size(); }
};

TEST_F(CustomerSaveTest, NewCustomerIsWrittenWithThirtyParametersInOrder) {
  host.OnProcedure(kUpdate).Outputs({{"@customer_no", 501}});
  customer->SetIsNewCustomer(true);
  customer->SetLastName("SMITH");
  customer->SetZip("99999");
  customer->SetDateOfRelease(Variant::Null());
  customer->SetAccountNo("A-1");
  AddAddress("PRIMARY", 0)->SetZip("05401");

  ASSERT_TRUE(customer->Update());
  EXPECT_EQ(host.AssignedNames(kUpdate),
            (std::vector<std::string>{"@customer_no", "@first_name", "@last_name", "@full_name", "@company_name",
                                      "@customer_type", "@customer_kind", "@zip", "@account_id", "@status_id",
                                      "@comment_note", "@dob", "@has_image", "@commission_percentage",
                                      "@discount_percentage", "@locked", "@preloaded", "@cust_modified", "@kiv_user",
                                      "@customer_level_id", "@gender", "@date_of_release", "@household_no",
                                      "@household_primary", "@do_not_mail", "@email", "@wedding_anniversary",
                                      "@occupation", "@work_phone", "@cell_phone"}));
  auto value = [&](const char* name) { return host.db->AssignedValue(kUpdate, name); };
  EXPECT_EQ(value("@customer_no"), Variant(0));
  EXPECT_EQ(value("@zip"), Variant("05401")) << "the primary address's zip";
  EXPECT_EQ(value("@account_id"), Variant("A-1"));
  EXPECT_EQ(value("@preloaded").Type(), VarType::Integer);
  EXPECT_EQ(value("@cust_modified").Type(), VarType::Integer);
  EXPECT_EQ(value("@preloaded"), Variant(0));
  EXPECT_EQ(value("@cust_modified"), Variant(-1));
  EXPECT_EQ(value("@kiv_user"), Variant("TESTUSER"));
  EXPECT_TRUE(value("@date_of_release").IsNull());
  EXPECT_EQ(host.SqlTexts(), std::vector<std::string>{}) << "AccountNo is sent as stored, not re-read";

  EXPECT_EQ(customer->CustomerNo(), 501);
  EXPECT_EQ(customer->HouseholdNo(), 501);
  EXPECT_TRUE(customer->HouseholdPrimary());
  EXPECT_FALSE(customer->IsNewCustomer());
  EXPECT_EQ(customer->Zip(), "05401");
  EXPECT_EQ(host.db->AssignedValue("KIV_SP_UpdateAddress", "@customer_no"), Variant(501));
}

TEST_F(CustomerSaveTest, ANewPrimaryAddressIsStoredOnlyWhenSomethingWasEntered) {
  struct Case {
    const char* what;
    void (CAddress::*set)(const std::string&);
    const char* value;
    bool stored;
  };
  const Case cases[] = {
      {"system country only", &CAddress::SetCountryID, "USA", false},
      {"city only", &CAddress::SetCity, "STOWE", false},
      {"phone only", &CAddress::SetPhone, "555", true},
      {"another country", &CAddress::SetCountryID, "CAN", true},
      {"state only", &CAddress::SetState, "VT", true},
      {"first line", &CAddress::SetAddressLine1, "1 MAIN", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    test::ScriptedHost h;
    h.OnProcedure("KIV_SP_UpdateAddress").Outputs({{"@return_value", 0}, {"@address_no", 70}});
    auto cust = std::make_shared<CCustomer>();
    cust->SetDB(h.db);
    auto primary = std::make_shared<CAddress>();
    primary->SetAddressType("PRIMARY");
    (primary.get()->*c.set)(c.value);
    cust->Addresses()->Add("PRIMARY", primary);
    ASSERT_TRUE(cust->Update());
    EXPECT_EQ(h.db->Executions("KIV_SP_UpdateAddress").size(), c.stored ? 1u : 0u);
    EXPECT_EQ(h.db->Executions("SP_DeleteAddress").size(), 0u);
    EXPECT_EQ(cust->PrimaryAddressID(), c.stored ? 70 : 0);
    EXPECT_EQ(primary->DataChanged(), !c.stored);
  }
}

TEST_F(CustomerSaveTest, StoredAddressesAreWrittenOrDeletedOnceEmptied) {
  host.OnProcedure(kUpdate).Outputs({{"@customer_no", 12}});
  host.OnProcedure("SP_DeleteAddress").Params({"@RETURN_VALUE", "@address_no"});
  host.OnProcedure("KIV_SP_UpdateAddress").Outputs({{"@return_value", 0}, {"@address_no", 8}});
  customer->SetCustomerNo(12);
  customer->SetHouseholdNo(40);
  AddAddress("PRIMARY", 8)->SetFax("1");
  AddAddress("BILLING", 9);  // every field empty
  auto home = AddAddress("HOME", 0);
  home->SetCity("STOWE");

  ASSERT_TRUE(customer->Update());
  EXPECT_EQ(host.ExecutedProcedures(), (std::vector<std::string>{kUpdate, "KIV_SP_UpdateAddress", "SP_DeleteAddress",
                                                                  "KIV_SP_UpdateAddress"}));
  EXPECT_EQ(host.AssignmentsOf("SP_DeleteAddress"), (std::vector<Assignment>{{"@address_no", 9}}));
  EXPECT_EQ(host.db->AssignedValue("KIV_SP_UpdateAddress", "@customer_no", 1), Variant(12))
      << "written under the customer's own number, not the household's";
  EXPECT_FALSE(home->DataChanged());
  EXPECT_EQ(customer->PrimaryAddressID(), 8);
  EXPECT_EQ(customer->HouseholdNo(), 40);
  // The customer and its addresses are one unit for the host: opened before the first
  // call, kept after the last.
  EXPECT_EQ(host.db->Units(), (std::vector<std::string>{"begin@0", "commit@" + std::to_string(host.Log().size())}));
}

TEST_F(CustomerSaveTest, UpdateTrapsFailuresAndReportsThemThroughTheErrorObject) {
  host.OnProcedure(kUpdate).Throws(-2147217873, "Violation of PRIMARY KEY");
  AddAddress("PRIMARY", 0)->SetPhone("555");
  host.errors->ThrowOnDisplay(5);
  EXPECT_FALSE(customer->Update());
  EXPECT_EQ(host.db->Units().back().substr(0, 8), "discard@") << "a save that failed keeps nothing";
  EXPECT_EQ(customer->LastErrorNumber(), -2147217873);
  EXPECT_EQ(customer->LastErrorDescription(), "Violation of PRIMARY KEY");
  ASSERT_EQ(host.errors->Count(), 1u);
  const auto call = host.errors->Last();
  EXPECT_EQ(call.number, -2147217873);
  EXPECT_EQ(call.source + "|" + call.description + "|" + call.extra,
            "KIVCustomer.CCustomer (1.0.0) Update|Violation of PRIMARY KEY|");
  EXPECT_FALSE(call.flag);
  EXPECT_TRUE(call.opt1.IsEmpty() && call.opt2.IsEmpty() && call.opt3.IsEmpty());
  EXPECT_EQ(call.related, host.db->Commands().at(0));
  EXPECT_EQ(AddressWrites(), 0u) << "addresses not reached are not saved";

  // A flag set by the host was already reported: no second report, no address written.
  test::ScriptedHost h;
  h.OnProcedure(kUpdate).Fails();
  customer->SetDB(h.db);
  customer->SetErrorObject(h.errors);
  EXPECT_FALSE(customer->Update());
  EXPECT_EQ(h.errors->Count(), 0u);
  EXPECT_EQ(h.ExecutedProcedures().size(), 1u);

  auto unbound = std::make_shared<CCustomer>();
  EXPECT_FALSE(unbound->Update()) << "no connection lands in the trap";
  EXPECT_EQ(unbound->LastErrorNumber(), kErrObjectRequired);
}

TEST_F(CustomerSaveTest, DeleteCustomerPutsTheNumberAfterAReturnValueOnly) {
  const struct {
    std::vector<test::ParamSpec> params;
    const char* receiver;
  } cases[] = {{{"@RETURN_VALUE", "@customer_no"}, "@customer_no"}, {{"@cust", "@other"}, "@cust"}};
  for (const auto& c : cases) {
    test::ScriptedHost h;
    h.OnProcedure("SP_DeleteCustomer").Params(c.params);
    customer->SetDB(h.db);
    customer->SetCustomerNo(12);
    EXPECT_TRUE(customer->DeleteCustomer());
    EXPECT_EQ(h.AssignmentsOf("SP_DeleteCustomer"), (std::vector<Assignment>{{c.receiver, 12}}));
    EXPECT_EQ(h.db->CallsOf(test::CallKind::CreateCommandText).at(0).text, "SP_DeleteCustomer");
  }
  customer->SetDB(host.db);
  host.OnProcedure("SP_DeleteCustomer").Params({"@customer_no"}).Throws(547, "REFERENCE constraint");
  EXPECT_FALSE(customer->DeleteCustomer());
  EXPECT_EQ(host.errors->Last().source, "KIVCustomer.CCustomer (1.0.0) DeleteCustomer");
  EXPECT_EQ(customer->LastErrorNumber(), 547);
}

TEST_F(CustomerSaveTest, UpdateHouseholdNoSpellsTheFlagAsAWord) {
  customer->SetCustomerNo(12);
  customer->SetHouseholdNo(12);
  EXPECT_TRUE(customer->UpdateHouseholdNo());
  customer->SetHouseholdNo(40);
  EXPECT_TRUE(customer->UpdateHouseholdNo());
  EXPECT_EQ(host.SqlTexts(),
            (std::vector<std::string>{
                "UPDATE kiv_customer SET household_no = 12, household_primary = True WHERE customer_no = 12",
                "UPDATE kiv_customer SET household_no = 40, household_primary = False WHERE customer_no = 12"}));
  host.db->FailNext(test::CallKind::ExecuteSQL);
  EXPECT_FALSE(customer->UpdateHouseholdNo());
  EXPECT_EQ(host.errors->Count(), 0u);
}

}  // namespace
}  // namespace kiv

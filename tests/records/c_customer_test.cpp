// Loading a customer and reaching its addresses: column rules, the household's address rows,
// primary address selection, the pass-through properties, AccountNo and isInternational.
#include "records/c_customer.h"

#include <gtest/gtest.h>

#include "records/system_country.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using test::Cells;

//! Every column the customer load reads, with plain values; `overrides` replace by name.
Cells CustomerRow(int32_t customer_no, const Cells& overrides = {}) {
  Cells row = {{"customer_no", customer_no}, {"full_name", "SMITH, ANN"}, {"last_name", "SMITH"},
               {"first_name", "ANN"}, {"company_name", ""}, {"customer_type", "P"}, {"Zip", "05401"},
               {"account_id", "A-1"}, {"comment_note", "vip"}, {"DOB", Date::FromParts(1980, 2, 29)},
               {"Locked", false}, {"date_of_release", Variant::Null()}, {"has_image", true}, {"status_id", "ACTIVE"},
               {"discount_percentage", 5.5}, {"commission_percentage", 1.0}, {"household_primary", false},
               {"household_no", 0}, {"Customer_Level_ID", "GOLD"}, {"Gender", "F"}, {"do_not_mail", true},
               {"customer_kind", "GUEST"}, {"EMail", "ann@example.com"}, {"work_phone", "802-555-0100"},
               {"cell_phone", "802-555-0101"}, {"Occupation", "PILOT"}, {"wedding_anniversary", Variant::Null()},
               {"has_willcall", true}, {"has_club", false}, {"has_so", true}, {"has_reservation", true},
               {"has_relationship", true}};
  for (const auto& [name, value] : overrides)
    for (auto& cell : row)
      if (cell.first == name) cell.second = value;
  return row;
}

void ScriptCustomer(test::ScriptedHost& host, const Cells& row) {
  host.OnProcedure("KIV_SP_GetCustomer").Once().Row(row);
}

//! The next address load answers one address of that type and country.
void ScriptAddress(test::ScriptedHost& host, const std::string& type, const std::string& country = "USA") {
  host.OnProcedure("KIV_SP_ADDRESS_GetAddress")
      .Once()
      .Row({{"Address_1", "1 " + type + " ST"}, {"address_type", type}, {"Country_ID", country}, {"Phone", "555"}});
}

struct CustomerLoadTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();

  bool Open(int32_t number) { return customer->OpenCustomer(host.db, host.errors, Variant(number)); }
  std::shared_ptr<CAddress> AddPrimary(const std::string& country) {
    auto address = std::make_shared<CAddress>();
    address->SetCountryID(country);
    address->SetPhone("555");
    address->SetDataChanged(false);
    customer->Addresses()->Add("PRIMARY", address);
    return address;
  }
};

TEST_F(CustomerLoadTest, ReadsColumnsWithNullRulesAndBecomesItsOwnHousehold) {
  ScriptCustomer(host, CustomerRow(12, {{"household_no", Variant::Null()}, {"Locked", Variant::Null()},
                                              {"discount_percentage", Variant::Null()}, {"DOB", Variant::Null()},
                                              {"last_name", Variant::Null()}}));
  ASSERT_TRUE(Open(12));
  EXPECT_EQ(host.AssignmentsOf("KIV_SP_GetCustomer"), (std::vector<test::Assignment>{{"@customer_no", 12}}));
  EXPECT_EQ(customer->FullName() + "|" + customer->LastName() + "|" + customer->CustomerLevelID(), "SMITH, ANN||GOLD");
  EXPECT_EQ(customer->DiscountPercentage(), 0.0);
  EXPECT_FALSE(customer->Locked());
  EXPECT_TRUE(customer->DOB().IsZero());
  EXPECT_TRUE(customer->DateOfRelease().IsNull()) << "kept as read, null included";
  EXPECT_TRUE(customer->WillCallsAvailable() && customer->HasUnInvoiced() && customer->HasReservations());
  EXPECT_FALSE(customer->HasClub());
  EXPECT_EQ(customer->HouseholdNo(), 12);
  EXPECT_TRUE(customer->HouseholdPrimary());
  EXPECT_EQ(host.SqlTexts().back(), "SELECT * FROM kiv_customer_address WHERE customer_no = 12");
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST_F(CustomerLoadTest, HouseholdMemberReadsThePrimarysAddressesFirstOfATypeWinning) {
  auto ui = std::make_shared<test::ScriptedUi>();
  customer->SetUi(ui);
  ScriptCustomer(host, CustomerRow(12, {{"household_no", 40}}));
  host.OnQuery("SELECT * FROM kiv_customer_address WHERE customer_no = 40")
      .Row({{"address_no", 1}, {"address_type", "HOME"}, {"primary_address", 0}})
      .Row({{"address_no", 2}, {"address_type", "PRIMARY"}, {"primary_address", 1}})
      .Row({{"address_no", 3}, {"address_type", "HOME"}, {"primary_address", Variant::Null()}});
  ScriptAddress(host, "HOME");
  ScriptAddress(host, "PRIMARY", "CAN");
  ScriptAddress(host, "HOME");
  ASSERT_TRUE(Open(12));
  EXPECT_EQ(customer->HouseholdNo(), 40);
  EXPECT_EQ(customer->Addresses()->Count(), 2u);
  EXPECT_EQ(customer->GetAddress("HOME")->AddressID(), 1);
  EXPECT_EQ(customer->GetAddress("BILLING"), nullptr);
  EXPECT_EQ(customer->PrimaryAddressID(), 2);
  EXPECT_EQ(customer->PrimaryAddress()->AddressID(), 2);
  EXPECT_EQ(customer->PrimaryAddress()->GetUi(), ui) << "addresses report through the record's Ui";
  EXPECT_EQ(customer->CountryID(), "CAN");
  EXPECT_FALSE(customer->AddressesChanges());
}

TEST_F(CustomerLoadTest, WithoutAPrimaryRowThePrimaryIsTheEntryKeyedPrimary) {
  ScriptCustomer(host, CustomerRow(12));
  host.OnQuery("SELECT * FROM kiv_customer_address WHERE customer_no = 12")
      .Row({{"address_no", 5}, {"address_type", "PRIMARY"}, {"primary_address", 0}});
  ScriptAddress(host, "PRIMARY");
  ASSERT_TRUE(Open(12));
  EXPECT_EQ(customer->PrimaryAddressID(), 0);
  EXPECT_EQ(customer->PrimaryAddress()->AddressID(), 5);
  EXPECT_EQ(customer->AddressLine1(), "1 PRIMARY ST");
}

TEST_F(CustomerLoadTest, UnknownCustomerOrNoConnectionKeepsConstructionValues) {
  customer->SetCustomerNo(77);
  EXPECT_FALSE(Open(12));
  EXPECT_EQ(customer->CustomerNo(), 77);
  EXPECT_EQ(customer->CustomerType() + "|" + customer->CustomerLevelID(), "P|None");
  EXPECT_EQ(customer->SourceName(), "KIVCustomer.CCustomer (1.0.0)");
  EXPECT_FALSE(customer->OpenCustomer(nullptr, host.errors, Variant(12)));
  host.OnProcedure("KIV_SP_GetCustomer").Throws(-1, "gone");
  EXPECT_FALSE(Open(12));
  EXPECT_EQ(host.errors->Count(), 0u) << "a failed load shows nothing";
}

TEST_F(CustomerLoadTest, PhoneAndFaxLetsTouchOnlyAnExistingDifferingPrimary) {
  customer->SetPhone("111");
  EXPECT_EQ(customer->Phone(), "") << "dropped without a primary address";
  auto primary = AddPrimary("USA");
  customer->SetPhone("555");
  EXPECT_FALSE(customer->AddressesChanges());
  customer->SetPhone("556");
  EXPECT_EQ(primary->Phone(), "556");
  EXPECT_TRUE(customer->AddressesChanges());
  primary->SetDataChanged(false);
  customer->SetFax("999");
  EXPECT_EQ(customer->Fax(), "999");
  EXPECT_TRUE(primary->DataChanged());
}

TEST_F(CustomerLoadTest, IsInternationalComparesExactlyWithTheSystemCountry) {
  const std::pair<const char*, bool> cases[] = {{"", false}, {"USA", false}, {"usa", true}, {"CAN", true}};
  for (const auto& [country, international] : cases) {
    SCOPED_TRACE(country);
    customer = std::make_shared<CCustomer>();
    AddPrimary(country);
    EXPECT_EQ(customer->isInternational(), international);
  }
  SetSystemCountryID("CAN");
  EXPECT_FALSE(customer->isInternational());
  SetSystemCountryID("USA");
}

TEST_F(CustomerLoadTest, AccountNoAsksTheDatabaseOnEveryRead) {
  const std::string sql = "SELECT account_id FROM kiv_customer WHERE customer_no = 12";
  host.OnQuery(sql).Once().Row({{"account_id", "A-9"}});
  host.OnQuery(sql).Once().Fails();
  customer->SetDB(host.db);
  customer->SetCustomerNo(12);
  EXPECT_EQ(customer->AccountNo(), "A-9");
  EXPECT_EQ(customer->AccountNo(), "A-9") << "the last known value when the query fails";
  EXPECT_EQ(host.SqlTexts(), (std::vector<std::string>{sql, sql}));
}

}  // namespace
}  // namespace kiv

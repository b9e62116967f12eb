// The address record against the scripted host: change tracking, loading, the address
// procedure's parameter order and answers, the delete position rule, lookup and copy.
#include "records/c_address.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using test::Assignment;

struct AddressTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  CAddress address;
  AddressTest() {
    address.SetUi(ui);
    address.SetAddressID(7);
    address.SetCustomerNo(12);
    address.SetAddressType("HOME");
    address.SetAddressLine1("1 MAIN ST");
    address.SetPhone("555-1234");
    address.SetFax("555-9999");
    address.SetDataChanged(false);
  }
};

TEST_F(AddressTest, EveryLetMarksChangedOnlyForADifferentValueComparedExactly) {
  using Let = std::function<void(CAddress&, const std::string&)>;
  const std::vector<std::pair<const char*, Let>> lets = {
      {"AddressType", &CAddress::SetAddressType}, {"CountryID", &CAddress::SetCountryID}, {"Zip", &CAddress::SetZip},
      {"Phone", &CAddress::SetPhone}, {"Fax", &CAddress::SetFax}, {"State", &CAddress::SetState},
      {"City", &CAddress::SetCity}, {"AddressLine2", &CAddress::SetAddressLine2},
      {"AddressLine1", &CAddress::SetAddressLine1}, {"Name", &CAddress::SetName},
      {"AddressID", [](CAddress& a, const std::string& v) { a.SetAddressID(v == "abc" ? 1 : 2); }},
      {"CustomerNo", [](CAddress& a, const std::string& v) { a.SetCustomerNo(v == "abc" ? 1 : 2); }}};
  for (const auto& [name, let] : lets) {
    SCOPED_TRACE(name);
    CAddress a;
    let(a, "abc");
    EXPECT_TRUE(a.DataChanged());
    a.SetDataChanged(false);
    let(a, "abc");
    EXPECT_FALSE(a.DataChanged()) << "an equal value is no change";
    let(a, "ABC");
    EXPECT_TRUE(a.DataChanged()) << "a value differing only in case is a change";
  }
}

TEST_F(AddressTest, OpenAddressClearsTextsButTheTypeAndMarksReadEvenWhenNothingIsFound) {
  address.SetDataChanged(true);
  EXPECT_FALSE(address.OpenAddress(host.db, 0));
  EXPECT_EQ(address.AddressID(), 7);
  EXPECT_EQ(address.AddressType(), "HOME");
  EXPECT_EQ(address.AddressLine1() + address.Phone(), "");
  EXPECT_TRUE(address.DataRead());
  EXPECT_FALSE(address.DataChanged());
  EXPECT_TRUE(host.Log().empty()) << host.LogText();

  EXPECT_FALSE(address.OpenAddress(host.db, 99));  // unscripted: no row
  EXPECT_EQ(address.AddressID(), 99);

  host.OnProcedure("KIV_SP_ADDRESS_GetAddress")
      .Row({{"Address_1", "1 ELM"}, {"Address_2", Variant::Null()}, {"City", "STOWE"}, {"State", "VT"},
            {"Zip", "05672"}, {"Country_ID", "USA"}, {"address_type", "PRIMARY"}, {"Name", "SMITH"},
            {"Phone", Variant::Null()}, {"Fax", "802"}});
  ASSERT_TRUE(address.OpenAddress(host.db, 5));
  EXPECT_EQ(host.AssignmentsOf("KIV_SP_ADDRESS_GetAddress", 1), (std::vector<Assignment>{{"@address_no", 5}}));
  EXPECT_EQ(address.AddressLine1() + "|" + address.AddressLine2() + "|" + address.City() + "|" + address.State() +
                "|" + address.Zip() + "|" + address.CountryID() + "|" + address.AddressType() + "|" + address.Name() +
                "|" + address.Phone() + "|" + address.Fax(),
            "1 ELM||STOWE|VT|05672|USA|PRIMARY|SMITH||802");
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST_F(AddressTest, UpdateAssignsTwelveParametersInOrderAndTakesTheNewNumber) {
  host.OnProcedure("KIV_SP_UpdateAddress").Once().Outputs({{"@return_value", 0}, {"@address_no", 41}});
  address.SetAddressID(0);
  ASSERT_TRUE(address.Update(host.db, host.errors));
  EXPECT_EQ(host.AssignedNames("KIV_SP_UpdateAddress"),
            (std::vector<std::string>{"@address_no", "@address_1", "@address_2", "@city", "@state", "@zip",
                                      "@country_id", "@address_type", "@name", "@customer_no", "@phone", "@fax"}));
  EXPECT_EQ(host.db->AssignedValue("KIV_SP_UpdateAddress", "@address_no"), Variant(0));
  EXPECT_EQ(address.AddressID(), 41);
  EXPECT_TRUE(address.DataChanged()) << "Update leaves the flag as it was";

  // A null return value counts as -1: refused, with the server's message.
  host.OnProcedure("KIV_SP_UpdateAddress").Once().Outputs({{"@return_value", Variant::Null()}, {"@message", "Bad"}});
  ui->Answer(ui::vbOK);
  EXPECT_FALSE(address.Update(host.db, host.errors));
  ASSERT_EQ(ui->Boxes().size(), 1u);
  EXPECT_EQ(ui->Boxes()[0].prompt, "Bad");
  EXPECT_EQ(ui->Boxes()[0].title, "Error Updating Address");
  EXPECT_EQ(ui->Boxes()[0].style, ui::vbInformation);

  host.OnProcedure("KIV_SP_UpdateAddress").Throws(1205, "Deadlock");
  EXPECT_FALSE(address.Update(host.db, host.errors));
  EXPECT_EQ(host.errors->Last().number, 1205);
  EXPECT_EQ(host.errors->Last().description, "Deadlock UpdateAddress");
  EXPECT_EQ(host.errors->Last().source, "KIVCustomer.CAddress (1.0.0)");
  EXPECT_FALSE(address.Update(nullptr, host.errors)) << "no connection fails, it does not throw";
  EXPECT_EQ(address.AddressID(), 41);
}

TEST_F(AddressTest, DeleteAddressPutsTheNumberAfterAReturnValueOnly) {
  const std::vector<std::pair<std::vector<test::ParamSpec>, const char*>> cases = {
      {{"@RETURN_VALUE", "@address_no"}, "@address_no"}, {{"@addr", "@address_no"}, "@addr"}};
  for (const auto& [params, receiver] : cases) {
    test::ScriptedHost h;
    h.OnProcedure("SP_DeleteAddress").Params(params);
    EXPECT_TRUE(address.DeleteAddress(h.db, h.errors));
    EXPECT_EQ(h.AssignmentsOf("SP_DeleteAddress"), (std::vector<Assignment>{{receiver, 7}}));
  }
  host.OnProcedure("SP_DeleteAddress").Params({"@address_no"}).Throws(547, "In use");
  EXPECT_FALSE(address.DeleteAddress(host.db, host.errors));
  EXPECT_EQ(host.errors->Last().description, "In use DeleteAddress");
}

TEST_F(AddressTest, ZipLookUpFillsOutputsOnlyWhenFoundAndSendsTheZipAsGiven) {
  host.OnQuery("SELECT * FROM kiv_zip_code WHERE zip = '05401 '")
      .Row({{"City", "BURLINGTON"}, {"State", "VT"}, {"county", Variant::Null()}, {"Country_ID", "USA"},
            {"area_code", "802"}});
  ZipLookUpArgs args{"c", "s", "k", "x", "a"};
  EXPECT_FALSE(address.ZipLookUp(host.db, "99999", args));
  EXPECT_EQ(args.sCity + args.sState + args.sCounty + args.sCountryID + args.sAreaCode, "cskxa");
  ASSERT_TRUE(address.ZipLookUp(host.db, "05401 ", args));
  EXPECT_EQ(args.sCity + "|" + args.sState + "|" + args.sCounty + "|" + args.sCountryID + "|" + args.sAreaCode,
            "BURLINGTON|VT||USA|802");
  EXPECT_EQ(address.City(), "") << "the lookup leaves the address alone";
}

TEST_F(AddressTest, CopyFromAddressIDKeepsPhoneFaxAndNumbersAndMarksChanged) {
  host.OnQuery("SELECT * FROM kiv_address WHERE address_no = 30")
      .Row({{"Address_1", "9 ELM"}, {"City", "STOWE"}, {"address_type", "BILLING"}, {"Phone", "111"}});
  ASSERT_TRUE(address.CopyFromAddressID(host.db, 30));
  EXPECT_EQ(address.AddressLine1() + "|" + address.City() + "|" + address.AddressType(), "9 ELM|STOWE|BILLING");
  EXPECT_EQ(address.Phone() + "|" + address.Fax(), "555-1234|555-9999");
  EXPECT_EQ(address.AddressID(), 7);
  EXPECT_EQ(address.CustomerNo(), 12);
  EXPECT_TRUE(address.DataChanged());

  CAddress other;
  EXPECT_FALSE(other.CopyFromAddressID(host.db, 31));
  EXPECT_TRUE(other.DataChanged() && other.DataRead()) << "marked even when nothing was copied";
}

}  // namespace
}  // namespace kiv

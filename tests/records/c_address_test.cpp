// The address record against the scripted host: change tracking, loading, the address
// procedure's parameter order and answers, the delete position rule, lookup and copy.
#include "records/c_address.h"

#include <gtest/gtest.h>

#include <functional>

#include "records/recording_ui.h"
#include "support/scripted_host.h"

namespace kiv {
namespace {

using test::Assignment;
using test::Out;

struct AddressTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<test::RecordingUi> ui = std::make_shared<test::RecordingUi>();
  CAddress address;
  AddressTest() { address.SetUi(ui); }

  void Fill() {
    address.SetAddressID(7);
    address.SetCustomerNo(12);
    address.SetAddressType("HOME");
    address.SetName("N");
    address.SetAddressLine1("1 MAIN ST");
    address.SetPhone("555-1234");
    address.SetFax("555-9999");
    address.SetDataChanged(false);
  }
};

TEST_F(AddressTest, EveryLetMarksChangedOnlyForADifferentValueComparedExactly) {
  struct Let {
    const char* name;
    std::function<void(CAddress&, const std::string&)> set;
  };
  const std::vector<Let> lets = {
      {"AddressType", &CAddress::SetAddressType}, {"CountryID", &CAddress::SetCountryID},
      {"Zip", &CAddress::SetZip},                 {"Phone", &CAddress::SetPhone},
      {"Fax", &CAddress::SetFax},                 {"State", &CAddress::SetState},
      {"City", &CAddress::SetCity},               {"AddressLine2", &CAddress::SetAddressLine2},
      {"AddressLine1", &CAddress::SetAddressLine1}, {"Name", &CAddress::SetName},
      {"AddressID", [](CAddress& a, const std::string& v) { a.SetAddressID(v == "abc" ? 1 : 2); }},
      {"CustomerNo", [](CAddress& a, const std::string& v) { a.SetCustomerNo(v == "abc" ? 1 : 2); }},
  };
  for (const auto& let : lets) {
    SCOPED_TRACE(let.name);
    CAddress a;
    let.set(a, "abc");
    EXPECT_TRUE(a.DataChanged());
    a.SetDataChanged(false);
    let.set(a, "abc");
    EXPECT_FALSE(a.DataChanged()) << "an equal value is no change";
    let.set(a, "ABC");
    EXPECT_TRUE(a.DataChanged()) << "a value differing only in case is a change";
  }
}

TEST_F(AddressTest, OpenAddressClearsTextsKeepsTypeAndMarksReadEvenWhenNothingIsFound) {
  Fill();
  address.SetDataChanged(true);
  EXPECT_FALSE(address.OpenAddress(host.db, 0));
  EXPECT_EQ(address.AddressID(), 7);
  EXPECT_EQ(address.AddressType(), "HOME");
  EXPECT_EQ(address.AddressLine1(), "");
  EXPECT_EQ(address.Phone(), "");
  EXPECT_EQ(address.CustomerNo(), 12);
  EXPECT_TRUE(address.DataRead());
  EXPECT_FALSE(address.DataChanged());
  EXPECT_TRUE(host.Log().empty()) << host.LogText();

  EXPECT_FALSE(address.OpenAddress(host.db, 99));  // unscripted: no row
  EXPECT_EQ(address.AddressID(), 99);
  EXPECT_EQ(host.AssignmentsOf("KIV_SP_ADDRESS_GetAddress"), (std::vector<Assignment>{{"@address_no", 99}}));
}

TEST_F(AddressTest, OpenAddressCopiesTheRowWithNullsAsEmptyText) {
  host.OnProcedure("KIV_SP_ADDRESS_GetAddress")
      .Row({{"Address_1", "1 MAIN ST"}, {"Address_2", Variant::Null()}, {"City", "BURLINGTON"}, {"State", "VT"},
            {"Zip", "05401"}, {"Country_ID", "USA"}, {"address_type", "PRIMARY"}, {"Name", "SMITH"},
            {"Phone", Variant::Null()}, {"Fax", "802"}});
  address.SetAddressLine2("old");
  ASSERT_TRUE(address.OpenAddress(host.db, 5));
  EXPECT_EQ(address.AddressLine1(), "1 MAIN ST");
  EXPECT_EQ(address.AddressLine2(), "");
  EXPECT_EQ(address.City(), "BURLINGTON");
  EXPECT_EQ(address.State(), "VT");
  EXPECT_EQ(address.Zip(), "05401");
  EXPECT_EQ(address.CountryID(), "USA");
  EXPECT_EQ(address.AddressType(), "PRIMARY");
  EXPECT_EQ(address.Name(), "SMITH");
  EXPECT_EQ(address.Fax(), "802");
  EXPECT_FALSE(address.DataChanged());
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST_F(AddressTest, UpdateAssignsTwelveParametersInOrderAndTakesTheNewNumber) {
  host.OnProcedure("KIV_SP_UpdateAddress").Outputs({{"@return_value", 0}, {"@address_no", 41}});
  Fill();
  address.SetAddressID(0);
  ASSERT_TRUE(address.Update(host.db, host.errors));
  EXPECT_EQ(host.AssignedNames("KIV_SP_UpdateAddress"),
            (std::vector<std::string>{"@address_no", "@address_1", "@address_2", "@city", "@state", "@zip",
                                      "@country_id", "@address_type", "@name", "@customer_no", "@phone", "@fax"}));
  EXPECT_EQ(host.db->AssignedValue("KIV_SP_UpdateAddress", "@address_no"), Variant(0));
  EXPECT_EQ(host.db->AssignedValue("KIV_SP_UpdateAddress", "@customer_no"), Variant(12));
  EXPECT_EQ(address.AddressID(), 41);
  EXPECT_TRUE(address.DataChanged()) << "Update leaves the flag as it was";
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(AddressTest, UpdateRefusalsAndFailures) {
  // A null return value counts as -1: refused, the server's message shown.
  host.OnProcedure("KIV_SP_UpdateAddress").Once().Outputs({{"@return_value", Variant::Null()}, {"@message", "Bad zip"}});
  Fill();
  EXPECT_FALSE(address.Update(host.db, host.errors));
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].prompt, "Bad zip");
  EXPECT_EQ(ui->boxes[0].title, "Error Updating Address");
  EXPECT_EQ(ui->boxes[0].style, ui::vbInformation);
  EXPECT_EQ(address.AddressID(), 7);

  // A failing execution is reported through the error object, named after the routine.
  host.OnProcedure("KIV_SP_UpdateAddress").Throws(1205, "Deadlock");
  EXPECT_FALSE(address.Update(host.db, host.errors));
  ASSERT_EQ(host.errors->Count(), 1u);
  EXPECT_EQ(host.errors->Last().number, 1205);
  EXPECT_EQ(host.errors->Last().description, "Deadlock UpdateAddress");
  EXPECT_EQ(host.errors->Last().source, "KIVCustomer.CAddress (1.0.0)");
  EXPECT_EQ(ui->boxes.size(), 1u);

  EXPECT_FALSE(address.Update(nullptr, host.errors)) << "no connection fails, it does not throw";
}

TEST_F(AddressTest, DeleteAddressPutsTheNumberAfterAReturnValueOnly) {
  struct Case {
    std::vector<test::ParamSpec> params;
    std::vector<Assignment> expected;
  };
  const std::vector<Case> cases = {
      {{"@RETURN_VALUE", "@address_no"}, {{"@address_no", 7}}},
      {{"@addr", "@address_no"}, {{"@addr", 7}}},
  };
  Fill();
  for (const auto& c : cases) {
    test::ScriptedHost h;
    h.OnProcedure("SP_DeleteAddress").Params(c.params);
    EXPECT_TRUE(address.DeleteAddress(h.db, h.errors));
    EXPECT_EQ(h.AssignmentsOf("SP_DeleteAddress"), c.expected);
  }
  host.OnProcedure("SP_DeleteAddress").Params({"@address_no"}).Throws(547, "In use");
  EXPECT_FALSE(address.DeleteAddress(host.db, host.errors));
  EXPECT_EQ(host.errors->Last().description, "In use DeleteAddress");
  EXPECT_EQ(address.AddressID(), 7);
}

TEST_F(AddressTest, ZipLookUpFillsOutputsOnlyWhenFoundAndSendsTheZipAsGiven) {
  host.OnQuery("SELECT * FROM kiv_zip_code WHERE zip = '05401 '")
      .Row({{"City", "BURLINGTON"}, {"State", "VT"}, {"county", Variant::Null()}, {"Country_ID", "USA"},
            {"area_code", "802"}});
  ZipLookUpArgs args{"c", "s", "k", "x", "a"};
  EXPECT_FALSE(address.ZipLookUp(host.db, "99999", args));
  EXPECT_EQ(args.sCity, "c");
  EXPECT_EQ(args.sCounty, "k");
  EXPECT_EQ(args.sAreaCode, "a");

  ASSERT_TRUE(address.ZipLookUp(host.db, "05401 ", args));
  EXPECT_EQ(args.sCity, "BURLINGTON");
  EXPECT_EQ(args.sState, "VT");
  EXPECT_EQ(args.sCounty, "");
  EXPECT_EQ(args.sCountryID, "USA");
  EXPECT_EQ(args.sAreaCode, "802");
  EXPECT_EQ(address.City(), "") << "the lookup leaves the address alone";
  EXPECT_EQ(host.db->CallsOf(test::CallKind::OpenReadOnly).size(), 2u);
}

TEST_F(AddressTest, CopyFromAddressIDKeepsPhoneFaxAndNumbersAndMarksChanged) {
  host.OnQuery("SELECT * FROM kiv_address WHERE address_no = 30")
      .Row({{"Address_1", "9 ELM"}, {"City", "STOWE"}, {"address_type", "BILLING"}, {"Name", "JONES"},
            {"Phone", "111"}, {"Fax", "222"}});
  Fill();
  address.SetCity("OLD");
  address.SetDataChanged(false);
  ASSERT_TRUE(address.CopyFromAddressID(host.db, 30));
  EXPECT_EQ(address.AddressLine1(), "9 ELM");
  EXPECT_EQ(address.City(), "STOWE");
  EXPECT_EQ(address.AddressType(), "BILLING");
  EXPECT_EQ(address.Name(), "JONES");
  EXPECT_EQ(address.Phone(), "555-1234");
  EXPECT_EQ(address.Fax(), "555-9999");
  EXPECT_EQ(address.AddressID(), 7);
  EXPECT_EQ(address.CustomerNo(), 12);
  EXPECT_TRUE(address.DataChanged());
  EXPECT_TRUE(address.DataRead());

  CAddress other;
  EXPECT_FALSE(other.CopyFromAddressID(host.db, 31));
  EXPECT_TRUE(other.DataChanged()) << "marked changed even when nothing was copied";
}

TEST_F(AddressTest, GetNewAddressIDTakesTheSequenceWithoutKeepingIt) {
  host.db->SetNextSequence("seq_address_no", 500);
  EXPECT_EQ(address.GetNewAddressID(host.db), 500);
  EXPECT_EQ(address.AddressID(), 0);
  EXPECT_EQ(host.db->CallsOf(test::CallKind::Sequence).at(0).text, "seq_address_no");
}

}  // namespace
}  // namespace kiv

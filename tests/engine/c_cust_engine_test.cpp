// The engine without its screens: the start-up questions and reads, the fiscal year, the
// customer cache and the household address sharing.
#include "engine/c_cust_engine.h"

#include <gtest/gtest.h>

#include "records/c_customer.h"
#include "records/system_country.h"
#include "support/scripted_host.h"

namespace kiv {
namespace {

const std::string kStartUpSql = "SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)";
const std::string kFiscalYearSql = "SELECT fiscal_year FROM kiv_system_parm";
const std::vector<std::string> kIndependent = {"CUSTEDIT", "CUSTACTEDIT", "CCDELETE", "CUSTSHOWFORECAS",
                                               "CUSTSHOWCLUB", "CUSTDEDUP"};

//! A full row of the customer procedure: every column it answers, null but for the numbers.
test::Cells CustomerRow(int32_t number) {
  test::Cells row = {{"customer_no", number}};
  for (const char* column :
       {"household_no", "full_name", "last_name", "first_name", "company_name", "customer_type", "Zip", "account_id",
        "comment_note", "DOB", "Locked", "date_of_release", "has_image", "status_id", "discount_percentage",
        "commission_percentage", "household_primary", "Customer_Level_ID", "Gender", "do_not_mail", "customer_kind",
        "EMail", "work_phone", "cell_phone", "Occupation", "wedding_anniversary", "has_willcall", "has_club", "has_so",
        "has_reservation", "has_relationship"})
    row.push_back({column, Variant::Null()});
  return row;
}

class Engine : public ::testing::Test {
 protected:
  void SetUp() override { SetSystemCountryID(""); }
  void TearDown() override { SetSystemCountryID("USA"); }
  void Start() {
    engine_.SetAppServer(host_.app);
    host_.db->ClearLog();
  }
  std::shared_ptr<CCustomer> Member(int32_t number, int32_t household) {
    auto c = std::make_shared<CCustomer>();
    c->SetCustomerNo(number);
    c->SetHouseholdNo(household);
    c->SetAddresses(std::make_shared<AddressCollection>());
    return c;
  }

  test::ScriptedHost host_;
  CCustEngine engine_;
};

TEST_F(Engine, PermissionsAreAskedInOrderAndDependentCodesOnlyAfterTheirParent) {
  const std::vector<std::string> dependents = {"CUSTEDITWRSVP", "CUSTEDITCOMP", "CUSTEDITPROFILE"};
  for (bool parents : {false, true}) {
    test::ScriptedHost host;
    host.app->GrantAll();
    host.app->Grant("CUSTADD", parents);
    host.app->Grant("CUSTEDIT", parents);
    CCustEngine engine;
    engine.SetAppServer(host.app);
    std::vector<std::string> expected = {"CUSTADD"};
    if (parents) expected.push_back("CUSTADDCOMP");
    expected.insert(expected.end(), kIndependent.begin(), kIndependent.end());
    if (parents) expected.insert(expected.end(), dependents.begin(), dependents.end());
    EXPECT_EQ(host.app->AskedCodes(), expected);
    EXPECT_EQ(host.app->PermissionCalls().back().area, "Customer");
    EXPECT_EQ(host.app->PermissionCalls().back().sub_area, "");
    EXPECT_EQ(engine.AllowCustAddComp(), parents);
    EXPECT_EQ(engine.AllowCustEditWRsvp() || engine.AllowCustEditComp() || engine.AllowCustEditProfile(), parents);
    EXPECT_EQ(engine.AllowCustEditComp() && engine.AllowCustEditProfile(), parents);
    EXPECT_TRUE(engine.AllowCustShowForecast() && engine.AllowCCDelete() && engine.AllowCustDedup());
  }
}

TEST_F(Engine, StartUpReadsTheSystemRowAndAnEmptyTableLeavesUsaAndAYearToAskAgain) {
  host_.OnQuery(kStartUpSql).Row({{"Country_ID", "CAN"}, {"fiscal_year", 2026}});
  Start();
  EXPECT_EQ(engine_.DBConnection(), host_.db);
  EXPECT_EQ(engine_.ErrorObject(), host_.errors);
  EXPECT_EQ(host_.app->ConnectionNames(), (std::vector<std::string>{"", ""}));
  EXPECT_EQ(SystemCountryID(), "CAN");
  EXPECT_EQ(engine_.FiscalYear(), 2026);
  EXPECT_TRUE(engine_.UseCollection()) << "on when never saved";
  EXPECT_EQ(host_.settings->Gets().at(0).value, "True");

  test::ScriptedHost empty;
  SetSystemCountryID("");
  CCustEngine engine;
  engine.SetAppServer(empty.app);
  EXPECT_EQ(SystemCountryID(), "USA");
  EXPECT_EQ(engine.FiscalYear(), 0);
  empty.OnQuery(kFiscalYearSql).Row({{"fiscal_year", 2025}});
  EXPECT_EQ(engine.FiscalYear(), 2025);
  EXPECT_EQ(engine.FiscalYear(), 2025);
  EXPECT_EQ(empty.SqlTexts(), (std::vector<std::string>{kStartUpSql, kFiscalYearSql, kFiscalYearSql}));
  EXPECT_EQ(empty.db->OpenRecordsetCount(), 0u);
}

TEST_F(Engine, OpenCustomerKeepsTheLastTenAndACachedOpenTouchesNoDatabase) {
  Start();
  engine_.SetFiscalYear(2026);
  for (int32_t n = 1; n <= 11; ++n) host_.OnProcedure("KIV_SP_GetCustomer").Once().Row(CustomerRow(n));
  std::vector<std::shared_ptr<CCustomer>> opened;
  for (int32_t n = 1; n <= 11; ++n) {
    OpenCustomerArgs args;
    opened.push_back(engine_.OpenCustomer(n, args));
    EXPECT_FALSE(args.bError);
    EXPECT_EQ(args.oDB, host_.db) << "an absent connection receives the engine's";
    EXPECT_EQ(opened.back()->FiscalYear(), 2026);
  }
  EXPECT_EQ(engine_.CacheCount(), 10u);
  EXPECT_EQ(engine_.CachedCustomer(1), nullptr);
  EXPECT_EQ(engine_.CachedCustomer(2), opened[1]);

  host_.db->ClearLog();
  OpenCustomerArgs cached;
  cached.bError = true;
  EXPECT_EQ(engine_.OpenCustomer(5, cached), opened[4]);
  EXPECT_TRUE(cached.bError) << "left as the caller passed it";
  EXPECT_TRUE(host_.Log().empty());

  // A number already cached keeps the older entry; opening the evicted one reads it again.
  auto twin = Member(5, 5);
  engine_.AddToCache(twin);
  EXPECT_EQ(engine_.CachedCustomer(5), opened[4]);
  host_.OnProcedure("KIV_SP_GetCustomer").Once().Row(CustomerRow(1));
  EXPECT_NE(engine_.OpenCustomer(1), opened[0]);
  EXPECT_EQ(host_.db->Executions("KIV_SP_GetCustomer").size(), 1u);

  // A failed open still returns a customer, with bError; the caller's connection becomes the engine's.
  auto other_db = std::make_shared<test::ScriptedConnection>();
  OpenCustomerArgs failing;
  failing.oDB = other_db;
  EXPECT_NE(engine_.OpenCustomer(99, failing), nullptr);
  EXPECT_TRUE(failing.bError);
  EXPECT_EQ(engine_.CachedCustomer(99), nullptr);
  EXPECT_EQ(engine_.DBConnection(), other_db);
}

TEST_F(Engine, TurningUseCollectionOffEmptiesTheCacheAndSavesFalse) {
  Start();
  engine_.AddToCache(Member(1, 1));
  engine_.SetUseCollection(false);
  EXPECT_EQ(engine_.CacheCount(), 0u);
  EXPECT_EQ(host_.settings->Stored("AppData", "Customer", "UseCollection"), "False");
  engine_.AddToCache(Member(2, 2));
  EXPECT_EQ(engine_.CacheCount(), 0u);
  engine_.SetUseCollection(true);
  EXPECT_EQ(host_.settings->Stored("AppData", "Customer", "UseCollection"), "True");
}

TEST_F(Engine, UpdateAddressThroughCollectionSharesOneCollectionAcrossTheHousehold) {
  Start();
  auto primary = Member(100, 100), spouse = Member(101, 100), neighbour = Member(200, 200);
  for (const auto& c : {primary, spouse, neighbour}) engine_.AddToCache(c);
  auto neighbours_own = neighbour->Addresses();
  auto edited = Member(102, 100);  // not cached itself
  edited->Addresses()->Add("PRIMARY", std::make_shared<CAddress>());
  engine_.UpdateAddressThroughCollection(edited);
  EXPECT_EQ(primary->Addresses(), edited->Addresses());
  EXPECT_EQ(spouse->Addresses(), edited->Addresses());
  EXPECT_EQ(neighbour->Addresses(), neighbours_own);
  spouse->GetAddress("PRIMARY")->SetCity("STOWE");
  EXPECT_EQ(primary->GetAddress("PRIMARY")->City(), "STOWE");
}

}  // namespace
}  // namespace kiv

// The engine without its screens: the start-up questions and reads, the fiscal year, the
// customer cache and the household address sharing, the rental profile and the settings.
#include "engine/c_cust_engine.h"

#include <gtest/gtest.h>

#include "records/c_customer.h"
#include "records/system_country.h"
#include "support/scripted_host.h"

namespace kiv {
namespace {

using test::CallKind;

const std::string kStartUpSql = "SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)";
const std::string kFiscalYearSql = "SELECT fiscal_year FROM kiv_system_parm";
const std::vector<std::string> kEveryCode = {"CUSTADD",      "CUSTADDCOMP",   "CUSTEDIT",    "CUSTACTEDIT",
                                             "CCDELETE",     "CUSTSHOWFORECAS", "CUSTSHOWCLUB", "CUSTDEDUP",
                                             "CUSTEDITWRSVP", "CUSTEDITCOMP", "CUSTEDITPROFILE"};

//! A full row of the customer procedure: every column it answers, null but for the numbers.
test::Cells CustomerRow(int32_t number, int32_t household) {
  test::Cells row = {{"customer_no", number}, {"household_no", household}};
  for (const char* column :
       {"full_name", "last_name", "first_name", "company_name", "customer_type", "Zip", "account_id", "comment_note",
        "DOB", "Locked", "date_of_release", "has_image", "status_id", "discount_percentage", "commission_percentage",
        "household_primary", "Customer_Level_ID", "Gender", "do_not_mail", "customer_kind", "EMail", "work_phone",
        "cell_phone", "Occupation", "wedding_anniversary", "has_willcall", "has_club", "has_so", "has_reservation",
        "has_relationship"})
    row.push_back({column, Variant::Null()});
  return row;
}

class Engine : public ::testing::Test {
 protected:
  void SetUp() override { SetSystemCountryID(""); }
  void TearDown() override { SetSystemCountryID("USA"); }

  //! The procedure answers one customer row per call, numbered as given, in order.
  void ScriptCustomers(const std::vector<std::pair<int32_t, int32_t>>& numbers_and_households) {
    for (const auto& [number, household] : numbers_and_households)
      host_.OnProcedure("KIV_SP_GetCustomer").Once().Row(CustomerRow(number, household));
  }
  void StartWithCache() {
    host_.settings->Seed("AppData", "Customer", "UseCollection", "True");
    engine_.SetAppServer(host_.app);
    host_.db->ClearLog();
  }

  test::ScriptedHost host_;
  CCustEngine engine_;
};

TEST_F(Engine, ConstructionCreatesNothingAndStartUpFetchesTheHostObjects) {
  EXPECT_EQ(engine_.AppServer(), nullptr);
  EXPECT_EQ(engine_.DBConnection(), nullptr);
  EXPECT_EQ(engine_.CacheCount(), 0u);
  EXPECT_EQ(engine_.CacheLimit(), 10);
  EXPECT_EQ(engine_.SourceName().rfind("KIVCustomer.CCustEngine (", 0), 0u) << engine_.SourceName();
  EXPECT_EQ(engine_.VersionStamp().rfind("KIVCustomer=", 0), 0u) << engine_.VersionStamp();
  ASSERT_NE(engine_.GetUi(), nullptr);
  ASSERT_NE(engine_.GetClock(), nullptr);

  host_.OnQuery(kStartUpSql).Row({{"Country_ID", "CAN"}, {"fiscal_year", 2026}});
  engine_.SetAppServer(host_.app);
  EXPECT_EQ(engine_.AppServer(), host_.app);
  EXPECT_EQ(engine_.ErrorObject(), host_.errors);
  EXPECT_EQ(engine_.DBConnection(), host_.db);
  EXPECT_EQ(host_.app->ConnectionNames(), (std::vector<std::string>{"", ""}));
  EXPECT_EQ(host_.SqlTexts(), std::vector<std::string>{kStartUpSql});
  EXPECT_EQ(host_.db->OpenRecordsetCount(), 0u);
  EXPECT_EQ(SystemCountryID(), "CAN");
  EXPECT_EQ(engine_.FiscalYear(), 2026);
  // UseCollection defaults to on when the user never saved it.
  ASSERT_EQ(host_.settings->Gets().size(), 1u);
  EXPECT_EQ(host_.settings->Gets()[0].section, "Customer");
  EXPECT_EQ(host_.settings->Gets()[0].key, "UseCollection");
  EXPECT_EQ(host_.settings->Gets()[0].value, "True");
  EXPECT_TRUE(engine_.UseCollection());
  EXPECT_EQ(host_.errors->Count(), 0u);
}

TEST_F(Engine, PermissionsAreAskedInOrderAndDependentCodesOnlyAfterTheirParent) {
  struct Case {
    const char* name;
    std::vector<std::string> granted;
    std::vector<std::string> asked;
  };
  const std::vector<Case> cases = {
      {"everything", kEveryCode, kEveryCode},
      {"nothing", {},
       {"CUSTADD", "CUSTEDIT", "CUSTACTEDIT", "CCDELETE", "CUSTSHOWFORECAS", "CUSTSHOWCLUB", "CUSTDEDUP"}},
      {"edit without add", {"CUSTEDIT", "CUSTADDCOMP", "CUSTEDITCOMP"},
       {"CUSTADD", "CUSTEDIT", "CUSTACTEDIT", "CCDELETE", "CUSTSHOWFORECAS", "CUSTSHOWCLUB", "CUSTDEDUP",
        "CUSTEDITWRSVP", "CUSTEDITCOMP", "CUSTEDITPROFILE"}},
      {"add without edit", {"CUSTADD", "CUSTEDITWRSVP", "CUSTEDITPROFILE"},
       {"CUSTADD", "CUSTADDCOMP", "CUSTEDIT", "CUSTACTEDIT", "CCDELETE", "CUSTSHOWFORECAS", "CUSTSHOWCLUB",
        "CUSTDEDUP"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::ScriptedHost host;
    for (const std::string& code : c.granted) host.app->Grant(code);
    CCustEngine engine;
    engine.SetAppServer(host.app);
    EXPECT_EQ(host.app->AskedCodes(), c.asked);
    for (const test::PermissionCall& call : host.app->PermissionCalls()) {
      EXPECT_EQ(call.area, "Customer");
      EXPECT_EQ(call.sub_area, "");
    }
    auto held = [&](const std::string& code) {
      return std::find(c.granted.begin(), c.granted.end(), code) != c.granted.end();
    };
    const bool add = held("CUSTADD");
    const bool edit = held("CUSTEDIT");
    EXPECT_EQ(engine.AllowCustAdd(), add);
    EXPECT_EQ(engine.AllowCustAddComp(), add && held("CUSTADDCOMP"));
    EXPECT_EQ(engine.AllowCustEdit(), edit);
    EXPECT_EQ(engine.AllowCustActEdit(), held("CUSTACTEDIT"));
    EXPECT_EQ(engine.AllowCCDelete(), held("CCDELETE"));
    EXPECT_EQ(engine.AllowCustShowForecast(), held("CUSTSHOWFORECAS"));
    EXPECT_EQ(engine.AllowCustShowClub(), held("CUSTSHOWCLUB"));
    EXPECT_EQ(engine.AllowCustDedup(), held("CUSTDEDUP"));
    EXPECT_EQ(engine.AllowCustEditWRsvp(), edit && held("CUSTEDITWRSVP"));
    EXPECT_EQ(engine.AllowCustEditComp(), edit && held("CUSTEDITCOMP"));
    EXPECT_EQ(engine.AllowCustEditProfile(), edit && held("CUSTEDITPROFILE"));
  }
}

TEST_F(Engine, StartUpFailuresAreIgnoredStepByStep) {
  host_.app->GrantAll();
  host_.app->ThrowOnPermission("CUSTADD", 5);
  host_.settings->Seed("AppData", "Customer", "UseCollection", "not a Boolean");
  host_.OnQuery(kStartUpSql).Throws(-2147217865, "Invalid object name 'kiv_system_parm'");
  engine_.SetAppServer(host_.app);
  // The failed question leaves its flag False, so its dependent is not asked; the rest go on.
  EXPECT_FALSE(engine_.AllowCustAdd());
  EXPECT_EQ(host_.app->AskedCodes().size(), 10u);
  EXPECT_TRUE(engine_.AllowCustEditProfile());
  EXPECT_FALSE(engine_.UseCollection());
  EXPECT_EQ(SystemCountryID(), "USA");
  EXPECT_EQ(host_.errors->Count(), 0u);

  CCustEngine bare;  // an application server that has no objects at all
  host_.app->SetConnection(nullptr);
  host_.app->SetErrorObject(nullptr);
  host_.app->SetSettings(nullptr);
  bare.SetAppServer(host_.app);
  EXPECT_EQ(bare.DBConnection(), nullptr);
  EXPECT_EQ(bare.FiscalYear(), 0);
  bare.SetUseCollection(false);
  EXPECT_EQ(bare.OpenCustomer(5)->CustomerNo(), 0);
}

TEST_F(Engine, EmptySystemParametersLeaveUsaAndTheYearIsAskedAgainLater) {
  engine_.SetAppServer(host_.app);
  EXPECT_EQ(SystemCountryID(), "USA");
  host_.db->ClearLog();
  EXPECT_EQ(engine_.FiscalYear(), 0);
  host_.OnQuery(kFiscalYearSql).Row({{"fiscal_year", 2025}}).Row({{"fiscal_year", 2024}});
  EXPECT_EQ(engine_.FiscalYear(), 2025);
  EXPECT_EQ(engine_.FiscalYear(), 2025);
  EXPECT_EQ(host_.SqlTexts(), (std::vector<std::string>{kFiscalYearSql, kFiscalYearSql}));
  EXPECT_EQ(host_.db->OpenRecordsetCount(), 0u);

  // A null country counts as none; a year set by the host is kept without asking.
  test::ScriptedHost other;
  other.OnQuery(kStartUpSql).Row({{"Country_ID", Variant::Null()}, {"fiscal_year", Variant::Null()}});
  SetSystemCountryID("");
  CCustEngine engine;
  engine.SetAppServer(other.app);
  EXPECT_EQ(SystemCountryID(), "USA");
  engine.SetFiscalYear(1999);
  other.db->ClearLog();
  EXPECT_EQ(engine.FiscalYear(), 1999);
  EXPECT_TRUE(other.Log().empty());
}

TEST_F(Engine, OpenCustomerKeepsTheLastTenAndACachedOpenTouchesNoDatabase) {
  StartWithCache();
  engine_.SetFiscalYear(2026);
  std::vector<std::pair<int32_t, int32_t>> numbers;
  for (int32_t n = 1; n <= 11; ++n) numbers.push_back({n, n});
  ScriptCustomers(numbers);
  std::vector<std::shared_ptr<CCustomer>> opened;
  for (int32_t n = 1; n <= 11; ++n) {
    OpenCustomerArgs args;
    opened.push_back(engine_.OpenCustomer(n, args));
    EXPECT_FALSE(args.bError) << n;
    EXPECT_EQ(opened.back()->CustomerNo(), n);
    EXPECT_EQ(opened.back()->FiscalYear(), 2026);
  }
  EXPECT_EQ(engine_.CacheCount(), 10u);
  EXPECT_EQ(engine_.CachedCustomer(1), nullptr);
  for (int32_t n = 2; n <= 11; ++n) EXPECT_EQ(engine_.CachedCustomer(n), opened[n - 1]) << n;

  host_.db->ClearLog();
  OpenCustomerArgs cached;
  cached.bError = true;
  EXPECT_EQ(engine_.OpenCustomer(5, cached), opened[4]);
  EXPECT_TRUE(cached.bError) << "a cached open leaves bError as the caller passed it";
  EXPECT_EQ(cached.oDB, nullptr) << "and exchanges no host objects";
  EXPECT_TRUE(host_.Log().empty());

  // The evicted customer is opened again from the database.
  ScriptCustomers({{1, 1}});
  EXPECT_NE(engine_.OpenCustomer(1), opened[0]);
  EXPECT_EQ(host_.ExecutedProcedures().front(), "KIV_SP_GetCustomer");
  EXPECT_EQ(engine_.CachedCustomer(2), nullptr);
}

TEST_F(Engine, AFailedOpenIsReturnedWithBErrorAndNotCached) {
  StartWithCache();
  auto other_db = std::make_shared<test::ScriptedConnection>();
  OpenCustomerArgs args;
  args.oDB = other_db;
  auto customer = engine_.OpenCustomer(77, args);
  ASSERT_NE(customer, nullptr);
  EXPECT_TRUE(args.bError);
  EXPECT_EQ(engine_.CacheCount(), 0u);
  // The caller's connection was used and became the engine's; the error object went the other way.
  EXPECT_EQ(other_db->CountOf(CallKind::CommandOpen), 1u);
  EXPECT_TRUE(host_.Log().empty());
  EXPECT_EQ(engine_.DBConnection(), other_db);
  EXPECT_EQ(args.oError, host_.errors);

  OpenCustomerArgs later;
  engine_.OpenCustomer(78, later);
  EXPECT_EQ(later.oDB, other_db);
}

TEST_F(Engine, AddToCacheIgnoresAKnownNumberAndOnlyCachesWithUseCollection) {
  StartWithCache();
  auto first = std::make_shared<CCustomer>();
  first->SetCustomerNo(40);
  auto again = std::make_shared<CCustomer>();
  again->SetCustomerNo(40);
  engine_.AddToCache(first);
  engine_.AddToCache(again);
  EXPECT_EQ(engine_.CacheCount(), 1u);
  EXPECT_EQ(engine_.CachedCustomer(40), first);

  engine_.SetUseCollection(false);
  EXPECT_EQ(engine_.CacheCount(), 0u);
  EXPECT_EQ(host_.settings->Stored("AppData", "Customer", "UseCollection"), "False");
  engine_.AddToCache(first);
  EXPECT_EQ(engine_.CacheCount(), 0u);
  ScriptCustomers({{41, 41}, {41, 41}});
  auto one = engine_.OpenCustomer(41);
  EXPECT_NE(engine_.OpenCustomer(41), one) << "without the cache every open reads again";

  engine_.SetUseCollection(true);
  EXPECT_EQ(host_.settings->Saves().back().value, "True");
  engine_.AddToCache(first);
  EXPECT_EQ(engine_.CachedCustomer(40), first);
}

TEST_F(Engine, UpdateAddressThroughCollectionSharesOneCollectionAcrossTheHousehold) {
  StartWithCache();
  auto member = [&](int32_t number, int32_t household) {
    auto c = std::make_shared<CCustomer>();
    c->SetCustomerNo(number);
    c->SetHouseholdNo(household);
    c->SetAddresses(std::make_shared<AddressCollection>());
    return c;
  };
  auto primary = member(100, 100);
  auto spouse = member(101, 100);
  auto neighbour = member(200, 200);
  for (const auto& c : {primary, spouse, neighbour}) engine_.AddToCache(c);
  auto neighbours_own = neighbour->Addresses();

  auto edited = member(102, 100);  // not cached itself
  auto address = std::make_shared<CAddress>();
  address->SetCity("STOWE");
  edited->Addresses()->Add("PRIMARY", address);
  engine_.UpdateAddressThroughCollection(edited);
  EXPECT_EQ(primary->Addresses(), edited->Addresses());
  EXPECT_EQ(spouse->Addresses(), edited->Addresses());
  EXPECT_EQ(neighbour->Addresses(), neighbours_own);
  // One object: a change seen through one member is seen through all.
  (*spouse->Addresses()->Find("PRIMARY"))->SetCity("WAITSFIELD");
  EXPECT_EQ(primary->GetAddress("PRIMARY")->City(), "WAITSFIELD");

  engine_.UpdateAddressThroughCollection(nullptr);
  engine_.SetUseCollection(false);
  engine_.SetUseCollection(true);
  engine_.AddToCache(neighbour);
  engine_.UpdateAddressThroughCollection(member(300, 200));
  EXPECT_NE(neighbour->Addresses(), neighbours_own);
}

TEST_F(Engine, SaveRentalProfileWritesTheSettingRowAndAddsItWhenMissing) {
  StartWithCache();
  const std::string sql = "SELECT * FROM kiv_customer_setting WHERE customer_no = 31";
  auto customer = std::make_shared<CCustomer>();
  customer->SetCustomerNo(31);
  customer->SetGuestAbility("3");
  customer->SetGuestShoeSize(9.5);
  customer->SetGuestHeightRange(4);
  customer->SetGuestWeightRange(7);
  host_.OnQuery(sql).Once();
  ASSERT_TRUE(engine_.SaveRentalProfileInformation(customer));
  auto added = host_.db->RecordsetFor(sql);
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->Cursor(), test::CursorKind::Updatable);
  EXPECT_EQ(added->OpsText(),
            (std::vector<std::string>{"AddNew", "Set CUSTOMER_NO=31", "Set guest_ability=\"3\"",
                                      "Set guest_shoe_size=9.5", "Set guest_height_range=4",
                                      "Set guest_weight_range=7", "Update", "Close"}));

  host_.OnQuery(sql).Row({{"customer_no", 31}, {"guest_ability", "1"}, {"guest_shoe_size", 8.0},
                          {"guest_height_range", 1}, {"guest_weight_range", 1}});
  ASSERT_TRUE(engine_.SaveRentalProfileInformation(customer));
  auto existing = host_.db->RecordsetFor(sql);
  EXPECT_EQ(existing->OpsText().front(), "Set guest_ability=\"3\"");
  EXPECT_EQ(existing->Cell(0, "guest_shoe_size"), Variant(9.5));

  host_.db->ClearLog();
  EXPECT_FALSE(engine_.SaveRentalProfileInformation(std::make_shared<CCustomer>()));
  EXPECT_FALSE(engine_.SaveRentalProfileInformation(nullptr));
  EXPECT_TRUE(host_.Log().empty());
  host_.db->FailNext(CallKind::OpenUpdatable);
  EXPECT_FALSE(engine_.SaveRentalProfileInformation(customer));
  host_.db->ThrowNext(CallKind::OpenUpdatable, 3251, "Operation is not supported");
  EXPECT_FALSE(engine_.SaveRentalProfileInformation(customer));
  EXPECT_EQ(host_.errors->Count(), 0u);
}

TEST_F(Engine, OpenRentalProfileReadsTheCustomersSettingsAndCustomersGetTheEnginesUi) {
  StartWithCache();
  EXPECT_FALSE(engine_.OpenRentalProfileInformation(nullptr));
  auto ui = std::make_shared<ui::SilentUi>();
  engine_.SetUi(ui);
  ScriptCustomers({{8, 8}});
  auto customer = engine_.OpenCustomer(8);
  EXPECT_EQ(customer->GetUi(), ui);
  host_.OnProcedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_get")
      .Outputs({{"@height_default", 3}, {"@weight_default", 5}});
  host_.db->ClearLog();
  EXPECT_TRUE(engine_.OpenRentalProfileInformation(customer));
  EXPECT_EQ(host_.ExecutedProcedures(), std::vector<std::string>{"KIV_SP_CUSTOMER_CUSTOMER_ALERT_get"});
  EXPECT_EQ(customer->GuestWeightRange(), 5);

  engine_.SetUi(nullptr);
  EXPECT_NE(engine_.GetUi(), nullptr);
  EXPECT_NE(engine_.GetUi(), ui);
}

}  // namespace
}  // namespace kiv

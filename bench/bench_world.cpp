// Opening the benchmark world, choosing its samples, and the one-time agreement check
// between each component operation and its raw baseline.
#include "bench/bench_world.h"

#include <sqlite3.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string_view>

#include "bench/bench_database.h"
#include "refhost/sqlite_database.h"
#include "ui/ui.h"

namespace kiv::bench {

namespace {

std::unique_ptr<BenchWorld> g_world;

constexpr uint32_t kSeed = 20260314;
constexpr size_t kCustomerSample = 4096;
constexpr int kTwoAddressSample = 32;

std::vector<int32_t> IntColumn(refhost::SqliteDatabase& db, const std::string& sql) {
  std::vector<int32_t> out;
  for (const auto& row : db.QueryRows(sql)) out.push_back(static_cast<int32_t>(row[0].ToLong()));
  return out;
}

}  // namespace

BenchWorld& World() {
  if (!g_world) throw std::logic_error("the benchmark world is not open");
  return *g_world;
}

void TurnCacheSettingOn(const std::string& path) {
  refhost::OpenOptions options;
  options.create_if_missing = false;
  auto host = refhost::RefHost::Open(path, options);
  CCustEngine engine;
  engine.SetAppServer(host->SignIn(kBenchUser));
  engine.SetUseCollection(true);
}

void OpenWorld(const std::string& path) {
  auto world = std::make_unique<BenchWorld>();
  refhost::OpenOptions options;
  options.create_if_missing = false;
  world->host = refhost::RefHost::Open(path, options);
  world->app_server = world->host->SignIn(kBenchUser);
  world->engine = std::make_unique<CCustEngine>();
  world->engine->SetAppServer(world->app_server);
  world->connection = world->engine->DBConnection();
  world->errors = world->engine->ErrorObject();
  if (!world->connection) throw std::runtime_error("the engine got no connection");

  world->screen = std::make_shared<frmFind>();
  world->screen->SetUi(std::make_shared<ui::SilentUi>());
  world->screen->SetDBConnection(world->connection);
  world->screen->SetErrorObject(world->errors);
  world->screen->SetCustomerEngine(world->engine.get());
  world->screen->Show();
  world->screen->tabFind.SetSelectedIndex(world->screen->tabFind.FindKey("Person"));

  refhost::SqliteDatabase& db = *world->host->Database();
  world->raw = std::make_unique<RawSqlite>(db.Handle());
  world->customers = SampleCustomerNumbers(path, kCustomerSample);
  world->two_address_customers = IntColumn(
      db, "SELECT a.customer_no FROM kiv_customer_address a JOIN kiv_customer c ON c.customer_no = a.customer_no "
          "WHERE c.household_no = c.customer_no GROUP BY a.customer_no HAVING COUNT(*) = 2 LIMIT " +
              std::to_string(kTwoAddressSample));
  if (world->two_address_customers.empty()) throw std::runtime_error("no customer has two addresses");
  // Prefixes of the common last names, each with more than one page of persons.
  for (const auto& row : db.QueryRows("SELECT substr(last_name, 1, 3) AS p, COUNT(*) AS n FROM kiv_customer "
                                      "WHERE customer_type = 'P' AND length(last_name) >= 3 GROUP BY p "
                                      "HAVING n > 200 ORDER BY n DESC LIMIT 8")) {
    world->prefixes.push_back(row[0].ToString());
  }
  if (world->prefixes.empty()) throw std::runtime_error("no last-name prefix finds two pages");
  for (const auto& row : db.QueryRows("SELECT zip FROM kiv_zip_code ORDER BY zip")) world->zips.push_back(row[0].ToString());
  if (world->zips.empty()) throw std::runtime_error("the postal-code table is empty");
  std::shuffle(world->zips.begin(), world->zips.end(), std::mt19937(kSeed));
  g_world = std::move(world);
}

void CloseWorld() {
  if (!g_world) return;
  // The miss benchmark turns the cache off; the user's setting goes back to on.
  g_world->engine->SetUseCollection(true);
  g_world->screen.reset();
  g_world->raw.reset();
  g_world.reset();
}

void ScreenSearch(frmFind& screen, const std::string& prefix, int more) {
  screen.txtLastName.SetText(prefix);
  screen.Find();
  for (int i = 0; i < more; ++i) screen.GetMore();
}

std::string CheckBaselinesAgree(BenchWorld& world) {
  for (size_t i = 0; i < 8 && i < world.customers.size(); ++i) {
    const int32_t n = world.customers[i];
    CCustomer customer;
    if (!customer.OpenCustomer(world.connection, world.errors, Variant(n)))
      return "the component could not open customer " + std::to_string(n);
    RawCustomer raw = RawOpenCustomer(*world.raw, n);
    if (raw.last_name != customer.LastName() || raw.addresses != static_cast<int>(customer.Addresses()->Count()))
      return "open of customer " + std::to_string(n) + ": raw read " + raw.last_name + " with " +
             std::to_string(raw.addresses) + " addresses, the component " + customer.LastName() + " with " +
             std::to_string(customer.Addresses()->Count());
  }
  for (const std::string& prefix : world.prefixes) {
    frmFind& screen = *world.screen;
    ScreenSearch(screen, prefix, 0);
    RawPage first = RawSearchLastName(*world.raw, prefix, 0);
    if (first.total != screen.TotalCount() || first.customers.empty() ||
        first.customers.back() != screen.LastCustomerNo() ||
        static_cast<int32_t>(first.customers.size()) != screen.DisplayedCount())
      return "first page of " + prefix + " differs (raw total " + std::to_string(first.total) + ", screen " +
             std::to_string(screen.TotalCount()) + ")";
    bool counted = false;
    sqlite3_trace_v2(
        world.raw->Handle(), SQLITE_TRACE_STMT,
        [](unsigned, void* flag, void* stmt, void*) {
          const char* sql = sqlite3_sql(static_cast<sqlite3_stmt*>(stmt));
          if (sql != nullptr && std::string_view(sql).rfind("SELECT COUNT(*) FROM kiv_customer", 0) == 0)
            *static_cast<bool*>(flag) = true;
          return 0;
        },
        &counted);
    screen.GetMore();
    sqlite3_trace_v2(world.raw->Handle(), 0, nullptr, nullptr);
    world.next_page_counts = counted;
    RawPage next = RawSearchLastName(*world.raw, prefix, first.customers.back(), counted);
    if (next.customers.empty() || next.customers.back() != screen.LastCustomerNo())
      return "next page of " + prefix + " differs";
  }
  for (size_t i = 0; i < 8 && i < world.zips.size(); ++i) {
    CAddress address;
    ZipLookUpArgs args;
    if (!address.ZipLookUp(world.connection, world.zips[i], args)) return "zip " + world.zips[i] + " not found";
    if (args.sCity != RawZipLookUp(*world.raw, world.zips[i])) return "zip " + world.zips[i] + " differs";
  }
  const int32_t n = world.two_address_customers.front();
  RawSaveRow row(*world.raw, n);
  if (row.addresses.size() != 2) return "customer " + std::to_string(n) + " does not have two addresses";
  refhost::SqliteDatabase& db = *world.host->Database();
  RawSaveCustomer(*world.raw, row, "raw check", kBenchUser, "2026-03-14 09:30:00");
  if (db.QueryValue("SELECT comment_note FROM kiv_customer WHERE customer_no = ?", {Variant(n)}).ToString() !=
      "raw check")
    return "the raw save did not write the comment";
  CCustomer customer;
  customer.OpenCustomer(world.connection, world.errors, Variant(n));
  customer.SetCommentNote("component check");
  if (!customer.Update()) return "the component could not save customer " + std::to_string(n);
  if (db.QueryValue("SELECT comment_note FROM kiv_customer WHERE customer_no = ?", {Variant(n)}).ToString() !=
      "component check")
    return "the component save did not write the comment";
  return {};
}

}  // namespace kiv::bench

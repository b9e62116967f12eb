// What every benchmark shares: the reference host over the benchmark database, the signed-in
// engine and search screen, the raw handle for the baseline, and the customers, prefixes and
// zips the operations pick from (chosen once, with a fixed seed, from the data itself).
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/raw_sqlite.h"
#include "engine/c_cust_engine.h"
#include "host/app_server.h"
#include "records/c_customer.h"
#include "refhost/ref_host.h"
#include "screens/search/frm_find.h"

namespace kiv::bench {

//! The user the benchmarks and the memory script sign in as.
inline constexpr const char* kBenchUser = "manager";

struct BenchWorld {
  std::shared_ptr<refhost::RefHost> host;
  std::shared_ptr<host::AppServer> app_server;
  std::shared_ptr<host::DBConnection> connection;
  std::shared_ptr<host::ErrorObject> errors;
  std::unique_ptr<CCustEngine> engine;
  std::shared_ptr<frmFind> screen;
  std::unique_ptr<RawSqlite> raw;

  //! Existing customers in random order.
  std::vector<int32_t> customers;
  //! Household primaries whose household has exactly two addresses.
  std::vector<int32_t> two_address_customers;
  //! Three-letter last-name prefixes that find at least two pages.
  std::vector<std::string> prefixes;
  std::vector<std::string> zips;
  //! The host counts the matches again for every further page (seen by CheckBaselinesAgree),
  //! so the raw next page does too.
  bool next_page_counts = true;
};

//! Turns the benchmark user's customer cache on in the file (a run stopped inside the miss
//! benchmark leaves it off), so that the memory script runs with the cache on.
void TurnCacheSettingOn(const std::string& path);

//! Opens the database, signs in and picks the samples. Throws on any failure.
void OpenWorld(const std::string& path);
//! The world opened by OpenWorld.
BenchWorld& World();
//! Restores the user's cache setting and closes everything.
void CloseWorld();

//! The search screen run for the prefix: Find, and `more` times Get MORE!.
void ScreenSearch(frmFind& screen, const std::string& prefix, int more);

//! Compares each component operation with its raw baseline once; the first disagreement as
//! text, empty when they agree. A baseline that reads less than the component fails here.
std::string CheckBaselinesAgree(BenchWorld& world);

//! Registers every benchmark with Google Benchmark: `repetitions` runs of at least
//! `min_seconds` each, reported by their median.
void RegisterBenchmarks(int repetitions, double min_seconds);

}  // namespace kiv::bench

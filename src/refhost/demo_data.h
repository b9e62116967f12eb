// The demo database: persons, companies, households, addresses, postal codes, list tables,
// profile columns, groups, clubs, cards, accounts and three users, generated from a seed
// so that the same seed always gives the same database.
#pragma once
#include <cstdint>
#include <stdexcept>
#include <string>

struct sqlite3;

namespace kiv::refhost {

struct DemoOptions {
  int32_t customers = 10000;  //!< persons and companies together
  uint64_t seed = 1;
};

//! What was written, for the program to report.
struct DemoSummary {
  int32_t customers = 0;
  int32_t companies = 0;
  int32_t households = 0;
  int32_t addresses = 0;
  int32_t zip_codes = 0;
  //! Persons entered a second time on purpose, numbered after `customers`.
  int32_t duplicates = 0;
};

//! The three demo users: every permission, a clerk, and a user holding none.
inline constexpr const char* kDemoManager = "manager";
inline constexpr const char* kDemoClerk = "clerk";
inline constexpr const char* kDemoViewer = "viewer";
inline constexpr const char* kDemoPassword = "demo";

struct DemoDataError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

//! Fills a database whose schema is already created and whose customer tables are empty,
//! in one transaction. Throws DemoDataError (nothing written) when a statement fails.
DemoSummary BuildDemoData(sqlite3* db, const DemoOptions& options);

}  // namespace kiv::refhost

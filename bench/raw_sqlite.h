// The raw baseline: what the reference host's procedures and the component's statements do
// for each measured operation, issued straight through the SQLite C API with prepared
// statements and bound values, and nothing in between.
#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;
struct sqlite3_value;

namespace kiv::bench {

//! Prepared statements kept by text for the life of the object.
class RawSqlite {
 public:
  explicit RawSqlite(sqlite3* db) : db_(db) {}
  ~RawSqlite();
  RawSqlite(const RawSqlite&) = delete;
  RawSqlite& operator=(const RawSqlite&) = delete;

  sqlite3* Handle() const { return db_; }
  //! The statement for the text, prepared on first use; reset and unbound. Throws on failure.
  sqlite3_stmt* Statement(const std::string& sql);
  //! Steps a statement to its end, reading every column of every row; the number of rows.
  int Drain(sqlite3_stmt* stmt);
  //! Runs a statement without values to its end (BEGIN, COMMIT).
  void Run(const std::string& sql);

 private:
  sqlite3* db_;
  std::unordered_map<std::string, sqlite3_stmt*> statements_;
};

struct RawCustomer {
  std::string last_name;
  int addresses = 0;
};

//! The customer procedure, the club-membership procedure, the household's address list and
//! each address's procedure, each procedure in its own transaction as the host runs it.
RawCustomer RawOpenCustomer(RawSqlite& raw, int32_t customer_no);

struct RawPage {
  int32_t total = 0;
  std::vector<int32_t> customers;
};

//! The search procedure for persons whose last name begins with `prefix`: the count (unless
//! `count` is false: total stays 0), the continuation key after `after_customer_no` (0 for
//! the first page), then the page.
RawPage RawSearchLastName(RawSqlite& raw, const std::string& prefix, int32_t after_customer_no, bool count = true);

//! The stored values a save writes back, copied once before timing.
class RawSaveRow {
 public:
  RawSaveRow(RawSqlite& raw, int32_t customer_no);
  ~RawSaveRow();
  RawSaveRow(const RawSaveRow&) = delete;
  RawSaveRow& operator=(const RawSaveRow&) = delete;

  int32_t customer_no = 0;
  //! The customer's written columns, in the update procedure's order.
  std::vector<sqlite3_value*> customer;
  //! Per address: number, type, name, two lines, city, state, zip, country, phone, fax.
  std::vector<std::vector<sqlite3_value*>> addresses;
};

//! The customer update procedure with a new comment, then the address procedure for each
//! address, each as one immediate transaction.
void RawSaveCustomer(RawSqlite& raw, const RawSaveRow& row, const std::string& comment, const std::string& user,
                     const std::string& now);

//! The postal-code query; the city, empty when the zip is unknown.
std::string RawZipLookUp(RawSqlite& raw, const std::string& zip);

}  // namespace kiv::bench

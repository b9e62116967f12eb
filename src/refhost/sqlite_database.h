// One open SQLite database file: the handle, the prepared-statement cache and the small
// helpers every part of the reference host uses to run a statement with bound values.
#pragma once
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/clock.h"
#include "core/variant.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kiv::refhost {

struct ColumnInfo;
class ReadRows;
//! The column metadata of a cached statement, described once.
using ColumnList = std::shared_ptr<const std::vector<ColumnInfo>>;

//! Error numbers the reference host raises (HostError::number).
inline constexpr int32_t kErrDatabase = -2147217900;  // a statement failed or was refused
inline constexpr int32_t kErrOpen = -2147467259;      // the database file cannot be used

//! What a clerk reads when another terminal or program holds the database's write lock.
inline constexpr const char* kBusyMessage =
    "The customer database is busy: another terminal or program is saving to it. Nothing was changed; "
    "try again in a moment.";
struct OpenOptions {
  bool create_if_missing = true;
  //! How long a write waits for another writer before the clerk is told the database is busy.
  int busy_timeout_ms = 3000;
  //! Where GETDATE() and the logs take the time from; the system clock when null.
  std::shared_ptr<Clock> clock;
};

//! A statement taken from the cache; reset and unbound again when the lease ends.
class StatementLease {
 public:
  //! `owned`: a private copy finalized at the end (the cached one was in use).
  StatementLease(sqlite3_stmt* stmt, bool* busy, bool owned, ColumnList* columns = nullptr)
      : stmt_(stmt), busy_(busy), owned_(owned), columns_(columns) {}
  StatementLease(StatementLease&& other) noexcept
      : stmt_(other.stmt_), busy_(other.busy_), owned_(other.owned_), columns_(other.columns_) {
    other.stmt_ = nullptr;
  }
  StatementLease(const StatementLease&) = delete;
  StatementLease& operator=(const StatementLease&) = delete;
  StatementLease& operator=(StatementLease&&) = delete;
  ~StatementLease();
  sqlite3_stmt* get() const { return stmt_; }
  //! Where the statement's column description is kept between uses; null for a private copy.
  ColumnList* Columns() const { return columns_; }

 private:
  sqlite3_stmt* stmt_;
  bool* busy_;
  bool owned_;
  ColumnList* columns_;
};

class SqliteDatabase {
 public:
  //! Opens (or creates) the file in WAL mode with a busy timeout; throws HostError(kErrOpen)
  //! with a message naming the file when it is missing, read-only, locked or not a database.
  static std::shared_ptr<SqliteDatabase> Open(const std::string& path, const OpenOptions& options = {});
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  sqlite3* Handle() const { return db_; }
  const std::string& Path() const { return path_; }
  Date Now() const;
  const std::shared_ptr<Clock>& GetClock() const { return clock_; }
  void SetClock(std::shared_ptr<Clock> clock);

  //! Prepares (or takes from the cache) exactly one statement; text after the first statement
  //! is refused. Throws HostError(kErrDatabase).
  StatementLease Prepare(const std::string& sql);
  //! Runs a script of several statements (schema creation); throws HostError.
  void ExecScript(const std::string& sql);

  //! Runs one statement with positional values; returns the rows changed.
  int Execute(const std::string& sql, const std::vector<Variant>& args = {});
  //! First column of the first row, Null when there is no row.
  Variant QueryValue(const std::string& sql, const std::vector<Variant>& args = {});
  //! Every row of a query, each as its values in column order.
  std::vector<std::vector<Variant>> QueryRows(const std::string& sql, const std::vector<Variant>& args = {});
  int64_t LastInsertRowid() const;

  //! Totals remembered between the pages of one search: a continuation page reuses the total
  //! its first page counted under the same criteria text.
  std::unordered_map<std::string, int32_t>& SearchTotals() { return search_totals_; }

  //! Runs `work` now, or once the transaction open on the handle (a unit of work) has ended
  //! either way: for records such as error reports that must outlive a rolled-back unit.
  void AfterTransaction(std::function<void()> work);
  //! Runs what waited for the transaction to end; called when a unit of work ends.
  void RunAfterTransaction();

  //! What the connection whose procedure runs now has shown its clerk; null outside a
  //! connection's call.
  ReadRows* Readings() const { return readings_; }
  void SetReadings(ReadRows* readings) { readings_ = readings; }

  //! Throws HostError(kErrDatabase) with SQLite's message for the last failure (the busy
  //! message when another program held the lock).
  [[noreturn]] void Fail(const std::string& context) const;

  //! While it lives, the statements prepared and run are the component's own: the authorizer
  //! keeps them to the customer tables, and they are cached apart from the host's statements
  //! so that one never runs in the other's place.
  class ComponentStatements {
   public:
    explicit ComponentStatements(SqliteDatabase& db) : db_(db), previous_(db.component_) { db_.component_ = true; }
    ~ComponentStatements() { db_.component_ = previous_; }
    ComponentStatements(const ComponentStatements&) = delete;
    ComponentStatements& operator=(const ComponentStatements&) = delete;

   private:
    SqliteDatabase& db_;
    bool previous_;
  };

  //! While it lives, a statement that meets another writer's lock fails at once instead of
  //! waiting: for writes that may as well be skipped.
  class NoWait {
   public:
    explicit NoWait(SqliteDatabase& db);
    ~NoWait();
    NoWait(const NoWait&) = delete;
    NoWait& operator=(const NoWait&) = delete;

   private:
    SqliteDatabase& db_;
  };

 private:
  SqliteDatabase(sqlite3* db, std::string path, std::shared_ptr<Clock> clock);
  void Evict();

  sqlite3* db_;
  std::string path_;
  std::shared_ptr<Clock> clock_;
  int busy_timeout_ms_ = 0;
  ReadRows* readings_ = nullptr;
  std::vector<std::function<void()>> after_transaction_;
  //! Read by the authorizer; see ComponentStatements.
  bool component_ = false;
  struct Cached {
    sqlite3_stmt* stmt = nullptr;
    std::unique_ptr<bool> busy;
    std::unique_ptr<ColumnList> columns;
  };
  std::unordered_map<std::string, Cached> cache_;
  std::list<std::string> cache_order_;
  std::unordered_map<std::string, int32_t> search_totals_;
};

//! A transaction that rolls back unless committed. `immediate` takes the write lock at once.
//! Inside a transaction already open on the handle (a unit of work) it is a savepoint:
//! committing releases it into the outer transaction, abandoning it undoes only its own
//! writes.
class Transaction {
 public:
  Transaction(SqliteDatabase& db, bool immediate);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit();
  //! Undoes what was written since it began; nothing happens when already ended.
  void Rollback() noexcept;

 private:
  SqliteDatabase& db_;
  bool open_ = false;
  bool savepoint_ = false;
};

//! Binds a value to a statement parameter (1-based): Boolean as 1/0, Date as ISO text,
//! Currency as a real, Empty and Null as NULL.
void BindVariant(sqlite3_stmt* stmt, int index, const Variant& value);
//! A date as stored: "YYYY-MM-DD HH:MM:SS".
std::string DateToText(const Date& date);
//! A column read by its storage class alone (expressions without a declared type).
Variant ColumnVariant(sqlite3_stmt* stmt, int column);

}  // namespace kiv::refhost

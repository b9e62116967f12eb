// The SQLite handle of the reference host: opening with clear messages, the statement
// cache, one-statement preparation and the bound-value helpers.
#include "refhost/sqlite_database.h"

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>

#include "host/host_error.h"
#include "refhost/database_check.h"
#include "refhost/row_set.h"
#include "refhost/statement_guard.h"

namespace kiv::refhost {

namespace {

constexpr size_t kCacheLimit = 256;

// Skips blanks, semicolons and comments; true when nothing else is left.
bool OnlyTrivia(const char* p) {
  while (*p != '\0') {
    if (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n' || *p == ';') {
      ++p;
    } else if (p[0] == '-' && p[1] == '-') {
      while (*p != '\0' && *p != '\n') ++p;
    } else if (p[0] == '/' && p[1] == '*') {
      p += 2;
      while (*p != '\0' && !(p[0] == '*' && p[1] == '/')) ++p;
      if (*p != '\0') p += 2;
    } else {
      return false;
    }
  }
  return true;
}

void NowFunction(sqlite3_context* ctx, int, sqlite3_value**) {
  auto* db = static_cast<SqliteDatabase*>(sqlite3_user_data(ctx));
  std::string text = DateToText(db->Now());
  sqlite3_result_text(ctx, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

bool IsBusy(int rc) { return (rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED; }

// SQLite's reason for the last failure, in a clerk's words when another program holds the
// lock: that is the one failure the clerk can do something about.
std::string Reason(sqlite3* db) {
  if (IsBusy(sqlite3_extended_errcode(db))) return kBusyMessage;
  return sqlite3_errmsg(db);
}

[[noreturn]] void OpenFailure(const std::string& path, const std::string& why) {
  throw HostError(kErrOpen, "Cannot use the database file '" + path + "': " + why);
}

}  // namespace

StatementLease::~StatementLease() {
  if (stmt_ == nullptr) return;
  if (owned_) {
    sqlite3_finalize(stmt_);
    return;
  }
  sqlite3_reset(stmt_);
  sqlite3_clear_bindings(stmt_);
  if (busy_ != nullptr) *busy_ = false;
}

SqliteDatabase::SqliteDatabase(sqlite3* db, std::string path, std::shared_ptr<Clock> clock)
    : db_(db), path_(std::move(path)), clock_(std::move(clock)) {}

SqliteDatabase::~SqliteDatabase() {
  for (auto& [text, cached] : cache_) sqlite3_finalize(cached.stmt);
  sqlite3_close_v2(db_);
}

std::shared_ptr<SqliteDatabase> SqliteDatabase::Open(const std::string& path, const OpenOptions& options) {
  std::error_code ec;
  bool exists = std::filesystem::exists(path, ec);
  if (!exists && !options.create_if_missing) OpenFailure(path, "the file does not exist.");
  if (exists && std::filesystem::is_directory(path, ec)) OpenFailure(path, "it is a directory.");

  sqlite3* raw = nullptr;
  int flags = SQLITE_OPEN_READWRITE | (options.create_if_missing ? SQLITE_OPEN_CREATE : 0);
  int rc = sqlite3_open_v2(path.c_str(), &raw, flags, nullptr);
  if (rc != SQLITE_OK) {
    std::string why = raw != nullptr ? sqlite3_errmsg(raw) : sqlite3_errstr(rc);
    sqlite3_close_v2(raw);
    OpenFailure(path, why + ".");
  }
  std::shared_ptr<Clock> clock = options.clock ? options.clock : std::make_shared<SystemClock>();
  std::shared_ptr<SqliteDatabase> db(new SqliteDatabase(raw, path, std::move(clock)));
  sqlite3_extended_result_codes(raw, 1);
  if (sqlite3_db_readonly(raw, "main") == 1) OpenFailure(path, "the file is read-only.");
  sqlite3_busy_timeout(raw, options.busy_timeout_ms);
  db->busy_timeout_ms_ = options.busy_timeout_ms;

  // Nothing is written (not even the switch to WAL) before the file shows it is ours.
  CheckCustomerFile(raw, path);
  char* message = nullptr;
  rc = sqlite3_exec(raw, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA cache_size=-65536;", nullptr,
                    nullptr, &message);
  std::string why = message != nullptr ? message : sqlite3_errstr(rc);
  sqlite3_free(message);
  if ((rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED)
    OpenFailure(path, "it is locked by another program (" + why + ").");
  if ((rc & 0xff) == SQLITE_NOTADB || (rc & 0xff) == SQLITE_CORRUPT)
    OpenFailure(path, "it is not a customer database or it is damaged (" + why + ").");
  if (rc != SQLITE_OK) OpenFailure(path, why + ".");

  StatementGuard::InstallAuthorizer(raw, &db->component_);
  sqlite3_create_function_v2(raw, "kiv_now", 0, SQLITE_UTF8, db.get(), NowFunction, nullptr, nullptr, nullptr);
  return db;
}

Date SqliteDatabase::Now() const { return clock_->Now(); }

void SqliteDatabase::SetClock(std::shared_ptr<Clock> clock) {
  if (clock) clock_ = std::move(clock);
}

void SqliteDatabase::Evict() {
  // Only idle statements can go; the oldest first.
  for (auto it = cache_order_.begin(); it != cache_order_.end() && cache_.size() > kCacheLimit / 2;) {
    auto found = cache_.find(*it);
    if (found != cache_.end() && !*found->second.busy) {
      sqlite3_finalize(found->second.stmt);
      cache_.erase(found);
      it = cache_order_.erase(it);
    } else {
      ++it;
    }
  }
}

StatementLease SqliteDatabase::Prepare(const std::string& sql) {
  // A leading byte no SQL text starts with keeps the component's statements apart.
  const std::string key = component_ ? '\x01' + sql : sql;
  auto found = cache_.find(key);
  if (found != cache_.end() && !*found->second.busy) {
    *found->second.busy = true;
    return StatementLease(found->second.stmt, found->second.busy.get(), false, found->second.columns.get());
  }
  sqlite3_stmt* stmt = nullptr;
  const char* tail = nullptr;
  int rc = sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &stmt, &tail);
  if (rc != SQLITE_OK) {
    std::string why = Reason(db_);
    sqlite3_finalize(stmt);
    throw HostError(kErrDatabase, why);
  }
  if (stmt == nullptr) throw HostError(kErrDatabase, "There is no statement to run.");
  if (tail != nullptr && !OnlyTrivia(tail)) {
    sqlite3_finalize(stmt);
    throw HostError(kErrDatabase, "Only one statement may be run per call; the text after the first statement was refused.");
  }
  if (found != cache_.end()) return StatementLease(stmt, nullptr, true);  // the cached copy is in use
  if (cache_.size() >= kCacheLimit) Evict();
  Cached cached{stmt, std::make_unique<bool>(true), std::make_unique<ColumnList>()};
  bool* busy = cached.busy.get();
  ColumnList* columns = cached.columns.get();
  cache_.emplace(key, std::move(cached));
  cache_order_.push_back(key);
  return StatementLease(stmt, busy, false, columns);
}

void SqliteDatabase::ExecScript(const std::string& sql) {
  char* message = nullptr;
  int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message);
  if (rc == SQLITE_OK) return;
  std::string why = message != nullptr ? message : sqlite3_errstr(rc);
  sqlite3_free(message);
  throw HostError(kErrDatabase, why);
}

namespace {
void BindAll(sqlite3_stmt* stmt, const std::vector<Variant>& args) {
  for (size_t i = 0; i < args.size(); ++i) BindVariant(stmt, static_cast<int>(i + 1), args[i]);
}
}  // namespace

int SqliteDatabase::Execute(const std::string& sql, const std::vector<Variant>& args) {
  StatementLease lease = Prepare(sql);
  BindAll(lease.get(), args);
  int rc;
  while ((rc = sqlite3_step(lease.get())) == SQLITE_ROW) {
  }
  if (rc != SQLITE_DONE) Fail("Statement failed");
  return sqlite3_changes(db_);
}

Variant SqliteDatabase::QueryValue(const std::string& sql, const std::vector<Variant>& args) {
  StatementLease lease = Prepare(sql);
  BindAll(lease.get(), args);
  int rc = sqlite3_step(lease.get());
  if (rc == SQLITE_ROW) return ColumnVariant(lease.get(), 0);
  if (rc != SQLITE_DONE) Fail("Query failed");
  return Variant::Null();
}

std::vector<std::vector<Variant>> SqliteDatabase::QueryRows(const std::string& sql, const std::vector<Variant>& args) {
  StatementLease lease = Prepare(sql);
  BindAll(lease.get(), args);
  std::vector<std::vector<Variant>> rows;
  int columns = sqlite3_column_count(lease.get());
  int rc;
  while ((rc = sqlite3_step(lease.get())) == SQLITE_ROW) {
    std::vector<Variant> row;
    row.reserve(columns);
    for (int c = 0; c < columns; ++c) row.push_back(ColumnVariant(lease.get(), c));
    rows.push_back(std::move(row));
  }
  if (rc != SQLITE_DONE) Fail("Query failed");
  return rows;
}

int64_t SqliteDatabase::LastInsertRowid() const { return sqlite3_last_insert_rowid(db_); }

void SqliteDatabase::AfterTransaction(std::function<void()> work) {
  if (sqlite3_get_autocommit(db_) != 0) {
    work();
    return;
  }
  after_transaction_.push_back(std::move(work));
}

void SqliteDatabase::RunAfterTransaction() {
  if (sqlite3_get_autocommit(db_) == 0) return;
  std::vector<std::function<void()>> waiting;
  waiting.swap(after_transaction_);
  for (auto& work : waiting) work();
}

void SqliteDatabase::Fail(const std::string& context) const {
  if (IsBusy(sqlite3_extended_errcode(db_))) throw HostError(kErrDatabase, kBusyMessage);
  throw HostError(kErrDatabase, context + ": " + sqlite3_errmsg(db_));
}

SqliteDatabase::NoWait::NoWait(SqliteDatabase& db) : db_(db) { sqlite3_busy_timeout(db_.db_, 0); }

SqliteDatabase::NoWait::~NoWait() { sqlite3_busy_timeout(db_.db_, db_.busy_timeout_ms_); }

Transaction::Transaction(SqliteDatabase& db, bool immediate) : db_(db) {
  savepoint_ = sqlite3_get_autocommit(db_.Handle()) == 0;
  if (savepoint_)
    db_.Execute("SAVEPOINT kiv_call");
  else
    db_.Execute(immediate ? "BEGIN IMMEDIATE" : "BEGIN");
  open_ = true;
}

Transaction::~Transaction() { Rollback(); }

void Transaction::Rollback() noexcept {
  if (!open_) return;
  open_ = false;
  // Rolling back runs while a failure unwinds; its own failure must not replace that one.
  if (!savepoint_) {
    sqlite3_exec(db_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    return;
  }
  // Undone and then released: the outer transaction goes on without this call's writes.
  sqlite3_exec(db_.Handle(), "ROLLBACK TO kiv_call; RELEASE kiv_call", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
  db_.Execute(savepoint_ ? "RELEASE kiv_call" : "COMMIT");
  open_ = false;
}

void BindVariant(sqlite3_stmt* stmt, int index, const Variant& value) {
  switch (value.Type()) {
    case VarType::Empty:
    case VarType::Null:
      sqlite3_bind_null(stmt, index);
      return;
    case VarType::Boolean:
      sqlite3_bind_int(stmt, index, value.ToBool() ? 1 : 0);
      return;
    case VarType::Integer:
    case VarType::Long:
      sqlite3_bind_int64(stmt, index, value.ToLong());
      return;
    case VarType::Double:
      sqlite3_bind_double(stmt, index, value.ToDouble());
      return;
    case VarType::Currency:
      sqlite3_bind_double(stmt, index, value.ToCurrency().ToDouble());
      return;
    case VarType::Date: {
      std::string text = DateToText(value.ToDate());
      sqlite3_bind_text(stmt, index, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
      return;
    }
    case VarType::String: {
      std::string text = value.ToString();
      sqlite3_bind_text(stmt, index, text.c_str(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
      return;
    }
    case VarType::Bytes: {
      Bytes bytes = value.ToBytes();
      sqlite3_bind_blob(stmt, index, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
      return;
    }
  }
}

std::string DateToText(const Date& date) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", date.Year(), date.Month(), date.Day(),
                date.Hour(), date.Minute(), date.Second());
  return buffer;
}

Variant ColumnVariant(sqlite3_stmt* stmt, int column) {
  switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_INTEGER:
      return Variant(static_cast<int64_t>(sqlite3_column_int64(stmt, column)));
    case SQLITE_FLOAT:
      return Variant(sqlite3_column_double(stmt, column));
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
      return Variant(std::string(text, static_cast<size_t>(sqlite3_column_bytes(stmt, column))));
    }
    case SQLITE_BLOB: {
      const auto* data = static_cast<const uint8_t*>(sqlite3_column_blob(stmt, column));
      int size = sqlite3_column_bytes(stmt, column);
      return Variant(Bytes(data, data + size));
    }
    default:
      return Variant::Null();
  }
}

}  // namespace kiv::refhost

// The generic upgrade: the file is compared with a fresh copy of the schema in memory.
#include "refhost/schema_upgrade.h"

#include <sqlite3.h>

#include <memory>
#include <set>
#include <stdexcept>

#include "core/text.h"
#include "host/host_error.h"
#include "refhost/schema.h"

namespace kiv::refhost {

namespace {

struct SqliteCloser {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};
using MemoryDatabase = std::unique_ptr<sqlite3, SqliteCloser>;

// A fresh database of the current schema, in memory.
MemoryDatabase FreshSchema() {
  sqlite3* raw = nullptr;
  if (sqlite3_open(":memory:", &raw) != SQLITE_OK) {
    sqlite3_close(raw);
    throw HostError(kErrOpen, "cannot open a memory database to compare the schema with");
  }
  MemoryDatabase db(raw);
  const std::string sql(SchemaSql());
  char* error = nullptr;
  if (sqlite3_exec(raw, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    std::string message = error != nullptr ? error : "unknown error";
    sqlite3_free(error);
    throw std::logic_error("the built-in schema does not run: " + message);
  }
  return db;
}

// Every row of a query on the memory database, each value as SQLite gives it.
std::vector<std::vector<Variant>> Rows(sqlite3* db, const std::string& sql) {
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
    throw std::logic_error("schema comparison query failed: " + std::string(sqlite3_errmsg(db)));
  std::vector<std::vector<Variant>> rows;
  while (sqlite3_step(stmt) == SQLITE_ROW) {
    std::vector<Variant> row;
    for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
      switch (sqlite3_column_type(stmt, c)) {
        case SQLITE_NULL: row.push_back(Variant::Null()); break;
        case SQLITE_INTEGER: row.push_back(Variant(static_cast<double>(sqlite3_column_int64(stmt, c)))); break;
        case SQLITE_FLOAT: row.push_back(Variant(sqlite3_column_double(stmt, c))); break;
        default: row.push_back(Variant(std::string(reinterpret_cast<const char*>(sqlite3_column_text(stmt, c)))));
      }
    }
    rows.push_back(std::move(row));
  }
  sqlite3_finalize(stmt);
  return rows;
}

std::string Quoted(const std::string& name) { return "\"" + Replace(name, "\"", "\"\"") + "\""; }

// The names (upper-cased) a query's first column gives on the file.
std::set<std::string> NamesIn(SqliteDatabase& db, const std::string& sql) {
  std::set<std::string> names;
  for (const auto& row : db.QueryRows(sql)) names.insert(UCase(row[0].ToString()));
  return names;
}

// Copies the rows schema.sql put into a table the file lacked or into the sequence list,
// leaving any row whose key the file already has.
void CopyRows(sqlite3* fresh, SqliteDatabase& db, const std::string& table) {
  auto rows = Rows(fresh, "SELECT * FROM " + Quoted(table));
  if (rows.empty()) return;
  std::string marks;
  for (size_t i = 0; i < rows[0].size(); ++i) marks += i == 0 ? "?" : ", ?";
  for (const auto& row : rows) db.Execute("INSERT OR IGNORE INTO " + Quoted(table) + " VALUES (" + marks + ")", row);
}

}  // namespace

void AddWhatTheSchemaLacks(SqliteDatabase& db) {
  MemoryDatabase fresh = FreshSchema();
  std::set<std::string> tables = NamesIn(db, "SELECT name FROM sqlite_master WHERE type = 'table'");
  for (const auto& table : Rows(fresh.get(), "SELECT name, sql FROM sqlite_master WHERE type = 'table' ORDER BY rowid")) {
    const std::string name = table[0].ToString();
    if (tables.count(UCase(name)) == 0) {
      db.ExecScript(table[1].ToString());
      CopyRows(fresh.get(), db, name);
      continue;
    }
    std::set<std::string> columns = NamesIn(db, "SELECT name FROM pragma_table_info(" + Quoted(name) + ")");
    // cid, name, type, notnull, dflt_value, pk
    for (const auto& column : Rows(fresh.get(), "SELECT * FROM pragma_table_info(" + Quoted(name) + ")")) {
      if (columns.count(UCase(column[1].ToString())) != 0) continue;
      std::string definition = Quoted(column[1].ToString()) + " " + column[2].ToString();
      if (!column[4].IsNull()) {
        definition += " DEFAULT " + column[4].ToString();
        if (column[3].ToLong() != 0) definition += " NOT NULL";
      }
      db.ExecScript("ALTER TABLE " + Quoted(name) + " ADD COLUMN " + definition);
    }
  }
  std::set<std::string> others = NamesIn(db, "SELECT name FROM sqlite_master WHERE type IN ('index', 'trigger', 'view')");
  for (const auto& object :
       Rows(fresh.get(), "SELECT name, sql FROM sqlite_master WHERE type IN ('index', 'view', 'trigger') AND sql IS NOT NULL "
                         "ORDER BY type = 'trigger', rowid")) {
    if (others.count(UCase(object[0].ToString())) == 0) db.ExecScript(object[1].ToString());
  }
  CopyRows(fresh.get(), db, "kiv_sequence");
  db.ExecScript("PRAGMA user_version = " + std::to_string(kSchemaVersion));
}

}  // namespace kiv::refhost

// Reading a statement's rows and column metadata into memory.
#include "refhost/row_set.h"

#include <sqlite3.h>

#include "core/text.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

std::vector<ColumnInfo> DescribeColumns(SqliteDatabase& db, sqlite3_stmt* stmt, bool rowid_first) {
  std::vector<ColumnInfo> columns;
  int count = sqlite3_column_count(stmt);
  for (int c = rowid_first ? 1 : 0; c < count; ++c) {
    ColumnInfo info;
    info.name = sqlite3_column_name(stmt, c);
    const char* decl = sqlite3_column_decltype(stmt, c);
    info.type = ColumnTypeFromDecl(decl != nullptr ? decl : "");
    const char* table = sqlite3_column_table_name(stmt, c);
    const char* origin = sqlite3_column_origin_name(stmt, c);
    if (table != nullptr && origin != nullptr) {
      info.table = table;
      info.origin = origin;
      int not_null = 0, primary = 0;
      if (sqlite3_table_column_metadata(db.Handle(), nullptr, table, origin, nullptr, nullptr, &not_null, &primary,
                                        nullptr) == SQLITE_OK)
        info.nullable = not_null == 0;
    }
    columns.push_back(std::move(info));
  }
  return columns;
}

RowSet ReadRowSet(SqliteDatabase& db, sqlite3_stmt* stmt, bool rowid_first) {
  return ReadRowSet(db, StatementLease(stmt, nullptr, false), rowid_first);
}

RowSet ReadRowSet(SqliteDatabase& db, const StatementLease& lease, bool rowid_first) {
  sqlite3_stmt* stmt = lease.get();
  RowSet set;
  ColumnList* cached = lease.Columns();
  // The first step comes before the columns are counted: a cached statement whose table has
  // changed since (a site column added) is prepared again by that step, "*" expanded anew.
  int rc = sqlite3_step(stmt);
  const size_t count = static_cast<size_t>(sqlite3_column_count(stmt) - (rowid_first ? 1 : 0));
  // A changed table changes the count, and the columns are described again.
  if (cached != nullptr && *cached && (*cached)->size() == count) {
    set.columns = **cached;
  } else {
    set.columns = DescribeColumns(db, stmt, rowid_first);
    if (cached != nullptr) *cached = std::make_shared<const std::vector<ColumnInfo>>(set.columns);
  }
  const int first = rowid_first ? 1 : 0;
  const size_t width = set.columns.size();
  for (; rc == SQLITE_ROW; rc = sqlite3_step(stmt)) {
    std::vector<Variant> row;
    row.reserve(width);
    for (size_t c = 0; c < width; ++c)
      row.push_back(ReadColumn(stmt, static_cast<int>(c) + first, set.columns[c].type.kind));
    if (rowid_first) set.rowids.push_back(sqlite3_column_int64(stmt, 0));
    set.rows.push_back(std::move(row));
  }
  if (rc != SQLITE_DONE) db.Fail("Reading rows failed");
  // An expression has no declared type: its first value tells what it holds.
  for (size_t c = 0; c < width; ++c) {
    if (!set.columns[c].table.empty() || set.columns[c].type.kind != ValueKind::Any) continue;
    for (const auto& row : set.rows) {
      if (row[c].IsNull()) continue;
      set.columns[c].type = ColumnTypeFromValue(row[c]);
      break;
    }
  }
  return set;
}

int FindColumn(const std::vector<ColumnInfo>& columns, std::string_view name) {
  // Records read every field by name, dozens of times per row, so the full comparison runs
  // only for a likely candidate. Upper-casing keeps a name's length in bytes (ASCII and
  // Latin-1 letters alike) and changes no ASCII letter into another: a name of another
  // length or another ASCII first letter cannot match. The first match still wins.
  auto fold = [](unsigned char c) { return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c; };
  for (size_t i = 0; i < columns.size(); ++i) {
    const std::string& column = columns[i].name;
    if (column.size() != name.size()) continue;
    if (column == name) return static_cast<int>(i);
    if (!name.empty()) {
      const auto a = static_cast<unsigned char>(column[0]), b = static_cast<unsigned char>(name[0]);
      if (a < 0x80 && b < 0x80 && fold(a) != fold(b)) continue;
    }
    if (EqualsNoCase(column, name)) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace kiv::refhost

// Rows read from a statement, held in memory with each column's metadata, so a recordset
// can move freely and a statement goes back to the cache at once.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/variant.h"
#include "refhost/column_type.h"

struct sqlite3_stmt;

namespace kiv::refhost {

class SqliteDatabase;
class StatementLease;

struct ColumnInfo {
  std::string name;
  ColumnType type;
  bool nullable = true;
  //! Where the column comes from; empty for an expression.
  std::string table;
  std::string origin;
};

struct RowSet {
  std::vector<ColumnInfo> columns;
  std::vector<std::vector<Variant>> rows;
  //! Row ids of an updatable query (its first, hidden column), one per row.
  std::vector<int64_t> rowids;
};

//! Reads the column metadata of a prepared statement; with `rowid_first` the first column is
//! the hidden row id and is left out.
std::vector<ColumnInfo> DescribeColumns(SqliteDatabase& db, sqlite3_stmt* stmt, bool rowid_first = false);

//! Steps the statement to its end into a row set. Throws HostError on a failed step.
RowSet ReadRowSet(SqliteDatabase& db, sqlite3_stmt* stmt, bool rowid_first = false);
//! The same for a leased statement, describing its columns only the first time it is used.
RowSet ReadRowSet(SqliteDatabase& db, const StatementLease& lease, bool rowid_first = false);

//! Index of a column by name without regard to case; -1 when absent.
int FindColumn(const std::vector<ColumnInfo>& columns, std::string_view name);

}  // namespace kiv::refhost

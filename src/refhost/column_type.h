// Field metadata from a column's declared type, as the database access library reports it:
// type code, defined size, precision, scale, and how a stored value is read back.
#pragma once
#include <cstdint>
#include <string_view>

#include "core/variant.h"

struct sqlite3_stmt;

namespace kiv::refhost {

//! How a stored value turns into a Variant.
enum class ValueKind { Any, Long, SmallInt, Boolean, Double, Currency, Numeric, Date, Text, Blob };

struct ColumnType {
  int32_t type = 200;  // adVarChar
  int32_t defined_size = 0;
  int32_t precision = 0;
  int32_t scale = 0;
  bool is_long = false;
  ValueKind kind = ValueKind::Any;
};

//! From a declared type such as "VARCHAR(20)", "NUMERIC(1,0)", "TEXT", "BLOB", "MONEY".
//! An empty declaration (an expression) gives ValueKind::Any.
ColumnType ColumnTypeFromDecl(std::string_view declared);

//! For an expression column: the type its value's storage class suggests.
ColumnType ColumnTypeFromValue(const Variant& value);

//! Reads column `column` of the current row as its kind says: integers as Long, SMALLINT
//! as Integer, BIT as Boolean, MONEY as Currency, DATETIME text as Date, TEXT as String,
//! BLOB as Bytes; NULL stays Null.
Variant ReadColumn(sqlite3_stmt* stmt, int column, ValueKind kind);

//! A value converted for a column before it is written (Boolean to BIT, text to a date...);
//! Empty becomes Null. Raises VbError 13 when the value does not fit the kind.
Variant ConvertForColumn(const Variant& value, ValueKind kind);

}  // namespace kiv::refhost

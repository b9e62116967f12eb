// Declared column types mapped to the database access library's field metadata.
#include "refhost/column_type.h"

#include <sqlite3.h>

#include <cctype>
#include <charconv>
#include <string>

#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

// "NUMERIC(5,2)" -> base "NUMERIC", a = 5, b = 2; missing numbers stay -1.
void SplitDecl(std::string_view declared, std::string& base, int& a, int& b) {
  a = b = -1;
  base.clear();
  size_t i = 0;
  while (i < declared.size() && declared[i] != '(') {
    char c = declared[i++];
    if (c != ' ') base.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
  }
  if (i >= declared.size()) return;
  auto read_number = [&](int& out) {
    while (i < declared.size() && !std::isdigit(static_cast<unsigned char>(declared[i])) && declared[i] != ')') ++i;
    size_t start = i;
    while (i < declared.size() && std::isdigit(static_cast<unsigned char>(declared[i]))) ++i;
    if (i > start) std::from_chars(declared.data() + start, declared.data() + i, out);
  };
  read_number(a);
  if (i < declared.size() && declared[i] == ',') read_number(b);
}

ColumnType Make(int32_t type, int32_t size, int32_t precision, int32_t scale, ValueKind kind, bool is_long = false) {
  return ColumnType{type, size, precision, scale, is_long, kind};
}

}  // namespace

ColumnType ColumnTypeFromDecl(std::string_view declared) {
  std::string base;
  int a, b;
  SplitDecl(declared, base, a, b);
  if (base.empty()) return Make(200, 255, 0, 0, ValueKind::Any);
  if (base == "INTEGER" || base == "INT") return Make(3, 4, 10, 0, ValueKind::Long);
  // A one-byte integer is an integer column whose values occupy one byte: screens that
  // type columns by value size (a flag kept as 0/1) see it so.
  if (base == "TINYINT") return Make(3, 1, 3, 0, ValueKind::Long);
  if (base == "SMALLINT") return Make(2, 2, 5, 0, ValueKind::SmallInt);
  if (base == "BIGINT") return Make(20, 8, 19, 0, ValueKind::Long);
  if (base == "BIT" || base == "BOOLEAN") return Make(11, 2, 1, 0, ValueKind::Boolean);
  if (base == "MONEY" || base == "SMALLMONEY") return Make(6, 8, 19, 4, ValueKind::Currency);
  if (base == "FLOAT" || base == "REAL" || base == "DOUBLE") return Make(5, 8, 15, 0, ValueKind::Double);
  if (base == "NUMERIC" || base == "DECIMAL")
    return Make(131, 19, a < 0 ? 18 : a, b < 0 ? 0 : b, ValueKind::Numeric);
  if (base == "DATETIME" || base == "TIMESTAMP" || base == "SMALLDATETIME") return Make(135, 16, 23, 3, ValueKind::Date);
  if (base == "DATE") return Make(133, 6, 10, 0, ValueKind::Date);
  if (base == "CHAR" || base == "NCHAR") return Make(129, a < 0 ? 1 : a, 0, 0, ValueKind::Text);
  if (base == "VARCHAR" || base == "NVARCHAR") {
    if (a < 0) return Make(201, 2147483647, 0, 0, ValueKind::Text, true);  // VARCHAR(MAX)
    return Make(200, a, 0, 0, ValueKind::Text);
  }
  if (base == "TEXT" || base == "NTEXT" || base == "CLOB") return Make(201, 2147483647, 0, 0, ValueKind::Text, true);
  if (base == "BLOB" || base == "IMAGE" || base == "VARBINARY")
    return Make(205, 2147483647, 0, 0, ValueKind::Blob, true);
  return Make(200, 255, 0, 0, ValueKind::Any);
}

ColumnType ColumnTypeFromValue(const Variant& value) {
  switch (value.Type()) {
    case VarType::Boolean:
      return ColumnTypeFromDecl("BIT");
    case VarType::Integer:
      return ColumnTypeFromDecl("SMALLINT");
    case VarType::Long:
      return Make(3, 4, 10, 0, ValueKind::Any);
    case VarType::Double:
      return Make(5, 8, 15, 0, ValueKind::Any);
    case VarType::Bytes:
      return Make(205, 2147483647, 0, 0, ValueKind::Any, true);
    default:
      return Make(200, 255, 0, 0, ValueKind::Any);
  }
}

Variant ReadColumn(sqlite3_stmt* stmt, int column, ValueKind kind) {
  int storage = sqlite3_column_type(stmt, column);
  if (storage == SQLITE_NULL) return Variant::Null();
  switch (kind) {
    case ValueKind::Long:
      if (storage == SQLITE_INTEGER) return Variant(static_cast<int64_t>(sqlite3_column_int64(stmt, column)));
      break;
    case ValueKind::SmallInt:
      if (storage == SQLITE_INTEGER) {
        int64_t v = sqlite3_column_int64(stmt, column);
        if (v >= INT16_MIN && v <= INT16_MAX) return Variant(static_cast<int16_t>(v));
        return Variant(v);
      }
      break;
    case ValueKind::Boolean:
      if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT) return Variant(sqlite3_column_double(stmt, column) != 0);
      break;
    case ValueKind::Double:
      if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT) return Variant(sqlite3_column_double(stmt, column));
      break;
    case ValueKind::Currency:
      if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT)
        return Variant(Currency::FromDouble(sqlite3_column_double(stmt, column)));
      break;
    case ValueKind::Date:
      if (storage == SQLITE_TEXT) {
        std::string text(reinterpret_cast<const char*>(sqlite3_column_text(stmt, column)));
        if (auto date = Date::Parse(text)) return Variant(*date);
      }
      break;
    case ValueKind::Text:
      if (storage != SQLITE_BLOB) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
        return Variant(std::string(text, static_cast<size_t>(sqlite3_column_bytes(stmt, column))));
      }
      break;
    case ValueKind::Numeric:
    case ValueKind::Blob:
    case ValueKind::Any:
      break;
  }
  return ColumnVariant(stmt, column);
}

Variant ConvertForColumn(const Variant& value, ValueKind kind) {
  if (value.IsEmpty() || value.IsNull()) return Variant::Null();
  switch (kind) {
    case ValueKind::Long:
      return Variant(value.ToLong());
    case ValueKind::SmallInt:
      return Variant(value.ToInt());
    case ValueKind::Boolean:
      return Variant(value.ToBool());
    case ValueKind::Double:
      return Variant(value.ToDouble());
    case ValueKind::Currency:
      return Variant(value.ToCurrency());
    case ValueKind::Numeric:
      return value.Type() == VarType::String ? Variant(value.ToDouble()) : value;
    case ValueKind::Date:
      return Variant(value.ToDate());
    case ValueKind::Text:
      return value.Type() == VarType::Bytes ? value : Variant(value.ToString());
    case ValueKind::Blob:
      return Variant(value.ToBytes());
    case ValueKind::Any:
      return value;
  }
  return value;
}

}  // namespace kiv::refhost

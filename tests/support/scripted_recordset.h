// Scripted result sets and the recordsets that serve them: typed columns, rows, chunked
// long fields, and an updatable mode that records every AddNew, field assignment,
// Update, Delete and Close so a test can pin what a record wrote.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/variant.h"
#include "host/field.h"
#include "host/recordset.h"

namespace kiv::test {

//! Names compared as the database access library compares them: ASCII case ignored.
bool SameName(const std::string& a, const std::string& b);
//! A value as a test message shows it: Null, Empty, 5, 1.5, True, "SMITH", #2026-03-05#, <3 bytes>.
std::string DescribeValue(const Variant& v);

//! One column of a scripted result set. Type codes are the database access library's
//! (host::adInteger = 3, host::adVarChar = 200, host::adLongVarBinary = 205 ...).
struct ColumnSpec {
  std::string name;
  int32_t type = host::adVarChar;
  int32_t defined_size = 0;
  int32_t precision = 0;
  int32_t scale = 0;
  int32_t attributes = host::adFldMayBeNull;
};

//! A column with explicit type and sizes: `Col("amount", host::adNumeric, 19, 19, 4)`; `Col("name")` is text.
ColumnSpec Col(std::string name, int32_t type = host::adVarChar, int32_t defined_size = 0, int32_t precision = 0,
               int32_t scale = 0, int32_t attributes = host::adFldMayBeNull);
//! A long column (attribute bit 128), read with GetChunk and written with AppendChunk:
//! `LongCol("image_blob")` is long binary (205), `LongCol("notes", host::adLongVarChar)` long text.
ColumnSpec LongCol(std::string name, int32_t type = host::adLongVarBinary);

//! A row given by column name: `{{"customer_no", 5}, {"last_name", "SMITH"}, {"birth", Variant::Null()}}`.
using Cells = std::vector<std::pair<std::string, Variant>>;

//! The column type a value implies when no column was declared: Long 3, Integer 2,
//! Double 5, Currency 6, Date 135, Boolean 11, String 200 (size 255), Bytes 205 (long),
//! Null/Empty 200.
ColumnSpec InferColumn(const std::string& name, const Variant& sample);

//! One result set: its columns and rows. Columns are either declared with Columns() or
//! taken, in order of first appearance, from the names of the rows given with Row().
class ResultSet {
 public:
  //! Declares the columns; rows given afterwards by name must use these names (any case).
  ResultSet& Columns(std::vector<ColumnSpec> columns);
  //! Appends a row by column name; a column missing from the row is Null. Without declared
  //! columns, an unknown name adds a column (type from the first non-null value).
  ResultSet& Row(const Cells& cells);
  //! Appends a row by position, in column order (columns must be declared first).
  ResultSet& Values(std::vector<Variant> values);

  const std::vector<ColumnSpec>& columns() const { return columns_; }
  const std::vector<std::vector<Variant>>& rows() const { return rows_; }
  //! Index of a column by name without regard to case, or -1.
  int32_t ColumnIndex(const std::string& name) const;

 private:
  std::vector<ColumnSpec> columns_;
  bool declared_ = false;
  std::vector<bool> typed_;  // column type came from a declaration or a non-null value
  std::vector<std::vector<Variant>> rows_;
};

//! What happened to a recordset, in order.
enum class RsOpKind { AddNew, Set, GetChunk, AppendChunk, Update, Delete, Close };

struct RsOp {
  RsOpKind kind;
  std::string field;  // Set, GetChunk, AppendChunk
  Variant value;      // Set, AppendChunk: the value or chunk given
  int32_t length = 0; // GetChunk: the length asked for
};

//! "AddNew", "Set customer_no=5", "GetChunk image_blob 452", "AppendChunk image_blob <3 bytes>",
//! "Update", "Delete", "Close".
std::string DescribeOp(const RsOp& op);

enum class CursorKind { ReadOnly, ForwardOnly, Updatable };

class ScriptedRecordset;

//! One column of a ScriptedRecordset, answering for the current row.
class ScriptedField : public host::Field {
 public:
  ScriptedField(ScriptedRecordset& owner, int32_t index) : owner_(owner), index_(index) {}
  std::string Name() const override;
  //! Raises HostError 3021 when there is no current row.
  Variant Value() const override;
  //! Raises HostError 3251 on a recordset that is not updatable, 3021 without a current row.
  void SetValue(const Variant& value) override;
  int32_t Type() const override;
  int32_t DefinedSize() const override;
  int32_t Precision() const override;
  int32_t NumericScale() const override;
  int32_t ActualSize() const override;
  int32_t Attributes() const override;
  //! Long fields only (else HostError 3251). Text for text columns, Bytes otherwise;
  //! Null once nothing is left. Moving to another row starts again at the beginning.
  Variant GetChunk(int32_t length) override;
  //! Long fields of an updatable recordset only. The first call after the row was
  //! positioned replaces the value, later calls append to it.
  void AppendChunk(const Variant& data) override;

 private:
  friend class ScriptedRecordset;
  ScriptedRecordset& owner_;
  int32_t index_;
  size_t chunk_offset_ = 0;
  bool appending_ = false;
};

//! A recordset over scripted result sets. Reading fields at end of file raises 3021,
//! using a closed recordset raises 3704, writing to a read-only one raises 3251.
//! RecordCount is -1 on forward-only cursors, as a server cursor answers.
//! A recordset scripted without columns creates a column on the first access by name,
//! so an updatable query a test did not script still takes AddNew and assignments.
class ScriptedRecordset : public host::Recordset {
 public:
  //! `results` holds this recordset's rows first, then those NextRecordset hands out.
  ScriptedRecordset(std::string source, CursorKind cursor, std::vector<ResultSet> results);

  bool IsOpen() const override { return open_; }
  bool Eof() const override;
  bool Bof() const override;
  void MoveNext() override;
  void MoveFirst() override;
  int32_t RecordCount() const override;
  int32_t FieldCount() const override;
  host::Field& FieldAt(int32_t index) override;
  host::Field& FieldByName(const std::string& name) override;
  void AddNew() override;
  void Update() override;
  void Delete() override;
  //! Raises HostError 3704 when already closed.
  void Close() override;
  //! The next scripted result set (same cursor kind), or null when there is none.
  std::shared_ptr<host::Recordset> NextRecordset() override;

  // ---- for tests ----
  //! The SQL text or procedure name that produced it.
  const std::string& Source() const { return source_; }
  CursorKind Cursor() const { return cursor_; }
  //! Every AddNew, assignment, chunk, Update, Delete and Close, in order.
  const std::vector<RsOp>& Ops() const { return ops_; }
  //! Ops() as text, one DescribeOp line per operation.
  std::vector<std::string> OpsText() const;
  bool WasClosed() const { return closed_once_; }
  //! The rows as they stand now, added rows included.
  const std::vector<std::vector<Variant>>& Rows() const { return rows_; }
  //! A cell by row and column name (Empty when the column does not exist).
  Variant Cell(size_t row, const std::string& column) const;
  //! Recordsets handed out by NextRecordset, so a test can check they were closed.
  const std::vector<std::shared_ptr<ScriptedRecordset>>& Followers() const { return followers_; }

 private:
  friend class ScriptedField;
  void RequireOpen() const;
  void RequireRow() const;
  void RequireUpdatable() const;
  void Positioned();
  int32_t FindColumn(const std::string& name) const;

  std::string source_;
  CursorKind cursor_;
  std::vector<ColumnSpec> columns_;
  std::vector<std::vector<Variant>> rows_;
  std::vector<bool> deleted_;
  std::vector<std::unique_ptr<ScriptedField>> fields_;
  std::vector<ResultSet> rest_;
  std::vector<std::shared_ptr<ScriptedRecordset>> followers_;
  std::vector<RsOp> ops_;
  size_t pos_ = 0;
  bool open_ = true;
  bool closed_once_ = false;
  bool lenient_ = false;
};

}  // namespace kiv::test

// Scripted result sets and recordsets: rows served one at a time with the database access
// library's errors for reads past the end, writes to read-only cursors and use after Close.
#include "support/scripted_recordset.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "host/host_error.h"

namespace kiv::test {

namespace {

constexpr int32_t kErrNoCurrentRow = 3021;
constexpr int32_t kErrNotUpdatable = 3251;
constexpr int32_t kErrClosed = 3704;

[[noreturn]] void Raise(int32_t number) {
  switch (number) {
    case kErrNoCurrentRow:
      throw HostError(number, "Either BOF or EOF is True, or the current record has been deleted.");
    case kErrNotUpdatable:
      throw HostError(number, "Current Recordset does not support updating.");
    case kErrClosed:
      throw HostError(number, "Operation is not allowed when the object is closed.");
    default:
      throw HostError(number, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
  }
}

bool IsText(int32_t type) {
  return type == host::adChar || type == host::adWChar || type == host::adVarChar || type == host::adVarWChar ||
         type == host::adLongVarChar || type == host::adLongVarWChar;
}

// The value with `data` appended; text stays text, anything else becomes bytes.
Variant Appended(const Variant& current, const Variant& data, bool text) {
  if (text) {
    std::string base = current.IsNull() || current.IsEmpty() ? std::string() : current.ToString();
    return Variant(base + (data.IsNull() || data.IsEmpty() ? std::string() : data.ToString()));
  }
  Bytes base = current.IsNull() || current.IsEmpty() ? Bytes() : current.ToBytes();
  if (!data.IsNull() && !data.IsEmpty()) {
    Bytes more = data.ToBytes();
    base.insert(base.end(), more.begin(), more.end());
  }
  return Variant(std::move(base));
}

}  // namespace

bool SameName(const std::string& a, const std::string& b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::string DescribeValue(const Variant& v) {
  switch (v.Type()) {
    case VarType::Empty:
      return "Empty";
    case VarType::Null:
      return "Null";
    case VarType::Boolean:
      return v.ToBool() ? "True" : "False";
    case VarType::Integer:
    case VarType::Long:
    case VarType::Double:
      return v.ToString();
    case VarType::Currency:
      return NumberToText(v.ToCurrency().ToDouble()) + "@";
    case VarType::Date:
      return "#" + v.ToDate().ToIso() + "#";
    case VarType::String:
      return "\"" + v.ToString() + "\"";
    case VarType::Bytes:
      return "<" + std::to_string(v.ToBytes().size()) + " bytes>";
  }
  return "?";
}

ColumnSpec Col(std::string name, int32_t type, int32_t defined_size, int32_t precision, int32_t scale,
               int32_t attributes) {
  return ColumnSpec{std::move(name), type, defined_size, precision, scale, attributes};
}

ColumnSpec LongCol(std::string name, int32_t type) {
  return ColumnSpec{std::move(name), type, 2147483647, 0, 0, host::adFldMayBeNull | host::adFldLong};
}

ColumnSpec InferColumn(const std::string& name, const Variant& sample) {
  switch (sample.Type()) {
    case VarType::Boolean:
      return Col(name, host::adBoolean, 2);
    case VarType::Integer:
      return Col(name, host::adSmallInt, 2, 5);
    case VarType::Long:
      return Col(name, host::adInteger, 4, 10);
    case VarType::Double:
      return Col(name, host::adDouble, 8, 15);
    case VarType::Currency:
      return Col(name, host::adCurrency, 8, 19, 4);
    case VarType::Date:
      return Col(name, host::adDBTimeStamp, 16, 23, 3);
    case VarType::Bytes:
      return LongCol(name, host::adLongVarBinary);
    default:
      return Col(name, host::adVarChar, 255);
  }
}

// ---------------------------------------------------------------- ResultSet

int32_t ResultSet::ColumnIndex(const std::string& name) const {
  for (size_t i = 0; i < columns_.size(); ++i)
    if (SameName(columns_[i].name, name)) return static_cast<int32_t>(i);
  return -1;
}

ResultSet& ResultSet::Columns(std::vector<ColumnSpec> columns) {
  if (!rows_.empty()) throw std::logic_error("ResultSet::Columns must come before the rows");
  columns_ = std::move(columns);
  declared_ = true;
  typed_.assign(columns_.size(), true);
  return *this;
}

ResultSet& ResultSet::Row(const Cells& cells) {
  std::vector<Variant> row(columns_.size(), Variant::Null());
  for (const auto& [name, value] : cells) {
    int32_t index = ColumnIndex(name);
    if (index < 0) {
      if (declared_) throw std::invalid_argument("ResultSet::Row: no declared column named " + name);
      columns_.push_back(InferColumn(name, value));
      typed_.push_back(!value.IsNull() && !value.IsEmpty());
      for (auto& earlier : rows_) earlier.push_back(Variant::Null());
      row.push_back(Variant::Null());
      index = static_cast<int32_t>(columns_.size() - 1);
    } else if (!typed_[index] && !value.IsNull() && !value.IsEmpty()) {
      columns_[index] = InferColumn(columns_[index].name, value);
      typed_[index] = true;
    }
    row[index] = value;
  }
  rows_.push_back(std::move(row));
  return *this;
}

ResultSet& ResultSet::Values(std::vector<Variant> values) {
  if (values.size() != columns_.size())
    throw std::invalid_argument("ResultSet::Values: " + std::to_string(values.size()) + " values for " +
                                std::to_string(columns_.size()) + " columns");
  rows_.push_back(std::move(values));
  return *this;
}

// ---------------------------------------------------------------- RsOp

std::string DescribeOp(const RsOp& op) {
  switch (op.kind) {
    case RsOpKind::AddNew:
      return "AddNew";
    case RsOpKind::Set:
      return "Set " + op.field + "=" + DescribeValue(op.value);
    case RsOpKind::GetChunk:
      return "GetChunk " + op.field + " " + std::to_string(op.length);
    case RsOpKind::AppendChunk:
      return "AppendChunk " + op.field + " " + DescribeValue(op.value);
    case RsOpKind::Update:
      return "Update";
    case RsOpKind::Delete:
      return "Delete";
    case RsOpKind::Close:
      return "Close";
  }
  return "?";
}

// ---------------------------------------------------------------- ScriptedField

std::string ScriptedField::Name() const { return owner_.columns_[index_].name; }

Variant ScriptedField::Value() const {
  owner_.RequireRow();
  return owner_.rows_[owner_.pos_][index_];
}

void ScriptedField::SetValue(const Variant& value) {
  owner_.RequireUpdatable();
  owner_.RequireRow();
  owner_.rows_[owner_.pos_][index_] = value;
  owner_.ops_.push_back(RsOp{RsOpKind::Set, Name(), value, 0});
}

int32_t ScriptedField::Type() const { return owner_.columns_[index_].type; }
int32_t ScriptedField::DefinedSize() const { return owner_.columns_[index_].defined_size; }
int32_t ScriptedField::Precision() const { return owner_.columns_[index_].precision; }
int32_t ScriptedField::NumericScale() const { return owner_.columns_[index_].scale; }
int32_t ScriptedField::Attributes() const { return owner_.columns_[index_].attributes; }

int32_t ScriptedField::ActualSize() const {
  Variant v = Value();
  switch (v.Type()) {
    case VarType::Empty:
    case VarType::Null:
      return 0;
    case VarType::Boolean:
    case VarType::Integer:
      return 2;
    case VarType::Long:
      return 4;
    case VarType::String:
      return static_cast<int32_t>(v.ToString().size());
    case VarType::Bytes:
      return static_cast<int32_t>(v.ToBytes().size());
    default:
      return 8;
  }
}

Variant ScriptedField::GetChunk(int32_t length) {
  owner_.RequireOpen();
  if ((Attributes() & host::adFldLong) == 0) Raise(kErrNotUpdatable);
  Variant v = Value();
  owner_.ops_.push_back(RsOp{RsOpKind::GetChunk, Name(), Variant(), length});
  if (v.IsNull() || v.IsEmpty() || length <= 0) return Variant::Null();
  if (IsText(Type()) || v.Type() == VarType::String) {
    std::string text = v.ToString();
    if (chunk_offset_ >= text.size()) return Variant::Null();
    std::string part = text.substr(chunk_offset_, static_cast<size_t>(length));
    chunk_offset_ += part.size();
    return Variant(std::move(part));
  }
  Bytes bytes = v.ToBytes();
  if (chunk_offset_ >= bytes.size()) return Variant::Null();
  size_t n = std::min(bytes.size() - chunk_offset_, static_cast<size_t>(length));
  Bytes part(bytes.begin() + static_cast<std::ptrdiff_t>(chunk_offset_),
             bytes.begin() + static_cast<std::ptrdiff_t>(chunk_offset_ + n));
  chunk_offset_ += n;
  return Variant(std::move(part));
}

void ScriptedField::AppendChunk(const Variant& data) {
  owner_.RequireUpdatable();
  owner_.RequireRow();
  if ((Attributes() & host::adFldLong) == 0) Raise(kErrNotUpdatable);
  Variant& cell = owner_.rows_[owner_.pos_][index_];
  cell = Appended(appending_ ? cell : Variant::Null(), data, IsText(Type()));
  appending_ = true;
  owner_.ops_.push_back(RsOp{RsOpKind::AppendChunk, Name(), data, 0});
}

// ---------------------------------------------------------------- ScriptedRecordset

ScriptedRecordset::ScriptedRecordset(std::string source, CursorKind cursor, std::vector<ResultSet> results)
    : source_(std::move(source)), cursor_(cursor) {
  if (!results.empty()) {
    columns_ = results.front().columns();
    rows_ = results.front().rows();
    rest_.assign(std::make_move_iterator(results.begin() + 1), std::make_move_iterator(results.end()));
  }
  lenient_ = columns_.empty();
  deleted_.assign(rows_.size(), false);
  for (size_t i = 0; i < columns_.size(); ++i)
    fields_.push_back(std::make_unique<ScriptedField>(*this, static_cast<int32_t>(i)));
}

void ScriptedRecordset::RequireOpen() const {
  if (!open_) Raise(kErrClosed);
}

void ScriptedRecordset::RequireRow() const {
  RequireOpen();
  if (pos_ >= rows_.size() || deleted_[pos_]) Raise(kErrNoCurrentRow);
}

void ScriptedRecordset::RequireUpdatable() const {
  RequireOpen();
  if (cursor_ != CursorKind::Updatable) Raise(kErrNotUpdatable);
}

void ScriptedRecordset::Positioned() {
  for (auto& f : fields_) {
    f->chunk_offset_ = 0;
    f->appending_ = false;
  }
}

bool ScriptedRecordset::Eof() const {
  RequireOpen();
  return pos_ >= rows_.size();
}

bool ScriptedRecordset::Bof() const {
  RequireOpen();
  return rows_.empty();
}

void ScriptedRecordset::MoveNext() {
  RequireOpen();
  if (pos_ >= rows_.size()) Raise(kErrNoCurrentRow);
  ++pos_;
  Positioned();
}

void ScriptedRecordset::MoveFirst() {
  RequireOpen();
  pos_ = 0;
  Positioned();
}

int32_t ScriptedRecordset::RecordCount() const {
  RequireOpen();
  if (cursor_ == CursorKind::ForwardOnly) return -1;
  return static_cast<int32_t>(std::count(deleted_.begin(), deleted_.end(), false));
}

int32_t ScriptedRecordset::FieldCount() const {
  RequireOpen();
  return static_cast<int32_t>(fields_.size());
}

host::Field& ScriptedRecordset::FieldAt(int32_t index) {
  RequireOpen();
  if (index < 0 || static_cast<size_t>(index) >= fields_.size()) Raise(3265);
  return *fields_[index];
}

int32_t ScriptedRecordset::FindColumn(const std::string& name) const {
  for (size_t i = 0; i < columns_.size(); ++i)
    if (SameName(columns_[i].name, name)) return static_cast<int32_t>(i);
  return -1;
}

host::Field& ScriptedRecordset::FieldByName(const std::string& name) {
  RequireOpen();
  int32_t index = FindColumn(name);
  if (index >= 0) return *fields_[index];
  if (!lenient_) Raise(3265);
  // An unscripted recordset learns its columns from the code that uses them.
  columns_.push_back(Col(name, host::adVariant, 0, 0, 0, host::adFldMayBeNull | host::adFldLong));
  for (auto& row : rows_) row.push_back(Variant::Null());
  fields_.push_back(std::make_unique<ScriptedField>(*this, static_cast<int32_t>(columns_.size() - 1)));
  return *fields_.back();
}

void ScriptedRecordset::AddNew() {
  RequireUpdatable();
  rows_.emplace_back(columns_.size(), Variant::Null());
  deleted_.push_back(false);
  pos_ = rows_.size() - 1;
  Positioned();
  ops_.push_back(RsOp{RsOpKind::AddNew, {}, Variant(), 0});
}

void ScriptedRecordset::Update() {
  RequireUpdatable();
  RequireRow();
  ops_.push_back(RsOp{RsOpKind::Update, {}, Variant(), 0});
}

void ScriptedRecordset::Delete() {
  RequireUpdatable();
  RequireRow();
  deleted_[pos_] = true;
  ops_.push_back(RsOp{RsOpKind::Delete, {}, Variant(), 0});
}

void ScriptedRecordset::Close() {
  RequireOpen();
  open_ = false;
  closed_once_ = true;
  ops_.push_back(RsOp{RsOpKind::Close, {}, Variant(), 0});
}

std::shared_ptr<host::Recordset> ScriptedRecordset::NextRecordset() {
  RequireOpen();
  if (rest_.empty()) return nullptr;
  std::vector<ResultSet> rest = std::move(rest_);
  rest_.clear();
  auto next = std::make_shared<ScriptedRecordset>(source_, cursor_, std::move(rest));
  followers_.push_back(next);
  return next;
}

std::vector<std::string> ScriptedRecordset::OpsText() const {
  std::vector<std::string> out;
  for (const auto& op : ops_) out.push_back(DescribeOp(op));
  return out;
}

Variant ScriptedRecordset::Cell(size_t row, const std::string& column) const {
  int32_t index = FindColumn(column);
  if (index < 0 || row >= rows_.size()) return Variant();
  return rows_[row][index];
}

}  // namespace kiv::test

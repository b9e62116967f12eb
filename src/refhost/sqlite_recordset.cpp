// The reference host's recordset: movement over rows held in memory, and for an updatable
// one the INSERT, UPDATE and DELETE statements that write a row back by its id.
#include "refhost/sqlite_recordset.h"

#include "core/text.h"
#include "host/host_error.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

[[noreturn]] void NoCurrentRecord() {
  throw HostError(3021,
                  "Either BOF or EOF is True, or the current record has been deleted. Requested operation "
                  "requires a current record.");
}

std::string Quoted(const std::string& name) { return "\"" + name + "\""; }

size_t CharacterCount(const std::string& text) {
  size_t count = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++count;
  return count;
}

}  // namespace

SqliteRecordset::SqliteRecordset(RowSet rows, Mode mode, std::shared_ptr<SqliteDatabase> db, std::string table)
    : rows_(std::move(rows)), mode_(mode), db_(std::move(db)), table_(std::move(table)) {
  fields_.reserve(rows_.columns.size());
  for (size_t c = 0; c < rows_.columns.size(); ++c)
    fields_.push_back(std::make_unique<SqliteField>(*this, static_cast<int>(c)));
}

void SqliteRecordset::CheckOpen() const {
  if (!open_) throw HostError(3704, "Operation is not allowed when the object is closed.");
}

void SqliteRecordset::CheckCurrent() const {
  CheckOpen();
  if (pos_ >= rows_.rows.size()) NoCurrentRecord();
}

void SqliteRecordset::CheckUpdatable() const {
  CheckOpen();
  if (mode_ != Mode::Updatable)
    throw HostError(3251,
                    "Current Recordset does not support updating. This may be a limitation of the provider, or "
                    "of the selected locktype.");
}

void SqliteRecordset::Reposition() {
  ++generation_;
  dirty_.clear();
}

bool SqliteRecordset::Eof() const {
  CheckOpen();
  return pos_ >= rows_.rows.size();
}

bool SqliteRecordset::Bof() const {
  CheckOpen();
  return rows_.rows.empty();
}

void SqliteRecordset::MoveNext() {
  CheckCurrent();
  if (adding_ || !dirty_.empty()) Update();
  ++pos_;
  Reposition();
}

void SqliteRecordset::MoveFirst() {
  CheckOpen();
  if (adding_ || !dirty_.empty()) Update();
  pos_ = 0;
  Reposition();
}

int32_t SqliteRecordset::RecordCount() const {
  CheckOpen();
  // The rows are all read when the recordset opens, so even a forward-only one knows its count.
  return static_cast<int32_t>(rows_.rows.size());
}

int32_t SqliteRecordset::FieldCount() const {
  CheckOpen();
  return static_cast<int32_t>(fields_.size());
}

host::Field& SqliteRecordset::FieldAt(int32_t index) {
  CheckOpen();
  if (index < 0 || static_cast<size_t>(index) >= fields_.size())
    throw HostError(3265, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
  return *fields_[static_cast<size_t>(index)];
}

host::Field& SqliteRecordset::FieldByName(const std::string& name) {
  CheckOpen();
  int index = FindColumn(rows_.columns, name);
  if (index < 0)
    throw HostError(3265, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
  return *fields_[static_cast<size_t>(index)];
}

Variant SqliteRecordset::CurrentValue(int column) const {
  CheckCurrent();
  return rows_.rows[pos_][static_cast<size_t>(column)];
}

void SqliteRecordset::Assign(int column, const Variant& value) {
  CheckUpdatable();
  CheckCurrent();
  const ColumnInfo& info = Column(column);
  if (info.origin.empty()) throw HostError(kErrDatabase, "The column '" + info.name + "' cannot be updated.");
  Variant converted;
  try {
    converted = ConvertForColumn(value, info.type.kind);
  } catch (const VbError& e) {
    throw HostError(e.Number(), "The value does not fit the column '" + info.name + "': " + e.Description());
  }
  if (converted.Type() == VarType::String && !info.type.is_long &&
      (info.type.type == 200 || info.type.type == 129) &&
      CharacterCount(converted.ToString()) > static_cast<size_t>(info.type.defined_size))
    throw HostError(kErrDatabase, "String or binary data would be truncated: the column '" + info.name +
                                      "' holds " + std::to_string(info.type.defined_size) + " characters.");
  if (converted.IsNull() && !info.nullable && !adding_)
    throw HostError(kErrDatabase, "The column '" + info.name + "' does not allow nulls.");
  rows_.rows[pos_][static_cast<size_t>(column)] = converted;
  dirty_.insert(column);
}

void SqliteRecordset::AddNew() {
  CheckUpdatable();
  if (adding_ || !dirty_.empty()) Update();
  rows_.rows.emplace_back(rows_.columns.size(), Variant::Null());
  rows_.rowids.push_back(0);
  pos_ = rows_.rows.size() - 1;
  Reposition();
  adding_ = true;
}

void SqliteRecordset::Update() {
  CheckUpdatable();
  if (!adding_ && dirty_.empty()) return;
  CheckCurrent();
  std::vector<Variant> args;
  std::string sql;
  if (adding_) {
    if (dirty_.empty()) {
      sql = "INSERT INTO " + Quoted(table_) + " DEFAULT VALUES";
    } else {
      std::string names, marks;
      for (int c : dirty_) {
        if (!args.empty()) {
          names += ", ";
          marks += ", ";
        }
        names += Quoted(Column(c).origin);
        marks += "?";
        args.push_back(rows_.rows[pos_][static_cast<size_t>(c)]);
      }
      sql = "INSERT INTO " + Quoted(table_) + " (" + names + ") VALUES (" + marks + ")";
    }
    db_->Execute(sql, args);
    rows_.rowids[pos_] = db_->LastInsertRowid();
  } else {
    std::string sets;
    for (int c : dirty_) {
      if (!args.empty()) sets += ", ";
      sets += Quoted(Column(c).origin) + " = ?";
      args.push_back(rows_.rows[pos_][static_cast<size_t>(c)]);
    }
    args.push_back(Variant(rows_.rowids[pos_]));
    db_->Execute("UPDATE " + Quoted(table_) + " SET " + sets + " WHERE rowid = ?", args);
  }
  adding_ = false;
  Reload(pos_);
  Reposition();
}

void SqliteRecordset::Reload(size_t row) {
  // Defaults and conversions the database applied are read back, as a server's would be.
  std::string names;
  std::vector<int> columns;
  for (size_t c = 0; c < rows_.columns.size(); ++c) {
    if (rows_.columns[c].origin.empty()) continue;
    if (!names.empty()) names += ", ";
    names += Quoted(rows_.columns[c].origin);
    columns.push_back(static_cast<int>(c));
  }
  if (columns.empty()) return;
  auto values = db_->QueryRows("SELECT " + names + " FROM " + Quoted(table_) + " WHERE rowid = ?",
                               {Variant(rows_.rowids[row])});
  if (values.empty()) return;
  for (size_t i = 0; i < columns.size(); ++i) {
    const ColumnInfo& info = rows_.columns[static_cast<size_t>(columns[i])];
    Variant v = values[0][i];
    // QueryRows reads by storage class; bring it back to the column's kind.
    try {
      if (info.type.kind == ValueKind::Date && v.Type() == VarType::String) {
        if (auto date = Date::Parse(v.ToString())) v = Variant(*date);
      } else if (info.type.kind != ValueKind::Any && info.type.kind != ValueKind::Numeric &&
                 info.type.kind != ValueKind::Date) {
        v = ConvertForColumn(v, info.type.kind);
      }
    } catch (const VbError&) {
    }
    rows_.rows[row][static_cast<size_t>(columns[i])] = v;
  }
}

void SqliteRecordset::Delete() {
  CheckUpdatable();
  CheckCurrent();
  if (!adding_) db_->Execute("DELETE FROM " + Quoted(table_) + " WHERE rowid = ?", {Variant(rows_.rowids[pos_])});
  adding_ = false;
  rows_.rows.erase(rows_.rows.begin() + static_cast<std::ptrdiff_t>(pos_));
  rows_.rowids.erase(rows_.rowids.begin() + static_cast<std::ptrdiff_t>(pos_));
  Reposition();
}

void SqliteRecordset::Close() {
  CheckOpen();
  open_ = false;
}

std::shared_ptr<host::Recordset> SqliteRecordset::NextRecordset() {
  CheckOpen();
  open_ = false;
  if (following_.empty()) return nullptr;
  auto next = std::make_shared<SqliteRecordset>(std::move(following_.front()), Mode::ForwardOnly);
  following_.erase(following_.begin());
  next->SetFollowing(std::move(following_));
  following_.clear();
  return next;
}

}  // namespace kiv::refhost

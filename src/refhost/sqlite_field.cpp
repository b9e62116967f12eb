// A recordset column: value, metadata and the chunk operations on long columns.
#include "refhost/sqlite_field.h"

#include <algorithm>

#include "host/host_error.h"
#include "refhost/sqlite_recordset.h"

namespace kiv::refhost {

std::string SqliteField::Name() const { return owner_.Column(column_).name; }

Variant SqliteField::Value() const { return owner_.CurrentValue(column_); }

void SqliteField::SetValue(const Variant& value) { owner_.Assign(column_, value); }

int32_t SqliteField::Type() const { return owner_.Column(column_).type.type; }
int32_t SqliteField::DefinedSize() const { return owner_.Column(column_).type.defined_size; }
int32_t SqliteField::Precision() const { return owner_.Column(column_).type.precision; }
int32_t SqliteField::NumericScale() const { return owner_.Column(column_).type.scale; }

int32_t SqliteField::ActualSize() const {
  Variant v = Value();
  switch (v.Type()) {
    case VarType::Empty:
    case VarType::Null:
      return 0;
    case VarType::String:
      return static_cast<int32_t>(v.ToString().size());
    case VarType::Bytes:
      return static_cast<int32_t>(v.ToBytes().size());
    default:
      return DefinedSize();
  }
}

int32_t SqliteField::Attributes() const {
  const ColumnInfo& info = owner_.Column(column_);
  int32_t attributes = 0;
  if (info.nullable) attributes |= host::adFldMayBeNull;
  if (info.type.is_long) attributes |= host::adFldLong;
  return attributes;
}

Variant SqliteField::GetChunk(int32_t length) {
  if (read_generation_ != owner_.Generation()) {
    read_generation_ = owner_.Generation();
    read_offset_ = 0;
  }
  Variant v = Value();
  if (v.IsNull() || v.IsEmpty()) return Variant::Null();
  Bytes all = v.ToBytes();
  if (read_offset_ >= all.size() || length <= 0) return Variant::Null();
  size_t take = std::min(all.size() - read_offset_, static_cast<size_t>(length));
  auto first = all.begin() + static_cast<std::ptrdiff_t>(read_offset_);
  read_offset_ += take;
  if (v.Type() == VarType::String) return Variant(std::string(first, first + static_cast<std::ptrdiff_t>(take)));
  return Variant(Bytes(first, first + static_cast<std::ptrdiff_t>(take)));
}

void SqliteField::AppendChunk(const Variant& data) {
  const bool text = owner_.Column(column_).type.kind == ValueKind::Text;
  Bytes value;
  if (append_generation_ == owner_.Generation()) {
    Variant current = Value();
    if (!current.IsNull() && !current.IsEmpty()) value = current.ToBytes();
  }
  if (!data.IsNull() && !data.IsEmpty()) {
    Bytes more = data.ToBytes();
    value.insert(value.end(), more.begin(), more.end());
  }
  if (text)
    owner_.Assign(column_, Variant(std::string(value.begin(), value.end())));
  else
    owner_.Assign(column_, Variant(std::move(value)));
  append_generation_ = owner_.Generation();
}

}  // namespace kiv::refhost

// Remembered readings of rows, per connection.
#include "refhost/read_rows.h"

#include <cstdio>

#include "refhost/sqlite_database.h"

namespace kiv::refhost {

void ReadRows::Remember(const std::string& key, Row row) {
  auto [it, inserted] = rows_.insert_or_assign(key, std::move(row));
  if (!inserted) return;
  order_.push_back(key);
  if (order_.size() <= kLimit) return;
  rows_.erase(order_.front());
  order_.pop_front();
}

const ReadRows::Row* ReadRows::Find(const std::string& key) const {
  auto found = rows_.find(key);
  return found == rows_.end() ? nullptr : &found->second;
}

std::string ReadRows::StoredForm(const Variant& value) {
  switch (value.Type()) {
    case VarType::Empty:
    case VarType::Null:
      return {};
    case VarType::Boolean:
      return value.ToBool() ? "1" : "0";
    case VarType::Integer:
    case VarType::Long:
    case VarType::Double:
    case VarType::Currency: {
      char buffer[40];
      std::snprintf(buffer, sizeof buffer, "%.15g", value.ToDouble());
      return buffer;
    }
    case VarType::Date:
      return value.ToDate().IsZero() ? std::string() : DateToText(value.ToDate());
    case VarType::String:
      return value.ToString();
    case VarType::Bytes: {
      Bytes bytes = value.ToBytes();
      return std::string(bytes.begin(), bytes.end());
    }
  }
  return {};
}

}  // namespace kiv::refhost

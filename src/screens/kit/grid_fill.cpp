// Grid rows from recordset rows.
#include "screens/kit/grid_fill.h"

#include "core/format.h"
#include "core/text.h"
#include "host/host_error.h"

namespace kiv {

FillColumn FillColumn::Of(std::string field, std::string format) {
  FillColumn c;
  c.fields.push_back(std::move(field));
  c.format = std::move(format);
  return c;
}

FillColumn FillColumn::OptionalOf(std::string field) {
  FillColumn c = Of(std::move(field));
  c.optional = true;
  return c;
}

FillColumn FillColumn::Composed(std::vector<std::string> fields,
                                std::function<std::string(const std::vector<Variant>&)> compose) {
  FillColumn c;
  c.fields = std::move(fields);
  c.compose = std::move(compose);
  return c;
}

GridFill::GridFill(std::vector<FillColumn> columns) : columns_(std::move(columns)) {}

void GridFill::Bind(host::Recordset& rs) {
  ReadNames(rs);
  positions_.clear();
  for (const FillColumn& column : columns_) {
    for (const std::string& field : column.fields) {
      int index = FieldIndex(field);
      if (index < 0 && !column.optional) {
        // The lookup by name raises the host's own error for a missing field; a host that
        // learns columns from their use (a test double) adds it instead.
        rs.FieldByName(field);
        ReadNames(rs);
        index = FieldIndex(field);
        if (index < 0) throw HostError(3265, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
      }
      positions_.push_back(index);
    }
  }
}

void GridFill::ReadNames(host::Recordset& rs) {
  const int32_t count = rs.FieldCount();
  bound_names_.clear();
  bound_names_.reserve(static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) bound_names_.push_back(LCase(rs.FieldAt(i).Name()));
}

int GridFill::FieldIndex(const std::string& name) const {
  const std::string wanted = LCase(name);
  for (size_t i = 0; i < bound_names_.size(); ++i)
    if (bound_names_[i] == wanted) return static_cast<int>(i);
  return -1;
}

std::string GridFill::CellText(const FillColumn& column, size_t first_slot, host::Recordset& rs) const {
  auto value_at = [&](size_t slot) {
    const int position = positions_[slot];
    return position < 0 ? Variant::Null() : rs.FieldAt(position).Value();
  };
  if (column.compose) {
    // One buffer serves every composed cell of every row: no allocation per row.
    composed_values_.resize(column.fields.size());
    for (size_t k = 0; k < column.fields.size(); ++k) composed_values_[k] = value_at(first_slot + k);
    return column.compose(composed_values_);
  }
  const Variant value = value_at(first_slot);
  if (value.IsNull() || value.IsEmpty()) return std::string();
  if (column.format.empty()) return NzString(value);
  return Format(value, column.format);
}

std::string GridFill::RowText(host::Recordset& rs) const {
  std::string line;
  line.reserve(128);
  size_t slot = 0;
  for (size_t c = 0; c < columns_.size(); ++c) {
    if (c > 0) line += '\t';
    line += CellText(columns_[c], slot, rs);
    slot += columns_[c].fields.size();
  }
  return line;
}

int GridFill::AddRow(ui::Grid& grid, host::Recordset& rs, int at) const {
  grid.AddItem(RowText(rs), at);
  return at < 0 ? grid.Rows() - 1 : at;
}

int GridFill::AddRows(ui::Grid& grid, host::Recordset& rs) {
  Bind(rs);
  int added = 0;
  for (; !rs.Eof(); rs.MoveNext()) {
    AddRow(grid, rs);
    ++added;
  }
  return added;
}

}  // namespace kiv

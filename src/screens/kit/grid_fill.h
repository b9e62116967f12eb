// The fill of a grid from a recordset: each grid column made from one field (shown through
// its display format) or composed from several, nulls shown empty, the row added as
// tab-joined cells. Field positions are found once per recordset, not by name on every row.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/recordset.h"
#include "ui/grid.h"

namespace kiv {

//! One grid column and where its text comes from.
struct FillColumn {
  //! The fields the cell is made from, by name: one for a plain column.
  std::vector<std::string> fields;
  //! The display format of a one-field column ("Currency", "MM/dd/yyyy", "($#,###.00)");
  //! empty shows the value as text.
  std::string format;
  //! Makes the cell from the values of `fields`, in their order; empty for a plain column.
  std::function<std::string(const std::vector<Variant>& values)> compose;
  //! A field the recordset lacks shows an empty cell instead of raising.
  bool optional = false;

  //! A column showing one field.
  static FillColumn Of(std::string field, std::string format = {});
  //! A column showing one field when the recordset has it, empty otherwise.
  static FillColumn OptionalOf(std::string field);
  //! A column composed from several fields.
  static FillColumn Composed(std::vector<std::string> fields,
                             std::function<std::string(const std::vector<Variant>&)> compose);
};

class GridFill {
 public:
  explicit GridFill(std::vector<FillColumn> columns);

  //! Finds the columns' fields in this recordset; call once per recordset before its rows.
  //! A missing field that is not optional raises the host's 3265, as a lookup by name would.
  void Bind(host::Recordset& rs);
  //! The position of a field in the bound recordset; -1 when it has none.
  int FieldIndex(const std::string& name) const;
  //! The cells of the current row joined by tabs.
  std::string RowText(host::Recordset& rs) const;
  //! Adds the current row at `at` (-1 adds it last); returns the grid row it went to.
  int AddRow(ui::Grid& grid, host::Recordset& rs, int at = -1) const;
  //! Binds, then adds every row up to the end; returns how many were added.
  int AddRows(ui::Grid& grid, host::Recordset& rs);

 private:
  void ReadNames(host::Recordset& rs);
  //! The cell of one column: its value through the format, Null (and Empty) as "".
  std::string CellText(const FillColumn& column, size_t first_slot, host::Recordset& rs) const;

  std::vector<FillColumn> columns_;
  //! The bound recordset's field names, lower-cased, by position.
  std::vector<std::string> bound_names_;
  //! Per field slot (every column's fields, in order): its position in the recordset, or -1.
  std::vector<int> positions_;
  mutable std::vector<Variant> composed_values_;
};

}  // namespace kiv

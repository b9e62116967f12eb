// The grid's shape and content: format string, rows and columns, cells, row and column
// attributes, and the outline that hides the rows under a collapsed node.
#include "ui/grid.h"

#include <algorithm>
#include <climits>

#include "core/format.h"
#include "core/text.h"
#include "core/vb_error.h"
#include "ui/prop_text.h"

namespace kiv::ui {

Grid::Grid(std::string name) : Control(std::move(name), "Grid") {
  RegisterGridProperties();
  Reset();
}

void Grid::Reset() {
  format_string_.clear();
  cols_ = 1;
  fixed_rows_ = 1;
  fixed_cols_ = 0;
  cells_.assign(1, std::vector<Cell>(1));
  rows_.assign(1, RowInfo{});
  col_info_.assign(1, ColInfo{});
  row_ = -1;
  col_ = 0;
  row_sel_ = -1;
  selection_mode_ = flexSelectionFree;
  editable_ = flexEDNone;
  mouse_row_ = -1;
  mouse_col_ = -1;
  redraw_ = true;
  edit_text_.clear();
}

// ---- shape ----

void Grid::SetFormatString(const std::string& fmt) {
  format_string_ = fmt;
  std::string col_part = fmt;
  std::string row_part;
  bool has_rows = false;
  if (size_t semi = fmt.find(';'); semi != std::string::npos) {
    col_part = fmt.substr(0, semi);
    row_part = fmt.substr(semi + 1);
    has_rows = true;
  }
  std::vector<std::string> heads = Split(col_part, "|");
  SetCols(std::max(static_cast<int>(heads.size()), std::max(fixed_cols_, 1)));
  std::fill(col_info_.begin(), col_info_.end(), ColInfo{});
  for (size_t i = 0; i < heads.size(); ++i) {
    std::string head = heads[i];
    GridAlign align = GridAlign::General;
    if (!head.empty() && (head[0] == '<' || head[0] == '^' || head[0] == '>')) {
      align = head[0] == '<' ? GridAlign::Left : head[0] == '^' ? GridAlign::Center : GridAlign::Right;
      head.erase(0, 1);
    }
    col_info_[i].align = align;
    if (!cells_.empty()) cells_[0][i].text = head;
  }
  if (!has_rows) return;
  std::vector<std::string> labels = Split(row_part, "|");
  for (size_t j = 0; j < labels.size(); ++j) {
    int row = static_cast<int>(j);
    if (row >= Rows()) SetRows(row + 1);
    if (row == 0 && labels[j].empty()) continue;  // keeps the first column's heading
    cells_[row][0].text = labels[j];
  }
}

void Grid::SetRows(int n) {
  if (n < fixed_rows_) RaiseControlError(380);
  cells_.resize(n, std::vector<Cell>(cols_));
  rows_.resize(n);
  ClampCurrent();
}

void Grid::SetCols(int n) {
  if (n < fixed_cols_ || n < 1) RaiseControlError(380);
  cols_ = n;
  for (auto& row : cells_) row.resize(n);
  col_info_.resize(n);
  ClampCurrent();
}

void Grid::SetFixedRows(int n) {
  if (n < 0 || n > Rows()) RaiseControlError(380);
  fixed_rows_ = n;
  ClampCurrent();
}

void Grid::SetFixedCols(int n) {
  if (n < 0 || n > cols_) RaiseControlError(380);
  fixed_cols_ = n;
  ClampCurrent();
}

void Grid::ClampCurrent() {
  // Without scrollable rows nothing is current; otherwise the current row stays inside them.
  if (Rows() <= fixed_rows_) {
    row_ = -1;
    row_sel_ = -1;
  } else {
    if (row_ < fixed_rows_ || row_ >= Rows()) row_ = row_ < fixed_rows_ ? fixed_rows_ : Rows() - 1;
    if (row_sel_ < fixed_rows_ || row_sel_ >= Rows()) row_sel_ = row_;
  }
  if (col_ < fixed_cols_ || col_ >= cols_) col_ = std::min(fixed_cols_, cols_ - 1);
}

// ---- content ----

void Grid::CheckRow(int row) const {
  if (row < 0 || row >= Rows()) RaiseError(kErrSubscript);
}

void Grid::CheckCol(int col) const {
  if (col < 0 || col >= cols_) RaiseError(kErrSubscript);
}

void Grid::CheckCell(int row, int col) const {
  CheckRow(row);
  CheckCol(col);
}

void Grid::AddItem(const std::string& item, int row) {
  if (row == -1) row = Rows();
  if (row < fixed_rows_ || row > Rows()) RaiseError(kErrSubscript);
  std::vector<Cell> cells(cols_);
  std::vector<std::string> parts = Split(item, "\t");
  for (size_t i = 0; i < parts.size() && i < cells.size(); ++i) cells[i].text = parts[i];
  cells_.insert(cells_.begin() + row, std::move(cells));
  rows_.insert(rows_.begin() + row, RowInfo{});
  if (row_ >= row) ++row_;
  if (row_sel_ >= row) ++row_sel_;
  ClampCurrent();
}

void Grid::RemoveItem(int row) {
  if (row < fixed_rows_ || row >= Rows()) RaiseError(kErrSubscript);
  cells_.erase(cells_.begin() + row);
  rows_.erase(rows_.begin() + row);
  if (row_ > row) --row_;
  if (row_sel_ > row) --row_sel_;
  ClampCurrent();
}

const std::string& Grid::TextMatrix(int row, int col) const {
  CheckCell(row, col);
  return cells_[row][col].text;
}

void Grid::SetTextMatrix(int row, int col, const std::string& v) {
  CheckCell(row, col);
  cells_[row][col].text = v;
}

std::string Grid::DisplayText(int row, int col) const {
  const std::string& text = TextMatrix(row, col);
  const std::string& fmt = col_info_[col].format;
  if (fmt.empty() || text.empty() || row < fixed_rows_) return text;
  if (IsNumeric(Variant(text))) return Format(Variant(CDbl(Variant(text))), fmt);
  if (auto d = Date::Parse(text)) return Format(Variant(*d), fmt);
  return text;
}

std::string Grid::Text() const {
  if (row_ < 0 || row_ >= Rows() || col_ < 0 || col_ >= cols_) return {};
  return cells_[row_][col_].text;
}

void Grid::SetText(const std::string& v) { SetTextMatrix(row_, col_, v); }

void Grid::Clear() {
  for (auto& row : cells_) {
    for (auto& cell : row) cell = Cell{};
  }
  for (auto& info : rows_) info.data = Variant();
}

int Grid::CellChecked(int row, int col) const {
  CheckCell(row, col);
  return cells_[row][col].checked;
}

void Grid::SetCellChecked(int row, int col, int state) {
  CheckCell(row, col);
  if (state < flexNoCheckbox || state > flexUnchecked) RaiseControlError(380);
  cells_[row][col].checked = state;
}

const Variant& Grid::RowData(int row) const {
  CheckRow(row);
  return rows_[row].data;
}

void Grid::SetRowData(int row, const Variant& v) {
  CheckRow(row);
  rows_[row].data = v;
}

// ---- columns ----

bool Grid::ColHidden(int col) const {
  CheckCol(col);
  return col_info_[col].hidden;
}
void Grid::SetColHidden(int col, bool v) {
  CheckCol(col);
  col_info_[col].hidden = v;
}
int Grid::ColWidth(int col) const {
  CheckCol(col);
  return col_info_[col].width;
}
void Grid::SetColWidth(int col, int v) {
  CheckCol(col);
  col_info_[col].width = v;
}
GridAlign Grid::ColAlignment(int col) const {
  CheckCol(col);
  return col_info_[col].align;
}
void Grid::SetColAlignment(int col, GridAlign v) {
  CheckCol(col);
  col_info_[col].align = v;
}
const std::string& Grid::ColFormat(int col) const {
  CheckCol(col);
  return col_info_[col].format;
}
void Grid::SetColFormat(int col, const std::string& v) {
  CheckCol(col);
  col_info_[col].format = v;
}
const std::string& Grid::ColComboList(int col) const {
  CheckCol(col);
  return col_info_[col].combo_list;
}
void Grid::SetColComboList(int col, const std::string& v) {
  CheckCol(col);
  col_info_[col].combo_list = v;
}
const std::string& Grid::ColKey(int col) const {
  CheckCol(col);
  return col_info_[col].key;
}
void Grid::SetColKey(int col, const std::string& v) {
  CheckCol(col);
  col_info_[col].key = v;
}

std::vector<std::string> Grid::ComboItems(int col) const {
  std::string list = ColComboList(col);
  if (!list.empty() && list[0] == '|') list.erase(0, 1);
  std::vector<std::string> out;
  if (list.empty()) return out;
  for (std::string item : Split(list, "|")) {
    if (!item.empty() && item[0] == '#') {
      size_t semi = item.find(';');
      item = semi == std::string::npos ? item.substr(1) : item.substr(semi + 1);
    }
    out.push_back(item);
  }
  return out;
}

int Grid::ColDataType(int col) const {
  CheckCol(col);
  return col_info_[col].data_type;
}
void Grid::SetColDataType(int col, int v) {
  CheckCol(col);
  col_info_[col].data_type = v;
}

int Grid::ColIndex(const std::string& key) const {
  for (int c = 0; c < cols_; ++c) {
    if (!col_info_[c].key.empty() && EqualsNoCase(col_info_[c].key, key)) return c;
  }
  return -1;
}

// ---- rows and outline ----

bool Grid::RowHidden(int row) const {
  CheckRow(row);
  return rows_[row].hidden;
}
void Grid::SetRowHidden(int row, bool v) {
  CheckRow(row);
  rows_[row].hidden = v;
}
int Grid::RowOutlineLevel(int row) const {
  CheckRow(row);
  return rows_[row].outline_level;
}
void Grid::SetRowOutlineLevel(int row, int level) {
  CheckRow(row);
  rows_[row].outline_level = level;
}
const std::string& Grid::RowStyle(int row) const {
  CheckRow(row);
  return rows_[row].style;
}
void Grid::SetRowStyle(int row, const std::string& v) {
  CheckRow(row);
  rows_[row].style = v;
}
bool Grid::IsSubtotal(int row) const {
  CheckRow(row);
  return rows_[row].subtotal;
}
void Grid::SetIsSubtotal(int row, bool v) {
  CheckRow(row);
  rows_[row].subtotal = v;
}
bool Grid::IsCollapsed(int row) const {
  CheckRow(row);
  return rows_[row].collapsed;
}
void Grid::SetIsCollapsed(int row, bool v) {
  CheckRow(row);
  rows_[row].collapsed = v;
}

int Grid::EffectiveLevel(int row) const {
  // Outline nodes are the subtotal rows at their level; a plain row is a leaf of the node above it.
  return rows_[row].subtotal ? rows_[row].outline_level : INT_MAX;
}

bool Grid::RowShown(int row) const {
  CheckRow(row);
  if (rows_[row].hidden) return false;
  int level = EffectiveLevel(row);
  for (int r = row - 1; r >= fixed_rows_ && level > 0; --r) {
    if (!rows_[r].subtotal || rows_[r].outline_level >= level) continue;
    if (rows_[r].collapsed) return false;
    level = rows_[r].outline_level;
  }
  return true;
}

}  // namespace kiv::ui

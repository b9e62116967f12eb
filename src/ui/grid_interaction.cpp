// What the clerk does with a grid: the current cell and the selection, cell edits with
// their events, the outline boxes, double clicks; and the grid's properties as text.
#include <algorithm>
#include <set>

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/grid.h"
#include "ui/keys.h"
#include "ui/prop_text.h"

namespace kiv::ui {

namespace {

template <class F, class... Args>
void Fire(const F& handler, Args&&... args) {
  if (!handler) return;
  auto copy = handler;  // a handler may replace itself
  copy(std::forward<Args>(args)...);
}

}  // namespace

// ---- current cell and selection ----

void Grid::MoveCurrent(int row, int col) {
  bool moved = row != row_ || col != col_;
  bool sel_changed = row_sel_ != row;
  row_ = row;
  col_ = col;
  row_sel_ = row;
  if (moved) Fire(on_row_col_change);
  if (sel_changed) Fire(on_sel_change);
}

void Grid::SetRow(int row) {
  CheckRow(row);
  MoveCurrent(row, col_);
}

void Grid::SetCol(int col) {
  CheckCol(col);
  MoveCurrent(row_, col);
}

void Grid::SetRowSel(int row) {
  CheckRow(row);
  if (row == row_sel_) return;
  row_sel_ = row;
  Fire(on_sel_change);
}

std::vector<int> Grid::SelectedRowList() const {
  std::vector<int> out;
  if (selection_mode_ == flexSelectionListBox) {
    for (int r = fixed_rows_; r < Rows(); ++r) {
      if (rows_[r].selected) out.push_back(r);
    }
    return out;
  }
  if (row_ < fixed_rows_ || row_ >= Rows()) return out;
  int from = std::min(row_, row_sel_ < fixed_rows_ ? row_ : row_sel_);
  int to = std::max(row_, row_sel_ < fixed_rows_ ? row_ : row_sel_);
  for (int r = from; r <= to && r < Rows(); ++r) out.push_back(r);
  return out;
}

int Grid::SelectedRows() const { return static_cast<int>(SelectedRowList().size()); }

int Grid::SelectedRow(int index) const {
  std::vector<int> rows = SelectedRowList();
  if (index < 0 || index >= static_cast<int>(rows.size())) RaiseError(kErrSubscript);
  return rows[index];
}

bool Grid::IsSelected(int row) const {
  CheckRow(row);
  std::vector<int> rows = SelectedRowList();
  return std::find(rows.begin(), rows.end(), row) != rows.end();
}

void Grid::SetIsSelected(int row, bool v) {
  CheckRow(row);
  rows_[row].selected = v;
}

void Grid::SelectRows(const std::vector<int>& rows) {
  if (rows.empty()) return;
  for (int r : rows) CheckRow(r);
  int first = rows.front();
  bool moved = first != row_;
  if (selection_mode_ == flexSelectionListBox) {
    for (auto& info : rows_) info.selected = false;
    for (int r : rows) rows_[r].selected = true;
    row_sel_ = first;
  } else {
    row_sel_ = rows.back();
  }
  row_ = first;
  if (col_ < fixed_cols_) col_ = std::min(fixed_cols_, cols_ - 1);
  mouse_row_ = first;
  mouse_col_ = col_;
  if (moved) Fire(on_row_col_change);
  Fire(on_sel_change);
  FireClick();
}

// ---- editing, outline, double click ----

std::string Grid::EditCell(int row, int col, const std::string& value) {
  std::string cell = "cell [" + std::to_string(row) + "," + std::to_string(col) + "]";
  std::string where = cell + " of " + Name();
  if (row < 0 || row >= Rows() || col < 0 || col >= cols_) return Name() + " has no " + cell;
  if (editable_ == flexEDNone) return Name() + " is not editable";
  if (row < fixed_rows_ || col < fixed_cols_) return where + " is fixed";
  if (col_info_[col].hidden || !RowShown(row)) return where + " is hidden";
  std::string text = value;
  bool check_cell = cells_[row][col].checked != flexNoCheckbox;
  int check_state = flexNoCheckbox;
  if (check_cell) {
    std::string t = Trim(value);
    if (EqualsNoCase(t, "true") || t == "1" || t == "-1") {
      check_state = flexChecked;
    } else if (EqualsNoCase(t, "false") || t == "0") {
      check_state = flexUnchecked;
    } else {
      return "a check box cell takes true or false, not " + value;
    }
  } else if (!col_info_[col].combo_list.empty() && col_info_[col].combo_list[0] != '|') {
    std::vector<std::string> items = ComboItems(col);
    auto it = std::find_if(items.begin(), items.end(), [&](const std::string& s) { return EqualsNoCase(s, value); });
    if (it == items.end()) return value + " is not in the list of column " + std::to_string(col) + " of " + Name();
    text = *it;
  }
  mouse_row_ = row;
  mouse_col_ = col;
  MoveCurrent(row, col);
  bool cancel = false;
  Fire(on_before_edit, row, col, cancel);
  if (cancel) return {};
  edit_text_ = text;
  Fire(on_validate_edit, row, col, cancel);
  if (cancel) {
    edit_text_.clear();
    return {};
  }
  if (row >= Rows() || col >= cols_) return where + " went away during the edit";
  if (check_cell) {
    cells_[row][col].checked = check_state;
  } else {
    cells_[row][col].text = edit_text_;
  }
  edit_text_.clear();
  Fire(on_after_edit, row, col);
  return {};
}

std::string Grid::ToggleOutline(int row) {
  if (row < fixed_rows_ || row >= Rows()) return Name() + " has no row " + std::to_string(row);
  int state = rows_[row].collapsed ? flexOutlineExpanded : flexOutlineCollapsed;
  bool cancel = false;
  Fire(on_before_collapse, row, state, cancel);
  if (cancel || row >= Rows()) return {};
  rows_[row].collapsed = state == flexOutlineCollapsed;
  Fire(on_after_collapse, row, state);
  return {};
}

std::string Grid::DoubleClickRow(int row) {
  if (row < fixed_rows_ || row >= Rows()) return Name() + " has no row " + std::to_string(row);
  SelectRows({row});
  FireDblClick();
  return {};
}

void Grid::DefaultKeyDown(int key_code, int) {
  auto shown_row = [this](int from, int step) {
    for (int r = from; r >= fixed_rows_ && r < Rows(); r += step) {
      if (RowShown(r)) return r;
    }
    return -1;
  };
  auto shown_col = [this](int from, int step) {
    for (int c = from; c >= fixed_cols_ && c < cols_; c += step) {
      if (!col_info_[c].hidden) return c;
    }
    return -1;
  };
  int row = -1;
  int col = -1;
  switch (key_code) {
    case vbKeyDown: row = shown_row(row_ < fixed_rows_ ? fixed_rows_ : row_ + 1, 1); break;
    case vbKeyUp: row = shown_row(row_ - 1, -1); break;
    case vbKeyHome: row = shown_row(fixed_rows_, 1); break;
    case vbKeyEnd: row = shown_row(Rows() - 1, -1); break;
    case vbKeyRight: col = shown_col(col_ + 1, 1); break;
    case vbKeyLeft: col = shown_col(col_ - 1, -1); break;
    default: return;
  }
  if (row >= 0 && selection_mode_ == flexSelectionListBox) {
    for (auto& info : rows_) info.selected = false;
    rows_[row].selected = true;
  }
  if (row >= 0) MoveCurrent(row, col_);
  if (col >= 0 && row_ >= 0) MoveCurrent(row_, col);
}

// ---- properties as text ----

void Grid::RegisterGridProperties() {
  auto number = [](int v) { return std::to_string(v); };
  RegisterProperty("Rows", [this, number] { return number(Rows()); },
                   [this](const std::string& v) { SetRows(ParseIntText(v)); });
  RegisterProperty("Cols", [this, number] { return number(cols_); },
                   [this](const std::string& v) { SetCols(ParseIntText(v)); });
  RegisterProperty("FixedRows", [this, number] { return number(fixed_rows_); },
                   [this](const std::string& v) { SetFixedRows(ParseIntText(v)); });
  RegisterProperty("FixedCols", [this, number] { return number(fixed_cols_); },
                   [this](const std::string& v) { SetFixedCols(ParseIntText(v)); });
  RegisterProperty("FormatString", [this] { return format_string_; },
                   [this](const std::string& v) { SetFormatString(v); });
  RegisterProperty("Row", [this, number] { return number(row_); },
                   [this](const std::string& v) { SetRow(ParseIntText(v)); });
  RegisterProperty("Col", [this, number] { return number(col_); },
                   [this](const std::string& v) { SetCol(ParseIntText(v)); });
  RegisterProperty("RowSel", [this, number] { return number(row_sel_); },
                   [this](const std::string& v) { SetRowSel(ParseIntText(v)); });
  RegisterProperty("Text", [this] { return Text(); }, [this](const std::string& v) { SetText(v); });
  RegisterProperty("Editable", [this, number] { return number(editable_); },
                   [this](const std::string& v) { SetEditable(ParseIntText(v)); });
  RegisterProperty("SelectionMode", [this, number] { return number(selection_mode_); },
                   [this](const std::string& v) { SetSelectionMode(ParseIntText(v)); });
  RegisterProperty("SelectedRows", [this] {
    std::string out;
    for (int r : SelectedRowList()) out += (out.empty() ? "" : ",") + std::to_string(r);
    return out;
  });
  RegisterProperty("HiddenCols", [this] {
    std::string out;
    for (int c = 0; c < cols_; ++c) {
      if (col_info_[c].hidden) out += (out.empty() ? "" : ",") + std::to_string(c);
    }
    return out;
  });
  RegisterProperty("HiddenRows", [this] {
    std::string out;
    for (int r = 0; r < Rows(); ++r) {
      if (!RowShown(r)) out += (out.empty() ? "" : ",") + std::to_string(r);
    }
    return out;
  });
  RegisterProperty("Cells", [this] {
    std::string out;
    for (int r = 0; r < Rows(); ++r) {
      if (r > 0) out += "\n";
      for (int c = 0; c < cols_; ++c) {
        if (c > 0) out += "\t";
        std::string shown = DisplayText(r, c);
        if (cells_[r][c].checked != flexNoCheckbox) {
          shown = (cells_[r][c].checked == flexChecked ? "[x]" : "[ ]") + (shown.empty() ? "" : " " + shown);
        }
        out += shown;
      }
    }
    return out;
  });
}

}  // namespace kiv::ui

// A headless flex grid: cells of text in rows and columns with fixed header rows, a format
// string for headers and alignment, tab-separated AddItem, hidden rows and columns, column
// formats and combo lists, check-box cells, multi-row selection, outline levels, edit events.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "core/variant.h"
#include "ui/control.h"

namespace kiv::ui {

//! Column alignment as a format string gives it: "<" left, "^" centre, ">" right, none general.
enum class GridAlign { General, Left, Center, Right };
//! Check-box state of a cell, with the platform's values.
enum CellCheck : int { flexNoCheckbox = 0, flexChecked = 1, flexUnchecked = 2 };
//! Outline state passed to the collapse events.
enum OutlineState : int { flexOutlineExpanded = 0, flexOutlineSubtotals = 1, flexOutlineCollapsed = 2 };
//! How far the clerk may edit cells.
enum GridEditable : int { flexEDNone = 0, flexEDKbd = 1, flexEDKbdMouse = 2 };
//! Selection behaviour: free ranges, whole rows, or a list of rows picked one by one.
enum GridSelectionMode : int { flexSelectionFree = 0, flexSelectionByRow = 1, flexSelectionListBox = 3 };

class Grid : public Control {
 public:
  explicit Grid(std::string name);

  // ---- shape ----
  //! Sets columns, header texts and alignments: "|" separates columns; a leading "<", "^"
  //! or ">" aligns a column left, centred or right; text after ";" labels the rows below the
  //! header in column 0 ("|"-separated), adding rows when needed. Cols becomes the column count.
  //! A format string describes a new column layout: every column's own settings (hidden,
  //! width, format, combo list, key, data type) go back to their defaults before the
  //! string's alignments apply. Rows and their cells, hidden rows and the grid-wide modes
  //! (edit, selection) are not the string's and stay; Reset drops those too.
  void SetFormatString(const std::string& fmt);
  const std::string& FormatString() const { return format_string_; }
  int Rows() const { return static_cast<int>(cells_.size()); }
  //! Grows with empty rows or drops rows from the end; below FixedRows raises VbError 380.
  void SetRows(int n);
  int Cols() const { return cols_; }
  //! Grows with empty columns or drops columns from the right; below FixedCols raises 380.
  void SetCols(int n);
  int FixedRows() const { return fixed_rows_; }
  void SetFixedRows(int n);
  int FixedCols() const { return fixed_cols_; }
  void SetFixedCols(int n);

  // ---- content ----
  //! Adds a row from tab-separated cells starting at column 0 (extra cells are ignored);
  //! at the end, or before `row` when given (FixedRows..Rows, else VbError 9).
  void AddItem(const std::string& item, int row = -1);
  //! Removes a row; VbError 9 outside the grid.
  void RemoveItem(int row);
  //! The stored text of a cell; VbError 9 "Subscript out of range" outside the grid.
  const std::string& TextMatrix(int row, int col) const;
  void SetTextMatrix(int row, int col, const std::string& v);
  //! The text as shown: the column format applied to numbers and dates (other text as stored).
  std::string DisplayText(int row, int col) const;
  //! The current cell's text.
  std::string Text() const;
  void SetText(const std::string& v);
  //! Empties every cell (header included), checks and row data; the shape stays.
  void Clear();
  //! Returns the grid to the state of a newly constructed one, as a page that takes the grid
  //! over needs it: one empty header row and column, no format string, fixed columns, hidden
  //! rows or columns, column formats, data types, keys, combo lists, widths or alignments, no
  //! edit or selection mode, outline, checks, row data or selection; nothing current. It
  //! keeps what is the form's rather than the grid's: the name, the container, the common
  //! properties (enabled, visible, tab order, tag, tool tip) and the event handlers. Fires
  //! no event.
  void Reset();
  //! Cell check box state; VbError 9 outside the grid.
  int CellChecked(int row, int col) const;
  void SetCellChecked(int row, int col, int state);
  //! A value the screen keeps with a row (a key), not shown. VbError 9 outside the grid.
  const Variant& RowData(int row) const;
  void SetRowData(int row, const Variant& v);

  // ---- columns ----
  bool ColHidden(int col) const;
  void SetColHidden(int col, bool v);
  int ColWidth(int col) const;
  void SetColWidth(int col, int v);
  GridAlign ColAlignment(int col) const;
  void SetColAlignment(int col, GridAlign v);
  //! A Format mask or named format applied when showing the column's cells.
  const std::string& ColFormat(int col) const;
  void SetColFormat(int col, const std::string& v);
  //! The column's edit list: "a|b|c", items may be "#key;text"; a leading "|" allows free text.
  const std::string& ColComboList(int col) const;
  void SetColComboList(int col, const std::string& v);
  //! The texts a column's combo list offers, in order.
  std::vector<std::string> ComboItems(int col) const;
  const std::string& ColKey(int col) const;
  void SetColKey(int col, const std::string& v);
  //! The column's data type as the platform numbers it (flexDTBoolean 11...); kept for the screens.
  int ColDataType(int col) const;
  void SetColDataType(int col, int v);
  //! The column whose key is `key` (without regard to case); -1 when none.
  int ColIndex(const std::string& key) const;

  // ---- rows ----
  bool RowHidden(int row) const;
  void SetRowHidden(int row, bool v);
  //! False when the row is hidden or sits under a collapsed outline node.
  bool RowShown(int row) const;
  int RowOutlineLevel(int row) const;
  void SetRowOutlineLevel(int row, int level);
  //! How a row is drawn, as the screen names it ("header" for a caption row inside the data); empty is plain.
  const std::string& RowStyle(int row) const;
  void SetRowStyle(int row, const std::string& v);
  bool IsSubtotal(int row) const;
  void SetIsSubtotal(int row, bool v);
  //! A collapsed node hides the rows below it with a deeper outline level.
  bool IsCollapsed(int row) const;
  void SetIsCollapsed(int row, bool v);

  // ---- current cell and selection ----
  int Row() const { return row_; }
  //! Makes `row` current (and the selection that row alone); fires RowColChange when it
  //! moves. VbError 9 outside the grid.
  void SetRow(int row);
  int Col() const { return col_; }
  void SetCol(int col);
  int RowSel() const { return row_sel_; }
  void SetRowSel(int row);
  int SelectionMode() const { return selection_mode_; }
  void SetSelectionMode(int v) { selection_mode_ = v; }
  //! Number of selected rows; the rows in ascending order; whether one is selected.
  int SelectedRows() const;
  std::vector<int> SelectedRowList() const;
  int SelectedRow(int index) const;
  bool IsSelected(int row) const;
  void SetIsSelected(int row, bool v);
  //! What a clerk's clicks do: the first row becomes current, all of them selected; fires
  //! RowColChange (when the row moves), SelChange and Click. VbError 9 for a row outside.
  void SelectRows(const std::vector<int>& rows);
  //! Row and column under the mouse at the last click.
  int MouseRow() const { return mouse_row_; }
  int MouseCol() const { return mouse_col_; }

  // ---- editing ----
  int Editable() const { return editable_; }
  void SetEditable(int v) { editable_ = v; }
  //! The text being entered while an edit runs (ValidateEdit reads it).
  const std::string& EditText() const { return edit_text_; }
  //! ValidateEdit may rewrite the text about to be stored.
  void SetEditText(std::string v) { edit_text_ = std::move(v); }
  //! A clerk's cell edit: current cell, BeforeEdit (may cancel), ValidateEdit (may cancel),
  //! the new text (or check state, for a check-box cell: true/false/1/0) and AfterEdit.
  //! Returns an error text (not editable, out of range, not in the column's list), empty on
  //! success or when a handler cancelled.
  std::string EditCell(int row, int col, const std::string& value);
  //! The outline box of a row: BeforeCollapse (may cancel), toggle, AfterCollapse.
  //! Returns an error text when the row is out of range or has nothing below it.
  std::string ToggleOutline(int row);
  //! Double click on a row: the row is selected as by a click, then DblClick.
  std::string DoubleClickRow(int row);
  //! Up, Down, Home and End move the current row over the rows shown; Left and Right the
  //! current column over the columns shown (RowColChange and SelChange as for a click).
  void DefaultKeyDown(int key_code, int shift) override;
  //! Turning Redraw off while filling has no effect headless; kept for the screens' code.
  bool Redraw() const { return redraw_; }
  void SetRedraw(bool v) { redraw_ = v; }

  std::function<void(int row, int col, bool& cancel)> on_before_edit;
  std::function<void(int row, int col, bool& cancel)> on_validate_edit;
  std::function<void(int row, int col)> on_after_edit;
  std::function<void()> on_row_col_change;
  std::function<void()> on_sel_change;
  //! `state` is the state the row is about to take (flexOutlineCollapsed or Expanded).
  std::function<void(int row, int state, bool& cancel)> on_before_collapse;
  std::function<void(int row, int state)> on_after_collapse;

  // ---- what a front end sees and does ----
  //! text and value read the current cell as shown; checked its check box; selected the
  //! selected rows ("1,3"); count and rows the data rows; cols the columns; [ROW,COL] a
  //! cell as shown; colhidden[C], rowhidden[R], checked[ROW,COL] as their names say.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A click names a row number; select, edit and expand name rows, double click one row;
  //! a row outside the data rows is refused before the focus moves.
  std::string RefuseAction(const Action& action) const override;
  //! A click on a row selects it; select, edit, expand and double click act as the clerk's.
  UiResult ApplyAction(const Action& action) override;

 private:
  struct Cell {
    std::string text;
    int checked = flexNoCheckbox;
  };
  struct RowInfo {
    bool hidden = false;
    int outline_level = 0;
    bool subtotal = false;
    bool collapsed = false;
    bool selected = false;
    std::string style;
    Variant data;
  };
  struct ColInfo {
    bool hidden = false;
    int width = 1000;
    GridAlign align = GridAlign::General;
    std::string format;
    std::string combo_list;
    std::string key;
    int data_type = 0;
  };
  void CheckCell(int row, int col) const;
  int EffectiveLevel(int row) const;
  void ClampCurrent();
  void MoveCurrent(int row, int col);
  void CheckRow(int row) const;
  void CheckCol(int col) const;
  void RegisterGridProperties();

  // The grid's own state: Reset returns every member below to the value it gives it.
  std::string format_string_;
  int cols_ = 1;
  int fixed_rows_ = 1;
  int fixed_cols_ = 0;
  std::vector<std::vector<Cell>> cells_;
  std::vector<RowInfo> rows_;
  std::vector<ColInfo> col_info_;
  int row_ = -1;
  int col_ = 0;
  int row_sel_ = -1;
  int selection_mode_ = flexSelectionFree;
  int editable_ = flexEDNone;
  int mouse_row_ = -1;
  int mouse_col_ = -1;
  bool redraw_ = true;
  std::string edit_text_;
};

}  // namespace kiv::ui

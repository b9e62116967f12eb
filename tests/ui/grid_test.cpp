// The grid: format strings, rows added from tab-separated text, cells out of range,
// column formats, the outline, cell edits with their events, and row selection.
#include "ui/grid.h"

#include <gtest/gtest.h>

#include "core/vb_error.h"
#include "ui/keys.h"

namespace kiv::ui {
namespace {

class GridTest : public ::testing::Test {
 protected:
  GridTest() : grid("grdTest") {
    grid.on_before_edit = [this](int r, int c, bool& cancel) {
      log.push_back("BeforeEdit " + std::to_string(r) + "," + std::to_string(c));
      cancel = refuse_edit;
    };
    grid.on_validate_edit = [this](int, int, bool&) { log.push_back("ValidateEdit " + grid.EditText()); };
    grid.on_after_edit = [this](int r, int c) { log.push_back("AfterEdit " + grid.TextMatrix(r, c)); };
    grid.on_row_col_change = [this] { log.push_back("RowColChange " + std::to_string(grid.Row())); };
    grid.on_sel_change = [this] { log.push_back("SelChange"); };
    grid.on_click = [this] { log.push_back("Click"); };
  }
  Grid grid;
  std::vector<std::string> log;
  bool refuse_edit = false;
};

TEST_F(GridTest, FormatStringGivesColumnsHeadersAndAlignment) {
  struct Case {
    std::string fmt;
    std::vector<std::string> heads;
    std::vector<GridAlign> aligns;
  };
  const std::vector<Case> cases = {
      {"^Name|>Amount|<City|Plain", {"Name", "Amount", "City", "Plain"},
       {GridAlign::Center, GridAlign::Right, GridAlign::Left, GridAlign::General}},
      {"|>Con#||^", {"", "Con#", "", ""}, {GridAlign::General, GridAlign::Right, GridAlign::General, GridAlign::Center}},
      {"One", {"One"}, {GridAlign::General}},
  };
  for (const Case& c : cases) {
    Grid g("grd");
    g.SetFormatString(c.fmt);
    ASSERT_EQ(g.Cols(), static_cast<int>(c.heads.size())) << c.fmt;
    for (int i = 0; i < g.Cols(); ++i) {
      EXPECT_EQ(g.TextMatrix(0, i), c.heads[i]) << c.fmt << " col " << i;
      EXPECT_EQ(g.ColAlignment(i), c.aligns[i]) << c.fmt << " col " << i;
    }
    EXPECT_EQ(g.Rows(), 1) << c.fmt;
  }
}

TEST_F(GridTest, RowPartOfTheFormatStringLabelsRowsAndAddsThem) {
  grid.SetFormatString("|A|B;|First|Second");
  ASSERT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.TextMatrix(1, 0), "First");
  EXPECT_EQ(grid.TextMatrix(2, 0), "Second");
  EXPECT_EQ(grid.TextMatrix(0, 1), "A");
}

TEST_F(GridTest, AddItemSplitsAtTabsAndInsertsWhereAsked) {
  grid.SetFormatString("A|B|C");
  grid.AddItem("1\t2\t3\t4");  // the extra cell is dropped
  grid.AddItem("x");           // missing cells stay empty
  grid.AddItem("\tmid\t", 2);
  ASSERT_EQ(grid.Rows(), 4);
  EXPECT_EQ(grid.TextMatrix(1, 2), "3");
  EXPECT_EQ(grid.TextMatrix(2, 1), "mid");
  EXPECT_EQ(grid.TextMatrix(3, 0), "x");
  EXPECT_EQ(grid.TextMatrix(3, 1), "");
  grid.RemoveItem(1);
  EXPECT_EQ(grid.TextMatrix(1, 1), "mid");
  EXPECT_THROW(grid.AddItem("y", 0), VbError);  // not above the header
  EXPECT_THROW(grid.RemoveItem(0), VbError);
}

TEST_F(GridTest, CellsOutsideTheGridRaiseSubscriptOutOfRange) {
  grid.SetFormatString("A|B");
  grid.AddItem("1\t2");
  const std::vector<std::pair<int, int>> outside = {{-1, 0}, {2, 0}, {0, 2}, {1, -1}, {100, 100}};
  for (auto [r, c] : outside) {
    try {
      grid.TextMatrix(r, c);
      ADD_FAILURE() << "no error for " << r << "," << c;
    } catch (const VbError& e) {
      EXPECT_EQ(e.Number(), kErrSubscript);
      EXPECT_EQ(e.Description(), "Subscript out of range");
    }
    EXPECT_THROW(grid.SetTextMatrix(r, c, "x"), VbError);
    EXPECT_THROW(grid.CellChecked(r, c), VbError);
  }
}

TEST_F(GridTest, ColumnFormatShowsNumbersAndLeavesOtherTextAndHeadersAlone) {
  grid.SetFormatString("Item|>Amount");
  grid.SetColFormat(1, "($#,###.00)");
  grid.AddItem("a\t-1234.5");
  grid.AddItem("b\t1234.5");
  grid.AddItem("c\tn/a");
  EXPECT_EQ(grid.DisplayText(1, 1), "($1,234.50)");
  EXPECT_EQ(grid.DisplayText(2, 1), "$1,234.50");
  EXPECT_EQ(grid.DisplayText(3, 1), "n/a");
  EXPECT_EQ(grid.DisplayText(0, 1), "Amount");
  EXPECT_EQ(grid.TextMatrix(1, 1), "-1234.5");
}

TEST_F(GridTest, CollapsedNodeHidesOnlyTheRowsBelowIt) {
  grid.SetFormatString("Name");
  for (const char* name : {"Household", "Member 1", "Member 2", "Other household", "Member 3"}) grid.AddItem(name);
  for (int node : {1, 4}) grid.SetIsSubtotal(node, true);
  log.clear();
  grid.on_after_collapse = [this](int row, int state) {
    log.push_back("AfterCollapse " + std::to_string(row) + " " + std::to_string(state));
  };
  EXPECT_EQ(grid.ToggleOutline(1), "");
  EXPECT_EQ((std::vector<bool>{grid.RowShown(1), grid.RowShown(2), grid.RowShown(3), grid.RowShown(4), grid.RowShown(5)}),
            (std::vector<bool>{true, false, false, true, true}));
  grid.on_before_collapse = [](int, int, bool& cancel) { cancel = true; };
  grid.ToggleOutline(1);
  EXPECT_TRUE(grid.IsCollapsed(1));
  grid.on_before_collapse = nullptr;
  grid.ToggleOutline(1);
  EXPECT_TRUE(grid.RowShown(2));
  EXPECT_EQ(log, (std::vector<std::string>{"AfterCollapse 1 2", "AfterCollapse 1 0"}));
}

TEST_F(GridTest, EditRunsItsEventsInOrderAndHonoursCancel) {
  grid.SetFormatString("Key|Value");
  grid.AddItem("k\told");
  grid.SetEditable(flexEDKbdMouse);
  grid.SetCol(0);
  log.clear();
  EXPECT_EQ(grid.EditCell(1, 1, "new"), "");
  EXPECT_EQ(log, (std::vector<std::string>{"RowColChange 1", "BeforeEdit 1,1", "ValidateEdit new", "AfterEdit new"}));
  refuse_edit = true;
  EXPECT_EQ(grid.EditCell(1, 1, "refused"), "");
  EXPECT_EQ(grid.TextMatrix(1, 1), "new");
  refuse_edit = false;
  grid.on_validate_edit = [this](int, int, bool&) { grid.SetEditText("CLEANED"); };
  grid.EditCell(1, 1, "dirty");
  EXPECT_EQ(grid.TextMatrix(1, 1), "CLEANED");
}

TEST_F(GridTest, EditIsRefusedWhereTheClerkCannotEdit) {
  grid.SetFormatString("Flag|Size");
  grid.AddItem("\tM");
  EXPECT_NE(grid.EditCell(1, 1, "L"), "");  // not editable
  grid.SetEditable(flexEDKbd);
  grid.SetColComboList(1, "#1;S|#2;M|#3;L");
  EXPECT_NE(grid.EditCell(1, 1, "XL"), "");
  EXPECT_NE(grid.EditCell(0, 1, "L"), "");  // header
  EXPECT_NE(grid.EditCell(1, 5, "L"), "");
  EXPECT_EQ(grid.EditCell(1, 1, "l"), "");
  EXPECT_EQ(grid.TextMatrix(1, 1), "L");
  grid.SetColComboList(1, "|S|M");  // a leading bar allows free text
  EXPECT_EQ(grid.EditCell(1, 1, "XL"), "");
  grid.SetCellChecked(1, 0, flexUnchecked);
  EXPECT_NE(grid.EditCell(1, 0, "maybe"), "");
  EXPECT_EQ(grid.EditCell(1, 0, "true"), "");
  EXPECT_EQ(grid.CellChecked(1, 0), flexChecked);
}

TEST_F(GridTest, ListBoxSelectionMakesTheFirstRowCurrent) {
  grid.SetFormatString("Name");
  for (const char* name : {"a", "b", "c", "d"}) grid.AddItem(name);
  grid.SetSelectionMode(flexSelectionListBox);
  log.clear();
  grid.SelectRows({4, 2});
  EXPECT_EQ(grid.Row(), 4);
  EXPECT_EQ(grid.SelectedRowList(), (std::vector<int>{2, 4}));
  EXPECT_EQ(grid.SelectedRow(1), 4);
  EXPECT_EQ(log, (std::vector<std::string>{"RowColChange 4", "SelChange", "Click"}));
  EXPECT_THROW(grid.SelectRows({9}), VbError);
}

TEST_F(GridTest, ArrowKeysMoveOverShownRowsAndColumnsOnly) {
  grid.SetFormatString("A|B|C");
  for (const char* row : {"node", "child", "next", "hidden", "last"}) grid.AddItem(row);
  grid.SetIsSubtotal(1, true);
  grid.SetIsCollapsed(1, true);
  grid.SetIsSubtotal(3, true);  // a node of its own, so not under the collapsed one
  grid.SetRowHidden(4, true);
  grid.SetColHidden(1, true);
  std::vector<int> rows;
  for (int key : {vbKeyDown, vbKeyDown, vbKeyDown, vbKeyUp, vbKeyHome}) {
    grid.DefaultKeyDown(key, 0);
    rows.push_back(grid.Row());
  }
  EXPECT_EQ(rows, (std::vector<int>{3, 5, 5, 3, 1}));
  grid.DefaultKeyDown(vbKeyRight, 0);
  EXPECT_EQ(grid.Col(), 2);
  grid.DefaultKeyDown(vbKeyLeft, 0);
  EXPECT_EQ(grid.Col(), 0);
}

TEST_F(GridTest, ShrinkingKeepsTheCurrentRowInsideTheGrid) {
  grid.SetFormatString("Name");
  EXPECT_EQ(grid.Row(), -1);
  for (const char* name : {"a", "b", "c"}) grid.AddItem(name);
  grid.SetRow(3);
  grid.SetRows(2);
  EXPECT_EQ(grid.Row(), 1);
  grid.SetRows(1);
  EXPECT_EQ(grid.Row(), -1);
  EXPECT_EQ(grid.SelectedRows(), 0);
  EXPECT_THROW(grid.SetRows(0), VbError);
}

//! Lays a page out on a grid the way a list page of the detail editor does.
void LayOutAPage(Grid& g) {
  g.SetFormatString("State|>Amount|Type|Note");
  for (const char* row : {"1\t12.5\tA\tx", "2\t-3\tB\ty", "3\t7\tA\tz"}) g.AddItem(row);
  g.SetFixedCols(1);
  g.SetColHidden(0, true);
  g.SetColFormat(1, "($#,###.00)");
  g.SetColComboList(2, "A|B");
  g.SetColKey(2, "type");
  g.SetColDataType(3, 11);
  g.SetColWidth(3, 40);
  g.SetColAlignment(3, GridAlign::Center);
  g.SetEditable(flexEDKbdMouse);
  g.SetSelectionMode(flexSelectionListBox);
  g.SetIsSubtotal(1, true);
  g.SetRowOutlineLevel(1, 1);
  g.SetIsCollapsed(1, true);
  g.SetRowHidden(3, true);
  g.SetRowStyle(2, "header");
  g.SetRowData(2, Variant(42));
  g.SetCellChecked(2, 3, flexChecked);
  g.SelectRows({2, 3});
  g.SetRedraw(false);
}

TEST_F(GridTest, ResetLeavesNothingOfThePreviousPageButTheHandlers) {
  Grid frame_like("fraPage");
  grid.SetContainer(&frame_like);
  LayOutAPage(grid);
  grid.Reset();

  Grid fresh("grdTest");
  EXPECT_EQ(grid.PropertyValues(), fresh.PropertyValues());
  EXPECT_EQ(grid.Rows(), 1);
  EXPECT_EQ(grid.Cols(), 1);
  EXPECT_EQ(grid.FixedCols(), 0);
  EXPECT_FALSE(grid.ColHidden(0));
  EXPECT_EQ(grid.ColFormat(0), "");
  EXPECT_EQ(grid.ColComboList(0), "");
  EXPECT_EQ(grid.ColKey(0), "");
  EXPECT_EQ(grid.ColDataType(0), 0);
  EXPECT_EQ(grid.ColWidth(0), fresh.ColWidth(0));
  EXPECT_EQ(grid.ColAlignment(0), GridAlign::General);
  EXPECT_EQ(grid.CellChecked(0, 0), flexNoCheckbox);
  EXPECT_EQ(grid.ColIndex("type"), -1);
  EXPECT_TRUE(grid.Redraw());
  EXPECT_EQ(grid.MouseRow(), -1);

  // The next page lays itself out from nothing: no row or column of the last one shows through.
  grid.SetFormatString("Name|Value");
  grid.AddItem("a\tb");
  grid.AddItem("c\td");
  grid.AddItem("e\tf");
  EXPECT_EQ(grid.GetProperty("HiddenRows"), "");
  EXPECT_TRUE(grid.IsEffectivelyVisible());
  EXPECT_EQ(grid.Container(), &frame_like);
  EXPECT_TRUE(grid.RowData(2).IsEmpty());
  EXPECT_EQ(grid.RowStyle(2), "");

  log.clear();
  grid.SelectRows({2});
  EXPECT_EQ(log, (std::vector<std::string>{"RowColChange 2", "SelChange", "Click"}));  // the handlers stay
}

TEST_F(GridTest, AFormatStringDescribesANewColumnLayoutAndKeepsRowsAndModes) {
  LayOutAPage(grid);
  grid.SetFormatString("Name|<Value|Kind|Extra|More");
  ASSERT_EQ(grid.Cols(), 5);
  for (int c = 0; c < grid.Cols(); ++c) {
    EXPECT_FALSE(grid.ColHidden(c)) << c;
    EXPECT_EQ(grid.ColFormat(c), "") << c;
    EXPECT_EQ(grid.ColComboList(c), "") << c;
    EXPECT_EQ(grid.ColKey(c), "") << c;
    EXPECT_EQ(grid.ColDataType(c), 0) << c;
    EXPECT_EQ(grid.ColWidth(c), Grid("fresh").ColWidth(0)) << c;
  }
  EXPECT_EQ(grid.ColAlignment(1), GridAlign::Left);
  EXPECT_EQ(grid.ColAlignment(3), GridAlign::General);
  EXPECT_EQ(grid.DisplayText(1, 1), "12.5");  // no longer shown as money
  EXPECT_EQ(grid.Rows(), 4);                    // the rows, their state and the modes are not the string's
  EXPECT_TRUE(grid.RowHidden(3));
  EXPECT_EQ(grid.Editable(), flexEDKbdMouse);
  EXPECT_EQ(grid.SelectionMode(), flexSelectionListBox);
}

}  // namespace
}  // namespace kiv::ui

// A list page's rows: what edits, removals and saves do to each row's state, what the save
// is handed, and how the rows show in the page's grid.
#include "screens/kit/list_rows.h"

#include <gtest/gtest.h>

namespace kiv {
namespace {

//! The state letters of every row (L loaded, N new, C changed, R removed).
std::string States(const ListRows& rows) {
  std::string out;
  for (size_t i = 0; i < rows.Count(); ++i) out += "LNCR"[static_cast<int>(rows.Row(i).state)];
  return out;
}

//! The rows the save is handed, as "index:state".
std::vector<std::string> Changes(const ListRows& rows) {
  std::vector<std::string> out;
  rows.ForEachChange([&](size_t i, const ListRow& r) {
    out.push_back(std::to_string(i) + ":" + "LNCR"[static_cast<int>(r.state)]);
  });
  return out;
}

TEST(ListRows, EditsRemovalsAndAdditionsGiveEachRowItsStateAndTheSaveItsChangesInRowOrder) {
  ListRows rows;
  rows.AddLoaded({"SMITH", "SPOUSE"}, Variant(11));
  rows.AddLoaded({"SMITH", "CHILD"}, Variant(12));
  rows.AddLoaded({"SMITH", "CHILD"}, Variant(13));
  EXPECT_FALSE(rows.Dirty());

  EXPECT_TRUE(rows.Edit(0, 1, "SPOUSE"));  // the same text: no change
  EXPECT_FALSE(rows.Dirty());
  EXPECT_TRUE(rows.Edit(2, 1, "SPOUSE"));
  EXPECT_TRUE(rows.Remove(1));
  const size_t added = rows.AddNew({"JONES", "CHILD"});
  EXPECT_TRUE(rows.Edit(added, 1, "SPOUSE"));  // a new row stays new
  EXPECT_EQ(States(rows), "LRCN");
  EXPECT_TRUE(rows.Dirty());
  EXPECT_EQ(Changes(rows), (std::vector<std::string>{"1:R", "2:C", "3:N"}));
  EXPECT_EQ(rows.VisibleCount(), 3u);

  rows.MarkSaved();
  EXPECT_EQ(States(rows), "LLL");
  EXPECT_FALSE(rows.Dirty());
  EXPECT_EQ(rows.Row(1).key, Variant(13));
  EXPECT_EQ(rows.Row(1).cells[1], "SPOUSE");
}

TEST(ListRows, ARowAddedAndRemovedBeforeTheSaveIsNotWritten) {
  ListRows rows;
  rows.AddLoaded({"A"});
  rows.Remove(rows.AddNew({"B"}));
  EXPECT_FALSE(rows.Dirty());
  EXPECT_TRUE(Changes(rows).empty());
  rows.MarkSaved();
  EXPECT_EQ(rows.Count(), 1u);
}

TEST(ListRows, NoSuchRowOrCellAndRemovedRowsRefuseEdits) {
  ListRows rows;
  rows.AddLoaded({"A", "B"});
  EXPECT_FALSE(rows.Edit(1, 0, "x"));
  EXPECT_FALSE(rows.Edit(0, 2, "x"));
  EXPECT_FALSE(rows.Remove(5));
  rows.Remove(0);
  EXPECT_FALSE(rows.Edit(0, 0, "x"));
  EXPECT_EQ(States(rows), "R");
}

TEST(ListRows, RenderKeepsOneGridRowPerListRowWithRemovedRowsHidden) {
  ui::Grid grid("grdMaster");
  grid.SetFormatString("Name|Relation");
  grid.AddItem("stale\trow");
  ListRows rows;
  rows.AddLoaded({"SMITH", "SPOUSE"});
  rows.AddLoaded({"SMITH", "CHILD"});
  rows.AddNew({"JONES", "CHILD"});
  rows.Remove(1);
  rows.Render(grid);
  ASSERT_EQ(grid.Rows(), 4);
  EXPECT_EQ(grid.TextMatrix(1, 0), "SMITH");
  EXPECT_TRUE(grid.RowHidden(2));
  EXPECT_FALSE(grid.RowHidden(3));
  EXPECT_EQ(grid.TextMatrix(3, 1), "CHILD");
  EXPECT_EQ(rows.RowAt(grid, 3), 2);
  EXPECT_EQ(rows.RowAt(grid, 0), -1);
  EXPECT_EQ(rows.RowAt(grid, 4), -1);
}

TEST(ListRows, WriteChangesStopsAtTheFirstFailureAndMarksSavedOnlyWhenAllWereWritten) {
  ListRows rows;
  rows.AddLoaded({"A"});
  rows.AddLoaded({"B"});
  rows.AddNew({"C"});
  rows.Edit(0, 0, "A2");
  rows.Remove(1);
  std::vector<std::string> written;
  EXPECT_FALSE(rows.WriteChanges([&](const ListRow& r) {
    written.push_back(r.cells[0]);
    return r.cells[0] != "B";
  }));
  EXPECT_EQ(written, (std::vector<std::string>{"A2", "B"})) << "nothing after the failed row";
  EXPECT_EQ(States(rows), "CRN") << "a failed save keeps every change for the next try";
  EXPECT_TRUE(rows.WriteChanges([](const ListRow&) { return true; }));
  EXPECT_EQ(States(rows), "LL");
  EXPECT_FALSE(rows.Dirty());
}

TEST(ListRows, DecoratedRenderVisitsEachListRowAtItsGridRowAndStateFlagsFollowTheConvention) {
  ui::Grid grid("grdMaster");
  grid.SetFormatString("State|Name");
  ListRows rows;
  rows.AddLoaded({"", "A"});
  rows.AddLoaded({"", "B"});
  rows.AddNew({"", "C"});
  rows.Edit(0, 1, "A2");
  rows.Remove(1);
  rows.Render(grid, [&grid](int g, const ListRow& row) { grid.SetTextMatrix(g, 0, ListRows::StateFlag(row.state)); });
  EXPECT_EQ(grid.TextMatrix(1, 0), "2");
  EXPECT_EQ(grid.TextMatrix(2, 0), "3");
  EXPECT_EQ(grid.TextMatrix(3, 0), "1");
  EXPECT_EQ(ListRows::StateFlag(RowState::kLoaded), "");
}

}  // namespace
}  // namespace kiv

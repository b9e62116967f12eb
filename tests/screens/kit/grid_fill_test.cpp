// A grid filled from a recordset: each column's format, nulls shown empty, composed and
// optional columns, and a missing column failing as a lookup by name would.
#include "screens/kit/grid_fill.h"

#include <gtest/gtest.h>

#include "core/date.h"
#include "host/db_patterns.h"
#include "host/host_error.h"
#include "support/scripted_host.h"

namespace kiv {
namespace {

struct GridFillTest : ::testing::Test {
  test::ScriptedHost host;
  ui::Grid grid{"grdDetail"};

  GridFillTest() {
    grid.SetFormatString("Invoice|Date|Amount|Balance|Who");
    host.OnQuery("SELECT rows")
        .Row({{"invoice_no", 7}, {"invoice_date", Date::FromParts(2026, 3, 5)}, {"amount", 1234.5},
              {"balance", -20.0}, {"first_name", "ANN"}, {"last_name", "LEE"}})
        .Row({{"invoice_no", 8}, {"invoice_date", Variant::Null()}, {"amount", Variant::Null()},
              {"balance", 0.0}, {"first_name", Variant::Null()}, {"last_name", "KIM"}});
  }

  std::vector<FillColumn> Columns() {
    return {FillColumn::Of("invoice_no"), FillColumn::Of("invoice_date", "MM/dd/yyyy"),
            FillColumn::Of("amount", "Currency"), FillColumn::Of("BALANCE", "($#,###.00)"),
            FillColumn::Composed({"first_name", "last_name"}, [](const std::vector<Variant>& v) {
              return NzString(v[0]).empty() ? NzString(v[1]) : NzString(v[0]) + " " + NzString(v[1]);
            })};
  }
};

TEST_F(GridFillTest, EachColumnShowsThroughItsFormatAndNullsShowEmpty) {
  host::ScopedRecordset rs = host::OpenQuery(*host.db, "SELECT rows");
  GridFill fill(Columns());
  EXPECT_EQ(fill.AddRows(grid, *rs), 2);
  ASSERT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.TextMatrix(1, 0), "7");
  EXPECT_EQ(grid.TextMatrix(1, 1), "03/05/2026");
  EXPECT_EQ(grid.TextMatrix(1, 2), "$1,234.50");
  EXPECT_EQ(grid.TextMatrix(1, 3), "($20.00)");
  EXPECT_EQ(grid.TextMatrix(1, 4), "ANN LEE");
  EXPECT_EQ(grid.TextMatrix(2, 1), "");
  EXPECT_EQ(grid.TextMatrix(2, 2), "");
  EXPECT_EQ(grid.TextMatrix(2, 4), "KIM");
}

TEST_F(GridFillTest, RowsGoWhereTheCallerPutsThemAndFieldsAreFoundByPosition) {
  host::ScopedRecordset rs = host::OpenQuery(*host.db, "SELECT rows");
  grid.AddItem("first\t\t\t\t");
  GridFill fill({FillColumn::Of("last_name"), FillColumn::OptionalOf("relation")});
  fill.Bind(*rs);
  EXPECT_EQ(fill.FieldIndex("LAST_NAME"), 5);
  EXPECT_EQ(fill.FieldIndex("relation"), -1);
  EXPECT_EQ(fill.AddRow(grid, *rs, 1), 1);
  EXPECT_EQ(grid.TextMatrix(1, 0), "LEE");
  EXPECT_EQ(grid.TextMatrix(1, 1), "");  // an optional column the recordset lacks
  EXPECT_EQ(grid.TextMatrix(2, 0), "first");
}

TEST_F(GridFillTest, AColumnTheRecordsetLacksFailsAsALookupByNameWould) {
  host::ScopedRecordset rs = host::OpenQuery(*host.db, "SELECT rows");
  GridFill fill({FillColumn::Of("no_such_column")});
  try {
    fill.Bind(*rs);
    FAIL() << "binding a missing column must raise";
  } catch (const HostError& e) {
    EXPECT_EQ(e.number, 3265);
  }
}

}  // namespace
}  // namespace kiv

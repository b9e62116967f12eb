// The pick list over scripted recordsets: headers with blanks for "_", nulls shown empty,
// an empty recordset, and the lookup of a chosen column when two field names differ only by
// "_" and blank. Choosing by OK, double click, Cancel and the close box runs end to end.
#include "screens/common/frm_pick.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/db_patterns.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using test::ScriptedHost;
using ui::ActionKind;

const std::string kGroups = "SELECT * FROM kiv_customer_group ORDER BY description";

struct PickRig {
  ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  frmPick pick;

  PickRig() {
    pick.SetUi(ui);
    pick.SetDBConnection(host.db);
    pick.Load();
  }
  void Fill(const std::string& sql) {
    host::ScopedRecordset rs = host::OpenQuery(*host.db, sql);
    ASSERT_TRUE(rs);
    pick.FillFromRecordset(*rs);
    pick.Show();
  }
  std::string Act(ActionKind kind, const std::string& control, int row = 0) {
    ui::UiResult r = pick.Perform(ui::Action{kind, control, {}, {row}, 0});
    return r.ok ? std::string() : r.error;
  }
};

TEST(frmPick, ShowsEveryFieldWithBlanksForUnderscoresAndNullsEmpty) {
  PickRig rig;
  rig.host.OnQuery(kGroups)
      .Row({{"customer_group_id", "LODGE"}, {"Description", "Lodging Partners"}, {"first_name", Variant::Null()}})
      .Row({{"customer_group_id", "VIP"}, {"Description", Variant::Null()}, {"first_name", "ANN"}});
  rig.Fill(kGroups);
  const ui::Grid& grid = rig.pick.gdPick;
  EXPECT_EQ(rig.pick.Caption(), "Pick");
  EXPECT_EQ(grid.FormatString(), "customer group id|Description|first name");
  ASSERT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.TextMatrix(1, 2), "");
  EXPECT_EQ(grid.TextMatrix(2, 1), "");
  EXPECT_EQ(grid.TextMatrix(2, 2), "ANN");
  // A longer header gets a wider column.
  EXPECT_GT(grid.ColWidth(0), grid.ColWidth(1));
}

TEST(frmPick, AnEmptyRecordsetShowsTheHeaderAloneAndOkChoosesNothing) {
  PickRig rig;
  rig.host.OnQuery(kGroups).Columns({test::Col("customer_group_id"), test::Col("description")});
  rig.Fill(kGroups);
  EXPECT_EQ(rig.pick.gdPick.Rows(), 1);
  EXPECT_EQ(rig.pick.gdPick.TextMatrix(0, 0), "customer group id");
  EXPECT_EQ(rig.Act(ActionKind::Click, "cmdOk"), "");
  EXPECT_TRUE(rig.pick.Canceled());
  EXPECT_TRUE(rig.pick.ColumnValue("customer_group_id").IsNull());
}

TEST(frmPick, AnExactNameWinsOverOneThatDiffersOnlyByUnderscoreAndBlank) {
  PickRig rig;
  const std::string sql = "SELECT [group id], group_id, other_name FROM t";
  rig.host.OnQuery(sql).Row({{"group id", "BLANKED"}, {"group_id", "UNDERSCORED"}, {"other_name", "X"}});
  rig.Fill(sql);
  rig.Act(ActionKind::Click, "cmdOk");
  EXPECT_EQ(rig.pick.ColumnValue("group_id"), Variant("UNDERSCORED"));
  EXPECT_EQ(rig.pick.ColumnValue("Group Id"), Variant("BLANKED"));
  // Without an exact match, "_" and blank are the same character; nothing else is loosened.
  EXPECT_EQ(rig.pick.ColumnValue("other name"), Variant("X"));
  EXPECT_TRUE(rig.pick.ColumnValue("other  name").IsNull());
}

}  // namespace
}  // namespace kiv

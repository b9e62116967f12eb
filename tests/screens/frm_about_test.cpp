// The about box over the scripted host: the version, the database facts when the host
// reports them and a plain statement when it does not, and the system information.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "screens/about/frm_about.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

struct AboutRig {
  test::ScriptedHost host;
  frmAbout screen;
  explicit AboutRig(bool reported) {
    auto info = host.OnProcedure(frmAbout::kDatabaseInfoProcedure);
    if (reported)
      info.Row({{"database_name", "/srv/resort.db"}, {"database_engine", "SQLite 3.40.1"}, {"schema_version", 2}});
    else
      info.Fails();
    screen.SetUi(std::make_shared<test::ScriptedUi>());
    screen.SetDBConnection(host.db);
    screen.SetErrorObject(host.errors);
    screen.Load();
  }
};

TEST(About, ShowsTheVersionAndWhatTheHostReportsOfItsDatabase) {
  AboutRig rig(true);
  EXPECT_EQ(rig.screen.lblVersion.Caption(), "Version 1.0.0 (KIVCustomer=1.0.0)");
  EXPECT_EQ(rig.screen.lblDatabase.Caption(), "Database: /srv/resort.db");
  EXPECT_EQ(rig.screen.lblDatabaseEngine.Caption(), "Database engine: SQLite 3.40.1, schema version 2");
  EXPECT_EQ(rig.screen.lblUser.Caption(), "User: TESTUSER");

  AboutRig silent(false);
  EXPECT_EQ(silent.screen.lblDatabase.Caption(), "Database: (not reported by the host)");
  EXPECT_EQ(silent.screen.lblDatabaseEngine.Caption(), "Database engine: (not reported by the host)");
}

TEST(About, SystemInformationIsShownOnRequest) {
  AboutRig rig(true);
  EXPECT_FALSE(rig.screen.txtSystemInfo.Visible());
  rig.screen.Show();
  ui::UiResult r = rig.screen.Perform(ui::Action{ui::ActionKind::Click, "cmdSysInfo", {}, {}, 0});
  ASSERT_TRUE(r.ok) << r.error;
  EXPECT_TRUE(rig.screen.txtSystemInfo.Visible());
  const std::string info = rig.screen.txtSystemInfo.Text();
  for (const char* line : {"Operating system: ", "Processors: ", "Word size: ", "Compiler: ", "Language: C++2"})
    EXPECT_NE(info.find(line), std::string::npos) << line;
}

}  // namespace
}  // namespace kiv

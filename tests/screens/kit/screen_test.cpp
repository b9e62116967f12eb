// The screen base: a failing handler is reported with the routine it ran in and the form's
// own error source, the filling flag nests, and today comes from the nearest clock.
#include "screens/kit/screen.h"

#include <gtest/gtest.h>

#include "engine/c_cust_engine.h"
#include "host/host_error.h"
#include "support/scripted_host.h"
#include "ui/command_button.h"

namespace kiv {
namespace {

class frmProbe : public Screen {
 public:
  frmProbe() : Screen("frmProbe"), cmdGo(Add<ui::CommandButton>("cmdGo", "Go")) {
    OnClick(cmdGo, [this] {
      ran = true;
      if (fail) throw HostError(3709, "The connection is closed.");
    });
  }
  using Screen::FillingScope;

  ui::CommandButton& cmdGo;
  bool fail = false;
  bool ran = false;
};

TEST(Screen, AFailingHandlerIsReportedUnderItsControlAndEventAndEndsNormally) {
  test::ScriptedHost host;
  frmProbe screen;
  screen.SetErrorObject(host.errors);
  screen.cmdGo.FireClick();
  EXPECT_TRUE(screen.ran);
  EXPECT_TRUE(host.errors->Calls().empty());
  screen.fail = true;
  screen.cmdGo.FireClick();
  ASSERT_EQ(host.errors->Calls().size(), 1u);
  EXPECT_EQ(host.errors->Last().number, 3709);
  EXPECT_EQ(host.errors->Last().source, "KIVCustomer.frmProbe (1.0.0) cmdGo_Click");
  EXPECT_EQ(host.errors->Last().description, "The connection is closed.");
}

TEST(Screen, FillingNestsAndIsRestoredOnEveryWayOut) {
  frmProbe screen;
  {
    frmProbe::FillingScope outer(screen);
    {
      frmProbe::FillingScope inner(screen);
      EXPECT_TRUE(screen.Filling());
    }
    EXPECT_TRUE(screen.Filling());
  }
  EXPECT_FALSE(screen.Filling());
}

TEST(Screen, TodayComesFromItsOwnClockElseTheEnginesAndTheHostObjectsFromTheEngine) {
  test::ScriptedHost host;
  host.app->GrantAll();
  CCustEngine engine;
  engine.SetClock(std::make_shared<FixedClock>(Date::FromParts(2026, 2, 1)));
  engine.SetAppServer(host.app);
  frmProbe screen;
  screen.TakeHostObjects(engine);
  EXPECT_EQ(screen.Today().WholeDays(), Date::FromParts(2026, 2, 1).WholeDays());
  EXPECT_EQ(screen.DBConnection(), engine.DBConnection());
  EXPECT_EQ(screen.ErrorObject(), engine.ErrorObject());
  EXPECT_EQ(screen.CustomerEngine(), &engine);
  screen.SetClock(std::make_shared<FixedClock>(Date::FromParts(2027, 1, 1)));
  EXPECT_EQ(screen.Today().WholeDays(), Date::FromParts(2027, 1, 1).WholeDays());
}

}  // namespace
}  // namespace kiv

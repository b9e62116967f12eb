// The scoped wait cursor: on for the scope, restored on every way out, nested scopes
// leaving it on until the outermost closes.
#include "ui/wait_cursor.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/scripted_ui.h"

namespace kiv::ui {
namespace {

using kiv::test::ScriptedUi;

TEST(WaitCursorTest, IsOnForTheScopeAndRestoredWhenItThrows) {
  ScriptedUi ui;
  auto save = [&ui](bool fail) {
    WaitCursor wait(ui);
    EXPECT_TRUE(ui.WaitCursor());
    if (fail) throw std::runtime_error("the save failed");
  };
  save(false);
  EXPECT_FALSE(ui.WaitCursor());
  EXPECT_THROW(save(true), std::runtime_error);
  EXPECT_FALSE(ui.WaitCursor());
  EXPECT_EQ(ui.WaitCursorOnCount(), 2);
  EXPECT_EQ(ui.WaitCursorOffCount(), 2);
  EXPECT_EQ(ui.WaitDepth(), 0);
}

TEST(WaitCursorTest, AnInnerScopeLeavesTheCursorOnUntilTheOutermostCloses) {
  ScriptedUi ui;
  ScriptedUi other;
  {
    WaitCursor save(ui);
    {
      WaitCursor load_payments(ui);
      WaitCursor elsewhere(other);  // another Ui keeps its own count
      EXPECT_EQ(ui.WaitDepth(), 2);
    }
    EXPECT_TRUE(ui.WaitCursor());
    EXPECT_FALSE(other.WaitCursor());
  }
  EXPECT_FALSE(ui.WaitCursor());
  EXPECT_EQ(ui.WaitCursorOnCount(), 1);
  EXPECT_EQ(ui.WaitCursorOffCount(), 1);
}

}  // namespace
}  // namespace kiv::ui

// The scoped wait cursor and its nesting depth on the Ui.
#include "ui/wait_cursor.h"

namespace kiv::ui {

WaitCursor::WaitCursor(Ui& ui) : ui_(ui) {
  // Counted only once the cursor is on: a Ui that throws here leaves no scope to close.
  if (ui_.wait_depth_ == 0) ui_.SetWaitCursor(true);
  ++ui_.wait_depth_;
}

WaitCursor::~WaitCursor() {
  if (--ui_.wait_depth_ > 0) return;
  try {
    ui_.SetWaitCursor(false);
  } catch (...) {  // NOLINT(bugprone-empty-catch): see the header
  }
}

}  // namespace kiv::ui

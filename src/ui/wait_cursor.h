// The wait (hourglass) cursor for the length of a scope: on when the scope opens, back to
// the normal cursor when it closes, however it closes (return, error, exception).
#pragma once

#include "ui/ui.h"

namespace kiv::ui {

//! Scopes nest: only the outermost one turns the cursor on and only it turns it off, so a
//! routine that shows the wait cursor inside another's save leaves it on for the rest of
//! that save. The depth is kept on the Ui, so scopes over two Ui services are independent.
//! Code that calls Ui::SetWaitCursor itself inside a scope is on its own.
class WaitCursor {
 public:
  //! Turns the wait cursor on unless an outer scope over `ui` already has.
  explicit WaitCursor(Ui& ui);
  //! Restores the normal cursor when this is the outermost scope; a Ui that fails to do so
  //! is ignored (a cursor is not worth an error while another one unwinds).
  ~WaitCursor();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  Ui& ui_;
};

}  // namespace kiv::ui

// The screen base: host objects, the error guard and the event wiring every screen shares.
#include "screens/kit/screen.h"

#include "core/vb_error.h"
#include "core/version.h"
#include "engine/c_cust_engine.h"
#include "host/error_trap.h"

namespace kiv {

Screen::Screen(const std::string& name) : ui::Form(name), error_source_(SourcePrefix(name)) {}

Date Screen::Today() const {
  if (clock_) return clock_->Today();
  if (engine_ != nullptr && engine_->GetClock()) return engine_->GetClock()->Today();
  return SystemClock().Today();
}

void Screen::TakeHostObjects(CCustEngine& engine) {
  SetUi(engine.GetUi());
  SetDBConnection(engine.DBConnection());
  SetErrorObject(engine.ErrorObject());
  SetAppServer(engine.AppServer());
  SetCustomerEngine(&engine);
}

bool Screen::Guard(const std::string& routine, const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure(kErrInvalidCall);
    host::ReportQuietly(error_object_.get(), failure.number, error_source_ + " " + routine, failure.description,
                        FailedCommand());
    return false;
  }
}

std::function<void()> Screen::Guarded(const ui::Control& control, const char* event, std::function<void()> body) {
  return [this, routine = control.Name() + "_" + event, body = std::move(body)] { Guard(routine, body); };
}

void Screen::OnClick(ui::Control& control, std::function<void()> body) {
  control.on_click = Guarded(control, "Click", std::move(body));
}

void Screen::OnDblClick(ui::Control& control, std::function<void()> body) {
  control.on_dbl_click = Guarded(control, "DblClick", std::move(body));
}

void Screen::OnChange(ui::Control& control, std::function<void()> body) {
  control.on_change = Guarded(control, "Change", std::move(body));
}

}  // namespace kiv

// The pages' error trap.
#include "screens/detail/page_guard.h"

#include "core/vb_error.h"
#include "host/error_trap.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

bool GuardPage(frmCustomerDetail& screen, const std::string& routine, const std::function<void()>& body) {
  try {
    body();
    return true;
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure(kErrInvalidCall);
    host::ReportQuietly(screen.ErrorObject().get(), failure.number, screen.ErrorSource() + " " + routine,
                        failure.description, nullptr);
    return false;
  }
}

}  // namespace kiv

// The error trap of the detail editor's pages: a page's routine that fails is reported
// quietly under the editor's error source, as the editor's own routines are.
#pragma once
#include <functional>
#include <string>

namespace kiv {

class frmCustomerDetail;

//! Runs `body`; a failure is reported through the editor's error object with the source
//! "<editor source> <routine>". False when it failed.
bool GuardPage(frmCustomerDetail& screen, const std::string& routine, const std::function<void()>& body);

}  // namespace kiv

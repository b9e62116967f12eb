#include "host/error_trap.h"

#include <exception>

#include "core/vb_error.h"
#include "core/variant.h"
#include "host/host_error.h"

namespace kiv::host {

TrappedError CurrentFailure(int32_t default_number) {
  try {
    throw;
  } catch (const HostError& e) {
    return {e.number, e.description};
  } catch (const VbError& e) {
    return {e.Number(), e.Description()};
  } catch (const std::exception& e) {
    return {default_number, e.what()};
  } catch (...) {
    return {default_number, "Unknown failure"};
  }
}

void ReportQuietly(ErrorObject* error_object, int32_t number, const std::string& source,
                   const std::string& description, const std::shared_ptr<Command>& related) {
  if (error_object == nullptr) return;
  try {
    error_object->Display(number, source, description, false, Variant(), Variant(), Variant(), related,
                          std::string());
  } catch (...) {
    // The report is the last thing a trap does; its own failure must not escape.
  }
}

}  // namespace kiv::host

// The component's error trap: what failed (a host call, a conversion, anything else) and
// the quiet report to the host's error object that every trapping routine ends with.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "host/command.h"
#include "host/error_object.h"

namespace kiv::host {

//! Number and description of a trapped failure.
struct TrappedError {
  int32_t number = 0;
  std::string description;
};

//! The failure being handled; call only inside a catch block. Failures that carry no number
//! of their own (anything but HostError and VbError) get `default_number`.
TrappedError CurrentFailure(int32_t default_number = 0);

//! Display with the component's fixed arguments (False, three values left out, no extra text);
//! no error object means no report, and a report that fails itself is dropped.
void ReportQuietly(ErrorObject* error_object, int32_t number, const std::string& source,
                   const std::string& description, const std::shared_ptr<Command>& related);

}  // namespace kiv::host

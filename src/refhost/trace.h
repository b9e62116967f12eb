// What the reference host tells a tracer about each call the component makes on it: database
// calls (the text as sent, or the procedure name, the parameters in assignment order, the
// outputs) and the calls on the application server, error object and settings store.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/variant.h"

namespace kiv::refhost {

struct TraceEvent {
  TraceEvent() = default;
  TraceEvent(std::string operation_, std::string text_, bool is_procedure_ = false,
             std::vector<std::pair<std::string, Variant>> inputs_ = {})
      : operation(std::move(operation_)),
        text(std::move(text_)),
        is_procedure(is_procedure_),
        inputs(std::move(inputs_)) {}

  //! The connection operation: "OpenForwardReadOnlyRecordset", "ExecuteCommand", ...
  std::string operation;
  //! The SQL text exactly as the component sent it, or the procedure name.
  std::string text;
  bool is_procedure = false;
  //! A call on the host's services rather than on the database: `text` names the operation
  //! ("CheckPermission", "ErrorObject.Display", ...).
  bool is_host = false;
  //! Parameter assignments since the last run, in the order they were made.
  std::vector<std::pair<std::string, Variant>> inputs;
  //! Output, in/out and return-value parameters after the run.
  std::vector<std::pair<std::string, Variant>> outputs;
  //! Set when the call failed or was refused; `error_text` says why.
  bool error = false;
  std::string error_text;
};

using TraceHook = std::function<void(const TraceEvent&)>;

//! Passes a host-service call to the hook when tracing is on.
void TraceHostCall(const std::shared_ptr<TraceHook>& trace, const std::string& operation,
                   std::vector<std::pair<std::string, Variant>> inputs,
                   std::vector<std::pair<std::string, Variant>> outputs = {});

//! Text as a trace line holds it: a backslash, line break, carriage return, tab or other
//! control character is written as an escape (\\, \n, \r, \t, \xHH), so that no value can
//! start a line of its own.
std::string EscapeTraceText(std::string_view text);

//! One line for a trace file: the text, then " name=value" for each input, " -> name=value"
//! for each output, and " !! reason" on failure. Text values are quoted; everything written
//! is escaped as EscapeTraceText does. A card number is written masked (last four digits
//! only), track data and passwords not at all.
std::string FormatTraceLine(const TraceEvent& event);

}  // namespace kiv::refhost

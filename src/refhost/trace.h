// What the connection tells a tracer about each database call: the text as the component
// sent it (or the procedure name), the parameters in assignment order, the outputs.
#pragma once
#include <functional>
#include <string>
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
  //! Parameter assignments since the last run, in the order they were made.
  std::vector<std::pair<std::string, Variant>> inputs;
  //! Output, in/out and return-value parameters after the run.
  std::vector<std::pair<std::string, Variant>> outputs;
  //! Set when the call failed or was refused; `error_text` says why.
  bool error = false;
  std::string error_text;
};

using TraceHook = std::function<void(const TraceEvent&)>;

//! One line for a trace file: the text, then " name=value" for each input, " -> name=value"
//! for each output, and " !! reason" on failure. Text values are quoted.
std::string FormatTraceLine(const TraceEvent& event);

}  // namespace kiv::refhost

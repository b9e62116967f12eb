// One readable line per traced database call.
#include "refhost/trace.h"

namespace kiv::refhost {

namespace {
std::string Show(const Variant& v) {
  switch (v.Type()) {
    case VarType::Empty:
      return "Empty";
    case VarType::Null:
      return "Null";
    case VarType::String:
      return "\"" + v.ToString() + "\"";
    case VarType::Bytes:
      return "<" + std::to_string(v.ToBytes().size()) + " bytes>";
    case VarType::Date:
      return "#" + v.ToDate().ToIso() + "#";
    default:
      return v.ToString();
  }
}
}  // namespace

std::string FormatTraceLine(const TraceEvent& event) {
  std::string line = event.text;
  for (const auto& [name, value] : event.inputs) line += " " + name + "=" + Show(value);
  if (!event.outputs.empty()) {
    line += " ->";
    for (const auto& [name, value] : event.outputs) line += " " + name + "=" + Show(value);
  }
  if (event.error) line += " !! " + event.error_text;
  return line;
}

}  // namespace kiv::refhost

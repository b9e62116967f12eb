// One readable line per traced call, escaped so that every call stays on its own line.
#include "refhost/trace.h"

#include <cctype>

#include "core/text.h"

namespace kiv::refhost {

namespace {

std::string Show(const Variant& v) {
  switch (v.Type()) {
    case VarType::Empty:
      return "Empty";
    case VarType::Null:
      return "Null";
    case VarType::String:
      return "\"" + EscapeTraceText(v.ToString()) + "\"";
    case VarType::Bytes:
      return "<" + std::to_string(v.ToBytes().size()) + " bytes>";
    case VarType::Date:
      return "#" + v.ToDate().ToIso() + "#";
    default:
      return v.ToString();
  }
}

// A card number shows as the masked number the database keeps (its last four digits);
// track data and passwords show only that something was given.
std::string ShowInput(const std::string& name, const Variant& v) {
  if (v.IsNull() || v.IsEmpty() || v.ToString().empty()) return Show(v);
  if (EqualsNoCase(name, "@card_no")) {
    std::string digits;
    for (char c : v.ToString())
      if (std::isdigit(static_cast<unsigned char>(c))) digits.push_back(c);
    if (digits.size() <= 4) return "\"" + std::string(digits.size(), 'X') + "\"";
    return "\"" + std::string(digits.size() - 4, 'X') + digits.substr(digits.size() - 4) + "\"";
  }
  if (EqualsNoCase(name, "@track_1") || EqualsNoCase(name, "@track_2")) return "<track data withheld>";
  if (UCase(name).find("PASSWORD") != std::string::npos) return "<withheld>";
  return Show(v);
}

}  // namespace

void TraceHostCall(const std::shared_ptr<TraceHook>& trace, const std::string& operation,
                   std::vector<std::pair<std::string, Variant>> inputs,
                   std::vector<std::pair<std::string, Variant>> outputs) {
  if (trace == nullptr || !*trace) return;
  TraceEvent event(operation, operation, false, std::move(inputs));
  event.is_host = true;
  event.outputs = std::move(outputs);
  (*trace)(event);
}

std::string EscapeTraceText(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    const auto u = static_cast<unsigned char>(c);
    if (c == '\\') {
      out += "\\\\";
    } else if (c == '\n') {
      out += "\\n";
    } else if (c == '\r') {
      out += "\\r";
    } else if (c == '\t') {
      out += "\\t";
    } else if (u < 0x20 || u == 0x7F) {
      out += "\\x";
      out += kHex[u >> 4];
      out += kHex[u & 0xF];
    } else {
      out += c;
    }
  }
  return out;
}

std::string FormatTraceLine(const TraceEvent& event) {
  std::string line = EscapeTraceText(event.text);
  for (const auto& [name, value] : event.inputs) line += " " + name + "=" + ShowInput(name, value);
  if (!event.outputs.empty()) {
    line += " ->";
    for (const auto& [name, value] : event.outputs) line += " " + name + "=" + Show(value);
  }
  if (event.error) line += " !! " + EscapeTraceText(event.error_text);
  return line;
}

}  // namespace kiv::refhost

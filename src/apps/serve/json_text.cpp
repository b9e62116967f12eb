// JSON text for the browser.
#include "apps/serve/json_text.h"

#include <cstdio>

namespace kiv::serve {

std::string JsonString(std::string_view text) {
  std::string out = "\"";
  out.reserve(text.size() + 2);
  for (char ch : text) {
    switch (ch) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (static_cast<unsigned char>(ch) < 0x20) {
          char buf[8];
          std::snprintf(buf, sizeof buf, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(ch)));
          out += buf;
        } else {
          out += ch;
        }
    }
  }
  return out + "\"";
}

std::string NodeJson(const ui::ControlNode& node) {
  std::string out = "{\"name\":" + JsonString(node.name) + ",\"type\":" + JsonString(node.type) + ",\"props\":{";
  bool first = true;
  for (const auto& [name, value] : node.properties) {
    if (!first) out += ",";
    first = false;
    out += JsonString(name) + ":" + JsonString(value);
  }
  out += "},\"children\":[";
  for (size_t i = 0; i < node.children.size(); ++i) {
    if (i > 0) out += ",";
    out += NodeJson(node.children[i]);
  }
  return out + "]}";
}

}  // namespace kiv::serve

// A form's state as a tree and as indented text, for dumps, the interactive mode and
// the browser.
#include <sstream>

#include "core/text.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/prop_text.h"

namespace kiv::ui {

namespace {

ControlNode NodeOf(const Control& c, const std::vector<Control*>& all) {
  ControlNode node{c.Name(), c.TypeName(), c.PropertyValues(), {}};
  node.properties.emplace_back("Focus", BoolText(c.HasFocus()));
  for (const Control* child : all) {
    if (child->Container() == &c) node.children.push_back(NodeOf(*child, all));
  }
  return node;
}

//! Properties left out of the text rendering unless they say something.
bool WorthShowing(const std::string& name, const std::string& value) {
  static const char* const kAlways[] = {"Name", "TabIndex", "TabStop", "Cells", "SelStart", "SelLength", "SelText"};
  for (const char* n : kAlways) {
    if (EqualsNoCase(name, n)) return false;
  }
  if (EqualsNoCase(name, "Enabled") || EqualsNoCase(name, "Visible")) return value != "True";
  if (EqualsNoCase(name, "Focus")) return value == "True";
  return !value.empty() && value != "False";
}

std::string Quote(const std::string& v) {
  std::string out = "\"";
  for (char ch : v) {
    if (ch == '"' || ch == '\\') out += '\\';
    if (ch == '\n') {
      out += "\\n";
      continue;
    }
    if (ch == '\r') {
      out += "\\r";
      continue;
    }
    if (ch == '\t') {
      out += "\\t";
      continue;
    }
    out += ch;
  }
  return out + "\"";
}

void Render(const ControlNode& node, int depth, std::ostringstream& out) {
  out << std::string(depth * 2, ' ') << node.name << " (" << node.type << ")";
  for (const auto& [name, value] : node.properties) {
    if (WorthShowing(name, value)) out << " " << name << "=" << Quote(value);
  }
  out << "\n";
  if (const std::string* cells = node.Property("Cells"); cells != nullptr && !cells->empty()) {
    int row = 0;
    for (const std::string& line : Split(*cells, "\n")) {
      out << std::string(depth * 2 + 4, ' ') << "[" << row++ << "] " << Replace(line, "\t", " | ") << "\n";
    }
  }
  for (const ControlNode& child : node.children) Render(child, depth + 1, out);
}

}  // namespace

ControlNode Form::Describe() const {
  ControlNode root{name_, "Form", {}, {}};
  root.properties = {{"Caption", caption_},
                     {"Visible", BoolText(visible_)},
                     {"Loaded", BoolText(loaded_)},
                     {"ActiveControl", active_ ? active_->Name() : std::string()},
                     {"KeyPreview", BoolText(key_preview_)}};
  std::vector<Control*> all = Controls();
  for (const Control* c : all) {
    if (c->Container() == nullptr) root.children.push_back(NodeOf(*c, all));
  }
  return root;
}

std::string Form::DescribeText() const {
  std::ostringstream out;
  Render(Describe(), 0, out);
  return out.str();
}

}  // namespace kiv::ui

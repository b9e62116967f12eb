// Lookups in a form's description tree.
#include "ui/control_node.h"

#include "core/text.h"

namespace kiv::ui {

const std::string* ControlNode::Property(const std::string& prop) const {
  for (const auto& [name, value] : properties) {
    if (EqualsNoCase(name, prop)) return &value;
  }
  return nullptr;
}

const ControlNode* ControlNode::FindChild(const std::string& control_name) const {
  for (const auto& child : children) {
    if (EqualsNoCase(child.name, control_name)) return &child;
    if (const ControlNode* below = child.FindChild(control_name)) return below;
  }
  return nullptr;
}

}  // namespace kiv::ui

// A form's state as a tree, for dumps, the interactive mode and the browser: each node is
// a control (or the form itself) with its properties as text and the controls it contains.
#pragma once
#include <string>
#include <utility>
#include <vector>

namespace kiv::ui {

struct ControlNode {
  std::string name;
  std::string type;
  //! Properties in the control's registration order, values as text.
  std::vector<std::pair<std::string, std::string>> properties;
  std::vector<ControlNode> children;

  //! The value of a property (name without regard to case); null when absent.
  const std::string* Property(const std::string& prop) const;
  //! The node of a control anywhere below this one; null when absent.
  const ControlNode* FindChild(const std::string& control_name) const;
};

}  // namespace kiv::ui

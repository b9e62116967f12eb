// The few pieces of JSON the server writes: quoted strings and a form's description as a tree.
#pragma once
#include <string>
#include <string_view>

#include "ui/control_node.h"

namespace kiv::serve {

//! `text` as a JSON string literal, quotes included; control characters escaped.
std::string JsonString(std::string_view text);

//! A control node as {"name":..,"type":..,"props":{..},"children":[..]}; properties keep
//! their text values, so the browser sees exactly what a script would query.
std::string NodeJson(const ui::ControlNode& node);

}  // namespace kiv::serve

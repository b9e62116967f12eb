// The unexpected failure of a host call: thrown by host objects, trapped by every
// public operation of the component.
#pragma once
#include <cstdint>
#include <stdexcept>
#include <string>

namespace kiv {

struct HostError : std::runtime_error {
  HostError(int32_t number_, const std::string& description_)
      : std::runtime_error(description_), number(number_), description(description_) {}
  int32_t number;
  std::string description;
};

}  // namespace kiv

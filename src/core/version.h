// The component's own name and version, in one place: error sources, VersionStamp.
#pragma once
#include <string>

namespace kiv {

inline constexpr const char* kComponentName = "KIVCustomer";
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 0;

//! "1.0.0": major, minor and revision as plain decimal text joined by ".".
inline std::string VersionText() {
  return std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." + std::to_string(kVersionRevision);
}

//! The error-source prefix of a class: "KIVCustomer.CCustomer (1.0.0)".
inline std::string SourcePrefix(const std::string& class_name) {
  return std::string(kComponentName) + "." + class_name + " (" + VersionText() + ")";
}

}  // namespace kiv

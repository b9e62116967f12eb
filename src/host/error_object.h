// The host's error reporter. What it shows and logs is the host's business.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/command.h"

namespace kiv::host {

class ErrorObject {
 public:
  virtual ~ErrorObject() = default;
  //! Number, source, description, a flag (the component passes False), three optional values
  //! the component leaves out (Empty), a related object (none or the command in use), extra text.
  virtual void Display(int32_t number, const std::string& source, const std::string& description, bool flag,
                       const Variant& opt1, const Variant& opt2, const Variant& opt3,
                       const std::shared_ptr<Command>& related, const std::string& extra) = 0;
};

}  // namespace kiv::host

// Errors raised by value conversions and host calls, numbered as the platform
// the component was first written for numbers them (6 overflow, 13 type mismatch).
#pragma once
#include <cstdint>
#include <stdexcept>
#include <string>

namespace kiv {

//! Well-known error numbers of the platform.
enum ErrNo : int32_t {
  kErrOverflow = 6,
  kErrSubscript = 9,
  kErrTypeMismatch = 13,
  kErrInvalidUseOfNull = 94,
  kErrInvalidCall = 5,
  kErrKeyExists = 457,
  kErrObjectRequired = 424,
  kErrItemNotFound = 3265,  // item not found in the collection (database access library)
};

//! A trappable failure with the platform's number and description.
class VbError : public std::runtime_error {
 public:
  VbError(int32_t number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  int32_t Number() const { return number_; }
  std::string Description() const { return what(); }

 private:
  int32_t number_;
};

//! Raises the platform error with its standard description ("Overflow", "Type mismatch"...).
[[noreturn]] void RaiseError(int32_t number);

}  // namespace kiv

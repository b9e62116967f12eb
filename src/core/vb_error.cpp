// The platform's standard error descriptions, so that a raised error reads exactly as
// the original component's users saw it.
#include "core/vb_error.h"

namespace kiv {

namespace {

const char* StandardDescription(int32_t number) {
  switch (number) {
    case kErrInvalidCall: return "Invalid procedure call or argument";
    case kErrOverflow: return "Overflow";
    case kErrSubscript: return "Subscript out of range";
    case kErrTypeMismatch: return "Type mismatch";
    case kErrInvalidUseOfNull: return "Invalid use of Null";
    case kErrObjectRequired: return "Object required";
    case kErrKeyExists: return "This key is already associated with an element of this collection";
    case kErrItemNotFound: return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
    default: return "Application-defined or object-defined error";
  }
}

}  // namespace

void RaiseError(int32_t number) { throw VbError(number, StandardDescription(number)); }

}  // namespace kiv

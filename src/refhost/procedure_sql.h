// SQL pieces shared by the procedures: the customer's own columns, the live has-flags and
// the search-row layout.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "refhost/row_set.h"

namespace kiv::refhost {

//! The customer's stored columns as the customer procedures return them (alias c).
extern const char* const kCustomerColumns;

//! The five has-flags computed from the activity tables for customer alias `c`.
extern const char* const kHasFlagColumns;

//! The columns of a search or relationship row (alias c), has-flags included.
extern const char* const kSearchRowColumns;

//! Columns whose names begin with "has_" read as Boolean (the flags are expressions).
void MarkFlagsBoolean(RowSet& rows);

//! The upper bound of a prefix range: `lower <= x < PrefixEnd(lower)` holds exactly for the
//! texts that begin with `lower` (the last byte raised by one).
std::string PrefixEnd(std::string_view prefix);

}  // namespace kiv::refhost

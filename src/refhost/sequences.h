// Named number sequences kept in kiv_sequence.
#pragma once
#include <cstdint>
#include <string>

#include "refhost/sqlite_database.h"

namespace kiv::refhost {

//! The next number of a sequence, taken in one statement so two callers never get the same
//! number. A known sequence (customers, addresses, forecasts, sales orders) never answers a
//! number at or below the highest one its table already holds. Throws HostError.
int32_t NextSequenceNo(SqliteDatabase& db, const std::string& sequence_name);

}  // namespace kiv::refhost

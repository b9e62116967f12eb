// Demo group forecasts, rental contracts and report definitions, added over the customers
// the demo builder has written.
#pragma once
#include <cstdint>

struct sqlite3;

namespace kiv::refhost {

//! Travel-agent companies, group forecasts in the entry screen's lists (some tied to sales
//! orders), rental contracts with their equipment, and the standard report definitions.
//! Set-based statements over the customers already written, decided by the seed alone.
//! Throws DemoDataError when a statement fails.
void BuildForecastAndRentalDemo(sqlite3* db, uint64_t seed);

}  // namespace kiv::refhost

// Deliberate duplicate customers in the demo database, and the customer each demo house
// account was opened for.
#pragma once
#include <cstdint>

struct sqlite3;

namespace kiv::refhost {

//! Adds, after the customers already built, a few persons entered a second time (another
//! zip, or a misspelled first name), each with history of its own. Deterministic for a seed;
//! throws DemoDataError when a statement fails.
void AddDemoDuplicates(sqlite3* db, uint64_t seed);

}  // namespace kiv::refhost

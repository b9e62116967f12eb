// The money side of the demo database: invoice lines and payments for the invoices already
// made, a second (expired, inactive) card for some card holders, comments on open orders.
#pragma once
#include <cstdint>

struct sqlite3;

namespace kiv::refhost {

//! One pass over the customers, orders and invoices already written, deterministic for the
//! seed; runs inside the demo's transaction, before its indexes are built again.
void BuildMoneyDemo(sqlite3* db, uint64_t seed);

}  // namespace kiv::refhost

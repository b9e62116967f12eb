// Demo rows of the reservations, access-product and will-call pages, made from the
// reservations, access products and will calls the customer pass has already written.
#pragma once

struct sqlite3;

namespace kiv::refhost {

//! Reservations in all three states with their detail and several log rows each; access
//! products active, inactive and locked, with items and histories of every length (the
//! first product's holder has more than 250 records, the second's more than 100); more
//! will calls waiting; a cashed-in register for the default workstation. Set-based
//! statements inside the caller's transaction, deterministic for the rows already there.
void BuildReservationDemo(sqlite3* db);

}  // namespace kiv::refhost

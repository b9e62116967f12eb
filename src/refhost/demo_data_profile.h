// The demo site's custom profile columns: the statement the person generator fills for the
// customers it gives a profile, and the pass that fills the remaining site columns.
#pragma once
#include <cstdint>

struct sqlite3;

namespace kiv::refhost {

//! One profile row from the person generator's draws, in its order: customer number,
//! creating user, creation time, a size class (XS..XL, kept as the ski level), a 40% flag
//! (the waiver, whose date is the drawn date), a credit, a count (visits), a ski length
//! and the newsletter flag.
inline constexpr const char* kDemoProfileInsert =
    "INSERT INTO kiv_customer_profile (CUSTOMER_NO, CREATED_BY, CREATE_DATE, SKI_LEVEL_CODE, WAIVER_SIGNED, "
    "WAIVER_DATE, SEASON_PASS_CREDIT, LIFETIME_VISITS, SKI_LENGTH_CM, NEWSLETTER) VALUES (?1, ?2, ?3, "
    "CASE ?4 WHEN 'XS' THEN 'BG' WHEN 'S' THEN 'NV' WHEN 'M' THEN 'IN' WHEN 'L' THEN 'AD' ELSE 'EX' END, ?5, "
    "CASE WHEN ?5 = 1 THEN substr(?6, 1, 10) END, ?7, ?8, ?9, ?10)";

//! Fills the site columns the generator does not draw (boot sole, preferred lift, VIP
//! guest, last lesson, special requests) on every profile row, from the customer number and
//! the seed: one statement, so a million customers cost well under a second.
void FillDemoProfiles(sqlite3* db, uint64_t seed);

}  // namespace kiv::refhost

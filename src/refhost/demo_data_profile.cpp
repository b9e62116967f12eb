// The demo site's profile columns beyond the generator's draws, derived from a hash of the
// customer number and the seed so the same seed gives the same values.
#include "refhost/demo_data_profile.h"

#include <sqlite3.h>

#include <string>

#include "refhost/demo_data.h"

namespace kiv::refhost {

void FillDemoProfiles(sqlite3* db, uint64_t seed) {
  const std::string h =
      "((CUSTOMER_NO * 2654435761 + " + std::to_string(seed % 1000003) + ") % 1000003)";
  const std::string sql =
      "UPDATE kiv_customer_profile SET "
      "BOOT_SOLE_LENGTH = CASE WHEN " + h + " % 10 < 7 THEN 240 + " + h + " % 110 END, "
      "PREFERRED_LIFT = CASE " + h + " % 7 WHEN 0 THEN 'SUMMIT EXPRESS' WHEN 1 THEN 'BEAR CUB QUAD' "
      "WHEN 2 THEN 'GONDOLA' WHEN 3 THEN 'NORTH RIDGE TRIPLE' WHEN 4 THEN 'MAGIC CARPET' END, "
      "VIP_GUEST = CASE WHEN " + h + " % 20 = 0 THEN 1 ELSE 0 END, "
      "LAST_LESSON_DATE = CASE WHEN LIFETIME_VISITS > 5 THEN date('2026-02-28', '-' || (" + h +
      " % 700) || ' days') || ' 10:00:00' END, "
      "SPECIAL_REQUESTS = CASE " + h + " % 30 WHEN 0 THEN 'GOOFY STANCE' WHEN 1 THEN 'PREFERS MORNING LESSONS' "
      "WHEN 2 THEN 'NEEDS HELMET FITTING' END";
  char* message = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    std::string what = message != nullptr ? message : "unknown error";
    sqlite3_free(message);
    throw DemoDataError("filling the demo profiles failed: " + what);
  }
}

}  // namespace kiv::refhost

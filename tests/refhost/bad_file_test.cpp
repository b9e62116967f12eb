// Opening files that are not customer databases.
#include <gtest/gtest.h>

#include "bad_files.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

TEST(BadFiles, AForeignOrDamagedFileIsRefusedUnchangedAndAnEmptyOneBecomesADatabase) {
  for (const BadFileCase& c : BadFileCases()) {
    BadFileResult r = TryBadFile(c, TempPath("bad"));
    if (c.opens) {
      EXPECT_FALSE(r.refused) << c.name << ": " << r.message;
      EXPECT_TRUE(r.saves) << c.name;
      continue;
    }
    EXPECT_TRUE(r.refused) << c.name;
    EXPECT_FALSE(r.saves) << c.name;
    EXPECT_TRUE(r.unchanged) << c.name << " was changed";
    EXPECT_EQ(r.message.rfind("Cannot use the database file '", 0), 0u) << c.name << ": " << r.message;
  }
}

}  // namespace
}  // namespace kiv::refhost::testing

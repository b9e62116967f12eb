// Texts written into statements as they stand: whatever a clerk types, the statement reads
// and writes nothing the component's own statement would not.
#include <gtest/gtest.h>

#include "hostile_texts.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

TEST(HostileTexts, NoTextThroughAnyTextPathRunsMoreReadsMoreOrChangesRows) {
  std::vector<std::string> texts = HostileTexts(520, 7);
  ASSERT_GE(texts.size(), 500u);
  HostileTally tally = RunHostileTexts(TempPath("hostile"), texts);
  EXPECT_EQ(tally.paths, 2u);
  EXPECT_EQ(tally.calls, texts.size() * tally.paths);
  EXPECT_EQ(tally.extra_statements, 0u);
  EXPECT_EQ(tally.unexpected_reads, 0u);
  EXPECT_EQ(tally.row_changes, 0u);
  for (const std::string& example : tally.examples) ADD_FAILURE() << example;
}

class ComponentReads : public TempDatabase {};

TEST_F(ComponentReads, UsersLogsAndSqlitesOwnTablesAreOutOfReach) {
  for (const char* sql : {"SELECT password_hash FROM kiv_user", "SELECT * FROM kiv_user_permission",
                          "SELECT c.last_name, u.password_hash FROM kiv_customer c JOIN kiv_user u ON 1 = 1",
                          "SELECT * FROM sqlite_master", "SELECT * FROM kiv_error_log", "SELECT * FROM kiv_sequence"}) {
    EXPECT_EQ(Query(sql), nullptr) << sql;
    bool error = false;
    EXPECT_EQ(conn_->OpenUpdatableRecordset(sql, error), nullptr) << sql;
    EXPECT_TRUE(error) << sql;
  }
  // The customer tables stay in reach, and the host itself still reads its users.
  EXPECT_NE(Query("SELECT * FROM kiv_customer"), nullptr);
  EXPECT_EQ(NzString(Scalar("SELECT password_hash FROM kiv_user WHERE user_id = 'CLERK'")).rfind("$argon2", 0), 0u);
}

}  // namespace
}  // namespace kiv::refhost::testing

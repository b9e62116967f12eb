// Short runs of the loops `make stress` runs long: kills in the middle of saves, and two
// terminals saving one customer.
#include <gtest/gtest.h>

#include "kill_loop.h"
#include "temp_database.h"
#include "two_writers.h"

namespace kiv::refhost::testing {
namespace {

TEST(HardeningLoops, KillsMidSaveLeaveEveryAcknowledgedSaveWholeAndTheFileSound) {
  KillTally tally = RunKillLoop(TempPath("kill"), 30, 11);
  EXPECT_EQ(tally.cycles, 30);
  EXPECT_GT(tally.acknowledged, 0);
  EXPECT_EQ(tally.integrity_failures, 0);
  EXPECT_EQ(tally.lost, 0);
  EXPECT_EQ(tally.partial, 0);
  RecordProperty("acknowledged", static_cast<int>(tally.acknowledged));
}

TEST(HardeningLoops, TwoTerminalsSavingOneCustomerLoseNoUpdate) {
  TwoWriterTally tally = RunTwoWriters(TempPath("writers"), 40, 5);
  EXPECT_EQ(tally.rounds, 40);
  EXPECT_GT(tally.saves, 40);
  EXPECT_EQ(tally.lost_updates, 0);
  RecordProperty("refused", tally.refused);
}

TEST(HardeningLoops, TwoProcessesSavingTheirOwnFieldsAtOnceLoseNoUpdate) {
  TwoProcessTally tally = RunTwoProcesses(TempPath("processes"), 40);
  EXPECT_EQ(tally.saves + tally.failed, 80);
  EXPECT_EQ(tally.failed, 0);
  EXPECT_EQ(tally.lost_updates, 0);
}

}  // namespace
}  // namespace kiv::refhost::testing

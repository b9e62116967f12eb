// Units of work on the reference host: a customer's save is one transaction that another
// terminal sees whole or not at all, a refusing call inside it undoes only itself, and a
// lock held elsewhere reaches the clerk as a busy message within moments.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "temp_database.h"
#include "terminal.h"

namespace kiv::refhost::testing {
namespace {

class UnitOfWork : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    here_ = Terminal::Open(path_);
    other_ = Terminal::Open(path_);
  }
  void TearDown() override {
    here_ = {};
    other_ = {};
    TempDatabase::TearDown();
  }
  //! Customers as another terminal sees them.
  int64_t CustomersSeenElsewhere() {
    return NzLong(other_.host->Database()->QueryValue("SELECT COUNT(*) FROM kiv_customer"));
  }
  Terminal here_;
  Terminal other_;
};

TEST_F(UnitOfWork, ASaveIsSeenElsewhereOnlyWhenItsUnitCommits) {
  auto ann = here_.NewCustomer("SMITH", "1 MAIN ST");
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(ann->Update());
  // Reads inside the unit see its writes; another terminal sees nothing yet.
  EXPECT_NE(here_.OpenCustomer(ann->CustomerNo()), nullptr);
  EXPECT_EQ(CustomersSeenElsewhere(), 0);
  here_.conn->EndUnitOfWork(true);
  EXPECT_EQ(CustomersSeenElsewhere(), 1);
  EXPECT_EQ(NzLong(other_.host->Database()->QueryValue(
                "SELECT COUNT(*) FROM kiv_customer_address WHERE primary_address <> 0")),
            1);
}

TEST_F(UnitOfWork, OnlyTheOutermostUnitCommits) {
  auto ann = here_.NewCustomer("SMITH", "1 MAIN ST");
  here_.conn->BeginUnitOfWork();
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(ann->Update());
  here_.conn->EndUnitOfWork(true);
  EXPECT_EQ(CustomersSeenElsewhere(), 0);
  here_.conn->EndUnitOfWork(true);
  EXPECT_EQ(CustomersSeenElsewhere(), 1);
  // An End without a Begin changes nothing.
  here_.conn->EndUnitOfWork(false);
  EXPECT_EQ(CustomersSeenElsewhere(), 1);
}

TEST_F(UnitOfWork, AUnitEndedWithoutCommitLeavesNothing) {
  auto ann = here_.NewCustomer("SMITH", "1 MAIN ST");
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(ann->Update());
  here_.conn->EndUnitOfWork(false);
  EXPECT_EQ(CustomersSeenElsewhere(), 0);
  EXPECT_EQ(NzLong(other_.host->Database()->QueryValue("SELECT COUNT(*) FROM kiv_address")), 0);
}

TEST_F(UnitOfWork, AConnectionClosedInsideAUnitRollsItBack) {
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(here_.NewCustomer("SMITH", "1 MAIN ST")->Update());
  here_ = {};
  EXPECT_EQ(CustomersSeenElsewhere(), 0);
}

TEST_F(UnitOfWork, ARefusingCallUndoesOnlyItselfInsideTheUnit) {
  auto ann = here_.NewCustomer("SMITH", "1 MAIN ST");
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(ann->Update());
  auto tim = here_.NewCustomer("JONES", "2 HILL RD");
  tim->SetCustomerType("X");  // refused by the customer procedure
  EXPECT_FALSE(tim->Update());
  here_.conn->EndUnitOfWork(true);
  EXPECT_EQ(CustomersSeenElsewhere(), 1);
  EXPECT_EQ(NzString(other_.host->Database()->QueryValue("SELECT last_name FROM kiv_customer")), "SMITH");
}

TEST_F(UnitOfWork, TheReportOfAFailureOutlivesTheUnitRolledBackAfterIt) {
  auto log = [&] { return NzLong(other_.host->Database()->QueryValue("SELECT COUNT(*) FROM kiv_error_log")); };
  here_.conn->BeginUnitOfWork();
  ASSERT_TRUE(here_.NewCustomer("SMITH", "1 MAIN ST")->Update());
  auto tim = here_.NewCustomer("JONES", "2 HILL RD");
  tim->SetCustomerType("X");
  EXPECT_FALSE(tim->Update());
  here_.conn->EndUnitOfWork(false);
  EXPECT_EQ(CustomersSeenElsewhere(), 0);
  EXPECT_EQ(log(), 1);
}

TEST_F(UnitOfWork, ALockHeldElsewhereIsReportedAsBusyWithinMomentsAndNothingIsWritten) {
  // Another program holds the write lock.
  other_.host->Database()->Execute("BEGIN IMMEDIATE");

  // A clerk's terminal waits one second for the lock; the reports of the failure add no wait.
  here_ = Terminal::Open(path_, 1000);
  std::vector<std::string> failures;
  here_.host->SetTrace([&](const TraceEvent& e) {
    if (e.error) failures.push_back(e.error_text);
  });
  auto started = std::chrono::steady_clock::now();
  here_.conn->BeginUnitOfWork();
  auto tim = here_.NewCustomer("JONES", "2 HILL RD");
  EXPECT_FALSE(tim->Update());
  here_.conn->EndUnitOfWork(true);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(1800));
  ASSERT_FALSE(failures.empty());
  for (const std::string& shown : failures) EXPECT_NE(shown.find("busy"), std::string::npos) << shown;

  other_.host->Database()->Execute("ROLLBACK");
  // The clerk retries once the other program is done.
  here_.conn->BeginUnitOfWork();
  EXPECT_TRUE(here_.NewCustomer("JONES", "2 HILL RD")->Update());
  here_.conn->EndUnitOfWork(true);
  EXPECT_EQ(NzLong(Scalar("SELECT COUNT(*) FROM kiv_customer WHERE last_name = 'JONES'")), 1);
}

TEST_F(UnitOfWork, OpeningACustomerNeverWaitsForAnotherTerminalsSave) {
  auto ann = here_.NewCustomer("SMITH", "1 MAIN ST");
  ASSERT_TRUE(ann->Update());
  db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no) VALUES (1, ?)", {Variant(ann->CustomerNo())});
  other_.host->Database()->Execute("BEGIN IMMEDIATE");

  Terminal slow = Terminal::Open(path_, 2000);
  auto started = std::chrono::steady_clock::now();
  auto opened = slow.OpenCustomer(ann->CustomerNo());
  ASSERT_NE(opened, nullptr);
  EXPECT_TRUE(opened->OpenFlags());
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::milliseconds(1000));
  EXPECT_TRUE(opened->HasReservations());
  EXPECT_EQ(NzLong(Scalar("SELECT COUNT(*) FROM kiv_error_log")), 0);
  other_.host->Database()->Execute("ROLLBACK");
}

}  // namespace
}  // namespace kiv::refhost::testing

// Two terminals editing one customer: a save keeps what the other terminal saved in the
// fields this clerk left alone, and refuses, naming the field, when both changed one field.
#include <gtest/gtest.h>

#include "temp_database.h"
#include "terminal.h"

namespace kiv::refhost::testing {
namespace {

class ConcurrentEdit : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    a_ = Terminal::Open(path_);
    b_ = Terminal::Open(path_);
    auto ann = a_.NewCustomer("SMITH", "1 MAIN ST");
    ann->SetOccupation("TEACHER");
    ASSERT_TRUE(ann->Update());
    no_ = ann->CustomerNo();
  }
  void TearDown() override {
    a_ = {};
    b_ = {};
    TempDatabase::TearDown();
  }
  std::string Stored(const std::string& column) {
    return NzString(db_->QueryValue("SELECT " + column + " FROM kiv_customer WHERE customer_no = ?", {Variant(no_)}));
  }
  Terminal a_;
  Terminal b_;
  int32_t no_ = 0;
};

TEST_F(ConcurrentEdit, EachTerminalsChangeToADifferentFieldIsKept) {
  auto at_a = a_.OpenCustomer(no_);
  auto at_b = b_.OpenCustomer(no_);
  ASSERT_TRUE(at_a && at_b);
  at_b->SetOccupation("PILOT");
  ASSERT_TRUE(at_b->Update());
  at_a->SetEMail("ann@example.org");
  ASSERT_TRUE(at_a->Update());
  EXPECT_EQ(Stored("Occupation"), "PILOT");
  EXPECT_EQ(Stored("EMail"), "ann@example.org");

  // Saving again from A, which never saw PILOT, still keeps it.
  at_a->SetCellPhone("555-0100");
  ASSERT_TRUE(at_a->Update());
  EXPECT_EQ(Stored("Occupation"), "PILOT");
  EXPECT_EQ(Stored("cell_phone"), "555-0100");
}

TEST_F(ConcurrentEdit, BothChangingOneFieldRefusesTheLaterSaveNamingTheField) {
  auto at_a = a_.OpenCustomer(no_);
  auto at_b = b_.OpenCustomer(no_);
  ASSERT_TRUE(at_a && at_b);
  at_b->SetOccupation("PILOT");
  ASSERT_TRUE(at_b->Update());
  std::string refusal;
  a_.host->SetTrace([&](const TraceEvent& e) {
    if (e.error) refusal = e.error_text;
  });
  at_a->SetOccupation("DOCTOR");
  at_a->SetEMail("ann@example.org");
  EXPECT_FALSE(at_a->Update());
  EXPECT_NE(refusal.find("occupation"), std::string::npos) << refusal;
  EXPECT_EQ(Stored("Occupation"), "PILOT");
  EXPECT_EQ(Stored("EMail"), "");

  // Opened again, the clerk sees PILOT and can save over it.
  auto again = a_.OpenCustomer(no_);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->Occupation(), "PILOT");
  again->SetOccupation("DOCTOR");
  EXPECT_TRUE(again->Update());
  EXPECT_EQ(Stored("Occupation"), "DOCTOR");
}

TEST_F(ConcurrentEdit, TheSameChangeAtBothTerminalsIsNoConflict) {
  auto at_a = a_.OpenCustomer(no_);
  auto at_b = b_.OpenCustomer(no_);
  ASSERT_TRUE(at_a && at_b);
  at_b->SetOccupation("PILOT");
  ASSERT_TRUE(at_b->Update());
  at_a->SetOccupation("PILOT");
  EXPECT_TRUE(at_a->Update());
  EXPECT_EQ(Stored("Occupation"), "PILOT");
}

}  // namespace
}  // namespace kiv::refhost::testing

namespace kiv::refhost::testing {
namespace {

TEST_F(ConcurrentEdit, AddressesKeepTheOtherTerminalsChangeOrRefuseTheSameField) {
  auto at_a = a_.OpenCustomer(no_);
  auto at_b = b_.OpenCustomer(no_);
  ASSERT_TRUE(at_a && at_b && at_a->PrimaryAddress() && at_b->PrimaryAddress());
  const int32_t address_no = at_a->PrimaryAddress()->AddressID();
  auto stored = [&](const char* column) {
    return NzString(db_->QueryValue(std::string("SELECT ") + column + " FROM kiv_address WHERE address_no = ?",
                                    {Variant(address_no)}));
  };
  at_b->PrimaryAddress()->SetAddressLine1("9 LAKE RD");
  ASSERT_TRUE(at_b->Update());
  at_a->PrimaryAddress()->SetCity("STOWE");
  ASSERT_TRUE(at_a->Update());
  EXPECT_EQ(stored("Address_1"), "9 LAKE RD");
  EXPECT_EQ(stored("City"), "STOWE");

  // Both open it afresh and change the city.
  at_a = a_.OpenCustomer(no_);
  at_b = b_.OpenCustomer(no_);
  ASSERT_TRUE(at_a && at_b && at_a->PrimaryAddress() && at_b->PrimaryAddress());
  at_b->PrimaryAddress()->SetCity("BURLINGTON");
  ASSERT_TRUE(at_b->Update());
  std::string refusal;
  a_.host->SetTrace([&](const TraceEvent& e) {
    for (const auto& [name, value] : e.outputs)
      if (name == "@message" && !NzString(value).empty()) refusal = NzString(value);
  });
  at_a->PrimaryAddress()->SetCity("ESSEX");
  at_a->Update();
  EXPECT_NE(refusal.find("city"), std::string::npos) << refusal;
  EXPECT_EQ(stored("City"), "BURLINGTON");
  EXPECT_EQ(stored("Address_1"), "9 LAKE RD");
}

}  // namespace
}  // namespace kiv::refhost::testing

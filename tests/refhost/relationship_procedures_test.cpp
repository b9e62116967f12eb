// Households on a real database: the list the relationships page reads, one household per
// member, and a new head taking the whole household with it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class RelationshipProcedures : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    // The Smiths: Ann heads, Tim is her spouse, Kim their child. Lee lives alone; Joe heads
    // a household with Sue.
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, household_no, household_primary) "
                 "VALUES (1, 'SMITH', 'ANN', 1, 1), (2, 'SMITH', 'TIM', 1, 0), (3, 'SMITH', 'KIM', 1, 0), "
                 "(4, 'LEE', 'AL', NULL, 1), (5, 'DOE', 'JOE', 5, 1), (6, 'DOE', 'SUE', 5, 0)");
    db_->Execute("INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES "
                 "(1, 2, 'SPOUSE'), (1, 3, 'CHILD'), (5, 6, 'SPOUSE'), (9, 2, 'EMPLOYEE')");
  }
  //! "customer_no:relationship" per row of the household list as the page reads it for `member`.
  std::vector<std::string> Household(int32_t member) {
    auto rs = Rows(Procedure("KIV_SP_CUSTOMER_GetRelationship", {{"@parent_customer_no", Variant(member)},
                                                                  {"@child_customer_no", Variant(member)},
                                                                  {"@employee", Variant(false)}}));
    std::vector<std::string> rows;
    for (; rs && !rs->Eof(); rs->MoveNext())
      rows.push_back(std::to_string(NzLong(rs->FieldByName("customer_no").Value())) +
                     (NzBool(rs->FieldByName("household_primary").Value()) ? "*" : "") + ":" +
                     NzString(rs->FieldByName("rel_type_id").Value()));
    return rows;
  }
  bool Relate(int32_t parent, int32_t child, const char* type) {
    auto c = Procedure("KIV_SP_UpdateCustomerRelationship", {{"@parent_customer_no", Variant(parent)},
                                                              {"@child_customer_no", Variant(child)},
                                                              {"@rel_type_id", Variant(type)}});
    return Run(c) && c->GetParameters()["@RETURN_VALUE"].Value().ToLong() >= 0;
  }
  int32_t HouseholdNo(int32_t no) {
    return NzLong(Scalar("SELECT IFNULL(household_no, 0) FROM kiv_customer WHERE customer_no = " + std::to_string(no)));
  }
};

TEST_F(RelationshipProcedures, ListsTheWholeHouseholdHeadFirstWhicheverMemberAsks) {
  const std::vector<std::string> smiths{"1*:", "2:SPOUSE", "3:CHILD"};
  EXPECT_EQ(Household(1), smiths);
  EXPECT_EQ(Household(3), smiths);
  EXPECT_EQ(Household(4), (std::vector<std::string>{"4*:"}));
}

TEST_F(RelationshipProcedures, AMemberBelongsToOneHousehold) {
  // Sue is Joe's; Joe heads a household of his own: neither joins the Smiths.
  EXPECT_FALSE(Relate(1, 6, "FRIEND"));
  EXPECT_FALSE(Relate(1, 5, "FRIEND"));
  EXPECT_EQ(HouseholdNo(6), 5);
  // Al, alone, joins; relating him again changes his relationship, not his count of rows.
  EXPECT_TRUE(Relate(1, 4, "FRIEND"));
  EXPECT_TRUE(Relate(1, 4, "SIBLING"));
  EXPECT_EQ(HouseholdNo(4), 1);
  EXPECT_EQ(NzLong(Scalar("SELECT COUNT(*) FROM kiv_customer_rel WHERE child_customer_no = 4")), 1);
  // Tim leaves: he heads a household of his own, and keeps his employer.
  ASSERT_TRUE(Run(Procedure("KIV_SP_DeleteCustomerRelationship",
                            {{"@parent_customer_no", Variant(int32_t{1})}, {"@child_customer_no", Variant(int32_t{2})}})));
  EXPECT_EQ(HouseholdNo(2), 2);
  EXPECT_EQ(Household(1), (std::vector<std::string>{"1*:", "3:CHILD", "4:SIBLING"}));
  EXPECT_EQ(NzString(Scalar("SELECT rel_type_id FROM kiv_customer_rel WHERE child_customer_no = 2")), "EMPLOYEE");
}

TEST_F(RelationshipProcedures, ANewHeadTakesTheHouseholdWithIt) {
  ASSERT_TRUE(Run(Procedure("KIV_SP_UpdateCustomerHouseholdPrimary", {{"@customer_no", Variant(int32_t{2})}})));
  for (int32_t no : {1, 2, 3}) EXPECT_EQ(HouseholdNo(no), 2) << no;
  EXPECT_EQ(NzLong(Scalar("SELECT household_primary FROM kiv_customer WHERE customer_no = 1")), 0);
  // Kim's relationship is now to Tim; Ann waits for hers.
  EXPECT_EQ(Household(1), (std::vector<std::string>{"2*:", "1:", "3:CHILD"}));
  EXPECT_TRUE(Relate(2, 1, "SPOUSE"));
  EXPECT_EQ(Household(3), (std::vector<std::string>{"2*:", "1:SPOUSE", "3:CHILD"}));
}

}  // namespace
}  // namespace kiv::refhost::testing

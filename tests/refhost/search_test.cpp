// The customer search on a real database: case-insensitive prefixes, criteria combined,
// pages of one hundred after the last customer shown, and the advanced exclusive keys.
#include <gtest/gtest.h>

#include <set>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class SearchTest : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    Transaction t(*db_, true);
    // 250 SMITHs (first names repeat so the customer number decides), plus a few others.
    for (int i = 1; i <= 250; ++i)
      db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, customer_type, Zip, Gender) "
                   "VALUES (?, 'SMITH', ?, 'P', '05401', ?)",
                   {Variant(int32_t{i}), Variant(std::string(1, static_cast<char>('A' + i % 5))),
                    Variant(i % 2 == 0 ? "F" : "M")});
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, customer_type, Zip) VALUES "
                 "(301, 'SMITHERS', 'WAYLON', 'P', '90210'), (302, '100% PURE', 'X', 'P', NULL), "
                 "(303, '100X', 'Y', 'P', NULL), (304, 'SMIT', NULL, 'P', NULL)");
    db_->Execute("INSERT INTO kiv_customer (customer_no, company_name, customer_type, Zip) VALUES "
                 "(401, 'SMITH BROS LUMBER', 'C', '05401')");
    db_->Execute("INSERT INTO kiv_customer_group (customer_group_id, Description) VALUES ('LODGE', 'Lodges')");
    db_->Execute("INSERT INTO kiv_customer_group_member (customer_group_id, customer_no) VALUES ('LODGE', 7), "
                 "('LODGE', 301)");
    db_->Execute("INSERT INTO kiv_club (club_id) VALUES ('SKI')");
    db_->Execute("INSERT INTO kiv_club_member (club_id, customer_no, member_id, is_active) VALUES "
                 "('SKI', 8, 'M-8', 1), ('SKI', 9, 'M-9', 0)");
    db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no) VALUES (5000, 12)");
    db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no, booking_id) VALUES (1, 13, 'BK-1')");
    t.Commit();
  }

  struct Page {
    std::vector<int32_t> numbers;
    int32_t total = -1;
  };
  Page Search(const std::vector<std::pair<std::string, Variant>>& criteria, int32_t after = 0) {
    auto values = criteria;
    if (after != 0) values.emplace_back("@search_customer_no", Variant(after));
    auto command = Procedure("KIV_SP_CUSTOMER_Search", values);
    auto rs = Rows(command);
    Page page;
    if (rs == nullptr) return page;
    for (; !rs->Eof(); rs->MoveNext()) page.numbers.push_back(rs->FieldByName("customer_no").Value().ToLong());
    page.total = command->GetParameters()["@total_rowcount"].Value().ToLong();
    return page;
  }
};

TEST_F(SearchTest, PagesOfAHundredFollowNameThenNumber) {
  std::vector<int32_t> seen;
  int32_t after = 0;
  std::vector<size_t> sizes;
  for (;;) {
    Page page = Search({{"@customer_type", Variant("P")}, {"@last_name", Variant("smith")}}, after);
    EXPECT_EQ(page.total, 251);
    if (page.numbers.empty()) break;
    sizes.push_back(page.numbers.size());
    seen.insert(seen.end(), page.numbers.begin(), page.numbers.end());
    after = page.numbers.back();
  }
  EXPECT_EQ(sizes, (std::vector<size_t>{100, 100, 51}));
  ASSERT_EQ(seen.size(), 251u);
  EXPECT_EQ(std::set<int32_t>(seen.begin(), seen.end()).size(), 251u) << "no customer twice";
  // Order: last name, first name, number. SMITH A... first (5, 10, ...), SMITHERS last.
  EXPECT_EQ(seen.front(), 5);
  EXPECT_EQ(seen[1], 10);
  EXPECT_EQ(seen.back(), 301);
}

TEST_F(SearchTest, APrefixEndingInAnAtSignFindsOnlyNamesWithTheAtSignThere) {
  // Between "@" and the lower-case letters lie [ \ ] ^ _ and the backquote; upper-case letters
  // fold away under the names' collation, so none of these follows "q@".
  db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, customer_type) VALUES (501, 'Q_UNDERSCORE', 'P'), "
               "(502, 'Q[BRACKET', 'P'), (503, 'Q^HAT', 'P'), (504, 'Q@HOME', 'P'), (505, 'QA', 'P'), "
               "(506, 'q`tick', 'P')");
  EXPECT_EQ(Search({{"@last_name", Variant("q@")}}).numbers, std::vector<int32_t>{504});
  EXPECT_EQ(Search({{"@last_name", Variant("Q[")}}).numbers, std::vector<int32_t>{502});
  EXPECT_EQ(Search({{"@last_name", Variant("q")}}).total, 6);
}

TEST_F(SearchTest, CriteriaAreCaseInsensitivePrefixesCombinedWithAnd) {
  EXPECT_EQ(Search({{"@last_name", Variant("Smithe")}}).numbers, std::vector<int32_t>{301});
  EXPECT_EQ(Search({{"@last_name", Variant("  smith ")}, {"@first_name", Variant("b")}, {"@gender", Variant("f")}})
                .total,
            25);
  EXPECT_EQ(Search({{"@zip_code", Variant("902")}}).numbers, std::vector<int32_t>{301});
  EXPECT_EQ(Search({{"@customer_type", Variant("C")}, {"@company_name", Variant("smith b")}}).numbers,
            std::vector<int32_t>{401});
  EXPECT_EQ(Search({{"@last_name", Variant("smit")}, {"@customer_group_id", Variant("LODGE")}}).numbers,
            (std::vector<int32_t>{7, 301}));
  // The clerk's "%" and "_" are plain characters, and a quote is just text.
  EXPECT_EQ(Search({{"@last_name", Variant("100%")}}).numbers, std::vector<int32_t>{302});
  EXPECT_EQ(Search({{"@last_name", Variant("S_ITH")}}).total, 0);
  EXPECT_EQ(Search({{"@last_name", Variant("O'BRIEN'; DELETE FROM kiv_customer; --")}}).total, 0);
  EXPECT_EQ(Count("kiv_customer"), 255);
  // A customer without a first name still pages correctly (NULLs sort first).
  Page smit = Search({{"@last_name", Variant("SMIT")}});
  EXPECT_EQ(smit.numbers.front(), 304);
}

TEST_F(SearchTest, ClubAndAdvancedKeysFindTheirCustomers) {
  EXPECT_EQ(Search({{"@search_club", Variant(int16_t{1})}, {"@club_id", Variant("SKI")}}).numbers,
            (std::vector<int32_t>{8, 9}));
  EXPECT_EQ(Search({{"@search_club", Variant(int16_t{1})}, {"@club_is_active", Variant(int16_t{0})}}).numbers,
            std::vector<int32_t>{9});
  EXPECT_EQ(Search({{"@search_club", Variant(int16_t{1})}, {"@member_id", Variant("m-8")}}).numbers,
            std::vector<int32_t>{8});
  EXPECT_EQ(Search({{"@customer_no", Variant(int32_t{42})}}).numbers, std::vector<int32_t>{42});
  EXPECT_EQ(Search({{"@salesorder_no", Variant(int32_t{5000})}}).numbers, std::vector<int32_t>{12});
  EXPECT_EQ(Search({{"@booking_id", Variant("BK-1")}}).numbers, std::vector<int32_t>{13});
  // An exclusive key ignores the name criteria.
  EXPECT_EQ(Search({{"@customer_no", Variant(int32_t{401})}, {"@last_name", Variant("JONES")}}).numbers,
            std::vector<int32_t>{401});
  Page none = Search({});
  EXPECT_TRUE(none.numbers.empty());
  EXPECT_EQ(none.total, 0);
}

TEST_F(SearchTest, NamePrefixesUseTheIndexes) {
  for (const char* column : {"last_name", "first_name", "company_name", "Zip"}) {
    auto plan = db_->QueryRows(std::string("EXPLAIN QUERY PLAN SELECT customer_no FROM kiv_customer c WHERE c.") +
                               column + " >= 'smi' AND c." + column + " < 'smj'");
    std::string text;
    for (const auto& row : plan) text += row.back().ToString() + "\n";
    EXPECT_NE(text.find("USING"), std::string::npos) << column << ": " << text;
    EXPECT_EQ(text.find("SCAN c\n"), std::string::npos) << column << ": " << text;
  }
}

TEST_F(SearchTest, RelationshipsListBothSidesAndTheYearsEmployers) {
  db_->Execute("INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES "
               "(1, 2, 'SPOUSE'), (3, 1, 'CHILD')");
  db_->Execute("INSERT INTO kiv_customer_employer (customer_no, fiscal_year, employer_customer_no, is_active) VALUES "
               "(1, 2026, 401, 1), (1, 2025, 401, 1)");
  auto rs = Rows(Procedure("KIV_SP_GetCustomerRelationships",
                           {{"@customer_no", Variant(int32_t{1})}, {"@fiscal_year", Variant(int32_t{2026})}}));
  ASSERT_NE(rs, nullptr);
  std::vector<std::string> found;
  for (; !rs->Eof(); rs->MoveNext())
    found.push_back(rs->FieldByName("rel_type_id").Value().ToString() + ":" +
                    rs->FieldByName("customer_no").Value().ToString());
  EXPECT_EQ(found, (std::vector<std::string>{"CHILD:3", "EMPLOYER:401", "SPOUSE:2"}));
}

}  // namespace
}  // namespace kiv::refhost::testing

// Text that reaches the program from a script file: a byte-order mark before the first
// line, the statement given to `expect db`, and numbers read for `set` and for calls,
// which must be whole, finite and in range.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "apps/kivcust/customer_properties.h"
#include "apps/kivcust/script_parser.h"

namespace kiv::kivcust {
namespace {

using namespace std::string_literals;

TEST(ScriptInput, AByteOrderMarkBeforeTheFirstLineIsSkipped) {
  auto script = ParseScript("\xEF\xBB\xBF" "call OpenCustomer 1\nexpect bError = false\n");
  ASSERT_EQ(script.size(), 2u);
  EXPECT_EQ(script[0].verb, "call");
  EXPECT_EQ(script[0].line, 1);
  // Anywhere else the same bytes are no statement.
  EXPECT_THROW(ParseScript("call OpenCustomer 1\n\xEF\xBB\xBF" "dump\n"), SyntaxError);
}

TEST(ScriptInput, ExpectDbTakesAQueryAndNothingElse) {
  const char* const queries[] = {
      "expect db \"SELECT count(*) FROM kiv_customer\" >= 1",
      "expect db \"  select 1\" = 1",
      "expect db \"WITH t AS (SELECT 1 AS n) SELECT n FROM t\" = 1",
      "expect db \"(SELECT 2)\" = 2",
  };
  for (const char* line : queries) EXPECT_NO_THROW(ParseLine(line, 1)) << line;

  const char* const refused[] = {
      "expect db BEGIN = \"\"",
      "expect db \"begin transaction\" = \"\"",
      "expect db COMMIT = \"\"",
      "expect db \"SAVEPOINT s\" = \"\"",
      "expect db \"PRAGMA journal_mode\" = wal",
      "expect db \"DELETE FROM kiv_customer\" = \"\"",
      "expect db \"ATTACH 'x.db' AS x\" = \"\"",
      "expect db \"\" = \"\"",
  };
  for (const char* line : refused) {
    try {
      ParseLine(line, 3);
      ADD_FAILURE() << "accepted: " << line;
    } catch (const SyntaxError& e) {
      EXPECT_NE(e.reason.find("expect db takes one SELECT statement"), std::string::npos) << e.reason;
    }
  }
}

TEST(ScriptInput, SchemaTakesOneColumnAddedToACustomerTable) {
  const char* const accepted[] = {
      "schema \"ALTER TABLE kiv_customer_profile ADD COLUMN LOCKER VARCHAR(8)\"",
      "schema \"alter  table KIV_customer_profile\tadd shoe_width CHAR(1)\"",
  };
  for (const char* line : accepted) EXPECT_NO_THROW(ParseLine(line, 1)) << line;
  const char* const refused[] = {
      "schema \"DROP TABLE kiv_customer\"",
      "schema \"ALTER TABLE kiv_customer RENAME TO x\"",
      "schema \"ALTER TABLE kiv_user ADD x INT; DELETE FROM kiv_user\"",
      "schema \"ALTER TABLE sqlite_master ADD x INT\"",
      "schema \"\"",
  };
  for (const char* line : refused) EXPECT_THROW(ParseLine(line, 1), SyntaxError) << line;
}

TEST(ScriptInput, WholeNumbersMustBeWholeAndFitThirtyTwoBits) {
  EXPECT_EQ(ParseLong("2147483647"), 2147483647);
  EXPECT_EQ(ParseLong("-2147483648"), -2147483647 - 1);
  EXPECT_EQ(ParseLong("+42"), 42);
  const std::pair<std::string, const char*> refused[] = {
      {"2147483648", "\"2147483648\" is out of range (-2147483648 to 2147483647)"},
      {"-2147483649", "\"-2147483649\" is out of range (-2147483648 to 2147483647)"},
      {"99999999999999999999", "\"99999999999999999999\" is out of range (-2147483648 to 2147483647)"},
      {"12\0" "9"s, "\"12\\09\" is not a whole number"},
      {"12abc", "\"12abc\" is not a whole number"},
      {" 12", "\" 12\" is not a whole number"},
      {"+-5", "\"+-5\" is not a whole number"},
      {"", "\"\" is not a whole number"},
  };
  for (const auto& [text, reason] : refused) {
    try {
      ParseLong(text);
      ADD_FAILURE() << "accepted: " << text;
    } catch (const std::invalid_argument& e) {
      EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
    }
  }
}

TEST(ScriptInput, NumbersMustBeFiniteAndWhole) {
  EXPECT_EQ(ParseDouble("0.15"), 0.15);
  EXPECT_EQ(ParseDouble("-1e300"), -1e300);
  EXPECT_EQ(ParseDouble("+.5"), 0.5);
  const std::string refused[] = {"inf", "-inf", "Infinity", "nan", "NAN", "1e999", "-1e999",
                                 "1.5\0" "7"s, "12\0"s, "0x10", "1.5.2", "", "+"};
  for (const std::string& text : refused) EXPECT_THROW(ParseDouble(text), std::invalid_argument) << text;
}

TEST(ScriptInput, TheRecordsNumericFieldsHoldOnlyFiniteNumbers) {
  CCustomer customer;
  const auto* discount = FindCustomerProperty("DiscountPercentage");
  ASSERT_NE(discount, nullptr);
  discount->set(customer, "0.15");
  for (const char* text : {"inf", "nan", "1e999"}) {
    EXPECT_THROW(discount->set(customer, text), std::invalid_argument) << text;
    EXPECT_EQ(discount->get(customer), "0.15") << text;
  }
  // The record refuses them too, whoever sets them, and keeps what it held.
  const double bad[] = {HUGE_VAL, -HUGE_VAL, std::nan("")};
  for (double v : bad) {
    EXPECT_THROW(customer.SetDiscountPercentage(v), VbError);
    EXPECT_THROW(customer.SetCommissionPercentage(v), VbError);
    EXPECT_THROW(customer.SetGuestShoeSize(v), VbError);
  }
  EXPECT_EQ(customer.DiscountPercentage(), 0.15);
  EXPECT_EQ(customer.CommissionPercentage(), 0.0);
}

TEST(ScriptInput, ComparisonsReadTheWholeNumber) {
  // With a NUL inside, the text is not the number before it.
  EXPECT_FALSE(Compare("12\0" "5"s, "=", "12"));
  EXPECT_TRUE(Compare("12\0" "5"s, "!=", "12"));
  EXPECT_TRUE(Compare("nan", "=", "nan"));  // text, not a number that equals nothing
}

}  // namespace
}  // namespace kiv::kivcust

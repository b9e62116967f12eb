// Statement forms as SQLite reads the text: values differ, forms stay; a text that escapes
// its quotes changes the form.
#include "refhost/statement_shape.h"

#include <gtest/gtest.h>

#include <string>

namespace kiv::refhost {
namespace {

TEST(StatementShape, ValuesOfAnyKindLeaveTheFormAsItIs) {
  const std::string base = ShapeOf("SELECT * FROM t WHERE zip = 'x' AND n = 1").text;
  for (std::string sql : {"select *  from T where ZIP = 'it''s' and n = 2.5", "SELECT * FROM t WHERE zip = '' AND n = 0x1F",
                          "SELECT *\nFROM t\tWHERE zip = '--' AND n = 1e9", "SELECT * FROM t WHERE zip = '/*' AND n = TRUE",
                          "SELECT * FROM t WHERE zip = x'00' AND n = ?1"})
    EXPECT_EQ(ShapeOf(sql).text, base) << sql;
  EXPECT_TRUE(ShapeOf("SELECT 'a'").has_text);
  EXPECT_FALSE(ShapeOf("SELECT x'41', \"a\", 1").has_text);
}

TEST(StatementShape, TextThatLeavesItsQuotesChangesTheForm) {
  const std::string base = ShapeOf("SELECT * FROM t WHERE zip = 'x'").text;
  for (std::string sql : {"SELECT * FROM t WHERE zip = 'x' OR '1'='1'", "SELECT * FROM t WHERE zip = 'x'--'",
                          "SELECT * FROM t WHERE zip = 'x'/**/", "SELECT * FROM t WHERE zip = 'x'; DELETE FROM t",
                          "SELECT * FROM t WHERE zip = \"x\"", "SELECT * FROM t WHERE [zip] = 'x'"})
    EXPECT_NE(ShapeOf(sql).text, base) << sql;
}

TEST(StatementShape, UnclosedTokensAndNulMarkTheTextIncomplete) {
  for (std::string sql : {std::string("SELECT 'x"), std::string("SELECT \"x"), std::string("SELECT [x"),
                          std::string("SELECT 1 /* x"), std::string("SELECT 'x'\0 OR 1", 16)})
    EXPECT_FALSE(ShapeOf(sql).complete) << sql;
  EXPECT_TRUE(ShapeOf("SELECT 'x' -- to the end").complete);
}

}  // namespace
}  // namespace kiv::refhost

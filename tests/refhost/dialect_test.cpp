// Server-dialect texts become SQLite texts; literals and comments are left alone.
#include "refhost/dialect.h"

#include <gtest/gtest.h>

namespace kiv::refhost {
namespace {

TEST(Dialect, RewritesServerWordsOutsideLiterals) {
  struct Case {
    const char* in;
    const char* out;
  };
  const Case cases[] = {
      {"SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)",
       "SELECT country_id, fiscal_year FROM kiv_system_parm LIMIT 1"},
      {"select top (25) * from t WITH (NOLOCK, ROWLOCK) where a = 1;", "select * from t where a = 1 LIMIT 25"},
      {"SELECT DISTINCT TOP 3 a FROM t", "SELECT DISTINCT a FROM t LIMIT 3"},
      {"SELECT a FROM t (nolock) WHERE ISNULL(is_active,-1) <> 0", "SELECT a FROM t WHERE IFNULL(is_active,-1) <> 0"},
      {"SELECT LEN(name), GETDATE() FROM t", "SELECT LENGTH(name), kiv_now() FROM t"},
      {"SELECT [full name] FROM t WHERE x = N'abc'", "SELECT \"full name\" FROM t WHERE x = 'abc'"},
      // Inside literals and comments nothing changes, doubled quotes included.
      {"SELECT 'TOP 5 with(nolock) ISNULL(' FROM t", "SELECT 'TOP 5 with(nolock) ISNULL(' FROM t"},
      {"SELECT 'it''s ISNULL(' -- ISNULL(x)\nFROM t", "SELECT 'it''s ISNULL(' -- ISNULL(x)\nFROM t"},
      // A column named like a word, and the postfix ISNULL operator, stay.
      {"SELECT top_seller, x ISNULL FROM t", "SELECT top_seller, x ISNULL FROM t"},
      {"SELECT t.isnull_flag FROM t", "SELECT t.isnull_flag FROM t"},
      // A CTE's WITH is not a lock hint.
      {"WITH x AS (SELECT 1) SELECT * FROM x", "WITH x AS (SELECT 1) SELECT * FROM x"},
      {"UPDATE kiv_customer SET household_no = 5, household_primary = True WHERE customer_no = 5",
       "UPDATE kiv_customer SET household_no = 5, household_primary = True WHERE customer_no = 5"},
  };
  for (const auto& c : cases) EXPECT_EQ(TranslateSql(c.in), c.out) << c.in;
}

}  // namespace
}  // namespace kiv::refhost

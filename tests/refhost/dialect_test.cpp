// Server-dialect texts become SQLite texts; literals and comments are left alone.
#include "refhost/dialect.h"

#include <gtest/gtest.h>

#include <vector>

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

TEST(Dialect, EachTopLimitsTheSelectItBelongsTo) {
  struct Case {
    const char* in;
    const char* out;
  };
  const Case cases[] = {
      {"SELECT a FROM t WHERE a IN (SELECT TOP 5 b FROM u ORDER BY b)",
       "SELECT a FROM t WHERE a IN (SELECT b FROM u ORDER BY b LIMIT 5)"},
      {"SELECT TOP 2 a FROM t WHERE a IN (SELECT TOP (3) b FROM u WITH (NOLOCK) ) ORDER BY a;",
       "SELECT a FROM t WHERE a IN (SELECT b FROM u LIMIT 3) ORDER BY a LIMIT 2"},
      {"SELECT x.a FROM (SELECT TOP 1 a FROM t WHERE LEN(a) > 2 ORDER BY a DESC) x",
       "SELECT x.a FROM (SELECT a FROM t WHERE LENGTH(a) > 2 ORDER BY a DESC LIMIT 1) x"},
      // A subquery without a TOP inside a SELECT with one leaves the outer limit at the end.
      {"SELECT TOP 4 a, (SELECT MAX(b) FROM u) AS m FROM t", "SELECT a, (SELECT MAX(b) FROM u) AS m FROM t LIMIT 4"},
  };
  for (const auto& c : cases) EXPECT_EQ(TranslateSql(c.in), c.out) << c.in;
}

TEST(Dialect, ComparedIntegersBecomeParametersAndNothingElseDoes) {
  struct Case {
    const char* in;
    const char* out;
    std::vector<int64_t> values;
  };
  const Case cases[] = {
      {"SELECT * FROM kiv_customer_address WHERE customer_no = 123", "SELECT * FROM kiv_customer_address WHERE customer_no = ?",
       {123}},
      // Result columns (they name the column), positions, counts and digits inside names stay.
      {"SELECT a, 5 AS five, x1 FROM kiv_table2 WHERE b <> -7 AND c>=0 AND d=+9223372036854775807 ORDER BY 1 LIMIT 25",
       "SELECT a, 5 AS five, x1 FROM kiv_table2 WHERE b <> -? AND c>=? AND d=+? ORDER BY 1 LIMIT 25",
       {7, 0, 9223372036854775807}},
      {"SELECT (SELECT COUNT(*) FROM u WHERE u.k = 3) AS n FROM t WHERE t.k != 4 AND t.j IN (SELECT j FROM v WHERE w < 2)",
       "SELECT (SELECT COUNT(*) FROM u WHERE u.k = 3) AS n FROM t WHERE t.k != ? AND t.j IN (SELECT j FROM v WHERE w < ?)",
       {4, 2}},
      {"UPDATE t SET a = 5 WHERE b = 6", "UPDATE t SET a = ? WHERE b = ?", {5, 6}},
      // Decimals, hexadecimals, exponents and numbers beyond 64 bits keep their own meaning.
      {"SELECT * FROM t WHERE a = 1.5 OR a = .5 OR a = 2. OR a = 0x10 OR a = 1e3 OR a = -9223372036854775808",
       "SELECT * FROM t WHERE a = 1.5 OR a = .5 OR a = 2. OR a = 0x10 OR a = 1e3 OR a = -9223372036854775808", {}},
      // Literals, quoted names and comments are copied; a colon inside quotes is no parameter.
      {"SELECT * FROM t WHERE a = '5' AND \"b = 5\" = 1 AND c = '10:30' -- = 6\n/* = 7 */",
       "SELECT * FROM t WHERE a = '5' AND \"b = 5\" = ? AND c = '10:30' -- = 6\n/* = 7 */", {1}},
      // A text with parameters of its own keeps its numbers.
      {"SELECT * FROM t WHERE a = ? AND b = 5", "SELECT * FROM t WHERE a = ? AND b = 5", {}},
      // Every parameter form SQLite reads counts, the "#name" one included.
      {"SELECT#a FROM t WHERE a=1--x", "SELECT#a FROM t WHERE a=1--x", {}},
      {"SELECT * FROM t WHERE a = #b AND c = 2", "SELECT * FROM t WHERE a = #b AND c = 2", {}},
      {"SELECT * FROM t WHERE a = ?7 AND c = 2", "SELECT * FROM t WHERE a = ?7 AND c = 2", {}},
      {"SELECT * FROM t WHERE a = :b AND c = 2", "SELECT * FROM t WHERE a = :b AND c = 2", {}},
      {"SELECT * FROM t WHERE a = @b AND c = 2", "SELECT * FROM t WHERE a = @b AND c = 2", {}},
      {"SELECT * FROM t WHERE a = $b AND c = 2", "SELECT * FROM t WHERE a = $b AND c = 2", {}},
  };
  for (const auto& c : cases) {
    ParameterizedSql result = ParameterizeLiterals(c.in);
    EXPECT_EQ(result.text, c.out) << c.in;
    EXPECT_EQ(result.values, c.values) << c.in;
  }
}

}  // namespace
}  // namespace kiv::refhost

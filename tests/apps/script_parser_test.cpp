// Reading automation scripts: words, quotes and escapes, comments, each verb's shape, the
// kinds of checks, and how expected values are compared.
#include "apps/kivcust/script_parser.h"

#include <gtest/gtest.h>

namespace kiv::kivcust {
namespace {

using Words = std::vector<std::string>;

TEST(ScriptWords, QuotesGroupBlanksAndEscapesAreApplied) {
  EXPECT_EQ(SplitWords("set result.FullName \"MARY  ANN\"", 1), (Words{"set", "result.FullName", "MARY  ANN"}));
  EXPECT_EQ(SplitWords(R"(type txtNote "say \"hi\"\tand \\ then\n")", 1),
            (Words{"type", "txtNote", "say \"hi\"\tand \\ then\n"}));
  EXPECT_EQ(SplitWords("expect result.CompanyName = \"\"", 1), (Words{"expect", "result.CompanyName", "=", ""}));
  // A quote inside a word joins what follows it up to the closing quote.
  EXPECT_EQ(SplitWords("paste txtName O\"' \"X", 1), (Words{"paste", "txtName", "O' X"}));
}

TEST(ScriptWords, HashStartsACommentOnlyAtTheStartOfAWord) {
  EXPECT_EQ(SplitWords("  # a whole-line comment", 1), Words{});
  EXPECT_EQ(SplitWords("click cmdOk # why", 1), (Words{"click", "cmdOk"}));
  EXPECT_EQ(SplitWords("type txtAddress1 APT#4", 1), (Words{"type", "txtAddress1", "APT#4"}));
  EXPECT_EQ(SplitWords("type txtAddress1 \"# 4\"", 1), (Words{"type", "txtAddress1", "# 4"}));
}

TEST(ScriptWords, BadQuotingNamesTheLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"expect result.FullName = \"CYNTHIA", "a quote is not closed"},
      {"type txtNote \"a \\q b\"", "unknown escape \\q"},
      {"type txtNote \"a \\", "a backslash ends the line"},
  };
  for (const auto& [line, reason] : cases) {
    try {
      SplitWords(line, 7);
      ADD_FAILURE() << line;
    } catch (const SyntaxError& e) {
      EXPECT_EQ(e.line, 7) << line;
      EXPECT_EQ(e.reason, reason) << line;
    }
  }
}

TEST(ScriptParse, StatementsKeepTheirLineNumbersAndSkipBlankLines) {
  auto script = ParseScript("# header\n\ncall OpenCustomer 1\r\n  expect bError = false\ndump");
  ASSERT_EQ(script.size(), 3u);
  EXPECT_EQ(script[0].line, 3);
  EXPECT_EQ(script[0].verb, "call");
  EXPECT_EQ(script[0].args, (Words{"OpenCustomer", "1"}));
  EXPECT_EQ(script[1].line, 4);
  EXPECT_EQ(script[1].expect, ExpectKind::BError);
  EXPECT_EQ(script[2].line, 5);
  EXPECT_EQ(script[2].verb, "dump");
}

TEST(ScriptParse, VerbsAreReadWithoutRegardToCase) {
  auto st = ParseLine("CALL OpenCustomer 4", 1);
  ASSERT_TRUE(st);
  EXPECT_EQ(st->verb, "call");
}

TEST(ScriptParse, ChecksAreClassifiedByTheirSubject) {
  const std::pair<const char*, ExpectKind> cases[] = {
      {"expect msgbox \"Saved\"", ExpectKind::MsgBox},
      {"expect msgbox \"Saved\" \"Title\"", ExpectKind::MsgBox},
      {"expect nomsgbox", ExpectKind::NoMsgBox},
      {"expect form = frmFind", ExpectKind::Form},
      {"expect result none", ExpectKind::ResultNone},
      {"expect result.ok = true", ExpectKind::Result},
      {"expect result.address[PRIMARY].City = DENVER", ExpectKind::Result},
      {"expect bError = FALSE", ExpectKind::BError},
      {"expect sql ~ \"UPDATE kiv_customer\"", ExpectKind::Sql},
      {"expect sql !~ KIV_SP_GetCustomer", ExpectKind::Sql},
      {"expect host ~ CheckPermission", ExpectKind::Host},
      {"expect host ~ CUSTADD CUSTEDIT ErrorObject.Display", ExpectKind::Host},
      {"expect host !~ RecordTaskActivity", ExpectKind::Host},
      {"expect db \"SELECT count(*) FROM kiv_customer\" >= 1", ExpectKind::Db},
      {"expect file last ~ \"PEAK TOURS\"", ExpectKind::File},
      {"expect file group-forecast-12.html !~ <script>", ExpectKind::File},
      {"expect txtLastName.text = SMITH", ExpectKind::Control},
      {"expect fxgCustomers[1,0] ~ TAY", ExpectKind::Control},
      {"expect fxgCustomers.colhidden[6] = true", ExpectKind::Control},
      {"expect stbSearch.panel[FOUND] ~ Found", ExpectKind::Control},
  };
  for (const auto& [line, kind] : cases) {
    auto st = ParseLine(line, 1);
    ASSERT_TRUE(st) << line;
    EXPECT_EQ(st->expect, kind) << line;
  }
}

TEST(ScriptParse, LinesThatAreNotStatementsAreRefusedWithTheirReason) {
  const std::pair<const char*, const char*> cases[] = {
      {"opne customer 1", "unknown statement \"opne\""},
      {"call", "wrong number of words for \"call\""},
      {"close now", "wrong number of words for \"close\""},
      {"edit fxgGrid 1 2", "wrong number of words for \"edit\""},
      {"today 2026-13-01", "\"2026-13-01\" is not a date (YYYY-MM-DD)"},
      {"today 1/3/2026", "\"1/3/2026\" is not a date (YYYY-MM-DD)"},
      {"date dtDOB tomorrow", "\"tomorrow\" is not a date (YYYY-MM-DD or none)"},
      {"set FullName X", "expected: set result.PROP VALUE"},
      {"answer Maybe", "\"Maybe\" is not an answer (Yes No OK Cancel)"},
      {"expect result.FullName SMITH", "expected: expect SUBJECT OP VALUE"},
      {"expect result.FullName == SMITH", "\"==\" is not a comparison (= != ~ !~ < <= > >=)"},
      {"expect sql = TEXT", "expected: expect sql ~ TEXT"},
      {"expect host = TEXT", "expected: expect host ~ TEXT [THEN...] or expect host !~ TEXT"},
      {"expect host ~", "expected: expect host ~ TEXT [THEN...] or expect host !~ TEXT"},
      {"expect host !~ A B", "expected: expect host ~ TEXT [THEN...] or expect host !~ TEXT"},
      {"expect sql ~ A B", "expected: expect SUBJECT OP VALUE"},
      {"expect bError = maybe", "expected: expect bError = true|false"},
      {"expect db \"SELECT 1\" 1", "expected: expect db \"SELECT ...\" OP VALUE"},
      {"expect result maybe", "expected: expect result none"},
      {"expect file last = TEXT", "expected: expect file PATH|last ~ TEXT or expect file PATH|last !~ TEXT"},
      {"expect file last ~", "expected: expect file PATH|last ~ TEXT or expect file PATH|last !~ TEXT"},
      {"expect lonely = 1", "\"lonely\" is not something to expect (CTRL.PROP, GRID[ROW,COL], result.PROP, ...)"},
      {"expect msgbox", "expected: expect msgbox \"TEXT\" [\"TITLE\"]"},
  };
  for (const auto& [line, reason] : cases) {
    try {
      ParseLine(line, 12);
      ADD_FAILURE() << "accepted: " << line;
    } catch (const SyntaxError& e) {
      EXPECT_EQ(e.reason, reason) << line;
      EXPECT_EQ(std::string(e.what()), std::string("line 12: ") + reason);
    }
  }
}

TEST(ScriptCompare, NumbersCompareByValueAndTextExactly) {
  EXPECT_TRUE(Compare("12.5", "=", "12.50"));
  EXPECT_TRUE(Compare("2001", ">", "2000"));
  EXPECT_FALSE(Compare("999", ">", "2000"));  // not as text, where "999" > "2000"
  EXPECT_TRUE(Compare("7", "<=", "7"));
  EXPECT_TRUE(Compare("SMITH", "=", "SMITH"));
  EXPECT_FALSE(Compare("SMITH", "=", "smith"));
  EXPECT_TRUE(Compare("SMITH", "!=", "smith"));
  EXPECT_FALSE(Compare("", "=", "0"));
}

TEST(ScriptCompare, BooleansIgnoreCaseAndContainmentLooksInside) {
  EXPECT_TRUE(Compare("True", "=", "true"));
  EXPECT_TRUE(Compare("False", "!=", "TRUE"));
  EXPECT_TRUE(Compare("PARK CITY, UT", "~", "CITY"));
  EXPECT_FALSE(Compare("PARK CITY, UT", "~", "city"));
  EXPECT_TRUE(Compare("PARK CITY, UT", "!~", "DENVER"));
}

}  // namespace
}  // namespace kiv::kivcust

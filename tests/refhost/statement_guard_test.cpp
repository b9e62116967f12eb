// A clerk's text holding quotes at the end of one of the component's statements is one value,
// whatever it holds; a statement the component never sends stays refused.
#include "refhost/statement_guard.h"

#include <gtest/gtest.h>

#include <string>

namespace kiv::refhost {
namespace {

TEST(StatementGuard, AClerksTextWithQuotesAtTheEndIsTakenAsOneValue) {
  const StatementGuard& guard = StatementGuard::Standard();
  struct Case {
    const char* sent;
    const char* meant;
  };
  const Case cases[] = {
      {"SELECT * FROM kiv_account WHERE account_id = 'A-1'", "SELECT * FROM kiv_account WHERE account_id = 'A-1'"},
      {"SELECT * FROM kiv_account WHERE account_id = 'O'BRIEN'",
       "SELECT * FROM kiv_account WHERE account_id = 'O''BRIEN'"},
      {"SELECT * FROM kiv_account WHERE account_id = 'A4' OR '1'='1'",
       "SELECT * FROM kiv_account WHERE account_id = 'A4'' OR ''1''=''1'"},
      {"SELECT * FROM kiv_account WHERE account_id = 'x'; DELETE FROM kiv_customer; --'",
       "SELECT * FROM kiv_account WHERE account_id = 'x''; DELETE FROM kiv_customer; --'"},
      {"SELECT * FROM kiv_zip_code WHERE zip = ''''", "SELECT * FROM kiv_zip_code WHERE zip = ''''"},
  };
  for (const Case& c : cases) {
    std::string meant = guard.AsMeant(c.sent);
    EXPECT_EQ(meant, c.meant) << c.sent;
  }
  // Nothing to take as a value: the statement is left as sent, for the guard to refuse.
  for (const char* sent : {"SELECT * FROM kiv_user WHERE user_id = 'x' OR '1'='1'",
                           "SELECT * FROM kiv_account WHERE account_id = 'x' --", "DELETE FROM kiv_account WHERE 'a'='a'"})
    EXPECT_EQ(guard.AsMeant(sent), sent);
}

}  // namespace
}  // namespace kiv::refhost

// The known statements with texts in them, and the authorizer of component statements.
#include "refhost/statement_guard.h"

#include <sqlite3.h>

#include <cstring>

#include "refhost/dialect.h"
#include "refhost/statement_shape.h"

namespace kiv::refhost {

namespace {

// Every statement the component builds with a quoted text in it, with sample values where
// it puts a clerk's text or a number. The postal code and the account are typed by a clerk.
constexpr const char* kComponentStatements[] = {
    "SELECT * FROM kiv_zip_code WHERE zip = '05401'",
    "SELECT description, account_limit, account_balance FROM kiv_account WHERE account_id = 'A-1'",
    "SELECT * FROM kiv_address_type  WHERE address_type <> 'PRIMARY' ORDER BY address_type",
    "SELECT COUNT(rel_type_id) AS countrel FROM kiv_customer_rel WHERE parent_customer_no = 1 OR "
    "child_customer_no = 1 AND rel_type_id = 'EMPLOYEE'",
    "SELECT * FROM kiv_customer_rel WHERE child_customer_no = 1 AND rel_type_id = 'EMPLOYEE'",
    "SELECT * FROM kiv_customer_rel WHERE child_customer_no = 1 AND rel_type_id <> 'EMPLOYEE'",
    "SELECT * FROM kiv_relation  WHERE rel_type_id <> 'EMPLOYEE' ORDER By description",
    "SELECT * FROM kiv_account WHERE account_id = 'A-1'",
};

// Tables a component statement never touches: who may sign in and with what, what was
// done and what failed, and the numbering.
constexpr const char* kPrivateTables[] = {"kiv_user", "kiv_user_permission", "kiv_user_setting",
                                          "kiv_activity_log", "kiv_error_log", "kiv_sequence"};

bool PrivateTable(const char* table) {
  if (table == nullptr) return false;
  if (strncasecmp(table, "kiv_", 4) != 0) return true;  // SQLite's own tables, anything foreign
  for (const char* name : kPrivateTables)
    if (strcasecmp(table, name) == 0) return true;
  return false;
}

int Authorize(void* data, int action, const char* a, const char* /*b*/, const char* database,
              const char* /*trigger*/) {
  if (!*static_cast<const bool*>(data)) return SQLITE_OK;
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
      return SQLITE_OK;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      if (database != nullptr && std::strcmp(database, "main") != 0) return SQLITE_DENY;
      return PrivateTable(a) ? SQLITE_DENY : SQLITE_OK;
    case SQLITE_FUNCTION:
      return a != nullptr && (strcasecmp(a, "load_extension") == 0 || strcasecmp(a, "fts3_tokenizer") == 0)
                 ? SQLITE_DENY
                 : SQLITE_OK;
    default:
      // Schema changes, pragmas, attachments, transactions: never from a component text.
      return SQLITE_DENY;
  }
}

std::string PreparedForm(std::string_view sent) { return ParameterizeLiterals(TranslateSql(sent)).text; }

}  // namespace

StatementGuard::StatementGuard() {
  for (const char* sql : kComponentStatements) shapes_.insert(ShapeOf(PreparedForm(sql)).text);
}

const StatementGuard& StatementGuard::Standard() {
  static const StatementGuard guard;
  return guard;
}

std::string StatementGuard::Refusal(std::string_view sent, std::string_view prepared) const {
  StatementShape original = ShapeOf(sent);
  if (!original.complete)
    return "The statement was refused: it holds a NUL character or an unclosed text, name or comment.";
  if (!original.has_text) return {};
  StatementShape shape = ShapeOf(prepared);
  if (shape.complete && shapes_.count(shape.text) != 0) return {};
  return "The statement was refused: a text in it changed what the statement does.";
}

std::string StatementGuard::AsMeant(std::string_view sent) const {
  std::string text(sent);
  if (Refusal(text, PreparedForm(text)).empty()) return text;
  size_t open = text.find('\'');
  size_t close = text.find_last_not_of(" \t\r\n");
  if (open == std::string::npos || close == std::string::npos || close <= open || text[close] != '\'') return text;
  std::string value = text.substr(open + 1, close - open - 1);
  std::string doubled;
  for (char c : value) {
    doubled += c;
    if (c == '\'') doubled += '\'';
  }
  std::string mended = text.substr(0, open + 1) + doubled + text.substr(close);
  if (!Refusal(mended, PreparedForm(mended)).empty()) return text;
  return mended;
}

void StatementGuard::InstallAuthorizer(sqlite3* db, const bool* active) {
  sqlite3_set_authorizer(db, Authorize, const_cast<bool*>(active));
}

}  // namespace kiv::refhost

// The `schema` statement: a site adds a column of its own with plain SQL, as a site's staff
// would, straight on the database file and past the component, so a script can show that
// the screens take the new column with no change to the program.
#include <sqlite3.h>

#include <string>

#include "apps/kivcust/interpreter.h"
#include "core/text.h"

namespace kiv::kivcust {

bool Interpreter::DoSchema(const Statement& st) {
  const std::string& sql = st.args[0];
  if (!IsSiteColumnChange(sql)) return Fail("schema takes one ALTER TABLE kiv_... ADD statement");
  sqlite3* db = session_.Database().Handle();
  sqlite3_stmt* stmt = nullptr;
  const char* tail = nullptr;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, &tail) != SQLITE_OK)
    return Fail("the change cannot run: " + std::string(sqlite3_errmsg(db)));
  const std::string rest = tail != nullptr ? Trim(tail) : std::string();
  if (stmt == nullptr || !rest.empty()) {
    sqlite3_finalize(stmt);
    return Fail("schema takes one statement");
  }
  const int rc = sqlite3_step(stmt);
  const std::string error = rc == SQLITE_DONE ? std::string() : sqlite3_errmsg(db);
  sqlite3_finalize(stmt);
  if (!error.empty()) return Fail("the change failed: " + error);
  return true;
}

}  // namespace kiv::kivcust

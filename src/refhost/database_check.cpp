// Read-only checks of a database file on open.
#include "refhost/database_check.h"

#include <sqlite3.h>

#include <cstring>
#include <fstream>
#include <set>

#include "core/text.h"
#include "host/host_error.h"
#include "refhost/schema.h"

namespace kiv::refhost {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw HostError(kErrOpen, "Cannot use the database file '" + path + "': " + why);
}

// The tables the first version already had; an older file must hold them all.
const std::set<std::string> kTablesOfEveryVersion = {"KIV_SYSTEM_PARM", "KIV_SEQUENCE", "KIV_CUSTOMER", "KIV_ADDRESS",
                                                     "KIV_CUSTOMER_ADDRESS", "KIV_USER", "KIV_USER_PERMISSION"};

// The tables schema.sql creates, in capitals.
std::set<std::string> SchemaTables() {
  std::set<std::string> tables;
  const std::string sql(SchemaSql());
  const std::string marker = "CREATE TABLE ";
  for (size_t at = sql.find(marker); at != std::string::npos; at = sql.find(marker, at + 1)) {
    size_t start = at + marker.size();
    size_t end = sql.find_first_of(" (\n", start);
    tables.insert(UCase(sql.substr(start, end - start)));
  }
  return tables;
}

// Runs a read; a lock or a damaged page becomes the refusal a clerk can act on.
std::vector<std::string> ReadTexts(sqlite3* db, const std::string& path, const char* sql) {
  sqlite3_stmt* stmt = nullptr;
  std::vector<std::string> texts;
  int rc = sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
  if (rc == SQLITE_OK) {
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
      texts.emplace_back(text != nullptr ? text : "");
    }
  }
  std::string why = sqlite3_errmsg(db);
  sqlite3_finalize(stmt);
  if (rc == SQLITE_DONE) return texts;
  if ((rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED)
    Refuse(path, "it is locked by another program (" + why + ").");
  Refuse(path, "it is not a customer database or it is damaged (" + why + ").");
}

void CheckHeader(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char header[16] = {};
  in.read(header, sizeof header);
  if (in.gcount() == 0) return;  // empty: a new database
  if (in.gcount() < static_cast<std::streamsize>(sizeof header) || std::memcmp(header, "SQLite format 3", 16) != 0)
    Refuse(path, "it is not a customer database or it is damaged (it is not an SQLite database file).");
}

}  // namespace

void CheckCustomerFile(sqlite3* db, const std::string& path) {
  CheckHeader(path);
  std::vector<std::string> tables = ReadTexts(db, path, "SELECT name FROM sqlite_master WHERE type = 'table'");
  int version = std::stoi(ReadTexts(db, path, "PRAGMA user_version").at(0));
  if (tables.empty() && version == 0) return;  // a new database
  if (version > kSchemaVersion)
    Refuse(path, "its schema version " + std::to_string(version) + " is newer than this program understands (version " +
                     std::to_string(kSchemaVersion) + "). Use a newer program.");
  if (version == 0) Refuse(path, "it is not a customer database (it holds other tables).");
  // An older file is upgraded once it has passed these checks; the upgrade adds the tables
  // of later versions, so only those every version has are required of it.
  std::set<std::string> present;
  for (const std::string& t : tables) present.insert(UCase(t));
  std::string missing;
  for (const std::string& t : SchemaTables()) {
    if (version < kSchemaVersion && kTablesOfEveryVersion.count(t) == 0) continue;
    if (present.count(t) == 0) missing += (missing.empty() ? "" : ", ") + LCase(t);
  }
  if (!missing.empty()) Refuse(path, "it is not a whole customer database (missing: " + missing + ").");

  std::vector<std::string> check = ReadTexts(db, path, "PRAGMA quick_check(5)");
  if (check.size() == 1 && check[0] == "ok") return;
  std::string first = check.empty() ? std::string("no answer") : check[0];
  const std::string banner = "*** in database main ***\n";
  if (first.rfind(banner, 0) == 0) first.erase(0, banner.size());
  for (char& ch : first)
    if (ch == '\n') ch = ' ';
  Refuse(path, "it is damaged (" + first + "). Restore it from a copy or repair it before use.");
}

}  // namespace kiv::refhost

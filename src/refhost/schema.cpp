// Creating and checking the customer database schema on open.
#include "refhost/schema.h"

#include "host/host_error.h"

namespace kiv::refhost {

void EnsureSchema(SqliteDatabase& db) {
  const std::string where = "Cannot use the database file '" + db.Path() + "': ";
  int version = static_cast<int>(NzLong(db.QueryValue("PRAGMA user_version")));
  if (version > kSchemaVersion) {
    throw HostError(kErrOpen, where + "its schema version " + std::to_string(version) +
                                  " is newer than this program understands (version " +
                                  std::to_string(kSchemaVersion) + "). Use a newer program.");
  }
  if (version == kSchemaVersion) return;
  if (version != 0) {
    throw HostError(kErrOpen, where + "its schema version " + std::to_string(version) +
                                  " is older than this program can upgrade.");
  }
  Transaction transaction(db, true);
  // Another program may have created the file while we waited for the lock: look again.
  if (NzLong(db.QueryValue("PRAGMA user_version")) == kSchemaVersion) return;
  if (NzLong(db.QueryValue("SELECT COUNT(*) FROM sqlite_master")) != 0)
    throw HostError(kErrOpen, where + "it is not a customer database (it holds other tables).");
  db.ExecScript(std::string(SchemaSql()));
  transaction.Commit();
}

}  // namespace kiv::refhost

// Creating and checking the customer database schema on open.
#include "refhost/schema.h"

#include "host/host_error.h"
#include "refhost/password_hash.h"
#include "refhost/schema_upgrade.h"

namespace kiv::refhost {

namespace {

// Version 2 keeps a salted hash instead of each user's password. The old column goes with
// secure deletion on, so the freed pages do not keep the passwords either.
void UpgradeFromVersion1(SqliteDatabase& db) {
  Transaction transaction(db, true);
  if (NzLong(db.QueryValue("PRAGMA user_version")) != 1) return;  // another program upgraded it
  db.ExecScript("PRAGMA secure_delete = ON; ALTER TABLE kiv_user ADD COLUMN password_hash VARCHAR(128);");
  for (const auto& row : db.QueryRows("SELECT user_id, password FROM kiv_user WHERE IFNULL(password, '') <> ''"))
    db.Execute("UPDATE kiv_user SET password_hash = ? WHERE user_id = ?",
               {Variant(HashPassword(row[1].ToString())), row[0]});
  db.ExecScript("ALTER TABLE kiv_user DROP COLUMN password; PRAGMA user_version = 2;");
  transaction.Commit();
  db.ExecScript("PRAGMA secure_delete = OFF;");
}

// Every later version only adds tables, columns, indexes and sequences.
void UpgradeFromVersion2(SqliteDatabase& db) {
  Transaction transaction(db, true);
  int64_t version = NzLong(db.QueryValue("PRAGMA user_version"));
  if (version == kSchemaVersion) return;  // another program upgraded it
  AddWhatTheSchemaLacks(db);
  transaction.Commit();
}

}  // namespace

void EnsureSchema(SqliteDatabase& db) {
  const std::string where = "Cannot use the database file '" + db.Path() + "': ";
  int version = static_cast<int>(NzLong(db.QueryValue("PRAGMA user_version")));
  if (version > kSchemaVersion) {
    throw HostError(kErrOpen, where + "its schema version " + std::to_string(version) +
                                  " is newer than this program understands (version " +
                                  std::to_string(kSchemaVersion) + "). Use a newer program.");
  }
  if (version == kSchemaVersion) return;
  if (version == 1) {
    UpgradeFromVersion1(db);
    version = 2;
  }
  if (version >= 2) return UpgradeFromVersion2(db);
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

// Opening the customer database and signing users in to it.
#include "refhost/ref_host.h"

#include "host/host_error.h"
#include "refhost/password_hash.h"
#include "refhost/ref_app_server.h"
#include "refhost/schema.h"

namespace kiv::refhost {

std::shared_ptr<RefHost> RefHost::Open(const std::string& path, const OpenOptions& options) {
  auto db = SqliteDatabase::Open(path, options);
  try {
    EnsureSchema(*db);
  } catch (const HostError& e) {
    if (e.number == kErrOpen) throw;
    // A lock or a damaged page met while reading the schema is still a file we cannot use.
    throw HostError(kErrOpen, "Cannot use the database file '" + path + "': " + e.description);
  }
  return std::shared_ptr<RefHost>(new RefHost(std::move(db)));
}

std::shared_ptr<host::AppServer> RefHost::SignIn(const std::string& user_id, const std::string& password) {
  auto rows =
      db_->QueryRows("SELECT user_id, password_hash, is_active FROM kiv_user WHERE user_id = ?", {Variant(user_id)});
  if (rows.empty())
    throw HostError(kErrOpen, "'" + user_id + "' is not a user of the customer database '" + db_->Path() + "'.");
  if (!NzBool(rows[0][2])) throw HostError(kErrOpen, "The user '" + user_id + "' is no longer active.");
  if (!password.empty() && !PasswordMatches(NzString(rows[0][1]), password))
    throw HostError(kErrOpen, "The password given for the user '" + user_id + "' is not valid.");
  return std::make_shared<RefAppServer>(db_, rows[0][0].ToString(), password, trace_);
}

void RefHost::SetTrace(TraceHook hook) { *trace_ = std::move(hook); }

}  // namespace kiv::refhost

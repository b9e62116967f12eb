// The reference host: one customer database file, the users who sign in to it and the
// application server each of them gets. This is what the program opens.
#pragma once
#include <memory>
#include <string>

#include "host/app_server.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"

namespace kiv::refhost {

class SqliteConnection;

class RefHost {
 public:
  //! Opens the file (creating it and its schema when missing and allowed). Throws HostError
  //! with one clear message when the file is missing, read-only, locked, damaged or newer.
  static std::shared_ptr<RefHost> Open(const std::string& path, const OpenOptions& options = {});

  //! The open database, for demo-data builders and checks.
  std::shared_ptr<SqliteDatabase> Database() const { return db_; }

  //! The application server of a user of kiv_user; throws HostError naming the user when the
  //! user is unknown or inactive, or when a password is given and is not the user's. Without a
  //! password the user signs in by id alone (the suite vouched for them) and cannot read
  //! cards on file; the password is kept in memory only, for the procedures that ask for it.
  std::shared_ptr<host::AppServer> SignIn(const std::string& user_id, const std::string& password = {});

  //! Every database call through connections handed out by SignIn goes to the hook (also the
  //! ones already handed out). An empty hook stops tracing.
  void SetTrace(TraceHook hook);

 private:
  explicit RefHost(std::shared_ptr<SqliteDatabase> db) : db_(std::move(db)) {}
  std::shared_ptr<SqliteDatabase> db_;
  std::shared_ptr<TraceHook> trace_ = std::make_shared<TraceHook>();
};

}  // namespace kiv::refhost

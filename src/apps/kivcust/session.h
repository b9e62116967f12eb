// One run of the program against one database: the reference host, the signed-in user's
// application server, the engine, the script Ui, the clock and the trace.
#pragma once
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>
#include <optional>
#include <string>

#include "apps/kivcust/script_ui.h"
#include "apps/kivcust/trace_writer.h"
#include "core/clock.h"
#include "engine/c_cust_engine.h"
#include "refhost/ref_host.h"

namespace kiv::kivcust {

struct SessionOptions {
  std::string db_path;
  //! A missing file is created (empty schema) instead of refused.
  bool create_if_missing = false;
  std::string user;
  //! The user's password, checked at sign-in and kept for the procedures that ask for it
  //! (cards on file); empty signs in by id alone.
  std::string password;
  //! Empty: no trace file (the in-memory trace for `expect sql` is always kept).
  std::string trace_file;
  //! Adds to the trace file instead of starting it afresh (the second script of a run).
  bool append_trace = false;
  //! Fixes the clock; the machine's clock when absent.
  std::optional<Date> today;
};

class Session {
 public:
  //! Opens the database and signs the user in. Throws HostError (database or user problems)
  //! or std::runtime_error (trace file) with one clear message.
  explicit Session(const SessionOptions& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  //! Signs in as another user: a new application server and a new engine reading that
  //! user's rights. Throws HostError naming an unknown user or refusing a wrong password.
  void SignIn(const std::string& user, const std::string& password);
  //! The password the session was opened with, for signing in as another user.
  const std::string& Password() const { return password_; }
  //! Fixes today's date for the engine, its screens and the database.
  void SetToday(Date today);
  Date Today() const { return clock_->Today(); }

  const std::string& User() const { return user_; }
  CCustEngine& Engine() { return *engine_; }
  const std::shared_ptr<host::AppServer>& AppServer() const { return app_server_; }
  ScriptUi& Ui() { return *ui_; }
  const std::shared_ptr<ScriptUi>& UiService() const { return ui_; }
  TraceWriter& Trace() { return trace_; }
  refhost::SqliteDatabase& Database() { return *host_->Database(); }
  //! The documents the host's services wrote in this session, oldest first.
  const std::vector<std::filesystem::path>& Documents() const { return documents_; }
  //! Told the path of each document as it is written.
  std::function<void(const std::filesystem::path&)> on_document;

 private:
  std::shared_ptr<refhost::RefHost> host_;
  std::shared_ptr<host::AppServer> app_server_;
  std::shared_ptr<CCustEngine> engine_;
  std::shared_ptr<ScriptUi> ui_ = std::make_shared<ScriptUi>();
  std::shared_ptr<Clock> clock_;
  TraceWriter trace_;
  std::string user_;
  std::string password_;
  std::vector<std::filesystem::path> documents_;
};

}  // namespace kiv::kivcust

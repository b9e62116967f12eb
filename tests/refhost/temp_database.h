// A customer database in a fresh file under /tmp for one test, removed afterwards, with a
// fixed clock and one signed-on user holding a few rights.
#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/host_error.h"
#include "refhost/password_hash.h"
#include "refhost/ref_app_server.h"
#include "refhost/ref_host.h"

namespace kiv::refhost::testing {

inline std::string TempPath(const std::string& stem) {
  static int counter = 0;
  return (std::filesystem::temp_directory_path() /
          ("kiv_refhost_" + stem + "_" + std::to_string(::getpid()) + "_" + std::to_string(++counter) + ".db"))
      .string();
}

inline void RemoveDatabaseFiles(const std::string& path) {
  std::error_code ec;
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) std::filesystem::remove(path + suffix, ec);
}

class TempDatabase : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = TempPath("t");
    clock_ = std::make_shared<FixedClock>(Date::FromParts(2026, 3, 14, 9, 30, 0));
    OpenOptions options;
    options.clock = clock_;
    host_ = RefHost::Open(path_, options);
    db_ = host_->Database();
    db_->Execute("INSERT INTO kiv_user (user_id, full_name, password_hash) VALUES ('CLERK', 'Front Desk', ?)",
                 {Variant(PasswordHashOf("pw"))});
    db_->Execute("INSERT INTO kiv_user_permission (user_id, task_code) VALUES ('CLERK', 'CUSTADD'), ('CLERK', 'CUSTEDIT')");
    server_ = std::static_pointer_cast<RefAppServer>(host_->SignIn("clerk", "pw"));
    server_->Errors()->SetEcho(false);
    conn_ = server_->Connection();
  }
  void TearDown() override {
    conn_.reset();
    server_.reset();
    db_.reset();
    host_.reset();
    RemoveDatabaseFiles(path_);
  }

  //! A hash of `password`, made once per test program (hashing is slow on purpose).
  static const std::string& PasswordHashOf(const std::string& password) {
    static std::map<std::string, std::string> made;
    auto [at, added] = made.try_emplace(password);
    if (added) at->second = HashPassword(password);
    return at->second;
  }

  //! First column of the first row of a query on the database itself.
  Variant Scalar(const std::string& sql) { return db_->QueryValue(sql); }
  int64_t Count(const std::string& table) { return NzLong(Scalar("SELECT COUNT(*) FROM " + table)); }

  //! A prepared procedure command with values assigned by name in order.
  std::shared_ptr<host::Command> Procedure(const std::string& name,
                                           const std::vector<std::pair<std::string, Variant>>& values) {
    bool error = false;
    auto command = conn_->CreateCommand(error);
    command->SetCommandText(name);
    command->SetCommandType(host::adCmdStoredProc);
    command->GetParameters().Refresh();
    for (const auto& [param, value] : values) command->GetParameters()[param].SetValue(value);
    return command;
  }
  //! Runs a procedure without rows; false when the error flag came back set.
  bool Run(const std::shared_ptr<host::Command>& command) {
    bool error = false;
    conn_->ExecuteCommand(command, error);
    return !error;
  }
  std::shared_ptr<host::Recordset> Rows(const std::shared_ptr<host::Command>& command) {
    bool error = false;
    Variant extra(int32_t{0});
    auto rs = conn_->cmdOpenForwardReadOnlyRecordset(command, error, extra);
    return error ? nullptr : rs;
  }
  std::shared_ptr<host::Recordset> Query(const std::string& sql) {
    bool error = false;
    auto rs = conn_->OpenForwardReadOnlyRecordset(sql, error);
    return error ? nullptr : rs;
  }

  std::string path_;
  std::shared_ptr<FixedClock> clock_;
  std::shared_ptr<RefHost> host_;
  std::shared_ptr<SqliteDatabase> db_;
  std::shared_ptr<RefAppServer> server_;
  std::shared_ptr<SqliteConnection> conn_;
};

}  // namespace kiv::refhost::testing

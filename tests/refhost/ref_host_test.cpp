// Opening customer database files, good and bad, and the signed-on user's services:
// settings, permissions, the activity log and the error log.
#include "refhost/ref_host.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <sstream>

#include "refhost/schema.h"
#include "refhost/trace.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

std::string OpenFailure(const std::string& path, const OpenOptions& options = {}) {
  try {
    RefHost::Open(path, options);
  } catch (const HostError& e) {
    EXPECT_EQ(e.number, kErrOpen) << e.description;
    return e.description;
  }
  return "(opened)";
}

void RawExec(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
  sqlite3_close(db);
}

class RefHostFiles : public ::testing::Test {
 protected:
  void TearDown() override { RemoveDatabaseFiles(path_); }
  std::string path_ = TempPath("files");
};

TEST_F(RefHostFiles, NewFileGetsTheSchemaAndReopens) {
  RefHost::Open(path_);
  auto host = RefHost::Open(path_);
  EXPECT_EQ(NzLong(host->Database()->QueryValue("PRAGMA user_version")), kSchemaVersion);
  EXPECT_EQ(NzString(host->Database()->QueryValue("PRAGMA journal_mode")), "wal");
  EXPECT_EQ(NzLong(host->Database()->QueryValue("SELECT COUNT(*) FROM kiv_sequence")), 4);
}

TEST_F(RefHostFiles, UnusableFilesGiveOneClearMessage) {
  OpenOptions no_create;
  no_create.create_if_missing = false;
  EXPECT_NE(OpenFailure(path_, no_create).find("does not exist"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(path_));

  EXPECT_NE(OpenFailure(std::filesystem::temp_directory_path().string()).find("directory"), std::string::npos);

  std::ofstream(path_) << std::string(8192, 'x');
  EXPECT_NE(OpenFailure(path_).find("not a customer database"), std::string::npos);
  RemoveDatabaseFiles(path_);

  RawExec(path_, "CREATE TABLE invoices (id INTEGER)");
  EXPECT_NE(OpenFailure(path_).find("not a customer database"), std::string::npos);
  RemoveDatabaseFiles(path_);

  RefHost::Open(path_);
  RawExec(path_, "PRAGMA user_version = " + std::to_string(kSchemaVersion + 1));
  std::string newer = OpenFailure(path_);
  EXPECT_NE(newer.find("newer than this program understands"), std::string::npos) << newer;
  EXPECT_NE(newer.find(path_), std::string::npos) << newer;
}

TEST_F(RefHostFiles, FileLockedByAnotherProgramFailsAfterTheBusyTimeout) {
  RefHost::Open(path_);
  sqlite3* holder = nullptr;
  ASSERT_EQ(sqlite3_open(path_.c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr),
            SQLITE_OK);
  OpenOptions quick;
  quick.busy_timeout_ms = 50;
  std::string message = OpenFailure(path_, quick);
  EXPECT_NE(message.find("locked"), std::string::npos) << message;
  sqlite3_exec(holder, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(holder);
  EXPECT_NO_THROW(RefHost::Open(path_));
}

TEST_F(RefHostFiles, AVersion1FileHasItsPasswordsHashedOnOpen) {
  RefHost::Open(path_);
  RawExec(path_,
          "ALTER TABLE kiv_user DROP COLUMN password_hash; ALTER TABLE kiv_user ADD COLUMN password VARCHAR(40); "
          "INSERT INTO kiv_user (user_id, password) VALUES ('OLD', 'sesame-4711'), ('NONE', NULL); "
          "PRAGMA user_version = 1");
  {
    auto host = RefHost::Open(path_);
    auto db = host->Database();
    EXPECT_EQ(NzLong(db->QueryValue("PRAGMA user_version")), kSchemaVersion);
    EXPECT_EQ(NzLong(db->QueryValue("SELECT COUNT(*) FROM pragma_table_info('kiv_user') WHERE name = 'password'")), 0);
    EXPECT_TRUE(db->QueryValue("SELECT password_hash FROM kiv_user WHERE user_id = 'NONE'").IsNull());
    EXPECT_EQ(host->SignIn("OLD", "sesame-4711")->GetConnection("")->UserPassword(), "sesame-4711");
    EXPECT_THROW(host->SignIn("OLD", "sesame"), HostError);
  }
  // Reopening finds the new version; the old text is nowhere in the file.
  EXPECT_NO_THROW(RefHost::Open(path_));
  std::ifstream file(path_, std::ios::binary);
  std::stringstream bytes;
  bytes << file.rdbuf();
  EXPECT_EQ(bytes.str().find("sesame-4711"), std::string::npos);
}

TEST_F(RefHostFiles, AnOlderFileGetsWhatLaterVersionsAddedAndKeepsItsRows) {
  RefHost::Open(path_);
  RawExec(path_,
          "DROP TABLE kiv_club_member; ALTER TABLE kiv_customer_group DROP COLUMN Description; "
          "DROP INDEX ix_customer_zip; DELETE FROM kiv_sequence WHERE sequence_name = 'seq_forecast_no'; "
          "UPDATE kiv_sequence SET last_no = 41 WHERE sequence_name = 'seq_customer_no'; "
          "INSERT INTO kiv_customer_group (customer_group_id) VALUES ('SKICLUB'); PRAGMA user_version = 2");
  {
    auto db = RefHost::Open(path_)->Database();
    EXPECT_EQ(NzLong(db->QueryValue("PRAGMA user_version")), kSchemaVersion);
    EXPECT_EQ(NzLong(db->QueryValue("SELECT COUNT(*) FROM sqlite_master WHERE name IN "
                                    "('kiv_club_member', 'ix_club_member_customer', 'ix_customer_zip')")),
              3);
    EXPECT_EQ(db->QueryValue("SELECT customer_group_id || '/' || IFNULL(Description, '-') FROM kiv_customer_group")
                  .ToString(),
              "SKICLUB/-");
    EXPECT_EQ(NzLong(db->QueryValue("SELECT last_no FROM kiv_sequence WHERE sequence_name = 'seq_customer_no'")), 41)
        << "a sequence the file has keeps its number";
    EXPECT_EQ(NzLong(db->QueryValue("SELECT COUNT(*) FROM kiv_sequence WHERE sequence_name = 'seq_forecast_no'")), 1);
  }
  RawExec(path_, "PRAGMA user_version = 2");
  EXPECT_NO_THROW(RefHost::Open(path_)) << "a file with nothing to add is only stamped";
}

TEST_F(RefHostFiles, AnOlderFileWithoutTheCustomerTablesIsRefused) {
  RefHost::Open(path_);
  RawExec(path_, "DROP TABLE kiv_customer_address; PRAGMA user_version = 2");
  EXPECT_NE(OpenFailure(path_).find("missing: kiv_customer_address"), std::string::npos);
}

class RefHostServices : public TempDatabase {};

TEST_F(RefHostServices, UsersSignInByIdAndKeepTheirPasswordInMemoryOnly) {
  EXPECT_EQ(conn_->UserID(), "CLERK");
  EXPECT_EQ(conn_->UserPassword(), "pw");
  EXPECT_NE(NzString(Scalar("SELECT password_hash FROM kiv_user")), "pw");
  EXPECT_THROW(host_->SignIn("nobody"), HostError);
  db_->Execute("UPDATE kiv_user SET is_active = 0");
  EXPECT_THROW(host_->SignIn("CLERK"), HostError);
}

TEST_F(RefHostServices, EveryHostCallIsTracedWithItsArgumentsAndAnswer) {
  std::vector<std::string> lines;
  host_->SetTrace([&](const TraceEvent& e) {
    if (e.is_host) lines.push_back(FormatTraceLine(e));
  });
  server_->CheckPermission("CUSTADD", "Customer", "");
  server_->CheckPermission("CCDELETE", "Customer", "Cards");
  Variant result;
  server_->RecordTaskActivity("CUSTEDIT", "CustDetail", "CN=5;FN=ANN SMITH;", result);
  server_->GetErrorObject()->Display(13, "KIVCustomer.CCustomer (1.0.0) Update", "Type mismatch", false, Variant(),
                                     Variant(), Variant(), nullptr, "");
  server_->UserSettings()->SaveSetting("AppData", "Customer", "Top", "120");
  server_->UserSettings()->GetSetting("AppData", "Customer", "Top", "0");
  const std::vector<std::string> expected = {
      "CheckPermission task_code=\"CUSTADD\" area=\"Customer\" sub_area=\"\" -> result=True",
      "CheckPermission task_code=\"CCDELETE\" area=\"Customer\" sub_area=\"Cards\" -> result=False",
      "RecordTaskActivity task_code=\"CUSTEDIT\" screen=\"CustDetail\" detail=\"CN=5;FN=ANN SMITH;\" -> result=True",
      "ErrorObject.Display number=13 source=\"KIVCustomer.CCustomer (1.0.0) Update\" description=\"Type mismatch\" "
      "extra=\"\"",
      "SaveSetting app=\"AppData\" section=\"Customer\" key=\"Top\" value=\"120\"",
      "GetSetting app=\"AppData\" section=\"Customer\" key=\"Top\" default=\"0\" -> value=\"120\"",
  };
  EXPECT_EQ(lines, expected);
}

TEST_F(RefHostServices, PermissionsAreTheUsersTaskCodes) {
  EXPECT_TRUE(server_->CheckPermission("CUSTADD", "Customer", "").ToBool());
  EXPECT_TRUE(server_->CheckPermission("custedit", "Customer", "").ToBool());
  EXPECT_FALSE(server_->CheckPermission("CCDELETE", "Customer", "").ToBool());
  EXPECT_FALSE(server_->CheckPermission("CUSTSHOWFORECAST", "Customer", "").ToBool());
}

TEST_F(RefHostServices, SettingsAreKeptPerUser) {
  db_->Execute("INSERT INTO kiv_user (user_id) VALUES ('OTHER')");
  auto mine = server_->UserSettings();
  auto theirs = host_->SignIn("OTHER")->UserSettings();
  EXPECT_EQ(mine->GetSetting("AppData", "Customer", "UseCollection", "True"), "True");
  mine->SaveSetting("AppData", "Customer", "UseCollection", "False");
  mine->SaveSetting("AppData", "Customer\\Photographer", "CropWidth", "160");
  mine->SaveSetting("AppData", "Customer", "UseCollection", "False again");
  EXPECT_EQ(mine->GetSetting("appdata", "CUSTOMER", "usecollection", "True"), "False again");
  EXPECT_EQ(mine->GetSetting("AppData", "Customer\\Photographer", "CropWidth", "151"), "160");
  EXPECT_EQ(theirs->GetSetting("AppData", "Customer", "UseCollection", "True"), "True");
}

TEST_F(RefHostServices, ActivityAndErrorsAreLogged) {
  Variant result;
  server_->RecordTaskActivity("CUSTEDIT", "CustDetail", "CN=5;FN=ANN SMITH;", result);
  EXPECT_TRUE(result.ToBool());
  auto row = db_->QueryRows("SELECT user_id, task_code, screen, detail, logged_at FROM kiv_activity_log");
  ASSERT_EQ(row.size(), 1u);
  EXPECT_EQ(row[0][0].ToString(), "CLERK");
  EXPECT_EQ(row[0][3].ToString(), "CN=5;FN=ANN SMITH;");
  EXPECT_EQ(row[0][4].ToString(), "2026-03-14 09:30:00");

  server_->GetErrorObject()->Display(13, "KIVCustomer.CCustomer (1.0.0) Update", "Type mismatch", false, Variant(),
                                     Variant(), Variant(), nullptr, "");
  auto error = db_->QueryRows("SELECT error_number, source, description FROM kiv_error_log");
  ASSERT_EQ(error.size(), 1u);
  EXPECT_EQ(error[0][0].ToLong(), 13);
  EXPECT_EQ(error[0][1].ToString(), "KIVCustomer.CCustomer (1.0.0) Update");
}

}  // namespace
}  // namespace kiv::refhost::testing

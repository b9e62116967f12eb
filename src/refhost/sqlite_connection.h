// The reference host's DBConnection over one SQLite database: dialect translation, the
// one-statement and read-only rules, procedure calls as transactions (savepoints inside a
// unit of work), the guard on statements carrying texts, and the trace.
#pragma once
#include <memory>
#include <string>

#include "host/db_connection.h"
#include "host/error_object.h"
#include "refhost/dialect.h"
#include "refhost/procedure_registry.h"
#include "refhost/read_rows.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"

namespace kiv::refhost {

class SqliteCommand;

class SqliteConnection : public host::DBConnection {
 public:
  //! `trace` is shared with the host so that tracing can be switched on later.
  SqliteConnection(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::string password,
                   const ProcedureRegistry& registry = ProcedureRegistry::Standard(),
                   std::shared_ptr<TraceHook> trace = nullptr);
  //! A unit of work still open is rolled back: what was never committed never happened.
  ~SqliteConnection() override;
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;

  //! Where failures are shown; without one they only set the error flag.
  void SetErrorObject(std::shared_ptr<host::ErrorObject> error_object) { error_object_ = std::move(error_object); }

  std::string UserPassword() override { return password_; }
  std::string UserID() override { return user_id_; }
  //! The workstation's name: KIVCUST_COMPUTER from the environment, else "WORKSTATION1".
  std::string ComputerName() override;
  //! A query that writes, or more than one statement, is refused: flag set, failure shown.
  std::shared_ptr<host::Recordset> OpenReadOnlyRecordset(const std::string& sql, bool& error) override;
  std::shared_ptr<host::Recordset> OpenForwardReadOnlyRecordset(const std::string& sql, bool& error) override;
  //! A SELECT on one table; rows can be added, changed and deleted.
  std::shared_ptr<host::Recordset> OpenUpdatableRecordset(const std::string& sql, bool& error) override;
  //! Runs one statement; `extra` receives the number of rows changed.
  void ExecuteSQL(const std::string& sql, bool& error, Variant& extra) override;
  std::shared_ptr<host::Command> CreateCommand(bool& error) override;
  //! A command whose text is the given name, unchanged.
  std::shared_ptr<host::Command> CreateCommandText(const std::string& text) override;
  //! The next number of the named sequence, in one statement; a sequence never used starts
  //! above the highest number its table already holds. Throws HostError on failure.
  int32_t GetNextSequenceNo(const std::string& sequence_name) override;
  //! Runs a procedure as one transaction (rolled back on failure) and stores its outputs.
  void ExecuteCommand(const std::shared_ptr<host::Command>& command, bool& error) override;
  std::shared_ptr<host::Recordset> cmdOpenForwardReadOnlyRecordset(const std::shared_ptr<host::Command>& command,
                                                                   bool& error, Variant& extra) override;

  //! The outermost call opens one transaction holding the write lock; inner calls only count.
  //! When the lock cannot be had the failure is shown and every call until the matching End
  //! fails at once, so nothing of the unit is written.
  void BeginUnitOfWork() override;
  //! The outermost call commits (or rolls back) the transaction; a failed commit rolls back
  //! and is shown. An End without a Begin does nothing.
  void EndUnitOfWork(bool commit) override;

  SqliteDatabase& Database() { return *db_; }

 private:
  enum class ReadMode { Forward, Static };
  std::shared_ptr<host::Recordset> OpenRead(const char* operation, const std::string& sql, ReadMode mode, bool& error);
  std::shared_ptr<host::Recordset> RunCommand(const char* operation, const std::shared_ptr<host::Command>& command,
                                              bool want_rows, bool& error);
  void Fail(TraceEvent& event, int32_t number, const std::string& description,
            const std::shared_ptr<host::Command>& command);
  void Emit(const TraceEvent& event) const;
  //! Refuses (HostError) a statement the guard does not let run as `prepared`, unless it is
  //! one of the component's own with a clerk's quoted text at its end: then `sent` and
  //! `prepared` become that statement with the text taken as one value.
  void Guard(std::string& sent, ParameterizedSql& prepared) const;
  //! Throws the reason when this call belongs to a unit whose transaction could not start.
  void CheckUnit();

  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::string password_;
  const ProcedureRegistry& registry_;
  std::shared_ptr<TraceHook> trace_;
  std::shared_ptr<host::ErrorObject> error_object_;
  //! The rows this connection's procedures have shown the clerk, for the merge on save.
  ReadRows read_rows_;
  int unit_depth_ = 0;
  std::unique_ptr<Transaction> unit_;
  //! Why the open unit could not start; empty when it runs (or none is open).
  std::string unit_failure_;
};

}  // namespace kiv::refhost

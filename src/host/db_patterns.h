// The four fixed ways the component talks to the database, so that no record or screen
// repeats the open-test-read-close dance. An error flag set by the host means the
// failure was already reported: the caller skips the results and returns failure.
#pragma once
#include <memory>
#include <string>

#include "host/command.h"
#include "host/db_connection.h"
#include "host/recordset.h"

namespace kiv::host {

//! Owns an open recordset and closes it when it goes out of scope, on every path.
class ScopedRecordset {
 public:
  ScopedRecordset() = default;
  explicit ScopedRecordset(std::shared_ptr<Recordset> rs) : rs_(std::move(rs)) {}
  ScopedRecordset(ScopedRecordset&&) noexcept = default;
  ScopedRecordset& operator=(ScopedRecordset&& other) noexcept;
  ScopedRecordset(const ScopedRecordset&) = delete;
  ScopedRecordset& operator=(const ScopedRecordset&) = delete;
  ~ScopedRecordset();

  //! False when the open failed (error flag set or no recordset came back).
  explicit operator bool() const { return rs_ != nullptr; }
  Recordset* operator->() const { return rs_.get(); }
  Recordset& operator*() const { return *rs_; }
  std::shared_ptr<Recordset> get() const { return rs_; }
  //! True when there is no recordset or it is at end of file.
  bool Eof() const;
  //! Closes now (if open); later calls do nothing.
  void Close();

 private:
  std::shared_ptr<Recordset> rs_;
};

//! 1. Single query through OpenForwardReadOnlyRecordset (or OpenReadOnlyRecordset when
//! `scrollable`). Empty when the error flag came back set.
ScopedRecordset OpenQuery(DBConnection& db, const std::string& sql, bool scrollable = false);

//! 2. Updatable query through OpenUpdatableRecordset. Empty when the error flag came back set.
ScopedRecordset OpenForUpdate(DBConnection& db, const std::string& sql);

//! 3./4. A stored-procedure command: CreateCommand (flag passed False), the procedure name as
//! its text, command type 4, parameter list refreshed from the server. Values are then
//! assigned by name in the caller's order. Null when no command came back.
std::shared_ptr<Command> PrepareProcedure(DBConnection& db, const std::string& procedure_name);

//! 3. Runs a prepared procedure without rows; false when the error flag came back set.
bool ExecuteProcedure(DBConnection& db, const std::shared_ptr<Command>& command);

//! 4. Runs a prepared procedure and returns its rows; empty when the error flag came back set.
//! Output parameters are read after the rows.
ScopedRecordset OpenProcedure(DBConnection& db, const std::shared_ptr<Command>& command);

//! An output parameter read as a 32-bit integer, Null read as `if_null` (the return-value rule
//! uses -1); an absent parameter reads as `if_null` too.
int32_t OutputLong(Command& command, const std::string& name, int32_t if_null);
//! An output parameter read as text, Null as empty text.
std::string OutputText(Command& command, const std::string& name);

//! One stored-procedure call through patterns 3 and 4: prepared by name, inputs assigned by
//! name in the caller's order, run with or without rows, outputs read afterwards. What the
//! return value means stays the caller's rule (some callers refuse anything but 0, some only
//! a value below 0, some read a Null as -1): ReturnValue only reads it.
class ProcedureCall {
 public:
  //! Prepares the command; nothing runs when no command came back (see `Prepared`).
  ProcedureCall(DBConnection& db, const std::string& procedure_name);

  //! False when no command came back: every run then fails without calling the host.
  bool Prepared() const { return command_ != nullptr; }
  //! Assigns an input by name (HostError 3265 from the host when the procedure has none such).
  ProcedureCall& In(const std::string& name, const Variant& value);
  //! Sets every parameter to Null, so a command kept for the next call carries nothing over.
  void ClearInputs();
  //! Runs without rows; false when the error flag came back set or nothing was prepared.
  bool Execute();
  //! Runs and returns the rows; empty when the error flag came back set or nothing was
  //! prepared. Outputs are read after the rows.
  ScopedRecordset Open();

  //! An output as the host left it; Empty when the procedure has no such parameter.
  Variant Output(const std::string& name) const;
  int32_t OutputLong(const std::string& name, int32_t if_null) const;
  std::string OutputText(const std::string& name) const;
  //! "@RETURN_VALUE" as a number, Null (or no return value at all) read as `if_null`.
  int32_t ReturnValue(int32_t if_null) const { return OutputLong("@RETURN_VALUE", if_null); }

  const std::shared_ptr<Command>& GetCommand() const { return command_; }

 private:
  DBConnection& db_;
  std::shared_ptr<Command> command_;
};

//! Several calls that make one save, kept whole by the host: begun on construction, ended
//! on destruction — kept on a normal way out (a procedure that refused has left its own
//! rows as they were), discarded when an exception is unwinding or Discard was called.
//! A null connection makes it do nothing.
class UnitOfWork {
 public:
  explicit UnitOfWork(DBConnection* db);
  ~UnitOfWork();
  UnitOfWork(const UnitOfWork&) = delete;
  UnitOfWork& operator=(const UnitOfWork&) = delete;
  //! The unit ends without keeping anything it wrote.
  void Discard() { commit_ = false; }

 private:
  DBConnection* db_;
  int uncaught_ = 0;
  bool commit_ = true;
};

}  // namespace kiv::host

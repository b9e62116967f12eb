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

}  // namespace kiv::host

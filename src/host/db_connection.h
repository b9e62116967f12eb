// The host's database connection: every database call of the component goes through it.
// An expected failure sets the error flag (the host has already reported it); an
// unexpected one throws HostError.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/command.h"
#include "host/recordset.h"

namespace kiv::host {

class DBConnection {
 public:
  virtual ~DBConnection() = default;
  virtual std::string UserPassword() = 0;
  virtual std::string UserID() = 0;
  //! The workstation the connection was made from; empty when the host does not say.
  virtual std::string ComputerName() { return {}; }
  virtual std::shared_ptr<Recordset> OpenReadOnlyRecordset(const std::string& sql, bool& error) = 0;
  virtual std::shared_ptr<Recordset> OpenForwardReadOnlyRecordset(const std::string& sql, bool& error) = 0;
  virtual std::shared_ptr<Recordset> OpenUpdatableRecordset(const std::string& sql, bool& error) = 0;
  virtual void ExecuteSQL(const std::string& sql, bool& error, Variant& extra) = 0;
  virtual std::shared_ptr<Command> CreateCommand(bool& error) = 0;
  virtual std::shared_ptr<Command> CreateCommandText(const std::string& text) = 0;
  virtual int32_t GetNextSequenceNo(const std::string& sequence_name) = 0;
  virtual void ExecuteCommand(const std::shared_ptr<Command>& command, bool& error) = 0;
  virtual std::shared_ptr<Recordset> cmdOpenForwardReadOnlyRecordset(const std::shared_ptr<Command>& command,
                                                                     bool& error, Variant& extra) = 0;

  //! Optional: the calls from here to the matching EndUnitOfWork are one unit of work that
  //! a power cut or a crash leaves whole or not at all. Units nest; only the outermost one
  //! counts. A host without transactions leaves both empty.
  virtual void BeginUnitOfWork() {}
  //! Closes the unit opened last: `commit` keeps what it wrote (including what a refusing
  //! procedure left as it was), false discards all of it.
  virtual void EndUnitOfWork(bool commit) { (void)commit; }
};

}  // namespace kiv::host

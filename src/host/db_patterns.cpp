// The four database patterns shared by every record and screen: open a query, open one
// for update, prepare and run a stored procedure, read its outputs. A recordset handed
// out here is closed when its owner goes out of scope, whichever way it leaves.
#include "host/db_patterns.h"

#include <exception>

namespace kiv::host {

ScopedRecordset& ScopedRecordset::operator=(ScopedRecordset&& other) noexcept {
  if (this == &other) return *this;
  Close();
  rs_ = std::move(other.rs_);
  return *this;
}

ScopedRecordset::~ScopedRecordset() { Close(); }

bool ScopedRecordset::Eof() const { return rs_ == nullptr || rs_->Eof(); }

void ScopedRecordset::Close() {
  // Closing runs on error paths and in destructors: a failure to close must not replace
  // the failure being unwound, so it is dropped here.
  auto rs = std::move(rs_);
  rs_.reset();
  if (rs == nullptr) return;
  try {
    if (rs->IsOpen()) rs->Close();
  } catch (...) {
  }
}

ScopedRecordset OpenQuery(DBConnection& db, const std::string& sql, bool scrollable) {
  bool error = false;
  auto rs = scrollable ? db.OpenReadOnlyRecordset(sql, error) : db.OpenForwardReadOnlyRecordset(sql, error);
  ScopedRecordset owned(std::move(rs));
  if (error) return ScopedRecordset();  // closes whatever came back with the flag
  return owned;
}

ScopedRecordset OpenForUpdate(DBConnection& db, const std::string& sql) {
  bool error = false;
  ScopedRecordset owned(db.OpenUpdatableRecordset(sql, error));
  if (error) return ScopedRecordset();
  return owned;
}

std::shared_ptr<Command> PrepareProcedure(DBConnection& db, const std::string& procedure_name) {
  bool error = false;
  auto command = db.CreateCommand(error);
  if (error || command == nullptr) return nullptr;
  command->SetCommandText(procedure_name);
  command->SetCommandType(adCmdStoredProc);
  command->GetParameters().Refresh();
  return command;
}

bool ExecuteProcedure(DBConnection& db, const std::shared_ptr<Command>& command) {
  bool error = false;
  db.ExecuteCommand(command, error);
  return !error;
}

ScopedRecordset OpenProcedure(DBConnection& db, const std::shared_ptr<Command>& command) {
  bool error = false;
  Variant extra(int32_t{0});
  ScopedRecordset owned(db.cmdOpenForwardReadOnlyRecordset(command, error, extra));
  if (error) return ScopedRecordset();
  return owned;
}

int32_t OutputLong(Command& command, const std::string& name, int32_t if_null) {
  Parameter* p = command.GetParameters().Find(name);
  if (p == nullptr) return if_null;
  Variant v = p->Value();
  // An output the server never filled reads as Empty on some hosts: same as Null.
  if (v.IsNull() || v.IsEmpty()) return if_null;
  return v.ToLong();
}

std::string OutputText(Command& command, const std::string& name) {
  Parameter* p = command.GetParameters().Find(name);
  if (p == nullptr) return std::string();
  return NzString(p->Value());
}

ProcedureCall::ProcedureCall(DBConnection& db, const std::string& procedure_name)
    : db_(db), command_(PrepareProcedure(db, procedure_name)) {}

ProcedureCall& ProcedureCall::In(const std::string& name, const Variant& value) {
  if (command_ != nullptr) command_->GetParameters().Item(name).SetValue(value);
  return *this;
}

void ProcedureCall::ClearInputs() {
  if (command_ == nullptr) return;
  Parameters& params = command_->GetParameters();
  for (int32_t i = 0; i < params.Count(); ++i) params.Item(i).SetValue(Variant::Null());
}

bool ProcedureCall::Execute() { return command_ != nullptr && ExecuteProcedure(db_, command_); }

ScopedRecordset ProcedureCall::Open() {
  if (command_ == nullptr) return ScopedRecordset();
  return OpenProcedure(db_, command_);
}

Variant ProcedureCall::Output(const std::string& name) const {
  if (command_ == nullptr) return Variant();
  Parameter* p = command_->GetParameters().Find(name);
  return p == nullptr ? Variant() : p->Value();
}

int32_t ProcedureCall::OutputLong(const std::string& name, int32_t if_null) const {
  if (command_ == nullptr) return if_null;
  return host::OutputLong(*command_, name, if_null);
}

std::string ProcedureCall::OutputText(const std::string& name) const {
  if (command_ == nullptr) return std::string();
  return host::OutputText(*command_, name);
}

UnitOfWork::UnitOfWork(DBConnection* db) : db_(db), uncaught_(std::uncaught_exceptions()) {
  if (db_ != nullptr) db_->BeginUnitOfWork();
}

UnitOfWork::~UnitOfWork() {
  if (db_ == nullptr) return;
  const bool unwinding = std::uncaught_exceptions() > uncaught_;
  // Ending runs in a destructor: a host that fails to end the unit must not replace the
  // failure being unwound, and has reported its own failure already.
  try {
    db_->EndUnitOfWork(commit_ && !unwinding);
  } catch (...) {
  }
}

}  // namespace kiv::host

// The four database patterns shared by every record and screen: open a query, open one
// for update, prepare and run a stored procedure, read its outputs. A recordset handed
// out here is closed when its owner goes out of scope, whichever way it leaves.
#include "host/db_patterns.h"

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

}  // namespace kiv::host

// The procedure registry and the call context a procedure body works with.
#include "refhost/procedure_registry.h"

#include <sqlite3.h>

#include <stdexcept>

#include "core/text.h"
#include "host/command.h"
#include "host/field.h"
#include "host/host_error.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

ProcedureCall::ProcedureCall(SqliteDatabase& db, std::string user, std::vector<ProcedureParam> declared,
                             std::vector<Variant> values)
    : db_(db), user_(std::move(user)), declared_(std::move(declared)), values_(std::move(values)) {
  values_.resize(declared_.size());
}

size_t ProcedureCall::IndexOf(std::string_view name) const {
  // Upper-casing keeps a name's length, so a name of another length is passed over at once.
  for (size_t i = 0; i < declared_.size(); ++i)
    if (declared_[i].name.size() == name.size() && EqualsNoCase(declared_[i].name, name)) return i;
  throw std::logic_error("procedure parameter not declared: " + std::string(name));
}

Variant ProcedureCall::In(std::string_view name) const {
  const Variant& v = values_[IndexOf(name)];
  return v.IsEmpty() ? Variant::Null() : v;
}

bool ProcedureCall::IsNull(std::string_view name) const { return In(name).IsNull(); }

bool ProcedureCall::Assigned(std::string_view name) const { return !values_[IndexOf(name)].IsEmpty(); }

int32_t ProcedureCall::Long(std::string_view name, int32_t if_null) const {
  Variant v = In(name);
  return v.IsNull() ? if_null : v.ToLong();
}

double ProcedureCall::Double(std::string_view name) const {
  Variant v = In(name);
  return v.IsNull() ? 0.0 : v.ToDouble();
}

bool ProcedureCall::Bool(std::string_view name) const {
  Variant v = In(name);
  return v.IsNull() ? false : v.ToBool();
}

std::string ProcedureCall::Text(std::string_view name) const { return NzString(In(name)); }

Variant ProcedureCall::Criterion(std::string_view name) const {
  Variant v = In(name);
  if (v.IsNull()) return v;
  std::string text = Trim(v.ToString());
  if (text.empty()) return Variant::Null();
  return Variant(text);
}

void ProcedureCall::Out(std::string_view name, const Variant& value) { values_[IndexOf(name)] = value; }

void ProcedureCall::ReturnRows(const std::string& sql, const std::vector<Variant>& args) {
  StatementLease lease = db_.Prepare(sql);
  for (size_t i = 0; i < args.size(); ++i) BindVariant(lease.get(), static_cast<int>(i + 1), args[i]);
  rows_ = ReadRowSet(db_, lease);
  has_rows_ = true;
}

void ProcedureCall::AddResultSet(const std::string& sql, const std::vector<Variant>& args) {
  if (!has_rows_) return ReturnRows(sql, args);
  StatementLease lease = db_.Prepare(sql);
  for (size_t i = 0; i < args.size(); ++i) BindVariant(lease.get(), static_cast<int>(i + 1), args[i]);
  following_rows_.push_back(ReadRowSet(db_, lease));
}

void ProcedureCall::Raise(const std::string& description) const { throw HostError(kErrDatabase, description); }

void ProcedureRegistry::Add(Procedure procedure) {
  std::string key = UCase(procedure.name);
  procedures_[key] = std::move(procedure);
}

const Procedure* ProcedureRegistry::Find(std::string_view name) const {
  std::string key = UCase(Trim(name));
  if (key.rfind("DBO.", 0) == 0) key.erase(0, 4);
  auto found = procedures_.find(key);
  return found == procedures_.end() ? nullptr : &found->second;
}

std::vector<ProcedureParam> ProcedureRegistry::ServerParameters(const Procedure& procedure) {
  std::vector<ProcedureParam> list;
  list.reserve(procedure.params.size() + 1);
  list.push_back(ProcedureParam{"@RETURN_VALUE", host::adParamReturnValue, host::adInteger, 4});
  list.insert(list.end(), procedure.params.begin(), procedure.params.end());
  return list;
}

const ProcedureRegistry& ProcedureRegistry::Standard() {
  static const ProcedureRegistry registry = [] {
    ProcedureRegistry r;
    AddCustomerProcedures(r);
    AddAddressProcedures(r);
    AddSideRecordProcedures(r);
    AddSearchProcedures(r);
    AddHouseholdProcedures(r);
    AddCardFileProcedures(r);
    AddActivityProcedures(r);
    AddDedupProcedures(r);
    AddAlertProcedures(r);
    AddAboutProcedures(r);
    AddRentalProcedures(r);
    AddReservationProcedures(r);
    AddAccessProcedures(r);
    AddMoneyProcedures(r);
    return r;
  }();
  return registry;
}

ProcedureParam InInt(std::string name) { return {std::move(name), host::adParamInput, host::adInteger, 4}; }
ProcedureParam InSmall(std::string name) { return {std::move(name), host::adParamInput, host::adSmallInt, 2}; }
ProcedureParam InBit(std::string name) { return {std::move(name), host::adParamInput, host::adBoolean, 1}; }
ProcedureParam InFloat(std::string name) { return {std::move(name), host::adParamInput, host::adDouble, 8}; }
ProcedureParam InDate(std::string name) { return {std::move(name), host::adParamInput, host::adDBTimeStamp, 16}; }
ProcedureParam InText(std::string name, int32_t size) {
  return {std::move(name), host::adParamInput, host::adVarChar, size};
}
ProcedureParam InOutInt(std::string name) { return {std::move(name), host::adParamInputOutput, host::adInteger, 4}; }
ProcedureParam OutInt(std::string name) { return {std::move(name), host::adParamOutput, host::adInteger, 4}; }
ProcedureParam OutSmall(std::string name) { return {std::move(name), host::adParamOutput, host::adSmallInt, 2}; }
ProcedureParam OutBit(std::string name) { return {std::move(name), host::adParamOutput, host::adBoolean, 1}; }
ProcedureParam OutText(std::string name, int32_t size) {
  return {std::move(name), host::adParamOutput, host::adVarChar, size};
}

}  // namespace kiv::refhost

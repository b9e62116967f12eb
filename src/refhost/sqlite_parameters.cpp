// Command parameters: refreshed from the registry's declarations, found by name without
// regard to case, every assignment noted for the trace.
#include "refhost/sqlite_parameters.h"

#include "core/text.h"
#include "host/host_error.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {
[[noreturn]] void NotFound() {
  throw HostError(3265, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
}
}  // namespace

void SqliteParameter::SetValue(const Variant& value) {
  value_ = value;
  assigned_ = true;
  owner_.NoteAssignment(declared_.name, value);
}

void SqliteParameters::Refresh() {
  const Procedure* procedure = registry_.Find(command_.CommandText());
  items_.clear();
  assignments_.clear();
  if (procedure == nullptr) {
    if (command_.CommandType() != host::adCmdStoredProc) return;  // a text command has none
    throw HostError(kErrDatabase, "Could not find stored procedure '" + command_.CommandText() + "'.");
  }
  for (auto& declared : ProcedureRegistry::ServerParameters(*procedure))
    items_.push_back(std::make_unique<SqliteParameter>(*this, declared));
}

host::Parameter& SqliteParameters::Item(int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= items_.size()) NotFound();
  return *items_[static_cast<size_t>(index)];
}

host::Parameter& SqliteParameters::Item(const std::string& name) {
  host::Parameter* found = Find(name);
  if (found == nullptr) NotFound();
  return *found;
}

host::Parameter* SqliteParameters::Find(const std::string& name) {
  // Upper-casing keeps a name's length, so a name of another length is passed over at once.
  for (auto& item : items_)
    if (item->Declared().name.size() == name.size() && EqualsNoCase(item->Declared().name, name)) return item.get();
  return nullptr;
}

}  // namespace kiv::refhost

// Scripted commands and parameters: the server's parameter list comes from the script,
// values assigned by the code are recorded in the order they were made.
#include "support/scripted_command.h"

#include "host/host_error.h"
#include "support/scripted_recordset.h"

namespace kiv::test {

namespace {

[[noreturn]] void RaiseNotFound() {
  throw HostError(3265, "Item cannot be found in the collection corresponding to the requested name or ordinal.");
}

}  // namespace

bool operator==(const Assignment& a, const Assignment& b) {
  if (a.name != b.name) return false;
  bool a_special = a.value.IsNull() || a.value.IsEmpty();
  bool b_special = b.value.IsNull() || b.value.IsEmpty();
  if (a_special || b_special) return a.value.Type() == b.value.Type();
  try {
    return a.value.Equals(b.value);
  } catch (...) {
    return false;
  }
}

std::string DescribeAssignment(const Assignment& a) { return a.name + "=" + DescribeValue(a.value); }

ParamSpec::ParamSpec(const char* name_) : ParamSpec(std::string(name_)) {}

ParamSpec::ParamSpec(std::string name_) : name(std::move(name_)) {
  if (SameName(name, "@RETURN_VALUE")) {
    direction = host::adParamReturnValue;
    type = host::adInteger;
    size = 4;
  }
}

ParamSpec::ParamSpec(std::string name_, int32_t direction_, int32_t type_, int32_t size_)
    : name(std::move(name_)), direction(direction_), type(type_), size(size_) {}

ParamSpec In(std::string name, int32_t type, int32_t size) {
  return ParamSpec(std::move(name), host::adParamInput, type, size);
}
ParamSpec Out(std::string name, int32_t type, int32_t size) {
  return ParamSpec(std::move(name), host::adParamOutput, type, size);
}
ParamSpec InOut(std::string name, int32_t type, int32_t size) {
  return ParamSpec(std::move(name), host::adParamInputOutput, type, size);
}

// ---------------------------------------------------------------- ScriptedParameter

void ScriptedParameter::SetValue(const Variant& value) {
  owner_.all_.push_back(Assignment{spec_.name, value});
  owner_.pending_.push_back(Assignment{spec_.name, value});
  value_ = value;
}

// ---------------------------------------------------------------- ScriptedParameters

void ScriptedParameters::Refresh() {
  ++owner_.refreshes_;
  bool found = false;
  std::vector<ParamSpec> declared;
  if (owner_.refresher_) declared = owner_.refresher_(owner_.text_, found);
  Reset(declared, found);
}

void ScriptedParameters::Reset(const std::vector<ParamSpec>& declared, bool scripted) {
  list_.clear();
  for (const auto& param : declared) list_.push_back(std::make_unique<ScriptedParameter>(owner_, param));
  scripted_ = scripted;
}

ScriptedParameter* ScriptedParameters::Lookup(const std::string& name) {
  for (auto& p : list_)
    if (SameName(p->Name(), name)) return p.get();
  return nullptr;
}

host::Parameter& ScriptedParameters::Item(int32_t index) {
  if (index < 0 || static_cast<size_t>(index) >= list_.size()) RaiseNotFound();
  return *list_[index];
}

host::Parameter& ScriptedParameters::Item(const std::string& name) {
  if (ScriptedParameter* p = Lookup(name)) return *p;
  if (scripted_) RaiseNotFound();
  list_.push_back(std::make_unique<ScriptedParameter>(owner_, ParamSpec(name)));
  return *list_.back();
}

host::Parameter* ScriptedParameters::Find(const std::string& name) { return Lookup(name); }

ScriptedParameter& ScriptedParameters::Ensure(const std::string& name, int32_t direction) {
  if (ScriptedParameter* p = Lookup(name)) return *p;
  ParamSpec param(name);
  if (param.direction != host::adParamReturnValue) param.direction = direction;
  list_.push_back(std::make_unique<ScriptedParameter>(owner_, param));
  return *list_.back();
}

std::vector<std::string> ScriptedParameters::Names() const {
  std::vector<std::string> names;
  for (const auto& p : list_) names.push_back(p->Name());
  return names;
}

// ---------------------------------------------------------------- ScriptedCommand

ScriptedCommand::ScriptedCommand(std::string text, int32_t type, Refresher refresher)
    : text_(std::move(text)), type_(type), refresher_(std::move(refresher)) {}

std::vector<Assignment> ScriptedCommand::TakePending() {
  std::vector<Assignment> out = std::move(pending_);
  pending_.clear();
  return out;
}

}  // namespace kiv::test

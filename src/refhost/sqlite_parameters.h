// The parameter list of a reference-host command, refreshed from the procedure registry,
// remembering each assignment in order for the trace.
#pragma once
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/command.h"
#include "refhost/procedure_registry.h"

namespace kiv::refhost {

class SqliteParameters;

class SqliteParameter : public host::Parameter {
 public:
  SqliteParameter(SqliteParameters& owner, ProcedureParam declared) : owner_(owner), declared_(std::move(declared)) {}
  std::string Name() const override { return declared_.name; }
  Variant Value() const override { return value_; }
  void SetValue(const Variant& value) override;
  int32_t Direction() const override { return declared_.direction; }
  int32_t Type() const override { return declared_.type; }
  int32_t Size() const override { return declared_.size; }

  const ProcedureParam& Declared() const { return declared_; }
  //! True once the caller has set a value (Empty included) since the list was refreshed.
  bool Assigned() const { return assigned_; }
  //! Sets the value without counting it as an assignment (outputs after a run).
  void Store(const Variant& value) { value_ = value; }

 private:
  SqliteParameters& owner_;
  ProcedureParam declared_;
  Variant value_;
  bool assigned_ = false;
};

class SqliteParameters : public host::Parameters {
 public:
  //! `command_text` gives the procedure name at refresh time.
  explicit SqliteParameters(const host::Command& command, const ProcedureRegistry& registry)
      : command_(command), registry_(registry) {}

  //! Raises HostError when the command names no known procedure.
  void Refresh() override;
  int32_t Count() const override { return static_cast<int32_t>(items_.size()); }
  host::Parameter& Item(int32_t index) override;
  host::Parameter& Item(const std::string& name) override;
  host::Parameter* Find(const std::string& name) override;

  SqliteParameter& At(size_t index) { return *items_[index]; }
  void NoteAssignment(const std::string& name, const Variant& value) { assignments_.emplace_back(name, value); }
  //! The assignments made since the last call, cleared.
  std::vector<std::pair<std::string, Variant>> TakeAssignments() { return std::exchange(assignments_, {}); }

 private:
  const host::Command& command_;
  const ProcedureRegistry& registry_;
  std::vector<std::unique_ptr<SqliteParameter>> items_;
  std::vector<std::pair<std::string, Variant>> assignments_;
};

}  // namespace kiv::refhost

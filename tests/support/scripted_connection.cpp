// The scripted database connection: finds the script entry for each call, answers from
// it (or with the unscripted defaults) and logs the call.
#include "support/scripted_connection.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace kiv::test {

namespace {

// ADO's "unknown" command type: what a new command has until the code sets one.
constexpr int32_t kCmdUnknown = 8;

// A procedure returns 0 unless it says otherwise, as a server's RETURN does: the return
// value of a scripted list, or of an unscripted one (created), reads 0 after execution.
void ReturnZero(ScriptedCommand& command) {
  ScriptedParameters& params = command.Params();
  if (!params.Scripted()) {
    auto& p = params.Ensure("@RETURN_VALUE", host::adParamReturnValue);
    if (p.Value().IsEmpty()) p.Fill(Variant(int32_t{0}));
    return;
  }
  for (int32_t i = 0; i < params.Count(); ++i) {
    auto& p = static_cast<ScriptedParameter&>(params.Item(i));
    if (p.Direction() == host::adParamReturnValue && p.Value().IsEmpty()) p.Fill(Variant(int32_t{0}));
  }
}

HostError ConnectionRefused() {
  return HostError(3709, "The connection cannot be used to perform this operation.");
}

}  // namespace

const char* KindName(CallKind kind) {
  switch (kind) {
    case CallKind::UserPassword:
      return "UserPassword";
    case CallKind::UserID:
      return "UserID";
    case CallKind::OpenReadOnly:
      return "OpenReadOnly";
    case CallKind::OpenForward:
      return "OpenForward";
    case CallKind::OpenUpdatable:
      return "OpenUpdatable";
    case CallKind::ExecuteSQL:
      return "ExecuteSQL";
    case CallKind::CreateCommand:
      return "CreateCommand";
    case CallKind::CreateCommandText:
      return "CreateCommandText";
    case CallKind::Sequence:
      return "Sequence";
    case CallKind::ExecuteCommand:
      return "ExecuteCommand";
    case CallKind::CommandOpen:
      return "CommandOpen";
  }
  return "?";
}

std::string DescribeCall(const Call& call) {
  std::string out = KindName(call.kind);
  if (!call.text.empty()) out += " " + call.text;
  if (call.kind == CallKind::ExecuteCommand || call.kind == CallKind::CommandOpen) {
    out += " (type " + std::to_string(call.command_type) + ")";
    for (size_t i = 0; i < call.assignments.size(); ++i)
      out += (i == 0 ? " " : ", ") + DescribeAssignment(call.assignments[i]);
  }
  if (call.error) out += " -> error flag";
  return out;
}

bool ScriptEntry::Matches(const std::string& text, bool as_procedure) const {
  if (remaining == 0) return false;
  if ((match == Match::Procedure) != as_procedure) return false;
  switch (match) {
    case Match::Exact:
      return text == key;
    case Match::Contains:
      return text.find(key) != std::string::npos;
    case Match::Predicate:
      return predicate(text);
    case Match::Procedure:
      return SameName(text, key);
  }
  return false;
}

// ---------------------------------------------------------------- ScriptBuilder

ResultSet& ScriptBuilder::Current() {
  if (e_.results.empty()) e_.results.emplace_back();
  return e_.results.back();
}

ScriptBuilder& ScriptBuilder::Columns(std::vector<ColumnSpec> columns) {
  Current().Columns(std::move(columns));
  return *this;
}

ScriptBuilder& ScriptBuilder::Row(const Cells& cells) {
  Current().Row(cells);
  return *this;
}

ScriptBuilder& ScriptBuilder::Values(std::vector<Variant> values) {
  Current().Values(std::move(values));
  return *this;
}

ScriptBuilder& ScriptBuilder::Returns(ResultSet result) {
  Current() = std::move(result);
  return *this;
}

ScriptBuilder& ScriptBuilder::NextResult() {
  Current();
  e_.results.emplace_back();
  return *this;
}

ScriptBuilder& ScriptBuilder::Fails() {
  e_.fails = true;
  return *this;
}

ScriptBuilder& ScriptBuilder::Throws(int32_t number, std::string description) {
  e_.throws = HostError(number, description);
  return *this;
}

ScriptBuilder& ScriptBuilder::Times(int n) {
  if (n < 1) throw std::invalid_argument("ScriptBuilder::Times needs at least 1");
  e_.remaining = n;
  return *this;
}

ScriptBuilder& ScriptBuilder::Params(std::vector<ParamSpec> params) {
  if (e_.match != ScriptEntry::Match::Procedure) throw std::logic_error("Params belong to OnProcedure entries");
  e_.params = std::move(params);
  e_.params_scripted = true;
  return *this;
}

ScriptBuilder& ScriptBuilder::Outputs(const Cells& outputs) {
  if (e_.match != ScriptEntry::Match::Procedure) throw std::logic_error("Outputs belong to OnProcedure entries");
  e_.outputs.insert(e_.outputs.end(), outputs.begin(), outputs.end());
  return *this;
}

ScriptBuilder& ScriptBuilder::ReturnValue(const Variant& value) { return Outputs({{"@RETURN_VALUE", value}}); }

// ---------------------------------------------------------------- script

ScriptBuilder ScriptedConnection::Add(ScriptEntry entry) {
  entries_.push_back(std::make_unique<ScriptEntry>(std::move(entry)));
  return ScriptBuilder(*entries_.back());
}

ScriptBuilder ScriptedConnection::OnQuery(std::string exact_sql) {
  ScriptEntry e;
  e.match = ScriptEntry::Match::Exact;
  e.key = std::move(exact_sql);
  return Add(std::move(e));
}

ScriptBuilder ScriptedConnection::OnQueryContaining(std::string fragment) {
  ScriptEntry e;
  e.match = ScriptEntry::Match::Contains;
  e.key = std::move(fragment);
  return Add(std::move(e));
}

ScriptBuilder ScriptedConnection::OnQueryMatching(std::function<bool(const std::string&)> predicate,
                                                  std::string label) {
  ScriptEntry e;
  e.match = ScriptEntry::Match::Predicate;
  e.predicate = std::move(predicate);
  e.key = std::move(label);
  return Add(std::move(e));
}

ScriptBuilder ScriptedConnection::OnProcedure(std::string name) {
  ScriptEntry e;
  e.match = ScriptEntry::Match::Procedure;
  e.key = std::move(name);
  return Add(std::move(e));
}

void ScriptedConnection::SetNextSequence(const std::string& name, int32_t next) { sequences_[name] = next; }

void ScriptedConnection::FailNext(CallKind kind) { faults_[kind].push_back(Fault{true, std::nullopt}); }

void ScriptedConnection::ThrowNext(CallKind kind, int32_t number, std::string description) {
  faults_[kind].push_back(Fault{false, HostError(number, description)});
}

void ScriptedConnection::SetUser(std::string id, std::string password) {
  user_id_ = std::move(id);
  password_ = std::move(password);
}

void ScriptedConnection::SetCommandTextForm(std::function<std::string(const std::string&)> form) {
  text_form_ = std::move(form);
}

ScriptEntry* ScriptedConnection::Find(const std::string& text, bool as_procedure) {
  for (auto& e : entries_)
    if (e->Matches(text, as_procedure)) return e.get();
  return nullptr;
}

void ScriptedConnection::Unscripted(const std::string& what) const {
  if (strict_) ADD_FAILURE() << "unscripted database call: " << what << "\ncalls so far:\n" << LogText();
}

bool ScriptedConnection::Begin(Call call, bool has_flag) {
  log_.push_back(std::move(call));
  auto it = faults_.find(log_.back().kind);
  if (it == faults_.end() || it->second.empty()) return false;
  Fault fault = it->second.front();
  it->second.erase(it->second.begin());
  if (fault.error) throw *fault.error;
  if (!has_flag) throw ConnectionRefused();
  log_.back().error = true;
  return true;
}

// ---------------------------------------------------------------- DBConnection

std::string ScriptedConnection::UserPassword() {
  Begin(Call{CallKind::UserPassword, {}, {}, 0, false}, false);
  return password_;
}

std::string ScriptedConnection::UserID() {
  Begin(Call{CallKind::UserID, {}, {}, 0, false}, false);
  return user_id_;
}

std::shared_ptr<host::Recordset> ScriptedConnection::Open(CallKind kind, const std::string& sql, bool& error) {
  error = false;
  if (Begin(Call{kind, sql, {}, 0, false}, true)) {
    error = true;
    return nullptr;
  }
  size_t at = log_.size() - 1;
  ScriptEntry* e = Find(sql, false);
  if (e == nullptr) Unscripted(std::string(KindName(kind)) + " " + sql);
  if (e != nullptr && e->remaining > 0) --e->remaining;
  if (e != nullptr && e->throws) throw *e->throws;
  if (e != nullptr && e->fails) {
    error = log_[at].error = true;
    return nullptr;
  }
  CursorKind cursor = kind == CallKind::OpenUpdatable ? CursorKind::Updatable
                      : kind == CallKind::OpenReadOnly ? CursorKind::ReadOnly
                                                       : CursorKind::ForwardOnly;
  auto rs = std::make_shared<ScriptedRecordset>(sql, cursor, e != nullptr ? e->results : std::vector<ResultSet>{});
  recordsets_.push_back(rs);
  return rs;
}

std::shared_ptr<host::Recordset> ScriptedConnection::OpenReadOnlyRecordset(const std::string& sql, bool& error) {
  return Open(CallKind::OpenReadOnly, sql, error);
}

std::shared_ptr<host::Recordset> ScriptedConnection::OpenForwardReadOnlyRecordset(const std::string& sql,
                                                                                 bool& error) {
  return Open(CallKind::OpenForward, sql, error);
}

std::shared_ptr<host::Recordset> ScriptedConnection::OpenUpdatableRecordset(const std::string& sql, bool& error) {
  return Open(CallKind::OpenUpdatable, sql, error);
}

void ScriptedConnection::ExecuteSQL(const std::string& sql, bool& error, Variant&) {
  error = false;
  if (Begin(Call{CallKind::ExecuteSQL, sql, {}, 0, false}, true)) {
    error = true;
    return;
  }
  size_t at = log_.size() - 1;
  ScriptEntry* e = Find(sql, false);
  if (e == nullptr) Unscripted("ExecuteSQL " + sql);
  if (e == nullptr) return;
  if (e->remaining > 0) --e->remaining;
  if (e->throws) throw *e->throws;
  if (e->fails) error = log_[at].error = true;
}

std::shared_ptr<ScriptedCommand> ScriptedConnection::NewCommand(std::string text, int32_t type) {
  std::weak_ptr<ScriptedConnection> weak = weak_from_this();
  auto refresher = [weak](const std::string& name, bool& found) -> std::vector<ParamSpec> {
    found = false;
    auto self = weak.lock();
    if (self == nullptr) return {};
    ScriptEntry* e = self->Find(name, true);
    if (e == nullptr) self->Unscripted("Refresh " + name);
    if (e == nullptr || !e->params_scripted) return {};
    found = true;
    return e->params;
  };
  auto command = std::make_shared<ScriptedCommand>(std::move(text), type, refresher);
  commands_.push_back(command);
  return command;
}

std::shared_ptr<host::Command> ScriptedConnection::CreateCommand(bool& error) {
  error = false;
  if (Begin(Call{CallKind::CreateCommand, {}, {}, 0, false}, true)) {
    error = true;
    return nullptr;
  }
  return NewCommand({}, kCmdUnknown);
}

std::shared_ptr<host::Command> ScriptedConnection::CreateCommandText(const std::string& text) {
  Begin(Call{CallKind::CreateCommandText, text, {}, 0, false}, false);
  return NewCommand(text_form_ ? text_form_(text) : text, kCmdUnknown);
}

int32_t ScriptedConnection::GetNextSequenceNo(const std::string& sequence_name) {
  Begin(Call{CallKind::Sequence, sequence_name, {}, 0, false}, false);
  auto [it, inserted] = sequences_.try_emplace(sequence_name, 1);
  return it->second++;
}

std::shared_ptr<ScriptedRecordset> ScriptedConnection::Execute(CallKind kind,
                                                               const std::shared_ptr<host::Command>& command,
                                                               bool& error) {
  error = false;
  if (command == nullptr) throw HostError(424, "Object required");
  auto sc = std::dynamic_pointer_cast<ScriptedCommand>(command);
  if (sc == nullptr) throw HostError(3001, "Arguments are of the wrong type, are out of acceptable range, or are in "
                                           "conflict with one another.");
  const std::string text = sc->CommandText();
  if (Begin(Call{kind, text, sc->TakePending(), sc->CommandType(), false}, true)) {
    error = true;
    return nullptr;
  }
  size_t at = log_.size() - 1;
  ScriptEntry* e = Find(text, true);
  if (e == nullptr) e = Find(text, false);
  if (e == nullptr) Unscripted(std::string(KindName(kind)) + " " + text);
  if (e != nullptr && e->remaining > 0) --e->remaining;
  if (e != nullptr && e->throws) throw *e->throws;
  if (e != nullptr && e->fails) {
    error = log_[at].error = true;
    return nullptr;
  }
  bool return_scripted = false;
  if (e != nullptr)
    for (const auto& [name, value] : e->outputs) {
      sc->Params().Ensure(name, host::adParamOutput).Fill(value);
      return_scripted = return_scripted || SameName(name, "@RETURN_VALUE") || SameName(name, "@return_value");
    }
  if (!return_scripted) ReturnZero(*sc);
  if (kind != CallKind::CommandOpen) return nullptr;
  std::vector<ResultSet> results = e != nullptr ? e->results : std::vector<ResultSet>{};
  auto rs = std::make_shared<ScriptedRecordset>(text, CursorKind::ForwardOnly, std::move(results));
  recordsets_.push_back(rs);
  return rs;
}

void ScriptedConnection::ExecuteCommand(const std::shared_ptr<host::Command>& command, bool& error) {
  Execute(CallKind::ExecuteCommand, command, error);
}

std::shared_ptr<host::Recordset> ScriptedConnection::cmdOpenForwardReadOnlyRecordset(
    const std::shared_ptr<host::Command>& command, bool& error, Variant&) {
  return Execute(CallKind::CommandOpen, command, error);
}

// ---------------------------------------------------------------- record

std::string ScriptedConnection::LogText() const {
  std::ostringstream out;
  for (const auto& call : log_) out << "  " << DescribeCall(call) << "\n";
  return out.str();
}

std::vector<Call> ScriptedConnection::CallsOf(CallKind kind) const {
  std::vector<Call> out;
  for (const auto& call : log_)
    if (call.kind == kind) out.push_back(call);
  return out;
}

size_t ScriptedConnection::CountOf(CallKind kind) const { return CallsOf(kind).size(); }

std::vector<std::string> ScriptedConnection::SqlTexts() const {
  std::vector<std::string> out;
  for (const auto& call : log_)
    if (call.kind == CallKind::OpenReadOnly || call.kind == CallKind::OpenForward ||
        call.kind == CallKind::OpenUpdatable || call.kind == CallKind::ExecuteSQL)
      out.push_back(call.text);
  return out;
}

std::vector<std::string> ScriptedConnection::ExecutedProcedures() const {
  std::vector<std::string> out;
  for (const auto& call : log_)
    if (call.kind == CallKind::ExecuteCommand || call.kind == CallKind::CommandOpen) out.push_back(call.text);
  return out;
}

std::vector<Call> ScriptedConnection::Executions(const std::string& procedure) const {
  std::vector<Call> out;
  for (const auto& call : log_)
    if ((call.kind == CallKind::ExecuteCommand || call.kind == CallKind::CommandOpen) && SameName(call.text, procedure))
      out.push_back(call);
  return out;
}

std::vector<Assignment> ScriptedConnection::AssignmentsOf(const std::string& procedure, size_t occurrence) const {
  auto runs = Executions(procedure);
  if (occurrence >= runs.size()) {
    ADD_FAILURE() << procedure << " was executed " << runs.size() << " time(s), execution " << occurrence
                  << " was asked for\ncalls:\n"
                  << LogText();
    return {};
  }
  return runs[occurrence].assignments;
}

std::vector<std::string> ScriptedConnection::AssignedNames(const std::string& procedure, size_t occurrence) const {
  std::vector<std::string> out;
  for (const auto& a : AssignmentsOf(procedure, occurrence)) out.push_back(a.name);
  return out;
}

Variant ScriptedConnection::AssignedValue(const std::string& procedure, const std::string& parameter,
                                          size_t occurrence) const {
  Variant found;
  for (const auto& a : AssignmentsOf(procedure, occurrence))
    if (SameName(a.name, parameter)) found = a.value;
  return found;
}

std::shared_ptr<ScriptedRecordset> ScriptedConnection::RecordsetFor(const std::string& source) const {
  for (auto it = recordsets_.rbegin(); it != recordsets_.rend(); ++it)
    if ((*it)->Source() == source || SameName((*it)->Source(), source)) return *it;
  return nullptr;
}

size_t ScriptedConnection::OpenRecordsetCount() const {
  size_t open = 0;
  std::function<void(const std::shared_ptr<ScriptedRecordset>&)> count = [&](const auto& rs) {
    if (rs->IsOpen()) ++open;
    for (const auto& f : rs->Followers()) count(f);
  };
  for (const auto& rs : recordsets_) count(rs);
  return open;
}

}  // namespace kiv::test

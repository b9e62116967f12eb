// The scripted database connection: answers every call from a script a test writes
// (rows for a query, rows and outputs for a procedure, an error flag, a thrown HostError)
// and logs every call with its SQL text or procedure name and parameter assignments.
//
//   auto db = std::make_shared<ScriptedConnection>();      // always through make_shared
//   db->OnQuery("SELECT * FROM kiv_zip_code WHERE zip = '05401'")
//       .Row({{"City", "BURLINGTON"}, {"State", "VT"}, {"county", Variant::Null()}});
//   db->OnQueryContaining("FROM kiv_address").Fails();          // error flag set
//   db->OnProcedure("KIV_SP_UpdateAddress")
//       .Params({"@RETURN_VALUE", "@address_no", "@customer_no", Out("@message")})
//       .Outputs({{"@RETURN_VALUE", 0}, {"@message", Variant::Null()}});
//   db->OnProcedure("KIV_SP_CUSTOMER_Search").Row({{"customer_no", 7}}).Row({{"customer_no", 9}});
//   db->OnProcedure("KIV_SP_X").Throws(-2147217900, "Syntax error");
//   ... run the code ...
//   EXPECT_EQ(db->SqlTexts(), (std::vector<std::string>{"SELECT ..."}));
//   EXPECT_EQ(db->AssignedNames("KIV_SP_UpdateAddress"), (std::vector<std::string>{"@address_no", ...}));
//   EXPECT_EQ(db->AssignmentsOf("KIV_SP_UpdateAddress")[0], (Assignment{"@address_no", 12}));
//   EXPECT_EQ(db->OpenRecordsetCount(), 0u);                       // everything closed
//
// Matching. Queries match the SQL text of OpenReadOnlyRecordset, OpenForwardReadOnlyRecordset,
// OpenUpdatableRecordset, ExecuteSQL and of executed commands that are not a scripted
// procedure; procedures match the command text without regard to case, at Refresh (for the
// parameter list) and at execution (for rows, outputs and faults). Entries are tried in the
// order they were scripted; the first that matches and is not used up answers. An entry
// answers every matching call unless limited with Once()/Times(n), so a query that must
// answer differently on its second call is scripted twice, the first one with Once().
//
// Unscripted calls: a query answers an empty recordset (at end of file; an updatable one
// still takes AddNew and assignments), a procedure refreshes to an empty list whose
// parameters are created on first assignment (and still recorded), ExecuteSQL and
// ExecuteCommand succeed. An executed procedure's return value reads 0 unless an output
// for "@RETURN_VALUE" (or "@return_value") is scripted, as a server's RETURN answers; in an
// unscripted list "@RETURN_VALUE" is created for it. RequireScript() makes any unscripted
// query or procedure a test failure instead.
#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/db_connection.h"
#include "host/host_error.h"
#include "support/scripted_command.h"
#include "support/scripted_recordset.h"

namespace kiv::test {

//! The connection operations, as the log names them.
enum class CallKind {
  UserPassword,
  UserID,
  OpenReadOnly,     // OpenReadOnlyRecordset
  OpenForward,      // OpenForwardReadOnlyRecordset
  OpenUpdatable,    // OpenUpdatableRecordset
  ExecuteSQL,
  CreateCommand,
  CreateCommandText,
  Sequence,         // GetNextSequenceNo
  ExecuteCommand,
  CommandOpen,      // cmdOpenForwardReadOnlyRecordset
};
const char* KindName(CallKind kind);

//! One logged connection call.
struct Call {
  CallKind kind;
  //! The SQL text, the command's text (procedure name) at execution, the text given to
  //! CreateCommandText, or the sequence name; empty for the others.
  std::string text;
  //! Executions: the assignments made to the command since its previous execution.
  std::vector<Assignment> assignments;
  //! Executions: the command type at that moment (4 = stored procedure).
  int32_t command_type = 0;
  //! The error flag the call returned.
  bool error = false;
};
//! `OpenForward SELECT ...`, `ExecuteCommand KIV_SP_X (type 4) @a=1, @b="x"`.
std::string DescribeCall(const Call& call);

//! What a script entry matches and how it answers. Built through ScriptBuilder.
struct ScriptEntry {
  enum class Match { Exact, Contains, Predicate, Procedure };
  Match match = Match::Exact;
  std::string key;
  std::function<bool(const std::string&)> predicate;
  int remaining = -1;  // -1: unlimited
  bool fails = false;
  std::optional<HostError> throws;
  std::vector<ResultSet> results;
  bool params_scripted = false;
  std::vector<ParamSpec> params;
  Cells outputs;
  bool Matches(const std::string& text, bool as_procedure) const;
};

//! Chained answers for one script entry. Rows go to the current result set; NextResult()
//! starts another one (handed out by NextRecordset).
class ScriptBuilder {
 public:
  explicit ScriptBuilder(ScriptEntry& entry) : e_(entry) {}
  //! Declares typed columns for the current result set: `.Columns({Col("amount", host::adCurrency),
  //! LongCol("image_blob")})`. Without it the columns come from the rows' names and values.
  ScriptBuilder& Columns(std::vector<ColumnSpec> columns);
  //! Appends one row by column name.
  ScriptBuilder& Row(const Cells& cells);
  //! The same as Row: `OnQuery(sql).Returns({{"col", 1}})`.
  ScriptBuilder& Returns(const Cells& cells) { return Row(cells); }
  //! Appends one row by position (Columns first).
  ScriptBuilder& Values(std::vector<Variant> values);
  //! Replaces the current result set with a prepared one.
  ScriptBuilder& Returns(ResultSet result);
  //! Starts the next result set.
  ScriptBuilder& NextResult();
  //! The call returns with its error flag set (and no recordset).
  ScriptBuilder& Fails();
  //! The call throws HostError{number, description}.
  ScriptBuilder& Throws(int32_t number, std::string description);
  //! Answers one matching call, then steps aside for later entries.
  ScriptBuilder& Once() { return Times(1); }
  ScriptBuilder& Times(int n);
  //! Procedures: the list Refresh answers, in the server's order.
  ScriptBuilder& Params(std::vector<ParamSpec> params);
  //! Procedures: output values set at execution (created as outputs when not in Params).
  ScriptBuilder& Outputs(const Cells& outputs);
  //! Procedures: shorthand for Outputs({{"@RETURN_VALUE", value}}).
  ScriptBuilder& ReturnValue(const Variant& value);

 private:
  ResultSet& Current();
  ScriptEntry& e_;
};

class ScriptedConnection : public host::DBConnection, public std::enable_shared_from_this<ScriptedConnection> {
 public:
  ScriptedConnection() = default;

  // ---- script ----
  ScriptBuilder OnQuery(std::string exact_sql);
  ScriptBuilder OnQueryContaining(std::string fragment);
  //! `label` names the predicate in failure messages.
  ScriptBuilder OnQueryMatching(std::function<bool(const std::string&)> predicate, std::string label = "predicate");
  ScriptBuilder OnProcedure(std::string name);
  //! The number GetNextSequenceNo answers next for `name`; each call counts up by one.
  //! Unset sequences start at 1.
  void SetNextSequence(const std::string& name, int32_t next);
  //! The next call of `kind` returns with its error flag set (calls without a flag throw
  //! HostError 3709 instead).
  void FailNext(CallKind kind);
  //! The next call of `kind` throws HostError{number, description}.
  void ThrowNext(CallKind kind, int32_t number, std::string description);
  //! What UserID and UserPassword answer (default "TESTUSER" / "secret").
  void SetUser(std::string id, std::string password);
  //! The text CreateCommandText gives its command: by default the text passed in; a
  //! host that forms a final text ("dbo." prefix ...) can be imitated here.
  void SetCommandTextForm(std::function<std::string(const std::string&)> form);
  //! Makes unscripted queries and procedures fail the running test.
  void RequireScript(bool on = true) { strict_ = on; }

  // ---- record ----
  const std::vector<Call>& Log() const { return log_; }
  //! The whole log, one DescribeCall line each: print it when a test fails.
  std::string LogText() const;
  void ClearLog() { log_.clear(); }
  //! The logged calls of one kind, in order.
  std::vector<Call> CallsOf(CallKind kind) const;
  size_t CountOf(CallKind kind) const;
  //! SQL text of every query and ExecuteSQL call, in order.
  std::vector<std::string> SqlTexts() const;
  //! Names of every executed procedure (ExecuteCommand and CommandOpen), in order.
  std::vector<std::string> ExecutedProcedures() const;
  //! The executions of a procedure (name compared without regard to case), in order.
  std::vector<Call> Executions(const std::string& procedure) const;
  //! Assignments of the `occurrence`-th execution (0 = first) of a procedure; fails the
  //! test and answers nothing when there was no such execution.
  std::vector<Assignment> AssignmentsOf(const std::string& procedure, size_t occurrence = 0) const;
  //! Just the names of AssignmentsOf, for comparing the order.
  std::vector<std::string> AssignedNames(const std::string& procedure, size_t occurrence = 0) const;
  //! The value last assigned to `parameter` in that execution; Empty when none.
  Variant AssignedValue(const std::string& procedure, const std::string& parameter, size_t occurrence = 0) const;
  //! Every recordset handed out (followers from NextRecordset are under each one's Followers()).
  const std::vector<std::shared_ptr<ScriptedRecordset>>& Recordsets() const { return recordsets_; }
  //! The last recordset opened for an SQL text or procedure name (exact text; procedure
  //! names without regard to case), or null.
  std::shared_ptr<ScriptedRecordset> RecordsetFor(const std::string& source) const;
  //! Recordsets handed out and not closed (followers included).
  size_t OpenRecordsetCount() const;
  //! Every command handed out, in order.
  const std::vector<std::shared_ptr<ScriptedCommand>>& Commands() const { return commands_; }
  //! Units of work as they opened and closed ("begin", "commit", "discard"), each followed
  //! by "@" and the number of calls logged before it, so a test sees which calls a unit held.
  const std::vector<std::string>& Units() const { return units_; }

  // ---- host::DBConnection ----
  std::string UserPassword() override;
  std::string UserID() override;
  std::shared_ptr<host::Recordset> OpenReadOnlyRecordset(const std::string& sql, bool& error) override;
  std::shared_ptr<host::Recordset> OpenForwardReadOnlyRecordset(const std::string& sql, bool& error) override;
  std::shared_ptr<host::Recordset> OpenUpdatableRecordset(const std::string& sql, bool& error) override;
  void ExecuteSQL(const std::string& sql, bool& error, Variant& extra) override;
  std::shared_ptr<host::Command> CreateCommand(bool& error) override;
  std::shared_ptr<host::Command> CreateCommandText(const std::string& text) override;
  int32_t GetNextSequenceNo(const std::string& sequence_name) override;
  void ExecuteCommand(const std::shared_ptr<host::Command>& command, bool& error) override;
  std::shared_ptr<host::Recordset> cmdOpenForwardReadOnlyRecordset(const std::shared_ptr<host::Command>& command,
                                                                   bool& error, Variant& extra) override;
  void BeginUnitOfWork() override { units_.push_back("begin@" + std::to_string(log_.size())); }
  void EndUnitOfWork(bool commit) override {
    units_.push_back((commit ? "commit@" : "discard@") + std::to_string(log_.size()));
  }

 private:
  struct Fault {
    bool fail = false;
    std::optional<HostError> error;
  };
  ScriptBuilder Add(ScriptEntry entry);
  ScriptEntry* Find(const std::string& text, bool as_procedure);
  //! Logs the call and applies a queued fault; true when the error flag is to be set.
  bool Begin(Call call, bool has_flag);
  std::shared_ptr<host::Recordset> Open(CallKind kind, const std::string& sql, bool& error);
  std::shared_ptr<ScriptedRecordset> Execute(CallKind kind, const std::shared_ptr<host::Command>& command,
                                             bool& error);
  std::shared_ptr<ScriptedCommand> NewCommand(std::string text, int32_t type);
  void Unscripted(const std::string& what) const;

  std::vector<std::unique_ptr<ScriptEntry>> entries_;
  std::vector<Call> log_;
  std::vector<std::shared_ptr<ScriptedRecordset>> recordsets_;
  std::vector<std::shared_ptr<ScriptedCommand>> commands_;
  std::vector<std::string> units_;
  std::map<std::string, int32_t> sequences_;
  std::map<CallKind, std::vector<Fault>> faults_;
  std::function<std::string(const std::string&)> text_form_;
  std::string user_id_ = "TESTUSER";
  std::string password_ = "secret";
  bool strict_ = false;
};

}  // namespace kiv::test

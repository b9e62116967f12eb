// Runs statements of the automation language against a session: engine calls, the record
// they returned, the forms they show, message-box answers and the checks. A script stops at
// its first failing line; the interactive mode reports the failure and goes on.
#pragma once
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/kivcust/script_parser.h"
#include "apps/kivcust/script_ui.h"
#include "apps/kivcust/session.h"

namespace kiv::kivcust {

struct Failure {
  int line = 0;
  std::string reason;
  //! "line N: reason", as the program prints it.
  std::string Text() const;
};

//! Where statements come from: a parsed script, or the prompt.
class StatementSource {
 public:
  virtual ~StatementSource() = default;
  //! The next statement; nullopt at the end.
  virtual std::optional<Statement> Next() = 0;
  //! Asks for the answer to a box nobody queued one for; nullopt when nobody can answer.
  virtual std::optional<ui::MsgBoxResult> AskAnswer(const ShownBox& /*box*/) { return std::nullopt; }
};

//! A parsed script, read in order.
class ScriptSource : public StatementSource {
 public:
  explicit ScriptSource(std::vector<Statement> statements) : statements_(std::move(statements)) {}
  std::optional<Statement> Next() override;

 private:
  std::vector<Statement> statements_;
  size_t next_ = 0;
};

class Interpreter;

//! An engine call by name: `call NAME ARGS`. Sets the result and bError through the interpreter.
struct EngineCall {
  const char* name;
  int min_args;
  int max_args;
  const char* usage;
  //! Returns an error text, empty on success.
  std::function<std::string(Interpreter&, const std::vector<std::string>&)> run;
};
//! What a record operation answered: `expect result.ok` and `expect result.value` read it.
struct MethodAnswer {
  bool ok = true;
  Variant value;
};
//! An operation of the returned record: `call result.NAME ARGS`.
struct RecordMethod {
  const char* name;
  int min_args;
  int max_args;
  const char* usage;
  std::function<MethodAnswer(Interpreter&, CCustomer&, const std::vector<std::string>&)> run;
};

const std::vector<EngineCall>& EngineCalls();
const std::vector<RecordMethod>& RecordMethods();

class Interpreter : public ModalDriver {
 public:
  //! How many modal forms may be open at once; the call that would show one more fails.
  static constexpr size_t kMaxModalDepth = 64;

  Interpreter(Session& session, std::ostream& out);
  ~Interpreter() override;

  //! The interactive mode: failures are printed and forgotten, unanswered boxes are asked at
  //! the prompt, the active form and each call's result are printed.
  void SetInteractive(bool on) { interactive_ = on; }

  //! Runs every statement of the source. False when a line failed (see LastFailure).
  bool Run(StatementSource& source);
  const std::optional<Failure>& LastFailure() const { return failure_; }

  void DriveModal(ui::Form& form) override;
  std::optional<ui::MsgBoxResult> Unanswered(const ShownBox& box, const std::string& reason) override;

  // For the call tables.
  Session& GetSession() { return session_; }
  std::ostream& Out() { return out_; }
  //! The record the last engine call returned; `bError` its error flag.
  void SetResult(std::shared_ptr<CCustomer> customer, bool bError);
  const std::shared_ptr<CCustomer>& Result() const { return result_; }
  //! A new record wired to the session's connection, error object and Ui, as the screens make them.
  std::shared_ptr<CCustomer> NewRecord();

 private:
  //! Runs one statement; false when it failed (failure_ set, or already set by a nested line).
  bool Execute(const Statement& st);
  //! Execute, and in the interactive mode print and forget a failure.
  bool ExecuteTop(const Statement& st);
  bool Fail(const std::string& reason);

  bool DoCall(const Statement& st);
  bool DoSet(const Statement& st);
  bool DoAction(const Statement& st);
  bool DoExpect(const Statement& st);
  bool DoDump();
  //! `schema "ALTER TABLE ..."`: the site's own change of its database, run straight on the file.
  bool DoSchema(const Statement& st);
  //! `register STATE [ID]`: puts this workstation's register in a state (register_statement.cpp).
  bool DoRegister(const Statement& st);

  bool ExpectResult(const Statement& st);
  bool ExpectControl(const Statement& st);
  bool ExpectDb(const Statement& st);
  bool ExpectHost(const Statement& st);
  //! expect_file.cpp: a document the reference host wrote, by path or as "last".
  bool ExpectFile(const Statement& st);
  bool ExpectNoCardNumbers();
  //! The getter (and setter) of a `result.` path; error text when the path does not resolve.
  struct PropAccess {
    std::function<std::string()> get;
    std::function<void(const std::string&)> set;
  };
  std::optional<PropAccess> ResolveResult(const std::string& path, std::string& error);
  void StartActing();
  void PrintInteractiveState(bool after_call);

  Session& session_;
  std::ostream& out_;
  StatementSource* source_ = nullptr;
  bool interactive_ = false;
  std::optional<Failure> failure_;
  int current_line_ = 0;
  int last_answer_line_ = 0;

  std::shared_ptr<CCustomer> result_;
  bool has_result_ = false;
  bool berror_ = false;
  Variant last_value_;
  bool last_ok_ = false;
};

//! Prints a customer's fields (non-empty ones, or all) and its addresses.
void PrintCustomer(std::ostream& out, CCustomer& customer, bool all_fields);

}  // namespace kiv::kivcust

// The statement loop of scripts and the interactive mode: acting statements, modal forms
// driven by the lines that follow the call that showed them, and the checks.
#include "apps/kivcust/interpreter.h"

#include <ostream>

#include "apps/kivcust/customer_properties.h"
#include "core/text.h"
#include "host/host_error.h"
#include "ui/action.h"
#include "ui/form.h"

namespace kiv::kivcust {

std::string Failure::Text() const { return "line " + std::to_string(line) + ": " + reason; }

std::optional<Statement> ScriptSource::Next() {
  if (next_ >= statements_.size()) return std::nullopt;
  return statements_[next_++];
}

Interpreter::Interpreter(Session& session, std::ostream& out) : session_(session), out_(out) {
  session_.Ui().SetDriver(this);
  session_.on_document = [this](const std::filesystem::path& path) { out_ << "document written: " << path.string() << "\n"; };
}

Interpreter::~Interpreter() {
  session_.Ui().SetDriver(nullptr);
  session_.on_document = nullptr;
}

bool Interpreter::Fail(const std::string& reason) {
  // The first failure is the one reported: a nested line's failure is not replaced by the
  // failure of the call that was driving it.
  if (!failure_) failure_ = Failure{current_line_, reason};
  return false;
}

bool Interpreter::Run(StatementSource& source) {
  StatementSource* outer = source_;
  source_ = &source;
  while (auto st = source.Next()) {
    if (!ExecuteTop(*st) && !interactive_) break;
  }
  source_ = outer;
  if (!failure_ && session_.Ui().QueuedAnswers() > 0 && !interactive_) {
    current_line_ = last_answer_line_;
    Fail("an answer was queued but no message box asked for it");
  }
  return !failure_;
}

bool Interpreter::ExecuteTop(const Statement& st) {
  bool ok = Execute(st);
  if (ok || !interactive_) return ok;
  out_ << "error: " << failure_->reason << "\n";
  failure_.reset();
  return false;
}

bool Interpreter::Execute(const Statement& st) {
  if (failure_ && !interactive_) return false;
  int outer_line = current_line_;
  current_line_ = st.line;
  bool ok = false;
  try {
    if (st.verb == "as") {
      if (session_.Ui().ModalDepth() > 0) ok = Fail("cannot sign in while a form is open");
      else {
        // The new user's rights are read at sign-in: the checks after it see those calls.
        session_.Trace().StartWindow();
        session_.SignIn(st.args[0], st.args.size() > 1 ? st.args[1] : session_.Password());
        ok = true;
      }
    } else if (st.verb == "today") {
      session_.SetToday(ParseDate(st.args[0]));
      ok = true;
    } else if (st.verb == "register") {
      ok = DoRegister(st);
    } else if (st.verb == "call") {
      ok = DoCall(st);
    } else if (st.verb == "set") {
      ok = DoSet(st);
    } else if (st.verb == "answer") {
      session_.Ui().QueueAnswer(*AnswerFromText(st.args[0]));
      last_answer_line_ = st.line;
      ok = true;
    } else if (st.verb == "expect") {
      ok = DoExpect(st);
    } else if (st.verb == "dump") {
      ok = DoDump();
    } else if (st.verb == "schema") {
      ok = DoSchema(st);
    } else if (ui::IsActionVerb(st.verb)) {
      ok = DoAction(st);
    } else {
      ok = Fail("unknown statement \"" + st.verb + "\"");
    }
  } catch (const HostError& e) {
    ok = Fail(e.description);
  } catch (const std::exception& e) {
    ok = Fail(e.what());
  }
  if (failure_) ok = false;  // a line run inside this one (a modal form) failed
  current_line_ = outer_line;
  if (interactive_ && ok && st.verb != "dump" && st.verb != "expect") PrintInteractiveState(st.verb == "call");
  return ok;
}

void Interpreter::StartActing() {
  session_.Ui().ForgetBoxes();
  session_.Trace().StartWindow();
}

void Interpreter::SetResult(std::shared_ptr<CCustomer> customer, bool bError) {
  result_ = std::move(customer);
  has_result_ = true;
  berror_ = bError;
}

std::shared_ptr<CCustomer> Interpreter::NewRecord() {
  auto customer = std::make_shared<CCustomer>();
  CCustEngine& engine = session_.Engine();
  customer->SetDB(engine.DBConnection());
  customer->SetErrorObject(engine.ErrorObject());
  customer->SetUi(session_.UiService());
  customer->SetFiscalYear(engine.FiscalYear());
  return customer;
}

namespace {
bool ArgCountFits(size_t n, int min_args, int max_args) {
  return static_cast<int>(n) >= min_args && (max_args < 0 || static_cast<int>(n) <= max_args);
}
}  // namespace

bool Interpreter::DoCall(const Statement& st) {
  const std::string& target = st.args[0];
  std::vector<std::string> args(st.args.begin() + 1, st.args.end());
  StartActing();
  if (EqualsNoCase(target.substr(0, 7), "result.")) {
    std::string name = target.substr(7);
    for (const auto& m : RecordMethods()) {
      if (!EqualsNoCase(m.name, name)) continue;
      if (!ArgCountFits(args.size(), m.min_args, m.max_args)) return Fail(std::string("usage: call result.") + m.usage);
      if (!result_) return Fail("there is no record: no call has returned one");
      MethodAnswer answer = m.run(*this, *result_, args);
      last_value_ = answer.value;
      last_ok_ = answer.ok;
      if (failure_) return false;
      if (interactive_) out_ << "= " << (last_value_.IsEmpty() ? std::string("done") : NzString(last_value_)) << "\n";
      return true;
    }
    std::string known;
    for (const auto& m : RecordMethods()) known += std::string(known.empty() ? "" : " ") + m.name;
    return Fail("the record has no operation \"" + name + "\" (" + known + ")");
  }
  for (const auto& c : EngineCalls()) {
    if (!EqualsNoCase(c.name, target)) continue;
    if (!ArgCountFits(args.size(), c.min_args, c.max_args)) return Fail(std::string("usage: call ") + c.usage);
    std::string error = c.run(*this, args);
    if (!error.empty()) return Fail(error);
    return !failure_;
  }
  std::string known;
  for (const auto& c : EngineCalls()) known += std::string(known.empty() ? "" : " ") + c.name;
  return Fail("unknown call \"" + target + "\" (" + known + ")");
}

std::optional<Interpreter::PropAccess> Interpreter::ResolveResult(const std::string& path, std::string& error) {
  std::string rest = path.substr(7);  // after "result."
  if (EqualsNoCase(rest, "ok")) return PropAccess{[this] { return BoolText(last_ok_); }, nullptr};
  if (EqualsNoCase(rest, "value")) return PropAccess{[this] { return NzString(last_value_); }, nullptr};
  if (!result_) {
    error = "there is no record: no call has returned one";
    return std::nullopt;
  }
  CCustomer& c = *result_;
  if (EqualsNoCase(rest, "addresses.count")) {
    return PropAccess{[&c] { return std::to_string(c.Addresses() ? c.Addresses()->Count() : 0); }, nullptr};
  }
  std::shared_ptr<CAddress> address;
  std::string address_name;
  if (EqualsNoCase(rest.substr(0, 8), "address[")) {
    size_t close = rest.find("].");
    if (close == std::string::npos) {
      error = "expected result.address[TYPE].PROP";
      return std::nullopt;
    }
    address_name = rest.substr(8, close - 8);
    address = c.GetAddress(address_name);
    rest = rest.substr(close + 2);
  } else if (EqualsNoCase(rest.substr(0, 15), "PrimaryAddress.")) {
    address_name = "primary";
    address = c.PrimaryAddress();
    rest = rest.substr(15);
  } else {
    const auto* prop = FindCustomerProperty(rest);
    if (prop == nullptr) {
      error = "the customer record has no property \"" + rest + "\"";
      return std::nullopt;
    }
    PropAccess access{[&c, prop] { return prop->get(c); }, nullptr};
    if (prop->set) access.set = [&c, prop](const std::string& v) { prop->set(c, v); };
    return access;
  }
  if (!address) {
    error = "the customer has no " + address_name + " address";
    return std::nullopt;
  }
  const auto* prop = FindAddressProperty(rest);
  if (prop == nullptr) {
    error = "an address has no property \"" + rest + "\"";
    return std::nullopt;
  }
  PropAccess access{[address, prop] { return prop->get(*address); }, nullptr};
  if (prop->set) access.set = [address, prop](const std::string& v) { prop->set(*address, v); };
  return access;
}

bool Interpreter::DoSet(const Statement& st) {
  std::string error;
  auto access = ResolveResult(st.args[0], error);
  if (!access) return Fail(error);
  if (!access->set) return Fail(st.args[0] + " cannot be set");
  StartActing();
  access->set(st.args[1]);
  return true;
}

bool Interpreter::DoAction(const Statement& st) {
  std::string error;
  auto action = ui::ActionFromWords(st.verb, st.args, error);
  if (!action) return Fail(error);
  ui::Form* form = session_.Ui().ActiveForm();
  if (form == nullptr) return Fail("no form is open");
  StartActing();
  ui::UiResult r = form->Perform(*action);
  if (failure_) return false;
  if (!r.ok) return Fail(r.error);
  return true;
}

bool Interpreter::DoDump() {
  ui::Form* form = session_.Ui().ActiveForm();
  if (form != nullptr) out_ << form->DescribeText();
  else if (result_) PrintCustomer(out_, *result_, false);
  else out_ << "no form is open and no call has returned a record\n";
  return true;
}

void Interpreter::PrintInteractiveState(bool after_call) {
  if (after_call && session_.Ui().ModalDepth() == 0 && result_) {
    out_ << "bError = " << BoolText(berror_) << "\n";
    PrintCustomer(out_, *result_, false);
  } else if (after_call && has_result_ && !result_) {
    out_ << "result: none, bError = " << BoolText(berror_) << "\n";
  }
  if (ui::Form* form = session_.Ui().ActiveForm()) out_ << form->DescribeText();
}

void Interpreter::DriveModal(ui::Form& form) {
  if (source_ == nullptr) return;
  // Each form shown drives the following lines from inside the call that showed it, so
  // forms opened from forms nest on the stack; past the limit the call fails instead.
  if (session_.Ui().ModalDepth() > kMaxModalDepth) {
    Fail("too many forms open at once: " + form.Name() + " would be form " +
         std::to_string(session_.Ui().ModalDepth()) + " (at most " + std::to_string(kMaxModalDepth) + ")");
    return;
  }
  if (interactive_) out_ << form.DescribeText();
  while (form.Visible()) {
    if (failure_ && !interactive_) break;
    auto st = source_->Next();
    if (!st) {
      if (!interactive_) Fail("the script ended while " + form.Name() + " was still open");
      break;
    }
    ExecuteTop(*st);
  }
  // A failed run (or the end of input) closes the form the hard way so that the call that
  // showed it can return.
  if (form.Visible()) form.Hide();
}

std::optional<ui::MsgBoxResult> Interpreter::Unanswered(const ShownBox& box, const std::string& reason) {
  if (interactive_ && source_ != nullptr) {
    out_ << DescribeBox(box) << "\n";
    if (auto answer = source_->AskAnswer(box)) return answer;
  }
  Fail(reason + ":\n  " + DescribeBox(box));
  return std::nullopt;
}

}  // namespace kiv::kivcust

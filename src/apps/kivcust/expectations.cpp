// The checks of the automation language: message boxes, the active form and its controls,
// the returned record, bError, the traced SQL and host calls, and the database itself.
#include <sqlite3.h>

#include <ostream>

#include "apps/kivcust/customer_properties.h"
#include "apps/kivcust/card_number_scan.h"
#include "apps/kivcust/interpreter.h"
#include "core/text.h"
#include "ui/form.h"

namespace kiv::kivcust {
namespace {

std::string Quote(const std::string& s) { return "\"" + s + "\""; }

std::string Mismatch(const std::string& subject, const std::string& actual, const std::string& op,
                     const std::string& expected) {
  return "expected " + subject + " " + op + " " + Quote(expected) + ", got " + Quote(actual);
}

}  // namespace

bool Interpreter::DoExpect(const Statement& st) {
  const auto& a = st.args;
  switch (st.expect) {
    case ExpectKind::MsgBox: {
      const auto& boxes = session_.Ui().RecentBoxes();
      for (const auto& box : boxes)
        if (box.prompt == a[1] && (a.size() < 3 || box.title == a[2])) return true;
      std::string shown;
      for (const auto& box : boxes) shown += "\n  " + DescribeBox(box);
      return Fail("no message box " + Quote(a[1]) + (a.size() > 2 ? " titled " + Quote(a[2]) : "") +
                  (boxes.empty() ? std::string(" (none was shown)") : " among:" + shown));
    }
    case ExpectKind::NoMsgBox: {
      const auto& boxes = session_.Ui().RecentBoxes();
      if (boxes.empty()) return true;
      return Fail("a message box was shown: " + DescribeBox(boxes.front()));
    }
    case ExpectKind::Form: {
      ui::Form* form = session_.Ui().ActiveForm();
      std::string name = form != nullptr ? form->Name() : "none";
      if (Compare(name, a[1], a[2]) || (a[1] == "=" && EqualsNoCase(name, a[2]))) return true;
      return Fail(Mismatch("form", name, a[1], a[2]));
    }
    case ExpectKind::ResultNone:
      if (!has_result_) return Fail("no call has returned yet");
      if (!result_) return true;
      return Fail("expected no record, got customer " + std::to_string(result_->CustomerNo()));
    case ExpectKind::Result:
      return ExpectResult(st);
    case ExpectKind::BError: {
      std::string actual = BoolText(berror_);
      if (Compare(actual, a[1], a[2])) return true;
      return Fail(Mismatch("bError", actual, a[1], a[2]));
    }
    case ExpectKind::Sql: {
      const std::string* found = session_.Trace().Find(a[2]);
      if (a[1] == "~" && found != nullptr) return true;
      if (a[1] == "!~" && found == nullptr) return true;
      std::string calls;
      for (const auto& line : session_.Trace().Window()) calls += "\n  " + line;
      if (a[1] == "!~") return Fail("a database call contains " + Quote(a[2]) + ":\n  " + *found);
      return Fail("no database call contains " + Quote(a[2]) +
                  (calls.empty() ? std::string(" (the last statement made no database call)") : "; the calls were:" + calls));
    }
    case ExpectKind::Host:
      return ExpectHost(st);
    case ExpectKind::Db:
      return ExpectDb(st);
    case ExpectKind::File:
      return ExpectFile(st);
    case ExpectKind::NoCardNumbers:
      return ExpectNoCardNumbers();
    case ExpectKind::Control:
      return ExpectControl(st);
    case ExpectKind::None:
      break;
  }
  return Fail("not a check");
}

bool Interpreter::ExpectHost(const Statement& st) {
  const TraceWriter& trace = session_.Trace();
  std::string calls;
  for (const auto& line : trace.Window(true)) calls += "\n  " + line;
  if (calls.empty()) calls = " (the last statement made no host call)";
  else calls = "; the calls were:" + calls;
  if (st.args[1] == "!~") {
    const std::string* found = trace.Find(st.args[2], true);
    if (found == nullptr) return true;
    return Fail("a host call contains " + Quote(st.args[2]) + ":\n  " + *found);
  }
  // Each text must be met after the call that met the one before it.
  size_t from = 0;
  for (size_t i = 2; i < st.args.size(); ++i) {
    size_t at = 0;
    if (trace.Find(st.args[i], true, from, &at) == nullptr) {
      std::string where = i == 2 ? "no host call" : "no host call after the one containing " + Quote(st.args[i - 1]);
      return Fail(where + " contains " + Quote(st.args[i]) + calls);
    }
    from = at + 1;
  }
  return true;
}

bool Interpreter::ExpectResult(const Statement& st) {
  std::string error;
  auto access = ResolveResult(st.args[0], error);
  if (!access) return Fail(error);
  std::string actual = access->get();
  if (Compare(actual, st.args[1], st.args[2])) return true;
  return Fail(Mismatch(st.args[0], actual, st.args[1], st.args[2]));
}

bool Interpreter::ExpectControl(const Statement& st) {
  ui::Form* form = session_.Ui().ActiveForm();
  if (form == nullptr) return Fail("no form is open");
  // CTRL.PROP, CTRL.panel[KEY], GRID.colhidden[C]: split at the first "."; GRID[ROW,COL]: at "[".
  const std::string& subject = st.args[0];
  size_t dot = subject.find('.');
  size_t bracket = subject.find('[');
  std::string control, prop;
  if (bracket != std::string::npos && (dot == std::string::npos || bracket < dot)) {
    control = subject.substr(0, bracket);
    prop = subject.substr(bracket);
  } else {
    control = subject.substr(0, dot);
    prop = subject.substr(dot + 1);
  }
  ui::UiResult r = form->Query(control, prop);
  if (!r.ok) return Fail(r.error);
  if (Compare(r.value, st.args[1], st.args[2])) return true;
  return Fail(Mismatch(subject, r.value, st.args[1], st.args[2]));
}

bool Interpreter::ExpectDb(const Statement& st) {
  // Straight to the file, past the component's connection and its trace: a check must not
  // show up as a call of the component. Only statements that read are accepted.
  sqlite3* db = session_.Database().Handle();
  sqlite3_stmt* stmt = nullptr;
  const char* tail = nullptr;
  const std::string& sql = st.args[1];
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, &tail) != SQLITE_OK)
    return Fail("the query cannot run: " + std::string(sqlite3_errmsg(db)));
  std::string rest = tail != nullptr ? Trim(tail) : std::string();
  if (stmt == nullptr || !sqlite3_stmt_readonly(stmt) || !(rest.empty() || rest == ";")) {
    sqlite3_finalize(stmt);
    return Fail("expect db takes one statement that only reads");
  }
  std::string actual;
  int rc = sqlite3_step(stmt);
  if (rc == SQLITE_ROW && sqlite3_column_type(stmt, 0) != SQLITE_NULL) {
    if (sqlite3_column_type(stmt, 0) == SQLITE_FLOAT) actual = NumberToText(sqlite3_column_double(stmt, 0));
    else actual = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
  }
  std::string error = rc == SQLITE_ROW || rc == SQLITE_DONE ? std::string() : sqlite3_errmsg(db);
  sqlite3_finalize(stmt);
  if (!error.empty()) return Fail("the query failed: " + error);
  if (Compare(actual, st.args[2], st.args[3])) return true;
  return Fail(Mismatch("db " + Quote(sql), actual, st.args[2], st.args[3]));
}

// The database file and its write-ahead log as they are on disk now, and every trace line.
bool Interpreter::ExpectNoCardNumbers() {
  const std::string db = session_.Database().Path();
  for (const std::string& file : {db, db + "-wal", session_.Trace().FilePath()}) {
    if (file.empty()) continue;
    if (auto found = FindCardNumberInFile(file)) return Fail("a card number " + *found + " of " + file);
  }
  if (auto found = session_.Trace().CardNumberSeen()) return Fail("a card number in the trace: " + *found);
  return true;
}

}  // namespace kiv::kivcust

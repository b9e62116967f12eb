// The prompt loop: a statement source that reads lines, skips what cannot be read (saying
// why) and asks for the answer to a message box at the prompt.
#include "apps/kivcust/repl.h"

#include <istream>
#include <ostream>

#include "apps/kivcust/interpreter.h"
#include "core/text.h"
#include "ui/form.h"

namespace kiv::kivcust {
namespace {

class PromptSource : public StatementSource {
 public:
  PromptSource(Session& session, std::istream& in, std::ostream& out) : session_(session), in_(in), out_(out) {}

  std::optional<Statement> Next() override {
    std::string line;
    while (!quitting_) {
      ui::Form* form = session_.Ui().ActiveForm();
      out_ << (form != nullptr ? form->Name() : std::string("kivcust")) << "> " << std::flush;
      if (!std::getline(in_, line)) {
        out_ << "\n";
        return std::nullopt;
      }
      ++number_;
      std::string word = LCase(Trim(line));
      if (word == "quit" || word == "exit") break;
      if (word == "help" || word == "?") {
        PrintHelp(out_);
        continue;
      }
      try {
        if (auto st = ParseLine(line, number_)) return st;
      } catch (const SyntaxError& e) {
        out_ << "error: " << e.reason << "\n";
      }
    }
    quitting_ = true;
    return std::nullopt;
  }

  std::optional<ui::MsgBoxResult> AskAnswer(const ShownBox& box) override {
    std::string line;
    for (;;) {
      out_ << "answer> " << std::flush;
      if (!std::getline(in_, line)) return std::nullopt;
      std::string word = LCase(Trim(line));
      if (word == "quit" || word == "exit") {
        // Leaving: the box gets its harmless answer and every open form closes.
        quitting_ = true;
        return std::nullopt;
      }
      auto answer = AnswerFromText(Trim(line));
      if (answer && StyleHasButton(box.style, *answer)) return answer;
      out_ << "the box has no button \"" << Trim(line) << "\"\n";
    }
  }

 private:
  Session& session_;
  std::istream& in_;
  std::ostream& out_;
  int number_ = 0;
  bool quitting_ = false;
};

}  // namespace

void PrintHelp(std::ostream& out) {
  out << "statements (one a line; quote text with blanks; # starts a comment):\n"
         "  as USER [PASSWORD] | today YYYY-MM-DD\n"
         "  register none|not-installed|installed|cashed-in [REGISTER_ID]   this workstation's register\n"
         "  call OpenCustomer N | ShowCustomer N|result | SelectCustomer [tab=T] [group=G] [spawn] [autoreturn]\n"
         "  call ShowSearchCustomer | call NewCustomer [P|C] | call result.METHOD [ARGS]\n"
         "  set result.PROP VALUE      (also result.address[TYPE].PROP, result.PrimaryAddress.PROP)\n"
         "  type|paste CTRL TEXT, key CTRL KEY, focus CTRL, click CTRL [ITEM], choose CTRL ITEM,\n"
         "  date CTRL YYYY-MM-DD|none, select GRID ROWS, edit GRID ROW COL VALUE, dblclick|expand GRID ROW, close\n"
         "  answer Yes|No|OK|Cancel\n"
         "  expect msgbox \"TEXT\" [\"TITLE\"] | expect nomsgbox | expect form = NAME\n"
         "  expect CTRL.PROP OP VALUE | expect result.PROP OP VALUE | expect result none | expect bError = true\n"
         "  expect sql ~|!~ TEXT | expect db \"SELECT ...\" OP VALUE      (OP: = != ~ !~ < <= > >=)\n"
         "  expect nocardnumbers                   no full card number in the database, its log or the trace\n"
         "  expect host ~ TEXT [THEN...] | expect host !~ TEXT\n"
         "  expect file PATH|last ~|!~ TEXT      (a printed document; last: the one printed last)\n"
         "      (host calls: CheckPermission, ErrorObject.Display, RecordTaskActivity, GetSetting,\n"
         "       SaveSetting, each with its arguments and answer, as in the trace file; THEN texts\n"
         "       must be met by later calls, in order)\n"
         "  schema \"ALTER TABLE kiv_... ADD COLUMN ...\"      (a site's own column, added with plain SQL)\n"
         "  dump | help | quit\n"
         "calls:";
  for (const auto& c : EngineCalls()) out << " " << c.name;
  out << "\nrecord operations:";
  for (const auto& m : RecordMethods()) out << " " << m.name;
  out << "\n";
}

int RunRepl(Session& session, std::istream& in, std::ostream& out) {
  out << "kivcust: customer maintenance, signed in as " << session.User()
      << ". Try: call OpenCustomer 1   (help lists the statements, quit leaves)\n";
  Interpreter interpreter(session, out);
  interpreter.SetInteractive(true);
  PromptSource source(session, in, out);
  interpreter.Run(source);
  return 0;
}

}  // namespace kiv::kivcust

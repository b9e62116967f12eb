// The automation language read into statements: one statement a line, blanks split the
// arguments, double quotes group text with blanks, "#" at the start of a word comments out
// the rest of the line. A script is checked whole before any line runs.
#pragma once
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kiv::kivcust {

//! The shape of an `expect` line, decided when the line is read.
enum class ExpectKind {
  None,        // not an expect line
  MsgBox,      // expect msgbox "TEXT" ["TITLE"]
  NoMsgBox,    // expect nomsgbox
  Form,        // expect form OP NAME
  ResultNone,  // expect result none
  Result,      // expect result.PROP OP VALUE (result.ok included)
  BError,      // expect bError OP true|false
  Sql,         // expect sql ~ TEXT
  Host,        // expect host ~ TEXT [THEN...], expect host !~ TEXT
  Db,          // expect db "SELECT ..." OP VALUE
  File,        // expect file PATH|last ~ TEXT, expect file PATH|last !~ TEXT
  NoCardNumbers,  // expect nocardnumbers: none in the database file, its log or the trace
  Control,     // expect CTRL.PROP OP VALUE, GRID[ROW,COL] OP VALUE, GRID.rows OP N, ...
};

struct Statement {
  int line = 0;                   //!< 1-based line number in its script
  std::string verb;               //!< the first word, lower case ("call", "expect", ...)
  std::vector<std::string> args;  //!< the remaining words, quotes removed and escapes applied
  ExpectKind expect = ExpectKind::None;
  std::string source;             //!< the line as written, for messages
};

//! A line that cannot be read: the message names the line.
struct SyntaxError : std::runtime_error {
  SyntaxError(int line_, const std::string& reason_)
      : std::runtime_error("line " + std::to_string(line_) + ": " + reason_), line(line_), reason(reason_) {}
  int line;
  std::string reason;
};

//! Splits one line into words; throws SyntaxError for an open quote or an unknown escape.
//! A "#" that starts a word ends the line; inside a word or in quotes it is text.
std::vector<std::string> SplitWords(std::string_view line, int line_number);

//! Reads one line; nullopt for a blank or comment-only line. Throws SyntaxError when the
//! line is not a statement of the language (unknown verb, wrong number of words, bad value).
std::optional<Statement> ParseLine(std::string_view line, int line_number);

//! Reads a whole script; the first bad line throws SyntaxError.
std::vector<Statement> ParseScript(std::string_view text);

//! A site's own change of its database that a script may make with `schema`: one
//! "ALTER TABLE kiv_... ADD [COLUMN] ..." statement (a site column added with plain SQL).
bool IsSiteColumnChange(std::string_view sql);

//! The comparison operators of `expect`: = != ~ (contains) !~ < <= > >=.
bool IsComparison(std::string_view op);

//! Compares `actual` with `expected` under `op`: numbers by value when both read as numbers,
//! otherwise text ("true"/"false" without regard to case, to match Boolean text).
bool Compare(const std::string& actual, std::string_view op, const std::string& expected);

}  // namespace kiv::kivcust

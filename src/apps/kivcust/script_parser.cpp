// Reading automation scripts: words, quotes and escapes, then each verb's shape, so that a
// script with a bad line stops before it touches the database.
#include "apps/kivcust/script_parser.h"


#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace kiv::kivcust {
namespace {

std::string Lower(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return std::tolower(c); });
  return out;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

bool IsIsoDate(std::string_view s) {
  if (s.size() != 10 || s[4] != '-' || s[7] != '-') return false;
  for (size_t i : {0, 1, 2, 3, 5, 6, 8, 9})
    if (!std::isdigit(static_cast<unsigned char>(s[i]))) return false;
  int month = std::atoi(std::string(s.substr(5, 2)).c_str());
  int day = std::atoi(std::string(s.substr(8, 2)).c_str());
  return month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

bool IsBooleanText(std::string_view s) {
  std::string l = Lower(s);
  return l == "true" || l == "false";
}

// A check of the database only reads: the statement must start as a query does. (BEGIN and
// the other transaction statements count as read-only to SQLite, yet would hold a
// transaction open under the component's later saves.) The reader of the statement still
// refuses a query that writes or a second statement.
bool IsSelect(std::string_view sql) {
  size_t i = 0;
  while (i < sql.size() && (IsBlank(sql[i]) || sql[i] == '\n' || sql[i] == '(')) ++i;
  std::string word;
  while (i < sql.size() && std::isalpha(static_cast<unsigned char>(sql[i]))) word += sql[i++];
  word = Lower(word);
  return word == "select" || word == "with" || word == "values";
}

struct Shape {
  const char* verb;
  int min_args;
  int max_args;  // -1: no limit
};

// Every verb with the number of words it takes after itself.
constexpr Shape kShapes[] = {
    {"as", 1, 2},     {"today", 1, 1},    {"call", 1, -1},  {"set", 2, 2},     {"type", 2, 2},
    {"paste", 2, 2},  {"key", 2, 2},      {"focus", 1, 1},  {"click", 1, 2},   {"choose", 2, 2},
    {"date", 2, 2},   {"select", 2, 2},   {"edit", 4, 4},   {"dblclick", 2, 2}, {"expand", 2, 2},
    {"close", 0, 0},  {"answer", 1, 1},   {"expect", 1, -1}, {"dump", 0, 0},
    {"schema", 1, 1},
    {"register", 1, 2},
};

const Shape* FindShape(const std::string& verb) {
  for (const auto& s : kShapes)
    if (verb == s.verb) return &s;
  return nullptr;
}

void RequireArgs(const Statement& st, size_t n, const char* form) {
  if (st.args.size() != n) throw SyntaxError(st.line, std::string("expected: expect ") + form);
}

void RequireComparison(const Statement& st, size_t index) {
  if (!IsComparison(st.args[index]))
    throw SyntaxError(st.line, "\"" + st.args[index] + "\" is not a comparison (= != ~ !~ < <= > >=)");
}

ExpectKind ClassifyExpect(const Statement& st) {
  const std::string subject = st.args[0];
  const std::string lower = Lower(subject);
  if (lower == "msgbox") {
    if (st.args.size() < 2 || st.args.size() > 3) throw SyntaxError(st.line, "expected: expect msgbox \"TEXT\" [\"TITLE\"]");
    return ExpectKind::MsgBox;
  }
  if (lower == "nomsgbox") {
    RequireArgs(st, 1, "nomsgbox");
    return ExpectKind::NoMsgBox;
  }
  if (lower == "nocardnumbers") {
    RequireArgs(st, 1, "nocardnumbers");
    return ExpectKind::NoCardNumbers;
  }
  if (lower == "result" && st.args.size() == 2) {
    if (Lower(st.args[1]) != "none") throw SyntaxError(st.line, "expected: expect result none");
    return ExpectKind::ResultNone;
  }
  ExpectKind kind = ExpectKind::Control;
  if (lower == "form") kind = ExpectKind::Form;
  else if (lower.rfind("result.", 0) == 0 && lower.size() > 7) kind = ExpectKind::Result;
  else if (lower == "berror") kind = ExpectKind::BError;
  else if (lower == "sql") kind = ExpectKind::Sql;
  else if (lower == "db") kind = ExpectKind::Db;
  else if (lower == "host") kind = ExpectKind::Host;
  else if (lower == "file") kind = ExpectKind::File;
  else if (subject.find_first_of(".[") == std::string::npos || subject.front() == '.' || subject.front() == '[')
    throw SyntaxError(st.line, "\"" + subject + "\" is not something to expect (CTRL.PROP, GRID[ROW,COL], result.PROP, ...)");
  if (kind == ExpectKind::Host) {
    // Texts after the first must be met by later calls, in the order given.
    if (st.args.size() < 3 || !(st.args[1] == "~" || (st.args[1] == "!~" && st.args.size() == 3)))
      throw SyntaxError(st.line, "expected: expect host ~ TEXT [THEN...] or expect host !~ TEXT");
    return kind;
  }
  if (kind == ExpectKind::File) {
    if (st.args.size() != 4 || (st.args[2] != "~" && st.args[2] != "!~"))
      throw SyntaxError(st.line, "expected: expect file PATH|last ~ TEXT or expect file PATH|last !~ TEXT");
    return kind;
  }
  if (kind == ExpectKind::Db) {
    RequireArgs(st, 4, "db \"SELECT ...\" OP VALUE");
    if (!IsSelect(st.args[1])) throw SyntaxError(st.line, "expect db takes one SELECT statement, not \"" + st.args[1] + "\"");
    RequireComparison(st, 2);
    return kind;
  }
  RequireArgs(st, 3, "SUBJECT OP VALUE");
  RequireComparison(st, 1);
  if (kind == ExpectKind::Sql && st.args[1] != "~" && st.args[1] != "!~")
    throw SyntaxError(st.line, "expected: expect sql ~ TEXT");
  if (kind == ExpectKind::BError && !IsBooleanText(st.args[2]))
    throw SyntaxError(st.line, "expected: expect bError = true|false");
  return kind;
}

}  // namespace

bool IsSiteColumnChange(std::string_view sql) {
  std::string words;
  for (char c : sql) {
    const char folded = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (folded == ';') return false;
    if (std::isspace(static_cast<unsigned char>(folded)) == 0) words += folded;
    else if (!words.empty() && words.back() != ' ') words += ' ';
  }
  if (words.rfind("alter table kiv_", 0) != 0) return false;
  const size_t add = words.find(" add ");
  return add != std::string::npos && words.find(' ', 16) == add;
}

namespace {

void CheckShape(Statement& st) {
  const Shape* shape = FindShape(st.verb);
  if (shape == nullptr) throw SyntaxError(st.line, "unknown statement \"" + st.verb + "\"");
  int n = static_cast<int>(st.args.size());
  if (n < shape->min_args || (shape->max_args >= 0 && n > shape->max_args))
    throw SyntaxError(st.line, "wrong number of words for \"" + st.verb + "\"");

  if (st.verb == "today" && !IsIsoDate(st.args[0]))
    throw SyntaxError(st.line, "\"" + st.args[0] + "\" is not a date (YYYY-MM-DD)");
  if (st.verb == "date" && Lower(st.args[1]) != "none" && !IsIsoDate(st.args[1]))
    throw SyntaxError(st.line, "\"" + st.args[1] + "\" is not a date (YYYY-MM-DD or none)");
  if (st.verb == "schema" && !IsSiteColumnChange(st.args[0]))
    throw SyntaxError(st.line, "expected: schema \"ALTER TABLE kiv_... ADD COLUMN ...\"");
  static const char* const kRegisterStates[] = {"none", "not-installed", "installed", "cashed-in"};
  if (st.verb == "register" &&
      std::find(std::begin(kRegisterStates), std::end(kRegisterStates), st.args[0]) == std::end(kRegisterStates))
    throw SyntaxError(st.line, "\"" + st.args[0] + "\" is not a register state (none not-installed installed cashed-in)");
  if (st.verb == "set" && Lower(st.args[0]).rfind("result.", 0) != 0)
    throw SyntaxError(st.line, "expected: set result.PROP VALUE");
  if (st.verb == "answer") {
    static const char* const kAnswers[] = {"yes", "no", "ok", "cancel", "abort", "retry", "ignore"};
    std::string a = Lower(st.args[0]);
    if (std::find(std::begin(kAnswers), std::end(kAnswers), a) == std::end(kAnswers))
      throw SyntaxError(st.line, "\"" + st.args[0] + "\" is not an answer (Yes No OK Cancel)");
  }
  if (st.verb == "expect") st.expect = ClassifyExpect(st);
}

}  // namespace

std::vector<std::string> SplitWords(std::string_view line, int line_number) {
  std::vector<std::string> words;
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && IsBlank(line[i])) ++i;
    if (i >= line.size() || line[i] == '#') break;
    std::string word;
    bool in_quotes = false;
    for (; i < line.size(); ++i) {
      char c = line[i];
      if (!in_quotes && IsBlank(c)) break;
      if (c == '"') {
        in_quotes = !in_quotes;
        continue;
      }
      if (c == '\\' && in_quotes) {
        if (i + 1 >= line.size()) throw SyntaxError(line_number, "a backslash ends the line");
        char e = line[++i];
        switch (e) {
          case '"': word += '"'; break;
          case '\\': word += '\\'; break;
          case 't': word += '\t'; break;
          case 'n': word += '\n'; break;
          case 'r': word += '\r'; break;
          default: throw SyntaxError(line_number, std::string("unknown escape \\") + e);
        }
        continue;
      }
      word += c;
    }
    if (in_quotes) throw SyntaxError(line_number, "a quote is not closed");
    words.push_back(std::move(word));
  }
  return words;
}

std::optional<Statement> ParseLine(std::string_view line, int line_number) {
  auto words = SplitWords(line, line_number);
  if (words.empty()) return std::nullopt;
  Statement st;
  st.line = line_number;
  st.verb = Lower(words.front());
  st.args.assign(words.begin() + 1, words.end());
  st.source = std::string(line);
  while (!st.source.empty() && (st.source.back() == '\r' || st.source.back() == '\n')) st.source.pop_back();
  CheckShape(st);
  return st;
}

std::vector<Statement> ParseScript(std::string_view text) {
  // Editors that save UTF-8 with a byte-order mark put it before the first statement.
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());
  std::vector<Statement> out;
  int number = 0;
  size_t pos = 0;
  while (pos <= text.size()) {
    size_t end = text.find('\n', pos);
    if (end == std::string_view::npos) end = text.size();
    ++number;
    if (auto st = ParseLine(text.substr(pos, end - pos), number)) out.push_back(std::move(*st));
    pos = end + 1;
  }
  return out;
}

bool IsComparison(std::string_view op) {
  return op == "=" || op == "!=" || op == "~" || op == "!~" || op == "<" || op == "<=" || op == ">" || op == ">=";
}

namespace {
std::optional<double> AsNumber(const std::string& s) {
  if (s.empty()) return std::nullopt;
  char* end = nullptr;
  double v = std::strtod(s.c_str(), &end);
  // The whole text must be the number: a NUL inside it is not the end of it.
  if (end != s.c_str() + s.size() || !std::isfinite(v)) return std::nullopt;
  return v;
}
}  // namespace

bool Compare(const std::string& actual, std::string_view op, const std::string& expected) {
  if (op == "~") return actual.find(expected) != std::string::npos;
  if (op == "!~") return actual.find(expected) == std::string::npos;
  auto a = AsNumber(actual);
  auto e = AsNumber(expected);
  if (a && e) {
    if (op == "=") return *a == *e;
    if (op == "!=") return *a != *e;
    if (op == "<") return *a < *e;
    if (op == "<=") return *a <= *e;
    if (op == ">") return *a > *e;
    return *a >= *e;
  }
  bool equal = actual == expected || (IsBooleanText(actual) && Lower(actual) == Lower(expected));
  if (op == "=") return equal;
  if (op == "!=") return !equal;
  if (op == "<") return actual < expected;
  if (op == "<=") return actual <= expected;
  if (op == ">") return actual > expected;
  return actual >= expected;
}

}  // namespace kiv::kivcust

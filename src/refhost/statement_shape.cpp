// A small tokenizer following SQLite's rules for blanks, comments, literals, quoted names,
// parameters and operators.
#include "refhost/statement_shape.h"

#include <cctype>

namespace kiv::refhost {

namespace {

bool IsIdChar(unsigned char c) { return std::isalnum(c) || c == '_' || c == '$' || c >= 0x80; }
bool IsIdStart(unsigned char c) { return std::isalpha(c) || c == '_' || c >= 0x80; }

// The end of a quoted token opened at `i` and closed by `close`, a doubled closer standing for
// itself; npos when it never closes.
size_t QuotedEnd(std::string_view sql, size_t i, char close) {
  for (size_t j = i + 1; j < sql.size(); ++j) {
    if (sql[j] != close) continue;
    if (close != ']' && j + 1 < sql.size() && sql[j + 1] == close) {
      ++j;
      continue;
    }
    return j + 1;
  }
  return std::string_view::npos;
}

// The end of a number starting at `i` (digits, a point, an exponent, or hexadecimal).
size_t NumberEnd(std::string_view sql, size_t i) {
  auto digit = [&](size_t k) { return k < sql.size() && std::isdigit(static_cast<unsigned char>(sql[k])); };
  if (sql[i] == '0' && i + 2 < sql.size() && (sql[i + 1] == 'x' || sql[i + 1] == 'X') &&
      std::isxdigit(static_cast<unsigned char>(sql[i + 2]))) {
    size_t j = i + 2;
    while (j < sql.size() && (std::isxdigit(static_cast<unsigned char>(sql[j])) || sql[j] == '_')) ++j;
    return j;
  }
  size_t j = i;
  while (digit(j) || (j < sql.size() && sql[j] == '_' && digit(j + 1))) ++j;
  if (j < sql.size() && sql[j] == '.') {
    ++j;
    while (digit(j)) ++j;
  }
  if (j < sql.size() && (sql[j] == 'e' || sql[j] == 'E')) {
    size_t k = j + 1;
    if (k < sql.size() && (sql[k] == '+' || sql[k] == '-')) ++k;
    if (digit(k)) {
      j = k;
      while (digit(j)) ++j;
    }
  }
  // SQLite reads "12abc" as one bad token; keep it whole so the shape cannot match.
  while (j < sql.size() && IsIdChar(static_cast<unsigned char>(sql[j]))) ++j;
  return j;
}

}  // namespace

StatementShape ShapeOf(std::string_view sql) {
  StatementShape shape;
  auto add = [&](std::string_view token) {
    if (!shape.text.empty()) shape.text += ' ';
    shape.text += token;
  };
  size_t i = 0;
  while (i < sql.size()) {
    const unsigned char c = static_cast<unsigned char>(sql[i]);
    const char next = i + 1 < sql.size() ? sql[i + 1] : '\0';
    if (c == '\0') {
      shape.complete = false;
      return shape;
    }
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f') {
      ++i;
      continue;
    }
    // A comment stays in the form: the component writes none, and a text that comments out
    // the rest of a statement is not a value.
    if (c == '-' && next == '-') {
      add("--");
      while (i < sql.size() && sql[i] != '\n') ++i;
      continue;
    }
    if (c == '/' && next == '*') {
      size_t end = sql.find("*/", i + 2);
      if (end == std::string_view::npos) {
        shape.complete = false;
        return shape;
      }
      add("/**/");
      i = end + 2;
      continue;
    }
    if (c == '\'' || ((c == 'x' || c == 'X') && next == '\'')) {
      size_t end = QuotedEnd(sql, c == '\'' ? i : i + 1, '\'');
      if (end == std::string_view::npos) {
        shape.complete = false;
        return shape;
      }
      if (c == '\'') shape.has_text = true;
      add("?");
      i = end;
      continue;
    }
    if (c == '"' || c == '`' || c == '[') {
      size_t end = QuotedEnd(sql, i, c == '[' ? ']' : static_cast<char>(c));
      if (end == std::string_view::npos) {
        shape.complete = false;
        return shape;
      }
      // A quoted name is a name: "Zip" and Zip are the same column.
      std::string name(sql.substr(i + 1, end - i - 2));
      for (char& ch : name) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
      add("\"" + name + "\"");
      i = end;
      continue;
    }
    if (std::isdigit(c) || (c == '.' && std::isdigit(static_cast<unsigned char>(next)))) {
      size_t end = NumberEnd(sql, i);
      add("?");
      i = end;
      continue;
    }
    if (c == '?' || c == ':' || c == '@' || c == '$' || c == '#') {
      size_t j = i + 1;
      while (j < sql.size() && IsIdChar(static_cast<unsigned char>(sql[j]))) ++j;
      add("?");
      i = j;
      continue;
    }
    if (IsIdStart(c)) {
      size_t j = i;
      while (j < sql.size() && IsIdChar(static_cast<unsigned char>(sql[j]))) ++j;
      std::string word(sql.substr(i, j - i));
      for (char& ch : word) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
      add(word == "TRUE" || word == "FALSE" || word == "NULL" ? std::string("?") : word);
      i = j;
      continue;
    }
    // Operators: the two- and three-character ones SQLite knows, else one character.
    static constexpr std::string_view kLong[] = {"->>", "||", "<=", ">=", "<>", "!=", "==", "<<", ">>", "->"};
    size_t length = 1;
    for (std::string_view op : kLong)
      if (sql.substr(i, op.size()) == op) {
        length = op.size();
        break;
      }
    add(sql.substr(i, length));
    i += length;
  }
  return shape;
}

}  // namespace kiv::refhost

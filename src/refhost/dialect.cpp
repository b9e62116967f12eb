// Server-dialect words rewritten for SQLite, skipping literals and comments.
#include "refhost/dialect.h"

#include <array>
#include <cctype>
#include <charconv>

#include "core/text.h"

namespace kiv::refhost {

namespace {

bool IsWordStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_' || c == '@' || c == '#'; }
bool IsWordChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '@' || c == '#' || c == '$'; }

size_t SkipBlanks(std::string_view s, size_t i) {
  while (i < s.size() && std::isspace(static_cast<unsigned char>(s[i]))) ++i;
  return i;
}

bool IsLockHint(std::string_view word) {
  static constexpr std::array<std::string_view, 14> kHints = {
      "NOLOCK",    "ROWLOCK", "UPDLOCK",         "HOLDLOCK",      "READPAST",       "TABLOCK",      "TABLOCKX",
      "XLOCK",     "PAGLOCK", "READUNCOMMITTED", "READCOMMITTED", "REPEATABLEREAD", "SERIALIZABLE", "NOWAIT"};
  for (auto hint : kHints)
    if (EqualsNoCase(word, hint)) return true;
  return false;
}

// At `i` (an opening parenthesis): the end of "(hint[, hint...])", or npos when it is
// anything else.
size_t MatchHintList(std::string_view s, size_t i) {
  if (i >= s.size() || s[i] != '(') return std::string_view::npos;
  ++i;
  bool any = false;
  for (;;) {
    i = SkipBlanks(s, i);
    size_t start = i;
    while (i < s.size() && IsWordChar(s[i])) ++i;
    if (i == start || !IsLockHint(s.substr(start, i - start))) return std::string_view::npos;
    any = true;
    i = SkipBlanks(s, i);
    if (i < s.size() && s[i] == ',') {
      ++i;
      continue;
    }
    if (i < s.size() && s[i] == ')' && any) return i + 1;
    return std::string_view::npos;
  }
}

//! Copies a "--" or "/* */" comment starting at `i` unchanged and returns the index after it;
//! returns `i` itself when no comment starts there.
size_t CopyComment(std::string_view s, size_t i, std::string& out) {
  if (i + 1 >= s.size()) return i;
  size_t end = i;
  if (s[i] == '-' && s[i + 1] == '-') {
    end = s.find('\n', i);
    if (end == std::string_view::npos) end = s.size();
  } else if (s[i] == '/' && s[i + 1] == '*') {
    end = s.find("*/", i + 2);
    end = end == std::string_view::npos ? s.size() : end + 2;
  } else {
    return i;
  }
  out.append(s.substr(i, end - i));
  return end;
}

// Copies a quoted run starting at `i` (quote char `open`, closing `close`), a doubled
// closing char standing for itself; returns the index after it.
size_t CopyQuoted(std::string_view s, size_t i, char close, std::string& out) {
  out.push_back(s[i++]);
  while (i < s.size()) {
    char c = s[i++];
    out.push_back(c);
    if (c == close) {
      if (i < s.size() && s[i] == close) {
        out.push_back(s[i++]);
        continue;
      }
      break;
    }
  }
  return i;
}

// Most statements hold nothing to rewrite: every rewrite starts at a "[", at a "(" (hint
// lists and the functions renamed), at an N before a quote, or at the word TOP. Seeing none
// of these (letters compared without regard to case) the text goes through unchanged.
bool MayNeedRewrite(std::string_view s) {
  for (size_t i = 0; i < s.size(); ++i) {
    const char c = s[i];
    if (c == '[' || c == '(') return true;
    if (c == '\'' && i > 0 && (s[i - 1] == 'N' || s[i - 1] == 'n')) return true;
    if ((c == 'T' || c == 't') && i + 2 < s.size() && (s[i + 1] | 0x20) == 'o' && (s[i + 2] | 0x20) == 'p')
      return true;
  }
  return false;
}

// A byte of a name or of a number: letters (UTF-8 ones included), digits, "_" and "$".
bool IsNameByte(char c) {
  const auto u = static_cast<unsigned char>(c);
  return std::isalnum(u) || c == '_' || c == '$' || u >= 0x80;
}

// True when the text copied so far ends with a comparison or assignment operator, blanks and
// one sign allowed after it: what follows is a value, never a position or a count.
bool EndsWithComparison(const std::string& out) {
  size_t i = out.size();
  auto skip_blanks = [&] {
    while (i > 0 && std::isspace(static_cast<unsigned char>(out[i - 1]))) --i;
  };
  skip_blanks();
  if (i > 0 && (out[i - 1] == '-' || out[i - 1] == '+')) {
    --i;
    skip_blanks();
  }
  return i > 0 && (out[i - 1] == '=' || out[i - 1] == '<' || out[i - 1] == '>');
}

// Ends the SELECT copied so far with its row limit, blanks before it dropped.
void AppendLimit(std::string& out, const std::string& count) {
  while (!out.empty() && std::isspace(static_cast<unsigned char>(out.back()))) out.pop_back();
  out.append(" LIMIT ").append(count);
}

}  // namespace

ParameterizedSql ParameterizeLiterals(std::string sql) {
  ParameterizedSql result;
  if (sql.find_first_of("0123456789") == std::string::npos) {
    result.text = std::move(sql);
    return result;
  }
  const std::string_view s = sql;
  std::string out;
  out.reserve(s.size());
  // The parenthesis depths of the SELECTs whose result columns are being read: a number there
  // is part of the column's name.
  std::vector<int> result_lists;
  int depth = 0;
  size_t i = 0;
  while (i < s.size()) {
    const char c = s[i];
    if (c == '\'' || c == '"' || c == '`') {
      i = CopyQuoted(s, i, c, out);
      continue;
    }
    if (c == '[') {
      i = CopyQuoted(s, i, ']', out);
      continue;
    }
    if (size_t end = CopyComment(s, i, out); end != i) {
      i = end;
      continue;
    }
    if (c == '?' || c == ':' || c == '@' || c == '$' || c == '#') {
      // The text has parameters of its own (SQLite reads ?NNN, :name, @name, $name and
      // #name); ours would be numbered past or between them and bound into the wrong slots.
      result.values.clear();
      result.text = std::move(sql);
      return result;
    }
    if (c == '(' || c == ')') {
      depth += c == '(' ? 1 : -1;
      while (!result_lists.empty() && result_lists.back() > depth) result_lists.pop_back();
      out.push_back(c);
      ++i;
      continue;
    }
    if (!IsNameByte(c)) {
      out.push_back(c);
      ++i;
      continue;
    }
    size_t end = i;
    while (end < s.size() && IsNameByte(s[end])) ++end;
    const std::string_view token = s.substr(i, end - i);
    if (!std::isdigit(static_cast<unsigned char>(c))) {
      if (EqualsNoCase(token, "SELECT")) result_lists.push_back(depth);
      if (EqualsNoCase(token, "FROM") && !result_lists.empty() && result_lists.back() == depth)
        result_lists.pop_back();
      out.append(token);
      i = end;
      continue;
    }
    // A number: only digits, not the whole part of a decimal, and within 64 bits.
    int64_t value = 0;
    const auto [stop, ec] = std::from_chars(token.data(), token.data() + token.size(), value);
    const bool plain = ec == std::errc() && stop == token.data() + token.size() && (end == s.size() || s[end] != '.');
    if (plain && result_lists.empty() && EndsWithComparison(out)) {
      out.push_back('?');
      result.values.push_back(value);
    } else {
      out.append(token);
    }
    i = end;
  }
  result.text = std::move(out);
  return result;
}

std::string TranslateSql(std::string_view s) {
  if (!MayNeedRewrite(s)) return std::string(s);
  std::string out;
  out.reserve(s.size() + 16);
  // Each SELECT with a TOP keeps its count until its own end: the closing parenthesis of its
  // subquery, or the end of the text for the outermost one.
  struct PendingLimit {
    int depth;
    std::string count;
  };
  std::vector<PendingLimit> limits;
  int depth = 0;
  std::string last_word;  // the previous keyword or name, upper-cased
  std::string upper;      // the current word, upper-cased
  size_t i = 0;
  while (i < s.size()) {
    char c = s[i];
    if (c == '\'') {
      i = CopyQuoted(s, i, '\'', out);
      last_word.clear();
      continue;
    }
    if (c == '"') {
      i = CopyQuoted(s, i, '"', out);
      last_word.clear();
      continue;
    }
    if (c == '[') {
      size_t end = s.find(']', i);
      if (end == std::string_view::npos) end = s.size();
      out.push_back('"');
      out.append(s.substr(i + 1, end - i - 1));
      out.push_back('"');
      i = end < s.size() ? end + 1 : end;
      last_word.clear();
      continue;
    }
    if (size_t end = CopyComment(s, i, out); end != i) {
      i = end;
      continue;
    }
    if (c == '(') {
      size_t end = MatchHintList(s, i);  // "FROM t (nolock)"
      if (end != std::string_view::npos) {
        while (!out.empty() && out.back() == ' ') out.pop_back();
        i = end;
        continue;
      }
      out.push_back(c);
      ++i;
      ++depth;
      last_word.clear();
      continue;
    }
    if (c == ')') {
      if (!limits.empty() && limits.back().depth == depth) {
        AppendLimit(out, limits.back().count);
        limits.pop_back();
      }
      out.push_back(c);
      ++i;
      if (depth > 0) --depth;
      last_word.clear();
      continue;
    }
    if (!IsWordStart(c) || (i > 0 && (IsWordChar(s[i - 1]) || s[i - 1] == '.'))) {
      // A number, an operator, or the rest of a qualified name: copied as is.
      if (IsWordChar(c)) {
        size_t start = i;
        while (i < s.size() && IsWordChar(s[i])) ++i;
        out.append(s.substr(start, i - start));
      } else {
        out.push_back(c);
        ++i;
      }
      continue;
    }
    size_t start = i;
    while (i < s.size() && IsWordChar(s[i])) ++i;
    std::string_view word = s.substr(start, i - start);
    // Only ASCII keywords are looked for, so folding the ASCII letters is enough (a word with
    // other letters matches none of them either way); the buffer is reused from word to word.
    upper.assign(word);
    for (char& ch : upper)
      if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
    size_t next = SkipBlanks(s, i);
    bool call = next < s.size() && s[next] == '(';

    if (upper == "N" && i < s.size() && s[i] == '\'') continue;  // N'text' is plain text here
    const bool has_limit = !limits.empty() && limits.back().depth == depth;
    if (upper == "TOP" && !has_limit && (last_word == "SELECT" || last_word == "DISTINCT")) {
      size_t j = next;
      bool paren = j < s.size() && s[j] == '(';
      if (paren) j = SkipBlanks(s, j + 1);
      size_t digits = j;
      while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) ++j;
      if (j > digits) {
        limits.push_back({depth, std::string(s.substr(digits, j - digits))});
        if (paren) {
          j = SkipBlanks(s, j);
          if (j < s.size() && s[j] == ')') ++j;
        }
        i = j;
        while (!out.empty() && out.back() == ' ') out.pop_back();
        continue;
      }
    }
    if (upper == "WITH" && call) {
      size_t end = MatchHintList(s, next);
      if (end != std::string_view::npos) {
        while (!out.empty() && out.back() == ' ') out.pop_back();
        i = end;
        continue;
      }
    }
    if (upper == "ISNULL" && call) {
      out.append("IFNULL");
    } else if (upper == "LEN" && call) {
      out.append("LENGTH");
    } else if (upper == "GETDATE" && call) {
      size_t close = SkipBlanks(s, next + 1);
      if (close < s.size() && s[close] == ')') {
        out.append("kiv_now()");
        i = close + 1;
        last_word.clear();
        continue;
      }
      out.append(word);
    } else {
      out.append(word);
    }
    last_word = upper;
  }
  // What is still open (the outermost SELECT, or a subquery left unclosed) ends with the text.
  while (!limits.empty()) {
    while (!out.empty() && (out.back() == ';' || std::isspace(static_cast<unsigned char>(out.back()))))
      out.pop_back();
    AppendLimit(out, limits.back().count);
    limits.pop_back();
  }
  return out;
}

}  // namespace kiv::refhost

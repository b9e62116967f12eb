// The form of a statement with its values taken out: what a crafted text would have to
// change to make the statement read or write something else. Tokens are read as SQLite's
// own tokenizer reads them, so the form is the one SQLite will run.
#pragma once
#include <string>
#include <string_view>

namespace kiv::refhost {

struct StatementShape {
  //! The tokens, one blank apart: words in capitals, every literal (text, number, blob,
  //! TRUE, FALSE, NULL) and every parameter as `?`, each comment as `--` or `/**/`.
  std::string text;
  //! A quoted text literal ('...') stood somewhere in the statement.
  bool has_text = false;
  //! False when a literal, a quoted name or a comment runs to the end unclosed, or the
  //! statement holds a NUL (where SQLite would stop reading).
  bool complete = true;
};

//! The shape of `sql`; never throws.
StatementShape ShapeOf(std::string_view sql);

}  // namespace kiv::refhost

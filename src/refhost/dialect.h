// The component writes SQL for a server dialect; SQLite needs a few words changed before
// the text is prepared. The original text is kept by the caller for the trace.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kiv::refhost {

//! `SELECT TOP n` becomes `LIMIT n` at the end of that SELECT (before the parenthesis closing
//! its subquery, or at the end of the text); lock hints (`with(nolock)`, `(nolock)`) are
//! dropped; `ISNULL(` becomes `IFNULL(`, `LEN(` becomes `LENGTH(`, `GETDATE()` the host's
//! clock, `[name]` a quoted name and `N'text'` plain text. Literals and comments are copied
//! untouched.
std::string TranslateSql(std::string_view sql);

//! A translated text whose integer literals became parameters, and the values they stood for.
struct ParameterizedSql {
  std::string text;             //!< `?` where each literal stood
  std::vector<int64_t> values;  //!< the literals in order, for parameters 1, 2, ...
};

//! Takes the plain integer literals that are compared or assigned (right after `=`, `<>`, `!=`,
//! `<`, `>`, `<=`, `>=`, a sign allowed between) out of a translated text, so that texts that
//! differ only in such numbers share one prepared statement. Left as they are: numbers in a
//! SELECT's result columns (they name the column), ORDER BY positions, LIMIT counts, decimals,
//! numbers beyond 64 bits, digits inside names, literals and comments. A text holding a
//! parameter of its own (`?`, `:`, `@`, `$`, `#` outside quotes) keeps every number.
ParameterizedSql ParameterizeLiterals(std::string translated);

}  // namespace kiv::refhost

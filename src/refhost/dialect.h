// The component writes SQL for a server dialect; SQLite needs a few words changed before
// the text is prepared. The original text is kept by the caller for the trace.
#pragma once
#include <string>
#include <string_view>

namespace kiv::refhost {

//! `SELECT TOP n` becomes a trailing `LIMIT n`; lock hints (`with(nolock)`, `(nolock)`) are
//! dropped; `ISNULL(` becomes `IFNULL(`, `LEN(` becomes `LENGTH(`, `GETDATE()` the host's
//! clock, `[name]` a quoted name and `N'text'` plain text. Literals and comments are copied
//! untouched.
std::string TranslateSql(std::string_view sql);

}  // namespace kiv::refhost

// The interactive mode: the automation language typed at a prompt, with the active form
// printed after each step and the record after each engine call.
#pragma once
#include <iosfwd>

#include "apps/kivcust/session.h"

namespace kiv::kivcust {

//! Reads statements from `in` until "quit", "exit" or the end of input; returns the exit status.
int RunRepl(Session& session, std::istream& in, std::ostream& out);

//! The language's statements, one line each, for `help`.
void PrintHelp(std::ostream& out);

}  // namespace kiv::kivcust

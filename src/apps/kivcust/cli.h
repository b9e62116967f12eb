// The command line of the program: options, subcommands, the default demo database and
// the exit status.
#pragma once
#include <string>

namespace kiv::kivcust {

//! Parses the command line and runs the subcommand; the process's exit status.
int RunProgram(int argc, char** argv);

//! The demo database used when no --db is given:
//! ($XDG_DATA_HOME or ~/.local/share)/kivcust/demo.db.
std::string DefaultDatabasePath();

}  // namespace kiv::kivcust

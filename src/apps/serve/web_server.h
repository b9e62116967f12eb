// `kivcust serve`: the browser front end over one database. Serves the page from inside the
// program, signs clerks in with the reference host's users, and gives each signed-in tab its
// own WebSession.
#pragma once
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "core/date.h"

namespace kiv::serve {

struct ServeOptions {
  std::string db_path;
  std::string bind = "127.0.0.1";
  //! 0 picks a free port.
  int port = 8080;
  //! A tab that has sent nothing for this long is signed out.
  double idle_minutes = 30;
  //! How long a refused sign-in waits before it is answered.
  int refused_sign_in_ms = 1500;
  //! Fixes today's date for every session; the machine's clock when absent.
  std::optional<Date> today;
};

//! Runs the server until SIGINT or SIGTERM; prints the address to open on `out`. Returns the
//! program's exit status (1 when the address cannot be bound or the database opened).
int RunServer(const ServeOptions& options, std::ostream& out);

}  // namespace kiv::serve

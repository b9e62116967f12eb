// Subcommands: init-demo builds a demo database, run plays scripts, repl prompts, open
// prints one customer. Every failure ends in one message on standard error and status 1.
#include "apps/kivcust/cli.h"

#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "apps/kivcust/customer_properties.h"
#include "apps/kivcust/interpreter.h"
#include "apps/kivcust/repl.h"
#include "apps/kivcust/session.h"
#include "apps/serve/web_server.h"
#include "host/host_error.h"
#include "refhost/demo_data.h"
#include "refhost/ref_host.h"

namespace kiv::kivcust {
namespace {

namespace fs = std::filesystem;

constexpr int32_t kDefaultDemoCustomers = 10000;

struct InitOptions {
  int32_t customers = kDefaultDemoCustomers;
  uint64_t seed = 1;
  bool force = false;
};

int Error(const std::string& message) {
  std::cerr << "kivcust: " << message << "\n";
  return 1;
}

//! Builds a demo database at `path`; throws with a clear message. The file is built under
//! another name and renamed when complete, so an interrupted build never leaves a
//! half-filled database where the program would open it.
void InitDemo(const std::string& path, const InitOptions& options, std::ostream& out) {
  std::error_code ec;
  if (fs::exists(path, ec) && !options.force) throw std::runtime_error(path + " already exists; add --force to replace it");
  const std::string part = path + ".part";
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(part + suffix, ec);
  auto started = std::chrono::steady_clock::now();
  refhost::DemoSummary summary;
  {
    refhost::OpenOptions open;
    open.create_if_missing = true;
    auto host = refhost::RefHost::Open(part, open);
    summary = refhost::BuildDemoData(host->Database()->Handle(), {options.customers, options.seed});
  }
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  fs::rename(part, path);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  out << "demo database " << path << ": " << summary.customers << " customers (" << summary.companies
      << " companies, " << summary.households << " households) and " << summary.duplicates
      << " deliberate duplicates, " << summary.addresses << " addresses, "
      << summary.zip_codes << " postal codes in " << std::fixed << std::setprecision(1) << seconds << " s\n"
      << "users: " << refhost::kDemoManager << " (every right), " << refhost::kDemoClerk << ", "
      << refhost::kDemoViewer << " (read only)\n";
}

std::optional<Date> ParseToday(const std::string& text) {
  if (text.empty()) return std::nullopt;
  auto d = text.size() == 10 ? Date::Parse(text) : std::nullopt;
  if (!d) throw std::runtime_error("--today " + text + " is not a date (YYYY-MM-DD)");
  return d;
}

int RunScripts(SessionOptions options, const std::vector<std::string>& scripts) {
  for (const auto& path : scripts) {
    std::error_code ec;
    if (fs::is_directory(path, ec)) return Error(path + " is a folder, not a script");
    std::ifstream file(path);
    if (!file) return Error("cannot read the script " + path);
    std::stringstream text;
    text << file.rdbuf();
    // An empty file reads nothing and is a script with no lines; any other failure is not.
    if (file.bad() || (!text && file.peek() != std::ifstream::traits_type::eof()))
      return Error("cannot read the script " + path);
    std::vector<Statement> statements;
    try {
      statements = ParseScript(text.str());
    } catch (const SyntaxError& e) {
      return Error(path + ": line " + std::to_string(e.line) + ": syntax error: " + e.reason);
    }
    Session session(options);
    Interpreter interpreter(session, std::cout);
    ScriptSource source(std::move(statements));
    if (!interpreter.Run(source)) return Error(path + ": " + interpreter.LastFailure()->Text());
    std::cout << path << ": ok\n";
    options.append_trace = true;
  }
  return 0;
}

//! The customer number of `open N`; throws with one line for text that is not one.
int32_t CustomerNumber(const std::string& text) {
  try {
    return ParseLong(text);
  } catch (const std::invalid_argument& e) {
    throw std::runtime_error(std::string("open: ") + e.what());
  }
}

int OpenOne(const SessionOptions& options, int32_t customer_no) {
  Session session(options);
  OpenCustomerArgs args;
  auto customer = session.Engine().OpenCustomer(customer_no, args);
  if (args.bError || !customer) return Error("customer " + std::to_string(customer_no) + " was not found");
  PrintCustomer(std::cout, *customer, true);
  return 0;
}

}  // namespace

std::string DefaultDatabasePath() {
  const char* xdg = std::getenv("XDG_DATA_HOME");
  fs::path base;
  if (xdg != nullptr && *xdg != '\0') base = xdg;
  else if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') base = fs::path(home) / ".local" / "share";
  else base = fs::current_path();
  return (base / "kivcust" / "demo.db").string();
}

int RunProgram(int argc, char** argv) {
  CLI::App app{"kivcust: customer maintenance over a SQLite customer database"};
  app.fallthrough();
  app.require_subcommand(1);
  std::string db, user = refhost::kDemoManager, password = refhost::kDemoPassword, trace, today;
  app.add_option("--db", db, "customer database file (default: " + DefaultDatabasePath() + ", built on first use)");
  app.add_option("--user", user, "sign in as this user")->capture_default_str();
  app.add_option("--password", password, "the user's password (default: the demo users' one; \"\" signs in without)");
  app.add_option("--trace", trace, "write one line per call on the host (database, rights, errors, settings) to this file");
  app.add_option("--today", today, "fix today's date (YYYY-MM-DD)");

  InitOptions init;
  auto* init_cmd = app.add_subcommand("init-demo", "build a demo database");
  init_cmd->add_option("--customers", init.customers, "number of customers")->capture_default_str()->check(CLI::NonNegativeNumber);
  init_cmd->add_option("--seed", init.seed, "the same seed builds the same database")->capture_default_str();
  init_cmd->add_flag("--force", init.force, "replace an existing file");

  std::vector<std::string> scripts;
  auto* run_cmd = app.add_subcommand("run", "run automation scripts; status 0 when every line held");
  run_cmd->add_option("SCRIPT", scripts, "script files")->required();
  auto* repl_cmd = app.add_subcommand("repl", "type statements at a prompt");
  // Read as text and converted here, so that a number out of range gets the program's
  // one-line message and status.
  std::string customer_no;
  auto* open_cmd = app.add_subcommand("open", "print a customer's fields and addresses");
  open_cmd->add_option("N", customer_no, "customer number")->required();

  serve::ServeOptions serve;
  auto* serve_cmd = app.add_subcommand("serve", "serve the screens to a browser");
  serve_cmd->add_option("--bind", serve.bind, "address to listen on")->capture_default_str();
  serve_cmd->add_option("--port", serve.port, "port to listen on (0: any free one)")->capture_default_str()->check(CLI::Range(0, 65535));
  serve_cmd->add_option("--idle-minutes", serve.idle_minutes, "sign a tab out after this long without a request")->capture_default_str()->check(CLI::PositiveNumber);

  CLI11_PARSE(app, argc, argv);

  try {
    const int32_t open_no = open_cmd->parsed() ? CustomerNumber(customer_no) : 0;
    bool default_db = db.empty();
    if (default_db) db = DefaultDatabasePath();
    if (init_cmd->parsed()) {
      if (default_db) fs::create_directories(fs::path(db).parent_path());
      InitDemo(db, init, std::cout);
      return 0;
    }
    if (default_db && !fs::exists(db)) {
      std::cout << "first use: building the demo database " << db << " with " << kDefaultDemoCustomers
                << " customers\n";
      fs::create_directories(fs::path(db).parent_path());
      InitDemo(db, InitOptions{}, std::cout);
    }
    SessionOptions options;
    options.db_path = db;
    options.user = user;
    options.password = password;
    options.trace_file = trace;
    options.today = ParseToday(today);
    if (run_cmd->parsed()) return RunScripts(options, scripts);
    if (open_cmd->parsed()) return OpenOne(options, open_no);
    if (serve_cmd->parsed()) {
      serve.db_path = db;
      serve.today = options.today;
      return serve::RunServer(serve, std::cout);
    }
    if (repl_cmd->parsed()) {
      Session session(options);
      return RunRepl(session, std::cin, std::cout);
    }
    return Error("no subcommand");
  } catch (const HostError& e) {
    return Error(e.description);
  } catch (const std::exception& e) {
    return Error(e.what());
  }
}

}  // namespace kiv::kivcust

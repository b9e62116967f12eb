// Building or reusing the benchmark database, and running child programs with wait4 so
// that their peak resident size comes from the kernel rather than from sampling.
#include "bench/bench_database.h"

#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <regex>
#include <stdexcept>

#include "refhost/schema.h"

namespace kiv::bench {

namespace {

namespace fs = std::filesystem;

//! The build time is kept beside the file so that a reused database still reports it.
std::string BuildNotePath(const std::string& path) { return path + ".build-seconds"; }

int64_t ScalarOf(sqlite3* db, const char* sql) {
  sqlite3_stmt* stmt = nullptr;
  int64_t value = -1;
  if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
    value = sqlite3_column_int64(stmt, 0);
  sqlite3_finalize(stmt);
  return value;
}

//! True when the file holds this program's schema and exactly `customers` customers.
bool Matches(const std::string& path, int32_t customers) {
  std::error_code ec;
  if (!fs::exists(path, ec)) return false;
  sqlite3* db = nullptr;
  bool ok = false;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    ok = ScalarOf(db, "PRAGMA user_version") == refhost::kSchemaVersion &&
         ScalarOf(db, "SELECT COUNT(*) FROM kiv_customer") == customers;
  }
  sqlite3_close_v2(db);
  return ok;
}

double ReadBuildNote(const std::string& path) {
  std::ifstream in(BuildNotePath(path));
  double seconds = 0;
  if (in >> seconds) return seconds;
  return 0;
}

}  // namespace

double ReportedSeconds(const std::string& output) {
  static const std::regex seconds(R"(\bin ([0-9]+(\.[0-9]+)?) s\b)");
  std::smatch m;
  if (!std::regex_search(output, m, seconds)) return 0;
  return std::stod(m[1].str());
}

ProcessResult RunProcess(const std::vector<std::string>& argv) {
  if (argv.empty()) throw std::runtime_error("no program to run");
  int pipe_fds[2];
  if (pipe(pipe_fds) != 0) throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
  pid_t pid = fork();
  if (pid < 0) throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
  if (pid == 0) {
    dup2(pipe_fds[1], STDOUT_FILENO);
    dup2(pipe_fds[1], STDERR_FILENO);
    close(pipe_fds[0]);
    close(pipe_fds[1]);
    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    execv(args[0], args.data());
    std::perror(args[0]);
    _exit(127);
  }
  close(pipe_fds[1]);
  ProcessResult result;
  char buffer[4096];
  ssize_t n;
  while ((n = read(pipe_fds[0], buffer, sizeof buffer)) > 0) result.output.append(buffer, static_cast<size_t>(n));
  close(pipe_fds[0]);
  int status = 0;
  struct rusage usage {};
  if (wait4(pid, &status, 0, &usage) < 0) throw std::runtime_error(std::string("wait4: ") + std::strerror(errno));
  result.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.peak_rss_kib = usage.ru_maxrss;
  return result;
}

PreparedDatabase PrepareDatabase(const DatabaseRequest& request) {
  PreparedDatabase prepared;
  prepared.path = request.path;
  prepared.customers = request.customers;
  if (!request.rebuild && Matches(request.path, request.customers)) {
    prepared.reused = true;
    prepared.build_seconds = ReadBuildNote(request.path);
    return prepared;
  }
  std::error_code ec;
  if (!fs::path(request.path).parent_path().empty()) fs::create_directories(fs::path(request.path).parent_path(), ec);
  fs::remove(BuildNotePath(request.path), ec);
  std::cerr << "building " << request.path << " with " << request.customers << " customers...\n";
  ProcessResult run = RunProcess({request.kivcust, "--db", request.path, "init-demo", "--customers",
                                  std::to_string(request.customers), "--force"});
  if (run.exit_status != 0) throw std::runtime_error("kivcust init-demo failed: " + run.output);
  std::cerr << run.output;
  prepared.build_seconds = ReportedSeconds(run.output);
  std::ofstream(BuildNotePath(request.path)) << prepared.build_seconds << "\n";
  if (!Matches(request.path, request.customers))
    throw std::runtime_error("the database built at " + request.path + " does not hold " +
                             std::to_string(request.customers) + " customers");
  return prepared;
}

}  // namespace kiv::bench

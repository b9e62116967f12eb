// The generated customer database the benchmarks run on: built once with the program's
// init-demo and reused while its schema version and size still match, plus the child
// process runner that also reports a program's peak resident size.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace kiv::bench {

struct DatabaseRequest {
  std::string path;
  //! The kivcust program that builds the file.
  std::string kivcust;
  int32_t customers = 1000000;
  //! Build again even when the file would do.
  bool rebuild = false;
};

struct PreparedDatabase {
  std::string path;
  int32_t customers = 0;
  //! The file was already there and matched.
  bool reused = false;
  //! Seconds the program reported for its last build of this file; 0 when unknown.
  double build_seconds = 0;
};

//! The file as requested: reused when its schema version and customer count match and it was
//! built from this program's schema text, else rebuilt by `kivcust init-demo`. Throws
//! std::runtime_error when the build fails.
PreparedDatabase PrepareDatabase(const DatabaseRequest& request);

//! `count` existing customer numbers in random order (fixed seed), read with a small
//! read-only connection. Throws when the file holds no customers.
std::vector<int32_t> SampleCustomerNumbers(const std::string& path, size_t count);

struct ProcessResult {
  int exit_status = -1;
  //! Peak resident set of the child in KiB, as the kernel accounts it.
  long peak_rss_kib = 0;
  //! Standard output and standard error together.
  std::string output;
};

//! Runs argv[0] with the arguments and waits for it; throws when it cannot be started.
ProcessResult RunProcess(const std::vector<std::string>& argv);

//! The seconds in init-demo's report line ("... in 12.3 s"); 0 when the line has none.
double ReportedSeconds(const std::string& output);

}  // namespace kiv::bench

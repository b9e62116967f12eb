// The one table `make bench` prints: each operation's median, its raw baseline, the ratio,
// and the target it is held to.
#pragma once
#include <map>
#include <optional>
#include <ostream>
#include <string>

namespace kiv::bench {

//! Median times in microseconds by benchmark name, and the failures by name.
struct Medians {
  std::map<std::string, double> micros;
  std::map<std::string, std::string> errors;
  std::optional<double> Of(const std::string& name) const;
};

struct ProgramFigures {
  int32_t customers = 0;
  double build_seconds = 0;  // 0: unknown
  bool reused = false;
  long peak_rss_kib = 0;        // 1,000 opens
  long baseline_rss_kib = 0;    // the same program with an empty script
  long parent_rss_kib = 0;      // run_bench itself when it started the program
};

//! Prints the table; true when every figure is there and every target holds.
bool PrintTable(std::ostream& out, const Medians& medians, const ProgramFigures& program);

//! A time in the unit that suits it: "0.21 µs", "84.3 µs", "3.12 ms".
std::string FormatMicros(double micros);

}  // namespace kiv::bench

// The long runs of the hardening loops, printed as one table: kills in the middle of saves,
// two terminals on one customer, files that are not customer databases, and hostile texts
// through every path that writes a text into a statement.
//
//   kiv_stress [--kills N] [--rounds N] [--texts N] [--seed N] [--dir PATH]
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bad_files.h"
#include "hostile_texts.h"
#include "kill_loop.h"
#include "two_writers.h"

namespace {

using namespace kiv::refhost::testing;

// One line of the table: what ran, how much of it, and the failures (0 everywhere is a pass).
struct Row {
  std::string part;
  std::string runs;
  std::string failures;
  bool pass;
  double seconds;
};

struct Options {
  int kills = 1000;
  int rounds = 2000;
  size_t texts = 5000;
  uint32_t seed = 1;
  std::string dir = std::filesystem::temp_directory_path().string();
  //! What the last `make fuzz` wrote: one "target seconds executions crashes" line a target.
  std::string fuzz_results;
};

Options Parse(int argc, char** argv) {
  Options o;
  for (int i = 1; i + 1 < argc; i += 2) {
    std::string flag = argv[i];
    long value = std::strtol(argv[i + 1], nullptr, 10);
    if (flag == "--kills") o.kills = static_cast<int>(value);
    else if (flag == "--rounds") o.rounds = static_cast<int>(value);
    else if (flag == "--texts") o.texts = static_cast<size_t>(value);
    else if (flag == "--seed") o.seed = static_cast<uint32_t>(value);
    else if (flag == "--dir") o.dir = argv[i + 1];
    else if (flag == "--fuzz-results") o.fuzz_results = argv[i + 1];
  }
  return o;
}

std::string File(const Options& o, const std::string& stem) {
  return (std::filesystem::path(o.dir) / ("kiv_stress_" + stem + "_" + std::to_string(getpid()) + ".db")).string();
}

template <typename F>
double Timed(F&& run) {
  auto started = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
}

}  // namespace

int main(int argc, char** argv) {
  const Options o = Parse(argc, argv);
  std::vector<Row> table;

  KillTally kills;
  double s = Timed([&] { kills = RunKillLoop(File(o, "kill"), o.kills, o.seed); });
  table.push_back({"kill -9 mid-save", std::to_string(kills.cycles) + " kills, " + std::to_string(kills.acknowledged) +
                                           " acknowledged saves",
                   std::to_string(kills.lost) + " lost, " + std::to_string(kills.partial) + " partial, " +
                       std::to_string(kills.integrity_failures) + " integrity failures",
                   kills.lost == 0 && kills.partial == 0 && kills.integrity_failures == 0, s});

  TwoWriterTally writers;
  s = Timed([&] { writers = RunTwoWriters(File(o, "writers"), o.rounds, o.seed); });
  table.push_back({"two terminals, one customer",
                   std::to_string(writers.rounds) + " rounds, " + std::to_string(writers.saves) + " saves, " +
                       std::to_string(writers.refused) + " refused (same field)",
                   std::to_string(writers.lost_updates) + " lost updates", writers.lost_updates == 0, s});

  TwoProcessTally processes;
  s = Timed([&] { processes = RunTwoProcesses(File(o, "processes"), o.rounds / 2); });
  table.push_back({"two processes at once, own fields",
                   std::to_string(processes.saves) + " saves, " + std::to_string(processes.failed) + " failed",
                   std::to_string(processes.lost_updates) + " lost updates", processes.lost_updates == 0, s});

  int bad = 0, bad_failed = 0;
  s = Timed([&] {
    for (const BadFileCase& c : BadFileCases()) {
      BadFileResult r = TryBadFile(c, File(o, "bad"));
      ++bad;
      bool ok = c.opens ? (!r.refused && r.saves) : (r.refused && r.unchanged && !r.saves);
      if (!ok) {
        ++bad_failed;
        std::fprintf(stderr, "bad file case failed: %s (%s)\n", c.name.c_str(), r.message.c_str());
      }
    }
  });
  table.push_back({"files that are not customer databases", std::to_string(bad) + " cases",
                   std::to_string(bad_failed) + " opened, changed or not refused", bad_failed == 0, s});

  HostileTally hostile;
  s = Timed([&] { hostile = RunHostileTexts(File(o, "hostile"), HostileTexts(o.texts, o.seed)); });
  table.push_back({"hostile texts x text paths",
                   std::to_string(hostile.texts) + " texts x " + std::to_string(hostile.paths) + " paths",
                   std::to_string(hostile.extra_statements) + " extra statements, " +
                       std::to_string(hostile.unexpected_reads) + " unexpected reads, " +
                       std::to_string(hostile.row_changes) + " row changes",
                   hostile.extra_statements == 0 && hostile.unexpected_reads == 0 && hostile.row_changes == 0, s});
  for (const std::string& example : hostile.examples) std::fprintf(stderr, "hostile text got through: %s\n", example.c_str());

  // The fuzzers run apart (`make fuzz`, clang only); their last results join the table.
  std::ifstream fuzz(o.fuzz_results);
  std::string target, seconds, executions, crashes;
  bool any_fuzz = false;
  while (fuzz >> target >> seconds >> executions >> crashes) {
    any_fuzz = true;
    table.push_back({"fuzz " + target + " (last make fuzz)", executions + " executions in " + seconds + " s",
                     crashes + " crashes", crashes == "0", 0.0});
  }
  if (!any_fuzz)
    std::fprintf(stderr, "no fuzz results at '%s': run `make fuzz` first to add the fuzzers' rows\n",
                 o.fuzz_results.c_str());

  bool all = true;
  std::printf("%-40s %-58s %-55s %8s %s\n", "part", "runs", "failures", "seconds", "result");
  for (const Row& r : table) {
    std::printf("%-40s %-58s %-55s %8.1f %s\n", r.part.c_str(), r.runs.c_str(), r.failures.c_str(), r.seconds,
                r.pass ? "pass" : "FAIL");
    all = all && r.pass;
  }
  return all ? 0 : 1;
}

// run_bench: prepares the million-customer database, checks that each raw baseline does the
// component's work, runs every benchmark (repetitions interleaved at random so that a noisy
// moment does not land on one side only), measures the program's memory and prints the table.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "bench/bench_database.h"
#include "bench/bench_world.h"
#include "bench/results_table.h"
#include "host/host_error.h"

namespace kiv::bench {

namespace {

constexpr int kMemoryOpens = 1000;

struct Options {
  DatabaseRequest database{KIV_BENCH_DB, KIV_BENCH_KIVCUST, 1000000, false};
  int repetitions = 9;
  double min_seconds = 0.2;
  std::vector<std::string> benchmark_flags;
};

//! Collects the median of every benchmark and prints one progress line per benchmark.
class MedianCollector : public benchmark::BenchmarkReporter {
 public:
  explicit MedianCollector(Medians& medians) : medians_(medians) {}
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const std::string name = run.run_name.function_name;
      if (run.error_occurred) {
        medians_.errors[name] = run.error_message;
        std::cerr << "  " << name << ": " << run.error_message << "\n";
        continue;
      }
      // One repetition has no aggregates: its own time stands for the median.
      const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
      if (!single && (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median")) continue;
      medians_.micros[name] = run.GetAdjustedRealTime();  // registered in microseconds
      std::cerr << "  " << name << ": " << FormatMicros(medians_.micros[name]) << "\n";
    }
  }

 private:
  Medians& medians_;
};

Options ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    auto value = [&]() -> std::string {
      if (i + 1 >= argc) throw std::runtime_error(arg + " needs a value");
      return argv[++i];
    };
    if (arg == "--db") options.database.path = value();
    else if (arg == "--kivcust") options.database.kivcust = value();
    else if (arg == "--customers") options.database.customers = std::stoi(value());
    else if (arg == "--rebuild") options.database.rebuild = true;
    else if (arg == "--repetitions") options.repetitions = std::stoi(value());
    else if (arg == "--min-time") options.min_seconds = std::stod(value());
    else if (arg.rfind("--benchmark_", 0) == 0) options.benchmark_flags.push_back(arg);
    else
      throw std::runtime_error("unknown option " + arg +
                               " (--db PATH --kivcust PATH --customers N --rebuild --repetitions N --min-time S "
                               "--benchmark_*)");
  }
  return options;
}

//! Peak resident size of `kivcust run` over a script of the given lines.
long ProgramPeakRss(const Options& options, const std::string& name, const std::vector<std::string>& lines) {
  const std::string script =
      (std::filesystem::path(options.database.path).parent_path() / ("bench-" + name + ".kiv")).string();
  {
    std::ofstream out(script);
    out << "# written by run_bench\n";
    for (const auto& line : lines) out << line << "\n";
  }
  ProcessResult run = RunProcess({options.database.kivcust, "--db", options.database.path, "--user", kBenchUser,
                                  "run", script});
  if (run.exit_status != 0) throw std::runtime_error("kivcust run " + script + " failed: " + run.output);
  return run.peak_rss_kib;
}

int Main(int argc, char** argv) {
  Options options = ParseOptions(argc, argv);
  PreparedDatabase database = PrepareDatabase(options.database);
  std::cerr << (database.reused ? "reusing " : "built ") << database.path << "\n";

  // Memory first: a child's peak resident size includes its parent's at the moment of the
  // exec, so the program is measured while this one is still small.
  ProgramFigures program;
  program.customers = database.customers;
  program.build_seconds = database.build_seconds;
  program.reused = database.reused;
  TurnCacheSettingOn(database.path);
  std::vector<std::string> memory_script;
  for (int32_t n : SampleCustomerNumbers(database.path, kMemoryOpens))
    memory_script.push_back("call OpenCustomer " + std::to_string(n));
  program.baseline_rss_kib = ProgramPeakRss(options, "empty", {});
  program.peak_rss_kib = ProgramPeakRss(options, "open-1000", memory_script);
  struct rusage self {};
  getrusage(RUSAGE_SELF, &self);
  program.parent_rss_kib = self.ru_maxrss;

  OpenWorld(database.path);
  if (std::string disagreement = CheckBaselinesAgree(World()); !disagreement.empty()) {
    std::cerr << "run_bench: the raw baseline and the component disagree: " << disagreement << "\n";
    return 1;
  }

  RegisterBenchmarks(options.repetitions, options.min_seconds);
  std::vector<std::string> flags{argv[0], "--benchmark_enable_random_interleaving=true"};
  flags.insert(flags.end(), options.benchmark_flags.begin(), options.benchmark_flags.end());
  std::vector<char*> gb_argv;
  for (auto& f : flags) gb_argv.push_back(f.data());
  int gb_argc = static_cast<int>(gb_argv.size());
  benchmark::Initialize(&gb_argc, gb_argv.data());
  Medians medians;
  MedianCollector collector(medians);
  std::cerr << "running the benchmarks (" << options.repetitions << " interleaved repetitions each)...\n";
  benchmark::RunSpecifiedBenchmarks(&collector);
  benchmark::Shutdown();
  CloseWorld();

  std::cout << "\nCustomer component on the reference host, " << database.customers << " customers ("
            << database.path << ")\n\n";
  const bool held = PrintTable(std::cout, medians, program);
  std::cout << "\n" << (held ? "every target held" : "some targets were missed or not measured")
            << " (medians of " << options.repetitions << " repetitions; shared machines give noisy times)\n";
  return 0;
}

}  // namespace
}  // namespace kiv::bench

int main(int argc, char** argv) {
  try {
    return kiv::bench::Main(argc, argv);
  } catch (const kiv::HostError& e) {
    std::cerr << "run_bench: " << e.description << "\n";
  } catch (const std::exception& e) {
    std::cerr << "run_bench: " << e.what() << "\n";
  }
  return 1;
}

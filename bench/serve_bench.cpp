// serve_bench: the server-side time of the browser front end. One typed key on the search
// screen and one Find, each handed to a tab's session thread and answered with the state the
// page draws (the form's description as JSON), with 1 and with 20 sessions working at once,
// each session its own thread, connection and screens over the same database file.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "apps/kivcust/session.h"
#include "apps/serve/web_session.h"
#include "refhost/demo_data.h"

namespace kiv::bench {
namespace {

namespace fs = std::filesystem;
using serve::Command;

constexpr int kMaxSessions = 20;
std::string g_db;

//! The sessions, signed in once and kept for every benchmark: sign-in is not what is measured.
std::vector<std::unique_ptr<serve::WebSession>>& Sessions() {
  static std::vector<std::unique_ptr<serve::WebSession>> sessions;
  return sessions;
}

void Require(const serve::Reply& reply, const char* what) {
  if (reply.status == 200) return;
  std::cerr << "serve_bench: " << what << " answered " << reply.status << ": " << reply.json.substr(0, 300) << "\n";
  std::exit(1);
}

serve::Reply Act(serve::WebSession& s, const char* verb, std::vector<std::string> args) {
  return s.Submit(Command{Command::Kind::Act, verb, std::move(args)});
}

//! Times one request as its tab waits for it; the "latency" column is the mean over every
//! thread's requests (the Time column with 20 threads is wall time over all their requests).
class Latency {
 public:
  explicit Latency(benchmark::State& state) : state_(state) {}
  ~Latency() { state_.counters["latency_us"] = benchmark::Counter(total_us_, benchmark::Counter::kAvgIterations); }
  template <class F>
  serve::Reply Time(F&& request) {
    auto started = std::chrono::steady_clock::now();
    serve::Reply reply = request();
    total_us_ += std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - started).count();
    return reply;
  }

 private:
  benchmark::State& state_;
  double total_us_ = 0;
};

void OpenSessions() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int i = 0; i < kMaxSessions; ++i) {
      kivcust::SessionOptions options;
      options.db_path = g_db;
      options.user = refhost::kDemoManager;
      options.password = refhost::kDemoPassword;
      auto web = std::make_unique<serve::WebSession>(std::make_unique<kivcust::Session>(options), options.user);
      Require(web->Submit(Command{Command::Kind::Call, "ShowSearchCustomer", {}}), "opening the search screen");
      Sessions().push_back(std::move(web));
    }
  });
}

//! One key a clerk types into the last name on the search screen: a character, then a
//! Backspace, in turn, so the text stays short whatever the number of iterations.
void BM_TypedKey(benchmark::State& state) {
  OpenSessions();
  serve::WebSession& s = *Sessions()[state.thread_index()];
  Require(Act(s, "paste", {"txtLastName", "t"}), "clearing the last name");
  bool character = true;
  Latency latency(state);
  for (auto _ : state) {
    serve::Reply reply = latency.Time([&] {
      return character ? Act(s, "type", {"txtLastName", "a"}) : Act(s, "key", {"txtLastName", "Backspace"});
    });
    benchmark::DoNotOptimize(reply.json.data());
    character = !character;
  }
  state.SetLabel("type or Backspace in txtLastName, state answered");
}

//! Find Now for a three-letter last-name prefix: the search, the grid filled, the state answered.
void BM_Find(benchmark::State& state) {
  OpenSessions();
  serve::WebSession& s = *Sessions()[state.thread_index()];
  static const char* const kPrefixes[] = {"SMI", "JOH", "WIL", "BRO", "JON", "MIL", "DAV", "GAR"};
  size_t i = 0;
  Latency latency(state);
  for (auto _ : state) {
    state.PauseTiming();
    Require(Act(s, "paste", {"txtLastName", kPrefixes[(i++ + state.thread_index()) % 8]}), "typing the prefix");
    state.ResumeTiming();
    serve::Reply reply = latency.Time([&] { return Act(s, "click", {"cmdFind"}); });
    benchmark::DoNotOptimize(reply.json.data());
  }
  state.SetLabel("Find Now, first page into the grid, state answered");
}

BENCHMARK(BM_TypedKey)->Threads(1)->Threads(kMaxSessions)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Find)->Threads(1)->Threads(kMaxSessions)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kiv::bench

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  // --db PATH picks the database; otherwise the million-customer one run_bench prepares, or a
  // demo database of 100,000 customers built beside it on first use.
  std::vector<char*> rest{argv[0]};
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--db" && i + 1 < argc) kiv::bench::g_db = argv[++i];
    else rest.push_back(argv[i]);
  }
  if (kiv::bench::g_db.empty()) {
    kiv::bench::g_db = KIV_BENCH_DB;
    if (!fs::exists(kiv::bench::g_db)) {
      kiv::bench::g_db = fs::path(KIV_BENCH_DB).parent_path() / "serve.db";
      if (!fs::exists(kiv::bench::g_db)) {
        fs::create_directories(fs::path(kiv::bench::g_db).parent_path());
        std::string command = std::string(KIV_BENCH_KIVCUST) + " --db '" + kiv::bench::g_db +
                              "' init-demo --customers 100000 --seed 7";
        if (std::system(command.c_str()) != 0) return 1;
      }
    }
  }
  std::cout << "serve_bench on " << kiv::bench::g_db << "\n";
  int count = static_cast<int>(rest.size());
  benchmark::Initialize(&count, rest.data());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  kiv::bench::Sessions().clear();
  return 0;
}

// The measured operations, each once through the component on the reference host and once
// as its raw baseline. Samples rotate through a static position so that successive runs
// of a benchmark do not keep reading the same customer.
#include <benchmark/benchmark.h>

#include "bench/bench_world.h"
#include "refhost/sqlite_database.h"

namespace kiv::bench {

namespace {

constexpr size_t kWarmCustomers = 8;  // fewer than the engine's cache holds
constexpr size_t kSavedCustomers = 16;

template <class T>
const T& Next(const std::vector<T>& items, size_t& position) {
  return items[position++ % items.size()];
}

void OpenMiss(benchmark::State& state) {
  BenchWorld& w = World();
  w.engine->SetUseCollection(false);
  static size_t position = 0;
  for (auto _ : state) {
    OpenCustomerArgs args;
    auto customer = w.engine->OpenCustomer(Next(w.customers, position), args);
    if (args.bError) {
      state.SkipWithError("a sampled customer did not open");
      break;
    }
    benchmark::DoNotOptimize(customer.get());
  }
}

void OpenMissRaw(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) {
    RawCustomer customer = RawOpenCustomer(*w.raw, Next(w.customers, position));
    benchmark::DoNotOptimize(customer);
  }
}

void OpenHit(benchmark::State& state) {
  BenchWorld& w = World();
  w.engine->SetUseCollection(true);
  std::vector<int32_t> warm(w.customers.begin(), w.customers.begin() + static_cast<long>(kWarmCustomers));
  for (int32_t n : warm) w.engine->OpenCustomer(n);
  for (int32_t n : warm)
    if (w.engine->CachedCustomer(n) == nullptr) {
      state.SkipWithError("the cache did not keep the warm customers");
      return;
    }
  size_t position = 0;
  for (auto _ : state) {
    auto customer = w.engine->OpenCustomer(Next(warm, position));
    benchmark::DoNotOptimize(customer.get());
  }
}

void SearchFirst(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) ScreenSearch(*w.screen, Next(w.prefixes, position), 0);
  if (w.screen->TotalCount() == 0) state.SkipWithError("the search found nobody");
}

void SearchFirstRaw(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) {
    RawPage page = RawSearchLastName(*w.raw, Next(w.prefixes, position), 0);
    benchmark::DoNotOptimize(page);
  }
}

void SearchNext(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) {
    state.PauseTiming();
    ScreenSearch(*w.screen, Next(w.prefixes, position), 0);
    const int32_t shown = w.screen->DisplayedCount();
    state.ResumeTiming();
    w.screen->GetMore();
    if (w.screen->DisplayedCount() <= shown) {
      state.SkipWithError("Get MORE! added no rows");
      break;
    }
  }
}

void SearchNextRaw(benchmark::State& state) {
  BenchWorld& w = World();
  // Where the first page ends, found once per prefix: the continuation key of the next page.
  std::vector<int32_t> after;
  for (const auto& prefix : w.prefixes) after.push_back(RawSearchLastName(*w.raw, prefix, 0).customers.back());
  static size_t position = 0;
  for (auto _ : state) {
    const size_t i = position++ % w.prefixes.size();
    RawPage page = RawSearchLastName(*w.raw, w.prefixes[i], after[i], w.next_page_counts);
    benchmark::DoNotOptimize(page);
  }
}

//! Alternates the comment so that every save really changes the row.
const std::string& Comment(size_t round) {
  static const std::string texts[] = {"benchmark save A", "benchmark save B"};
  return texts[round % 2];
}

void Save(benchmark::State& state) {
  BenchWorld& w = World();
  std::vector<std::shared_ptr<CCustomer>> customers;
  for (size_t i = 0; i < kSavedCustomers && i < w.two_address_customers.size(); ++i) {
    auto customer = std::make_shared<CCustomer>();
    if (!customer->OpenCustomer(w.connection, w.errors, Variant(w.two_address_customers[i]))) {
      state.SkipWithError("a customer with two addresses did not open");
      return;
    }
    customers.push_back(customer);
  }
  static size_t position = 0;
  for (auto _ : state) {
    const size_t round = position++;
    CCustomer& customer = *customers[round % customers.size()];
    customer.SetCommentNote(Comment(round / customers.size()));
    if (!customer.Update()) {
      state.SkipWithError("a save failed");
      break;
    }
  }
}

void SaveRaw(benchmark::State& state) {
  BenchWorld& w = World();
  std::vector<std::unique_ptr<RawSaveRow>> rows;
  for (size_t i = 0; i < kSavedCustomers && i < w.two_address_customers.size(); ++i)
    rows.push_back(std::make_unique<RawSaveRow>(*w.raw, w.two_address_customers[i]));
  const std::string now = refhost::DateToText(w.host->Database()->Now());
  static size_t position = 0;
  for (auto _ : state) {
    const size_t round = position++;
    RawSaveCustomer(*w.raw, *rows[round % rows.size()], Comment(round / rows.size()), kBenchUser, now);
  }
}

void Zip(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) {
    CAddress address;
    ZipLookUpArgs args;
    if (!address.ZipLookUp(w.connection, Next(w.zips, position), args)) {
      state.SkipWithError("a stored zip was not found");
      break;
    }
    benchmark::DoNotOptimize(args);
  }
}

void ZipRaw(benchmark::State& state) {
  BenchWorld& w = World();
  static size_t position = 0;
  for (auto _ : state) {
    std::string city = RawZipLookUp(*w.raw, Next(w.zips, position));
    benchmark::DoNotOptimize(city);
  }
}

}  // namespace

void RegisterBenchmarks(int repetitions, double min_seconds) {
  const std::pair<const char*, void (*)(benchmark::State&)> all[] = {
      {"open_miss", OpenMiss},       {"open_miss_raw", OpenMissRaw},     {"open_hit", OpenHit},
      {"search_first", SearchFirst}, {"search_first_raw", SearchFirstRaw}, {"search_next", SearchNext},
      {"search_next_raw", SearchNextRaw}, {"save", Save},                {"save_raw", SaveRaw},
      {"zip", Zip},                  {"zip_raw", ZipRaw},
  };
  for (const auto& [name, function] : all) {
    benchmark::RegisterBenchmark(name, function)
        ->Unit(benchmark::kMicrosecond)
        ->Repetitions(repetitions)
        ->MinTime(min_seconds)
        ->ReportAggregatesOnly(true);
  }
}

}  // namespace kiv::bench

# Front door: `make test` and `make demo` are all a fresh machine needs.
SANITIZE ?= 0
JOBS ?= 2
ifeq ($(SANITIZE),1)
BUILD ?= build-sanitize
CMAKE_FLAGS = -DCMAKE_BUILD_TYPE=Debug -DKIV_SANITIZE=ON
else
BUILD ?= build
CMAKE_FLAGS = -DCMAKE_BUILD_TYPE=RelWithDebInfo
endif

.PHONY: all bootstrap configure build test demo bench stress fuzz clean

all: build

bootstrap:
	@scripts/bootstrap

configure: bootstrap
	@cmake -S . -B $(BUILD) $(CMAKE_FLAGS) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The screens in a browser on the demo database; prints the address to open (Ctrl+C stops).
# DEMO_ARGS passes serve options (--port N, --bind ADDR); `kivcust repl` is the typed mode.
DEMO_ARGS ?=
demo: configure
	@cmake --build $(BUILD) --target kivcust -j $(JOBS)
	@$(BUILD)/kivcust serve $(DEMO_ARGS)

# BENCH_ARGS passes options to run_bench (--rebuild, --repetitions N, --min-time S,
# --customers N, --benchmark_filter=...).
BENCH_ARGS ?=
bench: bootstrap
	@cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release \
		-DKIV_BUILD_BENCH=ON -DKIV_BUILD_TESTS=OFF >/dev/null
	@cmake --build build-bench --target run_bench serve_bench -j $(JOBS)
	@build-bench/bench/run_bench $(BENCH_ARGS)
	@build-bench/bench/serve_bench

# Fuzz targets with clang's libFuzzer in build-fuzz, each run FUZZ_SECONDS; not part of `test`.
FUZZ_SECONDS ?= 60
fuzz:
	@scripts/bootstrap-fuzz
	@cmake -S fuzz -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
	@cmake --build build-fuzz -j $(JOBS)
	@fuzz/run_fuzz build-fuzz $(FUZZ_SECONDS)

# The long hardening runs, one table of results; not part of `make test`. STRESS_ARGS passes
# --kills N, --rounds N, --texts N, --seed N, --dir PATH.
STRESS_ARGS ?=
stress: configure
	@cmake --build $(BUILD) --target kiv_stress -j $(JOBS)
	@$(BUILD)/stress/kiv_stress --fuzz-results build-fuzz/fuzz-results.tsv $(STRESS_ARGS)
	@cmake --build $(BUILD) --target refhost_tests -j $(JOBS)
	@KIV_HOSTILE_TEXTS=500 $(BUILD)/tests/refhost_tests --gtest_filter='HostileForms*' --gtest_brief=1

clean:
	rm -rf build build-sanitize build-bench build-fuzz

// Formatting of the results table and the verdict on each target.
#include "bench/results_table.h"

#include <cstdio>
#include <iomanip>
#include <sstream>
#include <vector>

namespace kiv::bench {

namespace {

constexpr double kRatioTarget = 1.5;

struct Row {
  const char* label;
  const char* component;
  const char* raw;  // null: no raw baseline
  double target_micros;  // 0: no time target
};

const Row kRows[] = {
    {"OpenCustomer, cache off (miss)", "open_miss", "open_miss_raw", 100},
    {"OpenCustomer, warm cache (hit)", "open_hit", nullptr, 1},
    {"Find, 3-letter last name, first page + count", "search_first", "search_first_raw", 5000},
    {"Get MORE!, next page", "search_next", "search_next_raw", 2000},
    {"CCustomer::Update, two addresses", "save", "save_raw", 500},
    {"CAddress::ZipLookUp", "zip", "zip_raw", 0},
};

std::string Pad(const std::string& text, size_t width) {
  // Width in characters: "µ" is two bytes.
  size_t shown = 0;
  for (unsigned char c : text)
    if ((c & 0xC0) != 0x80) ++shown;
  return text + std::string(shown < width ? width - shown : 0, ' ');
}

std::string Fixed(double value, int decimals) {
  std::ostringstream s;
  s << std::fixed << std::setprecision(decimals) << value;
  return s.str();
}

std::string Thousands(long long value) {
  std::string digits = std::to_string(value);
  for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<size_t>(i), ",");
  return digits;
}

}  // namespace

std::optional<double> Medians::Of(const std::string& name) const {
  auto found = micros.find(name);
  if (found == micros.end() || errors.count(name) != 0) return std::nullopt;
  return found->second;
}

std::string FormatMicros(double micros) {
  if (micros >= 1000) return Fixed(micros / 1000, 2) + " ms";
  if (micros >= 10) return Fixed(micros, 1) + " µs";
  return Fixed(micros, 2) + " µs";
}

bool PrintTable(std::ostream& out, const Medians& medians, const ProgramFigures& program) {
  bool all_held = true;
  const size_t w0 = 46, w1 = 12, w2 = 12, w3 = 7, w4 = 26;
  auto line = [&](const std::string& a, const std::string& b, const std::string& c, const std::string& d,
                  const std::string& e, const std::string& f) {
    out << Pad(a, w0) << Pad(b, w1) << Pad(c, w2) << Pad(d, w3) << Pad(e, w4) << f << "\n";
  };
  line("operation", "median", "raw SQLite", "ratio", "target", "");
  line(std::string(w0 - 2, '-'), std::string(w1 - 2, '-'), std::string(w2 - 2, '-'), std::string(w3 - 2, '-'),
       std::string(w4 - 2, '-'), "----");
  for (const Row& row : kRows) {
    std::optional<double> component = medians.Of(row.component);
    std::optional<double> raw = row.raw ? medians.Of(row.raw) : std::nullopt;
    std::string target, verdict = "ok";
    bool held = component.has_value() && (row.raw == nullptr || raw.has_value());
    if (row.target_micros > 0) {
      target = "< " + FormatMicros(row.target_micros);
      if (component && *component >= row.target_micros) held = false;
    }
    std::string ratio = "-";
    if (row.raw != nullptr) {
      target += std::string(target.empty() ? "" : ", ") + "ratio < " + Fixed(kRatioTarget, 1);
      if (component && raw && *raw > 0) {
        const double r = *component / *raw;
        ratio = Fixed(r, 2);
        if (r >= kRatioTarget) held = false;
      }
    }
    if (!held) verdict = "MISSED";
    for (const char* name : {row.component, row.raw}) {
      if (name == nullptr) continue;
      auto error = medians.errors.find(name);
      if (error != medians.errors.end()) verdict = "FAILED: " + error->second;
      else if (!medians.micros.count(name)) verdict = "FAILED: not measured";
    }
    all_held = all_held && held;
    line(row.label, component ? FormatMicros(*component) : "-", raw ? FormatMicros(*raw) : "-", ratio, target,
         verdict);
  }

  std::string build = "-", build_verdict = "FAILED: unknown (rebuild with --rebuild)";
  if (program.build_seconds > 0) {
    const double rate = program.customers / program.build_seconds;
    build = Fixed(program.build_seconds, 1) + " s";
    const bool held = program.build_seconds < 60;
    all_held = all_held && held;
    build_verdict = std::string(held ? "ok" : "MISSED") + " (" + Thousands(static_cast<long long>(rate)) +
                    " customers/s" + (program.reused ? ", when the file was built" : "") + ")";
  } else {
    all_held = false;
  }
  line("init-demo, " + Thousands(program.customers) + " customers", build, "-", "-", "< 60 s", build_verdict);

  // A child's peak cannot read below its parent's size at the exec: such a figure says nothing.
  const bool rss_known = program.peak_rss_kib > program.parent_rss_kib && program.baseline_rss_kib > 0;
  all_held = all_held && rss_known;
  line("peak RSS, kivcust run, 1,000 opens (cache on)",
       rss_known ? Fixed(program.peak_rss_kib / 1024.0, 1) + " MiB" : "-", "-", "-", "reported only",
       rss_known ? "(empty script: " + Fixed(program.baseline_rss_kib / 1024.0, 1) + " MiB)"
                 : "FAILED: not above run_bench's own " + Fixed(program.parent_rss_kib / 1024.0, 1) + " MiB");
  return all_held;
}

}  // namespace kiv::bench

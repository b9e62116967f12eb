// Any text as the component's SQL: the translation for SQLite and the parameterising of
// its literals take it whole. A parameterised text holds one `?` per value taken out.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "refhost/dialect.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view sql(reinterpret_cast<const char*>(data), size);
  std::string translated = kiv::refhost::TranslateSql(sql);
  const size_t marks_before = static_cast<size_t>(std::count(translated.begin(), translated.end(), '?'));
  const kiv::refhost::ParameterizedSql p = kiv::refhost::ParameterizeLiterals(std::move(translated));
  const size_t marks_after = static_cast<size_t>(std::count(p.text.begin(), p.text.end(), '?'));
  if (marks_after != marks_before + p.values.size()) __builtin_trap();
  return 0;
}

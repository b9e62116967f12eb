// Any bytes as an automation script: the reader either returns statements or refuses the
// first bad line with its number, and the comparison of `expect` takes any two words.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "apps/kivcust/script_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto statements = kiv::kivcust::ParseScript(text);
    for (const auto& st : statements) {
      if (st.args.size() >= 2) kiv::kivcust::Compare(st.args[0], st.args[1], st.args.back());
    }
  } catch (const kiv::kivcust::SyntaxError& e) {
    if (e.line < 1) __builtin_trap();  // every refusal names a line
  }
  return 0;
}

// A plain byte scan: the database file and its write-ahead log keep text as it was written,
// so a stored number shows up as a run of ASCII digits.
#include "apps/kivcust/card_number_scan.h"

#include <fstream>
#include <iterator>

#include "refhost/ref_card_entry.h"

namespace kiv::kivcust {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::optional<std::string> FindCardNumber(std::string_view bytes) {
  size_t i = 0;
  while (i < bytes.size()) {
    if (!IsDigit(bytes[i])) {
      ++i;
      continue;
    }
    size_t end = i;
    while (end < bytes.size() && IsDigit(bytes[end])) ++end;
    // A stored text may run straight into the next column's digits, so a number is looked
    // for at either end of a longer run too.
    const size_t run = end - i;
    for (size_t length = 13; length <= 19 && length <= run; ++length) {
      for (size_t at : {i, end - length}) {
        const std::string digits(bytes.substr(at, length));
        if (refhost::LuhnValid(digits))
          return std::string(length - 4, 'X') + digits.substr(length - 4) + " at offset " + std::to_string(at);
      }
    }
    i = end;
  }
  return std::nullopt;
}

std::optional<std::string> FindCardNumberInFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return FindCardNumber(bytes);
}

}  // namespace kiv::kivcust

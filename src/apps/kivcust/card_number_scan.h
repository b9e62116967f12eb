// The check that no full card number was kept: a run of 13 to 19 digits that passes the Luhn
// check, alone or at either end of a longer run of digits, is taken for one.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace kiv::kivcust {

//! The first card number in `bytes`, shown masked but its last four digits, with its offset;
//! none when there is none.
std::optional<std::string> FindCardNumber(std::string_view bytes);

//! The same over a whole file; none when the file is missing or holds no card number.
std::optional<std::string> FindCardNumberInFile(const std::string& path);

}  // namespace kiv::kivcust

// Internal: the number and date mask engines behind Format.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "core/date.h"

namespace kiv::format_detail {

//! Whether the mask has a digit placeholder (0 or #) outside quotes: a number mask.
bool IsNumberMask(std::string_view mask);
//! A number through a number mask (sections positive;negative;zero).
std::string FormatNumber(double value, std::string_view mask);
//! A date through a date mask; nullopt when the mask holds letters that are not date tokens.
std::optional<std::string> FormatDate(const Date& date, std::string_view mask);

}  // namespace kiv::format_detail

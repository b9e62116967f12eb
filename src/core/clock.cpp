// The system clock reads local time through the C library.
#include "core/clock.h"

#include <ctime>

namespace kiv {

Clock::~Clock() = default;

Date Clock::Today() const { return Now().DateOnly(); }

Date SystemClock::Now() const {
  const std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  return Date::FromParts(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                         local.tm_sec > 59 ? 59 : local.tm_sec);
}

}  // namespace kiv

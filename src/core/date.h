// A point in time as the platform keeps it: days (with the time as the fraction)
// counted from 30 Dec 1899, the zero date.
#pragma once
#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace kiv {

class Date {
 public:
  //! The zero date, 30 Dec 1899 00:00.
  Date() = default;
  explicit Date(double serial) : serial_(serial) {}

  //! Builds a date from its parts; raises error 5 for a day that does not exist.
  static Date FromParts(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
  //! Parses "YYYY-MM-DD", "YYYY-MM-DD HH:MM[:SS]" or "M/D/YYYY [h:mm[:ss] [AM|PM]]"; nullopt when it is not a date.
  static std::optional<Date> Parse(const std::string& text);
  static Date Zero() { return Date(); }

  double Serial() const { return serial_; }
  bool IsZero() const { return serial_ == 0.0; }

  int Year() const;
  int Month() const;
  int Day() const;
  int Hour() const;
  int Minute() const;
  int Second() const;
  //! 1 = Sunday ... 7 = Saturday.
  int Weekday() const;

  //! The whole-day part (the time dropped), for comparisons by day.
  int32_t WholeDays() const;
  Date DateOnly() const { return Date(static_cast<double>(WholeDays())); }
  Date AddDays(int days) const { return Date(serial_ + days); }

  //! "YYYY-MM-DD", with " HH:MM:SS" when there is a time part.
  std::string ToIso() const;

  auto operator<=>(const Date& other) const = default;

 private:
  double serial_ = 0.0;
};

//! Whole years between a birth date and today: year difference, less one while this
//! year's birthday is still ahead. A zero (empty) birth date gives no age.
std::optional<int> Age(const Date& birth, const Date& today);

}  // namespace kiv

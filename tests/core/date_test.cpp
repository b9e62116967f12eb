// Calendar parts of the platform's date, negative serials, parsing and the age rule.
#include "core/date.h"

#include <gtest/gtest.h>

#include "core/clock.h"
#include "core/vb_error.h"

namespace kiv {
namespace {

TEST(DateTest, SerialsCountDaysFromTheZeroDate) {
  EXPECT_EQ(Date::FromParts(1899, 12, 30).Serial(), 0.0);
  EXPECT_EQ(Date::FromParts(1900, 1, 1).Serial(), 2.0);
  EXPECT_EQ(Date::FromParts(2026, 3, 5).Serial(), 46086.0);
  EXPECT_EQ(Date::FromParts(2000, 2, 29, 18).Serial(), 36585.75);
  const Date d(46086.5 + 7.0 / 1440);
  EXPECT_EQ(d.Year(), 2026);
  EXPECT_EQ(d.Month(), 3);
  EXPECT_EQ(d.Day(), 5);
  EXPECT_EQ(d.Hour(), 12);
  EXPECT_EQ(d.Minute(), 7);
  EXPECT_EQ(d.Second(), 0);
  EXPECT_EQ(d.Weekday(), 5);  // Thursday
  EXPECT_EQ(Date().Weekday(), 7);
}

TEST(DateTest, BeforeTheZeroDateTheTimeIsTheAbsoluteFraction) {
  const Date d(-1.25);
  EXPECT_EQ(d.ToIso(), "1899-12-29 06:00:00");
  EXPECT_EQ(d.WholeDays(), -1);
  EXPECT_EQ(Date::FromParts(1899, 12, 29, 6).Serial(), -1.25);
  EXPECT_EQ(Date(-0.5).ToIso(), "1899-12-30 12:00:00");
  EXPECT_EQ(Date::FromParts(1800, 1, 1).ToIso(), "1800-01-01");
  EXPECT_EQ(Date(-2.0).Weekday(), 5);
}

TEST(DateTest, TimeRoundsToTheSecondAndCarriesIntoTheNextDay) {
  EXPECT_EQ(Date(1.0 - 1e-9).ToIso(), "1899-12-31");
  EXPECT_EQ(Date(1.0 - 1e-9).WholeDays(), 1);
  EXPECT_EQ(Date(-2.0 + 1e-9).ToIso(), "1899-12-28");  // before the zero date the carry goes back a day
  EXPECT_EQ(Date(2.5 + 0.4 / 86400).Second(), 0);
}

TEST(DateTest, ImpossiblePartsRaiseInvalidCall) {
  struct Case {
    int y, m, d, h, mi, s;
  } cases[] = {{2026, 2, 29, 0, 0, 0}, {2026, 13, 1, 0, 0, 0}, {2026, 4, 31, 0, 0, 0}, {2026, 1, 0, 0, 0, 0},
               {2026, 1, 1, 24, 0, 0}, {2026, 1, 1, 0, 60, 0}, {2026, 1, 1, 0, 0, -1}, {10000, 1, 1, 0, 0, 0}};
  for (const Case& c : cases) {
    try {
      Date::FromParts(c.y, c.m, c.d, c.h, c.mi, c.s);
      ADD_FAILURE() << c.y << "-" << c.m << "-" << c.d << " " << c.h << ":" << c.mi << ":" << c.s;
    } catch (const VbError& e) {
      EXPECT_EQ(e.Number(), kErrInvalidCall);
    }
  }
  EXPECT_EQ(Date::FromParts(2024, 2, 29).Day(), 29);
  EXPECT_THROW(Date(1e12).Year(), VbError);
  EXPECT_THROW(Date(-657435.0).Year(), VbError);  // 31 Dec 99, before the calendar starts
  EXPECT_EQ(Date(-657434.0).ToIso(), "0100-01-01");
  EXPECT_THROW(Date(2958465.9999999999).Day(), VbError);  // rounds past 31 Dec 9999
}

TEST(DateTest, ParseAcceptsIsoUsAndMonthNameForms) {
  struct Case {
    const char* text;
    const char* iso;
  } cases[] = {
      {"2026-03-05", "2026-03-05"},           {"2026-03-05 14:07", "2026-03-05 14:07:00"},
      {"2026-03-05T14:07:09", "2026-03-05 14:07:09"}, {"3/5/2026", "2026-03-05"},
      {" 03/05/2026 2:07 pm ", "2026-03-05 14:07:00"}, {"3/5/2026 12:00:01 AM", "2026-03-05 00:00:01"},
      {"1/5/99", "1999-01-05"},               {"1/5/29", "2029-01-05"},
      {"January 5, 1999", "1999-01-05"},      {"Mar 5 2026", "2026-03-05"},
      {"14:30", "1899-12-30 14:30:00"},
  };
  for (const Case& c : cases) {
    const auto d = Date::Parse(c.text);
    ASSERT_TRUE(d) << c.text;
    EXPECT_EQ(d->ToIso(), c.iso) << c.text;
  }
  for (const char* bad : {"", "2026-02-30", "13/1/2026", "3/5/2026 25:00", "3/5/2026 13:00 PM", "2026-03-05x",
                          "Ma 5 2026", "hello", "3/5", "3/5/2026 2:07 XM"})
    EXPECT_FALSE(Date::Parse(bad)) << bad;
}

TEST(DateTest, AgeCountsWholeYearsUntilTheBirthday) {
  const Date birth = Date::FromParts(1990, 6, 15);
  EXPECT_EQ(Age(birth, Date::FromParts(2026, 6, 14)), 35);
  EXPECT_EQ(Age(birth, Date::FromParts(2026, 6, 15)), 36);
  EXPECT_EQ(Age(birth, Date::FromParts(2026, 1, 1)), 35);
  EXPECT_EQ(Age(birth, Date::FromParts(2026, 12, 31, 23, 59)), 36);
  const Date leap = Date::FromParts(2000, 2, 29);
  EXPECT_EQ(Age(leap, Date::FromParts(2025, 2, 28)), 24);
  EXPECT_EQ(Age(leap, Date::FromParts(2025, 3, 1)), 25);
  EXPECT_EQ(Age(leap, Date::FromParts(2028, 2, 29)), 28);
  EXPECT_FALSE(Age(Date(), Date::FromParts(2026, 1, 1)));
}

TEST(DateTest, FixedClockTodayDropsTheTime) {
  FixedClock clock(Date::FromParts(2026, 3, 5, 14, 7));
  EXPECT_EQ(clock.Today(), Date::FromParts(2026, 3, 5));
  clock.SetNow(Date::FromParts(2027, 1, 1, 0, 1));
  EXPECT_EQ(clock.Now().Minute(), 1);
  EXPECT_EQ(clock.Today().Year(), 2027);
  const SystemClock system;
  EXPECT_GT(system.Now().Year(), 2000);
}

}  // namespace
}  // namespace kiv

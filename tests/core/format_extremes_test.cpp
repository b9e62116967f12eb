// Format over values a column can hold but a clerk rarely types: infinities, NaN, the ends
// of the double range, denormals and the largest Currency. Every named format and every
// mask the screens use must show them without crashing.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "core/format.h"

namespace kiv {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

const char* const kFormats[] = {
    "Currency",     "currency",       "Standard",       "Fixed",          "Percent",
    "Scientific",   "General Number", "Yes/No",         "True/False",     "On/Off",
    "General Date", "Long Date",      "Medium Date",    "Short Date",     "Long Time",
    "Medium Time",  "Short Time",     "($#,###.00)",    "($###,###.00)",  "$#,##0.00",
    "#,##0.00",     "0.00",           "0%",             "0.0%%",          "#,##0,,",
    "0.00E+00",     "##0.0E-0",       "0;(0);\"zero\"", "MM/dd/yyyy",     "mm/dd/yy",
    "MM/dd/yyyy hh:nn AMPM",          "MM/dd/yyyy hh:mm AMPM",            "dddd, mmmm d, yyyy",
};

std::vector<Variant> ExtremeValues() {
  return {kInf,
          -kInf,
          kNaN,
          DBL_MAX,
          -DBL_MAX,
          DBL_MIN,
          std::numeric_limits<double>::denorm_min(),
          -std::numeric_limits<double>::denorm_min(),
          1e308,
          -1e308,
          1e-308,
          9.999999999999999e307,
          Currency{std::numeric_limits<int64_t>::max()},
          Currency{std::numeric_limits<int64_t>::min()},
          Date(1e12),
          Date(-1e12),
          Variant("1e308"),
          Variant("-1.7976931348623157e308")};
}

TEST(FormatExtremes, EveryFormatShowsEveryExtremeValue) {
  for (const Variant& value : ExtremeValues())
    for (const char* format : kFormats) EXPECT_NO_THROW(Format(value, format)) << format;
}

TEST(FormatExtremes, InfinityAndNaNShowAsTheirPlainTextThroughNumberFormats) {
  const char* const number_formats[] = {"Currency", "Standard", "Fixed", "Percent", "Scientific",
                                        "($#,###.00)", "0.0%", "0.00E+00", "0;(0);\"zero\""};
  for (const char* format : number_formats) {
    EXPECT_EQ(Format(kInf, format), "Inf") << format;
    EXPECT_EQ(Format(-kInf, format), "-Inf") << format;
    EXPECT_EQ(Format(kNaN, format), "NaN") << format;
  }
  EXPECT_EQ(Format(kInf, "MM/dd/yyyy"), "Inf");
  EXPECT_EQ(Format(kNaN, "Long Date"), "NaN");
}

TEST(FormatExtremes, TheLargestNumbersShowAllTheirDigits) {
  const std::string max_digits = "179769313486232" + std::string(294, '0');
  EXPECT_EQ(Format(DBL_MAX, "0"), max_digits);
  EXPECT_EQ(Format(-DBL_MAX, "0.00"), "-" + max_digits + ".00");
  // Percent scaling moves the decimal point instead of overflowing to an infinity.
  EXPECT_EQ(Format(DBL_MAX, "0%"), max_digits + "00%");
  EXPECT_EQ(Format(DBL_MAX, "0.00E+00"), "1.80E+308");
  EXPECT_EQ(Format(DBL_MAX, "0.0%%"), max_digits + "0000.0%%");

  const std::string currency = Format(1e308, "Currency");
  EXPECT_EQ(currency.substr(0, 9), "$100,000,");
  EXPECT_EQ(currency.size(), 1 + 309 + 102 + 3u);  // "$", digits, commas, ".00"
  EXPECT_EQ(Format(-1e308, "Currency").front(), '(');

  // Money keeps the 15 significant digits of every number through a mask.
  EXPECT_EQ(Format(Currency{std::numeric_limits<int64_t>::max()}, "Currency"), "$922,337,203,685,478.00");
  EXPECT_EQ(Format(Currency{std::numeric_limits<int64_t>::min()}, "($#,###.00)"), "($922,337,203,685,478.00)");
}

TEST(FormatExtremes, TheSmallestNumbersShowAsZero) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(Format(tiny, "0.00"), "0.00");
  EXPECT_EQ(Format(-tiny, "Currency"), "$0.00");
  EXPECT_EQ(Format(tiny, "0.00E+00"), "4.94E-324");
  EXPECT_EQ(Format(DBL_MIN, "#,##0,,"), "0");
}

}  // namespace
}  // namespace kiv

// Format through the named formats and the masks the screens use; each row is a value,
// a format and the exact text shown.
#include "core/format.h"

#include <gtest/gtest.h>

namespace kiv {
namespace {

struct Row {
  Variant value;
  const char* format;
  const char* shown;
};

void ExpectRows(const std::vector<Row>& rows) {
  for (const Row& r : rows)
    EXPECT_EQ(Format(r.value, r.format), r.shown) << "format \"" << r.format << "\" of " << NzString(r.value);
}

TEST(FormatTest, NamedMoneyAndNumberFormats) {
  ExpectRows({
      {1234.5, "Currency", "$1,234.50"},
      {-1234.5, "Currency", "($1,234.50)"},
      {0.0, "Currency", "$0.00"},
      {1234.5, "currency", "$1,234.50"},
      {Currency::FromDouble(-0.5), "CURRENCY", "($0.50)"},
      {0.005, "Currency", "$0.01"},  // half away from zero, as the platform displays
      {-0.004, "Currency", "$0.00"},  // a negative that rounds to nothing shows no sign
      {15.0, "Standard", "15.00"},
      {1234567.891, "Standard", "1,234,567.89"},
      {-1234.5, "Standard", "-1,234.50"},
      {1.005, "Standard", "1.01"},   // the decimal digits, not the binary value, are rounded
      {1234.5, "Fixed", "1234.50"},
      {0.125, "Percent", "12.50%"},
      {1234.5, "Scientific", "1.23E+03"},
      {0.00015, "Scientific", "1.50E-04"},
      {1234.5, "General Number", "1234.5"},
      {int16_t{0}, "Yes/No", "No"},
      {true, "True/False", "True"},
      {2.0, "On/Off", "On"},
  });
}

TEST(FormatTest, GridMoneyMasksShowNegativesInParentheses) {
  ExpectRows({
      {1234.5, "($#,###.00)", "$1,234.50"},
      {-1234.5, "($#,###.00)", "($1,234.50)"},
      {1234.5, "($###,###.00)", "$1,234.50"},
      {-1234.5, "($###,###.00)", "($1,234.50)"},
      {-1234567.5, "($###,###.00)", "($1,234,567.50)"},
      // "#" shows no leading zero: nothing before the point for amounts under a dollar.
      {0.0, "($#,###.00)", "$.00"},
      {0.0, "$#,###.00", "$.00"},
      {-0.25, "($#,###.00)", "($.25)"},
      {-5.0, "$#,##0.00", "-$5.00"},
  });
}

TEST(FormatTest, NumberMaskPlaceholdersAndSections) {
  ExpectRows({
      {1234.5, "0.00", "1234.50"},
      {1234.5, "#,##0.00", "1,234.50"},
      {0.5, "#,##0.00", "0.50"},
      {7.0, "000", "007"},
      {1.5, "0.##", "1.5"},
      {2.0, "#.##", "2."},
      {5551234.0, "###-####", "555-1234"},
      {1234567.0, "#,##0,", "1,235"},
      {2.5, "0", "3"},
      {-3.0, "0;(0);\"none\"", "(3)"},
      {0.0, "0;(0);\"none\"", "none"},
      {4.0, "0;(0);\"none\"", "4"},
      {42.0, "\\#0", "#42"},
      {0.4567, "0.0%", "45.7%"},
  });
}

TEST(FormatTest, DateMasksOfTheScreens) {
  const Date at = Date::FromParts(2026, 3, 5, 14, 7);
  ExpectRows({
      {at, "MM/dd/yyyy", "03/05/2026"},
      {at, "mm/dd/yy", "03/05/26"},
      {at, "mm/dd/yyyy", "03/05/2026"},
      {at, "MM/dd/yyyy hh:nn AMPM", "03/05/2026 02:07 PM"},
      {at, "MM/dd/yyyy hh:mm AMPM", "03/05/2026 02:07 PM"},
      {Date::FromParts(2026, 3, 5, 0, 5), "MM/dd/yyyy hh:nn AMPM", "03/05/2026 12:05 AM"},
      {Date::FromParts(2026, 3, 5, 12, 0), "h:nn am/pm", "12:00 pm"},
      {at, "hh:nn", "14:07"},
      {at, "yyyy", "2026"},
      {at, "m:ss", "7:00"},
      {at, "dddd, mmmm d", "Thursday, March 5"},
      {at, "ddd mmm", "Thu Mar"},
      {at, "q y ww w", "1 64 10 5"},
      {at, "\"Due\" d/m", "Due 5/3"},
  });
}

TEST(FormatTest, NamedDateFormats) {
  const Date at = Date::FromParts(2026, 3, 5, 14, 7);
  ExpectRows({
      {at, "General Date", "3/5/2026 2:07:00 PM"},
      {at.DateOnly(), "General Date", "3/5/2026"},
      {at, "Long Date", "Thursday, March 5, 2026"},
      {at, "Medium Date", "05-Mar-26"},
      {at, "short date", "3/5/2026"},
      {at, "Long Time", "2:07:00 PM"},
      {at, "Medium Time", "02:07 PM"},
      {at, "Short Time", "14:07"},
  });
}

TEST(FormatTest, HowEachKindOfValueEntersAFormat) {
  ExpectRows({
      {Variant::Null(), "Currency", ""},
      {Variant(), "MM/dd/yyyy", ""},
      {Variant(), "0.00", ""},
      {"1234.5", "Currency", "$1,234.50"},
      {" -2 ", "($#,###.00)", "($2.00)"},
      {"n/a", "Currency", "n/a"},
      {"n/a", "MM/dd/yyyy", "n/a"},
      {"2026-03-05 14:07", "MM/dd/yyyy hh:nn AMPM", "03/05/2026 02:07 PM"},
      {46086.0, "MM/dd/yyyy", "03/05/2026"},
      {Date::FromParts(1900, 1, 1), "0.00", "2.00"},
      {1e300, "MM/dd/yyyy", "1E+300"},
      {Date(1e12), "MM/dd/yyyy", "1000000000000"},  // a date outside the calendar shows its serial
      {1.5, "", "1.5"},
      {1.5, "Bogus", "1.5"},
      {true, "", "True"},
  });
}

}  // namespace
}  // namespace kiv

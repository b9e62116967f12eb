// Conversions of Variant under the platform's rules: rounding, overflow, mismatch,
// Null, text forms of each kind, Val, IsNumeric and the null conversions.
#include "core/variant.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace kiv {
namespace {

int ErrorOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const VbError& e) {
    return e.Number();
  }
  return 0;
}

TEST(VariantTest, IntegerConversionsRoundHalfToEven) {
  struct Case {
    double in;
    int expected;
  } cases[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {-3.5, -4}, {2.4999, 2}, {2.5001, 3}, {-32768.5, -32768}, {32766.5, 32766}};
  for (const Case& c : cases) {
    EXPECT_EQ(CInt(Variant(c.in)), c.expected) << c.in;
    EXPECT_EQ(CLng(Variant(c.in)), c.expected) << c.in;
  }
  EXPECT_EQ(CInt(Variant("2.5")), 2);
  EXPECT_EQ(CLng(Variant(2147483646.5)), 2147483646);
}

TEST(VariantTest, IntegerConversionsOverflowInsteadOfWrapping) {
  EXPECT_EQ(ErrorOf([] { CInt(Variant(32767.5)); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CInt(Variant(-32769.0)); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CInt(Variant(int32_t{40000})); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CLng(Variant(2147483647.5)); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CLng(Variant(-2147483649.0)); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CLng(Variant(std::nan(""))); }), kErrOverflow);
  EXPECT_EQ(CInt(Variant(32767.4)), 32767);
  try {
    CInt(Variant(1e6));
    FAIL() << "no overflow";
  } catch (const VbError& e) {
    EXPECT_STREQ(e.what(), "Overflow");
  }
}

TEST(VariantTest, BadTextIsATypeMismatchAndNullIsInvalid) {
  for (const char* text : {"12a", "", "abc", ".", "1e", "--1", "1.2.3"}) {
    EXPECT_EQ(ErrorOf([&] { CInt(Variant(text)); }), kErrTypeMismatch) << text;
    EXPECT_EQ(ErrorOf([&] { CDbl(Variant(text)); }), kErrTypeMismatch) << text;
  }
  EXPECT_EQ(ErrorOf([] { CBool(Variant("yes")); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { CDate(Variant("not a date")); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { CDbl(Variant(Bytes{1, 2})); }), kErrTypeMismatch);
  for (auto conversion : {+[](const Variant& v) { CInt(v); }, +[](const Variant& v) { CStr(v); },
                          +[](const Variant& v) { CBool(v); }, +[](const Variant& v) { CDate(v); }})
    EXPECT_EQ(ErrorOf([&] { conversion(Variant::Null()); }), kErrInvalidUseOfNull);
}

TEST(VariantTest, EmptyConvertsToZeroBlankFalseAndTheZeroDate) {
  const Variant empty;
  EXPECT_EQ(CInt(empty), 0);
  EXPECT_EQ(CStr(empty), "");
  EXPECT_FALSE(CBool(empty));
  EXPECT_TRUE(CDate(empty).IsZero());
}

TEST(VariantTest, BooleanRules) {
  EXPECT_TRUE(CBool(Variant("TRUE")));
  EXPECT_TRUE(CBool(Variant(" true ")));
  EXPECT_FALSE(CBool(Variant("False")));
  EXPECT_TRUE(CBool(Variant("-1")));
  EXPECT_FALSE(CBool(Variant("0")));
  EXPECT_TRUE(CBool(Variant(0.1)));
  EXPECT_FALSE(CBool(Variant(int16_t{0})));
  EXPECT_EQ(CInt(Variant(true)), -1);
  EXPECT_EQ(CStr(Variant(true)), "True");
  EXPECT_EQ(CStr(Variant(false)), "False");
}

TEST(VariantTest, NumbersPrintAsPlainDecimalWithFifteenDigits) {
  struct Case {
    Variant in;
    const char* text;
  } cases[] = {
      {Variant(1.5), "1.5"},          {Variant(0.1 + 0.2), "0.3"},       {Variant(-0.25), "-0.25"},
      {Variant(15.0), "15"},          {Variant(-0.0), "0"},              {Variant(123456789012345.0), "123456789012345"},
      {Variant(1e15), "1E+15"},       {Variant(0.00001), "1E-05"},       {Variant(int16_t{-7}), "-7"},
      {Variant(int64_t{5000000000}), "5000000000"},
      {Variant(Currency::FromDouble(1234.5)), "1234.5"}, {Variant(Currency::FromDouble(-0.0001)), "-0.0001"},
  };
  for (const Case& c : cases) EXPECT_EQ(CStr(c.in), c.text);
  EXPECT_EQ(Variant(int64_t{5000000000}).Type(), VarType::Double);
  EXPECT_EQ(Variant(int64_t{-5}).Type(), VarType::Long);
}

TEST(VariantTest, DatesPrintAsMonthDayYearWithTimeWhenThereIsOne) {
  EXPECT_EQ(CStr(Variant(Date::FromParts(2026, 3, 5))), "3/5/2026");
  EXPECT_EQ(CStr(Variant(Date::FromParts(2026, 12, 25, 14, 7, 9))), "12/25/2026 2:07:09 PM");
  EXPECT_EQ(CStr(Variant(Date::FromParts(2026, 3, 5, 0, 30))), "3/5/2026 12:30:00 AM");
  EXPECT_EQ(CStr(Variant(Date(0.75))), "6:00:00 PM");
  EXPECT_EQ(CStr(Variant(Date())), "12:00:00 AM");
}

TEST(VariantTest, TextToDateAndBack) {
  EXPECT_EQ(CDate(Variant("2026-03-05")), Date::FromParts(2026, 3, 5));
  EXPECT_EQ(CDate(Variant("3/5/2026 2:07 PM")), Date::FromParts(2026, 3, 5, 14, 7));
  EXPECT_EQ(CDate(Variant(46086.0)).ToIso(), "2026-03-05");
}

TEST(VariantTest, CurrencyRoundsToFourPlacesAndOverflows) {
  EXPECT_EQ(Variant(1.23455).ToCurrency().scaled, 12346);  // 12345.5 halves to even
  EXPECT_EQ(Variant(1.23445).ToCurrency().scaled, 12344);
  EXPECT_EQ(ErrorOf([] { Variant(1e300).ToCurrency(); }), kErrOverflow);
}

TEST(VariantTest, EqualityAcrossKinds) {
  EXPECT_FALSE(Variant::Null() == Variant::Null());
  EXPECT_TRUE(Variant() == Variant());
  EXPECT_TRUE(Variant() == Variant(0.0));
  EXPECT_TRUE(Variant() == Variant(""));
  EXPECT_TRUE(Variant(int16_t{5}) == Variant(5.0));
  EXPECT_TRUE(Variant("5") == Variant(int32_t{5}));
  EXPECT_TRUE(Variant(true) == Variant(int32_t{-1}));
  EXPECT_FALSE(Variant("abc") == Variant("ABC"));
  EXPECT_FALSE(Variant("x") == Variant(1.0));
}

TEST(VariantTest, ValReadsTheLeadingNumber) {
  struct Case {
    const char* in;
    double expected;
  } cases[] = {{"15abc", 15},  {" 1 2", 12},  {"", 0},       {"abc", 0},      {"-3.5x", -3.5}, {"12.5%", 12.5},
               {"1.2.3", 1.2}, {"1e3", 1000}, {"2E-1z", 0.2}, {"7e", 7},        {"  -  4", -4},  {".5", 0.5},
               {"-", 0},       {"+8", 8},     {"1,000", 1},  {"0012", 12}};
  for (const Case& c : cases) EXPECT_DOUBLE_EQ(Val(c.in), c.expected) << '"' << c.in << '"';
}

TEST(VariantTest, IsNumericTable) {
  struct Case {
    Variant in;
    bool expected;
  } cases[] = {
      {Variant(3.0), true},          {Variant(true), true},        {Variant(), true},
      {Variant("12"), true},         {Variant(" -1.5 "), true},    {Variant("1e5"), true},
      {Variant("1,234.5"), true},    {Variant(".5"), true},        {Variant::Null(), false},
      {Variant(""), false},          {Variant("12a"), false},      {Variant(" "), false},
      {Variant(Date::FromParts(2026, 1, 1)), false},               {Variant("."), false},
      {Variant(Bytes{'1'}), false},
  };
  for (const Case& c : cases) EXPECT_EQ(IsNumeric(c.in), c.expected) << NzString(c.in);
}

TEST(VariantTest, NullConversionsAreLenient) {
  EXPECT_EQ(NzString(Variant::Null()), "");
  EXPECT_EQ(NzLong(Variant::Null()), 0);
  EXPECT_EQ(NzInt(Variant("abc")), 0);
  EXPECT_EQ(NzLong(Variant("42")), 42);
  EXPECT_DOUBLE_EQ(NzDouble(Variant(Currency::FromDouble(2.5))), 2.5);
  EXPECT_FALSE(NzBool(Variant::Null()));
  EXPECT_FALSE(NzBool(Variant("maybe")));
  EXPECT_TRUE(NzBool(Variant(int16_t{1})));
  EXPECT_TRUE(NzDate(Variant::Null()).IsZero());
  EXPECT_TRUE(NzDate(Variant("garbage")).IsZero());
  EXPECT_EQ(NzDate(Variant("2026-03-05")), Date::FromParts(2026, 3, 5));
  EXPECT_EQ(ErrorOf([] { NzInt(Variant(1e9)); }), kErrOverflow);
}

TEST(VariantTest, OnlyFiniteNumbersPassAsAFieldValue) {
  EXPECT_EQ(FiniteNumber(0.15), 0.15);
  EXPECT_EQ(FiniteNumber(-1.7976931348623157e308), -1.7976931348623157e308);
  EXPECT_EQ(ErrorOf([] { FiniteNumber(HUGE_VAL); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { FiniteNumber(-HUGE_VAL); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { FiniteNumber(std::nan("")); }), kErrOverflow);
}

}  // namespace
}  // namespace kiv

// Text functions: Latin-1 case mapping in UTF-8, space-only trimming, byte positions.
#include "core/text.h"

#include <gtest/gtest.h>

#include "core/vb_error.h"

namespace kiv {
namespace {

TEST(TextTest, CaseMappingCoversAsciiAndLatinLetters) {
  struct Case {
    const char* lower;
    const char* upper;
  } cases[] = {
      {"abc xyz 09", "ABC XYZ 09"},
      {"\xC3\xA9", "\xC3\x89"},                  // é É
      {"\xC3\xA0\xC3\xBE", "\xC3\x80\xC3\x9E"},  // àþ ÀÞ
      {"\xC3\xBF", "\xC5\xB8"},                  // ÿ Ÿ
      {"m\xC3\xBCller", "M\xC3\x9CLLER"},        // müller
  };
  for (const Case& c : cases) {
    EXPECT_EQ(UCase(c.lower), c.upper) << c.lower;
    EXPECT_EQ(LCase(c.upper), c.lower) << c.upper;
  }
  EXPECT_EQ(UCase("stra\xC3\x9F" "e"), "STRA\xC3\x9F" "E");  // ß stays
  EXPECT_EQ(UCase("\xC3\xB7\xC3\x97"), "\xC3\xB7\xC3\x97");  // ÷ × are not letters
  EXPECT_EQ(UCase("\xE2\x82\xAC\xC3"), "\xE2\x82\xAC\xC3");  // other text and a cut sequence unchanged
  EXPECT_TRUE(EqualsNoCase("Ren\xC3\xA9", "REN\xC3\x89"));
  EXPECT_TRUE(EqualsNoCase("Smith", "sMITH"));
  EXPECT_FALSE(EqualsNoCase("Smith", "Smyth"));
  EXPECT_TRUE(StartsWithNoCase("McDonald", "mcd"));
  EXPECT_FALSE(StartsWithNoCase("Mc", "mcd"));
}

TEST(TextTest, TrimRemovesSpacesOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(LTrim("  a "), "a ");
  EXPECT_EQ(RTrim(" a  "), " a");
  EXPECT_EQ(Trim("\ta\t"), "\ta\t");
  EXPECT_EQ(Trim("   "), "");
}

TEST(TextTest, PiecesByBytePosition) {
  EXPECT_EQ(Left("abcdef", 2), "ab");
  EXPECT_EQ(Left("ab", 5), "ab");
  EXPECT_EQ(Right("abcdef", 2), "ef");
  EXPECT_EQ(Right("ab", 5), "ab");
  EXPECT_EQ(Mid("abcdef", 2, 3), "bcd");
  EXPECT_EQ(Mid("abcdef", 5), "ef");
  EXPECT_EQ(Mid("abc", 9, 2), "");
  EXPECT_EQ(InStr("a,b,c", ","), 2u);
  EXPECT_EQ(InStr("a,b,c", ",", 3), 4u);
  EXPECT_EQ(InStr("a,b,c", ";"), 0u);
  EXPECT_EQ(InStr("abc", "c", 9), 0u);
  EXPECT_THROW(Mid("abc", 0, 1), VbError);
  EXPECT_THROW(Left("abc", -1), VbError);
  EXPECT_THROW(Right("abc", -1), VbError);
}

TEST(TextTest, ReplaceSplitAndJoin) {
  EXPECT_EQ(Replace("a''b''", "''", "'"), "a'b'");
  EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Split("a\tb\t\tc", "\t"), (std::vector<std::string>{"a", "b", "", "c"}));
  EXPECT_EQ(Split("a|", "|"), (std::vector<std::string>{"a", ""}));
  EXPECT_TRUE(Split("", "|").empty());
  EXPECT_EQ(Split("abc", ""), (std::vector<std::string>{"abc"}));
  EXPECT_EQ(Join({"a", "", "c"}, "|"), "a||c");
  EXPECT_EQ(Join(Split("x;y;z", ";"), ";"), "x;y;z");
}

}  // namespace
}  // namespace kiv

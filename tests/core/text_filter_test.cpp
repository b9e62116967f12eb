// The typed-text filter's four modes over one sample holding every class of character.
#include "core/text_filter.h"

#include <gtest/gtest.h>

namespace kiv {
namespace {

TEST(TextFilterTest, EachModeKeepsItsCharacters) {
  const std::string typed = "Ab 9.-()@_,!?$%*;:#&+/\"'\x7f\t\xC3\xA9z";  // ends with "éz"
  struct Case {
    FilterMode mode;
    const char* kept;
  } cases[] = {
      {FilterMode::Numeric, "9."},
      {FilterMode::AlphaNumeric, "Ab 9z"},
      {FilterMode::Phone, "9-()"},
      {FilterMode::General, "Ab 9.-()@_,!?$%*;:z"},
  };
  for (const Case& c : cases) EXPECT_EQ(FilterText(typed, c.mode), c.kept) << static_cast<int>(c.mode);
}

TEST(TextFilterTest, KeepsCharAgreesWithTheFilterAtTheEdgesOfEachClass) {
  for (const char c : {'0', '9', 'A', 'Z', 'a', 'z'}) EXPECT_TRUE(KeepsChar(c, FilterMode::General)) << c;
  for (const char c : {'/', ':', '@', '[', '`', '{'}) EXPECT_FALSE(KeepsChar(c, FilterMode::AlphaNumeric)) << c;
  EXPECT_FALSE(KeepsChar(' ', FilterMode::Numeric));
  EXPECT_FALSE(KeepsChar(' ', FilterMode::Phone));
  EXPECT_FALSE(KeepsChar('\0', FilterMode::General));
  EXPECT_EQ(FilterText("", FilterMode::General), "");
}

}  // namespace
}  // namespace kiv

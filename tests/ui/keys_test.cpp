// Reading key names and the acting statements of the automation language.
#include "ui/keys.h"

#include <gtest/gtest.h>

#include "ui/action.h"

namespace kiv::ui {
namespace {

TEST(KeysTest, KeyNamesGiveTheirCodesShiftAndCharacter) {
  struct Case {
    std::string text;
    int code, shift, ascii;
  };
  const std::vector<Case> cases = {
      {"Enter", 13, 0, 13},          {"esc", 27, 0, 27},         {"Tab", 9, 0, 0},
      {"Shift+Tab", 9, 1, 0},        {"Delete", 46, 0, 0},       {"Backspace", 8, 0, 8},
      {"F1", 112, 0, 0},             {"F12", 123, 0, 0},         {"Ctrl+Enter", 13, 2, 10},
      {"q", 'Q', 0, 'q'},            {"Q", 'Q', 1, 'Q'},         {"Shift+a", 'A', 1, 'A'},
      {"Ctrl+A", 'A', 2, 1},         {"Alt+Shift+F4", 115, 5, 0}, {"5", '5', 0, '5'},
      {"F", 'F', 1, 'F'},            {"+", 0, 0, '+'},
  };
  for (const Case& c : cases) {
    auto k = ParseKey(c.text);
    ASSERT_TRUE(k.has_value()) << c.text;
    EXPECT_EQ(k->key_code, c.code) << c.text;
    EXPECT_EQ(k->shift, c.shift) << c.text;
    EXPECT_EQ(k->key_ascii, c.ascii) << c.text;
  }
  for (const char* bad : {"", "F13", "F0", "Ctrl+", "Banana", "ab"}) EXPECT_FALSE(ParseKey(bad).has_value()) << bad;
}

TEST(KeysTest, ActionStatementsAreReadWithTheirArguments) {
  std::string error;
  auto edit = ActionFromWords("edit", {"grdForecast", "2", "3", "12.50"}, error);
  ASSERT_TRUE(edit.has_value()) << error;
  EXPECT_EQ(edit->kind, ActionKind::Edit);
  EXPECT_EQ(edit->rows, std::vector<int>{2});
  EXPECT_EQ(edit->col, 3);
  EXPECT_EQ(edit->text, "12.50");
  auto select = ActionFromWords("SELECT", {"grdResults", "3,1,2"}, error);
  ASSERT_TRUE(select.has_value()) << error;
  EXPECT_EQ(select->rows, (std::vector<int>{3, 1, 2}));
  auto click = ActionFromWords("click", {"cmdOk"}, error);
  ASSERT_TRUE(click.has_value());
  EXPECT_TRUE(click->text.empty());
  EXPECT_TRUE(ActionFromWords("close", {}, error).has_value());
  const std::vector<std::pair<std::string, std::vector<std::string>>> bad = {
      {"type", {"txtName"}}, {"select", {"grd", "1,x"}}, {"edit", {"grd", "1", "-2", "v"}},
      {"close", {"now"}},    {"expand", {"grd"}},        {"answer", {"Yes"}},
  };
  for (const auto& [verb, args] : bad) {
    error.clear();
    EXPECT_FALSE(ActionFromWords(verb, args, error).has_value()) << verb;
    EXPECT_FALSE(error.empty()) << verb;
  }
  EXPECT_TRUE(IsActionVerb("DblClick"));
  EXPECT_FALSE(IsActionVerb("expect"));
}

}  // namespace
}  // namespace kiv::ui

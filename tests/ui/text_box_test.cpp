// Typing, caret editing and Change of the text box, driven through a form as a clerk would.
#include "ui/text_box.h"

#include <gtest/gtest.h>

#include "ui/form.h"
#include "ui/keys.h"

namespace kiv::ui {
namespace {

class TextBoxTest : public ::testing::Test {
 protected:
  TextBoxTest() : box(form.Add<TextBox>("txtName")) {
    box.on_key_press = [this](int& k) { log.push_back("KeyPress " + std::string(1, static_cast<char>(k))); };
    box.on_change = [this] { log.push_back("Change " + box.Text() + " @" + std::to_string(box.SelStart())); };
  }
  void Type(const std::string& text) { ASSERT_TRUE(form.Perform({ActionKind::Type, "txtName", text, {}, 0})); }
  void Key(const std::string& key) { ASSERT_TRUE(form.Perform({ActionKind::Key, "txtName", key, {}, 0})); }

  Form form{"frmTest"};
  TextBox& box;
  std::vector<std::string> log;
};

TEST_F(TextBoxTest, TypingRunsKeyPressThenInsertsAtTheCaretReplacingTheSelection) {
  box.SetText("ABCD", false);
  box.SetSelStart(1);
  box.SetSelLength(2);
  Type("xy");
  EXPECT_EQ(box.Text(), "AxyD");
  EXPECT_EQ(log, (std::vector<std::string>{"KeyPress x", "Change AxD @2", "KeyPress y", "Change AxyD @3"}));
}

TEST_F(TextBoxTest, TypingAtTheEndGrowsTheTextInPlaceInsteadOfCopyingItPerKey) {
  // A copy of the whole text per keystroke makes typing a long text quadratic; edited in
  // place, the text moves only when its buffer grows, a handful of times for thousands of keys.
  box.on_change = nullptr;
  box.on_key_press = nullptr;
  int moves = 0;
  const char* buffer = box.Text().data();
  for (int i = 0; i < 4000; ++i) {
    Type("a");
    if (box.Text().data() != buffer) ++moves;
    buffer = box.Text().data();
  }
  EXPECT_EQ(box.Text().size(), 4000u);
  EXPECT_LT(moves, 40);
}

TEST_F(TextBoxTest, KeyPressCanSwallowOrReplaceTheCharacter) {
  box.on_key_press = [](int& k) {
    if (k >= '0' && k <= '9') k = 0;
    if (k >= 'a' && k <= 'z') k -= 32;
  };
  Type("a1b2");
  EXPECT_EQ(box.Text(), "AB");
}

TEST_F(TextBoxTest, SettingTheTextFromCodeFiresChangeUnlessToldNotTo) {
  box.SetText("ONE");
  box.SetText("ONE");  // no change, no event
  box.SetDataChanged(false);
  box.SetText("TWO", false);
  EXPECT_EQ(log, (std::vector<std::string>{"Change ONE @3"}));
  EXPECT_EQ(box.Text(), "TWO");
  EXPECT_TRUE(box.DataChanged());  // the marker follows every real change
}

TEST_F(TextBoxTest, BackspaceAndDeleteRemoveWholeCharactersAroundTheCaret) {
  box.SetText("AéB", false);  // é is two bytes
  box.SetSelStart(3);
  Key("Backspace");
  EXPECT_EQ(box.Text(), "AB");
  EXPECT_EQ(box.SelStart(), 1);
  Key("Delete");
  EXPECT_EQ(box.Text(), "A");
  Key("Delete");  // at the end: nothing to delete, no Change
  EXPECT_EQ(box.Text(), "A");
  EXPECT_EQ(log.back(), "Change A @1");
}

TEST_F(TextBoxTest, LockedAndMaxLengthStopTheTextButNotKeyPress) {
  box.SetMaxLength(3);
  Type("ABCD");
  EXPECT_EQ(box.Text(), "ABC");
  box.SetLocked(true);
  log.clear();
  Type("Z");
  Key("Backspace");
  EXPECT_EQ(box.Text(), "ABC");
  EXPECT_EQ(log, (std::vector<std::string>{"KeyPress Z", "KeyPress \b"}));
}

TEST_F(TextBoxTest, MaxLengthCountsCharactersNotBytesWhenTyping) {
  box.SetProperty("MaxLength", "3");
  Type("éßx!");  // two-byte characters count once each
  EXPECT_EQ(box.Text(), "éßx");
  EXPECT_EQ(log.back(), "KeyPress !");  // the clerk's key still runs; the character is swallowed
  box.SetSelStart(0);
  box.SetSelLength(4);  // "éß" (the caret counts bytes): a selection makes room for what replaces it
  Type("ab");
  EXPECT_EQ(box.Text(), "abx");
}

TEST_F(TextBoxTest, PastedOrSetTextIsCutAtMaxLength) {
  box.SetMaxLength(4);
  ASSERT_TRUE(form.Perform({ActionKind::Paste, "txtName", "ÅNGSTRÖM", {}, 0}));
  EXPECT_EQ(box.Text(), "ÅNGS");
  EXPECT_EQ(log, (std::vector<std::string>{"Change ÅNGS @5"}));  // one Change, caret after the kept text
  box.SetText("ABCDEF", false);
  EXPECT_EQ(box.Text(), "ABCD");
  box.SetSelStart(1);
  box.SetSelLength(1);
  box.SetSelText("xyz");  // room for one character where one was selected
  EXPECT_EQ(box.Text(), "AxCD");
  EXPECT_EQ(form.Query("txtName", "MaxLength").value, "4");
  box.SetMaxLength(0);  // no limit
  box.SetText("ABCDEF");
  EXPECT_EQ(box.Text(), "ABCDEF");
}

TEST_F(TextBoxTest, EnterBreaksTheLineOnlyInAMultiLineBox) {
  Type("A");
  Key("Enter");
  EXPECT_EQ(box.Text(), "A");
  box.SetMultiLine(true);
  Key("Enter");
  Type("B");
  EXPECT_EQ(box.Text(), "A\r\nB");
}

TEST_F(TextBoxTest, SelectionIsClampedToTheText) {
  box.SetText("ABC", false);
  box.SetSelStart(10);
  EXPECT_EQ(box.SelStart(), 3);
  box.SetSelStart(1);
  box.SetSelLength(10);
  EXPECT_EQ(box.SelText(), "BC");
  box.SetSelText("x");
  EXPECT_EQ(box.Text(), "Ax");
}

}  // namespace
}  // namespace kiv::ui

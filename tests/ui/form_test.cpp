// Focus moves and their events, "send Tab", key routing with default and cancel buttons
// and key preview, and the form's load/show/unload lifecycle.
#include "ui/form.h"

#include <gtest/gtest.h>

#include "core/vb_error.h"
#include "support/scripted_ui.h"
#include "ui/command_button.h"
#include "ui/frame.h"
#include "ui/keys.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv::ui {
namespace {

class FormTest : public ::testing::Test {
 protected:
  FormTest()
      : first(form.Add<TextBox>("txtFirst")),
        label(form.Add<Label>("lblNote", "Note")),
        second(form.Add<TextBox>("txtSecond")),
        ok(form.Add<CommandButton>("cmdOk", "OK")),
        cancel(form.Add<CommandButton>("cmdCancel", "Cancel")) {
    for (Control* c : form.Controls()) Watch(*c);
    ok.on_click = [this] { log.push_back("cmdOk.Click"); };
    cancel.on_click = [this] { log.push_back("cmdCancel.Click"); };
  }
  void Watch(Control& c) {
    std::string n = c.Name();
    c.on_got_focus = [this, n] { log.push_back(n + ".GotFocus"); };
    c.on_lost_focus = [this, n] { log.push_back(n + ".LostFocus"); };
    c.on_validate = [this, n](bool& cancel_it) {
      log.push_back(n + ".Validate");
      cancel_it = refuse == n;
    };
    c.on_key_press = [this, n](int& k) { log.push_back(n + ".KeyPress " + std::to_string(k)); };
  }
  std::string Key(Control& c, const std::string& key) {
    auto k = ParseKey(key);
    return form.SendKey(c, k->key_code, k->shift, k->key_ascii);
  }

  Form form{"frmTest"};
  TextBox& first;
  Label& label;
  TextBox& second;
  CommandButton& ok;
  CommandButton& cancel;
  std::vector<std::string> log;
  std::string refuse;  // the control whose Validate cancels
};

TEST_F(FormTest, FocusMoveRunsValidateAndLostFocusOnTheOldThenGotFocusOnTheNew) {
  ASSERT_TRUE(first.SetFocus());
  log.clear();
  EXPECT_TRUE(second.SetFocus());
  EXPECT_EQ(log, (std::vector<std::string>{"txtFirst.Validate", "txtFirst.LostFocus", "txtSecond.GotFocus"}));
  EXPECT_EQ(form.ActiveControl(), &second);
}

TEST_F(FormTest, CancelledValidateKeepsTheFocusAndRunsNothingElse) {
  first.SetFocus();
  refuse = "txtFirst";
  log.clear();
  EXPECT_FALSE(second.SetFocus());
  EXPECT_EQ(log, (std::vector<std::string>{"txtFirst.Validate"}));
  EXPECT_TRUE(first.HasFocus());
  // A target that does not cause validation lets the focus go without asking.
  second.SetCausesValidation(false);
  log.clear();
  EXPECT_TRUE(second.SetFocus());
  EXPECT_EQ(log, (std::vector<std::string>{"txtFirst.LostFocus", "txtSecond.GotFocus"}));
}

TEST_F(FormTest, ControlsThatCannotHoldTheFocusAreRefused) {
  EXPECT_FALSE(label.SetFocus());
  second.SetEnabled(false);
  EXPECT_FALSE(second.SetFocus());
  EXPECT_EQ(form.ActiveControl(), nullptr);
}

TEST_F(FormTest, SendTabSkipsWhatCannotBeReachedAndWraps) {
  auto& frame = form.Add<Frame>("fraHidden");
  auto& inside = form.Add<TextBox>("txtInside");
  inside.SetContainer(&frame);
  frame.SetVisible(false);
  second.SetTabStop(false);
  first.SetFocus();
  std::vector<std::string> visited;
  for (int i = 0; i < 4; ++i) {
    form.SendTab();
    visited.push_back(form.ActiveControl()->Name());
  }
  EXPECT_EQ(visited, (std::vector<std::string>{"cmdOk", "cmdCancel", "txtFirst", "cmdOk"}));
  form.SendTab(true);
  form.SendTab(true);
  EXPECT_EQ(form.ActiveControl(), &cancel);
  // Tab order follows TabIndex, not creation.
  cancel.SetTabIndex(-1);
  form.SendTab();
  EXPECT_EQ(form.ActiveControl(), &first);
}

TEST_F(FormTest, TabSentFromAKeyHandlerMovesAfterTheKeyIsHandled) {
  first.on_key_press = [this](int& k) {
    if (k != vbKeyReturn) return;
    k = 0;
    form.SendTab();
    log.push_back(std::string("still in txtFirst: ") + (first.HasFocus() ? "yes" : "no"));
  };
  first.SetFocus();
  log.clear();
  EXPECT_EQ(Key(first, "Enter"), "");
  EXPECT_EQ(log.front(), "still in txtFirst: yes");
  EXPECT_TRUE(second.HasFocus());
}

TEST_F(FormTest, EnterAndEscClickTheDefaultAndCancelButtonsInsteadOfReachingTheField) {
  ok.SetDefault(true);
  cancel.SetCancel(true);
  first.SetFocus();
  log.clear();
  Key(first, "Enter");
  Key(first, "Esc");
  EXPECT_EQ(log, (std::vector<std::string>{"cmdOk.Click", "cmdCancel.Click"}));
  // Without them (or with them disabled) the field gets the keys.
  ok.SetDefault(false);
  cancel.SetEnabled(false);
  log.clear();
  Key(first, "Enter");
  Key(first, "Esc");
  EXPECT_EQ(log, (std::vector<std::string>{"txtFirst.KeyPress 13", "txtFirst.KeyPress 27"}));
}

TEST_F(FormTest, AFocusedButtonOrAMultiLineCtrlEnterKeepsEnter) {
  ok.SetDefault(true);
  cancel.SetFocus();
  log.clear();
  Key(cancel, "Enter");
  EXPECT_EQ(log, (std::vector<std::string>{"cmdCancel.KeyPress 13", "cmdCancel.Click"}));
  second.SetMultiLine(true);
  second.SetFocus();
  Key(second, "Ctrl+Enter");
  EXPECT_EQ(second.Text(), "\r\n");
  log.clear();
  Key(second, "Enter");
  EXPECT_EQ(log, (std::vector<std::string>{"cmdOk.Click"}));
}

TEST_F(FormTest, SettingDefaultOnOneButtonClearsItOnTheOthers) {
  ok.SetDefault(true);
  cancel.SetDefault(true);
  EXPECT_FALSE(ok.Default());
  EXPECT_EQ(form.DefaultButton(), &cancel);
}

TEST_F(FormTest, KeyPreviewRunsTheFormHandlersFirstAndCanSwallow) {
  std::vector<std::string> keys;
  form.on_key_down = [&](int& code, int shift) {
    keys.push_back("form.KeyDown " + std::to_string(code) + "/" + std::to_string(shift));
    if (code == vbKeyF1 + 2) code = 0;
  };
  form.on_key_press = [&](int& k) {
    keys.push_back("form.KeyPress " + std::to_string(k));
    if (k == 'x') k = 0;
  };
  first.on_key_down = [&](int& code, int) { keys.push_back("txtFirst.KeyDown " + std::to_string(code)); };
  first.on_key_press = [&](int& k) { keys.push_back("txtFirst.KeyPress " + std::to_string(k)); };
  Key(first, "Ctrl+F3");  // without preview the form sees nothing
  form.SetKeyPreview(true);
  Key(first, "Ctrl+F3");
  Key(first, "x");
  Key(first, "y");
  EXPECT_EQ(keys, (std::vector<std::string>{"txtFirst.KeyDown 114", "form.KeyDown 114/2", "form.KeyDown 88/0",
                                            "txtFirst.KeyDown 88", "form.KeyPress 120", "form.KeyDown 89/0",
                                            "txtFirst.KeyDown 89", "form.KeyPress 121", "txtFirst.KeyPress 121"}));
  EXPECT_EQ(first.Text(), "y");
}

TEST_F(FormTest, ShowLoadsOnceActivatesAndFocusesTheFirstTabStop) {
  int loads = 0;
  int activations = 0;
  form.on_load = [&] { ++loads; };
  form.on_activate = [&] { ++activations; };
  form.Show();
  form.Hide();
  form.Show();
  EXPECT_EQ(loads, 1);
  EXPECT_EQ(activations, 2);
  EXPECT_TRUE(form.Visible());
  EXPECT_EQ(form.ActiveControl(), &first);
}

TEST_F(FormTest, QueryUnloadTellsTheCloseBoxFromCodeAndCanKeepTheForm) {
  std::vector<int> modes;
  int keep = 1;
  form.on_query_unload = [&](int& c, int mode) {
    modes.push_back(mode);
    c = keep;
  };
  form.Show();
  EXPECT_TRUE(form.Perform({ActionKind::Close, "", "", {}, 0}));
  EXPECT_TRUE(form.Visible());
  keep = 0;
  EXPECT_TRUE(form.Unload());
  EXPECT_FALSE(form.Loaded());
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(modes, (std::vector<int>{vbFormControlMenu, vbFormCode}));
}

TEST_F(FormTest, ModalShowHandsTheVisibleFormToTheUi) {
  auto ui = std::make_shared<test::ScriptedUi>();
  form.SetUi(ui);
  Form owner("frmOwner");
  bool seen_visible = false;
  ui->OnModal([&](Form& f) {
    seen_visible = f.Visible();
    f.Hide();
  });
  form.Show(vbModal, &owner);
  EXPECT_TRUE(seen_visible);
  EXPECT_FALSE(form.Visible());
  EXPECT_EQ(ui->ModalForms(), (std::vector<std::string>{"frmTest"}));
  EXPECT_EQ(ui->ModalOwners(), (std::vector<std::string>{"frmOwner"}));
}

TEST_F(FormTest, ControlNamesAreUniqueWithoutRegardToCase) {
  EXPECT_EQ(form.Find("TXTFIRST"), &first);
  EXPECT_EQ(form.FindAs<CommandButton>("txtFirst"), nullptr);
  try {
    form.Add<TextBox>("TxtFirst");
    FAIL() << "a duplicate name was accepted";
  } catch (const VbError& e) {
    EXPECT_EQ(e.Number(), kErrKeyExists);
  }
}

TEST_F(FormTest, ALabelNamesTheControlItCaptionsInTheDescription) {
  label.SetBuddy(second);
  const ControlNode node = form.Describe();
  const ControlNode* described = node.FindChild("lblNote");
  ASSERT_NE(described, nullptr);
  ASSERT_NE(described->Property("Buddy"), nullptr);
  EXPECT_EQ(*described->Property("Buddy"), "txtSecond");
  const ControlNode* alone = node.FindChild("txtFirst");
  ASSERT_NE(alone, nullptr);
  EXPECT_EQ(alone->Property("Buddy"), nullptr) << "only a label has one";
}

}  // namespace
}  // namespace kiv::ui

// The generic actions, queries and description a script runner or browser drives a form
// with: every failure comes back as text, never as an exception.
#include <gtest/gtest.h>

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/grid.h"
#include "ui/label.h"
#include "ui/menu_item.h"
#include "ui/option_group.h"
#include "ui/prop_text.h"
#include "ui/status_bar.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv::ui {
namespace {

class FormActionsTest : public ::testing::Test {
 protected:
  FormActionsTest()
      : frame(form.Add<Frame>("fraPerson", "Person")),
        name(form.Add<TextBox>("txtName")),
        gender(form.Add<OptionGroup>("optGender", std::vector<std::string>{"&Male", "F&emale", "Either"})),
        group(form.Add<ComboBox>("cmbGroup")),
        dob(form.Add<DatePicker>("dtDOB")),
        tabs(form.Add<TabStrip>("tabFind")),
        grid(form.Add<Grid>("grdResults")),
        status(form.Add<StatusBar>("stbSearch")),
        locked(form.Add<CheckBox>("ckbLocked", "Locked")),
        ok(form.Add<CommandButton>("cmdOk", "OK")),
        menu(form.Add<MenuItem>("mnuOptions", "&Options")),
        item(form.Add<MenuItem>("mnuDefault", "Default")),
        note(form.Add<Label>("lblNote")) {
    name.SetContainer(&frame);
    gender.SetContainer(&frame);
    item.SetContainer(&menu);
    group.AddItem("Ski Club", "SKI");
    group.AddItem("Golf", "GOLF");
    tabs.AddTab("Person", "&Person");
    tabs.AddTab("Company", "&Company");
    grid.SetFormatString("No|Name");
    grid.AddItem("7\tLEE");
    grid.AddItem("9\tANN");
    status.AddPanel("FOUND", "Found 2 Customers");
    ok.on_click = [this] { log.push_back("cmdOk.Click"); };
  }
  UiResult Do(ActionKind kind, const std::string& control, const std::string& text = {}, std::vector<int> rows = {},
              int col = 0) {
    return form.Perform(Action{kind, control, text, std::move(rows), col});
  }
  std::string Q(const std::string& control, const std::string& prop) {
    UiResult r = form.Query(control, prop);
    return r.ok ? r.value : "ERROR " + r.error;
  }

  Form form{"frmFind"};
  Frame& frame;
  TextBox& name;
  OptionGroup& gender;
  ComboBox& group;
  DatePicker& dob;
  TabStrip& tabs;
  Grid& grid;
  StatusBar& status;
  CheckBox& locked;
  CommandButton& ok;
  MenuItem& menu;
  MenuItem& item;
  Label& note;
  std::vector<std::string> log;
};

TEST_F(FormActionsTest, RefusedActionsComeBackAsErrorTexts) {
  frame.SetVisible(false);
  ok.SetEnabled(false);
  struct Case {
    Action action;
    std::string error_mentions;
  };
  const std::vector<Case> cases = {
      {{ActionKind::Click, "cmdNope", "", {}, 0}, "cmdNope"},
      {{ActionKind::Type, "txtName", "A", {}, 0}, "not visible"},
      {{ActionKind::Click, "optGender", "Male", {}, 0}, "not visible"},
      {{ActionKind::Click, "cmdOk", "", {}, 0}, "disabled"},
      {{ActionKind::Choose, "cmbGroup", "Tennis", {}, 0}, "Tennis"},
      {{ActionKind::Click, "tabFind", "Club", {}, 0}, "Club"},
      {{ActionKind::Date, "dtDOB", "31/31/2020", {}, 0}, "not a date"},
      {{ActionKind::Select, "cmbGroup", "", {1}, 0}, "not a grid"},
      {{ActionKind::Select, "grdResults", "", {0}, 0}, "no row 0"},
      {{ActionKind::Type, "lblNote", "x", {}, 0}, "typing"},
      {{ActionKind::Key, "ckbLocked", "Ctrl+Banana", {}, 0}, "not a key"},
      {{ActionKind::Edit, "grdResults", "x", {1}, 1}, "not editable"},
  };
  for (const Case& c : cases) {
    UiResult r = form.Perform(c.action);
    EXPECT_FALSE(r.ok) << c.action.control << " " << c.action.text;
    EXPECT_NE(r.error.find(c.error_mentions), std::string::npos) << r.error;
  }
}

TEST_F(FormActionsTest, AHandlerThatRaisesIsReportedNotThrown) {
  ok.on_click = [] { throw VbError(91, "Object variable not set"); };
  UiResult r = Do(ActionKind::Click, "cmdOk");
  EXPECT_FALSE(r.ok);
  EXPECT_NE(r.error.find("91"), std::string::npos);
}

TEST_F(FormActionsTest, ClickingAButtonTakesTheFocusFirstAndARefusingValidateStopsIt) {
  name.on_validate = [](bool& cancel) { cancel = true; };
  Do(ActionKind::Focus, "txtName");
  UiResult r = Do(ActionKind::Click, "cmdOk");
  EXPECT_TRUE(r.ok);
  EXPECT_NE(r.value.find("txtName"), std::string::npos);
  EXPECT_TRUE(log.empty());
  name.on_validate = nullptr;
  Do(ActionKind::Click, "cmdOk");
  EXPECT_EQ(log, (std::vector<std::string>{"cmdOk.Click"}));
  EXPECT_EQ(Q("", "focus"), "cmdOk");
}

TEST_F(FormActionsTest, MenuClickOpensTheMenuAboveFirst) {
  menu.on_click = [this] { item.SetEnabled(false); };
  item.on_click = [this] { log.push_back("mnuDefault.Click"); };
  EXPECT_FALSE(Do(ActionKind::Click, "mnuDefault").ok);
  menu.on_click = [this] { item.SetChecked(true); };
  item.SetEnabled(true);
  EXPECT_TRUE(Do(ActionKind::Click, "mnuDefault").ok);
  EXPECT_EQ(log, (std::vector<std::string>{"mnuDefault.Click"}));
  EXPECT_EQ(Q("mnuDefault", "checked"), "True");
}

TEST_F(FormActionsTest, ItemsArePickedByKeyCaptionOrIndex) {
  EXPECT_TRUE(Do(ActionKind::Choose, "cmbGroup", "GOLF").ok);
  EXPECT_EQ(Q("cmbGroup", "text"), "Golf");
  EXPECT_TRUE(Do(ActionKind::Choose, "cmbGroup", "ski club").ok);
  EXPECT_EQ(Q("cmbGroup", "selected"), "SKI");
  EXPECT_TRUE(Do(ActionKind::Click, "optGender", "Female").ok);
  EXPECT_EQ(Q("optGender", "value"), "1");
  EXPECT_TRUE(Do(ActionKind::Click, "optGender", "2").ok);
  EXPECT_EQ(Q("optGender", "selected"), "Either");
  EXPECT_TRUE(Do(ActionKind::Click, "tabFind", "Company").ok);
  EXPECT_TRUE(Do(ActionKind::Click, "tabFind", "1").ok);
  EXPECT_EQ(Q("tabFind", "selected"), "Person");
  EXPECT_TRUE(Do(ActionKind::Click, "ckbLocked").ok);
  EXPECT_EQ(Q("ckbLocked", "value"), "1");
}

TEST_F(FormActionsTest, DatesAreSetOrClearedAndFireChange) {
  int changes = 0;
  dob.on_change = [&] { ++changes; };
  EXPECT_TRUE(Do(ActionKind::Date, "dtDOB", "1980-02-29").ok);
  EXPECT_EQ(Q("dtDOB", "value"), "1980-02-29");
  EXPECT_TRUE(Do(ActionKind::Date, "dtDOB", "none").ok);
  EXPECT_EQ(Q("dtDOB", "value"), "none");
  EXPECT_EQ(changes, 2);
  dob.SetAllowNone(false);
  EXPECT_FALSE(Do(ActionKind::Date, "dtDOB", "none").ok);
}

TEST_F(FormActionsTest, QueriesAnswerGridCellsRowsAndPanels) {
  grid.SetColHidden(0, true);
  EXPECT_EQ(Q("grdResults", "[2,1]"), "ANN");
  EXPECT_EQ(Q("grdResults", "rows"), "2");
  EXPECT_EQ(Q("grdResults", "colhidden[0]"), "True");
  EXPECT_EQ(Q("stbSearch", "panel[found]"), "Found 2 Customers");
  EXPECT_EQ(Q("stbSearch", "panel[DISPLAY]").rfind("ERROR", 0), 0u);
  EXPECT_EQ(Q("grdResults", "[5,1]").rfind("ERROR", 0), 0u);
  EXPECT_EQ(Q("txtNope", "text").rfind("ERROR", 0), 0u);
  EXPECT_EQ(Q("txtName", "MaxLength"), "0");  // any registered property by name
  EXPECT_EQ(Q("txtName", "Wobble").rfind("ERROR", 0), 0u);
  Do(ActionKind::Select, "grdResults", "", {2});
  EXPECT_EQ(Q("grdResults", "selected"), "2");
  EXPECT_EQ(Q("grdResults", "text"), "9");
}

TEST_F(FormActionsTest, DescriptionNestsContainedControlsAndShowsGridCells) {
  name.SetText("LEE");
  ControlNode tree = form.Describe();
  EXPECT_EQ(tree.name, "frmFind");
  const ControlNode* person = tree.FindChild("fraPerson");
  ASSERT_NE(person, nullptr);
  ASSERT_EQ(person->children.size(), 2u);
  EXPECT_EQ(*person->children[0].Property("text"), "LEE");
  EXPECT_EQ(tree.FindChild("mnuOptions")->children[0].name, "mnuDefault");
  std::string text = form.DescribeText();
  EXPECT_NE(text.find("  txtName (TextBox) Text=\"LEE\""), std::string::npos) << text;
  EXPECT_NE(text.find("[2] 9 | ANN"), std::string::npos) << text;
}

//! A kind the form has never heard of: it answers and acts through its own overrides.
class Dial : public Control {
 public:
  explicit Dial(std::string name) : Control(std::move(name), "Dial") {}
  std::string ShownCaption() const override { return "Volume"; }
  std::optional<std::string> QueryState(const std::string& name) const override {
    if (EqualsNoCase(name, "value")) return std::to_string(level);
    return Control::QueryState(name);
  }
  std::string RefuseAction(const Action& action) const override {
    if (action.kind != ActionKind::Choose) return Control::RefuseAction(action);
    return action.text == "11" ? "the dial stops at 10" : "";
  }
  UiResult ApplyAction(const Action& action) override {
    if (action.kind != ActionKind::Choose) return Control::ApplyAction(action);
    level = ParseIntText(action.text);
    return UiResult::Ok();
  }
  int level = 0;
};

TEST_F(FormActionsTest, ANewControlKindIsDrivenThroughItsOwnOverrides) {
  Dial& dial = form.Add<Dial>("dlVolume");
  name.on_validate = [](bool& cancel) { cancel = true; };
  Do(ActionKind::Focus, "txtName");
  UiResult stayed = Do(ActionKind::Choose, "dlVolume", "7");
  EXPECT_NE(stayed.value.find("stayed on txtName"), std::string::npos);  // the form's focus rule first
  EXPECT_EQ(dial.level, 0);
  name.on_validate = nullptr;
  EXPECT_TRUE(Do(ActionKind::Choose, "dlVolume", "7").ok);
  EXPECT_EQ(Q("dlVolume", "value"), "7");
  EXPECT_EQ(Q("dlVolume", "focus"), "True");
  EXPECT_EQ(Q("dlVolume", "caption"), "Volume");
  EXPECT_EQ(Do(ActionKind::Choose, "dlVolume", "11").error, "the dial stops at 10");
  EXPECT_EQ(Do(ActionKind::Paste, "dlVolume", "3").error, "dlVolume does not take pasted text");
}

TEST_F(FormActionsTest, NoActionOrQueryCrashesOnOddInput) {
  grid.SetEditable(flexEDKbdMouse);
  const std::vector<std::string> texts = {"", "0", "-1", "99999999999", "x", "Ctrl+", "[1,1]", "\xff\xfe"};
  const std::vector<std::vector<int>> rows = {{}, {-5}, {1}, {2, 1}, {1000}};
  std::vector<std::string> names;
  for (Control* c : form.Controls()) names.push_back(c->Name());
  names.push_back("");
  for (int kind = 0; kind <= static_cast<int>(ActionKind::Close); ++kind) {
    for (const std::string& control : names) {
      for (const std::string& text : texts) {
        for (const auto& r : rows) {
          for (int col : {-1, 1, 50}) {
            UiResult result = form.Perform(Action{static_cast<ActionKind>(kind), control, text, r, col});
            EXPECT_TRUE(result.ok || !result.error.empty()) << control << " kind " << kind;
          }
        }
      }
    }
  }
  for (const std::string& control : names) {
    for (const char* prop : {"text", "value", "selected", "count", "[-1,0]", "[0,99]", "colhidden[x]", "panel[]",
                             "rowhidden[-1]", "checked", "caption", "Cells", ""}) {
      UiResult result = form.Query(control, prop);
      EXPECT_TRUE(result.ok || !result.error.empty()) << control << "." << prop;
    }
  }
}

}  // namespace
}  // namespace kiv::ui

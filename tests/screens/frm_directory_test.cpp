// The folder chooser over a folder tree made for each test: the drive and folder lists, the
// path text following them, the refusal of a path that does not exist, and paths with
// blanks, quotes and letters beyond ASCII.
#include "screens/common/frm_directory.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/scripted_ui.h"

namespace kiv {
namespace {

namespace fs = std::filesystem;
using ui::ActionKind;

struct DirectoryRig {
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  frmDirectory screen;
  fs::path root = fs::temp_directory_path() / ("kiv_frm_directory_" + std::to_string(::getpid()));
  fs::path other = root.string() + "_other";

  DirectoryRig() {
    fs::remove_all(root);
    fs::remove_all(other);
    for (const char* sub : {"exports", "exports/2026", "with blank", "Zürich \"quoted\"", ".hidden"})
      fs::create_directories(root / sub);
    fs::create_directories(other / "inbox");
    screen.SetUi(ui);
    screen.SetDrives({root.string(), other.string()});
    screen.SetStartPath(root.string());
    screen.Show();
  }
  ~DirectoryRig() {
    fs::remove_all(root);
    fs::remove_all(other);
  }
  std::string Act(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen.Perform(ui::Action{kind, control, text, {}, 0});
    return r.ok ? std::string() : r.error;
  }
  std::vector<std::string> Folders() const {
    std::vector<std::string> items;
    for (int i = 0; i < screen.dirDirectory.ListCount(); ++i) items.push_back(screen.dirDirectory.List(i));
    return items;
  }
};

TEST(frmDirectory, ListsTheDrivesAndTheFoldersAndFollowsThemInThePath) {
  DirectoryRig rig;
  EXPECT_EQ(rig.screen.Caption(), "Select Directory");
  EXPECT_EQ(rig.screen.drvDrive.ListCount(), 2);
  EXPECT_EQ(rig.screen.drvDrive.SelectedKey(), rig.root.string());
  EXPECT_EQ(rig.screen.txtPath.Text(), rig.root.string());
  // Hidden folders are left out; the folder above comes first.
  EXPECT_EQ(rig.Folders(), (std::vector<std::string>{"..", "Zürich \"quoted\"", "exports", "with blank"}));

  EXPECT_EQ(rig.Act(ActionKind::Choose, "dirDirectory", "exports"), "");
  EXPECT_EQ(rig.screen.txtPath.Text(), (rig.root / "exports").string());
  EXPECT_EQ(rig.Folders(), (std::vector<std::string>{"..", "2026"}));
  EXPECT_EQ(rig.Act(ActionKind::Choose, "dirDirectory", ".."), "");
  EXPECT_EQ(rig.screen.CurrentFolder(), rig.root.string());

  EXPECT_EQ(rig.Act(ActionKind::Choose, "drvDrive", rig.other.string()), "");
  EXPECT_EQ(rig.screen.txtPath.Text(), rig.other.string());
  EXPECT_EQ(rig.Folders(), (std::vector<std::string>{"..", "inbox"}));
}

TEST(frmDirectory, APathThatDoesNotExistIsRefusedAndTheScreenStays) {
  for (const std::string& typed : {std::string("/no/such/folder/anywhere"), std::string()}) {
    DirectoryRig rig;
    EXPECT_EQ(rig.Act(ActionKind::Paste, "txtPath", typed), "");
    rig.ui->Answer(ui::vbOK);
    EXPECT_EQ(rig.Act(ActionKind::Click, "cmdOk"), "");
    ASSERT_EQ(rig.ui->Boxes().size(), 1u) << typed;
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, "The path you have selected does not exist!");
    EXPECT_EQ(rig.ui->Boxes()[0].title, "Error - Invalid Path");
    EXPECT_EQ(rig.ui->Boxes()[0].style & 0x70, ui::vbExclamation);
    EXPECT_TRUE(rig.screen.Visible());
    EXPECT_TRUE(rig.screen.Canceled());
  }
}

TEST(frmDirectory, PathsWithBlanksQuotesAndAccentsAreKept) {
  struct Case {
    std::string typed;
    std::string kept;
  };
  DirectoryRig probe;
  const std::string root = probe.root.string();
  const Case cases[] = {
      {root + "/with blank", root + "/with blank"},
      {root + "/Zürich \"quoted\"", root + "/Zürich \"quoted\""},
      // A path pasted from a shell, in quotes, and a relative one from the folder shown.
      {"\"" + root + "/with blank\"", root + "/with blank"},
      {"exports/2026/", root + "/exports/2026"},
      {root + "/exports/../with blank", root + "/with blank"},
  };
  for (const Case& c : cases) {
    DirectoryRig rig;
    EXPECT_EQ(rig.Act(ActionKind::Paste, "txtPath", c.typed), "");
    EXPECT_EQ(rig.Act(ActionKind::Click, "cmdOk"), "");
    EXPECT_TRUE(rig.ui->Boxes().empty()) << c.typed;
    EXPECT_FALSE(rig.screen.Canceled()) << c.typed;
    EXPECT_EQ(rig.screen.Path(), c.kept);
    EXPECT_FALSE(rig.screen.Visible());
  }
}

TEST(frmDirectory, CancelAndTheCloseBoxKeepNoPath) {
  for (const bool close_box : {false, true}) {
    DirectoryRig rig;
    EXPECT_EQ(rig.Act(close_box ? ActionKind::Close : ActionKind::Click, close_box ? "" : "cmdCancel"), "");
    EXPECT_TRUE(rig.screen.Canceled());
    EXPECT_EQ(rig.screen.Path(), "");
  }
}

TEST(frmDirectory, ADriveThatWentAwayIsRefusedAndTheFolderStays) {
  DirectoryRig rig;
  fs::remove_all(rig.other);
  rig.ui->Answer(ui::vbOK);
  EXPECT_EQ(rig.Act(ActionKind::Choose, "drvDrive", rig.other.string()), "");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "The drive " + rig.other.string() + " is not available.");
  EXPECT_EQ(rig.screen.CurrentFolder(), rig.root.string());
  EXPECT_EQ(rig.screen.drvDrive.SelectedKey(), rig.root.string());
}

}  // namespace
}  // namespace kiv

// The folder chooser: the mounted file systems' roots as drives, the folders of the current
// folder, and the path text that OK tests as an existing directory before it is kept.
#pragma once
#include <string>
#include <vector>

#include "screens/kit/screen.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv {

class frmDirectory : public Screen {
 public:
  static constexpr const char* kInvalidPath = "The path you have selected does not exist!";
  static constexpr const char* kInvalidPathTitle = "Error - Invalid Path";
  //! The first item of the folder list when there is a folder above the current one.
  static constexpr const char* kParentItem = "..";

  frmDirectory();

  //! The drives offered instead of the machine's mounted file systems (tests, a host that
  //! wants fewer); set before the screen loads.
  void SetDrives(std::vector<std::string> roots) { drives_ = std::move(roots); }
  //! The folder shown first; set before the screen loads. A folder that does not exist
  //! starts at the first drive instead.
  void SetStartPath(std::string path) { start_path_ = std::move(path); }
  //! True until OK kept a path; Cancel and the close box set it.
  bool Canceled() const { return canceled_; }
  //! The folder kept by OK, absolute and without a trailing separator (but for a root).
  const std::string& Path() const { return path_; }
  //! The folder the folder list shows.
  const std::string& CurrentFolder() const { return folder_; }

  //! The mount points of this machine's real file systems, "/" first; just "/" when the
  //! mount table cannot be read.
  static std::vector<std::string> MountedRoots();
  //! What OK makes of the typed text: a pair of surrounding double quotes (a pasted shell
  //! path) removed, a relative path taken from `base`, "." and ".." resolved. Empty for
  //! empty text.
  static std::string ResolveTyped(const std::string& typed, const std::string& base);

  ui::Label& lblDrive;
  ui::ComboBox& drvDrive;
  ui::Label& lblDirectory;
  ui::ComboBox& dirDirectory;
  ui::Label& lblPath;
  ui::TextBox& txtPath;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;

 private:
  void WireEvents();
  void OnLoad();
  //! Moves the folder list to `folder` and copies it into the path text; false (after a
  //! message) when the folder cannot be read.
  bool ShowFolder(const std::string& folder);
  void FillDrives();
  //! Selects the drive that holds `folder` (the longest root it starts with).
  void SelectDriveOf(const std::string& folder);
  void OnDriveClick();
  void OnFolderClick();
  void OnOk();

  std::vector<std::string> drives_;
  std::string start_path_;
  std::string folder_;
  std::string path_;
  bool canceled_ = true;
};

}  // namespace kiv

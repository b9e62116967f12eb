// The about box: the component's name and version, the database it works on with the
// engine under it, and what is known of the machine it runs on.
#pragma once
#include <string>

#include "screens/kit/screen.h"
#include "ui/command_button.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv {

class frmAbout : public Screen {
 public:
  static constexpr const char* kDatabaseInfoProcedure = "KIV_SP_SYSTEM_GetDatabaseInfo";

  frmAbout();

  //! The machine and build, one fact a line: platform, processors, word size, compiler.
  static std::string SystemInformation();

  ui::Label& lblTitle;
  ui::Label& lblVersion;
  ui::Label& lblDatabase;
  ui::Label& lblDatabaseEngine;
  ui::Label& lblUser;
  ui::TextBox& txtSystemInfo;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdSysInfo;

 private:
  void OnLoad();
  void ShowDatabase();
};

}  // namespace kiv

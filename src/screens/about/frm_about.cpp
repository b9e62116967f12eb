// The about box: version from the engine, the database facts the host reports through a
// procedure (a host without it shows that it did not say), and the system information.
#include "screens/about/frm_about.h"

#include <thread>

#include "core/variant.h"
#include "core/version.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"

namespace kiv {

namespace {

constexpr const char* kNotReported = "(not reported by the host)";

const char* PlatformName() {
#if defined(__linux__)
  return "Linux";
#elif defined(__APPLE__)
  return "macOS";
#elif defined(_WIN32)
  return "Windows";
#elif defined(__unix__)
  return "Unix";
#else
  return "unknown";
#endif
}

std::string CompilerName() {
#if defined(__clang__)
  return "Clang " __clang_version__;
#elif defined(__GNUC__)
  return "GCC " __VERSION__;
#elif defined(_MSC_VER)
  return "MSVC " + std::to_string(_MSC_VER);
#else
  return "unknown";
#endif
}

}  // namespace

frmAbout::frmAbout()
    : Screen("frmAbout"),
      lblTitle(Add<ui::Label>("lblTitle", "Customer Maintenance")),
      lblVersion(Add<ui::Label>("lblVersion")),
      lblDatabase(Add<ui::Label>("lblDatabase")),
      lblDatabaseEngine(Add<ui::Label>("lblDatabaseEngine")),
      lblUser(Add<ui::Label>("lblUser")),
      txtSystemInfo(Add<ui::TextBox>("txtSystemInfo")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdSysInfo(Add<ui::CommandButton>("cmdSysInfo", "&System Info...")) {
  SetCaption("About Customer");
  txtSystemInfo.SetMultiLine(true);
  txtSystemInfo.SetLocked(true);
  txtSystemInfo.SetVisible(false);
  cmdOK.SetDefault(true);
  cmdOK.SetCancel(true);
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  OnClick(cmdSysInfo, [this] {
    txtSystemInfo.SetText(SystemInformation());
    txtSystemInfo.SetVisible(true);
  });
  cmdOK.on_click = [this] { Hide(); };
}

void frmAbout::OnLoad() {
  const std::string stamp = engine_ != nullptr ? engine_->VersionStamp() : std::string(kComponentName) + "=" + VersionText();
  lblVersion.SetCaption("Version " + VersionText() + " (" + stamp + ")");
  lblUser.SetCaption("User: " + (db_ ? db_->UserID() : std::string()));
  ShowDatabase();
}

void frmAbout::ShowDatabase() {
  lblDatabase.SetCaption(std::string("Database: ") + kNotReported);
  lblDatabaseEngine.SetCaption(std::string("Database engine: ") + kNotReported);
  if (!db_) return;
  host::ProcedureCall call(*db_, kDatabaseInfoProcedure);
  host::ScopedRecordset rs = call.Open();
  if (rs.Eof()) return;
  lblDatabase.SetCaption("Database: " + NzString((*rs)["database_name"]));
  lblDatabaseEngine.SetCaption("Database engine: " + NzString((*rs)["database_engine"]) + ", schema version " +
                               NzString((*rs)["schema_version"]));
}

std::string frmAbout::SystemInformation() {
  const unsigned processors = std::thread::hardware_concurrency();
  return std::string("Operating system: ") + PlatformName() + "\r\n" +
         "Processors: " + (processors == 0 ? std::string("unknown") : std::to_string(processors)) + "\r\n" +
         "Word size: " + std::to_string(sizeof(void*) * 8) + " bit\r\n" + "Compiler: " + CompilerName() + "\r\n" +
         "Language: C++" + std::to_string(__cplusplus / 100 % 100);
}

}  // namespace kiv

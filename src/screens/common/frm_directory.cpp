// The folder chooser: drives from the mount table, the folder list one level at a time,
// and the check of the typed path on OK.
#include "screens/common/frm_directory.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <system_error>

#include "core/text.h"

namespace kiv {

namespace fs = std::filesystem;

namespace {

//! File systems that hold no folders a clerk would keep files in.
const std::set<std::string>& PseudoFileSystems() {
  static const std::set<std::string> kinds = {
      "proc",   "sysfs",  "devtmpfs", "devpts",   "cgroup",    "cgroup2", "securityfs", "debugfs", "tracefs",
      "mqueue", "pstore", "bpf",      "configfs", "fusectl",   "hugetlbfs", "autofs",   "binfmt_misc", "nsfs",
      "rpc_pipefs", "efivarfs", "selinuxfs", "overlay_internal"};
  return kinds;
}

//! The mount table escapes blanks and a few other characters as octal ("\040").
std::string Unescape(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size()) {
      const std::string digits = text.substr(i + 1, 3);
      if (std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '7'; })) {
        out.push_back(static_cast<char>(std::stoi(digits, nullptr, 8)));
        i += 3;
        continue;
      }
    }
    out.push_back(text[i]);
  }
  return out;
}

//! An absolute folder without a trailing separator (a root keeps its own).
std::string Tidy(const fs::path& path) {
  std::string text = path.lexically_normal().string();
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

}  // namespace

frmDirectory::frmDirectory()
    : Screen("frmDirectory"),
      lblDrive(Add<ui::Label>("lblDrive", "Drive:")),
      drvDrive(Add<ui::ComboBox>("drvDrive")),
      lblDirectory(Add<ui::Label>("lblDirectory", "Folders:")),
      dirDirectory(Add<ui::ComboBox>("dirDirectory")),
      lblPath(Add<ui::Label>("lblPath", "Path:")),
      txtPath(Add<ui::TextBox>("txtPath")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Select Directory");
  cmdOk.SetDefault(true);
  cmdCancel.SetCancel(true);
  WireEvents();
}

void frmDirectory::WireEvents() {
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  OnClick(drvDrive, [this] {
    if (!Filling()) OnDriveClick();
  });
  OnClick(dirDirectory, [this] {
    if (!Filling()) OnFolderClick();
  });
  OnClick(cmdOk, [this] { OnOk(); });
  cmdCancel.on_click = [this] {
    canceled_ = true;
    Hide();
  };
  on_query_unload = [this](int&, int mode) {
    if (mode == ui::vbFormControlMenu) canceled_ = true;
  };
}

std::vector<std::string> frmDirectory::MountedRoots() {
  std::vector<std::string> roots{"/"};
  std::ifstream mounts("/proc/self/mounts");
  std::string line;
  while (std::getline(mounts, line)) {
    std::istringstream fields(line);
    std::string device, point, kind;
    if (!(fields >> device >> point >> kind)) continue;
    if (PseudoFileSystems().count(kind) != 0) continue;
    point = Unescape(point);
    // The system's own trees are not where a clerk keeps files.
    if (point.rfind("/proc", 0) == 0 || point.rfind("/sys", 0) == 0 || point.rfind("/dev", 0) == 0 ||
        point.rfind("/run", 0) == 0)
      continue;
    if (std::find(roots.begin(), roots.end(), point) == roots.end()) roots.push_back(point);
  }
  std::sort(roots.begin() + 1, roots.end());
  return roots;
}

std::string frmDirectory::ResolveTyped(const std::string& typed, const std::string& base) {
  std::string text = typed;
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  if (text.empty()) return {};
  fs::path path(text);
  if (path.is_relative()) path = fs::path(base.empty() ? "/" : base) / path;
  return Tidy(path);
}

void frmDirectory::OnLoad() {
  canceled_ = true;
  path_.clear();
  if (drives_.empty()) drives_ = MountedRoots();
  FillDrives();
  std::error_code ec;
  std::string start = start_path_.empty() ? std::string() : ResolveTyped(start_path_, "/");
  if (start.empty() || !fs::is_directory(start, ec)) start = drives_.empty() ? "/" : drives_.front();
  ShowFolder(start);
}

void frmDirectory::FillDrives() {
  FillingScope filling(*this);
  drvDrive.Clear();
  for (const std::string& root : drives_) drvDrive.AddItem(root, root);
}

void frmDirectory::SelectDriveOf(const std::string& folder) {
  FillingScope filling(*this);
  int best = -1;
  size_t best_length = 0;
  for (size_t i = 0; i < drives_.size(); ++i) {
    const std::string& root = drives_[i];
    const bool inside = folder == root || root == "/" || folder.rfind(root + "/", 0) == 0;
    if (inside && root.size() >= best_length) {
      best = static_cast<int>(i);
      best_length = root.size();
    }
  }
  if (best >= 0 && drvDrive.ListIndex() != best) drvDrive.SetListIndex(best);
}

bool frmDirectory::ShowFolder(const std::string& folder) {
  std::vector<std::string> children;
  std::error_code ec;
  fs::directory_iterator it(folder, fs::directory_options::skip_permission_denied, ec);
  if (ec) {
    ui().MsgBox("The folder " + folder + " cannot be read: " + ec.message() + ".", ui::vbExclamation,
                "Select Directory");
    return false;
  }
  for (; it != fs::directory_iterator(); it.increment(ec)) {
    if (ec) break;
    std::error_code kind_error;
    if (!it->is_directory(kind_error)) continue;
    const std::string name = it->path().filename().string();
    // Hidden folders hold settings, not exports.
    if (!name.empty() && name.front() != '.') children.push_back(name);
  }
  std::sort(children.begin(), children.end());
  FillingScope filling(*this);
  folder_ = folder;
  dirDirectory.Clear();
  const fs::path here(folder);
  if (here.has_relative_path()) dirDirectory.AddItem(kParentItem, Tidy(here.parent_path()));
  for (const std::string& name : children) dirDirectory.AddItem(name, Tidy(here / name));
  txtPath.SetText(folder);
  SelectDriveOf(folder);
  return true;
}

void frmDirectory::OnDriveClick() {
  const std::string root = drvDrive.SelectedKey();
  if (root.empty() || root == folder_) return;
  std::error_code ec;
  if (!fs::is_directory(root, ec)) {
    // A drive that went away since the list was read: stay where we are.
    ui().MsgBox("The drive " + root + " is not available.", ui::vbExclamation, "Select Directory");
    SelectDriveOf(folder_);
    return;
  }
  if (!ShowFolder(root)) SelectDriveOf(folder_);
}

void frmDirectory::OnFolderClick() {
  const std::string target = dirDirectory.SelectedKey();
  if (target.empty()) return;
  ShowFolder(target);
}

void frmDirectory::OnOk() {
  const std::string path = ResolveTyped(txtPath.Text(), folder_);
  std::error_code ec;
  if (path.empty() || !fs::is_directory(path, ec)) {
    ui().MsgBox(kInvalidPath, ui::vbOKOnly | ui::vbExclamation, kInvalidPathTitle);
    txtPath.SetFocus();
    return;
  }
  path_ = path;
  canceled_ = false;
  Hide();
}

}  // namespace kiv

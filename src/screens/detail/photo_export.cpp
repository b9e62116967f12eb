// The photograph export: the picture read from the image table, the folder chooser shown
// over the editor, and the picture's own bytes written into the chosen folder.
#include "screens/detail/photo_export.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "records/c_customer.h"
#include "screens/common/frm_directory.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

namespace {

constexpr const char* kTitle = "Export Photograph";

std::string Extension(PhotoFormat format) {
  switch (format) {
    case PhotoFormat::Png: return "png";
    case PhotoFormat::Jpeg: return "jpg";
    case PhotoFormat::Gif: return "gif";
    case PhotoFormat::Bmp: return "bmp";
    default: return "img";
  }
}

//! The folder the chooser opens on: the clerk's home, else the root.
std::string StartFolder() {
  const char* home = std::getenv("HOME");
  return home != nullptr && *home != '\0' ? std::string(home) : std::string("/");
}

}  // namespace

std::string PhotoExportFileName(int32_t customer_no, PhotoFormat format) {
  return "customer_" + std::to_string(customer_no) + "." + Extension(format);
}

void ExportPhotograph(frmCustomerDetail& screen) {
  std::shared_ptr<CCustomer> customer = screen.Customer();
  if (!customer || screen.CustomerNo() == 0) {
    screen.ui().MsgBox("Save the customer before exporting a photograph.", ui::vbInformation, kTitle);
    return;
  }
  customer->OpenPhotograph();
  std::shared_ptr<Photo> photo = customer->Photo();
  if (!photo || photo->IsEmpty()) {
    screen.ui().MsgBox("This customer has no photograph to export.", ui::vbInformation, kTitle);
    return;
  }
  auto chooser = std::make_shared<frmDirectory>();
  chooser->SetUi(screen.UiService());
  chooser->SetDBConnection(screen.DBConnection());
  chooser->SetErrorObject(screen.ErrorObject());
  chooser->SetAppServer(screen.AppServer());
  chooser->SetCustomerEngine(screen.CustomerEngine());
  chooser->SetStartPath(StartFolder());
  chooser->Show(ui::vbModal, &screen);
  const bool canceled = chooser->Canceled();
  const std::string folder = chooser->Path();
  chooser->Unload();
  if (canceled || folder.empty()) return;

  const std::string file =
      (std::filesystem::path(folder) / PhotoExportFileName(screen.CustomerNo(), photo->Format())).string();
  std::error_code ec;
  if (std::filesystem::exists(file, ec) &&
      screen.ui().MsgBox(file + " already exists.  Do you want to replace it?",
                         ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, kTitle) != ui::vbYes)
    return;
  if (!photo->SaveToFile(file)) {
    screen.ui().MsgBox("The photograph could not be written to " + file + ".", ui::vbExclamation, kTitle);
    return;
  }
  screen.ui().MsgBox("The photograph was exported to " + file + ".", ui::vbInformation, kTitle);
}

}  // namespace kiv

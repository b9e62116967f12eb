// Tools / Export Photograph over the scripted host: the customer's picture written into the
// folder picked in the folder chooser, asking before it replaces a file, and the messages
// when there is nothing to export.
#include "screens/detail/photo_export.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

namespace fs = std::filesystem;
using test::DetailRig;
using ui::ActionKind;

const std::string kPhotoSql =
    "SELECT customer_no, image_no, image_blob FROM kiv_images WHERE customer_no = 42 AND current_photo <> 0";

//! A PNG header for a 3 x 2 picture: all a picture needs to be known as one.
Bytes SmallPng() {
  const unsigned char b[] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0, 0, 0, 13, 'I', 'H', 'D', 'R',
                             0,    0,   0,   3,   0,    0,    0,    2,    8, 2, 0, 0,  0,  0,   0,   0,   0};
  return Bytes(std::begin(b), std::end(b));
}

Bytes FileBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

struct ExportRig : DetailRig {
  fs::path folder = fs::temp_directory_path() / ("kiv photo export ü " + std::to_string(::getpid()));

  explicit ExportRig(bool with_photo = true) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    if (with_photo)
      host.OnQuery(kPhotoSql).Columns({test::Col("customer_no", host::adInteger), test::Col("image_no", host::adInteger),
                                       test::LongCol("image_blob")})
          .Values({42, 1, SmallPng()});
    Person(42);
    Open();
    screen->export_photo = ExportPhotograph;
  }
  ~ExportRig() { fs::remove_all(folder); }

  //! Runs the menu command; the folder chooser, when shown, gets `typed` and OK (or Cancel
  //! when `typed` is empty).
  void Export(const std::string& typed) {
    ui->OnModal([typed](ui::Form& form) {
      if (typed.empty()) {
        form.Perform(ui::Action{ActionKind::Click, "cmdCancel", {}, {}, 0});
        return;
      }
      form.Perform(ui::Action{ActionKind::Paste, "txtPath", typed, {}, 0});
      form.Perform(ui::Action{ActionKind::Click, "cmdOk", {}, {}, 0});
    });
    Do(ActionKind::Click, "mnuToolsExportPhoto");
    ui->OnModal(nullptr);
  }
  fs::path Exported() const { return folder / "customer_42.png"; }
};

TEST(ExportPhotograph, WritesThePictureIntoTheChosenFolder) {
  ExportRig rig;
  rig.ui->Answer(ui::vbOK);
  rig.Export(rig.folder.string());
  EXPECT_EQ(rig.ui->ModalForms(), (std::vector<std::string>{"frmDirectory"}));
  EXPECT_EQ(FileBytes(rig.Exported()), SmallPng());
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "The photograph was exported to " + rig.Exported().string() + ".");
}

TEST(ExportPhotograph, AnExistingFileIsReplacedOnlyAfterYes) {
  ExportRig rig;
  std::ofstream(rig.Exported()) << "older";
  rig.ui->Answer(ui::vbNo);
  rig.Export(rig.folder.string());
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Export Photograph");
  EXPECT_EQ(FileBytes(rig.Exported()).size(), 5u);

  rig.ui->Answer(ui::vbYes).Answer(ui::vbOK);
  rig.Export(rig.folder.string());
  EXPECT_EQ(FileBytes(rig.Exported()), SmallPng());
}

TEST(ExportPhotograph, ACustomerWithoutPhotographOrNotSavedIsToldSo) {
  {
    ExportRig rig(false);
    rig.ui->Answer(ui::vbOK);
    rig.Export(rig.folder.string());
    ASSERT_EQ(rig.ui->Boxes().size(), 1u);
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, "This customer has no photograph to export.");
    EXPECT_TRUE(rig.ui->ModalForms().empty());
  }
  {
    DetailRig rig;
    rig.Person(0);
    rig.Open();
    rig.screen->export_photo = ExportPhotograph;
    rig.ui->Answer(ui::vbOK);
    rig.Do(ActionKind::Click, "mnuToolsExportPhoto");
    ASSERT_EQ(rig.ui->Boxes().size(), 1u);
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Save the customer before exporting a photograph.");
  }
}

}  // namespace
}  // namespace kiv

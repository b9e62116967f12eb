// The customer's photograph: the chunked copies between a long column and a disk file, storing
// a picture file as the current photo, and reading it back through a scratch file.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "records/c_customer.h"
#include "records/photo.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

namespace fs = std::filesystem;
using test::LongCol;
using test::RsOpKind;

//! A GIF whose header says 151 x 200, padded with trailing data to `total` bytes.
Bytes Gif(size_t total) {
  Bytes b = {'G', 'I', 'F', '8', '9', 'a', 151, 0, 200, 0};
  for (size_t i = b.size(); i < total; ++i) b.push_back(static_cast<uint8_t>(i * 7 % 251));
  return b;
}
Bytes ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}
void WriteFile(const fs::path& path, const Bytes& data) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data.data()),
                                              static_cast<std::streamsize>(data.size()));
}
//! The lengths of the chunks read from (GetChunk) or appended to (AppendChunk) a recordset.
std::vector<size_t> Chunks(const test::ScriptedRecordset& rs, RsOpKind kind) {
  std::vector<size_t> out;
  for (const test::RsOp& op : rs.Ops())
    if (op.kind == kind) out.push_back(kind == RsOpKind::GetChunk ? op.length : op.value.ToBytes().size());
  return out;
}

// Each test gets its own folder, which also serves as the temporary folder, so a scratch
// file the record leaves behind shows up there.
class CustomerPhoto : public ::testing::Test {
 protected:
  void SetUp() override {
    if (const char* old = std::getenv("TMPDIR")) old_tmpdir_ = old;
    // The process id keeps test programs run side by side apart (addresses repeat across them).
    dir_ = fs::temp_directory_path() /
           ("kiv_photo_" + std::to_string(getpid()) + "_" + std::to_string(reinterpret_cast<uintptr_t>(this)));
    fs::create_directories(dir_ / "tmp");
    setenv("TMPDIR", (dir_ / "tmp").c_str(), 1);
    customer_.SetCustomerNo(4711);
    customer_.SetDB(host_.db);
    customer_.SetUi(ui_);
  }
  void TearDown() override {
    if (old_tmpdir_)
      setenv("TMPDIR", old_tmpdir_->c_str(), 1);
    else
      unsetenv("TMPDIR");
    fs::remove_all(dir_);
  }
  std::shared_ptr<test::ScriptedRecordset> Blob(const Bytes& blob, int32_t type = host::adLongVarBinary) {
    return std::make_shared<test::ScriptedRecordset>(
        "blob", test::CursorKind::Updatable,
        std::vector<test::ResultSet>{test::ResultSet().Columns({LongCol("image_blob", type)}).Values({blob})});
  }

  test::ScriptedHost host_;
  std::shared_ptr<test::ScriptedUi> ui_ = std::make_shared<test::ScriptedUi>();
  CCustomer customer_;
  fs::path dir_;
  std::optional<std::string> old_tmpdir_;
};

TEST_F(CustomerPhoto, CopiesMoveTheShortChunkFirstThenTheFullOnes) {
  const std::vector<std::pair<size_t, std::vector<size_t>>> cases = {
      {2500, {452, 1024, 1024}}, {1024, {1024}}, {300, {300}}, {0, {}}};
  const fs::path file = dir_ / "photo.gif";
  for (const auto& [size, chunks] : cases) {
    SCOPED_TRACE(size);
    const Bytes data = Gif(size == 0 ? 10 : size);
    auto column = Blob(Bytes(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size)));
    WriteFile(file, Bytes(5000, 0xEE));  // an older, longer file is replaced
    ASSERT_TRUE(customer_.ColumnToFile(host_.errors, column->FieldByName("image_blob"), file.string()));
    EXPECT_EQ(Chunks(*column, RsOpKind::GetChunk), chunks);
    EXPECT_EQ(ReadFile(file), column->Cell(0, "image_blob").ToBytes());
  }

  // Into a column: an empty chunk clears it first; text columns take text, other columns the whole file.
  WriteFile(file, Gif(2500));
  for (int32_t type : {host::adLongVarBinary, host::adLongVarChar, host::adVarBinary}) {
    SCOPED_TRACE(type);
    auto column = Blob({}, type);
    EXPECT_EQ(customer_.FileToColumn(host_.errors, column->FieldByName("image_blob"), file.string()), 2500);
    EXPECT_EQ(Chunks(*column, RsOpKind::AppendChunk),
              (type == host::adVarBinary ? std::vector<size_t>{} : std::vector<size_t>{0, 452, 1024, 1024}));
    EXPECT_EQ(column->Cell(0, "image_blob").Type(), type == host::adLongVarChar ? VarType::String : VarType::Bytes);
    EXPECT_EQ(column->Cell(0, "image_blob").ToBytes(), Gif(2500));
  }
  EXPECT_TRUE(ui_->Boxes().empty());
}

TEST_F(CustomerPhoto, LoadPhotoFileWritesTheImageRowOnlyWhenTheFileHasBytes) {
  const std::string sql = "SELECT customer_no, image_no, image_path, image_type, current_photo, image_blob FROM "
                          "kiv_images WHERE customer_no = 4711";
  host_.OnQuery(sql).Columns({test::Col("customer_no", host::adInteger), test::Col("image_no", host::adInteger),
                              test::Col("image_path"), test::Col("image_type"),
                              test::Col("current_photo", host::adBoolean), LongCol("image_blob")});
  const fs::path file = dir_ / "face.gif";
  WriteFile(file, Gif(1500));
  EXPECT_TRUE(customer_.LoadPhotoFile(host_.db, file.string()));
  const std::vector<std::string> expected = {
      "AddNew", "Set customer_no=4711", "Set image_no=1", "AppendChunk image_blob <0 bytes>",
      "AppendChunk image_blob <476 bytes>", "AppendChunk image_blob <1024 bytes>",
      "Set image_path=\"" + file.string() + "\"", "Set current_photo=True", "Set image_type=\"Photo\"", "Update",
      "Close"};
  EXPECT_EQ(host_.db->RecordsetFor(sql)->OpsText(), expected);

  // An empty or missing file shows the message and leaves no row half-written.
  WriteFile(dir_ / "empty.gif", {});
  for (const fs::path& bad : {dir_ / "empty.gif", dir_ / "missing.gif"}) {
    ui_->Answer(ui::vbOK);
    EXPECT_FALSE(customer_.LoadPhotoFile(host_.db, bad.string()));
    auto rs = host_.db->RecordsetFor(sql);
    EXPECT_EQ(rs->OpsText(), (std::vector<std::string>{"AddNew", "Set customer_no=4711", "Set image_no=1", "Close"}));
    EXPECT_EQ(ui_->Boxes().back().prompt, bad.string() + " empty file or not found.");
    EXPECT_EQ(ui_->Boxes().back().style, ui::vbOKOnly);
  }
  EXPECT_FALSE(fs::exists(dir_ / "missing.gif"));
}

TEST_F(CustomerPhoto, OpenPhotographReadsTheCurrentPhotoOnceAndAlwaysRemovesItsScratchFile) {
  const std::string sql = "SELECT customer_no, image_no, image_blob FROM kiv_images WHERE customer_no = 4711 AND "
                          "current_photo <> 0";
  // No current photo, then bytes that are no picture: nothing loaded, and each call reads again.
  EXPECT_FALSE(customer_.OpenPhotograph());
  ASSERT_NE(customer_.Photo(), nullptr);
  EXPECT_TRUE(customer_.Photo()->IsEmpty());
  host_.OnQuery(sql).Once().Columns({LongCol("image_blob")}).Values({Bytes(1500, 0x42)});
  EXPECT_FALSE(customer_.OpenPhotograph());
  EXPECT_TRUE(fs::is_empty(dir_ / "tmp"));

  host_.OnQuery(sql).Columns({LongCol("image_blob")}).Values({Gif(2500)});
  EXPECT_TRUE(customer_.OpenPhotograph());
  EXPECT_EQ(Chunks(*host_.db->RecordsetFor(sql), RsOpKind::GetChunk), (std::vector<size_t>{452, 1024, 1024}));
  EXPECT_EQ(customer_.Photo()->Data(), Gif(2500));
  EXPECT_EQ(customer_.Photo()->Height(), 200);
  EXPECT_TRUE(fs::is_empty(dir_ / "tmp"));
  EXPECT_TRUE(customer_.OpenPhotograph());
  EXPECT_EQ(host_.SqlTexts(), (std::vector<std::string>{sql, sql, sql}));
  EXPECT_EQ(host_.Log()[0].kind, test::CallKind::OpenReadOnly);
  EXPECT_EQ(host_.db->OpenRecordsetCount(), 0u);

  CCustomer unsaved;  // customer number 0: nothing is asked
  unsaved.SetDB(host_.db);
  EXPECT_FALSE(unsaved.OpenPhotograph());
  EXPECT_EQ(host_.SqlTexts().size(), 3u);
}

}  // namespace
}  // namespace kiv

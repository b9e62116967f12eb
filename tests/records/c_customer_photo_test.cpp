// The customer's photograph: the chunked copies between a long column and a disk file, storing
// a picture file as the current photo, and reading it back through a scratch file.
#include <gtest/gtest.h>

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
using test::CursorKind;
using test::LongCol;
using test::RsOpKind;

Bytes Pattern(size_t n) {
  Bytes b(n);
  for (size_t i = 0; i < n; ++i) b[i] = static_cast<uint8_t>((i * 7 + 3) % 251);
  return b;
}

//! A GIF whose header says w x h, padded with trailing data to `total` bytes.
Bytes GifOf(uint16_t w, uint16_t h, size_t total) {
  Bytes b = {'G', 'I', 'F', '8', '9', 'a', static_cast<uint8_t>(w), static_cast<uint8_t>(w >> 8),
             static_cast<uint8_t>(h), static_cast<uint8_t>(h >> 8)};
  const Bytes tail = Pattern(total - b.size());
  b.insert(b.end(), tail.begin(), tail.end());
  return b;
}

Bytes ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteFile(const fs::path& path, const Bytes& data) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
}

//! The chunk lengths a recordset was asked for, in order.
std::vector<int32_t> ChunkReads(const test::ScriptedRecordset& rs) {
  std::vector<int32_t> out;
  for (const test::RsOp& op : rs.Ops())
    if (op.kind == RsOpKind::GetChunk) out.push_back(op.length);
  return out;
}

//! The sizes of the chunks appended, in order (text chunks by their length).
std::vector<size_t> ChunkWrites(const test::ScriptedRecordset& rs) {
  std::vector<size_t> out;
  for (const test::RsOp& op : rs.Ops())
    if (op.kind == RsOpKind::AppendChunk) out.push_back(op.value.ToBytes().size());
  return out;
}

bool Has(const test::ScriptedRecordset& rs, RsOpKind kind) {
  for (const test::RsOp& op : rs.Ops())
    if (op.kind == kind) return true;
  return false;
}

// Each test works in its own scratch folder, which also serves as the system's temporary
// folder so that a scratch file left behind by the record shows up there.
class CustomerPhoto : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* old = std::getenv("TMPDIR");
    old_tmpdir_ = old ? std::optional<std::string>(old) : std::nullopt;
    dir_ = fs::temp_directory_path() /
           ("kiv_photo_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(dir_);
    fs::create_directories(dir_ / "tmp");
    setenv("TMPDIR", (dir_ / "tmp").c_str(), 1);
    customer_.SetCustomerNo(4711);
    customer_.SetDB(host_.db);
    customer_.SetErrorObject(host_.errors);
    customer_.SetUi(ui_);
  }
  void TearDown() override {
    if (old_tmpdir_)
      setenv("TMPDIR", old_tmpdir_->c_str(), 1);
    else
      unsetenv("TMPDIR");
    fs::remove_all(dir_);
  }
  //! A one-row recordset with a long column holding `blob`, read the way the record reads it.
  std::shared_ptr<test::ScriptedRecordset> BlobRecordset(const Bytes& blob, int32_t type = host::adLongVarBinary) {
    return std::make_shared<test::ScriptedRecordset>(
        "blob", CursorKind::Updatable,
        std::vector<test::ResultSet>{test::ResultSet().Columns({LongCol("image_blob", type)}).Values({blob})});
  }
  bool TmpIsEmpty() const { return fs::is_empty(dir_ / "tmp"); }

  test::ScriptedHost host_;
  std::shared_ptr<test::ScriptedUi> ui_ = std::make_shared<test::ScriptedUi>();
  CCustomer customer_;
  fs::path dir_;
  std::optional<std::string> old_tmpdir_;
};

TEST_F(CustomerPhoto, ColumnToFileWritesTheShortChunkFirstThenTheFullOnes) {
  struct Case {
    size_t size;
    std::vector<int32_t> reads;
  };
  const std::vector<Case> cases = {
      {2500, {452, 1024, 1024}}, {1024, {1024}}, {1025, {1, 1024}}, {300, {300}}, {0, {}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.size);
    const Bytes blob = Pattern(c.size);
    auto rs = BlobRecordset(blob);
    const fs::path file = dir_ / "out.bin";
    WriteFile(file, Bytes(5000, 0xEE));  // an older, longer file is replaced, not overwritten in place
    ASSERT_TRUE(customer_.ColumnToFile(host_.errors, rs->FieldByName("image_blob"), file.string()));
    EXPECT_EQ(ChunkReads(*rs), c.reads);
    EXPECT_EQ(ReadFile(file), blob);
  }

  // A column that is not long is written whole, without chunks.
  auto plain = std::make_shared<test::ScriptedRecordset>(
      "plain", CursorKind::ReadOnly,
      std::vector<test::ResultSet>{test::ResultSet().Columns({test::Col("image_blob", host::adVarBinary)}).Values(
          {Pattern(40)})});
  ASSERT_TRUE(customer_.ColumnToFile(host_.errors, plain->FieldByName("image_blob"), (dir_ / "p.bin").string()));
  EXPECT_TRUE(ChunkReads(*plain).empty());
  EXPECT_EQ(ReadFile(dir_ / "p.bin"), Pattern(40));

  auto blob = BlobRecordset(Pattern(10));
  EXPECT_FALSE(customer_.ColumnToFile(host_.errors, blob->FieldByName("image_blob"),
                                      (dir_ / "no_such_folder" / "x.bin").string()));
  EXPECT_TRUE(ui_->Boxes().empty());
}

TEST_F(CustomerPhoto, FileToColumnCopiesByTheColumnsType) {
  const fs::path file = dir_ / "in.bin";
  const Bytes data = Pattern(2500);
  WriteFile(file, data);

  auto binary = BlobRecordset({});
  EXPECT_EQ(customer_.FileToColumn(host_.errors, binary->FieldByName("image_blob"), file.string()), 2500);
  EXPECT_EQ(ChunkWrites(*binary), (std::vector<size_t>{0, 452, 1024, 1024}));
  EXPECT_EQ(binary->Cell(0, "image_blob").ToBytes(), data);
  EXPECT_EQ(binary->Cell(0, "image_blob").Type(), VarType::Bytes);

  auto text = BlobRecordset({}, host::adLongVarChar);
  EXPECT_EQ(customer_.FileToColumn(host_.errors, text->FieldByName("image_blob"), file.string()), 2500);
  EXPECT_EQ(ChunkWrites(*text), (std::vector<size_t>{0, 452, 1024, 1024}));
  EXPECT_EQ(text->Cell(0, "image_blob").Type(), VarType::String);
  EXPECT_EQ(text->Cell(0, "image_blob").ToBytes(), data);

  auto other = std::make_shared<test::ScriptedRecordset>(
      "other", CursorKind::Updatable,
      std::vector<test::ResultSet>{test::ResultSet().Columns({test::Col("image_blob", host::adVarBinary)}).Values(
          {Variant::Null()})});
  EXPECT_EQ(customer_.FileToColumn(host_.errors, other->FieldByName("image_blob"), file.string()), 2500);
  EXPECT_TRUE(ChunkWrites(*other).empty());
  EXPECT_EQ(other->Cell(0, "image_blob").ToBytes(), data);
  EXPECT_TRUE(ui_->Boxes().empty());
}

TEST_F(CustomerPhoto, AnEmptyOrMissingFileShowsTheMessageAndTouchesNoColumn) {
  const fs::path empty = dir_ / "empty.jpg";
  WriteFile(empty, {});
  const fs::path missing = dir_ / "missing.jpg";
  for (const fs::path& file : {empty, missing}) {
    SCOPED_TRACE(file.string());
    ui_->ClearBoxes();
    ui_->Answer(ui::vbOK);
    auto rs = BlobRecordset(Pattern(3));
    EXPECT_EQ(customer_.FileToColumn(host_.errors, rs->FieldByName("image_blob"), file.string()), 0);
    EXPECT_TRUE(rs->Ops().empty());
    ASSERT_EQ(ui_->Boxes().size(), 1u);
    EXPECT_EQ(ui_->Boxes()[0].prompt, file.string() + " empty file or not found.");
    EXPECT_EQ(ui_->Boxes()[0].style, ui::vbOKOnly);
  }
  EXPECT_FALSE(fs::exists(missing)) << "looking at a missing file must not create it";
}

TEST_F(CustomerPhoto, LoadPhotoFileAddsOrOverwritesTheImageRowOnlyWithBytes) {
  const std::string sql =
      "SELECT customer_no, image_no, image_path, image_type, current_photo, image_blob FROM kiv_images WHERE "
      "customer_no = 4711";
  const fs::path file = dir_ / "face.gif";
  WriteFile(file, GifOf(151, 200, 1500));

  const std::vector<test::ColumnSpec> columns = {
      test::Col("customer_no", host::adInteger), test::Col("image_no", host::adInteger), test::Col("image_path"),
      test::Col("image_type"), test::Col("current_photo", host::adBoolean), LongCol("image_blob")};
  host_.OnQuery(sql).Once().Columns(columns);
  // No row yet: one is added with its key and image number 1.
  EXPECT_TRUE(customer_.LoadPhotoFile(host_.db, file.string()));
  auto added = host_.db->RecordsetFor(sql);
  ASSERT_NE(added, nullptr);
  EXPECT_EQ(added->Cursor(), CursorKind::Updatable);
  const std::vector<std::string> expected = {"AddNew",
                                             "Set customer_no=4711",
                                             "Set image_no=1",
                                             "AppendChunk image_blob <0 bytes>",
                                             "AppendChunk image_blob <476 bytes>",
                                             "AppendChunk image_blob <1024 bytes>",
                                             "Set image_path=\"" + file.string() + "\"",
                                             "Set current_photo=True",
                                             "Set image_type=\"Photo\"",
                                             "Update",
                                             "Close"};
  EXPECT_EQ(added->OpsText(), expected);

  // A stored row is overwritten in place.
  host_.OnQuery(sql).Columns(columns).Values({4711, 1, "old.gif", "Photo", true, Pattern(10)});
  EXPECT_TRUE(customer_.LoadPhotoFile(host_.db, file.string()));
  auto existing = host_.db->RecordsetFor(sql);
  EXPECT_FALSE(Has(*existing, RsOpKind::AddNew));
  EXPECT_TRUE(Has(*existing, RsOpKind::Update));
  EXPECT_EQ(existing->Cell(0, "image_blob").ToBytes(), ReadFile(file));
  EXPECT_TRUE(ui_->Boxes().empty());

  // An empty file writes nothing, and neither does a missing connection.
  const fs::path empty = dir_ / "empty.gif";
  WriteFile(empty, {});
  ui_->Answer(ui::vbOK);
  EXPECT_FALSE(customer_.LoadPhotoFile(host_.db, empty.string()));
  auto refused = host_.db->RecordsetFor(sql);
  EXPECT_FALSE(Has(*refused, RsOpKind::Update));
  EXPECT_TRUE(refused->WasClosed());
  EXPECT_EQ(ui_->Boxes().size(), 1u);
  EXPECT_FALSE(customer_.LoadPhotoFile(nullptr, file.string()));
  EXPECT_EQ(host_.db->OpenRecordsetCount(), 0u);
}

TEST_F(CustomerPhoto, OpenPhotographReadsTheCurrentPhotoOnceAndRemovesItsScratchFile) {
  const std::string sql = "SELECT customer_no, image_no, image_blob FROM kiv_images WHERE customer_no = 4711 AND "
                          "current_photo <> 0";
  // No current photo: nothing loaded, an empty picture, and the next call asks again.
  EXPECT_FALSE(customer_.OpenPhotograph());
  ASSERT_NE(customer_.Photo(), nullptr);
  EXPECT_TRUE(customer_.Photo()->IsEmpty());
  EXPECT_FALSE(customer_.OpenPhotograph());
  ASSERT_EQ(host_.SqlTexts(), (std::vector<std::string>{sql, sql}));
  EXPECT_EQ(host_.Log()[0].kind, test::CallKind::OpenReadOnly);

  // A stored photo is copied out through a scratch file, read as a picture, and the file is gone.
  const Bytes gif = GifOf(151, 200, 2500);
  host_.OnQuery(sql).Columns({test::Col("customer_no", host::adInteger), test::Col("image_no", host::adInteger),
                              LongCol("image_blob")})
      .Values({4711, 1, gif});
  EXPECT_TRUE(customer_.OpenPhotograph());
  EXPECT_TRUE(customer_.PhotoLoaded());
  EXPECT_EQ(ChunkReads(*host_.db->RecordsetFor(sql)), (std::vector<int32_t>{452, 1024, 1024}));
  EXPECT_EQ(customer_.Photo()->Data(), gif);
  EXPECT_EQ(customer_.Photo()->Width(), 151);
  EXPECT_EQ(customer_.Photo()->Height(), 200);
  EXPECT_TRUE(TmpIsEmpty());

  // Loaded once: a further call does not read again.
  const size_t calls = host_.Log().size();
  EXPECT_TRUE(customer_.OpenPhotograph());
  EXPECT_EQ(host_.Log().size(), calls);
  EXPECT_EQ(host_.db->OpenRecordsetCount(), 0u);
}

TEST_F(CustomerPhoto, OpenPhotographOfDamagedBytesOrAnUnstoredRecordLoadsNothing) {
  host_.OnQueryContaining("FROM kiv_images").Columns({LongCol("image_blob")}).Values({Pattern(1500)});
  EXPECT_FALSE(customer_.OpenPhotograph());
  EXPECT_TRUE(customer_.Photo()->IsEmpty());
  EXPECT_TRUE(TmpIsEmpty()) << "the scratch file goes even when the bytes are no picture";

  host_.db->ClearLog();
  host_.db->FailNext(test::CallKind::OpenReadOnly);
  EXPECT_FALSE(customer_.OpenPhotograph());
  host_.db->ThrowNext(test::CallKind::OpenReadOnly, 3704, "Operation is not allowed when the object is closed");
  EXPECT_FALSE(customer_.OpenPhotograph());
  EXPECT_EQ(host_.db->CountOf(test::CallKind::OpenReadOnly), 2u);
  EXPECT_TRUE(TmpIsEmpty());

  CCustomer unsaved;  // customer number 0
  unsaved.SetDB(host_.db);
  CCustomer fresh;
  fresh.SetCustomerNo(12);
  fresh.SetIsNewCustomer(true);
  fresh.SetDB(host_.db);
  CCustomer offline;
  offline.SetCustomerNo(12);
  host_.db->ClearLog();
  EXPECT_FALSE(unsaved.OpenPhotograph());
  EXPECT_FALSE(fresh.OpenPhotograph());
  EXPECT_FALSE(offline.OpenPhotograph());
  EXPECT_TRUE(host_.Log().empty());
}

}  // namespace
}  // namespace kiv

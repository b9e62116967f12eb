// The demo's generated portraits: readable pictures on the persons chosen, each flagged.
#include "refhost/demo_data_photos.h"

#include <gtest/gtest.h>

#include "records/photo.h"
#include "refhost/demo_data.h"
#include "refhost/ref_host.h"
#include "temp_database.h"

namespace kiv::refhost {
namespace {

TEST(DemoPhotos, EveryFortiethPersonHasAReadableCurrentPortraitAndTheImageFlag) {
  const std::string path = testing::TempPath("photos");
  auto host = RefHost::Open(path);
  auto db_ = host->Database();
  DemoOptions demo;
  demo.customers = 200;
  demo.seed = 7;
  BuildDemoData(db_->Handle(), demo);
  const int64_t chosen = NzLong(db_->QueryValue(
      "SELECT COUNT(*) FROM kiv_customer WHERE customer_type = 'P' AND customer_no % 40 = 7"));
  ASSERT_GT(chosen, 0);
  EXPECT_EQ(NzLong(db_->QueryValue("SELECT COUNT(*) FROM kiv_images WHERE current_photo = 1")), chosen);
  EXPECT_EQ(NzLong(db_->QueryValue("SELECT COUNT(*) FROM kiv_customer WHERE has_image = 1")), chosen)
      << "the flag the search grid shows follows the pictures";
  for (const auto& row : db_->QueryRows("SELECT image_blob FROM kiv_images")) {
    const std::string bytes = row[0].ToString();
    auto photo = Photo::FromBytes(Bytes(bytes.begin(), bytes.end()));
    ASSERT_TRUE(photo.has_value());
    EXPECT_EQ(photo->Format(), PhotoFormat::Bmp);
  }
  db_.reset();
  host.reset();
  testing::RemoveDatabaseFiles(path);
}

TEST(DemoPortrait, RowsArePaddedToFourBytesAndTheSizeFieldsAgree) {
  for (int width : {1, 2, 3, 60}) {
    const std::string bmp = DemoPortraitBmp(width, 5, 42);
    const size_t row = static_cast<size_t>((width * 3 + 3) / 4 * 4);
    ASSERT_EQ(bmp.size(), 54 + row * 5) << width;
    const auto le32 = [&bmp](size_t at) {
      return static_cast<uint32_t>(static_cast<unsigned char>(bmp[at])) |
             static_cast<uint32_t>(static_cast<unsigned char>(bmp[at + 1])) << 8 |
             static_cast<uint32_t>(static_cast<unsigned char>(bmp[at + 2])) << 16 |
             static_cast<uint32_t>(static_cast<unsigned char>(bmp[at + 3])) << 24;
    };
    EXPECT_EQ(le32(2), bmp.size());
    EXPECT_EQ(le32(18), static_cast<uint32_t>(width));
    EXPECT_EQ(le32(34), row * 5);
  }
}

}  // namespace
}  // namespace kiv::refhost

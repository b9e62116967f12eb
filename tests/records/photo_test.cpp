// The photograph's header reading: sizes of the four kinds, refusal of what is not a
// picture, and no read past the end of damaged or cut-off bytes.
#include "records/photo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace kiv {
namespace {

void PutBe(Bytes& b, uint32_t v, int n) {
  for (int i = n - 1; i >= 0; --i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
void PutLe(Bytes& b, uint32_t v, int n) {
  for (int i = 0; i < n; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}

Bytes Png(uint32_t w, uint32_t h) {
  Bytes b = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
  PutBe(b, 13, 4);
  b.insert(b.end(), {'I', 'H', 'D', 'R'});
  PutBe(b, w, 4);
  PutBe(b, h, 4);
  b.insert(b.end(), {8, 2, 0, 0, 0, 0, 0, 0, 0});  // depth, colour, ..., CRC
  return b;
}

Bytes Gif(uint16_t w, uint16_t h) {
  Bytes b = {'G', 'I', 'F', '8', '9', 'a'};
  PutLe(b, w, 2);
  PutLe(b, h, 2);
  b.insert(b.end(), {0, 0, 0, ';'});
  return b;
}

Bytes Bmp(int32_t w, int32_t h, uint32_t header_size = 40) {
  Bytes b = {'B', 'M'};
  PutLe(b, 0, 4);
  PutLe(b, 0, 4);
  PutLe(b, 54, 4);
  PutLe(b, header_size, 4);
  if (header_size == 12) {
    PutLe(b, static_cast<uint32_t>(w), 2);
    PutLe(b, static_cast<uint32_t>(h), 2);
  } else {
    PutLe(b, static_cast<uint32_t>(w), 4);
    PutLe(b, static_cast<uint32_t>(h), 4);
  }
  b.insert(b.end(), 16, 0);
  return b;
}

void Segment(Bytes& b, uint8_t marker, const Bytes& body) {
  b.push_back(0xFF);
  b.push_back(marker);
  PutBe(b, static_cast<uint32_t>(body.size() + 2), 2);
  b.insert(b.end(), body.begin(), body.end());
}

//! A JPEG with an APP0 and a Huffman table before the frame header (`sof` = C0 or C2).
Bytes Jpeg(uint16_t w, uint16_t h, uint8_t sof = 0xC0) {
  Bytes b = {0xFF, 0xD8};
  Segment(b, 0xE0, {'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0});
  Segment(b, 0xC4, Bytes(20, 0x11));  // inside the SOF range, but not a frame header
  Bytes frame = {8};
  PutBe(frame, h, 2);
  PutBe(frame, w, 2);
  frame.insert(frame.end(), {1, 1, 0x11, 0});
  Segment(b, sof, frame);
  Segment(b, 0xDA, {1, 1, 0, 0, 63, 0});
  b.insert(b.end(), {0x12, 0x34, 0xFF, 0xD9});
  return b;
}

struct SizeCase {
  const char* name;
  Bytes bytes;
  PhotoFormat format;
  int32_t width, height;
};

TEST(Photo, ReadsThePixelSizeOfEachKindFromItsHeader) {
  const std::vector<SizeCase> cases = {
      {"png", Png(640, 480), PhotoFormat::Png, 640, 480},
      {"gif", Gif(320, 200), PhotoFormat::Gif, 320, 200},
      {"bmp", Bmp(151, 200), PhotoFormat::Bmp, 151, 200},
      {"bmp top-down", Bmp(151, -200), PhotoFormat::Bmp, 151, 200},
      {"bmp core header", Bmp(33, 44, 12), PhotoFormat::Bmp, 33, 44},
      {"jpeg baseline", Jpeg(1024, 768), PhotoFormat::Jpeg, 1024, 768},
      {"jpeg progressive", Jpeg(300, 400, 0xC2), PhotoFormat::Jpeg, 300, 400},
  };
  for (const SizeCase& c : cases) {
    SCOPED_TRACE(c.name);
    const std::optional<Photo> photo = Photo::FromBytes(c.bytes);
    ASSERT_TRUE(photo.has_value());
    EXPECT_EQ(photo->Format(), c.format);
    EXPECT_EQ(photo->Width(), c.width);
    EXPECT_EQ(photo->Height(), c.height);
    EXPECT_EQ(photo->Data(), c.bytes);
    EXPECT_FALSE(photo->IsEmpty());
  }
}

TEST(Photo, RefusesBytesThatAreNotAPictureWithASize) {
  Bytes no_ihdr = Png(10, 10);
  no_ihdr[12] = 'X';
  Bytes scan_before_frame = {0xFF, 0xD8};
  Segment(scan_before_frame, 0xDA, {1, 1, 0, 0, 63, 0});
  Bytes bad_marker = {0xFF, 0xD8, 0x00, 0xC0};
  const std::vector<std::pair<const char*, Bytes>> cases = {
      {"nothing", {}},
      {"text", Bytes{'h', 'e', 'l', 'l', 'o', ' ', 'w', 'o', 'r', 'l', 'd'}},
      {"png without IHDR first", no_ihdr},
      {"png of width 0", Png(0, 10)},
      {"png wider than a Long", Png(0x80000000u, 10)},
      {"gif of height 0", Gif(10, 0)},
      {"bmp with an unknown header", Bmp(10, 10, 20)},
      {"jpeg scan before any frame", scan_before_frame},
      {"jpeg without a marker", bad_marker},
      {"jpeg start only", Bytes{0xFF, 0xD8}},
  };
  for (const auto& [name, bytes] : cases) {
    SCOPED_TRACE(name);
    EXPECT_FALSE(Photo::FromBytes(bytes).has_value());
  }
  const Photo empty;
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(empty.Width(), 0);
  EXPECT_EQ(Photo::FormatName(empty.Format()), "");
}

// Every cut-off prefix and a few thousand random corruptions of valid pictures: whatever
// comes back must describe a real size, and the sanitizer build catches any stray read.
TEST(Photo, DamagedOrCutOffBytesAreRefusedWithoutReadingPastTheEnd) {
  const std::vector<Bytes> pictures = {Png(64, 48), Gif(64, 48), Bmp(64, 48), Bmp(64, 48, 12), Jpeg(64, 48)};
  for (const Bytes& picture : pictures) {
    for (size_t n = 0; n < picture.size(); ++n) {
      const Bytes prefix(picture.begin(), picture.begin() + static_cast<std::ptrdiff_t>(n));
      const std::optional<Photo> photo = Photo::FromBytes(prefix);
      if (photo) {
        EXPECT_EQ(photo->Width(), 64) << "prefix of " << n << " bytes";
      }
    }
  }
  std::mt19937 random(20260325);
  for (int round = 0; round < 4000; ++round) {
    Bytes bytes = pictures[static_cast<size_t>(round) % pictures.size()];
    const int flips = 1 + static_cast<int>(random() % 6);
    for (int i = 0; i < flips; ++i) bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
    bytes.resize(random() % (bytes.size() + 1));
    const std::optional<Photo> photo = Photo::FromBytes(bytes);
    if (!photo) continue;
    EXPECT_GT(photo->Width(), 0);
    EXPECT_GT(photo->Height(), 0);
    EXPECT_EQ(photo->Data(), bytes);
  }
}

TEST(Photo, RoundTripsThroughAFileAndRefusesAMissingOne) {
  const std::filesystem::path dir = std::filesystem::temp_directory_path() / "kiv_photo_test";
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "face.gif").string();
  const std::optional<Photo> original = Photo::FromBytes(Gif(12, 34));
  ASSERT_TRUE(original.has_value());
  ASSERT_TRUE(original->SaveToFile(path));
  const std::optional<Photo> back = Photo::FromFile(path);
  ASSERT_TRUE(back.has_value());
  EXPECT_EQ(back->Data(), original->Data());
  EXPECT_EQ(back->Height(), 34);

  EXPECT_FALSE(Photo().SaveToFile((dir / "empty.gif").string()));
  EXPECT_FALSE(std::filesystem::exists(dir / "empty.gif"));
  EXPECT_FALSE(Photo::FromFile((dir / "missing.png").string()).has_value());
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace kiv

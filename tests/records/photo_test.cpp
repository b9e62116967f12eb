// The photograph's header reading: sizes of the four kinds, refusal of what is not a
// picture, and no read past the end of damaged or cut-off bytes.
#include "records/photo.h"

#include <gtest/gtest.h>

#include <random>

namespace kiv {
namespace {

void Put(Bytes& b, uint32_t v, int n, bool big_endian) {
  for (int i = 0; i < n; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * (big_endian ? n - 1 - i : i))));
}

Bytes Png(uint32_t w, uint32_t h) {
  Bytes b = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A, 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  Put(b, w, 4, true);
  Put(b, h, 4, true);
  return b;
}
Bytes Gif(uint16_t w, uint16_t h) {
  Bytes b = {'G', 'I', 'F', '8', '9', 'a'};
  Put(b, w, 2, false);
  Put(b, h, 2, false);
  return b;
}
Bytes Bmp(int32_t w, int32_t h, uint32_t header_size = 40) {
  Bytes b = {'B', 'M'};
  b.resize(14, 0);
  Put(b, header_size, 4, false);
  const int n = header_size == 12 ? 2 : 4;
  Put(b, static_cast<uint32_t>(w), n, false);
  Put(b, static_cast<uint32_t>(h), n, false);
  return b;
}
//! A JPEG with an APP0 segment and a Huffman table (C4: in the frame range, not a frame) first.
Bytes Jpeg(uint16_t w, uint16_t h, uint8_t sof = 0xC0) {
  Bytes b = {0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 'J', 'F', 0xFF, 0xC4, 0, 3, 0x11, 0xFF, sof, 0, 11, 8};
  Put(b, h, 2, true);
  Put(b, w, 2, true);
  b.insert(b.end(), {1, 1, 0x11, 0, 0xFF, 0xD9});
  return b;
}

TEST(Photo, ReadsThePixelSizeOfEachKindFromItsHeader) {
  const std::vector<std::tuple<const char*, Bytes, PhotoFormat, int32_t, int32_t>> cases = {
      {"png", Png(640, 480), PhotoFormat::Png, 640, 480},
      {"gif", Gif(320, 200), PhotoFormat::Gif, 320, 200},
      {"bmp", Bmp(151, 200), PhotoFormat::Bmp, 151, 200},
      {"bmp top-down", Bmp(151, -200), PhotoFormat::Bmp, 151, 200},
      {"jpeg baseline", Jpeg(1024, 768), PhotoFormat::Jpeg, 1024, 768},
      {"jpeg progressive", Jpeg(300, 400, 0xC2), PhotoFormat::Jpeg, 300, 400},
  };
  for (const auto& [name, bytes, format, width, height] : cases) {
    SCOPED_TRACE(name);
    const std::optional<Photo> photo = Photo::FromBytes(bytes);
    ASSERT_TRUE(photo.has_value());
    EXPECT_EQ(photo->Format(), format);
    EXPECT_EQ(photo->Width(), width);
    EXPECT_EQ(photo->Height(), height);
    EXPECT_EQ(photo->Data(), bytes);
  }
}

TEST(Photo, RefusesWhatIsNotAPictureAndNeverReadsPastTheEnd) {
  Bytes no_ihdr = Png(10, 10);
  no_ihdr[12] = 'X';
  const std::vector<std::pair<const char*, Bytes>> refused = {
      {"nothing", {}},
      {"png without IHDR first", no_ihdr},
      {"png wider than a Long", Png(0x80000000u, 10)},
      {"gif of height 0", Gif(10, 0)},
      {"bmp with an unknown header", Bmp(10, 10, 20)},
      {"jpeg scan before any frame", Bytes{0xFF, 0xD8, 0xFF, 0xDA, 0, 2, 0xFF, 0xD9}},
  };
  for (const auto& [name, bytes] : refused) EXPECT_FALSE(Photo::FromBytes(bytes).has_value()) << name;

  // Every cut-off prefix and random corruptions of valid pictures: whatever comes back must
  // describe a real size; the sanitizer build catches any stray read.
  const std::vector<Bytes> pictures = {Png(64, 48), Gif(64, 48), Bmp(64, 48), Bmp(64, 48, 12), Jpeg(64, 48)};
  for (const Bytes& picture : pictures) {
    for (size_t n = 0; n < picture.size(); ++n) {
      const std::optional<Photo> cut = Photo::FromBytes(Bytes(picture.begin(), picture.begin() + n));
      if (cut) {  // only a JPEG cut after its frame header
        EXPECT_EQ(cut->Width(), 64) << n;
      }
    }
  }
  std::mt19937 random(20260325);
  for (int round = 0; round < 4000; ++round) {
    Bytes bytes = pictures[static_cast<size_t>(round) % pictures.size()];
    for (int i = 1 + static_cast<int>(random() % 6); i > 0; --i)
      bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
    bytes.resize(random() % (bytes.size() + 1));
    const std::optional<Photo> photo = Photo::FromBytes(bytes);
    if (!photo) continue;
    EXPECT_GT(photo->Width(), 0);
    EXPECT_GT(photo->Height(), 0);
  }
  EXPECT_TRUE(Photo().IsEmpty());
}

}  // namespace
}  // namespace kiv

// Reads the pixel size straight from an image file's header. Every read is bounds-checked:
// a capture that was cut off or a column that holds something else must be refused,
// never read past its end.
#include "records/photo.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>

namespace kiv {

namespace {

struct Size {
  int64_t width = 0;
  int64_t height = 0;
};

uint32_t Be16(const Bytes& d, size_t at) { return (uint32_t{d[at]} << 8) | d[at + 1]; }
uint32_t Be32(const Bytes& d, size_t at) { return (Be16(d, at) << 16) | Be16(d, at + 2); }
uint32_t Le16(const Bytes& d, size_t at) { return (uint32_t{d[at + 1]} << 8) | d[at]; }
uint32_t Le32(const Bytes& d, size_t at) { return (Le16(d, at + 2) << 16) | Le16(d, at); }

bool StartsWith(const Bytes& d, std::initializer_list<uint8_t> prefix) {
  if (d.size() < prefix.size()) return false;
  size_t i = 0;
  for (uint8_t b : prefix) {
    if (d[i++] != b) return false;
  }
  return true;
}

std::optional<Size> PngSize(const Bytes& d) {
  // Signature, then the IHDR chunk must come first: length, "IHDR", width, height.
  if (d.size() < 24) return std::nullopt;
  if (!(d[12] == 'I' && d[13] == 'H' && d[14] == 'D' && d[15] == 'R')) return std::nullopt;
  return Size{Be32(d, 16), Be32(d, 20)};
}

std::optional<Size> GifSize(const Bytes& d) {
  if (d.size() < 10) return std::nullopt;
  return Size{Le16(d, 6), Le16(d, 8)};
}

std::optional<Size> BmpSize(const Bytes& d) {
  if (d.size() < 18) return std::nullopt;
  const uint32_t header_size = Le32(d, 14);
  if (header_size == 12) {  // the old OS/2 core header keeps 16-bit sizes
    if (d.size() < 22) return std::nullopt;
    return Size{Le16(d, 18), Le16(d, 20)};
  }
  if (header_size < 40 || d.size() < 26) return std::nullopt;
  const auto width = static_cast<int32_t>(Le32(d, 18));
  // A negative height marks a top-down bitmap; its size is the magnitude.
  const auto height = static_cast<int32_t>(Le32(d, 22));
  return Size{width, std::llabs(int64_t{height})};
}

bool IsStartOfFrame(uint8_t marker) {
  // SOF0..SOF15 except DHT (C4), JPG (C8) and DAC (CC), which share the range.
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

std::optional<Size> JpegSize(const Bytes& d) {
  size_t at = 2;  // after the start-of-image marker
  while (at < d.size()) {
    if (d[at] != 0xFF) return std::nullopt;
    while (at < d.size() && d[at] == 0xFF) ++at;  // fill bytes
    if (at >= d.size()) return std::nullopt;
    const uint8_t marker = d[at++];
    if (marker == 0xD8 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) continue;  // no length
    // The image data starts (or the file ends) before any frame header: no size to read.
    if (marker == 0xD9 || marker == 0xDA || marker == 0x00) return std::nullopt;
    if (d.size() - at < 2) return std::nullopt;
    const uint32_t length = Be16(d, at);
    if (length < 2) return std::nullopt;
    if (IsStartOfFrame(marker)) {
      // length, precision, height, width
      if (length < 7 || d.size() - at < 7) return std::nullopt;
      return Size{Be16(d, at + 5), Be16(d, at + 3)};
    }
    if (d.size() - at < length) return std::nullopt;
    at += length;
  }
  return std::nullopt;
}

}  // namespace

std::optional<Photo> Photo::FromBytes(Bytes data) {
  PhotoFormat format = PhotoFormat::None;
  std::optional<Size> size;
  if (StartsWith(data, {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A})) {
    format = PhotoFormat::Png;
    size = PngSize(data);
  } else if (StartsWith(data, {0xFF, 0xD8})) {
    format = PhotoFormat::Jpeg;
    size = JpegSize(data);
  } else if (StartsWith(data, {'G', 'I', 'F', '8', '7', 'a'}) || StartsWith(data, {'G', 'I', 'F', '8', '9', 'a'})) {
    format = PhotoFormat::Gif;
    size = GifSize(data);
  } else if (StartsWith(data, {'B', 'M'})) {
    format = PhotoFormat::Bmp;
    size = BmpSize(data);
  }
  if (!size) return std::nullopt;
  constexpr int64_t kMax = std::numeric_limits<int32_t>::max();
  if (size->width <= 0 || size->height <= 0 || size->width > kMax || size->height > kMax) return std::nullopt;
  Photo photo;
  photo.data_ = std::move(data);
  photo.format_ = format;
  photo.width_ = static_cast<int32_t>(size->width);
  photo.height_ = static_cast<int32_t>(size->height);
  return photo;
}

std::optional<Photo> Photo::FromFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  Bytes data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return std::nullopt;
  return FromBytes(std::move(data));
}

bool Photo::SaveToFile(const std::string& path) const {
  if (IsEmpty()) return false;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) return false;
  out.write(reinterpret_cast<const char*>(data_.data()), static_cast<std::streamsize>(data_.size()));
  return static_cast<bool>(out);
}

std::string Photo::FormatName(PhotoFormat format) {
  switch (format) {
    case PhotoFormat::Png:
      return "PNG";
    case PhotoFormat::Jpeg:
      return "JPEG";
    case PhotoFormat::Gif:
      return "GIF";
    case PhotoFormat::Bmp:
      return "BMP";
    case PhotoFormat::None:
      break;
  }
  return "";
}

}  // namespace kiv

// The customer's photograph as the component keeps it: the image file's bytes and,
// for the kinds a capture station writes (PNG, JPEG, GIF, BMP), the pixel size read
// from the file's own header. Nothing is decoded; a damaged file is simply refused.
#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "core/variant.h"

namespace kiv {

enum class PhotoFormat { None, Png, Jpeg, Gif, Bmp };

class Photo {
 public:
  //! The empty picture: no bytes, no format, size 0 x 0.
  Photo() = default;

  //! A picture from an image file's bytes; nullopt when the bytes are not a PNG, JPEG, GIF
  //! or BMP whose header gives a size, or when the header is cut short.
  static std::optional<Photo> FromBytes(Bytes data);
  //! A picture from a file on disk; nullopt when it cannot be read or is not a picture.
  static std::optional<Photo> FromFile(const std::string& path);

  //! True for the empty picture.
  bool IsEmpty() const { return format_ == PhotoFormat::None; }
  PhotoFormat Format() const { return format_; }
  //! Width and height in pixels (0 for the empty picture).
  int32_t Width() const { return width_; }
  int32_t Height() const { return height_; }
  //! The image file's bytes, as read.
  const Bytes& Data() const { return data_; }

  //! Writes the bytes to `path`, replacing the file; false when it cannot be written or the
  //! picture is empty.
  bool SaveToFile(const std::string& path) const;

  //! "PNG", "JPEG", "GIF", "BMP", or empty text for the empty picture.
  static std::string FormatName(PhotoFormat format);

 private:
  Bytes data_;
  PhotoFormat format_ = PhotoFormat::None;
  int32_t width_ = 0;
  int32_t height_ = 0;
};

}  // namespace kiv

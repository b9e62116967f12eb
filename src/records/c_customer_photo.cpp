// The customer's photograph: storing a picture file as the current photo, reading it back,
// and the two chunked copies between a large column and a disk file. A file that cannot be
// read never reaches the database, and the scratch file of a read never outlives the call.
#include <atomic>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <random>

#include "core/version.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "records/photo.h"

namespace kiv {

namespace {

// Both copies move data in pieces of this size; the short piece of a column goes first.
constexpr int32_t kChunkSize = 1024;

void WriteValue(std::ofstream& out, const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return;
  if (value.Type() == VarType::Bytes || value.Type() == VarType::String) {
    const Bytes bytes = value.ToBytes();
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return;
  }
  const std::string text = value.ToString();
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

//! Reads exactly `length` bytes; a short read is a failure of the copy.
Bytes ReadBytes(std::ifstream& in, int32_t length) {
  Bytes buffer(static_cast<size_t>(length));
  in.read(reinterpret_cast<char*>(buffer.data()), length);
  if (in.gcount() != length) throw VbError(kErrInvalidCall, "Input past end of file");
  return buffer;
}

//! A scratch file name no other read (in this or another process) is using.
std::filesystem::path ScratchPhotoPath(int32_t customer_no) {
  static std::atomic<uint64_t> counter{0};
  static const uint64_t salt = std::random_device{}();
  const std::string name = "kivphoto_" + std::to_string(customer_no) + "_" + std::to_string(salt) + "_" +
                           std::to_string(counter.fetch_add(1)) + ".tmp";
  return std::filesystem::temp_directory_path() / name;
}

}  // namespace

std::shared_ptr<kiv::Photo> CCustomer::Photo() const { return photo_; }

void CCustomer::SetPhoto(std::shared_ptr<kiv::Photo> v) { photo_ = std::move(v); }

bool CCustomer::LoadPhotoFile(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sFileName) {
  try {
    if (oDB == nullptr) return false;
    const std::string sql = std::string("SELECT customer_no, image_no, image_path, image_type, current_photo, image_blob") +
                            " FROM kiv_images" + " WHERE customer_no = " + std::to_string(customer_no_);
    host::ScopedRecordset rs = host::OpenForUpdate(*oDB, sql);
    if (!rs) return false;
    // One image row per customer: a later load overwrites the photo stored before.
    if (rs->Eof()) {
      rs->AddNew();
      rs->FieldByName("customer_no").SetValue(customer_no_);
      rs->FieldByName("image_no").SetValue(int32_t{1});
    }
    // Without bytes the row is left unwritten: the pending row is dropped when the recordset closes.
    if (FileToColumn(error_object_, rs->FieldByName("image_blob"), sFileName) <= 0) return false;
    rs->FieldByName("image_path").SetValue(sFileName);
    rs->FieldByName("current_photo").SetValue(true);
    rs->FieldByName("image_type").SetValue("Photo");
    rs->Update();
    return true;
  } catch (...) {
    return false;
  }
}

bool CCustomer::ColumnToFile(const std::shared_ptr<host::ErrorObject>& /*oError*/, host::Field& Col,
                             std::string DiskFile) {
  try {
    std::error_code ignored;
    std::filesystem::remove(DiskFile, ignored);
    std::ofstream out(DiskFile, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    if ((Col.Attributes() & host::adFldLong) != 0) {
      const int32_t size = Col.ActualSize();
      const int32_t full = size / kChunkSize;
      const int32_t rest = size % kChunkSize;
      if (rest > 0) WriteValue(out, Col.GetChunk(rest));
      for (int32_t i = 0; i < full; ++i) WriteValue(out, Col.GetChunk(kChunkSize));
    } else {
      WriteValue(out, Col.Value());
    }
    out.close();
    return !out.fail();
  } catch (...) {
    return false;
  }
}

int32_t CCustomer::FileToColumn(const std::shared_ptr<host::ErrorObject>& /*oError*/, host::Field& Col,
                                const std::string& sFileName) {
  try {
    std::ifstream in(sFileName, std::ios::binary | std::ios::ate);
    std::streamoff length = in ? static_cast<std::streamoff>(in.tellg()) : 0;
    if (length < 0) length = 0;
    if (length == 0) {
      GetUi()->MsgBox(sFileName + " empty file or not found.", ui::vbOKOnly, kComponentName);
      return 0;
    }
    if (length > std::numeric_limits<int32_t>::max()) return 0;
    in.seekg(0);
    const auto total = static_cast<int32_t>(length);
    const int32_t full = total / kChunkSize;
    const int32_t rest = total % kChunkSize;
    switch (Col.Type()) {
      case host::adLongVarChar: {
        Col.AppendChunk(Variant(std::string()));
        const Bytes head = ReadBytes(in, rest);
        Col.AppendChunk(Variant(std::string(head.begin(), head.end())));
        for (int32_t i = 0; i < full; ++i) {
          const Bytes chunk = ReadBytes(in, kChunkSize);
          Col.AppendChunk(Variant(std::string(chunk.begin(), chunk.end())));
        }
        break;
      }
      case host::adLongVarBinary: {
        Col.AppendChunk(Variant(Bytes()));
        Col.AppendChunk(Variant(ReadBytes(in, rest)));
        for (int32_t i = 0; i < full; ++i) Col.AppendChunk(Variant(ReadBytes(in, kChunkSize)));
        break;
      }
      default:
        Col.SetValue(Variant(ReadBytes(in, total)));
        break;
    }
    return total;
  } catch (...) {
    return 0;
  }
}

bool CCustomer::OpenPhotograph() {
  if (db_ == nullptr || is_new_customer_ || customer_no_ == 0 || photo_loaded_) return photo_loaded_;
  const std::filesystem::path scratch = ScratchPhotoPath(customer_no_);
  try {
    bool copied = false;
    {
      const std::string sql = std::string("SELECT customer_no, image_no, image_blob") + " FROM kiv_images" +
                              " WHERE customer_no = " + std::to_string(customer_no_) + " AND current_photo <> 0";
      host::ScopedRecordset rs = host::OpenQuery(*db_, sql, /*scrollable=*/true);
      if (!rs.Eof()) copied = ColumnToFile(error_object_, rs->FieldByName("image_blob"), scratch.string());
    }
    std::optional<kiv::Photo> picture;
    if (copied) picture = kiv::Photo::FromFile(scratch.string());
    if (picture) {
      photo_ = std::make_shared<kiv::Photo>(std::move(*picture));
      photo_loaded_ = true;
    } else {
      photo_ = std::make_shared<kiv::Photo>();
    }
  } catch (...) {
    // A failed read leaves no photo loaded; the next call tries again.
  }
  std::error_code ignored;
  std::filesystem::remove(scratch, ignored);
  return photo_loaded_;
}

}  // namespace kiv

// Generated demo portraits.
#include "refhost/demo_data_photos.h"

#include <sqlite3.h>

#include <stdexcept>
#include <vector>

#include "refhost/demo_data.h"

namespace kiv::refhost {

namespace {

void PutLittleEndian(std::string& out, uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>((value >> (8 * i)) & 0xFF);
}

}  // namespace

std::string DemoPortraitBmp(int width, int height, uint32_t tone) {
  const int row_bytes = (width * 3 + 3) / 4 * 4;
  const uint32_t pixels = static_cast<uint32_t>(row_bytes * height);
  std::string out = "BM";
  PutLittleEndian(out, 54 + pixels, 4);
  PutLittleEndian(out, 0, 4);
  PutLittleEndian(out, 54, 4);
  PutLittleEndian(out, 40, 4);
  PutLittleEndian(out, static_cast<uint32_t>(width), 4);
  PutLittleEndian(out, static_cast<uint32_t>(height), 4);
  PutLittleEndian(out, 1, 2);
  PutLittleEndian(out, 24, 2);
  PutLittleEndian(out, 0, 4);
  PutLittleEndian(out, pixels, 4);
  PutLittleEndian(out, 2835, 4);
  PutLittleEndian(out, 2835, 4);
  PutLittleEndian(out, 0, 4);
  PutLittleEndian(out, 0, 4);
  const int r = 60 + static_cast<int>(tone % 120), g = 60 + static_cast<int>((tone / 7) % 120),
            b = 60 + static_cast<int>((tone / 49) % 120);
  const double cx = width / 2.0, head_y = height * 0.62, head_r = width * 0.22;
  // BMP rows run from the bottom up.
  for (int y = 0; y < height; ++y) {
    std::string row;
    for (int x = 0; x < width; ++x) {
      const double dx = x + 0.5 - cx, dy = y + 0.5 - head_y;
      const bool head = dx * dx + dy * dy <= head_r * head_r;
      const double shoulders_top = height * 0.38 - (dx * dx) / (width * 0.9);
      const bool body = y < shoulders_top && (dx < 0 ? -dx : dx) < width * 0.42;
      if (head || body) {
        row += static_cast<char>(b);
        row += static_cast<char>(g);
        row += static_cast<char>(r);
      } else {
        row += static_cast<char>(0xEE);
        row += static_cast<char>(0xE8);
        row += static_cast<char>(0xE2);
      }
    }
    row.resize(static_cast<size_t>(row_bytes), '\0');
    out += row;
  }
  return out;
}

void AddDemoPhotos(sqlite3* db, uint64_t seed) {
  std::vector<int32_t> customers;
  {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db,
                           "SELECT customer_no FROM kiv_customer WHERE customer_type = 'P' AND customer_no % 40 = 7 "
                           "ORDER BY customer_no LIMIT 250",
                           -1, &stmt, nullptr) != SQLITE_OK)
      throw DemoDataError(std::string("demo photographs: ") + sqlite3_errmsg(db));
    while (sqlite3_step(stmt) == SQLITE_ROW) customers.push_back(sqlite3_column_int(stmt, 0));
    sqlite3_finalize(stmt);
  }
  sqlite3_stmt* insert = nullptr;
  if (sqlite3_prepare_v2(db,
                         "INSERT OR REPLACE INTO kiv_images (customer_no, image_no, image_path, image_type, "
                         "current_photo, image_blob) VALUES (?1, 1, ?2, 'Photo', 1, ?3)",
                         -1, &insert, nullptr) != SQLITE_OK)
    throw DemoDataError(std::string("demo photographs: ") + sqlite3_errmsg(db));
  for (int32_t no : customers) {
    const std::string picture = DemoPortraitBmp(60, 75, static_cast<uint32_t>(no * 2654435761u + seed));
    const std::string path = "demo/portrait-" + std::to_string(no) + ".bmp";
    sqlite3_bind_int(insert, 1, no);
    sqlite3_bind_text(insert, 2, path.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_blob(insert, 3, picture.data(), static_cast<int>(picture.size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(insert);
    sqlite3_reset(insert);
    if (rc != SQLITE_DONE) {
      sqlite3_finalize(insert);
      throw DemoDataError(std::string("demo photographs: ") + sqlite3_errmsg(db));
    }
  }
  sqlite3_finalize(insert);
  char* error = nullptr;
  if (sqlite3_exec(db, "UPDATE kiv_customer SET has_image = 1 WHERE customer_no IN (SELECT customer_no FROM kiv_images)",
                   nullptr, nullptr, &error) != SQLITE_OK) {
    std::string message = error != nullptr ? error : "";
    sqlite3_free(error);
    throw DemoDataError("demo photographs: " + message);
  }
}

}  // namespace kiv::refhost

// Files that are not customer databases, each opened as the program would: each must be
// refused with one message before a byte of it changes. An empty or missing file becomes a
// new database.
#pragma once
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "host/host_error.h"
#include "refhost/ref_host.h"

namespace kiv::refhost::testing {

struct BadFileCase {
  std::string name;
  //! Makes the file at the path.
  std::function<void(const std::string&)> make;
  //! True when the file must open (as a new database); false when it must be refused.
  bool opens = false;
};

struct BadFileResult {
  std::string name;
  bool refused = false;
  bool unchanged = false;  //!< the file's bytes are as they were (refused cases)
  bool saves = false;      //!< a write after opening works (cases that open)
  std::string message;
};

namespace bad_file_detail {
inline std::string Bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
inline void Write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}
inline void Sql(const std::string& path, const char* script) {
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  sqlite3_exec(db, script, nullptr, nullptr, nullptr);
  sqlite3_close(db);
}
// A whole customer database, checkpointed into one file in the rollback journal mode.
inline void Customer(const std::string& path) {
  { RefHost::Open(path); }
  Sql(path, "PRAGMA journal_mode=DELETE");
}
}  // namespace bad_file_detail

inline std::vector<BadFileCase> BadFileCases() {
  using namespace bad_file_detail;
  return {
      {"another program's SQLite file", [](const std::string& p) {
         Sql(p, "CREATE TABLE notes (id INTEGER PRIMARY KEY, text TEXT); INSERT INTO notes (text) VALUES ('keep me');");
       }},
      {"a text file", [](const std::string& p) { Write(p, "name,city\nANN,BURLINGTON\n"); }},
      {"a customer database with a table missing", [](const std::string& p) {
         Customer(p);
         Sql(p, "DROP TABLE kiv_address");
       }},
      {"a customer database of a newer version", [](const std::string& p) {
         Customer(p);
         Sql(p, "PRAGMA user_version = 99");
       }},
      {"a damaged customer database", [](const std::string& p) {
         Customer(p);
         Sql(p, "INSERT INTO kiv_customer (customer_no, last_name) SELECT value, 'NAME' || value FROM "
                "generate_series(1, 3000)");
         // Scribble over the middle of the file, past the schema page.
         std::string bytes = Bytes(p);
         for (size_t i = bytes.size() / 2; i < bytes.size() / 2 + 3000 && i < bytes.size(); ++i) bytes[i] = '\x5A';
         Write(p, bytes);
       }},
      {"a cut-off customer database", [](const std::string& p) {
         Customer(p);
         Sql(p, "INSERT INTO kiv_customer (customer_no, last_name) SELECT value, 'NAME' || value FROM "
                "generate_series(1, 3000)");
         std::string bytes = Bytes(p);
         Write(p, bytes.substr(0, bytes.size() / 2));
       }},
      {"an empty file", [](const std::string& p) { Write(p, ""); }, true},
      {"a missing file", [](const std::string&) {}, true},
  };
}

//! Makes the case's file at `path`, opens it, and reports what happened; the files go after.
inline BadFileResult TryBadFile(const BadFileCase& c, const std::string& path) {
  namespace fs = std::filesystem;
  std::error_code ec;
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(path + suffix, ec);
  c.make(path);
  const std::string before = bad_file_detail::Bytes(path);
  BadFileResult result;
  result.name = c.name;
  try {
    auto host = RefHost::Open(path);
    host->Database()->Execute("INSERT INTO kiv_zip_code (zip, City) VALUES ('05401', 'BURLINGTON')");
    result.saves = true;
  } catch (const HostError& e) {
    result.refused = true;
    result.message = e.description;
  }
  result.unchanged = bad_file_detail::Bytes(path) == before;
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) fs::remove(path + suffix, ec);
  return result;
}

}  // namespace kiv::refhost::testing

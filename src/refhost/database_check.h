// The checks a file passes before the reference host writes a byte to it: an SQLite file,
// holding this program's tables at this program's version, undamaged. A foreign or damaged
// file is refused exactly as it was found.
#pragma once
#include <string>

struct sqlite3;

namespace kiv::refhost {

//! Throws HostError(kErrOpen) with one message naming the file when `db` (opened on `path`,
//! nothing written yet) is not a customer database of this program: not SQLite, another
//! program's tables, a newer or older schema, a table missing, or a failed integrity check.
//! An empty file passes: it becomes a new customer database.
void CheckCustomerFile(sqlite3* db, const std::string& path);

}  // namespace kiv::refhost

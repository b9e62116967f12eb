// The customer database schema: its version and the creation of a fresh file.
#pragma once
#include <string_view>

#include "refhost/sqlite_database.h"

namespace kiv::refhost {

//! The schema version this program creates and understands (PRAGMA user_version).
inline constexpr int kSchemaVersion = 3;

//! The text of schema.sql, built into the program so that it runs from any directory.
std::string_view SchemaSql();

//! Creates the schema in an empty file, accepts a file of this version, upgrades an older
//! file (version 1 kept its users' passwords as text; later versions only lack tables,
//! columns and indexes) one step at a time, each in one transaction, and refuses a newer
//! version or a file holding somebody else's tables with HostError(kErrOpen).
void EnsureSchema(SqliteDatabase& db);

}  // namespace kiv::refhost

// Bringing a database file of an older schema version up to the one this program creates.
#pragma once
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

//! Adds to the file what schema.sql has and the file lacks: whole tables (with the rows
//! schema.sql puts in them), columns of existing tables (with their declared type and
//! default), indexes, and the sequences the program numbers new rows from. Nothing the
//! file holds is changed or removed. Runs inside the caller's transaction and sets the
//! file's version last.
void AddWhatTheSchemaLacks(SqliteDatabase& db);

}  // namespace kiv::refhost

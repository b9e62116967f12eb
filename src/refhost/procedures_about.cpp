// What the about box asks of the database: which database the component works on and the
// engine under it.
#include <sqlite3.h>

#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void GetDatabaseInfo(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  call.ReturnRows("SELECT ?1 AS database_name, ?2 AS database_engine, ?3 AS schema_version",
                  {Variant(db.Path()), Variant(std::string("SQLite ") + sqlite3_libversion()),
                   Variant(static_cast<int32_t>(NzLong(db.QueryValue("PRAGMA user_version"))))});
}

}  // namespace

void AddAboutProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_SYSTEM_GetDatabaseInfo", {}, false, GetDatabaseInfo});
}

}  // namespace kiv::refhost

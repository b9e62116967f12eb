// The scripted host for unit tests: one object that holds a scripted connection, error
// object, settings store and application server wired together, answers from a script
// and records every call, so a test can pin exact SQL texts and parameter orders.
//
//   kiv::test::ScriptedHost host;                 // a member of the fixture, or a local
//   host.OnQuery("SELECT country_id FROM kiv_system_parm").Row({{"country_id", "USA"}});
//   host.OnProcedure("KIV_SP_GetCustomer")
//       .Params({"@RETURN_VALUE", "@customer_no"})
//       .Row({{"customer_no", 12}, {"last_name", "SMITH"}});
//   host.app->Grant("CUSTEDIT");
//   host.settings->Seed("AppData", "Customer", "UseCollection", "1");
//
//   engine.SetAppServer(host.app);                // std::shared_ptr<host::AppServer>
//   record.SetDB(host.db);  record.SetErrorObject(host.errors);
//   ... run the code ...
//
//   EXPECT_EQ(host.SqlTexts(), (std::vector<std::string>{"SELECT ..."}));
//   EXPECT_EQ(host.AssignedNames("KIV_SP_GetCustomer"), (std::vector<std::string>{"@customer_no"}));
//   EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
//   EXPECT_EQ(host.errors->Count(), 0u);
//   std::cout << host.LogText();                  // every connection call, for a failing test
//
// The pieces (each header documents its own API):
//   support/scripted_connection.h  ScriptedConnection: OnQuery / OnQueryContaining /
//       OnQueryMatching / OnProcedure builders (Row, Values, Columns, NextResult, Fails,
//       Throws, Once, Times, Params, Outputs, ReturnValue), SetNextSequence, FailNext,
//       ThrowNext, SetUser, RequireScript; the log (Log, LogText, SqlTexts,
//       ExecutedProcedures, Executions, AssignmentsOf, AssignedNames, AssignedValue,
//       Recordsets, RecordsetFor, OpenRecordsetCount, Commands).
//   support/scripted_recordset.h   ResultSet, Col / LongCol, ScriptedRecordset (Ops: AddNew,
//       Set, GetChunk, AppendChunk, Update, Delete, Close) and ScriptedField.
//   support/scripted_command.h     Assignment, ParamSpec (In / Out / InOut), ScriptedCommand,
//       ScriptedParameters, ScriptedParameter.
//   support/scripted_services.h    ScriptedErrorObject (Calls, Last, ThrowOnDisplay),
//       ScriptedSettingsStore (Seed, Stored, Saves, Gets, SavedKeys), ScriptedAppServer
//       (Grant, GrantAll, ThrowOnPermission, PermissionCalls, AskedCodes, Activities,
//       SetConnection / SetErrorObject / SetSettings, Set<Service> for the suite services).
//   support/scripted_suite.h       ScriptedReservationService, ScriptedInvoicingService,
//       ScriptedRegister, ScriptedWillCall, ScriptedReportService, ScriptedCardEntry,
//       ScriptedCardObject: each records Calls() / Operations() and answers SetAnswer().
//
// Failure messages print values, assignments and calls readably (PrintTo below).
#pragma once
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/scripted_command.h"
#include "support/scripted_connection.h"
#include "support/scripted_recordset.h"
#include "support/scripted_services.h"
#include "support/scripted_suite.h"

namespace kiv::test {

class ScriptedHost {
 public:
  ScriptedHost();

  std::shared_ptr<ScriptedConnection> db;
  std::shared_ptr<ScriptedErrorObject> errors;
  std::shared_ptr<ScriptedSettingsStore> settings;
  std::shared_ptr<ScriptedAppServer> app;

  // The connection's most used calls, forwarded.
  ScriptBuilder OnQuery(std::string exact_sql) { return db->OnQuery(std::move(exact_sql)); }
  ScriptBuilder OnQueryContaining(std::string fragment) { return db->OnQueryContaining(std::move(fragment)); }
  ScriptBuilder OnProcedure(std::string name) { return db->OnProcedure(std::move(name)); }
  const std::vector<Call>& Log() const { return db->Log(); }
  std::string LogText() const { return db->LogText(); }
  std::vector<std::string> SqlTexts() const { return db->SqlTexts(); }
  std::vector<std::string> ExecutedProcedures() const { return db->ExecutedProcedures(); }
  std::vector<Assignment> AssignmentsOf(const std::string& procedure, size_t occurrence = 0) const {
    return db->AssignmentsOf(procedure, occurrence);
  }
  std::vector<std::string> AssignedNames(const std::string& procedure, size_t occurrence = 0) const {
    return db->AssignedNames(procedure, occurrence);
  }
};

// Readable values in gtest failure messages.
void PrintTo(const Assignment& a, std::ostream* os);
void PrintTo(const Call& call, std::ostream* os);
void PrintTo(const DisplayCall& call, std::ostream* os);

}  // namespace kiv::test

namespace kiv {
//! A Variant in gtest failure messages: Null, Empty, 5, "SMITH", #2026-03-05#, <3 bytes>.
void PrintTo(const Variant& v, std::ostream* os);
}  // namespace kiv

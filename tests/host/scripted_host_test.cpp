// The scripted host itself: later tests trust it to record assignment order, to look
// parameters up without regard to case, to answer entries in order and to record writes.
#include "support/scripted_host.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "host/db_patterns.h"
#include "host/host_error.h"

namespace kiv::test {
namespace {

using host::PrepareProcedure;

TEST(ScriptedHostParameters, AssignmentsAreRecordedInOrderUnderTheServersNames) {
  ScriptedHost host;
  host.OnProcedure("KIV_SP_UpdateAddress").Params({"@RETURN_VALUE", "@address_no", "@customer_no", "@zip"});
  auto command = PrepareProcedure(*host.db, "kiv_sp_updateaddress");
  auto& params = command->GetParameters();
  params["@ZIP"].SetValue("05401");
  params["@Address_No"].SetValue(12);
  params[2].SetValue(7);
  params["@zip"].SetValue(Variant::Null());
  bool error = false;
  host.db->ExecuteCommand(command, error);

  EXPECT_EQ(host.AssignmentsOf("KIV_SP_UpdateAddress"),
            (std::vector<Assignment>{{"@zip", "05401"}, {"@address_no", 12}, {"@customer_no", 7},
                                     {"@zip", Variant::Null()}}));
  EXPECT_EQ(host.Log().back().command_type, host::adCmdStoredProc);
  EXPECT_THROW(params["@nope"], HostError);
  EXPECT_EQ(params.Find("@nope"), nullptr);
}

TEST(ScriptedHostParameters, EachExecutionKeepsOnlyItsOwnAssignments) {
  ScriptedHost host;
  auto command = PrepareProcedure(*host.db, "KIV_SP_SaveRow");  // unscripted: created on assignment
  bool error = false;
  command->GetParameters()["@row"].SetValue(1);
  command->GetParameters()["@text"].SetValue("a");
  host.db->ExecuteCommand(command, error);
  command->GetParameters()["@ROW"].SetValue(2);
  host.db->ExecuteCommand(command, error);

  EXPECT_EQ(host.AssignedNames("KIV_SP_SaveRow", 0), (std::vector<std::string>{"@row", "@text"}));
  EXPECT_EQ(host.AssignmentsOf("KIV_SP_SaveRow", 1), (std::vector<Assignment>{{"@row", 2}}));
  // The lookups reused the parameters; the server's return value (0) came with the run.
  EXPECT_EQ(host.db->Commands()[0]->Params().Names(), (std::vector<std::string>{"@row", "@text", "@RETURN_VALUE"}));
  EXPECT_EQ(host::OutputLong(*command, "@return_value", -1), 0);
}

TEST(ScriptedHostParameters, AssignmentComparisonSeesValueAndNullDifferences) {
  EXPECT_EQ((Assignment{"@a", 5}), (Assignment{"@a", 5.0}));
  EXPECT_NE((Assignment{"@a", 5}), (Assignment{"@a", 6}));
  EXPECT_NE((Assignment{"@a", Variant::Null()}), (Assignment{"@a", ""}));
  EXPECT_NE((Assignment{"@a", Variant()}), (Assignment{"@a", 0}));
  EXPECT_NE((Assignment{"@a", 5}), (Assignment{"@A", 5}));
}

TEST(ScriptedHostParameters, OutputsArriveAtExecutionNotBefore) {
  ScriptedHost host;
  host.OnProcedure("KIV_SP_X")
      .Params({"@RETURN_VALUE", Out("@message")})
      .Outputs({{"@message", "refused"}})
      .ReturnValue(-3);
  host.OnProcedure("KIV_SP_Y").Params({"@RETURN_VALUE", Out("@message")}).Outputs({{"@message", "ok"}});
  auto command = PrepareProcedure(*host.db, "KIV_SP_X");
  auto other = PrepareProcedure(*host.db, "KIV_SP_Y");
  EXPECT_TRUE(command->GetParameters()["@message"].Value().IsEmpty());
  bool error = false;
  host.db->ExecuteCommand(command, error);
  host.db->ExecuteCommand(other, error);
  EXPECT_EQ(CLng(command->GetParameters()["@return_value"].Value()), -3);
  EXPECT_EQ(CLng(other->GetParameters()[0].Value()), 0);
  EXPECT_EQ(CStr(command->GetParameters()["@message"].Value()), "refused");
  EXPECT_TRUE(host.AssignmentsOf("KIV_SP_X").empty());
}

TEST(ScriptedHostScript, OnceEntriesAnswerInTurnThenTheStandingOne) {
  ScriptedHost host;
  host.OnQuery("SELECT n").Once().Row({{"n", 1}});
  host.OnQueryContaining("SELECT").Row({{"n", 2}});
  host.OnQuery("SELECT n").Once().Row({{"n", 3}});  // shadowed by the standing entry
  std::vector<int32_t> seen;
  for (int i = 0; i < 3; ++i) {
    host::ScopedRecordset rs = host::OpenQuery(*host.db, "SELECT n");
    seen.push_back(CLng((*rs)["n"]));
  }
  EXPECT_EQ(seen, (std::vector<int32_t>{1, 2, 2}));
  host::ScopedRecordset none = host::OpenQuery(*host.db, "OTHER");
  EXPECT_TRUE(none && none.Eof());
}

TEST(ScriptedHostScript, ThrownErrorsAndFlagsAreLogged) {
  ScriptedHost host;
  host.OnQuery("UPDATE t SET a = 1").Throws(-2147467259, "Timeout");
  host.db->FailNext(CallKind::ExecuteSQL);
  bool error = false;
  Variant extra;
  host.db->ExecuteSQL("UPDATE t SET a = 1", error, extra);
  EXPECT_TRUE(error);
  try {
    host.db->ExecuteSQL("UPDATE t SET a = 1", error, extra);
    FAIL() << "the scripted failure must be thrown";
  } catch (const HostError& e) {
    EXPECT_EQ(e.number, -2147467259);
  }
  EXPECT_EQ(host.SqlTexts(), (std::vector<std::string>{"UPDATE t SET a = 1", "UPDATE t SET a = 1"}));
  EXPECT_TRUE(host.Log()[0].error);
  EXPECT_EQ(host.db->GetNextSequenceNo("seq_address_no"), 1);
  host.db->SetNextSequence("seq_forecast_no", 40);
  EXPECT_EQ(host.db->GetNextSequenceNo("seq_forecast_no"), 40);
  EXPECT_EQ(host.db->GetNextSequenceNo("seq_forecast_no"), 41);
}

TEST(ScriptedHostRecordsets, UpdatableRecordsetRecordsWritesAndReadOnlyRefusesThem) {
  ScriptedHost host;
  host.OnQuery("SELECT a FROM t").Row({{"a", 1}});
  bool error = false;
  auto rs = host.db->OpenUpdatableRecordset("SELECT * FROM kiv_images WHERE customer_no = 5", error);
  rs->AddNew();
  rs->FieldByName("customer_no").SetValue(5);
  rs->FieldByName("image_no").SetValue(1);
  rs->Update();
  rs->Close();
  EXPECT_THROW(rs->Eof(), HostError);
  EXPECT_EQ(host.db->Recordsets()[0]->OpsText(),
            (std::vector<std::string>{"AddNew", "Set customer_no=5", "Set image_no=1", "Update", "Close"}));

  auto ro = host.db->OpenReadOnlyRecordset("SELECT a FROM t", error);
  EXPECT_EQ(ro->RecordCount(), 1);
  EXPECT_THROW(ro->FieldByName("a").SetValue(2), HostError);
  EXPECT_THROW(ro->FieldByName("b"), HostError);
  ro->MoveNext();
  EXPECT_THROW(ro->FieldByName("a").Value(), HostError);
}

TEST(ScriptedHostRecordsets, LongFieldsComeAndGoInChunks) {
  ScriptedHost host;
  host.OnQuery("SELECT blob").Columns({LongCol("image_blob"), Col("id", host::adInteger)}).Values({Bytes(5, 9), 1});
  bool error = false;
  auto rs = host.db->OpenUpdatableRecordset("SELECT blob", error);
  host::Field& blob = rs->FieldByName("IMAGE_BLOB");
  EXPECT_EQ(blob.ActualSize(), 5);
  EXPECT_EQ(blob.GetChunk(2).ToBytes().size(), 2u);
  EXPECT_EQ(blob.GetChunk(4).ToBytes().size(), 3u);
  EXPECT_TRUE(blob.GetChunk(4).IsNull());
  blob.AppendChunk(Bytes{});
  blob.AppendChunk(Bytes{1, 2});
  blob.AppendChunk(Bytes{3});
  EXPECT_EQ(blob.Value().ToBytes(), (Bytes{1, 2, 3}));
  EXPECT_THROW(rs->FieldByName("id").GetChunk(1), HostError);
}

TEST(ScriptedHostRecordsets, FurtherResultSetsComeFromNextRecordsetAndMustBeClosedToo) {
  ScriptedHost host;
  host.OnProcedure("KIV_SP_CUSTOMER_GetAccountAndPayments")
      .Row({{"Description", "HOUSE"}})
      .NextResult()
      .Row({{"Amount", 5.5}})
      .Row({{"Amount", 7.0}});
  auto command = PrepareProcedure(*host.db, "KIV_SP_CUSTOMER_GetAccountAndPayments");
  bool error = false;
  Variant extra;
  auto first = host.db->cmdOpenForwardReadOnlyRecordset(command, error, extra);
  EXPECT_EQ(CStr((*first)["description"]), "HOUSE");
  EXPECT_EQ(first->RecordCount(), -1);  // a forward-only cursor cannot count
  auto second = first->NextRecordset();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(first->NextRecordset(), nullptr);
  second->MoveNext();
  EXPECT_DOUBLE_EQ(CDbl((*second)["Amount"]), 7.0);
  first->Close();
  EXPECT_EQ(host.db->OpenRecordsetCount(), 1u);
  second->Close();
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST(ScriptedHostRecordsets, ColumnsAreDeclaredOrInferredFromTheFirstNonNullValue) {
  ResultSet rs;
  rs.Row({{"n", Variant::Null()}, {"s", "x"}}).Row({{"n", 4}, {"d", Date::FromParts(2026, 3, 5)}});
  ASSERT_EQ(rs.columns().size(), 3u);
  EXPECT_EQ(rs.columns()[0].type, host::adInteger);
  EXPECT_EQ(rs.columns()[1].type, host::adVarChar);
  EXPECT_EQ(rs.columns()[2].type, host::adDBTimeStamp);
  EXPECT_TRUE(rs.rows()[0][2].IsNull());

  ScriptedHost host;
  host.OnQuery("SELECT amount")
      .Columns({Col("amount", host::adNumeric, 19, 19, 4), LongCol("notes", host::adLongVarChar)})
      .Values({12.5, "abcdef"});
  EXPECT_THROW(host.OnQuery("x").Columns({Col("a")}).Row({{"b", 1}}), std::invalid_argument);
  EXPECT_THROW(host.OnQuery("y").Columns({Col("a")}).Values({1, 2}), std::invalid_argument);
  host::ScopedRecordset r = host::OpenQuery(*host.db, "SELECT amount");
  host::Field& amount = r->FieldAt(0);
  EXPECT_EQ(amount.Precision(), 19);
  EXPECT_EQ(amount.NumericScale(), 4);
  host::Field& notes = r->FieldByName("notes");
  EXPECT_EQ(CStr(notes.GetChunk(4)), "abcd");
  EXPECT_EQ(CStr(notes.GetChunk(4)), "ef");
  EXPECT_TRUE(notes.GetChunk(4).IsNull());
  r->MoveFirst();
  EXPECT_EQ(CStr(notes.GetChunk(2)), "ab");
  EXPECT_THROW(r->FieldAt(2), HostError);
}

TEST(ScriptedHostScript, StrictScriptAndMissingExecutionsFailTheTest) {
  ScriptedHost host;
  host.db->RequireScript();
  EXPECT_NONFATAL_FAILURE(host::OpenQuery(*host.db, "SELECT 1"), "unscripted database call: OpenForward SELECT 1");
  EXPECT_NONFATAL_FAILURE(PrepareProcedure(*host.db, "KIV_SP_NONE"), "Refresh KIV_SP_NONE");
  EXPECT_NONFATAL_FAILURE(host.AssignmentsOf("KIV_SP_NONE"), "KIV_SP_NONE was executed 0 time(s)");
}

TEST(ScriptedHostServices, SuiteServicesRecordTheirArgumentsAndAnswerAsSet) {
  ScriptedHost host;
  auto invoicing = std::make_shared<ScriptedInvoicingService>();
  auto reports = std::make_shared<ScriptedReportService>();
  auto cards = std::make_shared<ScriptedCardEntry>();
  host.app->SetInvoicingService(invoicing);
  host.app->SetReportService(reports);
  host.app->SetCardEntry(cards);
  EXPECT_EQ(host.app->GetReservationService(), nullptr);

  invoicing->SetAnswer("InvoiceAndPay", false);
  host.app->GetInvoicingService()->Setup(120, {3, 1});
  EXPECT_FALSE(host.app->GetInvoicingService()->InvoiceAndPay(7, 120));
  EXPECT_EQ(invoicing->Calls()[0].args, (std::vector<Variant>{120, "3,1"}));

  reports->Define("CUST_FORECAST");
  host::ClientReport report;
  EXPECT_FALSE(host.app->GetReportService()->GetClientMapReport("CUST_RENT", report));
  EXPECT_TRUE(host.app->GetReportService()->GetClientMapReport("CUST_FORECAST", report));
  EXPECT_EQ(report.report_key, "CUST_FORECAST");

  auto card = std::make_shared<ScriptedCardObject>();
  std::shared_ptr<host::CardObject> received;
  host.app->CreateCardEntry()->SetCardEnteredHandler([&](std::shared_ptr<host::CardObject> c) { received = c; });
  cards->EnterCard(card);
  EXPECT_EQ(received, card);
  EXPECT_EQ(host.app->CardEntryCreations(), 1u);
}

TEST(ScriptedHostServices, PermissionsSettingsAndReportsAreRecorded) {
  ScriptedHost host;
  host.app->Grant("custedit");
  EXPECT_TRUE(CBool(host.app->CheckPermission("CUSTEDIT", "Customer", "")));
  EXPECT_FALSE(CBool(host.app->CheckPermission("CUSTADD", "Customer", "")));
  EXPECT_EQ(host.app->AskedCodes(), (std::vector<std::string>{"CUSTEDIT", "CUSTADD"}));

  host.settings->Seed("AppData", "Customer", "UseCollection", "1");
  EXPECT_EQ(host.settings->GetSetting("appdata", "customer", "usecollection", "0"), "1");
  EXPECT_EQ(host.settings->GetSetting("AppData", "Customer", "Other", "d"), "d");
  host.settings->SaveSetting("AppData", "Customer", "Other", "x");
  EXPECT_EQ(host.settings->Stored("AppData", "Customer", "OTHER"), "x");
  EXPECT_EQ(host.settings->SavedKeys(), std::vector<std::string>{"Other"});

  host.errors->ThrowOnDisplay(5);
  EXPECT_THROW(host.errors->Display(3, "src", "desc", false, {}, {}, {}, nullptr, ""), HostError);
  EXPECT_EQ(host.errors->Last().description, "desc");
}

}  // namespace
}  // namespace kiv::test

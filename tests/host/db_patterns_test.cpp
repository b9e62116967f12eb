// The shared database patterns: the error-flag rule, recordsets closed on every path,
// how a procedure command is prepared, and how outputs are read.
#include "host/db_patterns.h"

#include <gtest/gtest.h>

#include "host/host_error.h"
#include "support/scripted_host.h"

namespace kiv::host {
namespace {

using test::CallKind;
using test::ScriptedHost;

class DbPatterns : public ::testing::Test {
 protected:
  ScriptedHost host;
};

TEST_F(DbPatterns, QueryUsesForwardCursorUnlessScrollableAndReadsRows) {
  host.OnQuery("SELECT a FROM t").Row({{"a", 1}}).Row({{"a", 2}});
  {
    ScopedRecordset rs = OpenQuery(*host.db, "SELECT a FROM t");
    ASSERT_TRUE(rs);
    int32_t sum = 0;
    for (; !rs.Eof(); rs->MoveNext()) sum += CLng((*rs)["a"]);
    EXPECT_EQ(sum, 3);
  }
  { ScopedRecordset rs = OpenQuery(*host.db, "SELECT a FROM t", true); }
  ASSERT_EQ(host.Log().size(), 2u);
  EXPECT_EQ(host.Log()[0].kind, CallKind::OpenForward);
  EXPECT_EQ(host.Log()[1].kind, CallKind::OpenReadOnly);
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST_F(DbPatterns, ErrorFlagGivesNoRecordsetAndEofHolds) {
  host.OnQuery("SELECT a FROM t").Row({{"a", 1}}).Fails();
  host.OnQuery("SELECT b FROM t").Row({{"b", 1}}).Fails();
  ScopedRecordset read = OpenQuery(*host.db, "SELECT a FROM t");
  ScopedRecordset update = OpenForUpdate(*host.db, "SELECT b FROM t");
  EXPECT_FALSE(read);
  EXPECT_FALSE(update);
  EXPECT_TRUE(read.Eof());
}

TEST_F(DbPatterns, RecordsetIsClosedWhenAHostErrorLeavesTheScope) {
  host.OnQuery("SELECT a FROM t").Row({{"a", 1}});
  try {
    ScopedRecordset rs = OpenQuery(*host.db, "SELECT a FROM t");
    (*rs)["missing"];  // raises 3265
    FAIL() << "reading a missing column must raise";
  } catch (const HostError& e) {
    EXPECT_EQ(e.number, 3265);
  }
  ASSERT_EQ(host.db->Recordsets().size(), 1u);
  EXPECT_TRUE(host.db->Recordsets()[0]->WasClosed());
}

TEST_F(DbPatterns, RecordsetClosedByTheCallerIsNotClosedAgain) {
  ScopedRecordset rs = OpenForUpdate(*host.db, "SELECT a FROM t");
  rs->Close();
  rs.Close();
  ScopedRecordset other = OpenQuery(*host.db, "SELECT b FROM t");
  other = OpenQuery(*host.db, "SELECT c FROM t");  // the replaced one is closed
  EXPECT_EQ(host.db->Recordsets()[0]->OpsText(), std::vector<std::string>{"Close"});
  EXPECT_TRUE(host.db->Recordsets()[1]->WasClosed());
  EXPECT_FALSE(host.db->Recordsets()[2]->WasClosed());
}

TEST_F(DbPatterns, PrepareProcedureSetsNameAndStoredProcedureTypeAndRefreshes) {
  host.OnProcedure("KIV_SP_X").Params({"@RETURN_VALUE", "@customer_no"});
  auto command = PrepareProcedure(*host.db, "KIV_SP_X");
  ASSERT_NE(command, nullptr);
  EXPECT_EQ(command->CommandText(), "KIV_SP_X");
  EXPECT_EQ(command->CommandType(), adCmdStoredProc);
  EXPECT_EQ(host.db->Commands().at(0)->RefreshCount(), 1);
  ASSERT_EQ(command->GetParameters().Count(), 2);
  EXPECT_EQ(command->GetParameters()[0].Name(), "@RETURN_VALUE");
}

TEST_F(DbPatterns, PrepareProcedureGivesNothingWhenNoCommandComesBack) {
  host.db->FailNext(CallKind::CreateCommand);
  EXPECT_EQ(PrepareProcedure(*host.db, "KIV_SP_X"), nullptr);
}

TEST_F(DbPatterns, ExecuteProcedureReportsTheErrorFlagAndPassesThrownErrors) {
  host.OnProcedure("KIV_SP_BAD").Fails();
  host.OnProcedure("KIV_SP_THROWS").Throws(-2147217900, "Deadlock");
  EXPECT_TRUE(ExecuteProcedure(*host.db, PrepareProcedure(*host.db, "KIV_SP_OK")));
  EXPECT_FALSE(ExecuteProcedure(*host.db, PrepareProcedure(*host.db, "KIV_SP_BAD")));
  EXPECT_THROW(ExecuteProcedure(*host.db, PrepareProcedure(*host.db, "KIV_SP_THROWS")), HostError);
}

TEST_F(DbPatterns, ProcedureWithRowsThenOutputs) {
  host.OnProcedure("KIV_SP_LIST").Row({{"n", 7}}).Outputs({{"@return_value", 0}, {"@message", "done"}});
  host.OnProcedure("KIV_SP_LIST_BAD").Row({{"n", 7}}).Fails();
  auto command = PrepareProcedure(*host.db, "KIV_SP_LIST");
  {
    ScopedRecordset rs = OpenProcedure(*host.db, command);
    ASSERT_FALSE(rs.Eof());
    EXPECT_EQ(CLng((*rs)["n"]), 7);
  }
  EXPECT_EQ(OutputLong(*command, "@RETURN_VALUE", -1), 0);
  EXPECT_EQ(OutputText(*command, "@MESSAGE"), "done");
  EXPECT_FALSE(OpenProcedure(*host.db, PrepareProcedure(*host.db, "KIV_SP_LIST_BAD")));
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);
}

TEST_F(DbPatterns, OutputsThatAreNullOrAbsentReadAsTheDefault) {
  host.OnProcedure("KIV_SP_X")
      .Params({"@RETURN_VALUE", test::Out("@message")})
      .Outputs({{"@RETURN_VALUE", Variant::Null()}, {"@message", Variant::Null()}});
  auto command = PrepareProcedure(*host.db, "KIV_SP_X");
  ASSERT_TRUE(ExecuteProcedure(*host.db, command));
  EXPECT_EQ(OutputLong(*command, "@RETURN_VALUE", -1), -1);
  EXPECT_EQ(OutputLong(*command, "@card_seq_no", 0), 0);
  EXPECT_EQ(OutputText(*command, "@message"), "");
  EXPECT_EQ(OutputText(*command, "@absent"), "");
}

TEST_F(DbPatterns, ProcedureCallAssignsInputsInTheCallersOrderAndLeavesTheReturnRuleToIt) {
  host.OnProcedure("KIV_SP_X")
      .Params({"@RETURN_VALUE", "@b", "@a", test::Out("@message")})
      .Outputs({{"@RETURN_VALUE", 2}, {"@message", "refused"}});
  ProcedureCall call(*host.db, "KIV_SP_X");
  ASSERT_TRUE(call.Prepared());
  call.In("@a", Variant(1)).In("@B", Variant("two"));
  ASSERT_TRUE(call.Execute());
  EXPECT_EQ(host.db->AssignedNames("KIV_SP_X"), (std::vector<std::string>{"@a", "@b"}));
  // A caller refusing anything but 0 and one refusing only below 0 read the same value.
  EXPECT_EQ(call.ReturnValue(-1), 2);
  EXPECT_EQ(call.OutputText("@message"), "refused");
  EXPECT_EQ(call.OutputLong("@absent", 9), 9);
  EXPECT_TRUE(call.Output("@absent").IsEmpty());
}

TEST_F(DbPatterns, ProcedureCallReadsANullReturnValueAsTheCallersDefault) {
  host.OnProcedure("KIV_SP_X").Params({"@RETURN_VALUE"}).Outputs({{"@RETURN_VALUE", Variant::Null()}});
  host.OnProcedure("KIV_SP_NO_RETURN").Params({"@a"});
  ProcedureCall call(*host.db, "KIV_SP_X");
  ASSERT_TRUE(call.Execute());
  EXPECT_EQ(call.ReturnValue(-1), -1);
  ProcedureCall without(*host.db, "KIV_SP_NO_RETURN");
  ASSERT_TRUE(without.Execute());
  EXPECT_EQ(without.ReturnValue(0), 0);
}

TEST_F(DbPatterns, ProcedureCallFailsOnTheErrorFlagAndRunsNothingWithoutACommand) {
  host.OnProcedure("KIV_SP_BAD").Row({{"n", 1}}).Fails();
  ProcedureCall bad(*host.db, "KIV_SP_BAD");
  EXPECT_FALSE(bad.Execute());
  EXPECT_FALSE(bad.Open());
  EXPECT_EQ(host.db->OpenRecordsetCount(), 0u);

  host.db->FailNext(CallKind::CreateCommand);
  ProcedureCall none(*host.db, "KIV_SP_X");
  EXPECT_FALSE(none.Prepared());
  none.In("@a", Variant(1));
  EXPECT_FALSE(none.Execute());
  EXPECT_FALSE(none.Open());
  EXPECT_EQ(none.ReturnValue(-1), -1);
  EXPECT_EQ(host.db->Executions("KIV_SP_X").size(), 0u);
}

TEST_F(DbPatterns, ProcedureCallClearsEveryInputForTheNextRun) {
  host.OnProcedure("KIV_SP_X").Params({"@a", "@b"});
  ProcedureCall call(*host.db, "KIV_SP_X");
  call.In("@a", Variant(1)).In("@b", Variant(2));
  call.ClearInputs();
  EXPECT_TRUE(call.GetCommand()->GetParameters()["@a"].Value().IsNull());
  EXPECT_TRUE(call.GetCommand()->GetParameters()["@b"].Value().IsNull());
}

TEST_F(DbPatterns, UnitOfWorkKeepsOnANormalWayOutAndDiscardsOnAFailureOrWhenAsked) {
  { UnitOfWork unit(host.db.get()); }
  {
    UnitOfWork unit(host.db.get());
    unit.Discard();
  }
  try {
    UnitOfWork unit(host.db.get());
    throw HostError(3709, "connection lost");
  } catch (const HostError&) {
  }
  // A failure handled inside the unit does not discard it.
  {
    UnitOfWork unit(host.db.get());
    try {
      throw HostError(3709, "handled");
    } catch (const HostError&) {
    }
  }
  { UnitOfWork nothing(nullptr); }
  EXPECT_EQ(host.db->Units(), (std::vector<std::string>{"begin@0", "commit@0", "begin@0", "discard@0", "begin@0",
                                                         "discard@0", "begin@0", "commit@0"}));
}

}  // namespace
}  // namespace kiv::host

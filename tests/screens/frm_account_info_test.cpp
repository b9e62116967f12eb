// The account screen over the scripted host: the audit text of every kind of save, the
// customer's link written through its own save, the limit read from what the field shows,
// and the identifier check.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "records/c_customer.h"
#include "screens/account/frm_account_info.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using ui::ActionKind;

const std::string kRow = "SELECT * FROM kiv_account WHERE account_id = 'A-7'";
const std::string kLink = "SELECT account_id FROM kiv_customer WHERE customer_no = 42";
const char* const kUpdate = "KiV_SP_CUSTOMER_UpdateCustomer";

struct AccountRig {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();
  frmAccountInfo screen;

  //! `linked` is the account the customer row names; `row` whether the account exists and
  //! with what limit.
  AccountRig(const std::string& linked, bool row, double limit = 500, int32_t update_result = 0) {
    if (row)
      host.OnQuery(kRow).Row({{"account_id", "A-7"}, {"customer_no", 42}, {"Description", "LEE HOUSE"},
                              {"account_limit", limit}, {"account_balance", 120.5}});
    else
      host.OnQuery(kRow).Columns({{"account_id"}, {"customer_no"}, {"Description"}, {"account_limit"},
                                  {"account_balance"}});
    host.OnQuery(kLink).Row({{"account_id", linked}});
    host.OnQuery(frmAccountInfo::kPayMethodSql)
        .Row({{"Pay_Method_ID", "AMEX"}, {"Description", "American Express"}})
        .Row({{"Pay_Method_ID", "VISA"}, {"Description", "Visa"}});
    // The customer's save fails through its error flag.
    auto update = host.OnProcedure(kUpdate);
    if (update_result != 0) update.Fails();
    customer->SetCustomerNo(42);
    customer->SetFullName("ANN LEE");
    customer->SetDB(host.db);
    customer->SetErrorObject(host.errors);
    screen.SetUi(ui);
    screen.SetDBConnection(host.db);
    screen.SetErrorObject(host.errors);
    screen.SetAppServer(host.app);
    screen.SetCustomer(customer);
    screen.SetAccountID(row ? "A-7" : "");
    screen.Load();
    screen.Show();
  }
  void Do(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen.Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << control << " " << text << ": " << r.error;
  }
  std::vector<std::string> Audits() const {
    std::vector<std::string> out;
    for (const auto& a : host.app->Activities()) out.push_back(a.task_code + "|" + a.screen + "|" + a.detail);
    return out;
  }
  std::vector<std::string> Writes() const { return host.db->RecordsetFor(kRow)->OpsText(); }
};

TEST(AccountInfo, OpensOnTheAccountFormattedAsCurrencyWithThePayMethods) {
  AccountRig rig("A-7", true, 1500);
  EXPECT_EQ(rig.screen.Caption(), "Account Information for ANN LEE");
  EXPECT_EQ(rig.screen.fraAccountInformation.Caption(), "Account");
  EXPECT_EQ(rig.screen.txtAccountNo.Text(), "A-7");
  EXPECT_EQ(rig.screen.txtDescription.Text(), "LEE HOUSE");
  EXPECT_EQ(rig.screen.txtAccountLimit.Text(), "$1,500.00");
  EXPECT_EQ(rig.screen.txtAccountBalance.Text(), "$120.50");
  EXPECT_EQ(rig.screen.PayMethodList(), "AMEX\tAmerican Express|VISA\tVisa");
  ASSERT_EQ(rig.screen.cmbPayMethod.ListCount(), 2);
  EXPECT_EQ(rig.screen.cmbPayMethod.ItemKey(1), "VISA");
}

TEST(AccountInfo, EachKindOfSaveLeavesItsOwnAuditText) {
  struct Case {
    const char* name;
    std::string linked;
    bool row;
    double stored_limit;
    const char* typed_limit;
    std::vector<std::string> audits;
    bool customer_saved;
  };
  const std::vector<Case> cases{
      {"new account for a customer without one", "", false, 0, "2500",
       {"CUSTACTEDIT|Account|NEW=A-7;LT=2500;CN = 42;CN=42;CA=A-7"}, true},
      {"changed limit of the customer's own account", "A-7", true, 500, "750.25",
       {"CUSTACTEDIT|Account|AN=A-7;LT=750.25;CN=42;"}, false},
      {"customer moved to another existing account", "B-1", true, 500, "$500.00",
       {"CUSTACTEDIT|Account|CN=42;CA=A-7"}, true},
      {"unchanged account already linked", "A-7", true, 500, "$500.00", {}, false},
      {"a limit that is not a number", "A-7", true, 500, "abc", {"CUSTACTEDIT|Account|AN=A-7;LT=0;CN=42;"}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    AccountRig rig(c.linked, c.row, c.stored_limit);
    if (!c.row) rig.Do(ActionKind::Type, "txtAccountNo", "A-7");
    rig.Do(ActionKind::Paste, "txtAccountLimit", c.typed_limit);
    rig.Do(ActionKind::Click, "cmdOK");
    EXPECT_FALSE(rig.screen.Visible());
    EXPECT_EQ(rig.Audits(), c.audits);
    EXPECT_EQ(rig.host.db->Executions(kUpdate).size(), c.customer_saved ? 1u : 0u);
    if (c.customer_saved) {
      EXPECT_EQ(rig.host.db->AssignedValue(kUpdate, "@account_id"), Variant("A-7"));
    }
  }
}

TEST(AccountInfo, TheRowIsWrittenWithTheLimitAndNeverTheBalance) {
  AccountRig fresh("", false);
  fresh.Do(ActionKind::Type, "txtAccountNo", "A-7");
  fresh.Do(ActionKind::Type, "txtDescription", "Lee family");
  fresh.Do(ActionKind::Paste, "txtAccountLimit", "($20.00)");
  fresh.Do(ActionKind::Click, "cmdOK");
  EXPECT_EQ(fresh.Writes(), (std::vector<std::string>{"AddNew", "Set account_id=\"A-7\"", "Set customer_no=42",
                                                      "Set Description=\"Lee family\"", "Set account_limit=-20",
                                                      "Update", "Close"}));

  AccountRig known("A-7", true);
  known.Do(ActionKind::Click, "cmdOK");
  EXPECT_EQ(known.Writes(), (std::vector<std::string>{"Set Description=\"LEE HOUSE\"", "Set account_limit=500",
                                                      "Update", "Close"}));
}

TEST(AccountInfo, AmountFieldsAreReformattedWhenLeft) {
  AccountRig rig("A-7", true);
  rig.Do(ActionKind::Paste, "txtAccountLimit", "1234.5");
  rig.Do(ActionKind::Focus, "txtDescription");
  EXPECT_EQ(rig.screen.txtAccountLimit.Text(), "$1,234.50");
  rig.Do(ActionKind::Paste, "txtAccountLimit", "abc");
  rig.Do(ActionKind::Focus, "txtDescription");
  EXPECT_EQ(rig.screen.txtAccountLimit.Text(), "abc");
  EXPECT_DOUBLE_EQ(frmAccountInfo::AmountOf("$1,234.50"), 1234.5);
  EXPECT_DOUBLE_EQ(frmAccountInfo::AmountOf("($20.00)"), -20);
  EXPECT_DOUBLE_EQ(frmAccountInfo::AmountOf("-$5"), -5);
  EXPECT_DOUBLE_EQ(frmAccountInfo::AmountOf("12abc"), 0);
}

TEST(AccountInfo, AnEmptyIdentifierIsRefusedAndNothingIsWritten) {
  AccountRig rig("", false);
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdOK");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Please enter Account ID.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Invalid Account ID");
  EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbInformation);
  EXPECT_EQ(rig.screen.ActiveControl(), &rig.screen.txtAccountNo);
  EXPECT_TRUE(rig.screen.Visible());
  EXPECT_TRUE(rig.Audits().empty());
}

TEST(AccountInfo, AFailedCustomerSaveKeepsTheScreenOpenAndTheOldLink) {
  AccountRig rig("B-1", true, 500, -1);
  rig.Do(ActionKind::Click, "cmdOK");
  EXPECT_EQ(rig.host.db->Executions(kUpdate).size(), 1u);
  EXPECT_TRUE(rig.screen.Visible());
  EXPECT_TRUE(rig.Audits().empty());
  ASSERT_FALSE(rig.host.db->Units().empty());
  EXPECT_EQ(rig.host.db->Units().back().substr(0, 8), "discard@") << "the account row is not kept either";
}

}  // namespace
}  // namespace kiv

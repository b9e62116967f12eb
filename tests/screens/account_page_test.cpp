// The account page over the scripted host: the house account's two result sets and the lines
// behind a payment; the card grid's masked columns, "View CC Data", the Active and DTL marks,
// deletion with both server answers; and the hand-over to the card-entry control.
#include <gtest/gtest.h>

#include "frm_customer_detail_rig.h"
#include "screens/detail/account_page.h"
#include "support/scripted_suite.h"

namespace kiv {
namespace {

using test::Assignment;
using test::DetailRig;
using ui::ActionKind;

const std::string kGetCC = "KIV_SP_CUSTOMER_GetCC";
const std::string kUpdate = "KIV_SP_CUSTOMER_UpdateCreditCard";
const std::string kDelete = "KIV_SP_CUSTOMER_CC_delete";
const std::string kCardPayments = "KIV_SP_CUSTOMER_GetCCPayments";

test::Cells Card(int seq, const Variant& cc_card_no, const char* x_card_no, bool active) {
  return {{"x_card_no", x_card_no}, {"cc_card_no", cc_card_no}, {"card_seq_no", seq}, {"is_active", active},
          {"Pay_Method_ID", "VISA"}, {"exp_date", "12/2028"}, {"Zip", "05401"}, {"modified_on", Variant::Null()}};
}

struct AccountRig : DetailRig {
  AccountPage* page = nullptr;

  AccountRig() {
    for (const auto& p : screen->Pages())
      if (auto* a = dynamic_cast<AccountPage*>(p.get())) page = a;
    host.OnProcedure(kGetCC)
        .Row(Card(1, Variant::Null(), "XXXXXXXXXXXX1111", true))
        .Row(Card(2, Variant::Null(), "X42", false))
        .Row(Card(3, "4111 NOT MASKED", "XXXX3333", true));
    host.OnProcedure(kCardPayments)
        .Row({{"audited", false}, {"register_id", "REG1"}, {"control_no", 3}, {"invoice_no", 77}, {"payment_no", 5},
              {"payment_date", Date::FromParts(2026, 2, 1, 9, 0, 0)}, {"Pay_Method_ID", "VISA"}, {"Amount", -12.5}});
    host.OnProcedure("KIV_SP_CUSTOMER_GetAccountAndPayments")
        .Row({{"Description", "Lee family"}, {"account_limit", 2500.0}, {"account_balance", 120.5}})
        .NextResult()
        .Row({{"audited", true}, {"register_id", "REG2"}, {"control_no", 8}, {"invoice_no", 91}, {"payment_no", 6},
              {"payment_date", Date::FromParts(2026, 2, 2, 15, 30, 0)}, {"Pay_Method_ID", "ACCT"}, {"Amount", 40.0}});
    host.OnProcedure("KIV_SP_CUSTOMER_GetInvoiceLines")
        .Row({{"line_type", "L"}, {"line_no", 1}, {"line_date", Date::FromParts(2026, 2, 2)}, {"full_name", "ANN LEE"},
              {"linenet", 40.0}, {"long_description", "LESSON"}});
  }
  void Show(const char* view, int32_t customer_no = 42) {
    Person(customer_no);
    customer->SetAccountNo("A42");
    Open();
    Do(ActionKind::Click, "tabCustomer", std::to_string(AccountPage::kTab));
    Do(ActionKind::Click, "tabAccountType", view);
    host.db->ClearLog();
  }
  void Edit(int row, int col, const std::string& value) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Edit, "fgCC", value, {row}, col});
    EXPECT_TRUE(r.ok) << r.error;
  }
  bool Checked(int row, int col) const { return page->fgCC.CellChecked(row, col) == ui::flexChecked; }
  void Delete(int row) {
    page->fgCC.SetRow(row);
    Key("fgCC", "Delete");
  }
};

TEST(AccountPage, TheHouseAccountShowsItsLabelsPaymentsAndTheLinesOfAPayment) {
  AccountRig rig;
  rig.Show("RSVP");
  AccountPage& page = *rig.page;
  EXPECT_TRUE(page.fraAccountRSVP.Visible());
  EXPECT_FALSE(page.fraAccountCC.Visible());
  EXPECT_EQ(page.fraAccountPayments.Caption(), "Account Payment Transactions");
  EXPECT_EQ(page.fraAccountLines.Caption(), "Associated Account Payment Invoice Lines");
  EXPECT_EQ(page.lblAccountNo.Caption(), "A42");
  EXPECT_EQ(page.lblAccountDescription.Caption(), "Lee family");
  EXPECT_EQ(page.lblAccountLimit.Caption(), "$2,500.00");
  EXPECT_EQ(page.lblAccountBalance.Caption(), "$120.50");
  ASSERT_EQ(page.vsfAccountPayments.Rows(), 2);
  EXPECT_EQ(page.vsfAccountPayments.TextMatrix(1, 5), "02/02/2026 03:30 PM");

  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Select, "vsfAccountPayments", {}, {1}, 0});
  ASSERT_TRUE(r.ok) << r.error;
  EXPECT_EQ(rig.host.AssignmentsOf("KIV_SP_CUSTOMER_GetInvoiceLines"),
            (std::vector<Assignment>{{"@register_id", "REG2"}, {"@control_no", 8}, {"@invoice_no", 91}, {"@audited", true}}));
  ASSERT_EQ(page.vfgRSVPInvoiceLines.Rows(), 2);
  EXPECT_EQ(page.vfgRSVPInvoiceLines.TextMatrix(1, 9), "LESSON");
}

TEST(AccountPage, TheCardGridShowsMaskedNumbersAndViewCCDataSwapsTheColumns) {
  AccountRig rig;
  rig.Show("CC");
  ui::Grid& cards = rig.page->fgCC;
  EXPECT_EQ(cards.FormatString(), "SeqNo|Active|DTL|Type|Card#|Card#|Exp Date|Zip|Last Modified");
  EXPECT_EQ(rig.page->fraAccountPayments.Caption(), "Card Payment Transactions");
  struct Case {
    int row;
    const char* masked;
    const char* last_four;
  };
  const Case cases[] = {{1, "1111", "1111"}, {2, "X42", "X42"}, {3, "4111 NOT MASKED", "3333"}};
  for (const Case& c : cases) {
    EXPECT_EQ(cards.TextMatrix(c.row, AccountPage::kColMasked), c.masked) << c.row;
    EXPECT_EQ(cards.TextMatrix(c.row, AccountPage::kColLastFour), c.last_four) << c.row;
  }
  EXPECT_TRUE(rig.Checked(1, AccountPage::kColActive));
  EXPECT_FALSE(rig.Checked(2, AccountPage::kColActive));
  EXPECT_TRUE(cards.ColHidden(AccountPage::kColLastFour));
  EXPECT_FALSE(cards.ColHidden(AccountPage::kColMasked));

  rig.Do(ActionKind::Click, "mnuToolsViewCCData");
  EXPECT_TRUE(rig.screen->mnuToolsViewCCData.Checked());
  EXPECT_FALSE(cards.ColHidden(AccountPage::kColLastFour));
  EXPECT_TRUE(cards.ColHidden(AccountPage::kColMasked));
  rig.Key("fgCC", "Ctrl+D");
  EXPECT_FALSE(rig.screen->mnuToolsViewCCData.Checked());
  EXPECT_TRUE(cards.ColHidden(AccountPage::kColLastFour));
}

TEST(AccountPage, TheFirstCardsPaymentsShowAndAnotherCardReplacesThem) {
  AccountRig rig;
  rig.Show("CC");
  EXPECT_EQ(rig.page->vsfAccountPayments.DisplayText(1, 7), "($12.50)");
  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Select, "fgCC", {}, {3}, 0});
  ASSERT_TRUE(r.ok) << r.error;
  EXPECT_EQ(rig.host.AssignmentsOf(kCardPayments),
            (std::vector<Assignment>{{"@customer_no", 42}, {"@card_seq_no", 3}}));
  // The same card again reads nothing.
  r = rig.screen->Perform(ui::Action{ActionKind::Select, "fgCC", {}, {3}, 0});
  EXPECT_EQ(rig.host.db->Executions(kCardPayments).size(), 1u);
}

TEST(AccountPage, TheActiveMarkAsksInBothDirectionsAndKeepsTheServersStamp) {
  AccountRig rig;
  const Date stamp = Date::FromParts(2026, 3, 15, 10, 0, 0);
  rig.host.OnProcedure(kUpdate).Outputs({{"@RETURN_VALUE", 0}, {"@message", ""}, {"@modified_on", stamp}});
  rig.Show("CC");
  EXPECT_EQ(AccountPage::ActivationQuestion(false),
            "Are you sure you want to de-activate the selected credit card on file?");
  rig.ui->Answer(ui::vbYes);
  rig.Edit(1, AccountPage::kColActive, "false");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Are you sure you want to de-activate the selected credit card on file?");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Confirm Activation Change");
  EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2);
  EXPECT_EQ(rig.host.AssignmentsOf(kUpdate), (std::vector<Assignment>{{"@customer_no", 42},
                                                                      {"@card_seq_no", 1},
                                                                      {"@is_active", false},
                                                                      {"@kiv_user", rig.host.db->UserID()}}));
  EXPECT_EQ(rig.page->fgCC.TextMatrix(1, AccountPage::kColModified), NzString(Variant(stamp)));

  // Declined: nothing is sent and the box shows what the server holds.
  rig.ui->ClearBoxes();
  rig.ui->Answer(ui::vbNo);
  rig.Edit(2, AccountPage::kColActive, "true");
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Are you sure you want to activate the selected credit card on file?");
  EXPECT_EQ(rig.host.db->Executions(kUpdate).size(), 1u);
  EXPECT_FALSE(rig.Checked(2, AccountPage::kColActive));
  // Only Active and DTL are edited.
  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Edit, "fgCC", "MC", {1}, AccountPage::kColType});
  EXPECT_EQ(rig.page->fgCC.TextMatrix(1, AccountPage::kColType), "VISA") << r.error;
}

TEST(AccountPage, OneCardAtMostCarriesTheDtlMarkAndARefusalPutsItBack) {
  AccountRig rig;
  rig.host.OnProcedure(kUpdate).Outputs({{"@RETURN_VALUE", 0}, {"@message", ""}, {"@modified_on", Date::FromParts(2026, 3, 15)}});
  rig.Show("CC");
  rig.Edit(1, AccountPage::kColDtl, "true");
  rig.Edit(3, AccountPage::kColDtl, "true");
  EXPECT_FALSE(rig.Checked(1, AccountPage::kColDtl));
  EXPECT_TRUE(rig.Checked(3, AccountPage::kColDtl));
  EXPECT_EQ(rig.host.AssignedNames(kUpdate, 1),
            (std::vector<std::string>{"@customer_no", "@card_seq_no", "@is_active", "@kiv_user"}))
      << "the mark itself is never sent";
  EXPECT_TRUE(rig.ui->Boxes().empty());

  AccountRig refused;
  refused.host.OnProcedure(kUpdate).Outputs({{"@RETURN_VALUE", -1}, {"@message", "Card is locked."}});
  refused.Show("CC");
  refused.ui->Answer(ui::vbOK);
  refused.Edit(2, AccountPage::kColDtl, "true");
  ASSERT_EQ(refused.ui->Boxes().size(), 1u);
  EXPECT_EQ(refused.ui->Boxes()[0].prompt, "Card is locked.");
  EXPECT_EQ(refused.ui->Boxes()[0].title, "Error Updating Credit Card on File Status");
  EXPECT_FALSE(refused.Checked(2, AccountPage::kColDtl));
  EXPECT_EQ(refused.page->fgCC.TextMatrix(2, AccountPage::kColModified), "");
}

TEST(AccountPage, DeleteAsksWithTheRowAndFollowsBothServerAnswers) {
  EXPECT_EQ(AccountPage::DeleteQuestion("VISA", "XXXX1111", "12/2028"),
            "Are you sure you want to delete this VISA credit card on file ending in 1111 and expiration date of 12/2028?");
  AccountRig rig;
  rig.host.OnProcedure(kDelete).Once().Outputs({{"@RETURN_VALUE", 0}, {"@message", ""}});
  rig.host.OnProcedure(kDelete).Once().Outputs({{"@RETURN_VALUE", 1}, {"@message", "Used for 2 payments.  Delete?"}});
  rig.host.OnProcedure(kDelete).Once().Outputs({{"@RETURN_VALUE", 0}, {"@message", ""}});
  rig.host.OnProcedure(kDelete).Outputs({{"@RETURN_VALUE", -1}, {"@message", "Card is in use."}});
  rig.Show("CC");

  rig.ui->Answer(ui::vbYes);
  rig.Delete(2);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt,
            "Are you sure you want to delete this VISA credit card on file ending in X42 and expiration date of 12/2028?");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Confirm Credit Card Delete");
  EXPECT_EQ(rig.host.db->AssignedValue(kDelete, "@confirm_delete"), Variant(false));
  ASSERT_EQ(rig.page->fgCC.Rows(), 3);
  EXPECT_EQ(rig.page->fgCC.TextMatrix(2, AccountPage::kColSeqNo), "3");

  // The server warns; Yes sends the confirmed second call.
  rig.ui->ClearBoxes();
  rig.ui->Answer(ui::vbYes).Answer(ui::vbYes);
  rig.Delete(1);
  ASSERT_EQ(rig.ui->Boxes().size(), 2u);
  EXPECT_EQ(rig.ui->Boxes()[1].prompt, "Used for 2 payments.  Delete?");
  EXPECT_EQ(rig.ui->Boxes()[1].title, "Warning Deleting Credit Card");
  EXPECT_EQ(rig.host.db->AssignedValue(kDelete, "@confirm_delete", 2), Variant(true));
  ASSERT_EQ(rig.page->fgCC.Rows(), 2);

  // A refusal shows the server's reason and keeps the row.
  rig.ui->ClearBoxes();
  rig.ui->Answer(ui::vbYes).Answer(ui::vbOK);
  rig.Delete(1);
  EXPECT_EQ(rig.ui->Boxes()[1].prompt, "Card is in use.");
  EXPECT_EQ(rig.ui->Boxes()[1].title, "Error Deleting Credit Card");
  EXPECT_EQ(rig.page->fgCC.Rows(), 2);
}

TEST(AccountPage, DeleteWithoutTheRightOrOnTheHeaderChangesNothing) {
  AccountRig rig;
  rig.Show("CC");
  rig.Delete(0);
  EXPECT_TRUE(rig.ui->Boxes().empty());

  AccountRig clerk;
  clerk.host.app->Grant("CCDELETE", false);
  clerk.engine.SetAppServer(clerk.host.app);
  clerk.Show("CC");
  clerk.ui->Answer(ui::vbOK);
  clerk.Delete(1);
  ASSERT_EQ(clerk.ui->Boxes().size(), 1u);
  EXPECT_EQ(clerk.ui->Boxes()[0].prompt, "Sorry you to not have permission to delete customer credit cards on file.");
  EXPECT_EQ(clerk.ui->Boxes()[0].style, ui::vbOKOnly);
  EXPECT_TRUE(clerk.host.db->Executions(kDelete).empty());
  EXPECT_EQ(clerk.page->fgCC.Rows(), 4);
}

TEST(AccountPage, AddingACardStartsTheEntryControlAndShowsTheStoredCard) {
  AccountRig rig;
  auto entry = std::make_shared<test::ScriptedCardEntry>();
  rig.host.app->SetCardEntry(entry);
  rig.host.OnProcedure("KIV_SP_CUSTOMER_InsertCreditCard").Outputs({{"@RETURN_VALUE", 0}, {"@card_seq_no", 4}});
  rig.Show("CC");
  rig.Do(ActionKind::Click, "tabAccountType", "ADDCC");
  EXPECT_TRUE(rig.page->fraAccountAddCC.Visible());
  EXPECT_EQ(entry->Operations(),
            (std::vector<std::string>{"Initialize", "CustomerNo", "CustomerName", "BeginEntry"}));
  auto card = std::make_shared<test::ScriptedCardObject>();
  card->card_no = "4111111111111111";
  card->x_card_no = "XXXXXXXXXXXX1111";
  card->exp_date = "12/2028";
  entry->EnterCard(card);
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_CUSTOMER_InsertCreditCard", "@x_card_no"), Variant("XXXXXXXXXXXX1111"));
  EXPECT_EQ(card->customer_no, 42);
  EXPECT_EQ(rig.page->View(), "CC");
  EXPECT_TRUE(rig.page->fraAccountCC.Visible());
  EXPECT_FALSE(rig.page->fraAccountAddCC.Visible());
  EXPECT_EQ(rig.host.db->Executions(kGetCC).size(), 1u) << "the cards are read again";
}

TEST(AccountPage, AnUnsavedCustomerIsAskedAndNoLeavesTheEntryHidden) {
  AccountRig rig;
  auto entry = std::make_shared<test::ScriptedCardEntry>();
  rig.host.app->SetCardEntry(entry);
  rig.Show("RSVP", 0);
  rig.ui->Answer(ui::vbNo);
  rig.Do(ActionKind::Click, "tabAccountType", "ADDCC");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt,
            "You must save the current customer before adding cards on file.  Would you like to save the customer now?");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Save New Customer");
  EXPECT_FALSE(rig.page->fraAccountAddCC.Visible());
  EXPECT_TRUE(entry->Calls().empty());
  EXPECT_EQ(rig.page->tabAccountType.SelectedKey(), "RSVP");
}

}  // namespace
}  // namespace kiv

namespace kiv {
namespace {

TEST(AccountPage, AnUnsavedCustomerSavedOnYesGoesOnToTheCardEntry) {
  test::DetailRig rig;
  auto entry = std::make_shared<test::ScriptedCardEntry>();
  rig.host.app->SetCardEntry(entry);
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@RETURN_VALUE", 0}, {"@customer_no", 77}});
  rig.Person(0);
  rig.Open();
  rig.Do(ui::ActionKind::Paste, "txtFirstName", "ANNA");
  rig.Do(ui::ActionKind::Click, "tabCustomer", std::to_string(AccountPage::kTab));
  rig.ui->Answer(ui::vbYes);
  rig.Do(ui::ActionKind::Click, "tabAccountType", "ADDCC");
  EXPECT_EQ(rig.host.db->Executions(test::kUpdateCustomer).size(), 1u);
  EXPECT_EQ(rig.screen->CustomerNo(), 77);
  ASSERT_EQ(entry->Operations(), (std::vector<std::string>{"Initialize", "CustomerNo", "CustomerName", "BeginEntry"}));
  EXPECT_EQ(entry->Calls()[1].args, (std::vector<Variant>{77}));
}

}  // namespace
}  // namespace kiv

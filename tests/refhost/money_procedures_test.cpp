// The money side of the reference host on a real database: the house account's two result
// sets, the invoice history merged invoice by invoice, a card with payments deleted only on
// confirmation, the invoicing service, and the card-entry screen's checks.
#include <gtest/gtest.h>

#include "refhost/ref_card_entry.h"
#include "refhost/ref_invoicing_service.h"
#include "support/scripted_ui.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class MoneyProcedures : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_customer (customer_no, full_name, last_name, household_no, household_primary, "
                 "account_id) VALUES (1, 'ANN SMITH', 'SMITH', 1, 1, 'A1'), (2, 'TIM JONES', 'JONES', 2, 1, NULL)");
    db_->Execute("INSERT INTO kiv_account (account_id, Description, account_limit, account_balance) "
                 "VALUES ('A1', 'Smith family', 2500, 120.5)");
    db_->Execute("INSERT INTO kiv_sales_order (salesorder_no, customer_no, order_date, is_invoiced) VALUES "
                 "(10, 1, '2026-02-01', 0), (11, 2, '2026-02-02', 0)");
    db_->Execute("INSERT INTO kiv_sales_order_line (salesorder_no, line_no, item_id, description, quantity, price, "
                 "amount) VALUES (10, 1, 'LIFT', 'LIFT TICKET', 2, 50, 100), (10, 2, 'LESSON', 'LESSON', 1, 80, 80), "
                 "(10, 3, 'RENT', 'RENTAL', 1, 30, 30), (11, 1, 'LIFT', 'LIFT TICKET', 1, 50, 50)");
  }
  Variant Out(const std::shared_ptr<host::Command>& c, const char* name) { return c->GetParameters()[name].Value(); }
  std::vector<std::string> Column(host::Recordset& rs, const char* name) {
    std::vector<std::string> values;
    for (; !rs.Eof(); rs.MoveNext()) values.push_back(NzString(rs.FieldByName(name).Value()));
    return values;
  }
  std::vector<std::string> OpenLines(int32_t customer_no) {
    auto rs = Rows(Procedure("KiV_SP_GetSalesOrderLine", {{"@customer_no", Variant(customer_no)}, {"@open", Variant(true)}}));
    return Column(*rs, "so_line_no");
  }
  RefInvoicingService Invoicing() { return RefInvoicingService(db_, "CLERK", nullptr); }
};

TEST_F(MoneyProcedures, TheAccountComesFirstAndItsPaymentsFromTheNextResultSet) {
  db_->Execute("INSERT INTO kiv_payment (payment_no, invoice_no, customer_no, register_id, control_no, payment_date, "
               "pay_method_id, Amount, account_id) VALUES (5, 1, 1, 'REG1', 3, '2026-02-03 10:00:00', 'ACCT', 40, 'A1'), "
               "(6, 2, 2, 'REG1', 3, '2026-02-03 11:00:00', 'CASH', 9, NULL)");
  auto rs = Rows(Procedure("KIV_SP_CUSTOMER_GetAccountAndPayments",
                           {{"@customer_no", Variant(int32_t{1})}, {"@account_id", Variant("A1")}}));
  ASSERT_TRUE(rs);
  EXPECT_EQ(NzString(rs->FieldByName("Description").Value()), "Smith family");
  EXPECT_DOUBLE_EQ(NzDouble(rs->FieldByName("account_balance").Value()), 120.5);
  auto payments = rs->NextRecordset();
  ASSERT_TRUE(payments);
  EXPECT_EQ(Column(*payments, "payment_no"), (std::vector<std::string>{"5"}));
  EXPECT_EQ(payments->NextRecordset(), nullptr);

  // A procedure answering one result set has nothing after it.
  auto cards = Rows(Procedure("KIV_SP_CUSTOMER_GetCCPayments",
                              {{"@customer_no", Variant(int32_t{1})}, {"@card_seq_no", Variant(int32_t{1})}}));
  ASSERT_TRUE(cards);
  EXPECT_EQ(cards->NextRecordset(), nullptr);
}

TEST_F(MoneyProcedures, TheHistoryListsEachInvoiceThenItsLinesThenItsPayments) {
  RefInvoicingService invoicing = Invoicing();
  invoicing.Setup(10, {2, 1});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  invoicing.Setup(10, {3});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  auto rs = Rows(Procedure("KIV_SP_CLIENT_GetInvoiceData", {{"@customer_no", Variant(int32_t{1})}}));
  ASSERT_TRUE(rs);
  std::vector<std::string> kinds;
  std::vector<std::string> paid;
  for (; !rs->Eof(); rs->MoveNext()) {
    kinds.push_back(NzString(rs->FieldByName("line_type").Value()) + NzString(rs->FieldByName("invoice_no").Value()));
    if (kinds.back()[0] == 'I') paid.push_back(NzString(rs->FieldByName("total_paid").Value()));
  }
  // Both invoices carry today's date; the later number comes first.
  EXPECT_EQ(kinds, (std::vector<std::string>{"I2", "L2", "P2", "I1", "L1", "L1", "P1"}));
  EXPECT_EQ(paid, (std::vector<std::string>{"30", "180"}));
  auto lines = Rows(Procedure("KIV_SP_CUSTOMER_GetInvoiceLines", {{"@register_id", Variant("REG1")},
                                                                  {"@control_no", Variant(int32_t{1})},
                                                                  {"@invoice_no", Variant(int32_t{1})},
                                                                  {"@audited", Variant(false)}}));
  ASSERT_TRUE(lines);
  EXPECT_EQ(Column(*lines, "long_description"), (std::vector<std::string>{"LESSON", "LIFT TICKET"}))
      << "lines in the order they were handed over";
}

TEST_F(MoneyProcedures, InvoicingTakesTheLinesOffTheOpenListAndClosesAFinishedOrder) {
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, pay_method_id, is_active) "
               "VALUES (1, 1, 'XXXXXXXXXXXX1111', '1111', 'VISA', 0), (1, 2, 'XXXXXXXXXXXX4242', '4242', 'MC', 1)");
  RefInvoicingService invoicing = Invoicing();
  invoicing.Setup(10, {1, 2});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  EXPECT_EQ(OpenLines(1), (std::vector<std::string>{"3"}));
  EXPECT_EQ(NzDouble(Scalar("SELECT amount FROM kiv_invoice WHERE invoice_no = 1")), 180.0);
  // Paid with the active card, not the inactive one nor the house account.
  EXPECT_EQ(NzString(Scalar("SELECT pay_method_id || '/' || card_seq_no FROM kiv_payment")), "MC/2");
  EXPECT_EQ(NzLong(Scalar("SELECT is_invoiced FROM kiv_sales_order WHERE salesorder_no = 10")), 0);

  invoicing.Setup(10, {3});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  EXPECT_TRUE(OpenLines(1).empty());
  EXPECT_EQ(NzLong(Scalar("SELECT is_invoiced FROM kiv_sales_order WHERE salesorder_no = 10")), 1);
}

TEST_F(MoneyProcedures, InvoicingRefusesWhatItCannotInvoiceAndWritesNothing) {
  RefInvoicingService invoicing = Invoicing();
  invoicing.Setup(10, {1});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  const int64_t invoices = Count("kiv_invoice"), lines = Count("kiv_invoice_line"), payments = Count("kiv_payment");
  struct Case {
    const char* what;
    int32_t order;
    std::vector<int32_t> lines;
    int32_t customer;
  };
  const Case cases[] = {
      {"a line already invoiced, beside a new one", 10, {2, 1}, 1},
      {"a line the order does not have", 10, {9}, 1},
      {"another customer's order", 11, {1}, 1},
      {"nothing set up", 10, {}, 1},
  };
  for (const Case& c : cases) {
    invoicing.Setup(c.order, c.lines);
    EXPECT_FALSE(invoicing.InvoiceAndPay(c.customer, c.order)) << c.what;
    EXPECT_EQ(Count("kiv_invoice"), invoices) << c.what;
    EXPECT_EQ(Count("kiv_invoice_line"), lines) << c.what;
    EXPECT_EQ(Count("kiv_payment"), payments) << c.what;
  }
  // Lines set up for one order are not invoiced under another's number.
  invoicing.Setup(10, {2});
  EXPECT_FALSE(invoicing.InvoiceAndPay(2, 11));
  // Without a card the house account pays, and its balance grows by both invoices (100 and 80).
  invoicing.Setup(10, {2});
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  EXPECT_EQ(NzString(Scalar("SELECT pay_method_id || '/' || account_id FROM kiv_payment ORDER BY payment_no DESC")),
            "ACCT/A1");
  EXPECT_DOUBLE_EQ(NzDouble(Scalar("SELECT account_balance FROM kiv_account")), 300.5);
}

TEST_F(MoneyProcedures, ThePaymentScreenOffersTheWaysToPayAndCancelWritesNothing) {
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, pay_method_id, is_active) "
               "VALUES (1, 2, 'XXXXXXXXXXXX4242', '4242', 'MC', 1)");
  auto ui = std::make_shared<test::ScriptedUi>();
  RefInvoicingService invoicing = Invoicing();
  invoicing.SetUi(ui);
  std::string choose;
  std::vector<std::string> offered;
  ui->OnModal([&](ui::Form&) {
    frmInvoicePayment& form = invoicing.PaymentForm();
    offered.clear();
    for (int i = 0; i < form.cmbPayMethod.ListCount(); ++i) offered.push_back(form.cmbPayMethod.ItemKey(i));
    if (choose.empty()) return form.cmdCancel.FireClick();
    form.cmbPayMethod.SetListIndex(form.cmbPayMethod.FindKey(choose));
    form.cmdOk.FireClick();
  });
  invoicing.Setup(10, {1});
  EXPECT_FALSE(invoicing.InvoiceAndPay(1, 10));
  EXPECT_EQ(offered, (std::vector<std::string>{"CC2", "ACCT", "CASH", "CHECK"}));
  EXPECT_EQ(Count("kiv_invoice") + Count("kiv_invoice_line") + Count("kiv_payment"), 0);
  EXPECT_EQ(invoicing.PaymentForm().lblTotal.Caption(), "$100.00");

  choose = "CHECK";
  ASSERT_TRUE(invoicing.InvoiceAndPay(1, 10));
  EXPECT_EQ(NzString(Scalar("SELECT pay_method_id || '/' || IFNULL(card_seq_no, '-') FROM kiv_payment")), "CHECK/-");
  EXPECT_DOUBLE_EQ(NzDouble(Scalar("SELECT account_balance FROM kiv_account")), 120.5);
}

TEST_F(MoneyProcedures, ACardUsedForPaymentsIsDeletedOnlyOnTheConfirmedSecondCall) {
  db_->Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, is_active) "
               "VALUES (1, 1, 'XXXXXXXXXXXX1111', '1111', 0), (1, 2, 'XXXXXXXXXXXX2222', '2222', 0)");
  db_->Execute("INSERT INTO kiv_payment (payment_no, invoice_no, card_customer_no, card_seq_no, Amount) "
               "VALUES (1, 1, 1, 1, 10), (2, 2, 1, 1, 20)");
  auto del = [&](int32_t seq, bool confirm, std::string* message = nullptr) {
    auto c = Procedure("KIV_SP_CUSTOMER_CC_delete", {{"@customer_no", Variant(int32_t{1})},
                                                     {"@card_seq_no", Variant(seq)},
                                                     {"@kiv_user", Variant("CLERK")},
                                                     {"@confirm_delete", Variant(confirm)}});
    EXPECT_TRUE(Run(c));
    if (message) *message = NzString(Out(c, "@message"));
    return Out(c, "@return_value").ToLong();
  };
  std::string message;
  EXPECT_EQ(del(1, false, &message), 1);
  EXPECT_EQ(message, "This card on file was used for 2 payments.  Delete it anyway?");
  EXPECT_EQ(Count("kiv_customer_cc"), 2);
  EXPECT_EQ(del(1, true), 0);
  EXPECT_EQ(Count("kiv_customer_cc"), 1);
  EXPECT_EQ(Count("kiv_payment"), 2) << "the payments keep their history";
  EXPECT_EQ(del(2, false), 0) << "an inactive card without payments goes at once";
}

class CardEntryScreen : public MoneyProcedures {
 protected:
  void SetUp() override {
    MoneyProcedures::SetUp();
    ui_->SetStrict(false);
    entry_.SetUi(ui_);
    entry_.SetToday([] { return Date::FromParts(2026, 3, 14); });
    entry_.SetCardEnteredHandler([this](std::shared_ptr<host::CardObject> card) { cards_.push_back(card); });
    entry_.Initialize(nullptr, nullptr);
    entry_.BeginEntry();
  }
  void Enter(const std::string& number, const std::string& expiry, const std::string& zip,
             const std::string& swipe = {}) {
    frmCardEntry& form = entry_.Form();
    form.txtSwipe.SetText(swipe);
    form.txtCardNo.SetText(number);
    form.txtExpDate.SetText(expiry);
    form.txtZip.SetText(zip);
    form.cmdOk.FireClick();
  }
  std::shared_ptr<test::ScriptedUi> ui_ = std::make_shared<test::ScriptedUi>();
  RefCardEntry entry_{nullptr};
  std::vector<std::shared_ptr<host::CardObject>> cards_;
};

TEST_F(CardEntryScreen, RefusesWhatIsNotACardWithAClearMessage) {
  struct Case {
    const char* number;
    const char* expiry;
    const char* zip;
    const char* message;
  };
  const Case cases[] = {
      {"4111 1111 1111 1112", "12/28", "05401", "The card number is not valid.  Check the number and type it again."},
      {"4111-1111-111A-1111", "12/28", "05401", "The card number is not valid.  Check the number and type it again."},
      {"411111111111", "12/28", "05401", "The card number is not valid.  Check the number and type it again."},
      {"4111111111111111", "02/26", "05401", "The card expired in 02/26."},
      {"4111111111111111", "13/28", "05401", "The expiration date must be given as month and year (MM/YY)."},
      {"4111111111111111", "1228", "05401", "The expiration date must be given as month and year (MM/YY)."},
      {"4111111111111111", "12/28", "O54O1", "The billing zip must be five digits (or five, a dash and four)."},
      {"4111111111111111", "12/28", "05401-12", "The billing zip must be five digits (or five, a dash and four)."},
  };
  for (const Case& c : cases) {
    ui_->ClearBoxes();
    Enter(c.number, c.expiry, c.zip);
    ASSERT_EQ(ui_->Boxes().size(), 1u) << c.number << " " << c.expiry << " " << c.zip;
    EXPECT_EQ(ui_->Boxes()[0].prompt, c.message);
    EXPECT_EQ(ui_->Boxes()[0].title, "Card Entry");
  }
  EXPECT_TRUE(cards_.empty());
  EXPECT_EQ(entry_.CardsEntered(), 0);
}

TEST_F(CardEntryScreen, HandsOverAGoodCardAndForgetsItsNumber) {
  Enter("5555 5555 5555 4444", "03/26", "05401-1234");
  ASSERT_EQ(cards_.size(), 1u);
  EXPECT_TRUE(ui_->Boxes().empty()) << "this month's expiry is still good";
  EXPECT_EQ(cards_[0]->CardNo(), "5555555555554444");
  EXPECT_EQ(cards_[0]->XCardNo(), "XXXXXXXXXXXX4444");
  EXPECT_EQ(cards_[0]->ExpDate(), "03/2026");
  EXPECT_EQ(cards_[0]->PayMethodID(), "MC");
  EXPECT_EQ(entry_.Form().txtCardNo.Text(), "") << "the screen keeps no number once the card is handed over";

  // A swipe line gives number and expiry from its tracks.
  Enter("", "", "", "%B4111111111111111^SMITH/ANN^2812101000000?;4111111111111111=28121010000?");
  ASSERT_EQ(cards_.size(), 2u);
  EXPECT_EQ(cards_[1]->CardNo(), "4111111111111111");
  EXPECT_EQ(cards_[1]->ExpDate(), "12/2028");
  EXPECT_EQ(cards_[1]->Track2(), ";4111111111111111=28121010000?");
  EXPECT_EQ(entry_.Form().txtSwipe.Text(), "");
}

}  // namespace
}  // namespace kiv::refhost::testing

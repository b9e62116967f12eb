// Invoicing as a cashier would: the clerk chooses how to pay, then one invoice is written with
// its lines copied from the order and paid in full, all in one transaction so a failure leaves
// the order as it was.
#include "refhost/ref_invoicing_service.h"

#include "core/format.h"
#include "core/text.h"
#include "refhost/row_set.h"
#include "host/host_error.h"

namespace kiv::refhost {

RefInvoicingService::RefInvoicingService(std::shared_ptr<SqliteDatabase> db, std::string user_id,
                                         std::shared_ptr<TraceHook> trace)
    : db_(std::move(db)), user_id_(std::move(user_id)), trace_(std::move(trace)) {}

void RefInvoicingService::Setup(int32_t salesorder_no, const std::vector<int32_t>& so_line_nos) {
  salesorder_no_ = salesorder_no;
  line_nos_ = so_line_nos;
  std::string lines;
  for (int32_t no : so_line_nos) lines += (lines.empty() ? "" : ",") + std::to_string(no);
  TraceHostCall(trace_, "Invoicing.Setup", {{"salesorder_no", Variant(salesorder_no)}, {"so_line_nos", Variant(lines)}});
}

bool RefInvoicingService::InvoiceAndPay(int32_t customer_no, int32_t salesorder_no) {
  bool invoiced = false;
  try {
    invoiced = Invoice(customer_no, salesorder_no);
  } catch (const HostError&) {
    invoiced = false;
  }
  TraceHostCall(trace_, "Invoicing.InvoiceAndPay",
                {{"customer_no", Variant(customer_no)}, {"salesorder_no", Variant(salesorder_no)}},
                {{"result", Variant(invoiced)}, {"invoice_no", Variant(invoiced ? last_invoice_no_ : 0)}});
  if (invoiced) line_nos_.clear();
  return invoiced;
}

bool RefInvoicingService::Invoiceable(int32_t customer_no, int32_t salesorder_no, double& total) const {
  total = 0;
  if (salesorder_no != salesorder_no_ || line_nos_.empty()) return false;
  SqliteDatabase& db = *db_;
  const Variant order(salesorder_no);
  Variant owner = db.QueryValue("SELECT customer_no FROM kiv_sales_order WHERE salesorder_no = ?", {order});
  if (owner.IsNull()) return false;
  Variant for_customer = db.QueryValue(
      "SELECT IFNULL(for_customer_no, customer_no) FROM kiv_sales_order WHERE salesorder_no = ?", {order});
  // The order may be the customer's own or one placed for them.
  if (NzLong(owner) != customer_no && NzLong(for_customer) != customer_no) return false;
  for (int32_t so_line : line_nos_) {
    const std::vector<Variant> key{order, Variant(so_line)};
    Variant amount = db.QueryValue("SELECT amount FROM kiv_sales_order_line WHERE salesorder_no = ? AND line_no = ?", key);
    if (amount.IsNull()) return false;
    if (!db.QueryValue("SELECT 1 FROM kiv_invoice_line WHERE salesorder_no = ? AND so_line_no = ?", key).IsNull())
      return false;
    total += NzDouble(amount);
  }
  return true;
}

std::vector<RefInvoicingService::PayChoice> RefInvoicingService::Choices(int32_t customer_no) const {
  std::vector<PayChoice> choices;
  SqliteDatabase& db = *db_;
  StatementLease cards = db.Prepare(
      "SELECT card_seq_no, pay_method_id, last_four FROM kiv_customer_cc WHERE customer_no = ? AND is_active <> 0 "
      "ORDER BY card_seq_no DESC");
  BindVariant(cards.get(), 1, Variant(customer_no));
  for (const auto& row : ReadRowSet(db, cards).rows)
    choices.push_back({"CC" + NzString(row[0]), NzString(row[1]) + " card on file ending in " + NzString(row[2])});
  const std::string account =
      NzString(db.QueryValue("SELECT account_id FROM kiv_customer WHERE customer_no = ?", {Variant(customer_no)}));
  if (!account.empty()) choices.push_back({"ACCT", "House account " + account});
  choices.push_back({"CASH", "Cash"});
  choices.push_back({"CHECK", "Check"});
  return choices;
}

std::string RefInvoicingService::AskHowToPay(int32_t customer_no, int32_t salesorder_no, double total) {
  const std::vector<PayChoice> choices = Choices(customer_no);
  if (!ui_) return choices.front().key;
  form_.SetUi(ui_);
  form_.Reset();
  form_.cmbPayMethod.Clear();
  for (const PayChoice& choice : choices) form_.cmbPayMethod.AddItem(choice.text, choice.key);
  form_.cmbPayMethod.SetListIndex(0);
  form_.lblOrder.SetCaption("Sales order " + std::to_string(salesorder_no) + ", " + std::to_string(line_nos_.size()) +
                            (line_nos_.size() == 1 ? " line" : " lines"));
  form_.lblTotal.SetCaption(Format(Variant(Currency::FromDouble(total)), "Currency"));
  form_.Show(ui::vbModal);
  if (!form_.Paid()) return {};
  return form_.cmbPayMethod.SelectedKey();
}

bool RefInvoicingService::Invoice(int32_t customer_no, int32_t salesorder_no) {
  double total = 0;
  if (!Invoiceable(customer_no, salesorder_no, total)) return false;
  // The clerk is asked before anything is locked or written.
  const std::string how = AskHowToPay(customer_no, salesorder_no, total);
  if (how.empty()) return false;
  SqliteDatabase& db = *db_;
  Transaction transaction(db, true);
  // Another terminal may have invoiced a line while the screen was up.
  if (!Invoiceable(customer_no, salesorder_no, total)) return false;
  const Variant order(salesorder_no);
  Variant for_customer = db.QueryValue(
      "SELECT IFNULL(for_customer_no, customer_no) FROM kiv_sales_order WHERE salesorder_no = ?", {order});
  const int32_t invoice_no = NzLong(db.QueryValue("SELECT IFNULL(MAX(invoice_no), 0) + 1 FROM kiv_invoice"));
  const Variant now(db.Now());
  int32_t line_no = 0;
  for (int32_t so_line : line_nos_) {
    db.Execute(
        "INSERT INTO kiv_invoice_line (invoice_no, line_no, line_date, customer_no, salesorder_no, so_line_no, "
        "item_id, long_description, qty, unit_qty, unit_id, gross_unit_price, unit_price, unit_commission, "
        "unit_discount, line_tax, linenet, season_no, kiv_user) "
        "SELECT ?, ?, ?, ?, l.salesorder_no, l.line_no, l.item_id, l.description, l.quantity, NULL, 'EA', l.price, "
        "l.price, 0, 0, 0, l.amount, CAST(strftime('%Y', ?) AS INTEGER), ? FROM kiv_sales_order_line l "
        "WHERE l.salesorder_no = ? AND l.line_no = ?",
        {Variant(invoice_no), Variant(++line_no), now, for_customer, now, Variant(user_id_), order, Variant(so_line)});
  }
  db.Execute("INSERT INTO kiv_invoice (invoice_no, salesorder_no, customer_no, invoice_date, amount, balance) "
             "VALUES (?, ?, ?, ?, ?, 0)",
             {Variant(invoice_no), order, Variant(customer_no), now, Variant(Currency::FromDouble(total))});
  Pay(customer_no, invoice_no, total, how);
  // An order is closed once nothing of it is left to invoice.
  db.Execute(
      "UPDATE kiv_sales_order SET is_invoiced = 1, status_id = 'CLOSED' WHERE salesorder_no = ?1 AND NOT EXISTS "
      "(SELECT 1 FROM kiv_sales_order_line l WHERE l.salesorder_no = ?1 AND NOT EXISTS (SELECT 1 FROM "
      "kiv_invoice_line il WHERE il.salesorder_no = l.salesorder_no AND il.so_line_no = l.line_no))",
      {order});
  transaction.Commit();
  last_invoice_no_ = invoice_no;
  return true;
}

void RefInvoicingService::Pay(int32_t customer_no, int32_t invoice_no, double amount, const std::string& how) {
  SqliteDatabase& db = *db_;
  const Variant customer(customer_no);
  const int32_t payment_no = NzLong(db.QueryValue("SELECT IFNULL(MAX(payment_no), 0) + 1 FROM kiv_payment"));
  Variant method(how);
  Variant account = Variant::Null();
  Variant card_customer = Variant::Null();
  Variant card_seq = Variant::Null();
  Variant authorizer = Variant::Null();
  if (how.rfind("CC", 0) == 0) {
    card_seq = Variant(static_cast<int32_t>(std::stol(how.substr(2))));
    card_customer = customer;
    method = db.QueryValue("SELECT pay_method_id FROM kiv_customer_cc WHERE customer_no = ? AND card_seq_no = ?",
                           {customer, card_seq});
    authorizer = Variant(UCase(user_id_));
  } else if (how == "ACCT") {
    account = db.QueryValue("SELECT account_id FROM kiv_customer WHERE customer_no = ?", {customer});
    db.Execute("UPDATE kiv_account SET account_balance = IFNULL(account_balance, 0) + ? WHERE account_id = ?",
               {Variant(Currency::FromDouble(amount)), account});
  }
  db.Execute(
      "INSERT INTO kiv_payment (payment_no, invoice_no, customer_no, register_id, control_no, audited, payment_date, "
      "pay_method_id, pay_action_id, Amount, account_id, card_customer_no, card_seq_no, authorizer, comment_note, "
      "kiv_user) VALUES (?, ?, ?, ?, ?, 0, ?, ?, 'SA', ?, ?, ?, ?, ?, ?, ?)",
      {Variant(payment_no), Variant(invoice_no), customer, Variant(kRegisterId), Variant(kControlNo), Variant(db.Now()),
       method, Variant(Currency::FromDouble(amount)), account, card_customer, card_seq, authorizer,
       Variant("Invoiced at the customer screen"), Variant(user_id_)});
}

}  // namespace kiv::refhost

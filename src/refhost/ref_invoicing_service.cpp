// Invoicing as a cashier would: one invoice per call, its lines copied from the order, paid
// in full at once, all in one transaction so a failure leaves the order as it was.
#include "refhost/ref_invoicing_service.h"

#include "core/text.h"
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

bool RefInvoicingService::Invoice(int32_t customer_no, int32_t salesorder_no) {
  if (salesorder_no != salesorder_no_ || line_nos_.empty()) return false;
  SqliteDatabase& db = *db_;
  Transaction transaction(db, true);
  const Variant order(salesorder_no);
  Variant owner = db.QueryValue("SELECT customer_no FROM kiv_sales_order WHERE salesorder_no = ?", {order});
  if (owner.IsNull()) return false;
  Variant for_customer = db.QueryValue(
      "SELECT IFNULL(for_customer_no, customer_no) FROM kiv_sales_order WHERE salesorder_no = ?", {order});
  // The order may be the customer's own or one placed for them.
  if (NzLong(owner) != customer_no && NzLong(for_customer) != customer_no) return false;

  const int32_t invoice_no = NzLong(db.QueryValue("SELECT IFNULL(MAX(invoice_no), 0) + 1 FROM kiv_invoice"));
  const Variant now(db.Now());
  double total = 0;
  int32_t line_no = 0;
  for (int32_t so_line : line_nos_) {
    const std::vector<Variant> key{order, Variant(so_line)};
    if (db.QueryValue("SELECT 1 FROM kiv_sales_order_line WHERE salesorder_no = ? AND line_no = ?", key).IsNull())
      return false;
    if (!db.QueryValue("SELECT 1 FROM kiv_invoice_line WHERE salesorder_no = ? AND so_line_no = ?", key).IsNull())
      return false;
    db.Execute(
        "INSERT INTO kiv_invoice_line (invoice_no, line_no, line_date, customer_no, salesorder_no, so_line_no, "
        "item_id, long_description, qty, unit_qty, unit_id, gross_unit_price, unit_price, unit_commission, "
        "unit_discount, line_tax, linenet, season_no, kiv_user) "
        "SELECT ?, ?, ?, ?, l.salesorder_no, l.line_no, l.item_id, l.description, l.quantity, NULL, 'EA', l.price, "
        "l.price, 0, 0, 0, l.amount, CAST(strftime('%Y', ?) AS INTEGER), ? FROM kiv_sales_order_line l "
        "WHERE l.salesorder_no = ? AND l.line_no = ?",
        {Variant(invoice_no), Variant(++line_no), now, for_customer, now, Variant(user_id_), order, Variant(so_line)});
    total += NzDouble(db.QueryValue("SELECT amount FROM kiv_sales_order_line WHERE salesorder_no = ? AND line_no = ?",
                                    key));
  }
  db.Execute("INSERT INTO kiv_invoice (invoice_no, salesorder_no, customer_no, invoice_date, amount, balance) "
             "VALUES (?, ?, ?, ?, ?, 0)",
             {Variant(invoice_no), order, Variant(customer_no), now, Variant(Currency::FromDouble(total))});
  Pay(customer_no, invoice_no, total);
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

void RefInvoicingService::Pay(int32_t customer_no, int32_t invoice_no, double amount) {
  SqliteDatabase& db = *db_;
  const Variant customer(customer_no);
  const int32_t payment_no = NzLong(db.QueryValue("SELECT IFNULL(MAX(payment_no), 0) + 1 FROM kiv_payment"));
  Variant card_seq = db.QueryValue(
      "SELECT card_seq_no FROM kiv_customer_cc WHERE customer_no = ? AND is_active <> 0 ORDER BY card_seq_no DESC "
      "LIMIT 1",
      {customer});
  Variant account = db.QueryValue("SELECT account_id FROM kiv_customer WHERE customer_no = ?", {customer});
  Variant method("CASH");
  Variant card_customer = Variant::Null();
  if (!card_seq.IsNull()) {
    method = db.QueryValue("SELECT pay_method_id FROM kiv_customer_cc WHERE customer_no = ? AND card_seq_no = ?",
                           {customer, card_seq});
    card_customer = customer;
    account = Variant::Null();
  } else if (!account.IsNull() && !NzString(account).empty()) {
    method = Variant("ACCT");
    db.Execute("UPDATE kiv_account SET account_balance = IFNULL(account_balance, 0) + ? WHERE account_id = ?",
               {Variant(Currency::FromDouble(amount)), account});
  } else {
    account = Variant::Null();
  }
  db.Execute(
      "INSERT INTO kiv_payment (payment_no, invoice_no, customer_no, register_id, control_no, audited, payment_date, "
      "pay_method_id, pay_action_id, Amount, account_id, card_customer_no, card_seq_no, authorizer, comment_note, "
      "kiv_user) VALUES (?, ?, ?, ?, ?, 0, ?, ?, 'SA', ?, ?, ?, ?, ?, ?, ?)",
      {Variant(payment_no), Variant(invoice_no), customer, Variant(kRegisterId), Variant(kControlNo), Variant(db.Now()),
       method, Variant(Currency::FromDouble(amount)), account, card_customer, card_seq, Variant(UCase(user_id_)),
       Variant("Invoiced at the customer screen"), Variant(user_id_)});
}

}  // namespace kiv::refhost

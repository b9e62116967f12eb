// Procedures of the money pages: the payments made with a card on file, a customer's
// invoice history (invoices, their lines and payments in one list), the house account with
// its payments (two result sets), and the lines of one invoice.
#include <map>
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/row_set.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

// The payment columns every payments grid reads.
constexpr const char* kPaymentColumns =
    "SELECT p.audited, p.register_id, p.control_no, p.invoice_no, p.payment_no, p.payment_date, "
    "p.pay_method_id AS Pay_Method_ID, p.Amount FROM kiv_payment p ";

// The line fields of an invoice line, as the history and the payment-lines grid read them.
constexpr const char* kLineColumns =
    "SELECT 'L' AS line_type, l.invoice_no, l.line_no, l.line_date, c.full_name, l.linenet, "
    "NULL AS start_access, NULL AS end_access, NULL AS valid_date, 0 AS is_extension_sale, l.long_description, "
    "l.item_id AS stock_no, NULL AS serial_no, l.season_no, 'Season ' || l.season_no AS season_description, "
    "l.discount_id, NULL AS discount_program, l.qty, l.unit_qty, l.unit_id, l.gross_unit_price, l.unit_price, "
    "l.unit_commission, l.unit_discount, l.line_tax, l.Refundable, NULL AS discount_reason, NULL AS return_reason, "
    "l.kiv_user, NULL AS authorizer_no, NULL AS authorizer, l.comment_note "
    "FROM kiv_invoice_line l LEFT JOIN kiv_customer c ON c.customer_no = l.customer_no ";

RowSet Query(SqliteDatabase& db, const std::string& sql, const std::vector<Variant>& args) {
  StatementLease lease = db.Prepare(sql);
  for (size_t i = 0; i < args.size(); ++i) BindVariant(lease.get(), static_cast<int>(i + 1), args[i]);
  return ReadRowSet(db, lease);
}

void CardPayments(ProcedureCall& call) {
  call.ReturnRows(std::string(kPaymentColumns) +
                      "WHERE p.card_customer_no = ? AND p.card_seq_no = ? ORDER BY p.payment_date DESC, p.payment_no DESC",
                  {Variant(call.Long("@customer_no")), Variant(call.Long("@card_seq_no"))});
}

// The three kinds are read apart (each keeps its columns' types) and merged invoice by
// invoice: the invoice, then its lines, then its payments.
void InvoiceData(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  const std::vector<Variant> customer{Variant(call.Long("@customer_no"))};
  RowSet invoices = Query(
      db,
      "SELECT 'I' AS line_type, (SELECT p.register_id FROM kiv_payment p WHERE p.invoice_no = i.invoice_no "
      "ORDER BY p.payment_no LIMIT 1) AS register_id, (SELECT p.control_no FROM kiv_payment p WHERE p.invoice_no = "
      "i.invoice_no ORDER BY p.payment_no LIMIT 1) AS control_no, i.invoice_no, i.salesorder_no, i.invoice_date, "
      "c.full_name, i.amount AS total_due, i.balance, NULL AS voucher_no, NULL AS voucher_serial_id "
      "FROM kiv_invoice i JOIN kiv_customer c ON c.customer_no = i.customer_no WHERE i.customer_no = ? "
      "ORDER BY i.invoice_date DESC, i.invoice_no DESC",
      customer);
  RowSet lines = Query(db,
                       std::string(kLineColumns) +
                           "WHERE l.invoice_no IN (SELECT invoice_no FROM kiv_invoice WHERE customer_no = ?) "
                           "ORDER BY l.invoice_no, l.line_no",
                       customer);
  RowSet payments = Query(
      db,
      "SELECT 'P' AS line_type, p.invoice_no, p.payment_no, p.payment_date, p.customer_no, c.full_name, p.Amount, "
      "p.account_id, p.pay_method_id AS Pay_Method_ID, p.pay_action_id, p.authorizer, p.comment_note "
      "FROM kiv_payment p LEFT JOIN kiv_customer c ON c.customer_no = p.customer_no "
      "WHERE p.invoice_no IN (SELECT invoice_no FROM kiv_invoice WHERE customer_no = ?) ORDER BY p.invoice_no, "
      "p.payment_no",
      customer);

  // The paid total is what the payments came to; the stored balance is what is still due.
  RowSet& out = call.Rows();
  std::map<std::string, size_t> position;
  auto add_columns = [&](const RowSet& set) {
    for (const ColumnInfo& column : set.columns) {
      if (position.count(column.name) != 0) continue;
      position[column.name] = out.columns.size();
      out.columns.push_back(column);
    }
  };
  add_columns(invoices);
  out.columns.push_back(invoices.columns[static_cast<size_t>(FindColumn(invoices.columns, "total_due"))]);
  out.columns.back().name = "total_paid";
  position["total_paid"] = out.columns.size() - 1;
  add_columns(lines);
  add_columns(payments);
  auto append = [&](const RowSet& set, const std::vector<Variant>& row) {
    std::vector<Variant> merged(out.columns.size(), Variant::Null());
    for (size_t c = 0; c < set.columns.size(); ++c) merged[position[set.columns[c].name]] = row[c];
    out.rows.push_back(std::move(merged));
    return out.rows.size() - 1;
  };
  const int line_invoice = FindColumn(lines.columns, "invoice_no");
  const int payment_invoice = FindColumn(payments.columns, "invoice_no");
  const int payment_amount = FindColumn(payments.columns, "Amount");
  const int invoice_no = FindColumn(invoices.columns, "invoice_no");
  for (const auto& invoice : invoices.rows) {
    const int32_t no = invoice[static_cast<size_t>(invoice_no)].ToLong();
    const size_t at = append(invoices, invoice);
    double paid = 0;
    for (const auto& line : lines.rows)
      if (line[static_cast<size_t>(line_invoice)].ToLong() == no) append(lines, line);
    for (const auto& payment : payments.rows) {
      if (payment[static_cast<size_t>(payment_invoice)].ToLong() != no) continue;
      append(payments, payment);
      if (!payment[static_cast<size_t>(payment_amount)].IsNull()) paid += payment[static_cast<size_t>(payment_amount)].ToDouble();
    }
    out.rows[at][position["total_paid"]] = Variant(Currency::FromDouble(paid));
  }
}

void AccountAndPayments(ProcedureCall& call) {
  const Variant account(call.Text("@account_id"));
  call.ReturnRows("SELECT account_id, Description, account_limit, account_balance FROM kiv_account WHERE account_id = ?",
                  {account});
  call.AddResultSet(std::string(kPaymentColumns) +
                          "WHERE p.account_id = ? ORDER BY p.payment_date DESC, p.payment_no DESC",
                      {account});
}

// An invoice number is unique across registers here; the register, control and audited
// flag narrow nothing further but must name a payment of that invoice when given.
void InvoiceLines(ProcedureCall& call) {
  call.ReturnRows(std::string(kLineColumns) +
                      "WHERE l.invoice_no = ?1 AND (?2 = '' OR EXISTS (SELECT 1 FROM kiv_payment p WHERE p.invoice_no = "
                      "l.invoice_no AND p.register_id = ?2)) ORDER BY l.line_no",
                  {Variant(call.Long("@invoice_no")), Variant(call.Text("@register_id"))});
}

}  // namespace

void AddMoneyProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetCCPayments", {InInt("@customer_no"), InInt("@card_seq_no")}, false, CardPayments});
  registry.Add({"KIV_SP_CLIENT_GetInvoiceData", {InInt("@customer_no")}, false, InvoiceData});
  registry.Add({"KIV_SP_CUSTOMER_GetAccountAndPayments", {InInt("@customer_no"), InText("@account_id", 20)}, false,
                AccountAndPayments});
  registry.Add({"KIV_SP_CUSTOMER_GetInvoiceLines",
                {InText("@register_id", 10), InInt("@control_no"), InInt("@invoice_no"), InBit("@audited")},
                false,
                InvoiceLines});
}

}  // namespace kiv::refhost

// Set-based statements over the rows already built, so that a million customers cost a few
// joins instead of a loop: every invoice gets the lines of its order and, when anything was
// paid, a payment by the customer's card on file, house account, cash or check.
#include "refhost/demo_data_money.h"

#include <sqlite3.h>

#include <string>

#include "refhost/demo_data.h"

namespace kiv::refhost {

namespace {

void Run(sqlite3* db, const std::string& sql) {
  char* error = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK) return;
  std::string message = error != nullptr ? error : "unknown error";
  sqlite3_free(error);
  throw DemoDataError("building the money demo rows: " + message);
}

}  // namespace

void BuildMoneyDemo(sqlite3* db, uint64_t seed) {
  const std::string s = std::to_string(seed % 1000);
  // A second, expired card put aside by every fourth card holder.
  Run(db,
      "INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, exp_date, Zip, Address, "
      "pay_method_id, is_active, created_by, create_date, modified_by, modified_on) "
      "SELECT cc.customer_no, cc.card_seq_no + 1, 'XXXXXXXXXXXX' || printf('%04d', (cc.customer_no * 31 + " + s +
          ") % 10000), printf('%04d', (cc.customer_no * 31 + " + s +
          ") % 10000), printf('%02d/2024', 1 + cc.customer_no % 12), NULL, NULL, "
          "CASE WHEN cc.pay_method_id = 'VISA' THEN 'MC' ELSE 'VISA' END, 0, 'demo', '2023-05-01', 'demo', "
          "'2025-01-15 09:30:00' FROM kiv_customer_cc cc WHERE (cc.customer_no + " + s +
          ") % 4 = 0 AND NOT EXISTS (SELECT 1 FROM kiv_customer_cc x WHERE x.customer_no = cc.customer_no AND "
          "x.card_seq_no = cc.card_seq_no + 1)");
  // The lines of each invoice are those of its order; some carry a loyalty discount.
  Run(db,
      "INSERT INTO kiv_invoice_line (invoice_no, line_no, line_date, customer_no, salesorder_no, so_line_no, item_id, "
      "long_description, qty, unit_qty, unit_id, gross_unit_price, unit_price, unit_commission, unit_discount, "
      "line_tax, linenet, season_no, discount_id, Refundable, kiv_user, comment_note) "
      "SELECT i.invoice_no, l.line_no, datetime(i.invoice_date, '+10 hours', '+' || (l.line_no * 3) || ' minutes'), "
      "i.customer_no, l.salesorder_no, l.line_no, l.item_id, l.description, l.quantity, NULL, 'EA', l.price, "
      "l.price, 0, CASE WHEN (i.invoice_no + l.line_no + " + s +
          ") % 5 = 0 THEN ROUND(l.price * 0.1, 2) ELSE 0 END, ROUND(l.amount * 0.05, 2), l.amount, "
          "CAST(substr(i.invoice_date, 1, 4) AS INTEGER), CASE WHEN (i.invoice_no + l.line_no + " + s +
          ") % 5 = 0 THEN 'LOYAL10' END, 1, 'demo', NULL "
          "FROM kiv_invoice i JOIN kiv_sales_order_line l ON l.salesorder_no = i.salesorder_no");
  // One payment per invoice that was paid, in full.
  Run(db,
      "INSERT INTO kiv_payment (payment_no, invoice_no, customer_no, register_id, control_no, audited, payment_date, "
      "pay_method_id, pay_action_id, Amount, account_id, card_customer_no, card_seq_no, authorizer, comment_note, "
      "kiv_user) "
      "SELECT i.invoice_no, i.invoice_no, i.customer_no, 'REG' || (1 + (i.invoice_no + " + s +
          ") % 3), 100 + i.invoice_no % 50, CASE WHEN i.invoice_date < '2025-07-01' THEN 1 ELSE 0 END, "
          "datetime(i.invoice_date, '+11 hours'), COALESCE(cc.pay_method_id, CASE WHEN c.account_id IS NOT NULL THEN "
          "'ACCT' WHEN i.invoice_no % 2 = 0 THEN 'CASH' ELSE 'CHECK' END), 'SA', i.amount - i.balance, "
          "CASE WHEN cc.card_seq_no IS NULL THEN c.account_id END, cc.customer_no, cc.card_seq_no, "
          "CASE WHEN cc.card_seq_no IS NOT NULL THEN 'A' || printf('%05d', (i.invoice_no * 7919 + " + s +
          ") % 100000) END, CASE WHEN i.invoice_no % 7 = 0 THEN 'Paid at the ticket window' END, 'demo' "
          "FROM kiv_invoice i JOIN kiv_customer c ON c.customer_no = i.customer_no "
          "LEFT JOIN kiv_customer_cc cc ON cc.customer_no = i.customer_no AND cc.is_active <> 0 "
          "WHERE i.amount - i.balance > 0");
  Run(db,
      "UPDATE kiv_sales_order SET comment_note = CASE (salesorder_no + " + s +
          ") % 3 WHEN 0 THEN 'Deliver to the front desk before arrival' WHEN 1 THEN 'Guest will pick up at the "
          "rental shop' ELSE 'Call before invoicing' END WHERE is_invoiced = 0 AND (salesorder_no + " + s + ") % 2 = 0");
}

}  // namespace kiv::refhost

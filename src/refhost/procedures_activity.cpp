// Read procedures of the activity pages that the sales-order and will-call tables answer:
// open sales-order lines, sales-order comments and will calls of a customer.
#include <string>

#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void SalesOrderLines(ProcedureCall& call) {
  // With @open only lines not yet invoiced, of orders not closed, are listed.
  call.ReturnRows(
      "SELECT s.order_date AS salesorder_date, s.salesorder_no, l.line_no AS so_line_no, "
      "IFNULL(f.full_name, c.full_name) AS for_full_name, c.full_name AS line_full_name, l.quantity, "
      "l.description AS item_description, l.amount AS linenet FROM kiv_sales_order s "
      "JOIN kiv_sales_order_line l ON l.salesorder_no = s.salesorder_no "
      "JOIN kiv_customer c ON c.customer_no = s.customer_no "
      "LEFT JOIN kiv_customer f ON f.customer_no = s.for_customer_no "
      "WHERE (s.customer_no = ?1 OR s.for_customer_no = ?1) AND (?2 = 0 OR (s.is_invoiced = 0 AND NOT EXISTS "
      "(SELECT 1 FROM kiv_invoice_line il WHERE il.salesorder_no = l.salesorder_no AND il.so_line_no = l.line_no))) "
      "ORDER BY s.order_date DESC, s.salesorder_no DESC, l.line_no",
      {Variant(call.Long("@customer_no")), Variant(call.Bool("@open"))});
}

void SalesOrderComments(ProcedureCall& call) {
  call.ReturnRows("SELECT order_date AS salesorder_date, salesorder_no, comment_note FROM kiv_sales_order "
                  "WHERE customer_no = ? AND IFNULL(comment_note, '') <> '' ORDER BY order_date DESC, salesorder_no DESC",
                  {Variant(call.Long("@customer_no"))});
}

void WillCalls(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT w.will_call_no, w.access_no, w.long_description, c.full_name, f.full_name AS so_for_full_name, "
      "o.full_name AS so_full_name, w.valid_date, w.status_id, w.dtm_printed, w.kiv_user_printed "
      "FROM kiv_will_call w JOIN kiv_customer c ON c.customer_no = w.customer_no "
      "LEFT JOIN kiv_sales_order s ON s.salesorder_no = w.salesorder_no "
      "LEFT JOIN kiv_customer o ON o.customer_no = s.customer_no "
      "LEFT JOIN kiv_customer f ON f.customer_no = s.for_customer_no "
      "WHERE w.customer_no = ? ORDER BY w.valid_date, w.will_call_no",
      {Variant(call.Long("@customer_no"))});
}

}  // namespace

void AddActivityProcedures(ProcedureRegistry& registry) {
  registry.Add({"KiV_SP_GetSalesOrderLine", {InInt("@customer_no"), InBit("@open")}, false, SalesOrderLines});
  registry.Add({"KiV_SP_CUSTOMER_SALES_ORDER_COMMENT_get", {InInt("@customer_no")}, false, SalesOrderComments});
  registry.Add({"KIV_SP_GetCustomerWillCalls", {InInt("@customer_no")}, false, WillCalls});
}

}  // namespace kiv::refhost

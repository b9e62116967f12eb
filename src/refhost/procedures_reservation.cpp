// Read procedures of the reservations page: a customer's reservations and the change log
// of one reservation. Card columns carry only the masked number and the last four digits.
#include <string>

#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void ReservationsOfCustomer(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT IFNULL(d.res_header_no, r.reservation_no) AS res_header_no, r.reservation_no AS res_no, "
      "r.arrival_date AS res_start, r.status_id, IFNULL(d.resource_description, r.description) AS resource_description, "
      "d.mountain_id, d.loc_description, c.full_name AS customer_name, d.employee_name, "
      "CASE WHEN d.requested = 1 THEN 'Y' ELSE '' END AS requested, r.salesorder_no, d.salesorder_line_no, "
      "d.last_four AS cc_card_no, d.x_card_no, d.exp_date, l.full_name AS lodge_cust_name, d.phone AS Phone, "
      "d.coordinator_comment, d.comment_note FROM kiv_reservation r "
      "JOIN kiv_customer c ON c.customer_no = r.customer_no "
      "LEFT JOIN kiv_reservation_detail d ON d.reservation_no = r.reservation_no "
      "LEFT JOIN kiv_customer l ON l.customer_no = d.lodge_customer_no "
      "WHERE r.customer_no = ? ORDER BY r.arrival_date DESC, r.reservation_no DESC",
      {Variant(call.Long("@customer_No"))});
}

void ReservationLog(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT g.log_no, g.log_datetime, g.kiv_user, g.res_start, g.status_id, g.resource_description, g.mountain_id, "
      "g.loc_description, c.full_name AS customer_name, g.employee_name, "
      "CASE WHEN g.requested = 1 THEN 'Y' ELSE '' END AS requested, g.salesorder_no, g.salesorder_line_no, "
      "g.last_four AS cc_card_no, g.x_card_no, g.exp_date, l.full_name AS lodge_cust_name, g.phone AS Phone, "
      "g.coordinator_comment, g.comment_note FROM kiv_reservation_log g "
      "JOIN kiv_reservation r ON r.reservation_no = g.reservation_no "
      "JOIN kiv_customer c ON c.customer_no = r.customer_no "
      "LEFT JOIN kiv_customer l ON l.customer_no = g.lodge_customer_no "
      "WHERE g.reservation_no = ? ORDER BY g.log_no DESC",
      {Variant(call.Long("@res_No"))});
}

}  // namespace

void AddReservationProcedures(ProcedureRegistry& registry) {
  registry.Add({"KiV_SP_CUSTOMER_GetReservationByCustomer",
                {InInt("@customer_No"), InText("@kiv_user", 20), InText("@kiv_password", 40)},
                false,
                ReservationsOfCustomer});
  registry.Add({"KiV_SP_CUSTOMER_GetReservationLog",
                {InInt("@res_No"), InText("@kiv_user", 20), InText("@kiv_password", 40)},
                false,
                ReservationLog});
}

}  // namespace kiv::refhost

// Set-based passes over the activity rows the customer pass wrote: each statement touches
// every row of its table at once, which keeps a million-customer demo quick.
#include "refhost/demo_data_reservations.h"

#include <sqlite3.h>

#include <string>

#include "refhost/demo_data.h"

namespace kiv::refhost {

namespace {

void Run(sqlite3* db, const char* sql) {
  char* message = nullptr;
  if (sqlite3_exec(db, sql, nullptr, nullptr, &message) == SQLITE_OK) return;
  std::string text = message != nullptr ? message : sqlite3_errmsg(db);
  sqlite3_free(message);
  throw DemoDataError(std::string(sql).substr(0, 60) + ": " + text);
}

}  // namespace

void BuildReservationDemo(sqlite3* db) {
  // Some booked reservations were unbooked again; the rest keep the state they were made in.
  Run(db, "UPDATE kiv_reservation SET status_id = 'OPEN' WHERE status_id = 'BOOKED' AND reservation_no % 5 = 2");
  Run(db,
      "INSERT INTO kiv_reservation_detail (reservation_no, res_header_no, resource_description, mountain_id, "
      "loc_description, employee_name, requested, salesorder_line_no, x_card_no, last_four, exp_date, "
      "lodge_customer_no, phone, coordinator_comment, comment_note) "
      "SELECT r.reservation_no, r.reservation_no, r.description, "
      "CASE r.reservation_no % 3 WHEN 0 THEN 'MAIN' WHEN 1 THEN 'NORTH' ELSE 'SOUTH' END, "
      "CASE r.reservation_no % 4 WHEN 0 THEN 'BASE VILLAGE' WHEN 1 THEN 'SUMMIT LODGE' WHEN 2 THEN 'RIVER RUN' "
      "ELSE 'EAST PEAK' END, "
      "CASE WHEN r.reservation_no % 3 = 0 THEN 'ANNA PRO' WHEN r.reservation_no % 3 = 1 THEN 'MARK INSTRUCTOR' END, "
      "r.reservation_no % 2, CASE WHEN r.salesorder_no IS NOT NULL THEN 1 END, "
      "cc.x_card_no, cc.last_four, cc.exp_date, "
      "CASE WHEN r.reservation_no % 4 = 1 THEN r.customer_no END, c.cell_phone, "
      "CASE WHEN r.reservation_no % 6 = 0 THEN 'GROUP ARRIVES LATE' END, "
      "CASE WHEN r.reservation_no % 5 = 0 THEN 'PREFERS GROUND FLOOR' END "
      "FROM kiv_reservation r "
      "LEFT JOIN kiv_customer_cc cc ON cc.customer_no = r.customer_no AND cc.card_seq_no = "
      "(SELECT MIN(card_seq_no) FROM kiv_customer_cc WHERE customer_no = r.customer_no) "
      "JOIN kiv_customer c ON c.customer_no = r.customer_no");
  // The log tells each reservation's story: made unbooked, booked a week later, then (for
  // those that moved on) unbooked again or cancelled.
  Run(db,
      "INSERT INTO kiv_reservation_log (reservation_no, log_datetime, kiv_user, res_start, status_id, "
      "resource_description, mountain_id, loc_description, employee_name, requested, salesorder_no, "
      "salesorder_line_no, x_card_no, last_four, exp_date, lodge_customer_no, phone, coordinator_comment, comment_note) "
      "SELECT r.reservation_no, datetime(r.arrival_date, s.offset), CASE s.step WHEN 1 THEN 'clerk' ELSE 'manager' END, "
      "r.arrival_date, s.status, d.resource_description, d.mountain_id, d.loc_description, d.employee_name, "
      "d.requested, r.salesorder_no, d.salesorder_line_no, d.x_card_no, d.last_four, d.exp_date, "
      "d.lodge_customer_no, d.phone, d.coordinator_comment, d.comment_note "
      "FROM kiv_reservation r JOIN kiv_reservation_detail d ON d.reservation_no = r.reservation_no "
      "JOIN (SELECT 1 AS step, '-60 days' AS offset, 'OPEN' AS status UNION ALL "
      "SELECT 2, '-53 days', 'BOOKED' UNION ALL SELECT 3, '-20 days', NULL) s "
      "ON s.step < 3 OR r.status_id <> 'BOOKED' "
      "ORDER BY r.reservation_no, s.step");
  Run(db, "UPDATE kiv_reservation_log SET status_id = (SELECT status_id FROM kiv_reservation r WHERE "
          "r.reservation_no = kiv_reservation_log.reservation_no) WHERE status_id IS NULL");

  // Access products: some no longer active, some locked at the gate.
  Run(db, "UPDATE kiv_access_product SET status_id = 'INACTIVE' WHERE access_no % 9 = 4");
  Run(db,
      "INSERT INTO kiv_access_lock (access_no, is_locked, message, changed_by, changed_on, computer) "
      "SELECT access_no, 1, 'LOST CARD REPORTED', 'manager', valid_from, 'WORKSTATION1' FROM kiv_access_product "
      "WHERE access_no % 7 = 5 AND status_id = 'ACTIVE'");
  Run(db,
      "INSERT INTO kiv_access_item (access_no, seq_no, salesorder_no, unit_id, long_description, is_active, "
      "units_sold, units_refunded, units_used, units_available, sales_amount, refund_amount, value_amount, "
      "trans_type_id) "
      "SELECT a.access_no, s.seq, a.salesorder_no, s.unit, s.description, CASE WHEN a.status_id = 'ACTIVE' THEN 1 "
      "ELSE 0 END, s.sold, s.refunded, (a.access_no + s.seq) % (s.sold + 1), "
      "s.sold - s.refunded - (a.access_no + s.seq) % (s.sold + 1), s.price * s.sold, s.price * s.refunded, "
      "s.price * (s.sold - s.refunded - (a.access_no + s.seq) % (s.sold + 1)), 'SALE' FROM kiv_access_product a "
      "JOIN (SELECT 1 AS seq, 'DAY' AS unit, 'LIFT ACCESS' AS description, 3 AS sold, 0 AS refunded, 123.0 AS price "
      "UNION ALL SELECT 2, 'EA', 'RENTAL VOUCHER', 2, 1, 45.0 UNION ALL SELECT 3, 'EA', 'LESSON CREDIT', 1, 0, 99.0) s "
      "ON s.seq <= 1 + a.access_no % 3");
  // Histories of every length: the first product's holder past the second question, the
  // second's past the first, one in ninety-seven long, the rest short.
  // A numbers table keyed by rowid, so that each product reads only its own range of it.
  Run(db, "CREATE TEMP TABLE demo_n (i INTEGER PRIMARY KEY)");
  Run(db, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 320) INSERT INTO demo_n SELECT i FROM n");
  Run(db,
      "INSERT INTO kiv_access_history (customer_no, access_no, log_datetime, control_id, trans_type_id, status_id, "
      "units, post_amount, response_type, response_text) "
      "SELECT a.customer_no, a.access_no, datetime(julianday(a.valid_from) + n.i * 3 / 10 + (8 + n.i % 8) / 24.0 + "
      "(n.i * 13 % 60) / 1440.0), "
      "CASE n.i % 4 WHEN 0 THEN 'LIFT1' WHEN 1 THEN 'GONDOLA' WHEN 2 THEN 'LIFT4' ELSE 'TBAR' END, "
      "CASE WHEN n.i % 25 = 0 THEN 'POST' ELSE 'SCAN' END, CASE WHEN n.i % 31 = 0 THEN 'DENIED' ELSE 'OK' END, 1, "
      "CASE WHEN n.i % 25 = 0 THEN 12.5 ELSE 0 END, CASE WHEN n.i % 31 = 0 THEN 'NO' ELSE 'OK' END, "
      "CASE WHEN n.i % 31 = 0 THEN 'PASS LOCKED' ELSE 'WELCOME' END "
      "FROM kiv_access_product a JOIN demo_n n ON n.i <= CASE WHEN a.access_no = 1 THEN 260 WHEN a.access_no = 2 "
      "THEN 130 WHEN a.access_no % 97 = 3 THEN 101 + a.access_no % 200 ELSE a.access_no * 7 % 19 END");
  Run(db, "DROP TABLE demo_n");
  // More will calls wait for pick-up: one per active product that has none yet, every third.
  Run(db,
      "INSERT INTO kiv_will_call (customer_no, access_no, salesorder_no, long_description, valid_date, status_id) "
      "SELECT a.customer_no, a.access_no, a.salesorder_no, a.description || ' PICKUP', a.valid_from, 'WAITING' "
      "FROM kiv_access_product a WHERE a.status_id = 'ACTIVE' AND a.access_no % 3 = 0 AND a.access_no NOT IN "
      "(SELECT access_no FROM kiv_will_call WHERE access_no IS NOT NULL)");
  Run(db, "INSERT OR IGNORE INTO kiv_register_station (computer, register_id, is_installed, is_cashed_in, control_no) "
          "VALUES ('WORKSTATION1', 'REG01', 1, 1, 1001)");
}

}  // namespace kiv::refhost

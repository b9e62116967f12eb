// Reservation changes of the reference host, each written with its log row.
#include "refhost/reservation_store.h"

#include "core/variant.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

bool ReservationStore::Belongs(int32_t res_no, int32_t customer_no) const {
  Variant owner = db_.QueryValue("SELECT customer_no FROM kiv_reservation WHERE reservation_no = ?", {Variant(res_no)});
  if (owner.IsNull()) return false;
  return customer_no == 0 || NzLong(owner) == customer_no;
}

bool ReservationStore::Read(int32_t res_no, ReservationChange& out) const {
  auto rows = db_.QueryRows(
      "SELECT r.status_id, r.arrival_date, IFNULL(d.resource_description, r.description), d.comment_note "
      "FROM kiv_reservation r LEFT JOIN kiv_reservation_detail d ON d.reservation_no = r.reservation_no "
      "WHERE r.reservation_no = ?",
      {Variant(res_no)});
  if (rows.empty()) return false;
  out.status_id = NzString(rows[0][0]);
  out.res_start = rows[0][1];
  out.resource_description = NzString(rows[0][2]);
  out.comment_note = NzString(rows[0][3]);
  return true;
}

int32_t ReservationStore::FirstOfHeader(int32_t res_header_no) const {
  Variant no = db_.QueryValue("SELECT MIN(reservation_no) FROM kiv_reservation_detail WHERE res_header_no = ?",
                              {Variant(res_header_no)});
  if (!no.IsNull()) return NzLong(no);
  // A reservation written without its detail row is its own header.
  no = db_.QueryValue("SELECT reservation_no FROM kiv_reservation WHERE reservation_no = ?", {Variant(res_header_no)});
  return no.IsNull() ? 0 : NzLong(no);
}

void ReservationStore::WriteLog(int32_t res_no, const std::string& user) {
  db_.Execute(
      "INSERT INTO kiv_reservation_log (reservation_no, log_datetime, kiv_user, res_start, status_id, "
      "resource_description, mountain_id, loc_description, employee_name, requested, salesorder_no, salesorder_line_no, "
      "x_card_no, last_four, exp_date, lodge_customer_no, phone, coordinator_comment, comment_note) "
      "SELECT r.reservation_no, ?, ?, r.arrival_date, r.status_id, IFNULL(d.resource_description, r.description), "
      "d.mountain_id, d.loc_description, d.employee_name, IFNULL(d.requested, 0), r.salesorder_no, "
      "d.salesorder_line_no, d.x_card_no, d.last_four, d.exp_date, d.lodge_customer_no, d.phone, "
      "d.coordinator_comment, d.comment_note FROM kiv_reservation r "
      "LEFT JOIN kiv_reservation_detail d ON d.reservation_no = r.reservation_no WHERE r.reservation_no = ?",
      {Variant(db_.Now()), Variant(user), Variant(res_no)});
}

bool ReservationStore::Apply(int32_t res_no, const ReservationChange& change, const std::string& user) {
  ReservationChange before;
  if (!Read(res_no, before)) return false;
  const bool same_start = NzDate(before.res_start) == NzDate(change.res_start);
  if (before.status_id == change.status_id && same_start &&
      before.resource_description == change.resource_description && before.comment_note == change.comment_note)
    return false;
  Transaction tx(db_, true);
  db_.Execute("UPDATE kiv_reservation SET status_id = ?, arrival_date = ?, description = ? WHERE reservation_no = ?",
              {Variant(change.status_id), change.res_start, Variant(change.resource_description), Variant(res_no)});
  db_.Execute("INSERT OR IGNORE INTO kiv_reservation_detail (reservation_no, res_header_no) VALUES (?, ?)",
              {Variant(res_no), Variant(res_no)});
  db_.Execute("UPDATE kiv_reservation_detail SET resource_description = ?, comment_note = ? WHERE reservation_no = ?",
              {Variant(change.resource_description), Variant(change.comment_note), Variant(res_no)});
  WriteLog(res_no, user);
  tx.Commit();
  return true;
}

int32_t ReservationStore::Create(int32_t customer_no, const ReservationChange& values, const std::string& user) {
  Transaction tx(db_, true);
  const int32_t res_no = NzLong(db_.QueryValue("SELECT IFNULL(MAX(reservation_no), 0) + 1 FROM kiv_reservation"));
  db_.Execute(
      "INSERT INTO kiv_reservation (reservation_no, customer_no, booking_id, arrival_date, departure_date, status_id, "
      "description) VALUES (?, ?, ?, ?, ?, ?, ?)",
      {Variant(res_no), Variant(customer_no), Variant("B" + std::to_string(100000 + res_no)), values.res_start,
       values.res_start, Variant(values.status_id), Variant(values.resource_description)});
  db_.Execute(
      "INSERT INTO kiv_reservation_detail (reservation_no, res_header_no, resource_description, comment_note) "
      "VALUES (?, ?, ?, ?)",
      {Variant(res_no), Variant(res_no), Variant(values.resource_description), Variant(values.comment_note)});
  db_.Execute("UPDATE kiv_customer SET has_reservation = 1 WHERE customer_no = ?", {Variant(customer_no)});
  WriteLog(res_no, user);
  tx.Commit();
  return res_no;
}

bool ReservationStore::SetStatus(int32_t res_no, const std::string& status_id, const std::string& user) {
  ReservationChange change;
  if (!Read(res_no, change)) return false;
  change.status_id = status_id;
  return Apply(res_no, change, user);
}

}  // namespace kiv::refhost

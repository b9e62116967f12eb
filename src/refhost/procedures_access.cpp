// Procedures of the access-product pages: a customer's products with their lock state, the
// items of one product, the customer's history of uses and postings, and the lock and
// unlock of a product (which is written to the history too).
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void AccessProducts(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT a.access_no, CASE WHEN a.status_id = 'ACTIVE' THEN 1 ELSE 0 END AS is_active, "
      "IFNULL(k.is_locked, 0) AS Locked, a.valid_from AS valid_date, a.valid_to AS expiration_date, "
      "CASE WHEN k.is_locked = 1 THEN k.message ELSE NULL END AS Message FROM kiv_access_product a "
      "LEFT JOIN kiv_access_lock k ON k.access_no = a.access_no WHERE a.customer_no = ? ORDER BY a.access_no",
      {Variant(call.Long("@customer_no"))});
}

void AccessItems(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT salesorder_no, seq_no, unit_id, long_description, is_active, units_sold, units_refunded, units_used, "
      "units_available, sales_amount, refund_amount, value_amount, trans_type_id FROM kiv_access_item "
      "WHERE access_no = ? ORDER BY seq_no",
      {Variant(call.Long("@access_no"))});
}

void History(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT log_datetime, access_no, control_id, trans_type_id, status_id, units AS Units, post_amount, "
      "response_type, response_text FROM kiv_access_history WHERE customer_no = ? "
      "ORDER BY log_datetime DESC, history_no DESC",
      {Variant(call.Long("@customer_no"))});
}

//! Refuses through the return value and "@error_msg", as the register's procedures do.
void RefuseAccess(ProcedureCall& call, const std::string& message) {
  call.Return(-1);
  call.Out("@error_msg", Variant(message));
}

void UpdateAccessTrx(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  const int32_t access_no = call.Long("@access_no");
  const std::string name = "Access product " + std::to_string(access_no);
  auto rows = db.QueryRows(
      "SELECT a.customer_no, a.status_id, IFNULL(k.is_locked, 0) FROM kiv_access_product a "
      "LEFT JOIN kiv_access_lock k ON k.access_no = a.access_no WHERE a.access_no = ?",
      {Variant(access_no)});
  if (rows.empty()) return RefuseAccess(call, name + " does not exist.");
  if (NzString(rows[0][1]) != "ACTIVE") return RefuseAccess(call, name + " is not active.");
  const bool lock = call.Bool("@locked");
  if (NzBool(rows[0][2]) == lock) return RefuseAccess(call, name + (lock ? " is already locked." : " is not locked."));
  const Variant now(db.Now());
  // The signed-in user, not whatever "@kiv_user" says, is who changed it.
  db.Execute(
      "INSERT INTO kiv_access_lock (access_no, is_locked, message, changed_by, changed_on, computer) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6) ON CONFLICT (access_no) DO UPDATE SET is_locked = ?2, message = ?3, "
      "changed_by = ?4, changed_on = ?5, computer = ?6",
      {Variant(access_no), Variant(lock), Variant(lock ? call.Text("@message") : std::string()), Variant(call.User()),
       now, Variant(call.Text("@computer"))});
  db.Execute(
      "INSERT INTO kiv_access_history (customer_no, access_no, log_datetime, control_id, trans_type_id, status_id, "
      "units, post_amount, response_type, response_text) VALUES (?, ?, ?, ?, ?, ?, 0, 0, 'OK', ?)",
      {rows[0][0], Variant(access_no), now, Variant(call.Text("@module")), Variant(call.Text("@trans_type_id")),
       Variant(lock ? "LOCKED" : "UNLOCKED"), Variant(lock ? "LOCKED BY " + call.User() : "UNLOCKED BY " + call.User())});
  call.Return(0);
  call.Out("@error_msg", Variant(""));
}

}  // namespace

void AddAccessProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetAccessTrxByCustomerNo",
                {InInt("@customer_no"), InText("@trans_type_id", 20)},
                false,
                AccessProducts});
  registry.Add({"KIV_SP_CUSTOMER_GetAccessItem", {InInt("@access_no")}, false, AccessItems});
  registry.Add({"KIV_SP_CUSTOMER_GetHistory", {InInt("@customer_no")}, false, History});
  registry.Add({"KIV_SP_REGISTER_UpdateAccessTrx",
                {InInt("@access_no"), InText("@trans_type_id", 20), InText("@kiv_user", 20), InText("@computer", 40),
                 InText("@module", 20), InText("@update_action", 10), InText("@message", 255), InBit("@locked"),
                 OutText("@error_msg", 255)},
                true,
                UpdateAccessTrx});
}

}  // namespace kiv::refhost

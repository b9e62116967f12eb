// Procedures of a customer's alerts and rental settings. With @prefill the read answers in
// several result sets, each row marked by return_type: the height list, the weight list,
// then the customer's own row, so one call fills the whole alerts screen.
#include <string>

#include "refhost/column_type.h"
#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

int16_t DefaultRange(SqliteDatabase& db, const char* table, const char* column) {
  return static_cast<int16_t>(NzLong(db.QueryValue(std::string("SELECT ") + column + " FROM " + table +
                                                   " WHERE is_default <> 0 ORDER BY " + column + " LIMIT 1")));
}

//! The ranges come out of IFNULL expressions; they read as the small integers they are.
void RangesAsSmallInts(RowSet& rows) {
  for (const char* name : {"guest_height_range", "guest_weight_range"}) {
    int column = FindColumn(rows.columns, name);
    if (column < 0) continue;
    auto at = static_cast<size_t>(column);
    rows.columns[at].type = ColumnTypeFromDecl("SMALLINT");
    for (auto& row : rows.rows)
      if (!row[at].IsNull()) row[at] = Variant(row[at].ToInt());
  }
}

// The customer's row. Without @prefill it comes only for a customer who has settings or
// alerts (the defaults are in the outputs); with it, always, so the screen learns the name.
constexpr const char* kCustomerRow =
    "SELECT 'CUST' AS return_type, c.customer_no, c.customer_type, c.full_name, s.guest_ability, s.guest_shoe_size, "
    "IFNULL(s.guest_height_range, ?2) AS guest_height_range, IFNULL(s.guest_weight_range, ?3) AS guest_weight_range, "
    "a.child_full_name, a.cell_phone_contact, a.responsible_adult_1_name, a.responsible_adult_2_name, a.Allergies, "
    "a.Medications, a.special_needs "
    "FROM kiv_customer c LEFT JOIN kiv_customer_setting s ON s.customer_no = c.customer_no "
    "LEFT JOIN kiv_customer_alert a ON a.customer_no = c.customer_no WHERE c.customer_no = ?1";

void AlertGet(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int16_t height = DefaultRange(db, "kiv_guest_height", "guest_height_range");
  int16_t weight = DefaultRange(db, "kiv_guest_weight", "guest_weight_range");
  call.Out("@height_default", Variant(height));
  call.Out("@weight_default", Variant(weight));
  const std::vector<Variant> args{Variant(call.Long("@customer_no")), Variant(height), Variant(weight)};
  if (!call.Bool("@prefill")) {
    call.ReturnRows(std::string(kCustomerRow) + " AND (s.customer_no IS NOT NULL OR a.customer_no IS NOT NULL)", args);
    RangesAsSmallInts(call.Rows());
    return;
  }
  call.AddResultSet(
      "SELECT 'HEIGHT' AS return_type, Description, guest_height_range FROM kiv_guest_height ORDER BY guest_height_range");
  call.AddResultSet(
      "SELECT 'WEIGHT' AS return_type, Description, guest_weight_range FROM kiv_guest_weight ORDER BY guest_weight_range");
  call.AddResultSet(kCustomerRow, args);
  RangesAsSmallInts(call.Rows());
  for (RowSet& rows : call.FollowingRows()) RangesAsSmallInts(rows);
}

void AlertUpdate(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  if (!CustomerExists(db, customer_no)) return Refuse(call, NoSuchCustomer(customer_no));
  db.Execute(
      "INSERT INTO kiv_customer_alert (customer_no, Allergies, Medications, special_needs, child_full_name, "
      "cell_phone_contact, responsible_adult_1_name, responsible_adult_2_name) VALUES (?, ?, ?, ?, ?, ?, ?, ?) "
      "ON CONFLICT (customer_no) DO UPDATE SET Allergies = excluded.Allergies, Medications = excluded.Medications, "
      "special_needs = excluded.special_needs, child_full_name = excluded.child_full_name, "
      "cell_phone_contact = excluded.cell_phone_contact, responsible_adult_1_name = excluded.responsible_adult_1_name, "
      "responsible_adult_2_name = excluded.responsible_adult_2_name",
      {Variant(customer_no), call.In("@allergies"), call.In("@medications"), call.In("@special_needs"),
       call.In("@child_full_name"), call.In("@cell_phone_contact"), call.In("@responsible_adult_1_name"),
       call.In("@responsible_adult_2_name")});
  db.Execute(
      "INSERT INTO kiv_customer_setting (customer_no, guest_height_range, guest_weight_range) VALUES (?, ?, ?) "
      "ON CONFLICT (customer_no) DO UPDATE SET guest_height_range = excluded.guest_height_range, "
      "guest_weight_range = excluded.guest_weight_range",
      {Variant(customer_no), call.In("@guest_height_range"), call.In("@guest_weight_range")});
  Succeed(call);
}

}  // namespace

void AddAlertProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_CUSTOMER_ALERT_get",
                {InInt("@customer_no"), InBit("@prefill"), OutSmall("@height_default"), OutSmall("@weight_default")},
                false,
                AlertGet});
  registry.Add({"KIV_SP_CUSTOMER_CUSTOMER_ALERT_update",
                {InInt("@customer_no"), InText("@allergies", 255), InText("@medications", 255),
                 InText("@special_needs", 255), InText("@child_full_name", 100), InText("@cell_phone_contact", 20),
                 InText("@responsible_adult_1_name", 100), InText("@responsible_adult_2_name", 100),
                 InSmall("@guest_height_range"), InSmall("@guest_weight_range"), OutText("@message", 255)},
                true,
                AlertUpdate});
}

}  // namespace kiv::refhost

// Demo group forecasts and rental contracts. Written as a few set-based statements over the
// customers already in the database, each choice drawn from a hash of the customer's (or
// forecast's, or contract's) number and the seed, so a million customers cost seconds.
#include "refhost/demo_data_forecast.h"

#include <sqlite3.h>

#include <string>

#include "refhost/demo_data.h"
#include "refhost/ref_report_service.h"

namespace kiv::refhost {

namespace {

void Run(sqlite3* db, const std::string& sql) {
  char* message = nullptr;
  if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return;
  std::string text = message != nullptr ? message : sqlite3_errmsg(db);
  sqlite3_free(message);
  throw DemoDataError(sql.substr(0, 60) + ": " + text);
}

//! SQL for a number from 0 to 999 drawn from a column and the seed.
std::string Hash(const std::string& column, uint64_t seed) {
  return "((" + column + " * 7919 + " + std::to_string(seed % 9973) + " * 104729) % 1000)";
}

void GroupForecasts(sqlite3* db, uint64_t seed) {
  Run(db, "INSERT OR IGNORE INTO kiv_customer_kind (customer_kind, Description) VALUES ('TRAVELAGNT','Travel Agent')");
  Run(db,
      "UPDATE kiv_customer SET customer_kind = 'TRAVELAGNT' WHERE customer_type = 'C' AND customer_no IN "
      "(SELECT customer_no FROM kiv_customer_group_member WHERE customer_group_id = 'TRAVEL')");
  // Tour operators and travel agents without a forecast get one about half the time.
  Run(db, "CREATE TEMP TABLE demo_old_forecast AS SELECT IFNULL(MAX(forecast_no), 0) AS last_no FROM kiv_customer_forecast");
  Run(db,
      "INSERT INTO kiv_customer_forecast (forecast_no, customer_no, fc_date_entered, fc_arrival_date, fc_depart_date, "
      "fc_nights, fc_people, fc_origin, fc_country, fc_source, fc_manager, fc_rate, fc_last_edited_by, "
      "fc_last_edited_on) "
      "SELECT (SELECT last_no FROM demo_old_forecast) + ROW_NUMBER() OVER (ORDER BY customer_no), customer_no, "
      "datetime('2025-09-01', '+' || (h % 90) || ' days'), datetime('2026-03-02', '+' || (h % 40) || ' days'), "
      "datetime('2026-03-02', '+' || (h % 40 + 2 + h % 6) || ' days'), 2 + h % 6, 10 + h % 90, "
      "CASE h % 4 WHEN 0 THEN 'NY' WHEN 1 THEN 'TX' WHEN 2 THEN 'ON' ELSE 'CA' END, "
      "CASE h % 4 WHEN 2 THEN 'CAN' ELSE 'USA' END, CASE h % 2 WHEN 0 THEN 'TRADE SHOW' ELSE 'REFERRAL' END, "
      "'DEMO MANAGER', 60 + h % 120, 'demo', '2026-01-15 10:00:00' "
      "FROM (SELECT customer_no, " + Hash("customer_no", seed) + " AS h FROM kiv_customer c "
      "WHERE customer_type = 'C' AND customer_kind IN ('TOUROP', 'TRAVELAGNT') AND NOT EXISTS "
      "(SELECT 1 FROM kiv_customer_forecast f WHERE f.customer_no = c.customer_no)) WHERE h < 500");
  // Every forecast in the entry screen's lists: category by the company's kind, a lodge as
  // property for some, commissions of 10 and 15 percent, projections that agree.
  Run(db, "CREATE TEMP TABLE demo_lodge (rn INTEGER PRIMARY KEY, customer_no INTEGER)");
  Run(db, "INSERT INTO demo_lodge SELECT ROW_NUMBER() OVER (ORDER BY customer_no), customer_no "
          "FROM kiv_customer_group_member WHERE customer_group_id = 'LODGE'");
  Run(db,
      "UPDATE kiv_customer_forecast SET "
      "fc_category = (SELECT CASE c.customer_kind WHEN 'TOUROP' THEN 'TOUROP' WHEN 'TRAVELAGNT' THEN 'TRAVELAGNT' "
      "ELSE 'GROUP' END FROM kiv_customer c WHERE c.customer_no = kiv_customer_forecast.customer_no), "
      "fc_segment = CASE forecast_no % 6 WHEN 0 THEN 'CORP' WHEN 1 THEN 'COLLEGE' WHEN 2 THEN 'SOCIAL' "
      "WHEN 3 THEN 'CLUB' WHEN 4 THEN 'YOUTH' ELSE 'BID' END, "
      "fc_type = CASE (forecast_no / 6) % 4 WHEN 0 THEN 'NEW' WHEN 1 THEN 'RETURNING' WHEN 2 THEN 'CYCLIC' "
      "ELSE 'LAPSED' END, "
      "fc_location = CASE forecast_no % 3 WHEN 0 THEN 'A' WHEN 1 THEN 'S' ELSE 'DV' END, "
      "fc_rate_after_commission = CASE forecast_no % 4 WHEN 0 THEN 10 WHEN 1 THEN 15 ELSE NULL END, "
      "fc_early_booking_offer = CASE WHEN forecast_no % 5 = 0 THEN 1 ELSE 0 END, "
      "fc_days = fc_nights * fc_people, "
      "fc_property = CASE WHEN forecast_no % 2 = 0 THEN (SELECT customer_no FROM demo_lodge WHERE rn = 1 + "
      "forecast_no % MAX(1, (SELECT COUNT(*) FROM demo_lodge))) END, "
      "comment_note = 'Group of ' || fc_people || ' for ' || fc_nights || ' nights', "
      "fc_ticket_instructions = CASE WHEN forecast_no % 3 = 0 THEN 'Multi-day tickets at the group desk' END, "
      "fc_ss_instructions = CASE WHEN forecast_no % 4 = 0 THEN 'Two beginner classes each morning' END, "
      "fc_group_profile = CASE WHEN forecast_no % 2 = 1 THEN 'Mixed ability, mostly intermediate' END");
  // Some orders of the new forecasts' companies belong to them.
  Run(db,
      "UPDATE kiv_sales_order SET forecast_no = (SELECT MIN(f.forecast_no) FROM kiv_customer_forecast f "
      "WHERE f.customer_no = kiv_sales_order.customer_no) WHERE forecast_no IS NULL AND salesorder_no % 2 = 0 "
      "AND customer_no IN (SELECT customer_no FROM kiv_customer_forecast "
      "WHERE forecast_no > (SELECT last_no FROM demo_old_forecast))");
  Run(db,
      "UPDATE kiv_sequence SET last_no = (SELECT IFNULL(MAX(forecast_no), 0) FROM kiv_customer_forecast) "
      "WHERE sequence_name = 'seq_forecast_no'");
  Run(db, "DROP TABLE demo_old_forecast");
  Run(db, "DROP TABLE demo_lodge");
}

void RentalContracts(sqlite3* db, uint64_t seed) {
  // About one person in eight rented, a third of those twice; the first household always.
  Run(db,
      "CREATE TEMP TABLE demo_renter AS SELECT ROW_NUMBER() OVER (ORDER BY customer_no) AS n, customer_no, h FROM "
      "(SELECT customer_no, " + Hash("customer_no", seed) + " AS h FROM kiv_customer WHERE customer_type = 'P') "
      "WHERE h < 120 OR customer_no <= 3");
  Run(db,
      "INSERT INTO kiv_rental_contract (contract_no, customer_no, contract_date, location_id, voucher_no, status_id, "
      "created_by) SELECT 1000 + n * 2 + k, customer_no, datetime('2025-12-01', '+' || ((h * 7 + k * 31) % 88) || ' days'), "
      "CASE h % 3 WHEN 0 THEN 'BASE' WHEN 1 THEN 'SUMMIT' ELSE 'VILLAGE' END, "
      "CASE WHEN h % 4 = 0 THEN 'V' || (5000 + n) END, 'CLOSED', 'demo' "
      "FROM demo_renter, (SELECT 0 AS k UNION ALL SELECT 1) WHERE k = 0 OR h < 40");
  Run(db,
      "CREATE TEMP TABLE demo_equipment (e INTEGER PRIMARY KEY, description TEXT, prefix TEXT, rate REAL, "
      "din INTEGER, binding TEXT)");
  Run(db,
      "INSERT INTO demo_equipment VALUES (0, 'SKI PACKAGE - PERFORMANCE', 'SK', 42, 1, 'MARKER GRIFFON 13'), "
      "(1, 'SKI PACKAGE - SPORT', 'SK', 32, 1, 'LOOK NX 11'), (2, 'SNOWBOARD PACKAGE', 'SB', 38, 0, 'BURTON CARTEL'), "
      "(3, 'SKI BOOTS', 'BT', 15, 0, NULL), (4, 'HELMET', 'HL', 12, 0, NULL), "
      "(5, 'JUNIOR SKI PACKAGE', 'JS', 24, 1, 'TYROLIA SL 7.5')");
  Run(db,
      "INSERT INTO kiv_rental_contract_line (contract_no, line_no, description, serial_no, dtm_equip_out, dtm_return, "
      "rent_start, rent_end, days, daily_rate, amount, return_location_id, din_setting, binding, status_id) "
      "SELECT r.contract_no, l.n, e.description, e.prefix || printf('%06d', r.contract_no * 3 + l.n), "
      "datetime(r.contract_date, '+8 hours', '+' || ((r.contract_no * 7 + l.n) % 60) || ' minutes'), "
      "CASE WHEN r.contract_no % 9 = 0 THEN NULL ELSE datetime(r.contract_date, '+' || (r.contract_no % 5) || ' days', "
      "'+16 hours', '+' || ((r.contract_no * 11 + l.n) % 60) || ' minutes') END, "
      "r.contract_date, datetime(r.contract_date, '+' || (r.contract_no % 5) || ' days'), 1 + r.contract_no % 5, "
      "e.rate, e.rate * (1 + r.contract_no % 5), "
      "CASE WHEN r.contract_no % 9 = 0 THEN NULL WHEN r.contract_no % 4 = 0 THEN 'SUMMIT' ELSE r.location_id END, "
      "CASE WHEN e.din = 1 THEN printf('%.1f', 3 + (r.contract_no % 8) * 0.5) END, e.binding, "
      "CASE WHEN r.contract_no % 9 = 0 THEN 'OUT' ELSE 'RETURNED' END "
      "FROM kiv_rental_contract r, (SELECT 1 AS n UNION ALL SELECT 2 UNION ALL SELECT 3) l "
      "JOIN demo_equipment e ON e.e = (r.contract_no + l.n * 5) % 6 WHERE l.n <= 1 + r.contract_no % 3");
  Run(db, "UPDATE kiv_rental_contract SET status_id = 'OPEN' WHERE contract_no % 9 = 0");
  Run(db, "DROP TABLE demo_renter");
  Run(db, "DROP TABLE demo_equipment");
}

void ReportDefinitions(sqlite3* db) {
  sqlite3_stmt* stmt = nullptr;
  const char* sql =
      "INSERT OR REPLACE INTO kiv_report_definition (report_key, report_name, file_name, parameter_names, "
      "header_sql, line_sql, template) VALUES (?, ?, ?, ?, ?, ?, ?)";
  if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK)
    throw DemoDataError(std::string("report definitions: ") + sqlite3_errmsg(db));
  for (const ReportDefinition& d : StandardReportDefinitions()) {
    int i = 0;
    for (const std::string* text : {&d.report_key, &d.report_name, &d.file_name, &d.parameter_names, &d.header_sql,
                                    &d.line_sql, &d.template_html})
      sqlite3_bind_text(stmt, ++i, text->c_str(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
    const int rc = sqlite3_step(stmt);
    sqlite3_reset(stmt);
    if (rc != SQLITE_DONE) {
      sqlite3_finalize(stmt);
      throw DemoDataError(std::string("report definitions: ") + sqlite3_errmsg(db));
    }
  }
  sqlite3_finalize(stmt);
}

}  // namespace

void BuildForecastAndRentalDemo(sqlite3* db, uint64_t seed) {
  GroupForecasts(db, seed);
  RentalContracts(db, seed);
  ReportDefinitions(db);
}

}  // namespace kiv::refhost

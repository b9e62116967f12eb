// Report Maintenance of the reference host: definitions looked up by key, parameter strings
// read into named values, and each printed report rendered from its template into an HTML
// document beside the database.
#include "refhost/ref_report_service.h"

#include <sqlite3.h>

#include <stdexcept>

#include "core/date.h"
#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"
#include "host/host_error.h"
#include "refhost/html_document.h"

namespace kiv::refhost {

namespace {

constexpr const char* kForecastTemplate = R"(<h1>Group Forecast {{forecast_no}}</h1>
<table>
<tr><th>Group</th><td>{{group_name}}</td><th>Customer #</th><td>{{customer_no}}</td></tr>
<tr><th>Category</th><td>{{fc_category}}</td><th>Segment</th><td>{{fc_segment}}</td></tr>
<tr><th>Type</th><td>{{fc_type}}</td><th>A or S</th><td>{{fc_location}}</td></tr>
<tr><th>Arrival</th><td>{{fc_arrival_date|date}}</td><th>Departure</th><td>{{fc_depart_date|date}}</td></tr>
<tr><th>Property</th><td>{{property_name}}</td><th>Sales orders</th><td>{{sales_orders}}</td></tr>
<tr><th>Origin</th><td>{{fc_origin}} {{fc_country}}</td><th>Source</th><td>{{fc_source}}</td></tr>
<tr><th>Manager</th><td>{{fc_manager}}</td><th>2nd manager</th><td>{{fc_manager_2nd}}</td></tr>
</table>
<h2>Projections</h2>
<table>
<tr><th>Nights</th><th>People</th><th>Skier days</th><th>Day rate</th><th>Commission %</th><th>Projected gross</th><th>Projected net</th></tr>
<tr><td class="num">{{fc_nights}}</td><td class="num">{{fc_people}}</td><td class="num">{{fc_days}}</td><td class="num">{{fc_rate|currency}}</td><td class="num">{{fc_rate_after_commission}}</td><td class="num">{{projected_gross|currency}}</td><td class="num">{{projected_net|currency}}</td></tr>
</table>
<h2>Notes</h2>
<table>
<tr><th>Notes</th><td>{{comment_note}}</td></tr>
<tr><th>Ticket instructions</th><td>{{fc_ticket_instructions}}</td></tr>
<tr><th>Ski school instructions</th><td>{{fc_ss_instructions}}</td></tr>
<tr><th>Activity instructions</th><td>{{fc_activities_instructions}}</td></tr>
<tr><th>Group profile</th><td>{{fc_group_profile}}</td></tr>
<tr><th>Confidential</th><td>{{fc_confidential_comments}}</td></tr>
</table>
<p class="muted">Entered {{fc_date_entered|date}}; last edited by {{fc_last_edited_by}} on {{fc_last_edited_on|datetime}}.</p>)";

constexpr const char* kRentalTemplate = R"(<h1>Rental Contract {{contract_no}}</h1>
<table>
<tr><th>Customer</th><td>{{customer_name}}</td><th>Customer #</th><td>{{customer_no}}</td></tr>
<tr><th>Date</th><td>{{contract_date|date}}</td><th>Location</th><td>{{location_id}}</td></tr>
<tr><th>Voucher</th><td>{{voucher_no}}</td><th>Status</th><td>{{status_id}}</td></tr>
</table>
<h2>Equipment</h2>
<table>
<tr><th>#</th><th>Description</th><th>Serial</th><th>Out</th><th>Returned</th><th>Rent start</th><th>Rent end</th><th>Days</th><th>Daily rate</th><th>Amount</th><th>Return loc</th><th>DIN</th><th>Binding</th></tr>
{{#lines}}<tr><td>{{line_no}}</td><td>{{description}}</td><td>{{serial_no}}</td><td>{{dtm_equip_out|datetime}}</td><td>{{dtm_return|datetime}}</td><td>{{rent_start|date}}</td><td>{{rent_end|date}}</td><td class="num">{{days}}</td><td class="num">{{daily_rate|currency}}</td><td class="num">{{amount|currency}}</td><td>{{return_location_id}}</td><td>{{din_setting}}</td><td>{{binding}}</td></tr>
{{/lines}}<tr><th colspan="7">Total</th><td class="num">{{total_days}}</td><td></td><td class="num">{{total_amount|currency}}</td><td colspan="3"></td></tr>
</table>
<p class="muted">{{line_count}} item(s). The renter is responsible for the equipment until it is returned.</p>)";

constexpr const char* kReservationTemplate = R"(<h1>Reservation Contract {{reservation_no}}</h1>
<table>
<tr><th>Guest</th><td>{{customer_name}}</td><th>Customer #</th><td>{{customer_no}}</td></tr>
<tr><th>Booking</th><td>{{booking_id}}</td><th>Status</th><td>{{status_id}}</td></tr>
<tr><th>Arrival</th><td>{{arrival_date|date}}</td><th>Departure</th><td>{{departure_date|date}}</td></tr>
<tr><th>Reserved</th><td colspan="3">{{description}}</td></tr>
</table>
<h2>History</h2>
<table>
<tr><th>When</th><th>By</th><th>Status</th><th>Start</th><th>Resource</th><th>Card</th><th>Comment</th></tr>
{{#lines}}<tr><td>{{log_datetime|datetime}}</td><td>{{kiv_user}}</td><td>{{status_id}}</td><td>{{res_start|datetime}}</td><td>{{resource_description}}</td><td>{{x_card_no}}</td><td>{{comment_note}}</td></tr>
{{/lines}}</table>
<p class="muted">The guest agrees to the resort's cancellation terms for this reservation.</p>)";

const std::string* FindField(const ReportRecord& record, std::string_view name) {
  for (const auto& [field, value] : record)
    if (EqualsNoCase(field, name)) return &value;
  return nullptr;
}

//! A value through a template filter; an empty value stays empty whatever the filter.
std::string Filtered(const std::string& value, std::string_view filter) {
  if (value.empty() || filter.empty()) return value;
  if (EqualsNoCase(filter, "currency")) return Format(Variant(Val(value)), "Currency");
  if (EqualsNoCase(filter, "date") || EqualsNoCase(filter, "datetime")) {
    std::optional<Date> date = Date::Parse(value);
    if (!date) return value;
    return Format(Variant(*date), EqualsNoCase(filter, "date") ? "MM/dd/yyyy" : "MM/dd/yyyy hh:nn AMPM");
  }
  return value;
}

//! Fills the placeholders of one stretch of template; `line` is looked in first.
void FillPlaceholders(std::string_view text, const ReportRecord& record, const ReportRecord* line, std::string& out) {
  size_t at = 0;
  while (at < text.size()) {
    const size_t open = text.find("{{", at);
    const size_t close = open == std::string_view::npos ? open : text.find("}}", open + 2);
    if (close == std::string_view::npos) {
      out.append(text.substr(at));
      return;
    }
    out.append(text.substr(at, open - at));
    std::string name = Trim(text.substr(open + 2, close - open - 2));
    std::string filter;
    if (const size_t bar = name.find('|'); bar != std::string::npos) {
      filter = Trim(name.substr(bar + 1));
      name = Trim(name.substr(0, bar));
    }
    const std::string* value = line != nullptr ? FindField(*line, name) : nullptr;
    if (value == nullptr) value = FindField(record, name);
    if (value != nullptr) out += HtmlEscape(Filtered(*value, filter));
    at = close + 2;
  }
}

//! Runs one query of a definition with its named parameters bound; every row as text.
std::vector<ReportRecord> RunQuery(SqliteDatabase& db, const std::string& sql,
                                   const std::vector<std::pair<std::string, std::string>>& parameters) {
  std::vector<ReportRecord> rows;
  sqlite3_stmt* stmt = nullptr;
  if (sqlite3_prepare_v2(db.Handle(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
    throw std::runtime_error("the report's query cannot run: " + std::string(sqlite3_errmsg(db.Handle())));
  for (int i = 1; i <= sqlite3_bind_parameter_count(stmt); ++i) {
    const char* raw = sqlite3_bind_parameter_name(stmt, i);
    const std::string name = raw != nullptr ? std::string(raw + 1) : std::string();
    for (const auto& [key, value] : parameters) {
      if (!EqualsNoCase(key, name)) continue;
      const bool whole = !value.empty() && value.find_first_not_of("0123456789-") == std::string::npos;
      if (whole) sqlite3_bind_int64(stmt, i, static_cast<sqlite3_int64>(Val(value)));
      else sqlite3_bind_text(stmt, i, value.c_str(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
  }
  int rc;
  while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    ReportRecord row;
    for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
      std::string text;
      switch (sqlite3_column_type(stmt, c)) {
        case SQLITE_NULL: break;
        case SQLITE_FLOAT: text = NumberToText(sqlite3_column_double(stmt, c)); break;
        default: text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c)); break;
      }
      row.emplace_back(sqlite3_column_name(stmt, c), std::move(text));
    }
    rows.push_back(std::move(row));
  }
  std::string error = rc == SQLITE_DONE ? std::string() : sqlite3_errmsg(db.Handle());
  sqlite3_finalize(stmt);
  if (!error.empty()) throw std::runtime_error("the report's query failed: " + error);
  return rows;
}

//! A file name made of the report's name and its values: letters, digits and "-" only.
std::string DocumentStem(const std::string& base, const std::vector<std::pair<std::string, std::string>>& values) {
  std::string stem = base;
  for (const auto& [name, value] : values) stem += "-" + value;
  for (char& ch : stem)
    if (!((ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') || ch == '-')) ch = '_';
  return stem.substr(0, 100);
}

}  // namespace

const std::vector<ReportDefinition>& StandardReportDefinitions() {
  static const std::vector<ReportDefinition> definitions = {
      {"CUST_FORECAST", "Group Forecast", "group-forecast", "forecast_no",
       "SELECT f.*, c.full_name AS group_name, p.full_name AS property_name, "
       "(SELECT group_concat(s.salesorder_no, ', ') FROM kiv_sales_order s WHERE s.forecast_no = f.forecast_no) "
       "AS sales_orders, IFNULL(f.fc_rate, 0) * IFNULL(f.fc_days, 0) AS projected_gross, "
       "IFNULL(f.fc_rate, 0) * IFNULL(f.fc_days, 0) * (1 - IFNULL(f.fc_rate_after_commission, 0) / 100.0) "
       "AS projected_net FROM kiv_customer_forecast f JOIN kiv_customer c ON c.customer_no = f.customer_no "
       "LEFT JOIN kiv_customer p ON p.customer_no = f.fc_property WHERE f.forecast_no = :forecast_no",
       "", kForecastTemplate},
      {"CUST_RENT", "Rental Contract", "rental-contract", "contract_no;customer_no",
       "SELECT r.*, c.full_name AS customer_name, "
       "(SELECT COUNT(*) FROM kiv_rental_contract_line l WHERE l.contract_no = r.contract_no) AS line_count, "
       "(SELECT SUM(l.days) FROM kiv_rental_contract_line l WHERE l.contract_no = r.contract_no) AS total_days, "
       "(SELECT SUM(l.amount) FROM kiv_rental_contract_line l WHERE l.contract_no = r.contract_no) AS total_amount "
       "FROM kiv_rental_contract r JOIN kiv_customer c ON c.customer_no = r.customer_no "
       "WHERE r.contract_no = :contract_no AND (:customer_no IS NULL OR r.customer_no = :customer_no)",
       "SELECT * FROM kiv_rental_contract_line WHERE contract_no = :contract_no ORDER BY line_no", kRentalTemplate},
      {"CUST_RES", "Reservation Contract", "reservation-contract", "res_no",
       "SELECT r.*, c.full_name AS customer_name FROM kiv_reservation r "
       "JOIN kiv_customer c ON c.customer_no = r.customer_no WHERE r.reservation_no = :res_no",
       "SELECT * FROM kiv_reservation_log WHERE reservation_no = :res_no ORDER BY log_no", kReservationTemplate},
  };
  return definitions;
}

void SaveReportDefinition(SqliteDatabase& db, const ReportDefinition& d) {
  db.Execute(
      "INSERT OR REPLACE INTO kiv_report_definition (report_key, report_name, file_name, parameter_names, "
      "header_sql, line_sql, template) VALUES (?, ?, ?, ?, ?, ?, ?)",
      {Variant(d.report_key), Variant(d.report_name), Variant(d.file_name), Variant(d.parameter_names),
       Variant(d.header_sql), d.line_sql.empty() ? Variant::Null() : Variant(d.line_sql), Variant(d.template_html)});
}

std::string RenderReportTemplate(std::string_view tmpl, const ReportRecord& record,
                                 const std::vector<ReportRecord>& lines) {
  static constexpr std::string_view kOpen = "{{#lines}}", kClose = "{{/lines}}";
  std::string out;
  const size_t open = tmpl.find(kOpen);
  const size_t close = open == std::string_view::npos ? open : tmpl.find(kClose, open);
  if (close == std::string_view::npos) {
    FillPlaceholders(tmpl, record, nullptr, out);
    return out;
  }
  FillPlaceholders(tmpl.substr(0, open), record, nullptr, out);
  const std::string_view section = tmpl.substr(open + kOpen.size(), close - open - kOpen.size());
  for (const ReportRecord& line : lines) FillPlaceholders(section, record, &line, out);
  FillPlaceholders(tmpl.substr(close + kClose.size()), record, nullptr, out);
  return out;
}

std::vector<std::pair<std::string, std::string>> ParseReportParameters(std::string_view parameters,
                                                                       std::string_view parameter_names) {
  std::vector<std::pair<std::string, std::string>> values;
  const std::vector<std::string> names = Split(parameter_names, ";");
  size_t position = 0;
  for (const std::string& part : Split(parameters, ";")) {
    const std::string item = Trim(part);
    const size_t equals = item.find('=');
    if (equals != std::string::npos) {
      values.emplace_back(Trim(item.substr(0, equals)), Trim(item.substr(equals + 1)));
    } else if (position < names.size() && !item.empty()) {
      values.emplace_back(Trim(names[position]), item);
    }
    ++position;
  }
  return values;
}

RefReportService::RefReportService(std::shared_ptr<SqliteDatabase> db, std::shared_ptr<TraceHook> trace)
    : db_(std::move(db)), trace_(std::move(trace)) {}

bool RefReportService::GetClientMapReport(const std::string& report_key, host::ClientReport& report) {
  const auto rows = db_->QueryRows(
      "SELECT report_key, report_name, file_name FROM kiv_report_definition WHERE report_key = ? COLLATE NOCASE",
      {Variant(report_key)});
  const bool found = !rows.empty();
  if (found) report = {NzString(rows[0][0]), NzString(rows[0][1]), NzString(rows[0][2])};
  TraceHostCall(trace_, "GetClientMapReport", {{"report_key", Variant(report_key)}}, {{"result", Variant(found)}});
  return found;
}

host::ReportParameters RefReportService::CreateReportParamFromString(const std::string& parameter_text) {
  host::ReportParameters parameters;
  parameters.parameters = parameter_text;
  TraceHostCall(trace_, "CreateReportParamFromString", {{"parameters", Variant(parameter_text)}});
  return parameters;
}

bool RefReportService::PrintReport(const host::ClientReport& report, const host::ReportParameters& parameters) {
  std::string failure;
  bool printed = false;
  try {
    printed = Print(report, parameters, failure);
  } catch (const std::exception& e) {
    failure = e.what();
  }
  std::vector<std::pair<std::string, Variant>> outputs{{"result", Variant(printed)}};
  if (printed) outputs.emplace_back("document", Variant(last_document_.string()));
  else outputs.emplace_back("failure", Variant(failure));
  TraceHostCall(trace_, "PrintReport",
                {{"report_key", Variant(report.report_key)},
                 {"parameters", Variant(parameters.parameters)},
                 {"record_selection", Variant(parameters.record_selection)}},
                outputs);
  if (printed && on_document_written) on_document_written(last_document_);
  return printed;
}

bool RefReportService::Print(const host::ClientReport& report, const host::ReportParameters& parameters,
                             std::string& failure) {
  const auto rows = db_->QueryRows(
      "SELECT report_name, file_name, parameter_names, header_sql, line_sql, template FROM kiv_report_definition "
      "WHERE report_key = ? COLLATE NOCASE",
      {Variant(report.report_key)});
  if (rows.empty()) {
    failure = "no report is defined under " + report.report_key;
    return false;
  }
  const std::vector<Variant>& d = rows[0];
  const auto values = ParseReportParameters(parameters.parameters, NzString(d[2]));
  const std::vector<ReportRecord> header = RunQuery(*db_, NzString(d[3]), values);
  if (header.empty()) {
    failure = "no record matches " + parameters.parameters;
    return false;
  }
  const std::string line_sql = NzString(d[4]);
  const std::vector<ReportRecord> lines = line_sql.empty() ? std::vector<ReportRecord>{}
                                                           : RunQuery(*db_, line_sql, values);
  std::string body = RenderReportTemplate(NzString(d[5]), header.front(), lines);
  if (!parameters.record_selection.empty())
    body += "\n<p class=\"muted\">Selection: " + HtmlEscape(parameters.record_selection) + "</p>";
  const std::string name = NzString(d[0]).empty() ? report.report_key : NzString(d[0]);
  const std::string base = NzString(d[1]).empty() ? LCase(report.report_key) : NzString(d[1]);
  last_document_ = WriteDocument(DocumentFolder(db_->Path()), DocumentStem(base, values), HtmlPage(name, body));
  return true;
}

}  // namespace kiv::refhost

// The reference host's Report Maintenance and report printing: report definitions kept in
// kiv_report_definition (a key, the queries a document is filled from and its template),
// printed as self-contained HTML documents into the database's document folder.
#pragma once
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/suite_services.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"

namespace kiv::refhost {

//! One row of kiv_report_definition.
struct ReportDefinition {
  std::string report_key;
  std::string report_name;
  std::string file_name;
  //! The names of the values of a parameter string, in order, separated by ";".
  std::string parameter_names;
  //! The query of the document's one record; its named parameters (":forecast_no") take the
  //! parameter values.
  std::string header_sql;
  //! The query of the lines repeated by the template's {{#lines}} section; may be empty.
  std::string line_sql;
  //! HTML with {{field}}, {{field|currency}}, {{field|date}}, {{field|datetime}} and one
  //! {{#lines}}...{{/lines}} section.
  std::string template_html;
};

//! A record's fields by name, each already as text (a null is empty).
using ReportRecord = std::vector<std::pair<std::string, std::string>>;

//! The definitions a new site starts with: the group forecast sheet (CUST_FORECAST) and the
//! rental contract (CUST_RENT).
const std::vector<ReportDefinition>& StandardReportDefinitions();

//! Writes (or replaces) a definition.
void SaveReportDefinition(SqliteDatabase& db, const ReportDefinition& definition);

//! The template filled from the record and its lines. Every value is escaped; a field the
//! data lacks is empty; a placeholder left open is kept as text.
std::string RenderReportTemplate(std::string_view template_html, const ReportRecord& record,
                                 const std::vector<ReportRecord>& lines);

//! A parameter string's values by name: "12" or "12;345" takes the names in order,
//! "contract_no=12;customer_no=345" names its own.
std::vector<std::pair<std::string, std::string>> ParseReportParameters(std::string_view parameters,
                                                                       std::string_view parameter_names);

class RefReportService : public host::ReportService {
 public:
  RefReportService(std::shared_ptr<SqliteDatabase> db, std::shared_ptr<TraceHook> trace);

  //! Finds the definition by key (without regard to case); false when there is none.
  bool GetClientMapReport(const std::string& report_key, host::ClientReport& report) override;
  //! The string as the parameters; the caller sets the record selection.
  host::ReportParameters CreateReportParamFromString(const std::string& parameter_text) override;
  //! Renders the selected record into a new document; false when the report is not defined,
  //! the record is not found or the document cannot be written.
  bool PrintReport(const host::ClientReport& report, const host::ReportParameters& parameters) override;

  //! The document the last successful PrintReport wrote; empty before.
  const std::filesystem::path& LastDocument() const { return last_document_; }
  //! Told the path of every document written.
  std::function<void(const std::filesystem::path&)> on_document_written;

 private:
  bool Print(const host::ClientReport& report, const host::ReportParameters& parameters, std::string& failure);

  std::shared_ptr<SqliteDatabase> db_;
  std::shared_ptr<TraceHook> trace_;
  std::filesystem::path last_document_;
};

}  // namespace kiv::refhost

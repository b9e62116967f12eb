// Scripted suite services: record each operation with its arguments, answer as set.
#include "support/scripted_suite.h"

#include <gtest/gtest.h>

namespace kiv::test {

std::vector<std::string> ServiceRecorder::Operations() const {
  std::vector<std::string> out;
  for (const auto& c : calls_) out.push_back(c.operation);
  return out;
}

size_t ServiceRecorder::CountOf(const std::string& operation) const {
  size_t n = 0;
  for (const auto& c : calls_) n += c.operation == operation ? 1 : 0;
  return n;
}

void ServiceRecorder::SetAnswer(const std::string& operation, bool answer) {
  if (operation.empty()) {
    default_answer_ = answer;
    answers_.clear();
    return;
  }
  answers_[operation] = answer;
}

bool ServiceRecorder::Record(const std::string& operation, std::vector<Variant> args) {
  calls_.push_back(ServiceCall{operation, std::move(args)});
  auto it = answers_.find(operation);
  return it == answers_.end() ? default_answer_ : it->second;
}

// ---------------------------------------------------------------- reservations

bool ScriptedReservationService::EditReservations(int32_t customer_no, int32_t household_no) {
  return Record("EditReservations", {customer_no, household_no});
}

bool ScriptedReservationService::EditReservationByNo(int32_t customer_no, int32_t res_header_no, int32_t res_no) {
  return Record("EditReservationByNo", {customer_no, res_header_no, res_no});
}

bool ScriptedReservationService::EditRentalReservation(int32_t customer_no, int32_t res_header_no, int32_t res_no,
                                                       const Variant& read_only) {
  return Record("EditRentalReservation", {customer_no, res_header_no, res_no, read_only});
}

bool ScriptedReservationService::CancelRentalReservation(int32_t res_no) {
  return Record("CancelRentalReservation", {res_no});
}

bool ScriptedReservationService::UnBookReservationByNo(int32_t customer_no, int32_t res_no) {
  return Record("UnBookReservationByNo", {customer_no, res_no});
}

// ---------------------------------------------------------------- invoicing

void ScriptedInvoicingService::Setup(int32_t salesorder_no, const std::vector<int32_t>& so_line_nos) {
  std::string lines;
  for (size_t i = 0; i < so_line_nos.size(); ++i) lines += (i == 0 ? "" : ",") + std::to_string(so_line_nos[i]);
  Record("Setup", {salesorder_no, lines});
}

bool ScriptedInvoicingService::InvoiceAndPay(int32_t customer_no, int32_t salesorder_no) {
  return Record("InvoiceAndPay", {customer_no, salesorder_no});
}

// ---------------------------------------------------------------- register and will call

bool ScriptedRegister::Installed() {
  Record("Installed", {});
  return installed;
}

bool ScriptedRegister::CashedIn() {
  Record("CashedIn", {});
  return cashed_in;
}

int32_t ScriptedRegister::CurrentControlNo() {
  Record("CurrentControlNo", {});
  return control_no;
}

std::string ScriptedRegister::RegisterId() {
  Record("RegisterId", {});
  return register_id;
}

void ScriptedWillCall::SetAppServer(std::shared_ptr<host::AppServer> server) {
  Record("AppServer", {server != nullptr});
  app_server = std::move(server);
}

bool ScriptedWillCall::ShowWillCallScreen(int32_t customer_no, const std::string& register_id, int32_t control_no,
                                          int32_t will_call_no, int32_t access_no) {
  return Record("ShowWillCallScreen", {customer_no, register_id, control_no, will_call_no, access_no});
}

// ---------------------------------------------------------------- reports

void ScriptedReportService::Define(const std::string& report_key, const std::string& report_name) {
  reports_[report_key] = host::ClientReport{report_key, report_name, report_name};
}

bool ScriptedReportService::GetClientMapReport(const std::string& report_key, host::ClientReport& report) {
  Record("GetClientMapReport", {report_key});
  auto it = reports_.find(report_key);
  if (it == reports_.end()) return false;
  report = it->second;
  return true;
}

host::ReportParameters ScriptedReportService::CreateReportParamFromString(const std::string& parameter_text) {
  Record("CreateReportParamFromString", {parameter_text});
  return host::ReportParameters{parameter_text, ""};
}

bool ScriptedReportService::PrintReport(const host::ClientReport& report, const host::ReportParameters& parameters) {
  return Record("PrintReport", {report.report_key, parameters.parameters, parameters.record_selection});
}

// ---------------------------------------------------------------- card entry

void ScriptedCardEntry::Initialize(std::shared_ptr<host::AppServer> app_server,
                                   std::shared_ptr<host::DBConnection> db) {
  Record("Initialize", {app_server != nullptr, db != nullptr});
}

void ScriptedCardEntry::SetCustomerNo(int32_t customer_no) { Record("CustomerNo", {customer_no}); }

void ScriptedCardEntry::SetCustomerName(const std::string& full_name) { Record("CustomerName", {full_name}); }

void ScriptedCardEntry::BeginEntry() { Record("BeginEntry", {}); }

void ScriptedCardEntry::SetCardEnteredHandler(std::function<void(std::shared_ptr<host::CardObject>)> handler) {
  handler_ = std::move(handler);
}

void ScriptedCardEntry::EnterCard(std::shared_ptr<host::CardObject> card) {
  if (!handler_) {
    ADD_FAILURE() << "a card was entered but nobody listens for it";
    return;
  }
  handler_(std::move(card));
}

}  // namespace kiv::test

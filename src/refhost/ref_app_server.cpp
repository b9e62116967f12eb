// The signed-on user's application server over the customer database.
#include "refhost/ref_app_server.h"

#include "host/host_error.h"
#include "refhost/ref_register_service.h"
#include "refhost/ref_reservation_service.h"
#include "refhost/ref_will_call_service.h"
#include "refhost/ref_card_entry.h"
#include "refhost/ref_invoicing_service.h"

namespace kiv::refhost {

RefAppServer::RefAppServer(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::string password,
                           std::shared_ptr<TraceHook> trace)
    : db_(std::move(db)),
      user_id_(std::move(user_id)),
      trace_(trace ? std::move(trace) : std::make_shared<TraceHook>()),
      connection_(std::make_shared<SqliteConnection>(db_, user_id_, std::move(password), ProcedureRegistry::Standard(),
                                                     trace_)),
      error_object_(std::make_shared<RefErrorObject>(db_, user_id_, trace_)),
      settings_(std::make_shared<SqliteSettingsStore>(db_, user_id_, trace_)),
      report_service_(std::make_shared<RefReportService>(db_, trace_)) {
  connection_->SetErrorObject(error_object_);
}

std::shared_ptr<host::DBConnection> RefAppServer::GetConnection(const std::string&) { return connection_; }

void RefAppServer::RecordTaskActivity(const std::string& task_code, const std::string& screen,
                                      const std::string& detail, Variant& result) {
  try {
    db_->Execute("INSERT INTO kiv_activity_log (logged_at, user_id, task_code, screen, detail) VALUES (?, ?, ?, ?, ?)",
                 {Variant(db_->Now()), Variant(user_id_), Variant(task_code), Variant(screen), Variant(detail)});
    result = Variant(true);
  } catch (const HostError&) {
    result = Variant(false);
  }
  TraceHostCall(trace_, "RecordTaskActivity",
                {{"task_code", Variant(task_code)}, {"screen", Variant(screen)}, {"detail", Variant(detail)}},
                {{"result", result}});
}

Variant RefAppServer::CheckPermission(const std::string& task_code, const std::string& area,
                                      const std::string& sub_area) {
  Variant held = db_->QueryValue("SELECT 1 FROM kiv_user_permission WHERE user_id = ? AND task_code = ?",
                                 {Variant(user_id_), Variant(task_code)});
  Variant answer(!held.IsNull());
  TraceHostCall(trace_, "CheckPermission",
                {{"task_code", Variant(task_code)}, {"area", Variant(area)}, {"sub_area", Variant(sub_area)}},
                {{"result", answer}});
  return answer;
}

std::shared_ptr<host::ReservationService> RefAppServer::GetReservationService() {
  if (!ui_) return nullptr;
  if (!reservations_) reservations_ = std::make_shared<RefReservationService>(db_, user_id_, ui_);
  return reservations_;
}

std::shared_ptr<host::RegisterService> RefAppServer::GetRegister() {
  const std::string computer = connection_->ComputerName();
  if (!RefRegisterService::Exists(*db_, computer)) return nullptr;
  return std::make_shared<RefRegisterService>(db_, computer);
}

std::shared_ptr<host::WillCallService> RefAppServer::CreateWillCall() {
  if (!ui_) return nullptr;
  return std::make_shared<RefWillCallService>(db_, user_id_, ui_, trace_);
}

std::shared_ptr<host::InvoicingService> RefAppServer::GetInvoicingService() {
  if (!invoicing_) {
    auto invoicing = std::make_shared<RefInvoicingService>(db_, user_id_, trace_);
    if (ui_) invoicing->SetUi(ui_);
    invoicing_ = std::move(invoicing);
  }
  return invoicing_;
}

std::shared_ptr<host::CardEntryControl> RefAppServer::CreateCardEntry() {
  auto entry = std::make_shared<RefCardEntry>(trace_);
  if (ui_) entry->SetUi(ui_);
  entry->SetToday([db = db_] { return db->Now(); });
  return entry;
}

}  // namespace kiv::refhost

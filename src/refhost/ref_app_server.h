// The application server of one signed-on user of the reference host: the connection, the
// error object, the user's settings, permissions and the activity log, each call traced.
#pragma once
#include <memory>
#include <string>

#include "host/app_server.h"
#include "refhost/ref_error_object.h"
#include "refhost/ref_report_service.h"
#include "refhost/sqlite_connection.h"
#include "refhost/sqlite_settings_store.h"
#include "ui/ui.h"

namespace kiv::refhost {

class RefAppServer : public host::AppServer {
 public:
  RefAppServer(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::string password,
               std::shared_ptr<TraceHook> trace = nullptr);

  std::shared_ptr<host::SettingsStore> UserSettings() override { return settings_; }
  //! The one connection of this user, whatever the name.
  std::shared_ptr<host::DBConnection> GetConnection(const std::string& name) override;
  std::shared_ptr<host::ErrorObject> GetErrorObject() override { return error_object_; }
  //! One row of kiv_activity_log; `result` becomes True, or False when the row could not be written.
  void RecordTaskActivity(const std::string& task_code, const std::string& screen, const std::string& detail,
                          Variant& result) override;
  //! True when kiv_user_permission holds the task code for this user; area and sub-area are not
  //! used to narrow the grant.
  Variant CheckPermission(const std::string& task_code, const std::string& area, const std::string& sub_area) override;
  //! Report Maintenance and printing over this database; one service for the whole session.
  std::shared_ptr<host::ReportService> GetReportService() override { return report_service_; }
  std::shared_ptr<RefReportService> Reports() const { return report_service_; }

  //! The reservation editor of the reference host; null until a Ui to show it is given.
  std::shared_ptr<host::ReservationService> GetReservationService() override;
  //! The register of the connection's workstation; null when the workstation has none.
  std::shared_ptr<host::RegisterService> GetRegister() override;
  //! A new will-call screen; null until a Ui to show it is given.
  std::shared_ptr<host::WillCallService> CreateWillCall() override;
  //! The invoicing of sales-order lines (one per application server).
  std::shared_ptr<host::InvoicingService> GetInvoicingService() override;
  //! A new manual card-entry control, shown through the Ui given by SetUi.
  std::shared_ptr<host::CardEntryControl> CreateCardEntry() override;
  //! The Ui the reference host's own screens (reservation editor, will calls, card entry,
  //! invoice payment) are shown through.
  void SetUi(std::shared_ptr<ui::Ui> ui) { ui_ = std::move(ui); }

  const std::string& UserId() const { return user_id_; }
  std::shared_ptr<SqliteConnection> Connection() const { return connection_; }
  std::shared_ptr<RefErrorObject> Errors() const { return error_object_; }

 private:
  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::shared_ptr<TraceHook> trace_;
  std::shared_ptr<SqliteConnection> connection_;
  std::shared_ptr<RefErrorObject> error_object_;
  std::shared_ptr<SqliteSettingsStore> settings_;
  std::shared_ptr<RefReportService> report_service_;
  std::shared_ptr<ui::Ui> ui_;
  std::shared_ptr<host::ReservationService> reservations_;
  std::shared_ptr<host::InvoicingService> invoicing_;
};

}  // namespace kiv::refhost

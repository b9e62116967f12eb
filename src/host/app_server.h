// The host suite's application server: the user's settings and permissions, the
// connection and the error object, and the suite services the screens call by name.
#pragma once
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "host/settings_store.h"
#include "host/suite_services.h"

namespace kiv::host {

class AppServer {
 public:
  virtual ~AppServer() = default;
  virtual std::shared_ptr<SettingsStore> UserSettings() = 0;
  //! The named connection; an empty name is the default one.
  virtual std::shared_ptr<DBConnection> GetConnection(const std::string& name) = 0;
  virtual std::shared_ptr<ErrorObject> GetErrorObject() = 0;
  //! Writes an entry in the suite's activity log; `result` is the host's and unused.
  virtual void RecordTaskActivity(const std::string& task_code, const std::string& screen, const std::string& detail,
                                  Variant& result) = 0;
  //! Does the user hold the task code; the answer converts to Boolean.
  virtual Variant CheckPermission(const std::string& task_code, const std::string& area,
                                  const std::string& sub_area) = 0;

  // Suite services. Each answers null when the suite has none; the screens then behave
  // as each command says for a missing service.

  //! The reservation editor.
  virtual std::shared_ptr<ReservationService> GetReservationService() { return nullptr; }
  //! The invoicing of sales-order lines.
  virtual std::shared_ptr<InvoicingService> GetInvoicingService() { return nullptr; }
  //! The workstation's register object.
  virtual std::shared_ptr<RegisterService> GetRegister() { return nullptr; }
  //! A new will-call screen object (the caller keeps it while it needs it).
  virtual std::shared_ptr<WillCallService> CreateWillCall() { return nullptr; }
  //! Report lookup and printing.
  virtual std::shared_ptr<ReportService> GetReportService() { return nullptr; }
  //! A new manual card-entry control.
  virtual std::shared_ptr<CardEntryControl> CreateCardEntry() { return nullptr; }
};

}  // namespace kiv::host

// The host suite's application server: the user's settings and permissions, the
// connection and the error object, and the suite services the screens call by name.
#pragma once
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "host/settings_store.h"

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

  // Suite services (typed interfaces in host/suite_services.h) are added here as
  // getters that answer null when the host has none.
};

}  // namespace kiv::host

// The scripted application-server side of the host: an error object that records every
// report, an in-memory settings store, and an application server with scripted
// permissions that records every question it is asked.
#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/app_server.h"
#include "host/error_object.h"
#include "host/settings_store.h"

namespace kiv::test {

//! One ErrorObject::Display call with all its arguments.
struct DisplayCall {
  int32_t number = 0;
  std::string source;
  std::string description;
  bool flag = false;
  Variant opt1, opt2, opt3;
  std::shared_ptr<host::Command> related;
  std::string extra;
};

class ScriptedErrorObject : public host::ErrorObject {
 public:
  void Display(int32_t number, const std::string& source, const std::string& description, bool flag,
               const Variant& opt1, const Variant& opt2, const Variant& opt3,
               const std::shared_ptr<host::Command>& related, const std::string& extra) override;
  //! Every report, in order.
  const std::vector<DisplayCall>& Calls() const { return calls_; }
  size_t Count() const { return calls_.size(); }
  //! The last report; fails the test when there was none (and answers an empty one).
  DisplayCall Last() const;
  //! Makes Display throw HostError{number, ...} after recording, to check that a failing
  //! report is ignored. 0 turns it off.
  void ThrowOnDisplay(int32_t number) { throw_number_ = number; }
  void Clear() { calls_.clear(); }

 private:
  std::vector<DisplayCall> calls_;
  int32_t throw_number_ = 0;
};

//! One SaveSetting or GetSetting call.
struct SettingCall {
  std::string app, section, key;
  std::string value;  // Save: the value written; Get: the default passed
};

//! Settings kept in memory, keyed by application, section and key without regard to case.
class ScriptedSettingsStore : public host::SettingsStore {
 public:
  void SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                   const std::string& value) override;
  std::string GetSetting(const std::string& app, const std::string& section, const std::string& key,
                         const std::string& default_value) override;
  //! Stores a value without recording a Save (the user's settings before the test).
  void Seed(const std::string& app, const std::string& section, const std::string& key, const std::string& value);
  //! The stored value, or nothing when never saved or seeded.
  std::optional<std::string> Stored(const std::string& app, const std::string& section, const std::string& key) const;
  //! Every SaveSetting, in order.
  const std::vector<SettingCall>& Saves() const { return saves_; }
  //! Every GetSetting, in order (value = the default passed).
  const std::vector<SettingCall>& Gets() const { return gets_; }
  //! Keys of the Saves, in order (for comparing the order).
  std::vector<std::string> SavedKeys() const;

 private:
  static std::string KeyOf(const std::string& app, const std::string& section, const std::string& key);
  std::map<std::string, std::string> values_;
  std::vector<SettingCall> saves_;
  std::vector<SettingCall> gets_;
};

//! One CheckPermission question.
struct PermissionCall {
  std::string task_code, area, sub_area;
};
//! One RecordTaskActivity entry.
struct ActivityCall {
  std::string task_code, screen, detail;
};

//! The application server. Permissions answer False unless granted; the connection, the
//! error object and the settings store are the ones set (null when set so, to test a
//! missing object).
class ScriptedAppServer : public host::AppServer {
 public:
  ScriptedAppServer(std::shared_ptr<host::DBConnection> db, std::shared_ptr<host::ErrorObject> errors,
                    std::shared_ptr<host::SettingsStore> settings);

  void Grant(const std::string& task_code, bool held = true);
  //! Every code answers `held` unless granted or refused one by one.
  void GrantAll(bool held = true) { default_permission_ = held; }
  //! Makes CheckPermission throw HostError for this code.
  void ThrowOnPermission(const std::string& task_code, int32_t number);
  void SetConnection(std::shared_ptr<host::DBConnection> db) { db_ = std::move(db); }
  void SetErrorObject(std::shared_ptr<host::ErrorObject> errors) { errors_ = std::move(errors); }
  void SetSettings(std::shared_ptr<host::SettingsStore> settings) { settings_ = std::move(settings); }

  // Suite services (scripted ones are in support/scripted_suite.h); none unless set.
  void SetReservationService(std::shared_ptr<host::ReservationService> s) { reservations_ = std::move(s); }
  void SetInvoicingService(std::shared_ptr<host::InvoicingService> s) { invoicing_ = std::move(s); }
  void SetRegister(std::shared_ptr<host::RegisterService> s) { register_ = std::move(s); }
  //! CreateWillCall hands out this object (the same one each time) and counts the requests.
  void SetWillCall(std::shared_ptr<host::WillCallService> s) { will_call_ = std::move(s); }
  void SetReportService(std::shared_ptr<host::ReportService> s) { reports_ = std::move(s); }
  //! CreateCardEntry hands out this object (the same one each time) and counts the requests.
  void SetCardEntry(std::shared_ptr<host::CardEntryControl> s) { card_entry_ = std::move(s); }
  size_t WillCallCreations() const { return will_call_creations_; }
  size_t CardEntryCreations() const { return card_entry_creations_; }

  //! Every CheckPermission, in order.
  const std::vector<PermissionCall>& PermissionCalls() const { return permission_calls_; }
  //! Just the task codes of PermissionCalls, in order.
  std::vector<std::string> AskedCodes() const;
  const std::vector<ActivityCall>& Activities() const { return activities_; }
  //! The connection names asked for, in order.
  const std::vector<std::string>& ConnectionNames() const { return connection_names_; }
  size_t ErrorObjectRequests() const { return error_object_requests_; }

  std::shared_ptr<host::SettingsStore> UserSettings() override { return settings_; }
  std::shared_ptr<host::DBConnection> GetConnection(const std::string& name) override;
  std::shared_ptr<host::ErrorObject> GetErrorObject() override;
  void RecordTaskActivity(const std::string& task_code, const std::string& screen, const std::string& detail,
                          Variant& result) override;
  Variant CheckPermission(const std::string& task_code, const std::string& area, const std::string& sub_area) override;
  std::shared_ptr<host::ReservationService> GetReservationService() override { return reservations_; }
  std::shared_ptr<host::InvoicingService> GetInvoicingService() override { return invoicing_; }
  std::shared_ptr<host::RegisterService> GetRegister() override { return register_; }
  std::shared_ptr<host::WillCallService> CreateWillCall() override;
  std::shared_ptr<host::ReportService> GetReportService() override { return reports_; }
  std::shared_ptr<host::CardEntryControl> CreateCardEntry() override;

 private:
  std::shared_ptr<host::ReservationService> reservations_;
  std::shared_ptr<host::InvoicingService> invoicing_;
  std::shared_ptr<host::RegisterService> register_;
  std::shared_ptr<host::WillCallService> will_call_;
  std::shared_ptr<host::ReportService> reports_;
  std::shared_ptr<host::CardEntryControl> card_entry_;
  size_t will_call_creations_ = 0;
  size_t card_entry_creations_ = 0;
  std::shared_ptr<host::DBConnection> db_;
  std::shared_ptr<host::ErrorObject> errors_;
  std::shared_ptr<host::SettingsStore> settings_;
  std::map<std::string, bool> permissions_;  // upper-cased code
  std::map<std::string, int32_t> permission_throws_;
  bool default_permission_ = false;
  std::vector<PermissionCall> permission_calls_;
  std::vector<ActivityCall> activities_;
  std::vector<std::string> connection_names_;
  size_t error_object_requests_ = 0;
};

}  // namespace kiv::test

// The scripted error object, settings store and application server: each records what
// the component asked of it and answers from what the test set.
#include "support/scripted_services.h"

#include <gtest/gtest.h>

#include <cctype>

#include "host/host_error.h"

namespace kiv::test {

namespace {

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

}  // namespace

// ---------------------------------------------------------------- ScriptedErrorObject

void ScriptedErrorObject::Display(int32_t number, const std::string& source, const std::string& description, bool flag,
                                  const Variant& opt1, const Variant& opt2, const Variant& opt3,
                                  const std::shared_ptr<host::Command>& related, const std::string& extra) {
  calls_.push_back(DisplayCall{number, source, description, flag, opt1, opt2, opt3, related, extra});
  if (throw_number_ != 0) throw HostError(throw_number_, "The error log is not available.");
}

DisplayCall ScriptedErrorObject::Last() const {
  if (calls_.empty()) {
    ADD_FAILURE() << "no error was reported to the error object";
    return DisplayCall{};
  }
  return calls_.back();
}

// ---------------------------------------------------------------- ScriptedSettingsStore

std::string ScriptedSettingsStore::KeyOf(const std::string& app, const std::string& section, const std::string& key) {
  return Upper(app) + '\x1f' + Upper(section) + '\x1f' + Upper(key);
}

void ScriptedSettingsStore::SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                                        const std::string& value) {
  saves_.push_back(SettingCall{app, section, key, value});
  values_[KeyOf(app, section, key)] = value;
}

std::string ScriptedSettingsStore::GetSetting(const std::string& app, const std::string& section,
                                              const std::string& key, const std::string& default_value) {
  gets_.push_back(SettingCall{app, section, key, default_value});
  auto it = values_.find(KeyOf(app, section, key));
  return it == values_.end() ? default_value : it->second;
}

void ScriptedSettingsStore::Seed(const std::string& app, const std::string& section, const std::string& key,
                                 const std::string& value) {
  values_[KeyOf(app, section, key)] = value;
}

std::optional<std::string> ScriptedSettingsStore::Stored(const std::string& app, const std::string& section,
                                                         const std::string& key) const {
  auto it = values_.find(KeyOf(app, section, key));
  if (it == values_.end()) return std::nullopt;
  return it->second;
}

std::vector<std::string> ScriptedSettingsStore::SavedKeys() const {
  std::vector<std::string> keys;
  for (const auto& s : saves_) keys.push_back(s.key);
  return keys;
}

// ---------------------------------------------------------------- ScriptedAppServer

ScriptedAppServer::ScriptedAppServer(std::shared_ptr<host::DBConnection> db, std::shared_ptr<host::ErrorObject> errors,
                                     std::shared_ptr<host::SettingsStore> settings)
    : db_(std::move(db)), errors_(std::move(errors)), settings_(std::move(settings)) {}

void ScriptedAppServer::Grant(const std::string& task_code, bool held) { permissions_[Upper(task_code)] = held; }

void ScriptedAppServer::ThrowOnPermission(const std::string& task_code, int32_t number) {
  permission_throws_[Upper(task_code)] = number;
}

std::vector<std::string> ScriptedAppServer::AskedCodes() const {
  std::vector<std::string> codes;
  for (const auto& c : permission_calls_) codes.push_back(c.task_code);
  return codes;
}

std::shared_ptr<host::DBConnection> ScriptedAppServer::GetConnection(const std::string& name) {
  connection_names_.push_back(name);
  return db_;
}

std::shared_ptr<host::ErrorObject> ScriptedAppServer::GetErrorObject() {
  ++error_object_requests_;
  return errors_;
}

void ScriptedAppServer::RecordTaskActivity(const std::string& task_code, const std::string& screen,
                                           const std::string& detail, Variant& result) {
  activities_.push_back(ActivityCall{task_code, screen, detail});
  result = Variant(true);
}

Variant ScriptedAppServer::CheckPermission(const std::string& task_code, const std::string& area,
                                           const std::string& sub_area) {
  permission_calls_.push_back(PermissionCall{task_code, area, sub_area});
  const std::string code = Upper(task_code);
  if (auto t = permission_throws_.find(code); t != permission_throws_.end())
    throw HostError(t->second, "Permission check failed for " + task_code);
  auto it = permissions_.find(code);
  return Variant(it == permissions_.end() ? default_permission_ : it->second);
}

std::shared_ptr<host::WillCallService> ScriptedAppServer::CreateWillCall() {
  ++will_call_creations_;
  return will_call_;
}

std::shared_ptr<host::CardEntryControl> ScriptedAppServer::CreateCardEntry() {
  ++card_entry_creations_;
  return card_entry_;
}

}  // namespace kiv::test

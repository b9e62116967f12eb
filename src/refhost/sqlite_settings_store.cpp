// Settings rows per user, application, section and key.
#include "refhost/sqlite_settings_store.h"

namespace kiv::refhost {

void SqliteSettingsStore::SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                                      const std::string& value) {
  TraceHostCall(trace_, "SaveSetting",
                {{"app", Variant(app)}, {"section", Variant(section)}, {"key", Variant(key)}, {"value", Variant(value)}});
  db_->Execute(
      "INSERT INTO kiv_user_setting (user_id, app_name, section, setting_key, setting_value) VALUES (?, ?, ?, ?, ?) "
      "ON CONFLICT (user_id, app_name, section, setting_key) DO UPDATE SET setting_value = excluded.setting_value",
      {Variant(user_id_), Variant(app), Variant(section), Variant(key), Variant(value)});
}

std::string SqliteSettingsStore::GetSetting(const std::string& app, const std::string& section, const std::string& key,
                                            const std::string& default_value) {
  Variant v = db_->QueryValue(
      "SELECT setting_value FROM kiv_user_setting WHERE user_id = ? AND app_name = ? AND section = ? AND "
      "setting_key = ?",
      {Variant(user_id_), Variant(app), Variant(section), Variant(key)});
  std::string answer = v.IsNull() ? default_value : v.ToString();
  TraceHostCall(trace_, "GetSetting",
                {{"app", Variant(app)}, {"section", Variant(section)}, {"key", Variant(key)},
                 {"default", Variant(default_value)}},
                {{"value", Variant(answer)}});
  return answer;
}

}  // namespace kiv::refhost

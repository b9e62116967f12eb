// The current user's persistent settings, by application, section and key.
#pragma once
#include <string>

namespace kiv::host {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  virtual void SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                           const std::string& value) = 0;
  //! The stored text, or `default_value` when the key was never saved.
  virtual std::string GetSetting(const std::string& app, const std::string& section, const std::string& key,
                                 const std::string& default_value) = 0;
};

}  // namespace kiv::host

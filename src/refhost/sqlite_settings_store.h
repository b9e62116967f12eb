// Per-user settings kept in the customer database (kiv_user_setting).
#pragma once
#include <memory>
#include <string>

#include "host/settings_store.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"

namespace kiv::refhost {

class SqliteSettingsStore : public host::SettingsStore {
 public:
  SqliteSettingsStore(std::shared_ptr<SqliteDatabase> db, std::string user_id,
                      std::shared_ptr<TraceHook> trace = nullptr)
      : db_(std::move(db)), user_id_(std::move(user_id)), trace_(std::move(trace)) {}
  //! Throws HostError when the database refuses the write.
  void SaveSetting(const std::string& app, const std::string& section, const std::string& key,
                   const std::string& value) override;
  //! Application, section and key compare without regard to case.
  std::string GetSetting(const std::string& app, const std::string& section, const std::string& key,
                         const std::string& default_value) override;

 private:
  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::shared_ptr<TraceHook> trace_;
};

}  // namespace kiv::refhost

// The reference host's error object: every report goes to the error log table and to
// standard error.
#pragma once
#include <memory>
#include <string>

#include "host/error_object.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"

namespace kiv::refhost {

class RefErrorObject : public host::ErrorObject {
 public:
  RefErrorObject(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::shared_ptr<TraceHook> trace = nullptr)
      : db_(std::move(db)), user_id_(std::move(user_id)), trace_(std::move(trace)) {}

  //! Never throws: a report that cannot be logged is still written to standard error.
  void Display(int32_t number, const std::string& source, const std::string& description, bool flag,
               const Variant& opt1, const Variant& opt2, const Variant& opt3,
               const std::shared_ptr<host::Command>& related, const std::string& extra) override;

  //! Whether reports are also written to standard error (on by default).
  void SetEcho(bool echo) { echo_ = echo; }
  int Reports() const { return reports_; }

 private:
  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::shared_ptr<TraceHook> trace_;
  bool echo_ = true;
  int reports_ = 0;
};

}  // namespace kiv::refhost

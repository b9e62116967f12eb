// Error reports: one row of kiv_error_log and one line on standard error each.
#include "refhost/ref_error_object.h"

#include <iostream>

#include "host/host_error.h"

namespace kiv::refhost {

void RefErrorObject::Display(int32_t number, const std::string& source, const std::string& description, bool,
                             const Variant&, const Variant&, const Variant&,
                             const std::shared_ptr<host::Command>& related, const std::string& extra) {
  ++reports_;
  std::string detail = extra;
  if (related != nullptr && detail.empty()) detail = related->CommandText();
  if (echo_) {
    std::cerr << "Error " << number << " in " << source << ": " << description;
    if (!detail.empty()) std::cerr << " [" << detail << "]";
    std::cerr << '\n';
  }
  try {
    // A report never waits for another program's lock: the busy message it may carry is
    // what the clerk must see at once.
    SqliteDatabase::NoWait no_wait(*db_);
    db_->Execute(
        "INSERT INTO kiv_error_log (logged_at, user_id, error_number, source, description, extra) "
        "VALUES (?, ?, ?, ?, ?, ?)",
        {Variant(db_->Now()), Variant(user_id_), Variant(number), Variant(source), Variant(description),
         Variant(detail)});
  } catch (const HostError& e) {
    if (echo_) std::cerr << "(the error log could not be written: " << e.description << ")\n";
  }
}

}  // namespace kiv::refhost

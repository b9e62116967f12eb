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
  TraceHostCall(trace_, "ErrorObject.Display",
                {{"number", Variant(number)}, {"source", Variant(source)}, {"description", Variant(description)},
                 {"extra", Variant(detail)}});
  if (echo_) {
    std::cerr << "Error " << number << " in " << source << ": " << description;
    if (!detail.empty()) std::cerr << " [" << detail << "]";
    std::cerr << '\n';
  }
  // Written once a unit of work in progress has ended, so that rolling the unit back does
  // not take the report of why with it.
  db_->AfterTransaction([db = db_.get(), user = user_id_, number, source, description, detail, echo = echo_] {
    try {
      // A report never waits for another program's lock: the busy message it may carry is
      // what the clerk must see at once.
      SqliteDatabase::NoWait no_wait(*db);
      db->Execute(
          "INSERT INTO kiv_error_log (logged_at, user_id, error_number, source, description, extra) "
          "VALUES (?, ?, ?, ?, ?, ?)",
          {Variant(db->Now()), Variant(user), Variant(number), Variant(source), Variant(description), Variant(detail)});
    } catch (const HostError& e) {
      if (echo) std::cerr << "(the error log could not be written: " << e.description << ")\n";
    }
  });
}

}  // namespace kiv::refhost

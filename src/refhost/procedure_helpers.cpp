// Helpers shared by the procedure bodies.
#include "refhost/procedure_helpers.h"

#include "core/text.h"
#include "refhost/password_hash.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

void Refuse(ProcedureCall& call, const std::string& message) {
  call.Return(-1);
  call.Out("@message", Variant(message));
}

void Succeed(ProcedureCall& call) { call.Out("@message", Variant("")); }

bool CustomerExists(SqliteDatabase& db, int32_t customer_no) {
  return !db.QueryValue("SELECT 1 FROM kiv_customer WHERE customer_no = ?", {Variant(customer_no)}).IsNull();
}

std::string NoSuchCustomer(int32_t customer_no) {
  return "Customer " + std::to_string(customer_no) + " does not exist.";
}

void RaiseUnlessCustomer(ProcedureCall& call, int32_t customer_no) {
  if (!CustomerExists(call.Db(), customer_no)) call.Raise(NoSuchCustomer(customer_no));
}

Variant DateOrNull(const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return Variant::Null();
  Date d = value.ToDate();
  if (d.IsZero()) return Variant::Null();
  return Variant(d);
}

void RequireCardReader(ProcedureCall& call) {
  static const std::string kRefused = "The user name or password given for reading cards on file is not valid.";
  // User ids compare without regard to case, as the users table does.
  const std::string named = call.Text("@kiv_user");
  if (call.User().empty() || !EqualsNoCase(named, call.User())) call.Raise(kRefused);
  auto rows = call.Db().QueryRows("SELECT password_hash, is_active FROM kiv_user WHERE user_id = ?",
                                  {Variant(call.User())});
  if (rows.empty() || !NzBool(rows[0][1])) call.Raise(kRefused);
  if (!PasswordMatches(NzString(rows[0][0]), call.Text("@kiv_password"))) call.Raise(kRefused);
}

}  // namespace kiv::refhost

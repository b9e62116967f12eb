// What the procedure bodies repeat: refusing through the return value and the message,
// looking for a customer, reading dates, and checking who may read cards on file.
#pragma once
#include <cstdint>
#include <string>

#include "core/variant.h"
#include "refhost/procedure_registry.h"

namespace kiv::refhost {

class SqliteDatabase;

//! Refuses the call the way the component expects a refusal: return value -1 and the reason
//! in "@message". Nothing is rolled back; the caller stops before writing anything.
void Refuse(ProcedureCall& call, const std::string& message);

//! Ends a call that went through: "@message" empty.
void Succeed(ProcedureCall& call);

//! True when a customer row with this number exists.
bool CustomerExists(SqliteDatabase& db, int32_t customer_no);

//! "Customer N does not exist.": the one wording of a missing customer.
std::string NoSuchCustomer(int32_t customer_no);

//! Fails the call (rolled back, error flag set) when the customer does not exist.
void RaiseUnlessCustomer(ProcedureCall& call, int32_t customer_no);

//! A date parameter as stored: Null for a null, an empty or a zero date (the component's
//! "no date"), the date otherwise.
Variant DateOrNull(const Variant& value);

//! Card details are read only by the signed-in user, naming themselves in "@kiv_user" and
//! giving their own password in "@kiv_password": an unknown or inactive user, a user without
//! a stored password, an empty or wrong password, or a "@kiv_user" other than the signed-in
//! user fails the call, with one message that does not say which part was wrong.
void RequireCardReader(ProcedureCall& call);

}  // namespace kiv::refhost

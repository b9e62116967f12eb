// Writing a customer back: the customer row through its procedure, then each address
// (stored, or deleted once emptied), the household link statement and the deletion.
#include "records/c_customer.h"

#include <exception>

#include "host/db_patterns.h"
#include "host/error_trap.h"
#include "host/host_error.h"
#include "records/system_country.h"

namespace kiv {

namespace {

//! Any of the eight fields holds something: an address with none left is deleted.
bool HasContent(const CAddress& a) {
  return !a.AddressLine1().empty() || !a.AddressLine2().empty() || !a.City().empty() || !a.State().empty() ||
         !a.Zip().empty() || !a.CountryID().empty() || !a.Phone().empty() || !a.Fax().empty();
}

//! A primary address never stored is worth storing only when the clerk entered something:
//! the system's own country alone does not count.
bool NewPrimaryWorthStoring(const CAddress& a) {
  const bool foreign_country = !a.CountryID().empty() && a.CountryID() != SystemCountryID();
  return !a.AddressLine1().empty() || !a.Zip().empty() || foreign_country || !a.Phone().empty() ||
         !a.State().empty();
}

}  // namespace

void CCustomer::ReportFailure(int32_t number, const std::string& description, const std::string& routine,
                              const std::shared_ptr<host::Command>& related) {
  last_error_number_ = number;
  last_error_description_ = description;
  host::ReportQuietly(error_object_.get(), number, source_name_ + routine, description, related);
}

bool CCustomer::SaveAddresses() {
  if (addresses_ == nullptr) return true;
  for (const auto& entry : *addresses_) {
    if (entry.value == nullptr) continue;
    CAddress& address = *entry.value;
    const bool primary = address.AddressType() == "PRIMARY";
    if (primary && address.AddressID() == 0) {
      if (NewPrimaryWorthStoring(address)) {
        address.SetCustomerNo(customer_no_);
        address.Update(db_, error_object_);
        address.SetDataChanged(false);
      }
    } else if (HasContent(address)) {
      address.SetCustomerNo(customer_no_);
      address.Update(db_, error_object_);
      address.SetDataChanged(false);
    } else {
      // Clearing every field of an address deletes it.
      address.DeleteAddress(db_, error_object_);
    }
    if (primary) primary_address_id_ = address.AddressID();
  }
  return true;
}

bool CCustomer::Update() {
  bool result = false;
  std::shared_ptr<host::Command> command;
  try {
    if (db_ == nullptr) RaiseError(kErrObjectRequired);
    // The customer row and its addresses are one save: a crash between them leaves neither.
    host::UnitOfWork unit(db_.get());
    if (addresses_ != nullptr)
      for (const auto& entry : *addresses_)
        if (entry.value != nullptr && entry.value->AddressType() == "PRIMARY") zip_ = entry.value->Zip();

    command = host::PrepareProcedure(*db_, "KiV_SP_CUSTOMER_UpdateCustomer");
    if (command == nullptr) RaiseError(kErrObjectRequired);
    auto& params = command->GetParameters();
    params["@customer_no"].SetValue(Variant(customer_no_));
    params["@first_name"].SetValue(Variant(first_name_));
    params["@last_name"].SetValue(Variant(last_name_));
    params["@full_name"].SetValue(Variant(full_name_));
    params["@company_name"].SetValue(Variant(company_name_));
    params["@customer_type"].SetValue(Variant(customer_type_));
    params["@customer_kind"].SetValue(Variant(customer_kind_));
    params["@zip"].SetValue(Variant(zip_));
    params["@account_id"].SetValue(Variant(account_no_));
    params["@status_id"].SetValue(Variant(status_));
    params["@comment_note"].SetValue(Variant(comment_note_));
    params["@dob"].SetValue(Variant(dob_));
    params["@has_image"].SetValue(Variant(has_image_));
    params["@commission_percentage"].SetValue(Variant(commission_percentage_));
    params["@discount_percentage"].SetValue(Variant(discount_percentage_));
    params["@locked"].SetValue(Variant(locked_));
    params["@preloaded"].SetValue(Variant(int16_t{0}));
    params["@cust_modified"].SetValue(Variant(int16_t{-1}));
    params["@kiv_user"].SetValue(Variant(db_->UserID()));
    params["@customer_level_id"].SetValue(Variant(customer_level_id_));
    params["@gender"].SetValue(Variant(gender_));
    params["@date_of_release"].SetValue(date_of_release_);
    params["@household_no"].SetValue(Variant(household_no_));
    params["@household_primary"].SetValue(Variant(household_primary_));
    params["@do_not_mail"].SetValue(Variant(do_not_mail_));
    params["@email"].SetValue(Variant(email_));
    params["@wedding_anniversary"].SetValue(Variant(wedding_anniversary_));
    params["@occupation"].SetValue(Variant(occupation_));
    params["@work_phone"].SetValue(Variant(work_phone_));
    params["@cell_phone"].SetValue(Variant(cell_phone_));

    if (!host::ExecuteProcedure(*db_, command)) return false;
    // For a new customer the procedure answers with the number it assigned.
    customer_no_ = host::OutputLong(*command, "@customer_no", customer_no_);
    result = true;
    if (household_no_ == 0) SetHouseholdNo(customer_no_);
    SaveAddresses();
    is_new_customer_ = false;
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure();
    ReportFailure(failure.number, failure.description, " Update", command);
    result = false;
  }
  return result;
}

bool CCustomer::DeleteCustomer() {
  std::shared_ptr<host::Command> command;
  try {
    if (db_ == nullptr) RaiseError(kErrObjectRequired);
    // This procedure name carries no product prefix.
    command = db_->CreateCommandText("SP_DeleteCustomer");
    if (command == nullptr) RaiseError(kErrObjectRequired);
    command->SetCommandType(host::adCmdStoredProc);
    auto& params = command->GetParameters();
    params.Refresh();
    // The number goes after "@RETURN_VALUE" when the procedure lists its return value first.
    const bool return_first = params.Count() > 0 && params.Item(0).Name() == "@RETURN_VALUE";
    params.Item(return_first ? 1 : 0).SetValue(Variant(customer_no_));
    return host::ExecuteProcedure(*db_, command);
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure();
    ReportFailure(failure.number, failure.description, " DeleteCustomer", command);
  }
  return false;
}

bool CCustomer::UpdateHouseholdNo() {
  if (db_ == nullptr) return false;
  try {
    // The flag is spelled as the word True or False in the statement, not as 1 or 0.
    const std::string sql = "UPDATE kiv_customer SET household_no = " + std::to_string(household_no_) +
                            ", household_primary = " + (household_primary_ ? "True" : "False") +
                            " WHERE customer_no = " + std::to_string(customer_no_);
    bool error = false;
    Variant extra;
    db_->ExecuteSQL(sql, error, extra);
    return !error;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace kiv

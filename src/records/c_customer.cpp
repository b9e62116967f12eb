// The customer record: construction, loading with the household's addresses, the primary
// address and the address pass-through properties, and the properties with rules of their own.
#include "records/c_customer.h"

#include <exception>

#include "core/version.h"
#include "host/db_patterns.h"
#include "records/system_country.h"

namespace kiv {

CCustomer::CCustomer()
    : customer_type_("P"),
      customer_level_id_("None"),
      addresses_(std::make_shared<AddressCollection>()),
      source_name_(SourcePrefix("CCustomer")) {}

CCustomer::~CCustomer() {
  // The collection is emptied entry by entry even when other household members hold it:
  // that is how a record has always ended.
  if (addresses_ == nullptr) return;
  while (addresses_->RemoveFirst()) {
  }
}

std::shared_ptr<ui::Ui> CCustomer::GetUi() const { return ui_ ? ui_ : SharedSilentUi(); }

std::shared_ptr<CAddress> CCustomer::NewAddress() const {
  auto address = std::make_shared<CAddress>();
  address->SetUi(ui_);
  return address;
}

void CCustomer::ResetAddresses() {
  if (addresses_ != nullptr)
    while (addresses_->RemoveFirst()) {
    }
  addresses_ = std::make_shared<AddressCollection>();
}

void CCustomer::SetHouseholdNo(int32_t v) {
  household_no_ = v;
  household_primary_ = (customer_no_ == v);
}

bool CCustomer::OpenCustomer(const std::shared_ptr<host::DBConnection>& oDB,
                             const std::shared_ptr<host::ErrorObject>& oError, const Variant& lCustomerNo) {
  db_ = oDB;
  error_object_ = oError;
  if (db_ == nullptr) return false;
  bool result = false;
  try {
    ResetAddresses();
    auto command = host::PrepareProcedure(*db_, "KIV_SP_GetCustomer");
    if (command == nullptr) RaiseError(kErrObjectRequired);
    command->GetParameters()["@customer_no"].SetValue(lCustomerNo);
    host::ScopedRecordset rs = host::OpenProcedure(*db_, command);
    if (!rs.Eof()) {
      is_new_customer_ = false;
      host::Recordset& row = *rs;
      customer_no_ = NzLong(row["customer_no"]);
      full_name_ = NzString(row["full_name"]);
      last_name_ = NzString(row["last_name"]);
      first_name_ = NzString(row["first_name"]);
      company_name_ = NzString(row["company_name"]);
      customer_type_ = NzString(row["customer_type"]);
      zip_ = NzString(row["Zip"]);
      account_no_ = NzString(row["account_id"]);
      comment_note_ = NzString(row["comment_note"]);
      dob_ = NzDate(row["DOB"]);
      locked_ = NzBool(row["Locked"]);
      date_of_release_ = row["date_of_release"];
      has_image_ = NzBool(row["has_image"]);
      status_ = NzString(row["status_id"]);
      discount_percentage_ = NzDouble(row["discount_percentage"]);
      commission_percentage_ = NzDouble(row["commission_percentage"]);
      household_primary_ = NzBool(row["household_primary"]);
      household_no_ = NzLong(row["household_no"]);
      customer_level_id_ = NzString(row["Customer_Level_ID"]);
      gender_ = NzString(row["Gender"]);
      do_not_mail_ = NzBool(row["do_not_mail"]);
      customer_kind_ = NzString(row["customer_kind"]);
      email_ = NzString(row["EMail"]);
      work_phone_ = NzString(row["work_phone"]);
      cell_phone_ = NzString(row["cell_phone"]);
      occupation_ = NzString(row["Occupation"]);
      wedding_anniversary_ = NzDate(row["wedding_anniversary"]);

      club_member_id_ = GetClubMemberId(customer_no_);

      has_willcall_ = NzBool(row["has_willcall"]);
      has_club_ = NzBool(row["has_club"]);
      has_so_ = NzBool(row["has_so"]);
      has_reservation_ = NzBool(row["has_reservation"]);
      has_relationship_ = NzBool(row["has_relationship"]);

      // A customer outside any household is its own household.
      if (household_no_ == 0) SetHouseholdNo(customer_no_);

      // Read by the household number on purpose: every member of a household shares the
      // household primary's address rows.
      host::ScopedRecordset rows =
          host::OpenQuery(*db_, "SELECT * FROM kiv_customer_address WHERE customer_no = " + std::to_string(household_no_));
      for (; !rows.Eof(); rows->MoveNext()) {
        host::Recordset& address_row = *rows;
        const int32_t address_no = NzLong(address_row["address_no"]);
        if (NzLong(address_row["primary_address"]) != 0) primary_address_id_ = address_no;
        auto address = NewAddress();
        if (!address->OpenAddress(db_, address_no)) continue;
        try {
          addresses_->Add(NzString(address_row["address_type"]), address);
        } catch (const VbError&) {
          // A second address of the same type stays out of the collection: the first one wins.
        }
        if (address->AddressID() == primary_address_id_) {
          primary_address_ = address;
          primary_address_loaded_ = true;
        }
      }
      result = true;
    }
  } catch (const std::exception&) {
    result = false;
  }
  photo_loaded_ = false;
  return result;
}

bool CCustomer::OpenPrimaryAddress() {
  if (is_new_customer_ || primary_address_loaded_) return false;
  try {
    if (primary_address_ == nullptr) {
      primary_address_ = NewAddress();
      primary_address_->SetAddressType("PRIMARY");
    }
    if (db_ == nullptr) return false;
    const bool opened = primary_address_->OpenAddress(db_, primary_address_id_);
    primary_address_loaded_ = true;
    return opened;
  } catch (const std::exception&) {
    return false;
  }
}

std::shared_ptr<CAddress> CCustomer::PrimaryAddress() const {
  if (primary_address_ != nullptr) return primary_address_;
  return GetAddress("PRIMARY");
}

std::shared_ptr<CAddress> CCustomer::GetAddress(const std::string& sType) const {
  if (addresses_ == nullptr) return nullptr;
  const auto* found = addresses_->Find(sType);
  return found == nullptr ? nullptr : *found;
}

bool CCustomer::AddressesChanges() const {
  if (addresses_ == nullptr) return false;
  for (const auto& entry : *addresses_)
    if (entry.value != nullptr && entry.value->DataChanged()) return true;
  return false;
}

bool CCustomer::isInternational() {
  if (PrimaryAddress() == nullptr) OpenPrimaryAddress();
  auto primary = PrimaryAddress();
  if (primary == nullptr) return false;
  const std::string& country = primary->CountryID();
  return !country.empty() && country != SystemCountryID();
}

std::string CCustomer::AddressLine1() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->AddressLine1();
}

std::string CCustomer::AddressLine2() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->AddressLine2();
}

std::string CCustomer::City() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->City();
}

std::string CCustomer::State() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->State();
}

std::string CCustomer::CountryID() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->CountryID();
}

std::string CCustomer::Phone() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->Phone();
}

std::string CCustomer::Fax() {
  auto primary = PrimaryAddress();
  return primary == nullptr ? std::string() : primary->Fax();
}

void CCustomer::SetPhone(const std::string& v) {
  auto primary = PrimaryAddress();
  if (primary == nullptr || primary->Phone() == v) return;
  primary->SetPhone(v);
  primary->SetDataChanged(true);
}

void CCustomer::SetFax(const std::string& v) {
  auto primary = PrimaryAddress();
  if (primary == nullptr || primary->Fax() == v) return;
  primary->SetFax(v);
  primary->SetDataChanged(true);
}

const std::string& CCustomer::AccountNo() {
  if (db_ == nullptr) return account_no_;
  try {
    host::ScopedRecordset rs =
        host::OpenQuery(*db_, "SELECT account_id FROM kiv_customer WHERE customer_no = " + std::to_string(customer_no_));
    if (!rs.Eof()) account_no_ = NzString((*rs)["account_id"]);
  } catch (const std::exception&) {
    // The last known account stays.
  }
  return account_no_;
}

}  // namespace kiv

// The address record: change tracking on every let, loading by number, the address
// procedure for writes, deletion with the return-value position rule, numbering, the
// postal-code lookup and the copy from another stored address.
#include "records/c_address.h"

#include <exception>

#include "core/version.h"
#include "host/db_patterns.h"
#include "host/error_trap.h"
#include "host/host_error.h"

namespace kiv {

namespace {

const char* const kClassName = "CAddress";

//! One column as text, a null (or a column the row does not have) as empty text: a load
//! goes on past a column it cannot read.
std::string TextColumn(host::Recordset& rs, const char* name) {
  try {
    return NzString(rs[name]);
  } catch (const std::exception&) {
    return std::string();
  }
}

//! The address number goes after "@RETURN_VALUE" when the procedure lists its return value first.
host::Parameter& KeyParameter(host::Command& command) {
  auto& params = command.GetParameters();
  if (params.Count() > 0 && params.Item(0).Name() == "@RETURN_VALUE") return params.Item(1);
  return params.Item(0);
}

}  // namespace

std::shared_ptr<ui::Ui> SharedSilentUi() {
  static const std::shared_ptr<ui::Ui> silent = std::make_shared<ui::SilentUi>();
  return silent;
}

std::shared_ptr<ui::Ui> CAddress::GetUi() const { return ui_ ? ui_ : SharedSilentUi(); }

void CAddress::SetText(std::string& field, const std::string& value) {
  if (field == value) return;
  field = value;
  data_changed_ = true;
}

void CAddress::SetCustomerNo(int32_t value) {
  if (customer_no_ == value) return;
  customer_no_ = value;
  data_changed_ = true;
}

void CAddress::SetAddressID(int32_t value) {
  if (address_id_ == value) return;
  address_id_ = value;
  data_changed_ = true;
}

void CAddress::SetAddressType(const std::string& value) { SetText(address_type_, value); }
void CAddress::SetCountryID(const std::string& value) { SetText(country_id_, value); }
void CAddress::SetZip(const std::string& value) { SetText(zip_, value); }
void CAddress::SetPhone(const std::string& value) { SetText(phone_, value); }
void CAddress::SetFax(const std::string& value) { SetText(fax_, value); }
void CAddress::SetState(const std::string& value) { SetText(state_, value); }
void CAddress::SetCity(const std::string& value) { SetText(city_, value); }
void CAddress::SetAddressLine2(const std::string& value) { SetText(address_line2_, value); }
void CAddress::SetAddressLine1(const std::string& value) { SetText(address_line1_, value); }
void CAddress::SetName(const std::string& value) { SetText(name_, value); }

void CAddress::ClearTexts() {
  name_.clear();
  address_line1_.clear();
  address_line2_.clear();
  city_.clear();
  state_.clear();
  zip_.clear();
  country_id_.clear();
  phone_.clear();
  fax_.clear();
}

bool CAddress::OpenAddress(const std::shared_ptr<host::DBConnection>& oDB, int32_t lAddressID) {
  bool result = false;
  // The type survives a load that finds nothing: the owner keyed the object by it.
  ClearTexts();
  if (lAddressID != 0) {
    address_id_ = lAddressID;
    try {
      if (oDB == nullptr) throw VbError(kErrObjectRequired, "Object required");
      auto command = host::PrepareProcedure(*oDB, "KIV_SP_ADDRESS_GetAddress");
      if (command == nullptr) throw VbError(kErrObjectRequired, "Object required");
      command->GetParameters()["@address_no"].SetValue(Variant(address_id_));
      host::ScopedRecordset rs = host::OpenProcedure(*oDB, command);
      if (rs && rs->IsOpen() && !rs->Eof()) {
        ReadPlace(*rs);
        phone_ = TextColumn(*rs, "Phone");
        fax_ = TextColumn(*rs, "Fax");
        result = true;
      }
    } catch (const std::exception&) {
      // A load that fails reads as "not found".
    }
  }
  data_read_ = true;
  data_changed_ = false;
  return result;
}

void CAddress::ReadPlace(host::Recordset& rs) {
  address_line1_ = TextColumn(rs, "Address_1");
  address_line2_ = TextColumn(rs, "Address_2");
  city_ = TextColumn(rs, "City");
  state_ = TextColumn(rs, "State");
  zip_ = TextColumn(rs, "Zip");
  country_id_ = TextColumn(rs, "Country_ID");
  address_type_ = TextColumn(rs, "address_type");
  name_ = TextColumn(rs, "Name");
}

bool CAddress::Update(const std::shared_ptr<host::DBConnection>& oDB,
                      const std::shared_ptr<host::ErrorObject>& m_oError) {
  std::shared_ptr<host::Command> command;
  int32_t number = 0;
  std::string description;
  try {
    if (oDB == nullptr) throw VbError(kErrObjectRequired, "Object required");
    command = host::PrepareProcedure(*oDB, "KIV_SP_UpdateAddress");
    if (command == nullptr) throw VbError(kErrObjectRequired, "Object required");
    auto& params = command->GetParameters();
    params["@address_no"].SetValue(Variant(address_id_));
    params["@address_1"].SetValue(Variant(address_line1_));
    params["@address_2"].SetValue(Variant(address_line2_));
    params["@city"].SetValue(Variant(city_));
    params["@state"].SetValue(Variant(state_));
    params["@zip"].SetValue(Variant(zip_));
    params["@country_id"].SetValue(Variant(country_id_));
    params["@address_type"].SetValue(Variant(address_type_));
    params["@name"].SetValue(Variant(name_));
    params["@customer_no"].SetValue(Variant(customer_no_));
    params["@phone"].SetValue(Variant(phone_));
    params["@fax"].SetValue(Variant(fax_));
    if (host::ExecuteProcedure(*oDB, command)) {
      if (host::OutputLong(*command, "@return_value", -1) < 0) {
        GetUi()->MsgBox(host::OutputText(*command, "@message"), ui::vbInformation, "Error Updating Address");
        return false;
      }
      // Taken directly: writing the number is not an edit of the address.
      address_id_ = host::OutputLong(*command, "@address_no", 0);
      return true;
    }
    // The flag carries no failure of its own: the report names the routine only.
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure();
    number = failure.number;
    description = failure.description;
  }
  host::ReportQuietly(m_oError.get(), number, SourcePrefix(kClassName), description + " UpdateAddress", command);
  return false;
}

bool CAddress::DeleteAddress(const std::shared_ptr<host::DBConnection>& oDB,
                             const std::shared_ptr<host::ErrorObject>& m_oError) {
  std::shared_ptr<host::Command> command;
  int32_t number = 0;
  std::string description;
  try {
    if (oDB == nullptr) return false;
    bool error = false;
    command = oDB->CreateCommand(error);
    if (command == nullptr) return false;
    auto named = oDB->CreateCommandText("SP_DeleteAddress");
    if (named == nullptr) throw VbError(kErrObjectRequired, "Object required");
    command->SetCommandText(named->CommandText());
    command->SetCommandType(host::adCmdStoredProc);
    command->GetParameters().Refresh();
    KeyParameter(*command).SetValue(Variant(address_id_));
    if (host::ExecuteProcedure(*oDB, command)) return true;
  } catch (...) {
    const host::TrappedError failure = host::CurrentFailure();
    number = failure.number;
    description = failure.description;
  }
  host::ReportQuietly(m_oError.get(), number, SourcePrefix(kClassName), description + " DeleteAddress", command);
  return false;
}

int32_t CAddress::GetNewAddressID(const std::shared_ptr<host::DBConnection>& oDB) {
  if (oDB == nullptr) return 0;
  try {
    return oDB->GetNextSequenceNo("seq_address_no");
  } catch (const std::exception&) {
    return 0;
  }
}

bool CAddress::ZipLookUp(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sZip,
                         ZipLookUpArgs& args) {
  if (oDB == nullptr) return false;
  try {
    // The zip goes in exactly as typed: a postal code never holds a quote.
    host::ScopedRecordset rs = host::OpenQuery(*oDB, "SELECT * FROM kiv_zip_code WHERE zip = '" + sZip + "'", true);
    if (rs.Eof()) return false;
    args.sCity = TextColumn(*rs, "City");
    args.sState = TextColumn(*rs, "State");
    args.sCounty = TextColumn(*rs, "county");
    args.sCountryID = TextColumn(*rs, "Country_ID");
    args.sAreaCode = TextColumn(*rs, "area_code");
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CAddress::ZipLookUp(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sZip) {
  ZipLookUpArgs ignored;
  return ZipLookUp(oDB, sZip, ignored);
}

bool CAddress::CopyFromAddressID(const std::shared_ptr<host::DBConnection>& oDB, int32_t lFromAddressID) {
  bool result = false;
  // Phone and fax belong to this address, not to the one copied from.
  address_line1_.clear();
  address_line2_.clear();
  city_.clear();
  state_.clear();
  zip_.clear();
  country_id_.clear();
  name_.clear();
  if (lFromAddressID != 0 && oDB != nullptr) {
    try {
      host::ScopedRecordset rs =
          host::OpenQuery(*oDB, "SELECT * FROM kiv_address WHERE address_no = " + std::to_string(lFromAddressID));
      if (!rs.Eof()) {
        ReadPlace(*rs);
        result = true;
      }
    } catch (const std::exception&) {
    }
  }
  // Marked changed so that the next Update stores the copy under this object's own number.
  data_read_ = true;
  data_changed_ = true;
  return result;
}

}  // namespace kiv

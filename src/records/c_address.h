// One postal address of a customer: loaded by number, written through the address
// procedure, deleted, copied from another stored address, and a postal-code lookup.
// Members are declared in the order of the public interface.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "host/db_connection.h"
#include "host/error_object.h"
#include "ui/ui.h"

namespace kiv {

//! The optional outputs of ZipLookUp; left as the caller gave them when the zip is unknown.
struct ZipLookUpArgs {
  std::string sCity;
  std::string sState;
  std::string sCounty;
  std::string sCountryID;
  std::string sAreaCode;
};

class CAddress {
 public:
  CAddress() = default;

  //! Something was changed since the last open; the caller may set it either way.
  bool DataChanged() const { return data_changed_; }
  void SetDataChanged(bool value) { data_changed_ = value; }

  //! Deletes the row numbered AddressID through "SP_DeleteAddress"; failures go to m_oError's Display.
  bool DeleteAddress(const std::shared_ptr<host::DBConnection>& oDB,
                     const std::shared_ptr<host::ErrorObject>& m_oError);
  //! Loads the address numbered lAddressID; True only when a row was found. The texts are
  //! cleared first (AddressType kept); 0 reads nothing and keeps AddressID.
  bool OpenAddress(const std::shared_ptr<host::DBConnection>& oDB, int32_t lAddressID);
  //! Writes the address (AddressID 0 creates one and takes its number); DataChanged untouched.
  bool Update(const std::shared_ptr<host::DBConnection>& oDB, const std::shared_ptr<host::ErrorObject>& m_oError);

  // Every let below marks DataChanged when the new value differs (texts compared exactly).
  void SetCustomerNo(int32_t value);
  int32_t CustomerNo() const { return customer_no_; }
  void SetAddressType(const std::string& value);
  const std::string& AddressType() const { return address_type_; }
  void SetCountryID(const std::string& value);
  const std::string& CountryID() const { return country_id_; }
  void SetZip(const std::string& value);
  const std::string& Zip() const { return zip_; }
  void SetPhone(const std::string& value);
  const std::string& Phone() const { return phone_; }
  void SetFax(const std::string& value);
  const std::string& Fax() const { return fax_; }
  void SetState(const std::string& value);
  const std::string& State() const { return state_; }
  void SetCity(const std::string& value);
  const std::string& City() const { return city_; }
  void SetAddressLine2(const std::string& value);
  const std::string& AddressLine2() const { return address_line2_; }
  void SetAddressLine1(const std::string& value);
  const std::string& AddressLine1() const { return address_line1_; }
  int32_t AddressID() const { return address_id_; }
  void SetAddressID(int32_t value);

  //! The next number of "seq_address_no"; AddressID is not touched. 0 without a connection.
  int32_t GetNewAddressID(const std::shared_ptr<host::DBConnection>& oDB);

  const std::string& Name() const { return name_; }
  void SetName(const std::string& value);

  //! Looks sZip up as given (no trimming, no quoting) and fills the outputs; False and the
  //! outputs untouched when nothing is found. The address's own fields are not touched.
  bool ZipLookUp(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sZip, ZipLookUpArgs& args);
  bool ZipLookUp(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sZip);
  //! Copies another stored address into this one, keeping Phone, Fax, AddressID and CustomerNo;
  //! always marks the object read and changed.
  bool CopyFromAddressID(const std::shared_ptr<host::DBConnection>& oDB, int32_t lFromAddressID);

  //! An open or copy has been attempted on this object.
  bool DataRead() const { return data_read_; }

  // Component-internal: where the "Error Updating Address" box goes. A record without its
  // own Ui shows nothing (every box answers its first button).
  void SetUi(std::shared_ptr<ui::Ui> value) { ui_ = std::move(value); }
  std::shared_ptr<ui::Ui> GetUi() const;

 private:
  void SetText(std::string& field, const std::string& value);
  void ClearTexts();
  //! Takes the place columns (lines, city, state, zip, country, type, name) of the current row.
  void ReadPlace(host::Recordset& rs);

  int32_t address_id_ = 0;
  int32_t customer_no_ = 0;
  std::string address_type_;
  std::string name_;
  std::string address_line1_;
  std::string address_line2_;
  std::string city_;
  std::string state_;
  std::string zip_;
  std::string country_id_;
  std::string phone_;
  std::string fax_;
  bool data_changed_ = false;
  bool data_read_ = false;
  std::shared_ptr<ui::Ui> ui_;
};

//! The Ui shared by every record that was given none: nobody in front of it.
std::shared_ptr<ui::Ui> SharedSilentUi();

}  // namespace kiv

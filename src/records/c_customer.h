// The public record of one customer (person or company): its own columns, household link,
// addresses, status flags, side records and photograph. Members are declared in the order
// of the public interface; component-internal members follow at the end.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/date.h"
#include "core/keyed_collection.h"
#include "core/variant.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "host/field.h"
#include "records/c_address.h"
#include "records/card_entry.h"
#include "ui/ui.h"

namespace kiv {

class Photo;

//! A customer's addresses keyed by address type. One collection object may be shared by
//! every cached member of a household, so a change through one is seen by all.
using AddressCollection = KeyedCollection<std::shared_ptr<CAddress>>;

class CCustomer {
 public:
  CCustomer();
  ~CCustomer();
  CCustomer(const CCustomer&) = delete;
  CCustomer& operator=(const CCustomer&) = delete;

  // --- Card on file (filled by OpenCreditCard, StoreCreditCard) ---
  int32_t CardCustomerNo() const { return card_customer_no_; }
  void SetCardCustomerNo(int32_t v) { card_customer_no_ = v; }
  int32_t CardSeqNo() const { return card_seq_no_; }
  void SetCardSeqNo(int32_t v) { card_seq_no_ = v; }
  const std::string& CardXNo() const { return card_x_no_; }
  void SetCardXNo(const std::string& v) { card_x_no_ = v; }
  const std::string& CardNo() const { return card_no_; }
  void SetCardNo(const std::string& v) { card_no_ = v; }
  const std::string& CardExpDate() const { return card_exp_date_; }
  void SetCardExpDate(const std::string& v) { card_exp_date_ = v; }
  const std::string& CardZip() const { return card_zip_; }
  void SetCardZip(const std::string& v) { card_zip_ = v; }
  const std::string& CardAddress() const { return card_address_; }
  void SetCardAddress(const std::string& v) { card_address_ = v; }

  // --- Alerts (filled by OpenAlertsAndSettings, saved by SaveAlertsAndSettings) ---
  const std::string& ChildsFullName() const { return childs_full_name_; }
  void SetChildsFullName(const std::string& v) { childs_full_name_ = v; }
  const std::string& CellPhoneContact() const { return cell_phone_contact_; }
  void SetCellPhoneContact(const std::string& v) { cell_phone_contact_ = v; }
  const std::string& ResponsibleAdult1() const { return responsible_adult1_; }
  void SetResponsibleAdult1(const std::string& v) { responsible_adult1_ = v; }
  const std::string& ResponsibleAdult2() const { return responsible_adult2_; }
  void SetResponsibleAdult2(const std::string& v) { responsible_adult2_ = v; }
  const std::string& Allergies() const { return allergies_; }
  void SetAllergies(const std::string& v) { allergies_ = v; }
  const std::string& Medications() const { return medications_; }
  void SetMedications(const std::string& v) { medications_ = v; }
  const std::string& SpecialNeeds() const { return special_needs_; }
  void SetSpecialNeeds(const std::string& v) { special_needs_ = v; }

  //! Set by the engine; the employer link is read for this year.
  void SetFiscalYear(int32_t v) { fiscal_year_ = v; }

  const std::string& WorkPhone() const { return work_phone_; }
  void SetWorkPhone(const std::string& v) { work_phone_ = v; }
  const std::string& ClubMemberId() const { return club_member_id_; }
  void SetClubMemberId(const std::string& v) { club_member_id_ = v; }
  const std::string& CellPhone() const { return cell_phone_; }
  void SetCellPhone(const std::string& v) { cell_phone_ = v; }
  const std::string& Occupation() const { return occupation_; }
  void SetOccupation(const std::string& v) { occupation_ = v; }
  const Date& WeddingAnniversary() const { return wedding_anniversary_; }
  void SetWeddingAnniversary(const Date& v) { wedding_anniversary_ = v; }
  //! A caller creating a new customer sets it True; a successful load or save sets it False.
  void SetIsNewCustomer(bool v) { is_new_customer_ = v; }
  bool IsNewCustomer() const { return is_new_customer_; }

  void SetDB(std::shared_ptr<host::DBConnection> v) { db_ = std::move(v); }
  void SetErrorObject(std::shared_ptr<host::ErrorObject> v) { error_object_ = std::move(v); }

  //! Asks the database again on every read; the last known value when the query fails.
  const std::string& AccountNo();
  void SetAccountNo(const std::string& v) { account_no_ = v; }
  const std::string& CustomerLevelID() const { return customer_level_id_; }
  void SetCustomerLevelID(const std::string& v) { customer_level_id_ = v; }
  int32_t PrimaryAddressID() const { return primary_address_id_; }
  void SetPrimaryAddressID(int32_t v) { primary_address_id_ = v; }
  // The numeric setters raise overflow (6) for an infinity or NaN: the columns cannot hold one.
  double DiscountPercentage() const { return discount_percentage_; }
  void SetDiscountPercentage(double v) { discount_percentage_ = FiniteNumber(v); }
  double CommissionPercentage() const { return commission_percentage_; }
  void SetCommissionPercentage(double v) { commission_percentage_ = FiniteNumber(v); }
  bool HasImage() const { return has_image_; }
  void SetHasImage(bool v) { has_image_ = v; }
  const std::string& Status() const { return status_; }
  void SetStatus(const std::string& v) { status_ = v; }
  int32_t CustomerNo() const { return customer_no_; }
  void SetCustomerNo(int32_t v) { customer_no_ = v; }
  int32_t HouseholdNo() const { return household_no_; }
  //! Stores the number; the record is the household primary when the number is its own.
  void SetHouseholdNo(int32_t v);

  //! The primary address's country is set and is not the system country (exact comparison).
  bool isInternational();
  //! Loads the customer and the household's addresses; False (construction values kept) when
  //! no row comes back or there is no connection.
  bool OpenCustomer(const std::shared_ptr<host::DBConnection>& oDB, const std::shared_ptr<host::ErrorObject>& oError,
                    const Variant& lCustomerNo);
  //! Writes the customer row and then its addresses; failures are reported through Display.
  bool Update();

  //! A date or Null, kept as read.
  const Variant& DateOfRelease() const { return date_of_release_; }
  void SetDateOfRelease(const Variant& v) { date_of_release_ = v; }
  bool Locked() const { return locked_; }
  void SetLocked(bool v) { locked_ = v; }
  const Date& DOB() const { return dob_; }
  void SetDOB(const Date& v) { dob_ = v; }
  bool HouseholdPrimary() const { return household_primary_; }
  void SetHouseholdPrimary(bool v) { household_primary_ = v; }
  const std::string& CommentNote() const { return comment_note_; }
  void SetCommentNote(const std::string& v) { comment_note_ = v; }
  const std::string& Zip() const { return zip_; }
  void SetZip(const std::string& v) { zip_ = v; }
  const std::string& Gender() const { return gender_; }
  void SetGender(const std::string& v) { gender_ = v; }
  const std::string& CustomerType() const { return customer_type_; }
  void SetCustomerType(const std::string& v) { customer_type_ = v; }
  const std::string& CompanyName() const { return company_name_; }
  void SetCompanyName(const std::string& v) { company_name_ = v; }
  const std::string& LastName() const { return last_name_; }
  void SetLastName(const std::string& v) { last_name_ = v; }
  const std::string& FirstName() const { return first_name_; }
  void SetFirstName(const std::string& v) { first_name_ = v; }
  const std::string& FullName() const { return full_name_; }
  void SetFullName(const std::string& v) { full_name_ = v; }

  //! Reads the primary address by PrimaryAddressID once, for a stored record; False when nothing was done.
  bool OpenPrimaryAddress();

  // Address pass-through: the primary address's value, empty text without one.
  std::string AddressLine1();
  //! The shared address collection (never null after construction unless set so).
  std::shared_ptr<AddressCollection> Addresses() const { return addresses_; }
  void SetAddresses(std::shared_ptr<AddressCollection> v) { addresses_ = std::move(v); }
  std::string AddressLine2();
  std::string City();
  std::string State();
  std::string CountryID();
  std::string Phone();
  //! Replaces the primary address's phone when there is one and it differs; otherwise dropped.
  void SetPhone(const std::string& v);
  std::string Fax();
  //! Replaces the primary address's fax when there is one and it differs; otherwise dropped.
  void SetFax(const std::string& v);
  const std::string& EMail() const { return email_; }
  void SetEMail(const std::string& v) { email_ = v; }

  // --- Photograph: implemented in c_customer_photo.cpp ---
  //! Stores a picture file as the customer's current photo in the image table.
  bool LoadPhotoFile(const std::shared_ptr<host::DBConnection>& oDB, const std::string& sFileName);
  //! Copies a (long) column to a disk file in 1024-byte chunks, the short chunk first.
  bool ColumnToFile(const std::shared_ptr<host::ErrorObject>& oError, host::Field& Col, std::string DiskFile);
  //! Copies a disk file into a column by the column's type; the bytes copied (0 for an empty file).
  int32_t FileToColumn(const std::shared_ptr<host::ErrorObject>& oError, host::Field& Col,
                       const std::string& sFileName);
  std::shared_ptr<kiv::Photo> Photo() const;
  void SetPhoto(std::shared_ptr<kiv::Photo> v);
  //! Reads the current photo once per load; True when a picture was read.
  bool OpenPhotograph();

  //! The house-account balance; fills sDesc and dLimit only when there is an account.
  double GetAccountBalance(std::string& sDesc, double& dLimit);
  //! The customer's active club member id (also kept in ClubMemberId); empty text without one.
  std::string GetClubMemberId(int32_t lCustomerNo);
  //! Writes the household number and primary flag with a plain statement.
  bool UpdateHouseholdNo();
  bool WillCallsAvailable() const { return has_willcall_; }
  bool DoNotMail() const { return do_not_mail_; }
  void SetDoNotMail(bool v) { do_not_mail_ = v; }
  //! The relationship flag of a stored customer; bEmployee is accepted and not used.
  bool HasRelationships(bool bEmployee = false) const;
  //! Any relationship as parent, or an employee one as child.
  bool HasEmployeeRelationships();
  const std::string& EmployerName() const { return employer_name_; }
  void SetEmployerName(const std::string& v) { employer_name_ = v; }
  int32_t EmployerNo() const { return employer_no_; }
  void SetEmployerNo(int32_t v) { employer_no_ = v; }
  //! Takes the employer's company name and number; no object clears the number only.
  void SetEmployer(const std::shared_ptr<CCustomer>& v);
  //! Reads the employer link of this fiscal year once; True once called on a stored record.
  bool OpenEmployer();
  //! Replaces the employee link in the relationship table (persons only).
  bool SaveEmployer();
  const std::string& CustomerKind() const { return customer_kind_; }
  void SetCustomerKind(const std::string& v) { customer_kind_ = v; }

  // --- Rental settings (OpenAlertsAndSettings; saved by the engine) ---
  const std::string& GuestAbility() const { return guest_ability_; }
  void SetGuestAbility(const std::string& v) { guest_ability_ = v; }
  int16_t GuestHeightRange() const { return guest_height_range_; }
  void SetGuestHeightRange(int16_t v) { guest_height_range_ = v; }
  int16_t GuestWeightRange() const { return guest_weight_range_; }
  void SetGuestWeightRange(int16_t v) { guest_weight_range_ = v; }
  double GuestShoeSize() const { return guest_shoe_size_; }
  void SetGuestShoeSize(double v) { guest_shoe_size_ = FiniteNumber(v); }

  //! Reads one card on file into the card fields; True when a row was read.
  bool OpenCreditCard(int32_t lCardCustomerNo, int32_t lCardSeqNo);
  //! The primary address object, else the "PRIMARY" entry of Addresses, else none.
  std::shared_ptr<CAddress> PrimaryAddress() const;
  //! Some address of Addresses reports DataChanged.
  bool AddressesChanges() const;
  //! The address of that type, none when absent.
  std::shared_ptr<CAddress> GetAddress(const std::string& sType) const;
  //! Reservation flag of a stored record read with a connection; otherwise False.
  bool HasReservations() const;
  //! Sales-order flag of a stored record read with a connection; otherwise False.
  bool HasUnInvoiced() const;
  bool HasClub() const { return has_club_; }
  void SetHasClub(bool v) { has_club_ = v; }
  //! Recomputes and reads the five has-flags.
  bool OpenFlags();
  //! The customer belongs to the customer group.
  bool CheckMembershipInGroup(const std::string& sGroupId);
  //! Reads the alerts and rental settings (with the procedure's height and weight defaults).
  bool OpenAlertsAndSettings();
  bool OpenRentalSettings();
  //! Stores the card just entered as a card on file; "Error Saving Card" on a refusal.
  bool StoreCreditCard(CardEntry& oCC, bool isActive);
  //! Writes the alerts; "Error Updating Customer Alerts and Settings" on a refusal.
  bool SaveAlertsAndSettings();

  // --- Component-internal ---
  //! Empties the address collection entry by entry and starts a new empty one.
  void ResetAddresses();
  //! Deletes the customer through "SP_DeleteCustomer"; failures are reported through Display.
  bool DeleteCustomer();
  int32_t FiscalYear() const { return fiscal_year_; }
  std::shared_ptr<host::DBConnection> DB() const { return db_; }
  std::shared_ptr<host::ErrorObject> ErrorObject() const { return error_object_; }
  const std::string& SourceName() const { return source_name_; }
  int32_t LastErrorNumber() const { return last_error_number_; }
  const std::string& LastErrorDescription() const { return last_error_description_; }
  bool PrimaryAddressLoaded() const { return primary_address_loaded_; }
  bool EmployerLoaded() const { return employer_loaded_; }
  bool PhotoLoaded() const { return photo_loaded_; }
  //! A card was stored by StoreCreditCard.
  bool CardStored() const { return card_stored_; }
  //! Where the record's message boxes go; a shared silent Ui when none was set. The record
  //! hands it to the addresses it creates.
  void SetUi(std::shared_ptr<ui::Ui> v) { ui_ = std::move(v); }
  std::shared_ptr<ui::Ui> GetUi() const;

 private:
  //! A new address object that reports through this record's Ui.
  std::shared_ptr<CAddress> NewAddress() const;
  //! Keeps a trapped failure and reports it with the routine's suffix (" Update", ...).
  void ReportFailure(int32_t number, const std::string& description, const std::string& routine,
                     const std::shared_ptr<host::Command>& related);
  bool SaveAddresses();

  int32_t card_customer_no_ = 0;
  int32_t card_seq_no_ = 0;
  std::string card_x_no_;
  std::string card_no_;
  std::string card_exp_date_;
  std::string card_zip_;
  std::string card_address_;
  bool card_stored_ = false;

  std::string childs_full_name_;
  std::string cell_phone_contact_;
  std::string responsible_adult1_;
  std::string responsible_adult2_;
  std::string allergies_;
  std::string medications_;
  std::string special_needs_;

  std::string full_name_;
  std::string first_name_;
  std::string last_name_;
  std::string company_name_;
  std::string customer_type_;
  std::string customer_kind_;
  std::string gender_;
  std::string zip_;
  std::string comment_note_;
  Date dob_;
  bool locked_ = false;
  Variant date_of_release_;
  int32_t customer_no_ = 0;
  std::string status_;
  bool has_image_ = false;
  int32_t primary_address_id_ = 0;
  std::string customer_level_id_;
  std::string account_no_;
  double discount_percentage_ = 0;
  double commission_percentage_ = 0;
  bool household_primary_ = false;
  int32_t household_no_ = 0;
  bool do_not_mail_ = false;
  std::string email_;
  std::string work_phone_;
  std::string cell_phone_;
  std::string occupation_;
  Date wedding_anniversary_;

  std::string guest_ability_;
  int16_t guest_height_range_ = 0;
  int16_t guest_weight_range_ = 0;
  double guest_shoe_size_ = 0;

  bool has_willcall_ = false;
  bool has_reservation_ = false;
  bool has_so_ = false;
  bool has_club_ = false;
  bool has_relationship_ = false;

  std::string employer_name_;
  int32_t employer_no_ = 0;
  bool employer_loaded_ = false;
  std::string club_member_id_;

  std::shared_ptr<AddressCollection> addresses_;
  std::shared_ptr<CAddress> primary_address_;
  bool is_new_customer_ = false;
  bool primary_address_loaded_ = false;
  int32_t fiscal_year_ = 0;

  // The photograph (c_customer_photo.cpp): the current picture and whether it was read
  // since the last load.
  std::shared_ptr<kiv::Photo> photo_;
  bool photo_loaded_ = false;

  std::shared_ptr<host::ErrorObject> error_object_;
  std::shared_ptr<host::DBConnection> db_;
  std::string source_name_;
  int32_t last_error_number_ = 0;
  std::string last_error_description_;
  std::shared_ptr<ui::Ui> ui_;
};

}  // namespace kiv

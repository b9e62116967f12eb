// Filling the detail editor from its record: names and personal information, contact
// fields, percentages, level and kind, the address tabs with the current address, the
// indicators and the permission flags; and the selection lists the general page offers.
#include <cmath>

#include "core/format.h"
#include "core/variant.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_address.h"
#include "records/c_customer.h"
#include "records/system_country.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/list_fill.h"

namespace kiv {

namespace {

constexpr const char* kPrimary = "PRIMARY";

//! A list of the general page: read scrollable, each key once.
ListQuery GeneralList(std::string sql, std::string key_column, std::string text_column = "Description") {
  return ListQuery{std::move(sql), std::move(key_column), std::move(text_column), true, true};
}

std::optional<Date> PickerDate(const Date& d) {
  if (d.IsZero()) return std::nullopt;
  return d;
}

std::optional<Date> PickerDate(const Variant& v) {
  if (v.IsNull() || v.IsEmpty()) return std::nullopt;
  return PickerDate(NzDate(v));
}

}  // namespace

void frmCustomerDetail::FillScreen(int32_t lCustomerNo) {
  FillingScope filling(*this);
  ClearGeneralPage();
  FillLists();
  if (engine_ == nullptr || !customer_) return;
  CCustomer& c = *customer_;

  customer_no_ = lCustomerNo;
  customer_no_ = c.CustomerNo();
  household_no_ = c.HouseholdNo();
  SetCaption("Customer Detail (" + std::to_string(customer_no_) + ")");

  if (c.CustomerType() == "P") {
    cmdType.SetValue(kTypePerson);
    txtFullName.SetText(c.FullName());
    txtFirstName.SetText(c.FirstName());
    txtLastName.SetText(c.LastName());
    dtDOB.SetValue(PickerDate(c.DOB()));
    lblAge.SetCaption(AgeText(dtDOB.Value()));
    dtWeddAniv.SetValue(PickerDate(c.WeddingAnniversary()));
    if (c.Gender() == "M") optGender.SetValue(kGenderMale);
    if (c.Gender() == "F") optGender.SetValue(kGenderFemale);
  } else {
    cmdType.SetValue(kTypeCompany);
    txtCompanyName.SetText(c.CompanyName());
  }
  picTypePerson.SetVisible(cmdType.Value() == kTypePerson);
  picTypeCompany.SetVisible(cmdType.Value() == kTypeCompany);

  txtEMail.SetText(c.EMail());
  txtWorkPhone.SetText(c.WorkPhone());
  txtCellPhone.SetText(c.CellPhone());
  txtOccupation.SetText(c.Occupation());
  txtCommentNote.SetText(c.CommentNote());
  ckbLocked.SetValue(c.Locked() ? ui::vbChecked : ui::vbUnchecked);
  ckbDoNotMail.SetValue(c.DoNotMail() ? ui::vbChecked : ui::vbUnchecked);
  dtDateOfRelease.SetValue(PickerDate(c.DateOfRelease()));

  // The record keeps fractions; the clerk reads and types percent.
  txtDefaultCommission.SetText(Format(Variant(c.CommissionPercentage() * 100), "Standard"));
  txtDefaultDiscount.SetText(Format(Variant(c.DiscountPercentage() * 100), "Standard"));

  const std::string level = c.CustomerLevelID().empty() ? std::string("None") : c.CustomerLevelID();
  cmbCustomerLevel.SetListIndex(cmbCustomerLevel.FindKey(level));
  cmbCustomerKind.SetListIndex(cmbCustomerKind.FindKey(c.CustomerKind()));

  tabCustomer.SetSelectedIndex(tabCustomer.FindKey("Address"));
  const int primary_tab = tabAddressType.FindKey(kPrimary);
  if (primary_tab > 0 && tabAddressType.SelectedIndex() != primary_tab) {
    tabAddressType.SetSelectedIndex(primary_tab);  // its Click shows the address
  } else {
    ShowAddressType(kPrimary);
  }

  RefreshIndicators();
  ComputeFlags();
  FillRentalPanel();
  ResetChangeMarkers();
}

void frmCustomerDetail::ClearGeneralPage() {
  for (ui::TextBox* t : {&txtLastName, &txtFirstName, &txtFullName, &txtCompanyName, &txtStreet1, &txtStreet2, &txtCity,
                         &txtState, &txtZip, &txtPhone, &txtFax, &txtEMail, &txtWorkPhone, &txtCellPhone, &txtOccupation,
                         &txtDefaultDiscount, &txtDefaultCommission, &txtCommentNote, &txtShoeSize})
    t->SetText("");
  for (ui::DatePicker* d : {&dtDOB, &dtWeddAniv, &dtDateOfRelease}) d->SetValue(std::nullopt);
  lblAge.SetCaption("");
  optGender.SetValue(-1);
  cmdType.SetValue(-1);
  cmbCountry.SetText("");
  cmbCustomerLevel.SetListIndex(-1);
  cmbCustomerKind.SetListIndex(-1);
  ckbLocked.SetValue(ui::vbUnchecked);
  ckbDoNotMail.SetValue(ui::vbUnchecked);
  current_address_.reset();
  customer_no_ = 0;
  household_no_ = 0;
  last_name_confirmed_ = false;
  company_name_confirmed_ = false;
}

std::string frmCustomerDetail::AgeText(const std::optional<Date>& birth) const {
  if (!birth) return "";
  const std::optional<int> age = Age(*birth, Today());
  if (!age) return "";
  return "Age:" + std::to_string(*age);
}

void frmCustomerDetail::RefreshIndicators() {
  if (!customer_) return;
  // A customer not yet saved has nothing to recompute; the flags stay as the record has them.
  if (customer_->CustomerNo() != 0) customer_->OpenFlags();
  const bool will_calls = customer_->WillCallsAvailable();
  const bool reservations = customer_->HasReservations();
  const bool uninvoiced = customer_->HasUnInvoiced();
  imgAlert.SetVisible(will_calls || reservations || uninvoiced);
  lblWillCall.SetVisible(will_calls);
  lblReservations.SetVisible(reservations);
  lblUninvoiced.SetVisible(uninvoiced);
}

void frmCustomerDetail::ComputeFlags() {
  is_new_ = customer_no_ == 0;
  customer_changed_ = false;
  force_customer_save_ = false;
  addresses_changed_ = false;
  rental_changed_ = false;
  ResetPages();
  can_delete_cards_ = engine_->AllowCCDelete();
  can_edit_ = engine_->AllowCustEdit();
  // Without the company right a clerk edits persons but not companies.
  if (engine_->AllowCustEdit() && !engine_->AllowCustEditComp()) can_edit_ = customer_->CustomerType() != "C";
  can_edit_profile_ = engine_->AllowCustEditProfile();
  // An existing customer the clerk may not edit can be looked at and left, not saved.
  const bool may_save = is_new_ || can_edit_;
  cmdOk.SetEnabled(may_save);
  cmdSave.SetEnabled(may_save);
  fraRental.SetEnabled(can_edit_profile_);
  // The forecast report goes with the forecast page: kept from a clerk without the right.
  mnuReportsForecastReport.SetVisible(!hide_forecasts_);
}

void frmCustomerDetail::ResetChangeMarkers() {
  for (ui::TextBox* t : {&txtLastName, &txtFirstName, &txtFullName, &txtCompanyName, &txtStreet1, &txtStreet2, &txtCity,
                         &txtState, &txtZip, &txtPhone, &txtFax, &txtEMail, &txtWorkPhone, &txtCellPhone, &txtOccupation,
                         &txtDefaultDiscount, &txtDefaultCommission, &txtCommentNote, &txtShoeSize})
    t->SetDataChanged(false);
  customer_changed_ = false;
  force_customer_save_ = false;
  rental_changed_ = false;
}

// ---- address tabs ----

void frmCustomerDetail::ShowAddressType(const std::string& address_type) {
  const std::string type = address_type.empty() ? std::string(kPrimary) : address_type;
  StoreAddressFields();
  if (!customer_) return;
  std::shared_ptr<CAddress> address = customer_->GetAddress(type);
  if (!address) {
    address = std::make_shared<CAddress>();
    address->SetUi(UiService());
    address->SetAddressType(type);
    address->SetCustomerNo(customer_->CustomerNo());
    address->SetCountryID(SystemCountryID());
    address->SetDataChanged(true);
    if (!customer_->Addresses()) customer_->SetAddresses(std::make_shared<AddressCollection>());
    customer_->Addresses()->Add(type, address);
  }
  current_address_ = address;
  ShowAddressFields();
}

void frmCustomerDetail::StoreAddressFields() {
  if (!current_address_) return;
  CAddress& a = *current_address_;
  a.SetAddressLine1(txtStreet1.Text());
  a.SetAddressLine2(txtStreet2.Text());
  a.SetCity(txtCity.Text());
  a.SetState(txtState.Text());
  a.SetZip(txtZip.Text());
  a.SetCountryID(cmbCountry.Text());
  a.SetPhone(txtPhone.Text());
  a.SetFax(txtFax.Text());
  if (customer_) a.SetCustomerNo(customer_->CustomerNo());
}

void frmCustomerDetail::ShowAddressFields() {
  FillingScope filling(*this);
  const CAddress& a = *current_address_;
  txtStreet1.SetText(a.AddressLine1());
  txtStreet2.SetText(a.AddressLine2());
  txtCity.SetText(a.City());
  txtState.SetText(a.State());
  txtZip.SetText(a.Zip());
  cmbCountry.SetText(a.CountryID());
  txtPhone.SetText(a.Phone());
  txtFax.SetText(a.Fax());
}

// ---- lists ----

void frmCustomerDetail::FillLists() {
  FillListFromQuery(cmbCustomerKind, db_.get(), GeneralList("SELECT * FROM kiv_customer_kind", "customer_kind"));
  // The level list always offers "None": an empty level shows it and saving it stores it.
  FillListFromQuery(cmbCustomerLevel, db_.get(),
                    GeneralList(std::string("SELECT * FROM kiv_customer_level") + " ORDER BY Description",
                                "Customer_Level_ID"));
  if (cmbCustomerLevel.FindKey("None") < 0) cmbCustomerLevel.AddItem("None", "None", 0);
  FillListFromQuery(cmbCountry, db_.get(), GeneralList("SELECT * FROM kiv_country", "Country_ID", "Country_ID"));
  FillAddressTypes();
  FillRentalLists();
  ApplyFieldLimits();
}

void frmCustomerDetail::ApplyFieldLimits() {
  if (field_limits_applied_ || !db_) return;
  field_limits_applied_ = true;
  struct Limit {
    ui::TextBox& box;
    const char* parameter;
  };
  const auto apply = [this](const char* procedure, std::initializer_list<Limit> limits) {
    host::ProcedureCall call(*db_, procedure);
    if (!call.Prepared()) return;
    for (const Limit& limit : limits) {
      const host::Parameter* p = call.GetCommand()->GetParameters().Find(limit.parameter);
      if (p != nullptr && p->Size() > 0) limit.box.SetMaxLength(p->Size());
    }
  };
  apply("KiV_SP_CUSTOMER_UpdateCustomer",
        {{txtLastName, "@last_name"}, {txtFirstName, "@first_name"}, {txtFullName, "@full_name"},
         {txtCompanyName, "@company_name"}, {txtEMail, "@email"}, {txtWorkPhone, "@work_phone"},
         {txtCellPhone, "@cell_phone"}, {txtOccupation, "@occupation"}, {txtCommentNote, "@comment_note"}});
  apply("KIV_SP_UpdateAddress", {{txtStreet1, "@address_1"}, {txtStreet2, "@address_2"}, {txtCity, "@city"},
                                 {txtState, "@state"}, {txtZip, "@zip"}, {txtPhone, "@phone"}, {txtFax, "@fax"}});
}

void frmCustomerDetail::FillAddressTypes() {
  tabAddressType.Clear();
  tabAddressType.AddTab(kPrimary, "Primary");
  if (!db_) return;
  host::ScopedRecordset rs = host::OpenQuery(*db_,
                                             std::string("SELECT * FROM kiv_address_type ") +
                                                 " WHERE address_type <> 'PRIMARY'" + " ORDER BY address_type",
                                             true);
  for (; rs && !rs.Eof(); rs->MoveNext()) {
    const std::string type = NzString(rs->FieldByName("address_type").Value());
    if (type.empty() || tabAddressType.FindKey(type) > 0) continue;
    tabAddressType.AddTab(type, type);
  }
}

}  // namespace kiv

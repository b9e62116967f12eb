// OK, Save, Cancel and the close box of the detail editor: validation in its order, the
// customer fields written back into the record and Updated only when something was
// edited, the audit entry for a renamed customer, then the dirty pages.
#include <filesystem>

#include "core/text.h"
#include "core/variant.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_address.h"
#include "records/c_customer.h"
#include "records/system_country.h"
#include "screens/detail/frm_customer_detail.h"
#include "ui/wait_cursor.h"

namespace kiv {

namespace {

//! The record's own columns that writing the screen touches, so a refused Update can put
//! them back as they were.
struct CustomerFields {
  std::string type, company, full, first, last, gender, email, work, cell, occupation, note, level, kind;
  Date dob, anniversary;
  Variant release;
  bool locked = false, do_not_mail = false;
  double commission = 0, discount = 0;

  static CustomerFields Of(const CCustomer& c) {
    return {c.CustomerType(), c.CompanyName(), c.FullName(),   c.FirstName(),  c.LastName(),
            c.Gender(),       c.EMail(),       c.WorkPhone(),  c.CellPhone(),  c.Occupation(),
            c.CommentNote(),  c.CustomerLevelID(), c.CustomerKind(), c.DOB(),   c.WeddingAnniversary(),
            c.DateOfRelease(), c.Locked(),     c.DoNotMail(),  c.CommissionPercentage(), c.DiscountPercentage()};
  }
  void WriteTo(CCustomer& c) const {
    c.SetCustomerType(type);
    c.SetCompanyName(company);
    c.SetFullName(full);
    c.SetFirstName(first);
    c.SetLastName(last);
    c.SetGender(gender);
    c.SetEMail(email);
    c.SetWorkPhone(work);
    c.SetCellPhone(cell);
    c.SetOccupation(occupation);
    c.SetCommentNote(note);
    c.SetCustomerLevelID(level);
    c.SetCustomerKind(kind);
    c.SetDOB(dob);
    c.SetWeddingAnniversary(anniversary);
    c.SetDateOfRelease(release);
    c.SetLocked(locked);
    c.SetDoNotMail(do_not_mail);
    c.SetCommissionPercentage(commission);
    c.SetDiscountPercentage(discount);
  }
};

Date PickerOrZero(const ui::DatePicker& picker) { return picker.Value() ? *picker.Value() : Date::Zero(); }

}  // namespace

bool frmCustomerDetail::Ok() { return RunSave(true); }

bool frmCustomerDetail::Save() { return RunSave(false); }

bool frmCustomerDetail::RunSave(bool is_ok) {
  ui::WaitCursor wait(ui());
  if (!customer_) return false;
  StoreAddressFields();
  if (!ValidateCustomer()) return false;
  {
    // The customer, its addresses and every dirty page are one save for the host.
    host::UnitOfWork unit(db_.get());
    if (!SaveCustomerFields()) return false;
    // OK gives up when the household could not be written; Save carries on with the rest.
    if (!SavePages(is_ok)) return false;
  }
  RefreshIndicators();
  cancelled_ = false;
  if (is_ok) Hide();
  return true;
}

bool frmCustomerDetail::FailValidation(const std::string& prompt, const std::string& title, ui::Control& focus) {
  ui().MsgBox(prompt, ui::vbOKOnly | ui::vbInformation, title);
  // Every field validation names lives on the general page: bring it back to reach the field.
  if (active_tab_ != kTabGeneral) tabCustomer.SetSelectedIndex(kTabGeneral);
  focus.SetFocus();
  return false;
}

bool frmCustomerDetail::ValidateCustomer() {
  const bool company = cmdType.Value() == kTypeCompany;
  if (customer_no_ == 0 && company && (engine_ == nullptr || !engine_->AllowCustAddComp())) {
    ui().MsgBox("Security Access Denied\r\nYou do not have permission to create new companies",
                ui::vbOKOnly | ui::vbInformation, "Save New Company Canceled");
    return false;
  }
  if (!company) {
    if (Trim(txtFullName.Text()).empty())
      return FailValidation("The customer must have a name", "Validate Customer", txtLastName);
    // Whole days: a birthday or anniversary today is not possible yet, a release signed today is.
    const int32_t today = Today().WholeDays();
    if (dtDOB.Value() && dtDOB.Value()->WholeDays() >= today)
      return FailValidation("The Date Of Birth is Invalid", "Validate Customer", dtDOB);
    if (dtWeddAniv.Value() && dtWeddAniv.Value()->WholeDays() >= today)
      return FailValidation("The Date Of Anniversary is Invalid", "Validate Customer", dtWeddAniv);
    if (dtDateOfRelease.Value() && dtDateOfRelease.Value()->WholeDays() > today)
      return FailValidation("The Date Of Release is Invalid", "Validate Customer", dtDateOfRelease);
  } else if (Trim(txtCompanyName.Text()).empty()) {
    return FailValidation("The company must have a name", "Validate Customer", txtCompanyName);
  }
  const std::string country = current_address_ ? current_address_->CountryID() : std::string();
  if (country.empty()) return FailValidation("Country is required", "Validate Customer", cmbCountry);
  const std::string home = SystemCountryID().empty() ? std::string("USA") : SystemCountryID();
  if (country == home && Trim(current_address_->Zip()).empty())
    return FailValidation("A Postal Code is required for " + country, "Validate Customer Failed", txtZip);
  return true;
}

bool frmCustomerDetail::SaveCustomerFields() {
  if (force_customer_save_) customer_changed_ = true;
  CCustomer& c = *customer_;
  const int32_t number = c.CustomerNo();
  bool name_changed = false;
  std::string audit;
  if (number != 0 && c.FullName() != txtFullName.Text()) {
    name_changed = true;
    audit = "CN=" + std::to_string(number) + ";FN=" + c.FullName() + ";";
  }

  bool saved = true;
  if (customer_changed_) {
    const CustomerFields before = CustomerFields::Of(c);
    if (cmdType.Value() == kTypeCompany) {
      c.SetCustomerType("C");
      c.SetFullName(UCase(txtCompanyName.Text()));
      c.SetFirstName("");
      c.SetLastName("");
      c.SetCompanyName(UCase(txtCompanyName.Text()));
    } else {
      c.SetCustomerType("P");
      c.SetCompanyName("");
      c.SetFullName(UCase(txtFullName.Text()));
      c.SetFirstName(UCase(txtFirstName.Text()));
      c.SetLastName(UCase(txtLastName.Text()));
      c.SetDOB(PickerOrZero(dtDOB));
      c.SetWeddingAnniversary(PickerOrZero(dtWeddAniv));
      c.SetGender(optGender.IsChosen(kGenderMale) ? "M" : optGender.IsChosen(kGenderFemale) ? "F" : "");
    }
    c.SetEMail(txtEMail.Text());
    c.SetWorkPhone(txtWorkPhone.Text());
    c.SetCellPhone(txtCellPhone.Text());
    c.SetOccupation(txtOccupation.Text());
    c.SetCommentNote(txtCommentNote.Text());
    c.SetLocked(ckbLocked.Value() == ui::vbChecked);
    c.SetDoNotMail(ckbDoNotMail.Value() == ui::vbChecked);
    c.SetDateOfRelease(dtDateOfRelease.Value() ? Variant(*dtDateOfRelease.Value()) : Variant::Null());
    const std::string level = cmbCustomerLevel.SelectedKey();
    c.SetCustomerLevelID(level.empty() ? std::string("None") : level);
    c.SetCustomerKind(cmbCustomerKind.SelectedKey());
    c.SetCommissionPercentage(Val(txtDefaultCommission.Text()) / 100);
    c.SetDiscountPercentage(Val(txtDefaultDiscount.Text()) / 100);

    addresses_changed_ = c.AddressesChanges();
    saved = c.Update();
    if (!saved) {
      before.WriteTo(c);
      return false;
    }
    if (name_changed && app_server_) {
      Variant result;
      app_server_->RecordTaskActivity("CUSTEDIT", "CustDetail", audit, result);
    }
  }

  customer_no_ = c.CustomerNo();
  household_no_ = c.HouseholdNo();
  if (!photo_work_file_.empty()) {
    std::error_code ignored;
    std::filesystem::remove(photo_work_file_, ignored);
    photo_work_file_.clear();
  }
  saved_once_ = true;
  return saved;
}

void frmCustomerDetail::Cancel() {
  // Reloading throws away every change the screen already put into the record.
  if (customer_no_ != 0 && customer_) customer_->OpenCustomer(db_, error_object_, Variant(customer_no_));
  cancelled_ = true;
  Hide();
}

}  // namespace kiv

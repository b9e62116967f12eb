// The general page's field rules: what typing, changing, entering and leaving each field
// does, the three text cleaners, the full-name rule, the name-change confirmations, Esc
// in the name fields and the note, the postal-code lookup, person or company, and Clear.
#include "core/text.h"
#include "core/text_filter.h"
#include "engine/c_cust_engine.h"
#include "records/c_address.h"
#include "records/c_customer.h"
#include "records/system_country.h"
#include "screens/detail/frm_customer_detail.h"
#include "ui/keys.h"

namespace kiv {

namespace {

bool IsLetter(int c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(int c) { return c >= '0' && c <= '9'; }

//! Letters, digits, space and "@-.,_": what an address, a name or an e-mail may hold.
std::string AddressClean(std::string_view text) {
  std::string out;
  for (char ch : text) {
    const int c = static_cast<unsigned char>(ch);
    if (IsLetter(c) || IsDigit(c) || c == ' ' || c == '@' || c == '-' || c == '.' || c == ',' || c == '_')
      out += ch;
  }
  return out;
}

int UpperAscii(int c) { return c >= 'a' && c <= 'z' ? c - 32 : c; }
int LowerAscii(int c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; }

bool OneOf(int c, std::string_view set) { return c > 0 && c < 128 && set.find(static_cast<char>(c)) != std::string_view::npos; }

}  // namespace

void frmCustomerDetail::RaiseCustomerChanged() { customer_changed_ = true; }

void frmCustomerDetail::RewriteKeepingCaret(ui::TextBox& field, const std::string& text) {
  if (field.Text() == text) return;
  const int caret = field.SelStart();
  FillingScope filling(*this);
  field.SetText(text);
  field.SetSelStart(caret);
}

void frmCustomerDetail::WireFieldRules() {
  // ---- change ----
  for (ui::TextBox* field : {&txtStreet1, &txtStreet2, &txtCity, &txtState, &txtZip})
    field->on_change = [this, field] {
      if (!Filling()) Guard("Address_Change", [this, field] { OnAddressFieldChange(*field); });
    };
  txtPhone.on_change = [this] {
    if (!Filling()) OnPhoneChange(txtPhone, true);
  };
  txtFax.on_change = [this] {
    if (!Filling()) OnPhoneChange(txtFax, true);
  };
  txtWorkPhone.on_change = [this] {
    if (!Filling()) OnPhoneChange(txtWorkPhone, false);
  };
  txtCellPhone.on_change = [this] {
    if (!Filling()) OnPhoneChange(txtCellPhone, false);
  };
  txtEMail.on_change = [this] {
    if (Filling()) return;
    RaiseCustomerChanged();
    RewriteKeepingCaret(txtEMail, AddressClean(txtEMail.Text()));
  };
  txtFirstName.on_change = [this] {
    if (!Filling()) Guard("txtFirstName_Change", [this] { OnFirstNameChange(); });
  };
  txtLastName.on_change = [this] {
    if (!Filling()) Guard("txtLastName_Change", [this] { OnLastNameChange(); });
  };
  txtCompanyName.on_change = [this] {
    if (!Filling()) Guard("txtCompanyName_Change", [this] { OnCompanyNameChange(); });
  };
  for (ui::TextBox* field : {&txtFullName, &txtOccupation, &txtCommentNote, &txtDefaultDiscount, &txtDefaultCommission})
    field->on_change = [this] {
      if (!Filling()) RaiseCustomerChanged();
    };
  for (ui::DatePicker* picker : {&dtWeddAniv, &dtDateOfRelease})
    picker->on_change = [this] {
      if (!Filling()) RaiseCustomerChanged();
    };
  dtDOB.on_change = [this] {
    if (Filling()) return;
    RaiseCustomerChanged();
    lblAge.SetCaption(AgeText(dtDOB.Value()));
  };
  optGender.on_click = [this] {
    if (!Filling()) RaiseCustomerChanged();
  };
  ckbLocked.on_click = [this] {
    if (!Filling()) RaiseCustomerChanged();
  };
  ckbDoNotMail.on_click = [this] {
    if (!Filling()) RaiseCustomerChanged();
  };
  cmbCustomerLevel.on_click = [this] {
    if (Filling() || !customer_) return;
    // An empty level is shown, and saved, as None.
    const std::string& level = customer_->CustomerLevelID();
    OnLevelOrKindClick(cmbCustomerLevel, level.empty() ? std::string("None") : level);
  };
  cmbCustomerKind.on_click = [this] {
    if (!Filling() && customer_) OnLevelOrKindClick(cmbCustomerKind, customer_->CustomerKind());
  };
  const auto country_changed = [this] {
    if (Filling() || !current_address_) return;
    current_address_->SetCountryID(cmbCountry.Text());
    current_address_->SetDataChanged(true);
    RaiseCustomerChanged();
  };
  cmbCountry.on_change = country_changed;
  cmbCountry.on_click = country_changed;

  txtZip.on_validate = [this](bool&) { RewriteKeepingCaret(txtZip, AddressClean(txtZip.Text())); };

  WireKeys();
  WireFocusRules();
}

void frmCustomerDetail::OnAddressFieldChange(ui::TextBox& field) {
  std::string text = AddressClean(field.Text());
  if (&field == &txtZip) text = Trim(text);
  RewriteKeepingCaret(field, text);
  RaiseCustomerChanged();
  if (!current_address_) return;
  CAddress& a = *current_address_;
  if (&field == &txtStreet1) a.SetAddressLine1(text);
  if (&field == &txtStreet2) a.SetAddressLine2(text);
  if (&field == &txtCity) a.SetCity(text);
  if (&field == &txtState) a.SetState(text);
  if (&field == &txtZip) a.SetZip(text);
  a.SetDataChanged(true);
}

void frmCustomerDetail::OnPhoneChange(ui::TextBox& field, bool address_field) {
  const std::string text = FilterText(field.Text(), FilterMode::Phone);
  RewriteKeepingCaret(field, text);
  RaiseCustomerChanged();
  if (!address_field || !current_address_) return;
  if (&field == &txtPhone) current_address_->SetPhone(text);
  if (&field == &txtFax) current_address_->SetFax(text);
  current_address_->SetDataChanged(true);
}

void frmCustomerDetail::OnFirstNameChange() {
  RaiseCustomerChanged();
  RewriteKeepingCaret(txtFirstName, AddressClean(UCase(txtFirstName.Text())));
  ApplyFullNameRule();
}

void frmCustomerDetail::OnLastNameChange() {
  if (!is_new_ && !ConfirmNameChange(last_name_confirmed_, "Are you sure you want to change this customer's last name?",
                                     "Confirm Last Name Change"))
    return;
  // The last name reaches the record only through the full name, which raises the change.
  RewriteKeepingCaret(txtLastName, AddressClean(UCase(txtLastName.Text())));
  ApplyFullNameRule();
}

void frmCustomerDetail::OnCompanyNameChange() {
  if (!is_new_ && !ConfirmNameChange(company_name_confirmed_,
                                     "Are you sure you want to change this customer's company name?",
                                     "Confirm Company Name Change"))
    return;
  RaiseCustomerChanged();
  RewriteKeepingCaret(txtCompanyName, UCase(txtCompanyName.Text()));
  if (txtFullName.DataChanged()) return;
  txtFullName.SetText(txtCompanyName.Text());
  txtFullName.SetDataChanged(false);
}

bool frmCustomerDetail::ConfirmNameChange(bool& confirmed, const char* prompt, const char* title) {
  if (confirmed) return true;
  // Keys still arriving after a No has closed the screen change nothing and ask nothing.
  if (!Visible()) return false;
  if (ui().MsgBox(prompt, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, title) == ui::vbYes) {
    confirmed = true;
    return true;
  }
  Cancel();
  return false;
}

void frmCustomerDetail::ApplyFullNameRule() {
  // Once the clerk has typed a full name of his own, the name fields leave it alone.
  if (txtFullName.DataChanged()) return;
  txtFullName.SetText(Trim(txtFirstName.Text() + " " + txtLastName.Text()));
  txtFullName.SetDataChanged(false);
}

void frmCustomerDetail::OnLevelOrKindClick(ui::ComboBox& list, const std::string& record_value) {
  if (!EqualsNoCase(list.SelectedKey(), record_value)) RaiseCustomerChanged();
}

// ---- keys ----

void frmCustomerDetail::WireKeys() {
  // Enter moves on through the form's key preview; these rules decide the characters.
  const auto phone_keys = [](int& k) {
    if (k == ui::vbKeyBack) return;
    if (!IsDigit(k) && !OneOf(k, " .-()")) k = 0;
  };
  for (ui::TextBox* field : {&txtPhone, &txtFax, &txtWorkPhone, &txtCellPhone}) field->on_key_press = phone_keys;
  const auto street_keys = [](int& k) {
    if (k == ui::vbKeyBack) return;
    if (IsLetter(k)) {
      k = UpperAscii(k);
      return;
    }
    if (!IsDigit(k) && !OneOf(k, " .")) k = 0;
  };
  txtStreet1.on_key_press = street_keys;
  txtStreet2.on_key_press = street_keys;
  txtZip.on_key_press = [this, street_keys](int& k) {
    // A lower-case "q" looks the code up, then goes in as typed.
    if (k == 'q') {
      Guard("txtZip_KeyPress", [this] { LookUpZip(); });
      return;
    }
    street_keys(k);
  };
  txtEMail.on_key_press = [](int& k) {
    if (k == ui::vbKeyBack) return;
    if (IsLetter(k)) {
      k = LowerAscii(k);
      return;
    }
    if (!IsDigit(k) && !OneOf(k, " ._-@")) k = 0;
  };

  txtFirstName.on_key_down = [this](int& k, int) {
    if (k == ui::vbKeyEscape) OnEscape(txtFirstName, customer_ ? customer_->FirstName() : "", k);
  };
  txtLastName.on_key_down = [this](int& k, int) {
    if (k == ui::vbKeyEscape) OnEscape(txtLastName, customer_ ? customer_->LastName() : "", k);
  };
  txtFullName.on_key_down = [this](int& k, int) {
    if (k == ui::vbKeyEscape) OnEscape(txtFullName, customer_ ? customer_->FullName() : "", k);
  };
  txtCompanyName.on_key_down = [this](int& k, int) {
    if (k == ui::vbKeyEscape) OnEscape(txtCompanyName, customer_ ? customer_->CompanyName() : "", k);
  };
  txtCommentNote.on_key_down = [this](int& k, int) {
    if (k == ui::vbKeyEscape) OnEscape(txtCommentNote, customer_ ? customer_->CommentNote() : "", k);
  };
  txtCommentNote.on_key_press = [this](int& k) {
    // Ctrl+Enter arrives as a line feed and breaks the line; Enter alone is OK.
    if (k != ui::vbKeyReturn) return;
    k = 0;
    Guard("txtCommentNote_KeyPress", [this] { Ok(); });
  };
}

void frmCustomerDetail::OnEscape(ui::TextBox& field, const std::string& record_value, int& key_code) {
  key_code = 0;
  if (field.DataChanged()) {
    FillingScope filling(*this);
    field.SetText(record_value);
    field.SetDataChanged(false);
    return;
  }
  Guard("Escape", [this] { Cancel(); });
}

// ---- entering and leaving ----

void frmCustomerDetail::WireFocusRules() {
  for (ui::TextBox* field : {&txtZip, &txtCity, &txtState, &txtStreet1, &txtStreet2})
    field->on_got_focus = [field] { field->SelectAll(); };
  // Esc must reach a name field, so the cancel button steps aside while one has the focus.
  for (ui::TextBox* field : {&txtFirstName, &txtLastName, &txtFullName, &txtCompanyName})
    field->on_got_focus = [this] { cmdCancel.SetCancel(false); };
  txtCommentNote.on_got_focus = [this] {
    txtCommentNote.SelectAll();
    ok_was_default_ = cmdOk.Default();
    cancel_was_cancel_ = cmdCancel.Cancel();
    cmdOk.SetDefault(false);
    cmdCancel.SetCancel(false);
  };
  txtCommentNote.on_lost_focus = [this] {
    cmdOk.SetDefault(ok_was_default_);
    cmdCancel.SetCancel(cancel_was_cancel_);
  };

  for (ui::TextBox* field : {&txtPhone, &txtFax, &txtWorkPhone, &txtCellPhone})
    field->on_lost_focus = [this, field] { RewriteKeepingCaret(*field, FilterText(field->Text(), FilterMode::Phone)); };
  for (ui::TextBox* field : {&txtEMail, &txtOccupation})
    field->on_lost_focus = [this, field] {
      RewriteKeepingCaret(*field, FilterText(field->Text(), FilterMode::General));
    };
  for (ui::TextBox* field : {&txtFirstName, &txtFullName, &txtCompanyName})
    field->on_lost_focus = [this, field] {
      cmdCancel.SetCancel(true);
      RewriteKeepingCaret(*field, UCase(field->Text()));
    };
  txtLastName.on_lost_focus = [this] { cmdCancel.SetCancel(true); };
  for (ui::TextBox* field : {&txtStreet1, &txtStreet2})
    field->on_lost_focus = [this, field] { RewriteKeepingCaret(*field, UCase(field->Text())); };
  txtZip.on_lost_focus = [this] { Guard("txtZip_LostFocus", [this] { LookUpZip(); }); };
}

void frmCustomerDetail::LookUpZip() {
  const std::string zip = txtZip.Text();
  if (zip.empty() || !current_address_ || !db_) return;
  const std::string country = cmbCountry.Text();
  if (!country.empty() && country != SystemCountryID()) return;
  ZipLookUpArgs found;
  if (!current_address_->ZipLookUp(db_, zip, found)) return;
  // Only empty fields are filled: what the clerk typed is never overwritten.
  if (txtCity.Text().empty()) txtCity.SetText(found.sCity);
  if (txtState.Text().empty()) txtState.SetText(found.sState);
  if (txtPhone.Text().empty()) txtPhone.SetText(found.sAreaCode);
  if (cmbCountry.Text().empty()) cmbCountry.SetText(found.sCountryID);
}

// ---- person or company, clear address ----

void frmCustomerDetail::SwitchType(int type) {
  if (type != kTypePerson && type != kTypeCompany) return;
  {
    FillingScope filling(*this);
    if (cmdType.Value() != type) cmdType.SetValue(type);
    picTypePerson.SetVisible(type == kTypePerson);
    picTypeCompany.SetVisible(type == kTypeCompany);
    txtFullName.SetText("");
    txtFullName.SetDataChanged(false);
    if (type == kTypePerson) {
      txtCompanyName.SetText("");
    } else {
      txtLastName.SetText("");
      txtFirstName.SetText("");
    }
  }
  if (Filling() || !Visible()) return;
  if (type == kTypePerson) {
    txtLastName.SetFocus();
  } else {
    txtCompanyName.SetFocus();
  }
}

void frmCustomerDetail::ClearAddress() {
  for (ui::TextBox* field : {&txtStreet1, &txtStreet2, &txtCity, &txtState, &txtZip, &txtPhone, &txtFax})
    field->SetText("");
  cmbCountry.SetText("");
}

}  // namespace kiv


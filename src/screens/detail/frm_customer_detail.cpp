// The detail editor's controls and captions, what it takes from the engine, its load and
// close box, the screen-wide keys, and the wiring of its commands and menus.
#include "screens/detail/frm_customer_detail.h"

#include "core/version.h"
#include "core/vb_error.h"
#include "engine/c_cust_engine.h"
#include "records/c_address.h"
#include "records/c_customer.h"
#include "ui/keys.h"

namespace kiv {

namespace {

constexpr const char* kDesignCaption = "Customer Properties";

}  // namespace

frmCustomerDetail::frmCustomerDetail()
    : Screen("frmCustomerDetail"),
      tabCustomer(Add<ui::TabStrip>("tabCustomer")),
      picGeneral(Add<ui::Panel>("picGeneral")),
      cmdType(AddIn<ui::OptionGroup>(picGeneral, "cmdType", std::vector<std::string>{"Person Type", "Company Type"})),
      picTypePerson(AddIn<ui::Panel>(picGeneral, "picTypePerson")),
      txtLastName(AddIn<ui::TextBox>(picTypePerson, "txtLastName")),
      txtFirstName(AddIn<ui::TextBox>(picTypePerson, "txtFirstName")),
      txtFullName(AddIn<ui::TextBox>(picTypePerson, "txtFullName")),
      dtDOB(AddIn<ui::DatePicker>(picTypePerson, "dtDOB")),
      lblAge(AddIn<ui::Label>(picTypePerson, "lblAge")),
      dtWeddAniv(AddIn<ui::DatePicker>(picTypePerson, "dtWeddAniv")),
      optGender(AddIn<ui::OptionGroup>(picTypePerson, "optGender", std::vector<std::string>{"&Male", "F&emale"})),
      picTypeCompany(AddIn<ui::Panel>(picGeneral, "picTypeCompany")),
      txtCompanyName(AddIn<ui::TextBox>(picTypeCompany, "txtCompanyName")),
      tabAddressType(AddIn<ui::TabStrip>(picGeneral, "tabAddressType")),
      txtStreet1(AddIn<ui::TextBox>(picGeneral, "txtStreet1")),
      txtStreet2(AddIn<ui::TextBox>(picGeneral, "txtStreet2")),
      txtCity(AddIn<ui::TextBox>(picGeneral, "txtCity")),
      txtState(AddIn<ui::TextBox>(picGeneral, "txtState")),
      txtZip(AddIn<ui::TextBox>(picGeneral, "txtZip")),
      cmbCountry(AddIn<ui::ComboBox>(picGeneral, "cmbCountry", ui::vbComboDropdown)),
      txtPhone(AddIn<ui::TextBox>(picGeneral, "txtPhone")),
      txtFax(AddIn<ui::TextBox>(picGeneral, "txtFax")),
      cmdClearAddress(AddIn<ui::CommandButton>(picGeneral, "cmdClearAddress", "Clear")),
      txtEMail(AddIn<ui::TextBox>(picGeneral, "txtEMail")),
      txtWorkPhone(AddIn<ui::TextBox>(picGeneral, "txtWorkPhone")),
      txtCellPhone(AddIn<ui::TextBox>(picGeneral, "txtCellPhone")),
      txtOccupation(AddIn<ui::TextBox>(picGeneral, "txtOccupation")),
      txtDefaultDiscount(AddIn<ui::TextBox>(picGeneral, "txtDefaultDiscount")),
      txtDefaultCommission(AddIn<ui::TextBox>(picGeneral, "txtDefaultCommission")),
      dtDateOfRelease(AddIn<ui::DatePicker>(picGeneral, "dtDateOfRelease")),
      ckbLocked(AddIn<ui::CheckBox>(picGeneral, "ckbLocked", "Locked")),
      ckbDoNotMail(AddIn<ui::CheckBox>(picGeneral, "ckbDoNotMail", "Do Not Mail")),
      cmbCustomerLevel(AddIn<ui::ComboBox>(picGeneral, "cmbCustomerLevel")),
      cmbCustomerKind(AddIn<ui::ComboBox>(picGeneral, "cmbCustomerKind")),
      txtCommentNote(AddIn<ui::TextBox>(picGeneral, "txtCommentNote")),
      lblNote(AddIn<ui::Label>(picGeneral, "lblNote", "Note: Use Ctrl-Enter for Carriage Returns")),
      fraRental(AddIn<ui::Frame>(picGeneral, "fraRental", "Rental Settings")),
      txtShoeSize(AddIn<ui::TextBox>(fraRental, "txtShoeSize")),
      cmbHeight(AddIn<ui::ComboBox>(fraRental, "cmbHeight")),
      cmbWeight(AddIn<ui::ComboBox>(fraRental, "cmbWeight")),
      cmbGuestAbility(AddIn<ui::ComboBox>(fraRental, "cmbGuestAbility")),
      imgAlert(Add<ui::Image>("imgAlert")),
      lblWillCall(Add<ui::Label>("lblWillCall", "Customer Has Will Calls Available")),
      lblReservations(Add<ui::Label>("lblReservations", "Customer Has Reservation(s)")),
      lblUninvoiced(Add<ui::Label>("lblUninvoiced", "Customer Has UnInvoiced SO(s)")),
      grdMaster(Add<ui::Grid>("grdMaster")),
      grdDetail(Add<ui::Grid>("grdDetail")),
      cmdButton1(Add<ui::CommandButton>("cmdButton1")),
      cmdButton2(Add<ui::CommandButton>("cmdButton2")),
      cmdButton3(Add<ui::CommandButton>("cmdButton3")),
      cmdEmployeerLookup(Add<ui::CommandButton>("cmdEmployeerLookup")),
      cmdEmployerClear(Add<ui::CommandButton>("cmdEmployerClear")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "&OK")),
      cmdSave(Add<ui::CommandButton>("cmdSave", "&Save")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")),
      cmdRefresh(Add<ui::CommandButton>("cmdRefresh", "Refresh")),
      mnuTools(Add<ui::MenuItem>("mnuTools", "&Tools")),
      mnuAlerts(AddIn<ui::MenuItem>(mnuTools, "mnuAlerts", "Alerts and Settings...")),
      mnuToolsExportPhoto(AddIn<ui::MenuItem>(mnuTools, "mnuToolsExportPhoto", "&Export Photograph")),
      mnuToolsViewCCData(AddIn<ui::MenuItem>(mnuTools, "mnuToolsViewCCData", "View CC Data")),
      mnuReports(Add<ui::MenuItem>("mnuReports", "&Reports")),
      mnuReportsForecastReport(AddIn<ui::MenuItem>(mnuReports, "mnuReportsForecastReport", "Run Forecast Report")),
      mnuReportRentalContract(AddIn<ui::MenuItem>(mnuReports, "mnuReportRentalContract", "Reprint Rental Contract...")) {
  SetCaption(kDesignCaption);
  AddCustomerTabs();
  AddFieldLabels();
  txtCommentNote.SetMultiLine(true);
  cmdCancel.SetCancel(true);
  imgAlert.SetVisible(false);
  lblWillCall.SetVisible(false);
  lblReservations.SetVisible(false);
  lblUninvoiced.SetVisible(false);
  for (ui::Control* c : std::vector<ui::Control*>{&cmdButton1, &cmdButton2, &cmdButton3, &cmdEmployeerLookup,
                                                  &cmdEmployerClear, &grdMaster, &grdDetail})
    c->SetVisible(false);
  SetKeyPreview(true);

  on_load = [this] { OnLoad(); };
  on_query_unload = [this](int& cancel, int mode) { OnQueryUnload(cancel, mode); };
  on_key_down = [this](int& key_code, int shift) { OnFormKeyDown(key_code, shift); };
  on_key_press = [this](int& key_ascii) { OnFormKeyPress(key_ascii); };
  WireCommands();
  WireFieldRules();
  WireRentalPanel();
  AddDetailPages(*this);
}

frmCustomerDetail::~frmCustomerDetail() = default;

void frmCustomerDetail::AddFieldLabels() {
  struct FieldLabel {
    ui::Control& container;
    const char* name;
    const char* caption;
  };
  const FieldLabel labels[] = {
      {picTypePerson, "lblLastName", "&Last Name:"},
      {picTypePerson, "lblFirstName", "&First Name:"},
      {picTypePerson, "lblFullName", "Full &Name:"},
      {picTypePerson, "lblDOB", "DOB:"},
      {picTypePerson, "lblWeddAniv", "Wedd Anniv:"},
      {picTypeCompany, "lblCompanyName", "Company:"},
      {picGeneral, "lblStreet1", "Street 1:"},
      {picGeneral, "lblStreet2", "Street 2:"},
      {picGeneral, "lblCity", "City:"},
      {picGeneral, "lblState", "State/Province:"},
      {picGeneral, "lblZip", "Postal Code:"},
      {picGeneral, "lblCountry", "Country/Region:"},
      {picGeneral, "lblPhone", "Phone:"},
      {picGeneral, "lblFax", "Fax:"},
      {picGeneral, "lblEMail", "EMail:"},
      {picGeneral, "lblWorkPhone", "Work:"},
      {picGeneral, "lblCellPhone", "Cell:"},
      {picGeneral, "lblOccupation", "Occupation:"},
      {picGeneral, "lblDefaultDiscount", "Disc %:"},
      {picGeneral, "lblDefaultCommission", "Comm %:"},
      {picGeneral, "lblDateOfRelease", "Release signed:"},
      {picGeneral, "lblCustomerLevel", "Customer Level:"},
      {picGeneral, "lblCustomerKind", "Customer Kind:"},
      {fraRental, "lblShoeSize", "Shoe Size:"},
      {fraRental, "lblHeight", "Height:"},
      {fraRental, "lblWeight", "Weight:"},
      {fraRental, "lblGuestAbility", "Ability:"},
  };
  for (const FieldLabel& label : labels) AddIn<ui::Label>(label.container, label.name, label.caption);
}

void frmCustomerDetail::AddCustomerTabs() {
  // The indices are fixed: Refresh and the pages address their tab by number.
  static const char* const kTabs[][2] = {
      {"Address", "General"},        {"Relationships", "Relationships"}, {"Sales", "Sales History"},
      {"Access", "Access Products"}, {"History", "History Log"},         {"WillCalls", "Will Calls"},
      {"Profile", "Profile"},        {"Reservations", "Reservations"},   {"Account", "Account"},
      {"Cards", "Credit Cards"},     {"Rental", "Rental"},               {"Forecasts", "Forecasts"}};
  for (const auto& tab : kTabs) tabCustomer.AddTab(tab[0], tab[1]);
}

void frmCustomerDetail::WireCommands() {
  OnClick(cmdOk, [this] { Ok(); });
  OnClick(cmdSave, [this] { Save(); });
  OnClick(cmdCancel, [this] { Cancel(); });
  OnClick(cmdRefresh, [this] { RefreshPage(); });
  OnClick(cmdType, [this] { SwitchType(cmdType.Value()); });
  OnClick(cmdClearAddress, [this] { ClearAddress(); });
  OnClick(tabAddressType, [this] { ShowAddressType(tabAddressType.SelectedKey()); });
  OnClick(tabCustomer, [this] { OnCustomerTabClick(); });
  OnClick(cmdButton1, [this] { PageButtonClicked(1); });
  OnClick(cmdButton2, [this] { PageButtonClicked(2); });
  OnClick(cmdButton3, [this] { PageButtonClicked(3); });
  OnClick(cmdEmployeerLookup, [this] { PageButtonClicked(kEmployerLookupButton); });
  OnClick(cmdEmployerClear, [this] { PageButtonClicked(kEmployerClearButton); });

  OnClick(mnuAlerts, [this] {
    if (customer_no_ == 0) {
      ui().MsgBox("Please Save the Customer before entering the alerts.", ui::vbOKOnly, "Update Customer");
      return;
    }
    if (open_alerts) open_alerts(*this);
  });
  // The check mark is the one record of whether card data is shown; each page follows it.
  OnClick(mnuToolsViewCCData, [this] {
    mnuToolsViewCCData.SetChecked(!mnuToolsViewCCData.Checked());
    for (const auto& page : pages_) page->ShowCardData(*this, mnuToolsViewCCData.Checked());
  });
  // The menu commands that other parts of the component fill in.
  const std::pair<ui::MenuItem*, std::function<void(frmCustomerDetail&)>*> hooks[] = {
      {&mnuToolsExportPhoto, &export_photo},
      {&mnuReportsForecastReport, &forecast_report},
      {&mnuReportRentalContract, &rental_contract_report},
  };
  for (const auto& [item, hook] : hooks) {
    OnClick(*item, [this, hook = hook] {
      if (*hook) (*hook)(*this);
    });
  }
}

void frmCustomerDetail::OnLoad() {
  cancelled_ = true;
}

void frmCustomerDetail::OnQueryUnload(int& cancel, int unload_mode) {
  if (unload_mode != ui::vbFormControlMenu) return;
  // The close box leaves as Cancel does, without the reload; the screen stays loaded so
  // the engine can still read it.
  cancelled_ = true;
  cancel = 1;
  Hide();
}

void frmCustomerDetail::OnFormKeyDown(int& key_code, int shift) {
  if (key_code == 'D' && shift == ui::vbCtrlMask) {
    key_code = 0;
    mnuToolsViewCCData.FireClick();
  }
}

void frmCustomerDetail::OnFormKeyPress(int& key_ascii) {
  if (key_ascii != ui::vbKeyReturn) return;
  ui::Control* active = ActiveControl();
  // The note keeps its own Enter; a focused button takes Enter as its click.
  if (active == &txtCommentNote || dynamic_cast<ui::CommandButton*>(active) != nullptr) return;
  key_ascii = 0;
  SendTab();
}

}  // namespace kiv

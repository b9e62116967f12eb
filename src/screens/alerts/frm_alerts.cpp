// The alerts screen: the load over every result set of the alerts procedure, the two
// panels behind the tab strip, and OK through the record's own save.
#include "screens/alerts/frm_alerts.h"

#include "core/variant.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"

namespace kiv {

frmAlerts::frmAlerts()
    : Screen("frmAlerts"),
      tabAlerts(Add<ui::TabStrip>("tabAlerts")),
      picTab0(Add<ui::Panel>("picTab0")),
      lblAllergies(AddIn<ui::Label>(picTab0, "lblAllergies", "Allergies:")),
      txtAllergies(AddIn<ui::TextBox>(picTab0, "txtAllergies")),
      lblMedications(AddIn<ui::Label>(picTab0, "lblMedications", "Medications:")),
      txtMedications(AddIn<ui::TextBox>(picTab0, "txtMedications")),
      lblSpecialNeeds(AddIn<ui::Label>(picTab0, "lblSpecialNeeds", "Special Needs:")),
      txtSpecialNeeds(AddIn<ui::TextBox>(picTab0, "txtSpecialNeeds")),
      picTab1(Add<ui::Panel>("picTab1")),
      lblChildsName(AddIn<ui::Label>(picTab1, "lblChildsName", "Child's Name:")),
      txtChildsName(AddIn<ui::TextBox>(picTab1, "txtChildsName")),
      lblCellPhoneContact(AddIn<ui::Label>(picTab1, "lblCellPhoneContact", "Cell Phone Contact:")),
      txtCellPhoneContact(AddIn<ui::TextBox>(picTab1, "txtCellPhoneContact")),
      lblResponsibleAdult1(AddIn<ui::Label>(picTab1, "lblResponsibleAdult1", "Responsible Adult 1:")),
      txtResponsibleAdult1(AddIn<ui::TextBox>(picTab1, "txtResponsibleAdult1")),
      lblResponsibleAdult2(AddIn<ui::Label>(picTab1, "lblResponsibleAdult2", "Responsible Adult 2:")),
      txtResponsibleAdult2(AddIn<ui::TextBox>(picTab1, "txtResponsibleAdult2")),
      lblHeight(AddIn<ui::Label>(picTab1, "lblHeight", "Height:")),
      cmbHeight(AddIn<ui::ComboBox>(picTab1, "cmbHeight")),
      lblWeight(AddIn<ui::Label>(picTab1, "lblWeight", "Weight:")),
      cmbWeight(AddIn<ui::ComboBox>(picTab1, "cmbWeight")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Customer Alerts & Settings");
  tabAlerts.AddTab(kAlertsTab, "Alerts");
  tabAlerts.AddTab(kChildTab, "Child Contact && Rental");
  for (ui::TextBox* note : {&txtAllergies, &txtMedications, &txtSpecialNeeds}) note->SetMultiLine(true);
  cmdCancel.SetCancel(true);
  ShowPanel(kAlertsTab);
  OnClick(tabAlerts, [this] { ShowPanel(tabAlerts.SelectedKey()); });
  OnClick(cmdOk, [this] {
    if (SaveAlerts()) Hide();
  });
  cmdCancel.on_click = [this] {
    canceled_ = true;
    Hide();
  };
}

void frmAlerts::ShowPanel(const std::string& tab_key) {
  picTab0.SetVisible(tab_key != kChildTab);
  picTab1.SetVisible(tab_key == kChildTab);
}

void frmAlerts::AllowChildContact(bool allowed) {
  for (ui::TextBox* field : {&txtChildsName, &txtCellPhoneContact, &txtResponsibleAdult1, &txtResponsibleAdult2})
    field->SetEnabled(allowed);
}

bool frmAlerts::LoadAlerts() {
  bool person = true;
  Guard("LoadAlerts", [&] {
    if (!db_ || !customer_) return;
    FillingScope filling(*this);
    cmbHeight.Clear();
    cmbWeight.Clear();
    host::ProcedureCall call(*db_, kAlertProcedure);
    call.In("@customer_no", Variant(customer_->CustomerNo())).In("@prefill", Variant(true));
    // The ranges are chosen once both lists are in, whichever result set brings the customer.
    std::string height, weight;
    for (host::ScopedRecordset rs = call.Open(); rs; rs = host::ScopedRecordset(rs->NextRecordset())) {
      for (; !rs.Eof(); rs->MoveNext()) {
        const std::string type = NzString((*rs)["return_type"]);
        if (type == "HEIGHT") {
          cmbHeight.AddItem(NzString((*rs)["Description"]), std::to_string(NzLong((*rs)["guest_height_range"])));
        } else if (type == "WEIGHT") {
          cmbWeight.AddItem(NzString((*rs)["Description"]), std::to_string(NzLong((*rs)["guest_weight_range"])));
        } else if (type == "CUST") {
          person = NzString((*rs)["customer_type"]) != "C";
          SetCaption(NzString((*rs)["full_name"]) + "'s Alerts && Settings");
          txtAllergies.SetText(NzString((*rs)["Allergies"]));
          txtMedications.SetText(NzString((*rs)["Medications"]));
          txtSpecialNeeds.SetText(NzString((*rs)["special_needs"]));
          txtChildsName.SetText(NzString((*rs)["child_full_name"]));
          txtCellPhoneContact.SetText(NzString((*rs)["cell_phone_contact"]));
          txtResponsibleAdult1.SetText(NzString((*rs)["responsible_adult_1_name"]));
          txtResponsibleAdult2.SetText(NzString((*rs)["responsible_adult_2_name"]));
          height = std::to_string(NzLong((*rs)["guest_height_range"]));
          weight = std::to_string(NzLong((*rs)["guest_weight_range"]));
        }
      }
    }
    if (!height.empty()) cmbHeight.SetListIndex(cmbHeight.FindKey(height));
    if (!weight.empty()) cmbWeight.SetListIndex(cmbWeight.FindKey(weight));
  });
  return person;
}

bool frmAlerts::SaveAlerts() {
  if (!customer_) return false;
  customer_->SetAllergies(txtAllergies.Text());
  customer_->SetMedications(txtMedications.Text());
  customer_->SetSpecialNeeds(txtSpecialNeeds.Text());
  customer_->SetChildsFullName(txtChildsName.Text());
  customer_->SetCellPhoneContact(txtCellPhoneContact.Text());
  customer_->SetResponsibleAdult1(txtResponsibleAdult1.Text());
  customer_->SetResponsibleAdult2(txtResponsibleAdult2.Text());
  // A list without a selection leaves the record's range as it was.
  if (cmbHeight.ListIndex() >= 0) customer_->SetGuestHeightRange(NzInt(Variant(cmbHeight.SelectedKey())));
  if (cmbWeight.ListIndex() >= 0) customer_->SetGuestWeightRange(NzInt(Variant(cmbWeight.SelectedKey())));
  if (!customer_->SaveAlertsAndSettings()) return false;
  canceled_ = false;
  return true;
}

}  // namespace kiv

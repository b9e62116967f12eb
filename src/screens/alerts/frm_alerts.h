// A customer's alerts and settings: allergies, medications and special needs on one panel,
// the child contact details and the guest height and weight ranges on the other. One
// procedure call reads the lists and the customer; the record's own save writes them back.
#pragma once
#include <memory>
#include <string>

#include "screens/kit/screen.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/label.h"
#include "ui/panel.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv {

class CCustomer;

class frmAlerts : public Screen {
 public:
  static constexpr const char* kAlertProcedure = "KIV_SP_CUSTOMER_CUSTOMER_ALERT_get";
  //! Keys of the two tabs of tabAlerts: picTab0 shows the alerts, picTab1 the child contact.
  static constexpr const char* kAlertsTab = "Alerts";
  static constexpr const char* kChildTab = "Child";

  frmAlerts();

  //! The customer whose alerts are edited; set before LoadAlerts.
  void SetCustomer(std::shared_ptr<CCustomer> customer) { customer_ = std::move(customer); }
  //! Reads the lists and the customer, walking every result set and taking each row by its
  //! return_type (others are skipped). True when the customer is a person (not "C").
  bool LoadAlerts();
  //! A company has no child contact: its fields are shown but cannot be edited.
  void AllowChildContact(bool allowed);
  //! True until OK saved.
  bool Canceled() const { return canceled_; }
  //! OK: copies the fields into the record and saves it; true when saved.
  bool SaveAlerts();

  ui::TabStrip& tabAlerts;
  ui::Panel& picTab0;
  ui::Label& lblAllergies;
  ui::TextBox& txtAllergies;
  ui::Label& lblMedications;
  ui::TextBox& txtMedications;
  ui::Label& lblSpecialNeeds;
  ui::TextBox& txtSpecialNeeds;
  ui::Panel& picTab1;
  ui::Label& lblChildsName;
  ui::TextBox& txtChildsName;
  ui::Label& lblCellPhoneContact;
  ui::TextBox& txtCellPhoneContact;
  ui::Label& lblResponsibleAdult1;
  ui::TextBox& txtResponsibleAdult1;
  ui::Label& lblResponsibleAdult2;
  ui::TextBox& txtResponsibleAdult2;
  ui::Label& lblHeight;
  ui::ComboBox& cmbHeight;
  ui::Label& lblWeight;
  ui::ComboBox& cmbWeight;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;

 private:
  void ShowPanel(const std::string& tab_key);

  std::shared_ptr<CCustomer> customer_;
  bool canceled_ = true;
};

}  // namespace kiv

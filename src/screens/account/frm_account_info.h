// The house (charge) account of one customer: its identifier, description, limit and
// balance. Saving writes the account row, links the customer to it when needed and leaves
// an audit entry of what changed under the account right.
#pragma once
#include <memory>
#include <string>

#include "screens/kit/screen.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/frame.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv {

class CCustomer;

class frmAccountInfo : public Screen {
 public:
  static constexpr const char* kPayMethodSql = "SELECT pay_method_id, description FROM kiv_pay_method ORDER BY pay_method_id";

  frmAccountInfo();

  //! The customer whose account is shown; set before Load.
  void SetCustomer(std::shared_ptr<CCustomer> customer) { customer_ = std::move(customer); }
  //! The account to show (the customer's AccountNo); empty shows empty fields.
  void SetAccountID(std::string id) { account_id_ = std::move(id); }
  //! The account was written at least once.
  bool Saved() const { return saved_; }

  //! "ID\tDescription" entries joined by "|", in identifier order; empty when none or failed.
  std::string PayMethodList();
  //! The amount a field shows: its number, a currency text ("$1,500.00", "($20.00)")
  //! included; 0 for anything that is not a number.
  static double AmountOf(const std::string& text);
  //! OK: the identifier check, then the save; true when the screen may close.
  bool Ok();
  //! Writes the account and, when it changed, the customer's link; false when a step failed.
  bool Save();

  ui::Frame& fraAccountInformation;
  ui::Label& lblAccountNo;
  ui::TextBox& txtAccountNo;
  ui::Label& lblDescription;
  ui::TextBox& txtDescription;
  ui::Label& lblAccountLimit;
  ui::TextBox& txtAccountLimit;
  ui::Label& lblAccountBalance;
  ui::TextBox& txtAccountBalance;
  ui::Label& lblPayMethod;
  ui::ComboBox& cmbPayMethod;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdCancel;

 private:
  void OnLoad();
  void ShowAccount();
  void FillPayMethods();
  void Reformat(ui::TextBox& field);

  std::shared_ptr<CCustomer> customer_;
  std::string account_id_;
  bool saved_ = false;
};

}  // namespace kiv

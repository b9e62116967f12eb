// The related-customer screen: new family members added to an existing customer (the
// parent) one at a time, each created with its relationship by one procedure call. The
// opener reads the saved flag afterwards to know whether to refresh its own view.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/variant.h"
#include "screens/kit/screen.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/label.h"
#include "ui/option_group.h"
#include "ui/text_box.h"

namespace kiv {

class CCustomer;

class frmRelatedCustomer : public Screen {
 public:
  //! Options of optGender.
  static constexpr int kGenderMale = 0, kGenderFemale = 1;
  //! The procedure that creates a member; its parameters are filled by position.
  static constexpr const char* kAddFamilyProcedure = "SP_INSERTCUSTOMER_ADD_FAMILY";
  static constexpr const char* kRelationshipSql =
      "SELECT * FROM kiv_relation  WHERE rel_type_id <> 'EMPLOYEE' ORDER By description";

  frmRelatedCustomer();

  //! The customer the new members belong to; set before Load.
  void SetParentCustomer(std::shared_ptr<CCustomer> parent) { parent_ = std::move(parent); }
  std::shared_ptr<CCustomer> ParentCustomer() const { return parent_; }

  //! When set, a member is handed to the opener instead of being created: the parent is
  //! not saved yet, so the opener creates the members with its own save. False refuses it.
  std::function<bool(const std::vector<Variant>& values)> collect_member;

  //! At least one member was added since the screen was loaded.
  bool Saved() const { return saved_; }

  //! Validates and creates the member on screen; false (after its message) when refused.
  bool SaveMember();
  //! Empties the fields for the next member; the last name starts as the parent's again.
  void ResetFields();
  //! The values the procedure receives, by position 1 to 11.
  std::vector<Variant> ProcedureValues() const;

  ui::Label& lblFirstName;
  ui::TextBox& txtFirstName;
  ui::Label& lblLastName;
  ui::TextBox& txtLastName;
  ui::Label& lblFullName;
  ui::TextBox& txtFullName;
  ui::Label& lblGender;
  ui::OptionGroup& optGender;
  ui::Label& lblDOB;
  ui::DatePicker& dtDOB;
  ui::Label& lblRelationship;
  ui::ComboBox& lstRelationship;
  ui::CommandButton& cmdType;
  ui::CommandButton& cmdAdd;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdCancel;

 private:
  void WireEvents();
  void OnLoad();
  void FillRelationships();
  //! Each name box takes no more than the procedure's parameter for it holds.
  void ApplyFieldLimits();
  void ComposeFullName();
  bool Refuse(const char* prompt, const char* title, ui::Control& focus);

  std::shared_ptr<CCustomer> parent_;
  bool saved_ = false;
};

}  // namespace kiv

// The related-customer screen: controls, the name composition, the three checks in their
// order and the member's creation through a procedure whose parameters go by position.
#include "screens/related/frm_related_customer.h"

#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"

namespace kiv {

namespace {

//! Where each name box's parameter sits, counted from 1 after "@RETURN_VALUE".
constexpr int kLastNamePosition = 2, kFirstNamePosition = 3, kFullNamePosition = 4;
constexpr int kPositions = 11;

//! The first parameter a value goes to: the return value, when the server lists one, takes none.
int FirstValueIndex(host::Parameters& params) {
  return params.Count() > 0 && EqualsNoCase(params.Item(0).Name(), "@RETURN_VALUE") ? 1 : 0;
}

//! The text cut to `limit` bytes (no limit when 0), never inside a character: a pasted
//! text is not held to the box's length as typing is.
std::string Limited(std::string text, int limit) {
  if (limit <= 0 || static_cast<int>(text.size()) <= limit) return text;
  size_t cut = static_cast<size_t>(limit);
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  return text.substr(0, cut);
}

std::string ParentName(const CCustomer& parent) {
  if (!parent.FullName().empty()) return parent.FullName();
  return parent.CustomerType() == "C" ? parent.CompanyName() : Trim(parent.FirstName() + " " + parent.LastName());
}

}  // namespace

frmRelatedCustomer::frmRelatedCustomer()
    : Screen("frmRelatedCustomer"),
      lblFirstName(Add<ui::Label>("lblFirstName", "&First Name:")),
      txtFirstName(Add<ui::TextBox>("txtFirstName")),
      lblLastName(Add<ui::Label>("lblLastName", "&Last Name:")),
      txtLastName(Add<ui::TextBox>("txtLastName")),
      lblFullName(Add<ui::Label>("lblFullName", "Full &Name:")),
      txtFullName(Add<ui::TextBox>("txtFullName")),
      lblGender(Add<ui::Label>("lblGender", "Gender:")),
      optGender(Add<ui::OptionGroup>("optGender", std::vector<std::string>{"&Male", "F&emale"})),
      lblDOB(Add<ui::Label>("lblDOB", "&DOB:")),
      dtDOB(Add<ui::DatePicker>("dtDOB")),
      lblRelationship(Add<ui::Label>("lblRelationship", "&Relationship:")),
      lstRelationship(Add<ui::ComboBox>("lstRelationship")),
      cmdType(Add<ui::CommandButton>("cmdType", "Person Type")),
      cmdAdd(Add<ui::CommandButton>("cmdAdd", "&Add Next Member")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "&Cancel")) {
  SetCaption("Add Family Member");
  dtDOB.SetAllowNone(true);
  // Family members are always persons: the type is shown, not chosen.
  cmdType.SetEnabled(false);
  cmdOK.SetDefault(true);
  cmdCancel.SetCancel(true);
  WireEvents();
}

void frmRelatedCustomer::WireEvents() {
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  for (ui::TextBox* field : {&txtFirstName, &txtLastName, &txtFullName})
    field->on_got_focus = [field] { field->SelectAll(); };
  OnChange(txtFirstName, [this] { ComposeFullName(); });
  OnChange(txtLastName, [this] { ComposeFullName(); });
  OnClick(cmdAdd, [this] {
    if (SaveMember()) ResetFields();
  });
  OnClick(cmdOK, [this] {
    if (SaveMember()) Hide();
  });
  // Members already added by Add Next Member stay added.
  cmdCancel.on_click = [this] { Hide(); };
}

void frmRelatedCustomer::OnLoad() {
  saved_ = false;
  if (parent_) SetCaption("Add Family Member of " + ParentName(*parent_));
  FillRelationships();
  ApplyFieldLimits();
  ResetFields();
}

void frmRelatedCustomer::FillRelationships() {
  lstRelationship.Clear();
  if (!db_) return;
  host::ScopedRecordset rs = host::OpenQuery(*db_, kRelationshipSql);
  for (; rs && !rs.Eof(); rs->MoveNext()) {
    const std::string key = NzString(rs->FieldByName("rel_type_id").Value());
    // The employee link belongs to the employer page, whatever the list table holds.
    if (key.empty() || EqualsNoCase(key, "EMPLOYEE")) continue;
    lstRelationship.AddItem(NzString(rs->FieldByName("Description").Value()) + "\t" + key, key);
  }
}

void frmRelatedCustomer::ApplyFieldLimits() {
  if (!db_) return;
  host::ProcedureCall call(*db_, kAddFamilyProcedure);
  if (!call.Prepared()) return;
  host::Parameters& params = call.GetCommand()->GetParameters();
  const int first = FirstValueIndex(params);
  const std::pair<ui::TextBox*, int> limits[] = {
      {&txtLastName, kLastNamePosition}, {&txtFirstName, kFirstNamePosition}, {&txtFullName, kFullNamePosition}};
  for (const auto& [box, position] : limits) {
    const int index = first + position - 1;
    if (index >= params.Count()) continue;
    const int32_t size = params.Item(index).Size();
    if (size > 0) box->SetMaxLength(size);
  }
}

void frmRelatedCustomer::ComposeFullName() {
  txtFullName.SetText(Limited(UCase(txtFirstName.Text()) + " " + UCase(txtLastName.Text()), txtFullName.MaxLength()));
}

void frmRelatedCustomer::ResetFields() {
  FillingScope filling(*this);
  txtLastName.SetText(parent_ ? parent_->LastName() : "");
  txtFirstName.SetText("");
  txtFullName.SetText("");
  optGender.SetValue(-1);
  dtDOB.SetValue(std::nullopt);
  lstRelationship.SetListIndex(-1);
  txtFirstName.SetFocus();
}

bool frmRelatedCustomer::Refuse(const char* prompt, const char* title, ui::Control& focus) {
  ui().MsgBox(prompt, ui::vbInformation, title);
  focus.SetFocus();
  return false;
}

std::vector<Variant> frmRelatedCustomer::ProcedureValues() const {
  const std::string last = Limited(UCase(txtLastName.Text()), txtLastName.MaxLength());
  const std::string first = Limited(UCase(txtFirstName.Text()), txtFirstName.MaxLength());
  Variant gender = Variant::Null();
  if (optGender.IsChosen(kGenderMale)) gender = Variant(std::string("M"));
  if (optGender.IsChosen(kGenderFemale)) gender = Variant(std::string("F"));
  return {
      Variant(parent_ ? parent_->CustomerNo() : 0),
      Variant(last),
      Variant(first),
      Variant(Limited(first + " " + last, txtFullName.MaxLength())),
      dtDOB.HasValue() ? Variant(*dtDOB.Value()) : Variant::Null(),
      gender,
      Variant(lstRelationship.SelectedKey()),
      Variant::Null(),
      Variant(parent_ ? parent_->Zip() : std::string()),
      Variant(parent_ ? parent_->HouseholdNo() : 0),
      Variant(db_ ? db_->UserID() : std::string()),
  };
}

bool frmRelatedCustomer::SaveMember() {
  if (Trim(txtFirstName.Text()).empty())
    return Refuse("The first name is required to save this record.", "Invalid First Name", txtFirstName);
  if (Trim(txtLastName.Text()).empty())
    return Refuse("The last name is required to save this record.", "Invalid Last Name", txtLastName);
  if (lstRelationship.ListIndex() < 0 || lstRelationship.SelectedKey().empty())
    return Refuse("A relationship is required to save this record.", "Invalid Relationship", lstRelationship);
  if (collect_member) {
    if (!collect_member(ProcedureValues())) return false;
    saved_ = true;
    return true;
  }
  if (!db_ || !parent_) return false;

  host::ProcedureCall call(*db_, kAddFamilyProcedure);
  if (!call.Prepared()) return false;
  host::Parameters& params = call.GetCommand()->GetParameters();
  const int first = FirstValueIndex(params);
  const std::vector<Variant> values = ProcedureValues();
  // A procedure with fewer parameters simply receives fewer values.
  for (int position = 0; position < kPositions; ++position) {
    const int index = first + position;
    if (index >= params.Count()) break;
    params.Item(index).SetValue(values[static_cast<size_t>(position)]);
  }
  if (!call.Execute()) return false;
  if (call.ReturnValue(0) < 0) {
    const std::string message = call.OutputText("@message");
    ui().MsgBox(message.empty() ? "The family member could not be added." : message, ui::vbInformation,
                "Add Family Member");
    return false;
  }
  saved_ = true;
  return true;
}

}  // namespace kiv

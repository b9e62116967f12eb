// The household part of the relationships page: reading the household, the three page
// commands and the grid's cell edits. The save is in household_page_save.cpp.
#include "screens/detail/household_page.h"

#include "core/format.h"
#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"
#include "screens/related/frm_related_customer.h"

namespace kiv {

namespace {

constexpr const char* kDateMask = "MM/dd/yyyy";
constexpr int kFlexDTBoolean = 11;
constexpr const char* kAddExistingTitle = "Add Existing Customer Cancel";

std::string TrueFalse(bool v) { return v ? "True" : "False"; }

//! A cell of the list as the grid shows it, read from one row of the household procedure.
GridFill HouseholdFill() {
  auto primary = [](const std::vector<Variant>& v) { return TrueFalse(NzBool(v[0])); };
  return GridFill({
      FillColumn::Composed({}, [](const std::vector<Variant>&) { return std::string("0"); }),
      FillColumn::Of("last_name"),
      FillColumn::Of("first_name"),
      FillColumn::Composed({"household_primary"}, primary),
      // The head of the household has no relationship of its own: it is the household.
      FillColumn::Composed({"household_primary", "rel_type_id"},
                           [](const std::vector<Variant>& v) {
                             return NzBool(v[0]) ? std::string(HouseholdPage::kPrimary) : NzString(v[1]);
                           }),
      FillColumn::Of("Gender"),
      FillColumn::Of("DOB", kDateMask),
      FillColumn::Of("customer_no"),
      FillColumn::Composed({"household_primary"}, primary),
  });
}

//! The text cut to what its column holds, never inside a character.
std::string Limited(std::string text, size_t limit) {
  if (text.size() <= limit) return text;
  size_t cut = limit;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  return text.substr(0, cut);
}

std::string DateCell(const Date& date) { return date.IsZero() ? std::string() : Format(Variant(date), kDateMask); }

}  // namespace

int HouseholdPage::TabIndex() const { return frmCustomerDetail::kTabRelationships; }

bool HouseholdPage::IsCompany(const frmCustomerDetail& screen) {
  return screen.cmdType.Value() == frmCustomerDetail::kTypeCompany;
}

bool HouseholdPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == TabIndex() && !IsCompany(screen);
}

void HouseholdPage::Reset() {
  rows_.Clear();
  self_row_ = -1;
  dirty_ = false;
}

RefreshConfirmation HouseholdPage::RefreshQuestion() const {
  return {"The relationship information has been changed.  Are you sure you want to lose those changes and refresh "
          "the data?",
          "Confirm Refresh Relationships"};
}

void HouseholdPage::Activate(frmCustomerDetail& screen) {
  // A company has employees, not a household: its page is the employer part alone.
  if (IsCompany(screen)) return;
  screen.ShowPageButtons({"&Add Family Member", "Add Existing &Customer", "Remove Member"}, screen.CanEdit());
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kFormatString);
  for (int col : {kColState, kColCustomerNo, kColOrigPrimary}) grid.SetColHidden(col, true);
  grid.SetColDataType(kColPrimary, kFlexDTBoolean);
  grid.SetColComboList(kColGender, "|F|M");
  grid.SetColFormat(kColDOB, kDateMask);
  grid.SetColComboList(kColRelationship, Join(relation_types_, "|"));
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(screen.CanEdit() ? ui::flexEDKbdMouse : ui::flexEDNone);
  grid.SetVisible(true);
  grid.on_before_edit = [this, &grid](int row, int col, bool& cancel) {
    const int i = rows_.RowAt(grid, row);
    if (i < 0) {
      cancel = true;
      return;
    }
    const ListRow& r = rows_.Row(static_cast<size_t>(i));
    const bool not_created = NzLong(r.key) == 0 && i != self_row_;
    const bool is_head = r.cells[kColPrimary] == "True";
    switch (col) {
      case kColPrimary: cancel = not_created; break;
      case kColRelationship: cancel = is_head; break;
      // Only a member not created yet is written from these cells; the others keep theirs.
      case kColLastName: case kColFirstName: case kColGender: case kColDOB: cancel = !not_created; break;
      default: cancel = true;
    }
  };
  grid.on_validate_edit = [&grid](int, int col, bool& cancel) {
    const std::string text = Trim(grid.EditText());
    if (col == kColGender) {
      cancel = !(text.empty() || EqualsNoCase(text, "F") || EqualsNoCase(text, "M"));
    } else if (col == kColDOB && !text.empty()) {
      try {
        grid.SetEditText(DateCell(Variant(text).ToDate()));
      } catch (...) {
        cancel = true;
      }
    } else if (col == kColLastName || col == kColFirstName) {
      // The member is created with these: no more than the customer's columns hold.
      cancel = text.empty();
      grid.SetEditText(Limited(text, col == kColLastName ? 50 : 40));
    }
  };
  grid.on_after_edit = [this, &screen](int row, int col) { CellEdited(screen, row, col); };
  Render(screen);
}

void HouseholdPage::FillRelationTypes(frmCustomerDetail& screen) {
  relation_types_.clear();
  if (!screen.DBConnection()) return;
  host::ScopedRecordset rs = host::OpenQuery(*screen.DBConnection(), frmRelatedCustomer::kRelationshipSql);
  for (; rs && !rs.Eof(); rs->MoveNext()) {
    const std::string key = NzString(rs->FieldByName("rel_type_id").Value());
    if (!key.empty() && !EqualsNoCase(key, "EMPLOYEE")) relation_types_.push_back(key);
  }
}

void HouseholdPage::ReadRows(frmCustomerDetail& screen, ListRows& into) {
  const int32_t customer_no = screen.CustomerNo();
  if (customer_no == 0 || !screen.DBConnection()) return;
  host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetRelationship");
  call.In("@parent_customer_no", Variant(screen.HouseholdNo() != 0 ? screen.HouseholdNo() : customer_no))
      .In("@child_customer_no", Variant(customer_no))
      .In("@employee", Variant(false));
  host::ScopedRecordset rs = call.Open();
  if (!rs || rs.Eof()) return;
  GridFill fill = HouseholdFill();
  fill.Bind(*rs);
  for (; !rs.Eof(); rs->MoveNext()) {
    std::vector<std::string> cells = Split(fill.RowText(*rs), "\t");
    const int32_t number = NzLong(Variant(cells[kColCustomerNo]));
    into.AddLoaded(std::move(cells), Variant(number));
  }
}

void HouseholdPage::Load(frmCustomerDetail& screen) {
  Reset();
  if (IsCompany(screen)) return;
  FillRelationTypes(screen);
  screen.grdMaster.SetColComboList(kColRelationship, Join(relation_types_, "|"));
  ReadRows(screen, rows_);
  const int32_t self = screen.CustomerNo();
  for (size_t i = 0; i < rows_.Count(); ++i)
    if (self != 0 && NzLong(rows_.Row(i).key) == self) self_row_ = static_cast<int>(i);
  if (self_row_ < 0 && rows_.Count() == 0 && screen.Customer()) {
    // A customer nobody else shares a household with heads a household of one.
    const CCustomer& c = *screen.Customer();
    rows_.AddLoaded({"0", c.LastName(), c.FirstName(), "True", kPrimary, c.Gender(), DateCell(c.DOB()),
                     std::to_string(self), "True"},
                    Variant(self));
    self_row_ = 0;
  }
  if (Showing(screen)) Render(screen);
}

void HouseholdPage::MergeNewMembers(frmCustomerDetail& screen) {
  ListRows now;
  ReadRows(screen, now);
  for (size_t i = 0; i < now.Count(); ++i) {
    const ListRow& row = now.Row(i);
    if (Listed(NzLong(row.key))) continue;
    // The head's mark comes from the page's own rows: the clerk may be choosing another.
    std::vector<std::string> cells = row.cells;
    if (PrimaryRow() >= 0 && cells[kColPrimary] == "True") cells[kColPrimary] = cells[kColOrigPrimary] = "False";
    rows_.AddLoaded(std::move(cells), row.key);
  }
}

void HouseholdPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdMaster;
  rows_.Render(grid);
  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    const int g = grid.FixedRows() + static_cast<int>(i);
    grid.SetTextMatrix(g, kColState, std::to_string(static_cast<int>(row.state)));
    grid.SetTextMatrix(g, kColPrimary, "");
    grid.SetCellChecked(g, kColPrimary, row.cells[kColPrimary] == "True" ? ui::flexChecked : ui::flexUnchecked);
  }
}

int HouseholdPage::PrimaryRow() const {
  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    if (row.state != RowState::kRemoved && row.cells[kColPrimary] == "True") return static_cast<int>(i);
  }
  return -1;
}

int32_t HouseholdPage::NumberOf(const frmCustomerDetail& screen, size_t row) const {
  if (static_cast<int>(row) == self_row_) return screen.CustomerNo();
  return NzLong(rows_.Row(row).key);
}

std::string HouseholdPage::NameOf(size_t row) const {
  const ListRow& r = rows_.Row(row);
  return Trim(r.cells[kColFirstName] + " " + r.cells[kColLastName]);
}

bool HouseholdPage::Listed(int32_t customer_no) const {
  if (customer_no == 0) return false;
  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    if (row.state != RowState::kRemoved && NzLong(row.key) == customer_no) return true;
  }
  return false;
}

void HouseholdPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (IsCompany(screen)) return;
  switch (which) {
    case kAddFamilyButton: AddFamilyMember(screen); break;
    case kAddExistingButton: AddExistingCustomer(screen); break;
    case kRemoveButton: RemoveMember(screen); break;
    default: break;
  }
}

bool HouseholdPage::CollectMember(frmCustomerDetail& screen, const std::vector<Variant>& values) {
  // Positions 2, 3, 5, 6 and 7 of the member procedure: names, birth date, gender, relationship.
  const Variant& dob = values[4];
  rows_.AddNew({"1", NzString(values[1]), NzString(values[2]), "False", NzString(values[6]), NzString(values[5]),
                dob.IsNull() ? std::string() : DateCell(dob.ToDate()), "0", "False"},
               Variant(0));
  dirty_ = true;
  if (Showing(screen)) Render(screen);
  return true;
}

void HouseholdPage::AddFamilyMember(frmCustomerDetail& screen) {
  if (!screen.Customer() || !screen.open_related_customer) return;
  if (screen.CustomerNo() == 0) {
    // Nobody to attach the members to yet: they are created with the customer's save.
    screen.open_related_customer(screen, screen.Customer(), [this, &screen](const std::vector<Variant>& values) {
      return CollectMember(screen, values);
    });
    return;
  }
  std::shared_ptr<CCustomer> parent = screen.Customer();
  const int head = PrimaryRow();
  const int32_t head_no = head >= 0 ? NumberOf(screen, static_cast<size_t>(head)) : 0;
  if (head_no != 0 && head_no != screen.CustomerNo() && screen.CustomerEngine() != nullptr) {
    OpenCustomerArgs args;
    args.oDB = screen.DBConnection();
    args.oError = screen.ErrorObject();
    std::shared_ptr<CCustomer> head_customer = screen.CustomerEngine()->OpenCustomer(head_no, args);
    if (head_customer && !args.bError) parent = head_customer;
  }
  if (!screen.open_related_customer(screen, parent, nullptr)) return;
  MergeNewMembers(screen);
  if (Showing(screen)) Render(screen);
}

bool HouseholdPage::InAnotherHousehold(frmCustomerDetail& screen, CCustomer& chosen) const {
  const int32_t ours = screen.HouseholdNo() != 0 ? screen.HouseholdNo() : screen.CustomerNo();
  const int32_t theirs = chosen.HouseholdNo();
  if (theirs != 0 && theirs != chosen.CustomerNo() && theirs != ours) return true;
  if (!screen.DBConnection()) return false;
  // A head of a household of several is in a household too, though it is its own.
  const std::string n = std::to_string(chosen.CustomerNo());
  host::ScopedRecordset rs =
      host::OpenQuery(*screen.DBConnection(), "SELECT COUNT(*) AS members FROM kiv_customer WHERE household_no = " +
                                                  n + " AND customer_no <> " + n);
  return rs && !rs.Eof() && NzLong(rs->FieldByName("members").Value()) > 0 && chosen.CustomerNo() != ours;
}

void HouseholdPage::AddExistingCustomer(frmCustomerDetail& screen) {
  CCustEngine* engine = screen.CustomerEngine();
  if (engine == nullptr) return;
  CCustEngine::SelectCustomerArgs args;
  args.ParentForm = &screen;
  args.oDB = screen.DBConnection();
  args.oError = screen.ErrorObject();
  args.sDefaultTab = "Person";
  std::shared_ptr<CCustomer> chosen = engine->SelectCustomer(args);
  if (!chosen || args.bError || chosen->CustomerNo() == 0) return;
  const std::string name = chosen->FullName();
  if (chosen->CustomerNo() == screen.CustomerNo()) {
    screen.ui().MsgBox(name + " can not be added as a family member of itself.", ui::vbInformation, kAddExistingTitle);
    return;
  }
  if (Listed(chosen->CustomerNo())) {
    screen.ui().MsgBox(name + " is already a member of this household.", ui::vbInformation, kAddExistingTitle);
    return;
  }
  if (chosen->CustomerType() == "C") {
    screen.ui().MsgBox(name + " is a company and can not be a family member.", ui::vbInformation, kAddExistingTitle);
    return;
  }
  if (InAnotherHousehold(screen, *chosen)) {
    screen.ui().MsgBox(name + " can not be added because they are already in a relationship with another household.",
                       ui::vbInformation, kAddExistingTitle);
    return;
  }
  const int32_t number = chosen->CustomerNo();
  rows_.AddNew({"1", chosen->LastName(), chosen->FirstName(), "False", "", chosen->Gender(), DateCell(chosen->DOB()),
                std::to_string(number), "False"},
               Variant(number));
  dirty_ = true;
  if (!Showing(screen)) return;
  Render(screen);
  screen.grdMaster.SetRow(screen.grdMaster.Rows() - 1);
}

void HouseholdPage::RemoveMember(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdMaster;
  const int i = rows_.RowAt(grid, grid.Row());
  if (i < 0 || rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved) return;
  const std::string name = NameOf(static_cast<size_t>(i));
  if (i == PrimaryRow()) {
    // The household is its head's: another member must head it before this one can go.
    screen.ui().MsgBox(name + " is the household primary and can not be removed from this household.",
                       ui::vbInformation, "Remove Family Member Canceled");
    return;
  }
  if (screen.ui().MsgBox("Are you sure you want to remove " + name + " from this household?",
                         ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2,
                         "Confirm Remove Family Member") != ui::vbYes)
    return;
  rows_.Remove(static_cast<size_t>(i));
  dirty_ = true;
  Render(screen);
}

void HouseholdPage::CellEdited(frmCustomerDetail& screen, int grid_row, int col) {
  ui::Grid& grid = screen.grdMaster;
  const int i = rows_.RowAt(grid, grid_row);
  if (i < 0) return;
  const size_t row = static_cast<size_t>(i);
  if (col == kColPrimary) {
    const bool checked = grid.CellChecked(grid_row, col) == ui::flexChecked;
    const int head = PrimaryRow();
    // A household always has a head: only choosing another member moves the mark.
    if (checked && head != i) {
      if (head >= 0) {
        rows_.Edit(static_cast<size_t>(head), kColPrimary, "False");
        rows_.Edit(static_cast<size_t>(head), kColRelationship, "");
      }
      rows_.Edit(row, kColPrimary, "True");
      rows_.Edit(row, kColRelationship, kPrimary);
    }
  } else {
    std::string text = grid.TextMatrix(grid_row, col);
    if (col != kColDOB) text = UCase(Trim(text));
    rows_.Edit(row, static_cast<size_t>(col), text);
  }
  dirty_ = dirty_ || rows_.Dirty();
  Render(screen);
}

}  // namespace kiv

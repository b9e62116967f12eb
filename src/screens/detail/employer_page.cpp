// The employer part of the relationships page: the list by customer type, Add and Clear,
// cell edits of the active mark and the comment, and the save link by link.
#include "screens/detail/employer_page.h"

#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

constexpr int kFlexDTBoolean = 11;
constexpr const char* kLookupTitle = "Employee Lookup Canceled";

GridFill LinkFill(bool company) {
  return GridFill({
      FillColumn::Composed({}, [](const std::vector<Variant>&) { return std::string(); }),
      FillColumn::Of("fiscal_year"),
      FillColumn::Composed({"is_active"},
                           [](const std::vector<Variant>& v) { return std::string(NzBool(v[0]) ? "True" : "False"); }),
      FillColumn::Of(company ? "full_name" : "company_name"),
      FillColumn::Of("customer_no"),
      FillColumn::Of("employer_customer_no"),
      FillColumn::Of("comment_note"),
  });
}

}  // namespace

int EmployerPage::TabIndex() const { return frmCustomerDetail::kTabRelationships; }

bool EmployerPage::IsCompany(const frmCustomerDetail& screen) {
  return screen.cmdType.Value() == frmCustomerDetail::kTypeCompany;
}

bool EmployerPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == TabIndex() && IsCompany(screen) == loaded_as_company_;
}

void EmployerPage::Reset() {
  rows_.Clear();
  dirty_ = false;
}

RefreshConfirmation EmployerPage::RefreshQuestion() const {
  return {"The relationship information has been changed.  Are you sure you want to lose those changes and refresh "
          "the data?",
          "Confirm Refresh Relationships"};
}

std::string EmployerPage::ListSql(bool company, int32_t customer_no) {
  const std::string n = std::to_string(customer_no);
  if (company)
    return std::string(kEmployeesSql) + " WHERE kiv_customer_employer.employer_customer_no = " + n +
           " order by fiscal_year desc ";
  return std::string(kEmployersSql) + " WHERE kiv_customer_employer.customer_no = " + n + " order by fiscal_year desc";
}

void EmployerPage::Activate(frmCustomerDetail& screen) {
  const bool company = IsCompany(screen);
  screen.cmdEmployeerLookup.SetCaption(company ? "Add Employee" : "Add Employer");
  screen.cmdEmployerClear.SetCaption(company ? "Clear Employee" : "Clear Employer");
  for (ui::CommandButton* b : {&screen.cmdEmployeerLookup, &screen.cmdEmployerClear}) {
    b->SetVisible(true);
    b->SetEnabled(screen.CanEdit());
  }
  ui::Grid& grid = screen.grdDetail;
  grid.SetFormatString(company ? kCompanyFormat : kPersonFormat);
  for (int col : {kColState, kColCustNo, kColEmployerCustNo}) grid.SetColHidden(col, true);
  grid.SetColDataType(kColActive, kFlexDTBoolean);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(screen.CanEdit() ? ui::flexEDKbdMouse : ui::flexEDNone);
  grid.SetVisible(true);
  grid.on_before_edit = [this, &grid](int row, int col, bool& cancel) {
    const int i = rows_.RowAt(grid, row);
    // A link of a past year is history: it is read, never rewritten.
    cancel = i < 0 || (col != kColActive && col != kColComment) ||
             rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved;
  };
  grid.on_after_edit = [this, &screen](int row, int col) { CellEdited(screen, row, col); };
  if (company != loaded_as_company_) {
    // The clerk switched the customer's type since the list was read: it no longer fits.
    Reset();
    loaded_as_company_ = company;
  }
  Render(screen);
}

void EmployerPage::Load(frmCustomerDetail& screen) {
  Reset();
  loaded_as_company_ = IsCompany(screen);
  const int32_t customer_no = screen.CustomerNo();
  if (customer_no != 0 && screen.DBConnection()) {
    host::ScopedRecordset rs = host::OpenQuery(*screen.DBConnection(), ListSql(loaded_as_company_, customer_no));
    if (rs && !rs.Eof()) {
      GridFill fill = LinkFill(loaded_as_company_);
      fill.Bind(*rs);
      for (; !rs.Eof(); rs->MoveNext()) rows_.AddLoaded(Split(fill.RowText(*rs), "\t"));
    }
  }
  if (Showing(screen)) Render(screen);
}

void EmployerPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdDetail;
  rows_.Render(grid, [&grid](int g, const ListRow& row) {
    grid.SetTextMatrix(g, kColState, ListRows::StateFlag(row.state));
    grid.SetTextMatrix(g, kColActive, "");
    grid.SetCellChecked(g, kColActive, row.cells[kColActive] == "True" ? ui::flexChecked : ui::flexUnchecked);
  });
}

void EmployerPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (which == frmCustomerDetail::kEmployerLookupButton) AddLink(screen);
  if (which == frmCustomerDetail::kEmployerClearButton) ClearLink(screen);
}

bool EmployerPage::Listed(const std::string& year, const std::string& employee, const std::string& employer) const {
  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    if (row.state != RowState::kRemoved && row.cells[kColYear] == year && row.cells[kColCustNo] == employee &&
        row.cells[kColEmployerCustNo] == employer)
      return true;
  }
  return false;
}

void EmployerPage::AddLink(frmCustomerDetail& screen) {
  CCustEngine* engine = screen.CustomerEngine();
  if (engine == nullptr) return;
  const bool company = IsCompany(screen);
  const char* not_chosen = company ? "You did not select a person" : "You did not select a company";
  CCustEngine::SelectCustomerArgs args;
  args.ParentForm = &screen;
  args.oDB = screen.DBConnection();
  args.oError = screen.ErrorObject();
  args.sDefaultTab = company ? "Person" : "Company";
  std::shared_ptr<CCustomer> chosen = engine->SelectCustomer(args);
  if (!chosen || args.bError || chosen->CustomerNo() == 0) {
    screen.ui().MsgBox(not_chosen, ui::vbInformation, kLookupTitle);
    return;
  }
  const int32_t self = screen.CustomerNo();
  if (chosen->CustomerNo() == self) {
    screen.ui().MsgBox(chosen->FullName() + " can not be its own employer.", ui::vbInformation, kLookupTitle);
    return;
  }
  // The search lets the clerk change tabs: a person's employer must still be a company.
  if ((chosen->CustomerType() == "C") == company) {
    screen.ui().MsgBox(not_chosen, ui::vbInformation, kLookupTitle);
    return;
  }
  const std::string year = std::to_string(engine->FiscalYear());
  const std::string employee = std::to_string(company ? chosen->CustomerNo() : self);
  const std::string employer = std::to_string(company ? self : chosen->CustomerNo());
  if (Listed(year, employee, employer)) {
    screen.ui().MsgBox(chosen->FullName() + " is already listed for " + year + ".", ui::vbInformation, kLookupTitle);
    return;
  }
  rows_.AddNew({"1", year, "True", chosen->FullName(), employee, employer, ""});
  dirty_ = true;
  if (Showing(screen)) Render(screen);
}

void EmployerPage::ClearLink(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdDetail;
  const int i = rows_.RowAt(grid, grid.Row());
  if (i < 0 || rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved) return;
  if (screen.ui().MsgBox("Are you sure you want to remove this employer?",
                         ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, "Confirm Clear Employer") != ui::vbYes)
    return;
  const ListRow& row = rows_.Row(static_cast<size_t>(i));
  const int32_t fiscal_year = screen.CustomerEngine() ? screen.CustomerEngine()->FiscalYear() : 0;
  if (NzLong(Variant(row.cells[kColYear])) != fiscal_year) {
    screen.ui().MsgBox(row.cells[kColYear] + " - " + row.cells[kColName] + " is inactive and cannot be deleted.",
                       ui::vbInformation, "Clear Employer");
    return;
  }
  rows_.Remove(static_cast<size_t>(i));
  dirty_ = true;
  if (!IsCompany(screen) && screen.Customer()) screen.Customer()->SetEmployer(nullptr);
  Render(screen);
}

void EmployerPage::CellEdited(frmCustomerDetail& screen, int grid_row, int col) {
  ui::Grid& grid = screen.grdDetail;
  const int i = rows_.RowAt(grid, grid_row);
  if (i < 0) return;
  const std::string text = col == kColActive
                               ? std::string(grid.CellChecked(grid_row, col) == ui::flexChecked ? "True" : "False")
                               : grid.TextMatrix(grid_row, col);
  rows_.Edit(static_cast<size_t>(i), static_cast<size_t>(col), text);
  dirty_ = dirty_ || rows_.Dirty();
  Render(screen);
}

bool EmployerPage::Save(frmCustomerDetail& screen) {
  bool saved = false;
  screen.Guard("SaveEmployerData", [&] { saved = WriteLinks(screen); });
  return saved;
}

bool EmployerPage::WriteLinks(frmCustomerDetail& screen) {
  if (!screen.DBConnection()) return false;
  host::DBConnection& db = *screen.DBConnection();
  // A customer saved for the first time with this page gets its number only now.
  const std::string self = std::to_string(screen.CustomerNo());
  const bool saved = rows_.WriteChanges([&](const ListRow& row) {
    const bool company = loaded_as_company_;
    const Variant employee(NzLong(Variant(company ? row.cells[kColCustNo] : self)));
    const Variant employer(NzLong(Variant(company ? self : row.cells[kColEmployerCustNo])));
    const Variant year(NzLong(Variant(row.cells[kColYear])));
    if (row.state == RowState::kRemoved) {
      host::ProcedureCall remove(db, "SP_DeleteCustomerEmployerRelationship");
      remove.In("@customer_no", employee).In("@fiscal_year", year).In("@employer_customer_no", employer);
      return remove.Execute() && remove.ReturnValue(0) >= 0;
    }
    host::ProcedureCall update(db, "KIV_SP_UpdateCustomerEmployerRelationship");
    update.In("@customer_no", employee)
        .In("@fiscal_year", year)
        .In("@employer_customer_no", employer)
        .In("@is_active", Variant(row.cells[kColActive] == "True"))
        .In("@comment_note", Variant(row.cells[kColComment]));
    if (!update.Execute()) return false;
    if (update.ReturnValue(0) >= 0) return true;
    screen.ui().MsgBox(update.OutputText("@message"), ui::vbInformation, "Update Employer Canceled");
    return false;
  });
  if (!saved) return false;
  dirty_ = false;
  if (Showing(screen)) Render(screen);
  return true;
}

}  // namespace kiv

// The result grid: its columns, one row per customer found (or saved from the editor), the
// customers related to a row loaded below it when it is expanded, and the two relationship
// look-ups the customer commands use.
#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/search/frm_find.h"

namespace kiv {

namespace {

constexpr const char* kFormatString =
    "Name|First|>Zip|Relation|^Cust#|^Kind|^Willcall|^SO|^Res|^Image|Level|^Club|Household#";
constexpr int kRelationWidth = 2200;
constexpr int kFlexDTBoolean = 11;

std::string Cell(host::Recordset& rs, const char* column) { return NzString(rs.FieldByName(column).Value()); }

//! Name column: the company for a company, else the last name, else the full name.
std::string NameOf(const std::string& type, const std::string& company, const std::string& last,
                   const std::string& full) {
  const std::string& name = type == "C" ? company : last;
  return name.empty() ? full : name;
}

//! The result grid's columns in their order; `relation` fills the Relation column.
std::vector<FillColumn> ResultColumns(FillColumn relation) {
  return {
      FillColumn::Composed({"customer_type", "company_name", "last_name", "full_name"},
                           [](const std::vector<Variant>& v) {
                             return NameOf(NzString(v[0]), NzString(v[1]), NzString(v[2]), NzString(v[3]));
                           }),
      FillColumn::Of("first_name"),
      FillColumn::Of("Zip"),
      std::move(relation),
      FillColumn::Of("customer_no"),
      FillColumn::Of("customer_kind"),
      FillColumn::Of("has_willcall"),
      FillColumn::Of("has_so"),
      FillColumn::Of("has_reservation"),
      FillColumn::Of("has_image"),
      FillColumn::Of("Customer_Level_ID"),
      FillColumn::Of("has_club"),
      FillColumn::Of("household_no"),
  };
}

std::string FlagText(bool flag) { return flag ? "True" : "False"; }

}  // namespace

void frmFind::SetUpGrid() {
  fxgCustomers.SetFormatString(kFormatString);
  fxgCustomers.SetColWidth(kColRelation, kRelationWidth);
  fxgCustomers.SetColHidden(kColHousehold, true);
  // The status flags share one display: whatever the database sends (bit, number, Boolean)
  // reads True or False.
  for (int col : {kColWillcall, kColSO, kColRes, kColImage, kColClub}) {
    fxgCustomers.SetColDataType(col, kFlexDTBoolean);
    fxgCustomers.SetColFormat(col, "True/False");
  }
  fxgCustomers.SetSelectionMode(ui::flexSelectionByRow);
  fxgCustomers.SetEditable(ui::flexEDNone);
}

void frmFind::ClearGrid() { fxgCustomers.SetRows(fxgCustomers.FixedRows()); }

GridFill frmFind::SearchRowFill() {
  // A customer found by the search is related to nobody in particular.
  return GridFill(ResultColumns(FillColumn::Composed({}, [](const std::vector<Variant>&) { return std::string(); })));
}

GridFill frmFind::RelatedRowFill() { return GridFill(ResultColumns(FillColumn::Of("rel_type_id"))); }

void frmFind::WriteCustomerCells(int row, CCustomer& customer) {
  fxgCustomers.SetTextMatrix(row, kColName,
                             NameOf(customer.CustomerType(), customer.CompanyName(), customer.LastName(),
                                    customer.FullName()));
  fxgCustomers.SetTextMatrix(row, kColFirst, customer.FirstName());
  fxgCustomers.SetTextMatrix(row, kColZip, customer.Zip());
  fxgCustomers.SetTextMatrix(row, kColCustNo, std::to_string(customer.CustomerNo()));
  fxgCustomers.SetTextMatrix(row, kColKind, customer.CustomerKind());
  fxgCustomers.SetTextMatrix(row, kColWillcall, FlagText(customer.WillCallsAvailable()));
  fxgCustomers.SetTextMatrix(row, kColSO, FlagText(customer.HasUnInvoiced()));
  fxgCustomers.SetTextMatrix(row, kColRes, FlagText(customer.HasReservations()));
  fxgCustomers.SetTextMatrix(row, kColImage, FlagText(customer.HasImage()));
  fxgCustomers.SetTextMatrix(row, kColLevel, customer.CustomerLevelID());
}

int32_t frmFind::CurrentCustomerNo() const {
  const int row = fxgCustomers.Row();
  if (row < fxgCustomers.FixedRows() || row >= fxgCustomers.Rows()) return 0;
  const std::string text = Trim(fxgCustomers.TextMatrix(row, kColCustNo));
  if (text.empty()) return 0;
  return static_cast<int32_t>(Val(text));
}

void frmFind::LoadRelatedRows(int row) {
  if (!db_ || row < fxgCustomers.FixedRows() || row >= fxgCustomers.Rows()) return;
  // A row's relations are read the first time it opens; closing and opening it again only
  // shows them again.
  if (fxgCustomers.RowData(row).Type() == VarType::Boolean) return;
  const std::string customer_text = Trim(fxgCustomers.TextMatrix(row, kColCustNo));
  if (customer_text.empty()) return;

  host::ProcedureCall call(*db_, "KIV_SP_GetCustomerRelationships");
  if (!call.Prepared()) return;
  call.In("@customer_no", Variant(static_cast<int32_t>(Val(customer_text))))
      .In("@fiscal_year", Variant(engine_ != nullptr ? engine_->FiscalYear() : int32_t{0}));
  host::ScopedRecordset rs = call.Open();
  if (!rs) return;
  if (!rs.Eof()) related_fill_.Bind(*rs);
  int at = row + 1;
  for (; !rs.Eof(); rs->MoveNext()) {
    const int added = related_fill_.AddRow(fxgCustomers, *rs, at < fxgCustomers.Rows() ? at : -1);
    fxgCustomers.SetRowOutlineLevel(added, 1);
    at = added + 1;
  }
  fxgCustomers.SetRowData(row, Variant(true));
}

std::vector<std::string> frmFind::RelationTypesOf(int32_t customer_no) {
  std::vector<std::string> types;
  if (!db_) return types;
  const std::string n = std::to_string(customer_no);
  host::ScopedRecordset rs = host::OpenQuery(
      *db_, std::string("SELECT rel_type_id FROM kiv_customer_rel") + " WHERE child_customer_no = " + n +
                " OR parent_customer_no = " + n);
  for (; rs && !rs.Eof(); rs->MoveNext()) types.push_back(Cell(*rs, "rel_type_id"));
  return types;
}

int32_t frmFind::HouseholdParentOf(int32_t customer_no) {
  if (!db_) return 0;
  // Employment links are not households: an employee belongs to his own family, not to
  // the company that employs him.
  host::ScopedRecordset rs = host::OpenQuery(
      *db_, std::string("SELECT * FROM kiv_customer_rel") + " WHERE child_customer_no = " +
                std::to_string(customer_no) + " AND rel_type_id <> 'EMPLOYEE'");
  if (!rs || rs.Eof()) return 0;
  return NzLong(rs->FieldByName("parent_customer_no").Value());
}

}  // namespace kiv

// Access products: the product grid with its Locked boxes, the items of the selected
// product, and the lock and unlock that a refusal undoes on screen.
#include "screens/detail/access_products_page.h"

#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

constexpr int kFlexDTBoolean = 11;
constexpr const char* kDateFormat = "MM/dd/yyyy";
constexpr const char* kAmountFormat = "($#,###.00)";

std::string TrueFalse(const Variant& v) { return NzBool(v) ? "True" : "False"; }

GridFill ProductFill() {
  return GridFill({FillColumn::Of("access_no"),
                   FillColumn::Composed({"is_active"}, [](const auto& v) { return TrueFalse(v[0]); }),
                   FillColumn::Composed({"Locked"}, [](const auto& v) { return TrueFalse(v[0]); }),
                   FillColumn::Of("valid_date", kDateFormat), FillColumn::Of("expiration_date", kDateFormat),
                   FillColumn::Of("Message")});
}

GridFill ItemFill() {
  return GridFill({FillColumn::Of("salesorder_no"), FillColumn::Of("seq_no"),
                   FillColumn::Composed({"unit_id", "long_description"},
                                        [](const auto& v) { return NzString(v[0]) + " " + NzString(v[1]); }),
                   FillColumn::Composed({"is_active"}, [](const auto& v) { return TrueFalse(v[0]); }),
                   FillColumn::Of("units_sold"), FillColumn::Of("units_refunded"), FillColumn::Of("units_used"),
                   FillColumn::Of("units_available"), FillColumn::Of("sales_amount"), FillColumn::Of("refund_amount"),
                   // The value of what is left on the product.
                   FillColumn::Of("value_amount"), FillColumn::Of("trans_type_id")});
}

}  // namespace

int AccessProductsPage::TabIndex() const { return frmCustomerDetail::kTabAccessProducts; }

void AccessProductsPage::Activate(frmCustomerDetail& screen) {
  ui::Grid& products = screen.grdMaster;
  products.SetFormatString(kProductFormat);
  products.SetColDataType(kColLocked, kFlexDTBoolean);
  products.SetSelectionMode(ui::flexSelectionByRow);
  products.SetEditable(screen.CanEdit() ? ui::flexEDKbdMouse : ui::flexEDNone);
  products.SetVisible(true);
  products.on_before_edit = [](int, int col, bool& cancel) { cancel = col != kColLocked; };
  products.on_after_edit = [this, &screen](int row, int col) {
    if (col == kColLocked) screen.Guard("grdMaster_AfterEdit", [&] { LockedEdited(screen, row); });
  };
  products.on_row_col_change = [this, &screen] { screen.Guard("grdMaster_RowColChange", [&] { RowChanged(screen); }); };
  ui::Grid& items = screen.grdDetail;
  items.SetFormatString(kItemFormat);
  for (int col : {kColSaleAmt, kColRefAmt, kColValue}) items.SetColFormat(col, kAmountFormat);
  items.SetSelectionMode(ui::flexSelectionByRow);
  items.SetEditable(ui::flexEDNone);
  items.SetVisible(true);
  Render(screen);
}

void AccessProductsPage::Load(frmCustomerDetail& screen) {
  rows_.clear();
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (screen.CustomerNo() != 0 && db) {
    host::ProcedureCall call(*db, "KIV_SP_CUSTOMER_GetAccessTrxByCustomerNo");
    call.In("@customer_no", Variant(screen.CustomerNo())).In("@trans_type_id", Variant("CONTROL"));
    host::ScopedRecordset rs = call.Open();
    if (rs && rs->IsOpen()) {
      GridFill fill = ProductFill();
      fill.Bind(*rs);
      for (; !rs.Eof(); rs->MoveNext()) rows_.push_back(fill.RowText(*rs));
    }
  }
  if (screen.tabCustomer.SelectedIndex() == TabIndex()) Render(screen);
}

void AccessProductsPage::Render(frmCustomerDetail& screen) {
  ui::Grid& products = screen.grdMaster;
  products.SetRows(products.FixedRows());
  screen.grdDetail.SetRows(screen.grdDetail.FixedRows());
  for (const std::string& text : rows_) {
    products.AddItem(text);
    const int row = products.Rows() - 1;
    const bool locked = products.TextMatrix(row, kColLocked) == "True";
    products.SetTextMatrix(row, kColLocked, "");
    products.SetCellChecked(row, kColLocked, locked ? ui::flexChecked : ui::flexUnchecked);
  }
  if (products.Rows() <= products.FixedRows()) return;
  // The first product's items show whether or not the current row moved.
  auto on_row_col_change = std::move(products.on_row_col_change);
  products.on_row_col_change = nullptr;
  products.SetRow(products.FixedRows());
  products.on_row_col_change = std::move(on_row_col_change);
  RowChanged(screen);
}

void AccessProductsPage::RowChanged(frmCustomerDetail& screen) {
  ui::Grid& products = screen.grdMaster;
  ui::Grid& items = screen.grdDetail;
  items.SetRows(items.FixedRows());
  const int row = products.Row();
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (row < products.FixedRows() || row >= products.Rows() || !db) return;
  host::ProcedureCall call(*db, "KIV_SP_CUSTOMER_GetAccessItem");
  call.In("@access_no", Variant(NzLong(Variant(products.TextMatrix(row, kColAccessNo)))));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  ItemFill().AddRows(items, *rs);
}

void AccessProductsPage::LockedEdited(frmCustomerDetail& screen, int row) {
  ui::Grid& products = screen.grdMaster;
  const int32_t access_no = NzLong(Variant(products.TextMatrix(row, kColAccessNo)));
  const bool lock = products.CellChecked(row, kColLocked) == ui::flexChecked;
  const bool done = lock ? UpdateAccessTrx(screen, access_no, "L", kLockMessage)
                         : UpdateAccessTrx(screen, access_no, "U", "");
  if (!done) {
    // The server kept the product as it was: so does the box.
    products.SetCellChecked(row, kColLocked, lock ? ui::flexUnchecked : ui::flexChecked);
    return;
  }
  products.SetTextMatrix(row, kColMessage, lock ? kLockMessage : "");
  const size_t i = static_cast<size_t>(row - products.FixedRows());
  if (i >= rows_.size()) return;
  std::string text;
  for (int col = 0; col < products.Cols(); ++col) {
    if (col > 0) text += "\t";
    text += col == kColLocked ? (lock ? "True" : "False") : products.TextMatrix(row, col);
  }
  rows_[i] = text;
}

bool AccessProductsPage::UpdateAccessTrx(frmCustomerDetail& screen, int32_t access_no,
                                         const std::string& update_action, const std::string& message) {
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (!db) return false;
  host::ProcedureCall call(*db, "KIV_SP_REGISTER_UpdateAccessTrx");
  call.In("@access_no", Variant(access_no))
      .In("@trans_type_id", Variant("CONTROL"))
      .In("@kiv_user", Variant(db->UserID()))
      .In("@computer", Variant(db->ComputerName()))
      .In("@module", Variant("CUSTOMER"))
      .In("@update_action", Variant(update_action))
      .In("@message", Variant(message));
  if (update_action.find('L') != std::string::npos) call.In("@locked", Variant(true));
  if (update_action.find('U') != std::string::npos) call.In("@locked", Variant(false));
  if (!call.Execute()) return false;
  if (call.ReturnValue(-1) != 0) {
    screen.ui().MsgBox(call.OutputText("@error_msg"), ui::vbInformation, "Error Updating Access Trx Data");
    return false;
  }
  return true;
}

}  // namespace kiv

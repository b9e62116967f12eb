// Open sales orders: lines and comments as read once per filling, the one-order selection
// rule, and invoicing through the host.
#include "screens/detail/sales_page.h"

#include "core/text.h"
#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"
#include "ui/wait_cursor.h"

namespace kiv {

namespace {

GridFill LineFill() {
  return GridFill({FillColumn::Of("salesorder_date"), FillColumn::Of("salesorder_no"), FillColumn::Of("so_line_no"),
                   FillColumn::Of("for_full_name"), FillColumn::Of("line_full_name"), FillColumn::Of("quantity"),
                   FillColumn::Of("item_description"), FillColumn::Of("linenet")});
}

GridFill CommentFill() {
  return GridFill({FillColumn::Of("salesorder_date", "mm/dd/yy"), FillColumn::Of("salesorder_no"),
                   FillColumn::Of("comment_note")});
}

std::vector<std::string> ReadRows(host::ProcedureCall& call, GridFill fill) {
  std::vector<std::string> rows;
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen() || rs.Eof()) return rows;
  fill.Bind(*rs);
  for (; !rs.Eof(); rs->MoveNext()) rows.push_back(fill.RowText(*rs));
  return rows;
}

}  // namespace

int SalesPage::TabIndex() const { return frmCustomerDetail::kTabSalesHistory; }

void SalesPage::Reset() {
  lines_.clear();
  comments_.clear();
}

void SalesPage::Activate(frmCustomerDetail& screen) {
  screen.ShowPageButtons({"&Invoice"});
  ui::Grid& lines = screen.grdMaster;
  lines.SetVisible(true);
  lines.SetSelectionMode(ui::flexSelectionListBox);
  lines.SetEditable(ui::flexEDNone);
  lines.on_sel_change = [this, &screen] { screen.Guard("grdMaster_SelChange", [&] { SelectionChanged(screen); }); };
  screen.grdDetail.SetVisible(true);
  screen.grdDetail.SetEditable(ui::flexEDNone);
  Render(screen);
}

void SalesPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& lines = screen.grdMaster;
  lines.SetFormatString(kLinesFormat);
  lines.SetRows(lines.FixedRows());
  lines.SetColFormat(kColTotal, kTotalFormat);
  for (const std::string& row : lines_) lines.AddItem(row);
  ui::Grid& comments = screen.grdDetail;
  comments.SetFormatString(kCommentsFormat);
  comments.SetRows(comments.FixedRows());
  for (const std::string& row : comments_) comments.AddItem(row);
}

void SalesPage::Load(frmCustomerDetail& screen) {
  Reset();
  if (screen.CustomerNo() != 0 && screen.DBConnection()) {
    screen.Guard("LoadSalesOrders", [&] {
      host::DBConnection& db = *screen.DBConnection();
      host::ProcedureCall lines(db, "KiV_SP_GetSalesOrderLine");
      lines.In("@customer_no", Variant(screen.CustomerNo())).In("@open", Variant(true));
      lines_ = ReadRows(lines, LineFill());
      host::ProcedureCall comments(db, "KiV_SP_CUSTOMER_SALES_ORDER_COMMENT_get");
      comments.In("@customer_no", Variant(screen.CustomerNo()));
      comments_ = ReadRows(comments, CommentFill());
    });
  }
  if (screen.tabCustomer.SelectedIndex() == TabIndex()) Render(screen);
}

void SalesPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (which == 1) InvoiceSelected(screen);
}

void SalesPage::SelectionChanged(frmCustomerDetail& screen) {
  if (trimming_selection_) return;
  ui::Grid& grid = screen.grdMaster;
  const std::vector<int> selected = grid.SelectedRowList();
  if (selected.size() < 2) return;
  const std::string order = grid.TextMatrix(selected.front(), kColOrder);
  bool mixed = false;
  for (int row : selected) mixed = mixed || grid.TextMatrix(row, kColOrder) != order;
  if (!mixed) return;
  screen.ui().MsgBox("Only lines from the same Sales Order can be selected.", ui::vbInformation,
                     "Select Sales Order Lines");
  // What stays selected is the lines of the first selected line's order.
  trimming_selection_ = true;
  for (int row : selected)
    if (grid.TextMatrix(row, kColOrder) != order) grid.SetIsSelected(row, false);
  trimming_selection_ = false;
}

void SalesPage::InvoiceSelected(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdMaster;
  const std::vector<int> selected = grid.SelectedRowList();
  if (selected.empty() || selected.front() < grid.FixedRows()) return;
  std::shared_ptr<host::AppServer> app_server = screen.AppServer();
  std::shared_ptr<host::InvoicingService> invoicing = app_server ? app_server->GetInvoicingService() : nullptr;
  if (!invoicing) return;
  const int32_t order = NzLong(Variant(grid.TextMatrix(selected.front(), kColOrder)));
  std::vector<int32_t> line_nos;
  for (int row : selected) {
    // The selection rule keeps one order; a line of another never reaches the invoicing.
    if (grid.TextMatrix(row, kColOrder) != grid.TextMatrix(selected.front(), kColOrder)) continue;
    line_nos.push_back(NzLong(Variant(grid.TextMatrix(row, kColLine))));
  }
  invoicing->Setup(order, line_nos);
  if (!invoicing->InvoiceAndPay(screen.CustomerNo(), order)) return;
  screen.ui().MsgBox("Sales Order Lines were Invoiced.", ui::vbInformation, "Invoice Results");
  Load(screen);
}

}  // namespace kiv

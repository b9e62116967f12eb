// The history log: read record by record from the procedure's rows straight into the grid,
// so a long history is held once (by the recordset) and shown only as far as the clerk asks.
#include "screens/detail/history_log_page.h"

#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

GridFill HistoryFill() {
  return GridFill({FillColumn::Of("log_datetime", "MM/dd/yyyy hh:mm AMPM"), FillColumn::Of("access_no"),
                   FillColumn::Of("control_id"), FillColumn::Of("trans_type_id"), FillColumn::Of("status_id"),
                   FillColumn::Of("Units"), FillColumn::Of("post_amount", "($#,###.00)"),
                   FillColumn::Composed({"response_type", "response_text"}, [](const std::vector<Variant>& v) {
                     return NzString(v[0]) + ":" + NzString(v[1]);
                   })});
}

}  // namespace

HistoryLogPage::HistoryLogPage(frmCustomerDetail& screen)
    : ckbShowHistoryLog(screen.Add<ui::CheckBox>("ckbShowHistoryLog", "Show History Log")) {
  ckbShowHistoryLog.SetVisible(false);
  ckbShowHistoryLog.on_click = [this, &screen] {
    if (screen.tabCustomer.SelectedIndex() != TabIndex()) return;
    screen.Guard("ckbShowHistoryLog_Click", [&] { Load(screen); });
  };
}

int HistoryLogPage::TabIndex() const { return frmCustomerDetail::kTabHistoryLog; }

std::string HistoryLogPage::FirstQuestion(int count) {
  return std::to_string(count) + " History Records found.\r\nOK - load the first 100 records\r\nCancel";
}

std::string HistoryLogPage::NextQuestion(int left) {
  return std::to_string(left) + " History Records left.\r\nOK - load the next 100 or fewer records\r\nCancel";
}

void HistoryLogPage::Activate(frmCustomerDetail& screen) {
  ckbShowHistoryLog.SetVisible(true);
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kHistoryFormat);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(ui::flexEDNone);
  grid.SetVisible(true);
}

void HistoryLogPage::Deactivate(frmCustomerDetail&) { ckbShowHistoryLog.SetVisible(false); }

void HistoryLogPage::Load(frmCustomerDetail& screen) {
  if (screen.tabCustomer.SelectedIndex() != TabIndex()) return;
  ui::Grid& grid = screen.grdMaster;
  grid.SetRows(grid.FixedRows());
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (ckbShowHistoryLog.Value() != ui::vbChecked || screen.CustomerNo() == 0 || !db) return;
  host::ProcedureCall call(*db, "KIV_SP_CUSTOMER_GetHistory");
  call.In("@customer_no", Variant(screen.CustomerNo()));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  int count = rs->RecordCount();
  if (count < 0) {
    // A server cursor that cannot count: the records are counted in passing and read again,
    // so no more than one copy of a long history is ever held.
    count = 0;
    for (; !rs.Eof(); rs->MoveNext()) ++count;
    rs.Close();
    rs = call.Open();
    if (!rs || !rs->IsOpen()) return;
  }
  constexpr int kQuestion = ui::vbOKCancel | ui::vbQuestion | ui::vbDefaultButton2;
  if (count > kPageSize && screen.ui().MsgBox(FirstQuestion(count), kQuestion, kOverLimitTitle) != ui::vbOK) return;
  GridFill fill = HistoryFill();
  fill.Bind(*rs);
  int read = 0;
  while (!rs.Eof()) {
    fill.AddRow(grid, *rs);
    ++read;
    rs->MoveNext();
    // The header row counts: the first pause comes after 99 records.
    if (grid.Rows() % kPageSize != 0 || rs.Eof()) continue;
    if (screen.ui().MsgBox(NextQuestion(count - read), kQuestion, kOverLimitTitle) != ui::vbOK) break;
  }
}

}  // namespace kiv

// Will calls: the list and its printing through the register and the host's will-call screen.
#include "screens/detail/will_calls_page.h"

#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

GridFill WillCallFill() {
  return GridFill({FillColumn::Of("will_call_no"), FillColumn::Of("access_no"), FillColumn::Of("long_description"),
                   FillColumn::Of("full_name"), FillColumn::Of("so_for_full_name"), FillColumn::Of("so_full_name"),
                   FillColumn::Of("valid_date", "MM/dd/yyyy"), FillColumn::Of("status_id"),
                   FillColumn::Of("dtm_printed"), FillColumn::Of("kiv_user_printed")});
}

}  // namespace

int WillCallsPage::TabIndex() const { return frmCustomerDetail::kTabWillCalls; }

void WillCallsPage::Activate(frmCustomerDetail& screen) {
  screen.ShowPageButtons({"Print"}, !screen.DisableWillcall());
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kWillCallFormat);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(ui::flexEDNone);
  grid.SetVisible(true);
  Render(screen);
}

void WillCallsPage::Load(frmCustomerDetail& screen) {
  rows_.clear();
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (screen.CustomerNo() != 0 && db) {
    host::ProcedureCall call(*db, "KIV_SP_GetCustomerWillCalls");
    call.In("@customer_no", Variant(screen.CustomerNo()));
    host::ScopedRecordset rs = call.Open();
    if (rs && rs->IsOpen()) {
      GridFill fill = WillCallFill();
      fill.Bind(*rs);
      for (; !rs.Eof(); rs->MoveNext()) rows_.push_back(fill.RowText(*rs));
    }
  }
  if (screen.tabCustomer.SelectedIndex() == TabIndex()) Render(screen);
}

void WillCallsPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdMaster;
  grid.SetRows(grid.FixedRows());
  for (const std::string& text : rows_) grid.AddItem(text);
  if (grid.Rows() > grid.FixedRows()) grid.SetRow(grid.FixedRows());
}

void WillCallsPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (which == 1) Print(screen);
}

void WillCallsPage::Print(frmCustomerDetail& screen) {
  std::shared_ptr<host::AppServer> app_server = screen.AppServer();
  std::shared_ptr<host::RegisterService> register_object = app_server ? app_server->GetRegister() : nullptr;
  if (!register_object) {
    screen.ui().MsgBox("Can not print will call without a register object.", ui::vbInformation,
                       "Register Module Required to Print WillCall");
    return;
  }
  if (!register_object->Installed() || !register_object->CashedIn()) {
    screen.ui().MsgBox("Register must be installed and cashed in to print will call from customer.", ui::vbInformation,
                       "Register Required to Print WillCall");
    return;
  }
  const int32_t control_no = register_object->CurrentControlNo();
  const std::string register_id = register_object->RegisterId();
  // A new photograph is printed on the ticket from the database: it must be there first.
  if (!screen.PhotoWorkFile().empty()) {
    screen.ui().MsgBox("New photographs must be saved before printing will call.\r\nPlease select save and then "
                       "continue to print will call.",
                       ui::vbCritical, "Will Call Print Canceled");
    return;
  }
  if (!will_call_) will_call_ = app_server->CreateWillCall();
  if (!will_call_) return;
  will_call_->SetAppServer(app_server);
  ui::Grid& grid = screen.grdMaster;
  const int row = grid.Row();
  int32_t will_call_no = 0, access_no = 0;
  if (row >= grid.FixedRows() && row < grid.Rows()) {
    will_call_no = NzLong(Variant(grid.TextMatrix(row, kColWillCallNo)));
    access_no = NzLong(Variant(grid.TextMatrix(row, kColAccessNo)));
  }
  will_call_->ShowWillCallScreen(screen.CustomerNo(), register_id, control_no, will_call_no, access_no);
  Load(screen);
}

}  // namespace kiv

// The rental contracts page: KIV_SP_CUSTOMER_GetRental into grdMaster, and the contract of
// the selected row reprinted as the CUST_RENT report.
#include "screens/detail/rental_page.h"

#include "core/text.h"
#include "core/variant.h"
#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

constexpr const char* kStamp = "MM/dd/yyyy hh:nn AMPM";
constexpr const char* kDay = "MM/dd/yyyy";

GridFill ContractFill() {
  return GridFill({FillColumn::Of("contract_no"), FillColumn::Of("dtm_equip_out", kStamp),
                   FillColumn::Of("description"), FillColumn::Of("status_id"), FillColumn::Of("rent_start", kDay),
                   FillColumn::Of("rent_end", kDay), FillColumn::Of("days"), FillColumn::Of("amount", "Currency"),
                   FillColumn::Of("daily_rate", "Currency"), FillColumn::Of("dtm_return", kStamp),
                   FillColumn::Of("location_id"), FillColumn::Of("return_location_id"), FillColumn::Of("serial_no"),
                   FillColumn::Of("voucher_no"), FillColumn::Of("din_setting"), FillColumn::Of("binding")});
}

}  // namespace

std::unique_ptr<RentalPage> RentalPage::Attached(frmCustomerDetail& screen) {
  auto page = std::make_unique<RentalPage>();
  RentalPage* self = page.get();
  screen.rental_contract_report = [self](frmCustomerDetail& editor) { self->ReprintContract(editor); };
  return page;
}

void RentalPage::Activate(frmCustomerDetail& screen) {
  screen.ShowPageButtons({"Reprint Rental Contract..."});
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kGridFormat);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(ui::flexEDNone);
  grid.SetVisible(true);
  Render(screen);
}

void RentalPage::Load(frmCustomerDetail& screen) {
  Reset();
  const int32_t customer_no = screen.CustomerNo();
  if (customer_no != 0 && screen.DBConnection()) {
    screen.Guard("FillRentalGrid", [&] {
      host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetRental");
      call.In("@customer_no", Variant(customer_no));
      host::ScopedRecordset rs = call.Open();
      if (!rs) return;
      GridFill fill = ContractFill();
      fill.Bind(*rs);
      for (; !rs.Eof(); rs->MoveNext()) rows_.push_back(fill.RowText(*rs));
    });
  }
  if (screen.tabCustomer.SelectedIndex() == TabIndex()) Render(screen);
}

void RentalPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdMaster;
  grid.SetRows(grid.FixedRows());
  for (const std::string& row : rows_) grid.AddItem(row);
}

void RentalPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (which == 1) ReprintContract(screen);
}

std::string RentalPage::ReportParameterText(int32_t contract_no, int32_t customer_no) {
  return Replace(Replace(kReportParameters, "{{contract_no}}", std::to_string(contract_no)), "{{customer_no}}",
                 std::to_string(customer_no));
}

std::string RentalPage::ReportSelection(int32_t contract_no) {
  return "{kiv_rental_contract.contract_no} = " + std::to_string(contract_no);
}

void RentalPage::ReprintContract(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdMaster;
  const int row = grid.Row();
  const bool on_page = screen.tabCustomer.SelectedIndex() == TabIndex();
  const int32_t contract_no =
      on_page && row >= grid.FixedRows() && row < grid.Rows() ? NzLong(Variant(grid.TextMatrix(row, kColContractNo))) : 0;
  if (contract_no == 0) {
    screen.ui().MsgBox("Please select a rental contract row first", ui::vbInformation, "Select Rental Contract");
    return;
  }
  screen.Guard("mnuReportRentalContract_Click", [&] {
    std::shared_ptr<host::ReportService> reports = screen.AppServer() ? screen.AppServer()->GetReportService() : nullptr;
    host::ClientReport report;
    if (!reports || !reports->GetClientMapReport(kReportKey, report)) {
      screen.ui().MsgBox("You must define the customer rental contract report, CUST_RENT, in Report Maintenance",
                         ui::vbInformation, "Reprint Rental Contract");
      return;
    }
    host::ReportParameters parameters =
        reports->CreateReportParamFromString(ReportParameterText(contract_no, screen.CustomerNo()));
    parameters.record_selection = ReportSelection(contract_no);
    reports->PrintReport(report, parameters);
  });
}

}  // namespace kiv

// The invoice history in grdMaster: read once per filling, shown again on every visit.
#include "screens/detail/invoice_history_page.h"

#include "screens/detail/frm_customer_detail.h"

namespace kiv {

InvoiceHistoryPage::InvoiceHistoryPage(frmCustomerDetail& screen) {
  if (screen.tabCustomer.Count() >= kTab) screen.tabCustomer.SetTabCaption(kTab, kTabCaption);
}

void InvoiceHistoryPage::Activate(frmCustomerDetail& screen) {
  screen.grdMaster.SetVisible(true);
  InvoiceHistory::Show(screen.grdMaster, rows_);
}

void InvoiceHistoryPage::Load(frmCustomerDetail& screen) {
  rows_.clear();
  if (screen.CustomerNo() != 0 && screen.DBConnection())
    screen.Guard("LoadInvoiceHistory", [&] { rows_ = InvoiceHistory::Read(*screen.DBConnection(), screen.CustomerNo()); });
  if (screen.tabCustomer.SelectedIndex() == kTab) InvoiceHistory::Show(screen.grdMaster, rows_);
}

}  // namespace kiv

// The pages every detail editor gets. The general page is the editor itself; each other
// page is one DetailPage class registered here, after the editor's own controls exist.
#include "screens/detail/detail_page.h"
#include "screens/detail/employer_page.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/detail/household_page.h"
#include "screens/detail/account_page.h"
#include "screens/detail/invoice_history_page.h"
#include "screens/detail/sales_page.h"

namespace kiv {

void AddDetailPages(frmCustomerDetail& screen) {
  // Relationships and employer share tab 2 and reload in this order on Refresh; custom
  // fields and group memberships share tab 7.
  screen.RegisterPage(std::make_unique<HouseholdPage>());
  screen.RegisterPage(std::make_unique<EmployerPage>());
  screen.RegisterPage(std::make_unique<SalesPage>());
  screen.RegisterPage(std::make_unique<AccountPage>(screen));
  screen.RegisterPage(std::make_unique<InvoiceHistoryPage>(screen));
}

}  // namespace kiv

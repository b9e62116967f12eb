// The pages every detail editor gets. The general page is the editor itself; each other
// page is one DetailPage class registered here, after the editor's own controls exist.
#include "screens/detail/custom_fields_page.h"
#include "screens/detail/detail_page.h"
#include "screens/detail/access_products_page.h"
#include "screens/detail/employer_page.h"
#include "screens/detail/forecast_page.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/detail/group_membership_page.h"
#include "screens/detail/household_page.h"
#include "screens/detail/rental_page.h"
#include "screens/detail/history_log_page.h"
#include "screens/detail/household_page.h"
#include "screens/detail/reservations_page.h"
#include "screens/detail/will_calls_page.h"
#include "screens/detail/account_page.h"
#include "screens/detail/invoice_history_page.h"
#include "screens/detail/sales_page.h"

namespace kiv {

void AddDetailPages(frmCustomerDetail& screen) {
  // Relationships and employer share tab 2 and reload in this order on Refresh; custom
  // fields and group memberships share tab 7.
  screen.RegisterPage(std::make_unique<HouseholdPage>());
  screen.RegisterPage(std::make_unique<EmployerPage>());
  screen.RegisterPage(std::make_unique<CustomFieldsPage>());
  screen.RegisterPage(std::make_unique<GroupMembershipPage>());
  screen.RegisterPage(ForecastPage::Attached(screen));
  screen.RegisterPage(RentalPage::Attached(screen));
  screen.RegisterPage(std::make_unique<AccessProductsPage>());
  screen.RegisterPage(std::make_unique<HistoryLogPage>(screen));
  screen.RegisterPage(std::make_unique<WillCallsPage>());
  screen.RegisterPage(std::make_unique<ReservationsPage>(screen));
  screen.RegisterPage(std::make_unique<SalesPage>());
  screen.RegisterPage(std::make_unique<AccountPage>(screen));
  screen.RegisterPage(std::make_unique<InvoiceHistoryPage>(screen));
}

}  // namespace kiv

// The small screens other screens open: the duplicate merge, the house account, the alerts
// and the about box, each shown modally over its opener with the opener's host objects.
#include <memory>

#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/about/frm_about.h"
#include "screens/account/frm_account_info.h"
#include "screens/alerts/frm_alerts.h"
#include "screens/component_screens.h"
#include "screens/dedup/frm_de_dup.h"

namespace kiv {

namespace {

void HandOver(Screen& owner, Screen& screen) {
  screen.SetUi(owner.UiService());
  screen.SetDBConnection(owner.DBConnection());
  screen.SetErrorObject(owner.ErrorObject());
  screen.SetAppServer(owner.AppServer());
  screen.SetCustomerEngine(owner.CustomerEngine());
}

//! Shows `screen` modally over `owner` (after `prepare`), unloads it, and returns `outcome`
//! read while it was still loaded; a failure anywhere ends quietly with what was read.
template <class T, class Prepare, class Outcome>
auto ShowOver(Screen& owner, Prepare prepare, Outcome outcome) {
  auto screen = std::make_shared<T>();
  decltype(outcome(*screen)) result{};
  try {
    HandOver(owner, *screen);
    prepare(*screen);
    screen->Show(ui::vbModal, &owner);
    result = outcome(*screen);
  } catch (...) {
    result = outcome(*screen);
  }
  try {
    screen->Unload();
  } catch (...) {
  }
  return result;
}

}  // namespace

bool ComponentScreens::ShowDeDup(Screen& owner) {
  const bool merged = ShowOver<frmDeDup>(
      owner, [](frmDeDup& s) { s.Load(); }, [](frmDeDup& s) { return s.Merged(); });
  // The survivor, its household and everyone linked to the merged customer changed under
  // any record the engine keeps: a stale survivor saved later would undo the merge.
  if (merged && owner.CustomerEngine() != nullptr) owner.CustomerEngine()->ForgetCachedCustomers();
  return merged;
}

bool ComponentScreens::ShowAccountInfo(Screen& owner, const std::shared_ptr<CCustomer>& customer) {
  if (!customer) return false;
  return ShowOver<frmAccountInfo>(
      owner,
      [&customer](frmAccountInfo& s) {
        s.SetCustomer(customer);
        s.SetAccountID(customer->AccountNo());
        s.Load();
      },
      [](frmAccountInfo& s) { return s.Saved(); });
}

bool ComponentScreens::ShowAlerts(Screen& owner, const std::shared_ptr<CCustomer>& customer) {
  if (!customer || customer->CustomerNo() == 0) return false;
  return ShowOver<frmAlerts>(
      owner,
      [&customer](frmAlerts& s) {
        s.SetCustomer(customer);
        s.Load();
        // A company has no child to contact; its rental ranges and notes stay editable.
        s.AllowChildContact(s.LoadAlerts());
      },
      [](frmAlerts& s) { return !s.Canceled(); });
}

void ComponentScreens::ShowAbout(Screen& owner) {
  ShowOver<frmAbout>(
      owner, [](frmAbout& s) { s.Load(); }, [](frmAbout&) { return true; });
}

}  // namespace kiv

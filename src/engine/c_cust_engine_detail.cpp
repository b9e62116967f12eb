// The engine's detail entry: shows one customer in the detail editor, from the caller's
// record, the cache or the database, and keeps the household's cached members on the
// same addresses once the clerk has saved.
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

std::shared_ptr<CCustomer> CCustEngine::ShowCustomer(ShowCustomerArgs& args) {
  try {
    if (!args.oCustomer && use_collection_) args.oCustomer = LookUpCache(args.lCustomerNo);
    if (!args.oCustomer) args.oCustomer = OpenFromDatabase(args.lCustomerNo, args.oDB, args.oError, args.bError);
    if (!args.oCustomer) return nullptr;
    // bShowInDetail is part of the host's call and changes nothing.
    ShowDetailScreen(args.oCustomer, args.oParentForm, args.bDisableWillcall);
  } catch (...) {
    // Quietly ended: the caller still gets the customer.
  }
  return args.oCustomer;
}

bool CCustEngine::ShowDetailScreen(const std::shared_ptr<CCustomer>& customer, ui::Form* owner,
                                   bool bDisableWillcall) {
  bool cancelled = true;
  auto screen = std::make_shared<frmCustomerDetail>();
  try {
    screen->SetUi(ui_);
    screen->Load();
    screen->SetHideForecasts(!allow_cust_show_forecast_);
    screen->SetAppServer(app_server_);
    screen->SetErrorObject(error_object_);
    screen->SetDBConnection(db_connection_);
    screen->SetCustomerEngine(this);
    // A record the host built itself has no connection yet; it saves through the screen's.
    if (!customer->DB()) customer->SetDB(db_connection_);
    if (!customer->ErrorObject()) customer->SetErrorObject(error_object_);
    screen->SetCustomer(customer);
    screen->SetDisableWillcall(bDisableWillcall);
    screen->FillScreen(customer->CustomerNo());
    screen->Show(ui::vbModal, owner);
    cancelled = screen->Cancelled();
    if (!cancelled) UpdateAddressThroughCollection(customer);
  } catch (...) {
  }
  try {
    screen->SetCustomer(nullptr);
    screen->Unload();
  } catch (...) {
  }
  return cancelled;
}

}  // namespace kiv

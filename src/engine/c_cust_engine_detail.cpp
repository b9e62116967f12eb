// The engine's detail entry: shows one customer in the detail editor, from the caller's
// record, the cache or the database, and keeps the household's cached members on the
// same addresses once the clerk has saved.
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"

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
  if (!launcher_ || !customer) return true;
  bool cancelled = true;
  try {
    // A record the host built itself has no connection yet; it saves through the screen's.
    if (!customer->DB()) customer->SetDB(db_connection_);
    if (!customer->ErrorObject()) customer->SetErrorObject(error_object_);
    cancelled = launcher_->ShowDetail(*this, customer, owner, bDisableWillcall);
    if (!cancelled) UpdateAddressThroughCollection(customer);
  } catch (...) {
  }
  return cancelled;
}

}  // namespace kiv

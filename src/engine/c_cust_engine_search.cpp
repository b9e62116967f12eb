// The engine's two search entries: picking a customer for the caller with the search
// screen, and browsing customers without returning one. The shared screen stays loaded
// between picks so the clerk finds his last criteria again.
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"

namespace kiv {

std::shared_ptr<CCustomer> CCustEngine::SelectCustomer(SelectCustomerArgs& args) {
  args.bError = true;
  std::shared_ptr<CCustomer> result;
  try {
    ExchangeHostObjects(args.oDB, args.oError);
    if (!launcher_) return result;
    SearchRequest request;
    request.select_mode = true;
    request.spawn_new = args.bSpawnNew;
    request.auto_return_on_ok = args.bAutoReturnOnOk;
    request.default_tab = args.sDefaultTab;
    request.group_id = args.sGroupId;
    // ParentForm is deliberately not the owner: the picker always opens on its own.
    const SearchOutcome outcome = launcher_->ShowSearch(*this, request);
    if (outcome.cancelled) return result;
    result = outcome.selected;
    if (result) {
      if (use_collection_) {
        AddToCache(result);
        UpdateAddressThroughCollection(result);
      }
      args.bError = false;
    } else {
      result = std::make_shared<CCustomer>();
      result->SetUi(ui_);
    }
    result->SetFiscalYear(FiscalYear());
  } catch (...) {
    // Quietly ended: what the caller sees is the result so far and bError.
  }
  return result;
}

std::shared_ptr<CCustomer> CCustEngine::SelectCustomer() {
  SelectCustomerArgs args;
  return SelectCustomer(args);
}

std::shared_ptr<CCustomer> CCustEngine::ShowSearchCustomer(ShowSearchCustomerArgs& args) {
  try {
    ExchangeHostObjects(args.oDB, args.oError);
    if (!launcher_) return nullptr;
    SearchRequest request;
    request.owner = args.ParentForm;
    request.unload_after = true;
    launcher_->ShowSearch(*this, request);
  } catch (...) {
  }
  // Browsing only: a customer the clerk chose is never handed back from here.
  return nullptr;
}

std::shared_ptr<CCustomer> CCustEngine::ShowSearchCustomer() {
  ShowSearchCustomerArgs args;
  return ShowSearchCustomer(args);
}

}  // namespace kiv

// The engine's two search entries: picking a customer for the caller with the search
// screen, and browsing customers without returning one. The shared screen stays loaded
// between picks so the clerk finds his last criteria again.
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/search/frm_find.h"

namespace kiv {

namespace {

//! A search screen with the screens of the other parts of the component on its hooks.
std::shared_ptr<frmFind> NewSearchScreen() {
  auto screen = std::make_shared<frmFind>();
  // Add and Properties open the detail editor over the screen.
  screen->open_detail = [](frmFind& owner, const std::shared_ptr<CCustomer>& customer) {
    DetailOutcome outcome;
    if (CCustEngine* engine = owner.CustomerEngine())
      outcome.UserCanceled = engine->ShowDetailScreen(customer, &owner, false);
    return outcome;
  };
  return screen;
}

}  // namespace

std::shared_ptr<CCustomer> CCustEngine::SelectCustomer(SelectCustomerArgs& args) {
  args.bError = true;
  std::shared_ptr<CCustomer> result;
  std::shared_ptr<frmFind> screen;
  try {
    if (args.bSpawnNew) {
      screen = NewSearchScreen();
    } else {
      if (!search_screen_) search_screen_ = NewSearchScreen();
      screen = search_screen_;
    }
    ExchangeHostObjects(args.oDB, args.oError);
    // Handed over before the load, so the load finds the user's settings through the engine.
    screen->SetUi(ui_);
    screen->SetErrorObject(args.oError);
    screen->SetDBConnection(args.oDB);
    screen->SetCustomerEngine(this);
    screen->SetAutoReturnOnOk(args.bAutoReturnOnOk);
    screen->SetDefaultTab(args.sDefaultTab);
    screen->SetSelectMode(true, args.sGroupId);
    screen->Load();
    // ParentForm is deliberately not the owner: the picker always opens on its own.
    screen->Show(ui::vbModal, nullptr);

    if (!screen->Cancelled()) {
      result = screen->SelectedCustomer();
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
    }
  } catch (...) {
    // Quietly ended: what the caller sees is the result so far and bError.
  }
  if (args.bSpawnNew && screen) {
    try {
      screen->Unload();
    } catch (...) {
    }
  }
  return result;
}

std::shared_ptr<CCustomer> CCustEngine::SelectCustomer() {
  SelectCustomerArgs args;
  return SelectCustomer(args);
}

std::shared_ptr<CCustomer> CCustEngine::ShowSearchCustomer(ShowSearchCustomerArgs& args) {
  try {
    if (!search_screen_) search_screen_ = NewSearchScreen();
    std::shared_ptr<frmFind> screen = search_screen_;
    ExchangeHostObjects(args.oDB, args.oError);
    screen->SetUi(ui_);
    screen->SetErrorObject(args.oError);
    screen->SetDBConnection(args.oDB);
    screen->SetCustomerEngine(this);
    screen->SetAutoReturnOnOk(false);
    screen->SetDefaultTab("");
    screen->SetSelectMode(false, "");
    screen->Load();
    screen->Show(ui::vbModal, args.ParentForm);
    screen->Unload();
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

// Building and wiring the screens the engine shows.
#include "screens/component_screens.h"

#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/detail/photo_export.h"
#include "screens/related/frm_related_customer.h"
#include "screens/search/frm_find.h"

namespace kiv {

ComponentScreens::ComponentScreens() = default;

ComponentScreens::~ComponentScreens() { CloseScreens(); }

std::shared_ptr<frmFind> ComponentScreens::NewSearchScreen() {
  auto screen = std::make_shared<frmFind>();
  // Add and Properties open the detail editor over the screen.
  screen->open_detail = [](frmFind& owner, const std::shared_ptr<CCustomer>& customer) {
    DetailOutcome outcome;
    if (CCustEngine* engine = owner.CustomerEngine())
      outcome.UserCanceled = engine->ShowDetailScreen(customer, &owner, false);
    return outcome;
  };
  screen->open_related_customer = [](frmFind& owner, const std::shared_ptr<CCustomer>& parent) {
    return ShowRelatedCustomer(owner, parent);
  };
  screen->open_dedup = [](frmFind& owner) { ShowDeDup(owner); };
  screen->open_account_info = [](frmFind& owner, const std::shared_ptr<CCustomer>& customer) {
    ShowAccountInfo(owner, customer);
  };
  screen->open_about = [](frmFind& owner) { ShowAbout(owner); };
  return screen;
}

SearchOutcome ComponentScreens::ShowSearch(CCustEngine& engine, const SearchRequest& request) {
  SearchOutcome outcome;
  std::shared_ptr<frmFind> screen;
  try {
    // A pick asked for from a screen the shared search screen opened (the editor's Add
    // Existing Customer, Add Employer) finds it still showing: a screen already on the modal
    // stack is never shown twice, so such a pick gets a screen of its own.
    const bool shared_showing = search_screen_ && search_screen_->Visible();
    if (request.spawn_new || shared_showing) {
      screen = NewSearchScreen();
    } else {
      if (!search_screen_) search_screen_ = NewSearchScreen();
      screen = search_screen_;
    }
    // Handed over before the load, so the load finds the user's settings through the engine.
    screen->TakeHostObjects(engine);
    screen->SetAutoReturnOnOk(request.auto_return_on_ok);
    screen->SetDefaultTab(request.default_tab);
    screen->SetSelectMode(request.select_mode, request.group_id);
    screen->Load();
    screen->Show(ui::vbModal, request.owner);
    outcome.cancelled = screen->Cancelled();
    outcome.selected = screen->SelectedCustomer();
  } catch (...) {
    // Quietly ended: the caller sees a cancelled search.
  }
  if (screen && (screen != search_screen_ || request.unload_after)) {
    try {
      screen->Unload();
    } catch (...) {
    }
  }
  return outcome;
}

bool ComponentScreens::ShowDetail(CCustEngine& engine, const std::shared_ptr<CCustomer>& customer, ui::Form* owner,
                                  bool disable_willcall) {
  bool cancelled = true;
  auto screen = std::make_shared<frmCustomerDetail>();
  try {
    screen->SetUi(engine.GetUi());
    screen->Load();
    screen->SetHideForecasts(!engine.AllowCustShowForecast());
    screen->TakeHostObjects(engine);
    screen->SetCustomer(customer);
    screen->SetDisableWillcall(disable_willcall);
    screen->open_related_customer = [](frmCustomerDetail& owner, const std::shared_ptr<CCustomer>& parent,
                                       const std::function<bool(const std::vector<Variant>&)>& collect_member) {
      return ShowRelatedCustomer(owner, parent, collect_member);
    };
    screen->open_alerts = [](frmCustomerDetail& owner) { ShowAlerts(owner, owner.Customer()); };
    screen->export_photo = ExportPhotograph;
    screen->FillScreen(customer->CustomerNo());
    screen->Show(ui::vbModal, owner);
    cancelled = screen->Cancelled();
  } catch (...) {
  }
  try {
    screen->SetCustomer(nullptr);
    screen->Unload();
  } catch (...) {
  }
  return cancelled;
}

bool ComponentScreens::ShowRelatedCustomer(Screen& owner, const std::shared_ptr<CCustomer>& parent,
                                           std::function<bool(const std::vector<Variant>&)> collect_member) {
  if (!parent) return false;
  if (parent->CustomerType() == "C") {
    // A company has employees, linked on its relationships page, not a family.
    owner.ui().MsgBox("Family members can only be added to a person.", ui::vbInformation, "Add Family Member");
    return false;
  }
  auto screen = std::make_shared<frmRelatedCustomer>();
  bool saved = false;
  try {
    screen->SetUi(owner.UiService());
    screen->SetDBConnection(owner.DBConnection());
    screen->SetErrorObject(owner.ErrorObject());
    screen->SetAppServer(owner.AppServer());
    screen->SetCustomerEngine(owner.CustomerEngine());
    screen->SetParentCustomer(parent);
    screen->collect_member = std::move(collect_member);
    screen->Load();
    screen->Show(ui::vbModal, &owner);
    saved = screen->Saved();
  } catch (...) {
    saved = screen->Saved();
  }
  try {
    screen->Unload();
  } catch (...) {
  }
  return saved;
}

ui::Form* ComponentScreens::SharedSearchScreen() const { return search_screen_.get(); }

void ComponentScreens::CloseScreens() {
  // The search screen keeps the clerk's position and size when it unloads.
  std::shared_ptr<frmFind> screen = std::move(search_screen_);
  search_screen_.reset();
  if (!screen || !screen->Loaded()) return;
  try {
    screen->Unload();
  } catch (...) {
  }
}

void InstallComponentScreens(CCustEngine& engine) { engine.SetScreenLauncher(std::make_shared<ComponentScreens>()); }

}  // namespace kiv

// The component's screens as the engine reaches them: the one place that builds each
// screen, hands it the engine's host objects and wires the screens to one another.
#pragma once
#include <functional>
#include <memory>
#include <vector>

#include "core/variant.h"

#include "engine/screen_launcher.h"

namespace kiv {

class frmFind;
class Screen;

class ComponentScreens : public ScreenLauncher {
 public:
  ComponentScreens();
  ~ComponentScreens() override;

  SearchOutcome ShowSearch(CCustEngine& engine, const SearchRequest& request) override;
  bool ShowDetail(CCustEngine& engine, const std::shared_ptr<CCustomer>& customer, ui::Form* owner,
                  bool disable_willcall) override;
  ui::Form* SharedSearchScreen() const override;
  void CloseScreens() override;

  //! The related-customer screen, shown modally over `owner` for `parent` with the owner's
  //! host objects; true when at least one member was added. `collect_member`, when given,
  //! receives the members instead of the database (the parent is not saved yet).
  static bool ShowRelatedCustomer(Screen& owner, const std::shared_ptr<CCustomer>& parent,
                                  std::function<bool(const std::vector<Variant>&)> collect_member = nullptr);

  //! The duplicate merge over `owner`; true when two customers were merged.
  static bool ShowDeDup(Screen& owner);
  //! The house account of `customer` over `owner`; true when it was saved.
  static bool ShowAccountInfo(Screen& owner, const std::shared_ptr<CCustomer>& customer);
  //! The alerts and settings of a saved customer over `owner`; true when they were saved.
  static bool ShowAlerts(Screen& owner, const std::shared_ptr<CCustomer>& customer);
  static void ShowAbout(Screen& owner);

  //! The shared search screen; null until the first search created it.
  frmFind* SearchScreen() const { return search_screen_.get(); }

 private:
  //! A search screen with the other screens on its hooks.
  std::shared_ptr<frmFind> NewSearchScreen();

  std::shared_ptr<frmFind> search_screen_;
};

//! Gives the engine the component's screens.
void InstallComponentScreens(CCustEngine& engine);

}  // namespace kiv

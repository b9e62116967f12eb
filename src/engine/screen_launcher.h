// How the engine reaches the screens without knowing them: the screens library implements
// this once (building and wiring every screen) and the host installs it on the engine.
#pragma once
#include <memory>
#include <string>

#include "ui/form.h"

namespace kiv {

class CCustEngine;
class CCustomer;

//! What a search screen is opened for.
struct SearchRequest {
  //! A customer is being picked for the caller (else the clerk only browses).
  bool select_mode = false;
  //! A screen of its own for this call, unloaded afterwards, instead of the shared one.
  bool spawn_new = false;
  //! A customer saved from the editor the screen opens is returned at once.
  bool auto_return_on_ok = false;
  //! The tab key to open on; empty opens the user's stored default.
  std::string default_tab;
  //! The customer group the search is restricted to; empty for none.
  std::string group_id;
  //! The form the screen is shown over; none when null.
  ui::Form* owner = nullptr;
  //! The shared screen is unloaded when it closes (browsing), not kept for the next pick.
  bool unload_after = false;
};

//! What the clerk did with a search screen.
struct SearchOutcome {
  bool cancelled = true;
  //! The customer chosen with OK; null when none was chosen.
  std::shared_ptr<CCustomer> selected;
};

class ScreenLauncher {
 public:
  virtual ~ScreenLauncher() = default;
  //! Shows the search screen modally over the engine's host objects.
  virtual SearchOutcome ShowSearch(CCustEngine& engine, const SearchRequest& request) = 0;
  //! Shows the detail editor modally over `customer`; true when the clerk left it without
  //! saving.
  virtual bool ShowDetail(CCustEngine& engine, const std::shared_ptr<CCustomer>& customer, ui::Form* owner,
                          bool disable_willcall) = 0;
  //! The shared search screen kept between picks; null until one was shown.
  virtual ui::Form* SharedSearchScreen() const { return nullptr; }
  //! Unloads and drops every screen kept between calls; the engine calls it as it goes, so
  //! no screen outlives the engine it points to.
  virtual void CloseScreens() {}
};

}  // namespace kiv

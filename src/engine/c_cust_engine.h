// The component's entry object: the host hands it its application server, and the engine
// reads the user's rights and the system parameters once, keeps a small cache of opened
// customers and opens, shows and picks customers for the host.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/clock.h"
#include "core/keyed_collection.h"
#include "host/app_server.h"
#include "host/db_connection.h"
#include "engine/screen_launcher.h"
#include "host/error_object.h"
#include "ui/ui.h"

namespace kiv {

class CCustomer;

//! The optional by-reference arguments of OpenCustomer. A connection or error object given
//! here becomes the engine's own; one left out receives the engine's.
struct OpenCustomerArgs {
  std::shared_ptr<host::DBConnection> oDB;
  std::shared_ptr<host::ErrorObject> oError;
  //! True when the customer could not be opened; left as given when it came from the cache.
  bool bError = false;
};

class CCustEngine {
 public:
  //! Builds the error-source name; no screen, cache or host object exists yet.
  CCustEngine();
  //! Empties the cache entry by entry.
  ~CCustEngine();
  CCustEngine(const CCustEngine&) = delete;
  CCustEngine& operator=(const CCustEngine&) = delete;

  //! Stores the year as given.
  void SetFiscalYear(int32_t value) { fiscal_year_ = value; }
  //! The current fiscal year; while it is unknown (0) the system parameters are asked again.
  int32_t FiscalYear();
  void SetErrorObject(std::shared_ptr<host::ErrorObject> value) { error_object_ = std::move(value); }
  void SetDBConnection(std::shared_ptr<host::DBConnection> value) { db_connection_ = std::move(value); }
  //! Stores the application server and reads, from it, the connection, the error object, the
  //! user's settings and rights, the system country and the fiscal year. Failures are ignored
  //! step by step.
  void SetAppServer(std::shared_ptr<host::AppServer> value);

  //! The customer from the cache, or opened from the database (then cached). A customer that
  //! failed to open is still returned, with args.bError True. Never null.
  std::shared_ptr<CCustomer> OpenCustomer(int32_t lCustomerNo, OpenCustomerArgs& args);
  std::shared_ptr<CCustomer> OpenCustomer(int32_t lCustomerNo);

  //! Writes the customer's ability, shoe size and height and weight ranges to its setting row
  //! (added when missing); False for an unsaved customer or on any failure.
  bool SaveRentalProfileInformation(const std::shared_ptr<CCustomer>& oCustomer);
  //! Reads the customer's alerts and rental settings; False without a customer.
  bool OpenRentalProfileInformation(const std::shared_ptr<CCustomer>& oCustomer);
  //! Gives every cached member of oCust's household oCust's own address collection (the same
  //! object), so an address change through one is seen by all.
  void UpdateAddressThroughCollection(const std::shared_ptr<CCustomer>& oCust);
  //! "KIVCustomer=1.0.0": the component's name and version.
  std::string VersionStamp() const;

  // ==== Customer search: the search screen's two entries (c_cust_engine_search.cpp) ====
  //! The optional by-reference arguments of SelectCustomer.
  struct SelectCustomerArgs {
    //! Accepted and not used: the search screen opens without an owner.
    ui::Form* ParentForm = nullptr;
    //! A connection or error object given here becomes the engine's; one left out receives it.
    std::shared_ptr<host::DBConnection> oDB;
    std::shared_ptr<host::ErrorObject> oError;
    //! True unless a customer was really chosen.
    bool bError = false;
    //! A screen of its own for this call instead of the shared one.
    bool bSpawnNew = false;
    //! A customer saved from the editor opened by the screen is returned at once.
    bool bAutoReturnOnOk = false;
    //! Tab key to open on; empty opens the user's stored default.
    std::string sDefaultTab;
    //! Customer group the search is restricted to; empty for none.
    std::string sGroupId;
  };
  //! The optional by-reference arguments of ShowSearchCustomer.
  struct ShowSearchCustomerArgs {
    //! The owner the screen is shown over; none when null.
    ui::Form* ParentForm = nullptr;
    std::shared_ptr<host::DBConnection> oDB;
    std::shared_ptr<host::ErrorObject> oError;
  };
  //! Lets the clerk pick a customer with the search screen. Cancelled: null. Confirmed
  //! without a choice: a new empty customer with bError True. Chosen: that customer (cached,
  //! its household's addresses shared) with bError False. Never throws.
  std::shared_ptr<CCustomer> SelectCustomer(SelectCustomerArgs& args);
  std::shared_ptr<CCustomer> SelectCustomer();
  //! Lets the clerk browse customers with the shared search screen, then unloads it.
  //! Always null, whatever the clerk chose.
  std::shared_ptr<CCustomer> ShowSearchCustomer(ShowSearchCustomerArgs& args);
  std::shared_ptr<CCustomer> ShowSearchCustomer();
  //! The shared search screen; null until the first search created it (or without screens).
  ui::Form* SearchScreen() const { return launcher_ ? launcher_->SharedSearchScreen() : nullptr; }
  // ==== end of customer search ====

  // ==== Customer detail: the detail editor's entry (c_cust_engine_detail.cpp) ====
  //! The optional by-reference arguments of ShowCustomer.
  struct ShowCustomerArgs {
    //! The customer to show when oCustomer is not given.
    int32_t lCustomerNo = 0;
    //! A connection or error object given here becomes the engine's; one left out receives it.
    std::shared_ptr<host::DBConnection> oDB;
    std::shared_ptr<host::ErrorObject> oError;
    //! True when the customer had to be opened and could not be.
    bool bError = false;
    //! The customer to show; receives the customer opened (or taken from the cache) when null.
    std::shared_ptr<CCustomer> oCustomer;
    //! The owner the editor is shown over; none when null.
    ui::Form* oParentForm = nullptr;
    //! Accepted and deliberately ignored.
    bool bShowInDetail = false;
    //! The editor's will-call page offers no printing.
    bool bDisableWillcall = false;
  };
  //! Shows the customer in the detail editor: the caller's oCustomer, else the cached one,
  //! else opened from the database into oCustomer. After a confirmed close the household's
  //! cached members share its addresses. Returns the customer whether or not the clerk
  //! saved; null only when there was none to show. Never throws.
  std::shared_ptr<CCustomer> ShowCustomer(ShowCustomerArgs& args);
  //! Component-internal: shows the editor over `customer` (owner may be null) and returns
  //! true when the clerk left it without saving.
  bool ShowDetailScreen(const std::shared_ptr<CCustomer>& customer, ui::Form* owner, bool bDisableWillcall);
  // ==== end of customer detail ====

  // ---- component-internal ----
  bool AllowCustAdd() const { return allow_cust_add_; }
  bool AllowCustAddComp() const { return allow_cust_add_comp_; }
  bool AllowCustEdit() const { return allow_cust_edit_; }
  bool AllowCustActEdit() const { return allow_cust_act_edit_; }
  bool AllowCCDelete() const { return allow_cc_delete_; }
  bool AllowCustShowForecast() const { return allow_cust_show_forecast_; }
  bool AllowCustShowClub() const { return allow_cust_show_club_; }
  bool AllowCustDedup() const { return allow_cust_dedup_; }
  bool AllowCustEditWRsvp() const { return allow_cust_edit_wrsvp_; }
  bool AllowCustEditComp() const { return allow_cust_edit_comp_; }
  bool AllowCustEditProfile() const { return allow_cust_edit_profile_; }

  std::shared_ptr<host::AppServer> AppServer() const { return app_server_; }
  //! The connection and error object the screens use.
  std::shared_ptr<host::DBConnection> DBConnection() const { return db_connection_; }
  std::shared_ptr<host::ErrorObject> ErrorObject() const { return error_object_; }

  bool UseCollection() const { return use_collection_; }
  //! Stores and saves the setting ("True"/"False"); turning it off empties the cache at once.
  void SetUseCollection(bool value);

  //! Caches a customer under its number (only with UseCollection on). A full cache drops its
  //! oldest entry first; a number already cached keeps the older entry.
  void AddToCache(const std::shared_ptr<CCustomer>& customer);
  //! The cached customer of that number, or null (also when there is no cache).
  std::shared_ptr<CCustomer> CachedCustomer(int32_t customer_no) const;
  //! Number of cached customers (0 when there is no cache).
  size_t CacheCount() const;
  //! Drops every cached customer: after a change that reaches many customers at once (a
  //! merge), none of them may be handed out again as it was before.
  void ForgetCachedCustomers() { EmptyCache(); }
  //! The most customers the cache holds.
  int16_t CacheLimit() const { return cache_limit_; }

  //! "KIVCustomer.CCustEngine (1.0.0)": the prefix of the engine's error sources.
  const std::string& SourceName() const { return source_name_; }

  //! The screens the engine shows; without them every screen entry returns as cancelled.
  void SetScreenLauncher(std::shared_ptr<ScreenLauncher> value) { launcher_ = std::move(value); }
  std::shared_ptr<ScreenLauncher> GetScreenLauncher() const { return launcher_; }

  //! Where message boxes and modal screens go; handed to every customer the engine creates.
  //! A silent Ui until one is set; null restores it.
  void SetUi(std::shared_ptr<ui::Ui> value);
  std::shared_ptr<ui::Ui> GetUi() const { return ui_; }
  //! Where "now" comes from for the engine's screens; the system clock until one is set.
  void SetClock(std::shared_ptr<Clock> value);
  std::shared_ptr<Clock> GetClock() const { return clock_; }

  //! A caller's host object becomes the engine's; an absent one receives the engine's.
  void ExchangeHostObjects(std::shared_ptr<host::DBConnection>& oDB, std::shared_ptr<host::ErrorObject>& oError);

 private:
  using CustomerCache = KeyedCollection<std::shared_ptr<CCustomer>>;

  //! The lookup of the open operations: the cached customer when UseCollection is on.
  std::shared_ptr<CCustomer> LookUpCache(int32_t customer_no) const;
  //! Opens a customer from the database after the host-object exchange; bError := not opened.
  //! Caches it when it opened and UseCollection is on. Never null.
  std::shared_ptr<CCustomer> OpenFromDatabase(int32_t lCustomerNo, std::shared_ptr<host::DBConnection>& oDB,
                                              std::shared_ptr<host::ErrorObject>& oError, bool& bError);
  void ReadPermissions();
  void ReadSystemParameters();
  void EmptyCache();

  std::shared_ptr<host::AppServer> app_server_;
  std::shared_ptr<host::ErrorObject> error_object_;
  std::shared_ptr<host::DBConnection> db_connection_;
  //! The screens, which keep the search screen loaded between searches.
  std::shared_ptr<ScreenLauncher> launcher_;
  std::unique_ptr<CustomerCache> customer_cache_;
  int16_t cache_limit_ = 0;
  bool allow_cust_add_ = false;
  bool allow_cust_add_comp_ = false;
  bool allow_cust_edit_ = false;
  bool allow_cust_act_edit_ = false;
  bool allow_cc_delete_ = false;
  bool allow_cust_show_forecast_ = false;
  bool allow_cust_show_club_ = false;
  bool allow_cust_dedup_ = false;
  bool allow_cust_edit_wrsvp_ = false;
  bool allow_cust_edit_comp_ = false;
  bool allow_cust_edit_profile_ = false;
  bool use_collection_ = false;
  std::string source_name_;
  int32_t fiscal_year_ = 0;

  std::shared_ptr<ui::Ui> ui_;
  std::shared_ptr<Clock> clock_;
};

}  // namespace kiv

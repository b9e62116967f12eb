// The engine's start-up, its cache of opened customers and the operations that need no
// screen. None of them reports or throws: what the host sees is the result and bError.
#include "engine/c_cust_engine.h"

#include "core/variant.h"
#include "core/version.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "records/system_country.h"

namespace kiv {

namespace {

constexpr const char* kSettingsApp = "AppData";
constexpr const char* kSettingsSection = "Customer";
constexpr const char* kUseCollectionKey = "UseCollection";
constexpr const char* kPermissionArea = "Customer";

std::string CacheKey(int32_t customer_no) { return std::to_string(customer_no); }

}  // namespace

CCustEngine::CCustEngine()
    : cache_limit_(10),
      source_name_(SourcePrefix("CCustEngine")),
      ui_(std::make_shared<ui::SilentUi>()),
      clock_(std::make_shared<SystemClock>()) {}

CCustEngine::~CCustEngine() {
  // The screens point back at the engine: they close while it is still whole.
  if (launcher_) {
    try {
      launcher_->CloseScreens();
    } catch (...) {
    }
  }
  EmptyCache();
}

int32_t CCustEngine::FiscalYear() {
  if (fiscal_year_ != 0) return fiscal_year_;
  try {
    if (db_connection_ == nullptr) return fiscal_year_;
    // Not the start-up query: the whole table, read without a lock hint.
    host::ScopedRecordset rs = host::OpenQuery(*db_connection_, "SELECT fiscal_year FROM kiv_system_parm");
    if (!rs.Eof()) fiscal_year_ = rs->FieldByName("fiscal_year").Value().ToLong();
  } catch (...) {
    // Still unknown: the next read asks again.
  }
  return fiscal_year_;
}

void CCustEngine::SetAppServer(std::shared_ptr<host::AppServer> value) {
  app_server_ = std::move(value);
  // Each step stands alone: one that fails leaves its field as it was and the next one runs.
  try {
    if (app_server_) error_object_ = app_server_->GetErrorObject();
  } catch (...) {
  }
  try {
    if (app_server_) db_connection_ = app_server_->GetConnection("");
  } catch (...) {
  }
  try {
    if (app_server_) {
      std::shared_ptr<host::SettingsStore> settings = app_server_->UserSettings();
      if (settings)
        use_collection_ = Variant(settings->GetSetting(kSettingsApp, kSettingsSection, kUseCollectionKey, "True"))
                              .ToBool();
    }
  } catch (...) {
  }
  ReadPermissions();
  ReadSystemParameters();
}

void CCustEngine::ReadPermissions() {
  allow_cust_add_ = allow_cust_add_comp_ = allow_cust_edit_ = allow_cust_act_edit_ = false;
  allow_cc_delete_ = allow_cust_show_forecast_ = allow_cust_show_club_ = allow_cust_dedup_ = false;
  allow_cust_edit_wrsvp_ = allow_cust_edit_comp_ = allow_cust_edit_profile_ = false;
  auto ask = [this](const char* task_code, bool& flag) {
    try {
      if (app_server_) flag = app_server_->CheckPermission(task_code, kPermissionArea, "").ToBool();
    } catch (...) {
    }
  };
  // The order is the suite's: a right that refines another is asked only of a user who
  // holds the broader one, so the host never logs a question that cannot matter.
  ask("CUSTADD", allow_cust_add_);
  if (allow_cust_add_) ask("CUSTADDCOMP", allow_cust_add_comp_);
  ask("CUSTEDIT", allow_cust_edit_);
  ask("CUSTACTEDIT", allow_cust_act_edit_);
  ask("CCDELETE", allow_cc_delete_);
  ask("CUSTSHOWFORECAS", allow_cust_show_forecast_);  // the suite's code is one letter short
  ask("CUSTSHOWCLUB", allow_cust_show_club_);
  ask("CUSTDEDUP", allow_cust_dedup_);
  if (allow_cust_edit_) {
    ask("CUSTEDITWRSVP", allow_cust_edit_wrsvp_);
    ask("CUSTEDITCOMP", allow_cust_edit_comp_);
    ask("CUSTEDITPROFILE", allow_cust_edit_profile_);
  }
}

void CCustEngine::ReadSystemParameters() {
  try {
    std::shared_ptr<host::DBConnection> db = app_server_ ? app_server_->GetConnection("") : nullptr;
    if (db) {
      host::ScopedRecordset rs =
          host::OpenQuery(*db, "SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)");
      if (!rs.Eof()) {
        try {
          SetSystemCountryID(NzString(rs->FieldByName("Country_ID").Value()));
        } catch (...) {
        }
        try {
          fiscal_year_ = rs->FieldByName("fiscal_year").Value().ToLong();
        } catch (...) {
        }
      }
    }
  } catch (...) {
  }
  if (SystemCountryID().empty()) SetSystemCountryID("USA");
}

void CCustEngine::ExchangeHostObjects(std::shared_ptr<host::DBConnection>& oDB,
                                      std::shared_ptr<host::ErrorObject>& oError) {
  // The last object a caller supplies stays the engine's default for later calls.
  if (oDB)
    db_connection_ = oDB;
  else
    oDB = db_connection_;
  if (oError)
    error_object_ = oError;
  else
    oError = error_object_;
}

std::shared_ptr<CCustomer> CCustEngine::LookUpCache(int32_t customer_no) const {
  if (!use_collection_) return nullptr;
  return CachedCustomer(customer_no);
}

std::shared_ptr<CCustomer> CCustEngine::OpenFromDatabase(int32_t lCustomerNo,
                                                         std::shared_ptr<host::DBConnection>& oDB,
                                                         std::shared_ptr<host::ErrorObject>& oError, bool& bError) {
  ExchangeHostObjects(oDB, oError);
  auto customer = std::make_shared<CCustomer>();
  customer->SetUi(ui_);
  customer->SetFiscalYear(fiscal_year_);
  bool opened = false;
  try {
    opened = customer->OpenCustomer(oDB, oError, Variant(lCustomerNo));
  } catch (...) {
  }
  bError = !opened;
  if (opened && use_collection_) AddToCache(customer);
  return customer;
}

std::shared_ptr<CCustomer> CCustEngine::OpenCustomer(int32_t lCustomerNo, OpenCustomerArgs& args) {
  std::shared_ptr<CCustomer> customer = LookUpCache(lCustomerNo);
  try {
    if (customer == nullptr) customer = OpenFromDatabase(lCustomerNo, args.oDB, args.oError, args.bError);
    // The stored year, not the property: a cached open must not reach the database.
    customer->SetFiscalYear(fiscal_year_);
  } catch (...) {
  }
  return customer;
}

std::shared_ptr<CCustomer> CCustEngine::OpenCustomer(int32_t lCustomerNo) {
  OpenCustomerArgs args;
  return OpenCustomer(lCustomerNo, args);
}

bool CCustEngine::SaveRentalProfileInformation(const std::shared_ptr<CCustomer>& oCustomer) {
  try {
    if (oCustomer == nullptr || oCustomer->CustomerNo() == 0) return false;
    if (db_connection_ == nullptr) return false;
    const int32_t customer_no = oCustomer->CustomerNo();
    host::ScopedRecordset rs = host::OpenForUpdate(
        *db_connection_, std::string("SELECT * FROM kiv_customer_setting") + " WHERE customer_no = " +
                             std::to_string(customer_no));
    if (!rs) return false;
    if (rs->Eof()) {
      rs->AddNew();
      rs->FieldByName("CUSTOMER_NO").SetValue(customer_no);
    }
    rs->FieldByName("guest_ability").SetValue(oCustomer->GuestAbility());
    rs->FieldByName("guest_shoe_size").SetValue(oCustomer->GuestShoeSize());
    rs->FieldByName("guest_height_range").SetValue(oCustomer->GuestHeightRange());
    rs->FieldByName("guest_weight_range").SetValue(oCustomer->GuestWeightRange());
    rs->Update();
    return true;
  } catch (...) {
    return false;
  }
}

bool CCustEngine::OpenRentalProfileInformation(const std::shared_ptr<CCustomer>& oCustomer) {
  try {
    if (oCustomer == nullptr) return false;
    return oCustomer->OpenAlertsAndSettings();
  } catch (...) {
    return false;
  }
}

void CCustEngine::UpdateAddressThroughCollection(const std::shared_ptr<CCustomer>& oCust) {
  try {
    if (oCust == nullptr || !use_collection_ || customer_cache_ == nullptr) return;
    const int32_t household_no = oCust->HouseholdNo();
    std::shared_ptr<AddressCollection> shared = oCust->Addresses();
    for (auto& entry : *customer_cache_) {
      if (entry.value && entry.value->HouseholdNo() == household_no) entry.value->SetAddresses(shared);
    }
  } catch (...) {
  }
}

std::string CCustEngine::VersionStamp() const { return std::string(kComponentName) + "=" + VersionText(); }

void CCustEngine::SetUseCollection(bool value) {
  use_collection_ = value;
  try {
    std::shared_ptr<host::SettingsStore> settings = app_server_ ? app_server_->UserSettings() : nullptr;
    if (settings) settings->SaveSetting(kSettingsApp, kSettingsSection, kUseCollectionKey, value ? "True" : "False");
  } catch (...) {
  }
  if (!value) EmptyCache();
}

void CCustEngine::AddToCache(const std::shared_ptr<CCustomer>& customer) {
  if (!use_collection_ || customer == nullptr) return;
  if (customer_cache_ == nullptr) customer_cache_ = std::make_unique<CustomerCache>();
  // The oldest goes first even when the newcomer turns out to be cached already.
  if (customer_cache_->Count() >= static_cast<size_t>(cache_limit_)) customer_cache_->RemoveFirst();
  try {
    customer_cache_->Add(CacheKey(customer->CustomerNo()), customer);
  } catch (const VbError&) {
    // Already cached: the older entry stays.
  }
}

std::shared_ptr<CCustomer> CCustEngine::CachedCustomer(int32_t customer_no) const {
  if (customer_cache_ == nullptr) return nullptr;
  const std::shared_ptr<CCustomer>* found = customer_cache_->Find(CacheKey(customer_no));
  return found ? *found : nullptr;
}

size_t CCustEngine::CacheCount() const { return customer_cache_ ? customer_cache_->Count() : 0; }

void CCustEngine::EmptyCache() {
  if (customer_cache_ == nullptr) return;
  while (customer_cache_->RemoveFirst()) {
  }
  customer_cache_.reset();
}

void CCustEngine::SetUi(std::shared_ptr<ui::Ui> value) {
  ui_ = value ? std::move(value) : std::make_shared<ui::SilentUi>();
}

void CCustEngine::SetClock(std::shared_ptr<Clock> value) {
  clock_ = value ? std::move(value) : std::make_shared<SystemClock>();
}

}  // namespace kiv

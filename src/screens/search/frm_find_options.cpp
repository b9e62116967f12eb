// The search screen's per-user options: which status columns show, the tab it opens on, its
// position and size, and whether the engine keeps opened customers in memory. Each choice
// is stored at once and takes effect without reloading the grid.
#include "engine/c_cust_engine.h"
#include "screens/search/frm_find.h"
#include "ui/prop_text.h"

namespace kiv {

namespace {

constexpr const char* kSettingsApp = "AppData";
constexpr const char* kSettingsSection = "Customer";
constexpr const char* kDefaultSearchKey = "Default Search";

//! A stored Boolean; anything unreadable counts as off.
bool StoredFlag(const std::string& text) {
  try {
    return Variant(text).ToBool();
  } catch (const VbError&) {
    return false;
  }
}

int StoredNumber(const std::string& text, int fallback) {
  if (!IsNumeric(Variant(text))) return fallback;
  return static_cast<int>(Val(text));
}

}  // namespace

std::shared_ptr<host::SettingsStore> frmFind::Settings() const {
  if (engine_ == nullptr || !engine_->AppServer()) return nullptr;
  return engine_->AppServer()->UserSettings();
}

std::string frmFind::GetSetting(const std::string& key, const std::string& default_value) const {
  std::shared_ptr<host::SettingsStore> settings = Settings();
  if (!settings) return default_value;
  return settings->GetSetting(kSettingsApp, kSettingsSection, key, default_value);
}

void frmFind::SaveSetting(const std::string& key, const std::string& value) const {
  if (std::shared_ptr<host::SettingsStore> settings = Settings())
    settings->SaveSetting(kSettingsApp, kSettingsSection, key, value);
}

void frmFind::ApplyViewOptions() {
  struct ViewOption {
    ui::MenuItem& item;
    const char* key;
    int column;
  };
  const ViewOption options[] = {
      {mnuOptionsViewWillCall, "ViewWillCall", kColWillcall},
      {mnuOptionsViewClubMembership, "ViewClubMembership", kColClub},
      {mnuViewOpenSalesOrders, "ViewOpenSalesOrders", kColSO},
      {mnuViewReservations, "ViewReservations", kColRes},
  };
  for (const ViewOption& option : options) {
    const bool on = StoredFlag(GetSetting(option.key, "False"));
    option.item.SetChecked(on);
    fxgCustomers.SetColHidden(option.column, !on);
  }
}

void frmFind::ToggleViewOption(ui::MenuItem& item, const char* key, int column) {
  const bool on = !item.Checked();
  item.SetChecked(on);
  SaveSetting(key, ui::BoolText(on));
  fxgCustomers.SetColHidden(column, !on);
}

void frmFind::CheckDefaultTabItem(const std::string& tab_key) {
  mnuDefaultPerson.SetChecked(tab_key == "Person");
  mnuDefaultCompany.SetChecked(tab_key == "Company");
  mnuDefaultAdvanced.SetChecked(tab_key == "Advanced");
  mnuDefaultClub.SetChecked(tab_key == "Club");
}

void frmFind::ChooseDefaultTab(const char* tab_key) {
  CheckDefaultTabItem(tab_key);
  SaveSetting(kDefaultSearchKey, tab_key);
  tabFind.SetSelectedIndex(tabFind.FindKey(tab_key));
}

void frmFind::ToggleUseCollection() {
  if (engine_ == nullptr) return;
  engine_->SetUseCollection(!engine_->UseCollection());
  mnuOptionsUseCollection.SetChecked(engine_->UseCollection());
}

void frmFind::RestorePosition() {
  top_ = StoredNumber(GetSetting("Top", std::to_string(top_)), top_);
  left_ = StoredNumber(GetSetting("Left", std::to_string(left_)), left_);
  width_ = StoredNumber(GetSetting("Width", std::to_string(width_)), width_);
  height_ = StoredNumber(GetSetting("Height", std::to_string(height_)), height_);
}

void frmFind::SavePosition() const {
  SaveSetting("Top", std::to_string(top_));
  SaveSetting("Left", std::to_string(left_));
  SaveSetting("Width", std::to_string(width_));
  SaveSetting("Height", std::to_string(height_));
}

}  // namespace kiv

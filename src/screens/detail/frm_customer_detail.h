// The customer detail editor: one customer, person or company, filled from its record,
// edited on the general page under the field rules, validated and written back with the
// dirty pages in a fixed order. Split by concern over several files that share this class.
#pragma once
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/clock.h"
#include "core/date.h"
#include "host/app_server.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "screens/detail/detail_page.h"
#include "screens/kit/screen.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/frame.h"
#include "ui/grid.h"
#include "ui/image.h"
#include "ui/label.h"
#include "ui/menu_item.h"
#include "ui/option_group.h"
#include "ui/panel.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv {

class CAddress;
class CCustEngine;
class CCustomer;

class frmCustomerDetail : public Screen {
 public:
  //! tabCustomer indices whose meaning the editor itself relies on.
  static constexpr int kTabGeneral = 1, kTabRelationships = 2, kTabSalesHistory = 3, kTabAccessProducts = 4,
                       kTabHistoryLog = 5, kTabWillCalls = 6, kTabProfile = 7, kTabForecasts = 12;
  //! Options of cmdType and optGender.
  static constexpr int kTypePerson = 0, kTypeCompany = 1;
  static constexpr int kGenderMale = 0, kGenderFemale = 1;
  //! Page-button numbers handed to DetailPage::ButtonClicked.
  static constexpr int kEmployerLookupButton = 4, kEmployerClearButton = 5;

  frmCustomerDetail();
  ~frmCustomerDetail() override;

  // ---- what the engine hands over before filling (besides the Screen's host objects) ----
  void SetCustomer(std::shared_ptr<CCustomer> v) { customer_ = std::move(v); }
  std::shared_ptr<CCustomer> Customer() const { return customer_; }
  //! The group-forecast page is kept from the clerk.
  void SetHideForecasts(bool v) { hide_forecasts_ = v; }
  bool HideForecasts() const { return hide_forecasts_; }
  //! The will-call page offers no printing.
  void SetDisableWillcall(bool v) { disable_willcall_ = v; }
  bool DisableWillcall() const { return disable_willcall_; }
  //! Adds a page; the editor owns it from here on.
  void RegisterPage(std::unique_ptr<DetailPage> page);
  //! Captions and shows cmdButton1, cmdButton2... in order for the active page, each
  //! enabled or not as given; the buttons past the captions stay hidden.
  void ShowPageButtons(std::initializer_list<const char*> captions, bool enabled = true);
  const std::vector<std::unique_ptr<DetailPage>>& Pages() const { return pages_; }

  // ---- filling ----
  //! Clears the general page, fills the lists and shows the record's values; every change,
  //! dirty and loaded flag ends cleared, so filling never counts as an edit.
  void FillScreen(int32_t lCustomerNo);
  //! Shows the address of this type (empty is "PRIMARY"), first storing the fields on screen
  //! into the current address; a type the customer lacks gets a new address.
  void ShowAddressType(const std::string& address_type);
  //! Calls the record's OpenFlags and shows the alert icon and labels.
  void RefreshIndicators();

  // ---- commands ----
  //! OK: validate, save, clear cancelled and hide. False when something stopped it.
  bool Ok();
  //! Save: as OK, but the screen stays and a failed relationship save does not stop it.
  bool Save();
  //! Discards: an existing customer is reloaded from the database; cancelled, hidden.
  void Cancel();
  //! Reloads the active page's list, asking first when it holds unsaved changes.
  void RefreshPage();
  //! Validation before a save: the first failure shows its box, focuses its field, false.
  bool ValidateCustomer();
  //! Writes the fields into the record and Updates it when something was edited.
  bool SaveCustomerFields();
  //! The postal-code lookup of the current address: fills only empty fields.
  void LookUpZip();
  //! Empties the address fields; the change rules write the empties into the address.
  void ClearAddress();
  //! Chooses person (0) or company (1) and switches the name panels.
  void SwitchType(int type);

  // ---- state read by the engine, the pages and tests ----
  bool Cancelled() const { return cancelled_; }
  bool IsNew() const { return is_new_; }
  int32_t CustomerNo() const { return customer_no_; }
  int32_t HouseholdNo() const { return household_no_; }
  bool CustomerChanged() const { return customer_changed_; }
  void SetCustomerChanged(bool v) { customer_changed_ = v; }
  //! Saving treats the customer as changed even when no field was edited.
  void SetForceCustomerSave(bool v) { force_customer_save_ = v; }
  bool ForceCustomerSave() const { return force_customer_save_; }
  bool AddressesChanged() const { return addresses_changed_; }
  bool SavedOnce() const { return saved_once_; }
  bool CanEdit() const { return can_edit_; }
  bool CanDeleteCards() const { return can_delete_cards_; }
  bool CanEditProfile() const { return can_edit_profile_; }
  bool RentalChanged() const { return rental_changed_; }
  //! The page's list has been read since the screen was filled (or refreshed).
  bool PageLoaded(const DetailPage& page) const;
  std::shared_ptr<CAddress> CurrentAddress() const { return current_address_; }
  //! A temporary photograph file, deleted after the next save of the customer fields.
  void SetPhotoWorkFile(std::string v) { photo_work_file_ = std::move(v); }
  const std::string& PhotoWorkFile() const { return photo_work_file_; }

  // ---- menu commands that other parts of the component fill in ----
  std::function<void(frmCustomerDetail&)> open_alerts;
  std::function<void(frmCustomerDetail&)> export_photo;
  std::function<void(frmCustomerDetail&)> forecast_report;
  std::function<void(frmCustomerDetail&)> rental_contract_report;
  //! The related-customer screen over the household's head; true when a member was added.
  //! `collect_member`, when given, takes the members instead of the database.
  std::function<bool(frmCustomerDetail&, const std::shared_ptr<CCustomer>& parent,
                     const std::function<bool(const std::vector<Variant>&)>& collect_member)>
      open_related_customer;

  // ---- controls ----
  ui::TabStrip& tabCustomer;
  ui::Panel& picGeneral;
  ui::OptionGroup& cmdType;
  ui::Panel& picTypePerson;
  ui::TextBox& txtLastName;
  ui::TextBox& txtFirstName;
  ui::TextBox& txtFullName;
  ui::DatePicker& dtDOB;
  ui::Label& lblAge;
  ui::DatePicker& dtWeddAniv;
  ui::OptionGroup& optGender;
  ui::Panel& picTypeCompany;
  ui::TextBox& txtCompanyName;
  ui::TabStrip& tabAddressType;
  ui::TextBox& txtStreet1;
  ui::TextBox& txtStreet2;
  ui::TextBox& txtCity;
  ui::TextBox& txtState;
  ui::TextBox& txtZip;
  ui::ComboBox& cmbCountry;
  ui::TextBox& txtPhone;
  ui::TextBox& txtFax;
  ui::CommandButton& cmdClearAddress;
  ui::TextBox& txtEMail;
  ui::TextBox& txtWorkPhone;
  ui::TextBox& txtCellPhone;
  ui::TextBox& txtOccupation;
  ui::TextBox& txtDefaultDiscount;
  ui::TextBox& txtDefaultCommission;
  ui::DatePicker& dtDateOfRelease;
  ui::CheckBox& ckbLocked;
  ui::CheckBox& ckbDoNotMail;
  ui::ComboBox& cmbCustomerLevel;
  ui::ComboBox& cmbCustomerKind;
  ui::TextBox& txtCommentNote;
  ui::Label& lblNote;
  ui::Frame& fraRental;
  ui::TextBox& txtShoeSize;
  ui::ComboBox& cmbHeight;
  ui::ComboBox& cmbWeight;
  ui::ComboBox& cmbGuestAbility;
  ui::Image& imgAlert;
  ui::Label& lblWillCall;
  ui::Label& lblReservations;
  ui::Label& lblUninvoiced;
  ui::Grid& grdMaster;
  ui::Grid& grdDetail;
  ui::CommandButton& cmdButton1;
  ui::CommandButton& cmdButton2;
  ui::CommandButton& cmdButton3;
  ui::CommandButton& cmdEmployeerLookup;
  ui::CommandButton& cmdEmployerClear;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdSave;
  ui::CommandButton& cmdCancel;
  ui::CommandButton& cmdRefresh;
  ui::MenuItem& mnuTools;
  ui::MenuItem& mnuAlerts;
  ui::MenuItem& mnuToolsExportPhoto;
  ui::MenuItem& mnuToolsViewCCData;
  ui::MenuItem& mnuReports;
  ui::MenuItem& mnuReportsForecastReport;
  ui::MenuItem& mnuReportRentalContract;

 private:
  // frm_customer_detail.cpp: construction, lifecycle, command wiring
  void AddCustomerTabs();
  //! The captions beside the general page's fields.
  void AddFieldLabels();
  void WireCommands();
  void OnLoad();
  void OnQueryUnload(int& cancel, int unload_mode);
  void OnFormKeyDown(int& key_code, int shift);
  void OnFormKeyPress(int& key_ascii);

  // frm_customer_detail_fill.cpp: filling, address tabs, lists
  void ClearGeneralPage();
  void FillLists();
  void FillAddressTypes();
  //! Each text box takes its longest text from the parameter it is saved through, so the
  //! clerk meets the limit while typing instead of finding the text cut after the save.
  void ApplyFieldLimits();
  void StoreAddressFields();
  void ShowAddressFields();
  void ComputeFlags();
  void ResetChangeMarkers();
  std::string AgeText(const std::optional<Date>& birth) const;

  // frm_customer_detail_pages.cpp: the page frame
  void OnCustomerTabClick();
  void ShowPage(int tab_index);
  void ResetPages();
  void PageButtonClicked(int which);
  bool SavePages(bool stop_after_failed_relationships);

  // frm_customer_detail_save.cpp: OK, Save, Cancel, close box
  bool RunSave(bool is_ok);
  bool FailValidation(const std::string& prompt, const std::string& title, ui::Control& focus);

  // frm_customer_detail_fields.cpp: field rules
  void WireFieldRules();
  void WireKeys();
  void WireFocusRules();
  void OnAddressFieldChange(ui::TextBox& field);
  void OnPhoneChange(ui::TextBox& field, bool address_field);
  void OnFirstNameChange();
  void OnLastNameChange();
  void OnCompanyNameChange();
  void ApplyFullNameRule();
  //! Asks the name-change question once per filling; false (after Cancel) on No.
  bool ConfirmNameChange(bool& confirmed, const char* prompt, const char* title);
  //! Rewrites a field's own text without counting as an edit, keeping the caret.
  void RewriteKeepingCaret(ui::TextBox& field, const std::string& text);
  void OnEscape(ui::TextBox& field, const std::string& record_value, int& key_code);
  void OnLevelOrKindClick(ui::ComboBox& list, const std::string& record_value);
  void RaiseCustomerChanged();

  // frm_customer_detail_rental.cpp: the rental settings panel
  void WireRentalPanel();
  void FillRentalLists();
  void FillRentalPanel();
  bool SaveRentalSettings();
  void SelectByKey(ui::ComboBox& list, const std::string& key);

  std::shared_ptr<CCustomer> customer_;
  std::shared_ptr<CAddress> current_address_;
  bool hide_forecasts_ = false;
  bool disable_willcall_ = false;

  int32_t customer_no_ = 0;
  int32_t household_no_ = 0;
  bool is_new_ = false;
  bool cancelled_ = true;
  bool customer_changed_ = false;
  bool force_customer_save_ = false;
  bool addresses_changed_ = false;
  bool saved_once_ = false;
  std::string photo_work_file_;
  bool can_edit_ = false;
  bool can_delete_cards_ = false;
  bool can_edit_profile_ = false;
  bool rental_changed_ = false;
  bool field_limits_applied_ = false;
  bool last_name_confirmed_ = false;
  bool company_name_confirmed_ = false;
  //! What the note found on cmdOk and cmdCancel when it took the focus.
  bool ok_was_default_ = false;
  bool cancel_was_cancel_ = true;

  std::vector<std::unique_ptr<DetailPage>> pages_;
  std::vector<bool> page_loaded_;  // beside pages_
  int active_tab_ = 0;
};

}  // namespace kiv

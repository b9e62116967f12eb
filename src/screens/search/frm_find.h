// The customer search screen: criteria on four tabs turned into the parameters of the
// search procedure, the paged result grid with each customer's household relations, the
// per-user view options, and the commands that act on the customer of the current row.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/command.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "host/recordset.h"
#include "host/settings_store.h"
#include "screens/kit/grid_fill.h"
#include "screens/kit/screen.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/frame.h"
#include "ui/grid.h"
#include "ui/label.h"
#include "ui/menu_item.h"
#include "ui/option_group.h"
#include "ui/status_bar.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv {

class CCustEngine;
class CCustomer;

//! What the detail editor reports when it closes over a customer of this screen.
struct DetailOutcome {
  //! The clerk left the editor without saving.
  bool UserCanceled = true;
  //! The editor changed something that makes the listed rows stale (a deleted or merged
  //! customer): the screen starts over with New Search instead of refreshing the row.
  bool RequiresNewSearch = false;
};

class frmFind : public Screen {
 public:
  //! Columns of the result grid, in the order of a search row.
  enum GridColumn : int {
    kColName = 0,
    kColFirst,
    kColZip,
    kColRelation,
    kColCustNo,
    kColKind,
    kColWillcall,
    kColSO,
    kColRes,
    kColImage,
    kColLevel,
    kColClub,
    kColHousehold,
  };

  frmFind();
  ~frmFind() override;

  // ---- what the engine hands over before showing the screen (and the Screen's host objects) ----
  //! When on, a customer saved from the editor (Add, Properties) is returned at once.
  void SetAutoReturnOnOk(bool v) { auto_return_on_ok_ = v; }
  bool AutoReturnOnOk() const { return auto_return_on_ok_; }
  //! The tab key to open on; empty opens the stored "Default Search".
  void SetDefaultTab(const std::string& v) { default_tab_ = v; }
  const std::string& DefaultTab() const { return default_tab_; }
  //! Select mode (a customer is being picked for the caller) and the customer group the
  //! search is restricted to (empty for none).
  void SetSelectMode(bool select_mode, const std::string& group_id);
  bool SelectMode() const { return select_mode_; }
  const std::string& GroupId() const { return group_id_; }

  // ---- what the engine reads after the screen closes ----
  //! The clerk pressed Cancel (or cancelled a running fill).
  bool Cancelled() const { return cancelled_; }
  //! The customer chosen with OK; null when none was chosen.
  std::shared_ptr<CCustomer> SelectedCustomer() const { return selected_; }

  // ---- position and size, in twips, kept per user ----
  int Top() const { return top_; }
  void SetTop(int v) { top_ = v; }
  int Left() const { return left_; }
  void SetLeft(int v) { left_ = v; }
  int Width() const { return width_; }
  void SetWidth(int v) { width_ = v; }
  int Height() const { return height_; }
  void SetHeight(int v) { height_ = v; }

  // ---- search state ----
  int32_t LastCustomerNo() const { return last_customer_no_; }
  int32_t DisplayedCount() const { return displayed_count_; }
  int32_t TotalCount() const { return total_count_; }

  // ---- operations behind the buttons and menus ----
  //! Find Now: a new search from the criteria of the current tab, first page.
  void Find();
  //! Get MORE!: the next page of the running search.
  void GetMore();
  //! Empties the criteria (the Club tab's excepted), the grid and the status texts.
  void NewSearch();
  //! Chooses the customer of the current data row and closes; nothing without one.
  void Ok();
  //! Sets the cancel flag (stopping a running fill) and closes.
  void CancelSearch();
  void AddCustomer();
  void ShowProperties();
  void AddFamilyMember();
  void ShowAccountInfo();
  void MergeDuplicates();
  //! Loads the customers related to the customer of `row` below it (once per row).
  void LoadRelatedRows(int row);

  // ---- relationship look-ups ----
  //! The relationship types in which the customer takes part, as parent or child.
  std::vector<std::string> RelationTypesOf(int32_t customer_no);
  //! The customer to whom `customer_no` belongs as a household member (employment links
  //! skipped); 0 when there is none.
  int32_t HouseholdParentOf(int32_t customer_no);

  // ---- screens of other parts of the component, wired by the engine ----
  //! The detail editor over a customer (new or loaded); without it Add and Properties open
  //! nothing.
  std::function<DetailOutcome(frmFind& owner, const std::shared_ptr<CCustomer>& customer)> open_detail;
  //! The related-customer screen over the household parent; true when a member was added.
  std::function<bool(frmFind& owner, const std::shared_ptr<CCustomer>& parent)> open_related_customer;
  //! The account screen over a customer.
  std::function<void(frmFind& owner, const std::shared_ptr<CCustomer>& customer)> open_account_info;
  //! The duplicate merge; after it closes the screen starts over with New Search.
  std::function<void(frmFind& owner)> open_dedup;
  //! The about box.
  std::function<void(frmFind& owner)> open_about;

  // ---- controls ----
  ui::Frame& fraPerson;
  ui::TextBox& txtLastName;
  ui::TextBox& txtFirstName;
  ui::TextBox& txtZip;
  ui::TextBox& txtPersonCompany;
  ui::OptionGroup& optGender;
  ui::ComboBox& cmbGroup;
  ui::Frame& fraCompany;
  ui::TextBox& txtCompanyName;
  ui::TextBox& txtCompanyZip;
  ui::ComboBox& cmbCompanyGroup;
  ui::Frame& fraAdvanced;
  ui::TextBox& txtAccessID;
  ui::TextBox& txtSalesOrder;
  ui::TextBox& txtCustomerNo;
  ui::TextBox& txtBookNo;
  ui::Frame& fraClub;
  ui::ComboBox& cmbClubId;
  ui::TextBox& txtClubLastName;
  ui::TextBox& txtClubFirstName;
  ui::TextBox& txtMemberId;
  ui::OptionGroup& optClubStatus;
  ui::TabStrip& tabFind;
  ui::CommandButton& cmdFind;
  ui::CommandButton& cmdNewSearch;
  ui::Grid& fxgCustomers;
  ui::CommandButton& cmdMore;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;
  ui::StatusBar& stbSearch;
  ui::MenuItem& mnuCustomer;
  ui::MenuItem& mnuAdd;
  ui::MenuItem& mnuCustomerAddMember;
  ui::MenuItem& mnuCustomerDetails;
  ui::MenuItem& mnuAccountInfo;
  ui::MenuItem& mnuDeDup;
  ui::MenuItem& mnuView;
  ui::MenuItem& mnuOptionsViewWillCall;
  ui::MenuItem& mnuOptionsViewClubMembership;
  ui::MenuItem& mnuViewOpenSalesOrders;
  ui::MenuItem& mnuViewReservations;
  ui::MenuItem& mnuOptions;
  ui::MenuItem& mnuOptionsSearchView;
  ui::MenuItem& mnuDefaultPerson;
  ui::MenuItem& mnuDefaultCompany;
  ui::MenuItem& mnuDefaultAdvanced;
  ui::MenuItem& mnuDefaultClub;
  ui::MenuItem& mnuOptionsUseCollection;
  ui::MenuItem& mnuHelp;
  ui::MenuItem& mnuHelpAboutCustomer;

  // Option indexes of the two option groups.
  static constexpr int kGenderMale = 0, kGenderFemale = 1, kGenderEither = 2;
  static constexpr int kClubActive = 0, kClubInactive = 1, kClubAll = 2;

 protected:
  //! A failure while a search runs is reported with its command.
  std::shared_ptr<host::Command> FailedCommand() const override { return search_command_; }

 private:
  // frm_find.cpp: construction, hand-over and lifecycle
  void AddLabels();
  void WireEvents();
  void OnLoad();
  void OnActivate();
  void OnUnload();
  void ShowTabFrames();
  void SelectOpeningTab();
  void ApplyGroupSearch();
  void ResetForNextLoad();

  // frm_find_query.cpp: criteria, parameters and paging
  //! Fills the parameters of the selected tab; false when the search has no criteria.
  bool BuildParameters();
  void FetchPage();
  void ShowStatus();
  void CheckNumericField(ui::TextBox& field, const char* title, const char* text);
  void FillLists();
  ui::Control* FirstFieldOfTab();

  // frm_find_grid.cpp: the result grid
  void SetUpGrid();
  void ClearGrid();
  //! The grid columns of a search row, and of a related customer's row below it.
  static GridFill SearchRowFill();
  static GridFill RelatedRowFill();
  //! The cells of a row built from a record (Add and Properties).
  void WriteCustomerCells(int row, CCustomer& customer);
  //! The current row when it is a data row with a Cust#; 0 otherwise.
  int32_t CurrentCustomerNo() const;

  // frm_find_options.cpp: settings
  std::shared_ptr<host::SettingsStore> Settings() const;
  std::string GetSetting(const std::string& key, const std::string& default_value) const;
  void SaveSetting(const std::string& key, const std::string& value) const;
  void ApplyViewOptions();
  void ToggleViewOption(ui::MenuItem& item, const char* key, int column);
  void CheckDefaultTabItem(const std::string& tab_key);
  void ChooseDefaultTab(const char* tab_key);
  void ToggleUseCollection();
  void RestorePosition();
  void SavePosition() const;

  // frm_find_commands.cpp
  //! Opens a customer through the engine; null (after the box) when it cannot be opened.
  std::shared_ptr<CCustomer> OpenForCommand(int32_t customer_no);
  void ShowNotAccessible();
  //! Closes the screen with `customer` as its choice.
  void ReturnCustomer(std::shared_ptr<CCustomer> customer);

  bool auto_return_on_ok_ = false;
  std::string default_tab_;
  bool select_mode_ = false;
  std::string group_id_;

  bool cancelled_ = false;
  std::shared_ptr<CCustomer> selected_;

  std::shared_ptr<host::Command> search_command_;
  GridFill search_fill_ = SearchRowFill();
  GridFill related_fill_ = RelatedRowFill();
  int32_t last_customer_no_ = 0;
  int32_t displayed_count_ = 0;
  int32_t total_count_ = 0;
  bool lists_filled_ = false;

  int top_ = 0;
  int left_ = 0;
  int width_ = 11280;
  int height_ = 7560;
};

}  // namespace kiv

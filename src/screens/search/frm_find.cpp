// The search screen's controls, captions and menus, what it takes from the engine, and its
// load, activation and unload: lists, group search state, the opening tab.
#include "screens/search/frm_find.h"

#include "core/version.h"
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"

namespace kiv {

namespace {

constexpr const char* kCaption = "Find Customer";
constexpr const char* kGroupCaption = "Find Customer of Group ";

}  // namespace

frmFind::frmFind()
    : Screen("frmFind"),
      fraPerson(Add<ui::Frame>("fraPerson", "Person")),
      txtLastName(AddIn<ui::TextBox>(fraPerson, "txtLastName")),
      txtFirstName(AddIn<ui::TextBox>(fraPerson, "txtFirstName")),
      txtZip(AddIn<ui::TextBox>(fraPerson, "txtZip")),
      txtPersonCompany(AddIn<ui::TextBox>(fraPerson, "txtPersonCompany")),
      optGender(AddIn<ui::OptionGroup>(fraPerson, "optGender", std::vector<std::string>{"Male", "Female", "Either"})),
      cmbGroup(AddIn<ui::ComboBox>(fraPerson, "cmbGroup")),
      fraCompany(Add<ui::Frame>("fraCompany", "Company")),
      txtCompanyName(AddIn<ui::TextBox>(fraCompany, "txtCompanyName")),
      txtCompanyZip(AddIn<ui::TextBox>(fraCompany, "txtCompanyZip")),
      cmbCompanyGroup(AddIn<ui::ComboBox>(fraCompany, "cmbCompanyGroup")),
      fraAdvanced(Add<ui::Frame>("fraAdvanced", "Advanced")),
      txtAccessID(AddIn<ui::TextBox>(fraAdvanced, "txtAccessID")),
      txtSalesOrder(AddIn<ui::TextBox>(fraAdvanced, "txtSalesOrder")),
      txtCustomerNo(AddIn<ui::TextBox>(fraAdvanced, "txtCustomerNo")),
      txtBookNo(AddIn<ui::TextBox>(fraAdvanced, "txtBookNo")),
      fraClub(Add<ui::Frame>("fraClub", "Club")),
      cmbClubId(AddIn<ui::ComboBox>(fraClub, "cmbClubId")),
      txtClubLastName(AddIn<ui::TextBox>(fraClub, "txtClubLastName")),
      txtClubFirstName(AddIn<ui::TextBox>(fraClub, "txtClubFirstName")),
      txtMemberId(AddIn<ui::TextBox>(fraClub, "txtMemberId")),
      optClubStatus(AddIn<ui::OptionGroup>(fraClub, "optClubStatus", std::vector<std::string>{"Active", "Inactive", "All"})),
      tabFind(Add<ui::TabStrip>("tabFind")),
      cmdFind(Add<ui::CommandButton>("cmdFind", "F&ind Now")),
      cmdNewSearch(Add<ui::CommandButton>("cmdNewSearch", "Ne&w Search")),
      fxgCustomers(Add<ui::Grid>("fxgCustomers")),
      cmdMore(Add<ui::CommandButton>("cmdMore", "Get MORE!")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "&OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")),
      stbSearch(Add<ui::StatusBar>("stbSearch")),
      mnuCustomer(Add<ui::MenuItem>("mnuCustomer", "&Customer")),
      mnuAdd(AddIn<ui::MenuItem>(mnuCustomer, "mnuAdd", "&Add...")),
      mnuCustomerAddMember(AddIn<ui::MenuItem>(mnuCustomer, "mnuCustomerAddMember", "Add &Family Member")),
      mnuCustomerDetails(AddIn<ui::MenuItem>(mnuCustomer, "mnuCustomerDetails", "Properties...")),
      mnuAccountInfo(AddIn<ui::MenuItem>(mnuCustomer, "mnuAccountInfo", "Account &Information...")),
      mnuDeDup(AddIn<ui::MenuItem>(mnuCustomer, "mnuDeDup", "&Merge Duplicate Customers")),
      mnuView(Add<ui::MenuItem>("mnuView", "&View")),
      mnuOptionsViewWillCall(AddIn<ui::MenuItem>(mnuView, "mnuOptionsViewWillCall", "&WillCall Status")),
      mnuOptionsViewClubMembership(AddIn<ui::MenuItem>(mnuView, "mnuOptionsViewClubMembership", "&Club Membership")),
      mnuViewOpenSalesOrders(AddIn<ui::MenuItem>(mnuView, "mnuViewOpenSalesOrders", "&Open Sales Orders Status")),
      mnuViewReservations(AddIn<ui::MenuItem>(mnuView, "mnuViewReservations", "&Reservations Status")),
      mnuOptions(Add<ui::MenuItem>("mnuOptions", "&Options")),
      mnuOptionsSearchView(AddIn<ui::MenuItem>(mnuOptions, "mnuOptionsSearchView", "Default &Search Tab")),
      mnuDefaultPerson(AddIn<ui::MenuItem>(mnuOptionsSearchView, "mnuDefaultPerson", "&Person")),
      mnuDefaultCompany(AddIn<ui::MenuItem>(mnuOptionsSearchView, "mnuDefaultCompany", "&Company")),
      mnuDefaultAdvanced(AddIn<ui::MenuItem>(mnuOptionsSearchView, "mnuDefaultAdvanced", "&Advanced")),
      mnuDefaultClub(AddIn<ui::MenuItem>(mnuOptionsSearchView, "mnuDefaultClub", "&Club")),
      mnuOptionsUseCollection(AddIn<ui::MenuItem>(mnuOptions, "mnuOptionsUseCollection", "Keep Customers In Memory")),
      mnuHelp(Add<ui::MenuItem>("mnuHelp", "&Help")),
      mnuHelpAboutCustomer(AddIn<ui::MenuItem>(mnuHelp, "mnuHelpAboutCustomer", "&About Customer")) {
  SetCaption(kCaption);
  AddLabels();

  tabFind.AddTab("Person", "Person");
  tabFind.AddTab("Company", "Company");
  tabFind.AddTab("Advanced", "Advanced");
  tabFind.AddTab("Club", "Club");
  tabFind.SetSelectedIndex(1);
  ShowTabFrames();

  optGender.SetValue(kGenderEither);
  optClubStatus.SetValue(kClubAll);

  cmdFind.SetDefault(true);
  cmdCancel.SetCancel(true);
  cmdMore.SetToolTipText("Get MORE Customers.");
  cmdMore.SetEnabled(false);

  stbSearch.AddPanel("FOUND", "Ready...");
  stbSearch.AddPanel("DISPLAY", "Ready...");

  SetUpGrid();
  WireEvents();
}

frmFind::~frmFind() {
  // The engine's shared screen ends with the engine still loaded: unload it so the user's
  // position and size are kept, as closing would have kept them.
  if (!Loaded()) return;
  try {
    Unload();
  } catch (...) {
  }
}

void frmFind::AddLabels() {
  struct LabelSpec {
    ui::Control& container;
    const char* name;
    const char* caption;
  };
  const LabelSpec labels[] = {
      {fraPerson, "lblLastName", "Last:"},
      {fraPerson, "lblFirstName", "First:"},
      {fraPerson, "lblZip", "Zip:"},
      {fraPerson, "lblPersonCompany", "Company:"},
      {fraPerson, "lblGroup", "Group:"},
      {fraCompany, "lblCompanyName", "Name:"},
      {fraCompany, "lblCompanyZip", "Zip:"},
      {fraCompany, "lblCompanyGroup", "Group:"},
      {fraAdvanced, "lblAdvancedNote", "Exclusive searches, these searches are independant of each other:"},
      {fraAdvanced, "lblAccessID", "Access ID:"},
      {fraAdvanced, "lblSalesOrder", "Sales Order #:"},
      {fraAdvanced, "lblCustomerNo", "Customer #:"},
      {fraAdvanced, "lblBookNo", "Booking #:"},
      {fraClub, "lblClubId", "Club:"},
      {fraClub, "lblClubLastName", "Last:"},
      {fraClub, "lblClubFirstName", "First:"},
      {fraClub, "lblMemberId", "MemberId:"},
  };
  for (const LabelSpec& label : labels) AddIn<ui::Label>(label.container, label.name, label.caption);
}

void frmFind::WireEvents() {
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  on_activate = [this] { Guard("Form_Activate", [this] { OnActivate(); }); };
  on_query_unload = [this](int& cancel, int unload_mode) {
    // The close box leaves like OK without a choice: the screen hides and stays loaded,
    // so a shared screen keeps its criteria for the next call.
    if (unload_mode != ui::vbFormControlMenu) return;
    cancel = 1;
    Hide();
  };
  on_unload = [this](int&) { Guard("Form_Unload", [this] { OnUnload(); }); };

  tabFind.on_click = [this] {
    // The club search belongs to users who may see club memberships.
    if (!fraClub.Enabled() && tabFind.SelectedKey() == "Club") {
      tabFind.SetSelectedIndex(tabFind.FindKey("Person"));
      return;
    }
    ShowTabFrames();
  };

  for (ui::TextBox* field : {&txtLastName, &txtFirstName, &txtZip, &txtPersonCompany, &txtCompanyName,
                             &txtCompanyZip, &txtAccessID, &txtSalesOrder}) {
    field->on_got_focus = [field] { field->SelectAll(); };
  }
  txtAccessID.on_change = [this] {
    CheckNumericField(txtAccessID, "Access Number Validation", "The value for Access Number must be numeric");
  };
  txtCustomerNo.on_change = [this] {
    CheckNumericField(txtCustomerNo, "Customer Number Validation", "The value for Customer Number must be numeric");
  };
  txtSalesOrder.on_change = [this] {
    CheckNumericField(txtSalesOrder, "Sales Order Validation", "The value for Sales Order Number must be numeric");
  };

  OnClick(cmdFind, [this] {
    cmdMore.SetEnabled(false);
    Find();
  });
  OnClick(cmdMore, [this] { GetMore(); });
  OnClick(cmdNewSearch, [this] { NewSearch(); });
  OnClick(cmdOk, [this] { Ok(); });
  cmdCancel.on_click = [this] { CancelSearch(); };

  OnDblClick(fxgCustomers, [this] {
    // Picking for a caller, a double click chooses the row; browsing, it opens it.
    if (select_mode_) {
      Ok();
      return;
    }
    ShowProperties();
  });
  fxgCustomers.on_before_collapse = [this](int row, int state, bool&) {
    if (state != ui::flexOutlineExpanded) return;
    Guard("fxgCustomers_BeforeCollapse", [this, row] { LoadRelatedRows(row); });
  };

  OnClick(mnuAdd, [this] { AddCustomer(); });
  OnClick(mnuCustomerAddMember, [this] { AddFamilyMember(); });
  OnClick(mnuCustomerDetails, [this] { ShowProperties(); });
  OnClick(mnuAccountInfo, [this] { ShowAccountInfo(); });
  OnClick(mnuDeDup, [this] { MergeDuplicates(); });

  OnClick(mnuOptionsViewWillCall, [this] { ToggleViewOption(mnuOptionsViewWillCall, "ViewWillCall", kColWillcall); });
  OnClick(mnuOptionsViewClubMembership,
          [this] { ToggleViewOption(mnuOptionsViewClubMembership, "ViewClubMembership", kColClub); });
  OnClick(mnuViewOpenSalesOrders, [this] { ToggleViewOption(mnuViewOpenSalesOrders, "ViewOpenSalesOrders", kColSO); });
  OnClick(mnuViewReservations, [this] { ToggleViewOption(mnuViewReservations, "ViewReservations", kColRes); });
  OnClick(mnuDefaultPerson, [this] { ChooseDefaultTab("Person"); });
  OnClick(mnuDefaultCompany, [this] { ChooseDefaultTab("Company"); });
  OnClick(mnuDefaultAdvanced, [this] { ChooseDefaultTab("Advanced"); });
  OnClick(mnuDefaultClub, [this] { ChooseDefaultTab("Club"); });
  OnClick(mnuOptionsUseCollection, [this] { ToggleUseCollection(); });
  OnClick(mnuHelpAboutCustomer, [this] {
    if (open_about) open_about(*this);
  });
}

void frmFind::SetSelectMode(bool select_mode, const std::string& group_id) {
  select_mode_ = select_mode;
  group_id_ = group_id;
}

void frmFind::OnLoad() {
  if (db_) FillLists();
  RestorePosition();
  ApplyViewOptions();
  CheckDefaultTabItem(GetSetting("Default Search", "Person"));
}

void frmFind::OnActivate() {
  cancelled_ = false;
  selected_.reset();
  if (!lists_filled_ && db_) FillLists();  // loaded before the connection was handed over

  const bool allowed_club = engine_ == nullptr || engine_->AllowCustShowClub();
  const bool allowed_add = engine_ != nullptr && engine_->AllowCustAdd();
  const bool allowed_dedup = engine_ != nullptr && engine_->AllowCustDedup();
  fraClub.SetEnabled(allowed_club);
  mnuAdd.SetEnabled(allowed_add);
  mnuDeDup.SetEnabled(allowed_dedup);
  mnuOptionsUseCollection.SetChecked(engine_ != nullptr && engine_->UseCollection());
  mnuOptionsUseCollection.SetEnabled(engine_ != nullptr);

  ApplyGroupSearch();
  SelectOpeningTab();
  if (ui::Control* first = FirstFieldOfTab()) first->SetFocus();
}

void frmFind::ApplyGroupSearch() {
  if (group_id_.empty()) {
    // The group a previous caller locked in is not the clerk's criterion: drop it.
    if (!cmbGroup.Enabled()) cmbGroup.SetListIndex(-1);
    if (!cmbCompanyGroup.Enabled()) cmbCompanyGroup.SetListIndex(-1);
    SetCaption(kCaption);
    cmbGroup.SetEnabled(true);
    cmbCompanyGroup.SetEnabled(true);
    return;
  }
  const int person_index = cmbGroup.FindKey(group_id_);
  const int company_index = cmbCompanyGroup.FindKey(group_id_);
  cmbGroup.SetListIndex(person_index);
  cmbCompanyGroup.SetListIndex(company_index);
  cmbGroup.SetEnabled(false);
  cmbCompanyGroup.SetEnabled(false);
  SetCaption(std::string(kGroupCaption) + (person_index >= 0 ? cmbGroup.List(person_index) : group_id_));
}

void frmFind::SelectOpeningTab() {
  std::string key = default_tab_.empty() ? GetSetting("Default Search", "Person") : default_tab_;
  int index = tabFind.FindKey(key);
  if (index == 0 || (!fraClub.Enabled() && index == tabFind.FindKey("Club"))) index = tabFind.FindKey("Person");
  tabFind.SetSelectedIndex(index);
}

void frmFind::ShowTabFrames() {
  const std::string key = tabFind.SelectedKey();
  fraPerson.SetVisible(key == "Person");
  fraCompany.SetVisible(key == "Company");
  fraAdvanced.SetVisible(key == "Advanced");
  fraClub.SetVisible(key == "Club");
}

void frmFind::OnUnload() {
  SavePosition();
  ResetForNextLoad();
}

void frmFind::ResetForNextLoad() {
  // An unloaded screen comes back as new: empty fields, lists filled again, a new command.
  for (ui::TextBox* field : {&txtLastName, &txtFirstName, &txtZip, &txtPersonCompany, &txtCompanyName,
                             &txtCompanyZip, &txtAccessID, &txtSalesOrder, &txtCustomerNo, &txtBookNo,
                             &txtClubLastName, &txtClubFirstName, &txtMemberId}) {
    field->SetText("", false);
  }
  cmbGroup.Clear();
  cmbCompanyGroup.Clear();
  cmbClubId.Clear();
  lists_filled_ = false;
  optGender.SetValue(kGenderEither);
  optClubStatus.SetValue(kClubAll);
  ClearGrid();
  cmdMore.SetEnabled(false);
  stbSearch.SetPanelText("FOUND", "Ready...");
  stbSearch.SetPanelText("DISPLAY", "Ready...");
  search_command_.reset();
  total_count_ = 0;
}

}  // namespace kiv

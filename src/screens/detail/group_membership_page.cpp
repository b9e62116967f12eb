// The group memberships of the profile page: the list from the members procedure, Add
// Group through the pick list, Remove Group, and the save of each added or removed group.
#include "screens/detail/group_membership_page.h"

#include <memory>

#include "core/text.h"
#include "host/db_patterns.h"
#include "screens/common/frm_pick.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

namespace {

constexpr const char* kAddTitle = "Add Group";
constexpr const char* kSaveTitle = "Error Saving Group Membership";

}  // namespace

int GroupMembershipPage::TabIndex() const { return frmCustomerDetail::kTabProfile; }

void GroupMembershipPage::Reset() {
  rows_.Clear();
  dirty_ = false;
}

RefreshConfirmation GroupMembershipPage::RefreshQuestion() const {
  // The groups are part of the profile page: the same question guards them.
  return {"The profile information has been changed.  Are you sure you want to lose those changes and refresh the "
          "data?",
          "Confirm Refresh Profile Data"};
}

bool GroupMembershipPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == TabIndex();
}

void GroupMembershipPage::Activate(frmCustomerDetail& screen) {
  screen.ShowPageButtons({"Add Group", "Remove Group"}, screen.CanEditProfile());
  ui::Grid& grid = screen.grdDetail;
  grid.SetFormatString(kFormatString);
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(ui::flexEDNone);
  grid.SetVisible(true);
  Render(screen);
}

void GroupMembershipPage::Load(frmCustomerDetail& screen) {
  Reset();
  // A customer not saved yet has no memberships; asking for customer 0 would list everyone's.
  if (screen.CustomerNo() != 0 && screen.DBConnection()) {
    host::ProcedureCall call(*screen.DBConnection(), kListProcedure);
    call.In("@customer_no", Variant(screen.CustomerNo()));
    host::ScopedRecordset rs = call.Open();
    for (; rs && !rs.Eof(); rs->MoveNext())
      rows_.AddLoaded({"", NzString((*rs)["customer_group_id"]), NzString((*rs)["Description"])});
  }
  if (Showing(screen)) Render(screen);
}

void GroupMembershipPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdDetail;
  rows_.Render(grid, [&grid](int g, const ListRow& row) {
    grid.SetTextMatrix(g, kColState, row.state == RowState::kNew ? kAddedState : "");
  });
}

void GroupMembershipPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (!screen.CanEditProfile()) return;
  if (which == kAddButton) AddGroup(screen);
  if (which == kRemoveButton) RemoveGroup(screen);
}

void GroupMembershipPage::AddGroup(frmCustomerDetail& screen) {
  if (!screen.DBConnection()) return;
  host::ScopedRecordset rs = host::OpenQuery(*screen.DBConnection(), kGroupsSql);
  if (!rs) return;
  auto pick = std::make_shared<frmPick>();
  pick->SetUi(screen.UiService());
  pick->SetDBConnection(screen.DBConnection());
  pick->SetErrorObject(screen.ErrorObject());
  pick->SetAppServer(screen.AppServer());
  pick->SetCustomerEngine(screen.CustomerEngine());
  pick->Load();
  pick->SetCaption(kPickCaption);
  pick->FillFromRecordset(*rs);
  rs.Close();
  pick->Show(ui::vbModal, &screen);
  const bool canceled = pick->Canceled();
  const std::string group_id = NzString(pick->ColumnValue("customer_group_id"));
  const std::string description = NzString(pick->ColumnValue("description"));
  pick->Unload();
  if (canceled || group_id.empty()) return;
  AddChosen(screen, group_id, description);
}

bool GroupMembershipPage::AddChosen(frmCustomerDetail& screen, const std::string& group_id,
                                    const std::string& description) {
  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    if (row.state == RowState::kRemoved || !EqualsNoCase(row.cells[kColGroupId], group_id)) continue;
    screen.ui().MsgBox("The customer is already a member of the group " + description + " (" + group_id + ").",
                       ui::vbInformation, kAddTitle);
    return false;
  }
  rows_.AddNew({kAddedState, group_id, description});
  dirty_ = true;
  if (Showing(screen)) Render(screen);
  return true;
}

void GroupMembershipPage::RemoveGroup(frmCustomerDetail& screen) {
  ui::Grid& grid = screen.grdDetail;
  const int i = rows_.RowAt(grid, grid.Row());
  if (i < 0 || rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved) return;
  rows_.Remove(static_cast<size_t>(i));
  dirty_ = rows_.Dirty();
  Render(screen);
}

bool GroupMembershipPage::Save(frmCustomerDetail& screen) {
  bool saved = false;
  screen.Guard("SaveGroupMemberships", [&] { saved = WriteMemberships(screen); });
  return saved;
}

bool GroupMembershipPage::WriteMemberships(frmCustomerDetail& screen) {
  if (!screen.DBConnection() || screen.CustomerNo() == 0) return false;
  host::DBConnection& db = *screen.DBConnection();
  const Variant customer_no(screen.CustomerNo());
  // The editor's save holds every page in its unit of work; a refused call stops the walk.
  const bool saved = rows_.WriteChanges([&](const ListRow& row) {
    host::ProcedureCall call(db, row.state == RowState::kRemoved ? kDeleteProcedure : kInsertProcedure);
    call.In("@customer_no", customer_no).In("@customer_group_id", Variant(row.cells[kColGroupId]));
    if (!call.Execute()) return false;
    if (call.ReturnValue(0) >= 0) return true;
    screen.ui().MsgBox(call.OutputText("@message"), ui::vbInformation, kSaveTitle);
    return false;
  });
  if (!saved) return false;
  dirty_ = false;
  if (Showing(screen)) Render(screen);
  return true;
}

}  // namespace kiv

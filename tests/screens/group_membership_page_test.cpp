// The group memberships of the profile page over the scripted host: the save writes only the
// groups added or removed, in row order, with a refusal shown; a customer not saved yet lists
// no one's groups. The pick list and the refusal of a group held are driven end to end.
#include "screens/detail/group_membership_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

using test::Assignment;
using test::DetailRig;
using ui::ActionKind;

const std::string kInsert = GroupMembershipPage::kInsertProcedure;
const std::string kDelete = GroupMembershipPage::kDeleteProcedure;

struct GroupRig : DetailRig {
  explicit GroupRig(bool with_groups = true) {
    auto members = host.OnProcedure(GroupMembershipPage::kListProcedure)
                       .Columns({test::Col("customer_group_id"), test::Col("Description"),
                                 test::Col("customer_no", host::adInteger), test::Col("full_name")});
    if (with_groups) {
      members.Values({"SKISCHOOL", "Ski School", 42, "ANN LEE"});
      members.Values({"STAFF", "Resort Staff", 42, "ANN LEE"});
    }
    host.OnQuery(GroupMembershipPage::kGroupsSql)
        .Row({{"customer_group_id", "LODGE"}, {"description", "Lodging Partners"}})
        .Row({{"customer_group_id", "STAFF"}, {"description", "Resort Staff"}})
        .Row({{"customer_group_id", "VIP"}, {"description", "VIP Guests"}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "7");
  }
  //! Add Group with the pick list answered by choosing grid row `row` (0: Cancel).
  void AddGroup(int row) {
    ui->OnModal([row](ui::Form& form) {
      if (row == 0) {
        form.Perform(ui::Action{ActionKind::Click, "cmdCancel", {}, {}, 0});
        return;
      }
      form.Perform(ui::Action{ActionKind::Select, "gdPick", {}, {row}, 0});
      form.Perform(ui::Action{ActionKind::Click, "cmdOk", {}, {}, 0});
    });
    Do(ActionKind::Click, "cmdButton1");
    ui->OnModal(nullptr);
  }
  std::vector<std::string> GroupIds() const {
    std::vector<std::string> ids;
    const ui::Grid& grid = screen->grdDetail;
    for (int r = grid.FixedRows(); r < grid.Rows(); ++r)
      if (!grid.RowHidden(r)) ids.push_back(grid.TextMatrix(r, GroupMembershipPage::kColGroupId));
    return ids;
  }
};

TEST(GroupMembershipPage, TheSaveWritesOnlyAddedAndRemovedGroupsInRowOrder) {
  GroupRig rig;
  rig.AddGroup(1);
  rig.screen->grdDetail.SetRow(1);
  rig.Do(ActionKind::Click, "cmdButton2");
  EXPECT_EQ(rig.GroupIds(), (std::vector<std::string>{"STAFF", "LODGE"}));
  rig.host.db->ClearLog();
  EXPECT_TRUE(rig.screen->Save());
  std::vector<std::string> ran = rig.host.ExecutedProcedures();
  std::erase_if(ran, [](const std::string& p) { return p != kDelete && p != kInsert; });
  EXPECT_EQ(ran, (std::vector<std::string>{kDelete, kInsert}));
  EXPECT_EQ(rig.host.AssignmentsOf(kDelete),
            (std::vector<Assignment>{{"@customer_no", 42}, {"@customer_group_id", "SKISCHOOL"}}));
  EXPECT_EQ(rig.host.AssignmentsOf(kInsert),
            (std::vector<Assignment>{{"@customer_no", 42}, {"@customer_group_id", "LODGE"}}));
  EXPECT_EQ(rig.screen->grdDetail.TextMatrix(2, GroupMembershipPage::kColState), "");

  // Saved, nothing is left to write.
  rig.host.db->ClearLog();
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_TRUE(rig.host.db->Executions(kInsert).empty());
}

TEST(GroupMembershipPage, AGroupAddedAndRemovedAgainWritesNothing) {
  GroupRig rig;
  rig.AddGroup(3);
  rig.screen->grdDetail.SetRow(3);
  rig.Do(ActionKind::Click, "cmdButton2");
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_TRUE(rig.host.db->Executions(kInsert).empty());
  EXPECT_TRUE(rig.host.db->Executions(kDelete).empty());
}

TEST(GroupMembershipPage, ARefusedInsertIsShownAndThePageStaysDirty) {
  GroupRig rig;
  rig.host.OnProcedure(kInsert).Outputs({{"@RETURN_VALUE", -1}, {"@message", "The customer group 'VIP' does not exist."}});
  rig.AddGroup(3);
  rig.ui->Answer(ui::vbOK);
  rig.screen->Save();
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "The customer group 'VIP' does not exist.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Error Saving Group Membership");
  EXPECT_EQ(rig.screen->grdDetail.TextMatrix(3, GroupMembershipPage::kColState), "Added");
}

TEST(GroupMembershipPage, ANewCustomerListsNoOnesGroups) {
  DetailRig rig;
  rig.Person(0);
  rig.Open();
  rig.Do(ActionKind::Click, "tabCustomer", "7");
  EXPECT_TRUE(rig.host.db->Executions(GroupMembershipPage::kListProcedure).empty());
  EXPECT_EQ(rig.screen->grdDetail.Rows(), 1);
}

}  // namespace
}  // namespace kiv

// The group part of the profile page: the customer's group memberships in grdDetail, a group
// added through the pick list, one removed, and the changes saved last of all pages.
#pragma once
#include <string>

#include "screens/detail/detail_page.h"
#include "screens/kit/list_rows.h"

namespace kiv {

class GroupMembershipPage : public DetailPage {
 public:
  enum Column : int { kColState = 0, kColGroupId, kColDescription };
  static constexpr const char* kFormatString = "State|Group Id|Description";
  static constexpr const char* kListProcedure = "KIV_SP_GetGroupMembers";
  static constexpr const char* kInsertProcedure = "KIV_SP_InsertCustomerGroupMembership";
  static constexpr const char* kDeleteProcedure = "KIV_SP_DeleteCustomerGroupMembership";
  static constexpr const char* kGroupsSql = "SELECT * FROM kiv_customer_group ORDER BY description";
  static constexpr const char* kPickCaption = "Select Customer Group";
  //! What the State column shows for a group added since the last save.
  static constexpr const char* kAddedState = "Added";
  //! cmdButton1 and cmdButton2.
  static constexpr int kAddButton = 1, kRemoveButton = 2;

  int TabIndex() const override;
  DetailSaveSlot SaveSlot() const override { return DetailSaveSlot::kGroupMemberships; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  bool Save(frmCustomerDetail& screen) override;
  bool Dirty() const override { return dirty_; }
  void Reset() override;
  RefreshConfirmation RefreshQuestion() const override;
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! Offers every group in the pick list; the chosen one becomes an added row, unless the
  //! customer has it already (refused with a message).
  void AddGroup(frmCustomerDetail& screen);
  //! The group of the current grid row becomes removed.
  void RemoveGroup(frmCustomerDetail& screen);
  //! Adds the group as the pick list would; false (after its message) when it is listed.
  bool AddChosen(frmCustomerDetail& screen, const std::string& group_id, const std::string& description);

  const ListRows& Rows() const { return rows_; }

 private:
  bool Showing(const frmCustomerDetail& screen) const;
  void Render(frmCustomerDetail& screen) const;
  bool WriteMemberships(frmCustomerDetail& screen);

  ListRows rows_;
  bool dirty_ = false;
};

}  // namespace kiv

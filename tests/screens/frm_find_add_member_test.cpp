// The search screen's Add Family Member: the household parent looked up by its query, the
// related-customer screen opened for it, and the list searched again only when a member
// was added.
#include <gtest/gtest.h>

#include "frm_find_rig.h"

namespace kiv {
namespace {

using test::CustomerRow;
using test::FindRig;
using test::SearchRow;
using ui::ActionKind;

TEST(FindAddMember, OpensTheHouseholdParentAndSearchesAgainOnlyWhenAMemberWasAdded) {
  struct Case {
    const char* what;
    bool parent_found;
    bool added;
    int32_t opened_for;
    size_t searches;
  };
  const Case cases[] = {
      {"a member: the parent's screen, nothing added", true, false, 5, 1},
      {"a member: the parent's screen, a member added", true, true, 5, 2},
      {"nobody's member heads its own household", false, true, 6, 2},
  };
  for (const Case& c : cases) {
    FindRig rig;
    rig.Search(2).Row(SearchRow(5, "P", "SMITH")).Row(SearchRow(6, "P", "STONE"));
    if (c.parent_found)
      rig.host.OnQuery("SELECT * FROM kiv_customer_rel WHERE child_customer_no = 6 AND rel_type_id <> 'EMPLOYEE'")
          .Row({{"parent_customer_no", 5}, {"child_customer_no", 6}, {"rel_type_id", "CHILD"}});
    rig.host.OnProcedure("KIV_SP_GetCustomer").Row(CustomerRow(c.opened_for));
    rig.Open();
    rig.Do(ActionKind::Paste, "txtLastName", "S");
    rig.Do(ActionKind::Click, "cmdFind");
    int32_t opened = 0;
    rig.screen->open_related_customer = [&](frmFind&, const std::shared_ptr<CCustomer>& parent) {
      opened = parent->CustomerNo();
      return c.added;
    };
    rig.screen->fxgCustomers.SelectRows({2});
    rig.Do(ActionKind::Click, "mnuCustomerAddMember");
    EXPECT_EQ(opened, c.opened_for) << c.what;
    EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_GetCustomer", "@customer_no"), Variant(c.opened_for)) << c.what;
    EXPECT_EQ(rig.Searches(), c.searches) << c.what;
    EXPECT_TRUE(rig.ui->Boxes().empty()) << c.what;
  }
}

TEST(FindAddMember, ACompanyGetsNoFamilyMembers) {
  FindRig rig;
  rig.Search(1).Row(SearchRow(8, "C", "", "ACME"));
  test::Cells company = CustomerRow(8);
  company[3] = {"customer_type", "C"};
  rig.host.OnProcedure("KIV_SP_GetCustomer").Row(company);
  rig.Open();
  rig.Do(ActionKind::Paste, "txtLastName", "A");
  rig.Do(ActionKind::Click, "cmdFind");
  rig.screen->open_related_customer = [](frmFind& owner, const std::shared_ptr<CCustomer>& parent) {
    return ComponentScreens::ShowRelatedCustomer(owner, parent);
  };
  rig.screen->fxgCustomers.SelectRows({1});
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "mnuCustomerAddMember");
  EXPECT_EQ(rig.ui->Prompts(), (std::vector<std::string>{"Family members can only be added to a person."}));
  EXPECT_TRUE(rig.ui->ModalForms().empty());
  EXPECT_EQ(rig.Searches(), 1u);
}

}  // namespace
}  // namespace kiv

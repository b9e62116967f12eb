// The access products page over the scripted host: products with their Locked boxes, the
// items of the selected product, and lock and unlock through the register's procedure
// with the box put back when the server refuses.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/access_products_page.h"

namespace kiv {
namespace {

using test::Assignment;
using test::DetailRig;
using ui::ActionKind;

const std::string kGetProducts = "KIV_SP_CUSTOMER_GetAccessTrxByCustomerNo";
const std::string kGetItems = "KIV_SP_CUSTOMER_GetAccessItem";
const std::string kUpdate = "KIV_SP_REGISTER_UpdateAccessTrx";

test::Cells Product(int32_t access_no, bool locked, const Variant& message) {
  return {{"access_no", access_no}, {"is_active", true}, {"Locked", locked},
          {"valid_date", Date::FromParts(2025, 11, 15)}, {"expiration_date", Date::FromParts(2026, 4, 15)},
          {"Message", message}};
}

struct AccessRig : DetailRig {
  AccessRig() {
    host.OnProcedure(kGetProducts).Row(Product(7, false, Variant::Null())).Row(Product(8, true, "LOST CARD"));
    host.OnProcedure(kGetItems).Row({{"salesorder_no", 30}, {"seq_no", 1}, {"unit_id", "DAY"},
                                      {"long_description", "LIFT ACCESS"}, {"is_active", true}, {"units_sold", 3},
                                      {"units_refunded", 0}, {"units_used", 1}, {"units_available", 2},
                                      {"sales_amount", 369.0}, {"refund_amount", -20.0}, {"value_amount", 246.0},
                                      {"trans_type_id", "SALE"}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "4");
    host.db->ClearLog();
  }
  void Edit(int row, const std::string& value) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Edit, "grdMaster", value, {row}, 2});
    EXPECT_TRUE(r.ok) << r.error;
  }
  int Locked(int row) const { return screen->grdMaster.CellChecked(row, AccessProductsPage::kColLocked); }
};

TEST(AccessProductsPage, ListsProductsWithTheirLockedBoxAndTheFirstProductsItems) {
  AccessRig rig;
  const ui::Grid& products = rig.screen->grdMaster;
  EXPECT_EQ(products.FormatString(), AccessProductsPage::kProductFormat);
  ASSERT_EQ(products.Rows(), 3);
  EXPECT_EQ(products.TextMatrix(1, 1), "True");
  EXPECT_EQ(rig.Locked(1), ui::flexUnchecked);
  EXPECT_EQ(rig.Locked(2), ui::flexChecked);
  EXPECT_EQ(products.TextMatrix(2, 3), "11/15/2025");
  EXPECT_EQ(products.TextMatrix(2, 5), "LOST CARD");

  const ui::Grid& items = rig.screen->grdDetail;
  EXPECT_EQ(items.FormatString(), AccessProductsPage::kItemFormat);
  ASSERT_EQ(items.Rows(), 2);
  EXPECT_EQ(items.TextMatrix(1, 2), "DAY LIFT ACCESS");
  EXPECT_EQ(items.DisplayText(1, AccessProductsPage::kColSaleAmt), "$369.00");
  EXPECT_EQ(items.DisplayText(1, AccessProductsPage::kColRefAmt), "($20.00)");

  ui::UiResult r = rig.screen->Perform(ui::Action{ActionKind::Select, "grdMaster", {}, {2}, 0});
  EXPECT_TRUE(r.ok) << r.error;
  EXPECT_EQ(rig.host.AssignmentsOf(kGetItems), (std::vector<Assignment>{{"@access_no", 8}}));
}

TEST(AccessProductsPage, TickingLocksAndClearingUnlocksThroughTheRegistersProcedure) {
  AccessRig rig;
  rig.host.OnProcedure(kUpdate).ReturnValue(0);
  rig.Edit(1, "true");
  const std::string user = rig.host.db->UserID();
  const std::string computer = rig.host.db->ComputerName();
  EXPECT_EQ(rig.host.AssignmentsOf(kUpdate),
            (std::vector<Assignment>{{"@access_no", 7}, {"@trans_type_id", "CONTROL"}, {"@kiv_user", user},
                                     {"@computer", computer}, {"@module", "CUSTOMER"}, {"@update_action", "L"},
                                     {"@message", AccessProductsPage::kLockMessage}, {"@locked", true}}));
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 5), AccessProductsPage::kLockMessage);

  rig.Edit(2, "false");
  EXPECT_EQ(rig.host.db->AssignedValue(kUpdate, "@update_action", 1), Variant("U"));
  EXPECT_EQ(rig.host.db->AssignedValue(kUpdate, "@message", 1), Variant(""));
  EXPECT_EQ(rig.host.db->AssignedValue(kUpdate, "@locked", 1), Variant(false));
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(2, 5), "") << "an unlocked product's message goes";
  EXPECT_TRUE(rig.ui->Boxes().empty());
}

TEST(AccessProductsPage, ARefusalShowsTheServersMessageAndPutsTheBoxBack) {
  AccessRig rig;
  rig.host.OnProcedure(kUpdate).ReturnValue(-1).Outputs({{"@error_msg", "Access product 8 is not active."}});
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK);
  rig.Edit(2, "false");
  rig.Edit(1, "true");
  EXPECT_EQ(rig.ui->Prompts(),
            (std::vector<std::string>{"Access product 8 is not active.", "Access product 8 is not active."}));
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Error Updating Access Trx Data");
  EXPECT_EQ(rig.Locked(2), ui::flexChecked);
  EXPECT_EQ(rig.Locked(1), ui::flexUnchecked);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(2, 5), "LOST CARD");
}

}  // namespace
}  // namespace kiv

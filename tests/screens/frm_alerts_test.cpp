// The alerts screen over the scripted host: the load walking every result set and taking
// rows by their type, the caption, the person answer, the panels, and OK through the
// record's save with a list left unselected keeping its range.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "records/c_customer.h"
#include "screens/alerts/frm_alerts.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using ui::ActionKind;

const std::string kGet = frmAlerts::kAlertProcedure;
const std::string kSave = "KIV_SP_CUSTOMER_CUSTOMER_ALERT_update";

test::Cells Customer(const std::string& type, int height, int weight) {
  return {{"return_type", "CUST"},
          {"customer_type", type},
          {"full_name", "ANN LEE"},
          {"Allergies", "PEANUTS"},
          {"Medications", "INHALER"},
          {"special_needs", ""},
          {"child_full_name", "TIM LEE"},
          {"cell_phone_contact", "555-0101"},
          {"responsible_adult_1_name", "ANN LEE"},
          {"responsible_adult_2_name", Variant::Null()},
          {"guest_height_range", height},
          {"guest_weight_range", weight}};
}

struct AlertsRig {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();
  frmAlerts screen;
  bool person = false;

  //! The lists and the customer in three result sets, with rows of other types among them.
  explicit AlertsRig(test::Cells cust = Customer("P", 2, 3), int32_t save_result = 0) {
    host.OnProcedure(kGet)
        .Row({{"return_type", "HEIGHT"}, {"Description", "UNDER 4 FT"}, {"guest_height_range", 1}})
        .Row({{"return_type", "NOTE"}, {"Description", "not a list entry"}, {"guest_height_range", 9}})
        .Row({{"return_type", "HEIGHT"}, {"Description", "4 FT - 5 FT"}, {"guest_height_range", 2}})
        .NextResult()
        .Row({{"return_type", "WEIGHT"}, {"Description", "UNDER 60 LB"}, {"guest_weight_range", 1}})
        .Row({{"return_type", "WEIGHT"}, {"Description", "60 - 120 LB"}, {"guest_weight_range", 3}})
        .NextResult()
        .Row(cust);
    host.OnProcedure(kSave).ReturnValue(save_result).Outputs({{"@message", "The customer is locked."}});
    customer->SetCustomerNo(42);
    customer->SetDB(host.db);
    customer->SetUi(ui);
    customer->SetGuestHeightRange(5);
    customer->SetGuestWeightRange(6);
    screen.SetUi(ui);
    screen.SetDBConnection(host.db);
    screen.SetErrorObject(host.errors);
    screen.SetCustomer(customer);
    screen.Load();
    person = screen.LoadAlerts();
    screen.Show();
  }
  void Do(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen.Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << control << " " << text << ": " << r.error;
  }
  Variant Saved(const char* name) const { return host.db->AssignedValue(kSave, name); }
};

TEST(Alerts, LoadWalksEveryResultSetAndSkipsRowsOfOtherTypes) {
  AlertsRig rig;
  EXPECT_EQ(rig.host.db->AssignmentsOf(kGet).size(), 2u);
  EXPECT_EQ(rig.host.db->AssignedValue(kGet, "@customer_no"), Variant(42));
  EXPECT_EQ(rig.host.db->AssignedValue(kGet, "@prefill"), Variant(true));
  ASSERT_EQ(rig.screen.cmbHeight.ListCount(), 2);
  EXPECT_EQ(rig.screen.cmbHeight.List(1), "4 FT - 5 FT");
  EXPECT_EQ(rig.screen.cmbHeight.ItemKey(1), "2");
  ASSERT_EQ(rig.screen.cmbWeight.ListCount(), 2);
  EXPECT_EQ(rig.screen.cmbHeight.SelectedKey(), "2");
  EXPECT_EQ(rig.screen.cmbWeight.SelectedKey(), "3");
  EXPECT_EQ(rig.screen.txtAllergies.Text(), "PEANUTS");
  EXPECT_EQ(rig.screen.txtChildsName.Text(), "TIM LEE");
  EXPECT_EQ(rig.screen.txtResponsibleAdult2.Text(), "");
  EXPECT_EQ(rig.screen.Caption(), "ANN LEE's Alerts && Settings");
  EXPECT_TRUE(rig.person);
  EXPECT_EQ(rig.host.db->OpenRecordsetCount(), 0u) << "every result set is closed";
}

TEST(Alerts, ACompanyIsReportedAsNotAPerson) {
  AlertsRig rig(Customer("C", 1, 1));
  EXPECT_FALSE(rig.person);
}

TEST(Alerts, TheTabStripShowsOnePanelAtATime) {
  AlertsRig rig;
  EXPECT_TRUE(rig.screen.picTab0.Visible());
  EXPECT_FALSE(rig.screen.picTab1.Visible());
  rig.Do(ActionKind::Click, "tabAlerts", frmAlerts::kChildTab);
  EXPECT_FALSE(rig.screen.picTab0.Visible());
  EXPECT_TRUE(rig.screen.picTab1.Visible());
  rig.Do(ActionKind::Click, "tabAlerts", frmAlerts::kAlertsTab);
  EXPECT_TRUE(rig.screen.picTab0.Visible());
}

TEST(Alerts, OkSavesTheTextsAndTheChosenRanges) {
  AlertsRig rig;
  rig.Do(ActionKind::Paste, "txtSpecialNeeds", "WHEELCHAIR");
  rig.Do(ActionKind::Click, "tabAlerts", frmAlerts::kChildTab);
  rig.Do(ActionKind::Choose, "cmbHeight", "UNDER 4 FT");
  rig.Do(ActionKind::Click, "cmdOk");
  EXPECT_FALSE(rig.screen.Visible());
  EXPECT_FALSE(rig.screen.Canceled());
  EXPECT_EQ(rig.Saved("@special_needs"), Variant("WHEELCHAIR"));
  EXPECT_EQ(rig.Saved("@allergies"), Variant("PEANUTS"));
  EXPECT_EQ(rig.Saved("@child_full_name"), Variant("TIM LEE"));
  EXPECT_EQ(rig.Saved("@guest_height_range"), Variant(1));
  EXPECT_EQ(rig.Saved("@guest_weight_range"), Variant(3));
}

TEST(Alerts, AListWithoutASelectionLeavesItsRangeAsItWas) {
  // The customer's ranges match no entry of the lists: nothing is selected.
  AlertsRig rig(Customer("P", 7, 8));
  EXPECT_EQ(rig.screen.cmbHeight.ListIndex(), -1);
  rig.Do(ActionKind::Click, "tabAlerts", frmAlerts::kChildTab);
  rig.Do(ActionKind::Choose, "cmbWeight", "UNDER 60 LB");
  rig.Do(ActionKind::Click, "cmdOk");
  EXPECT_EQ(rig.Saved("@guest_height_range"), Variant(5)) << "the record's own range";
  EXPECT_EQ(rig.Saved("@guest_weight_range"), Variant(1));
}

TEST(Alerts, ARefusedSaveKeepsTheScreenOpenAndCancelSavesNothing) {
  AlertsRig refused(Customer("P", 2, 3), -1);
  refused.ui->Answer(ui::vbOK);
  refused.Do(ActionKind::Click, "cmdOk");
  EXPECT_TRUE(refused.screen.Visible());
  EXPECT_TRUE(refused.screen.Canceled());
  EXPECT_EQ(refused.ui->Prompts(), (std::vector<std::string>{"The customer is locked."}));

  AlertsRig rig;
  rig.Do(ActionKind::Click, "cmdCancel");
  EXPECT_TRUE(rig.screen.Canceled());
  EXPECT_TRUE(rig.host.db->Executions(kSave).empty());
}

}  // namespace
}  // namespace kiv

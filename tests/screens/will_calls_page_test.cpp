// The will calls page over the scripted host: the list, and Print's three refusals in their
// order before the host's will-call screen is shown and the list read again.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/will_calls_page.h"
#include "support/scripted_suite.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

const std::string kGetWillCalls = "KIV_SP_GetCustomerWillCalls";
const std::string kNoRegister = "Can not print will call without a register object.";
const std::string kNotCashedIn = "Register must be installed and cashed in to print will call from customer.";
const std::string kUnsavedPhoto =
    "New photographs must be saved before printing will call.\r\nPlease select save and then continue to print will "
    "call.";

struct WillCallRig : DetailRig {
  std::shared_ptr<test::ScriptedRegister> register_object = std::make_shared<test::ScriptedRegister>();
  std::shared_ptr<test::ScriptedWillCall> will_call = std::make_shared<test::ScriptedWillCall>();

  WillCallRig() {
    host.app->SetWillCall(will_call);
    host.OnProcedure(kGetWillCalls)
        .Row({{"will_call_no", 5}, {"access_no", 9}, {"long_description", "SEASON PASS PICKUP"},
              {"full_name", "ANN LEE"}, {"so_for_full_name", "ANN LEE"}, {"so_full_name", "BOB LEE"},
              {"valid_date", Date::FromParts(2026, 1, 3)}, {"status_id", "WAITING"}, {"dtm_printed", Variant::Null()},
              {"kiv_user_printed", Variant::Null()}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "6");
  }
  void Print(ui::MsgBoxResult answer = ui::vbOK) {
    ui->Answer(answer);
    Do(ActionKind::Click, "cmdButton1");
  }
};

TEST(WillCallsPage, ListsTheWillCallsUnderPrint) {
  WillCallRig rig;
  EXPECT_EQ(rig.host.db->AssignedValue(kGetWillCalls, "@customer_no"), Variant(42));
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "Print");
  const ui::Grid& grid = rig.screen->grdMaster;
  EXPECT_EQ(grid.FormatString(), WillCallsPage::kWillCallFormat);
  ASSERT_EQ(grid.Rows(), 2);
  EXPECT_EQ(grid.TextMatrix(1, 6), "01/03/2026");
  EXPECT_EQ(grid.TextMatrix(1, 8), "");
}

TEST(WillCallsPage, PrintRefusesInOrderUntilTheRegisterIsReadyAndThePhotoSaved) {
  struct Case {
    const char* what;
    bool has_register, installed, cashed_in, unsaved_photo;
    std::string prompt, title;
    int icon;
  };
  const std::vector<Case> cases = {
      {"no register, even with a photo pending", false, false, false, true, kNoRegister,
       "Register Module Required to Print WillCall", ui::vbInformation},
      {"not installed", true, false, true, true, kNotCashedIn, "Register Required to Print WillCall",
       ui::vbInformation},
      {"installed, not cashed in", true, true, false, true, kNotCashedIn, "Register Required to Print WillCall",
       ui::vbInformation},
      {"a new photograph not saved", true, true, true, true, kUnsavedPhoto, "Will Call Print Canceled", ui::vbCritical},
  };
  for (const Case& c : cases) {
    WillCallRig rig;
    if (c.has_register) rig.host.app->SetRegister(rig.register_object);
    rig.register_object->installed = c.installed;
    rig.register_object->cashed_in = c.cashed_in;
    if (c.unsaved_photo) rig.screen->SetPhotoWorkFile("/tmp/new-photo.jpg");
    rig.Print();
    ASSERT_EQ(rig.ui->Boxes().size(), 1u) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, c.prompt) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].title, c.title) << c.what;
    EXPECT_EQ(rig.ui->Boxes()[0].style, c.icon) << c.what;
    EXPECT_TRUE(rig.will_call->Calls().empty()) << c.what;
    EXPECT_EQ(rig.host.app->WillCallCreations(), 0u) << c.what;
  }
}

TEST(WillCallsPage, PrintHandsTheRegisterToTheWillCallScreenAndReadsTheListAgain) {
  WillCallRig rig;
  rig.host.app->SetRegister(rig.register_object);
  rig.register_object->control_no = 77;
  rig.register_object->register_id = "R9";
  rig.Do(ActionKind::Click, "cmdButton1");
  rig.Do(ActionKind::Click, "cmdButton1");
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_EQ(rig.host.app->WillCallCreations(), 1u) << "the object is kept for the next print";
  EXPECT_EQ(rig.will_call->app_server.lock(), rig.host.app);
  ASSERT_EQ(rig.will_call->CountOf("ShowWillCallScreen"), 2u);
  const std::vector<test::ServiceCall>& calls = rig.will_call->Calls();
  EXPECT_EQ(calls.back().args, (std::vector<Variant>{42, "R9", 77, 5, 9}));
  EXPECT_EQ(rig.host.db->Executions(kGetWillCalls).size(), 3u);
}

}  // namespace
}  // namespace kiv

// The engine's detail entry: where the customer comes from, what the editor is handed,
// and the household's addresses shared only after the clerk saved.
#include <gtest/gtest.h>

#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/component_screens.h"
#include "screens/detail/frm_customer_detail.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

test::Cells PersonRow(int32_t number, int32_t household) {
  test::Cells row = {{"customer_no", number},   {"household_no", household}, {"customer_type", "P"},
                     {"last_name", "LEE"},      {"first_name", "ANN"},       {"full_name", "ANN LEE"}};
  for (const char* column :
       {"company_name", "Zip", "account_id", "comment_note", "DOB", "Locked", "date_of_release", "has_image",
        "status_id", "discount_percentage", "commission_percentage", "household_primary", "Customer_Level_ID",
        "Gender", "do_not_mail", "customer_kind", "EMail", "work_phone", "cell_phone", "Occupation",
        "wedding_anniversary", "has_willcall", "has_club", "has_so", "has_reservation", "has_relationship"})
    row.push_back({column, Variant::Null()});
  return row;
}

struct ShowCustomerTest : ::testing::Test {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  CCustEngine engine;
  //! What the clerk does in the editor: OK after typing a postal code, or the close box.
  bool save = true;
  std::vector<bool> forecasts_hidden;

  ShowCustomerTest() {
    host.app->GrantAll();
    host.OnProcedure("KiV_SP_CUSTOMER_UpdateCustomer").Outputs({{"@customer_no", 5}});
    engine.SetUi(ui);
    InstallComponentScreens(engine);
    ui->OnModal([this](ui::Form& form) {
      forecasts_hidden.push_back(dynamic_cast<frmCustomerDetail&>(form).HideForecasts());
      if (!save) {
        form.Perform(ui::Action{ui::ActionKind::Close, "", "", {}, 0});
        return;
      }
      form.Perform(ui::Action{ui::ActionKind::Paste, "txtZip", "05401", {}, 0});
      form.Perform(ui::Action{ui::ActionKind::Click, "cmdOk", "", {}, 0});
    });
  }
};

TEST_F(ShowCustomerTest, OpensIntoTheCallersArgumentAndReturnsItWhetherSavedOrNot) {
  host.OnProcedure("KIV_SP_GetCustomer").Row(PersonRow(5, 5));
  host.app->Grant("CUSTSHOWFORECAS", false);
  engine.SetAppServer(host.app);
  ui::Form owner("frmHost");
  for (bool saved : {false, true}) {
    save = saved;
    CCustEngine::ShowCustomerArgs args;
    args.lCustomerNo = 5;
    args.oParentForm = saved ? &owner : nullptr;
    args.bShowInDetail = saved;  // ignored either way
    std::shared_ptr<CCustomer> result = engine.ShowCustomer(args);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result, args.oCustomer);
    EXPECT_FALSE(args.bError);
    // Only an open from the database exchanges the host objects; the cache hit does not.
    EXPECT_EQ(args.oDB, saved ? nullptr : host.db);
  }
  EXPECT_EQ(host.db->Executions("KIV_SP_GetCustomer").size(), 1u) << "the second show finds it in the cache";
  EXPECT_EQ(host.db->Executions("KiV_SP_CUSTOMER_UpdateCustomer").size(), 1u);
  EXPECT_EQ(ui->ModalOwners(), (std::vector<std::string>{"", "frmHost"}));
  EXPECT_EQ(forecasts_hidden, (std::vector<bool>{true, true})) << "the forecast right, inverted";
}

TEST_F(ShowCustomerTest, TheHouseholdSharesTheAddressesOnlyAfterTheClerkSaved) {
  engine.SetAppServer(host.app);
  auto spouse = std::make_shared<CCustomer>();
  spouse->SetCustomerNo(6);
  spouse->SetHouseholdNo(5);
  spouse->SetAddresses(std::make_shared<AddressCollection>());
  engine.AddToCache(spouse);
  const auto spouses_own = spouse->Addresses();
  for (bool saved : {false, true}) {
    save = saved;
    CCustEngine::ShowCustomerArgs args;
    args.oCustomer = std::make_shared<CCustomer>();
    args.oCustomer->SetCustomerNo(5);
    args.oCustomer->SetHouseholdNo(5);
    args.oCustomer->SetFullName("ANN LEE");
    engine.ShowCustomer(args);
    EXPECT_EQ(spouse->Addresses() == args.oCustomer->Addresses(), saved) << saved;
    EXPECT_EQ(spouse->Addresses() == spouses_own, !saved) << saved;
  }
}

}  // namespace
}  // namespace kiv

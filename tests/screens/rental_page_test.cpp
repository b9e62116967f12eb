// The rental contracts page over the scripted host: the equipment grid with its masks, and
// the reprint's row rule, its missing-definition message and its parameters.
#include <gtest/gtest.h>

#include <string>

#include "frm_customer_detail_rig.h"
#include "screens/detail/rental_page.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

struct RentalRig : DetailRig {
  std::shared_ptr<test::ScriptedReportService> reports = std::make_shared<test::ScriptedReportService>();
  RentalRig() {
    host.app->SetReportService(reports);
    host.OnProcedure("KIV_SP_CUSTOMER_GetRental")
        .Row({{"contract_no", 1003}, {"line_no", 1}, {"dtm_equip_out", Date::FromParts(2026, 2, 5, 8, 55, 0)},
              {"description", "SKI PACKAGE"}, {"status_id", "RETURNED"}, {"rent_start", Date::FromParts(2026, 2, 5)},
              {"rent_end", Date::FromParts(2026, 2, 7)}, {"days", 3}, {"amount", 126.0}, {"daily_rate", 42.0},
              {"dtm_return", Variant::Null()}, {"location_id", "BASE"}, {"return_location_id", Variant::Null()},
              {"serial_no", "SK003007"}, {"voucher_no", Variant::Null()}, {"din_setting", "4.5"},
              {"binding", "LOOK NX 11"}});
    Person(42);
    Open();
  }
};

TEST(RentalPage, ListsEachPieceWithStampsDatesAndMoneyMasked) {
  RentalRig rig;
  rig.Do(ActionKind::Click, "tabCustomer", "11");
  const ui::Grid& g = rig.screen->grdMaster;
  EXPECT_EQ(g.FormatString(), RentalPage::kGridFormat);
  const std::vector<std::string> row{"1003",     "02/05/2026 08:55 AM", "SKI PACKAGE", "RETURNED", "02/05/2026",
                                     "02/07/2026", "3",                  "$126.00",     "$42.00",   "",
                                     "BASE",     "",                    "SK003007",    "",         "4.5",
                                     "LOOK NX 11"};
  for (int c = 0; c < static_cast<int>(row.size()); ++c) EXPECT_EQ(g.TextMatrix(1, c), row[static_cast<size_t>(c)]) << c;
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_CUSTOMER_GetRental", "@customer_no"), Variant(42));
}

TEST(RentalPage, ReprintNeedsARowAndTheDefinitionThenPrintsTheContract) {
  EXPECT_EQ(RentalPage::ReportParameterText(1003, 42), "1003;42");
  EXPECT_EQ(RentalPage::ReportSelection(1003), "{kiv_rental_contract.contract_no} = 1003");

  RentalRig rig;
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "mnuReportRentalContract");
  EXPECT_EQ(rig.ui->Boxes().at(0).prompt, "Please select a rental contract row first");
  rig.Do(ActionKind::Click, "tabCustomer", "11");
  rig.screen->Perform(ui::Action{ActionKind::Select, "grdMaster", {}, {1}, 0});
  rig.Do(ActionKind::Click, "mnuReportRentalContract");
  EXPECT_EQ(rig.ui->Boxes().at(1).prompt,
            "You must define the customer rental contract report, CUST_RENT, in Report Maintenance");
  EXPECT_EQ(rig.reports->CountOf("PrintReport"), 0u);

  rig.reports->Define("CUST_RENT");
  rig.Do(ActionKind::Click, "cmdButton1");
  ASSERT_EQ(rig.reports->CountOf("PrintReport"), 1u);
  EXPECT_EQ(rig.reports->Calls().back().args.at(1), Variant("1003;42"));
  EXPECT_EQ(rig.reports->Calls().back().args.at(2), Variant("{kiv_rental_contract.contract_no} = 1003"));
}

}  // namespace
}  // namespace kiv

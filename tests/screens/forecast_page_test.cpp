// The forecast page over the scripted host: the grid as loaded, removal with and without a
// sales order, grid date edits, the save's numbers, nulls and stamps, Refresh, and the
// forecast report's checks and texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/forecast_page.h"

namespace kiv {
namespace {

using namespace forecast;
using test::DetailRig;
using ui::ActionKind;

const std::string kGetForecast = "KIV_SP_CUSTOMER_GetForecast";
const std::string kLongNote = "Arrives by coach from the airport, late on the first evening";

struct ForecastRig : DetailRig {
  ForecastPage* page = nullptr;
  std::shared_ptr<test::ScriptedReportService> reports = std::make_shared<test::ScriptedReportService>();

  ForecastRig() {
    host.app->SetReportService(reports);
    host.db->SetUser("ANNA", "pw");
    host.OnProcedure(kGetForecast)
        .Row({{"forecast_no", 7}, {"customer_no", 42}, {"fc_date_entered", Date::FromParts(2025, 9, 1, 10, 30, 0)},
              {"fc_arrival_date", Date::FromParts(2026, 3, 8)}, {"fc_depart_date", Date::FromParts(2026, 3, 14)},
              {"fc_nights", 6}, {"fc_people", 100}, {"fc_days", 600}, {"fc_rate", 80.0},
              {"fc_rate_after_commission", 10.0}, {"fc_early_booking_offer", true}, {"comment_note", kLongNote},
              {"salesorder_no", "10,12"}})
        .Row({{"forecast_no", 8}, {"customer_no", 42}, {"fc_arrival_date", Variant::Null()},
              {"fc_depart_date", Variant::Null()}, {"salesorder_no", Variant::Null()}});
    for (const auto& p : screen->Pages())
      if (auto* f = dynamic_cast<ForecastPage*>(p.get())) page = f;
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "12");
  }
  std::string Cell(int row, int col) const { return screen->grdMaster.TextMatrix(row, col); }
  std::string Edit(int row, int col, const std::string& value) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Edit, "grdMaster", value, {row}, col});
    return r.ok ? std::string() : r.error;
  }
  void Select(std::vector<int> rows) { screen->Perform(ui::Action{ActionKind::Select, "grdMaster", {}, rows, 0}); }
};

TEST(ForecastPage, LoadsEachForecastWithDatesMaskedProjectionsAndLongTextsMarked) {
  ForecastRig rig;
  ASSERT_NE(rig.page, nullptr);
  EXPECT_EQ(rig.screen->grdMaster.FormatString(), kGridFormat);
  EXPECT_EQ(rig.screen->grdMaster.Cols(), 33);
  EXPECT_EQ(rig.host.db->AssignedValue(kGetForecast, "@customer_no"), Variant(42));
  EXPECT_EQ(rig.Cell(1, kColDateEntered), "09/01/2025");
  EXPECT_EQ(rig.Cell(1, kColArrival), "03/08/2026");
  EXPECT_EQ(rig.Cell(1, kColSalesOrders), "10,12");
  EXPECT_EQ(rig.Cell(1, kColEBO), "True");
  EXPECT_EQ(rig.Cell(1, kColGross), "$48,000.00");
  EXPECT_EQ(rig.Cell(1, kColNet), "$43,200.00");
  EXPECT_EQ(rig.Cell(1, kColNotes), kLongNote.substr(0, ForecastPage::kCellLimit - 3) + "...");
  EXPECT_EQ(rig.page->Rows().Row(0).cells[kColNotes], kLongNote) << "the row keeps the whole text";
  EXPECT_EQ(rig.Cell(2, kColArrival), "");
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "&Add Forecast");
  EXPECT_EQ(rig.screen->cmdButton2.Caption(), "Remove Forecast");
}

TEST(ForecastPage, RemoveKeepsAForecastASalesOrderHasAndDeletesAFreeOneAtOnce) {
  struct Case {
    bool has_order;
    std::vector<std::string> prompts;
    bool deleted;
  } cases[] = {
      {true,
       {"Are you sure you want to delete all the selected forcasts?", "Sales Order 10Exists with this Forecast"},
       false},
      {false, {"Are you sure you want to delete all the selected forcasts?"}, true},
  };
  for (const Case& c : cases) {
    ForecastRig rig;
    auto orders = rig.host.OnQuery("SELECT * FROM kiv_sales_order WHERE forecast_no = 7");
    if (c.has_order) orders.Row({{"salesorder_no", 10}, {"forecast_no", 7}});
    else orders.Columns({test::Col("salesorder_no", host::adInteger)});
    rig.host.OnQuery("DELETE FROM kiv_customer_forecast WHERE forecast_no = 7");
    rig.Select({1});
    rig.ui->Answer(ui::vbYes).Answer(ui::vbOK);
    rig.Do(ActionKind::Click, "cmdButton2");
    EXPECT_EQ(rig.ui->Prompts(), c.prompts);
    const auto sql = rig.host.SqlTexts();
    EXPECT_EQ(std::count(sql.begin(), sql.end(), "DELETE FROM kiv_customer_forecast WHERE forecast_no = 7"),
              c.deleted ? 1 : 0);
    EXPECT_EQ(rig.page->Rows().Row(0).state == RowState::kRemoved, c.deleted);
    EXPECT_EQ(rig.page->Dirty(), c.deleted);
    if (c.has_order) {
      EXPECT_EQ(rig.ui->Boxes().back().title, "Delete Forecast Canceled");
    }
  }
}

TEST(ForecastPage, RemoveAnsweredNoTouchesNothing) {
  ForecastRig rig;
  rig.Select({1, 2});
  rig.ui->Answer(ui::vbNo);
  rig.Do(ActionKind::Click, "cmdButton2");
  EXPECT_EQ(rig.ui->Boxes().at(0).title, "Confirm Delete Forecast");
  EXPECT_TRUE(rig.host.SqlTexts().empty());
  EXPECT_FALSE(rig.page->Dirty());
}

TEST(ForecastPage, GridDatesRefuseWhatIsNoDateOrAReversedRangeAndStoreTheMask) {
  struct Case {
    int col;
    const char* typed;
    const char* title;  // empty: accepted
    const char* shown;
  } cases[] = {
      {kColArrival, "31/31/2026", "Invalid Arrival Date", "03/08/2026"},
      {kColDeparture, "yesterday", "Invalid Departure Date", "03/14/2026"},
      {kColArrival, "3/15/2026", "Invalid Date Range", "03/08/2026"},
      {kColDeparture, "2026-03-01", "Invalid Date Range", "03/14/2026"},
      {kColDeparture, "March 8, 2026", "", "03/08/2026"},
      {kColArrival, "3/14/26", "", "03/14/2026"},
  };
  for (const Case& c : cases) {
    ForecastRig rig;
    const bool refused = *c.title != '\0';
    if (refused) rig.ui->Answer(ui::vbOK);
    rig.Edit(1, c.col, c.typed);
    ASSERT_EQ(rig.ui->Boxes().size(), refused ? 1u : 0u) << c.typed;
    if (refused) {
      EXPECT_EQ(rig.ui->Boxes()[0].title, c.title) << c.typed;
    }
    EXPECT_EQ(rig.Cell(1, c.col), c.shown) << c.typed;
    EXPECT_EQ(rig.page->Dirty(), !refused) << c.typed;
  }
  ForecastRig rig;
  rig.ui->Answer(ui::vbOK);
  rig.Edit(1, kColArrival, "xx");
  EXPECT_EQ(rig.ui->Boxes().at(0).prompt,
            "Invalid Arrival Date.  Please reenter date in a valid date format.  Ex. 01/05/99, January 5, 1999, or "
            "01/05/1999.");
  // Only the two dates are edited in the grid.
  rig.Edit(1, kColNotes, "typed over");
  EXPECT_EQ(rig.page->Rows().Row(0).cells[kColNotes], kLongNote);
  EXPECT_FALSE(rig.page->Dirty());
}

TEST(ForecastPage, SaveNumbersANewForecastWritesEmptyDatesAsNullAndStampsEveryRow) {
  ForecastRig rig;
  const std::vector<test::ColumnSpec> columns = [] {
    std::vector<test::ColumnSpec> c;
    for (const char* name : {"forecast_no", "customer_no", "fc_date_entered", "fc_arrival_date", "fc_depart_date",
                             "fc_nights", "fc_people", "fc_days", "fc_rate", "fc_rate_after_commission",
                             "fc_early_booking_offer", "fc_origin", "fc_country", "fc_category", "fc_source",
                             "fc_manager", "fc_manager_2nd", "fc_property", "fc_segment", "fc_type", "fc_location",
                             "comment_note", "fc_ticket_instructions", "fc_ss_instructions",
                             "fc_activities_instructions", "fc_group_profile", "fc_confidential_comments",
                             "fc_last_edited_by", "fc_last_edited_on"})
      c.push_back(test::Col(name));
    return c;
  }();
  rig.host.OnQuery("SELECT * FROM kiv_customer_forecast WHERE forecast_no = 1").Columns(columns);
  rig.host.OnQuery("SELECT * FROM kiv_customer_forecast WHERE forecast_no = 7")
      .Columns(columns)
      .Values(std::vector<Variant>(columns.size(), Variant::Null()));
  rig.page->open_entry = [](frmCustomerDetail&, Cells& cells) {
    cells[kColDeparture] = "03/20/2026";
    cells[kColNights] = "4";
    cells[kColCategory] = "TOUROP";
    return true;
  };
  rig.Do(ActionKind::Click, "cmdButton1");
  rig.Edit(1, kColDeparture, "3/15/2026");
  ASSERT_TRUE(rig.page->Dirty());
  rig.Do(ActionKind::Click, "cmdSave");

  EXPECT_FALSE(rig.page->Dirty());
  const auto sequences = rig.host.db->CallsOf(test::CallKind::Sequence);
  ASSERT_EQ(sequences.size(), 1u) << "only the new forecast takes a number";
  EXPECT_EQ(sequences[0].text, "seq_forecast_no");
  const auto changed = rig.host.db->RecordsetFor("SELECT * FROM kiv_customer_forecast WHERE forecast_no = 7");
  const auto added = rig.host.db->RecordsetFor("SELECT * FROM kiv_customer_forecast WHERE forecast_no = 1");
  ASSERT_TRUE(changed && added);
  auto has = [](const std::vector<std::string>& ops, const std::string& op) {
    return std::find(ops.begin(), ops.end(), op) != ops.end();
  };
  const std::vector<std::string> a = added->OpsText(), c = changed->OpsText();
  EXPECT_EQ(a.front(), "AddNew");
  EXPECT_TRUE(has(a, "Set forecast_no=1"));
  EXPECT_TRUE(has(a, "Set customer_no=42"));
  EXPECT_TRUE(has(a, "Set fc_date_entered=#2026-03-15#"));
  EXPECT_TRUE(has(a, "Set fc_arrival_date=Null"));
  EXPECT_TRUE(has(a, "Set fc_depart_date=#2026-03-20#"));
  EXPECT_TRUE(has(a, "Set fc_category=\"TOUROP\""));
  EXPECT_TRUE(has(a, "Set fc_nights=4"));
  EXPECT_TRUE(has(a, "Set fc_people=Null"));
  EXPECT_TRUE(has(a, "Set fc_last_edited_by=\"ANNA\""));
  EXPECT_TRUE(has(a, "Update"));
  EXPECT_FALSE(has(c, "AddNew"));
  EXPECT_TRUE(has(c, "Set fc_depart_date=#2026-03-15#"));
  EXPECT_TRUE(has(c, "Set fc_date_entered=#2025-09-01#"));
  EXPECT_TRUE(has(c, "Set fc_last_edited_on=#2026-03-15#"));
  EXPECT_FALSE(rig.host.db->RecordsetFor("SELECT * FROM kiv_customer_forecast WHERE forecast_no = 8"))
      << "an untouched forecast is not written";
}

TEST(ForecastPage, RefreshAsksBeforeDroppingChanges) {
  ForecastRig rig;
  rig.Edit(1, kColDeparture, "3/15/2026");
  rig.ui->Answer(ui::vbNo);
  rig.Do(ActionKind::Click, "cmdRefresh");
  EXPECT_EQ(rig.ui->Boxes().at(0).prompt, ForecastPage::kRefreshPrompt);
  EXPECT_EQ(rig.ui->Boxes().at(0).title, "Confirm Refresh Forecast Data");
  EXPECT_EQ(rig.Cell(1, kColDeparture), "03/15/2026");
  rig.ui->Answer(ui::vbYes);
  rig.Do(ActionKind::Click, "cmdRefresh");
  EXPECT_EQ(rig.Cell(1, kColDeparture), "03/14/2026");
  EXPECT_FALSE(rig.page->Dirty());
}

TEST(ForecastPage, ReportNeedsARowAndItsDefinitionThenPrintsTheForecastsSelection) {
  EXPECT_EQ(ForecastPage::ReportParameterText(12), "12");
  EXPECT_EQ(ForecastPage::ReportSelection(12), "{kiv_customer_forecast.forecast_no} = 12");

  ForecastRig rig;
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "tabCustomer", "1");
  rig.Do(ActionKind::Click, "mnuReportsForecastReport");
  EXPECT_EQ(rig.ui->Boxes().at(0).prompt, "Please select a forecast row first");
  EXPECT_EQ(rig.ui->Boxes().at(0).title, "Select Forecast");

  rig.ui->ClearBoxes();
  rig.Do(ActionKind::Click, "tabCustomer", "12");
  rig.Select({1});
  rig.Do(ActionKind::Click, "mnuReportsForecastReport");
  EXPECT_EQ(rig.ui->Prompts(),
            std::vector<std::string>{"You must define the customer forecast report, CUST_FORECAST in Report Maintenance"});
  EXPECT_EQ(rig.reports->CountOf("PrintReport"), 0u);

  rig.reports->Define("CUST_FORECAST");
  rig.Do(ActionKind::Click, "mnuReportsForecastReport");
  ASSERT_EQ(rig.reports->CountOf("PrintReport"), 1u);
  const auto& print = rig.reports->Calls().back();
  EXPECT_EQ(print.args.at(1), Variant("7"));
  EXPECT_EQ(print.args.at(2), Variant("{kiv_customer_forecast.forecast_no} = 7"));
}

}  // namespace
}  // namespace kiv

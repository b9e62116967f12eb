// The forecast entry screen: the projection rules as a table, the date check, the notes
// tabs over their six columns, the lists' stored keys, and a forecast edited and handed back.
#include <gtest/gtest.h>

#include <string>

#include "core/vb_error.h"
#include "screens/forecast/frm_forecast.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using namespace forecast;
using ui::ActionKind;

TEST(ForecastProjection, SkierDaysAreA16BitProductThatFailsInsteadOfWrapping) {
  struct Case {
    const char* nights;
    const char* people;
    int expected;  // or the error number raised
    bool raises;
  } cases[] = {
      {"4", "25", 100, false},   {"181", "181", 32761, false}, {"200", "200", kErrOverflow, true},
      {"", "25", 0, false},      {"abc", "2", kErrTypeMismatch, true}, {"40000", "1", kErrOverflow, true},
      {"-200", "200", kErrOverflow, true},
  };
  for (const Case& c : cases) {
    if (!c.raises) {
      EXPECT_EQ(frmForecast::SkierDays(c.nights, c.people), c.expected) << c.nights << " x " << c.people;
      continue;
    }
    try {
      frmForecast::SkierDays(c.nights, c.people);
      ADD_FAILURE() << c.nights << " x " << c.people << " did not fail";
    } catch (const VbError& e) {
      EXPECT_EQ(e.Number(), c.expected) << c.nights << " x " << c.people;
    }
  }
}

TEST(ForecastProjection, NetIsGrossLessTheCommission) {
  struct Case {
    double rate;
    int16_t days;
    double commission, gross, net;
  } cases[] = {{80, 100, 0, 8000, 8000}, {80, 100, 100, 8000, 0}, {80, 100, 10, 8000, 7200}, {0, 100, 10, 0, 0}};
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(frmForecast::Gross(c.rate, c.days), c.gross);
    EXPECT_DOUBLE_EQ(frmForecast::Net(c.rate, c.days, c.commission), c.net) << c.commission;
  }
}

struct EntryRig {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<frmForecast> form = std::make_shared<frmForecast>();

  explicit EntryRig(Cells cells = EmptyCells()) {
    host.OnQuery(frmForecast::kCountrySql)
        .Row({{"Country_ID", "USA"}, {"Description", "United States"}})
        .Row({{"Country_ID", "CAN"}, {"Description", "Canada"}});
    host.OnProcedure("KIV_SP_GetGroupMembers")
        .Row({{"customer_no", 400}, {"full_name", "O'REILLY LODGE"}})
        .Row({{"customer_no", 401}, {"full_name", "STONE LODGING"}});
    form->SetUi(ui);
    form->SetDBConnection(host.db);
    form->SetErrorObject(host.errors);
    form->SetCustomerName("PEAK TOURS");
    form->SetForecast(std::move(cells));
    form->Load();
    form->Show();
  }
  void Do(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = form->Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << control << " " << text << ": " << r.error;
  }
};

TEST(frmForecast, ListsKeepTheirKeysWithPropertiesAfterNone) {
  EntryRig rig;
  EXPECT_EQ(rig.host.db->AssignedValue("KIV_SP_GetGroupMembers", "@customer_group_id"), Variant("LODGE"));
  ASSERT_EQ(rig.form->cmbProperty.ListCount(), 3);
  EXPECT_EQ(rig.form->cmbProperty.List(0), "<None>");
  EXPECT_EQ(rig.form->cmbProperty.List(1), "O'REILLY LODGE");
  rig.Do(ActionKind::Choose, "cmbCategory", "TRAVEL AGENT");
  rig.Do(ActionKind::Choose, "cmbProperty", "STONE LODGING");
  rig.Do(ActionKind::Choose, "cmbCountry", "Canada");
  rig.Do(ActionKind::Click, "cmdOK");
  ASSERT_TRUE(rig.form->Accepted());
  EXPECT_EQ(rig.form->Forecast()[kColCategory], "TRAVELAGNT");
  EXPECT_EQ(rig.form->Forecast()[kColProperty], "401");
  EXPECT_EQ(rig.form->Forecast()[kColCountry], "CAN");
}

TEST(frmForecast, ProjectionFailureIsReportedAndTheScreenGoesOn) {
  EntryRig rig;
  rig.Do(ActionKind::Type, "txtDayRate", "80");
  rig.Do(ActionKind::Type, "txtNights", "200");
  rig.Do(ActionKind::Type, "txtPeople", "200");
  EXPECT_EQ(rig.form->txtProjectedSkierDays.Text(), "");
  EXPECT_EQ(rig.form->lblProjectedGross.Caption(), "");
  EXPECT_EQ(rig.host.errors->Last().number, kErrOverflow);
  EXPECT_NE(rig.host.errors->Last().source.find("frmForecast"), std::string::npos);
  rig.Do(ActionKind::Paste, "txtPeople", "2");
  EXPECT_EQ(rig.form->txtProjectedSkierDays.Text(), "400");
  EXPECT_EQ(rig.form->lblProjectedGross.Caption(), "$32,000.00");
  rig.Do(ActionKind::Type, "txtCommissionRate", "100");
  EXPECT_EQ(rig.form->lblProjectedNet.Caption(), "$0.00");
}

TEST(frmForecast, DepartureBeforeArrivalIsRefusedTheSameDayIsNot) {
  EntryRig rig;
  rig.Do(ActionKind::Date, "dtArrivalDate", "2026-03-20");
  rig.Do(ActionKind::Date, "dtDepartureDate", "2026-03-20");
  EXPECT_TRUE(rig.ui->Boxes().empty());
  rig.ui->Answer(ui::vbOK).Answer(ui::vbOK);
  rig.Do(ActionKind::Date, "dtDepartureDate", "2026-03-19");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "The departure date must be greater than the arrival date.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Invalid Dates");
  rig.Do(ActionKind::Focus, "txtNights");
  rig.Do(ActionKind::Click, "cmdOK");
  EXPECT_EQ(rig.ui->Boxes().size(), 2u);
  EXPECT_FALSE(rig.form->Accepted());
  EXPECT_EQ(rig.form->ActiveControl(), &rig.form->dtDepartureDate);
}

TEST(frmForecast, NotesTabsShowAndKeepEachOfTheSixColumns) {
  Cells cells = EmptyCells();
  for (const NotesTab& tab : kNotesTabs) cells[tab.column] = std::string("was ") + tab.key;
  cells[kColForecastNo] = "12";
  cells[kColArrival] = "03/08/2026";
  EntryRig rig(cells);
  EXPECT_EQ(rig.form->lblForecastNo.Caption(), "12");
  EXPECT_EQ(rig.form->txtNotes.Text(), "was Notes");
  for (const NotesTab& tab : kNotesTabs) {
    rig.Do(ActionKind::Click, "tabNotes", tab.key);
    EXPECT_EQ(rig.form->txtNotes.Text(), std::string("was ") + tab.key);
    rig.Do(ActionKind::Paste, "txtNotes", std::string("now ") + tab.caption);
  }
  rig.Do(ActionKind::Click, "cmdOK");
  ASSERT_TRUE(rig.form->Accepted());
  for (const NotesTab& tab : kNotesTabs) EXPECT_EQ(rig.form->Forecast()[tab.column], std::string("now ") + tab.caption);
  EXPECT_EQ(rig.form->Forecast()[kColArrival], "03/08/2026");
  EXPECT_EQ(rig.form->Forecast()[kColForecastNo], "12");
}

}  // namespace
}  // namespace kiv

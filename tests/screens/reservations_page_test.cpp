// The reservations page over the scripted host: the two grids and their card columns, the
// tabs filtering by stored status, and the book and unbook rules with their messages.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"
#include "screens/detail/reservations_page.h"
#include "support/scripted_suite.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

const std::string kGetReservations = "KiV_SP_CUSTOMER_GetReservationByCustomer";
const std::string kGetLog = "KiV_SP_CUSTOMER_GetReservationLog";

test::Cells Reservation(int32_t header, int32_t res, const std::string& status) {
  return {{"res_header_no", header}, {"res_no", res}, {"res_start", Date::FromParts(2026, 2, 5)},
          {"status_id", status}, {"resource_description", "CONDO"}, {"mountain_id", "MAIN"},
          {"loc_description", "BASE"}, {"customer_name", "ANN LEE"}, {"employee_name", Variant::Null()},
          {"requested", "Y"}, {"salesorder_no", 7}, {"salesorder_line_no", 1}, {"cc_card_no", "1111"},
          {"x_card_no", "XXXXXXXXXXXX1111"}, {"exp_date", "12/27"}, {"lodge_cust_name", ""}, {"Phone", ""},
          {"coordinator_comment", ""}, {"comment_note", "NOTE"}};
}

struct ReservationRig : DetailRig {
  std::shared_ptr<test::ScriptedReservationService> service = std::make_shared<test::ScriptedReservationService>();

  explicit ReservationRig(bool with_service = true) {
    if (with_service) host.app->SetReservationService(service);
    host.OnProcedure(kGetReservations)
        .Row(Reservation(10, 101, "BOOKED"))
        .Row(Reservation(10, 102, "BOOKED"))
        .Row(Reservation(11, 103, "OPEN"))
        .Row(Reservation(12, 104, "CANCELLED"))
        .Row(Reservation(13, 105, "CANCELED"));
    host.OnProcedure(kGetLog)
        .Row({{"log_no", 2}, {"log_datetime", Date::FromParts(2026, 1, 9, 10, 0, 0)}, {"kiv_user", "clerk"},
              {"res_start", Date::FromParts(2026, 2, 5)}, {"status_id", "OPEN"}, {"resource_description", "CONDO"},
              {"mountain_id", "MAIN"}, {"loc_description", "BASE"}, {"customer_name", "ANN LEE"},
              {"employee_name", ""}, {"requested", ""}, {"salesorder_no", 7}, {"salesorder_line_no", 1},
              {"cc_card_no", "1111"}, {"x_card_no", "XXXXXXXXXXXX1111"}, {"exp_date", "12/27"},
              {"lodge_cust_name", ""}, {"Phone", ""}, {"coordinator_comment", ""}, {"comment_note", ""}});
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "8");
  }
  void Select(std::vector<int> rows) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Select, "grdMaster", {}, std::move(rows), 0});
    EXPECT_TRUE(r.ok) << r.error;
  }
  size_t Loads() const { return host.db->Executions(kGetReservations).size(); }
};

TEST(ReservationsPage, ListsTheBookedTabWithTheFirstRowsLog) {
  ReservationRig rig;
  EXPECT_EQ(rig.host.AssignmentsOf(kGetReservations),
            (std::vector<test::Assignment>{{"@customer_No", 42}, {"@kiv_user", rig.host.db->UserID()},
                                           {"@kiv_password", rig.host.db->UserPassword()}}));
  const ui::Grid& master = rig.screen->grdMaster;
  EXPECT_EQ(master.FormatString(), ReservationsPage::kReservationFormat);
  EXPECT_EQ(master.ColFormat(ReservationsPage::kColResDate), "MM/dd/yyyy");
  ASSERT_EQ(master.Rows(), 3) << "only the two booked reservations";
  EXPECT_EQ(master.DisplayText(1, ReservationsPage::kColResDate), "02/05/2026");
  EXPECT_EQ(master.TextMatrix(1, ReservationsPage::kColCardMasked), "XXXXXXXXXXXX1111");
  EXPECT_EQ(master.TextMatrix(1, ReservationsPage::kColCardShown), "1111-12/27");
  EXPECT_EQ(rig.host.db->AssignedValue(kGetLog, "@res_No"), Variant(101));

  const ui::Grid& log = rig.screen->grdDetail;
  EXPECT_EQ(log.FormatString(), ReservationsPage::kLogFormat);
  ASSERT_EQ(log.Rows(), 2);
  EXPECT_EQ(log.TextMatrix(1, ReservationsPage::kLogColStatus), "UNBOOKED") << "the store's OPEN";
  EXPECT_EQ(log.TextMatrix(1, 3), "02/05/2026");
}

TEST(ReservationsPage, ViewCCDataSwapsTheCardColumnsOfBothGrids) {
  ReservationRig rig;
  auto hidden = [&rig] {
    const ui::Grid& m = rig.screen->grdMaster;
    const ui::Grid& d = rig.screen->grdDetail;
    return std::vector<bool>{m.ColHidden(ReservationsPage::kColCardMasked), m.ColHidden(ReservationsPage::kColCardShown),
                             d.ColHidden(ReservationsPage::kLogColCardMasked),
                             d.ColHidden(ReservationsPage::kLogColCardShown)};
  };
  EXPECT_EQ(hidden(), (std::vector<bool>{false, true, false, true}));
  rig.Do(ActionKind::Click, "mnuToolsViewCCData");
  EXPECT_EQ(hidden(), (std::vector<bool>{true, false, true, false}));
  // Flipped while another page shows, the grids come back in step.
  rig.Do(ActionKind::Click, "tabCustomer", "1");
  rig.Do(ActionKind::Click, "mnuToolsViewCCData");
  rig.Do(ActionKind::Click, "tabCustomer", "8");
  EXPECT_EQ(hidden(), (std::vector<bool>{false, true, false, true}));
}

TEST(ReservationsPage, TabsListTheirOwnStatusAndCutTheLogBackToItsHeader) {
  ReservationRig rig;
  rig.Do(ActionKind::Click, "tabReservations", "UnBooked");
  ASSERT_EQ(rig.screen->grdMaster.Rows(), 2);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, ReservationsPage::kColResNo), "103");
  EXPECT_EQ(rig.screen->grdDetail.Rows(), 1);
  rig.Select({1});
  EXPECT_EQ(rig.screen->grdDetail.Rows(), 2) << "selecting the row loads its log";
  EXPECT_EQ(rig.host.db->AssignedValue(kGetLog, "@res_No", 1), Variant(103));
  rig.Do(ActionKind::Click, "tabReservations", "Cancelled");
  EXPECT_EQ(rig.screen->grdMaster.Rows(), 2) << "CANCELED with one L is no tab's key";
  EXPECT_EQ(rig.screen->grdDetail.Rows(), 1);
  EXPECT_EQ(rig.Loads(), 1u) << "switching tabs reads nothing again";
}

TEST(ReservationsPage, BookTakesASingleRowAndSkipsOnlyTheOneLCanceled) {
  ReservationRig rig;
  rig.Select({1, 2});
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdBookReservation");
  EXPECT_EQ(rig.ui->Prompts(),
            (std::vector<std::string>{"Please only select a single row before selecting book reservations."}));
  EXPECT_TRUE(rig.service->Calls().empty());

  // A row reading CANCELED (one L) is left alone; CANCELLED goes to the editor like any other.
  rig.screen->grdMaster.SetTextMatrix(1, ReservationsPage::kColStatus, "CANCELED");
  rig.Select({1});
  rig.Do(ActionKind::Click, "cmdBookReservation");
  EXPECT_TRUE(rig.service->Calls().empty());
  EXPECT_EQ(rig.Loads(), 1u);

  rig.Do(ActionKind::Click, "tabReservations", "Cancelled");
  rig.Select({1});
  rig.Do(ActionKind::Click, "cmdBookReservation");
  ASSERT_EQ(rig.service->Operations(), (std::vector<std::string>{"EditReservationByNo"}));
  EXPECT_EQ(rig.service->Calls()[0].args, (std::vector<Variant>{42, 12, 104}));
  EXPECT_EQ(rig.Loads(), 2u) << "the list is read again after the editor";
}

TEST(ReservationsPage, UnbookAsksWithYesAsDefaultAndOnlyYesUnbooks) {
  ReservationRig rig;
  rig.Select({1});
  rig.ui->Answer(ui::vbNo);
  rig.Do(ActionKind::Click, "cmdUnbookReservation");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  const test::ScriptedUi::Box& box = rig.ui->Boxes()[0];
  EXPECT_EQ(box.prompt, "Are you sure you want to unbook this reservation?");
  EXPECT_EQ(box.title, "Confirm UnBook");
  EXPECT_EQ(box.style, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton1);
  EXPECT_TRUE(rig.service->Calls().empty());

  rig.ui->Answer(ui::vbYes);
  rig.Do(ActionKind::Click, "cmdUnbookReservation");
  ASSERT_EQ(rig.service->Operations(), (std::vector<std::string>{"UnBookReservationByNo"}));
  EXPECT_EQ(rig.service->Calls()[0].args, (std::vector<Variant>{42, 101}));
  EXPECT_EQ(rig.Loads(), 2u);
}

TEST(ReservationsPage, UnbookWantsExactlyOneRowAndAnUnbookedRowAsksNothing) {
  ReservationRig rig;
  const std::string single = "Please only select a single row before selecting unbook.";
  rig.Select({1, 2});
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdUnbookReservation");
  rig.Do(ActionKind::Click, "tabReservations", "UnBooked");
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdUnbookReservation");  // nothing selected after the switch
  rig.Select({1});
  rig.Do(ActionKind::Click, "cmdUnbookReservation");  // an OPEN row is not booked
  EXPECT_EQ(rig.ui->Prompts(), (std::vector<std::string>{single, single}));
  EXPECT_TRUE(rig.service->Calls().empty());
}

TEST(ReservationsPage, WithoutTheHostsReservationServiceTheCommandsDoNothing) {
  ReservationRig rig(false);
  rig.Select({1});
  rig.ui->Answer(ui::vbYes);
  for (const char* command : {"cmdNewReservation", "cmdEditReservation", "cmdBookReservation", "cmdUnbookReservation"})
    rig.Do(ActionKind::Click, command);
  EXPECT_EQ(rig.Loads(), 3u) << "book and unbook reload; new and edit found no editor";
  EXPECT_EQ(rig.host.errors->Calls().size(), 0u);
}

TEST(ReservationsPage, PrintContractPrintsTheSelectedReservationThroughTheReportService) {
  ReservationRig rig;
  auto reports = std::make_shared<test::ScriptedReportService>();
  rig.Select({2});
  rig.Do(ActionKind::Click, "cmdPrintContract");  // no report service: nothing at all
  EXPECT_TRUE(rig.ui->Boxes().empty());

  rig.host.app->SetReportService(reports);
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdPrintContract");
  EXPECT_EQ(rig.ui->Prompts(),
            (std::vector<std::string>{"The reservation contract is not set up in Report Maintenance."}));
  reports->Define("CUST_RES");
  rig.Do(ActionKind::Click, "cmdPrintContract");
  ASSERT_EQ(reports->CountOf("PrintReport"), 1u);
  EXPECT_EQ(reports->Calls().back().args,
            (std::vector<Variant>{"CUST_RES", "res_no=102", "{kiv_reservation.reservation_no} = 102"}));
}

}  // namespace
}  // namespace kiv

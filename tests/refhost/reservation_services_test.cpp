// The reference host's reservation, access, register and will-call pieces on a real
// database: the access procedure's refusals and writes, the reservation service's changes
// each with a log row, the workstation's register states and will-call printing.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "refhost/ref_register_service.h"
#include "refhost/ref_reservation_editor.h"
#include "refhost/ref_reservation_service.h"
#include "refhost/ref_will_call_service.h"
#include "support/scripted_ui.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class ReservationServices : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, full_name, household_no) VALUES "
                 "(1, 'LEE', 'ANN', 'ANN LEE', 1), (2, 'POE', 'ED', 'ED POE', 2)");
    db_->Execute("INSERT INTO kiv_reservation (reservation_no, customer_no, arrival_date, status_id, description) "
                 "VALUES (10, 1, '2026-02-05', 'BOOKED', 'CONDO'), (11, 1, '2026-02-09', 'OPEN', 'ROOM')");
    db_->Execute("INSERT INTO kiv_access_product (access_no, customer_no, status_id, valid_from) VALUES "
                 "(7, 1, 'ACTIVE', '2025-11-15'), (8, 1, 'INACTIVE', '2025-11-15')");
    ui_->SetStrict(false);
  }
  int64_t LogRows(int res_no) {
    return NzLong(Scalar("SELECT COUNT(*) FROM kiv_reservation_log WHERE reservation_no = " + std::to_string(res_no)));
  }
  std::shared_ptr<host::Command> Lock(int32_t access_no, bool locked) {
    auto call = Procedure("KIV_SP_REGISTER_UpdateAccessTrx",
                          {{"@access_no", Variant(access_no)}, {"@trans_type_id", Variant("CONTROL")},
                           {"@kiv_user", Variant("CLERK")}, {"@computer", Variant("DESK2")},
                           {"@module", Variant("CUSTOMER")}, {"@update_action", Variant(locked ? "L" : "U")},
                           {"@message", Variant("LOST")}, {"@locked", Variant(locked)}});
    EXPECT_TRUE(Run(call));
    return call;
  }
  static std::string Text(const std::shared_ptr<host::Command>& c, const char* name) {
    return NzString(c->GetParameters()[name].Value());
  }
  std::shared_ptr<kiv::test::ScriptedUi> ui_ = std::make_shared<kiv::test::ScriptedUi>();
};

TEST_F(ReservationServices, UpdateAccessTrxRefusesWithItsMessageAndWritesOnlyARealChange) {
  struct Case {
    int32_t access_no;
    bool locked;
    std::string error;
  };
  const std::vector<Case> refusals = {{99, true, "Access product 99 does not exist."},
                                      {8, true, "Access product 8 is not active."},
                                      {7, false, "Access product 7 is not locked."}};
  for (const Case& c : refusals) {
    auto call = Lock(c.access_no, c.locked);
    EXPECT_EQ(NzLong(call->GetParameters()["@RETURN_VALUE"].Value()), -1) << c.error;
    EXPECT_EQ(Text(call, "@error_msg"), c.error);
  }
  EXPECT_EQ(Count("kiv_access_lock") + Count("kiv_access_history"), 0);

  auto lock = Lock(7, true);
  EXPECT_EQ(NzLong(lock->GetParameters()["@RETURN_VALUE"].Value()), 0);
  EXPECT_EQ(NzString(Scalar("SELECT message || '/' || changed_by || '/' || computer FROM kiv_access_lock")),
            "LOST/CLERK/DESK2");
  EXPECT_EQ(Text(Lock(7, true), "@error_msg"), "Access product 7 is already locked.");
  Lock(7, false);
  EXPECT_EQ(NzLong(Scalar("SELECT is_locked FROM kiv_access_lock WHERE access_no = 7")), 0);
  EXPECT_EQ(NzString(Scalar("SELECT group_concat(status_id) FROM kiv_access_history WHERE customer_no = 1")),
            "LOCKED,UNLOCKED");
}

TEST_F(ReservationServices, UnbookAndCancelChangeTheStatusWithALogRowAndOnlyWhenItChanges) {
  RefReservationService service(db_, "CLERK", ui_);
  EXPECT_FALSE(service.UnBookReservationByNo(2, 10)) << "another customer's reservation";
  EXPECT_TRUE(service.UnBookReservationByNo(1, 10));
  EXPECT_EQ(NzString(Scalar("SELECT status_id FROM kiv_reservation WHERE reservation_no = 10")), "OPEN");
  EXPECT_EQ(LogRows(10), 1);
  EXPECT_FALSE(service.UnBookReservationByNo(1, 10)) << "already unbooked: nothing changes";
  EXPECT_EQ(LogRows(10), 1);
  EXPECT_TRUE(service.CancelRentalReservation(10));
  EXPECT_EQ(NzString(Scalar("SELECT status_id || '/' || kiv_user FROM kiv_reservation_log WHERE reservation_no = 10 "
                            "ORDER BY log_no DESC LIMIT 1")),
            "CANCELLED/CLERK");
  EXPECT_FALSE(service.CancelRentalReservation(404));
}

TEST_F(ReservationServices, TheEditorWritesWhatTheClerkAcceptsAndNothingOnCancel) {
  RefReservationService service(db_, "CLERK", ui_);
  bool accept = false;
  ui_->OnModal([&](ui::Form& form) {
    auto& editor = dynamic_cast<RefReservationEditor&>(form);
    EXPECT_EQ(editor.cmbStatus.SelectedKey(), "OPEN");
    editor.cmbStatus.SetListIndex(editor.cmbStatus.FindKey("BOOKED"));
    editor.txtComment.SetText("CALLED BACK");
    (accept ? editor.cmdOK : editor.cmdCancel).FireClick();
  });
  EXPECT_FALSE(service.EditReservationByNo(1, 0, 11));
  EXPECT_EQ(LogRows(11), 0);
  accept = true;
  EXPECT_TRUE(service.EditReservationByNo(1, 11, 0)) << "the header's first reservation";
  EXPECT_EQ(NzString(Scalar("SELECT status_id || '/' || comment_note FROM kiv_reservation_log WHERE "
                            "reservation_no = 11")),
            "BOOKED/CALLED BACK");

  ui_->OnModal([](ui::Form& form) {
    auto& editor = dynamic_cast<RefReservationEditor&>(form);
    editor.txtResource.SetText("CABIN");
    editor.cmdOK.FireClick();
  });
  EXPECT_TRUE(service.EditReservations(2, 2));
  EXPECT_EQ(NzString(Scalar("SELECT status_id || '/' || description FROM kiv_reservation WHERE customer_no = 2")),
            "BOOKED/CABIN");
  EXPECT_EQ(NzLong(Scalar("SELECT COUNT(*) FROM kiv_reservation_log g JOIN kiv_reservation r USING (reservation_no) "
                          "WHERE r.customer_no = 2")),
            1);
}

TEST_F(ReservationServices, TheRegisterBelongsToTheWorkstationAndTakesEachState) {
  EXPECT_EQ(server_->GetRegister(), nullptr) << "a workstation without a register";
  const std::string here = conn_->ComputerName();
  RefRegisterService::SetState(*db_, "OTHER", RegisterState::kCashedIn);
  EXPECT_EQ(server_->GetRegister(), nullptr);
  RefRegisterService::SetState(*db_, here, RegisterState::kNotInstalled, "R7");
  auto reg = server_->GetRegister();
  ASSERT_NE(reg, nullptr);
  EXPECT_FALSE(reg->Installed());
  RefRegisterService::SetState(*db_, here, RegisterState::kInstalled);
  EXPECT_TRUE(reg->Installed());
  EXPECT_FALSE(reg->CashedIn());
  const int32_t before = reg->CurrentControlNo();
  RefRegisterService::SetState(*db_, here, RegisterState::kCashedIn);
  EXPECT_TRUE(reg->CashedIn());
  EXPECT_EQ(reg->RegisterId(), "R7");
  EXPECT_EQ(reg->CurrentControlNo(), before + 1) << "a cash-in opens a new control period";
  RefRegisterService::SetState(*db_, here, RegisterState::kNone);
  EXPECT_EQ(server_->GetRegister(), nullptr);
  EXPECT_FALSE(RegisterStateFromText("cashed in").has_value());
}

TEST_F(ReservationServices, PrintingMarksTheWillCallsAndWritesAnEscapedTicket) {
  db_->Execute("UPDATE kiv_customer SET full_name = '<b>ANN</b> LEE' WHERE customer_no = 1");
  db_->Execute("INSERT INTO kiv_will_call (will_call_no, customer_no, access_no, long_description, valid_date, "
               "status_id) VALUES (1, 1, 7, 'PASS PICKUP', '2026-01-03', 'WAITING'), "
               "(2, 1, 7, 'SECOND', '2026-01-04', 'WAITING'), (3, 2, 7, 'NOT HERS', '2026-01-04', 'WAITING')");
  RefWillCallService service(db_, "CLERK", ui_, nullptr);
  std::string ticket;
  ui_->OnModal([&](ui::Form& form) {
    auto& screen = dynamic_cast<RefWillCallScreen&>(form);
    EXPECT_EQ(screen.grdWillCalls.Rows(), 3) << "her two will calls, not yet printed";
    EXPECT_EQ(screen.grdWillCalls.SelectedRow(0), 2) << "the one asked for";
    screen.cmdPrint.FireClick();
    ticket = screen.lblTicket.Caption();
    EXPECT_EQ(screen.grdWillCalls.Rows(), 2);
    screen.cmdClose.FireClick();
  });
  EXPECT_TRUE(service.ShowWillCallScreen(1, "R1", 5, 2, 7));
  EXPECT_EQ(NzString(Scalar("SELECT group_concat(will_call_no || ':' || kiv_user_printed) FROM kiv_will_call WHERE "
                            "dtm_printed IS NOT NULL")),
            "2:CLERK");
  ASSERT_TRUE(std::filesystem::exists(ticket)) << ticket;
  std::stringstream html;
  html << std::ifstream(ticket).rdbuf();
  EXPECT_NE(html.str().find("&lt;b&gt;ANN&lt;/b&gt; LEE"), std::string::npos);
  EXPECT_TRUE(service.PrintWillCalls(1, {2, 3}, "R1", 5).empty()) << "printed already, or another customer's";
  std::filesystem::remove_all(std::filesystem::path(ticket).parent_path());
}

}  // namespace
}  // namespace kiv::refhost::testing

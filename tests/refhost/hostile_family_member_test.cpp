// Hostile names typed into the related-customer screen on a real database: each member is
// stored with the name exactly as the screen sent it, and nothing else in the database moves.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/text.h"
#include "records/c_customer.h"
#include "screens/related/frm_related_customer.h"
#include "hostile_texts.h"
#include "support/scripted_ui.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class HostileFamilyMember : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_relation (rel_type_id, Description) VALUES ('CHILD', 'Child'), "
                 "('EMPLOYEE', 'Employee')");
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, full_name, household_no, "
                 "household_primary, Zip) VALUES (1, 'SMITH', 'ANN', 'ANN SMITH', 1, 1, '05401')");
    db_->Execute("UPDATE kiv_sequence SET last_no = 1 WHERE sequence_name = 'seq_customer_no'");
  }
};

TEST_F(HostileFamilyMember, EveryNameIsStoredAsTheScreenSentIt) {
  auto parent = std::make_shared<CCustomer>();
  parent->SetCustomerNo(1);
  parent->SetHouseholdNo(1);
  parent->SetLastName("SMITH");
  parent->SetFullName("ANN SMITH");
  auto ui = std::make_shared<test::ScriptedUi>();
  ui->SetStrict(false);
  frmRelatedCustomer screen;
  screen.SetUi(ui);
  screen.SetDBConnection(conn_);
  screen.SetErrorObject(server_->Errors());
  screen.SetParentCustomer(parent);
  screen.Load();
  screen.Show();

  int added = 0;
  for (const std::string& text : HostileTexts(24, 5)) {
    screen.Perform(ui::Action{ui::ActionKind::Paste, "txtFirstName", text, {}, 0});
    screen.Perform(ui::Action{ui::ActionKind::Paste, "txtLastName", text, {}, 0});
    screen.Perform(ui::Action{ui::ActionKind::Choose, "lstRelationship", "CHILD", {}, 0});
    const std::string first = UCase(screen.txtFirstName.Text());
    const std::string last = UCase(screen.txtLastName.Text());
    if (Trim(first).empty() || Trim(last).empty()) continue;  // refused by the screen's checks
    screen.Perform(ui::Action{ui::ActionKind::Click, "cmdAdd", "", {}, 0});
    ++added;
    const std::string n = std::to_string(1 + added);
    // A name longer than its column is cut by the screen, never by the database.
    const std::string stored_first = NzString(Scalar("SELECT first_name FROM kiv_customer WHERE customer_no = " + n));
    const std::string stored_last = NzString(Scalar("SELECT last_name FROM kiv_customer WHERE customer_no = " + n));
    EXPECT_EQ(stored_first, first.size() <= 40 ? first : first.substr(0, stored_first.size())) << text;
    EXPECT_EQ(stored_last, last.size() <= 50 ? last : last.substr(0, stored_last.size())) << text;
    EXPECT_LE(stored_first.size(), 40u);
    EXPECT_LE(stored_last.size(), 50u);
    EXPECT_EQ(NzString(Scalar("SELECT full_name FROM kiv_customer WHERE customer_no = " + n)),
              stored_first + " " + stored_last)
        << text;
    EXPECT_EQ(NzLong(Scalar("SELECT household_no FROM kiv_customer WHERE customer_no = " + n)), 1) << text;
  }
  EXPECT_GT(added, 10);
  // One member a name: the parent, the members and their relationships, nothing more.
  EXPECT_EQ(Count("kiv_customer"), 1 + added);
  EXPECT_EQ(Count("kiv_customer_rel"), added);
  EXPECT_EQ(NzString(Scalar("SELECT first_name FROM kiv_customer WHERE customer_no = 1")), "ANN");
  EXPECT_EQ(NzString(Scalar("PRAGMA integrity_check")), "ok");
}

}  // namespace
}  // namespace kiv::refhost::testing

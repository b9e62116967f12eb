// The related-customer screen over the scripted host: the member procedure filled by
// position whatever the server's list looks like, the checks in their order, and the
// fields made ready for the next member.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "records/c_customer.h"
#include "screens/related/frm_related_customer.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv {
namespace {

using test::Assignment;
using test::ParamSpec;
using ui::ActionKind;

const std::string kProcedure = "SP_INSERTCUSTOMER_ADD_FAMILY";

const std::vector<ParamSpec> kFullList{
    "@RETURN_VALUE", test::In("@customer_no"), test::In("@last_name", host::adVarChar, 50),
    test::In("@first_name", host::adVarChar, 40), test::In("@full_name", host::adVarChar, 100), "@dob", "@gender",
    "@rel_type_id", "@email", "@zip", "@household_no", "@user_id", test::Out("@new_customer_no"),
    test::Out("@message")};

struct RelatedRig {
  test::ScriptedHost host;
  std::shared_ptr<test::ScriptedUi> ui = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<CCustomer> parent = std::make_shared<CCustomer>();
  frmRelatedCustomer screen;

  //! `first` scripts the host ahead of the rig's own answers.
  explicit RelatedRig(std::vector<ParamSpec> params = kFullList,
                      const std::function<void(test::ScriptedHost&)>& first = nullptr) {
    if (first) first(host);
    host.OnQuery(frmRelatedCustomer::kRelationshipSql)
        .Row({{"rel_type_id", "CHILD"}, {"Description", "Child"}})
        .Row({{"rel_type_id", "EMPLOYEE"}, {"Description", "Employee"}})
        .Row({{"rel_type_id", "SPOUSE"}, {"Description", "Spouse"}});
    host.OnProcedure(kProcedure).Params(std::move(params));
    parent->SetCustomerNo(42);
    parent->SetHouseholdNo(40);
    parent->SetLastName("LEE");
    parent->SetFullName("BOB LEE");
    parent->SetZip("05401");
    screen.SetUi(ui);
    screen.SetDBConnection(host.db);
    screen.SetErrorObject(host.errors);
    screen.SetParentCustomer(parent);
    screen.Load();
    screen.Show();
  }

  void Do(ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen.Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << control << " " << text << ": " << r.error;
  }
  //! Ann, female, child of the parent, born 6 May 2010.
  void TypeAnn() {
    Do(ActionKind::Type, "txtFirstName", "ann");
    screen.optGender.SetValue(frmRelatedCustomer::kGenderFemale);
    screen.dtDOB.SetValue(Date::FromParts(2010, 5, 6));
    Do(ActionKind::Choose, "lstRelationship", "CHILD");
  }
  std::vector<Assignment> Sent() const { return host.db->AssignmentsOf(kProcedure); }
};

TEST(RelatedCustomer, OpensOnTheParentWithoutTheEmployeeRelationship) {
  RelatedRig rig;
  EXPECT_EQ(rig.screen.Caption(), "Add Family Member of BOB LEE");
  EXPECT_EQ(rig.screen.txtLastName.Text(), "LEE");
  ASSERT_EQ(rig.screen.lstRelationship.ListCount(), 2);
  EXPECT_EQ(rig.screen.lstRelationship.List(0), "Child\tCHILD");
  EXPECT_EQ(rig.screen.lstRelationship.ItemKey(1), "SPOUSE");
  // The boxes take no more than the procedure's parameters hold.
  EXPECT_EQ(rig.screen.txtLastName.MaxLength(), 50);
  EXPECT_EQ(rig.screen.txtFirstName.MaxLength(), 40);
  EXPECT_EQ(rig.screen.txtFullName.MaxLength(), 100);
}

TEST(RelatedCustomer, FillsTheProcedureByPositionAfterTheReturnValue) {
  RelatedRig rig;
  rig.TypeAnn();
  EXPECT_EQ(rig.screen.txtFullName.Text(), "ANN LEE");
  rig.Do(ActionKind::Click, "cmdOK");
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_TRUE(rig.screen.Saved());
  EXPECT_FALSE(rig.screen.Visible());
  const std::vector<Assignment> expected{
      {"@customer_no", 42},          {"@last_name", "LEE"},         {"@first_name", "ANN"},
      {"@full_name", "ANN LEE"},     {"@dob", Date::FromParts(2010, 5, 6)}, {"@gender", "F"},
      {"@rel_type_id", "CHILD"},     {"@email", Variant::Null()},   {"@zip", "05401"},
      {"@household_no", 40},         {"@user_id", "TESTUSER"}};
  EXPECT_EQ(rig.Sent(), expected);
}

TEST(RelatedCustomer, AListWithoutReturnValueOrWithFewerParametersTakesWhatFits) {
  {
    // No return value listed: the first value goes to the first parameter.
    RelatedRig rig({"@parent", "@last", "@first", "@full", "@dob", "@gender", "@rel", "@spare", "@zip", "@hh",
                    "@user", "@extra"});
    rig.TypeAnn();
    rig.Do(ActionKind::Click, "cmdOK");
    const std::vector<Assignment> sent = rig.Sent();
    ASSERT_EQ(sent.size(), 11u);
    EXPECT_EQ(sent[0], (Assignment{"@parent", 42}));
    EXPECT_EQ(sent[5], (Assignment{"@gender", "F"}));
    EXPECT_EQ(sent[10], (Assignment{"@user", "TESTUSER"}));
  }
  {
    RelatedRig rig({"@RETURN_VALUE", "@parent", "@last", "@first"});
    rig.TypeAnn();
    rig.Do(ActionKind::Click, "cmdOK");
    EXPECT_EQ(rig.Sent(), (std::vector<Assignment>{{"@parent", 42}, {"@last", "LEE"}, {"@first", "ANN"}}));
    EXPECT_TRUE(rig.screen.Saved());
  }
}

TEST(RelatedCustomer, ChecksStopAtTheFirstMissingFieldAndKeepTheClerkThere) {
  struct Case {
    const char* first;
    const char* last;
    const char* prompt;
    const char* title;
    const char* focus;
  };
  const Case cases[] = {
      {"", "", "The first name is required to save this record.", "Invalid First Name", "txtFirstName"},
      {"ann", "", "The last name is required to save this record.", "Invalid Last Name", "txtLastName"},
      {"ann", "lee", "A relationship is required to save this record.", "Invalid Relationship",
       "lstRelationship"},
  };
  for (const Case& c : cases) {
    RelatedRig rig;
    rig.Do(ActionKind::Paste, "txtFirstName", c.first);
    rig.Do(ActionKind::Paste, "txtLastName", c.last);
    rig.Do(ActionKind::Focus, "cmdAdd");
    rig.ui->Answer(ui::vbOK);
    rig.Do(ActionKind::Click, "cmdAdd");
    ASSERT_EQ(rig.ui->Boxes().size(), 1u) << c.prompt;
    EXPECT_EQ(rig.ui->Boxes()[0].prompt, c.prompt);
    EXPECT_EQ(rig.ui->Boxes()[0].title, c.title);
    EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbInformation);
    ASSERT_NE(rig.screen.ActiveControl(), nullptr);
    EXPECT_EQ(rig.screen.ActiveControl()->Name(), c.focus);
    EXPECT_TRUE(rig.host.db->Executions(kProcedure).empty());
    EXPECT_FALSE(rig.screen.Saved());
  }
}

TEST(RelatedCustomer, AddNextMemberStartsTheNextOneAndARefusalKeepsTheScreen) {
  // The first member is created, the second refused by the database.
  RelatedRig rig(kFullList, [](test::ScriptedHost& host) {
    host.OnProcedure(kProcedure).Params(kFullList).Outputs({{"@RETURN_VALUE", 0}}).Once();
    host.OnProcedure(kProcedure).Params(kFullList).Outputs({{"@RETURN_VALUE", -1}, {"@message", "No room."}});
  });
  rig.TypeAnn();
  rig.Do(ActionKind::Click, "cmdAdd");
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_TRUE(rig.screen.Saved());
  EXPECT_TRUE(rig.screen.Visible());
  EXPECT_EQ(rig.screen.txtFirstName.Text(), "");
  EXPECT_EQ(rig.screen.txtFullName.Text(), "");
  EXPECT_EQ(rig.screen.txtLastName.Text(), "LEE");
  EXPECT_EQ(rig.screen.optGender.Value(), -1);
  EXPECT_FALSE(rig.screen.dtDOB.HasValue());
  EXPECT_EQ(rig.screen.lstRelationship.ListIndex(), -1);

  rig.TypeAnn();
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdOK");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "No room.");
  EXPECT_TRUE(rig.screen.Visible());
  EXPECT_EQ(rig.screen.txtFirstName.Text(), "ann");
}

}  // namespace
}  // namespace kiv

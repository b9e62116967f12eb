// The general page's field rules: keys and cleaners, Enter, the name confirmations and
// the full-name rule, Esc, the moving cancel button, the postal-code lookup, person or
// company, and Clear.
#include <gtest/gtest.h>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

size_t ZipLookups(DetailRig& rig) {
  size_t n = 0;
  for (const std::string& sql : rig.host.SqlTexts()) n += sql.find("kiv_zip_code") != std::string::npos;
  return n;
}

TEST(CustomerDetailFields, TypedAndPastedTextIsFilteredAndCasedPerField) {
  struct Case {
    const char* field;
    bool paste;
    const char* text;
    const char* expected;
  } cases[] = {
      {"txtPhone", false, "a1 2.3-(4)", "123-(4)"},
      {"txtPhone", true, "802 555.0100 ext", "8025550100"},
      {"txtStreet1", false, "b#1 .", "B1 ."},
      {"txtStreet1", true, "12 elm st. #4", "12 elm st. 4"},
      {"txtEMail", false, "A.B_C-D@X!", "a.b_c-d@x"},
      {"txtZip", false, "a1Q", "A1Q"},
      {"txtFirstName", false, "o'ann", "OANN"},
  };
  for (const Case& c : cases) {
    DetailRig rig;
    rig.Person();
    rig.Open();
    rig.Do(ActionKind::Paste, c.field, "");
    rig.Do(c.paste ? ActionKind::Paste : ActionKind::Type, c.field, c.text);
    EXPECT_EQ(rig.screen->Query(c.field, "text").value, c.expected) << c.field << " " << c.text;
    EXPECT_TRUE(rig.screen->CustomerChanged()) << c.field;
  }
}

TEST(CustomerDetailFields, EachBoxTakesItsLongestTextFromTheParameterItIsSavedThrough) {
  DetailRig rig;
  rig.host.OnProcedure("KiV_SP_CUSTOMER_UpdateCustomer")
      .Params({test::In("@occupation", host::adVarChar, 40), test::In("@comment_note", host::adVarChar, 2000),
               test::In("@email", host::adVarChar, 0)});
  rig.host.OnProcedure("KIV_SP_UpdateAddress").Params({test::In("@zip", host::adVarChar, 15)});
  rig.Person();
  rig.Open();
  EXPECT_EQ(rig.screen->txtOccupation.MaxLength(), 40);
  EXPECT_EQ(rig.screen->txtCommentNote.MaxLength(), 2000);
  EXPECT_EQ(rig.screen->txtZip.MaxLength(), 15);
  EXPECT_EQ(rig.screen->txtEMail.MaxLength(), 0) << "a parameter without a size sets no limit";
  rig.Type("txtOccupation", std::string(45, 'x'));
  EXPECT_EQ(rig.screen->txtOccupation.Text(), std::string(40, 'x'));
}

TEST(CustomerDetailFields, EnterMovesOnExceptInTheNoteWhereItMeansOk) {
  DetailRig rig;
  rig.host.OnProcedure(test::kUpdateCustomer).Outputs({{"@customer_no", 42}});
  rig.Person();
  rig.Open();
  rig.Key("txtCity", "Enter");
  EXPECT_EQ(rig.Focus(), "txtState");
  EXPECT_EQ(rig.screen->txtCity.Text(), "BURLINGTON");
  rig.Key("txtDefaultDiscount", "Enter");
  EXPECT_NE(rig.Focus(), "txtDefaultDiscount");

  rig.Type("txtCommentNote", "VIP");
  rig.Key("txtCommentNote", "Ctrl+Enter");
  rig.Type("txtCommentNote", "x");
  EXPECT_EQ(rig.screen->txtCommentNote.Text(), "VIP\r\nx");
  EXPECT_TRUE(rig.screen->Visible());
  rig.Key("txtCommentNote", "Enter");
  EXPECT_FALSE(rig.screen->Visible()) << "Enter in the note saves and closes";
  EXPECT_EQ(rig.customer->CommentNote(), "VIP\r\nx");
}

TEST(CustomerDetailFields, TheLastNameQuestionIsAskedOncePerFillingAndNoLeavesAsCancel) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.ui->Answer(ui::vbYes);
  rig.Type("txtLastName", "SON");
  EXPECT_EQ(rig.ui->Prompts(), std::vector<std::string>{"Are you sure you want to change this customer's last name?"});
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Confirm Last Name Change");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ANN LEESON");
  EXPECT_TRUE(rig.screen->CustomerChanged());

  rig.Open();
  rig.ui->Answer(ui::vbNo);
  rig.Type("txtLastName", "XY");  // the Y arrives after the screen closed
  EXPECT_EQ(rig.ui->Boxes().size(), 2u) << "filling again forgets the Yes";
  EXPECT_TRUE(rig.screen->Cancelled() && !rig.screen->Visible());
  EXPECT_EQ(rig.host.db->Executions("KIV_SP_GetCustomer").size(), 1u) << "No reloads the record";

  DetailRig fresh;
  fresh.Person(0);
  fresh.Open();
  fresh.Type("txtLastName", "x");
  EXPECT_TRUE(fresh.ui->Boxes().empty()) << "a new customer is never asked";
}

TEST(CustomerDetailFields, TheFullNameFollowsTheNamesUntilTheClerkTypesInIt) {
  DetailRig rig;
  rig.Person(0);
  rig.customer->SetFirstName("");
  rig.customer->SetLastName("");
  rig.customer->SetFullName("");
  rig.Open();
  rig.Type("txtFirstName", "ann");
  rig.Type("txtLastName", "lee");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ANN LEE");
  rig.screen->txtFirstName.SetSelStart(1);
  rig.Type("txtFirstName", "b");  // cleaned in the middle: the caret stays after the b
  EXPECT_EQ(rig.screen->txtFirstName.Text() + "@" + std::to_string(rig.screen->txtFirstName.SelStart()), "ABNN@2");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ABNN LEE");
  EXPECT_FALSE(rig.screen->txtFullName.DataChanged());
  rig.Type("txtFullName", " JR");
  rig.Type("txtFirstName", "E");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ABNN LEE JR");
}

TEST(CustomerDetailFields, EscRestoresAChangedNameThenLeavesAndTheCancelButtonStepsAside) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Type("txtFirstName", "X");
  EXPECT_FALSE(rig.screen->cmdCancel.Cancel()) << "Esc must reach the name field";
  rig.Key("txtFirstName", "Esc");
  EXPECT_EQ(rig.screen->txtFirstName.Text(), "ANN");
  EXPECT_TRUE(rig.screen->Visible());
  rig.Do(ActionKind::Focus, "txtCity");
  EXPECT_TRUE(rig.screen->cmdCancel.Cancel());
  rig.Key("txtFirstName", "Esc");
  EXPECT_TRUE(rig.screen->Cancelled() && !rig.screen->Visible());
}

TEST(CustomerDetailFields, ThePostalCodeLookupFillsOnlyEmptyFieldsOfTheHomeCountry) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Paste, "txtCity", "WINOOSKI");
  rig.Do(ActionKind::Focus, "txtZip");
  rig.Do(ActionKind::Focus, "txtEMail");
  EXPECT_EQ(ZipLookups(rig), 1u);
  EXPECT_EQ(rig.screen->txtCity.Text() + "/" + rig.screen->txtPhone.Text(), "WINOOSKI/802-555-0100");
  EXPECT_EQ(rig.screen->txtState.Text(), "VT");
  EXPECT_EQ(rig.customer->PrimaryAddress()->State(), "VT") << "the filled field lands in the address";

  rig.Do(ActionKind::Paste, "cmbCountry", "CAN");
  rig.Do(ActionKind::Focus, "txtZip");
  rig.Do(ActionKind::Focus, "txtEMail");
  EXPECT_EQ(ZipLookups(rig), 1u) << "no lookup for another country";
}

TEST(CustomerDetailFields, LowerCaseQLooksUpBeforeItIsTypedAndUpperCaseQDoesNot) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Paste, "txtState", "");
  rig.screen->txtZip.SetFocus();
  rig.screen->txtZip.SetSelStart(5);
  rig.Type("txtZip", "Q");
  EXPECT_EQ(ZipLookups(rig), 0u);
  EXPECT_EQ(rig.screen->txtZip.Text(), "05401Q");
  rig.Do(ActionKind::Paste, "txtZip", "05401");
  rig.Type("txtZip", "q");
  EXPECT_EQ(ZipLookups(rig), 1u);
  EXPECT_EQ(rig.screen->txtState.Text(), "VT");
  EXPECT_EQ(rig.screen->txtZip.Text(), "05401q");
}

TEST(CustomerDetailFields, SwitchingToCompanyClearsThePersonNamesAndClearEmptiesTheAddress) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Click, "cmdType", "Company Type");
  EXPECT_EQ(rig.screen->txtLastName.Text() + rig.screen->txtFirstName.Text() + rig.screen->txtFullName.Text(), "");
  EXPECT_EQ(rig.Focus(), "txtCompanyName");

  rig.Do(ActionKind::Click, "cmdClearAddress");
  const CAddress& a = *rig.customer->PrimaryAddress();
  EXPECT_EQ(a.AddressLine1() + a.City() + a.Zip() + a.Phone() + a.CountryID(), "");
  EXPECT_TRUE(a.DataChanged());
}

}  // namespace
}  // namespace kiv

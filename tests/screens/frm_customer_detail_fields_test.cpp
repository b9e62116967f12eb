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
      {"txtWorkPhone", false, "x5-6", "5-6"},
      {"txtStreet1", false, "b#1 .", "B1 ."},
      {"txtStreet1", true, "12 elm st. #4", "12 elm st. 4"},
      {"txtEMail", false, "A.B_C-D@X!", "a.b_c-d@x"},
      {"txtZip", false, "a1Q", "A1Q"},
      {"txtCity", true, "st. john's", "st. johns"},
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

TEST(CustomerDetailFields, CleaningInTheMiddleKeepsTheCaret) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.screen->txtFirstName.SetFocus();
  rig.screen->txtFirstName.SetSelStart(1);
  rig.Type("txtFirstName", "b");
  EXPECT_EQ(rig.screen->txtFirstName.Text(), "ABNN");
  EXPECT_EQ(rig.screen->txtFirstName.SelStart(), 2);
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ABNN LEE");
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
  EXPECT_EQ(rig.ui->Boxes()[0].style, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2);
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ANN LEESON");
  EXPECT_TRUE(rig.screen->CustomerChanged());

  rig.Open();
  rig.ui->Answer(ui::vbNo);
  rig.Type("txtLastName", "X");
  EXPECT_EQ(rig.ui->Boxes().size(), 2u) << "filling again forgets the Yes";
  EXPECT_TRUE(rig.screen->Cancelled());
  EXPECT_FALSE(rig.screen->Visible());
  EXPECT_EQ(rig.host.db->Executions("KIV_SP_GetCustomer").size(), 1u) << "No reloads the record";

  DetailRig fresh;
  fresh.Person(0);
  fresh.Open();
  fresh.Type("txtLastName", "x");
  EXPECT_TRUE(fresh.ui->Boxes().empty()) << "a new customer is never asked";
}

TEST(CustomerDetailFields, TheCompanyNameIsConfirmedAndCarriedIntoAnUntouchedFullName) {
  DetailRig rig;
  rig.Person();
  rig.customer->SetCustomerType("C");
  rig.customer->SetCompanyName("ACME");
  rig.customer->SetFullName("ACME");
  rig.Open();
  rig.ui->Answer(ui::vbYes);
  rig.Type("txtCompanyName", " inc");
  EXPECT_EQ(rig.ui->Boxes().at(0).title, "Confirm Company Name Change");
  EXPECT_EQ(rig.screen->txtCompanyName.Text(), "ACME INC");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ACME INC");
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
  EXPECT_FALSE(rig.screen->txtFullName.DataChanged());
  rig.Type("txtFullName", " JR");
  rig.Type("txtFirstName", "E");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "ANN LEE JR");
}

TEST(CustomerDetailFields, EscRestoresAChangedNameThenLeavesAndTheCancelButtonStepsAside) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Type("txtFirstName", "X");
  EXPECT_FALSE(rig.screen->cmdCancel.Cancel()) << "Esc must reach the name field";
  rig.Key("txtFirstName", "Esc");
  EXPECT_EQ(rig.screen->txtFirstName.Text(), "ANN");
  EXPECT_FALSE(rig.screen->txtFirstName.DataChanged());
  EXPECT_TRUE(rig.screen->Visible());
  rig.Do(ActionKind::Focus, "txtCity");
  EXPECT_TRUE(rig.screen->cmdCancel.Cancel());
  rig.Key("txtFirstName", "Esc");
  EXPECT_FALSE(rig.screen->Visible());
  EXPECT_TRUE(rig.screen->Cancelled());
}

TEST(CustomerDetailFields, ThePostalCodeLookupFillsOnlyEmptyFieldsOfTheHomeCountry) {
  DetailRig rig;
  rig.Person();
  rig.Open();
  rig.Do(ActionKind::Paste, "txtCity", "WINOOSKI");
  rig.Do(ActionKind::Focus, "txtZip");
  rig.Do(ActionKind::Focus, "txtEMail");
  EXPECT_EQ(ZipLookups(rig), 1u);
  EXPECT_EQ(rig.screen->txtCity.Text(), "WINOOSKI");
  EXPECT_EQ(rig.screen->txtState.Text(), "VT");
  EXPECT_EQ(rig.screen->txtPhone.Text(), "802-555-0100");
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
  EXPECT_EQ(rig.screen->txtLastName.Text(), "");
  EXPECT_EQ(rig.screen->txtFirstName.Text(), "");
  EXPECT_EQ(rig.screen->txtFullName.Text(), "");
  EXPECT_TRUE(rig.screen->picTypeCompany.Visible());
  EXPECT_EQ(rig.Focus(), "txtCompanyName");

  rig.Do(ActionKind::Click, "cmdClearAddress");
  const CAddress& a = *rig.customer->PrimaryAddress();
  EXPECT_EQ(a.AddressLine1() + a.City() + a.Zip() + a.Phone() + a.CountryID(), "");
  EXPECT_TRUE(a.DataChanged());
}

}  // namespace
}  // namespace kiv

// The custom fields of the profile page over the scripted host: which columns are listed and
// how, the clerk's edits checked by type, the right that allows them, and the save of the
// profile row (created once, its creation stamp left alone later, Null for a cleared value).
#include "screens/detail/custom_fields_page.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frm_customer_detail_rig.h"

namespace kiv {
namespace {

using test::Col;
using test::DetailRig;
using ui::ActionKind;
using Field = CustomFieldsPage::CustomField;

const std::string kSaveSql = "Select * FROM kiv_customer_profile WHERE customer_no = 42";

std::vector<test::ColumnSpec> ProfileColumns() {
  return {Col("CUSTOMER_NO", host::adInteger, 4, 10),  Col("created_by", host::adVarChar, 20),
          Col("CREATE_DATE", host::adDBTimeStamp),     Col("MODIFIED_BY", host::adVarChar, 20),
          Col("Modified_Date", host::adDBTimeStamp),   Col("SKI_LEVEL_CODE", host::adChar, 2),
          Col("WAIVER_DATE", host::adDBTimeStamp),     Col("SEASON_PASS_CREDIT", host::adCurrency, 8, 19, 4),
          Col("NEWSLETTER", host::adBoolean, 2, 1),    Col("BOOT_SOLE_LENGTH", host::adInteger, 4, 10)};
}

struct ProfileRig : DetailRig {
  explicit ProfileRig(bool with_row = true, bool profile_right = true) {
    auto profiles = host.OnProcedure(CustomFieldsPage::kProcedure).Columns(ProfileColumns());
    if (with_row)
      profiles.Values({42, "demo", Date::FromParts(2025, 1, 15), Variant::Null(), Variant::Null(), "AD",
                       Date::FromParts(2024, 12, 1, 10, 30, 0), Currency::FromDouble(250), true, 305});
    if (!profile_right) {
      host.app->Grant("CUSTEDITPROFILE", false);
      engine.SetAppServer(host.app);
    }
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "7");
  }
  CustomFieldsPage& Page() {
    for (const auto& page : screen->Pages())
      if (auto* p = dynamic_cast<CustomFieldsPage*>(page.get())) return *p;
    throw std::logic_error("no custom fields page");
  }
  std::string Edit(int row, const std::string& value) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Edit, "grdMaster", value, {row}, CustomFieldsPage::kColValue});
    return r.ok ? std::string() : r.error;
  }
  //! The operations of the updatable recordset the save opened, as text.
  std::vector<std::string> SaveOps() const {
    for (const auto& rs : host.db->Recordsets())
      if (rs->Source() == kSaveSql) return rs->OpsText();
    return {};
  }
};

TEST(CustomFieldsPage, ListsEverySiteColumnTypedAndFormattedButTheSystemColumns) {
  ProfileRig rig;
  EXPECT_EQ(rig.host.AssignmentsOf(CustomFieldsPage::kProcedure), (std::vector<test::Assignment>{{"@customer_no", 42}}));
  const ui::Grid& grid = rig.screen->grdMaster;
  EXPECT_EQ(grid.FormatString(), "FieldName|Field Desc|Data Type|Value");
  const std::vector<std::vector<std::string>> expected = {
      {"SKI_LEVEL_CODE", "Ski Level Code", "AlphaNumeric", "AD"},
      {"WAIVER_DATE", "Waiver Date", "Date", "12/01/2024"},
      {"SEASON_PASS_CREDIT", "Season Pass Credit", "Currency", "$250.00"},
      {"NEWSLETTER", "Newsletter", "True/False", "True"},
      {"BOOT_SOLE_LENGTH", "Boot Sole Length", "Integer", "305"},
  };
  ASSERT_EQ(grid.Rows(), 1 + static_cast<int>(expected.size()));
  for (size_t r = 0; r < expected.size(); ++r)
    for (int c = 0; c < 4; ++c) EXPECT_EQ(grid.TextMatrix(static_cast<int>(r) + 1, c), expected[r][c]) << r << "," << c;
}

TEST(CustomFieldsPage, DescriptionsAreInProperCase) {
  const std::pair<const char*, const char*> cases[] = {
      {"SKI_LEVEL_CODE", "Ski Level Code"}, {"boot_sole_length", "Boot Sole Length"}, {"vIP", "Vip"},
      {"A__B", "A  B"},                     {"ÉCOLE_NAME", "École Name"},           {"x", "X"},
  };
  for (const auto& [name, description] : cases) EXPECT_EQ(CustomFieldsPage::Description(name), description) << name;
}

TEST(CustomFieldsPage, ValuesAreCheckedByTypeAndTheMessageNamesFieldAndType) {
  auto field = [](const char* type_name, int32_t type, int32_t size, int32_t precision, int32_t scale) {
    Field f;
    f.description = "Some Field";
    f.type_name = type_name;
    f.type = type;
    f.defined_size = size;
    f.precision = precision;
    f.scale = scale;
    return f;
  };
  const Field integer = field("Integer", host::adInteger, 4, 10, 0);
  const Field byte = field("Integer", host::adInteger, 1, 3, 0);
  const Field flag = field("True/False", host::adBoolean, 2, 1, 0);
  const Field money = field("Currency", host::adCurrency, 8, 19, 4);
  const Field date = field("Date", host::adDBTimeStamp, 16, 23, 3);
  const Field decimal = field("Decimal", host::adNumeric, 19, 5, 1);
  const Field whole = field("Large Integer", host::adNumeric, 19, 9, 0);
  const Field text = field("AlphaNumeric", host::adChar, 2, 0, 0);
  struct Case {
    const Field* field;
    const char* text;
    const char* expects;  // empty: accepted
  };
  const Case cases[] = {
      {&integer, "2147483647", ""},     {&integer, "-12", ""},       {&integer, "2147483648", "a whole number"},
      {&integer, "12.5", "a whole number"}, {&integer, "abc", "a whole number from -2147483648 to 2147483647"},
      {&byte, "255", ""},               {&byte, "256", "from 0 to 255"}, {&byte, "-1", "from 0 to 255"},
      {&flag, "true", ""},              {&flag, "FALSE", ""},        {&flag, "yes", "True or False"},
      {&money, "$1,250.50", ""},        {&money, "-3", ""},          {&money, "12x", "an amount of money"},
      {&money, "1e20", "an amount of money"},
      {&date, "03/01/2026", ""},        {&date, "2026-03-01", ""},   {&date, "02/30/2026", "a date"},
      {&date, "soon", "a date"},
      {&decimal, "9999.9", ""},         {&decimal, "10000", "at most 4 digits before the point and 1 after it"},
      {&whole, "999999999", ""},        {&whole, "1000000000", "at most 9 digits"},
      {&text, "a text far longer than two characters", ""},
      {&integer, "", ""},               {&date, "   ", ""},
  };
  for (const Case& c : cases) {
    const std::string refusal = CustomFieldsPage::Refusal(*c.field, c.text);
    if (std::string(c.expects).empty()) {
      EXPECT_EQ(refusal, "") << c.field->type_name << " " << c.text;
      continue;
    }
    EXPECT_NE(refusal.find(c.expects), std::string::npos) << refusal;
    EXPECT_EQ(refusal.rfind("Some Field expects ", 0), 0u) << refusal;
    EXPECT_NE(refusal.find("(" + c.field->type_name + ")"), std::string::npos) << refusal;
  }
}

TEST(CustomFieldsPage, OnlyTheValueColumnIsEditedAndTrueFalseRowsTakeTheList) {
  ProfileRig rig;
  CustomFieldsPage& page = rig.Page();
  EXPECT_EQ(rig.Edit(4, "false"), "");
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(4, 3), "False");
  EXPECT_TRUE(page.Dirty());
  // The list belongs to the edit of a True/False row only: a text row takes free text next.
  EXPECT_EQ(rig.screen->grdMaster.ColComboList(CustomFieldsPage::kColValue), "");
  EXPECT_EQ(rig.Edit(1, "EX"), "");
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 3), "EX");

  ui::UiResult name_edit = rig.screen->Perform(ui::Action{ActionKind::Edit, "grdMaster", "OTHER", {1}, 0});
  EXPECT_TRUE(name_edit.ok);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 0), "SKI_LEVEL_CODE");

  rig.ui->Answer(ui::vbOK);
  EXPECT_EQ(rig.Edit(5, "three hundred"), "");
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Invalid Profile Value");
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(5, 3), "305");
}

TEST(CustomFieldsPage, AClerkWithoutTheProfileRightSeesTheValuesButEditsNone) {
  ProfileRig rig(true, false);
  EXPECT_FALSE(rig.screen->CanEditProfile());
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 3), "AD");
  for (int row = 1; row <= 5; ++row) EXPECT_NE(rig.Edit(row, "1"), "") << row;
  EXPECT_FALSE(rig.Page().Dirty());
}

TEST(CustomFieldsPage, TheFirstSaveCreatesTheRowWithItsCreationStamp) {
  ProfileRig rig(false);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 3), "");
  EXPECT_EQ(rig.Edit(1, "BEGINNER"), "");
  EXPECT_EQ(rig.Edit(5, "280"), "");
  EXPECT_TRUE(rig.screen->Save());
  EXPECT_EQ(rig.SaveOps(),
            (std::vector<std::string>{"AddNew", "Set CUSTOMER_NO=42", "Set CREATED_BY=\"TESTUSER\"",
                                      "Set CREATE_DATE=#2026-03-15#", "Set SKI_LEVEL_CODE=\"BE\"",
                                      "Set WAIVER_DATE=Null", "Set SEASON_PASS_CREDIT=Null", "Set NEWSLETTER=Null",
                                      "Set BOOT_SOLE_LENGTH=280", "Set MODIFIED_BY=\"TESTUSER\"",
                                      "Set MODIFIED_DATE=#2026-03-15#", "Update", "Close"}));
  EXPECT_FALSE(rig.Page().Dirty());
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(1, 3), "BE");
}

TEST(CustomFieldsPage, ALaterSaveLeavesTheCreationStampAndStoresNullForAClearedValue) {
  ProfileRig rig;
  rig.host.OnQuery(kSaveSql).Columns(ProfileColumns()).Values(
      {42, "demo", Date::FromParts(2025, 1, 15), Variant::Null(), Variant::Null(), "AD",
       Date::FromParts(2024, 12, 1, 10, 30, 0), Currency::FromDouble(250), true, 305});
  EXPECT_EQ(rig.Edit(3, ""), "");
  EXPECT_EQ(rig.Edit(2, "02/14/2026"), "");
  EXPECT_TRUE(rig.screen->Save());
  const std::vector<std::string> ops = rig.SaveOps();
  EXPECT_EQ(ops, (std::vector<std::string>{"Set SKI_LEVEL_CODE=\"AD\"", "Set WAIVER_DATE=#2026-02-14#",
                                           "Set SEASON_PASS_CREDIT=Null", "Set NEWSLETTER=True",
                                           "Set BOOT_SOLE_LENGTH=305", "Set MODIFIED_BY=\"TESTUSER\"",
                                           "Set Modified_Date=#2026-03-15#", "Update", "Close"}));
}

}  // namespace
}  // namespace kiv

// The profile page's custom fields on real SQLite columns: the Data Type of every kind of
// declared column (one-byte integers and precision-1 numerics included), and a value a column
// cannot hold refused before anything of the row is written. A site column added with plain
// SQL is shown by the script profile_site_column.kiv.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "host/host_error.h"
#include "refhost/demo_data.h"
#include "screens/component_screens.h"
#include "screens/detail/custom_fields_page.h"
#include "support/scripted_ui.h"
#include "temp_database.h"
#include "ui/grid.h"

namespace kiv::refhost::testing {
namespace {

using ui::ActionKind;

class ProfileColumns : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = TempPath("profile");
    OpenOptions options;
    options.clock = std::make_shared<FixedClock>(Date::FromParts(2026, 3, 1, 9, 30, 0));
    host_ = RefHost::Open(path_, options);
    DemoOptions demo;
    demo.customers = 12;
    demo.seed = 7;
    BuildDemoData(host_->Database()->Handle(), demo);
    engine_ = std::make_shared<CCustEngine>();
    engine_->SetUi(ui_);
    engine_->SetClock(options.clock);
    engine_->SetAppServer(host_->SignIn(kDemoManager));
    InstallComponentScreens(*engine_);
  }
  void TearDown() override {
    engine_.reset();
    host_.reset();
    RemoveDatabaseFiles(path_);
  }

  //! Shows customer `no` in the editor on its profile page and runs `drive` on it.
  void OnProfilePage(int32_t no, const std::function<void(ui::Form&)>& drive) {
    ui_->OnModal([&](ui::Form& form) {
      if (form.Name() != "frmCustomerDetail") return;
      form.Perform(ui::Action{ActionKind::Click, "tabCustomer", "7", {}, 0});
      drive(form);
      if (form.Visible()) form.Perform(ui::Action{ActionKind::Click, "cmdCancel", {}, {}, 0});
    });
    CCustEngine::ShowCustomerArgs args;
    args.lCustomerNo = no;
    engine_->ShowCustomer(args);
    ui_->OnModal(nullptr);
  }
  Variant Scalar(const std::string& sql) { return host_->Database()->QueryValue(sql); }

  std::string path_;
  std::shared_ptr<RefHost> host_;
  std::shared_ptr<test::ScriptedUi> ui_ = std::make_shared<test::ScriptedUi>();
  std::shared_ptr<CCustEngine> engine_;
};

TEST_F(ProfileColumns, EveryDeclaredTypeShowsItsDataTypeAndFormattedValue) {
  host_->Database()->Execute(
      "CREATE TABLE kiv_site_types (c_int INTEGER, c_tiny TINYINT, c_tiny_null TINYINT, c_small SMALLINT, c_bit BIT, "
      "c_money MONEY, c_datetime DATETIME, c_date DATE, c_time TIME, c_char CHAR(3), c_varchar VARCHAR(12), "
      "c_float FLOAT, c_flag NUMERIC(1,0), c_dec NUMERIC(7,2), c_whole NUMERIC(9,0), c_text TEXT, c_blob BLOB)");
  host_->Database()->Execute(
      "INSERT INTO kiv_site_types VALUES (70000, 1, NULL, 3, 1, 1234.5, '2026-02-03 10:15:00', '2026-02-04', "
      "'10:30:00', 'ABC', 'GONDOLA', 2.5, 1, 12.25, 123456789, 'NOTES', x'00')");
  struct Expect {
    const char* column;
    int32_t type;
    const char* data_type;
    const char* value;
  };
  const Expect expected[] = {
      {"c_int", 3, "Integer", "70000"},
      {"c_tiny", 3, "True/False", "True"},
      {"c_tiny_null", 3, "Integer", ""},
      {"c_small", 2, "Other", "3"},
      {"c_bit", 11, "True/False", "True"},
      {"c_money", 6, "Currency", "$1,234.50"},
      {"c_datetime", 135, "Date", "02/03/2026"},
      {"c_date", 133, "Date", "02/04/2026"},
      // A time of day has no date to show: the server's time type is not declared here.
      {"c_time", 200, "AlphaNumeric", "10:30:00"},
      {"c_char", 129, "AlphaNumeric", "ABC"},
      {"c_varchar", 200, "AlphaNumeric", "GONDOLA"},
      {"c_float", 5, "Large Integer", "2.5"},
      {"c_flag", 131, "True/False", "True"},
      {"c_dec", 131, "Decimal", "12.25"},
      {"c_whole", 131, "Large Integer", "123456789"},
      {"c_text", 201, "Other", "NOTES"},
      {"c_blob", 205, "Other", ""},
  };
  host::ScopedRecordset rs = host::OpenQuery(*engine_->DBConnection(), "SELECT * FROM kiv_site_types");
  ASSERT_TRUE(rs);
  ASSERT_FALSE(rs.Eof());
  for (const Expect& e : expected) {
    host::Field& field = rs->FieldByName(e.column);
    EXPECT_EQ(field.Type(), e.type) << e.column;
    const std::string data_type = CustomFieldsPage::DataTypeName(field);
    EXPECT_EQ(data_type, e.data_type) << e.column;
    EXPECT_EQ(CustomFieldsPage::ValueText(data_type, field.Value()), e.value) << e.column;
  }
  // The codes no declared column gives here follow the same rules.
  EXPECT_EQ(CustomFieldsPage::DataTypeName(host::adDate, 0, 0, 8), "Date");
  EXPECT_EQ(CustomFieldsPage::DataTypeName(host::adDBTime, 0, 0, 6), "Date");
  EXPECT_EQ(CustomFieldsPage::DataTypeName(host::adDouble, 1, 0, 8), "True/False");
  EXPECT_EQ(CustomFieldsPage::DataTypeName(host::adDouble, 15, 2, 8), "Decimal");
  EXPECT_EQ(CustomFieldsPage::DataTypeName(host::adInteger, 10, 0, 4), "Integer");
}

TEST_F(ProfileColumns, AValueBeyondAOneByteColumnIsRefusedAndTheRowStaysWhole) {
  host_->Database()->Execute(
      "INSERT OR REPLACE INTO kiv_customer_profile (CUSTOMER_NO, PREFERRED_LIFT, WAIVER_SIGNED) VALUES (1, 'GONDOLA', 1)");
  {
    host::ScopedRecordset rs =
        host::OpenForUpdate(*engine_->DBConnection(), "Select * FROM kiv_customer_profile WHERE customer_no = 1");
    ASSERT_TRUE(rs);
    EXPECT_EQ(rs->FieldByName("WAIVER_SIGNED").ActualSize(), 1);
    EXPECT_EQ(rs->FieldByName("BOOT_SOLE_LENGTH").DefinedSize(), 4);
    rs->FieldByName("PREFERRED_LIFT").SetValue(Variant("SUMMIT EXPRESS"));
    EXPECT_THROW(rs->FieldByName("WAIVER_SIGNED").SetValue(Variant(int32_t{300})), HostError);
  }
  EXPECT_EQ(NzString(Scalar("SELECT PREFERRED_LIFT FROM kiv_customer_profile WHERE CUSTOMER_NO = 1")), "GONDOLA");
  EXPECT_EQ(NzLong(Scalar("SELECT WAIVER_SIGNED FROM kiv_customer_profile WHERE CUSTOMER_NO = 1")), 1);

  // Through the page the clerk meets the same limit with a message, and nothing is written.
  OnProfilePage(1, [&](ui::Form& form) {
    auto* grid = form.FindAs<ui::Grid>("grdMaster");
    int row = -1;
    for (int r = 1; r < grid->Rows(); ++r)
      if (grid->TextMatrix(r, 0) == "WAIVER_SIGNED") row = r;
    ASSERT_GT(row, 0);
    EXPECT_EQ(grid->TextMatrix(row, 2), "True/False");
    ui_->Answer(ui::vbOK);
    form.Perform(ui::Action{ActionKind::Edit, "grdMaster", "300", {row}, 3});
    ASSERT_FALSE(ui_->Boxes().empty());
    EXPECT_EQ(ui_->Boxes().back().prompt, "Waiver Signed expects True or False (True/False); \"300\" cannot be stored.");
    form.Perform(ui::Action{ActionKind::Click, "cmdOk", {}, {}, 0});
  });
  EXPECT_EQ(NzLong(Scalar("SELECT WAIVER_SIGNED FROM kiv_customer_profile WHERE CUSTOMER_NO = 1")), 1);
}

}  // namespace
}  // namespace kiv::refhost::testing

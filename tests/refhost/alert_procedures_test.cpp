// The alerts read with @prefill on a real database: the height list, the weight list and the
// customer's row in three result sets, each handed out by NextRecordset in turn.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class AlertProcedures : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_guest_height (guest_height_range, Description, is_default) VALUES "
                 "(1, 'UNDER 4 FT', 0), (2, '4 FT - 5 FT', 1)");
    db_->Execute("INSERT INTO kiv_guest_weight (guest_weight_range, Description, is_default) VALUES "
                 "(1, 'UNDER 60 LB', 0), (3, '60 - 120 LB', 1)");
    db_->Execute("INSERT INTO kiv_customer (customer_no, full_name, customer_type) VALUES (1, 'ANN SMITH', 'P'), "
                 "(2, 'ACME LODGING', 'C')");
  }

  //! Each result set as "TYPE:value,value;" per row, result sets joined by "|".
  std::string Walk(int32_t customer_no, bool prefill) {
    auto get = Procedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_get",
                         {{"@customer_no", Variant(customer_no)}, {"@prefill", Variant(prefill)}});
    auto rs = Rows(get);
    std::string out;
    for (; rs != nullptr; rs = rs->NextRecordset()) {
      if (!out.empty()) out += "|";
      for (; !rs->Eof(); rs->MoveNext()) {
        out += NzString(rs->FieldByName("return_type").Value()) + ":";
        if (NzString(rs->FieldByName("return_type").Value()) == "CUST")
          out += NzString(rs->FieldByName("full_name").Value()) + "," +
                 NzString(rs->FieldByName("customer_type").Value()) + "," +
                 std::to_string(rs->FieldByName("guest_height_range").Value().ToLong()) + "," +
                 NzString(rs->FieldByName("Allergies").Value());
        else
          out += NzString(rs->FieldByName("Description").Value());
        out += ";";
      }
    }
    return out;
  }
};

TEST_F(AlertProcedures, PrefillAnswersTheListsThenTheCustomerInThreeResultSets) {
  EXPECT_EQ(Walk(1, true),
            "HEIGHT:UNDER 4 FT;HEIGHT:4 FT - 5 FT;|WEIGHT:UNDER 60 LB;WEIGHT:60 - 120 LB;|CUST:ANN SMITH,P,2,;");
  db_->Execute("INSERT INTO kiv_customer_alert (customer_no, Allergies) VALUES (2, 'BEES')");
  db_->Execute("INSERT INTO kiv_customer_setting (customer_no, guest_height_range) VALUES (2, 1)");
  EXPECT_NE(Walk(2, true).find("CUST:ACME LODGING,C,1,BEES;"), std::string::npos);
}

TEST_F(AlertProcedures, WithoutPrefillOnlyACustomerWithSettingsHasARow) {
  EXPECT_EQ(Walk(1, false), "");
  db_->Execute("INSERT INTO kiv_customer_alert (customer_no, Allergies) VALUES (1, 'PEANUTS')");
  EXPECT_EQ(Walk(1, false), "CUST:ANN SMITH,P,2,PEANUTS;");
}

TEST_F(AlertProcedures, LongTextsAreCutToTheirColumnsWithoutAnError) {
  const std::string long_text(400, 'x');
  const std::string accented = "Ærøskøbing — naïve café ☃";
  auto update = Procedure("KIV_SP_CUSTOMER_CUSTOMER_ALERT_update",
                          {{"@customer_no", Variant(int32_t{1})}, {"@allergies", Variant(long_text)},
                           {"@medications", Variant(accented)}, {"@cell_phone_contact", Variant(long_text)},
                           {"@guest_height_range", Variant(int16_t{1})}, {"@guest_weight_range", Variant(int16_t{3})}});
  ASSERT_TRUE(Run(update));
  EXPECT_EQ(NzString(Scalar("SELECT Allergies FROM kiv_customer_alert")), std::string(255, 'x'));
  EXPECT_EQ(NzString(Scalar("SELECT cell_phone_contact FROM kiv_customer_alert")), std::string(20, 'x'));
  EXPECT_EQ(NzString(Scalar("SELECT Medications FROM kiv_customer_alert")), accented);
}

}  // namespace
}  // namespace kiv::refhost::testing

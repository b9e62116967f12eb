// The reference host's reports: definitions found by key, parameter strings read into
// named values, templates filled (escaped, missing fields empty), and documents printed
// from the rows of the forecast and rental tables; the rental contracts procedure.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "host/db_patterns.h"
#include "refhost/ref_report_service.h"
#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

TEST(ReportTemplate, FillsFieldsAndLinesEscapedWithMissingFieldsEmpty) {
  const ReportRecord record{{"group_name", "O'Hara & <Sons> \"Tours\""}, {"net", "7200"}, {"arrive", "2026-03-20 00:00:00"}};
  const std::vector<ReportRecord> lines{{{"item", "SKI"}}, {{"item", "BOOT"}, {"net", "15"}}};
  struct Case {
    const char* tmpl;
    const char* expected;
  } cases[] = {
      {"<b>{{group_name}}</b>", "<b>O&#39;Hara &amp; &lt;Sons&gt; &quot;Tours&quot;</b>"},
      {"[{{no_such_field}}]", "[]"},
      {"[{{no_such_field|currency}}]", "[]"},
      {"{{ net | currency }}", "$7,200.00"},
      {"{{arrive|date}}", "03/20/2026"},
      {"{{#lines}}<{{item}}:{{net}}>{{/lines}}", "<SKI:7200><BOOT:15>"},
      {"open {{group_name", "open {{group_name"},
      {"{{#lines}}never closed", "never closed"},
  };
  for (const Case& c : cases) EXPECT_EQ(RenderReportTemplate(c.tmpl, record, lines), c.expected) << c.tmpl;
}

TEST(ReportParameters, ValuesTakeTheDefinitionsNamesInOrderOrNameThemselves) {
  using Values = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ(ParseReportParameters("12", "forecast_no"), (Values{{"forecast_no", "12"}}));
  EXPECT_EQ(ParseReportParameters("1003;7", "contract_no;customer_no"),
            (Values{{"contract_no", "1003"}, {"customer_no", "7"}}));
  EXPECT_EQ(ParseReportParameters("customer_no=7;contract_no=1003", "contract_no;customer_no"),
            (Values{{"customer_no", "7"}, {"contract_no", "1003"}}));
  // A value beyond the names given has no name to go by and is dropped.
  EXPECT_EQ(ParseReportParameters("1;2", "contract_no"), (Values{{"contract_no", "1"}}));
}

class ReportServiceTest : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_customer (customer_no, full_name, customer_type) VALUES "
                 "(5, 'PEAK <TOURS> & CO', 'C'), (6, 'ANN LEE', 'P')");
    db_->Execute("INSERT INTO kiv_customer_forecast (forecast_no, customer_no, fc_arrival_date, fc_nights, fc_people, "
                 "fc_days, fc_rate, fc_rate_after_commission, comment_note) VALUES "
                 "(12, 5, '2026-03-20 00:00:00', 4, 25, 100, 80, 10, 'Coach \"early\"')");
    db_->Execute("INSERT INTO kiv_rental_contract (contract_no, customer_no, contract_date, location_id) VALUES "
                 "(1003, 6, '2026-02-05 00:00:00', 'BASE')");
    db_->Execute("INSERT INTO kiv_rental_contract_line (contract_no, line_no, description, days, daily_rate, amount) "
                 "VALUES (1003, 1, 'SKI PACKAGE', 3, 42, 126), (1003, 2, 'HELMET', 3, 12, 36)");
    folder_ = std::filesystem::path(path_ + "-documents");
  }
  void TearDown() override {
    std::error_code ec;
    std::filesystem::remove_all(folder_, ec);
    TempDatabase::TearDown();
  }
  void Define() {
    for (const ReportDefinition& d : StandardReportDefinitions()) SaveReportDefinition(*db_, d);
  }
  bool Print(const std::string& key, const std::string& parameters, const std::string& selection = {}) {
    auto reports = server_->Reports();
    host::ClientReport report;
    if (!reports->GetClientMapReport(key, report)) return false;
    host::ReportParameters p = reports->CreateReportParamFromString(parameters);
    p.record_selection = selection;
    return reports->PrintReport(report, p);
  }
  std::filesystem::path folder_;
};

TEST_F(ReportServiceTest, AnUndefinedKeyIsNotFoundAndPrintsNothing) {
  host::ClientReport report;
  EXPECT_FALSE(server_->GetReportService()->GetClientMapReport("CUST_FORECAST", report));
  EXPECT_FALSE(server_->Reports()->PrintReport({"CUST_FORECAST", "", ""}, {"12", ""}));
  EXPECT_TRUE(server_->Reports()->LastDocument().empty());
  Define();
  EXPECT_TRUE(server_->GetReportService()->GetClientMapReport("cust_forecast", report));
  EXPECT_EQ(report.report_key, "CUST_FORECAST");
}

TEST_F(ReportServiceTest, TheForecastSheetShowsTheGroupProjectionsAndNotesEscaped) {
  Define();
  std::filesystem::path written;
  server_->Reports()->on_document_written = [&](const std::filesystem::path& p) { written = p; };
  ASSERT_TRUE(Print("CUST_FORECAST", "12", "{kiv_customer_forecast.forecast_no} = 12"));
  EXPECT_EQ(written, server_->Reports()->LastDocument());
  EXPECT_EQ(written.parent_path(), folder_);
  const std::string html = ReadAll(written);
  EXPECT_NE(html.find("PEAK &lt;TOURS&gt; &amp; CO"), std::string::npos);
  EXPECT_NE(html.find("$7,200.00"), std::string::npos) << "net after 10% commission";
  EXPECT_NE(html.find("$8,000.00"), std::string::npos);
  EXPECT_NE(html.find("03/20/2026"), std::string::npos);
  EXPECT_NE(html.find("Coach &quot;early&quot;"), std::string::npos);
  EXPECT_NE(html.find("{kiv_customer_forecast.forecast_no} = 12"), std::string::npos);
  // A second print is a second file; no record means no document.
  const std::filesystem::path first = written;
  ASSERT_TRUE(Print("CUST_FORECAST", "12"));
  EXPECT_NE(server_->Reports()->LastDocument(), first);
  EXPECT_FALSE(Print("CUST_FORECAST", "99"));
}

TEST_F(ReportServiceTest, TheRentalContractListsItsLinesAndTotalOnlyForItsCustomer) {
  Define();
  ASSERT_TRUE(Print("CUST_RENT", "1003;6"));
  const std::string html = ReadAll(server_->Reports()->LastDocument());
  EXPECT_NE(html.find("ANN LEE"), std::string::npos);
  EXPECT_NE(html.find("SKI PACKAGE"), std::string::npos);
  EXPECT_NE(html.find("HELMET"), std::string::npos);
  EXPECT_NE(html.find("$162.00"), std::string::npos);
  EXPECT_FALSE(Print("CUST_RENT", "1003;5")) << "another customer's contract";
}

TEST_F(ReportServiceTest, ATemplateNamingAFieldTheDataLacksPrintsItEmpty) {
  ReportDefinition d = StandardReportDefinitions().front();
  d.template_html = "<p>[{{fc_no_such_column|currency}}]{{group_name}}</p>";
  SaveReportDefinition(*db_, d);
  ASSERT_TRUE(Print("CUST_FORECAST", "12"));
  EXPECT_NE(ReadAll(server_->Reports()->LastDocument()).find("<p>[]PEAK"), std::string::npos);
}

TEST_F(ReportServiceTest, RentalProcedureListsEachPieceOfTheCustomersContracts) {
  host::ProcedureCall call(*conn_, "KIV_SP_CUSTOMER_GetRental");
  call.In("@customer_no", Variant(int32_t{6}));
  host::ScopedRecordset rs = call.Open();
  ASSERT_TRUE(rs);
  std::vector<std::string> pieces;
  for (; !rs->Eof(); rs->MoveNext())
    pieces.push_back(NzString(rs->FieldByName("contract_no").Value()) + " " +
                     NzString(rs->FieldByName("description").Value()));
  EXPECT_EQ(pieces, (std::vector<std::string>{"1003 SKI PACKAGE", "1003 HELMET"}));
}

}  // namespace
}  // namespace kiv::refhost::testing

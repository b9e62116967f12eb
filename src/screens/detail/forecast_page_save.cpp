// The forecast page's save, first of the editor's side lists: each new or changed forecast
// written through an updatable recordset, new ones numbered from "seq_forecast_no"; and the
// forecast report printed through the suite's report service.
#include "core/date.h"
#include "core/text.h"
#include "core/variant.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "screens/detail/forecast_page.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

using namespace forecast;

namespace {

//! A cell as its column stores it: an empty date or number is null.
Variant StoredValue(const std::string& text, Kind kind) {
  const std::string trimmed = Trim(text);
  switch (kind) {
    case Kind::kDate: {
      const std::optional<Date> date = ForecastPage::CellDate(trimmed);
      return date ? Variant(*date) : Variant::Null();
    }
    case Kind::kNumber:
      return trimmed.empty() ? Variant::Null() : Variant(Val(trimmed));
    case Kind::kBoolean:
      return Variant(EqualsNoCase(trimmed, "True") || trimmed == "1" || trimmed == "-1");
    default:
      return Variant(text);
  }
}

bool Written(std::string_view field) {
  return (StartsWithNoCase(field, "fc_") || EqualsNoCase(field, "comment_note")) &&
         !EqualsNoCase(field, "fc_last_edited_by") && !EqualsNoCase(field, "fc_last_edited_on");
}

}  // namespace

bool ForecastPage::Save(frmCustomerDetail& screen) {
  bool saved = false;
  screen.Guard("SaveForecast", [&] { saved = WriteForecasts(screen); });
  if (saved) Load(screen);
  return saved;
}

bool ForecastPage::WriteForecasts(frmCustomerDetail& screen) {
  if (!screen.DBConnection()) return false;
  host::DBConnection& db = *screen.DBConnection();
  const Date now = screen.CustomerEngine() && screen.CustomerEngine()->GetClock()
                       ? screen.CustomerEngine()->GetClock()->Now()
                       : screen.Today();
  const std::string user = db.UserID();
  host::UnitOfWork unit(&db);
  const bool saved = rows_.WriteChanges([&](const ListRow& row) {
    // A removed forecast left the database when it was removed.
    if (row.state == RowState::kRemoved) return true;
    int32_t forecast_no = NzLong(row.key);
    if (forecast_no == 0) forecast_no = db.GetNextSequenceNo("seq_forecast_no");
    if (forecast_no <= 0) return false;
    host::ScopedRecordset rs =
        host::OpenForUpdate(db, "SELECT * FROM kiv_customer_forecast WHERE forecast_no = " + std::to_string(forecast_no));
    if (!rs) return false;
    const bool added = rs.Eof();
    if (added) {
      rs->AddNew();
      rs->FieldByName("forecast_no").SetValue(Variant(forecast_no));
      rs->FieldByName("customer_no").SetValue(Variant(screen.CustomerNo()));
      rs->FieldByName("fc_date_entered").SetValue(Variant(now));
    }
    for (size_t c = 0; c < kFields.size() && c < row.cells.size(); ++c) {
      const ColumnField& column = kFields[c];
      if (!Written(column.field)) continue;
      // A new row's entry date is the moment it is written.
      if (added && EqualsNoCase(column.field, "fc_date_entered")) continue;
      rs->FieldByName(column.field).SetValue(StoredValue(row.cells[c], column.kind));
    }
    rs->FieldByName("fc_last_edited_by").SetValue(Variant(user));
    rs->FieldByName("fc_last_edited_on").SetValue(Variant(now));
    rs->Update();
    return true;
  });
  if (!saved) {
    unit.Discard();
    return false;
  }
  dirty_ = false;
  return true;
}

std::string ForecastPage::ReportParameterText(int32_t forecast_no) {
  return Replace(kReportParameters, "{{forecast_no}}", std::to_string(forecast_no));
}

std::string ForecastPage::ReportSelection(int32_t forecast_no) {
  return "{kiv_customer_forecast.forecast_no} = " + std::to_string(forecast_no);
}

void ForecastPage::RunReport(frmCustomerDetail& screen) {
  if (screen.HideForecasts()) return;
  const int i = CurrentRow(screen);
  const int32_t forecast_no = i < 0 ? 0 : NzLong(rows_.Row(static_cast<size_t>(i)).key);
  if (i < 0) {
    screen.ui().MsgBox("Please select a forecast row first", ui::vbInformation, "Select Forecast");
    return;
  }
  if (forecast_no == 0) {
    screen.ui().MsgBox("Please save the new forecast before printing it", ui::vbInformation, "Select Forecast");
    return;
  }
  screen.Guard("mnuReportsForecastReport_Click", [&] {
    std::shared_ptr<host::ReportService> reports = screen.AppServer() ? screen.AppServer()->GetReportService() : nullptr;
    host::ClientReport report;
    if (!reports || !reports->GetClientMapReport(kReportKey, report)) {
      screen.ui().MsgBox("You must define the customer forecast report, CUST_FORECAST in Report Maintenance",
                         ui::vbInformation, "Run Forecast Report");
      return;
    }
    host::ReportParameters parameters = reports->CreateReportParamFromString(ReportParameterText(forecast_no));
    parameters.record_selection = ReportSelection(forecast_no);
    reports->PrintReport(report, parameters);
  });
}

}  // namespace kiv

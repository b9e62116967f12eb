// The forecast page of the detail editor (tab 12): a group customer's sales forecasts in
// grdMaster, added and edited through the entry screen frmForecast, removed at once (unless
// a sales order refers to one), arrival and departure editable in the grid, saved first
// among the side lists, and printed through the suite's report service.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/date.h"
#include "screens/detail/detail_page.h"
#include "screens/forecast/forecast_columns.h"
#include "screens/kit/list_rows.h"

namespace kiv {

class ForecastPage : public DetailPage {
 public:
  static constexpr const char* kRefreshPrompt =
      "The forecast information has been changed.  Are you sure you want to lose those changes and refresh the "
      "data?";
  static constexpr const char* kRefreshTitle = "Confirm Refresh Forecast Data";
  static constexpr const char* kComplimentaryDays =
      "For every 20 skier days purchased, the group earns 1 complimentary skier day. For example, if a group "
      "purchases 25 4-day tickets, the group would earn 5 complimentary skier days (25 x 4 = 100 skier days /20 = 5 "
      "complimentary days).";
  static constexpr const char* kReportKey = "CUST_FORECAST";
  static constexpr const char* kReportParameters = "{{forecast_no}}";
  //! Cells longer than this show their start and the marker "...".
  static constexpr size_t kCellLimit = 30;

  //! A page registered with the editor and answering its "Run Forecast Report" menu.
  static std::unique_ptr<ForecastPage> Attached(frmCustomerDetail& screen);

  int TabIndex() const override;
  DetailSaveSlot SaveSlot() const override { return DetailSaveSlot::kForecasts; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  bool Save(frmCustomerDetail& screen) override;
  bool Dirty() const override { return dirty_; }
  void Reset() override;
  RefreshConfirmation RefreshQuestion() const override { return {kRefreshPrompt, kRefreshTitle}; }
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! "&Add Forecast": a new forecast from the entry screen.
  void AddForecast(frmCustomerDetail& screen);
  //! The entry screen over the forecast shown at a grid row; OK's changes replace it in place.
  void EditForecast(frmCustomerDetail& screen, int grid_row);
  //! "Remove Forecast": each selected forecast is deleted now, unless a sales order has it.
  void RemoveForecasts(frmCustomerDetail& screen);
  //! "Run Forecast Report" on the selected forecast.
  void RunReport(frmCustomerDetail& screen);

  //! The parameter string and record selection the report of a forecast is printed with.
  static std::string ReportParameterText(int32_t forecast_no);
  static std::string ReportSelection(int32_t forecast_no);
  //! A date typed in a grid cell; none for anything that is not a calendar date.
  static std::optional<Date> CellDate(const std::string& text);
  //! What a grid cell shows of a text: the text, or its start and "..." when too long.
  static std::string CellText(const std::string& text);

  //! Replaces the entry screen (tests): edits the cells, true for OK.
  std::function<bool(frmCustomerDetail&, forecast::Cells&)> open_entry;

  const ListRows& Rows() const { return rows_; }

 private:
  bool Showing(const frmCustomerDetail& screen) const;
  void Render(frmCustomerDetail& screen) const;
  bool OpenEntry(frmCustomerDetail& screen, forecast::Cells& cells);
  void ValidateDateCell(frmCustomerDetail& screen, int grid_row, int col, bool& cancel);
  void CellEdited(frmCustomerDetail& screen, int grid_row, int col);
  //! The sales order of a forecast: empty when none; none when the check failed.
  std::optional<std::string> SalesOrderOf(frmCustomerDetail& screen, int32_t forecast_no);
  bool WriteForecasts(frmCustomerDetail& screen);
  //! The list row under the grid's current row, -1 when none is usable.
  int CurrentRow(const frmCustomerDetail& screen) const;

  ListRows rows_;
  bool dirty_ = false;
};

}  // namespace kiv

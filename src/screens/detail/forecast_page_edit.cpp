// The forecast page's edits in the grid: arrival and departure typed into their cells, and
// Remove, which deletes a forecast at once unless a sales order refers to it.
#include <vector>

#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"
#include "host/db_patterns.h"
#include "screens/detail/forecast_page.h"
#include "screens/detail/frm_customer_detail.h"

namespace kiv {

using namespace forecast;

std::optional<Date> ForecastPage::CellDate(const std::string& text) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty()) return std::nullopt;
  std::optional<Date> date = Date::Parse(trimmed);
  // A time alone is no day to arrive on.
  if (!date || date->WholeDays() == 0) return std::nullopt;
  return date;
}

void ForecastPage::ValidateDateCell(frmCustomerDetail& screen, int grid_row, int col, bool& cancel) {
  if (col != kColArrival && col != kColDeparture) return;
  ui::Grid& grid = screen.grdMaster;
  const int i = rows_.RowAt(grid, grid_row);
  if (i < 0) return;
  const bool arrival = col == kColArrival;
  const std::optional<Date> date = CellDate(grid.EditText());
  if (!date) {
    const std::string which = arrival ? "Arrival" : "Departure";
    screen.ui().MsgBox("Invalid " + which +
                           " Date.  Please reenter date in a valid date format.  Ex. 01/05/99, January 5, 1999, or "
                           "01/05/1999.",
                       ui::vbInformation, "Invalid " + which + " Date");
    cancel = true;
    return;
  }
  const Cells& cells = rows_.Row(static_cast<size_t>(i)).cells;
  const std::optional<Date> other = CellDate(cells[arrival ? kColDeparture : kColArrival]);
  const Date day = Date(static_cast<double>(date->WholeDays()));
  if (other) {
    const Date other_day = Date(static_cast<double>(other->WholeDays()));
    if (arrival ? other_day < day : day < other_day) {
      screen.ui().MsgBox("Arrival date occurs after departure date.", ui::vbInformation, "Invalid Date Range");
      cancel = true;
      return;
    }
  }
  grid.SetEditText(Format(Variant(day), "MM/dd/yyyy"));
}

void ForecastPage::CellEdited(frmCustomerDetail& screen, int grid_row, int col) {
  ui::Grid& grid = screen.grdMaster;
  const int i = rows_.RowAt(grid, grid_row);
  if (i < 0) return;
  rows_.Edit(static_cast<size_t>(i), static_cast<size_t>(col), grid.TextMatrix(grid_row, col));
  dirty_ = dirty_ || rows_.Dirty();
  Render(screen);
}

std::optional<std::string> ForecastPage::SalesOrderOf(frmCustomerDetail& screen, int32_t forecast_no) {
  std::optional<std::string> order;
  screen.Guard("SoExistsforForecast", [&] {
    host::ScopedRecordset rs = host::OpenQuery(
        *screen.DBConnection(), "SELECT * FROM kiv_sales_order WHERE forecast_no = " + std::to_string(forecast_no));
    if (!rs) return;
    order = rs.Eof() ? std::string() : NzString(rs->FieldByName("salesorder_no").Value());
  });
  return order;
}

void ForecastPage::RemoveForecasts(frmCustomerDetail& screen) {
  if (!screen.CanEdit() || !Showing(screen)) return;
  ui::Grid& grid = screen.grdMaster;
  std::vector<size_t> chosen;
  for (int g : grid.SelectedRowList()) {
    const int i = rows_.RowAt(grid, g);
    if (i >= 0 && rows_.Row(static_cast<size_t>(i)).state != RowState::kRemoved) chosen.push_back(static_cast<size_t>(i));
  }
  if (chosen.empty() && CurrentRow(screen) >= 0) chosen.push_back(static_cast<size_t>(CurrentRow(screen)));
  if (chosen.empty()) return;
  if (screen.ui().MsgBox("Are you sure you want to delete all the selected forcasts?",
                         ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, "Confirm Delete Forecast") != ui::vbYes)
    return;
  screen.Guard("RemoveForecast", [&] {
    for (size_t i : chosen) {
      const int32_t forecast_no = NzLong(rows_.Row(i).key);
      if (forecast_no == 0) {
        // Never saved: there is nothing in the database to delete.
        rows_.Remove(i);
        dirty_ = true;
        continue;
      }
      if (!screen.DBConnection()) return;
      const std::optional<std::string> order = SalesOrderOf(screen, forecast_no);
      if (!order) continue;
      if (!order->empty()) {
        screen.ui().MsgBox("Sales Order " + *order + "Exists with this Forecast", ui::vbInformation,
                           "Delete Forecast Canceled");
        continue;
      }
      bool error = false;
      Variant extra;
      screen.DBConnection()->ExecuteSQL("DELETE FROM kiv_customer_forecast WHERE forecast_no = " +
                                            std::to_string(forecast_no),
                                        error, extra);
      if (error) continue;
      // Gone from the database already: the save has nothing to write for it.
      rows_.Remove(i);
      dirty_ = true;
    }
  });
  Render(screen);
}

}  // namespace kiv

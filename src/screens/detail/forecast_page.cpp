// The forecast page: the grid's layout, the load through KIV_SP_CUSTOMER_GetForecast, the
// rows rendered with their projections, and adding and editing through frmForecast.
#include "screens/detail/forecast_page.h"

#include <vector>

#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/forecast/frm_forecast.h"

namespace kiv {

using namespace forecast;

namespace {

//! A value of the forecast procedure as its cell shows it.
std::string ValueText(const Variant& value, Kind kind) {
  // The entry screen's check box has no third state: an unset offer reads as none.
  if (kind == Kind::kBoolean) return NzBool(value) ? "True" : "False";
  if (value.IsNull() || value.IsEmpty()) return {};
  if (kind == Kind::kDate) {
    const Date date = NzDate(value);
    return date.WholeDays() == 0 ? std::string() : Format(Variant(date), "MM/dd/yyyy");
  }
  return NzString(value);
}

//! Gross and net worked out from the forecast's own skier days, rate and commission.
void Project(Cells& cells) {
  const double rate = Val(cells[kColDayRate]);
  const double days = Val(cells[kColSkierDays]);
  const double commission = Val(cells[kColCommissionRate]);
  cells[kColGross] = Format(Variant(rate * days), "Currency");
  cells[kColNet] = Format(Variant(rate * days * (1 - commission / 100)), "Currency");
}

}  // namespace

std::unique_ptr<ForecastPage> ForecastPage::Attached(frmCustomerDetail& screen) {
  auto page = std::make_unique<ForecastPage>();
  ForecastPage* self = page.get();
  screen.forecast_report = [self](frmCustomerDetail& editor) { self->RunReport(editor); };
  return page;
}

int ForecastPage::TabIndex() const { return frmCustomerDetail::kTabForecasts; }

bool ForecastPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == TabIndex();
}

void ForecastPage::Reset() {
  rows_.Clear();
  dirty_ = false;
}

std::string ForecastPage::CellText(const std::string& text) {
  if (text.size() <= kCellLimit) return text;
  size_t cut = kCellLimit - 3;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
  return text.substr(0, cut) + "...";
}

void ForecastPage::Activate(frmCustomerDetail& screen) {
  screen.ShowPageButtons({"&Add Forecast", "Remove Forecast", "Complimentary Days..."});
  screen.cmdButton1.SetEnabled(screen.CanEdit());
  screen.cmdButton2.SetEnabled(screen.CanEdit());
  ui::Grid& grid = screen.grdMaster;
  grid.SetFormatString(kGridFormat);
  grid.SetColHidden(kColState, true);
  grid.SetSelectionMode(ui::flexSelectionListBox);
  grid.SetEditable(screen.CanEdit() ? ui::flexEDKbdMouse : ui::flexEDNone);
  grid.SetVisible(true);
  grid.on_before_edit = [this, &grid](int row, int col, bool& cancel) {
    const int i = rows_.RowAt(grid, row);
    cancel = i < 0 || (col != kColArrival && col != kColDeparture) ||
             rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved;
  };
  grid.on_validate_edit = [this, &screen](int row, int col, bool& cancel) {
    ValidateDateCell(screen, row, col, cancel);
  };
  grid.on_after_edit = [this, &screen](int row, int col) { CellEdited(screen, row, col); };
  grid.on_dbl_click = [this, &screen, &grid] { EditForecast(screen, grid.Row()); };
  Render(screen);
}

void ForecastPage::Load(frmCustomerDetail& screen) {
  Reset();
  const int32_t customer_no = screen.CustomerNo();
  if (customer_no != 0 && screen.DBConnection()) {
    screen.Guard("FillForecastGrid", [&] {
      host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetForecast");
      call.In("@customer_no", Variant(customer_no));
      host::ScopedRecordset rs = call.Open();
      if (!rs) return;
      // Each column's field is found once; a field the procedure lacks leaves its cell empty.
      std::vector<int> positions(kColumnCount, -1);
      for (int32_t f = 0; f < rs->FieldCount(); ++f)
        for (int c = 0; c < kColumnCount; ++c)
          if (*kFields[static_cast<size_t>(c)].field != '\0' &&
              EqualsNoCase(rs->FieldAt(f).Name(), kFields[static_cast<size_t>(c)].field) && positions[static_cast<size_t>(c)] < 0)
            positions[static_cast<size_t>(c)] = f;
      for (; !rs.Eof(); rs->MoveNext()) {
        Cells cells = EmptyCells();
        for (int c = 0; c < kColumnCount; ++c) {
          const int at = positions[static_cast<size_t>(c)];
          if (at >= 0) cells[static_cast<size_t>(c)] = ValueText(rs->FieldAt(at).Value(), kFields[static_cast<size_t>(c)].kind);
        }
        Project(cells);
        const Variant key(NzLong(Variant(cells[kColForecastNo])));
        rows_.AddLoaded(std::move(cells), key);
      }
    });
  }
  if (Showing(screen)) Render(screen);
}

void ForecastPage::Render(frmCustomerDetail& screen) const {
  ui::Grid& grid = screen.grdMaster;
  rows_.Render(grid, [&grid](int g, const ListRow& row) {
    grid.SetTextMatrix(g, kColState, ListRows::StateFlag(row.state));
    for (int c = 0; c < kColumnCount && c < static_cast<int>(row.cells.size()); ++c)
      if (row.cells[static_cast<size_t>(c)].size() > kCellLimit)
        grid.SetTextMatrix(g, c, CellText(row.cells[static_cast<size_t>(c)]));
  });
}

void ForecastPage::ButtonClicked(frmCustomerDetail& screen, int which) {
  if (which == 1) AddForecast(screen);
  if (which == 2) RemoveForecasts(screen);
  if (which == 3) screen.ui().MsgBox(kComplimentaryDays, ui::vbInformation, "Complimentary Days");
}

int ForecastPage::CurrentRow(const frmCustomerDetail& screen) const {
  if (!Showing(screen)) return -1;
  const int i = rows_.RowAt(screen.grdMaster, screen.grdMaster.Row());
  if (i < 0 || rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved) return -1;
  return i;
}

bool ForecastPage::OpenEntry(frmCustomerDetail& screen, Cells& cells) {
  if (open_entry) return open_entry(screen, cells);
  auto form = std::make_shared<frmForecast>();
  bool accepted = false;
  try {
    form->SetUi(screen.UiService());
    form->SetDBConnection(screen.DBConnection());
    form->SetErrorObject(screen.ErrorObject());
    form->SetAppServer(screen.AppServer());
    form->SetCustomerEngine(screen.CustomerEngine());
    std::string name = screen.Customer() ? screen.Customer()->FullName() : std::string();
    if (name.empty()) name = screen.cmdType.Value() == frmCustomerDetail::kTypeCompany ? screen.txtCompanyName.Text()
                                                                                        : screen.txtFullName.Text();
    form->SetCustomerName(name);
    form->SetForecast(cells);
    form->Load();
    form->Show(ui::vbModal, &screen);
    accepted = form->Accepted();
    if (accepted) cells = form->Forecast();
  } catch (...) {
    form->Unload();
    throw;
  }
  form->Unload();
  return accepted;
}

void ForecastPage::AddForecast(frmCustomerDetail& screen) {
  if (!screen.CanEdit()) return;
  Cells cells = EmptyCells();
  cells[kColDateEntered] = Format(Variant(screen.Today()), "MM/dd/yyyy");
  screen.Guard("DisplayForecast", [&] {
    if (!OpenEntry(screen, cells)) return;
    Project(cells);
    rows_.AddNew(std::move(cells), Variant(int32_t{0}));
    dirty_ = true;
  });
  if (Showing(screen)) Render(screen);
}

void ForecastPage::EditForecast(frmCustomerDetail& screen, int grid_row) {
  const int i = rows_.RowAt(screen.grdMaster, grid_row);
  if (i < 0 || rows_.Row(static_cast<size_t>(i)).state == RowState::kRemoved) return;
  Cells cells = rows_.Row(static_cast<size_t>(i)).cells;
  screen.Guard("DisplayForecast", [&] {
    if (!OpenEntry(screen, cells) || !screen.CanEdit()) return;
    Project(cells);
    // The row keeps its place and its number; only what changed counts as an edit.
    for (size_t c = 1; c < cells.size(); ++c) rows_.Edit(static_cast<size_t>(i), c, cells[c]);
    dirty_ = dirty_ || rows_.Dirty();
  });
  if (Showing(screen)) Render(screen);
}

}  // namespace kiv

// The reservations page: loading, filtering by tab, the log of the selected row, the card
// columns, and the commands that go through the host's reservation screens. The tabs filter
// the grid by their key: a reservation is listed under the tab whose key is its status.
#include "screens/detail/reservations_page.h"

#include "core/text.h"
#include "host/db_patterns.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"

namespace kiv {

namespace {

constexpr const char* kResDateFormat = "MM/dd/yyyy";
constexpr const char* kLogResDateFormat = "mm/dd/yyyy";

//! The masked card cell: only the masked number.
FillColumn MaskedCard() { return FillColumn::Composed({"x_card_no"}, [](const auto& v) { return NzString(v[0]); }); }

//! The card cell "View CC Data" shows: the last digits and the expiry, joined by "-".
FillColumn ShownCard() {
  return FillColumn::Composed({"cc_card_no", "exp_date"}, [](const std::vector<Variant>& v) {
    const std::string card = NzString(v[0]);
    const std::string exp = NzString(v[1]);
    if (card.empty() || exp.empty()) return card + exp;
    return card + "-" + exp;
  });
}

//! The columns from the resource to the comment, shared by both grids.
std::vector<FillColumn> CommonColumns() {
  std::vector<FillColumn> c;
  for (const char* f : {"resource_description", "mountain_id", "loc_description", "customer_name", "employee_name",
                        "requested", "salesorder_no", "salesorder_line_no"})
    c.push_back(FillColumn::Of(f));
  c.push_back(MaskedCard());
  c.push_back(ShownCard());
  for (const char* f : {"lodge_cust_name", "Phone", "coordinator_comment", "comment_note"})
    c.push_back(FillColumn::Of(f));
  return c;
}

GridFill ReservationFill() {
  std::vector<FillColumn> c{FillColumn::Of("res_header_no"), FillColumn::Of("res_no"),
                            FillColumn::Of("res_start", kResDateFormat), FillColumn::Of("status_id")};
  for (FillColumn& f : CommonColumns()) c.push_back(std::move(f));
  return GridFill(std::move(c));
}

GridFill LogFill() {
  std::vector<FillColumn> c{FillColumn::Of("log_no"), FillColumn::Of("log_datetime"), FillColumn::Of("kiv_user"),
                            FillColumn::Of("res_start", kLogResDateFormat),
                            FillColumn::Composed({"status_id"}, [](const std::vector<Variant>& v) {
                              const std::string status = NzString(v[0]);
                              return status == ReservationsPage::kOpen ? std::string("UNBOOKED") : status;
                            })};
  for (FillColumn& f : CommonColumns()) c.push_back(std::move(f));
  return GridFill(std::move(c));
}

}  // namespace

ReservationsPage::ReservationsPage(frmCustomerDetail& screen)
    : picReservations(screen.Add<ui::Panel>("picReservations")),
      tabReservations(screen.Add<ui::TabStrip>("tabReservations")),
      cmdNewReservation(screen.Add<ui::CommandButton>("cmdNewReservation", "New Reservation")),
      cmdEditReservation(screen.Add<ui::CommandButton>("cmdEditReservation", "Edit Reservation")),
      cmdPrintContract(screen.Add<ui::CommandButton>("cmdPrintContract", "Print Contract")),
      cmdBookReservation(screen.Add<ui::CommandButton>("cmdBookReservation", "Book Reservation(s)")),
      cmdUnbookReservation(screen.Add<ui::CommandButton>("cmdUnbookReservation", "Unbook Reservation")) {
  for (ui::Control* c : std::vector<ui::Control*>{&tabReservations, &cmdNewReservation, &cmdEditReservation,
                                                  &cmdPrintContract, &cmdBookReservation, &cmdUnbookReservation})
    c->SetContainer(&picReservations);
  picReservations.SetVisible(false);
  tabReservations.AddTab(kBooked, "Booked");
  tabReservations.AddTab(kOpen, "UnBooked");
  tabReservations.AddTab(kCancelled, "Cancelled");
  tabReservations.SetSelectedIndex(1);
  auto guarded = [&screen](const char* routine, void (ReservationsPage::*command)(frmCustomerDetail&),
                           ReservationsPage* page) {
    return [&screen, routine, command, page] { screen.Guard(routine, [&] { (page->*command)(screen); }); };
  };
  tabReservations.on_click = guarded("tabReservations_Click", &ReservationsPage::TabSwitched, this);
  cmdNewReservation.on_click = guarded("NewReservation", &ReservationsPage::NewReservation, this);
  cmdEditReservation.on_click = guarded("EditReservation", &ReservationsPage::EditReservation, this);
  cmdPrintContract.on_click = guarded("PrintContract", &ReservationsPage::PrintContract, this);
  cmdBookReservation.on_click = guarded("BookReservations", &ReservationsPage::BookReservations, this);
  cmdUnbookReservation.on_click = guarded("UnbookReservation", &ReservationsPage::UnbookReservation, this);
}

bool ReservationsPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == kTabIndex;
}

void ReservationsPage::Reset() {
  rows_.clear();
}

void ReservationsPage::LayOutGrids(frmCustomerDetail& screen) const {
  ui::Grid& master = screen.grdMaster;
  master.Clear();
  master.SetRows(master.FixedRows());
  master.SetFormatString(kReservationFormat);
  master.SetColFormat(kColResDate, kResDateFormat);
  master.SetColHidden(kColCardMasked, card_shown_);
  master.SetColHidden(kColCardShown, !card_shown_);
  master.SetSelectionMode(ui::flexSelectionListBox);
  master.SetEditable(ui::flexEDNone);
  master.SetVisible(true);
  ui::Grid& log = screen.grdDetail;
  log.Clear();
  log.SetRows(log.FixedRows());
  log.SetFormatString(kLogFormat);
  log.SetColHidden(kLogColCardMasked, card_shown_);
  log.SetColHidden(kLogColCardShown, !card_shown_);
  log.SetSelectionMode(ui::flexSelectionByRow);
  log.SetEditable(ui::flexEDNone);
  log.SetVisible(true);
}

void ReservationsPage::Activate(frmCustomerDetail& screen) {
  picReservations.SetVisible(true);
  const bool can_edit = screen.CanEdit();
  for (ui::CommandButton* b : {&cmdNewReservation, &cmdEditReservation, &cmdBookReservation, &cmdUnbookReservation})
    b->SetEnabled(can_edit);
  // A click on the row already current moves nothing, yet after a tab switch its log is
  // not shown: the selection change loads it too, once per row.
  screen.grdMaster.on_row_col_change = [this, &screen] {
    screen.Guard("grdMaster_RowColChange", [&] { RowChanged(screen); });
  };
  screen.grdMaster.on_sel_change = [this, &screen] {
    if (screen.grdMaster.Row() != log_row_) screen.Guard("grdMaster_SelChange", [&] { RowChanged(screen); });
  };
  Render(screen);
}

void ReservationsPage::Deactivate(frmCustomerDetail&) { picReservations.SetVisible(false); }

void ReservationsPage::ShowCardData(frmCustomerDetail& screen, bool shown) {
  card_shown_ = shown;
  if (!Showing(screen)) return;
  screen.grdMaster.SetColHidden(kColCardMasked, shown);
  screen.grdMaster.SetColHidden(kColCardShown, !shown);
  screen.grdDetail.SetColHidden(kLogColCardMasked, shown);
  screen.grdDetail.SetColHidden(kLogColCardShown, !shown);
}

void ReservationsPage::Load(frmCustomerDetail& screen) {
  Reset();
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (screen.CustomerNo() != 0 && db) {
    host::ProcedureCall call(*db, "KiV_SP_CUSTOMER_GetReservationByCustomer");
    call.In("@customer_No", Variant(screen.CustomerNo()))
        .In("@kiv_user", Variant(db->UserID()))
        .In("@kiv_password", Variant(db->UserPassword()));
    host::ScopedRecordset rs = call.Open();
    if (rs && rs->IsOpen() && !rs.Eof()) {
      GridFill fill = ReservationFill();
      fill.Bind(*rs);
      const int status = fill.FieldIndex("status_id");
      for (; !rs.Eof(); rs->MoveNext())
        rows_.push_back({fill.RowText(*rs), NzString(rs->FieldAt(status).Value())});
    }
  }
  if (Showing(screen)) Render(screen);
}

void ReservationsPage::Render(frmCustomerDetail& screen) {
  LayOutGrids(screen);
  log_row_ = -1;
  const int tab = tabReservations.SelectedIndex();
  const std::string key = tab > 0 ? tabReservations.TabKey(tab) : std::string();
  ui::Grid& master = screen.grdMaster;
  for (const Row& row : rows_)
    if (row.status == key) master.AddItem(row.text);
  if (master.Rows() <= master.FixedRows()) return;
  // The selection is made quietly and the row change run once, whether or not the
  // current row moved.
  auto on_row_col_change = std::move(master.on_row_col_change);
  auto on_sel_change = std::move(master.on_sel_change);
  master.on_row_col_change = nullptr;
  master.on_sel_change = nullptr;
  master.SelectRows({master.FixedRows()});
  master.on_row_col_change = std::move(on_row_col_change);
  master.on_sel_change = std::move(on_sel_change);
  RowChanged(screen);
}

void ReservationsPage::Reload(frmCustomerDetail& screen) { Load(screen); }

void ReservationsPage::TabSwitched(frmCustomerDetail& screen) {
  if (!Showing(screen)) return;
  ui::Grid& master = screen.grdMaster;
  master.Clear();
  master.SetRows(master.FixedRows());
  master.SetFormatString(kReservationFormat);
  const std::string key = tabReservations.TabKey(tabReservations.SelectedIndex());
  for (const Row& row : rows_)
    if (row.status == key) master.AddItem(row.text);
  ui::Grid& log = screen.grdDetail;
  log.SetRows(log.FixedRows());
  log_row_ = -1;
}

void ReservationsPage::RowChanged(frmCustomerDetail& screen) {
  ui::Grid& master = screen.grdMaster;
  ui::Grid& log = screen.grdDetail;
  log.SetRows(log.FixedRows());
  const int row = master.Row();
  log_row_ = row;
  if (row < master.FixedRows() || row >= master.Rows()) return;
  std::shared_ptr<host::DBConnection> db = screen.DBConnection();
  if (!db) return;
  host::ProcedureCall call(*db, "KiV_SP_CUSTOMER_GetReservationLog");
  call.In("@res_No", Variant(CellNumber(screen, row, kColResNo)))
      .In("@kiv_user", Variant(db->UserID()))
      .In("@kiv_password", Variant(db->UserPassword()));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  LogFill().AddRows(log, *rs);
}

std::vector<int> ReservationsPage::Selected(const frmCustomerDetail& screen) {
  const ui::Grid& master = screen.grdMaster;
  std::vector<int> rows;
  for (int i = 0; i < master.SelectedRows(); ++i) rows.push_back(master.SelectedRow(i));
  return rows;
}

int32_t ReservationsPage::CellNumber(const frmCustomerDetail& screen, int row, int col) {
  return NzLong(Variant(screen.grdMaster.TextMatrix(row, col)));
}

std::shared_ptr<host::ReservationService> ReservationsPage::Service(const frmCustomerDetail& screen) {
  return screen.AppServer() ? screen.AppServer()->GetReservationService() : nullptr;
}

bool ReservationsPage::EditReservations(frmCustomerDetail& screen) {
  auto service = Service(screen);
  return service && service->EditReservations(screen.CustomerNo(), screen.HouseholdNo());
}

bool ReservationsPage::EditReservationByNo(frmCustomerDetail& screen, int32_t res_header_no, int32_t res_no) {
  auto service = Service(screen);
  return service && service->EditReservationByNo(screen.CustomerNo(), res_header_no, res_no);
}

bool ReservationsPage::UnBookReservationByNo(frmCustomerDetail& screen, int32_t res_no) {
  auto service = Service(screen);
  return service && service->UnBookReservationByNo(screen.CustomerNo(), res_no);
}

void ReservationsPage::NewReservation(frmCustomerDetail& screen) {
  if (EditReservations(screen)) Reload(screen);
}

void ReservationsPage::EditReservation(frmCustomerDetail& screen) {
  const std::vector<int> rows = Selected(screen);
  const bool changed = rows.size() == 1 ? EditReservationByNo(screen, CellNumber(screen, rows[0], kColHeaderNo),
                                                              CellNumber(screen, rows[0], kColResNo))
                                        : EditReservations(screen);
  if (changed) Reload(screen);
}

void ReservationsPage::PrintContract(frmCustomerDetail& screen) {
  const std::vector<int> rows = Selected(screen);
  if (rows.size() != 1) return;
  auto reports = screen.AppServer() ? screen.AppServer()->GetReportService() : nullptr;
  if (!reports) return;
  host::ClientReport report;
  if (!reports->GetClientMapReport("CUST_RES", report)) {
    screen.ui().MsgBox("The reservation contract is not set up in Report Maintenance.", ui::vbInformation,
                       "Print Contract");
    return;
  }
  const std::string res_no = std::to_string(CellNumber(screen, rows[0], kColResNo));
  host::ReportParameters parameters = reports->CreateReportParamFromString("res_no=" + res_no);
  parameters.record_selection = "{kiv_reservation.reservation_no} = " + res_no;
  reports->PrintReport(report, parameters);
}

void ReservationsPage::BookReservations(frmCustomerDetail& screen) {
  const std::vector<int> rows = Selected(screen);
  if (rows.size() > 1) {
    screen.ui().MsgBox("Please only select a single row before selecting book reservations.", ui::vbInformation,
                       "Book Reservation");
    return;
  }
  if (rows.empty()) return;
  // One L: a row reading "CANCELLED" (the tab's key) still goes to the editor.
  if (screen.grdMaster.TextMatrix(rows[0], kColStatus) == "CANCELED") return;
  const int32_t header_no = CellNumber(screen, rows[0], kColHeaderNo);
  if (header_no != 0)
    EditReservationByNo(screen, header_no, CellNumber(screen, rows[0], kColResNo));
  else
    EditReservations(screen);
  Reload(screen);
}

void ReservationsPage::UnbookReservation(frmCustomerDetail& screen) {
  const std::vector<int> rows = Selected(screen);
  if (rows.size() != 1) {
    screen.ui().MsgBox("Please only select a single row before selecting unbook.", ui::vbInformation,
                       "Unbook Reservation");
    return;
  }
  if (screen.grdMaster.TextMatrix(rows[0], kColStatus) != kBooked) return;
  // The one confirmation of the editor that defaults to Yes.
  if (screen.ui().MsgBox("Are you sure you want to unbook this reservation?",
                         ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton1, "Confirm UnBook") != ui::vbYes)
    return;
  UnBookReservationByNo(screen, CellNumber(screen, rows[0], kColResNo));
  Reload(screen);
}

}  // namespace kiv

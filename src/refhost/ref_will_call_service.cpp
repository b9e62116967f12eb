// Will-call printing of the reference host.
#include "refhost/ref_will_call_service.h"

#include "core/format.h"
#include "refhost/html_document.h"

namespace kiv::refhost {

RefWillCallScreen::RefWillCallScreen()
    : ui::Form("frmRefWillCall"),
      lblRegister(Add<ui::Label>("lblRegister")),
      grdWillCalls(Add<ui::Grid>("grdWillCalls")),
      cmdPrint(Add<ui::CommandButton>("cmdPrint", "Print")),
      cmdClose(Add<ui::CommandButton>("cmdClose", "Close")),
      lblTicket(Add<ui::Label>("lblTicket")) {
  SetCaption("Will Call");
  grdWillCalls.SetFormatString(kFormat);
  grdWillCalls.SetSelectionMode(ui::flexSelectionListBox);
  cmdClose.SetCancel(true);
  cmdClose.on_click = [this] { Hide(); };
}

RefWillCallService::RefWillCallService(std::shared_ptr<SqliteDatabase> db, std::string user,
                                       std::shared_ptr<ui::Ui> ui, std::shared_ptr<TraceHook> trace)
    : db_(std::move(db)), user_(std::move(user)), ui_(std::move(ui)), trace_(std::move(trace)) {
  if (ui_) screen_.SetUi(ui_);
}

void RefWillCallService::FillList(int32_t customer_no, int32_t will_call_no) {
  ui::Grid& grid = screen_.grdWillCalls;
  grid.SetRows(grid.FixedRows());
  auto rows = db_->QueryRows(
      "SELECT will_call_no, access_no, long_description, valid_date, status_id FROM kiv_will_call "
      "WHERE customer_no = ? AND dtm_printed IS NULL ORDER BY valid_date, will_call_no",
      {Variant(customer_no)});
  int chosen = -1;
  for (const auto& r : rows) {
    grid.AddItem(NzString(r[0]) + "\t" + NzString(r[1]) + "\t" + NzString(r[2]) + "\t" +
                 Format(r[3], "MM/dd/yyyy") + "\t" + NzString(r[4]));
    if (NzLong(r[0]) == will_call_no) chosen = grid.Rows() - 1;
  }
  if (grid.Rows() > grid.FixedRows()) grid.SelectRows({chosen > 0 ? chosen : grid.FixedRows()});
}

bool RefWillCallService::ShowWillCallScreen(int32_t customer_no, const std::string& register_id, int32_t control_no,
                                            int32_t will_call_no, int32_t access_no) {
  TraceHostCall(trace_, "ShowWillCallScreen",
                {{"customer_no", Variant(customer_no)}, {"register_id", Variant(register_id)},
                 {"control_no", Variant(control_no)}, {"will_call_no", Variant(will_call_no)},
                 {"access_no", Variant(access_no)}});
  bool printed = false;
  screen_.lblRegister.SetCaption("Register " + register_id + ", control " + std::to_string(control_no));
  screen_.lblTicket.SetCaption("");
  FillList(customer_no, will_call_no);
  screen_.cmdPrint.on_click = [&, this] {
    ui::Grid& grid = screen_.grdWillCalls;
    std::vector<int32_t> chosen;
    for (int i = 0; i < grid.SelectedRows(); ++i) chosen.push_back(NzLong(Variant(grid.TextMatrix(grid.SelectedRow(i), 0))));
    if (chosen.empty()) {
      screen_.ui().MsgBox("Select the will calls to print.", ui::vbInformation, "Will Call");
      return;
    }
    const std::string path = PrintWillCalls(customer_no, chosen, register_id, control_no);
    if (path.empty()) return;
    printed = true;
    screen_.lblTicket.SetCaption(path);
    FillList(customer_no, 0);
  };
  if (!ui_) return false;
  screen_.Show(ui::vbModal);
  screen_.cmdPrint.on_click = nullptr;
  return printed;
}

std::string RefWillCallService::PrintWillCalls(int32_t customer_no, const std::vector<int32_t>& will_call_nos,
                                               const std::string& register_id, int32_t control_no) {
  const Variant now(db_->Now());
  std::string body = "<h1>Will Call</h1><p>Register " + HtmlEscape(register_id) + ", control " +
                     std::to_string(control_no) + ", printed by " + HtmlEscape(user_) + " on " +
                     HtmlEscape(Format(now, "MM/dd/yyyy hh:nn AMPM")) + "</p><table><tr><th>WC#</th><th>Access#</th>"
                     "<th>Description</th><th>Customer</th><th>Valid</th></tr>";
  int printed = 0;
  Transaction tx(*db_, true);
  for (int32_t no : will_call_nos) {
    auto rows = db_->QueryRows(
        "SELECT w.will_call_no, w.access_no, w.long_description, c.full_name, w.valid_date FROM kiv_will_call w "
        "JOIN kiv_customer c ON c.customer_no = w.customer_no WHERE w.will_call_no = ? AND w.customer_no = ? "
        "AND w.dtm_printed IS NULL",
        {Variant(no), Variant(customer_no)});
    if (rows.empty()) continue;
    db_->Execute("UPDATE kiv_will_call SET status_id = 'PRINTED', dtm_printed = ?, kiv_user_printed = ? "
                 "WHERE will_call_no = ?",
                 {now, Variant(user_), Variant(no)});
    const auto& r = rows[0];
    body += "<tr><td>" + HtmlEscape(NzString(r[0])) + "</td><td>" + HtmlEscape(NzString(r[1])) + "</td><td>" +
            HtmlEscape(NzString(r[2])) + "</td><td>" + HtmlEscape(NzString(r[3])) + "</td><td>" +
            HtmlEscape(Format(r[4], "MM/dd/yyyy")) + "</td></tr>";
    ++printed;
  }
  if (printed == 0) return {};
  body += "</table>";
  const std::string path =
      WriteDocument(DocumentFolder(db_->Path()), "will-call-" + std::to_string(customer_no), HtmlPage("Will Call", body))
          .string();
  tx.Commit();
  TraceHostCall(trace_, "PrintWillCall", {{"customer_no", Variant(customer_no)}, {"count", Variant(printed)}},
                {{"ticket", Variant(path)}});
  return path;
}

}  // namespace kiv::refhost

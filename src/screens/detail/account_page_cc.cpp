// The cards on file: the card grid with its masked and last-four columns, the payments of
// the chosen card, the Active and DTL marks sent to the server, and deletion with the
// server's confirmation.
#include <algorithm>

#include "core/text.h"
#include "host/db_patterns.h"
#include "screens/detail/account_page.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/grid_fill.h"
#include "ui/keys.h"
#include "ui/wait_cursor.h"

namespace kiv {

namespace {

constexpr int kFlexDTBoolean = 11;

std::string LastFour(const std::string& text) { return text.size() <= 4 ? text : text.substr(text.size() - 4); }

bool Checked(const ui::Grid& grid, int row, int col) { return grid.CellChecked(row, col) == ui::flexChecked; }

void SetChecked(ui::Grid& grid, int row, int col, bool on) {
  grid.SetCellChecked(row, col, on ? ui::flexChecked : ui::flexUnchecked);
}

}  // namespace

std::string AccountPage::MaskedCardText(const Variant& cc_card_no, const Variant& x_card_no) {
  if (!cc_card_no.IsNull() && !cc_card_no.IsEmpty()) return NzString(cc_card_no);
  return LastFour(NzString(x_card_no));
}

std::string AccountPage::ActivationQuestion(bool activate) {
  return std::string("Are you sure you want to ") + (activate ? "activate" : "de-activate") +
         " the selected credit card on file?";
}

std::string AccountPage::DeleteQuestion(const std::string& type, const std::string& masked,
                                        const std::string& exp_date) {
  return "Are you sure you want to delete this " + type + " credit card on file ending in " + LastFour(masked) +
         " and expiration date of " + exp_date + "?";
}

void AccountPage::WireCardGrid(frmCustomerDetail& screen) {
  fgCC.on_before_edit = [](int, int col, bool& cancel) { cancel = col != kColActive && col != kColDtl; };
  fgCC.on_after_edit = [this, &screen](int row, int col) {
    screen.Guard("fgCC_AfterEdit", [&] { CardCellEdited(screen, row, col); });
  };
  fgCC.on_row_col_change = [this, &screen] {
    screen.Guard("fgCC_RowColChange", [&] {
      ui::WaitCursor wait(screen.ui());
      LoadCardPayments(screen, fgCC.Row());
    });
  };
  fgCC.on_key_down = [this, &screen](int& key_code, int) {
    if (key_code != ui::vbKeyDelete) return;
    screen.Guard("fgCC_KeyDown", [&] { DeleteCard(screen); });
  };
}

void AccountPage::ApplyCardColumns() {
  fgCC.SetColHidden(kColMasked, show_card_data_);
  fgCC.SetColHidden(kColLastFour, !show_card_data_);
}

void AccountPage::ShowCardData(frmCustomerDetail&, bool show) {
  show_card_data_ = show;
  ApplyCardColumns();
}

void AccountPage::LoadCards(frmCustomerDetail& screen) {
  fgCC.SetFormatString(kCardsFormat);
  fgCC.SetRows(fgCC.FixedRows());
  fgCC.SetColDataType(kColActive, kFlexDTBoolean);
  fgCC.SetColDataType(kColDtl, kFlexDTBoolean);
  fgCC.SetEditable(ui::flexEDKbdMouse);
  ApplyCardColumns();
  payments_row_ = -1;
  SetUpPayments();
  ClearLines();
  if (screen.CustomerNo() == 0 || !screen.DBConnection()) return;
  host::DBConnection& db = *screen.DBConnection();
  host::ProcedureCall call(db, "KIV_SP_CUSTOMER_GetCC");
  call.In("@customer_no", Variant(screen.CustomerNo()))
      .In("@kiv_user", Variant(db.UserID()))
      .In("@kiv_password", Variant(db.UserPassword()));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  GridFill fill({FillColumn::Of("card_seq_no"), FillColumn::Composed({}, [](const auto&) { return std::string(); }),
                 FillColumn::Composed({}, [](const auto&) { return std::string(); }), FillColumn::Of("Pay_Method_ID"),
                 FillColumn::Composed({"cc_card_no", "x_card_no"},
                                      [](const std::vector<Variant>& v) { return MaskedCardText(v[0], v[1]); }),
                 FillColumn::Composed({"x_card_no"},
                                      [](const std::vector<Variant>& v) { return LastFour(NzString(v[0])); }),
                 FillColumn::Of("exp_date"), FillColumn::Of("Zip"), FillColumn::Of("modified_on")});
  if (rs.Eof()) return;
  fill.Bind(*rs);
  for (; !rs.Eof(); rs->MoveNext()) {
    const int row = fill.AddRow(fgCC, *rs);
    SetChecked(fgCC, row, kColActive, NzBool(rs->FieldByName("is_active").Value()));
    SetChecked(fgCC, row, kColDtl, false);
  }
  rs.Close();
  if (fgCC.Rows() > fgCC.FixedRows()) {
    fgCC.SetRow(fgCC.FixedRows());
    LoadCardPayments(screen, fgCC.FixedRows());
  }
}

void AccountPage::LoadCardPayments(frmCustomerDetail& screen, int row) {
  if (row == payments_row_) return;
  if (row < fgCC.FixedRows() || row >= fgCC.Rows() || !screen.DBConnection()) return;
  payments_row_ = row;
  ClearLines();
  SetUpPayments();
  host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetCCPayments");
  call.In("@customer_no", Variant(screen.CustomerNo()))
      .In("@card_seq_no", Variant(NzLong(Variant(fgCC.TextMatrix(row, kColSeqNo)))));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  GridFill({FillColumn::Of("audited"), FillColumn::Of("register_id"), FillColumn::Of("control_no"),
            FillColumn::Of("invoice_no"), FillColumn::Of("payment_no"),
            FillColumn::Of("payment_date", "MM/dd/yyyy hh:nn AMPM"), FillColumn::Of("Pay_Method_ID"),
            FillColumn::Of("Amount")})
      .AddRows(vsfAccountPayments, *rs);
}

bool AccountPage::UpdateCardOnFile(frmCustomerDetail& screen, int32_t card_seq_no, bool is_active, bool,
                                   Variant& modified_on) {
  if (!screen.DBConnection()) return false;
  host::DBConnection& db = *screen.DBConnection();
  host::ProcedureCall call(db, "KIV_SP_CUSTOMER_UpdateCreditCard");
  call.In("@customer_no", Variant(screen.CustomerNo()))
      .In("@card_seq_no", Variant(card_seq_no))
      .In("@is_active", Variant(is_active))
      .In("@kiv_user", Variant(db.UserID()));
  if (!call.Execute()) return false;
  if (call.ReturnValue(-1) < 0) {
    screen.ui().MsgBox(call.OutputText("@message"), ui::vbInformation, "Error Updating Credit Card on File Status");
    return false;
  }
  modified_on = call.Output("@modified_on");
  return true;
}

void AccountPage::CardCellEdited(frmCustomerDetail& screen, int row, int col) {
  if (row < fgCC.FixedRows() || row >= fgCC.Rows()) return;
  const int32_t seq = NzLong(Variant(fgCC.TextMatrix(row, kColSeqNo)));
  const bool active = Checked(fgCC, row, kColActive);
  const bool dtl = Checked(fgCC, row, kColDtl);
  Variant stamp;
  if (col == kColActive) {
    const bool confirmed = screen.ui().MsgBox(ActivationQuestion(active), ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2,
                                              "Confirm Activation Change") == ui::vbYes;
    // A declined or refused change leaves the box showing what the server holds.
    if (!confirmed || !UpdateCardOnFile(screen, seq, active, dtl, stamp)) {
      SetChecked(fgCC, row, kColActive, !active);
      return;
    }
    fgCC.SetTextMatrix(row, kColModified, NzString(stamp));
    return;
  }
  if (col != kColDtl) return;
  if (!UpdateCardOnFile(screen, seq, active, dtl, stamp)) {
    SetChecked(fgCC, row, kColDtl, !dtl);
    return;
  }
  if (dtl) {
    // One card at most carries the mark.
    for (int r = fgCC.FixedRows(); r < fgCC.Rows(); ++r) SetChecked(fgCC, r, kColDtl, false);
    SetChecked(fgCC, row, kColDtl, true);
  }
  fgCC.SetTextMatrix(row, kColModified, NzString(stamp));
}

int32_t AccountPage::RunDelete(frmCustomerDetail& screen, int32_t card_seq_no, bool confirm, std::string& message) {
  host::DBConnection& db = *screen.DBConnection();
  host::ProcedureCall call(db, "KIV_SP_CUSTOMER_CC_delete");
  call.In("@customer_no", Variant(screen.CustomerNo()))
      .In("@card_seq_no", Variant(card_seq_no))
      .In("@kiv_user", Variant(db.UserID()))
      .In("@confirm_delete", Variant(confirm));
  // A call the host could not run deletes nothing; the host has reported it.
  if (!call.Execute()) return -2;
  message = call.OutputText("@message");
  return call.ReturnValue(-1);
}

void AccountPage::RemoveCardRow(frmCustomerDetail& screen, int row) {
  fgCC.RemoveItem(row);
  payments_row_ = -1;
  SetUpPayments();
  ClearLines();
  if (fgCC.Rows() < 2) return;
  const int next = std::min(row, fgCC.Rows() - 1);
  fgCC.SetRow(next);
  LoadCardPayments(screen, next);
}

void AccountPage::DeleteCard(frmCustomerDetail& screen) {
  if (!screen.CanDeleteCards()) {
    screen.ui().MsgBox("Sorry you to not have permission to delete customer credit cards on file.", ui::vbOKOnly, "");
    return;
  }
  const int row = fgCC.Row();
  if (row < fgCC.FixedRows() || row >= fgCC.Rows() || !screen.DBConnection()) return;
  const std::string question =
      DeleteQuestion(fgCC.TextMatrix(row, kColType), fgCC.TextMatrix(row, kColMasked), fgCC.TextMatrix(row, kColExpDate));
  if (screen.ui().MsgBox(question, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, "Confirm Credit Card Delete") !=
      ui::vbYes)
    return;
  const int32_t seq = NzLong(Variant(fgCC.TextMatrix(row, kColSeqNo)));
  std::string message;
  int32_t result = RunDelete(screen, seq, false, message);
  if (result > 0) {
    if (screen.ui().MsgBox(message, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2,
                           "Warning Deleting Credit Card") != ui::vbYes)
      return;
    result = RunDelete(screen, seq, true, message);
  }
  if (result == 0) {
    RemoveCardRow(screen, row);
    return;
  }
  if (result == -2) return;
  if (result < 0) screen.ui().MsgBox(message, ui::vbInformation, "Error Deleting Credit Card");
}

}  // namespace kiv

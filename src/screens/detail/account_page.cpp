// The account page's frame: its controls and views, the house account with its payments, and
// the invoice lines of a chosen payment.
#include "screens/detail/account_page.h"

#include "core/format.h"
#include "core/text.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/detail/invoice_history.h"
#include "screens/kit/grid_fill.h"
#include "ui/wait_cursor.h"

namespace kiv {

namespace {

template <class T, class... Args>
T& AddIn(frmCustomerDetail& screen, ui::Control& container, const std::string& name, Args&&... args) {
  T& control = screen.Add<T>(name, std::forward<Args>(args)...);
  control.SetContainer(&container);
  return control;
}

}  // namespace

AccountPage::AccountPage(frmCustomerDetail& screen)
    : picAccount(screen.Add<ui::Panel>("picAccount")),
      tabAccountType(AddIn<ui::TabStrip>(screen, picAccount, "tabAccountType")),
      fraAccountRSVP(AddIn<ui::Frame>(screen, picAccount, "fraAccountRSVP", "Account Information")),
      lblAccountNo(AddIn<ui::Label>(screen, fraAccountRSVP, "lblAccountNo")),
      lblAccountDescription(AddIn<ui::Label>(screen, fraAccountRSVP, "lblAccountDescription")),
      lblAccountLimit(AddIn<ui::Label>(screen, fraAccountRSVP, "lblAccountLimit")),
      lblAccountBalance(AddIn<ui::Label>(screen, fraAccountRSVP, "lblAccountBalance")),
      fraAccountCC(AddIn<ui::Frame>(screen, picAccount, "fraAccountCC", "Select a Credit Card to see it's detail")),
      fgCC(AddIn<ui::Grid>(screen, fraAccountCC, "fgCC")),
      fraAccountAddCC(AddIn<ui::Frame>(screen, picAccount, "fraAccountAddCC")),
      CCManual1(AddIn<ui::Panel>(screen, fraAccountAddCC, "CCManual1")),
      fraAccountPayments(AddIn<ui::Frame>(screen, picAccount, "fraAccountPayments")),
      vsfAccountPayments(AddIn<ui::Grid>(screen, fraAccountPayments, "vsfAccountPayments")),
      fraAccountLines(AddIn<ui::Frame>(screen, picAccount, "fraAccountLines")),
      vfgRSVPInvoiceLines(AddIn<ui::Grid>(screen, fraAccountLines, "vfgRSVPInvoiceLines")) {
  picAccount.SetVisible(false);
  tabAccountType.AddTab(kRsvp, "House Account");
  tabAccountType.AddTab(kCards, "Cards on File");
  tabAccountType.AddTab(kAddCard, "Add Card");
  for (ui::Grid* grid : {&fgCC, &vsfAccountPayments, &vfgRSVPInvoiceLines}) {
    grid->SetSelectionMode(ui::flexSelectionByRow);
    grid->SetEditable(ui::flexEDNone);
  }
  fraAccountAddCC.SetVisible(false);
  fraAccountCC.SetVisible(false);
  // The page shows only on its own tab; the editor hands the strip's click on first.
  auto editor_click = screen.tabCustomer.on_click;
  screen.tabCustomer.on_click = [this, &screen, editor_click] {
    if (editor_click) editor_click();
    picAccount.SetVisible(screen.tabCustomer.SelectedIndex() == kTab);
  };
  tabAccountType.on_click = [this, &screen] {
    if (selecting_) return;
    screen.Guard("tabAccountType_Click", [&] { ShowView(screen, tabAccountType.SelectedKey()); });
  };
  vsfAccountPayments.on_sel_change = [this, &screen] {
    screen.Guard("vsfAccountPayments_SelChange", [&] { ShowPaymentLines(screen); });
  };
  WireCardGrid(screen);
}

bool AccountPage::Showing(const frmCustomerDetail& screen) const {
  return screen.tabCustomer.SelectedIndex() == kTab;
}

void AccountPage::Reset() {
  payments_row_ = -1;
  fgCC.SetRows(fgCC.FixedRows());
  vsfAccountPayments.SetRows(vsfAccountPayments.FixedRows());
  vfgRSVPInvoiceLines.SetRows(vfgRSVPInvoiceLines.FixedRows());
  for (ui::Label* label : {&lblAccountNo, &lblAccountDescription, &lblAccountLimit, &lblAccountBalance})
    label->SetCaption("");
}

void AccountPage::Activate(frmCustomerDetail&) {
  picAccount.SetVisible(true);
  if (tabAccountType.SelectedIndex() == 0) {
    // Selecting from code would load the view before the page's first Load does.
    selecting_ = true;
    tabAccountType.SetSelectedIndex(tabAccountType.FindTab(view_));
    selecting_ = false;
  }
}

void AccountPage::Load(frmCustomerDetail& screen) {
  Reset();
  ShowView(screen, view_);
}

void AccountPage::ShowView(frmCustomerDetail& screen, const std::string& key) {
  const std::string view = key.empty() ? std::string(kRsvp) : UCase(key);
  if (view == kAddCard) {
    BeginCardEntry(screen);
    return;
  }
  view_ = view;
  const bool cards = view_ == kCards;
  fraAccountRSVP.SetVisible(!cards);
  fraAccountCC.SetVisible(cards);
  fraAccountAddCC.SetVisible(false);
  fraAccountPayments.SetCaption(cards ? "Card Payment Transactions" : "Account Payment Transactions");
  fraAccountLines.SetCaption(cards ? "Associated Card Payment Invoice Lines" : "Associated Account Payment Invoice Lines");
  if (cards) {
    LoadCards(screen);
    return;
  }
  LoadAccount(screen);
}

void AccountPage::ClearLines() {
  vfgRSVPInvoiceLines.SetFormatString(InvoiceHistory::kLinesFormat);
  vfgRSVPInvoiceLines.SetRows(vfgRSVPInvoiceLines.FixedRows());
}

void AccountPage::SetUpPayments() {
  vsfAccountPayments.SetFormatString(kPaymentsFormat);
  vsfAccountPayments.SetRows(vsfAccountPayments.FixedRows());
  vsfAccountPayments.SetColFormat(7, kAmountFormat);
}

namespace {

GridFill PaymentFill() {
  return GridFill({FillColumn::Of("audited"), FillColumn::Of("register_id"), FillColumn::Of("control_no"),
                   FillColumn::Of("invoice_no"), FillColumn::Of("payment_no"),
                   FillColumn::Of("payment_date", "MM/dd/yyyy hh:nn AMPM"), FillColumn::Of("Pay_Method_ID"),
                   FillColumn::Of("Amount")});
}

}  // namespace

void AccountPage::LoadAccount(frmCustomerDetail& screen) {
  for (ui::Label* label : {&lblAccountNo, &lblAccountDescription, &lblAccountLimit, &lblAccountBalance})
    label->SetCaption("");
  SetUpPayments();
  ClearLines();
  std::shared_ptr<CCustomer> customer = screen.Customer();
  if (!customer || screen.CustomerNo() == 0 || !screen.DBConnection()) return;
  const std::string account = customer->AccountNo();
  lblAccountNo.SetCaption(account);
  host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetAccountAndPayments");
  call.In("@customer_no", Variant(screen.CustomerNo())).In("@account_id", Variant(account));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen()) return;
  if (!rs.Eof()) {
    lblAccountDescription.SetCaption(NzString(rs->FieldByName("Description").Value()));
    lblAccountLimit.SetCaption(Format(Variant(NzDouble(rs->FieldByName("account_limit").Value())), "Currency"));
    lblAccountBalance.SetCaption(Format(Variant(NzDouble(rs->FieldByName("account_balance").Value())), "Currency"));
  }
  host::ScopedRecordset payments(rs->NextRecordset());
  if (!payments || !payments->IsOpen()) return;
  PaymentFill().AddRows(vsfAccountPayments, *payments);
}

void AccountPage::ShowPaymentLines(frmCustomerDetail& screen) {
  ui::Grid& grid = vsfAccountPayments;
  const int row = grid.Row();
  if (grid.Rows() < 2 || row < grid.FixedRows() || row >= grid.Rows() || !screen.DBConnection()) return;
  const std::string audited = grid.TextMatrix(row, 0);
  host::ProcedureCall call(*screen.DBConnection(), "KIV_SP_CUSTOMER_GetInvoiceLines");
  call.In("@register_id", Variant(grid.TextMatrix(row, 1)))
      .In("@control_no", Variant(NzLong(Variant(grid.TextMatrix(row, 2)))))
      .In("@invoice_no", Variant(NzLong(Variant(grid.TextMatrix(row, 3)))))
      .In("@audited", Variant(EqualsNoCase(audited, "True") || audited == "-1" || audited == "1"));
  ClearLines();
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen() || rs.Eof()) return;
  GridFill fill = InvoiceHistory::LineFill();
  fill.Bind(*rs);
  for (; !rs.Eof(); rs->MoveNext()) InvoiceHistory::AddLineRow(vfgRSVPInvoiceLines, *rs, fill, false);
}

}  // namespace kiv

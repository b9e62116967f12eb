// The invoice history's row builders and reader. The three kinds come in one list, invoice
// by invoice, each row naming its kind in `line_type`.
#include "screens/detail/invoice_history.h"

#include "core/text.h"
#include "host/db_patterns.h"

namespace kiv {

namespace {

std::string Joined(const std::vector<std::string>& cells, char by) {
  std::string text;
  for (size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) text += by;
    text += cells[i];
  }
  return text;
}

const std::vector<std::string>& InvoiceHeaderCells() {
  static const std::vector<std::string> cells = {"IH",   "Reg",  "Con",     "Inv",    "SO No",         "Date",
                                                 "Customer", "Due", "Paid", "Voucher", "Voucher Serial"};
  return cells;
}

FillColumn Constant(const char* text) {
  return FillColumn::Composed({}, [text](const std::vector<Variant>&) { return std::string(text); });
}

FillColumn Trimmed(const char* field) {
  FillColumn c = FillColumn::Composed({field}, [](const std::vector<Variant>& v) { return Trim(NzString(v[0])); });
  c.optional = true;
  return c;
}

FillColumn Optional(const char* field, const char* format = "") {
  FillColumn c = FillColumn::Of(field, format);
  c.optional = true;
  return c;
}

constexpr const char* kLineDateFormat = "MM/dd/yyyy hh:nn AMPM";

}  // namespace

std::string InvoiceHistory::InvoiceHeaderText() { return Joined(InvoiceHeaderCells(), '\t'); }

std::string InvoiceHistory::LineHeaderText() {
  return "LH\tLine\tDate\tCustomer\tLineNet\tStart Access\tEnd Access\tValid Date\tExt Sale\tDescription\tStock "
         "No\tSerial No\tSeason\tDisc Type\tDisc Prg\tQty\tGross\tPrice\tLine Comm\tLine Disc\tLine Tax\tRefundable\tDisc "
         "Rsn\tRtn Rsn\tUser\tAuthorizer\tComment";
}

std::string InvoiceHistory::PaymentHeaderText() {
  return "PH\tPayment\tDate\tCustomer\tAmount\tAccount\tPay Method\tAction" + std::string(18, '\t') +
         "Authorizer\tComment";
}

std::string InvoiceHistory::FormatString() { return Joined(InvoiceHeaderCells(), '|'); }

GridFill InvoiceHistory::InvoiceFill() {
  return GridFill({Constant("I"), FillColumn::Of("register_id"), FillColumn::Of("control_no"),
                   FillColumn::Of("invoice_no"), FillColumn::Of("salesorder_no"),
                   FillColumn::Of("invoice_date", "MM/dd/yyyy"), FillColumn::Of("full_name"),
                   FillColumn::Of("total_due", "Currency"), FillColumn::Of("total_paid", "Currency"),
                   Optional("voucher_no"), Optional("voucher_serial_id")});
}

GridFill InvoiceHistory::LineFill() {
  // The quantity counts units when the line sells them in packs; the unit follows it.
  FillColumn quantity = FillColumn::Composed({"qty", "unit_qty", "unit_id"}, [](const std::vector<Variant>& v) {
    if (v[0].IsNull() || v[0].IsEmpty()) return std::string();
    double qty = NzDouble(v[0]);
    if (!v[1].IsNull() && !v[1].IsEmpty() && NzDouble(v[1]) != 0) qty *= NzDouble(v[1]);
    std::string text = NzString(Variant(qty));
    const std::string unit = Trim(NzString(v[2]));
    return unit.empty() ? text : text + " " + unit;
  });
  quantity.optional = true;
  FillColumn season = FillColumn::Composed({"season_no", "season_description"}, [](const std::vector<Variant>& v) {
    const std::string description = Trim(NzString(v[1]));
    return description.empty() ? NzString(v[0]) : description;
  });
  season.optional = true;
  FillColumn authorizer = FillColumn::Composed({"authorizer_no", "authorizer"}, [](const std::vector<Variant>& v) {
    const std::string name = Trim(NzString(v[1]));
    return name.empty() ? NzString(v[0]) : name;
  });
  authorizer.optional = true;
  return GridFill({Constant("L"),
                   FillColumn::Of("line_no"),
                   FillColumn::Of("line_date", kLineDateFormat),
                   FillColumn::Of("full_name"),
                   FillColumn::Of("linenet", "Currency"),
                   Optional("start_access"),
                   Optional("end_access"),
                   Optional("valid_date", "MM/dd/yyyy"),
                   Optional("is_extension_sale"),
                   Trimmed("long_description"),
                   Optional("stock_no"),
                   Optional("serial_no"),
                   season,
                   Trimmed("discount_id"),
                   Optional("discount_program"),
                   quantity,
                   Optional("gross_unit_price", "Currency"),
                   Optional("unit_price", "Currency"),
                   Optional("unit_commission", "Currency"),
                   Optional("unit_discount", "Currency"),
                   Optional("line_tax", "Currency"),
                   Optional("Refundable"),
                   Optional("discount_reason"),
                   Optional("return_reason"),
                   Optional("kiv_user"),
                   authorizer,
                   Optional("comment_note")});
}

GridFill InvoiceHistory::PaymentFill() {
  std::vector<FillColumn> columns = {
      Constant("P"), FillColumn::Of("payment_no"), FillColumn::Of("payment_date", kLineDateFormat),
      // The payer's name is shown only for a payment that names a customer.
      FillColumn::Composed({"customer_no", "full_name"},
                           [](const std::vector<Variant>& v) {
                             return v[0].IsNull() || v[0].IsEmpty() ? std::string() : NzString(v[1]);
                           }),
      FillColumn::Of("Amount"), FillColumn::Of("account_id"), FillColumn::Of("Pay_Method_ID"),
      FillColumn::Of("pay_action_id")};
  // Seventeen empty cells: with the eighteen tabs that part them the authorizer lands in column 25.
  for (int i = 0; i < 17; ++i) columns.push_back(Constant(""));
  columns.push_back(Optional("authorizer"));
  columns.push_back(Optional("comment_note"));
  return GridFill(std::move(columns));
}

std::vector<HistoryRow> InvoiceHistory::Read(host::DBConnection& db, int32_t customer_no) {
  std::vector<HistoryRow> rows;
  host::ProcedureCall call(db, "KIV_SP_CLIENT_GetInvoiceData");
  call.In("@customer_no", Variant(customer_no));
  host::ScopedRecordset rs = call.Open();
  if (!rs || !rs->IsOpen() || rs.Eof()) return rows;
  GridFill invoice = InvoiceFill(), line = LineFill(), payment = PaymentFill();
  invoice.Bind(*rs);
  line.Bind(*rs);
  payment.Bind(*rs);
  HistoryRow::Kind last = HistoryRow::kInvoiceHeader;
  for (; !rs.Eof(); rs->MoveNext()) {
    const std::string type = UCase(Trim(NzString(rs->FieldByName("line_type").Value())));
    if (type == "I") {
      // The grid's own fixed row heads the first invoice.
      if (!rows.empty()) rows.push_back({HistoryRow::kInvoiceHeader, InvoiceHeaderText()});
      rows.push_back({HistoryRow::kInvoice, invoice.RowText(*rs)});
      last = HistoryRow::kInvoice;
      continue;
    }
    if (type == "L") {
      if (last != HistoryRow::kLine) rows.push_back({HistoryRow::kLineHeader, LineHeaderText()});
      rows.push_back({HistoryRow::kLine, line.RowText(*rs)});
      last = HistoryRow::kLine;
      continue;
    }
    if (type == "P") {
      if (last != HistoryRow::kPayment) rows.push_back({HistoryRow::kPaymentHeader, PaymentHeaderText()});
      rows.push_back({HistoryRow::kPayment, payment.RowText(*rs)});
      last = HistoryRow::kPayment;
    }
  }
  return rows;
}

void InvoiceHistory::Show(ui::Grid& grid, const std::vector<HistoryRow>& rows) {
  grid.SetFormatString(FormatString());
  grid.SetCols(kColumns);
  grid.SetRows(grid.FixedRows());
  grid.SetSelectionMode(ui::flexSelectionByRow);
  grid.SetEditable(ui::flexEDNone);
  for (const HistoryRow& row : rows) {
    grid.AddItem(row.text);
    const int at = grid.Rows() - 1;
    const bool header = row.kind == HistoryRow::kInvoiceHeader || row.kind == HistoryRow::kLineHeader ||
                        row.kind == HistoryRow::kPaymentHeader;
    if (header) grid.SetRowStyle(at, "header");
    const bool invoice_level = row.kind == HistoryRow::kInvoiceHeader || row.kind == HistoryRow::kInvoice;
    grid.SetRowOutlineLevel(at, invoice_level ? 0 : 1);
    if (row.kind == HistoryRow::kInvoice) grid.SetIsSubtotal(at, true);
  }
}

void InvoiceHistory::AddLineRow(ui::Grid& grid, host::Recordset& rs, const GridFill& fill, bool in_history) {
  const int at = fill.AddRow(grid, rs);
  if (in_history) grid.SetRowOutlineLevel(at, 1);
}

}  // namespace kiv

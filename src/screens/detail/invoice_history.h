// The rows of a customer's invoice history: invoices, their lines and their payments as one
// outline, each row kind with its own cells and formats, and the header rows set between
// them. The line row is also what the payment-lines grid of the account page shows.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "host/db_connection.h"
#include "host/recordset.h"
#include "screens/kit/grid_fill.h"
#include "ui/grid.h"

namespace kiv {

//! One row of the history as shown: its tab-joined cells and what it is.
struct HistoryRow {
  enum Kind { kInvoiceHeader, kInvoice, kLineHeader, kLine, kPaymentHeader, kPayment };
  Kind kind;
  std::string text;
};

class InvoiceHistory {
 public:
  //! The texts of the three header rows (tab-separated, first cell the kind letters).
  static std::string InvoiceHeaderText();
  static std::string LineHeaderText();
  //! Eighteen tabs follow "Action", so the payment's authorizer and comment stand under the
  //! line header's "Authorizer" and "Comment" (columns 25 and 26).
  static std::string PaymentHeaderText();
  //! The history grid's format string: the invoice header with "|" for every tab.
  static std::string FormatString();
  //! The payment-lines grid's format string.
  static constexpr const char* kLinesFormat =
      "LH|^Line|^Date|Customer|>LineNet|Start Access|End Access|Valid Date|Ext Sale|Description"
      "|Stock No|Serial No|Season|Disc Type|Disc Prg|Qty|Gross|Price|Line Comm|Line Disc|Line Tax|Refundable|Disc "
      "Rsn|Rtn Rsn|User|Authorizer|Comment";
  //! Columns of the widest row kind (the line).
  static constexpr int kColumns = 27;

  //! The cells of each row kind, read from a recordset positioned on such a row.
  static GridFill InvoiceFill();
  static GridFill LineFill();
  static GridFill PaymentFill();

  //! Reads the customer's history through KIV_SP_CLIENT_GetInvoiceData. Before every invoice
  //! but the first comes an invoice header row; a run of lines, or of payments, is preceded
  //! by its header row.
  static std::vector<HistoryRow> Read(host::DBConnection& db, int32_t customer_no);
  //! Lays the history grid out (format string, column count) and shows the rows, header rows
  //! styled as headers, invoices at outline level 0 and their lines and payments at level 1.
  static void Show(ui::Grid& grid, const std::vector<HistoryRow>& rows);
  //! The line-row builder: appends the line the recordset is on. In the history (`in_history`)
  //! the row is an outline child of its invoice; in the payment-lines grid it is a plain row.
  static void AddLineRow(ui::Grid& grid, host::Recordset& rs, const GridFill& fill, bool in_history);
};

}  // namespace kiv

// The invoice history over the scripted host: the header texts and where the payment's
// authorizer falls, the header rows set between invoices, lines and payments, and the
// cells of each row kind.
#include <gtest/gtest.h>

#include "core/text.h"
#include "frm_customer_detail_rig.h"
#include "screens/detail/invoice_history.h"
#include "screens/detail/invoice_history_page.h"

namespace kiv {
namespace {

using test::DetailRig;
using ui::ActionKind;

const std::string kInvoiceData = "KIV_SP_CLIENT_GetInvoiceData";

test::Cells Invoice(int no) {
  return {{"line_type", "I"}, {"register_id", "REG1"}, {"control_no", 3}, {"invoice_no", no},
          {"salesorder_no", 70 + no}, {"invoice_date", Date::FromParts(2026, 2, no)}, {"full_name", "ANN LEE"},
          {"total_due", 1234.5}, {"total_paid", 0.0}, {"voucher_no", Variant::Null()},
          {"voucher_serial_id", Variant::Null()}};
}

test::Cells Line(int no) {
  return {{"line_type", "L"}, {"line_no", no}, {"line_date", Date::FromParts(2026, 2, 1, 14, 5, 0)},
          {"full_name", "ANN LEE"}, {"linenet", 99.0}, {"long_description", "  LIFT TICKET  "},
          {"qty", 2.0}, {"unit_qty", 3.0}, {"unit_id", "EA"}, {"discount_id", " LOYAL "}, {"authorizer", "MGR"}};
}

test::Cells Payment(const Variant& customer_no) {
  return {{"line_type", "P"}, {"payment_no", 5}, {"payment_date", Date::FromParts(2026, 2, 1, 9, 0, 0)},
          {"customer_no", customer_no}, {"full_name", "ANN LEE"}, {"Amount", 50.0}, {"account_id", "A42"},
          {"Pay_Method_ID", "ACCT"}, {"pay_action_id", "SA"}, {"authorizer", "BOSS"}, {"comment_note", "ok"}};
}

struct HistoryRig : DetailRig {
  void Show() {
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", std::to_string(InvoiceHistoryPage::kTab));
  }
  std::vector<std::string> Kinds() const {
    std::vector<std::string> kinds;
    for (int r = 1; r < screen->grdMaster.Rows(); ++r) kinds.push_back(screen->grdMaster.TextMatrix(r, 0));
    return kinds;
  }
};

TEST(InvoiceHistory, TheHeaderTextsLineUpAuthorizerAndComment) {
  const std::vector<std::string> line = Split(InvoiceHistory::LineHeaderText(), "\t");
  const std::vector<std::string> payment = Split(InvoiceHistory::PaymentHeaderText(), "\t");
  ASSERT_EQ(line.size(), 27u);
  ASSERT_EQ(payment.size(), 27u);
  EXPECT_EQ(payment[7], "Action");
  for (size_t c = 8; c < 25; ++c) EXPECT_EQ(payment[c], "") << c;
  EXPECT_EQ(line[25], "Authorizer");
  EXPECT_EQ(payment[25], "Authorizer");
  EXPECT_EQ(payment[26], "Comment");
  EXPECT_EQ(InvoiceHistory::FormatString(), "IH|Reg|Con|Inv|SO No|Date|Customer|Due|Paid|Voucher|Voucher Serial");
  EXPECT_EQ(InvoiceHistory::InvoiceHeaderText(), "IH\tReg\tCon\tInv\tSO No\tDate\tCustomer\tDue\tPaid\tVoucher\tVoucher Serial");
}

TEST(InvoiceHistory, HeaderRowsStandBetweenInvoicesAndAheadOfEachRun) {
  HistoryRig rig;
  rig.host.OnProcedure(kInvoiceData)
      .Row(Invoice(1)).Row(Line(1)).Row(Line(2)).Row(Payment(42))
      .Row(Invoice(2)).Row(Payment(Variant::Null()));
  rig.Show();
  EXPECT_EQ(rig.Kinds(), (std::vector<std::string>{"I", "LH", "L", "L", "PH", "P", "IH", "I", "PH", "P"}));
  ui::Grid& grid = rig.screen->grdMaster;
  EXPECT_EQ(grid.Cols(), 27);
  EXPECT_EQ(grid.RowStyle(7), "header");
  EXPECT_EQ(grid.RowOutlineLevel(8), 0);
  EXPECT_EQ(grid.RowOutlineLevel(3), 1);
  EXPECT_EQ(rig.screen->tabCustomer.TabCaption(InvoiceHistoryPage::kTab), "Invoice History");
}

TEST(InvoiceHistory, EachRowKindHasItsCellsAndFormats) {
  HistoryRig rig;
  rig.host.OnProcedure(kInvoiceData).Row(Invoice(1)).Row(Line(1)).Row(Payment(42)).Row(Payment(Variant::Null()));
  rig.Show();
  ui::Grid& grid = rig.screen->grdMaster;
  // Invoice: date and money formats.
  EXPECT_EQ(grid.TextMatrix(1, 5), "02/01/2026");
  EXPECT_EQ(grid.TextMatrix(1, 7), "$1,234.50");
  EXPECT_EQ(grid.TextMatrix(1, 8), "$0.00");
  // Line: date and time, trimmed texts, quantity in units.
  EXPECT_EQ(grid.TextMatrix(3, 2), "02/01/2026 02:05 PM");
  EXPECT_EQ(grid.TextMatrix(3, 4), "$99.00");
  EXPECT_EQ(grid.TextMatrix(3, 9), "LIFT TICKET");
  EXPECT_EQ(grid.TextMatrix(3, 13), "LOYAL");
  EXPECT_EQ(grid.TextMatrix(3, 15), "6 EA");
  EXPECT_EQ(grid.TextMatrix(3, 25), "MGR");
  // Payment: the authorizer and comment under the line header's columns; the payer's name
  // only when the payment names a customer.
  EXPECT_EQ(grid.TextMatrix(5, 2), "02/01/2026 09:00 AM");
  EXPECT_EQ(grid.TextMatrix(5, 3), "ANN LEE");
  EXPECT_EQ(grid.TextMatrix(5, 25), "BOSS");
  EXPECT_EQ(grid.TextMatrix(5, 26), "ok");
  EXPECT_EQ(grid.TextMatrix(6, 3), "");
}

TEST(InvoiceHistory, ACustomerWithoutInvoicesShowsTheHeaderOnly) {
  HistoryRig rig;
  rig.host.OnProcedure(kInvoiceData);
  rig.Show();
  EXPECT_EQ(rig.screen->grdMaster.Rows(), 1);
  EXPECT_EQ(rig.screen->grdMaster.TextMatrix(0, 0), "IH");
}

}  // namespace
}  // namespace kiv

// The sales page over the scripted host: the open lines and comments as shown, the rule that
// keeps a selection to one order, and the hand-over of the selected lines to invoicing.
#include <gtest/gtest.h>

#include "frm_customer_detail_rig.h"
#include "screens/detail/sales_page.h"
#include "support/scripted_suite.h"

namespace kiv {
namespace {

using test::Assignment;
using test::DetailRig;
using ui::ActionKind;

const std::string kLines = "KiV_SP_GetSalesOrderLine";
const std::string kComments = "KiV_SP_CUSTOMER_SALES_ORDER_COMMENT_get";

struct SalesRig : DetailRig {
  std::shared_ptr<test::ScriptedInvoicingService> invoicing = std::make_shared<test::ScriptedInvoicingService>();

  SalesRig() {
    auto line = [](int order, int line, const char* item, double net) {
      return test::Cells{{"salesorder_date", Date::FromParts(2026, 2, 20)}, {"salesorder_no", order},
                         {"so_line_no", line}, {"for_full_name", "ANN LEE"}, {"line_full_name", "ANN LEE"},
                         {"quantity", 2}, {"item_description", item}, {"linenet", net}};
    };
    host.OnProcedure(kLines)
        .Row(line(7, 1, "LIFT TICKET", 100))
        .Row(line(7, 2, "LESSON", -25.5))
        .Row(line(9, 1, "RENTAL", 1234.5));
    host.OnProcedure(kComments).Row(
        {{"salesorder_date", Date::FromParts(2026, 2, 20)}, {"salesorder_no", 7}, {"comment_note", "Call first"}});
    host.app->SetInvoicingService(invoicing);
    Person(42);
    Open();
    Do(ActionKind::Click, "tabCustomer", "3");
  }
  void Select(const std::vector<int>& rows) {
    ui::UiResult r = screen->Perform(ui::Action{ActionKind::Select, "grdMaster", {}, rows, 0});
    EXPECT_TRUE(r.ok) << r.error;
  }
};

TEST(SalesPage, ShowsTheOpenLinesAndTheOrdersComments) {
  SalesRig rig;
  ui::Grid& lines = rig.screen->grdMaster;
  EXPECT_EQ(lines.FormatString(), "Date|Order#|Line#|For|Line|Qty|Item Description|Total");
  EXPECT_EQ(lines.ColFormat(SalesPage::kColTotal), "($###,###.00)");
  ASSERT_EQ(lines.Rows(), 4);
  EXPECT_EQ(lines.TextMatrix(2, SalesPage::kColDescription), "LESSON");
  EXPECT_EQ(lines.DisplayText(2, SalesPage::kColTotal), "($25.50)") << "a credit line shows in parentheses";
  EXPECT_EQ(lines.DisplayText(3, SalesPage::kColTotal), "$1,234.50");
  EXPECT_EQ(rig.host.AssignmentsOf(kLines), (std::vector<Assignment>{{"@customer_no", 42}, {"@open", true}}));
  ui::Grid& comments = rig.screen->grdDetail;
  EXPECT_EQ(comments.FormatString(), "Date|Order#|Comment");
  ASSERT_EQ(comments.Rows(), 2);
  EXPECT_EQ(comments.TextMatrix(1, 0), "02/20/26");
  EXPECT_EQ(comments.TextMatrix(1, 2), "Call first");
  EXPECT_EQ(rig.screen->cmdButton1.Caption(), "&Invoice");

  // Back on the page later, the lines show again without another read.
  rig.Do(ActionKind::Click, "tabCustomer", "1");
  rig.Do(ActionKind::Click, "tabCustomer", "3");
  EXPECT_EQ(rig.screen->grdMaster.Rows(), 4);
  EXPECT_EQ(rig.host.db->Executions(kLines).size(), 1u);
}

TEST(SalesPage, KeepsASelectionToTheLinesOfOneOrder) {
  SalesRig rig;
  rig.ui->Answer(ui::vbOK);
  rig.Select({1, 3});
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Only lines from the same Sales Order can be selected.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Select Sales Order Lines");
  EXPECT_EQ(rig.screen->grdMaster.SelectedRowList(), (std::vector<int>{1}));

  rig.ui->ClearBoxes();
  rig.Select({1, 2});
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_EQ(rig.screen->grdMaster.SelectedRowList(), (std::vector<int>{1, 2}));
}

TEST(SalesPage, InvoicesTheSelectedLinesAndReloads) {
  SalesRig rig;
  rig.Select({1, 2});
  rig.ui->Answer(ui::vbOK);
  rig.Do(ActionKind::Click, "cmdButton1");
  EXPECT_EQ(rig.invoicing->Operations(), (std::vector<std::string>{"Setup", "InvoiceAndPay"}));
  EXPECT_EQ(rig.invoicing->Calls()[0].args, (std::vector<Variant>{7, "1,2"}));
  EXPECT_EQ(rig.invoicing->Calls()[1].args, (std::vector<Variant>{42, 7}));
  ASSERT_EQ(rig.ui->Boxes().size(), 1u);
  EXPECT_EQ(rig.ui->Boxes()[0].prompt, "Sales Order Lines were Invoiced.");
  EXPECT_EQ(rig.ui->Boxes()[0].title, "Invoice Results");
  EXPECT_EQ(rig.host.db->Executions(kLines).size(), 2u) << "reloaded after invoicing";
}

TEST(SalesPage, ANotInvoicedAnswerOrNoServiceChangesNothing) {
  SalesRig rig;
  rig.invoicing->SetAnswer("InvoiceAndPay", false);
  rig.Select({3});
  rig.Do(ActionKind::Click, "cmdButton1");
  EXPECT_EQ(rig.invoicing->CountOf("InvoiceAndPay"), 1u);
  EXPECT_TRUE(rig.ui->Boxes().empty());
  EXPECT_EQ(rig.host.db->Executions(kLines).size(), 1u);

  rig.host.app->SetInvoicingService(nullptr);
  rig.Do(ActionKind::Click, "cmdButton1");
  EXPECT_EQ(rig.invoicing->Calls().size(), 2u);
  EXPECT_TRUE(rig.ui->Boxes().empty());
}

}  // namespace
}  // namespace kiv

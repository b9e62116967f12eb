// The sales page (tab 3): the customer's open sales-order lines in grdMaster and the orders'
// comments in grdDetail. Lines of one order may be selected together and handed to the
// host's invoicing with "&Invoice".
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "screens/detail/detail_page.h"

namespace kiv {

class SalesPage : public DetailPage {
 public:
  enum Column : int { kColDate = 0, kColOrder, kColLine, kColFor, kColLineName, kColQty, kColDescription, kColTotal };
  static constexpr const char* kLinesFormat = "Date|Order#|Line#|For|Line|Qty|Item Description|Total";
  static constexpr const char* kTotalFormat = "($###,###.00)";
  static constexpr const char* kCommentsFormat = "Date|Order#|Comment";

  int TabIndex() const override;
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override;
  //! cmdButton1, "&Invoice".
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! Hands the selected lines to the host's invoicing; reloads when they were invoiced.
  void InvoiceSelected(frmCustomerDetail& screen);
  //! Keeps the selection to lines of one order, telling the clerk when it held others.
  void SelectionChanged(frmCustomerDetail& screen);

 private:
  void Render(frmCustomerDetail& screen) const;

  std::vector<std::string> lines_;
  std::vector<std::string> comments_;
  bool trimming_selection_ = false;
};

}  // namespace kiv

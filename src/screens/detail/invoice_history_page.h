// The invoice history page. It lives on tab 10 of the editor, whose caption it renames to
// "Invoice History": the cards on file are reached on the account page (tab 9) through its
// own "CC" view, so tab 10 carries the history the sales page has no room for.
#pragma once
#include <vector>

#include "screens/detail/detail_page.h"
#include "screens/detail/invoice_history.h"

namespace kiv {

class InvoiceHistoryPage : public DetailPage {
 public:
  static constexpr int kTab = 10;
  static constexpr const char* kTabCaption = "Invoice History";

  //! Renames the page's tab.
  explicit InvoiceHistoryPage(frmCustomerDetail& screen);

  int TabIndex() const override { return kTab; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override { rows_.clear(); }

  const std::vector<HistoryRow>& Rows() const { return rows_; }

 private:
  std::vector<HistoryRow> rows_;
};

}  // namespace kiv

// The reference host's invoicing of sales-order lines: the lines handed over by Setup become
// one invoice with its lines and a payment, the lines leave the open list, and an order
// whose every line is invoiced is closed.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/suite_services.h"
#include "refhost/sqlite_database.h"
#include "refhost/ref_invoice_payment_form.h"
#include "refhost/trace.h"
#include "ui/ui.h"

namespace kiv::refhost {

class RefInvoicingService : public host::InvoicingService {
 public:
  //! The register and control every payment of this workstation is taken in.
  static constexpr const char* kRegisterId = "REG1";
  static constexpr int32_t kControlNo = 1;

  RefInvoicingService(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::shared_ptr<TraceHook> trace);

  void Setup(int32_t salesorder_no, const std::vector<int32_t>& so_line_nos) override;
  //! False (nothing written) when no lines were set up for this order, a line is not on the
  //! order or is invoiced already, or the order is not the customer's.
  bool InvoiceAndPay(int32_t customer_no, int32_t salesorder_no) override;

  //! The invoice the last successful InvoiceAndPay wrote; 0 before.
  int32_t LastInvoiceNo() const { return last_invoice_no_; }
  //! With a Ui, InvoiceAndPay asks how to pay on its payment screen (Cancel invoices
  //! nothing); without one it pays the way the screen would propose.
  void SetUi(std::shared_ptr<ui::Ui> ui) { ui_ = std::move(ui); }
  frmInvoicePayment& PaymentForm() { return form_; }

 private:
  //! One way to pay: "CC<seq>" for a card on file, "ACCT", "CASH" or "CHECK".
  struct PayChoice {
    std::string key, text;
  };
  //! The customer's active cards (newest first), the house account, cash and check.
  std::vector<PayChoice> Choices(int32_t customer_no) const;
  //! The order is the customer's (or placed for them) and every line set up is on it and not
  //! invoiced yet; `total` receives what the lines come to.
  bool Invoiceable(int32_t customer_no, int32_t salesorder_no, double& total) const;
  //! The key of the choice to pay with, after asking on the payment screen when there is a
  //! Ui; empty when the clerk cancelled.
  std::string AskHowToPay(int32_t customer_no, int32_t salesorder_no, double total);
  void Pay(int32_t customer_no, int32_t invoice_no, double amount, const std::string& how);
  bool Invoice(int32_t customer_no, int32_t salesorder_no);

  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::shared_ptr<TraceHook> trace_;
  int32_t salesorder_no_ = 0;
  std::vector<int32_t> line_nos_;
  int32_t last_invoice_no_ = 0;
  std::shared_ptr<ui::Ui> ui_;
  frmInvoicePayment form_;
};

}  // namespace kiv::refhost

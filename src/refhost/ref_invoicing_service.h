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
#include "refhost/trace.h"

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

 private:
  //! The payment: the newest active card on file, else the house account, else cash.
  void Pay(int32_t customer_no, int32_t invoice_no, double amount);
  bool Invoice(int32_t customer_no, int32_t salesorder_no);

  std::shared_ptr<SqliteDatabase> db_;
  std::string user_id_;
  std::shared_ptr<TraceHook> trace_;
  int32_t salesorder_no_ = 0;
  std::vector<int32_t> line_nos_;
  int32_t last_invoice_no_ = 0;
};

}  // namespace kiv::refhost

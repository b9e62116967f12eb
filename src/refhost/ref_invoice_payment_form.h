// The payment screen the reference host's invoicing shows before it writes an invoice: the
// order, its total, and how it is paid (a card on file, the house account, cash or check).
// Cancel leaves the order as it was.
#pragma once
#include <string>

#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/form.h"
#include "ui/label.h"

namespace kiv::refhost {

class frmInvoicePayment : public ui::Form {
 public:
  frmInvoicePayment();

  //! True once the clerk chose to pay; false after Cancel or the close box.
  bool Paid() const { return paid_; }
  void Reset() { paid_ = false; }

  ui::Label& lblOrder;
  ui::Label& lblTotal;
  ui::ComboBox& cmbPayMethod;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;

 private:
  bool paid_ = false;
};

}  // namespace kiv::refhost

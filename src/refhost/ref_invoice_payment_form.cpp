// The invoicing's payment screen: two buttons and the choice of how to pay.
#include "refhost/ref_invoice_payment_form.h"

namespace kiv::refhost {

frmInvoicePayment::frmInvoicePayment()
    : ui::Form("frmInvoicePayment"),
      lblOrder(Add<ui::Label>("lblOrder")),
      lblTotal(Add<ui::Label>("lblTotal")),
      cmbPayMethod(Add<ui::ComboBox>("cmbPayMethod")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "&Pay")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Invoice and Pay");
  cmdOk.SetDefault(true);
  cmdCancel.SetCancel(true);
  cmdOk.on_click = [this] {
    if (cmbPayMethod.ListIndex() < 0) return;
    paid_ = true;
    Hide();
  };
  cmdCancel.on_click = [this] {
    paid_ = false;
    Hide();
  };
}

}  // namespace kiv::refhost

// The rental settings panel of the detail editor: shoe size, height, weight and ability,
// read with the customer's alerts and settings, and saved, when changed, into the
// customer's setting row and through the alerts procedure.
#include "core/text.h"
#include "core/variant.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/kit/list_fill.h"

namespace kiv {

void frmCustomerDetail::WireRentalPanel() {
  txtShoeSize.on_change = [this] {
    if (!Filling()) rental_changed_ = true;
  };
  for (ui::ComboBox* list : {&cmbHeight, &cmbWeight, &cmbGuestAbility})
    list->on_click = [this] {
      if (!Filling()) rental_changed_ = true;
    };
  txtShoeSize.on_key_press = [](int& k) {
    if (k == 8 || (k >= '0' && k <= '9') || k == '.') return;
    k = 0;
  };
}

void frmCustomerDetail::FillRentalLists() {
  FillListFromQuery(cmbGuestAbility, db_.get(),
                    {"SELECT * FROM kiv_guest_ability ORDER BY description", "guest_ability", "Description", true, true});
  // A range shows its description when the table has one, else its number.
  FillListFromQuery(cmbHeight, db_.get(),
                    {"SELECT * FROM kiv_guest_height ORDER BY guest_height_range", "guest_height_range", "description",
                     true, true, true});
  FillListFromQuery(cmbWeight, db_.get(),
                    {"SELECT * FROM kiv_guest_weight ORDER BY guest_weight_range", "guest_weight_range", "description",
                     true, true, true});
}

void frmCustomerDetail::SelectByKey(ui::ComboBox& list, const std::string& key) {
  list.SetListIndex(list.FindKey(key));
}

void frmCustomerDetail::FillRentalPanel() {
  FillingScope filling(*this);
  if (!customer_) return;
  if (engine_ != nullptr && db_) engine_->OpenRentalProfileInformation(customer_);
  const double shoe = customer_->GuestShoeSize();
  txtShoeSize.SetText(shoe == 0 ? std::string() : NumberToText(shoe));
  SelectByKey(cmbHeight, std::to_string(customer_->GuestHeightRange()));
  SelectByKey(cmbWeight, std::to_string(customer_->GuestWeightRange()));
  SelectByKey(cmbGuestAbility, customer_->GuestAbility());
  rental_changed_ = false;
}

bool frmCustomerDetail::SaveRentalSettings() {
  if (!customer_ || engine_ == nullptr) return false;
  CCustomer& c = *customer_;
  c.SetGuestShoeSize(Val(txtShoeSize.Text()));
  if (cmbHeight.ListIndex() >= 0) c.SetGuestHeightRange(static_cast<int16_t>(Val(cmbHeight.SelectedKey())));
  if (cmbWeight.ListIndex() >= 0) c.SetGuestWeightRange(static_cast<int16_t>(Val(cmbWeight.SelectedKey())));
  c.SetGuestAbility(cmbGuestAbility.SelectedKey());
  // Ability and shoe size live in the setting row; height and weight go with the alerts.
  const bool profile_saved = engine_->SaveRentalProfileInformation(customer_);
  const bool alerts_saved = c.SaveAlertsAndSettings();
  if (profile_saved && alerts_saved) rental_changed_ = false;
  return profile_saved && alerts_saved;
}

}  // namespace kiv

// The duplicate merge: loading each customer as its field is left, the summaries, and the
// merge behind its checks and two confirmations.
#include "screens/dedup/frm_de_dup.h"

#include "core/text.h"
#include "core/variant.h"
#include "engine/c_cust_engine.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "ui/keys.h"
#include "ui/label.h"
#include "ui/wait_cursor.h"

namespace kiv {

frmDeDup::frmDeDup()
    : Screen("frmDeDup"),
      fraFromCustomer(Add<ui::Frame>("fraFromCustomer", "Merge And Delete Customer")),
      txtFromCustomer(AddIn<ui::TextBox>(fraFromCustomer, "txtFromCustomer")),
      txtFromCustomerInfo(AddIn<ui::TextBox>(fraFromCustomer, "txtFromCustomerInfo")),
      fraToCustomer(Add<ui::Frame>("fraToCustomer", "Merge All history Into Customer")),
      txtToCustomer(AddIn<ui::TextBox>(fraToCustomer, "txtToCustomer")),
      txtToCustomerInfo(AddIn<ui::TextBox>(fraToCustomer, "txtToCustomerInfo")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "&Cancel")) {
  SetCaption("Merge Customer");
  // Captions for the two number fields, so a clerk sees which number goes where.
  AddIn<ui::Label>(fraFromCustomer, "lblFromCustomer", "&From No.:");
  AddIn<ui::Label>(fraToCustomer, "lblToCustomer", "&Into No.:");
  for (ui::TextBox* info : {&txtFromCustomerInfo, &txtToCustomerInfo}) {
    info->SetMultiLine(true);
    info->SetLocked(true);
    info->SetTabStop(false);
  }
  cmdCancel.SetCancel(true);
  WireNumberField(txtFromCustomer, txtFromCustomerInfo, from_);
  WireNumberField(txtToCustomer, txtToCustomerInfo, to_);
  OnClick(cmdOK, [this] {
    if (Merge()) Hide();
  });
  cmdCancel.on_click = [this] { Hide(); };
}

void frmDeDup::WireNumberField(ui::TextBox& field, ui::TextBox& info, std::shared_ptr<CCustomer>& slot) {
  // Enter moves on like Tab, so typing a number and Enter loads it.
  field.on_key_press = [this](int& key_ascii) {
    if (key_ascii != ui::vbKeyReturn) return;
    key_ascii = 0;
    SendTab();
  };
  field.on_lost_focus = Guarded(field, "LostFocus", [this, &field, &info, &slot] { LoadCustomer(field.Text(), info, slot); });
}

void frmDeDup::LoadCustomer(const std::string& text, ui::TextBox& info, std::shared_ptr<CCustomer>& slot) {
  const std::string number = Trim(text);
  if (number.empty() || !IsNumeric(Variant(number)) || engine_ == nullptr) return;
  const double value = CDbl(Variant(number));
  if (value < 1 || value > 2147483647.0) return;
  ui::WaitCursor wait(ui());
  OpenCustomerArgs args;
  std::shared_ptr<CCustomer> customer = engine_->OpenCustomer(static_cast<int32_t>(value), args);
  if (args.bError || !customer || customer->CustomerNo() == 0) return;
  slot = customer;
  FillingScope filling(*this);
  info.SetText(Summary(*customer));
}

std::string frmDeDup::Summary(CCustomer& customer) {
  return "CustomerNo: " + std::to_string(customer.CustomerNo()) + "\r\n" + "FullName: " + customer.FullName() +
         "\r\n" + "Gender: " + customer.Gender() + "\r\n" + "DOB: " + Variant(customer.DOB()).ToString() + "\r\n" +
         "CompanyName: " + customer.CompanyName() + "\r\n" + "Zip: " + customer.Zip();
}

bool frmDeDup::Merge() {
  if (!from_) {
    ui().MsgBox("Invalid For Customer", ui::vbOKOnly, "");
    return false;
  }
  if (!to_) {
    ui().MsgBox("Invalid To Customer", ui::vbOKOnly, "");
    return false;
  }
  // The "to" customer is looked at twice before the questions; the second look never differs.
  if (!to_) {
    ui().MsgBox("Invalid To Customer", ui::vbOKOnly, "");
    return false;
  }
  const int32_t style = ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2;
  if (ui().MsgBox("Are you Sure you want Merge these two customers?", style, kConfirmTitle) != ui::vbYes) return false;
  if (ui().MsgBox("Are you really really sure you want Merge these two customers?\r\nThis action cannot be undone!",
                  style, kConfirmTitle) != ui::vbYes)
    return false;
  merged_ = RunMerge();
  return merged_;
}

bool frmDeDup::RunMerge() {
  int32_t result = -1;
  std::string message;
  try {
    if (db_) {
      host::ProcedureCall call(*db_, kMergeProcedure);
      if (call.Prepared()) {
        host::Parameters& params = call.GetCommand()->GetParameters();
        const int first = params.Count() > 0 && EqualsNoCase(params.Item(0).Name(), "@RETURN_VALUE") ? 1 : 0;
        if (params.Count() >= first + 2) {
          params.Item(first).SetValue(Variant(from_->CustomerNo()));
          params.Item(first + 1).SetValue(Variant(to_->CustomerNo()));
        }
        call.Execute();
        result = call.OutputLong("@return_value", -1);
        message = call.OutputText("@message");
      }
    }
  } catch (...) {
    // Errors inside the merge are not raised: what the procedure left says how it went.
  }
  if (result >= 0) return true;
  ui().MsgBox(message, ui::vbInformation, "Error DeDuping Customer");
  return false;
}

}  // namespace kiv

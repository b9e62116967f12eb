// The commands on the customer of the current row: OK and Cancel, which end the screen,
// and Add, Properties, Add Family Member, Account Information and Merge, which open the
// screens that other parts of the component provide through the screen's hooks.
#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "screens/search/frm_find.h"

namespace kiv {

void frmFind::Ok() {
  const int32_t customer_no = CurrentCustomerNo();
  if (customer_no == 0) return;
  std::shared_ptr<CCustomer> customer = OpenForCommand(customer_no);
  if (!customer) return;
  ReturnCustomer(std::move(customer));
}

void frmFind::CancelSearch() {
  // Also the way out of a long fill: the row loop checks the flag between rows.
  cancelled_ = true;
  Hide();
}

void frmFind::ReturnCustomer(std::shared_ptr<CCustomer> customer) {
  selected_ = std::move(customer);
  Hide();
}

std::shared_ptr<CCustomer> frmFind::OpenForCommand(int32_t customer_no) {
  if (engine_ != nullptr) {
    OpenCustomerArgs args;
    args.oDB = db_;
    args.oError = error_object_;
    std::shared_ptr<CCustomer> customer = engine_->OpenCustomer(customer_no, args);
    if (customer && !args.bError) return customer;
  } else if (db_) {
    auto customer = std::make_shared<CCustomer>();
    customer->SetUi(UiService());
    if (customer->OpenCustomer(db_, error_object_, Variant(customer_no))) return customer;
  }
  ShowNotAccessible();
  return nullptr;
}

void frmFind::ShowNotAccessible() { ui().MsgBox("Customer could not be accessed at this time", ui::vbOKOnly, ""); }

void frmFind::AddCustomer() {
  if (engine_ != nullptr && !engine_->AllowCustAdd()) return;
  auto customer = std::make_shared<CCustomer>();
  customer->SetIsNewCustomer(true);
  customer->SetFiscalYear(engine_ != nullptr ? engine_->FiscalYear() : 0);
  customer->SetDB(db_);
  customer->SetErrorObject(error_object_);
  customer->SetUi(UiService());

  // The clerk usually adds the customer he just failed to find: start from what he typed.
  const std::string company = Trim(txtCompanyName.Text());
  if (!company.empty()) {
    customer->SetCustomerType("C");
    customer->SetCompanyName(company);
    customer->SetFullName(company);
  } else {
    const std::string first = Trim(txtFirstName.Text());
    const std::string last = Trim(txtLastName.Text());
    customer->SetCustomerType("P");
    customer->SetLastName(last);
    customer->SetFirstName(first);
    customer->SetFullName(Trim(first + " " + last));
  }

  if (!open_detail) return;
  const DetailOutcome outcome = open_detail(*this, customer);
  if (outcome.UserCanceled) return;

  fxgCustomers.AddItem("");
  const int row = fxgCustomers.Rows() - 1;
  WriteCustomerCells(row, *customer);
  fxgCustomers.SetIsSubtotal(row, true);
  fxgCustomers.SetIsCollapsed(row, true);
  ++displayed_count_;
  stbSearch.SetPanelText("DISPLAY", "Displaying " + std::to_string(displayed_count_) + " Record(s)");
  if (select_mode_ && auto_return_on_ok_) ReturnCustomer(customer);
}

void frmFind::ShowProperties() {
  const int32_t customer_no = CurrentCustomerNo();
  if (customer_no == 0) return;
  const int row = fxgCustomers.Row();
  std::shared_ptr<CCustomer> customer = OpenForCommand(customer_no);
  if (!customer || !open_detail) return;
  const DetailOutcome outcome = open_detail(*this, customer);
  if (outcome.RequiresNewSearch) {
    NewSearch();
    return;
  }
  if (row < fxgCustomers.Rows()) WriteCustomerCells(row, *customer);
  if (!outcome.UserCanceled && select_mode_ && auto_return_on_ok_) ReturnCustomer(customer);
}

void frmFind::AddFamilyMember() {
  const int32_t customer_no = CurrentCustomerNo();
  if (customer_no == 0) return;
  // A customer who is nobody's household member heads his own household.
  int32_t parent_no = HouseholdParentOf(customer_no);
  if (parent_no == 0) parent_no = customer_no;
  std::shared_ptr<CCustomer> parent = OpenForCommand(parent_no);
  if (!parent) return;
  if (!open_related_customer || !open_related_customer(*this, parent)) return;
  // The new members are customers the rows do not list yet.
  Find();
}

void frmFind::ShowAccountInfo() {
  const int32_t customer_no = CurrentCustomerNo();
  if (customer_no == 0) return;
  std::shared_ptr<CCustomer> customer = OpenForCommand(customer_no);
  if (!customer) return;
  // The house account is customer data and money: both rights are needed.
  if (engine_ == nullptr || !engine_->AllowCustEdit() || !engine_->AllowCustActEdit()) {
    ui().MsgBox("Security Access Required", ui::vbInformation, "Edit Account Canceled");
    return;
  }
  if (open_account_info) open_account_info(*this, customer);
}

void frmFind::MergeDuplicates() {
  if (engine_ == nullptr || !engine_->AllowCustDedup() || !open_dedup) return;
  open_dedup(*this);
  // The rows may name a customer that the merge deleted.
  NewSearch();
}

}  // namespace kiv

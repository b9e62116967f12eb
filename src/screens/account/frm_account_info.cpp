// The account screen: the row shown formatted as currency, the pay-method list, and the
// save with its audit texts — "NEW=" for a new account (its "CN = " keeps the blanks the
// suite's reports look for), "AN=" for a changed limit, ";CA=" when the customer moves to
// the account.
#include "screens/account/frm_account_info.h"

#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "ui/keys.h"

namespace kiv {

namespace {

std::string Decimal(double v) { return Variant(v).ToString(); }

}  // namespace

frmAccountInfo::frmAccountInfo()
    : Screen("frmAccountInfo"),
      fraAccountInformation(Add<ui::Frame>("fraAccountInformation", "Account")),
      lblAccountNo(AddIn<ui::Label>(fraAccountInformation, "lblAccountNo", "Account ID:")),
      txtAccountNo(AddIn<ui::TextBox>(fraAccountInformation, "txtAccountNo")),
      lblDescription(AddIn<ui::Label>(fraAccountInformation, "lblDescription", "Description:")),
      txtDescription(AddIn<ui::TextBox>(fraAccountInformation, "txtDescription")),
      lblAccountLimit(AddIn<ui::Label>(fraAccountInformation, "lblAccountLimit", "Account Limit:")),
      txtAccountLimit(AddIn<ui::TextBox>(fraAccountInformation, "txtAccountLimit")),
      lblAccountBalance(AddIn<ui::Label>(fraAccountInformation, "lblAccountBalance", "Account Balance:")),
      txtAccountBalance(AddIn<ui::TextBox>(fraAccountInformation, "txtAccountBalance")),
      lblPayMethod(AddIn<ui::Label>(fraAccountInformation, "lblPayMethod", "Pay Methods:")),
      cmbPayMethod(AddIn<ui::ComboBox>(fraAccountInformation, "cmbPayMethod")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "&Cancel")) {
  SetCaption("Account Information");
  // The columns of the account row hold no more than this.
  txtAccountNo.SetMaxLength(20);
  txtDescription.SetMaxLength(60);
  // The balance is kept by the suite's postings; this screen only shows it.
  txtAccountBalance.SetLocked(true);
  cmdOK.SetDefault(true);
  cmdCancel.SetCancel(true);
  on_load = [this] { Guard("Form_Load", [this] { OnLoad(); }); };
  for (ui::TextBox* amount : {&txtAccountLimit, &txtAccountBalance})
    amount->on_lost_focus = Guarded(*amount, "LostFocus", [this, amount] { Reformat(*amount); });
  OnClick(cmdOK, [this] {
    if (Ok()) Hide();
  });
  cmdCancel.on_click = [this] { Hide(); };
}

void frmAccountInfo::OnLoad() {
  SetCaption("Account Information for " + (customer_ ? customer_->FullName() : std::string()));
  FillingScope filling(*this);
  for (ui::TextBox* field : {&txtAccountNo, &txtDescription, &txtAccountLimit, &txtAccountBalance}) field->SetText("");
  FillPayMethods();
  if (!account_id_.empty()) ShowAccount();
}

void frmAccountInfo::ShowAccount() {
  txtAccountNo.SetText(account_id_);
  if (!db_) return;
  host::ScopedRecordset rs =
      host::OpenQuery(*db_, std::string("SELECT * FROM kiv_account") + " WHERE account_id = '" + account_id_ + "'");
  if (rs.Eof()) return;
  txtDescription.SetText(NzString((*rs)["Description"]));
  txtAccountLimit.SetText(Format((*rs)["account_limit"], "Currency"));
  txtAccountBalance.SetText(Format((*rs)["account_balance"], "Currency"));
}

std::string frmAccountInfo::PayMethodList() {
  if (!db_) return {};
  std::string list;
  host::ScopedRecordset rs = host::OpenQuery(
      *db_, std::string("SELECT pay_method_id, description") + " FROM kiv_pay_method" + " ORDER BY pay_method_id");
  for (; rs && !rs.Eof(); rs->MoveNext()) {
    if (!list.empty()) list += "|";
    list += NzString((*rs)["Pay_Method_ID"]) + "\t" + NzString((*rs)["Description"]);
  }
  return list;
}

void frmAccountInfo::FillPayMethods() {
  cmbPayMethod.Clear();
  const std::string list = PayMethodList();
  size_t start = 0;
  while (start < list.size()) {
    size_t end = list.find('|', start);
    if (end == std::string::npos) end = list.size();
    const std::string entry = list.substr(start, end - start);
    cmbPayMethod.AddItem(entry, entry.substr(0, entry.find('\t')));
    start = end + 1;
  }
}

void frmAccountInfo::Reformat(ui::TextBox& field) {
  FillingScope filling(*this);
  field.SetText(Format(Variant(field.Text()), "currency"));
}

double frmAccountInfo::AmountOf(const std::string& text) {
  // A limit shown as currency is still the number it shows: the platform reads "$1,500.00"
  // and "($20.00)" as numbers too.
  std::string s = Trim(text);
  bool negative = false;
  if (s.size() >= 2 && s.front() == '(' && s.back() == ')') {
    negative = true;
    s = Trim(s.substr(1, s.size() - 2));
  }
  if (!s.empty() && s.front() == '-') {
    negative = !negative;
    s = Trim(s.substr(1));
  }
  if (!s.empty() && s.front() == '$') s = Trim(s.substr(1));
  if (s.empty() || !IsNumeric(Variant(s))) return 0;
  try {
    const double value = CDbl(Variant(s));
    return negative ? -value : value;
  } catch (...) {
    return 0;  // beyond what a number holds
  }
}

bool frmAccountInfo::Ok() {
  if (txtAccountNo.Text().empty()) {
    ui().MsgBox("Please enter Account ID.", ui::vbInformation, "Invalid Account ID");
    MoveFocus(txtAccountNo);
    return false;
  }
  return Save();
}

bool frmAccountInfo::Save() {
  if (!db_ || !customer_) return false;
  const std::string id = txtAccountNo.Text();
  const double limit = AmountOf(txtAccountLimit.Text());
  const std::string customer_no = std::to_string(customer_->CustomerNo());
  std::string audit;
  host::UnitOfWork unit(db_.get());
  {
    host::ScopedRecordset rs =
        host::OpenForUpdate(*db_, std::string("SELECT * FROM kiv_account") + " WHERE account_id = '" + id + "'");
    if (!rs) {
      unit.Discard();
      return false;
    }
    if (rs.Eof()) {
      rs->AddNew();
      rs->FieldByName("account_id").SetValue(Variant(id));
      rs->FieldByName("customer_no").SetValue(Variant(customer_->CustomerNo()));
      audit = "NEW=" + id + ";LT=" + Decimal(limit) + ";" + "CN = " + customer_no + ";";
    } else if (NzDouble((*rs)["account_limit"]) != limit) {
      audit = "AN=" + NzString((*rs)["account_id"]) + ";LT=" + Decimal(limit) + ";" + "CN=" + customer_no + ";";
    }
    rs->FieldByName("Description").SetValue(Variant(txtDescription.Text()));
    rs->FieldByName("account_limit").SetValue(Variant(limit));
    rs->Update();
  }
  if (customer_->AccountNo() != id) {
    const std::string previous = customer_->AccountNo();
    audit += "CN=" + customer_no + ";CA=" + id;
    customer_->SetAccountNo(id);
    if (!customer_->Update()) {
      customer_->SetAccountNo(previous);
      unit.Discard();
      return false;
    }
  }
  if (!audit.empty() && app_server_) {
    Variant result;
    app_server_->RecordTaskActivity("CUSTACTEDIT", "Account", audit, result);
  }
  saved_ = true;
  return true;
}

}  // namespace kiv

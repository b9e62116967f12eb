// The customer's side records, each one query or one procedure on demand: employer link,
// card on file, alerts and rental settings, has-flags, club and group membership and the
// house-account balance. They fail quietly; only a procedure's refusal shows a box.
#include "records/c_customer.h"

#include <exception>

#include "host/db_patterns.h"

namespace kiv {

namespace {

//! An output parameter as a 16-bit number, null (or absent) as 0.
int16_t OutputInt(host::Command& command, const std::string& name) {
  host::Parameter* p = command.GetParameters().Find(name);
  return p == nullptr ? int16_t{0} : NzInt(p->Value());
}

//! An output parameter as a flag, null (or absent) as False.
bool OutputBool(host::Command& command, const std::string& name) {
  host::Parameter* p = command.GetParameters().Find(name);
  return p != nullptr && NzBool(p->Value());
}

}  // namespace

// --- Employer ---

bool CCustomer::OpenEmployer() {
  if (db_ == nullptr || is_new_customer_ || employer_loaded_) return employer_loaded_;
  // Marked at once: a second call never reads again.
  employer_loaded_ = true;
  if (customer_type_ != "P") return employer_loaded_;
  try {
    const std::string sql =
        std::string("SELECT ace.customer_no, ace.fiscal_year, ace.employer_customer_no, company_name, ace.is_active") +
        " FROM kiv_customer_employer ace join kiv_customer on kiv_customer.customer_no = ace.employer_customer_no " +
        " WHERE ace.customer_no = " + std::to_string(customer_no_) + " AND fiscal_year = " +
        std::to_string(fiscal_year_) + " AND ISNULL(is_active,-1) <> 0";
    host::ScopedRecordset rs = host::OpenQuery(*db_, sql);
    if (!rs.Eof()) {
      employer_name_ = NzString((*rs)["company_name"]);
      // "customer_no" of this select is the employee's own number; it is the one kept.
      employer_no_ = NzLong((*rs)["customer_no"]);
    }
  } catch (const std::exception&) {
  }
  return employer_loaded_;
}

bool CCustomer::SaveEmployer() {
  if (db_ == nullptr || customer_type_ != "P") return false;
  try {
    // Written to the relationship table, while OpenEmployer reads the employer table by year.
    host::ScopedRecordset rs = host::OpenForUpdate(
        *db_, std::string("SELECT * FROM kiv_customer_rel") + " WHERE child_customer_no = " +
                  std::to_string(customer_no_) + " AND rel_type_id = 'EMPLOYEE'");
    if (!rs) return false;
    if (!rs.Eof()) rs->Delete();
    if (employer_no_ != 0) {
      rs->AddNew();
      rs->FieldByName("parent_customer_no").SetValue(Variant(employer_no_));
      rs->FieldByName("child_customer_no").SetValue(Variant(customer_no_));
      rs->FieldByName("rel_type_id").SetValue(Variant("EMPLOYEE"));
      rs->Update();
    }
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void CCustomer::SetEmployer(const std::shared_ptr<CCustomer>& v) {
  if (v == nullptr) {
    employer_no_ = 0;
    return;
  }
  employer_name_ = v->CompanyName();
  employer_no_ = v->CustomerNo();
}

// --- Card on file ---

bool CCustomer::OpenCreditCard(int32_t lCardCustomerNo, int32_t lCardSeqNo) {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_CUSTOMER_GetCustomerCC");
    if (command == nullptr) return false;
    auto& params = command->GetParameters();
    params["@household_no"].SetValue(Variant(household_no_));
    params["@customer_no"].SetValue(Variant(customer_no_));
    params["@card_customer_no"].SetValue(Variant(lCardCustomerNo));
    params["@card_seq_no"].SetValue(Variant(lCardSeqNo));
    params["@kiv_user"].SetValue(Variant(db_->UserID()));
    // The password is handed straight to the procedure and never kept.
    params["@kiv_password"].SetValue(Variant(db_->UserPassword()));
    host::ScopedRecordset rs = host::OpenProcedure(*db_, command);
    if (rs.Eof()) return false;
    host::Recordset& row = *rs;
    card_customer_no_ = NzLong(row["customer_no"]);
    card_seq_no_ = NzLong(row["card_seq_no"]);
    card_address_ = NzString(row["Address"]);
    card_zip_ = NzString(row["Zip"]);
    card_exp_date_ = NzString(row["exp_date"]);
    card_x_no_ = NzString(row["x_card_no"]);
    card_no_ = NzString(row["cc_card_no"]);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CCustomer::StoreCreditCard(CardEntry& oCC, bool isActive) {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_CUSTOMER_InsertCreditCard");
    if (command == nullptr) return false;
    auto& params = command->GetParameters();
    params["@customer_no"].SetValue(Variant(customer_no_));
    params["@track_1"].SetValue(Variant(oCC.Track1()));
    params["@track_2"].SetValue(Variant(oCC.Track2()));
    params["@card_no"].SetValue(Variant(oCC.CardNo()));
    params["@exp_date"].SetValue(oCC.ExpDate());
    params["@zip"].SetValue(Variant(oCC.Zip()));
    params["@address"].SetValue(Variant(oCC.Address()));
    params["@x_card_no"].SetValue(Variant(oCC.XCardNo()));
    params["@pay_method_id"].SetValue(Variant(oCC.PayMethodID()));
    params["@kiv_user"].SetValue(Variant(db_->UserID()));
    params["@is_active"].SetValue(Variant(isActive));
    if (!host::ExecuteProcedure(*db_, command)) return false;
    if (host::OutputLong(*command, "@return_value", -1) != 0) {
      GetUi()->MsgBox(host::OutputText(*command, "@message"), ui::vbInformation, "Error Saving Card");
      return false;
    }
    oCC.SetCustomerNo(customer_no_);
    card_customer_no_ = customer_no_;
    card_seq_no_ = host::OutputLong(*command, "@card_seq_no", 0);
    card_stored_ = true;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

// --- Alerts and rental settings ---

bool CCustomer::OpenAlertsAndSettings() {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_CUSTOMER_CUSTOMER_ALERT_get");
    if (command == nullptr) return false;
    command->GetParameters()["@customer_no"].SetValue(Variant(customer_no_));
    host::ScopedRecordset rs = host::OpenProcedure(*db_, command);
    if (!rs) return false;
    // The defaults stand for a customer who has no settings row yet.
    guest_height_range_ = OutputInt(*command, "@height_default");
    guest_weight_range_ = OutputInt(*command, "@weight_default");
    if (!rs.Eof()) {
      host::Recordset& row = *rs;
      guest_ability_ = NzString(row["guest_ability"]);
      guest_shoe_size_ = NzDouble(row["guest_shoe_size"]);
      guest_height_range_ = NzInt(row["guest_height_range"]);
      guest_weight_range_ = NzInt(row["guest_weight_range"]);
      childs_full_name_ = NzString(row["child_full_name"]);
      cell_phone_contact_ = NzString(row["cell_phone_contact"]);
      responsible_adult1_ = NzString(row["responsible_adult_1_name"]);
      responsible_adult2_ = NzString(row["responsible_adult_2_name"]);
      allergies_ = NzString(row["Allergies"]);
      medications_ = NzString(row["Medications"]);
      special_needs_ = NzString(row["special_needs"]);
    }
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CCustomer::OpenRentalSettings() { return OpenAlertsAndSettings(); }

bool CCustomer::SaveAlertsAndSettings() {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_CUSTOMER_CUSTOMER_ALERT_update");
    if (command == nullptr) return false;
    auto& params = command->GetParameters();
    params["@customer_no"].SetValue(Variant(customer_no_));
    params["@allergies"].SetValue(Variant(allergies_));
    params["@medications"].SetValue(Variant(medications_));
    params["@special_needs"].SetValue(Variant(special_needs_));
    params["@child_full_name"].SetValue(Variant(childs_full_name_));
    params["@cell_phone_contact"].SetValue(Variant(cell_phone_contact_));
    params["@responsible_adult_1_name"].SetValue(Variant(responsible_adult1_));
    params["@responsible_adult_2_name"].SetValue(Variant(responsible_adult2_));
    params["@guest_height_range"].SetValue(Variant(guest_height_range_));
    params["@guest_weight_range"].SetValue(Variant(guest_weight_range_));
    if (!host::ExecuteProcedure(*db_, command)) return false;
    if (host::OutputLong(*command, "@return_value", -1) != 0) {
      GetUi()->MsgBox(host::OutputText(*command, "@message"), ui::vbInformation,
                      "Error Updating Customer Alerts and Settings");
      return false;
    }
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

// --- Has-flags and checks ---

bool CCustomer::OpenFlags() {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_UpdateCustomerHas");
    if (command == nullptr) return false;
    command->GetParameters()["@customer_no"].SetValue(Variant(customer_no_));
    if (!host::ExecuteProcedure(*db_, command)) return false;
    has_willcall_ = OutputBool(*command, "@willcall");
    has_club_ = OutputBool(*command, "@club");
    has_so_ = OutputBool(*command, "@so");
    has_reservation_ = OutputBool(*command, "@reservation");
    has_relationship_ = OutputBool(*command, "@relationship");
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CCustomer::HasReservations() const {
  return db_ != nullptr && !is_new_customer_ && customer_no_ != 0 && has_reservation_;
}

bool CCustomer::HasUnInvoiced() const { return db_ != nullptr && !is_new_customer_ && customer_no_ != 0 && has_so_; }

bool CCustomer::HasRelationships(bool /*bEmployee*/) const { return customer_no_ != 0 && has_relationship_; }

bool CCustomer::HasEmployeeRelationships() {
  if (customer_no_ == 0 || db_ == nullptr) return false;
  try {
    // No parentheses: AND binds first, so any relationship as parent counts and, as a
    // child, only an employee one.
    const std::string number = std::to_string(customer_no_);
    host::ScopedRecordset rs = host::OpenQuery(
        *db_, std::string("SELECT COUNT(rel_type_id) AS countrel FROM kiv_customer_rel") +
                  " WHERE parent_customer_no = " + number + " OR child_customer_no = " + number +
                  " AND rel_type_id = 'EMPLOYEE'");
    return !rs.Eof() && NzLong((*rs)["countrel"]) > 0;
  } catch (const std::exception&) {
    return false;
  }
}

bool CCustomer::CheckMembershipInGroup(const std::string& sGroupId) {
  if (db_ == nullptr) return false;
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_GetGroupMembers");
    if (command == nullptr) return false;
    auto& params = command->GetParameters();
    params["@customer_group_id"].SetValue(Variant(sGroupId));
    params["@customer_no"].SetValue(Variant(customer_no_));
    host::ScopedRecordset rs = host::OpenProcedure(*db_, command);
    return !rs.Eof();
  } catch (const std::exception&) {
    return false;
  }
}

std::string CCustomer::GetClubMemberId(int32_t lCustomerNo) {
  if (db_ == nullptr || lCustomerNo == 0) return std::string();
  try {
    auto command = host::PrepareProcedure(*db_, "KIV_SP_CLUB_GetClubMembership");
    if (command == nullptr) return std::string();
    auto& params = command->GetParameters();
    params["@customer_no"].SetValue(Variant(lCustomerNo));
    params["@is_active"].SetValue(Variant(int16_t{1}));
    params["@num_return"].SetValue(Variant(int16_t{1}));
    host::ScopedRecordset rs = host::OpenProcedure(*db_, command);
    if (rs.Eof()) return std::string();
    club_member_id_ = NzString((*rs)["member_id"]);
    return club_member_id_;
  } catch (const std::exception&) {
    return std::string();
  }
}

double CCustomer::GetAccountBalance(std::string& sDesc, double& dLimit) {
  try {
    const std::string account = AccountNo();
    if (account.empty() || db_ == nullptr) return 0;
    host::ScopedRecordset rs = host::OpenQuery(*db_, std::string("SELECT description, account_limit, account_balance") +
                                                         " FROM kiv_account" + " WHERE account_id = '" + account + "'");
    if (rs.Eof()) return 0;
    host::Recordset& row = *rs;
    sDesc = NzString(row["Description"]);
    dLimit = NzDouble(row["account_limit"]);
    return NzDouble(row["account_balance"]);
  } catch (const std::exception&) {
    return 0;
  }
}

}  // namespace kiv

// The search itself: the criteria of the selected tab become the parameters of the one
// search command the screen keeps, a search without criteria is refused, and the rows come
// a page at a time after the last customer shown, with the clerk able to cancel the fill.
#include <optional>

#include "core/text.h"
#include "host/db_patterns.h"
#include "screens/kit/list_fill.h"
#include "screens/search/frm_find.h"
#include "ui/wait_cursor.h"

namespace kiv {

namespace {

constexpr const char* kSearchProcedure = "KIV_SP_CUSTOMER_Search";

//! A text criterion: trimmed of blanks, Null when nothing is left. Wildcards and case are
//! the procedure's business, so nothing else is done to it.
Variant TextCriterion(const std::string& text) {
  std::string trimmed = Trim(text);
  if (trimmed.empty()) return Variant::Null();
  return Variant(std::move(trimmed));
}

//! An Advanced number: taken only when the trimmed text is a number that fits; anything
//! else is skipped here (the field's own check has already told the clerk).
std::optional<Variant> NumberCriterion(const std::string& text, bool as_double) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty() || !IsNumeric(Variant(trimmed))) return std::nullopt;
  try {
    if (as_double) return Variant(CDbl(Variant(trimmed)));
    return Variant(CLng(Variant(trimmed)));
  } catch (const VbError&) {
    return std::nullopt;  // too large for the parameter: treated as not numeric
  }
}


}  // namespace

void frmFind::FillLists() {
  // A blank first entry lets the clerk take a group back out of the criteria.
  FillListsFromQuery({&cmbGroup, &cmbCompanyGroup}, db_.get(),
                     {"SELECT * FROM kiv_customer_group ORDER BY description", "customer_group_id", "Description"},
                     ListItem{"", ""});
  FillListFromQuery(cmbClubId, db_.get(), {"SELECT * FROM kiv_club", "club_id", "Description"});
  lists_filled_ = true;
}

void frmFind::Find() {
  if (!db_) return;
  ClearGrid();
  last_customer_no_ = 0;
  displayed_count_ = 0;
  total_count_ = 0;
  cancelled_ = false;

  if (!search_command_) {
    search_command_ = host::PrepareProcedure(*db_, kSearchProcedure);
    if (!search_command_) return;
  } else {
    // One command serves every search: nothing of the previous one may be carried over.
    host::Parameters& params = search_command_->GetParameters();
    for (int32_t i = 0; i < params.Count(); ++i) params.Item(i).SetValue(Variant::Null());
  }

  if (!BuildParameters()) {
    ui().MsgBox("You must specify a search criteria before running a search.", ui::vbInformation,
                "Search Criteria Required");
    return;
  }
  FetchPage();
}

bool frmFind::BuildParameters() {
  host::Parameters& params = search_command_->GetParameters();
  auto set = [&params](const char* name, const Variant& value) { params.Item(name).SetValue(value); };
  const std::string tab = tabFind.SelectedKey();
  bool has_criteria = false;
  bool group_set = false;

  if (tab == "Company") {
    const Variant company = TextCriterion(txtCompanyName.Text());
    const Variant zip = TextCriterion(txtCompanyZip.Text());
    set("@customer_type", "C");
    set("@company_name", company);
    set("@zip_code", zip);
    if (cmbCompanyGroup.ListIndex() >= 0 && !cmbCompanyGroup.SelectedKey().empty()) {
      set("@customer_group_id", cmbCompanyGroup.SelectedKey());
      group_set = true;
    }
    has_criteria = !company.IsNull() || !zip.IsNull();
  } else if (tab == "Advanced") {
    if (auto access = NumberCriterion(txtAccessID.Text(), true)) {
      set("@access_no", *access);
      has_criteria = true;
    }
    if (auto order = NumberCriterion(txtSalesOrder.Text(), false)) {
      set("@salesorder_no", *order);
      has_criteria = true;
    }
    if (auto customer = NumberCriterion(txtCustomerNo.Text(), false)) {
      set("@customer_no", *customer);
      has_criteria = true;
    }
    const Variant booking = TextCriterion(txtBookNo.Text());
    if (!booking.IsNull()) {
      set("@booking_id", booking);
      has_criteria = true;
    }
  } else if (tab == "Club") {
    set("@search_club", Variant(int32_t{1}));
    set("@customer_type", "P");
    if (cmbClubId.ListIndex() >= 0) set("@club_id", cmbClubId.SelectedKey());
    const Variant first = TextCriterion(txtClubFirstName.Text());
    const Variant last = TextCriterion(txtClubLastName.Text());
    const Variant member = TextCriterion(txtMemberId.Text());
    set("@first_name", first);
    set("@last_name", last);
    set("@member_id", member);
    const bool status_chosen = optClubStatus.IsChosen(kClubActive) || optClubStatus.IsChosen(kClubInactive);
    if (status_chosen) set("@club_is_active", Variant(int32_t{optClubStatus.IsChosen(kClubActive) ? 1 : 0}));
    // The club alone is no criterion: it would list every member.
    has_criteria = !first.IsNull() || !last.IsNull() || !member.IsNull() || status_chosen;
  } else {
    const Variant first = TextCriterion(txtFirstName.Text());
    const Variant last = TextCriterion(txtLastName.Text());
    const Variant zip = TextCriterion(txtZip.Text());
    set("@customer_type", "P");
    set("@first_name", first);
    set("@last_name", last);
    set("@zip_code", zip);
    set("@employeer", TextCriterion(txtPersonCompany.Text()));
    if (optGender.IsChosen(kGenderMale)) set("@gender", "M");
    if (optGender.IsChosen(kGenderFemale)) set("@gender", "F");
    if (cmbGroup.ListIndex() >= 0 && !cmbGroup.SelectedKey().empty()) {
      set("@customer_group_id", cmbGroup.SelectedKey());
      group_set = true;
    }
    // Employer and gender narrow a search but are too broad to run one on their own.
    has_criteria = !first.IsNull() || !last.IsNull() || !zip.IsNull();
  }

  if (!group_id_.empty()) {
    // A group search reads the Person tab's list on every tab: that list is the one preset
    // to the caller's group and locked. A group missing from the list still restricts.
    std::string key = cmbGroup.SelectedKey();
    if (key.empty()) key = group_id_;
    set("@customer_group_id", key);
    group_set = true;
  }
  if (tab == "Person" || tab == "Company") has_criteria = has_criteria || group_set || !group_id_.empty();
  return has_criteria;
}

void frmFind::FetchPage() {
  host::Parameters& params = search_command_->GetParameters();
  params.Item("@search_customer_no")
      .SetValue(last_customer_no_ == 0 ? Variant::Null() : Variant(last_customer_no_));

  ui::WaitCursor wait(ui());
  host::ScopedRecordset rs = host::OpenProcedure(*db_, search_command_);
  if (rs && rs->IsOpen()) {
    // The return value is read as the procedure gives it; the screen does not act on it.
    (void)host::OutputLong(*search_command_, "@return_value", -1);
    total_count_ = host::OutputLong(*search_command_, "@total_rowcount", 0);
    if (!cancelled_ && !rs.Eof()) {
      search_fill_.Bind(*rs);
      const int customer_no_field = search_fill_.FieldIndex("customer_no");
      for (; !rs.Eof(); rs->MoveNext()) {
        last_customer_no_ = NzLong(rs->FieldAt(customer_no_field).Value());
        ++displayed_count_;
        // Each customer row is an outline node that opens onto its related customers.
        const int row = search_fill_.AddRow(fxgCustomers, *rs);
        fxgCustomers.SetIsSubtotal(row, true);
        fxgCustomers.SetIsCollapsed(row, true);
        ui().DoEvents();
        if (cancelled_) break;
      }
    }
  }
  rs.Close();
  ShowStatus();
}

void frmFind::GetMore() {
  if (!db_ || !search_command_) return;
  FetchPage();
}

void frmFind::ShowStatus() {
  stbSearch.SetPanelText("FOUND", "Found " + std::to_string(total_count_) + " Customers");
  stbSearch.SetPanelText("DISPLAY", "Displaying " + std::to_string(displayed_count_) + " Record(s)");
  cmdMore.SetEnabled(displayed_count_ < total_count_);
}

void frmFind::CheckNumericField(ui::TextBox& field, const char* title, const char* text) {
  const std::string value = field.Text();
  if (value.empty() || IsNumeric(Variant(value))) return;
  ui().MsgBox(text, ui::vbOKOnly, title);
  field.SetText("");
}

void frmFind::NewSearch() {
  // The Club tab keeps its fields: a club desk searches the same club over and over.
  for (ui::TextBox* field : {&txtFirstName, &txtLastName, &txtCompanyName, &txtPersonCompany, &txtZip,
                             &txtCompanyZip, &txtAccessID, &txtSalesOrder, &txtBookNo, &txtCustomerNo}) {
    field->SetText("");
  }
  // A locked list holds the caller's group and keeps it.
  if (cmbGroup.Enabled()) cmbGroup.SetListIndex(-1);
  if (cmbCompanyGroup.Enabled()) cmbCompanyGroup.SetListIndex(-1);
  optGender.SetValue(kGenderEither);
  ClearGrid();
  last_customer_no_ = 0;
  displayed_count_ = 0;
  total_count_ = 0;
  cmdMore.SetEnabled(false);
  if (ui::Control* first = FirstFieldOfTab()) first->SetFocus();
  stbSearch.SetPanelText("FOUND", "Ready...");
  stbSearch.SetPanelText("DISPLAY", "Ready...");
}

ui::Control* frmFind::FirstFieldOfTab() {
  const std::string tab = tabFind.SelectedKey();
  if (tab == "Company") return &txtCompanyName;
  if (tab == "Advanced") return &txtAccessID;
  if (tab == "Club") return &cmbClubId;
  return &txtLastName;
}

}  // namespace kiv

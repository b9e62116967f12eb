// The household's save: a new head of the household first, then each member in row order —
// removed members leave, members not created yet are created, the others get their
// relationship to the head. A member without a relationship stops the save; what was
// written before stays, and writing it again changes nothing, so the page stays dirty and
// a later save completes it.
#include "core/text.h"
#include "host/db_patterns.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "screens/detail/household_page.h"

namespace kiv {

namespace {

Variant DateOrNull(const std::string& cell) {
  if (Trim(cell).empty()) return Variant::Null();
  return Variant(Variant(cell).ToDate());
}

Variant TextOrNull(const std::string& cell) { return cell.empty() ? Variant::Null() : Variant(cell); }

//! A procedure that refused shows its message; the save stops there.
bool Refused(frmCustomerDetail& screen, host::ProcedureCall& call) {
  if (call.ReturnValue(0) >= 0) return false;
  const std::string message = call.OutputText("@message");
  screen.ui().MsgBox(message.empty() ? "The household could not be saved." : message, ui::vbInformation,
                     "Update family member canceled");
  return true;
}

}  // namespace

bool HouseholdPage::Save(frmCustomerDetail& screen) {
  bool saved = false;
  screen.Guard("SaveRelationshipData", [&] { saved = WriteHousehold(screen); });
  return saved;
}

bool HouseholdPage::WritePrimary(frmCustomerDetail& screen, size_t row, int32_t number) {
  host::DBConnection& db = *screen.DBConnection();
  const ListRow& r = rows_.Row(row);
  const std::string zip = screen.Customer() ? screen.Customer()->Zip() : std::string();
  host::ProcedureCall update(db, "KIV_SP_CUSTOMER_UpdateCustomer");
  bool written = update.Prepared();
  if (written) {
    update.In("@customer_no", Variant(number))
        .In("@household_no", Variant(number))
        .In("@last_name", Variant(r.cells[kColLastName]))
        .In("@first_name", Variant(r.cells[kColFirstName]))
        .In("@full_name", Variant(r.cells[kColFirstName] + " " + r.cells[kColLastName]))
        .In("@dob", DateOrNull(r.cells[kColDOB]))
        .In("@gender", Variant(r.cells[kColGender]))
        .In("@zip", Variant(zip))
        .In("@customer_type", Variant(std::string("P")))
        .In("@kiv_user", Variant(db.UserID()));
    written = update.Execute() && update.ReturnValue(-1) >= 0;
  }
  if (!written) {
    screen.ui().MsgBox("Unable to crate new primary customer", ui::vbInformation, "Cancel Update Relationship data");
    return false;
  }
  host::ProcedureCall primary(db, "KIV_SP_UpdateCustomerHouseholdPrimary");
  if (!primary.Prepared()) return false;
  primary.In("@customer_no", Variant(number));
  return primary.Execute() && !Refused(screen, primary);
}

bool HouseholdPage::WriteHousehold(frmCustomerDetail& screen) {
  if (!screen.DBConnection()) return false;
  host::DBConnection& db = *screen.DBConnection();
  const int head = PrimaryRow();
  const int32_t head_no = head >= 0 ? NumberOf(screen, static_cast<size_t>(head)) : screen.CustomerNo();

  // A new head, or a household that had none, is written before its members refer to it.
  if (head >= 0) {
    const ListRow& r = rows_.Row(static_cast<size_t>(head));
    if (r.cells[kColPrimary] != r.cells[kColOrigPrimary] &&
        !WritePrimary(screen, static_cast<size_t>(head), head_no))
      return false;
  }

  for (size_t i = 0; i < rows_.Count(); ++i) {
    const ListRow& row = rows_.Row(i);
    const int32_t number = NumberOf(screen, i);
    if (row.state == RowState::kRemoved) {
      if (row.added) continue;
      host::ProcedureCall remove(db, "KIV_SP_DeleteCustomerRelationship");
      if (!remove.Prepared()) return false;
      remove.In("@parent_customer_no", Variant(head_no)).In("@child_customer_no", Variant(number));
      if (!remove.Execute() || Refused(screen, remove)) return false;
      continue;
    }
    if (static_cast<int>(i) == head) continue;
    const std::string relationship = Trim(row.cells[kColRelationship]);
    if (relationship.empty()) {
      screen.ui().MsgBox("Can not save family member " + NameOf(i) + " without a defined relationship.",
                         ui::vbInformation, "Update family member canceled");
      return false;
    }
    if (row.state == RowState::kLoaded) continue;
    if (row.state == RowState::kNew && number == 0) {
      host::ProcedureCall add(db, "KIV_SP_INSERTCUSTOMER_ADD_FAMILY");
      if (!add.Prepared()) return false;
      const std::string last = row.cells[kColLastName], first = row.cells[kColFirstName];
      add.In("@customer_no", Variant(head_no))
          .In("@last_name", Variant(last))
          .In("@first_name", Variant(first))
          .In("@full_name", Variant(first + " " + last))
          .In("@dob", DateOrNull(row.cells[kColDOB]))
          .In("@gender", TextOrNull(row.cells[kColGender]))
          .In("@rel_type_id", Variant(relationship))
          .In("@zip", Variant(screen.Customer() ? screen.Customer()->Zip() : std::string()))
          .In("@household_no", Variant(screen.HouseholdNo() != 0 ? screen.HouseholdNo() : head_no))
          .In("@user_id", Variant(db.UserID()));
      if (!add.Execute() || Refused(screen, add)) return false;
      // The row keeps its number: a later save relates it again instead of creating it twice.
      const int32_t created = add.OutputLong("@new_customer_no", 0);
      if (created == 0) return false;
      rows_.SetKey(i, Variant(created));
      rows_.Edit(i, kColCustomerNo, std::to_string(created));
      continue;
    }
    host::ProcedureCall relate(db, "KIV_SP_UpdateCustomerRelationship");
    if (!relate.Prepared()) return false;
    relate.In("@parent_customer_no", Variant(head_no))
        .In("@child_customer_no", Variant(number))
        .In("@rel_type_id", Variant(relationship));
    if (!relate.Execute() || Refused(screen, relate)) return false;
  }

  // What the database now has becomes what the page was loaded with.
  const bool self_stays = self_row_ >= 0 && rows_.Row(static_cast<size_t>(self_row_)).state != RowState::kRemoved;
  if (self_row_ >= 0) rows_.SetKey(static_cast<size_t>(self_row_), Variant(screen.CustomerNo()));
  rows_.MarkSaved();
  ListRows saved;
  self_row_ = -1;
  for (size_t i = 0; i < rows_.Count(); ++i) {
    std::vector<std::string> cells = rows_.Row(i).cells;
    const int32_t number = NzLong(rows_.Row(i).key);
    cells[kColOrigPrimary] = cells[kColPrimary];
    cells[kColCustomerNo] = std::to_string(number);
    if (self_stays && number == screen.CustomerNo()) self_row_ = static_cast<int>(saved.Count());
    saved.AddLoaded(std::move(cells), Variant(number));
  }
  rows_ = std::move(saved);
  dirty_ = false;
  // The record is written again by later saves of the editor: it must not undo the household.
  if (screen.Customer()) screen.Customer()->SetHouseholdNo(self_stays ? head_no : screen.CustomerNo());
  if (Showing(screen)) Render(screen);
  return true;
}

}  // namespace kiv

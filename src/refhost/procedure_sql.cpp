// Shared SQL texts of the procedures.
#include "refhost/procedure_sql.h"

namespace kiv::refhost {

const char* const kCustomerColumns =
    "c.customer_no, c.full_name, c.first_name, c.last_name, c.company_name, c.customer_type, c.customer_kind, "
    "c.Gender, c.Zip, c.account_id, c.status_id, c.comment_note, c.DOB, c.Locked, c.date_of_release, c.has_image, "
    "c.discount_percentage, c.commission_percentage, c.household_primary, c.household_no, c.Customer_Level_ID, "
    "c.do_not_mail, c.EMail, c.work_phone, c.cell_phone, c.Occupation, c.wedding_anniversary, c.preloaded, "
    "c.created_by, c.create_date, c.modified_by, c.modified_date";

const char* const kHasFlagColumns =
    "EXISTS (SELECT 1 FROM kiv_will_call w WHERE w.customer_no = c.customer_no AND w.dtm_printed IS NULL) "
    "AS has_willcall, "
    "EXISTS (SELECT 1 FROM kiv_reservation r WHERE r.customer_no = c.customer_no) AS has_reservation, "
    "EXISTS (SELECT 1 FROM kiv_sales_order s WHERE s.customer_no = c.customer_no AND s.is_invoiced = 0) AS has_so, "
    "EXISTS (SELECT 1 FROM kiv_club_member m WHERE m.customer_no = c.customer_no AND m.is_active <> 0) AS has_club, "
    "(EXISTS (SELECT 1 FROM kiv_customer_rel p WHERE p.parent_customer_no = c.customer_no) OR "
    "EXISTS (SELECT 1 FROM kiv_customer_rel q WHERE q.child_customer_no = c.customer_no)) AS has_relationship";

const char* const kSearchRowColumns =
    "c.customer_no, "
    "EXISTS (SELECT 1 FROM kiv_will_call w WHERE w.customer_no = c.customer_no AND w.dtm_printed IS NULL) "
    "AS has_willcall, "
    "EXISTS (SELECT 1 FROM kiv_club_member m WHERE m.customer_no = c.customer_no AND m.is_active <> 0) AS has_club, "
    "EXISTS (SELECT 1 FROM kiv_sales_order s WHERE s.customer_no = c.customer_no AND s.is_invoiced = 0) AS has_so, "
    "EXISTS (SELECT 1 FROM kiv_reservation r WHERE r.customer_no = c.customer_no) AS has_reservation, "
    "(EXISTS (SELECT 1 FROM kiv_customer_rel p WHERE p.parent_customer_no = c.customer_no) OR "
    "EXISTS (SELECT 1 FROM kiv_customer_rel q WHERE q.child_customer_no = c.customer_no)) AS has_relationship, "
    "c.customer_type, c.company_name, c.last_name, c.full_name, c.first_name, c.Zip, c.customer_kind, c.has_image, "
    "c.Customer_Level_ID, c.household_no";

void MarkFlagsBoolean(RowSet& rows) {
  const ColumnType bit = ColumnTypeFromDecl("BIT");
  for (size_t c = 0; c < rows.columns.size(); ++c) {
    if (rows.columns[c].name.rfind("has_", 0) != 0) continue;
    rows.columns[c].type = bit;
    for (auto& row : rows.rows)
      if (!row[c].IsNull()) row[c] = Variant(row[c].ToBool());
  }
}

std::string PrefixEnd(std::string_view prefix) {
  std::string end(prefix);
  while (!end.empty() && static_cast<unsigned char>(end.back()) == 0xFF) end.pop_back();
  if (end.empty()) return std::string(1, '\xFF');
  end.back() = static_cast<char>(static_cast<unsigned char>(end.back()) + 1);
  return end;
}

}  // namespace kiv::refhost

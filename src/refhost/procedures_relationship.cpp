// Reading a household or a company's employee links, as the relationships page lists them.
// A household is every customer whose household number is the head's, and the head itself.
#include <string>

#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void GetRelationship(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  const int32_t parent = call.Long("@parent_customer_no");
  const int32_t child = call.Long("@child_customer_no");
  if (call.Bool("@employee")) {
    call.ReturnRows("SELECT c.customer_no, c.last_name, c.first_name, c.household_primary, c.Gender, c.DOB, "
                    "r.rel_type_id FROM kiv_customer_rel r JOIN kiv_customer c ON c.customer_no = r.child_customer_no "
                    "WHERE r.parent_customer_no = ? AND r.rel_type_id = 'EMPLOYEE' ORDER BY c.customer_no",
                    {Variant(parent)});
    return;
  }
  // The customer's own household wins over the one the caller names: a member moved since.
  const int32_t member = child != 0 ? child : parent;
  const int32_t household = NzLong(db.QueryValue(
      "SELECT IFNULL(household_no, customer_no) FROM kiv_customer WHERE customer_no = ?", {Variant(member)}));
  const int32_t head = household != 0 ? household : parent;
  call.ReturnRows(
      "SELECT c.customer_no, c.last_name, c.first_name, "
      "CASE WHEN c.customer_no = ?1 THEN 1 ELSE 0 END AS household_primary, c.Gender, c.DOB, "
      "(SELECT r.rel_type_id FROM kiv_customer_rel r WHERE r.child_customer_no = c.customer_no "
      "AND r.rel_type_id <> 'EMPLOYEE' ORDER BY r.rowid LIMIT 1) AS rel_type_id "
      "FROM kiv_customer c WHERE c.customer_no = ?1 OR c.household_no = ?1 "
      "ORDER BY household_primary DESC, c.customer_no",
      {Variant(head)});
}

}  // namespace

void AddRelationshipProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetRelationship",
                {InInt("@parent_customer_no"), InInt("@child_customer_no"), InBit("@employee")},
                false,
                GetRelationship});
}

}  // namespace kiv::refhost

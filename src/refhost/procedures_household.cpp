// Procedures of households, family members, employer links and the custom profile.
// Family relationships (every type but EMPLOYEE) put the child in the parent's household.
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/procedure_sql.h"
#include "refhost/sequences.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

int32_t HouseholdOf(SqliteDatabase& db, int32_t customer_no) {
  int32_t household = NzLong(db.QueryValue("SELECT household_no FROM kiv_customer WHERE customer_no = ?",
                                           {Variant(customer_no)}));
  return household == 0 ? customer_no : household;
}

void JoinHousehold(SqliteDatabase& db, int32_t parent, int32_t child) {
  db.Execute("UPDATE kiv_customer SET household_no = ?, household_primary = 0 WHERE customer_no = ?",
             {Variant(HouseholdOf(db, parent)), Variant(child)});
}

//! Other customers whose household is this customer's own.
bool HeadsOthers(SqliteDatabase& db, int32_t customer_no) {
  return !db.QueryValue("SELECT 1 FROM kiv_customer WHERE household_no = ?1 AND customer_no <> ?1 LIMIT 1",
                        {Variant(customer_no)})
              .IsNull();
}

//! The search shows a customer's relations only when this flag says it has any.
void MarkRelationships(SqliteDatabase& db, int32_t customer_no) {
  db.Execute("UPDATE kiv_customer SET has_relationship = EXISTS (SELECT 1 FROM kiv_customer_rel WHERE "
             "parent_customer_no = ?1 OR child_customer_no = ?1) WHERE customer_no = ?1",
             {Variant(customer_no)});
}

// A member becomes the head of its household: the whole household moves to its number and
// the relationships of the old head's members are now to the new head.
void UpdateHouseholdPrimary(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t no = call.Long("@customer_no");
  RaiseUnlessCustomer(call, no);
  const int32_t old_head = HouseholdOf(db, no);
  if (old_head != no) {
    db.Execute("UPDATE kiv_customer SET household_no = ?1, household_primary = 0 WHERE household_no = ?2 OR "
               "customer_no = ?2",
               {Variant(no), Variant(old_head)});
    db.Execute("DELETE FROM kiv_customer_rel WHERE child_customer_no = ? AND rel_type_id <> 'EMPLOYEE'",
               {Variant(no)});
    db.Execute("UPDATE kiv_customer_rel SET parent_customer_no = ?1 WHERE parent_customer_no = ?2 AND "
               "rel_type_id <> 'EMPLOYEE'",
               {Variant(no), Variant(old_head)});
    MarkRelationships(db, old_head);
  }
  db.Execute("UPDATE kiv_customer SET household_no = customer_no, household_primary = 1 WHERE customer_no = ?",
             {Variant(no)});
  MarkRelationships(db, no);
}

void UpdateRelationship(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t parent = call.Long("@parent_customer_no");
  int32_t child = call.Long("@child_customer_no");
  std::string type = call.Text("@rel_type_id");
  if (type.empty()) return Refuse(call, "A relationship needs a relationship type.");
  if (parent == child) return Refuse(call, "A customer cannot be related to itself.");
  if (!CustomerExists(db, parent) || !CustomerExists(db, child))
    return Refuse(call, "Both customers of a relationship must exist.");
  if (type == "EMPLOYEE") {
    db.Execute("DELETE FROM kiv_customer_rel WHERE parent_customer_no = ? AND child_customer_no = ? AND "
               "rel_type_id = 'EMPLOYEE'",
               {Variant(parent), Variant(child)});
  } else {
    // A customer belongs to one household: one in another household, or heading one of its
    // own with members, has to leave it first.
    const int32_t theirs = HouseholdOf(db, child);
    if ((theirs != child && theirs != HouseholdOf(db, parent)) || HeadsOthers(db, child))
      return Refuse(call, "Customer " + std::to_string(child) + " is already in a relationship with another household.");
    db.Execute("DELETE FROM kiv_customer_rel WHERE child_customer_no = ? AND rel_type_id <> 'EMPLOYEE'",
               {Variant(child)});
  }
  db.Execute("INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES (?, ?, ?)",
             {Variant(parent), Variant(child), Variant(type)});
  if (type != "EMPLOYEE") JoinHousehold(db, parent, child);
  MarkRelationships(db, parent);
  MarkRelationships(db, child);
  Succeed(call);
}

void DeleteRelationship(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t parent = call.Long("@parent_customer_no");
  int32_t child = call.Long("@child_customer_no");
  if (parent == child) return Refuse(call, "A customer cannot leave its own household.");
  // A member belongs to one household, whoever in it the relationship names as parent.
  db.Execute("DELETE FROM kiv_customer_rel WHERE child_customer_no = ? AND rel_type_id <> 'EMPLOYEE' AND "
             "(parent_customer_no = ? OR parent_customer_no IN (SELECT customer_no FROM kiv_customer WHERE "
             "household_no = ?))",
             {Variant(child), Variant(parent), Variant(HouseholdOf(db, parent))});
  // A member leaving the household becomes a household of its own.
  db.Execute("UPDATE kiv_customer SET household_no = customer_no, household_primary = 1 WHERE customer_no = ? AND "
             "household_no = ? AND customer_no <> household_no",
             {Variant(child), Variant(HouseholdOf(db, parent))});
  MarkRelationships(db, parent);
  MarkRelationships(db, child);
  Succeed(call);
}

// New family member of a customer: a person in the parent's household, related to the parent.
void AddFamily(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t parent = call.Long("@customer_no");
  std::string type = call.Text("@rel_type_id");
  if (!CustomerExists(db, parent)) return Refuse(call, NoSuchCustomer(parent));
  if (type.empty()) return Refuse(call, "A family member needs a relationship.");
  if (call.Text("@last_name").empty()) return Refuse(call, "A family member needs a last name.");
  int32_t household = call.Long("@household_no");
  if (household == 0) household = HouseholdOf(db, parent);
  int32_t no = NextSequenceNo(db, "seq_customer_no");
  Variant dob = DateOrNull(call.In("@dob"));
  Variant now(db.Now());
  db.Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, full_name, DOB, Gender, Zip, "
             "customer_type, household_no, household_primary, created_by, create_date, modified_by, modified_date) "
             "VALUES (?, ?, ?, ?, ?, ?, ?, 'P', ?, 0, ?, ?, ?, ?)",
             {Variant(no), call.In("@last_name"), call.In("@first_name"), call.In("@full_name"), dob, call.In("@gender"),
              call.In("@zip"), Variant(household), call.In("@user_id"), now, call.In("@user_id"), now});
  db.Execute("INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES (?, ?, ?)",
             {Variant(parent), Variant(no), Variant(type)});
  // A customer alone until now heads the household it has just got.
  db.Execute("UPDATE kiv_customer SET household_no = customer_no WHERE customer_no = ? AND household_no IS NULL",
             {Variant(household)});
  db.Execute("UPDATE kiv_customer SET has_relationship = 1 WHERE customer_no IN (?, ?)", {Variant(parent), Variant(no)});
  call.Out("@new_customer_no", Variant(no));
  Succeed(call);
}

void UpdateEmployer(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t employee = call.Long("@customer_no");
  int32_t employer = call.Long("@employer_customer_no");
  if (!CustomerExists(db, employee) || !CustomerExists(db, employer))
    return Refuse(call, "Both the employee and the employer must exist.");
  const bool active = call.IsNull("@is_active") || call.Bool("@is_active");
  db.Execute("INSERT INTO kiv_customer_employer (customer_no, fiscal_year, employer_customer_no, is_active, "
             "comment_note) VALUES (?, ?, ?, ?, ?) ON CONFLICT (customer_no, fiscal_year, employer_customer_no) "
             "DO UPDATE SET is_active = excluded.is_active, comment_note = excluded.comment_note",
             {Variant(employee), Variant(call.Long("@fiscal_year")), Variant(employer), Variant(active),
              call.In("@comment_note")});
  Succeed(call);
}

void DeleteEmployer(ProcedureCall& call) {
  call.Db().Execute(
      "DELETE FROM kiv_customer_employer WHERE customer_no = ? AND fiscal_year = ? AND employer_customer_no = ?",
      {Variant(call.Long("@customer_no")), Variant(call.Long("@fiscal_year")),
       Variant(call.Long("@employer_customer_no"))});
}

// Everything of the old customer moves to the new one; then the old customer goes.
void GetProfiles(ProcedureCall& call) {
  // A customer without profile values still gets one row, so every site column is listed.
  call.ReturnRows("SELECT p.* FROM kiv_customer c LEFT JOIN kiv_customer_profile p ON p.CUSTOMER_NO = c.customer_no "
                  "WHERE c.customer_no = ?",
                  {Variant(call.Long("@customer_no"))});
}

void GetForecast(ProcedureCall& call) {
  call.ReturnRows("SELECT f.*, (SELECT group_concat(s.salesorder_no, ',') FROM kiv_sales_order s "
                  "WHERE s.forecast_no = f.forecast_no) AS salesorder_no FROM kiv_customer_forecast f "
                  "WHERE f.customer_no = ? ORDER BY f.fc_arrival_date, f.forecast_no",
                  {Variant(call.Long("@customer_no"))});
}

}  // namespace

void AddHouseholdProcedures(ProcedureRegistry& registry) {
  AddRelationshipProcedures(registry);
  registry.Add({"KIV_SP_UpdateCustomerHouseholdPrimary", {InInt("@customer_no")}, true, UpdateHouseholdPrimary});
  registry.Add({"KIV_SP_UpdateCustomerRelationship",
                {InInt("@parent_customer_no"), InInt("@child_customer_no"), InText("@rel_type_id", 20),
                 OutText("@message", 255)},
                true,
                UpdateRelationship});
  registry.Add({"KIV_SP_DeleteCustomerRelationship",
                {InInt("@parent_customer_no"), InInt("@child_customer_no"), OutText("@message", 255)},
                true,
                DeleteRelationship});
  std::vector<ProcedureParam> family{InInt("@customer_no"), InText("@last_name", 50), InText("@first_name", 40),
                                     InText("@full_name", 100), InDate("@dob"), InText("@gender", 1),
                                     InText("@rel_type_id", 20), InText("@email", 80), InText("@zip", 15),
                                     InInt("@household_no"), InText("@user_id", 20), OutInt("@new_customer_no"),
                                     OutText("@message", 255)};
  registry.Add({"KIV_SP_INSERTCUSTOMER_ADD_FAMILY", family, true, AddFamily});
  registry.Add({"SP_INSERTCUSTOMER_ADD_FAMILY", family, true, AddFamily});
  registry.Add({"KIV_SP_UpdateCustomerEmployerRelationship",
                {InInt("@customer_no"), InInt("@fiscal_year"), InInt("@employer_customer_no"), InBit("@is_active"),
                 InText("@comment_note", 255), OutText("@message", 255)},
                true,
                UpdateEmployer});
  registry.Add({"SP_DeleteCustomerEmployerRelationship",
                {InInt("@customer_no"), InInt("@fiscal_year"), InInt("@employer_customer_no")},
                true,
                DeleteEmployer});
  registry.Add({"KIV_SP_CUSTOMER_GetProfiles", {InInt("@customer_no")}, false, GetProfiles});
  registry.Add({"KIV_SP_CUSTOMER_GetForecast", {InInt("@customer_no")}, false, GetForecast});
}

}  // namespace kiv::refhost

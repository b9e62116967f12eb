// Procedures of the customer row: read with its has-flags, insert or update, delete (or
// refuse to while activity refers to the customer), and the stored has-flags.
#include <algorithm>
#include <string>

#include "host/host_error.h"
#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/procedure_sql.h"
#include "refhost/read_rows.h"
#include "refhost/sequences.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

// The columns written by the update procedure, each from the parameter of the same name.
struct WrittenColumn {
  const char* column;
  const char* parameter;
  bool is_date;
  //! How the clerk knows the field, for a refusal naming it.
  const char* label;
};
constexpr WrittenColumn kWritten[] = {
    {"first_name", "@first_name", false, "first name"},
    {"last_name", "@last_name", false, "last name"},
    {"full_name", "@full_name", false, "full name"},
    {"company_name", "@company_name", false, "company name"},
    {"customer_type", "@customer_type", false, "customer type"},
    {"customer_kind", "@customer_kind", false, "customer kind"},
    {"Zip", "@zip", false, "postal code"},
    {"account_id", "@account_id", false, "account"},
    {"status_id", "@status_id", false, "status"},
    {"comment_note", "@comment_note", false, "comment"},
    {"DOB", "@dob", true, "date of birth"},
    {"has_image", "@has_image", false, "photograph flag"},
    {"commission_percentage", "@commission_percentage", false, "commission percentage"},
    {"discount_percentage", "@discount_percentage", false, "discount percentage"},
    {"Locked", "@locked", false, "locked flag"},
    {"preloaded", "@preloaded", false, "preloaded flag"},
    {"Customer_Level_ID", "@customer_level_id", false, "customer level"},
    {"Gender", "@gender", false, "gender"},
    {"date_of_release", "@date_of_release", true, "release date"},
    {"household_no", "@household_no", false, "household"},
    {"household_primary", "@household_primary", false, "household primary flag"},
    {"do_not_mail", "@do_not_mail", false, "do-not-mail flag"},
    {"EMail", "@email", false, "e-mail address"},
    {"wedding_anniversary", "@wedding_anniversary", true, "wedding anniversary"},
    {"Occupation", "@occupation", false, "occupation"},
    {"work_phone", "@work_phone", false, "work phone"},
    {"cell_phone", "@cell_phone", false, "cell phone"},
};

constexpr size_t kHouseholdNo = 19;
constexpr size_t kHouseholdPrimary = 20;

std::string ReadingKey(int32_t customer_no) { return "customer:" + std::to_string(customer_no); }

// The written columns of a row set's first row in their stored form; empty without a row.
ReadRows::Row WrittenForms(const RowSet& rows) {
  ReadRows::Row row;
  if (rows.rows.empty()) return row;
  for (const auto& w : kWritten) {
    int c = FindColumn(rows.columns, w.column);
    row.push_back(c < 0 ? std::string() : ReadRows::StoredForm(rows.rows[0][static_cast<size_t>(c)]));
  }
  return row;
}

ReadRows::Row WrittenForms(const std::vector<Variant>& values) {
  ReadRows::Row row;
  for (size_t i = 0; i < std::size(kWritten); ++i) row.push_back(ReadRows::StoredForm(values[i]));
  return row;
}

std::string JoinLabels(const std::vector<std::string>& labels) {
  std::string text;
  for (size_t i = 0; i < labels.size(); ++i) {
    if (i > 0) text += i + 1 == labels.size() ? " and " : ", ";
    text += "the " + labels[i];
  }
  return text;
}

// Another terminal may have saved this customer since this clerk read it. A field the clerk
// left as read takes the other terminal's value, so that save is not undone; a field both
// changed, to different values, refuses the save, since one of the two changes would be lost
// without anyone having seen it.
void MergeOtherTerminal(ProcedureCall& call, int32_t customer_no, const ReadRows::Row& read,
                        std::vector<Variant>& values) {
  std::string columns;
  for (const auto& w : kWritten) columns += (columns.empty() ? "" : ", ") + std::string(w.column);
  auto rows = call.Db().QueryRows("SELECT " + columns + " FROM kiv_customer WHERE customer_no = ?",
                                  {Variant(customer_no)});
  if (rows.empty() || read.size() != std::size(kWritten)) return;
  const auto& stored = rows[0];
  std::vector<std::string> both;
  for (size_t i = 0; i < std::size(kWritten); ++i) {
    if (i == kHouseholdPrimary) continue;  // follows the household number below
    std::string theirs = ReadRows::StoredForm(stored[i]);
    if (theirs == read[i]) continue;
    std::string mine = ReadRows::StoredForm(values[i]);
    if (mine == theirs) continue;
    if (mine == read[i]) {
      values[i] = stored[i];
      continue;
    }
    both.push_back(kWritten[i].label);
  }
  values[kHouseholdPrimary] = Variant(NzLong(values[kHouseholdNo]) == customer_no);
  if (both.empty()) return;
  call.Raise("Customer " + std::to_string(customer_no) +
             " was changed at another terminal while it was open here, and both changed " + JoinLabels(both) +
             ". Nothing was saved: close the customer, open it again to see the other change, and make yours again.");
}

void GetCustomer(ProcedureCall& call) {
  call.ReturnRows(std::string("SELECT ") + kCustomerColumns + ", " + kHasFlagColumns +
                      " FROM kiv_customer c WHERE c.customer_no = ?",
                  {Variant(call.Long("@customer_no"))});
  MarkFlagsBoolean(call.Rows());
  ReadRows* readings = call.Db().Readings();
  if (readings != nullptr && !call.Rows().rows.empty())
    readings->Remember(ReadingKey(call.Long("@customer_no")), WrittenForms(call.Rows()));
}

//! A parameter the caller never assigned keeps the stored value: a call that sends only some
//! fields (the household's new head gets its names and household) must not blank the rest.
void KeepUnassigned(ProcedureCall& call, int32_t customer_no, std::vector<Variant>& values) {
  const bool all_sent =
      std::all_of(std::begin(kWritten), std::end(kWritten), [&](const auto& w) { return call.Assigned(w.parameter); });
  if (all_sent) return;
  std::string columns;
  for (const auto& w : kWritten) columns += (columns.empty() ? "" : ", ") + std::string(w.column);
  auto rows = call.Db().QueryRows("SELECT " + columns + " FROM kiv_customer WHERE customer_no = ?",
                                  {Variant(customer_no)});
  if (rows.empty()) return;
  for (size_t i = 0; i < std::size(kWritten); ++i)
    if (!call.Assigned(kWritten[i].parameter)) values[i] = rows[0][i];
}

void UpdateCustomer(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  const bool inserting = customer_no == 0;
  if (!inserting && !CustomerExists(db, customer_no))
    call.Raise(NoSuchCustomer(customer_no));

  std::vector<Variant> values;
  for (const auto& w : kWritten) {
    Variant v = call.In(w.parameter);
    if (w.is_date) v = DateOrNull(v);
    values.push_back(v);
  }
  if (!inserting) KeepUnassigned(call, customer_no, values);
  std::string type = NzString(values[4]);
  if (type.empty()) type = "P";
  if (type != "P" && type != "C") call.Raise("The customer type must be P (person) or C (company), not '" + type + "'.");
  if (inserting) customer_no = NextSequenceNo(db, "seq_customer_no");
  values[4] = Variant(type);
  // Flags the table keeps as NOT NULL read a null as False.
  for (size_t i = 0; i < std::size(kWritten); ++i) {
    std::string_view column = kWritten[i].column;
    if ((column == "has_image" || column == "household_primary" || column == "do_not_mail" ||
         column == "preloaded") &&
        values[i].IsNull())
      values[i] = Variant(false);
  }
  // A customer without a household is its own household, and its primary.
  int32_t household_no = NzLong(values[kHouseholdNo]);
  if (household_no == 0) {
    household_no = customer_no;
    values[kHouseholdNo] = Variant(household_no);
  }
  values[kHouseholdPrimary] = Variant(household_no == customer_no);
  ReadRows* readings = db.Readings();
  const ReadRows::Row* read = readings != nullptr && !inserting ? readings->Find(ReadingKey(customer_no)) : nullptr;
  // The clerk's record holds what it sent, not what the merge took from elsewhere: that is
  // what its next save starts from.
  ReadRows::Row sent = WrittenForms(values);
  if (read != nullptr) MergeOtherTerminal(call, customer_no, *read, values);

  const std::string user = call.Text("@kiv_user");
  const Variant now(db.Now());
  if (inserting) {
    std::string names = "customer_no", marks = "?";
    for (const auto& w : kWritten) {
      names += std::string(", ") + w.column;
      marks += ", ?";
    }
    names += ", created_by, create_date, modified_by, modified_date";
    marks += ", ?, ?, ?, ?";
    values.insert(values.begin(), Variant(customer_no));
    values.insert(values.end(), {Variant(user), now, Variant(user), now});
    db.Execute("INSERT INTO kiv_customer (" + names + ") VALUES (" + marks + ")", values);
  } else {
    std::string sets;
    for (const auto& w : kWritten) sets += std::string(w.column) + " = ?, ";
    sets += "modified_by = ?, modified_date = ?";
    values.insert(values.end(), {Variant(user), now, Variant(customer_no)});
    db.Execute("UPDATE kiv_customer SET " + sets + " WHERE customer_no = ?", values);
  }
  if (readings != nullptr) readings->Remember(ReadingKey(customer_no), std::move(sent));
  call.Out("@customer_no", Variant(customer_no));
  Succeed(call);
}

std::string Count(SqliteDatabase& db, const char* sql, int32_t customer_no, const char* one, const char* many) {
  int32_t n = NzLong(db.QueryValue(sql, {Variant(customer_no)}));
  if (n == 0) return {};
  return std::to_string(n) + " " + (n == 1 ? one : many);
}

void DeleteCustomer(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  RaiseUnlessCustomer(call, customer_no);
  std::string refs;
  for (const std::string& part :
       {Count(db, "SELECT COUNT(*) FROM kiv_sales_order WHERE customer_no = ?1 OR for_customer_no = ?1", customer_no,
              "sales order", "sales orders"),
        Count(db, "SELECT COUNT(*) FROM kiv_invoice WHERE customer_no = ?1", customer_no, "invoice", "invoices"),
        Count(db, "SELECT COUNT(*) FROM kiv_reservation WHERE customer_no = ?1", customer_no, "reservation",
              "reservations")}) {
    if (part.empty()) continue;
    if (!refs.empty()) refs += ", ";
    refs += part;
  }
  if (!refs.empty())
    call.Raise("Customer " + std::to_string(customer_no) + " cannot be deleted: it has " + refs + ".");

  const std::vector<Variant> key{Variant(customer_no)};
  // Addresses linked to nobody else go with the customer.
  db.Execute(
      "DELETE FROM kiv_address WHERE address_no IN (SELECT address_no FROM kiv_customer_address WHERE customer_no = ?1) "
      "AND address_no NOT IN (SELECT address_no FROM kiv_customer_address WHERE customer_no <> ?1)",
      key);
  for (const char* sql : {"DELETE FROM kiv_customer_address WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_setting WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_alert WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_employer WHERE customer_no = ?1 OR employer_customer_no = ?1",
                          "DELETE FROM kiv_customer_rel WHERE parent_customer_no = ?1 OR child_customer_no = ?1",
                          "DELETE FROM kiv_images WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_group_member WHERE customer_no = ?1",
                          "DELETE FROM kiv_club_member WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_profile WHERE CUSTOMER_NO = ?1",
                          "DELETE FROM kiv_customer_cc WHERE customer_no = ?1",
                          "DELETE FROM kiv_customer_forecast WHERE customer_no = ?1",
                          "DELETE FROM kiv_will_call WHERE customer_no = ?1",
                          // Members of a household whose primary goes become households of their own.
                          "UPDATE kiv_customer SET household_no = customer_no, household_primary = 1 "
                          "WHERE household_no = ?1 AND customer_no <> ?1",
                          "DELETE FROM kiv_customer WHERE customer_no = ?1"})
    db.Execute(sql, key);
}

void UpdateCustomerHas(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  auto rows = db.QueryRows(std::string("SELECT ") + kHasFlagColumns +
                               ", c.has_willcall, c.has_reservation, c.has_so, c.has_club, c.has_relationship "
                               "FROM kiv_customer c WHERE c.customer_no = ?",
                           {Variant(customer_no)});
  if (rows.empty()) call.Raise(NoSuchCustomer(customer_no));
  const auto& f = rows[0];
  bool stale = false;
  for (size_t i = 0; i < 5; ++i) stale = stale || NzBool(f[i]) != NzBool(f[i + 5]);
  // Opening a customer reads; it writes only when the stored flags are out of date, and then
  // without waiting: the flags are answered from the activity tables either way, so a
  // writer elsewhere costs the stored copy one refresh, never the clerk a wait.
  if (stale) {
    try {
      SqliteDatabase::NoWait no_wait(db);
      db.Execute(
          "UPDATE kiv_customer SET has_willcall = ?, has_reservation = ?, has_so = ?, has_club = ?, "
          "has_relationship = ? WHERE customer_no = ?",
          {f[0], f[1], f[2], f[3], f[4], Variant(customer_no)});
    } catch (const HostError& e) {
      if (e.description != kBusyMessage) throw;
    }
  }
  call.Out("@willcall", Variant(NzBool(f[0])));
  call.Out("@reservation", Variant(NzBool(f[1])));
  call.Out("@so", Variant(NzBool(f[2])));
  call.Out("@club", Variant(NzBool(f[3])));
  call.Out("@relationship", Variant(NzBool(f[4])));
}

}  // namespace

void AddCustomerProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_GetCustomer", {InInt("@customer_no")}, false, GetCustomer});
  registry.Add({"KIV_SP_CUSTOMER_UpdateCustomer",
                {InOutInt("@customer_no"),
                 InText("@first_name", 40),
                 InText("@last_name", 50),
                 InText("@full_name", 100),
                 InText("@company_name", 80),
                 InText("@customer_type", 1),
                 InText("@customer_kind", 20),
                 InText("@zip", 15),
                 InText("@account_id", 20),
                 InText("@status_id", 10),
                 InText("@comment_note", 2000),
                 InDate("@dob"),
                 InBit("@has_image"),
                 InFloat("@commission_percentage"),
                 InFloat("@discount_percentage"),
                 InBit("@locked"),
                 InSmall("@preloaded"),
                 InSmall("@cust_modified"),
                 InText("@kiv_user", 20),
                 InText("@customer_level_id", 20),
                 InText("@gender", 1),
                 InDate("@date_of_release"),
                 InInt("@household_no"),
                 InBit("@household_primary"),
                 InBit("@do_not_mail"),
                 InText("@email", 80),
                 InDate("@wedding_anniversary"),
                 InText("@occupation", 40),
                 InText("@work_phone", 20),
                 InText("@cell_phone", 20),
                 OutText("@message", 255)},
                true,
                UpdateCustomer});
  registry.Add({"SP_DeleteCustomer", {InInt("@customer_no")}, true, DeleteCustomer});
  registry.Add({"KIV_SP_UpdateCustomerHas",
                {InInt("@customer_no"), OutBit("@willcall"), OutBit("@club"), OutBit("@so"), OutBit("@reservation"),
                 OutBit("@relationship")},
                false,  // reads first; the rare write goes without waiting for the lock
                UpdateCustomerHas});
}

}  // namespace kiv::refhost

// The duplicate merge: everything recorded against one customer moves to another, the
// first is deleted, and the activity log says who merged what into what. One transaction:
// a merge that would leave anything pointing at the deleted customer changes nothing.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "core/text.h"
#include "refhost/customer_merge.h"
#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/procedure_sql.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

std::string Lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string Quoted(std::string_view name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out.push_back('"');
    out.push_back(c);
  }
  return out + "\"";
}

//! The profile's own bookkeeping columns; every other column is a site's custom field.
bool ProfileSystemColumn(const std::string& column) {
  for (const char* name : {"customer_no", "created_by", "create_date", "modified_by", "modified_date"})
    if (Lower(column) == name) return true;
  return false;
}

class Merge {
 public:
  Merge(SqliteDatabase& db, int32_t from, int32_t to) : db_(db), keys_{Variant(to), Variant(from)} {}

  void Apply(const MergeColumn& c) {
    const std::string t = Quoted(c.table), col = Quoted(c.column);
    switch (c.rule) {
      case MergeRule::Move:
        return Run("UPDATE " + t + " SET " + col + " = ?1 WHERE " + col + " = ?2");
      case MergeRule::MoveUnlessHeld:
        Run("UPDATE OR IGNORE " + t + " SET " + col + " = ?1 WHERE " + col + " = ?2");
        return Run("DELETE FROM " + t + " WHERE " + col + " = ?2");
      case MergeRule::Link: {
        const std::string partner = Quoted(c.partner);
        Run("UPDATE OR IGNORE " + t + " SET " + col + " = ?1 WHERE " + col + " = ?2 AND " + partner + " <> ?1");
        Run("DELETE FROM " + t + " WHERE " + col + " = ?2");
        return DropRepeatedLinks(c.table, col);
      }
      case MergeRule::CardSequence:
      case MergeRule::ImageSequence: {
        const char* seq = c.rule == MergeRule::CardSequence ? "card_seq_no" : "image_no";
        std::string extra = c.rule == MergeRule::ImageSequence ? ", current_photo = 0" : "";
        return Run("UPDATE " + t + " SET " + col + " = ?1" + extra + ", " + seq + " = " + seq +
                   " + (SELECT IFNULL(MAX(" + seq + "), 0) FROM " + t + " WHERE " + col + " = ?1) WHERE " + col +
                   " = ?2");
      }
      case MergeRule::CardReference:
        // The survivor's cards are not yet joined by the merged ones: their highest number is
        // the offset the cards are about to be renumbered by.
        return Run("UPDATE " + t + " SET " + col + " = ?1, card_seq_no = card_seq_no + (SELECT IFNULL(MAX(card_seq_no), 0) "
                   "FROM kiv_customer_cc WHERE customer_no = ?1) WHERE " + col + " = ?2");
      case MergeRule::AddressOfNewType:
        return MoveAddresses(t, col);
      case MergeRule::ProfileFill:
        return FillProfile(c.table, c.column);
      case MergeRule::Household:
        return JoinHousehold(t, col);
      case MergeRule::OwnRow:
        return;  // deleted last, once nothing points at it
      case MergeRule::Unrelated:
        return;
    }
  }

 private:
  void Run(const std::string& sql) { db_.Execute(sql, keys_); }

  //! A link both customers had (same partner, same kind) is kept once.
  void DropRepeatedLinks(const std::string& table, const std::string& col) {
    const std::string t = Quoted(table);
    std::string same;
    for (const auto& info : db_.QueryRows("PRAGMA table_info(" + t + ")")) {
      const std::string q = Quoted(NzString(info[1]));
      same += " AND a." + q + " IS b." + q;
    }
    Run("DELETE FROM " + t + " WHERE rowid IN (SELECT a.rowid FROM " + t + " a JOIN " + t + " b ON a.rowid > b.rowid" +
        same + " WHERE a." + col + " = ?1)");
  }

  void MoveAddresses(const std::string& t, const std::string& col) {
    // The dropped addresses go with their link unless another customer still uses them.
    auto dropped = db_.QueryRows("SELECT address_no FROM " + t + " x WHERE x." + col +
                                     " = ?2 AND EXISTS (SELECT 1 FROM " + t + " y WHERE y." + col +
                                     " = ?1 AND IFNULL(y.address_type, '') = IFNULL(x.address_type, ''))",
                                 keys_);
    Run("UPDATE OR IGNORE " + t + " SET " + col + " = ?1, primary_address = 0 WHERE " + col + " = ?2 AND NOT EXISTS " +
        "(SELECT 1 FROM " + t + " y WHERE y." + col + " = ?1 AND IFNULL(y.address_type, '') = IFNULL(" + t +
        ".address_type, ''))");
    Run("DELETE FROM " + t + " WHERE " + col + " = ?2");
    for (const auto& row : dropped)
      db_.Execute("DELETE FROM kiv_address WHERE address_no = ?1 AND NOT EXISTS (SELECT 1 FROM " + t +
                      " WHERE address_no = ?1)",
                  {row[0]});
  }

  void FillProfile(const std::string& table, const std::string& column) {
    const std::string t = Quoted(table), col = Quoted(column);
    if (db_.QueryValue("SELECT 1 FROM " + t + " WHERE " + col + " = ?1", keys_).IsNull())
      return Run("UPDATE " + t + " SET " + col + " = ?1 WHERE " + col + " = ?2");
    for (const auto& info : db_.QueryRows("PRAGMA table_info(" + Quoted(table) + ")")) {
      std::string name = NzString(info[1]);
      if (ProfileSystemColumn(name)) continue;
      const std::string q = Quoted(name);
      Run("UPDATE " + t + " SET " + q + " = (SELECT " + q + " FROM " + t + " WHERE " + col + " = ?2) WHERE " + col +
          " = ?1 AND " + q + " IS NULL");
    }
    Run("DELETE FROM " + t + " WHERE " + col + " = ?2");
  }

  void JoinHousehold(const std::string& t, const std::string& col) {
    // The survivor heads the household it inherits when it has none, or when it was itself a
    // member of the merged customer's household.
    Run("UPDATE " + t + " SET " + col + " = ?1, household_primary = 1 WHERE customer_no = ?1 AND (" + col +
        " = ?2 OR (" + col + " IS NULL AND EXISTS (SELECT 1 FROM " + t + " WHERE " + col +
        " = ?2 AND customer_no <> ?2)))");
    Run("UPDATE " + t + " SET " + col + " = (SELECT IFNULL(" + col + ", ?1) FROM " + t +
        " WHERE customer_no = ?1), household_primary = 0 WHERE " + col + " = ?2 AND customer_no NOT IN (?1, ?2)");
    // The merged customer's own row goes at the end; nothing else may keep its number.
    Run("UPDATE " + t + " SET " + col + " = NULL WHERE customer_no = ?2");
  }

  SqliteDatabase& db_;
  std::vector<Variant> keys_;
};

bool Unrelated(const TableColumn& column) {
  return std::any_of(MergeColumns().begin(), MergeColumns().end(), [&](const MergeColumn& c) {
    return c.rule == MergeRule::Unrelated && EqualsNoCase(c.table, column.table) && EqualsNoCase(c.column, column.column);
  });
}

std::string FullName(SqliteDatabase& db, int32_t customer_no) {
  return NzString(db.QueryValue("SELECT full_name FROM kiv_customer WHERE customer_no = ?", {Variant(customer_no)}));
}

void Dedup(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  if (call.IsNull("@old_customer_no") || call.IsNull("@new_customer_no"))
    return Refuse(call, "Both customers of a merge must be given.");
  int32_t from = call.Long("@old_customer_no");
  int32_t to = call.Long("@new_customer_no");
  if (from == to) return Refuse(call, "A customer cannot be merged into itself.");
  if (!CustomerExists(db, from)) return Refuse(call, NoSuchCustomer(from));
  if (!CustomerExists(db, to)) return Refuse(call, NoSuchCustomer(to));
  const std::string from_name = FullName(db, from), to_name = FullName(db, to);

  db.Execute("SAVEPOINT customer_merge");
  Merge merge(db, from, to);
  // The house account link follows unless the survivor has an account of its own.
  db.Execute("UPDATE kiv_customer SET account_id = (SELECT account_id FROM kiv_customer WHERE customer_no = ?2) "
             "WHERE customer_no = ?1 AND IFNULL(account_id, '') = ''",
             {Variant(to), Variant(from)});
  for (const MergeColumn& column : MergeColumns()) merge.Apply(column);
  db.Execute("DELETE FROM kiv_customer WHERE customer_no = ?", {Variant(from)});

  for (const TableColumn& left : CustomerNumberColumns(db)) {
    if (Unrelated(left)) continue;
    if (db.QueryValue("SELECT 1 FROM " + Quoted(left.table) + " WHERE " + Quoted(left.column) + " = ? LIMIT 1",
                      {Variant(from)})
            .IsNull())
      continue;
    db.Execute("ROLLBACK TO customer_merge");
    db.Execute("RELEASE customer_merge");
    return Refuse(call, "The merge would leave " + left.table + "." + left.column + " pointing at customer " +
                            std::to_string(from) + "; nothing was changed.");
  }
  db.Execute("RELEASE customer_merge");
  // The survivor's stored flags now answer for both.
  auto flags = db.QueryRows(std::string("SELECT ") + kHasFlagColumns + " FROM kiv_customer c WHERE c.customer_no = ?",
                            {Variant(to)});
  if (!flags.empty())
    db.Execute("UPDATE kiv_customer SET has_willcall = ?, has_reservation = ?, has_so = ?, has_club = ?, "
               "has_relationship = ? WHERE customer_no = ?",
               {flags[0][0], flags[0][1], flags[0][2], flags[0][3], flags[0][4], Variant(to)});
  db.Execute("INSERT INTO kiv_activity_log (logged_at, user_id, task_code, screen, detail) VALUES (?, ?, ?, ?, ?)",
             {Variant(db.Now()), Variant(call.User()), Variant("CUSTDEDUP"), Variant("Merge Customer"),
              Variant("FROM=" + std::to_string(from) + ";FN=" + from_name + ";TO=" + std::to_string(to) +
                      ";TN=" + to_name + ";")});
  Succeed(call);
}

}  // namespace

const std::vector<MergeColumn>& MergeColumns() {
  static const std::vector<MergeColumn> columns{
      {"kiv_customer", "customer_no", MergeRule::OwnRow},
      {"kiv_customer", "household_no", MergeRule::Household},
      {"kiv_customer_address", "customer_no", MergeRule::AddressOfNewType},
      {"kiv_customer_setting", "customer_no", MergeRule::MoveUnlessHeld},
      {"kiv_customer_alert", "customer_no", MergeRule::MoveUnlessHeld},
      {"kiv_customer_employer", "customer_no", MergeRule::Link, "employer_customer_no"},
      {"kiv_customer_employer", "employer_customer_no", MergeRule::Link, "customer_no"},
      {"kiv_customer_rel", "parent_customer_no", MergeRule::Link, "child_customer_no"},
      {"kiv_customer_rel", "child_customer_no", MergeRule::Link, "parent_customer_no"},
      {"kiv_images", "customer_no", MergeRule::ImageSequence},
      {"kiv_customer_group_member", "customer_no", MergeRule::MoveUnlessHeld},
      {"kiv_club_member", "customer_no", MergeRule::MoveUnlessHeld},
      {"kiv_customer_profile", "CUSTOMER_NO", MergeRule::ProfileFill},
      {"kiv_payment", "card_customer_no", MergeRule::CardReference},
      {"kiv_customer_cc", "customer_no", MergeRule::CardSequence},
      {"kiv_account", "customer_no", MergeRule::Move},
      {"kiv_customer_forecast", "customer_no", MergeRule::Move},
      {"kiv_sales_order", "customer_no", MergeRule::Move},
      {"kiv_sales_order", "for_customer_no", MergeRule::Move},
      {"kiv_invoice", "customer_no", MergeRule::Move},
      {"kiv_invoice_line", "customer_no", MergeRule::Move},
      {"kiv_payment", "customer_no", MergeRule::Move},
      {"kiv_reservation", "customer_no", MergeRule::Move},
      {"kiv_access_product", "customer_no", MergeRule::Move},
      {"kiv_will_call", "customer_no", MergeRule::Move},
      {"kiv_rental_contract", "customer_no", MergeRule::Move},
      {"kiv_access_history", "customer_no", MergeRule::Move},
      {"kiv_reservation_detail", "lodge_customer_no", MergeRule::Move},
      {"kiv_reservation_log", "lodge_customer_no", MergeRule::Move},
  };
  return columns;
}

bool HoldsCustomerNumber(std::string_view column) {
  const std::string name = Lower(column);
  for (const char* part : {"customer_no", "cust_no", "customer_number", "custno", "household_no", "owner", "bill_to"})
    if (name.find(part) != std::string::npos) return true;
  return false;
}

std::vector<TableColumn> CustomerNumberColumns(SqliteDatabase& db) {
  std::vector<TableColumn> found;
  for (const auto& table :
       db.QueryRows("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' ORDER BY name")) {
    const std::string name = NzString(table[0]);
    for (const auto& info : db.QueryRows("PRAGMA table_info(" + Quoted(name) + ")"))
      if (HoldsCustomerNumber(NzString(info[1]))) found.push_back({name, NzString(info[1])});
  }
  return found;
}

std::vector<TableColumn> UncoveredCustomerColumns(SqliteDatabase& db) {
  std::vector<TableColumn> uncovered;
  for (const TableColumn& live : CustomerNumberColumns(db)) {
    bool covered = std::any_of(MergeColumns().begin(), MergeColumns().end(), [&](const MergeColumn& c) {
      return EqualsNoCase(c.table, live.table) && EqualsNoCase(c.column, live.column);
    });
    if (!covered) uncovered.push_back(live);
  }
  return uncovered;
}

void AddDedupProcedures(ProcedureRegistry& registry) {
  registry.Add({"SP_CUSTOMER_DEDUP",
                {InInt("@old_customer_no"), InInt("@new_customer_no"), OutText("@message", 255)},
                true,
                Dedup});
}

}  // namespace kiv::refhost

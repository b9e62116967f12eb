// The customer search and the related-customer list. Texts match as case-insensitive
// prefixes through range comparisons on indexed columns, so a "%" or "_" typed by the
// clerk is an ordinary character and the indexes serve every name, company and zip search.
#include <string>
#include <vector>

#include "refhost/procedure_registry.h"
#include "refhost/procedure_sql.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

constexpr int kPageSize = 100;

// The NOCASE collation folds ASCII letters only, so the bounds are folded the same way.
std::string AsciiLower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

// The upper bound of a folded prefix under NOCASE: raising "@" gives "A", which the collation
// reads as "a" and so would take in [ \ ] ^ _ and the backquote; the next text past "@" that
// NOCASE keeps apart is "[".
std::string FoldedPrefixEnd(const std::string& lower) {
  std::string end = PrefixEnd(lower);
  if (!end.empty() && end.back() >= 'A' && end.back() <= 'Z') end.back() = '[';
  return end;
}

struct Where {
  std::string sql;
  std::vector<Variant> args;

  void Add(const std::string& condition, std::vector<Variant> values = {}) {
    sql += sql.empty() ? condition : " AND " + condition;
    args.insert(args.end(), values.begin(), values.end());
  }
  void AddPrefix(const std::string& column, const Variant& text) {
    if (text.IsNull()) return;
    std::string lower = AsciiLower(text.ToString());
    Add(column + " >= ? AND " + column + " < ?", {Variant(lower), Variant(FoldedPrefixEnd(lower))});
  }
};

// Advanced searches: each key finds its customers on its own; several keys add up.
bool ExclusiveKeys(const ProcedureCall& call, Where& where) {
  std::string any;
  std::vector<Variant> args;
  auto add = [&](const std::string& condition, const Variant& value) {
    any += any.empty() ? condition : " OR " + condition;
    args.push_back(value);
  };
  if (!call.IsNull("@customer_no")) add("c.customer_no = ?", Variant(call.Long("@customer_no")));
  if (!call.IsNull("@salesorder_no"))
    add("c.customer_no IN (SELECT customer_no FROM kiv_sales_order WHERE salesorder_no = ?)",
        Variant(call.Long("@salesorder_no")));
  if (!call.IsNull("@access_no"))
    add("c.customer_no IN (SELECT customer_no FROM kiv_access_product WHERE access_no = ?)",
        Variant(call.Double("@access_no")));
  Variant booking = call.Criterion("@booking_id");
  if (!booking.IsNull())
    add("c.customer_no IN (SELECT customer_no FROM kiv_reservation WHERE booking_id = ?)", booking);
  if (any.empty()) return false;
  where.Add("(" + any + ")", args);
  return true;
}

void Criteria(const ProcedureCall& call, Where& where) {
  Variant type = call.Criterion("@customer_type");
  if (!type.IsNull()) where.Add("c.customer_type = ?", {type});
  where.AddPrefix("c.last_name", call.Criterion("@last_name"));
  where.AddPrefix("c.first_name", call.Criterion("@first_name"));
  where.AddPrefix("c.company_name", call.Criterion("@company_name"));
  where.AddPrefix("c.Zip", call.Criterion("@zip_code"));
  Variant gender = call.Criterion("@gender");
  if (!gender.IsNull()) where.Add("UPPER(c.Gender) = UPPER(?)", {gender});
  Variant group = call.Criterion("@customer_group_id");
  if (!group.IsNull())
    where.Add("EXISTS (SELECT 1 FROM kiv_customer_group_member g WHERE g.customer_no = c.customer_no "
              "AND g.customer_group_id = ?)",
              {group});
  Variant employer = call.Criterion("@employeer");
  if (!employer.IsNull()) {
    std::string lower = AsciiLower(employer.ToString());
    where.Add("EXISTS (SELECT 1 FROM kiv_customer_employer e JOIN kiv_customer x ON x.customer_no = "
              "e.employer_customer_no WHERE e.customer_no = c.customer_no AND x.company_name >= ? AND "
              "x.company_name < ?)",
              {Variant(lower), Variant(FoldedPrefixEnd(lower))});
  }
  Variant club = call.Criterion("@club_id");
  Variant member = call.Criterion("@member_id");
  Variant active = call.In("@club_is_active");
  if (call.Long("@search_club") != 0 || !club.IsNull() || !member.IsNull() || !active.IsNull()) {
    Where m;
    m.Add("m.customer_no = c.customer_no");
    if (!club.IsNull()) m.Add("m.club_id = ?", {club});
    m.AddPrefix("m.member_id", member);
    if (!active.IsNull()) m.Add("(m.is_active <> 0) = ?", {Variant(active.ToLong() != 0)});
    where.Add("EXISTS (SELECT 1 FROM kiv_club_member m WHERE " + m.sql + ")", m.args);
  }
}

// Rows after the last one shown, in the order of `keys` (NULLs sort first) then the number.
void After(SqliteDatabase& db, int32_t last_no, const std::vector<std::string>& keys, Where& where) {
  std::string columns;
  for (const auto& k : keys) columns += k + ", ";
  auto rows = db.QueryRows("SELECT " + columns + "c.customer_no FROM kiv_customer c WHERE c.customer_no = ?",
                           {Variant(last_no)});
  if (rows.empty()) return;  // the continuation key is gone: start over
  std::string condition = "c.customer_no > ?";
  std::vector<Variant> args{Variant(last_no)};
  for (size_t i = keys.size(); i-- > 0;) {
    const Variant& value = rows[0][i];
    std::vector<Variant> next;
    std::string greater;
    if (value.IsNull()) {
      greater = keys[i] + " IS NOT NULL";
    } else {
      greater = keys[i] + " > ?";
      next.push_back(value);
    }
    next.push_back(value);
    next.insert(next.end(), args.begin(), args.end());
    condition = "(" + greater + " OR (" + keys[i] + " IS ? AND " + condition + "))";
    args = std::move(next);
  }
  where.Add(condition, args);
}

void Search(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  Where where;
  if (!ExclusiveKeys(call, where)) Criteria(call, where);
  if (where.sql.empty()) {
    // No criteria: nothing is listed rather than the whole database.
    call.ReturnRows(std::string("SELECT ") + kSearchRowColumns + " FROM kiv_customer c WHERE 0");
    MarkFlagsBoolean(call.Rows());
    call.Out("@total_rowcount", Variant(int32_t{0}));
    call.Return(-1);
    return;
  }
  const bool companies = NzString(call.Criterion("@customer_type")) == "C";
  const std::vector<std::string> keys =
      companies ? std::vector<std::string>{"c.company_name"} : std::vector<std::string>{"c.last_name", "c.first_name"};
  std::string order;
  for (const auto& k : keys) order += k + ", ";
  order += "c.customer_no";

  int32_t last_no = call.Long("@search_customer_no");
  // Counting is most of a page's work; the pages after the first reuse the first page's total.
  std::string key = where.sql;
  for (const auto& arg : where.args) key += "\x1f" + NzString(arg);
  auto& totals = db.SearchTotals();
  auto known = totals.find(key);
  int32_t total;
  if (last_no != 0 && known != totals.end()) {
    total = known->second;
  } else {
    total = NzLong(db.QueryValue("SELECT COUNT(*) FROM kiv_customer c WHERE " + where.sql, where.args));
    if (totals.size() > 64) totals.clear();
    totals[key] = total;
  }
  Where page = where;
  if (last_no != 0) After(db, last_no, keys, page);
  call.ReturnRows("WITH page AS MATERIALIZED (SELECT c.customer_no FROM kiv_customer c WHERE " + page.sql +
                      " ORDER BY " + order + " LIMIT " + std::to_string(kPageSize) + ") SELECT " + kSearchRowColumns +
                      " FROM page JOIN kiv_customer c ON c.customer_no = page.customer_no ORDER BY " + order,
                  page.args);
  MarkFlagsBoolean(call.Rows());
  call.Out("@total_rowcount", Variant(total));
}

void Relationships(ProcedureCall& call) {
  call.ReturnRows(
      std::string("SELECT ") + kSearchRowColumns +
          ", rel.rel_type_id FROM ("
          "SELECT child_customer_no AS related_no, rel_type_id FROM kiv_customer_rel WHERE parent_customer_no = ?1 "
          "UNION SELECT parent_customer_no, rel_type_id FROM kiv_customer_rel WHERE child_customer_no = ?1 "
          "UNION SELECT customer_no, 'EMPLOYEE' FROM kiv_customer_employer WHERE employer_customer_no = ?1 "
          "AND fiscal_year = ?2 AND IFNULL(is_active, 1) <> 0 "
          "UNION SELECT employer_customer_no, 'EMPLOYER' FROM kiv_customer_employer WHERE customer_no = ?1 "
          "AND fiscal_year = ?2 AND IFNULL(is_active, 1) <> 0) rel "
          "JOIN kiv_customer c ON c.customer_no = rel.related_no "
          "ORDER BY rel.rel_type_id, c.last_name, c.first_name, c.customer_no",
      {Variant(call.Long("@customer_no")), Variant(call.Long("@fiscal_year"))});
  MarkFlagsBoolean(call.Rows());
}

}  // namespace

void AddSearchProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_Search",
                {InText("@customer_type", 1),
                 InText("@first_name", 40),
                 InText("@last_name", 50),
                 InText("@zip_code", 15),
                 InText("@employeer", 80),
                 InText("@gender", 1),
                 InText("@customer_group_id", 20),
                 InText("@company_name", 80),
                 InFloat("@access_no"),
                 InInt("@salesorder_no"),
                 InInt("@customer_no"),
                 InText("@booking_id", 20),
                 InSmall("@search_club"),
                 InText("@club_id", 20),
                 InText("@member_id", 20),
                 InSmall("@club_is_active"),
                 InInt("@search_customer_no"),
                 OutInt("@total_rowcount")},
                false,
                Search});
  registry.Add({"KIV_SP_GetCustomerRelationships", {InInt("@customer_no"), InInt("@fiscal_year")}, false,
                Relationships});
}

}  // namespace kiv::refhost

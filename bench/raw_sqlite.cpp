// The raw baseline's statements. Texts that the reference host builds are built here the
// same way (from the host's own column lists), so both sides run the same SQL; only the
// way it is reached differs.
#include "bench/raw_sqlite.h"

#include <sqlite3.h>

#include <stdexcept>

#include "refhost/procedure_sql.h"

namespace kiv::bench {

namespace {

// The columns the update procedure writes, in its order.
constexpr const char* kWrittenColumns[] = {
    "first_name", "last_name",   "full_name",           "company_name",          "customer_type",
    "customer_kind", "Zip",      "account_id",          "status_id",             "comment_note",
    "DOB",        "has_image",   "commission_percentage", "discount_percentage", "Locked",
    "preloaded",  "Customer_Level_ID", "Gender",        "date_of_release",       "household_no",
    "household_primary", "do_not_mail", "EMail",        "wedding_anniversary",   "Occupation",
    "work_phone", "cell_phone"};
constexpr size_t kCommentColumn = 9;

const std::string& UpdateCustomerSql() {
  static const std::string sql = [] {
    std::string sets;
    for (const char* column : kWrittenColumns) sets += std::string(column) + " = ?, ";
    return "UPDATE kiv_customer SET " + sets + "modified_by = ?, modified_date = ? WHERE customer_no = ?";
  }();
  return sql;
}

const std::string& WrittenColumnsQuery() {
  static const std::string sql = [] {
    std::string columns;
    for (const char* column : kWrittenColumns) columns += (columns.empty() ? "" : ", ") + std::string(column);
    return "SELECT " + columns + " FROM kiv_customer WHERE customer_no = ?";
  }();
  return sql;
}

void Check(sqlite3* db, int rc, const std::string& what) {
  if (rc == SQLITE_OK || rc == SQLITE_ROW || rc == SQLITE_DONE) return;
  throw std::runtime_error(what + ": " + sqlite3_errmsg(db));
}

//! Runs a statement that returns no rows to its end.
void Finish(RawSqlite& raw, sqlite3_stmt* stmt) {
  int rc;
  while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
  }
  Check(raw.Handle(), rc, sqlite3_sql(stmt));
}

std::string TextColumn(sqlite3_stmt* stmt, int column) {
  const auto* text = sqlite3_column_text(stmt, column);
  return text == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(text));
}

std::string AsciiLower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

//! A customer's has-flags and columns, as the customer procedure reads them.
const std::string& GetCustomerSql() {
  static const std::string sql = std::string("SELECT ") + refhost::kCustomerColumns + ", " +
                                 refhost::kHasFlagColumns + " FROM kiv_customer c WHERE c.customer_no = ?";
  return sql;
}

constexpr const char* kClubSql =
    "SELECT m.club_id, k.Description, m.customer_no, m.member_id, m.is_active, m.join_date FROM kiv_club_member m "
    "JOIN kiv_club k ON k.club_id = m.club_id WHERE m.customer_no = ?1 "
    "AND (?2 IS NULL OR (m.is_active <> 0) = (?2 <> 0)) ORDER BY m.join_date DESC, m.club_id LIMIT ?3";
constexpr const char* kAddressSql =
    "SELECT address_no, address_type, Name, Address_1, Address_2, City, State, Zip, Country_ID, Phone, "
    "Fax FROM kiv_address WHERE address_no = ?";

}  // namespace

RawSqlite::~RawSqlite() {
  for (auto& [text, stmt] : statements_) sqlite3_finalize(stmt);
}

sqlite3_stmt* RawSqlite::Statement(const std::string& sql) {
  auto found = statements_.find(sql);
  if (found != statements_.end()) {
    sqlite3_reset(found->second);
    sqlite3_clear_bindings(found->second);
    return found->second;
  }
  sqlite3_stmt* stmt = nullptr;
  Check(db_, sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &stmt,
                                nullptr),
        sql);
  statements_.emplace(sql, stmt);
  return stmt;
}

int RawSqlite::Drain(sqlite3_stmt* stmt) {
  int rows = 0;
  int rc;
  size_t bytes = 0;
  const int columns = sqlite3_column_count(stmt);
  while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
    ++rows;
    for (int c = 0; c < columns; ++c) {
      switch (sqlite3_column_type(stmt, c)) {
        case SQLITE_INTEGER:
          bytes += static_cast<size_t>(sqlite3_column_int64(stmt, c) & 1);
          break;
        case SQLITE_FLOAT:
          bytes += sqlite3_column_double(stmt, c) > 0 ? 1 : 0;
          break;
        case SQLITE_TEXT:
        case SQLITE_BLOB:
          bytes += static_cast<size_t>(sqlite3_column_bytes(stmt, c));
          break;
        default:
          break;
      }
    }
  }
  Check(db_, rc, sqlite3_sql(stmt));
  // Keeps the reads from being optimised away.
  asm volatile("" : : "r"(bytes) : "memory");
  return rows;
}

void RawSqlite::Run(const std::string& sql) { Finish(*this, Statement(sql)); }

RawCustomer RawOpenCustomer(RawSqlite& raw, int32_t customer_no) {
  RawCustomer customer;
  int32_t household_no = 0;
  raw.Run("BEGIN");
  {
    sqlite3_stmt* stmt = raw.Statement(GetCustomerSql());
    sqlite3_bind_int(stmt, 1, customer_no);
    if (sqlite3_step(stmt) == SQLITE_ROW) {
      customer.last_name = TextColumn(stmt, 3);
      household_no = sqlite3_column_int(stmt, 19);
      for (int c = 0; c < sqlite3_column_count(stmt); ++c) (void)sqlite3_column_text(stmt, c);
    }
    sqlite3_reset(stmt);
  }
  raw.Run("COMMIT");
  if (customer.last_name.empty() && household_no == 0) return customer;
  if (household_no == 0) household_no = customer_no;

  raw.Run("BEGIN");
  {
    sqlite3_stmt* stmt = raw.Statement(kClubSql);
    sqlite3_bind_int(stmt, 1, customer_no);
    sqlite3_bind_int(stmt, 2, 1);
    sqlite3_bind_int(stmt, 3, 1);
    raw.Drain(stmt);
  }
  raw.Run("COMMIT");

  int address_numbers[16];
  int count = 0;
  {
    sqlite3_stmt* stmt = raw.Statement("SELECT * FROM kiv_customer_address WHERE customer_no = ?");
    sqlite3_bind_int(stmt, 1, household_no);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
      for (int c = 0; c < sqlite3_column_count(stmt); ++c) (void)sqlite3_column_text(stmt, c);
      if (count < 16) address_numbers[count++] = sqlite3_column_int(stmt, 1);
    }
    sqlite3_reset(stmt);
  }
  for (int i = 0; i < count; ++i) {
    raw.Run("BEGIN");
    sqlite3_stmt* stmt = raw.Statement(kAddressSql);
    sqlite3_bind_int(stmt, 1, address_numbers[i]);
    customer.addresses += raw.Drain(stmt);
    raw.Run("COMMIT");
  }
  return customer;
}

RawPage RawSearchLastName(RawSqlite& raw, const std::string& prefix, int32_t after_customer_no, bool count) {
  RawPage page;
  const std::string lower = AsciiLower(prefix);
  const std::string upper = refhost::PrefixEnd(lower);
  const std::string where = "c.customer_type = ? AND c.last_name >= ? AND c.last_name < ?";
  const std::string order = "c.last_name, c.first_name, c.customer_no";
  auto bind_where = [&](sqlite3_stmt* stmt) {
    sqlite3_bind_text(stmt, 1, "P", 1, SQLITE_STATIC);
    sqlite3_bind_text(stmt, 2, lower.data(), static_cast<int>(lower.size()), SQLITE_STATIC);
    sqlite3_bind_text(stmt, 3, upper.data(), static_cast<int>(upper.size()), SQLITE_STATIC);
  };
  raw.Run("BEGIN");
  if (count) {
    sqlite3_stmt* stmt = raw.Statement("SELECT COUNT(*) FROM kiv_customer c WHERE " + where);
    bind_where(stmt);
    if (sqlite3_step(stmt) == SQLITE_ROW) page.total = sqlite3_column_int(stmt, 0);
    sqlite3_reset(stmt);
  }
  // The continuation: rows after the last one shown in (last name, first name, number) order.
  std::string condition;
  std::vector<sqlite3_value*> after_values;
  if (after_customer_no != 0) {
    sqlite3_stmt* key = raw.Statement("SELECT c.last_name, c.first_name, c.customer_no FROM kiv_customer c "
                                      "WHERE c.customer_no = ?");
    sqlite3_bind_int(key, 1, after_customer_no);
    if (sqlite3_step(key) == SQLITE_ROW) {
      condition = "c.customer_no > ?";
      sqlite3_value* last = sqlite3_value_dup(sqlite3_column_value(key, 0));
      sqlite3_value* first = sqlite3_value_dup(sqlite3_column_value(key, 1));
      std::vector<sqlite3_value*> args{nullptr};  // nullptr: the customer number
      const char* names[] = {"c.last_name", "c.first_name"};
      sqlite3_value* values[] = {last, first};
      for (int i = 1; i >= 0; --i) {
        std::vector<sqlite3_value*> next;
        std::string greater;
        if (sqlite3_value_type(values[i]) == SQLITE_NULL) {
          greater = std::string(names[i]) + " IS NOT NULL";
        } else {
          greater = std::string(names[i]) + " > ?";
          next.push_back(values[i]);
        }
        next.push_back(values[i]);
        next.insert(next.end(), args.begin(), args.end());
        condition = "(" + greater + " OR (" + names[i] + " IS ? AND " + condition + "))";
        args = std::move(next);
      }
      after_values = std::move(args);
      after_values.push_back(last);   // kept only to be freed below
      after_values.push_back(first);
    }
    sqlite3_reset(key);
  }
  const std::string page_where = condition.empty() ? where : where + " AND " + condition;
  {
    sqlite3_stmt* stmt = raw.Statement("WITH page AS MATERIALIZED (SELECT c.customer_no FROM kiv_customer c WHERE " +
                                       page_where + " ORDER BY " + order + " LIMIT 100) SELECT " +
                                       refhost::kSearchRowColumns +
                                       " FROM page JOIN kiv_customer c ON c.customer_no = page.customer_no ORDER BY " +
                                       order);
    bind_where(stmt);
    int index = 4;
    for (size_t i = 0; i + 2 < after_values.size(); ++i, ++index) {
      if (after_values[i] == nullptr) sqlite3_bind_int(stmt, index, after_customer_no);
      else sqlite3_bind_value(stmt, index, after_values[i]);
    }
    int rc;
    const int columns = sqlite3_column_count(stmt);
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
      for (int c = 1; c < columns; ++c) (void)sqlite3_column_text(stmt, c);
      page.customers.push_back(sqlite3_column_int(stmt, 0));
    }
    Check(raw.Handle(), rc, "search page");
    sqlite3_reset(stmt);
  }
  if (after_values.size() >= 2) {
    sqlite3_value_free(after_values[after_values.size() - 1]);
    sqlite3_value_free(after_values[after_values.size() - 2]);
  }
  raw.Run("COMMIT");
  return page;
}

RawSaveRow::RawSaveRow(RawSqlite& raw, int32_t number) : customer_no(number) {
  sqlite3_stmt* stmt = raw.Statement(WrittenColumnsQuery());
  sqlite3_bind_int(stmt, 1, number);
  if (sqlite3_step(stmt) != SQLITE_ROW) throw std::runtime_error("customer " + std::to_string(number) + " is missing");
  for (int c = 0; c < sqlite3_column_count(stmt); ++c) customer.push_back(sqlite3_value_dup(sqlite3_column_value(stmt, c)));
  sqlite3_reset(stmt);
  const int32_t household_no = sqlite3_value_int(customer[19]) != 0 ? sqlite3_value_int(customer[19]) : number;
  sqlite3_stmt* list = raw.Statement("SELECT address_no FROM kiv_customer_address WHERE customer_no = ?");
  sqlite3_bind_int(list, 1, household_no);
  std::vector<int32_t> numbers;
  while (sqlite3_step(list) == SQLITE_ROW) numbers.push_back(sqlite3_column_int(list, 0));
  sqlite3_reset(list);
  for (int32_t address_no : numbers) {
    sqlite3_stmt* one = raw.Statement(kAddressSql);
    sqlite3_bind_int(one, 1, address_no);
    if (sqlite3_step(one) != SQLITE_ROW) continue;
    std::vector<sqlite3_value*> values;
    for (int c = 0; c < sqlite3_column_count(one); ++c) values.push_back(sqlite3_value_dup(sqlite3_column_value(one, c)));
    sqlite3_reset(one);
    addresses.push_back(std::move(values));
  }
}

RawSaveRow::~RawSaveRow() {
  for (auto* v : customer) sqlite3_value_free(v);
  for (auto& a : addresses)
    for (auto* v : a) sqlite3_value_free(v);
}

void RawSaveCustomer(RawSqlite& raw, const RawSaveRow& row, const std::string& comment, const std::string& user,
                     const std::string& now) {
  // The customer and its addresses are one unit of work: one transaction, as the host runs it.
  raw.Run("BEGIN IMMEDIATE");
  {
    sqlite3_stmt* exists = raw.Statement("SELECT 1 FROM kiv_customer WHERE customer_no = ?");
    sqlite3_bind_int(exists, 1, row.customer_no);
    raw.Drain(exists);
    // The stored row, read to keep another terminal's change.
    sqlite3_stmt* stored = raw.Statement(WrittenColumnsQuery());
    sqlite3_bind_int(stored, 1, row.customer_no);
    raw.Drain(stored);
    sqlite3_stmt* stmt = raw.Statement(UpdateCustomerSql());
    int index = 1;
    for (size_t c = 0; c < row.customer.size(); ++c, ++index) {
      if (c == kCommentColumn)
        sqlite3_bind_text(stmt, index, comment.data(), static_cast<int>(comment.size()), SQLITE_STATIC);
      else
        sqlite3_bind_value(stmt, index, row.customer[c]);
    }
    sqlite3_bind_text(stmt, index++, user.data(), static_cast<int>(user.size()), SQLITE_STATIC);
    sqlite3_bind_text(stmt, index++, now.data(), static_cast<int>(now.size()), SQLITE_STATIC);
    sqlite3_bind_int(stmt, index, row.customer_no);
    Finish(raw, stmt);
  }
  for (const auto& address : row.addresses) {
    const int32_t address_no = sqlite3_value_int(address[0]);
    const bool primary = std::string(reinterpret_cast<const char*>(sqlite3_value_text(address[1]))) == "PRIMARY";
    sqlite3_stmt* stored = raw.Statement(
        "SELECT address_type, Name, Address_1, Address_2, City, State, Zip, Country_ID, Phone, Fax FROM kiv_address "
        "WHERE address_no = ?");
    sqlite3_bind_int(stored, 1, address_no);
    raw.Drain(stored);
    sqlite3_stmt* exists = raw.Statement("SELECT 1 FROM kiv_customer WHERE customer_no = ?");
    sqlite3_bind_int(exists, 1, row.customer_no);
    raw.Drain(exists);
    sqlite3_stmt* update = raw.Statement(
        "UPDATE kiv_address SET address_type = ?, Name = ?, Address_1 = ?, Address_2 = ?, City = ?, State = ?, "
        "Zip = ?, Country_ID = ?, Phone = ?, Fax = ? WHERE address_no = ?");
    for (int c = 1; c <= 10; ++c) sqlite3_bind_value(update, c, address[static_cast<size_t>(c)]);
    sqlite3_bind_int(update, 11, address_no);
    Finish(raw, update);
    sqlite3_stmt* link =
        raw.Statement("UPDATE kiv_customer_address SET address_type = ?, primary_address = ? WHERE address_no = ?");
    sqlite3_bind_value(link, 1, address[1]);
    sqlite3_bind_int(link, 2, primary ? 1 : 0);
    sqlite3_bind_int(link, 3, address_no);
    Finish(raw, link);
    sqlite3_stmt* linked = raw.Statement("SELECT 1 FROM kiv_customer_address WHERE address_no = ?");
    sqlite3_bind_int(linked, 1, address_no);
    raw.Drain(linked);
    if (primary) {
      sqlite3_stmt* others = raw.Statement(
          "UPDATE kiv_customer_address SET primary_address = 0 WHERE address_no <> ?1 AND customer_no IN "
          "(SELECT customer_no FROM kiv_customer_address WHERE address_no = ?1)");
      sqlite3_bind_int(others, 1, address_no);
      Finish(raw, others);
    }
  }
  raw.Run("COMMIT");
}

std::string RawZipLookUp(RawSqlite& raw, const std::string& zip) {
  sqlite3_stmt* stmt = raw.Statement("SELECT * FROM kiv_zip_code WHERE zip = ?");
  sqlite3_bind_text(stmt, 1, zip.data(), static_cast<int>(zip.size()), SQLITE_STATIC);
  std::string city;
  if (sqlite3_step(stmt) == SQLITE_ROW) {
    for (int c = 0; c < sqlite3_column_count(stmt); ++c) (void)sqlite3_column_text(stmt, c);
    city = TextColumn(stmt, 1);
  }
  sqlite3_reset(stmt);
  return city;
}

}  // namespace kiv::bench

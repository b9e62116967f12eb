// Deliberate duplicates in the demo database: some persons entered a second time, once with
// another zip, once with the first name misspelled, each copy with history of its own (an
// order with its invoice, a reservation, a pass with its will call, a card, a group, and for
// some a house account), so that a clerk has something real to merge. Accounts also learn
// the customer they were opened for.
#include "refhost/demo_data_duplicates.h"

#include <sqlite3.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "refhost/demo_data.h"

namespace kiv::refhost {

namespace {

//! A small generator of its own, so the rest of the demo is the same with or without it.
class SplitMix {
 public:
  explicit SplitMix(uint64_t seed) : state_(seed) {}
  uint64_t Next() {
    uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint64_t>(n)); }

 private:
  uint64_t state_;
};

class Statement {
 public:
  Statement(sqlite3* db, const char* sql) : db_(db) {
    if (sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr) != SQLITE_OK)
      throw DemoDataError(std::string("demo duplicates: ") + sqlite3_errmsg(db));
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& Int(int64_t v) {
    sqlite3_bind_int64(stmt_, ++slot_, v);
    return *this;
  }
  Statement& Null() {
    sqlite3_bind_null(stmt_, ++slot_);
    return *this;
  }
  Statement& Text(const std::string& v) {
    sqlite3_bind_text(stmt_, ++slot_, v.c_str(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
    return *this;
  }
  //! Runs to the end; the first column of the first row (0 when none).
  int64_t Run() {
    int64_t first = 0;
    int rc = 0;
    while ((rc = sqlite3_step(stmt_)) == SQLITE_ROW)
      if (first == 0) first = sqlite3_column_int64(stmt_, 0);
    if (rc != SQLITE_DONE) throw DemoDataError(std::string("demo duplicates: ") + sqlite3_errmsg(db_));
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
    slot_ = 0;
    return first;
  }
  std::string RowText(int column) {
    std::string text;
    if (sqlite3_step(stmt_) == SQLITE_ROW) {
      const unsigned char* v = sqlite3_column_text(stmt_, column);
      if (v != nullptr) text = reinterpret_cast<const char*>(v);
    }
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
    slot_ = 0;
    return text;
  }

 private:
  sqlite3* db_;
  sqlite3_stmt* stmt_ = nullptr;
  int slot_ = 0;
};

int64_t Scalar(sqlite3* db, const char* sql) { return Statement(db, sql).Run(); }

//! The name as a hurried clerk types it: two letters swapped, or one left out.
std::string Misspelled(const std::string& name, SplitMix& rng) {
  if (name.size() < 3) return name + name.back();
  size_t at = 1 + static_cast<size_t>(rng.Below(static_cast<int>(name.size()) - 2));
  std::string out = name;
  if (name[at] != name[at + 1] && rng.Below(2) == 0) {
    std::swap(out[at], out[at + 1]);
    return out;
  }
  return out.erase(at, 1);
}

}  // namespace

void AddDemoDuplicates(sqlite3* db, uint64_t seed) {
  SplitMix rng(seed ^ 0x0D0B1E5C0FFEEULL);
  // Accounts were opened for the customer who holds them (the household primary first).
  Statement(db,
            "UPDATE kiv_account SET customer_no = (SELECT MIN(c.customer_no) FROM kiv_customer c "
            "WHERE c.account_id = kiv_account.account_id) WHERE customer_no IS NULL")
      .Run();

  const int64_t customers = Scalar(db, "SELECT COUNT(*) FROM kiv_customer");
  if (customers < 8) return;
  // One duplicate in four hundred customers, at least two (one of each kind), at most 2,500.
  int64_t wanted = customers / 400;
  if (wanted < 2) wanted = 2;
  if (wanted > 2500) wanted = 2500;
  const int64_t step = customers / wanted;

  Statement original(db,
                     "SELECT customer_no FROM kiv_customer WHERE customer_no >= ? AND customer_type = 'P' AND "
                     "first_name IS NOT NULL AND length(first_name) > 2 ORDER BY customer_no LIMIT 1");
  Statement first_name(db, "SELECT first_name FROM kiv_customer WHERE customer_no = ?");
  Statement other_zip(db, "SELECT zip FROM kiv_zip_code WHERE zip <> (SELECT Zip FROM kiv_customer WHERE customer_no = ?) "
                          "ORDER BY zip LIMIT 1 OFFSET ?");
  Statement copy(db,
                 "INSERT INTO kiv_customer (customer_no, full_name, first_name, last_name, customer_type, customer_kind, "
                 "Gender, Zip, status_id, DOB, household_primary, household_no, Customer_Level_ID, EMail, cell_phone, "
                 "account_id, created_by, create_date) SELECT ?1, trim(?2 || ' ' || last_name), ?2, last_name, 'P', "
                 "customer_kind, Gender, ?3, 'ACTIVE', DOB, 1, ?1, Customer_Level_ID, EMail, cell_phone, ?4, 'demo', "
                 "'2025-11-02 00:00:00' FROM kiv_customer WHERE customer_no = ?5");
  Statement address(db,
                    "INSERT INTO kiv_address (address_no, address_type, Name, Address_1, Address_2, City, State, Zip, "
                    "Country_ID, Phone, Fax) SELECT ?1, a.address_type, ?2, a.Address_1, a.Address_2, a.City, a.State, "
                    "?3, a.Country_ID, a.Phone, a.Fax FROM kiv_address a JOIN kiv_customer_address ca ON ca.address_no = "
                    "a.address_no JOIN kiv_customer c ON ca.customer_no = IFNULL(c.household_no, c.customer_no) "
                    "WHERE c.customer_no = ?4 ORDER BY ca.primary_address DESC LIMIT 1");
  Statement link(db,
                 "INSERT INTO kiv_customer_address (customer_no, address_no, address_type, primary_address) "
                 "SELECT ?1, address_no, address_type, 1 FROM kiv_address WHERE address_no = ?2");
  Statement order(db,
                  "INSERT INTO kiv_sales_order (salesorder_no, customer_no, for_customer_no, order_date, status_id, "
                  "total_amount, is_invoiced) VALUES (?1, ?2, ?2, '2025-12-20 00:00:00', 'CLOSED', 258.0, 1)");
  Statement line(db,
                 "INSERT INTO kiv_sales_order_line (salesorder_no, line_no, item_id, description, quantity, price, "
                 "amount) VALUES (?, 1, 'LT1DAY', 'LIFT TICKET 1 DAY', 2, 129.0, 258.0)");
  Statement invoice(db,
                    "INSERT INTO kiv_invoice (invoice_no, salesorder_no, customer_no, invoice_date, amount, balance) "
                    "VALUES (?, ?, ?, '2025-12-20 00:00:00', 258.0, 0)");
  Statement reservation(db,
                        "INSERT INTO kiv_reservation (reservation_no, customer_no, booking_id, salesorder_no, "
                        "arrival_date, departure_date, status_id, description) VALUES (?1, ?2, 'B' || (100000 + ?1), "
                        "NULL, '2026-02-14 00:00:00', '2026-02-17 00:00:00', 'BOOKED', 'LODGE ROOM')");
  Statement pass(db,
                 "INSERT INTO kiv_access_product (access_no, customer_no, salesorder_no, description, valid_from, "
                 "valid_to, status_id) VALUES (?1, ?2, ?3, 'LIFT TICKET 3 DAY', '2025-11-15 00:00:00', "
                 "'2026-04-15 00:00:00', 'ACTIVE')");
  Statement will_call(db,
                      "INSERT INTO kiv_will_call (will_call_no, customer_no, access_no, salesorder_no, long_description, "
                      "valid_date, status_id) VALUES (?, ?, ?, ?, 'LIFT TICKET PICKUP', '2026-01-10 00:00:00', 'WAITING')");
  Statement card(db,
                 "INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, exp_date, pay_method_id, "
                 "is_active, created_by, create_date) VALUES (?1, 1, 'XXXXXXXXXXXX' || ?2, ?2, '09/2028', 'VISA', 1, "
                 "'demo', '2025-11-02 00:00:00')");
  Statement group(db, "INSERT OR IGNORE INTO kiv_customer_group_member (customer_group_id, customer_no) VALUES (?, ?)");
  Statement account(db,
                    "INSERT INTO kiv_account (account_id, Description, account_limit, account_balance, is_active, "
                    "customer_no) VALUES (?, ?, ?, ?, 1, ?)");

  int64_t next_customer = Scalar(db, "SELECT IFNULL(MAX(customer_no), 0) + 1 FROM kiv_customer");
  int64_t next_address = Scalar(db, "SELECT IFNULL(MAX(address_no), 0) + 1 FROM kiv_address");
  int64_t next_order = Scalar(db, "SELECT IFNULL(MAX(salesorder_no), 0) + 1 FROM kiv_sales_order");
  int64_t next_invoice = Scalar(db, "SELECT IFNULL(MAX(invoice_no), 0) + 1 FROM kiv_invoice");
  int64_t next_reservation = Scalar(db, "SELECT IFNULL(MAX(reservation_no), 0) + 1 FROM kiv_reservation");
  int64_t next_access = Scalar(db, "SELECT IFNULL(MAX(access_no), 0) + 1 FROM kiv_access_product");
  int64_t next_will_call = Scalar(db, "SELECT IFNULL(MAX(will_call_no), 0) + 1 FROM kiv_will_call");
  const int64_t zips = Scalar(db, "SELECT COUNT(*) FROM kiv_zip_code");
  static const char* const kGroups[] = {"SKISCHOOL", "STAFF", "VIP", "SEASONPASS", "TRAVEL"};

  for (int64_t k = 0; k < wanted; ++k) {
    int64_t from = original.Int(1 + k * step + rng.Below(static_cast<int>(step))).Run();
    if (from == 0) continue;
    const int64_t no = next_customer++;
    std::string first = first_name.Int(from).RowText(0);
    std::string zip;
    if (k % 2 == 0 && zips > 1) {
      zip = other_zip.Int(from).Int(rng.Below(static_cast<int>(zips - 1))).RowText(0);
    } else {
      first = Misspelled(first, rng);
      zip = Statement(db, "SELECT Zip FROM kiv_customer WHERE customer_no = ?").Int(from).RowText(0);
    }
    std::string account_id = k % 3 == 0 ? "D" + std::to_string(no) : "";
    copy.Int(no).Text(first).Text(zip);
    if (account_id.empty()) copy.Null(); else copy.Text(account_id);
    copy.Int(from).Run();
    Statement(db, "UPDATE kiv_customer SET has_so = 1, has_reservation = 1, has_willcall = 1 WHERE customer_no = ?")
        .Int(no)
        .Run();
    const int64_t address_no = next_address++;
    address.Int(address_no).Text(first).Text(zip).Int(from).Run();
    link.Int(no).Int(address_no).Run();

    const int64_t order_no = next_order++;
    order.Int(order_no).Int(no).Run();
    line.Int(order_no).Run();
    invoice.Int(next_invoice++).Int(order_no).Int(no).Run();
    reservation.Int(next_reservation++).Int(no).Run();
    const int64_t access_no = next_access++;
    pass.Int(access_no).Int(no).Int(order_no).Run();
    will_call.Int(next_will_call++).Int(no).Int(access_no).Int(order_no).Run();
    char last4[8];
    std::snprintf(last4, sizeof last4, "%04d", rng.Below(10000));
    card.Int(no).Text(last4).Run();
    group.Text(kGroups[rng.Below(5)]).Int(no).Run();
    if (!account_id.empty())
      account.Text(account_id)
          .Text("HOUSE ACCOUNT " + std::to_string(no))
          .Int(1000 * (1 + rng.Below(10)))
          .Int(rng.Below(900))
          .Int(no)
          .Run();
  }
  Statement(db, "UPDATE kiv_sequence SET last_no = (SELECT MAX(customer_no) FROM kiv_customer) "
                "WHERE sequence_name = 'seq_customer_no'")
      .Run();
  Statement(db, "UPDATE kiv_sequence SET last_no = (SELECT MAX(address_no) FROM kiv_address) "
                "WHERE sequence_name = 'seq_address_no'")
      .Run();
  Statement(db, "UPDATE kiv_sequence SET last_no = (SELECT MAX(salesorder_no) FROM kiv_sales_order) "
                "WHERE sequence_name = 'seq_salesorder_no'")
      .Run();
}

}  // namespace kiv::refhost

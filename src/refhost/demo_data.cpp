// Generates the demo database: list tables first, then households and companies one at a
// time (each customer's addresses, links and side rows written as it is made), then the
// sequences. One transaction, prepared inserts, indexes rebuilt after the load.
#include "refhost/demo_data.h"
#include "refhost/demo_data_duplicates.h"
#include "refhost/demo_data_forecast.h"
#include "refhost/demo_data_photos.h"
#include "refhost/demo_data_money.h"

#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/demo_data_profile.h"
#include "refhost/demo_data_reservations.h"
#include "refhost/password_hash.h"

namespace kiv::refhost {
namespace {

constexpr int kFiscalYear = 2026;

// splitmix64: the same seed gives the same database on every platform, which the standard
// library's distributions do not promise.
class Rng {
 public:
  // The seed is mixed first: neighbouring seeds would otherwise give the same sequence
  // shifted by a few draws.
  explicit Rng(uint64_t seed) : state_(Mix(seed ^ 0x632BE59BD9B4E019ULL)) {}
  uint64_t Next() { return Mix(state_ += 0x9E3779B97F4A7C15ULL); }
  //! 0 .. n-1.
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint64_t>(n)); }
  int Between(int lo, int hi) { return lo + Below(hi - lo + 1); }
  bool Chance(int percent) { return Below(100) < percent; }
  template <class T, size_t N>
  const T& Pick(const std::array<T, N>& a) { return a[static_cast<size_t>(Below(static_cast<int>(N)))]; }
  //! Early entries far more often than late ones, so that last names repeat.
  template <class T, size_t N>
  const T& PickSkewed(const std::array<T, N>& a) {
    int n = static_cast<int>(N);
    int i = Below(n);
    int j = Below(n);
    return a[static_cast<size_t>(i < j ? i : j)];
  }

 private:
  static uint64_t Mix(uint64_t z) {
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  uint64_t state_;
};

using sv = std::string_view;

constexpr std::array<sv, 60> kMaleNames = {
    "JAMES", "JOHN", "ROBERT", "MICHAEL", "WILLIAM", "DAVID", "RICHARD", "JOSEPH", "THOMAS", "CHARLES",
    "CHRISTOPHER", "DANIEL", "MATTHEW", "ANTHONY", "MARK", "DONALD", "STEVEN", "PAUL", "ANDREW", "JOSHUA",
    "KENNETH", "KEVIN", "BRIAN", "GEORGE", "TIMOTHY", "RONALD", "EDWARD", "JASON", "JEFFREY", "RYAN",
    "JACOB", "GARY", "NICHOLAS", "ERIC", "JONATHAN", "STEPHEN", "LARRY", "JUSTIN", "SCOTT", "BRANDON",
    "BENJAMIN", "SAMUEL", "GREGORY", "FRANK", "ALEXANDER", "RAYMOND", "PATRICK", "JACK", "DENNIS", "JERRY",
    "TYLER", "AARON", "JOSE", "HENRY", "ADAM", "DOUGLAS", "NATHAN", "PETER", "ZACHARY", "KYLE"};
constexpr std::array<sv, 60> kFemaleNames = {
    "MARY", "PATRICIA", "JENNIFER", "LINDA", "ELIZABETH", "BARBARA", "SUSAN", "JESSICA", "SARAH", "KAREN",
    "LISA", "NANCY", "BETTY", "MARGARET", "SANDRA", "ASHLEY", "KIMBERLY", "EMILY", "DONNA", "MICHELLE",
    "CAROL", "AMANDA", "DOROTHY", "MELISSA", "DEBORAH", "STEPHANIE", "REBECCA", "SHARON", "LAURA", "CYNTHIA",
    "KATHLEEN", "AMY", "ANGELA", "SHIRLEY", "ANNA", "BRENDA", "PAMELA", "EMMA", "NICOLE", "HELEN",
    "SAMANTHA", "KATHERINE", "CHRISTINE", "DEBRA", "RACHEL", "CAROLYN", "JANET", "CATHERINE", "MARIA", "HEATHER",
    "DIANE", "RUTH", "JULIE", "OLIVIA", "JOYCE", "VIRGINIA", "VICTORIA", "KELLY", "LAUREN", "CHRISTINA"};
constexpr std::array<sv, 100> kLastNames = {
    "SMITH", "JOHNSON", "WILLIAMS", "BROWN", "JONES", "GARCIA", "MILLER", "DAVIS", "RODRIGUEZ", "MARTINEZ",
    "HERNANDEZ", "LOPEZ", "GONZALEZ", "WILSON", "ANDERSON", "THOMAS", "TAYLOR", "MOORE", "JACKSON", "MARTIN",
    "LEE", "PEREZ", "THOMPSON", "WHITE", "HARRIS", "SANCHEZ", "CLARK", "RAMIREZ", "LEWIS", "ROBINSON",
    "WALKER", "YOUNG", "ALLEN", "KING", "WRIGHT", "SCOTT", "TORRES", "NGUYEN", "HILL", "FLORES",
    "GREEN", "ADAMS", "NELSON", "BAKER", "HALL", "RIVERA", "CAMPBELL", "MITCHELL", "CARTER", "ROBERTS",
    "GOMEZ", "PHILLIPS", "EVANS", "TURNER", "DIAZ", "PARKER", "CRUZ", "EDWARDS", "COLLINS", "REYES",
    "STEWART", "MORRIS", "MORALES", "MURPHY", "COOK", "ROGERS", "GUTIERREZ", "ORTIZ", "MORGAN", "COOPER",
    "PETERSON", "BAILEY", "REED", "KELLY", "HOWARD", "RAMOS", "KIM", "COX", "WARD", "RICHARDSON",
    "WATSON", "BROOKS", "CHAVEZ", "WOOD", "JAMES", "BENNETT", "GRAY", "MENDOZA", "RUIZ", "HUGHES",
    "PRICE", "ALVAREZ", "CASTILLO", "SANDERS", "PATEL", "MYERS", "LONG", "ROSS", "FOSTER", "O'BRIEN"};
constexpr std::array<sv, 30> kCompanyWords = {
    "ALPINE", "SUMMIT", "BLUEBIRD", "POWDER", "GRANITE", "ASPEN", "TIMBERLINE", "RIDGE", "GLACIER", "PINNACLE",
    "CEDAR", "EAGLE", "SILVER", "NORTHSTAR", "VALLEY", "CANYON", "FRONTIER", "MOUNTAIN", "HIGHLAND", "RIVERBEND",
    "COPPER", "STONE", "WILLOW", "LAKESIDE", "SNOWCREST", "BIRCH", "FALCON", "CASCADE", "JUNIPER", "MERIDIAN"};
constexpr std::array<sv, 16> kCompanyKinds = {
    "TOURS", "TRAVEL", "LODGING", "OUTFITTERS", "SKI SCHOOL", "CONSTRUCTION", "MEDICAL GROUP", "HOLDINGS",
    "PROPERTIES", "SPORTS", "CATERING", "ACADEMY", "CONSULTING", "RENTALS", "TRANSPORT", "ADVENTURES"};
constexpr std::array<sv, 14> kCompanySuffixes = {"INC", "LLC", "CO", "CORP", "LTD", "GROUP", "", "", "", "", "", "",
                                                 "", ""};
constexpr std::array<sv, 30> kStreets = {
    "MAIN ST", "OAK AVE", "PINE ST", "MAPLE DR", "CEDAR LN", "ELM ST", "LAKE RD", "HILL ST", "PARK AVE",
    "RIVER RD", "SPRUCE CT", "ASPEN WAY", "SUMMIT BLVD", "MEADOW LN", "FOREST DR", "WILLOW ST", "SUNSET BLVD",
    "BIRCH RD", "CANYON RD", "VALLEY VIEW DR", "RIDGE RD", "HIGHLAND AVE", "MILL ST", "CHURCH ST",
    "WASHINGTON ST", "LINCOLN AVE", "JEFFERSON ST", "FRONT ST", "BRIDGE ST", "COLLEGE AVE"};
constexpr std::array<sv, 20> kOccupations = {
    "TEACHER", "ENGINEER", "NURSE", "ACCOUNTANT", "ATTORNEY", "PHYSICIAN", "CONTRACTOR", "SALES", "RETIRED",
    "STUDENT", "CHEF", "ARCHITECT", "PILOT", "DESIGNER", "MANAGER", "DENTIST", "FARMER", "WRITER", "PROGRAMMER",
    "OWNER"};
constexpr std::array<sv, 6> kMailDomains = {"EXAMPLE.COM", "MAIL.EXAMPLE", "DEMO.NET", "INBOX.EXAMPLE",
                                            "POST.EXAMPLE", "WEBMAIL.EXAMPLE"};

struct City {
  sv name, state, county, area_code, country;
  int zip_base;   // first zip of the city; several follow
  int zip_count;
};
// The postal-code table is built from these, so every zip a customer uses is in it.
constexpr std::array<City, 40> kCities = {{
    {"DENVER", "CO", "DENVER", "303", "USA", 80202, 8},       {"BOULDER", "CO", "BOULDER", "303", "USA", 80301, 4},
    {"VAIL", "CO", "EAGLE", "970", "USA", 81657, 2},          {"ASPEN", "CO", "PITKIN", "970", "USA", 81611, 2},
    {"BRECKENRIDGE", "CO", "SUMMIT", "970", "USA", 80424, 2}, {"STEAMBOAT SPRINGS", "CO", "ROUTT", "970", "USA", 80487, 2},
    {"COLORADO SPRINGS", "CO", "EL PASO", "719", "USA", 80903, 6}, {"FORT COLLINS", "CO", "LARIMER", "970", "USA", 80521, 4},
    {"SALT LAKE CITY", "UT", "SALT LAKE", "801", "USA", 84101, 6}, {"PARK CITY", "UT", "SUMMIT", "435", "USA", 84060, 2},
    {"JACKSON", "WY", "TETON", "307", "USA", 83001, 2},       {"BOZEMAN", "MT", "GALLATIN", "406", "USA", 59715, 2},
    {"SUN VALLEY", "ID", "BLAINE", "208", "USA", 83353, 1},   {"TAHOE CITY", "CA", "PLACER", "530", "USA", 96145, 1},
    {"LOS ANGELES", "CA", "LOS ANGELES", "213", "USA", 90012, 8}, {"SAN FRANCISCO", "CA", "SAN FRANCISCO", "415", "USA", 94102, 6},
    {"SAN DIEGO", "CA", "SAN DIEGO", "619", "USA", 92101, 5}, {"SEATTLE", "WA", "KING", "206", "USA", 98101, 6},
    {"PORTLAND", "OR", "MULTNOMAH", "503", "USA", 97201, 5},  {"PHOENIX", "AZ", "MARICOPA", "602", "USA", 85003, 6},
    {"DALLAS", "TX", "DALLAS", "214", "USA", 75201, 6},       {"HOUSTON", "TX", "HARRIS", "713", "USA", 77002, 6},
    {"AUSTIN", "TX", "TRAVIS", "512", "USA", 78701, 5},       {"CHICAGO", "IL", "COOK", "312", "USA", 60601, 8},
    {"MINNEAPOLIS", "MN", "HENNEPIN", "612", "USA", 55401, 5}, {"DETROIT", "MI", "WAYNE", "313", "USA", 48201, 4},
    {"NEW YORK", "NY", "NEW YORK", "212", "USA", 10001, 9},   {"BOSTON", "MA", "SUFFOLK", "617", "USA", 2108, 6},
    {"BURLINGTON", "VT", "CHITTENDEN", "802", "USA", 5401, 2}, {"STOWE", "VT", "LAMOILLE", "802", "USA", 5672, 1},
    {"PHILADELPHIA", "PA", "PHILADELPHIA", "215", "USA", 19102, 5}, {"ATLANTA", "GA", "FULTON", "404", "USA", 30303, 5},
    {"MIAMI", "FL", "MIAMI-DADE", "305", "USA", 33130, 5},    {"ORLANDO", "FL", "ORANGE", "407", "USA", 32801, 4},
    {"KANSAS CITY", "MO", "JACKSON", "816", "USA", 64105, 3}, {"ALBUQUERQUE", "NM", "BERNALILLO", "505", "USA", 87102, 3},
    {"TAOS", "NM", "TAOS", "575", "USA", 87571, 1},           {"VANCOUVER", "BC", "GREATER VANCOUVER", "604", "CAN", 0, 3},
    {"CALGARY", "AB", "CALGARY", "403", "CAN", 0, 3},         {"TORONTO", "ON", "TORONTO", "416", "CAN", 0, 4},
}};

std::string ZipOf(const City& c, int k) {
  char buf[16];
  if (c.country == "CAN") {
    // Canadian postal codes: letter digit letter, blank, digit letter digit.
    const char d[] = {static_cast<char>('1' + k % 9), static_cast<char>('2' + k % 8), static_cast<char>('3' + k % 7)};
    return std::string{c.state[0], d[0], c.name[0], ' ', d[1], c.name[1], d[2]};
  }
  std::snprintf(buf, sizeof buf, "%05d", c.zip_base + k);
  return buf;
}

//! A date as the reference host stores it.
std::string IsoDate(int year, int month, int day) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02d 00:00:00", year, month, day);
  return buf;
}

//! A card's expiry as printed on it: "MM/YYYY".
std::string ExpiryDate(int month, int year) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%02d/%04d", month, year);
  return buf;
}

// Throws with SQLite's message; the caller's transaction is rolled back.
void Check(sqlite3* db, int rc, const char* what) {
  if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW) return;
  throw DemoDataError(std::string(what) + ": " + sqlite3_errmsg(db));
}

//! The first column of the query's first row as a whole number.
int64_t ScalarOf(sqlite3* db, const char* sql) {
  sqlite3_stmt* stmt = nullptr;
  Check(db, sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr), sql);
  int64_t value = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : 0;
  sqlite3_finalize(stmt);
  return value;
}

void Exec(sqlite3* db, const std::string& sql) {
  char* message = nullptr;
  int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &message);
  if (rc == SQLITE_OK) return;
  std::string text = message != nullptr ? message : sqlite3_errmsg(db);
  sqlite3_free(message);
  throw DemoDataError(sql.substr(0, 60) + ": " + text);
}

//! A prepared insert whose values are bound in column order, then run and reset.
class Insert {
 public:
  Insert(sqlite3* db, const std::string& sql) : db_(db) {
    Check(db, sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt_, nullptr), sql.c_str());
  }
  ~Insert() { sqlite3_finalize(stmt_); }
  Insert(const Insert&) = delete;
  Insert& operator=(const Insert&) = delete;

  Insert& Int(int64_t v) {
    sqlite3_bind_int64(stmt_, ++index_, v);
    return *this;
  }
  Insert& Real(double v) {
    sqlite3_bind_double(stmt_, ++index_, v);
    return *this;
  }
  Insert& Text(sv v) {
    sqlite3_bind_text(stmt_, ++index_, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
    return *this;
  }
  //! Empty text is stored as null, as a clerk leaving a field blank would.
  Insert& TextOrNull(sv v) { return v.empty() ? Null() : Text(v); }
  Insert& Null() {
    sqlite3_bind_null(stmt_, ++index_);
    return *this;
  }
  void Run() {
    Check(db_, sqlite3_step(stmt_), sqlite3_sql(stmt_));
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
    index_ = 0;
  }

 private:
  sqlite3* db_;
  sqlite3_stmt* stmt_ = nullptr;
  int index_ = 0;
};

struct Zip {
  std::string zip;
  const City* city;
};

// The generator proper: one instance per build, holding the prepared inserts.
class DemoBuilder {
 public:
  DemoBuilder(sqlite3* db, const DemoOptions& options);
  DemoSummary Build();

 private:
  struct Person {
    int32_t no = 0;
    std::string first, last, full, gender, dob;
  };

  void FillLists();
  void FillZipCodes();
  void FillUsers();
  void MakeCompany();
  void MakeHousehold(int size);
  //! Writes the household's (or company's) addresses under the primary's number; returns the primary zip.
  std::string MakeAddresses(int32_t owner_no, const std::string& name, bool company);
  void InsertCustomer(const Person& p, const std::string& type, const std::string& company, const std::string& zip,
                      int32_t household_no, bool household_primary, bool has_relationship);
  void SideRows(const Person& p, bool adult);
  //! Sales orders (some invoiced), reservations, access products with will calls and, for
  //! companies, group forecasts. Drawn from a generator of its own, so the customers
  //! themselves are the same with or without it.
  void Activity(int32_t customer_no, bool company);
  std::string Phone(const City& c);

  sqlite3* db_;
  DemoOptions options_;
  Rng rng_;
  DemoSummary summary_;
  std::vector<Zip> zips_;
  std::vector<int32_t> companies_;
  int32_t next_customer_ = 1;
  int32_t next_address_ = 1;
  int32_t next_card_seq_ = 1;
  Rng activity_rng_;
  int32_t next_order_ = 1, next_invoice_ = 1, next_reservation_ = 1, next_access_ = 1, next_will_call_ = 1,
          next_forecast_ = 1;
  // Decided just before a customer row is written, because the row carries the flags.
  bool pending_club_ = false;
  std::string pending_account_;

  Insert customer_, address_, customer_address_, rel_, employer_, setting_, alert_, profile_, group_member_,
      club_member_, card_, account_, order_, order_line_, invoice_, reservation_, access_, will_call_, forecast_;
};

DemoBuilder::DemoBuilder(sqlite3* db, const DemoOptions& options)
    : db_(db),
      options_(options),
      rng_(options.seed),
      activity_rng_(options.seed ^ 0xA5A5A5A5DEADBEEFULL),
      customer_(db,
                "INSERT INTO kiv_customer (customer_no, full_name, first_name, last_name, company_name, customer_type, "
                "customer_kind, Gender, Zip, account_id, status_id, comment_note, DOB, Locked, date_of_release, "
                "discount_percentage, commission_percentage, household_primary, household_no, Customer_Level_ID, "
                "do_not_mail, EMail, work_phone, cell_phone, Occupation, wedding_anniversary, has_club, "
                "has_relationship, created_by, create_date) "
                "VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"),
      address_(db,
               "INSERT INTO kiv_address (address_no, address_type, Name, Address_1, Address_2, City, State, Zip, "
               "Country_ID, Phone, Fax) VALUES (?,?,?,?,?,?,?,?,?,?,?)"),
      customer_address_(db,
                        "INSERT INTO kiv_customer_address (customer_no, address_no, address_type, primary_address) "
                        "VALUES (?,?,?,?)"),
      rel_(db, "INSERT INTO kiv_customer_rel (parent_customer_no, child_customer_no, rel_type_id) VALUES (?,?,?)"),
      employer_(db,
                "INSERT INTO kiv_customer_employer (customer_no, fiscal_year, employer_customer_no, is_active) "
                "VALUES (?,?,?,?)"),
      setting_(db,
               "INSERT INTO kiv_customer_setting (customer_no, guest_ability, guest_shoe_size, guest_height_range, "
               "guest_weight_range) VALUES (?,?,?,?,?)"),
      alert_(db,
             "INSERT INTO kiv_customer_alert (customer_no, child_full_name, cell_phone_contact, "
             "responsible_adult_1_name, responsible_adult_2_name, Allergies, Medications, special_needs) "
             "VALUES (?,?,?,?,?,?,?,?)"),
      profile_(db, kDemoProfileInsert),
      group_member_(db, "INSERT INTO kiv_customer_group_member (customer_group_id, customer_no) VALUES (?,?)"),
      club_member_(db,
                   "INSERT INTO kiv_club_member (club_id, customer_no, member_id, is_active, join_date) "
                   "VALUES (?,?,?,?,?)"),
      card_(db,
            "INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, exp_date, Zip, Address, "
            "pay_method_id, is_active, created_by, create_date) VALUES (?,?,?,?,?,?,?,?,?,?,?)"),
      account_(db,
               "INSERT INTO kiv_account (account_id, Description, account_limit, account_balance, is_active) "
               "VALUES (?,?,?,?,?)"),
      order_(db,
             "INSERT INTO kiv_sales_order (salesorder_no, customer_no, for_customer_no, forecast_no, order_date, "
             "status_id, total_amount, is_invoiced) VALUES (?,?,?,?,?,?,?,?)"),
      order_line_(db,
                  "INSERT INTO kiv_sales_order_line (salesorder_no, line_no, item_id, description, quantity, price, "
                  "amount) VALUES (?,?,?,?,?,?,?)"),
      invoice_(db,
               "INSERT INTO kiv_invoice (invoice_no, salesorder_no, customer_no, invoice_date, amount, balance) "
               "VALUES (?,?,?,?,?,?)"),
      reservation_(db,
                   "INSERT INTO kiv_reservation (reservation_no, customer_no, booking_id, salesorder_no, "
                   "arrival_date, departure_date, status_id, description) VALUES (?,?,?,?,?,?,?,?)"),
      access_(db,
              "INSERT INTO kiv_access_product (access_no, customer_no, salesorder_no, description, valid_from, "
              "valid_to, status_id) VALUES (?,?,?,?,?,?,?)"),
      will_call_(db,
                 "INSERT INTO kiv_will_call (will_call_no, customer_no, access_no, salesorder_no, long_description, "
                 "valid_date, status_id, dtm_printed, kiv_user_printed) VALUES (?,?,?,?,?,?,?,?,?)"),
      forecast_(db,
                "INSERT INTO kiv_customer_forecast (forecast_no, customer_no, fc_date_entered, fc_arrival_date, "
                "fc_depart_date, fc_nights, fc_people, fc_days, fc_rate, fc_origin, fc_country, fc_category, "
                "fc_source, fc_manager, fc_segment, fc_type, fc_location, comment_note, fc_last_edited_by, "
                "fc_last_edited_on) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)") {}

void DemoBuilder::FillLists() {
  Exec(db_, "INSERT INTO kiv_system_parm (system_id, country_id, fiscal_year, resort_name) VALUES (1, 'USA', " +
                std::to_string(kFiscalYear) + ", 'DEMO MOUNTAIN RESORT')");
  Exec(db_,
       "INSERT INTO kiv_country (Country_ID, Description) VALUES ('USA','United States'),('CAN','Canada'),"
       "('MEX','Mexico'),('GBR','United Kingdom'),('DEU','Germany'),('FRA','France'),('JPN','Japan'),"
       "('AUS','Australia')");
  Exec(db_,
       "INSERT INTO kiv_address_type (address_type, Description) VALUES ('PRIMARY','Primary'),"
       "('BILLING','Billing'),('SHIPPING','Shipping'),('VACATION','Vacation Home'),('SEASONAL','Seasonal'),"
       "('WORK','Work')");
  Exec(db_,
       "INSERT INTO kiv_customer_kind (customer_kind, Description) VALUES ('INDIVIDUAL','Individual'),"
       "('GROUP','Group'),('TOUROP','Tour Operator'),('SCHOOL','School'),('CORPORATE','Corporate'),"
       "('EMPLOYEE','Employee'),('VIP','VIP')");
  Exec(db_,
       "INSERT INTO kiv_customer_level (Customer_Level_ID, Description) VALUES ('None','None'),"
       "('BRONZE','Bronze'),('SILVER','Silver'),('GOLD','Gold'),('PLATINUM','Platinum')");
  Exec(db_,
       "INSERT INTO kiv_guest_ability (guest_ability, Description) VALUES ('1','Never Ever'),('2','Beginner'),"
       "('3','Intermediate'),('4','Advanced'),('5','Expert')");
  Exec(db_,
       "INSERT INTO kiv_guest_height (guest_height_range, Description, is_default) VALUES "
       "(1,'Under 4''0\"',0),(2,'4''0\" - 4''6\"',0),(3,'4''7\" - 5''0\"',0),(4,'5''1\" - 5''6\"',1),"
       "(5,'5''7\" - 6''0\"',0),(6,'Over 6''0\"',0)");
  Exec(db_,
       "INSERT INTO kiv_guest_weight (guest_weight_range, Description, is_default) VALUES "
       "(1,'Under 60 lb',0),(2,'60 - 90 lb',0),(3,'91 - 120 lb',0),(4,'121 - 160 lb',1),"
       "(5,'161 - 200 lb',0),(6,'Over 200 lb',0)");
  Exec(db_,
       "INSERT INTO kiv_relation (rel_type_id, Description) VALUES ('EMPLOYEE','Employee'),('SPOUSE','Spouse'),"
       "('CHILD','Child'),('PARENT','Parent'),('SIBLING','Sibling'),('FRIEND','Friend'),('OTHER','Other')");
  Exec(db_,
       "INSERT INTO kiv_pay_method (pay_method_id, Description) VALUES ('VISA','Visa'),('MC','MasterCard'),"
       "('AMEX','American Express'),('DISC','Discover'),('CASH','Cash'),('CHECK','Check'),"
       "('ACCT','House Account')");
  Exec(db_,
       "INSERT INTO kiv_customer_group (customer_group_id, Description) VALUES ('LODGE','Lodging Partners'),"
       "('SKISCHOOL','Ski School'),('STAFF','Resort Staff'),('VIP','VIP Guests'),('SEASONPASS','Season Pass'),"
       "('TRAVEL','Travel Agents')");
  Exec(db_,
       "INSERT INTO kiv_club (club_id, Description) VALUES ('SKICLUB','Ski Club'),('GOLFCLUB','Golf Club'),"
       "('KIDSCLUB','Kids Club')");
}

void DemoBuilder::FillZipCodes() {
  Insert zip(db_, "INSERT INTO kiv_zip_code (zip, City, State, county, Country_ID, area_code) VALUES (?,?,?,?,?,?)");
  for (const City& c : kCities) {
    for (int k = 0; k < c.zip_count; ++k) {
      zips_.push_back({ZipOf(c, k), &c});
      zip.Text(zips_.back().zip).Text(c.name).Text(c.state).Text(c.county).Text(c.country).Text(c.area_code).Run();
    }
  }
  summary_.zip_codes = static_cast<int32_t>(zips_.size());
}

void DemoBuilder::FillUsers() {
  static constexpr std::array<sv, 11> kCodes = {"CUSTADD",     "CUSTADDCOMP",     "CUSTEDIT",     "CUSTACTEDIT",
                                                "CCDELETE",    "CUSTSHOWFORECAS", "CUSTSHOWCLUB", "CUSTDEDUP",
                                                "CUSTEDITWRSVP", "CUSTEDITCOMP",  "CUSTEDITPROFILE"};
  Insert user(db_, "INSERT INTO kiv_user (user_id, full_name, password_hash, is_active) VALUES (?,?,?,1)");
  Insert grant(db_, "INSERT INTO kiv_user_permission (user_id, task_code) VALUES (?,?)");
  // Each user's hash has its own salt; hashing costs a tenth of a second, so once per user.
  user.Text(kDemoManager).Text("Demo Manager").Text(HashPassword(kDemoPassword)).Run();
  user.Text(kDemoClerk).Text("Demo Clerk").Text(HashPassword(kDemoPassword)).Run();
  user.Text(kDemoViewer).Text("Demo Viewer").Text(HashPassword(kDemoPassword)).Run();
  for (sv code : kCodes) {
    grant.Text(kDemoManager).Text(code).Run();
    if (code != "CUSTADDCOMP" && code != "CUSTEDITCOMP" && code != "CCDELETE") grant.Text(kDemoClerk).Text(code).Run();
  }
}

std::string DemoBuilder::Phone(const City& c) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%s-%03d-%04d", std::string(c.area_code).c_str(), rng_.Between(200, 999),
                rng_.Below(10000));
  return buf;
}

std::string DemoBuilder::MakeAddresses(int32_t owner_no, const std::string& name, bool company) {
  // Neighbours share zip codes: the skew makes a few zips common.
  const Zip& home = zips_[static_cast<size_t>(rng_.Below(rng_.Chance(70) ? static_cast<int>(zips_.size()) / 3 + 1
                                                                          : static_cast<int>(zips_.size())))];
  std::vector<std::pair<sv, const Zip*>> kinds = {{"PRIMARY", &home}};
  if (rng_.Chance(company ? 60 : 30)) kinds.push_back({"BILLING", &home});
  if (!company && rng_.Chance(12)) kinds.push_back({"VACATION", &zips_[static_cast<size_t>(rng_.Below(static_cast<int>(zips_.size())))]});
  if (company && rng_.Chance(25)) kinds.push_back({"SHIPPING", &home});
  if (!company && rng_.Chance(4)) kinds.push_back({"SEASONAL", &zips_[static_cast<size_t>(rng_.Below(static_cast<int>(zips_.size())))]});
  for (const auto& [type, zip] : kinds) {
    const City& c = *zip->city;
    std::string line1 = std::to_string(rng_.Between(1, 9999)) + " " + std::string(rng_.Pick(kStreets));
    std::string line2;
    if (type == "BILLING") line2 = "PO BOX " + std::to_string(rng_.Between(10, 9999));
    else if (rng_.Chance(10)) line2 = (company ? "SUITE " : "APT ") + std::to_string(rng_.Between(1, 400));
    std::string fax = company && rng_.Chance(40) ? Phone(c) : "";
    int32_t no = next_address_++;
    address_.Int(no).Text(type).Text(name).Text(line1).TextOrNull(line2).Text(c.name).Text(c.state).Text(zip->zip)
        .Text(c.country).Text(Phone(c)).TextOrNull(fax).Run();
    customer_address_.Int(owner_no).Int(no).Text(type).Int(type == "PRIMARY" ? 1 : 0).Run();
    ++summary_.addresses;
  }
  return home.zip;
}

void DemoBuilder::InsertCustomer(const Person& p, const std::string& type, const std::string& company,
                                 const std::string& zip, int32_t household_no, bool household_primary,
                                 bool has_relationship) {
  bool person = type == "P";
  sv kind = person ? (rng_.Chance(3) ? "VIP" : "INDIVIDUAL")
                   : std::array<sv, 5>{"CORPORATE", "GROUP", "TOUROP", "SCHOOL", "CORPORATE"}[static_cast<size_t>(rng_.Below(5))];
  std::string email;
  if (rng_.Chance(70)) {
    std::string local = person ? p.first + "." + p.last : company.substr(0, company.find(' '));
    for (char& ch : local)
      if (ch == ' ' || ch == '\'') ch = '.';
    email = local + std::to_string(p.no % 100) + "@" + std::string(rng_.Pick(kMailDomains));
  }
  const City& city = *zips_[static_cast<size_t>(rng_.Below(static_cast<int>(zips_.size())))].city;
  std::string work = rng_.Chance(person ? 35 : 90) ? Phone(city) : "";
  std::string cell = person && rng_.Chance(55) ? Phone(city) : "";
  sv level = rng_.Chance(80) ? sv("None") : std::array<sv, 4>{"BRONZE", "SILVER", "GOLD", "PLATINUM"}[static_cast<size_t>(rng_.Below(4))];
  customer_.Int(p.no).Text(p.full).TextOrNull(p.first).TextOrNull(p.last).TextOrNull(company).Text(type).Text(kind);
  customer_.TextOrNull(p.gender).Text(zip).TextOrNull(pending_account_).Text(rng_.Chance(97) ? "ACTIVE" : "INACTIVE");
  customer_.TextOrNull(rng_.Chance(5) ? "PREFERS EARLY TEE TIMES" : "");
  if (p.dob.empty()) customer_.Null(); else customer_.Text(p.dob);
  customer_.Int(rng_.Chance(1) ? 1 : 0);
  if (person && rng_.Chance(3)) customer_.Text(IsoDate(2024, rng_.Between(1, 12), rng_.Between(1, 28)));
  else customer_.Null();
  customer_.Real(rng_.Chance(10) ? rng_.Between(1, 4) * 5.0 : 0.0).Real(!person && rng_.Chance(30) ? 10.0 : 0.0);
  customer_.Int(household_primary ? 1 : 0);
  if (household_no == 0) customer_.Null(); else customer_.Int(household_no);
  customer_.Text(level).Int(rng_.Chance(8) ? 1 : 0).TextOrNull(email).TextOrNull(work).TextOrNull(cell);
  customer_.TextOrNull(person && rng_.Chance(60) ? std::string(rng_.Pick(kOccupations)) : "");
  if (person && household_primary && rng_.Chance(20)) customer_.Text(IsoDate(rng_.Between(1970, 2020), rng_.Between(1, 12), rng_.Between(1, 28)));
  else customer_.Null();
  customer_.Int(pending_club_ ? 1 : 0).Int(has_relationship ? 1 : 0).Text("demo").Text(IsoDate(2025, rng_.Between(1, 12), rng_.Between(1, 28)));
  customer_.Run();
  ++summary_.customers;
}

void DemoBuilder::SideRows(const Person& p, bool adult) {
  if (rng_.Chance(25)) {
    setting_.Int(p.no).Text(std::to_string(rng_.Between(1, 5))).Real(adult ? rng_.Between(14, 26) / 2.0 : rng_.Between(2, 14) / 2.0)
        .Int(adult ? rng_.Between(3, 6) : rng_.Between(1, 3)).Int(adult ? rng_.Between(3, 6) : rng_.Between(1, 3)).Run();
  }
  if (!adult && rng_.Chance(30)) {
    static constexpr std::array<sv, 5> kAllergies = {"PEANUTS", "BEE STINGS", "PENICILLIN", "", ""};
    alert_.Int(p.no).Text(p.full).TextOrNull("").TextOrNull("").TextOrNull("").TextOrNull(rng_.Pick(kAllergies))
        .TextOrNull(rng_.Chance(10) ? "INHALER" : "").TextOrNull("").Run();
  }
  if (rng_.Chance(30)) {
    static constexpr std::array<sv, 5> kShirts = {"XS", "S", "M", "L", "XL"};
    profile_.Int(p.no).Text("demo").Text(IsoDate(2025, 1, 15)).Text(rng_.Pick(kShirts)).Int(rng_.Chance(40) ? 1 : 0)
        .Text(IsoDate(rng_.Between(2000, 2025), rng_.Between(1, 12), rng_.Between(1, 28)))
        .Real(rng_.Between(0, 50) * 10.0).Int(rng_.Between(0, 20)).Real(adult ? rng_.Between(1500, 1900) / 10.0 : 120.5)
        .Int(rng_.Chance(50) ? 1 : 0).Run();
  }
  if (rng_.Chance(4)) {
    static constexpr std::array<sv, 5> kGroups = {"SKISCHOOL", "STAFF", "VIP", "SEASONPASS", "TRAVEL"};
    group_member_.Text(rng_.Pick(kGroups)).Int(p.no).Run();
  }
  if (rng_.Chance(15)) {
    static constexpr std::array<sv, 4> kMethods = {"VISA", "MC", "AMEX", "DISC"};
    char last4[8];
    std::snprintf(last4, sizeof last4, "%04d", rng_.Below(10000));
    card_.Int(p.no).Int(next_card_seq_++).Text(std::string("XXXXXXXXXXXX") + last4).Text(last4)
        .Text(ExpiryDate(rng_.Between(1, 12), rng_.Between(2026, 2031))).Null().Null()
        .Text(rng_.Pick(kMethods)).Int(1).Text("demo").Text(IsoDate(2025, 6, 1)).Run();
  }
}

void DemoBuilder::Activity(int32_t customer_no, bool company) {
  struct Item {
    sv id, description;
    double price;
  };
  static constexpr std::array<Item, 9> kItems = {{{"LT1DAY", "LIFT TICKET 1 DAY", 129.0},
                                                  {"LT3DAY", "LIFT TICKET 3 DAY", 369.0},
                                                  {"SKIRENT", "SKI RENTAL PACKAGE", 49.0},
                                                  {"SBRENT", "SNOWBOARD RENTAL", 45.0},
                                                  {"HELMET", "HELMET RENTAL", 15.0},
                                                  {"GRPLES", "GROUP LESSON", 99.0},
                                                  {"PRVLES", "PRIVATE LESSON", 450.0},
                                                  {"SEASON", "SEASON PASS", 899.0},
                                                  {"LODGE", "LODGING NIGHT", 289.0}}};
  Rng& r = activity_rng_;
  auto day = [&r](int first_year) {
    return IsoDate(r.Between(first_year, kFiscalYear), r.Between(1, 12), r.Between(1, 28));
  };
  std::vector<int32_t> forecasts;
  if (company && r.Chance(35)) {
    static constexpr std::array<sv, 4> kSegments = {"SKI", "CORP", "SCHOOL", "TOUR"};
    for (int n = r.Between(1, 3); n > 0; --n) {
      int32_t no = next_forecast_++;
      int month = r.Between(1, 3);
      int arrival = r.Between(1, 20);
      int nights = r.Between(2, 7);
      forecast_.Int(no).Int(customer_no).Text(IsoDate(kFiscalYear - 1, r.Between(6, 11), r.Between(1, 28)))
          .Text(IsoDate(kFiscalYear, month, arrival)).Text(IsoDate(kFiscalYear, month, arrival + nights))
          .Int(nights).Int(r.Between(8, 120)).Int(nights).Real(r.Between(80, 250) * 1.0).Text("DOM").Text("USA")
          .Text(r.Chance(50) ? "A" : "B").Text(r.Chance(50) ? "REFERRAL" : "WEB").Text("DEMO MANAGER")
          .Text(r.Pick(kSegments)).Text("GROUP").Text("MAIN").Null().Text("demo").Text(IsoDate(kFiscalYear - 1, 12, 1))
          .Run();
      forecasts.push_back(no);
    }
  }
  int orders = r.Chance(company ? 40 : 10) ? r.Between(1, 3) : 0;
  std::vector<int32_t> order_nos;
  for (int n = 0; n < orders; ++n) {
    int32_t no = next_order_++;
    std::string date = day(kFiscalYear - 2);
    double total = 0;
    int lines = r.Between(1, 3);
    for (int line = 1; line <= lines; ++line) {
      const Item& item = r.Pick(kItems);
      int quantity = company ? r.Between(2, 40) : r.Between(1, 4);
      order_line_.Int(no).Int(line).Text(item.id).Text(item.description).Real(quantity).Real(item.price)
          .Real(quantity * item.price).Run();
      total += quantity * item.price;
    }
    bool invoiced = r.Chance(70);
    order_.Int(no).Int(customer_no).Int(customer_no);
    if (!forecasts.empty() && r.Chance(60)) order_.Int(forecasts[static_cast<size_t>(r.Below(static_cast<int>(forecasts.size())))]);
    else order_.Null();
    order_.Text(date).Text(invoiced ? "CLOSED" : "OPEN").Real(total).Int(invoiced ? 1 : 0).Run();
    if (invoiced)
      invoice_.Int(next_invoice_++).Int(no).Int(customer_no).Text(date).Real(total).Real(r.Chance(80) ? 0.0 : total).Run();
    order_nos.push_back(no);
  }
  auto some_order = [&]() -> int32_t {
    return order_nos.empty() ? 0 : order_nos[static_cast<size_t>(r.Below(static_cast<int>(order_nos.size())))];
  };
  if (r.Chance(company ? 15 : 5)) {
    int32_t no = next_reservation_++;
    int month = r.Between(1, 4);
    int arrival = r.Between(1, 20);
    int32_t order = some_order();
    reservation_.Int(no).Int(customer_no).Text("B" + std::to_string(100000 + no));
    if (order != 0) reservation_.Int(order); else reservation_.Null();
    reservation_.Text(IsoDate(kFiscalYear, month, arrival)).Text(IsoDate(kFiscalYear, month, arrival + r.Between(1, 7)))
        .Text(r.Chance(85) ? "BOOKED" : "CANCELLED").Text(r.Chance(50) ? "SLOPESIDE CONDO" : "LODGE ROOM").Run();
  }
  if (!company && r.Chance(6)) {
    int32_t no = next_access_++;
    int32_t order = some_order();
    bool season = r.Chance(40);
    access_.Int(no).Int(customer_no);
    if (order != 0) access_.Int(order); else access_.Null();
    access_.Text(season ? "SEASON PASS" : "LIFT TICKET 3 DAY").Text(IsoDate(kFiscalYear - 1, 11, 15))
        .Text(IsoDate(kFiscalYear, 4, 15)).Text("ACTIVE").Run();
    if (r.Chance(40)) {
      bool printed = r.Chance(50);
      will_call_.Int(next_will_call_++).Int(customer_no).Int(no);
      if (order != 0) will_call_.Int(order); else will_call_.Null();
      will_call_.Text(season ? "SEASON PASS PICKUP" : "LIFT TICKET PICKUP").Text(IsoDate(kFiscalYear, 1, r.Between(1, 28)))
          .Text(printed ? "PRINTED" : "WAITING");
      if (printed) will_call_.Text(IsoDate(kFiscalYear, 1, 2)).Text("clerk"); else will_call_.Null().Null();
      will_call_.Run();
    }
  }
}

void DemoBuilder::MakeCompany() {
  Person p;
  p.no = next_customer_++;
  std::string name = std::string(rng_.Pick(kCompanyWords)) + " " + std::string(rng_.Pick(kCompanyKinds));
  sv suffix = rng_.Pick(kCompanySuffixes);
  if (!suffix.empty()) name += " " + std::string(suffix);
  p.full = name;
  std::string zip = MakeAddresses(p.no, name, true);
  pending_club_ = false;
  pending_account_.clear();
  if (rng_.Chance(50)) {
    pending_account_ = "A" + std::to_string(p.no);
    account_.Text(pending_account_).Text(name).Real(rng_.Between(1, 50) * 1000.0).Real(rng_.Between(-500, 20000) * 1.0)
        .Int(1).Run();
  }
  bool lodge = rng_.Chance(20);
  InsertCustomer(p, "C", name, zip, p.no, true, false);
  Activity(p.no, true);
  if (lodge) group_member_.Text("LODGE").Int(p.no).Run();
  else if (rng_.Chance(10)) group_member_.Text("TRAVEL").Int(p.no).Run();
  companies_.push_back(p.no);
  ++summary_.companies;
  ++summary_.households;
}

void DemoBuilder::MakeHousehold(int size) {
  std::vector<Person> people(static_cast<size_t>(size));
  sv last = rng_.PickSkewed(kLastNames);
  int32_t primary_no = next_customer_;
  for (int i = 0; i < size; ++i) {
    Person& p = people[static_cast<size_t>(i)];
    p.no = next_customer_++;
    bool adult = i < 2;
    // The first two are the adults; a spouse sometimes keeps another last name.
    p.last = std::string(i == 1 && rng_.Chance(15) ? rng_.PickSkewed(kLastNames) : last);
    bool male = i == 0 ? rng_.Chance(55) : (i == 1 ? people[0].gender == "F" : rng_.Chance(50));
    if (rng_.Chance(2)) male = !male;
    p.gender = rng_.Chance(3) ? "" : (male ? "M" : "F");
    p.first = std::string(male ? rng_.Pick(kMaleNames) : rng_.Pick(kFemaleNames));
    p.full = p.first + " " + p.last;
    if (!adult || rng_.Chance(92))
      p.dob = adult ? IsoDate(rng_.Between(1940, 2000), rng_.Between(1, 12), rng_.Between(1, 28))
                    : IsoDate(rng_.Between(2005, 2022), rng_.Between(1, 12), rng_.Between(1, 28));
  }
  std::string zip = MakeAddresses(primary_no, people[0].full, false);
  // A lone customer sometimes has no household number at all: its own number stands in.
  int32_t household_no = size == 1 && rng_.Chance(50) ? 0 : primary_no;
  std::string account;
  if (rng_.Chance(5)) {
    account = "H" + std::to_string(primary_no);
    account_.Text(account).Text(people[0].full).Real(2500.0).Real(rng_.Between(0, 2500) * 1.0).Int(1).Run();
  }
  for (int i = 0; i < size; ++i) {
    Person& p = people[static_cast<size_t>(i)];
    bool adult = i < 2;
    bool employed = adult && !companies_.empty() && rng_.Chance(30);
    pending_club_ = false;
    if (rng_.Chance(6)) {
      static constexpr std::array<sv, 3> kClubs = {"SKICLUB", "GOLFCLUB", "KIDSCLUB"};
      sv club = adult ? kClubs[static_cast<size_t>(rng_.Below(2))] : kClubs[2];
      bool active = rng_.Chance(85);
      char member_id[16];
      std::snprintf(member_id, sizeof member_id, "%c%07d", club[0], p.no);
      club_member_.Text(club).Int(p.no).Text(member_id).Int(active ? 1 : 0).Text(IsoDate(rng_.Between(2015, 2025), 11, 15)).Run();
      pending_club_ = active;
    }
    pending_account_ = account;
    InsertCustomer(p, "P", "", zip, household_no, i == 0, size > 1 || employed);
    if (i > 0) rel_.Int(primary_no).Int(p.no).Text(i == 1 ? "SPOUSE" : "CHILD").Run();
    if (employed) {
      // Employment over several fiscal years, sometimes with a change of employer.
      // Most people work for one of the first few companies, so those have many employees.
      const auto pick_employer = [this] {
        const int pool = static_cast<int>(companies_.size());
        int pick = rng_.Below(pool);
        if (pool > 8 && pick % 10 < 7) pick %= 8;
        return companies_[static_cast<size_t>(pick)];
      };
      int32_t employer = pick_employer();
      int first_year = kFiscalYear - rng_.Below(3);
      for (int year = first_year; year <= kFiscalYear; ++year) {
        if (year > first_year && rng_.Chance(15)) employer = pick_employer();
        // Links of past years are history: kept, no longer active.
        employer_.Int(p.no).Int(year).Int(employer).Int(year == kFiscalYear ? 1 : 0).Run();
      }
      rel_.Int(employer).Int(p.no).Text("EMPLOYEE").Run();
    }
    SideRows(p, adult);
    Activity(p.no, false);
  }
  ++summary_.households;
}

DemoSummary DemoBuilder::Build() {
  FillLists();
  FillZipCodes();
  FillUsers();
  // The first customers always form a family of three, then a company, so that a fresh demo
  // has a household to show at customer 1 and an employer to link to.
  int32_t total = options_.customers;
  if (total >= 4) {
    MakeHousehold(3);
    MakeCompany();
  }
  while (next_customer_ <= total) {
    int left = total - next_customer_ + 1;
    if (rng_.Chance(15)) {
      MakeCompany();
      continue;
    }
    int roll = rng_.Below(100);
    int size = roll < 40 ? 1 : roll < 70 ? 2 : roll < 85 ? 3 : roll < 95 ? 4 : 5;
    MakeHousehold(size < left ? size : left);
  }
  // Companies employing someone have a relationship too.
  Exec(db_,
       "UPDATE kiv_customer SET has_relationship = 1 WHERE customer_type = 'C' AND customer_no IN "
       "(SELECT parent_customer_no FROM kiv_customer_rel WHERE rel_type_id = 'EMPLOYEE')");
  Exec(db_, "UPDATE kiv_sequence SET last_no = " + std::to_string(next_customer_ - 1) +
                " WHERE sequence_name = 'seq_customer_no'");
  Exec(db_, "UPDATE kiv_sequence SET last_no = " + std::to_string(next_address_ - 1) +
                " WHERE sequence_name = 'seq_address_no'");
  Exec(db_, "UPDATE kiv_sequence SET last_no = " + std::to_string(next_forecast_ - 1) +
                " WHERE sequence_name = 'seq_forecast_no'");
  Exec(db_, "UPDATE kiv_sequence SET last_no = " + std::to_string(next_order_ - 1) +
                " WHERE sequence_name = 'seq_salesorder_no'");
  FillDemoProfiles(db_, options_.seed);
  BuildMoneyDemo(db_, options_.seed);
  return summary_;
}

}  // namespace

DemoSummary BuildDemoData(sqlite3* db, const DemoOptions& options) {
  if (options.customers < 0) throw DemoDataError("the number of customers cannot be negative");
  // Indexes are dropped for the load and built again afterwards: one sorted build is far
  // quicker than keeping every index in step with a million inserts.
  std::vector<std::pair<std::string, std::string>> indexes;
  {
    sqlite3_stmt* stmt = nullptr;
    Check(db, sqlite3_prepare_v2(db, "SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL",
                                 -1, &stmt, nullptr),
          "reading the indexes");
    while (sqlite3_step(stmt) == SQLITE_ROW)
      indexes.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)),
                           reinterpret_cast<const char*>(sqlite3_column_text(stmt, 1)));
    sqlite3_finalize(stmt);
  }
  Exec(db, "BEGIN IMMEDIATE");
  try {
    for (const auto& [name, sql] : indexes) Exec(db, "DROP INDEX \"" + name + "\"");
    DemoSummary summary;
    {
      DemoBuilder builder(db, options);
      summary = builder.Build();
    }
    BuildReservationDemo(db);
    for (const auto& [name, sql] : indexes) Exec(db, sql);
    AddDemoDuplicates(db, options.seed);
    summary.duplicates = static_cast<int32_t>(ScalarOf(db, "SELECT COUNT(*) FROM kiv_customer")) - summary.customers;
    BuildForecastAndRentalDemo(db, options.seed);
    AddDemoPhotos(db, options.seed);
    Exec(db, "COMMIT");
    Exec(db, "ANALYZE");
    return summary;
  } catch (...) {
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

}  // namespace kiv::refhost

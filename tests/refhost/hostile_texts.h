// Texts a clerk (or an attacker at a terminal) could type where the component writes a text
// into a statement as it stands, and a harness that sends each through every such path of
// the records and counts what the database did beyond the component's own statement.
#pragma once
#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "records/c_address.h"
#include "records/c_customer.h"
#include "refhost/ref_app_server.h"
#include "refhost/ref_host.h"
#include "refhost/statement_shape.h"

namespace kiv::refhost::testing {

//! At least `count` texts: hand-written attacks, their variants, and random mixtures of the
//! characters and words that matter to SQL. The same seed gives the same texts.
inline std::vector<std::string> HostileTexts(size_t count, uint32_t seed) {
  using namespace std::string_literals;
  const std::vector<std::string> attacks = {
      "'", "''", "'''", "x'", "x' --", "x'--", "x' #", "' OR '1'='1", "x' OR '1'='1", "' OR 1=1 --", "' OR ''='",
      "x' OR zip <> '", "A-1' OR account_id <> '", "x'; DELETE FROM kiv_customer; --", "x'; DROP TABLE kiv_customer; --",
      "x'; UPDATE kiv_account SET account_balance = 0; --", "x'; INSERT INTO kiv_user (user_id) VALUES ('evil'); --",
      "x' UNION SELECT 'z', user_id, password_hash, full_name, 'a', 'b' FROM kiv_user WHERE user_id = 'manager' --",
      "x' UNION SELECT password_hash, 1, 1 FROM kiv_user --", "' UNION SELECT name, sql, type FROM sqlite_master --",
      "' UNION ALL SELECT description, account_limit, account_balance FROM kiv_account --",
      "x' AND 0 UNION SELECT * FROM kiv_zip_code --", "x'/*", "*/", "/*", "x' /* c */ OR 'a'='a", "x'/**/OR/**/'a'='a",
      "\\'", "x\\' OR 1=1 --", "%", "_", "%' OR '%'='", "x' || (SELECT password_hash FROM kiv_user) || '",
      "x' AND (SELECT COUNT(*) FROM kiv_user) > 0 AND 'a'='a", "'; ATTACH DATABASE '/tmp/kiv_evil.db' AS evil; --",
      "'; PRAGMA writable_schema = 1; --", "x'; VACUUM INTO '/tmp/kiv_copy.db' --", "x'; BEGIN; --", "x'; COMMIT; --",
      "x\0' OR '1'='1"s, "\0"s, "x'\0"s, "x\0"s, "\xEF\xBC\x87 OR 1=1 --", "\xC0\x27 OR 1=1 --", "\xCA\xBC OR 1=1 --",
      "\xF0\x9F\x8E\xBF' OR '1'='1", "\xC3\xA9'", "x' COLLATE NOCASE OR 'a'='a", "x' GLOB '*", "x' LIKE '%",
      "x'||'", "' ORDER BY 1 --", "' GROUP BY zip HAVING '1'='1", "05401", "05401'", "05401' --", "05401' OR '1'='1",
      "A-1", "A-1'", "B-2", "\"", "x\" OR \"1\"=\"1", "`", "[", "]", "x' AND load_extension('/tmp/x') --",
      "x' AND randomblob(100) --", "x' AND sqlite_version() --", "\n", "\r\n--", "x';\n", "x' RETURNING *--",
      "x' IN (SELECT password_hash FROM kiv_user) --", "?", "?1", ":a", "@a", "$a", "x'?", "'+'", "';'", "' ; '",
      "x' WHERE 1 --", "x' LIMIT 1 OFFSET 0 --", "x'/*' OR 1=1 --*/", "x' -- '\n OR 1=1", "x''; DELETE FROM kiv_zip_code --",
      "x'''; DELETE FROM kiv_zip_code --", "') OR ('1'='1", "x' OR EXISTS(SELECT 1 FROM kiv_user) --",
      "x' UNION SELECT * FROM kiv_zip_code WHERE '1'='1", "x' AND 1=(SELECT 1 FROM kiv_error_log) --",
      "x' OR CAST(1 AS TEXT) = '1", "x' OR x'41' = 'A", "X'00'", "x' OR 0x1 --", "x' OR 1e0 --",
      std::string(100000, 'A'), std::string(20000, '\''), "x' OR '" + std::string(50000, 'z') + "' <> '",
      // What a broken scanner or a careless paste brings to a field that writes no SQL.
      "line1\nline2\tTab", "\x1b[2J\x07", "%s%s%s%n", "{0}${PATH}", "../../etc/passwd", "<script>alert(1)</script>",
      "\xE2\x80\xAE\x6C\x69\x61\x6D\x65", "e\xCC\x81\xCC\x81\xCC\x81", "\xFF\xFE\xC0\xAF", "1e999", "-0", "NaN",
      "inf", "2147483648", "-2147483649", "99999999999999999999999999", "   ", "q@", "_%[]^\\",
  };
  std::vector<std::string> texts;
  for (const std::string& a : attacks) {
    std::string upper = a, spaced = a, tabbed = a;
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    for (size_t at = spaced.find(' '); at != std::string::npos; at = spaced.find(' ', at + 4)) spaced.replace(at, 1, "/**/");
    for (char& ch : tabbed)
      if (ch == ' ') ch = '\t';
    for (std::string v : {a, upper, spaced, tabbed, "05401" + a, a + "--", a + ";", "A-1" + a, a + "'"}) texts.push_back(v);
  }
  const std::vector<std::string> pieces = {"'",     "''",   "\"",   ";",         "--",       "/*",       "*/",
                                           "\\",    "%",    "_",    std::string(1, '\0'), " ", "\n",   "(",
                                           ")",     ",",    "=",    "||",        "UNION",    " SELECT ", " FROM ",
                                           "kiv_user", "password_hash", " OR ", " AND ", "1",     "x",        "\xC3\xA9",
                                           "sqlite_master", "A-1", "05401", "?",   "0x",       "e9",       "*"};
  std::mt19937 rng(seed);
  while (texts.size() < count) {
    std::string t;
    int n = 1 + static_cast<int>(rng() % 12);
    for (int i = 0; i < n; ++i) t += pieces[rng() % pieces.size()];
    texts.push_back(t);
  }
  return texts;
}

//! What the texts made the database do, over every path.
struct HostileTally {
  size_t texts = 0;
  size_t paths = 0;
  size_t calls = 0;
  size_t extra_statements = 0;   //!< statements run in a form other than the component's own
  size_t unexpected_reads = 0;   //!< a path answered with a row its own text does not name
  size_t row_changes = 0;        //!< rows changed other than the error log's
  std::vector<std::string> examples;  //!< the first few offending texts, for the report
};

namespace hostile_detail {
inline int StatementTrace(unsigned type, void* context, void* stmt, void*) {
  if (type != SQLITE_TRACE_STMT) return 0;
  const char* sql = sqlite3_sql(static_cast<sqlite3_stmt*>(stmt));
  static_cast<std::vector<std::string>*>(context)->push_back(sql != nullptr ? sql : "");
  return 0;
}
}  // namespace hostile_detail

//! Sends every text through every path where the records write a text into a statement (the
//! postal-code lookup, the house-account balance) on a fresh database at `path`, which is
//! removed afterwards.
inline HostileTally RunHostileTexts(const std::string& path, const std::vector<std::string>& texts) {
  HostileTally tally;
  tally.texts = texts.size();
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path + suffix);
  auto host = RefHost::Open(path);
  auto db = host->Database();
  db->Execute("INSERT INTO kiv_user (user_id, full_name, password_hash) VALUES ('CLERK', 'Front Desk', 'pw'), "
              "('manager', 'Boss', 'SECRET-HASH')");
  db->Execute("INSERT INTO kiv_zip_code (zip, City, State) VALUES ('05401', 'BURLINGTON', 'VT')");
  db->Execute("INSERT INTO kiv_account (account_id, Description, account_limit, account_balance) VALUES "
              "('A-1', 'House', 500, 100), ('B-2', 'Other', 900, 999)");
  db->Execute("INSERT INTO kiv_customer (customer_no, last_name, customer_type, account_id) VALUES (1, 'SMITH', 'P', "
              "'A-1'), (2, 'JONES', 'P', 'B-2')");
  auto server = std::static_pointer_cast<RefAppServer>(host->SignIn("clerk"));
  server->Errors()->SetEcho(false);
  std::shared_ptr<host::DBConnection> conn = server->Connection();
  auto address = std::make_shared<CAddress>();
  auto customer = std::make_shared<CCustomer>();
  if (!customer->OpenCustomer(conn, server->GetErrorObject(), Variant(int32_t{1}))) return tally;

  std::vector<std::string> ran;
  sqlite3_trace_v2(db->Handle(), SQLITE_TRACE_STMT, hostile_detail::StatementTrace, &ran);
  struct Path {
    const char* name;
    std::function<bool(const std::string&)> expected_read;  // what the text itself names
    std::function<bool(const std::string&)> run;            // true when the path read a row
  };
  std::vector<Path> paths = {
      {"postal code", [](const std::string& t) { return t == "05401"; },
       [&](const std::string& t) {
         ZipLookUpArgs out;
         bool found = address->ZipLookUp(conn, t, out);
         return found || !out.sCity.empty();
       }},
      {"house account", [](const std::string& t) { return t == "A-1" || t == "B-2"; },
       [&](const std::string& t) {
         db->Execute("UPDATE kiv_customer SET account_id = ? WHERE customer_no = 1", {Variant(t)});
         std::string description;
         double limit = 0;
         double balance = customer->GetAccountBalance(description, limit);
         return balance != 0 || !description.empty() || limit != 0;
       }},
  };
  tally.paths = paths.size();
  for (const Path& p : paths) {
    // The path's own statements, learnt from a text it is meant for.
    std::set<std::string> own;
    ran.clear();
    p.run(p.name == std::string("postal code") ? "05401" : "A-1");
    for (const std::string& sql : ran) own.insert(ShapeOf(sql).text);
    for (const std::string& text : texts) {
      ++tally.calls;
      int64_t logged = NzLong(db->QueryValue("SELECT COUNT(*) FROM kiv_error_log"));
      int64_t changes = sqlite3_total_changes64(db->Handle());
      ran.clear();
      bool read = p.run(text);
      int64_t changed = sqlite3_total_changes64(db->Handle()) - changes;
      int64_t new_log_rows = NzLong(db->QueryValue("SELECT COUNT(*) FROM kiv_error_log")) - logged;
      bool offended = false;
      for (const std::string& sql : ran) {
        std::string shape = ShapeOf(sql).text;
        if (own.count(shape) != 0 || sql.rfind("INSERT INTO kiv_error_log", 0) == 0 ||
            sql.rfind("UPDATE kiv_customer SET account_id = ?", 0) == 0 || sql.rfind("SELECT COUNT(*) FROM kiv_error_log", 0) == 0)
          continue;
        ++tally.extra_statements;
        offended = true;
      }
      if (read && !p.expected_read(text)) {
        ++tally.unexpected_reads;
        offended = true;
      }
      // The path's own UPDATE of the account (setting the text up) changes one row.
      int64_t setup = p.name == std::string("house account") ? 1 : 0;
      if (changed - new_log_rows - setup != 0) {
        ++tally.row_changes;
        offended = true;
      }
      if (offended && tally.examples.size() < 5) tally.examples.push_back(std::string(p.name) + ": " + text.substr(0, 120));
    }
  }
  sqlite3_trace_v2(db->Handle(), 0, nullptr, nullptr);
  customer.reset();
  conn.reset();
  server.reset();
  db.reset();
  host.reset();
  for (const char* suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path + suffix);
  return tally;
}

}  // namespace kiv::refhost::testing

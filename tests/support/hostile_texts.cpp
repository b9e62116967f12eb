// The hostile-text corpus.
#include "support/hostile_texts.h"

#include <cstdlib>

namespace kiv::test {

namespace {

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {
      "x' OR '1'='1",
      "' OR '1'='1",
      "x' UNION SELECT 'z', user_id, password, full_name, 'a', 'b' FROM kiv_user WHERE user_id = 'manager' --",
      "'; DELETE FROM kiv_customer; --",
      "1; DROP TABLE kiv_customer",
      "x'); UPDATE kiv_customer SET last_name = 'PWNED'; --",
      "' || (SELECT password FROM kiv_user LIMIT 1) || '",
      "'/*",
      "*/ OR 1=1 /*",
      "-- comment",
      "\" OR \"\"=\"",
      "\\' OR 1=1 --",
      "%' AND 1=1 AND '%'='",
      "_%[]^\\",
      "q@",
      "@@version",
      "$1 :name ?1 #name @name",
      "a\0b"s,
      "\0"s,
      "\r\nDELETE FROM kiv_customer",
      "line1\nline2\tTab",
      "\x1b[2J\x07",
      "%s%s%s%n",
      "{0}{1}${PATH}",
      "../../etc/passwd",
      "<script>alert(1)</script>",
      "Robert'); DROP TABLE Students;--",
      "\xc3\xa9\xc3\xa8\xc3\xbc \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80",
      "\xe2\x80\xae\x6c\x69\x61\x6d\x65",  // right-to-left override
      "e\xcc\x81\xcc\x81\xcc\x81",           // combining marks
      "\xff\xfe\xc0\xaf",                    // bytes that are not UTF-8
      "1e999",
      "-0",
      "NaN",
      "inf",
      "2147483648",
      "-2147483649",
      "99999999999999999999999999",
      "0x7fffffff",
      "   ",
      "'",
      "''",
      "'''",
      "\"",
      "\\",
      ";",
      "END; COMMIT; BEGIN",
      "SELECT * FROM kiv_user",
      "x' AND (SELECT COUNT(*) FROM sqlite_master) > 0 --",
      "x' AND randomblob(1000000000) --",
      std::string(5000, 'A'),
      std::string(300, '\''),
  };
}

}  // namespace

std::vector<std::string> HostileTexts(size_t count) {
  const std::vector<std::string> seeds = Seeds();
  std::vector<std::string> out;
  out.reserve(count);
  // Each round wraps the seeds in what a field's neighbours or a scanner might add.
  const char* const wrappers[][2] = {{"", ""},     {"a", ""},    {"", "z"},  {"'", "'"},  {"1", "--"},
                                     {"\"", ""},   {" ", " "},   {"%", "%"}, {"(", ")"},  {"é", ";"}};
  for (size_t round = 0; out.size() < count; ++round) {
    const auto& wrap = wrappers[round % (sizeof wrappers / sizeof wrappers[0])];
    for (const std::string& seed : seeds) {
      if (out.size() >= count) break;
      std::string text = std::string(wrap[0]) + seed + wrap[1];
      // Later rounds double up, so long runs reach texts no hand would write.
      for (size_t k = 0; k < round / 10; ++k) text += seed;
      out.push_back(std::move(text));
    }
  }
  return out;
}

size_t HostileTextCount(size_t fast_default) {
  const char* env = std::getenv("KIV_HOSTILE_TEXTS");
  if (env == nullptr || *env == '\0') return fast_default;
  const long n = std::strtol(env, nullptr, 10);
  return n > 0 ? static_cast<size_t>(n) : fast_default;
}

}  // namespace kiv::test

// The power-cut loop: a child process saves customers through the reference host, each
// save one unit of work acknowledged on a pipe once committed, and is killed at a random
// moment; the file must then pass its integrity check and hold every acknowledged save whole.
#pragma once
#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "terminal.h"

namespace kiv::refhost::testing {

struct KillTally {
  int cycles = 0;
  int64_t acknowledged = 0;      //!< saves the child reported committed
  int64_t lost = 0;              //!< acknowledged saves not found (or older than found)
  int64_t partial = 0;           //!< customers without their primary address, or a half-applied edit
  int integrity_failures = 0;    //!< files failing PRAGMA integrity_check after a kill
};

namespace kill_detail {

// What the child tells the parent after each commit.
struct Ack {
  int32_t customer_no;
  int64_t seq;
};

// A save stamps one token on the customer's last name and its primary street together, so a
// half-applied save shows as the two disagreeing.
inline std::string Token(int64_t seq) { return "T" + std::to_string(seq); }

[[noreturn]] inline void Child(const std::string& path, int cycle, int out, uint32_t seed) {
  try {
    Terminal t = Terminal::Open(path, 2000);
    std::mt19937 rng(seed);
    std::vector<int32_t> mine;
    for (const auto& row : t.host->Database()->QueryRows("SELECT customer_no FROM kiv_customer"))
      mine.push_back(static_cast<int32_t>(row[0].ToLong()));
    for (int64_t n = 0; n < 100000; ++n) {
      const int64_t seq = static_cast<int64_t>(cycle) * 1000000 + n;
      std::shared_ptr<CCustomer> c;
      if (!mine.empty() && rng() % 3 == 0) {
        c = t.OpenCustomer(mine[rng() % mine.size()]);
        if (c == nullptr || c->PrimaryAddress() == nullptr) continue;
        c->SetLastName(Token(seq));
        c->PrimaryAddress()->SetAddressLine1(Token(seq));
      } else {
        c = t.NewCustomer(Token(seq), Token(seq));
      }
      t.conn->BeginUnitOfWork();
      bool saved = c->Update();
      t.conn->EndUnitOfWork(saved);
      if (!saved) continue;
      Ack ack{c->CustomerNo(), seq};
      if (write(out, &ack, sizeof ack) != static_cast<ssize_t>(sizeof ack)) break;
      if (std::find(mine.begin(), mine.end(), ack.customer_no) == mine.end()) mine.push_back(ack.customer_no);
    }
  } catch (...) {
  }
  _exit(0);
}

inline int64_t SeqOf(const std::string& token) {
  if (token.size() < 2 || token[0] != 'T') return -1;
  return std::stoll(token.substr(1));
}

}  // namespace kill_detail

//! Runs `cycles` kills on a fresh database at `path` (removed afterwards); each child lives
//! between 1 and `max_life_ms` milliseconds.
inline KillTally RunKillLoop(const std::string& path, int cycles, uint32_t seed, int max_life_ms = 60) {
  namespace fs = std::filesystem;
  using namespace kill_detail;
  KillTally tally;
  std::error_code ec;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  {
    auto host = RefHost::Open(path);
    host->Database()->Execute("INSERT INTO kiv_user (user_id, full_name, password_hash) VALUES ('CLERK', 'Clerk', 'pw')");
  }
  std::mt19937 rng(seed);
  std::map<int32_t, int64_t> acked;  // customer -> newest acknowledged token
  std::set<int32_t> lost, partial;
  for (int cycle = 1; cycle <= cycles; ++cycle) {
    int fds[2];
    if (pipe(fds) != 0) break;
    pid_t pid = fork();
    if (pid == 0) {
      close(fds[0]);
      Child(path, cycle, fds[1], rng());
    }
    close(fds[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(1000 + rng() % (static_cast<unsigned>(max_life_ms) * 1000)));
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    Ack ack{};
    while (read(fds[0], &ack, sizeof ack) == static_cast<ssize_t>(sizeof ack)) {
      ++tally.acknowledged;
      int64_t& newest = acked[ack.customer_no];
      newest = std::max(newest, ack.seq);
    }
    close(fds[0]);
    ++tally.cycles;

    sqlite3* db = nullptr;
    sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_busy_timeout(db, 2000);
    auto rows = [&](const char* sql, auto each) {
      sqlite3_stmt* stmt = nullptr;
      sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
      while (sqlite3_step(stmt) == SQLITE_ROW) each(stmt);
      sqlite3_finalize(stmt);
    };
    std::string check;
    rows("PRAGMA integrity_check", [&](sqlite3_stmt* s) { check += reinterpret_cast<const char*>(sqlite3_column_text(s, 0)); });
    if (check != "ok") ++tally.integrity_failures;
    std::map<int32_t, std::pair<std::string, std::string>> found;  // customer -> last name, primary street
    rows("SELECT c.customer_no, c.last_name, (SELECT a.Address_1 FROM kiv_customer_address ca JOIN kiv_address a "
         "ON a.address_no = ca.address_no WHERE ca.customer_no = c.household_no AND ca.primary_address <> 0) "
         "FROM kiv_customer c",
         [&](sqlite3_stmt* s) {
           auto text = [&](int col) {
             const auto* t = sqlite3_column_text(s, col);
             return t == nullptr ? std::string() : std::string(reinterpret_cast<const char*>(t));
           };
           found[sqlite3_column_int(s, 0)] = {text(1), text(2)};
         });
    sqlite3_close(db);
    for (const auto& [no, row] : found)
      if (row.second.empty() || row.first != row.second) partial.insert(no);
    for (const auto& [no, seq] : acked) {
      auto it = found.find(no);
      if (it == found.end() || SeqOf(it->second.first) < seq) lost.insert(no);
    }
  }
  tally.lost = static_cast<int64_t>(lost.size());
  tally.partial = static_cast<int64_t>(partial.size());
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  return tally;
}

}  // namespace kiv::refhost::testing

// Two terminals saving one customer, taking turns in a random order or as two processes at
// the same moment: every change a save reported done is still in the row afterwards unless a
// later save changed that field.
#pragma once
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <random>
#include <string>

#include "terminal.h"

namespace kiv::refhost::testing {

struct TwoWriterTally {
  int rounds = 0;
  int saves = 0;           //!< saves reported done
  int refused = 0;         //!< saves refused because both terminals changed one field
  int lost_updates = 0;    //!< fields whose last reported change is no longer stored
};

//! `rounds` rounds on a fresh database at `path` (removed afterwards).
inline TwoWriterTally RunTwoWriters(const std::string& path, int rounds, uint32_t seed) {
  namespace fs = std::filesystem;
  std::error_code ec;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  TwoWriterTally tally;
  {
    auto setup = RefHost::Open(path);
    setup->Database()->Execute("INSERT INTO kiv_user (user_id, full_name, password_hash) VALUES ('CLERK', 'Clerk', 'pw')");
  }
  Terminal a = Terminal::Open(path), b = Terminal::Open(path);
  auto first = a.NewCustomer("SMITH", "1 MAIN ST");
  if (!first->Update()) return tally;
  const int32_t no = first->CustomerNo();
  struct Field {
    const char* column;
    void (CCustomer::*set)(const std::string&);
  };
  const Field fields[] = {{"Occupation", &CCustomer::SetOccupation}, {"EMail", &CCustomer::SetEMail},
                          {"cell_phone", &CCustomer::SetCellPhone}, {"work_phone", &CCustomer::SetWorkPhone}};
  std::map<std::string, std::string> expected;
  std::mt19937 rng(seed);
  for (int r = 1; r <= rounds; ++r, ++tally.rounds) {
    Terminal* at[2] = {&a, &b};
    std::shared_ptr<CCustomer> open[2] = {a.OpenCustomer(no), b.OpenCustomer(no)};
    const Field* chosen[2] = {&fields[rng() % std::size(fields)], &fields[rng() % std::size(fields)]};
    std::string value[2] = {"A" + std::to_string(r), "B" + std::to_string(r)};
    int order = static_cast<int>(rng() % 2);
    for (int k = 0; k < 2; ++k) {
      int t = (order + k) % 2;
      if (!open[t]) continue;
      ((*open[t]).*(chosen[t]->set))(value[t]);
      at[t]->conn->BeginUnitOfWork();
      bool saved = open[t]->Update();
      at[t]->conn->EndUnitOfWork(saved);
      if (saved) {
        ++tally.saves;
        expected[chosen[t]->column] = value[t];
      } else {
        ++tally.refused;
      }
    }
    for (const auto& [column, want] : expected) {
      Variant stored =
          a.host->Database()->QueryValue("SELECT " + column + " FROM kiv_customer WHERE customer_no = ?", {Variant(no)});
      if (NzString(stored) != want) ++tally.lost_updates;
    }
  }
  a = {};
  b = {};
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  return tally;
}

struct TwoProcessTally {
  int saves = 0;         //!< saves both processes reported done
  int failed = 0;        //!< saves that came back failed (busy or refused)
  int lost_updates = 0;  //!< fields whose last reported value is not the stored one
};

//! Two processes, each a terminal editing its own fields of one customer `saves_each` times
//! at the same moment as the other, each save opened afresh and made in a unit of work. A
//! change reported done must stay: neither terminal's save may undo the other's.
inline TwoProcessTally RunTwoProcesses(const std::string& path, int saves_each) {
  namespace fs = std::filesystem;
  std::error_code ec;
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  TwoProcessTally tally;
  int32_t no = 0;
  {
    auto setup = RefHost::Open(path);
    setup->Database()->Execute("INSERT INTO kiv_user (user_id, full_name, password_hash) VALUES ('CLERK', 'Clerk', 'pw')");
  }
  {
    Terminal t = Terminal::Open(path);
    auto first = t.NewCustomer("SMITH", "1 MAIN ST");
    if (!first->Update()) return tally;
    no = first->CustomerNo();
  }
  struct Field {
    const char* column;
    void (CCustomer::*set)(const std::string&);
  };
  const Field fields[2][2] = {{{"Occupation", &CCustomer::SetOccupation}, {"EMail", &CCustomer::SetEMail}},
                              {{"cell_phone", &CCustomer::SetCellPhone}, {"work_phone", &CCustomer::SetWorkPhone}}};
  struct Ack {
    int32_t field;
    int32_t round;
  };
  int fds[2][2];
  pid_t pids[2];
  for (int w = 0; w < 2; ++w) {
    if (pipe(fds[w]) != 0) return tally;
    pids[w] = fork();
    if (pids[w] != 0) {
      close(fds[w][1]);
      continue;
    }
    close(fds[w][0]);
    try {
      Terminal t = Terminal::Open(path, 5000);
      for (int32_t r = 1; r <= saves_each; ++r) {
        auto c = t.OpenCustomer(no);
        int32_t f = r % 2;
        if (c == nullptr) continue;
        ((*c).*(fields[w][f].set))(std::string(1, static_cast<char>('A' + w)) + std::to_string(r));
        t.conn->BeginUnitOfWork();
        bool saved = c->Update();
        t.conn->EndUnitOfWork(saved);
        Ack ack{saved ? f : -1, r};
        if (write(fds[w][1], &ack, sizeof ack) != static_cast<ssize_t>(sizeof ack)) break;
      }
    } catch (...) {
    }
    _exit(0);
  }
  std::map<std::string, std::string> expected;
  for (int w = 0; w < 2; ++w) {
    Ack ack{};
    while (read(fds[w][0], &ack, sizeof ack) == static_cast<ssize_t>(sizeof ack)) {
      if (ack.field < 0) {
        ++tally.failed;
        continue;
      }
      ++tally.saves;
      expected[fields[w][ack.field].column] = std::string(1, static_cast<char>('A' + w)) + std::to_string(ack.round);
    }
    close(fds[w][0]);
    waitpid(pids[w], nullptr, 0);
  }
  {
    auto check = RefHost::Open(path);
    for (const auto& [column, want] : expected) {
      Variant stored =
          check->Database()->QueryValue("SELECT " + column + " FROM kiv_customer WHERE customer_no = ?", {Variant(no)});
      if (NzString(stored) != want) ++tally.lost_updates;
    }
  }
  for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix, ec);
  return tally;
}

}  // namespace kiv::refhost::testing

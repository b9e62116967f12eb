// Two terminals saving one customer round after round in a random order: every change a
// save reported done is still in the row afterwards unless a later save changed that field.
#pragma once
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
    setup->Database()->Execute("INSERT INTO kiv_user (user_id, full_name, password) VALUES ('CLERK', 'Clerk', 'pw')");
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

}  // namespace kiv::refhost::testing

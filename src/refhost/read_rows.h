// The rows one connection has shown its clerk, as they were read: a save compares the
// clerk's values with them to tell the fields the clerk changed from the ones another
// terminal changed meanwhile.
#pragma once
#include <cstddef>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/variant.h"

namespace kiv::refhost {

class ReadRows {
 public:
  //! A row's values as it was read, each in its stored form (see StoredForm).
  using Row = std::vector<std::string>;

  //! Keeps `row` under `key`, replacing an older reading; the oldest readings go first once
  //! many rows are remembered.
  void Remember(const std::string& key, Row row);
  //! The row as read last, or null when this connection never read it.
  const Row* Find(const std::string& key) const;

  //! A value as the database keeps it, so a value read and the same value sent back compare
  //! equal: Null and empty text alike, Booleans and numbers as decimals, dates as stored.
  static std::string StoredForm(const Variant& value);

 private:
  static constexpr size_t kLimit = 4096;
  std::unordered_map<std::string, Row> rows_;
  std::deque<std::string> order_;
};

}  // namespace kiv::refhost

// The program's view of every call the component makes on the reference host: one line each,
// written to the trace file when one was asked for and kept in memory so that `expect sql`
// (database calls) and `expect host` (permissions, error reports, activity, settings) can
// look at the latest ones.
#pragma once
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "refhost/trace.h"

namespace kiv::kivcust {

class TraceWriter {
 public:
  //! Opens the trace file, emptied first unless `append`; throws std::runtime_error naming it
  //! when it cannot be written.
  void OpenFile(const std::string& path, bool append);
  //! Takes one call from the reference host's trace hook.
  void Record(const refhost::TraceEvent& event);
  //! Starts a new window: the expectations look only at calls made after this.
  void StartWindow() { window_.clear(); }
  //! The lines of the window's database calls (`host` false) or host-service calls (true).
  std::vector<std::string> Window(bool host = false) const;
  //! The first line of the window's database (or host) calls containing `text`, searched
  //! from line `from` on; `text` is escaped as the lines are, so a line break in it matches
  //! the escaped one. Null when none does; `at` receives the line's position.
  const std::string* Find(const std::string& text, bool host = false, size_t from = 0, size_t* at = nullptr) const;
  //! The trace file's path; empty when there is none.
  const std::string& FilePath() const { return path_; }
  //! The first card number any traced line held (masked), over the whole session.
  const std::optional<std::string>& CardNumberSeen() const { return card_number_seen_; }

 private:
  struct Line {
    bool host;
    std::string text;
  };
  std::ofstream file_;
  std::string path_;
  std::optional<std::string> card_number_seen_;
  std::vector<Line> window_;
};

}  // namespace kiv::kivcust

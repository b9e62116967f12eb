// The program's view of every database call: one line each, written to the trace file when
// one was asked for and kept in memory so that `expect sql` can look at the latest ones.
#pragma once
#include <fstream>
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
  //! Starts a new window: `expect sql` looks only at calls made after this.
  void StartWindow() { window_.clear(); }
  const std::vector<std::string>& Window() const { return window_; }
  //! The first line of the window containing `text`; null when none does.
  const std::string* Find(const std::string& text) const;

 private:
  std::ofstream file_;
  std::vector<std::string> window_;
};

}  // namespace kiv::kivcust

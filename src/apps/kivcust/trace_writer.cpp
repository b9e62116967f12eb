// Trace lines go to the file as they happen (flushed, so a crash keeps them) and into the
// current window for the script's `expect sql`.
#include "apps/kivcust/trace_writer.h"

#include <stdexcept>

namespace kiv::kivcust {

void TraceWriter::OpenFile(const std::string& path, bool append) {
  file_.open(path, std::ios::out | (append ? std::ios::app : std::ios::trunc));
  if (!file_) throw std::runtime_error("cannot write the trace file " + path);
}

void TraceWriter::Record(const refhost::TraceEvent& event) {
  std::string line = refhost::FormatTraceLine(event);
  if (file_.is_open()) file_ << line << '\n' << std::flush;
  window_.push_back(std::move(line));
}

const std::string* TraceWriter::Find(const std::string& text) const {
  for (const auto& line : window_)
    if (line.find(text) != std::string::npos) return &line;
  return nullptr;
}

}  // namespace kiv::kivcust

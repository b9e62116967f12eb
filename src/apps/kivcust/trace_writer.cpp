// Trace lines go to the file as they happen (flushed, so a crash keeps them) and into the
// current window for the script's `expect sql` and `expect host`.
#include "apps/kivcust/trace_writer.h"

#include "apps/kivcust/card_number_scan.h"

#include <stdexcept>

namespace kiv::kivcust {

void TraceWriter::OpenFile(const std::string& path, bool append) {
  file_.open(path, std::ios::out | (append ? std::ios::app : std::ios::trunc));
  if (!file_) throw std::runtime_error("cannot write the trace file " + path);
  path_ = path;
}

void TraceWriter::Record(const refhost::TraceEvent& event) {
  std::string line = refhost::FormatTraceLine(event);
  if (file_.is_open()) file_ << line << '\n' << std::flush;
  if (!card_number_seen_) card_number_seen_ = FindCardNumber(line);
  window_.push_back({event.is_host, std::move(line)});
}

std::vector<std::string> TraceWriter::Window(bool host) const {
  std::vector<std::string> lines;
  for (const auto& line : window_)
    if (line.host == host) lines.push_back(line.text);
  return lines;
}

const std::string* TraceWriter::Find(const std::string& text, bool host, size_t from, size_t* at) const {
  const std::string escaped = refhost::EscapeTraceText(text);
  for (size_t i = from; i < window_.size(); ++i) {
    const Line& line = window_[i];
    if (line.host != host || line.text.find(escaped) == std::string::npos) continue;
    if (at != nullptr) *at = i;
    return &line.text;
  }
  return nullptr;
}

}  // namespace kiv::kivcust

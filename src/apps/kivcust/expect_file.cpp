// `expect file`: what a printed document holds. "last" is the document the host's services
// wrote last in this run; a relative path is read from the database's document folder.
#include <fstream>
#include <sstream>

#include "apps/kivcust/interpreter.h"
#include "refhost/html_document.h"

namespace kiv::kivcust {

bool Interpreter::ExpectFile(const Statement& st) {
  const std::string& which = st.args[1];
  const std::string& op = st.args[2];
  const std::string& text = st.args[3];
  std::filesystem::path path;
  if (which == "last") {
    if (session_.Documents().empty()) return Fail("no document has been written yet");
    path = session_.Documents().back();
  } else {
    path = which;
    if (path.is_relative()) path = refhost::DocumentFolder(session_.Database().Path()) / path;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) return Fail("cannot read the file " + path.string());
  std::ostringstream content;
  content << in.rdbuf();
  const bool found = content.str().find(text) != std::string::npos;
  if (op == "~" && found) return true;
  if (op == "!~" && !found) return true;
  return Fail(path.string() + (found ? " contains \"" : " does not contain \"") + text + "\"");
}

}  // namespace kiv::kivcust

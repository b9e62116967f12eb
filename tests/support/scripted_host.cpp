// The scripted host's wiring and the printers that make failure messages readable.
#include "support/scripted_host.h"

namespace kiv::test {

ScriptedHost::ScriptedHost()
    : db(std::make_shared<ScriptedConnection>()),
      errors(std::make_shared<ScriptedErrorObject>()),
      settings(std::make_shared<ScriptedSettingsStore>()),
      app(std::make_shared<ScriptedAppServer>(db, errors, settings)) {}

void PrintTo(const Assignment& a, std::ostream* os) { *os << DescribeAssignment(a); }

void PrintTo(const Call& call, std::ostream* os) { *os << DescribeCall(call); }

void PrintTo(const DisplayCall& call, std::ostream* os) {
  *os << "Display(" << call.number << ", \"" << call.source << "\", \"" << call.description << "\", "
      << (call.flag ? "True" : "False") << ", related=" << (call.related ? "command" : "none") << ", \"" << call.extra
      << "\")";
}

}  // namespace kiv::test

namespace kiv {

void PrintTo(const Variant& v, std::ostream* os) { *os << test::DescribeValue(v); }

}  // namespace kiv

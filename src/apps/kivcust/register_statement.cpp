// The `register` statement: puts the register of the workstation the session runs on in
// one of its states, so that a script can show every answer of the will-call printing.
#include "apps/kivcust/interpreter.h"
#include "refhost/ref_register_service.h"

namespace kiv::kivcust {

bool Interpreter::DoRegister(const Statement& st) {
  const auto state = refhost::RegisterStateFromText(st.args[0]);
  if (!state) return Fail("\"" + st.args[0] + "\" is not a register state");
  const std::string computer = session_.AppServer()->GetConnection("")->ComputerName();
  refhost::RefRegisterService::SetState(session_.Database(), computer, *state, st.args.size() > 1 ? st.args[1] : "");
  return true;
}

}  // namespace kiv::kivcust

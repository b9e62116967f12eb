// The register of a workstation as the reference host keeps it: one row per computer name
// in kiv_register_station, read afresh on every question so that a change made by the
// program shows at once. A workstation without a row has no register.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "host/suite_services.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

//! The states a script or a manager can put a workstation's register in.
enum class RegisterState { kNone, kNotInstalled, kInstalled, kCashedIn };

//! "none", "not-installed", "installed" or "cashed-in"; nullopt for any other text.
std::optional<RegisterState> RegisterStateFromText(const std::string& text);

class RefRegisterService : public host::RegisterService {
 public:
  RefRegisterService(std::shared_ptr<SqliteDatabase> db, std::string computer);

  //! True when the workstation has a register at all.
  static bool Exists(SqliteDatabase& db, const std::string& computer);
  //! Puts the workstation's register in a state; `register_id` empty keeps the one it has
  //! (or "REG01" for a new one). kNone removes the register.
  static void SetState(SqliteDatabase& db, const std::string& computer, RegisterState state,
                       const std::string& register_id = {});

  bool Installed() override;
  bool CashedIn() override;
  int32_t CurrentControlNo() override;
  std::string RegisterId() override;

 private:
  Variant Column(const char* name) const;

  std::shared_ptr<SqliteDatabase> db_;
  std::string computer_;
};

}  // namespace kiv::refhost

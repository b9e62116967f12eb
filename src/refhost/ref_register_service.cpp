// The workstation's register over kiv_register_station.
#include "refhost/ref_register_service.h"

namespace kiv::refhost {

std::optional<RegisterState> RegisterStateFromText(const std::string& text) {
  if (text == "none") return RegisterState::kNone;
  if (text == "not-installed") return RegisterState::kNotInstalled;
  if (text == "installed") return RegisterState::kInstalled;
  if (text == "cashed-in") return RegisterState::kCashedIn;
  return std::nullopt;
}

RefRegisterService::RefRegisterService(std::shared_ptr<SqliteDatabase> db, std::string computer)
    : db_(std::move(db)), computer_(std::move(computer)) {}

bool RefRegisterService::Exists(SqliteDatabase& db, const std::string& computer) {
  return !db.QueryValue("SELECT 1 FROM kiv_register_station WHERE computer = ?", {Variant(computer)}).IsNull();
}

void RefRegisterService::SetState(SqliteDatabase& db, const std::string& computer, RegisterState state,
                                  const std::string& register_id) {
  if (state == RegisterState::kNone) {
    db.Execute("DELETE FROM kiv_register_station WHERE computer = ?", {Variant(computer)});
    return;
  }
  const bool installed = state != RegisterState::kNotInstalled;
  const bool cashed_in = state == RegisterState::kCashedIn;
  db.Execute(
      "INSERT INTO kiv_register_station (computer, register_id, is_installed, is_cashed_in, control_no) "
      "VALUES (?1, IFNULL(NULLIF(?2, ''), 'REG01'), ?3, ?4, 1000) ON CONFLICT (computer) DO UPDATE SET "
      "register_id = IFNULL(NULLIF(?2, ''), register_id), is_installed = ?3, is_cashed_in = ?4, "
      // Each cash-in opens a new control period.
      "control_no = control_no + CASE WHEN ?4 = 1 AND is_cashed_in = 0 THEN 1 ELSE 0 END",
      {Variant(computer), Variant(register_id), Variant(installed), Variant(cashed_in)});
}

Variant RefRegisterService::Column(const char* name) const {
  return db_->QueryValue(std::string("SELECT ") + name + " FROM kiv_register_station WHERE computer = ?",
                         {Variant(computer_)});
}

bool RefRegisterService::Installed() { return NzBool(Column("is_installed")); }
bool RefRegisterService::CashedIn() { return NzBool(Column("is_cashed_in")); }
int32_t RefRegisterService::CurrentControlNo() { return NzLong(Column("control_no")); }
std::string RefRegisterService::RegisterId() { return NzString(Column("register_id")); }

}  // namespace kiv::refhost

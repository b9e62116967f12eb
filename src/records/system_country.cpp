// The one module-level value of the component: the system country shared by every class.
#include "records/system_country.h"

namespace kiv {

namespace {
std::string& Storage() {
  static std::string country = "USA";
  return country;
}
}  // namespace

const std::string& SystemCountryID() { return Storage(); }

void SetSystemCountryID(const std::string& country_id) { Storage() = country_id; }

}  // namespace kiv

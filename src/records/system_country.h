// The system's own country code, read once at start-up and shared by every class of the
// component: an address in any other country is international.
#pragma once
#include <string>

namespace kiv {

//! The system country; "USA" until start-up reads another one.
const std::string& SystemCountryID();
//! Replaces the system country; an empty value is stored as given (start-up decides the default).
void SetSystemCountryID(const std::string& country_id);

}  // namespace kiv

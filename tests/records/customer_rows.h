// Scripted rows shared by the customer record tests: a full customer row as the load
// procedure answers it, and addresses as the address procedure answers them.
#pragma once
#include <string>

#include "support/scripted_host.h"

namespace kiv::test {

//! Every column the customer load reads, with plain values; `overrides` replace by name.
inline Cells CustomerRow(int32_t customer_no, const Cells& overrides = {}) {
  Cells row = {{"customer_no", customer_no}, {"full_name", "SMITH, ANN"}, {"last_name", "SMITH"},
               {"first_name", "ANN"}, {"company_name", ""}, {"customer_type", "P"}, {"Zip", "05401"},
               {"account_id", "A-1"}, {"comment_note", "vip"}, {"DOB", Date::FromParts(1980, 2, 29)},
               {"Locked", false}, {"date_of_release", Variant::Null()}, {"has_image", true}, {"status_id", "ACTIVE"},
               {"discount_percentage", 5.5}, {"commission_percentage", 1.0}, {"household_primary", false},
               {"household_no", 0}, {"Customer_Level_ID", "GOLD"}, {"Gender", "F"}, {"do_not_mail", true},
               {"customer_kind", "GUEST"}, {"EMail", "ann@example.com"}, {"work_phone", "802-555-0100"},
               {"cell_phone", "802-555-0101"}, {"Occupation", "PILOT"}, {"wedding_anniversary", Variant::Null()},
               {"has_willcall", true}, {"has_club", false}, {"has_so", true}, {"has_reservation", true},
               {"has_relationship", true}};
  for (const auto& [name, value] : overrides)
    for (auto& cell : row)
      if (cell.first == name) cell.second = value;
  return row;
}

//! The customer load answers `row`; its addresses are read by `household_no`.
inline void ScriptCustomer(ScriptedHost& host, const Cells& row) { host.OnProcedure("KIV_SP_GetCustomer").Once().Row(row); }

//! The next address load answers one address of that type and country.
inline void ScriptAddress(ScriptedHost& host, const std::string& type, const std::string& country = "USA") {
  host.OnProcedure("KIV_SP_ADDRESS_GetAddress")
      .Once()
      .Row({{"Address_1", "1 " + type + " ST"}, {"address_type", type}, {"Country_ID", country}, {"Phone", "555"}});
}

}  // namespace kiv::test

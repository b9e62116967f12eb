// The customer's rental contracts: one row per piece of equipment handed out, with its
// contract's number, voucher and location.
#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"

namespace kiv::refhost {

namespace {

void GetRental(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT r.contract_no, l.line_no, l.dtm_equip_out, l.description, l.status_id, l.rent_start, l.rent_end, "
      "l.days, l.amount, l.daily_rate, l.dtm_return, r.location_id, l.return_location_id, l.serial_no, r.voucher_no, "
      "l.din_setting, l.binding, r.customer_no FROM kiv_rental_contract r "
      "JOIN kiv_rental_contract_line l ON l.contract_no = r.contract_no "
      "WHERE r.customer_no = ? ORDER BY r.contract_date DESC, r.contract_no DESC, l.line_no",
      {Variant(call.Long("@customer_no"))});
}

}  // namespace

void AddRentalProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetRental", {InInt("@customer_no")}, false, GetRental});
}

}  // namespace kiv::refhost

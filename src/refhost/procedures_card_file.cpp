// Procedures of the cards-on-file page: list a customer's cards (masked numbers only),
// switch one on or off, delete one (an active card, or one used for payments, asks for
// confirmation first).
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void GetCC(ProcedureCall& call) {
  RequireCardReader(call);
  // The full number is never stored, so cc_card_no is always null and the masked number shows.
  call.ReturnRows("SELECT customer_no, card_seq_no, x_card_no, NULL AS cc_card_no, last_four, is_active, "
                  "pay_method_id AS Pay_Method_ID, exp_date, Zip, Address, modified_on FROM kiv_customer_cc "
                  "WHERE customer_no = ? ORDER BY card_seq_no",
                  {Variant(call.Long("@customer_no"))});
}

// A card's audit columns name the signed-in user, not whatever "@kiv_user" the call carries.
void UpdateCreditCard(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  Variant now(db.Now());
  int changed = db.Execute(
      "UPDATE kiv_customer_cc SET is_active = ?, modified_by = ?, modified_on = ? WHERE customer_no = ? AND "
      "card_seq_no = ?",
      {Variant(call.Bool("@is_active")), Variant(call.User()), now, Variant(call.Long("@customer_no")),
       Variant(call.Long("@card_seq_no"))});
  if (changed == 0) return Refuse(call, "The card on file was not found.");
  call.Out("@modified_on", now);
  Succeed(call);
}

void DeleteCreditCard(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  std::vector<Variant> key{Variant(call.Long("@customer_no")), Variant(call.Long("@card_seq_no"))};
  Variant active = db.QueryValue("SELECT is_active FROM kiv_customer_cc WHERE customer_no = ? AND card_seq_no = ?", key);
  if (active.IsNull()) return Refuse(call, "The card on file was not found.");
  // Payments made with the card keep their history; the card goes only once the clerk confirms.
  int32_t payments = NzLong(
      db.QueryValue("SELECT COUNT(*) FROM kiv_payment WHERE card_customer_no = ? AND card_seq_no = ?", key));
  if (payments > 0 && !call.Bool("@confirm_delete")) {
    call.Return(1);
    call.Out("@message", Variant("This card on file was used for " + std::to_string(payments) + " payment" +
                                 (payments == 1 ? "" : "s") + ".  Delete it anyway?"));
    return;
  }
  if (NzBool(active) && !call.Bool("@confirm_delete")) {
    call.Return(1);
    call.Out("@message", Variant("This card on file is still active.  Delete it anyway?"));
    return;
  }
  db.Execute("DELETE FROM kiv_customer_cc WHERE customer_no = ? AND card_seq_no = ?", key);
  Succeed(call);
}

}  // namespace

void AddCardFileProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetCC",
                {InInt("@customer_no"), InText("@kiv_user", 20), InText("@kiv_password", 40)},
                false,
                GetCC});
  registry.Add({"KIV_SP_CUSTOMER_UpdateCreditCard",
                {InInt("@customer_no"), InInt("@card_seq_no"), InBit("@is_active"), InText("@kiv_user", 20),
                 OutText("@message", 255), {"@modified_on", 2, 135, 16}},
                true,
                UpdateCreditCard});
  registry.Add({"KIV_SP_CUSTOMER_CC_delete",
                {InInt("@customer_no"), InInt("@card_seq_no"), InText("@kiv_user", 20), InBit("@confirm_delete"),
                 OutText("@message", 255)},
                true,
                DeleteCreditCard});
}

}  // namespace kiv::refhost

// Procedures of a customer's side records: cards on file (masked number and last four
// digits only), group and club membership.
#include <cctype>
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

std::string Digits(std::string_view text) {
  std::string digits;
  for (char c : text)
    if (std::isdigit(static_cast<unsigned char>(c))) digits.push_back(c);
  return digits;
}

// The account number from swiped track data: track 2 ";PAN=..." or track 1 "%BPAN^...".
std::string NumberFromTracks(const std::string& track1, const std::string& track2) {
  if (!track2.empty()) {
    size_t end = track2.find('=');
    std::string digits = Digits(track2.substr(0, end));
    if (!digits.empty()) return digits;
  }
  if (!track1.empty()) {
    size_t start = track1.find_first_of("Bb");
    size_t end = track1.find('^');
    if (start != std::string::npos && end != std::string::npos && end > start)
      return Digits(track1.substr(start + 1, end - start - 1));
  }
  return {};
}

void GetCustomerCC(ProcedureCall& call) {
  RequireCardReader(call);
  const char* columns =
      "SELECT customer_no, card_seq_no, x_card_no, x_card_no AS cc_card_no, last_four, exp_date, Zip, Address, "
      "pay_method_id, is_active FROM kiv_customer_cc";
  int32_t card_customer_no = call.Long("@card_customer_no");
  int32_t card_seq_no = call.Long("@card_seq_no");
  if (card_customer_no != 0 && card_seq_no != 0) {
    call.ReturnRows(std::string(columns) + " WHERE customer_no = ? AND card_seq_no = ?",
                    {Variant(card_customer_no), Variant(card_seq_no)});
    return;
  }
  call.ReturnRows(std::string(columns) +
                      " WHERE customer_no IN (?1, ?2) AND is_active <> 0 ORDER BY customer_no = ?1 DESC, card_seq_no DESC",
                  {Variant(call.Long("@customer_no")), Variant(call.Long("@household_no"))});
}

void InsertCreditCard(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  if (!CustomerExists(db, customer_no)) return Refuse(call, NoSuchCustomer(customer_no));
  std::string number = Digits(call.Text("@card_no"));
  if (number.empty()) number = NumberFromTracks(call.Text("@track_1"), call.Text("@track_2"));
  if (number.size() < 12 || number.size() > 19) return Refuse(call, "The card number is not valid.");
  if (call.Text("@exp_date").empty()) return Refuse(call, "The card's expiry date is required.");
  std::string last_four = number.substr(number.size() - 4);
  std::string masked = call.Text("@x_card_no");
  // Only a masked number may be kept: anything showing more than the last four digits is remasked.
  if (Digits(masked).size() > 4 || masked.empty()) masked = std::string(number.size() - 4, 'X') + last_four;
  int32_t seq = NzLong(db.QueryValue("SELECT IFNULL(MAX(card_seq_no), 0) + 1 FROM kiv_customer_cc WHERE customer_no = ?",
                                     {Variant(customer_no)}));
  Variant active = call.IsNull("@is_active") ? Variant(true) : Variant(call.Bool("@is_active"));
  // The audit columns name the signed-in user, not whatever "@kiv_user" the call carries.
  db.Execute("INSERT INTO kiv_customer_cc (customer_no, card_seq_no, x_card_no, last_four, exp_date, Zip, Address, "
             "pay_method_id, is_active, created_by, create_date, modified_by, modified_on) "
             "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
             {Variant(customer_no), Variant(seq), Variant(masked), Variant(last_four), call.In("@exp_date"),
              call.In("@zip"), call.In("@address"), call.In("@pay_method_id"), active, Variant(call.User()),
              Variant(db.Now()), Variant(call.User()), Variant(db.Now())});
  call.Out("@card_seq_no", Variant(seq));
  Succeed(call);
}

void GetGroupMembers(ProcedureCall& call) {
  call.ReturnRows(
      "SELECT g.customer_group_id, g.Description, c.customer_no, c.full_name FROM kiv_customer_group_member m "
      "JOIN kiv_customer_group g ON g.customer_group_id = m.customer_group_id "
      "JOIN kiv_customer c ON c.customer_no = m.customer_no "
      "WHERE (?1 IS NULL OR m.customer_group_id = ?1) AND (?2 IS NULL OR m.customer_no = ?2) "
      "ORDER BY g.Description, c.full_name, c.customer_no",
      {call.Criterion("@customer_group_id"), call.IsNull("@customer_no") || call.Long("@customer_no") == 0
                                                 ? Variant::Null()
                                                 : Variant(call.Long("@customer_no"))});
}

void InsertGroupMembership(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  int32_t customer_no = call.Long("@customer_no");
  std::string group = call.Text("@customer_group_id");
  if (!CustomerExists(db, customer_no)) return Refuse(call, NoSuchCustomer(customer_no));
  if (db.QueryValue("SELECT 1 FROM kiv_customer_group WHERE customer_group_id = ?", {Variant(group)}).IsNull())
    return Refuse(call, "The customer group '" + group + "' does not exist.");
  db.Execute("INSERT OR IGNORE INTO kiv_customer_group_member (customer_group_id, customer_no) VALUES (?, ?)",
             {Variant(group), Variant(customer_no)});
  Succeed(call);
}

void DeleteGroupMembership(ProcedureCall& call) {
  call.Db().Execute("DELETE FROM kiv_customer_group_member WHERE customer_group_id = ? AND customer_no = ?",
                    {call.In("@customer_group_id"), Variant(call.Long("@customer_no"))});
  Succeed(call);
}

void GetClubMembership(ProcedureCall& call) {
  int32_t limit = call.Long("@num_return");
  call.ReturnRows(
      "SELECT m.club_id, k.Description, m.customer_no, m.member_id, m.is_active, m.join_date FROM kiv_club_member m "
      "JOIN kiv_club k ON k.club_id = m.club_id WHERE m.customer_no = ?1 "
      "AND (?2 IS NULL OR (m.is_active <> 0) = (?2 <> 0)) ORDER BY m.join_date DESC, m.club_id LIMIT ?3",
      {Variant(call.Long("@customer_no")), call.In("@is_active"), Variant(limit > 0 ? limit : -1)});
}

}  // namespace

void AddSideRecordProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_CUSTOMER_GetCustomerCC",
                {InInt("@household_no"), InInt("@customer_no"), InInt("@card_customer_no"), InInt("@card_seq_no"),
                 InText("@kiv_user", 20), InText("@kiv_password", 40)},
                false,
                GetCustomerCC});
  registry.Add({"KIV_SP_CUSTOMER_InsertCreditCard",
                {InInt("@customer_no"), InText("@track_1", 80), InText("@track_2", 40), InText("@card_no", 20),
                 InText("@exp_date", 7), InText("@zip", 15), InText("@address", 60), InText("@x_card_no", 25),
                 InText("@pay_method_id", 10), InText("@kiv_user", 20), InBit("@is_active"), OutInt("@card_seq_no"),
                 OutText("@message", 255)},
                true,
                InsertCreditCard});
  registry.Add(
      {"KIV_SP_GetGroupMembers", {InText("@customer_group_id", 20), InInt("@customer_no")}, false, GetGroupMembers});
  registry.Add({"KIV_SP_InsertCustomerGroupMembership",
                {InInt("@customer_no"), InText("@customer_group_id", 20), OutText("@message", 255)},
                true,
                InsertGroupMembership});
  registry.Add({"KIV_SP_DeleteCustomerGroupMembership",
                {InInt("@customer_no"), InText("@customer_group_id", 20), OutText("@message", 255)},
                true,
                DeleteGroupMembership});
  registry.Add({"KIV_SP_CLUB_GetClubMembership",
                {InInt("@customer_no"), InSmall("@is_active"), InSmall("@num_return")},
                false,
                GetClubMembership});
}

}  // namespace kiv::refhost

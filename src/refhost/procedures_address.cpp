// Procedures of addresses: read one, store one (numbering new ones from the address
// sequence and keeping the customer-to-address row in step), delete one.
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/read_rows.h"
#include "refhost/sequences.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

// The stored columns after the number, in table order, and how a clerk knows each.
constexpr const char* kColumns[] = {"address_type", "Name",       "Address_1", "Address_2", "City",
                                    "State",        "Zip",        "Country_ID", "Phone",    "Fax"};
constexpr const char* kLabels[] = {"address type", "name",    "street",       "second street line", "city",
                                   "state",        "postal code", "country", "phone",        "fax"};

std::string ReadingKey(int32_t address_no) { return "address:" + std::to_string(address_no); }

void GetAddress(ProcedureCall& call) {
  call.ReturnRows("SELECT address_no, address_type, Name, Address_1, Address_2, City, State, Zip, Country_ID, Phone, "
                  "Fax FROM kiv_address WHERE address_no = ?",
                  {Variant(call.Long("@address_no"))});
  ReadRows* readings = call.Db().Readings();
  if (readings == nullptr || call.Rows().rows.empty()) return;
  ReadRows::Row row;
  for (size_t c = 1; c <= std::size(kColumns); ++c) row.push_back(ReadRows::StoredForm(call.Rows().rows[0][c]));
  readings->Remember(ReadingKey(call.Long("@address_no")), std::move(row));
}

// As for the customer row: a field this clerk left as read takes the other terminal's value;
// a field both changed to different values is named in the refusal (empty when none).
std::string MergeOtherTerminal(SqliteDatabase& db, int32_t address_no, const ReadRows::Row& read,
                               std::vector<Variant>& values) {
  auto rows = db.QueryRows("SELECT address_type, Name, Address_1, Address_2, City, State, Zip, Country_ID, Phone, Fax "
                           "FROM kiv_address WHERE address_no = ?",
                           {Variant(address_no)});
  if (rows.empty() || read.size() != std::size(kColumns)) return {};
  std::string both;
  for (size_t i = 0; i < std::size(kColumns); ++i) {
    Variant& mine = values[i + 1];
    std::string theirs = ReadRows::StoredForm(rows[0][i]);
    if (theirs == read[i] || ReadRows::StoredForm(mine) == theirs) continue;
    if (ReadRows::StoredForm(mine) == read[i]) {
      mine = rows[0][i];
      continue;
    }
    both += std::string(both.empty() ? "the " : ", the ") + kLabels[i];
  }
  if (both.empty()) return {};
  return "Address " + std::to_string(address_no) +
         " was changed at another terminal while it was open here, and both changed " + both +
         ". Nothing was saved: open the customer again to see the other change, and make yours again.";
}

void UpdateAddress(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  std::string type = call.Text("@address_type");
  int32_t customer_no = call.Long("@customer_no");
  int32_t address_no = call.Long("@address_no");
  if (type.empty()) return Refuse(call, "An address needs an address type.");
  if (customer_no == 0) return Refuse(call, "An address needs the customer it belongs to.");
  if (!CustomerExists(db, customer_no)) return Refuse(call, NoSuchCustomer(customer_no));

  // The address columns in table order after the number, each from its parameter.
  std::vector<Variant> values;
  values.reserve(11);
  values.push_back(Variant(address_no));
  values.push_back(Variant(type));
  for (const char* name : {"@name", "@address_1", "@address_2", "@city", "@state", "@zip", "@country_id", "@phone",
                           "@fax"})
    values.push_back(call.In(name));
  ReadRows* readings = db.Readings();
  const ReadRows::Row* read = readings != nullptr && address_no != 0 ? readings->Find(ReadingKey(address_no)) : nullptr;
  ReadRows::Row sent;
  for (size_t i = 1; i < values.size(); ++i) sent.push_back(ReadRows::StoredForm(values[i]));
  if (read != nullptr) {
    std::string refusal = MergeOtherTerminal(db, address_no, *read, values);
    if (!refusal.empty()) return Refuse(call, refusal);
    type = values[1].IsNull() ? type : values[1].ToString();
  }
  const bool primary = type == "PRIMARY";
  if (address_no == 0) {
    address_no = NextSequenceNo(db, "seq_address_no");
    values[0] = Variant(address_no);
    db.Execute("INSERT INTO kiv_address (address_no, address_type, Name, Address_1, Address_2, City, State, Zip, "
               "Country_ID, Phone, Fax) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
               values);
  } else {
    int changed = db.Execute(
        "UPDATE kiv_address SET address_type = ?2, Name = ?3, Address_1 = ?4, Address_2 = ?5, City = ?6, State = ?7, "
        "Zip = ?8, Country_ID = ?9, Phone = ?10, Fax = ?11 WHERE address_no = ?1",
        values);
    if (changed == 0) return Refuse(call, "Address " + std::to_string(address_no) + " does not exist.");
  }
  // Every customer linked to the address sees its new type; a household member editing the
  // household's shared address adds no link of its own.
  db.Execute("UPDATE kiv_customer_address SET address_type = ?, primary_address = ? WHERE address_no = ?",
             {Variant(type), Variant(primary), Variant(address_no)});
  if (db.QueryValue("SELECT 1 FROM kiv_customer_address WHERE address_no = ?", {Variant(address_no)}).IsNull())
    db.Execute("INSERT INTO kiv_customer_address (customer_no, address_no, address_type, primary_address) "
               "VALUES (?, ?, ?, ?)",
               {Variant(customer_no), Variant(address_no), Variant(type), Variant(primary)});
  if (primary)
    db.Execute("UPDATE kiv_customer_address SET primary_address = 0 WHERE address_no <> ?1 AND customer_no IN "
               "(SELECT customer_no FROM kiv_customer_address WHERE address_no = ?1)",
               {Variant(address_no)});
  if (readings != nullptr) readings->Remember(ReadingKey(address_no), std::move(sent));
  call.Out("@address_no", Variant(address_no));
  Succeed(call);
}

void DeleteAddress(ProcedureCall& call) {
  SqliteDatabase& db = call.Db();
  Variant key(call.Long("@address_no"));
  db.Execute("DELETE FROM kiv_customer_address WHERE address_no = ?", {key});
  db.Execute("DELETE FROM kiv_address WHERE address_no = ?", {key});
}

}  // namespace

void AddAddressProcedures(ProcedureRegistry& registry) {
  registry.Add({"KIV_SP_ADDRESS_GetAddress", {InInt("@address_no")}, false, GetAddress});
  registry.Add({"KIV_SP_UpdateAddress",
                {InOutInt("@address_no"), InText("@address_1", 60), InText("@address_2", 60), InText("@city", 40),
                 InText("@state", 20), InText("@zip", 15), InText("@country_id", 10), InText("@address_type", 20),
                 InText("@name", 80), InInt("@customer_no"), InText("@phone", 20), InText("@fax", 20),
                 OutText("@message", 255)},
                true,
                UpdateAddress});
  registry.Add({"SP_DeleteAddress", {InInt("@address_no")}, true, DeleteAddress});
}

}  // namespace kiv::refhost

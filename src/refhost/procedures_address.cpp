// Procedures of addresses: read one, store one (numbering new ones from the address
// sequence and keeping the customer-to-address row in step), delete one.
#include <string>

#include "refhost/procedure_helpers.h"
#include "refhost/procedure_registry.h"
#include "refhost/sequences.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

void GetAddress(ProcedureCall& call) {
  call.ReturnRows("SELECT address_no, address_type, Name, Address_1, Address_2, City, State, Zip, Country_ID, Phone, "
                  "Fax FROM kiv_address WHERE address_no = ?",
                  {Variant(call.Long("@address_no"))});
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

// Sequence numbers: one upsert with RETURNING, floored by the table's highest key.
#include "refhost/sequences.h"

#include "core/text.h"
#include "host/host_error.h"

namespace kiv::refhost {

namespace {
struct SequenceTable {
  const char* name;
  const char* table;
  const char* column;
};
constexpr SequenceTable kSequenceTables[] = {
    {"seq_customer_no", "kiv_customer", "customer_no"},
    {"seq_address_no", "kiv_address", "address_no"},
    {"seq_forecast_no", "kiv_customer_forecast", "forecast_no"},
    {"seq_salesorder_no", "kiv_sales_order", "salesorder_no"},
};
}  // namespace

int32_t NextSequenceNo(SqliteDatabase& db, const std::string& sequence_name) {
  std::string floor = "0";
  for (const auto& known : kSequenceTables)
    if (EqualsNoCase(known.name, sequence_name))
      floor = std::string("(SELECT IFNULL(MAX(") + known.column + "), 0) FROM " + known.table + ")";
  auto rows = db.QueryRows("INSERT INTO kiv_sequence (sequence_name, last_no) VALUES (?1, " + floor +
                               " + 1) ON CONFLICT (sequence_name) DO UPDATE SET last_no = MAX(last_no, " + floor +
                               ") + 1 RETURNING last_no",
                           {Variant(sequence_name)});
  if (rows.empty() || rows[0][0].IsNull()) throw HostError(kErrDatabase, "The sequence " + sequence_name + " gave no number.");
  return rows[0][0].ToLong();
}

}  // namespace kiv::refhost

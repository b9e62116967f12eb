// The lists of the forecast entry screen: the fixed category, A-or-S, segment and type
// lists with their stored keys, the countries, and the lodges a group may stay at.
#include <array>

#include "core/text.h"
#include "core/variant.h"
#include "host/db_patterns.h"
#include "screens/forecast/frm_forecast.h"
#include "screens/kit/list_fill.h"

namespace kiv {

namespace {

struct Entry {
  const char* text;
  const char* key;
};

constexpr std::array<Entry, 3> kCategories = {{{"GROUP", "GROUP"}, {"TOUR OP", "TOUROP"},
                                               {"TRAVEL AGENT", "TRAVELAGNT"}}};
constexpr std::array<Entry, 3> kAorS = {{{"A", "A"}, {"S", "S"}, {"DV", "DV"}}};
constexpr std::array<Entry, 6> kSegments = {
    {{"CORP", "CORP"}, {"COLLEGE", "COLLEGE"}, {"SOCIAL", "SOCIAL"}, {"CLUB", "CLUB"}, {"YOUTH", "YOUTH"}, {"BID", "BID"}}};
constexpr std::array<Entry, 4> kTypes = {
    {{"NEW", "NEW"}, {"RETURNING", "RETURNING"}, {"CYCLIC", "CYCLIC"}, {"LAPSED", "LAPSED"}}};

template <size_t N>
void FillFixed(ui::ComboBox& list, const std::array<Entry, N>& entries) {
  list.Clear();
  for (const Entry& e : entries) list.AddItem(e.text, e.key);
}

}  // namespace

void frmForecast::FillLists() {
  FillFixed(cmbCategory, kCategories);
  FillFixed(cmbAorS, kAorS);
  FillFixed(cmbSegment, kSegments);
  FillFixed(cmbType, kTypes);
  FillListFromQuery(cmbCountry, db_.get(), {kCountrySql, "Country_ID", "Description", false, true, true});
  FillProperties();
}

void frmForecast::FillProperties() {
  cmbProperty.Clear();
  cmbProperty.AddItem(kNoProperty, "");
  if (!db_) return;
  host::ProcedureCall call(*db_, "KIV_SP_GetGroupMembers");
  call.In("@customer_group_id", Variant(std::string(kPropertyGroup)));
  host::ScopedRecordset rs = call.Open();
  for (; rs && !rs.Eof(); rs->MoveNext()) {
    // A name is shown as stored, apostrophes and all.
    const std::string key = NzString(rs->FieldByName("customer_no").Value());
    if (cmbProperty.FindKey(key) >= 0) continue;
    cmbProperty.AddItem(NzString(rs->FieldByName("full_name").Value()), key);
  }
}

void frmForecast::SelectKey(ui::ComboBox& list, const std::string& key) {
  int index = list.FindKey(key);
  if (index < 0 && !key.empty()) index = list.AddItem(key, key);
  list.SetListIndex(index);
}

}  // namespace kiv

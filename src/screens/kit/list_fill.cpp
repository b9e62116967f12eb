// Selection lists filled from a query.
#include "screens/kit/list_fill.h"

#include "core/text.h"
#include "host/db_patterns.h"

namespace kiv {

namespace {

//! The field of that name (without regard to case); null when the recordset has none.
host::Field* FindField(host::Recordset& rs, const std::string& name) {
  for (int32_t i = 0; i < rs.FieldCount(); ++i)
    if (EqualsNoCase(rs.FieldAt(i).Name(), name)) return &rs.FieldAt(i);
  return nullptr;
}

}  // namespace

void FillListsFromQuery(std::initializer_list<ui::ComboBox*> lists, host::DBConnection* db, const ListQuery& query,
                        const std::optional<ListItem>& first) {
  for (ui::ComboBox* list : lists) {
    list->Clear();
    if (first) list->AddItem(first->text, first->key);
  }
  if (db == nullptr) return;
  host::ScopedRecordset rs = host::OpenQuery(*db, query.sql, query.scrollable);
  if (!rs || rs.Eof()) return;
  // Fields are found once: a recordset's field objects follow its current row.
  host::Field& key_field = rs->FieldByName(query.key_column);
  host::Field* text_field = query.key_when_no_text ? FindField(*rs, query.text_column) : &rs->FieldByName(query.text_column);
  for (; !rs.Eof(); rs->MoveNext()) {
    const std::string key = NzString(key_field.Value());
    std::string text = text_field != nullptr ? NzString(text_field->Value()) : std::string();
    if (text.empty() && query.key_when_no_text) text = key;
    for (ui::ComboBox* list : lists) {
      if (query.skip_duplicate_keys && list->FindKey(key) >= 0) continue;
      list->AddItem(text, key);
    }
  }
}

}  // namespace kiv

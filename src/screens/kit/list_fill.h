// The fill of selection lists from a query: one row an item, the item's key and text read
// from named columns, with an optional first item ("None", "<None>", a blank) before them.
#pragma once
#include <initializer_list>
#include <optional>
#include <string>

#include "host/db_connection.h"
#include "ui/combo_box.h"

namespace kiv {

//! Where a list's items come from.
struct ListQuery {
  std::string sql;
  std::string key_column;
  std::string text_column;
  //! Read through a scrollable recordset instead of a forward-only one.
  bool scrollable = false;
  //! A key already in the list is passed over (a query may list a key twice).
  bool skip_duplicate_keys = false;
  //! An item whose text column is missing or empty shows its key instead.
  bool key_when_no_text = false;
};

//! An item placed before the rows of the query.
struct ListItem {
  std::string text;
  std::string key;
};

//! Empties each list, adds `first` when given, then one item per row of the query (run once,
//! whatever the number of lists). Without a connection the lists are left with `first` only;
//! a query that fails leaves them so too (the host has reported it).
void FillListsFromQuery(std::initializer_list<ui::ComboBox*> lists, host::DBConnection* db, const ListQuery& query,
                        const std::optional<ListItem>& first = std::nullopt);

//! The same for one list.
inline void FillListFromQuery(ui::ComboBox& list, host::DBConnection* db, const ListQuery& query,
                              const std::optional<ListItem>& first = std::nullopt) {
  FillListsFromQuery({&list}, db, query, first);
}

}  // namespace kiv

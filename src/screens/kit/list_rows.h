// The rows of a detail-editor list page with what the clerk did to each: read from the
// database, added, changed or removed. The rows render into the page's grid (a removed
// row stays there hidden, so grid rows and list rows keep one numbering) and the save
// walks the changes in row order.
#pragma once
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/variant.h"
#include "ui/grid.h"

namespace kiv {

enum class RowState { kLoaded, kNew, kChanged, kRemoved };

struct ListRow {
  std::vector<std::string> cells;
  RowState state = RowState::kLoaded;
  //! What the page keeps beside the cells (a customer number, a row id...).
  Variant key;
  //! A removed row that had been added since the last save: nothing to write for it.
  bool added = false;
};

class ListRows {
 public:
  //! Forgets every row.
  void Clear() { rows_.clear(); }
  //! A row as the database has it; returns its index.
  size_t AddLoaded(std::vector<std::string> cells, Variant key = {});
  //! A row the clerk added; returns its index.
  size_t AddNew(std::vector<std::string> cells, Variant key = {});

  size_t Count() const { return rows_.size(); }
  const ListRow& Row(size_t index) const { return rows_.at(index); }
  //! The rows not removed.
  size_t VisibleCount() const;

  //! Writes the rows into the grid below its fixed rows, one grid row per list row, the
  //! removed ones hidden; whatever the grid held below the fixed rows goes.
  void Render(ui::Grid& grid) const;
  //! Render, then `decorate` for each list row with the grid row showing it: for the cells
  //! a page draws itself (a state flag, a check box, a shortened text).
  void Render(ui::Grid& grid, const std::function<void(int grid_row, const ListRow& row)>& decorate) const;
  //! The flag a page's hidden state column shows: none for a row as read, "1" new,
  //! "2" changed, "3" removed.
  static std::string StateFlag(RowState state);
  //! The list row shown at a grid row; -1 for a fixed row or a row beyond the list.
  int RowAt(const ui::Grid& grid, int grid_row) const;

  //! A cell edit: a loaded row becomes changed, a new one stays new; an edit that writes
  //! the text the cell already has changes nothing. False for no such row or cell, or a
  //! removed row.
  bool Edit(size_t row, size_t col, std::string text);
  //! Sets the kept value without counting as an edit.
  void SetKey(size_t row, Variant key);
  //! Removes a row: it stays, hidden, so the save can delete it; a row added since the last
  //! save is only hidden and not written. False for no such row.
  bool Remove(size_t row);

  //! True when any row is new, changed or removed (an added-then-removed row counts not).
  bool Dirty() const;
  //! Every row the save has to write, in row order: new, changed and removed rows.
  void ForEachChange(const std::function<void(size_t index, const ListRow& row)>& visit) const;
  //! The save of a list: `write` for each change in row order until one answers false.
  //! When every write succeeded the rows are marked saved; returns whether they did.
  bool WriteChanges(const std::function<bool(const ListRow& row)>& write);
  //! After a save: removed rows are gone, the others are as the database now has them.
  void MarkSaved();

 private:
  std::vector<ListRow> rows_;
};

}  // namespace kiv

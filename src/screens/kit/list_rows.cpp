// A list page's rows and their states.
#include "screens/kit/list_rows.h"

#include <algorithm>

namespace kiv {

size_t ListRows::AddLoaded(std::vector<std::string> cells, Variant key) {
  rows_.push_back(ListRow{std::move(cells), RowState::kLoaded, std::move(key), false});
  return rows_.size() - 1;
}

size_t ListRows::AddNew(std::vector<std::string> cells, Variant key) {
  rows_.push_back(ListRow{std::move(cells), RowState::kNew, std::move(key), true});
  return rows_.size() - 1;
}

size_t ListRows::VisibleCount() const {
  return static_cast<size_t>(
      std::count_if(rows_.begin(), rows_.end(), [](const ListRow& r) { return r.state != RowState::kRemoved; }));
}

void ListRows::Render(ui::Grid& grid) const {
  const int fixed = grid.FixedRows();
  grid.SetRows(fixed);
  for (const ListRow& row : rows_) {
    std::string line;
    for (size_t c = 0; c < row.cells.size(); ++c) {
      if (c > 0) line += '\t';
      line += row.cells[c];
    }
    grid.AddItem(line);
    if (row.state == RowState::kRemoved) grid.SetRowHidden(grid.Rows() - 1, true);
  }
}

void ListRows::Render(ui::Grid& grid, const std::function<void(int, const ListRow&)>& decorate) const {
  Render(grid);
  for (size_t i = 0; i < rows_.size(); ++i) decorate(grid.FixedRows() + static_cast<int>(i), rows_[i]);
}

std::string ListRows::StateFlag(RowState state) {
  switch (state) {
    case RowState::kNew: return "1";
    case RowState::kChanged: return "2";
    case RowState::kRemoved: return "3";
    case RowState::kLoaded: return "";
  }
  return "";
}

int ListRows::RowAt(const ui::Grid& grid, int grid_row) const {
  const int index = grid_row - grid.FixedRows();
  if (index < 0 || static_cast<size_t>(index) >= rows_.size()) return -1;
  return index;
}

bool ListRows::Edit(size_t row, size_t col, std::string text) {
  if (row >= rows_.size() || col >= rows_[row].cells.size()) return false;
  ListRow& r = rows_[row];
  if (r.state == RowState::kRemoved) return false;
  if (r.cells[col] == text) return true;
  r.cells[col] = std::move(text);
  if (r.state == RowState::kLoaded) r.state = RowState::kChanged;
  return true;
}

void ListRows::SetKey(size_t row, Variant key) {
  if (row < rows_.size()) rows_[row].key = std::move(key);
}

bool ListRows::Remove(size_t row) {
  if (row >= rows_.size()) return false;
  rows_[row].state = RowState::kRemoved;
  return true;
}

bool ListRows::Dirty() const {
  return std::any_of(rows_.begin(), rows_.end(), [](const ListRow& r) {
    if (r.state == RowState::kRemoved) return !r.added;
    return r.state != RowState::kLoaded;
  });
}

void ListRows::ForEachChange(const std::function<void(size_t, const ListRow&)>& visit) const {
  for (size_t i = 0; i < rows_.size(); ++i) {
    const ListRow& r = rows_[i];
    if (r.state == RowState::kLoaded) continue;
    if (r.state == RowState::kRemoved && r.added) continue;
    visit(i, r);
  }
}

bool ListRows::WriteChanges(const std::function<bool(const ListRow&)>& write) {
  bool ok = true;
  ForEachChange([&](size_t, const ListRow& row) {
    if (ok) ok = write(row);
  });
  if (ok) MarkSaved();
  return ok;
}

void ListRows::MarkSaved() {
  std::erase_if(rows_, [](const ListRow& r) { return r.state == RowState::kRemoved; });
  for (ListRow& r : rows_) {
    r.state = RowState::kLoaded;
    r.added = false;
  }
}

}  // namespace kiv

// What a front end reads from a grid and does to it by name: the current cell, the
// selection, cells as shown, and the clerk's clicks, selections, edits and outline boxes.
#include "core/text.h"
#include "ui/grid.h"
#include "ui/prop_text.h"

namespace kiv::ui {

namespace {

std::string CurrentCell(const Grid& g) {
  if (g.Row() < 0 || g.Row() >= g.Rows() || g.Col() < 0 || g.Col() >= g.Cols()) return {};
  return g.DisplayText(g.Row(), g.Col());
}

}  // namespace

std::optional<std::string> Grid::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "text" || p == "value") return CurrentCell(*this);
  if (p == "checked") {
    // Nothing current (row -1) asks for a cell outside the grid: that is an error to report.
    if (row_ < Rows() && col_ < cols_) return BoolText(CellChecked(row_, col_) == flexChecked);
    return std::nullopt;
  }
  if (p == "selected") {
    std::string out;
    for (int r : SelectedRowList()) out += (out.empty() ? "" : ",") + std::to_string(r);
    return out;
  }
  if (p == "count" || p == "rows") return std::to_string(Rows() - fixed_rows_);
  if (p == "cols") return std::to_string(cols_);
  int r = 0;
  int c = 0;
  std::string arg;
  if (ReadPair(p, r, c)) return DisplayText(r, c);
  if (ReadIndexed(p, "colhidden", arg)) return BoolText(ColHidden(ParseIntText(arg)));
  if (ReadIndexed(p, "rowhidden", arg)) return BoolText(RowHidden(ParseIntText(arg)));
  if (ReadIndexed(p, "checked", arg) && ReadPair("[" + arg + "]", r, c)) {
    return BoolText(CellChecked(r, c) == flexChecked);
  }
  return Control::QueryState(name);
}

std::string Grid::RefuseAction(const Action& action) const {
  auto outside = [this](int r) { return r < fixed_rows_ || r >= Rows(); };
  switch (action.kind) {
    case ActionKind::Click: {
      int row = 0;
      if (!action.text.empty() && !TryParseInt(action.text, row)) return "not a row number: " + action.text;
      return {};
    }
    case ActionKind::Select:
    case ActionKind::Edit:
    case ActionKind::Expand:
      if (action.rows.empty()) return "which row of " + Name() + "?";
      for (int r : action.rows) {
        if (outside(r)) return Name() + " has no row " + std::to_string(r);
      }
      return {};
    case ActionKind::DblClick:
      if (action.rows.empty()) return "which row of " + Name() + "?";
      if (outside(action.rows[0])) return Name() + " has no row " + std::to_string(action.rows[0]);
      return {};
    default:
      return Control::RefuseAction(action);
  }
}

UiResult Grid::ApplyAction(const Action& action) {
  auto answer = [](const std::string& error) { return error.empty() ? UiResult::Ok() : UiResult::Fail(error); };
  int row = 0;
  switch (action.kind) {
    case ActionKind::Click:
      if (action.text.empty() || !TryParseInt(action.text, row)) return Control::ApplyAction(action);
      SelectRows({row});
      return UiResult::Ok();
    case ActionKind::Select:
      SelectRows(action.rows);
      return UiResult::Ok();
    case ActionKind::Edit: return answer(EditCell(action.rows.at(0), action.col, action.text));
    case ActionKind::Expand: return answer(ToggleOutline(action.rows.at(0)));
    case ActionKind::DblClick: return answer(DoubleClickRow(action.rows.at(0)));
    default: return Control::ApplyAction(action);
  }
}

}  // namespace kiv::ui

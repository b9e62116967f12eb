// The pick list: header from the field names, rows with nulls as empty text, the choice by
// OK or double click, and the lookup of a chosen column by name.
#include "screens/common/frm_pick.h"

#include <algorithm>

#include "core/text.h"

namespace kiv {

namespace {

//! Grid widths are in twips: about a character's width per letter of the header, plus a margin.
constexpr int kTwipsPerChar = 110, kWidthMargin = 240;

//! A name with "_" and blank folded to one character and letters to upper case.
std::string Folded(const std::string& name) { return UCase(Replace(name, "_", " ")); }

}  // namespace

frmPick::frmPick()
    : Screen("frmPick"),
      gdPick(Add<ui::Grid>("gdPick")),
      cmdOk(Add<ui::CommandButton>("cmdOk", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Pick");
  cmdOk.SetDefault(true);
  cmdCancel.SetCancel(true);
  gdPick.SetSelectionMode(ui::flexSelectionByRow);
  gdPick.SetEditable(ui::flexEDNone);
  WireEvents();
}

std::string frmPick::HeaderOf(const std::string& field_name) { return Replace(field_name, "_", " "); }

void frmPick::WireEvents() {
  OnClick(cmdOk, [this] { Choose(); });
  OnDblClick(gdPick, [this] {
    // A double click on the header row picks nothing.
    if (gdPick.MouseRow() >= gdPick.FixedRows()) Choose();
  });
  cmdCancel.on_click = [this] {
    canceled_ = true;
    chosen_ = -1;
    Hide();
  };
  on_query_unload = [this](int&, int mode) {
    if (mode == ui::vbFormControlMenu) {
      canceled_ = true;
      chosen_ = -1;
    }
  };
  on_unload = [this](int&) {
    // The rows may be large: nothing of them outlives the screen.
    gdPick.Clear();
    gdPick.SetRows(gdPick.FixedRows());
  };
}

void frmPick::FillFromRecordset(host::Recordset& rs) {
  FillingScope filling(*this);
  names_.clear();
  rows_.clear();
  canceled_ = true;
  chosen_ = -1;
  const int32_t count = rs.FieldCount();
  std::string format;
  for (int32_t c = 0; c < count; ++c) {
    names_.push_back(rs.FieldAt(c).Name());
    format += (c == 0 ? "" : "|") + HeaderOf(names_.back());
  }
  gdPick.Reset();
  gdPick.SetSelectionMode(ui::flexSelectionByRow);
  gdPick.SetEditable(ui::flexEDNone);
  gdPick.SetFormatString(format);
  for (int32_t c = 0; c < count; ++c)
    gdPick.SetColWidth(c, static_cast<int>(HeaderOf(names_[static_cast<size_t>(c)]).size()) * kTwipsPerChar +
                              kWidthMargin);
  for (; !rs.Eof(); rs.MoveNext()) {
    std::vector<Variant> values;
    std::string line;
    for (int32_t c = 0; c < count; ++c) {
      Variant v = rs.FieldAt(c).Value();
      line += (c == 0 ? "" : "\t") + NzString(v);
      values.push_back(std::move(v));
    }
    rows_.push_back(std::move(values));
    gdPick.AddItem(line);
  }
  if (!rows_.empty()) gdPick.SetRow(gdPick.FixedRows());
}

void frmPick::Choose() {
  const int row = gdPick.Row() - gdPick.FixedRows();
  if (row < 0 || row >= static_cast<int>(rows_.size())) return;
  chosen_ = row;
  canceled_ = false;
  Hide();
}

int frmPick::FieldIndex(const std::string& name) const {
  for (size_t i = 0; i < names_.size(); ++i)
    if (EqualsNoCase(names_[i], name)) return static_cast<int>(i);
  const std::string folded = Folded(name);
  for (size_t i = 0; i < names_.size(); ++i)
    if (Folded(names_[i]) == folded) return static_cast<int>(i);
  return -1;
}

Variant frmPick::ColumnValue(const std::string& name) const {
  if (canceled_ || chosen_ < 0 || chosen_ >= static_cast<int>(rows_.size())) return Variant::Null();
  const int field = FieldIndex(name);
  if (field < 0) return Variant::Null();
  return rows_[static_cast<size_t>(chosen_)][static_cast<size_t>(field)];
}

}  // namespace kiv

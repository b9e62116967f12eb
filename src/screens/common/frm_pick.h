// The pick list: any recordset shown as a grid, one row chosen by OK or a double click.
// The caller sets the caption, hands over the rows, shows the screen modally and then
// reads a named column of the chosen row.
#pragma once
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/recordset.h"
#include "screens/kit/screen.h"
#include "ui/command_button.h"
#include "ui/grid.h"

namespace kiv {

class frmPick : public Screen {
 public:
  frmPick();

  //! Lays the grid out for the recordset's fields and copies every record into it, from the
  //! current position to the end; the recordset is left at its end and stays open.
  void FillFromRecordset(host::Recordset& rs);
  //! True until a row was chosen with OK or a double click; Cancel and the close box set it.
  bool Canceled() const { return canceled_; }
  //! The value of the chosen row's column `name`: the field whose name matches without regard
  //! to case, or else the first field whose name matches once "_" and blank are taken as the
  //! same character (headers show blanks). Null when no row was chosen or no field matches.
  Variant ColumnValue(const std::string& name) const;
  //! The chosen data row counted from 0; -1 when none.
  int ChosenRow() const { return chosen_; }
  //! The header a field name gets: every "_" a blank.
  static std::string HeaderOf(const std::string& field_name);

  ui::Grid& gdPick;
  ui::CommandButton& cmdOk;
  ui::CommandButton& cmdCancel;

 private:
  void WireEvents();
  //! Chooses the grid's current data row and closes; with no data row the pick stays canceled.
  void Choose();
  int FieldIndex(const std::string& name) const;

  std::vector<std::string> names_;
  std::vector<std::vector<Variant>> rows_;
  bool canceled_ = true;
  int chosen_ = -1;
};

}  // namespace kiv

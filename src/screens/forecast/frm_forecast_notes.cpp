// The notes of a forecast: one text box under a tab strip, each tab one of the six notes
// columns. The text on show is kept back into its column whenever the tab changes and on OK.
#include "screens/forecast/frm_forecast.h"

namespace kiv {

using namespace forecast;

void frmForecast::ShowNotesTab(int index) {
  // Tabs count from 1.
  if (index < 1 || index > static_cast<int>(kNotesTabs.size())) return;
  FillingScope filling(*this);
  notes_tab_ = index;
  txtNotes.SetText(cells_[kNotesTabs[static_cast<size_t>(index - 1)].column]);
}

void frmForecast::StoreNotesTab() {
  if (notes_tab_ < 1 || notes_tab_ > static_cast<int>(kNotesTabs.size())) return;
  cells_[kNotesTabs[static_cast<size_t>(notes_tab_ - 1)].column] = txtNotes.Text();
}

}  // namespace kiv

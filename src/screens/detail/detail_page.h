// A page of the customer detail editor beyond the general page: its list is read the
// first time the page is shown, it keeps its own unsaved-changes flag, and the editor
// saves it in its place of the fixed save order. Each page is one class that registers
// itself with the editor.
#pragma once
#include <string>

namespace kiv {

class frmCustomerDetail;

//! Where a page's list is written in the editor's save sequence; lower saves first.
enum class DetailSaveSlot : int {
  kNone = 0,  //!< a read-only page: never saved
  kForecasts = 1,
  kRelationships = 2,
  kCustomFields = 3,
  kRentalSettings = 4,
  kEmployer = 5,
  kGroupMemberships = 6,
};

//! The question a page asks before Refresh throws its unsaved changes away.
struct RefreshConfirmation {
  std::string prompt;
  std::string title;
};

class DetailPage {
 public:
  virtual ~DetailPage() = default;

  //! The tabCustomer index the page is shown on (several pages may share one tab).
  virtual int TabIndex() const = 0;
  //! Its place in the save sequence.
  virtual DetailSaveSlot SaveSlot() const { return DetailSaveSlot::kNone; }

  //! Re-captions and shows the page buttons and lays the shared grids out for this page;
  //! runs on every switch to its tab, after the editor has hidden the buttons and cleared
  //! the grids.
  virtual void Activate(frmCustomerDetail& screen) = 0;
  //! The editor is switching away from the page's tab: hides whatever the page added to the
  //! editor beside the shared buttons and grids.
  virtual void Deactivate(frmCustomerDetail&) {}
  //! Reads the page's list from the database; the editor calls it the first time the tab
  //! is shown after filling or after Refresh. Drops unsaved changes.
  virtual void Load(frmCustomerDetail& screen) = 0;
  //! Writes the page's changes; false when the save failed (the page stays dirty).
  virtual bool Save(frmCustomerDetail&) { return true; }
  //! The page holds changes not yet saved.
  virtual bool Dirty() const { return false; }
  //! Forgets every change and loaded row: the editor is being filled with a record again.
  virtual void Reset() {}
  //! The question Refresh asks while the page is dirty; an empty prompt asks nothing.
  virtual RefreshConfirmation RefreshQuestion() const { return {}; }
  //! False for a page that Refresh leaves alone even on its own tab.
  virtual bool ReloadsOnRefresh() const { return true; }
  //! One of the page buttons was clicked while the page is active: 1 to 3 for cmdButton1..3,
  //! 4 for cmdEmployeerLookup, 5 for cmdEmployerClear.
  virtual void ButtonClicked(frmCustomerDetail&, int) {}
  //! "View CC Data" was switched: a page with card columns shows the full or the masked
  //! column. Runs for every page, shown or not, so a page loaded later starts in step.
  virtual void ShowCardData(frmCustomerDetail&, bool) {}
};

}  // namespace kiv

namespace kiv {

//! Gives a new editor one of each page the component offers, in the order Refresh reloads
//! the pages of a shared tab. A new page class is added here with one line.
void AddDetailPages(frmCustomerDetail& screen);

}  // namespace kiv

// The history log page (tab 5): the customer's access history in grdMaster, shown while
// ckbShowHistoryLog is ticked and read a hundred records at a time, the clerk asked before
// the first hundred of a long history and before each further hundred.
#pragma once
#include <string>

#include "screens/detail/detail_page.h"

namespace kiv {

namespace ui {
class CheckBox;
}

class HistoryLogPage : public DetailPage {
 public:
  static constexpr const char* kHistoryFormat = "Date|Access#|Lift|TransType|Status|^Units|PostAmt|Response";
  //! Records read between two questions; the grid's header row counts towards it.
  static constexpr int kPageSize = 100;
  static constexpr const char* kOverLimitTitle = "Results Over Limit";

  explicit HistoryLogPage(frmCustomerDetail& screen);

  int TabIndex() const override;
  void Activate(frmCustomerDetail& screen) override;
  void Deactivate(frmCustomerDetail& screen) override;
  //! Reads the history when the box is ticked, else leaves the grid with its header.
  void Load(frmCustomerDetail& screen) override;

  //! The question before the first hundred of `count` records.
  static std::string FirstQuestion(int count);
  //! The question before the next hundred, `left` records still unread.
  static std::string NextQuestion(int left);

  ui::CheckBox& ckbShowHistoryLog;
};

}  // namespace kiv

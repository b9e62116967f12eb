// The will calls page (tab 6): the customer's will calls in grdMaster and "Print", which
// hands them to the host's will-call screen at the workstation's register once the
// register is there and cashed in and no new photograph waits to be saved.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "screens/detail/detail_page.h"

namespace kiv {

namespace host {
class WillCallService;
}

class WillCallsPage : public DetailPage {
 public:
  static constexpr const char* kWillCallFormat =
      "WC#|Access#|Description|Customer|For Customer|SO Customer|Valid Date|^Status|Processed|User Printed";
  enum Column : int { kColWillCallNo = 0, kColAccessNo = 1 };

  int TabIndex() const override;
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! The print command; each refusal shows its box and prints nothing.
  void Print(frmCustomerDetail& screen);

 private:
  void Render(frmCustomerDetail& screen) const;

  std::vector<std::string> rows_;
  //! Created on the first print and kept for the next.
  std::shared_ptr<host::WillCallService> will_call_;
};

}  // namespace kiv

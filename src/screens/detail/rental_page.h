// The rental contracts page of the detail editor (tab 11): the equipment the customer
// rented, one row per piece, read-only, and the reprint of a contract through the suite's
// report service.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "screens/detail/detail_page.h"

namespace kiv {

class RentalPage : public DetailPage {
 public:
  static constexpr int kTabRental = 11;
  enum Column : int { kColContractNo = 0 };
  static constexpr const char* kGridFormat =
      "Con#|D/T Equip Out|Description|Status|Rent Start|Rent End|>Days|>Amount|>Daily Rate|D/T Return|Loc|Rtn Loc|"
      "Serial|Voucher|Din|Binding";
  static constexpr const char* kReportKey = "CUST_RENT";
  static constexpr const char* kReportParameters = "{{contract_no}};{{customer_no}}";

  //! A page registered with the editor and answering its "Reprint Rental Contract..." menu.
  static std::unique_ptr<RentalPage> Attached(frmCustomerDetail& screen);

  int TabIndex() const override { return kTabRental; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override { rows_.clear(); }
  void ButtonClicked(frmCustomerDetail& screen, int which) override;

  //! "Reprint Rental Contract...": the contract of the selected row, printed again.
  void ReprintContract(frmCustomerDetail& screen);

  static std::string ReportParameterText(int32_t contract_no, int32_t customer_no);
  static std::string ReportSelection(int32_t contract_no);

 private:
  void Render(frmCustomerDetail& screen) const;

  //! The rows as read, each the tab-joined cells of one grid row.
  std::vector<std::string> rows_;
};

}  // namespace kiv

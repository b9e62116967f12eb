// The access products page (tab 4): the customer's passes and tickets in grdMaster with an
// editable Locked box, the items of the selected product in grdDetail, and the lock and
// unlock of a product through the register's access procedure.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "screens/detail/detail_page.h"

namespace kiv {

class AccessProductsPage : public DetailPage {
 public:
  static constexpr const char* kProductFormat = "Access#|Active|Locked|Valid|Exp|Message";
  static constexpr const char* kItemFormat =
      "SONo|SeqNo|Description|Active|^Sold|^Ref|^Used|^Avail|>SaleAmt|>RefAmt|>Value|TransType";
  enum ProductColumn : int { kColAccessNo = 0, kColActive, kColLocked, kColValid, kColExp, kColMessage };
  static constexpr int kColSaleAmt = 8, kColRefAmt = 9, kColValue = 10;
  //! The message a lock from the customer screen leaves on the product.
  static constexpr const char* kLockMessage = "LOCKED FROM CUSTOMER MAINTENANCE";

  int TabIndex() const override;
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override { rows_.clear(); }

  //! Loads the items of the product on the grid's current row.
  void RowChanged(frmCustomerDetail& screen);
  //! The clerk changed the Locked box of a row: lock or unlock, the box put back on refusal.
  void LockedEdited(frmCustomerDetail& screen, int row);
  //! Locks ("L") or unlocks ("U") the product; false (after the refusal's box) when refused.
  static bool UpdateAccessTrx(frmCustomerDetail& screen, int32_t access_no, const std::string& update_action,
                              const std::string& message);

 private:
  void Render(frmCustomerDetail& screen);

  //! The products as read, tab-joined, Locked as "True" or "False".
  std::vector<std::string> rows_;
};

}  // namespace kiv

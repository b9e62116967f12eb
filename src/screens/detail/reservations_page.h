// The reservations page of the detail editor: the customer's reservations in grdMaster,
// filtered by the tab of tabReservations whose key is their stored status, the change log
// of the selected reservation in grdDetail, and the commands that hand a reservation to the
// host's reservation screens (new, edit, book, unbook) or print its contract.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "screens/detail/detail_page.h"

namespace kiv {

namespace host {
class ReservationService;
}
namespace ui {
class CommandButton;
class Panel;
class TabStrip;
}  // namespace ui

class ReservationsPage : public DetailPage {
 public:
  static constexpr int kTabIndex = 8;
  static constexpr const char* kReservationFormat =
      "Hdr#|Res#|Res Date|Status|Resource|Mtn|Location|Cust|Pro|^Req|SO|SOline|CC|CC|Lodge|Phone|Coordinator "
      "Note|Comment";
  static constexpr const char* kLogFormat =
      "Log#|Created|User|Res Date|Status|Resource|Mtn|Location|Cust|Pro|^Req|SO|SOline|CC|CC|Lodge|Phone|Coordinator "
      "Note|Comment";
  enum ReservationColumn : int { kColHeaderNo = 0, kColResNo = 1, kColResDate = 2, kColStatus = 3 };
  //! The card cells: the masked one shows while "View CC Data" is off, the other while it is on.
  static constexpr int kColCardMasked = 12, kColCardShown = 13;
  static constexpr int kLogColStatus = 4, kLogColCardMasked = 13, kLogColCardShown = 14;
  //! The tabs of tabReservations: caption and the stored status they list.
  static constexpr const char* kBooked = "BOOKED";
  static constexpr const char* kOpen = "OPEN";
  static constexpr const char* kCancelled = "CANCELLED";

  explicit ReservationsPage(frmCustomerDetail& screen);

  int TabIndex() const override { return kTabIndex; }
  void Activate(frmCustomerDetail& screen) override;
  void Deactivate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  void Reset() override;
  void ShowCardData(frmCustomerDetail& screen, bool shown) override;

  // ---- the page commands ----
  void NewReservation(frmCustomerDetail& screen);
  void EditReservation(frmCustomerDetail& screen);
  void PrintContract(frmCustomerDetail& screen);
  void BookReservations(frmCustomerDetail& screen);
  void UnbookReservation(frmCustomerDetail& screen);

  //! Loads the log of the reservation on the grid's current row.
  void RowChanged(frmCustomerDetail& screen);
  //! Shows the reservations of the selected tab; the log is cut back to its header.
  void TabSwitched(frmCustomerDetail& screen);

  ui::Panel& picReservations;
  ui::TabStrip& tabReservations;
  ui::CommandButton& cmdNewReservation;
  ui::CommandButton& cmdEditReservation;
  ui::CommandButton& cmdPrintContract;
  ui::CommandButton& cmdBookReservation;
  ui::CommandButton& cmdUnbookReservation;

 private:
  struct Row {
    std::string text;  //!< the grid row, tab-joined
    std::string status;
  };
  bool Showing(const frmCustomerDetail& screen) const;
  void LayOutGrids(frmCustomerDetail& screen) const;
  void Render(frmCustomerDetail& screen);
  void Reload(frmCustomerDetail& screen);
  //! The selected data rows of grdMaster.
  static std::vector<int> Selected(const frmCustomerDetail& screen);
  static std::shared_ptr<host::ReservationService> Service(const frmCustomerDetail& screen);
  // The host's reservation operations; each does nothing and answers false when the host
  // has no reservation service, and true when something changed.
  static bool EditReservations(frmCustomerDetail& screen);
  static bool EditReservationByNo(frmCustomerDetail& screen, int32_t res_header_no, int32_t res_no);
  static bool UnBookReservationByNo(frmCustomerDetail& screen, int32_t res_no);
  //! The grid's row reads as a number in column `col`; 0 when empty.
  static int32_t CellNumber(const frmCustomerDetail& screen, int row, int col);

  std::vector<Row> rows_;
  bool card_shown_ = false;
  //! The grdMaster row whose log grdDetail shows; -1 when it shows none.
  int log_row_ = -1;
};

}  // namespace kiv

// The reference host's reservation service: its editor is the host's own small form, and
// every change it makes to a reservation is written with a log row. Each operation answers
// true only when a reservation changed.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "host/suite_services.h"
#include "refhost/sqlite_database.h"
#include "ui/ui.h"

namespace kiv::refhost {

class RefReservationEditor;

class RefReservationService : public host::ReservationService {
 public:
  //! `ui` shows the editor; `user` is who the log rows name.
  RefReservationService(std::shared_ptr<SqliteDatabase> db, std::string user, std::shared_ptr<ui::Ui> ui);
  ~RefReservationService() override;

  //! A new reservation for the customer, written when the clerk clicks OK.
  bool EditReservations(int32_t customer_no, int32_t household_no) override;
  //! The editor on `res_no`, or on the first reservation of the header when `res_no` is 0.
  bool EditReservationByNo(int32_t customer_no, int32_t res_header_no, int32_t res_no) override;
  //! As EditReservationByNo; a true `read_only` shows the editor and keeps nothing.
  bool EditRentalReservation(int32_t customer_no, int32_t res_header_no, int32_t res_no,
                             const Variant& read_only) override;
  //! Sets "CANCELLED".
  bool CancelRentalReservation(int32_t res_no) override;
  //! Sets "OPEN", the status the screens call unbooked.
  bool UnBookReservationByNo(int32_t customer_no, int32_t res_no) override;

  //! The editor, for a front end that wants to show it elsewhere.
  RefReservationEditor& Editor() { return *editor_; }

 private:
  //! Shows the editor modally; true when the clerk accepted.
  bool ShowEditor();

  std::shared_ptr<SqliteDatabase> db_;
  std::string user_;
  std::shared_ptr<ui::Ui> ui_;
  std::unique_ptr<RefReservationEditor> editor_;
};

}  // namespace kiv::refhost

// Reservation changes made through the reference host's editor.
#include "refhost/ref_reservation_service.h"

#include "refhost/ref_reservation_editor.h"
#include "refhost/reservation_store.h"

namespace kiv::refhost {

RefReservationService::RefReservationService(std::shared_ptr<SqliteDatabase> db, std::string user,
                                             std::shared_ptr<ui::Ui> ui)
    : db_(std::move(db)), user_(std::move(user)), ui_(std::move(ui)), editor_(std::make_unique<RefReservationEditor>()) {
  if (ui_) editor_->SetUi(ui_);
}

RefReservationService::~RefReservationService() = default;

bool RefReservationService::ShowEditor() {
  if (!ui_) return false;
  editor_->Show(ui::vbModal);
  return editor_->Accepted();
}

bool RefReservationService::EditReservations(int32_t customer_no, int32_t) {
  ReservationChange values;
  values.status_id = "BOOKED";
  values.res_start = Variant(db_->Now().DateOnly());
  editor_->Fill(values, "New reservation");
  if (!ShowEditor()) return false;
  ReservationStore(*db_).Create(customer_no, editor_->Values(), user_);
  return true;
}

bool RefReservationService::EditReservationByNo(int32_t customer_no, int32_t res_header_no, int32_t res_no) {
  return EditRentalReservation(customer_no, res_header_no, res_no, Variant());
}

bool RefReservationService::EditRentalReservation(int32_t customer_no, int32_t res_header_no, int32_t res_no,
                                                  const Variant& read_only) {
  ReservationStore store(*db_);
  if (res_no == 0) res_no = store.FirstOfHeader(res_header_no);
  ReservationChange values;
  if (res_no == 0 || !store.Belongs(res_no, customer_no) || !store.Read(res_no, values)) return false;
  editor_->Fill(values, "Reservation " + std::to_string(res_no));
  if (!ShowEditor()) return false;
  if (!read_only.IsEmpty() && NzBool(read_only)) return false;
  return store.Apply(res_no, editor_->Values(), user_);
}

bool RefReservationService::CancelRentalReservation(int32_t res_no) {
  return ReservationStore(*db_).SetStatus(res_no, "CANCELLED", user_);
}

bool RefReservationService::UnBookReservationByNo(int32_t customer_no, int32_t res_no) {
  ReservationStore store(*db_);
  if (!store.Belongs(res_no, customer_no)) return false;
  return store.SetStatus(res_no, "OPEN", user_);
}

}  // namespace kiv::refhost

// The reference host's reservations as the reservation screens change them: every change
// to a reservation is written together with a row of its change log, so the log always
// shows how the reservation came to be what it is.
#pragma once
#include <cstdint>
#include <string>

#include "core/variant.h"

namespace kiv::refhost {

class SqliteDatabase;

//! What the reservation editor lets a clerk change.
struct ReservationChange {
  std::string status_id;  //!< "BOOKED", "OPEN" or "CANCELLED"
  Variant res_start;      //!< a Date
  std::string resource_description;
  std::string comment_note;
};

class ReservationStore {
 public:
  explicit ReservationStore(SqliteDatabase& db) : db_(db) {}

  //! True when the reservation exists and belongs to the customer (0 accepts any customer).
  bool Belongs(int32_t res_no, int32_t customer_no) const;
  //! The reservation as it stands; false when there is none.
  bool Read(int32_t res_no, ReservationChange& out) const;
  //! Writes the change and its log row in one transaction; false (nothing written) when the
  //! reservation does not exist or the change would leave it as it was.
  bool Apply(int32_t res_no, const ReservationChange& change, const std::string& user);
  //! A new reservation of the customer, its own header, with its first log row; its number.
  int32_t Create(int32_t customer_no, const ReservationChange& values, const std::string& user);
  //! Sets only the status; false when it already has it or does not exist.
  bool SetStatus(int32_t res_no, const std::string& status_id, const std::string& user);
  //! Adds the reservation's current state to its log.
  void WriteLog(int32_t res_no, const std::string& user);
  //! The reservation numbers under a header, first the lowest.
  int32_t FirstOfHeader(int32_t res_header_no) const;

 private:
  SqliteDatabase& db_;
};

}  // namespace kiv::refhost

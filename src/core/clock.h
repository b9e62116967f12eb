// Where "now" comes from. Everything asks an injected clock, never the system directly,
// so that tests and scripts can fix today's date.
#pragma once
#include "core/date.h"

namespace kiv {

class Clock {
 public:
  virtual ~Clock();
  //! The current date and time.
  virtual Date Now() const = 0;
  //! The current date with the time dropped.
  Date Today() const;
};

//! The machine's local time, to the second.
class SystemClock : public Clock {
 public:
  Date Now() const override;
};

//! A clock that stands still at the time it is given until told otherwise.
class FixedClock : public Clock {
 public:
  explicit FixedClock(Date now = Date()) : now_(now) {}
  Date Now() const override { return now_; }
  void SetNow(Date now) { now_ = now; }

 private:
  Date now_;
};

}  // namespace kiv

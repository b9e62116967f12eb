// What the customer record needs of the host's card-entry object when it stores the card
// just swiped or typed as a card on file. The host's card control implements it.
#pragma once
#include <cstdint>
#include <string>

#include "core/variant.h"

namespace kiv {

class CardEntry {
 public:
  virtual ~CardEntry() = default;
  //! The two magnetic-stripe tracks (empty when the card was typed).
  virtual std::string Track1() const = 0;
  virtual std::string Track2() const = 0;
  virtual std::string CardNo() const = 0;
  virtual Variant ExpDate() const = 0;
  virtual std::string Zip() const = 0;
  virtual std::string Address() const = 0;
  //! The masked card number.
  virtual std::string XCardNo() const = 0;
  virtual std::string PayMethodID() const = 0;
  //! Told the owning customer's number once the card is stored.
  virtual void SetCustomerNo(int32_t customer_no) = 0;
};

}  // namespace kiv

// The dynamically typed value that crosses every seam of the component: database
// fields, parameters, control values. Conversions follow the platform's rules.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/date.h"
#include "core/vb_error.h"

namespace kiv {

using Bytes = std::vector<uint8_t>;

//! Money with four decimal places, kept as a scaled integer.
struct Currency {
  int64_t scaled = 0;  // value * 10000
  static Currency FromDouble(double v);
  double ToDouble() const { return static_cast<double>(scaled) / 10000.0; }
  auto operator<=>(const Currency&) const = default;
};

enum class VarType { Empty, Null, Boolean, Integer, Long, Double, Currency, Date, String, Bytes };

class Variant {
 public:
  Variant() = default;  // Empty
  Variant(bool v) : v_(v) {}
  Variant(int16_t v) : v_(v) {}
  Variant(int32_t v) : v_(v) {}
  Variant(double v) : v_(v) {}
  Variant(Currency v) : v_(v) {}
  Variant(Date v) : v_(v) {}
  Variant(std::string v) : v_(std::move(v)) {}
  Variant(const char* v) : v_(std::string(v)) {}
  Variant(std::string_view v) : v_(std::string(v)) {}
  Variant(Bytes v) : v_(std::move(v)) {}
  // Wider integers become Long when they fit, else Double (as a decimal column would).
  Variant(int64_t v);

  static Variant Null();

  VarType Type() const;
  bool IsEmpty() const { return Type() == VarType::Empty; }
  bool IsNull() const { return Type() == VarType::Null; }
  //! True for Boolean, Integer, Long, Double and Currency.
  bool IsNumber() const;

  // Strict conversions (CBool, CInt, CLng, CDbl, CCur, CDate, CStr): Null raises 94,
  // text that is not a number raises 13, a value out of range raises 6.
  bool ToBool() const;
  int16_t ToInt() const;
  int32_t ToLong() const;
  double ToDouble() const;
  Currency ToCurrency() const;
  Date ToDate() const;
  //! Text as CStr gives it: Empty "", Boolean "True"/"False", numbers plain decimal (15
  //! significant digits), dates "M/D/YYYY" with " h:mm:ss AM/PM" after it when there is a
  //! time; a date on the zero day shows only its time (the zero date is "12:00:00 AM").
  std::string ToString() const;
  //! The bytes of a Bytes value, or the text's bytes of a String; raises 13 otherwise.
  Bytes ToBytes() const;

  //! Equality as the platform's "=" on like types; values of different kinds compare by
  //! number when both are numeric, else by text. Null equals nothing, Empty equals Empty.
  bool Equals(const Variant& other) const;
  bool operator==(const Variant& other) const { return Equals(other); }

 private:
  struct NullTag {
    bool operator==(const NullTag&) const = default;
  };
  std::variant<std::monostate, NullTag, bool, int16_t, int32_t, double, Currency, Date, std::string, Bytes> v_;
  friend struct VariantAccess;
};

// The platform's conversion functions, by their names.
inline bool CBool(const Variant& v) { return v.ToBool(); }
inline int16_t CInt(const Variant& v) { return v.ToInt(); }
inline int32_t CLng(const Variant& v) { return v.ToLong(); }
inline double CDbl(const Variant& v) { return v.ToDouble(); }
inline std::string CStr(const Variant& v) { return v.ToString(); }
inline Date CDate(const Variant& v) { return v.ToDate(); }

//! The leading number of a text: "15abc" is 15, " 1 2" is 12, "" and "abc" are 0.
double Val(std::string_view text);
//! Whether the value converts to a number (Empty counts; Null does not).
bool IsNumeric(const Variant& v);

// Null conversion of values read from the database: null (and Empty) to empty text,
// 0, False or the zero date; other values converted leniently (bad text gives 0/False,
// the zero date or ""); a number too large for the target still raises overflow (6).
std::string NzString(const Variant& v);
int16_t NzInt(const Variant& v);
int32_t NzLong(const Variant& v);
double NzDouble(const Variant& v);
bool NzBool(const Variant& v);
Date NzDate(const Variant& v);

//! The number itself when it is finite; an infinity or NaN raises overflow (6), since no
//! numeric field of a record or column can hold one.
double FiniteNumber(double v);

//! Plain decimal text of a number, as the platform prints it ("15", "1.5", "-0.25").
std::string NumberToText(double v);

}  // namespace kiv

// Any value of any kind through every conversion and through Format with any format text.
// The first byte picks the kind, the next eight give a number's bits; the rest is the
// value's text and, after the first newline, the format. Conversions may raise the
// platform's errors; nothing may crash.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "core/format.h"
#include "core/text.h"
#include "core/variant.h"

namespace {

template <class T>
T Bits(const uint8_t* data, size_t size) {
  T v{};
  std::memcpy(&v, data, std::min(size, sizeof v));
  return v;
}

kiv::Variant MakeValue(uint8_t kind, const uint8_t* bits, size_t bits_size, const std::string& text) {
  switch (kind % 11) {
    case 0: return kiv::Variant();
    case 1: return kiv::Variant::Null();
    case 2: return kiv::Variant(bits_size > 0 && (bits[0] & 1) != 0);
    case 3: return kiv::Variant(Bits<int16_t>(bits, bits_size));
    case 4: return kiv::Variant(Bits<int32_t>(bits, bits_size));
    case 5: return kiv::Variant(Bits<double>(bits, bits_size));
    case 6: return kiv::Variant(kiv::Currency{Bits<int64_t>(bits, bits_size)});
    case 7: return kiv::Variant(kiv::Date(Bits<double>(bits, bits_size)));
    case 8: return kiv::Variant(Bits<int64_t>(bits, bits_size));
    case 9: return kiv::Variant(kiv::Bytes(text.begin(), text.end()));
    default: return kiv::Variant(text);
  }
}

template <class F>
void Try(F f) {
  try {
    f();
  } catch (const kiv::VbError&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const size_t bits_size = std::min<size_t>(size - 1, 8);
  const std::string_view rest(reinterpret_cast<const char*>(data) + 1 + bits_size, size - 1 - bits_size);
  const size_t newline = rest.find('\n');
  const std::string text(rest.substr(0, newline));
  const std::string format(newline == std::string_view::npos ? std::string_view() : rest.substr(newline + 1));
  const kiv::Variant value = MakeValue(data[0], data + 1, bits_size, text);

  Try([&] { value.ToBool(); });
  Try([&] { value.ToInt(); });
  Try([&] { value.ToLong(); });
  Try([&] { value.ToDouble(); });
  Try([&] { value.ToCurrency(); });
  Try([&] { value.ToDate(); });
  Try([&] { value.ToString(); });
  Try([&] { value.ToBytes(); });
  Try([&] { kiv::IsNumeric(value); });
  Try([&] { kiv::NzString(value); });
  Try([&] { kiv::NzInt(value); });
  Try([&] { kiv::NzLong(value); });
  Try([&] { kiv::NzDouble(value); });
  Try([&] { kiv::NzBool(value); });
  Try([&] { kiv::NzDate(value); });
  Try([&] { value.Equals(kiv::Variant(text)); });
  Try([&] { kiv::Val(text); });
  Try([&] { kiv::Date::Parse(text); });
  Try([&] { kiv::UCase(text); });
  Try([&] { kiv::LCase(text); });
  Try([&] { kiv::Format(value, format); });
  return 0;
}

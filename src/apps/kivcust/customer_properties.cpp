// The name tables of the customer and address records, built once from each record's
// getters and setters, and the text conversions they share with the interpreter.
#include "apps/kivcust/customer_properties.h"

#include <charconv>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "core/text.h"

namespace kiv::kivcust {

namespace {
//! The text in quotes for a message, control characters written as escapes so that a NUL
//! inside it neither cuts the message short nor reaches the terminal.
std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto u = static_cast<unsigned char>(c);
    if (u >= 0x20 && u != 0x7F) {
      out += c;
      continue;
    }
    if (u == 0) {
      out += "\\0";
      continue;
    }
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\x%02X", u);
    out += escape;
  }
  return out + "\"";
}
}  // namespace

std::string BoolText(bool v) { return v ? "True" : "False"; }

std::string DateText(const Date& d) { return d.IsZero() ? std::string() : d.ToIso(); }

bool ParseBool(const std::string& text) {
  if (EqualsNoCase(text, "true") || text == "1" || text == "-1") return true;
  if (EqualsNoCase(text, "false") || text == "0") return false;
  throw std::invalid_argument(Quoted(text) + " is not true or false");
}

Date ParseDate(const std::string& text) {
  if (text.empty() || EqualsNoCase(text, "none")) return Date();
  auto d = Date::Parse(text);
  if (!d) throw std::invalid_argument(Quoted(text) + " is not a date");
  return *d;
}

namespace {
//! Past a leading "+" that a digit or point follows; from_chars knows only "-".
const char* SkipPlus(const std::string& text) {
  const bool plus = text.size() > 1 && text[0] == '+' && (std::isdigit(static_cast<unsigned char>(text[1])) || text[1] == '.');
  return text.data() + (plus ? 1 : 0);
}
}  // namespace

// Both readers take the whole text: a NUL or anything else after the number refuses it
// rather than reading the number before it.
int32_t ParseLong(const std::string& text) {
  const char* begin = SkipPlus(text);
  const char* end = text.data() + text.size();
  int32_t v = 0;
  const auto [stop, ec] = std::from_chars(begin, end, v);
  if (ec == std::errc::result_out_of_range && stop == end)
    throw std::invalid_argument(Quoted(text) + " is out of range (" + std::to_string(INT32_MIN) + " to " +
                                std::to_string(INT32_MAX) + ")");
  if (text.empty() || ec != std::errc() || stop != end) throw std::invalid_argument(Quoted(text) + " is not a whole number");
  return v;
}

double ParseDouble(const std::string& text) {
  const char* begin = SkipPlus(text);
  const char* end = text.data() + text.size();
  double v = 0;
  const auto [stop, ec] = std::from_chars(begin, end, v);
  if (ec == std::errc::result_out_of_range && stop == end)
    throw std::invalid_argument(Quoted(text) + " is out of range for a number");
  // from_chars reads "inf" and "nan" too; no field holds them.
  if (text.empty() || ec != std::errc() || stop != end || !std::isfinite(v))
    throw std::invalid_argument(Quoted(text) + " is not a number");
  return v;
}

namespace {

int16_t ParseInt(const std::string& text) {
  int32_t v = ParseLong(text);
  if (v < INT16_MIN || v > INT16_MAX) throw std::invalid_argument(Quoted(text) + " is out of range");
  return static_cast<int16_t>(v);
}

using C = CCustomer;
using A = CAddress;
using S = const std::string&;

#define KIV_TEXT(R, P) {#P, [](R& r) { return std::string(r.P()); }, [](R& r, S v) { r.Set##P(v); }}
#define KIV_TEXT_RO(R, P) {#P, [](R& r) { return std::string(r.P()); }, nullptr}
#define KIV_LONG(R, P) {#P, [](R& r) { return std::to_string(r.P()); }, [](R& r, S v) { r.Set##P(ParseLong(v)); }}
#define KIV_INT(R, P) {#P, [](R& r) { return std::to_string(r.P()); }, [](R& r, S v) { r.Set##P(ParseInt(v)); }}
#define KIV_DOUBLE(R, P) {#P, [](R& r) { return NumberToText(r.P()); }, [](R& r, S v) { r.Set##P(ParseDouble(v)); }}
#define KIV_BOOL(R, P) {#P, [](R& r) { return BoolText(r.P()); }, [](R& r, S v) { r.Set##P(ParseBool(v)); }}
#define KIV_BOOL_RO(R, P) {#P, [](R& r) { return BoolText(r.P()); }, nullptr}
#define KIV_DATE(R, P) {#P, [](R& r) { return DateText(r.P()); }, [](R& r, S v) { r.Set##P(ParseDate(v)); }}

}  // namespace

const std::vector<PropertyEntry<CCustomer>>& CustomerProperties() {
  static const std::vector<PropertyEntry<CCustomer>> table = {
      KIV_LONG(C, CustomerNo),
      KIV_TEXT(C, CustomerType),
      KIV_TEXT(C, FullName),
      KIV_TEXT(C, FirstName),
      KIV_TEXT(C, LastName),
      KIV_TEXT(C, CompanyName),
      KIV_TEXT(C, CustomerKind),
      KIV_TEXT(C, Gender),
      KIV_DATE(C, DOB),
      KIV_DATE(C, WeddingAnniversary),
      {"DateOfRelease",
       [](C& c) { return c.DateOfRelease().IsNull() || c.DateOfRelease().IsEmpty() ? std::string() : DateText(c.DateOfRelease().ToDate()); },
       [](C& c, S v) { c.SetDateOfRelease(v.empty() || EqualsNoCase(v, "none") ? Variant::Null() : Variant(ParseDate(v))); }},
      KIV_TEXT(C, Zip),
      KIV_TEXT(C, EMail),
      KIV_TEXT(C, WorkPhone),
      KIV_TEXT(C, CellPhone),
      KIV_TEXT(C, Occupation),
      KIV_TEXT(C, CommentNote),
      KIV_TEXT(C, Status),
      KIV_TEXT(C, CustomerLevelID),
      {"AccountNo", [](C& c) { return std::string(c.AccountNo()); }, [](C& c, S v) { c.SetAccountNo(v); }},
      KIV_DOUBLE(C, DiscountPercentage),
      KIV_DOUBLE(C, CommissionPercentage),
      KIV_BOOL(C, Locked),
      KIV_BOOL(C, DoNotMail),
      KIV_BOOL(C, HasImage),
      KIV_LONG(C, HouseholdNo),
      KIV_BOOL(C, HouseholdPrimary),
      KIV_LONG(C, PrimaryAddressID),
      KIV_TEXT_RO(C, AddressLine1),
      KIV_TEXT_RO(C, AddressLine2),
      KIV_TEXT_RO(C, City),
      KIV_TEXT_RO(C, State),
      KIV_TEXT_RO(C, CountryID),
      {"Phone", [](C& c) { return c.Phone(); }, [](C& c, S v) { c.SetPhone(v); }},
      {"Fax", [](C& c) { return c.Fax(); }, [](C& c, S v) { c.SetFax(v); }},
      KIV_TEXT(C, ClubMemberId),
      KIV_TEXT(C, EmployerName),
      KIV_LONG(C, EmployerNo),
      KIV_BOOL(C, IsNewCustomer),
      {"FiscalYear", [](C& c) { return std::to_string(c.FiscalYear()); }, [](C& c, S v) { c.SetFiscalYear(ParseLong(v)); }},
      KIV_BOOL_RO(C, WillCallsAvailable),
      KIV_BOOL_RO(C, HasReservations),
      KIV_BOOL_RO(C, HasUnInvoiced),
      KIV_BOOL(C, HasClub),
      {"HasRelationships", [](C& c) { return BoolText(c.HasRelationships()); }, nullptr},
      {"isInternational", [](C& c) { return BoolText(c.isInternational()); }, nullptr},
      KIV_BOOL_RO(C, AddressesChanges),
      KIV_TEXT(C, GuestAbility),
      KIV_INT(C, GuestHeightRange),
      KIV_INT(C, GuestWeightRange),
      KIV_DOUBLE(C, GuestShoeSize),
      KIV_LONG(C, CardCustomerNo),
      KIV_LONG(C, CardSeqNo),
      KIV_TEXT(C, CardXNo),
      KIV_TEXT(C, CardNo),
      KIV_TEXT(C, CardExpDate),
      KIV_TEXT(C, CardZip),
      KIV_TEXT(C, CardAddress),
      KIV_TEXT(C, ChildsFullName),
      KIV_TEXT(C, CellPhoneContact),
      KIV_TEXT(C, ResponsibleAdult1),
      KIV_TEXT(C, ResponsibleAdult2),
      KIV_TEXT(C, Allergies),
      KIV_TEXT(C, Medications),
      KIV_TEXT(C, SpecialNeeds),
      KIV_BOOL_RO(C, PrimaryAddressLoaded),
      KIV_BOOL_RO(C, EmployerLoaded),
      KIV_BOOL_RO(C, CardStored),
      {"LastErrorNumber", [](C& c) { return std::to_string(c.LastErrorNumber()); }, nullptr},
      KIV_TEXT_RO(C, LastErrorDescription),
      KIV_TEXT_RO(C, SourceName),
  };
  return table;
}

const std::vector<PropertyEntry<CAddress>>& AddressProperties() {
  static const std::vector<PropertyEntry<CAddress>> table = {
      KIV_LONG(A, AddressID),     KIV_TEXT(A, AddressType), KIV_TEXT(A, Name),   KIV_TEXT(A, AddressLine1),
      KIV_TEXT(A, AddressLine2),  KIV_TEXT(A, City),        KIV_TEXT(A, State),  KIV_TEXT(A, Zip),
      KIV_TEXT(A, CountryID),     KIV_TEXT(A, Phone),       KIV_TEXT(A, Fax),    KIV_LONG(A, CustomerNo),
      KIV_BOOL(A, DataChanged),   KIV_BOOL_RO(A, DataRead),
  };
  return table;
}

const PropertyEntry<CCustomer>* FindCustomerProperty(const std::string& name) {
  for (const auto& e : CustomerProperties())
    if (EqualsNoCase(e.name, name)) return &e;
  return nullptr;
}

const PropertyEntry<CAddress>* FindAddressProperty(const std::string& name) {
  for (const auto& e : AddressProperties())
    if (EqualsNoCase(e.name, name)) return &e;
  return nullptr;
}

}  // namespace kiv::kivcust

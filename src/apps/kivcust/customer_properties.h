// The properties of the customer and address records by name, for `set result.PROP`,
// `expect result.PROP` and the printed record: each a getter and (when writable) a setter
// working on text. The table belongs to the program; the records know nothing of it.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "records/c_address.h"
#include "records/c_customer.h"

namespace kiv::kivcust {

template <class Record>
struct PropertyEntry {
  const char* name;
  std::function<std::string(Record&)> get;
  //! Null for a read-only property. Throws std::invalid_argument when the text does not fit.
  std::function<void(Record&, const std::string&)> set;
};

//! Every property of CCustomer the program can read, in the order `open` prints them.
const std::vector<PropertyEntry<CCustomer>>& CustomerProperties();
const std::vector<PropertyEntry<CAddress>>& AddressProperties();

//! The entry of that name (without regard to case); null when there is none.
const PropertyEntry<CCustomer>* FindCustomerProperty(const std::string& name);
const PropertyEntry<CAddress>* FindAddressProperty(const std::string& name);

// Text forms of values, shared with the interpreter: Booleans "True"/"False", numbers plain
// decimal, dates "YYYY-MM-DD" (with the time when there is one) and the zero date as empty text.
std::string BoolText(bool v);
std::string DateText(const Date& d);
bool ParseBool(const std::string& text);
//! "" and "none" give the zero date.
Date ParseDate(const std::string& text);
int32_t ParseLong(const std::string& text);
double ParseDouble(const std::string& text);

}  // namespace kiv::kivcust

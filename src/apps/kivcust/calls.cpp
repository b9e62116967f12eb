// The engine calls and record operations scripts can make, one table entry each, and the
// printed form of a customer record.
#include <iomanip>
#include <ostream>

#include "apps/kivcust/customer_properties.h"
#include "apps/kivcust/interpreter.h"
#include "core/text.h"

namespace kiv::kivcust {
namespace {

using Args = std::vector<std::string>;

//! The customer number argument of a call; throws std::invalid_argument for bad text.
int32_t CustomerNoArg(const Args& args, size_t index) { return ParseLong(args.at(index)); }

std::string OpenCustomerCall(Interpreter& in, const Args& args) {
  OpenCustomerArgs call_args;
  auto customer = in.GetSession().Engine().OpenCustomer(CustomerNoArg(args, 0), call_args);
  in.SetResult(customer, call_args.bError);
  return {};
}

std::string NewCustomerCall(Interpreter& in, const Args& args) {
  auto customer = in.NewRecord();
  customer->SetIsNewCustomer(true);
  if (!args.empty()) customer->SetCustomerType(UCase(args[0]));
  in.SetResult(customer, false);
  return {};
}

//! SelectCustomer [tab=T] [group=G] [spawn] [autoreturn]: the search screen in select mode,
//! driven by the lines that follow until it hides.
std::string SelectCustomerCall(Interpreter& in, const Args& args) {
  CCustEngine::SelectCustomerArgs call_args;
  for (const auto& a : args) {
    if (EqualsNoCase(a, "spawn")) call_args.bSpawnNew = true;
    else if (EqualsNoCase(a, "autoreturn")) call_args.bAutoReturnOnOk = true;
    else if (EqualsNoCase(a.substr(0, 4), "tab=")) call_args.sDefaultTab = a.substr(4);
    else if (EqualsNoCase(a.substr(0, 6), "group=")) call_args.sGroupId = a.substr(6);
    else return "SelectCustomer takes tab=T group=G spawn autoreturn, not \"" + a + "\"";
  }
  auto customer = in.GetSession().Engine().SelectCustomer(call_args);
  in.SetResult(customer, call_args.bError);
  return {};
}

//! ShowCustomer N|result [nowillcall]: the detail editor over a customer by number or over
//! the record the last call returned.
std::string ShowCustomerCall(Interpreter& in, const Args& args) {
  CCustEngine::ShowCustomerArgs call_args;
  if (EqualsNoCase(args[0], "result")) {
    if (!in.Result()) return "there is no record: no call has returned one";
    call_args.oCustomer = in.Result();
  } else {
    call_args.lCustomerNo = CustomerNoArg(args, 0);
  }
  for (size_t i = 1; i < args.size(); ++i) {
    if (!EqualsNoCase(args[i], "nowillcall")) return "ShowCustomer takes N|result [nowillcall], not \"" + args[i] + "\"";
    call_args.bDisableWillcall = true;
  }
  auto customer = in.GetSession().Engine().ShowCustomer(call_args);
  in.SetResult(customer, call_args.bError);
  return {};
}

std::string ShowSearchCustomerCall(Interpreter& in, const Args&) {
  CCustEngine::ShowSearchCustomerArgs call_args;
  auto customer = in.GetSession().Engine().ShowSearchCustomer(call_args);
  in.SetResult(customer, false);
  return {};
}

//! Engine operations that work on the record the last call returned.
std::string NeedsResult(Interpreter& in) {
  return in.Result() ? std::string() : std::string("there is no record: no call has returned one");
}

}  // namespace

// A screen's call joins this table as one entry; the Ui its forms are shown through is
// already the script's.
const std::vector<EngineCall>& EngineCalls() {
  static const std::vector<EngineCall> table = {
      {"OpenCustomer", 1, 1, "OpenCustomer N", OpenCustomerCall},
      {"ShowCustomer", 1, 2, "ShowCustomer N|result [nowillcall]", ShowCustomerCall},
      {"SelectCustomer", 0, 4, "SelectCustomer [tab=T] [group=G] [spawn] [autoreturn]", SelectCustomerCall},
      {"ShowSearchCustomer", 0, 0, "ShowSearchCustomer", ShowSearchCustomerCall},
      {"NewCustomer", 0, 1, "NewCustomer [P|C]", NewCustomerCall},
      {"SaveRentalProfileInformation", 0, 0, "SaveRentalProfileInformation",
       [](Interpreter& in, const Args&) {
         if (auto e = NeedsResult(in); !e.empty()) return e;
         bool ok = in.GetSession().Engine().SaveRentalProfileInformation(in.Result());
         in.SetResult(in.Result(), !ok);
         return std::string();
       }},
      {"OpenRentalProfileInformation", 0, 0, "OpenRentalProfileInformation",
       [](Interpreter& in, const Args&) {
         if (auto e = NeedsResult(in); !e.empty()) return e;
         bool ok = in.GetSession().Engine().OpenRentalProfileInformation(in.Result());
         in.SetResult(in.Result(), !ok);
         return std::string();
       }},
      {"UpdateAddressThroughCollection", 0, 0, "UpdateAddressThroughCollection",
       [](Interpreter& in, const Args&) {
         if (auto e = NeedsResult(in); !e.empty()) return e;
         in.GetSession().Engine().UpdateAddressThroughCollection(in.Result());
         return std::string();
       }},
  };
  return table;
}

namespace {
MethodAnswer B(bool v) { return MethodAnswer{v, Variant(v)}; }
MethodAnswer V(Variant v) { return MethodAnswer{true, std::move(v)}; }
}  // namespace

const std::vector<RecordMethod>& RecordMethods() {
  using I = Interpreter;
  using C = CCustomer;
  static const std::vector<RecordMethod> table = {
      {"Update", 0, 0, "Update", [](I&, C& c, const Args&) { return B(c.Update()); }},
      {"UpdateHouseholdNo", 0, 0, "UpdateHouseholdNo", [](I&, C& c, const Args&) { return B(c.UpdateHouseholdNo()); }},
      {"DeleteCustomer", 0, 0, "DeleteCustomer", [](I&, C& c, const Args&) { return B(c.DeleteCustomer()); }},
      {"OpenCustomer", 0, 1, "OpenCustomer [N]",
       [](I&, C& c, const Args& a) {
         int32_t no = a.empty() ? c.CustomerNo() : CustomerNoArg(a, 0);
         return B(c.OpenCustomer(c.DB(), c.ErrorObject(), Variant(no)));
       }},
      {"OpenFlags", 0, 0, "OpenFlags", [](I&, C& c, const Args&) { return B(c.OpenFlags()); }},
      {"OpenPrimaryAddress", 0, 0, "OpenPrimaryAddress", [](I&, C& c, const Args&) { return B(c.OpenPrimaryAddress()); }},
      {"OpenEmployer", 0, 0, "OpenEmployer", [](I&, C& c, const Args&) { return B(c.OpenEmployer()); }},
      {"SaveEmployer", 0, 0, "SaveEmployer", [](I&, C& c, const Args&) { return B(c.SaveEmployer()); }},
      {"SetEmployer", 1, 1, "SetEmployer N|none",
       [](I& in, C& c, const Args& a) {
         if (EqualsNoCase(a[0], "none")) {
           c.SetEmployer(nullptr);
           return B(true);
         }
         auto employer = in.GetSession().Engine().OpenCustomer(CustomerNoArg(a, 0));
         c.SetEmployer(employer);
         return B(true);
       }},
      {"OpenAlertsAndSettings", 0, 0, "OpenAlertsAndSettings", [](I&, C& c, const Args&) { return B(c.OpenAlertsAndSettings()); }},
      {"OpenRentalSettings", 0, 0, "OpenRentalSettings", [](I&, C& c, const Args&) { return B(c.OpenRentalSettings()); }},
      {"SaveAlertsAndSettings", 0, 0, "SaveAlertsAndSettings", [](I&, C& c, const Args&) { return B(c.SaveAlertsAndSettings()); }},
      {"OpenCreditCard", 2, 2, "OpenCreditCard CUSTOMER_NO SEQ_NO",
       [](I&, C& c, const Args& a) { return B(c.OpenCreditCard(CustomerNoArg(a, 0), CustomerNoArg(a, 1))); }},
      {"CheckMembershipInGroup", 1, 1, "CheckMembershipInGroup GROUP",
       [](I&, C& c, const Args& a) { return B(c.CheckMembershipInGroup(a[0])); }},
      {"GetClubMemberId", 0, 1, "GetClubMemberId [N]",
       [](I&, C& c, const Args& a) { return V(c.GetClubMemberId(a.empty() ? c.CustomerNo() : CustomerNoArg(a, 0))); }},
      {"GetAccountBalance", 0, 0, "GetAccountBalance",
       [](I& in, C& c, const Args&) {
         std::string desc;
         double limit = 0;
         double balance = c.GetAccountBalance(desc, limit);
         if (!desc.empty()) in.Out() << "account " << desc << ", limit " << NumberToText(limit) << "\n";
         return V(balance);
       }},
      {"HasEmployeeRelationships", 0, 0, "HasEmployeeRelationships",
       [](I&, C& c, const Args&) { return B(c.HasEmployeeRelationships()); }},
      {"isInternational", 0, 0, "isInternational", [](I&, C& c, const Args&) { return B(c.isInternational()); }},
      {"OpenPhotograph", 0, 0, "OpenPhotograph", [](I&, C& c, const Args&) { return B(c.OpenPhotograph()); }},
      {"LoadPhotoFile", 1, 1, "LoadPhotoFile FILE", [](I&, C& c, const Args& a) { return B(c.LoadPhotoFile(c.DB(), a[0])); }},
      {"ResetAddresses", 0, 0, "ResetAddresses",
       [](I&, C& c, const Args&) {
         c.ResetAddresses();
         return MethodAnswer{};
       }},
      // Not operations of the customer record: the address record's postal-code lookup (the
      // answer is the city, state, county, country and area code), and an empty address for a
      // new record to fill.
      {"ZipLookUp", 1, 1, "ZipLookUp ZIP",
       [](I&, C& c, const Args& a) {
         ZipLookUpArgs out;
         CAddress lookup;
         bool found = lookup.ZipLookUp(c.DB(), a[0], out);
         if (!found) return MethodAnswer{false, Variant()};
         return MethodAnswer{true, Variant(out.sCity + ", " + out.sState + ", " + out.sCounty + ", " + out.sCountryID +
                                           ", " + out.sAreaCode)};
       }},
      {"AddAddress", 1, 1, "AddAddress TYPE",
       [](I&, C& c, const Args& a) {
         auto address = std::make_shared<CAddress>();
         address->SetAddressType(UCase(a[0]));
         address->SetCustomerNo(c.CustomerNo());
         if (!c.Addresses()) c.SetAddresses(std::make_shared<AddressCollection>());
         c.Addresses()->Add(UCase(a[0]), address);
         return B(true);
       }},
  };
  return table;
}

void PrintCustomer(std::ostream& out, CCustomer& customer, bool all_fields) {
  out << "customer " << customer.CustomerNo() << ": " << customer.FullName() << "\n";
  for (const auto& p : CustomerProperties()) {
    std::string name = p.name;
    // AccountNo asks the database on every read; the pass-through fields repeat the primary
    // address printed below.
    if (name == "AccountNo" || name == "AddressLine1" || name == "AddressLine2" || name == "City" ||
        name == "State" || name == "CountryID" || name == "Phone" || name == "Fax" || name == "isInternational")
      continue;
    std::string value = p.get(customer);
    if (!all_fields && (value.empty() || value == "False" || value == "0")) continue;
    out << "  " << std::left << std::setw(22) << name << value << "\n";
  }
  auto addresses = customer.Addresses();
  size_t count = addresses ? addresses->Count() : 0;
  out << "  addresses: " << count << "\n";
  for (size_t i = 0; i < count; ++i) {
    const auto& entry = addresses->At(i);
    const CAddress& a = *entry.value;
    out << "    " << std::left << std::setw(10) << entry.key << " #" << a.AddressID() << "  " << a.Name() << ", "
        << a.AddressLine1();
    if (!a.AddressLine2().empty()) out << ", " << a.AddressLine2();
    out << ", " << a.City() << ", " << a.State() << " " << a.Zip() << " " << a.CountryID();
    if (!a.Phone().empty()) out << "  phone " << a.Phone();
    if (!a.Fax().empty()) out << "  fax " << a.Fax();
    if (a.AddressID() == customer.PrimaryAddressID()) out << "  (primary)";
    out << "\n";
  }
}

}  // namespace kiv::kivcust

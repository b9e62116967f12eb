// A second terminal on a test's database file: its own host, handle and signed-in clerk, as
// a second `kivcust` would have. Also the customer records the terminals open and save.
#pragma once
#include <memory>
#include <string>

#include "records/c_address.h"
#include "records/c_customer.h"
#include "refhost/ref_app_server.h"
#include "refhost/ref_host.h"

namespace kiv::refhost::testing {

struct Terminal {
  std::shared_ptr<RefHost> host;
  std::shared_ptr<RefAppServer> server;
  std::shared_ptr<SqliteConnection> conn;

  //! Opens the file as the user "clerk"; a lock held elsewhere is waited for `busy_ms`.
  static Terminal Open(const std::string& path, int busy_ms = 300) {
    OpenOptions options;
    options.busy_timeout_ms = busy_ms;
    options.clock = std::make_shared<FixedClock>(Date::FromParts(2026, 3, 14, 9, 30, 0));
    Terminal t;
    t.host = RefHost::Open(path, options);
    t.server = std::static_pointer_cast<RefAppServer>(t.host->SignIn("clerk"));
    t.server->Errors()->SetEcho(false);
    t.conn = t.server->Connection();
    return t;
  }

  //! A new person with a primary address, not saved yet.
  std::shared_ptr<CCustomer> NewCustomer(const std::string& last, const std::string& street) const {
    auto c = std::make_shared<CCustomer>();
    c->SetIsNewCustomer(true);
    c->SetDB(conn);
    c->SetErrorObject(server->GetErrorObject());
    c->SetFiscalYear(2026);
    c->SetLastName(last);
    c->SetFirstName("ANN");
    c->SetFullName("ANN " + last);
    auto primary = std::make_shared<CAddress>();
    primary->SetAddressType("PRIMARY");
    primary->SetAddressLine1(street);
    primary->SetZip("05401");
    c->Addresses()->Add("PRIMARY", primary);
    return c;
  }

  //! The customer as the editor opens it; null when it cannot be read.
  std::shared_ptr<CCustomer> OpenCustomer(int32_t no) const {
    auto c = std::make_shared<CCustomer>();
    c->SetFiscalYear(2026);
    if (!c->OpenCustomer(conn, server->GetErrorObject(), Variant(no))) return nullptr;
    return c;
  }
};

}  // namespace kiv::refhost::testing

// A detail editor over the scripted host: an engine started with every right and a fixed
// today, the editor's lists scripted, and a customer record built in memory (no load), so
// that each test sees only the calls its own actions make.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "core/clock.h"
#include "engine/c_cust_engine.h"
#include "screens/component_screens.h"
#include "records/c_address.h"
#include "records/c_customer.h"
#include "screens/detail/frm_customer_detail.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv::test {

inline const std::string kUpdateCustomer = "KiV_SP_CUSTOMER_UpdateCustomer";
inline const std::string kAddressTypes =
    "SELECT * FROM kiv_address_type  WHERE address_type <> 'PRIMARY' ORDER BY address_type";

//! A page that records what the editor asks of it.
struct FakePage : DetailPage {
  FakePage(std::string name, int tab, DetailSaveSlot slot, std::vector<std::string>& log)
      : name(std::move(name)), tab(tab), slot(slot), log(log) {}
  int TabIndex() const override { return tab; }
  DetailSaveSlot SaveSlot() const override { return slot; }
  void Activate(frmCustomerDetail& s) override { s.cmdButton1.SetCaption(name), s.cmdButton1.SetVisible(true); }
  void Load(frmCustomerDetail&) override { log.push_back("load " + name), dirty = false; }
  bool Save(frmCustomerDetail&) override {
    log.push_back("save " + name);
    if (save_result) dirty = false;
    return save_result;
  }
  bool Dirty() const override { return dirty; }
  void Reset() override { dirty = false; }
  RefreshConfirmation RefreshQuestion() const override { return question; }
  void ButtonClicked(frmCustomerDetail&, int which) override { log.push_back(name + " button " + std::to_string(which)); }

  std::string name;
  int tab;
  DetailSaveSlot slot;
  std::vector<std::string>& log;
  bool dirty = false;
  bool save_result = true;
  RefreshConfirmation question;
};

struct DetailRig {
  ScriptedHost host;
  std::shared_ptr<ScriptedUi> ui = std::make_shared<ScriptedUi>();
  CCustEngine engine;
  std::shared_ptr<frmCustomerDetail> screen = std::make_shared<frmCustomerDetail>();
  std::shared_ptr<CCustomer> customer = std::make_shared<CCustomer>();
  std::vector<std::string> page_log;

  static Date Today() { return Date::FromParts(2026, 3, 15); }

  DetailRig() {
    host.app->GrantAll();
    host.OnQuery("SELECT * FROM kiv_customer_kind")
        .Row({{"customer_kind", "GUEST"}, {"Description", "Guest"}})
        .Row({{"customer_kind", "STAFF"}, {"Description", "Staff"}});
    host.OnQuery("SELECT * FROM kiv_customer_level ORDER BY Description")
        .Row({{"Customer_Level_ID", "GOLD"}, {"Description", "Gold"}})
        .Row({{"Customer_Level_ID", "GOLD"}, {"Description", "Gold"}});
    host.OnQuery("SELECT * FROM kiv_country").Row({{"Country_ID", "USA"}}).Row({{"Country_ID", "CAN"}});
    host.OnQuery(kAddressTypes).Row({{"address_type", "BILLING"}}).Row({{"address_type", "SHIPPING"}});
    host.OnQuery("SELECT * FROM kiv_zip_code WHERE zip = '05401'")
        .Row({{"City", "BURLINGTON"}, {"State", "VT"}, {"county", "CHITTENDEN"}, {"Country_ID", "USA"},
              {"area_code", "802"}});
    engine.SetUi(ui);
    InstallComponentScreens(engine);
    engine.SetClock(std::make_shared<FixedClock>(Today()));
    engine.SetAppServer(host.app);
    customer->SetDB(host.db);
    customer->SetErrorObject(host.errors);
    customer->SetUi(ui);
    screen->SetUi(ui);
    screen->Load();
    screen->SetAppServer(host.app);
    screen->SetDBConnection(host.db);
    screen->SetErrorObject(host.errors);
    screen->SetCustomerEngine(&engine);
    screen->SetCustomer(customer);
  }

  //! An existing person with a primary address in Burlington.
  void Person(int32_t number = 42) {
    customer->SetCustomerNo(number);
    customer->SetHouseholdNo(number);
    customer->SetCustomerType("P");
    customer->SetLastName("LEE");
    customer->SetFirstName("ANN");
    customer->SetFullName("ANN LEE");
    customer->SetCustomerLevelID("");
    auto address = std::make_shared<CAddress>();
    address->SetAddressType("PRIMARY");
    address->SetAddressID(number == 0 ? 0 : 900);
    address->SetAddressLine1("1 MAIN ST");
    address->SetCity("BURLINGTON");
    address->SetZip("05401");
    address->SetCountryID("USA");
    address->SetPhone("802-555-0100");
    address->SetDataChanged(false);
    customer->SetAddresses(std::make_shared<AddressCollection>());
    customer->Addresses()->Add("PRIMARY", address);
  }

  //! Fills and shows the screen, then forgets the calls filling made.
  void Open() {
    screen->FillScreen(customer->CustomerNo());
    screen->Show();
    host.db->ClearLog();
  }

  FakePage& AddPage(const std::string& name, int tab, DetailSaveSlot slot) {
    auto page = std::make_unique<FakePage>(name, tab, slot, page_log);
    FakePage& ref = *page;
    screen->RegisterPage(std::move(page));
    return ref;
  }

  void Do(ui::ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen->Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << static_cast<int>(kind) << " " << control << " " << text << ": " << r.error;
  }
  void Type(const std::string& control, const std::string& text) { Do(ui::ActionKind::Type, control, text); }
  void Key(const std::string& control, const std::string& key) { Do(ui::ActionKind::Key, control, key); }
  std::string Focus() const { return screen->ActiveControl() ? screen->ActiveControl()->Name() : ""; }
  size_t Updates() const { return host.db->Executions(kUpdateCustomer).size(); }
};

}  // namespace kiv::test

// A search screen over the scripted host: an engine started with every right, the two
// lists scripted, the search procedure's parameter list as the server gives it.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/c_cust_engine.h"
#include "screens/component_screens.h"
#include "records/c_customer.h"
#include "screens/search/frm_find.h"
#include "support/scripted_host.h"
#include "support/scripted_ui.h"

namespace kiv::test {

inline const std::string kSearch = "KIV_SP_CUSTOMER_Search";

//! One row of the search procedure with every column the grid reads.
inline Cells SearchRow(int32_t number, const std::string& type, const std::string& last,
                       const std::string& company = "", const std::string& full = "") {
  return {{"customer_no", number},      {"customer_type", type},     {"company_name", company},
          {"last_name", last},          {"full_name", full},         {"first_name", "ANN"},
          {"Zip", "05401"},             {"customer_kind", "GUEST"},  {"has_willcall", 1},
          {"has_so", 0},                {"has_reservation", Variant::Null()},
          {"has_image", false},         {"has_club", 0},             {"has_relationship", 1},
          {"Customer_Level_ID", "GOLD"}, {"household_no", number}};
}

//! A row of the customer procedure: every column a load reads, null but for those given.
inline Cells CustomerRow(int32_t number, const std::string& last = "SMITH") {
  Cells row = {{"customer_no", number}, {"household_no", number}, {"last_name", last}, {"customer_type", "P"}};
  for (const char* column :
       {"full_name", "first_name", "company_name", "Zip", "account_id", "comment_note", "DOB", "Locked",
        "date_of_release", "has_image", "status_id", "discount_percentage", "commission_percentage",
        "household_primary", "Customer_Level_ID", "Gender", "do_not_mail", "customer_kind", "EMail", "work_phone",
        "cell_phone", "Occupation", "wedding_anniversary", "has_willcall", "has_club", "has_so", "has_reservation",
        "has_relationship"})
    row.push_back({column, Variant::Null()});
  return row;
}

struct FindRig {
  ScriptedHost host;
  std::shared_ptr<ScriptedUi> ui = std::make_shared<ScriptedUi>();
  CCustEngine engine;
  std::shared_ptr<frmFind> screen = std::make_shared<frmFind>();

  FindRig() {
    host.app->GrantAll();
    host.OnQuery("SELECT * FROM kiv_customer_group ORDER BY description")
        .Row({{"customer_group_id", "GOLF"}, {"Description", "Golf League"}})
        .Row({{"customer_group_id", "SKI"}, {"Description", "Ski Club"}});
    host.OnQuery("SELECT * FROM kiv_club").Row({{"club_id", "C1"}, {"Description", "Summit Club"}});
    engine.SetUi(ui);
    InstallComponentScreens(engine);
    engine.SetAppServer(host.app);
    screen->SetUi(ui);
    screen->SetDBConnection(host.db);
    screen->SetErrorObject(host.errors);
    screen->SetCustomerEngine(&engine);
  }

  //! The search procedure answering `total` matches and the rows given, once when `once`.
  ScriptBuilder Search(int32_t total, bool once = false) {
    ScriptBuilder b = host.OnProcedure(kSearch);
    b.Params({"@RETURN_VALUE", "@customer_type", "@first_name", "@last_name", "@zip_code", "@employeer", "@gender",
              "@customer_group_id", "@company_name", "@access_no", "@salesorder_no", "@customer_no", "@booking_id",
              "@search_club", "@club_id", "@member_id", "@club_is_active", "@search_customer_no",
              Out("@total_rowcount")})
        .Outputs({{"@total_rowcount", total}});
    if (once) b.Once();
    return b;
  }

  //! Shows the screen for a pick (in a group when one is given) and forgets the start-up calls.
  void Open(const std::string& group = "") {
    screen->SetSelectMode(true, group);
    screen->Show();
    host.db->ClearLog();
  }

  void Do(ui::ActionKind kind, const std::string& control, const std::string& text = {}) {
    ui::UiResult r = screen->Perform(ui::Action{kind, control, text, {}, 0});
    EXPECT_TRUE(r.ok) << static_cast<int>(kind) << " " << control << " " << text << ": " << r.error;
  }

  std::string Panel(const std::string& key) const { return screen->stbSearch.PanelText(key); }
  size_t Searches() const { return host.db->Executions(kSearch).size(); }
  Variant Sent(const std::string& parameter, size_t search = 0) const {
    return host.db->AssignedValue(kSearch, parameter, search);
  }
};

}  // namespace kiv::test

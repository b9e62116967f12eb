// The reference host's will-call screen: the customer's will calls not yet printed, and
// Print, which marks the chosen ones printed (time and user) and writes a printable ticket
// beside the database. The ticket's path is shown on the screen and traced.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "host/suite_services.h"
#include "refhost/sqlite_database.h"
#include "refhost/trace.h"
#include "ui/command_button.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/label.h"
#include "ui/ui.h"

namespace kiv::refhost {

class RefWillCallScreen : public ui::Form {
 public:
  static constexpr const char* kFormat = "WC#|Access#|Description|Valid Date|Status";
  RefWillCallScreen();

  ui::Label& lblRegister;
  ui::Grid& grdWillCalls;
  ui::CommandButton& cmdPrint;
  ui::CommandButton& cmdClose;
  ui::Label& lblTicket;
};

class RefWillCallService : public host::WillCallService {
 public:
  RefWillCallService(std::shared_ptr<SqliteDatabase> db, std::string user, std::shared_ptr<ui::Ui> ui,
                     std::shared_ptr<TraceHook> trace);

  void SetAppServer(std::shared_ptr<host::AppServer> app_server) override { app_server_ = std::move(app_server); }
  //! Lists the customer's unprinted will calls (the one asked for selected first); true when
  //! something was printed before the screen closed.
  bool ShowWillCallScreen(int32_t customer_no, const std::string& register_id, int32_t control_no,
                          int32_t will_call_no, int32_t access_no) override;

  //! Marks the will calls printed and writes their ticket; the ticket's path, empty when none
  //! of them was still waiting.
  std::string PrintWillCalls(int32_t customer_no, const std::vector<int32_t>& will_call_nos,
                             const std::string& register_id, int32_t control_no);

  RefWillCallScreen& Screen() { return screen_; }

 private:
  void FillList(int32_t customer_no, int32_t will_call_no);

  std::shared_ptr<SqliteDatabase> db_;
  std::string user_;
  std::shared_ptr<ui::Ui> ui_;
  std::shared_ptr<TraceHook> trace_;
  std::shared_ptr<host::AppServer> app_server_;
  RefWillCallScreen screen_;
};

}  // namespace kiv::refhost

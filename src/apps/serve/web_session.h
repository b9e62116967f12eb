// One signed-in browser tab: its own kivcust session (connection, engine, screens) and the
// thread that owns them. Screen code is synchronous — a message box or a modal form blocks
// until answered — so it runs on this thread, and requests hand it commands and wait until
// it is idle again (at the home screen, on a form, or on a message box).
#pragma once
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "apps/kivcust/script_ui.h"
#include "apps/kivcust/session.h"

namespace kiv::serve {

//! What a browser asks its session to do.
struct Command {
  enum class Kind {
    Refresh,  //!< nothing: answers the state as it is
    Act,      //!< a generic action on the topmost form: verb and its words
    Answer,   //!< the button pressed on the message box that is showing
    Call,     //!< a screen from the home page: SelectCustomer, ShowCustomer N, ShowSearchCustomer
    Picture,  //!< the picture of the image control named in `verb`, kept for Picture()
  };
  Kind kind = Kind::Refresh;
  std::string verb;               //!< Act: the action verb; Call: the screen's name; Answer: the button
  std::vector<std::string> args;  //!< Act: the action's words; Call: its arguments
};

//! An answer for the browser: the HTTP status and the state as JSON.
struct Reply {
  int status = 200;
  std::string json;
};

class WebSession : public kivcust::ModalDriver {
 public:
  //! Takes the signed-in session and starts the thread that owns it from now on.
  WebSession(std::unique_ptr<kivcust::Session> session, std::string user);
  //! Closes whatever screens are open (boxes answer their harmless button) and joins the thread.
  ~WebSession() override;
  WebSession(const WebSession&) = delete;
  WebSession& operator=(const WebSession&) = delete;

  //! Queues `command` behind any earlier one and waits until the thread has applied it and
  //! is idle again; answers the state then. 503 when the thread is still busy after `wait`.
  Reply Submit(Command command, std::chrono::milliseconds wait = std::chrono::seconds(60));
  //! The bytes of an image control's picture on the topmost form; empty when none.
  std::string Picture(const std::string& control, std::chrono::milliseconds wait = std::chrono::seconds(10));
  const std::string& User() const { return user_; }

  // ModalDriver, run on the session thread by the screens.
  void DriveModal(ui::Form& form) override;
  std::optional<ui::MsgBoxResult> Unanswered(const kivcust::ShownBox& box, const std::string& reason) override;

 private:
  struct Outcome {
    int status = 200;
    std::string error;
  };
  void Run();
  //! Publishes the state, then waits for the next command; nullopt when the session stops.
  std::optional<Command> Next();
  //! Runs `body`, turning an exception that escaped the screens into a 500 for this tab.
  Outcome Guarded(const std::function<Outcome()>& body);
  Outcome ApplyAct(ui::Form& form, const Command& command);
  Outcome ApplyCall(const Command& command);
  std::string StateJson() const;

  std::unique_ptr<kivcust::Session> session_;
  std::string user_;
  // Touched only by the session thread.
  std::optional<kivcust::ShownBox> box_;
  std::string notice_;
  Outcome outcome_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::pair<uint64_t, Command>> queue_;
  uint64_t next_seq_ = 0;
  uint64_t done_seq_ = 0;
  bool idle_ = false;
  bool stop_ = false;
  Reply reply_;
  //! The bytes of the last picture asked for.
  std::string picture_;
  std::thread thread_;
};

}  // namespace kiv::serve

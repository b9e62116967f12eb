// The base of every screen: the host objects the engine hands over, the error guard that
// names the failing routine in the error source, the filling flag that keeps code-made
// changes from counting as the clerk's, and event wiring by control.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "core/clock.h"
#include "core/date.h"
#include "host/app_server.h"
#include "host/command.h"
#include "host/db_connection.h"
#include "host/error_object.h"
#include "ui/form.h"

namespace kiv {

class CCustEngine;

class Screen : public ui::Form {
 public:
  //! `name` is the form's name; the error source is built from it.
  explicit Screen(const std::string& name);

  // ---- what the engine hands over before showing the screen ----
  void SetDBConnection(std::shared_ptr<host::DBConnection> v) { db_ = std::move(v); }
  std::shared_ptr<host::DBConnection> DBConnection() const { return db_; }
  void SetErrorObject(std::shared_ptr<host::ErrorObject> v) { error_object_ = std::move(v); }
  std::shared_ptr<host::ErrorObject> ErrorObject() const { return error_object_; }
  void SetAppServer(std::shared_ptr<host::AppServer> v) { app_server_ = std::move(v); }
  std::shared_ptr<host::AppServer> AppServer() const { return app_server_; }
  //! The engine that opened the screen (not owned); null leaves rights and settings unknown.
  void SetCustomerEngine(CCustEngine* v) { engine_ = v; }
  CCustEngine* CustomerEngine() const { return engine_; }
  //! Where "today" comes from; the engine's clock, else the system's, until one is given.
  void SetClock(std::shared_ptr<Clock> v) { clock_ = std::move(v); }
  Date Today() const;
  //! Hands over the engine's own objects: Ui, connection, error object, application server
  //! and the engine itself (its clock is found through it).
  void TakeHostObjects(CCustEngine& engine);

  //! "KIVCustomer.<form name> (1.0.0)": what the error reports of this screen start with.
  const std::string& ErrorSource() const { return error_source_; }

  //! True while code (not the clerk) is writing the controls.
  bool Filling() const { return filling_; }

  //! Runs `body`; an unexpected failure is reported quietly through the error object with
  //! the source "<ErrorSource> <routine>", and the handler ends normally. False when it
  //! failed. Pages of a screen run their routines under it too.
  bool Guard(const std::string& routine, const std::function<void()>& body);

 protected:
  //! Sets the filling flag for one scope and puts the old value back.
  class FillingScope {
   public:
    explicit FillingScope(Screen& screen) : screen_(screen), was_(screen.filling_) { screen.filling_ = true; }
    ~FillingScope() { screen_.filling_ = was_; }
    FillingScope(const FillingScope&) = delete;
    FillingScope& operator=(const FillingScope&) = delete;

   private:
    Screen& screen_;
    bool was_;
  };

  //! `body` guarded under the routine name "<control>_<event>" ("cmdOk_Click").
  std::function<void()> Guarded(const ui::Control& control, const char* event, std::function<void()> body);
  void OnClick(ui::Control& control, std::function<void()> body);
  void OnDblClick(ui::Control& control, std::function<void()> body);
  void OnChange(ui::Control& control, std::function<void()> body);

  //! The command a failure report names beside the error (the search screen's running
  //! search); none by default.
  virtual std::shared_ptr<host::Command> FailedCommand() const { return nullptr; }

  //! Adds a control inside a frame, panel or menu.
  template <class T, class... Args>
  T& AddIn(ui::Control& container, const std::string& name, Args&&... args) {
    T& control = Add<T>(name, std::forward<Args>(args)...);
    control.SetContainer(&container);
    return control;
  }

  std::shared_ptr<host::DBConnection> db_;
  std::shared_ptr<host::ErrorObject> error_object_;
  std::shared_ptr<host::AppServer> app_server_;
  CCustEngine* engine_ = nullptr;
  std::shared_ptr<Clock> clock_;

 private:
  std::string error_source_;
  bool filling_ = false;
};

}  // namespace kiv

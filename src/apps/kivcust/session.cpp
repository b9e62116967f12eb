// Opening a session: the database first (so a bad file is reported before anything else),
// then the trace, then the user and the engine.
#include "apps/kivcust/session.h"

#include "refhost/ref_app_server.h"
#include "screens/component_screens.h"

namespace kiv::kivcust {

Session::Session(const SessionOptions& options) {
  if (options.today) clock_ = std::make_shared<FixedClock>(*options.today);
  else clock_ = std::make_shared<SystemClock>();
  refhost::OpenOptions open;
  open.create_if_missing = options.create_if_missing;
  open.clock = clock_;
  host_ = refhost::RefHost::Open(options.db_path, open);
  if (!options.trace_file.empty()) trace_.OpenFile(options.trace_file, options.append_trace);
  host_->SetTrace([this](const refhost::TraceEvent& event) { trace_.Record(event); });
  password_ = options.password;
  SignIn(options.user, options.password);
}

Session::~Session() {
  // The engine and its screens go first, while the connection they hold is still traced
  // into a writer that exists.
  engine_.reset();
  app_server_.reset();
  if (host_) host_->SetTrace(nullptr);
}

void Session::SignIn(const std::string& user, const std::string& password) {
  auto app_server = host_->SignIn(user, password);
  if (auto ref = std::dynamic_pointer_cast<refhost::RefAppServer>(app_server)) {
    ref->Reports()->on_document_written = [this](const std::filesystem::path& path) {
      documents_.push_back(path);
      if (on_document) on_document(path);
    };
    // The reference host's own screens are driven like the component's.
    ref->SetUi(ui_);
  }
  auto engine = std::make_shared<CCustEngine>();
  engine->SetUi(ui_);
  InstallComponentScreens(*engine);
  engine->SetClock(clock_);
  engine->SetAppServer(app_server);
  app_server_ = std::move(app_server);
  engine_ = std::move(engine);
  user_ = user;
}

void Session::SetToday(Date today) {
  auto fixed = std::dynamic_pointer_cast<FixedClock>(clock_);
  if (fixed) {
    fixed->SetNow(today);
    return;
  }
  clock_ = std::make_shared<FixedClock>(today);
  host_->Database()->SetClock(clock_);
  engine_->SetClock(clock_);
}

}  // namespace kiv::kivcust

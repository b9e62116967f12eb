// The HTTP side: static files, sign-in and sign-out, and the session's commands. Every
// state-changing request carries the tab's CSRF token; every answer is JSON with a clear
// error text when it is refused.
#include "apps/serve/web_server.h"

#include <httplib.h>
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <thread>

#include "apps/serve/json_text.h"
#include "apps/serve/session_table.h"
#include "apps/serve/web_assets.h"
#include "host/host_error.h"
#include "refhost/ref_host.h"

namespace kiv::serve {
namespace {

constexpr size_t kMaxBody = 64 * 1024;
constexpr int kServerThreads = 48;
//! Each session holds a thread and a connection; past this many, sign-in waits for room.
constexpr size_t kMaxSessions = 200;
constexpr const char* kRefused = "The user name or password is not right.";

std::string ErrorJson(const std::string& text) { return "{\"error\":" + JsonString(text) + "}"; }

void SendJson(httplib::Response& res, int status, const std::string& json) {
  res.status = status;
  res.set_header("Cache-Control", "no-store");
  res.set_content(json, "application/json; charset=utf-8");
}

//! A tab id is what the page made up for itself: 8 to 64 letters and digits.
bool ValidTab(const std::string& tab) {
  if (tab.size() < 8 || tab.size() > 64) return false;
  for (unsigned char ch : tab)
    if (!std::isalnum(ch)) return false;
  return true;
}

//! The value of cookie `name` in the request; empty when absent.
std::string CookieValue(const httplib::Request& req, const std::string& name) {
  std::string header = req.get_header_value("Cookie");
  size_t pos = 0;
  while (pos < header.size()) {
    size_t end = header.find(';', pos);
    if (end == std::string::npos) end = header.size();
    std::string part = header.substr(pos, end - pos);
    size_t start = part.find_first_not_of(' ');
    if (start != std::string::npos) part = part.substr(start);
    if (part.size() > name.size() && part.compare(0, name.size(), name) == 0 && part[name.size()] == '=')
      return part.substr(name.size() + 1);
    pos = end + 1;
  }
  return {};
}

std::string CookieName(const std::string& tab) { return "kiv_" + tab; }

//! Constant-time comparison of two tokens.
bool SameToken(const std::string& a, const std::string& b) {
  if (a.size() != b.size() || a.empty()) return false;
  unsigned char diff = 0;
  for (size_t i = 0; i < a.size(); ++i) diff |= static_cast<unsigned char>(a[i] ^ b[i]);
  return diff == 0;
}

//! A browser names the page a request comes from; one from another site is refused even
//! before its token is looked at. Clients that send no Origin (scripts, tests) pass.
bool SameOrigin(const httplib::Request& req) {
  std::string origin = req.get_header_value("Origin");
  return origin.empty() || origin == "http://" + req.get_header_value("Host");
}

std::vector<std::string> Params(const httplib::Request& req, const char* key) {
  std::vector<std::string> out;
  size_t n = req.get_param_value_count(key);
  for (size_t i = 0; i < n; ++i) out.push_back(req.get_param_value(key, i));
  return out;
}

std::string PictureType(const std::string& bytes) {
  if (bytes.rfind("\x89PNG", 0) == 0) return "image/png";
  if (bytes.rfind("\xFF\xD8", 0) == 0) return "image/jpeg";
  if (bytes.rfind("GIF8", 0) == 0) return "image/gif";
  if (bytes.rfind("BM", 0) == 0) return "image/bmp";
  return "application/octet-stream";
}

class Server {
 public:
  explicit Server(const ServeOptions& options)
      : options_(options),
        sessions_(std::chrono::duration_cast<SessionTable::Clock::duration>(
            std::chrono::duration<double, std::ratio<60>>(options.idle_minutes))) {
    http_.new_task_queue = [] { return new httplib::ThreadPool(kServerThreads); };
    http_.set_payload_max_length(kMaxBody);
    // An idle browser connection holds a server thread; it is let go soon, so that many tabs
    // never leave a request waiting for a thread.
    http_.set_keep_alive_timeout(2);
    http_.set_default_headers({{"X-Content-Type-Options", "nosniff"},
                               {"X-Frame-Options", "DENY"},
                               {"Referrer-Policy", "no-referrer"},
                               {"Content-Security-Policy",
                                "default-src 'self'; img-src 'self' blob: data:; frame-ancestors 'none'"}});
    Routes();
  }

  httplib::Server& Http() { return http_; }
  SessionTable& Sessions() { return sessions_; }

 private:
  struct Signed {
    std::shared_ptr<WebSession> session;
    std::string token;
  };

  //! The tab's session, or an answer already written (401 signed out, 403 no CSRF token).
  std::optional<Signed> Authorize(const httplib::Request& req, httplib::Response& res, bool changes_state) {
    std::string tab = req.get_header_value("X-Kiv-Tab");
    if (!ValidTab(tab)) {
      SendJson(res, 400, ErrorJson("The request does not say which tab it comes from."));
      return std::nullopt;
    }
    std::string token = CookieValue(req, CookieName(tab));
    auto found = token.empty() ? SessionTable::Found{} : sessions_.Touch(token);
    if (!found.session) {
      SendJson(res, 401, "{\"error\":\"You are signed out; please sign in.\",\"signin\":true}");
      return std::nullopt;
    }
    if (changes_state && !SameOrigin(req)) {
      SendJson(res, 403, ErrorJson("The request was refused: it comes from another site."));
      return std::nullopt;
    }
    if (changes_state && !SameToken(req.get_header_value("X-CSRF-Token"), found.csrf)) {
      SendJson(res, 403, ErrorJson("The request was refused: it does not carry this page's security token."));
      return std::nullopt;
    }
    return Signed{found.session, token};
  }

  void Answer(httplib::Response& res, const Reply& reply) {
    // The state always goes back, so the page stays right even when the request was refused.
    SendJson(res, reply.status, reply.json);
  }

  void SignIn(const httplib::Request& req, httplib::Response& res) {
    std::string tab = req.get_param_value("tab");
    std::string user = req.get_param_value("user");
    std::string password = req.get_param_value("password");
    if (!ValidTab(tab)) return SendJson(res, 400, ErrorJson("The request does not say which tab it comes from."));
    if (!SameOrigin(req)) return SendJson(res, 403, ErrorJson("The request was refused: it comes from another site."));
    if (sessions_.Count() >= kMaxSessions)
      return SendJson(res, 503, ErrorJson("Too many terminals are signed in; try again when one signs out."));
    const auto started = std::chrono::steady_clock::now();
    std::unique_ptr<kivcust::Session> session;
    if (!user.empty() && !password.empty() && user.size() <= 128 && password.size() <= 1024) {
      try {
        kivcust::SessionOptions open;
        open.db_path = options_.db_path;
        open.user = user;
        open.password = password;
        open.today = options_.today;
        session = std::make_unique<kivcust::Session>(open);
      } catch (const std::exception&) {
        session.reset();
      }
    }
    if (!session) {
      // Refusals are answered a fixed time after they came in, whatever the check cost (so the
      // time never tells an unknown user from a wrong password), and never more than one per
      // that time across every tab, so guessing in parallel gains nothing.
      const auto delay = std::chrono::milliseconds(options_.refused_sign_in_ms);
      std::chrono::steady_clock::time_point answer_at;
      {
        std::lock_guard gate(refused_gate_);
        answer_at = std::max(started + delay, last_refusal_ + delay);
        last_refusal_ = answer_at;
      }
      std::this_thread::sleep_until(answer_at);
      return SendJson(res, 401, ErrorJson(kRefused));
    }
    auto web = std::make_shared<WebSession>(std::move(session), user);
    std::string csrf;
    std::string token = sessions_.Add(web, csrf);
    res.set_header("Set-Cookie", CookieName(tab) + "=" + token + "; Path=/; HttpOnly; SameSite=Strict");
    Reply state = web->Submit(Command{});
    SendJson(res, 200, "{\"csrf\":\"" + csrf + "\",\"state\":" + state.json + "}");
  }

  void Routes() {
    http_.Get("/", [](const httplib::Request&, httplib::Response& res) {
      res.set_content(std::string(IndexHtml()), "text/html; charset=utf-8");
    });
    http_.Get("/app.js", [](const httplib::Request&, httplib::Response& res) {
      res.set_content(std::string(AppJs()), "text/javascript; charset=utf-8");
    });
    http_.Get("/app.css", [](const httplib::Request&, httplib::Response& res) {
      res.set_content(std::string(AppCss()), "text/css; charset=utf-8");
    });
    http_.Get("/favicon.ico", [](const httplib::Request&, httplib::Response& res) { res.status = 204; });
    http_.Post("/api/signin", [this](const httplib::Request& req, httplib::Response& res) { SignIn(req, res); });
    http_.Post("/api/signout", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, true);
      if (!signed_in) return;
      signed_in->session.reset();
      sessions_.Remove(signed_in->token);
      res.set_header("Set-Cookie", CookieName(req.get_header_value("X-Kiv-Tab")) +
                                       "=; Path=/; HttpOnly; SameSite=Strict; Max-Age=0");
      SendJson(res, 200, "{\"signedOut\":true}");
    });
    http_.Get("/api/state", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, false);
      if (signed_in) Answer(res, signed_in->session->Submit(Command{}));
    });
    http_.Post("/api/act", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, true);
      if (!signed_in) return;
      if (!req.has_param("verb")) return SendJson(res, 400, ErrorJson("The action has no verb."));
      Command c{Command::Kind::Act, req.get_param_value("verb"), Params(req, "arg")};
      Answer(res, signed_in->session->Submit(std::move(c)));
    });
    http_.Post("/api/answer", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, true);
      if (!signed_in) return;
      Command c{Command::Kind::Answer, req.get_param_value("button"), {}};
      Answer(res, signed_in->session->Submit(std::move(c)));
    });
    http_.Post("/api/call", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, true);
      if (!signed_in) return;
      Command c{Command::Kind::Call, req.get_param_value("screen"), Params(req, "arg")};
      Answer(res, signed_in->session->Submit(std::move(c)));
    });
    http_.Get("/api/picture", [this](const httplib::Request& req, httplib::Response& res) {
      auto signed_in = Authorize(req, res, false);
      if (!signed_in) return;
      std::string bytes = signed_in->session->Picture(req.get_param_value("control"));
      if (bytes.empty()) return SendJson(res, 404, ErrorJson("There is no picture."));
      res.set_header("Cache-Control", "no-store");
      res.set_content(bytes, PictureType(bytes).c_str());
    });
    http_.set_error_handler([](const httplib::Request&, httplib::Response& res) {
      if (!res.body.empty()) return;
      std::string text = res.status == 413 ? "The request is too large." : res.status == 404 ? "There is no such page." : "The request was refused.";
      res.set_content(ErrorJson(text), "application/json; charset=utf-8");
    });
  }

  ServeOptions options_;
  httplib::Server http_;
  SessionTable sessions_;
  std::mutex refused_gate_;
  std::chrono::steady_clock::time_point last_refusal_{};
};

}  // namespace

int RunServer(const ServeOptions& options, std::ostream& out) {
  try {
    // The database is checked once before anyone signs in, so a bad file is said at start.
    refhost::RefHost::Open(options.db_path, refhost::OpenOptions{});
  } catch (const HostError& e) {
    out << "kivcust: " << e.description << "\n";
    return 1;
  } catch (const std::exception& e) {
    out << "kivcust: " << e.what() << "\n";
    return 1;
  }
  // SIGINT and SIGTERM are waited for by one thread, which stops the server.
  sigset_t stop_signals;
  sigemptyset(&stop_signals);
  sigaddset(&stop_signals, SIGINT);
  sigaddset(&stop_signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stop_signals, nullptr);

  Server server(options);
  int port = options.port;
  bool bound = port == 0 ? (port = server.Http().bind_to_any_port(options.bind)) > 0
                         : server.Http().bind_to_port(options.bind, port);
  if (!bound) {
    out << "kivcust: cannot listen on " << options.bind << ":" << options.port << "\n";
    return 1;
  }
  std::string host = options.bind == "0.0.0.0" ? "127.0.0.1" : options.bind;
  out << "kivcust: serving " << options.db_path << "\n"
      << "open http://" << host << ":" << port << "/ in a browser (Ctrl+C stops)" << std::endl;

  std::atomic<bool> running{true};
  std::thread reaper([&] {
    while (running) {
      std::this_thread::sleep_for(std::chrono::milliseconds(500));
      server.Sessions().Reap();
    }
  });
  std::thread waiter([&] {
    int signal = 0;
    sigwait(&stop_signals, &signal);
    server.Http().stop();
  });
  server.Http().listen_after_bind();
  running = false;
  reaper.join();
  // The signal thread may still be waiting when listening failed; a signal to ourselves ends it.
  if (server.Http().is_running()) server.Http().stop();
  pthread_kill(waiter.native_handle(), SIGTERM);
  waiter.join();
  return 0;
}

}  // namespace kiv::serve

// The signed-in tabs: a random session token (the cookie) and CSRF token for each, and the
// time each last asked for something; a tab idle for too long is signed out.
#pragma once
#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "apps/serve/web_session.h"

namespace kiv::serve {

//! A random token of 32 bytes as 64 hexadecimal digits.
std::string RandomToken();

class SessionTable {
 public:
  using Clock = std::chrono::steady_clock;
  explicit SessionTable(Clock::duration idle) : idle_(idle) {}

  struct Found {
    std::shared_ptr<WebSession> session;
    std::string csrf;
  };
  //! Registers a signed-in session; returns its token and sets `csrf` to its CSRF token.
  std::string Add(std::shared_ptr<WebSession> session, std::string& csrf);
  //! The live session of `token`, its last use moved to now; an expired one is dropped and
  //! answers no session.
  Found Touch(const std::string& token);
  //! Signs the session out; true when there was one.
  bool Remove(const std::string& token);
  //! Drops every session idle for longer than allowed; returns how many.
  size_t Reap();
  size_t Count();

 private:
  struct Entry {
    std::shared_ptr<WebSession> session;
    std::string csrf;
    Clock::time_point last_seen;
  };
  Clock::duration idle_;
  std::mutex mutex_;
  std::map<std::string, Entry> entries_;
};

}  // namespace kiv::serve

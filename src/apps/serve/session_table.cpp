// Tokens from libsodium's generator; sessions are destroyed (their threads joined) outside
// the table's lock, so one tab closing never holds up another's request.
#include "apps/serve/session_table.h"

#include <sodium.h>

#include <stdexcept>
#include <vector>

namespace kiv::serve {

std::string RandomToken() {
  if (sodium_init() < 0) throw std::runtime_error("the random generator cannot be started");
  unsigned char bytes[32];
  randombytes_buf(bytes, sizeof bytes);
  char hex[sizeof bytes * 2 + 1];
  sodium_bin2hex(hex, sizeof hex, bytes, sizeof bytes);
  return hex;
}

std::string SessionTable::Add(std::shared_ptr<WebSession> session, std::string& csrf) {
  std::string token = RandomToken();
  csrf = RandomToken();
  std::lock_guard lock(mutex_);
  entries_[token] = Entry{std::move(session), csrf, Clock::now()};
  return token;
}

SessionTable::Found SessionTable::Touch(const std::string& token) {
  std::shared_ptr<WebSession> expired;  // declared first: released after the lock
  std::lock_guard lock(mutex_);
  auto it = entries_.find(token);
  if (it == entries_.end()) return {};
  auto now = Clock::now();
  if (now - it->second.last_seen > idle_) {
    expired = std::move(it->second.session);
    entries_.erase(it);
    return {};
  }
  it->second.last_seen = now;
  return {it->second.session, it->second.csrf};
}

bool SessionTable::Remove(const std::string& token) {
  std::shared_ptr<WebSession> gone;
  {
    std::lock_guard lock(mutex_);
    auto it = entries_.find(token);
    if (it == entries_.end()) return false;
    gone = std::move(it->second.session);
    entries_.erase(it);
  }
  return true;
}

size_t SessionTable::Reap() {
  std::vector<std::shared_ptr<WebSession>> gone;
  {
    std::lock_guard lock(mutex_);
    auto now = Clock::now();
    for (auto it = entries_.begin(); it != entries_.end();) {
      if (now - it->second.last_seen > idle_) {
        gone.push_back(std::move(it->second.session));
        it = entries_.erase(it);
      } else {
        ++it;
      }
    }
  }
  return gone.size();
}

size_t SessionTable::Count() {
  std::lock_guard lock(mutex_);
  return entries_.size();
}

}  // namespace kiv::serve

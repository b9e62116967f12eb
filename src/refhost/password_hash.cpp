// Password hashing through libsodium's crypto_pwhash_str (Argon2id with a random salt).
#include "refhost/password_hash.h"

#include <sodium.h>

#include "host/host_error.h"
#include "refhost/sqlite_database.h"

namespace kiv::refhost {

namespace {

// sodium_init is safe to call again; a negative answer means the library cannot be used.
void StartSodium() {
  if (sodium_init() < 0) throw HostError(kErrDatabase, "The password library could not be started.");
}

}  // namespace

std::string HashPassword(const std::string& password) {
  StartSodium();
  char hash[crypto_pwhash_STRBYTES];
  if (crypto_pwhash_str(hash, password.data(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                        crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
    throw HostError(kErrDatabase, "The password could not be hashed (out of memory).");
  return std::string(hash);
}

bool PasswordMatches(const std::string& hash, const std::string& password) {
  if (password.empty() || hash.empty() || hash.size() >= crypto_pwhash_STRBYTES) return false;
  StartSodium();
  return crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

}  // namespace kiv::refhost

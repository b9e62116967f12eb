// Passwords of the reference host's users are kept only as salted, slow hashes (libsodium's
// password hashing); the text a user signs in with lives in the connection's memory alone.
#pragma once
#include <string>

namespace kiv::refhost {

//! A new salted hash of `password` for kiv_user.password_hash, at the interactive cost (a
//! tenth of a second or so). Throws HostError when the library cannot start or runs out of
//! memory.
std::string HashPassword(const std::string& password);

//! True when `password` is not empty and `hash` (as made by HashPassword) was made from it.
//! An empty or malformed hash matches nothing.
bool PasswordMatches(const std::string& hash, const std::string& password);

}  // namespace kiv::refhost

// Texts an attacker, a careless paste or a broken scanner would type into a field: quotes
// and comments that try to end the statement they land in, second statements, unions,
// NUL and control characters, very long and oddly encoded text, numbers out of range.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

namespace kiv::test {

//! `count` hostile texts (the hand-written ones first, then variations of them), the same
//! list on every call.
std::vector<std::string> HostileTexts(size_t count);

//! The number the fast tests use, or the environment's KIV_HOSTILE_TEXTS when set (the long
//! runs of `make stress`).
size_t HostileTextCount(size_t fast_default);

}  // namespace kiv::test

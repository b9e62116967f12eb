// The platform's text functions as the component uses them. Text is UTF-8; case
// mapping knows ASCII and the Latin-1 letters, positions and lengths count bytes.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kiv {

//! Upper case of ASCII and of the Latin-1 letters (é to É, ÿ to Ÿ); ß and other text unchanged.
std::string UCase(std::string_view text);
//! Lower case of ASCII and of the Latin-1 letters (É to é, Ÿ to ÿ).
std::string LCase(std::string_view text);

//! Spaces removed from both ends (spaces only, not tabs or line breaks, as the platform).
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

//! Equality of two texts without regard to case (as UCase folds it).
bool EqualsNoCase(std::string_view a, std::string_view b);
//! Whether text begins with prefix, without regard to case.
bool StartsWithNoCase(std::string_view text, std::string_view prefix);

//! The first n bytes (all when shorter); a negative n raises error 5.
std::string Left(std::string_view text, long n);
//! The last n bytes (all when shorter); a negative n raises error 5.
std::string Right(std::string_view text, long n);
//! From the 1-based start, length bytes (to the end when length is negative); a start
//! below 1 raises error 5, a start past the end gives "".
std::string Mid(std::string_view text, long start, long length = -1);
//! 1-based position of the first find at or after the 1-based start; 0 when absent.
size_t InStr(std::string_view text, std::string_view find, size_t start = 1);

//! Every occurrence of find replaced, left to right without overlap; an empty find changes nothing.
std::string Replace(std::string_view text, std::string_view find, std::string_view replacement);
//! The pieces between delimiters; "" gives no pieces, an empty delimiter gives the text whole.
std::vector<std::string> Split(std::string_view text, std::string_view delimiter);
std::string Join(const std::vector<std::string>& parts, std::string_view delimiter);

}  // namespace kiv

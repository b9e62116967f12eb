// The one filter that typed text passes through, by the kind of field being typed into.
#pragma once
#include <string>
#include <string_view>

namespace kiv {

enum class FilterMode {
  Numeric,       // digits and "."
  AlphaNumeric,  // letters, digits and space
  Phone,         // digits, "-", "(" and ")"
  General,       // letters, digits, space and @ - _ . , ! ? $ % * ( ) ; :
};

//! Whether a typed character survives the filter; letters are A-Z and a-z only, so every
//! byte of a multi-byte UTF-8 letter is refused.
bool KeepsChar(char c, FilterMode mode);
//! The text with every character the mode refuses removed.
std::string FilterText(std::string_view text, FilterMode mode);

}  // namespace kiv

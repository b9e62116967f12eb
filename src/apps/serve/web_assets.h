// The page, its script and its stylesheet, built into the program from web/.
#pragma once
#include <string_view>

namespace kiv::serve {

std::string_view IndexHtml();
std::string_view AppJs();
std::string_view AppCss();

}  // namespace kiv::serve

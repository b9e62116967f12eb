// Display formatting of values, with the platform's named formats and masks.
#pragma once
#include <string>
#include <string_view>

#include "core/variant.h"

namespace kiv {

//! The value shown through a named format ("Currency", "Standard", "Fixed", "Percent",
//! "General Number", "Scientific", "Yes/No", "True/False", "On/Off", "General Date",
//! "Long Date", "Medium Date", "Short Date", "Long Time", "Medium Time", "Short Time";
//! names without regard to case) or a mask: number masks of 0 # . , % E+ with up to three
//! ";" sections (positive;negative;zero), date masks of d m y h n s w q c AM/PM AMPM.
//! A number mask wholly in parentheses, as grid columns use ("($#,###.00)"), shows
//! negative amounts in parentheses and positive ones without them. "m" is the minute
//! after an hour or before seconds, otherwise the month. Null and Empty give "";
//! numeric text is formatted as its number, date text through a date mask as its date,
//! other text comes back unchanged; an empty or unrecognised format gives the plain text.
//! Every finite number formats, however large or small: a mask writes all its whole digits
//! (DBL_MAX through "#,##0.00" is 309 digits with their commas) and percent or thousands
//! scaling never overflows. An infinity or NaN, which no mask can place, shows through every
//! number format as its plain text ("Inf", "-Inf", "NaN") and through a date format as well.
std::string Format(const Variant& value, std::string_view format);

}  // namespace kiv

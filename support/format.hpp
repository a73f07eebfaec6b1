// The run time's Format for the patterns the engine uses, in the fixed Swiss German locale: "'" groups
// thousands and "." is the decimal sign.
//
// Number patterns: "0" and "#" places, "." and "," (grouping), "%", literals in quotes or after "\", and up
// to three sections "positive;negative;zero". Numbers round half away from zero here (Format(2.5, "0") is
// "3"), unlike CLng. A value that rounds to zero shows without its sign.
// Date patterns: "yyyy", "yy", "q", "m".."mmmm", "d".."dddd" (German names), "h", "n", "s" (and "m" after an
// hour or before a second is the minute); "/" and ":" stay as written.
// Null and Empty give ""; an empty pattern gives the plain text form of CStr; a text that is neither a
// number nor a date comes back unchanged.
#pragma once

#include <string>
#include <string_view>

#include "support/variant.hpp"

namespace ldg {

std::string Format(const Variant& value, std::string_view pattern = "");

}  // namespace ldg

// The readings and writings of numbers and dates as text that the conversions and Format share: the locale's
// number reading ("." decimal sign, "'" thousands sign, blanks around, a sign, an exponent, "&H"/"&O"), the
// date reading that IsDate accepts, and the run time's text of a Double or Single. Internal to support/.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/ole_date.hpp"

namespace ldg {

// A number read from text, kept exact: value = digits x 10^exponent (or the "&H"/"&O" value).
struct ParsedNumber {
  bool negative = false;
  std::string digits;
  long exponent = 0;
  std::optional<int64_t> radix_value;
};

// Nothing when the whole text (blanks around aside) is not a number of the locale.
std::optional<ParsedNumber> ReadLocaleNumber(std::string_view text);

// d.m.yyyy, dd.mm.yyyy or yyyy-mm-dd, optionally a blank and h:mm or h:mm:ss; valid calendar dates only.
std::optional<OleDate> ReadDateText(std::string_view text);

// The shortest text that reads back as the same value; the exponent form ("1E+20", "1E-05") from 10^15 on
// (10^7 for a Single) and below 0.0001.
std::string DoubleText(double value, bool single);

}  // namespace ldg

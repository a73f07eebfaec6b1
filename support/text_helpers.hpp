// Fixed-width text and small text tools. Every length, width and position
// counts characters (code points), never bytes, and positions are one-based.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/currency.hpp"

namespace ldg {

// Cut to width from the left end, or filled on the right with the first
// character of pad; a width of 0 or below gives "".
std::string PadRightTo(std::string_view text, int width, std::string_view pad = " ");
// The trimmed text cut to its last width characters, or filled on the left.
// Without a width, the width is the length of the text as given (untrimmed),
// so the trimmed text stands right-aligned in its own width.
std::string PadLeftTo(std::string_view text, std::optional<int> width = std::nullopt,
                      std::string_view pad = " ");
// The number's text through PadLeftTo, filled with "0" unless told otherwise.
std::string NumberPadded(int32_t value, int width, std::string_view pad = "0");
// Exactly length characters from start; positions before the text's start
// and behind its end are the pad's first character. Without a length, up to
// the end of the text.
std::string MidPadded(std::string_view text, int start, std::optional<int> length = std::nullopt,
                      std::string_view pad = " ");
// The text without length characters from start (without a length, without
// everything from start on). A start below 1 or a negative length raises
// run-time error 5.
std::string CutOut(std::string_view text, int start, std::optional<int> length = std::nullopt);
// The insertion placed before position; position 0 or below, or beyond
// length + 1, leaves the text unchanged.
std::string InsertAt(std::string_view text, std::string_view insertion, int position);
// The position of the first character in the set (invert: not in the set),
// searching from the end when from_end is set; the position counts from the
// text's start either way. 0 when there is none.
int ScanChars(std::string_view text, std::string_view set, bool invert = false, bool from_end = false);
// Every occurrence replaced, the scan going on behind each replacement; an
// empty search leaves the text unchanged.
std::string ReplaceAll(std::string_view text, std::string_view search, std::string_view replacement);
// The text count times; "" for a count of 0 or below.
std::string Repeat(int32_t count, std::string_view text);
// The amount as "#,##0.00" in the fixed locale ("1'234.50").
std::string FormatMoney(Currency value);

}  // namespace ldg

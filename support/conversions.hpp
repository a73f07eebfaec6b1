// The run time's conversions between Variant kinds, with its semantics:
// rounding half to even when a number narrows to a whole number, overflow as
// run-time error 6, Null where a value is needed as error 94, anything that
// does not convert as error 13. The locale is the fixed Swiss German one:
// "." as decimal sign, "'" as thousands sign, dates as "dd.mm.yyyy",
// Booleans as "Wahr"/"Falsch".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/currency.hpp"
#include "support/format.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// The text form: Empty is "", Booleans "Wahr"/"Falsch", a Date "dd.mm.yyyy" with
// " hh:mm:ss" when it has a time (a time on day 0 alone: "hh:mm:ss"), a Double
// the shortest text that reads back ("1E+20", "1E-05" far out), Currency and
// Decimal exact without trailing zeros. Null raises 94.
std::string CStr(const Variant& value);
// Whether an optional argument holds something: not Null, not Empty, not the empty text.
bool IsGivenText(const Variant& value);
// Numbers are True when not zero; texts "Wahr", "Falsch", "True", "False" in
// any case, or a number; anything else raises 13.
bool CBool(const Variant& value);
// Whole numbers round half to even (2.5 is 2, -1.5 is -2) and raise 6 beyond
// the type; texts read through the locale (blanks around, a sign, "'" groups,
// "." decimals, an exponent, "&H"/"&O"); Empty is 0, True is -1, a Date its
// serial number; a text that is no number raises 13.
uint8_t CByte(const Variant& value);
int16_t CInt(const Variant& value);
int32_t CLng(const Variant& value);
float CSng(const Variant& value);
double CDbl(const Variant& value);
// A text is read exactly, digit by digit; half to even at the fourth decimal.
Currency CCur(const Variant& value);
// A number is a serial (6 beyond the years 100 to 9999); a text must read as
// IsDate reads it, else 13.
OleDate CDate(const Variant& value);

// Reads the leading number of a text ("12abc" is 12, "abc" is 0, "&H1F" is 31),
// skipping blanks even between digits (" 1 2" is 12), with "." as decimal sign.
double Val(std::string_view text);

// Empty, Booleans and numbers are numeric, Null and Dates are not; a text when
// the locale reads it as a number.
bool IsNumeric(const Variant& value);
// A Date Variant, or a text that reads as d.m.yyyy, dd.mm.yyyy or yyyy-mm-dd,
// optionally followed by a blank and h:mm or h:mm:ss.
bool IsDate(const Variant& value);

OleDate DateValue(const Variant& value);  // the date part of a date or a date text
// Months and days out of range carry over; years 0 to 29 are 2000 to 2029 and 30
// to 99 are 1930 to 1999; error 5 outside the years 100 to 9999.
OleDate DateSerial(int year, int month, int day);
// interval: "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s" (else error 5);
// number is cut to a whole count; a month step keeps the day where it can and
// else takes the month's last day (31.01.2004 plus a month is 29.02.2004).
OleDate DateAdd(std::string_view interval, double number, OleDate date);

// The run time's Round: half to even at the given number of decimals.
double Round(double value, int decimals = 0);
Currency Round(Currency value, int decimals);
// Fix truncates towards zero, Int towards minus infinity.
double Fix(double value);
double Int(double value);

}  // namespace ldg

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
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

std::string CStr(const Variant& value);
bool CBool(const Variant& value);
uint8_t CByte(const Variant& value);
int16_t CInt(const Variant& value);
int32_t CLng(const Variant& value);
float CSng(const Variant& value);
double CDbl(const Variant& value);
Currency CCur(const Variant& value);
OleDate CDate(const Variant& value);

// Reads the leading number of a text ("12abc" is 12, "abc" is 0, "&H1F" is 31),
// skipping blanks, with "." as decimal sign.
double Val(std::string_view text);

bool IsNumeric(const Variant& value);
// A Date Variant, or a text that reads as d.m.yyyy, dd.mm.yyyy or yyyy-mm-dd,
// optionally followed by a blank and h:mm or h:mm:ss.
bool IsDate(const Variant& value);

// The run time's Format for the patterns the engine uses: "#,##0.00",
// "#,##0.", "0.00", "0.00000000", "00000000000000", "#,##0.00%", "dd.mm.yyyy",
// "dd/mm/yyyy", "yyyy", "mm", "hh:mm:ss" and their relatives. An empty pattern
// gives the plain text form (as CStr, but Null gives "").
std::string Format(const Variant& value, std::string_view pattern = "");

OleDate DateValue(const Variant& value);  // the date part of a date or a date text
OleDate DateSerial(int year, int month, int day);
// interval: "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s"; a month step
// keeps the day where it can and else takes the month's last day.
OleDate DateAdd(std::string_view interval, double number, OleDate date);

// The run time's Round: half to even at the given number of decimals.
double Round(double value, int decimals = 0);
Currency Round(Currency value, int decimals);
// Fix truncates towards zero, Int towards minus infinity.
double Fix(double value);
double Int(double value);

}  // namespace ldg

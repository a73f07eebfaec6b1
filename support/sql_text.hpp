// Text that goes into statements: quoted texts, date literals, date-range
// conditions and numbers. Everything here is independent of the machine's
// locale: dates are always "#month/day/year#" and numbers always use "." as
// decimal sign, so a statement reads the same on every machine.
#pragma once

#include <string>
#include <string_view>

#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// The text of a value as it is pasted into a statement: Null and Empty paste as "".
std::string PastedText(const Variant& value);

// Each "'" doubled, as a String Variant; Null stays Null.
Variant DoubleApostrophes(const Variant& text);

// The text between two quotes, each quote inside it doubled.
std::string QuoteText(std::string_view text, std::string_view quote = "\"");

// "#m/d/yyyy#" with no padding, as a String Variant; Empty for what is no date.
Variant DateLiteral(const Variant& date);
// "#mm/dd/yyyy#": month and day to two digits, year to four.
std::string DateLiteralPadded(OleDate date);

// A condition on a date field for a range whose ends may be missing (a value
// that is no date is a missing end):
//   both equal "(f=#..#)", both in order "(f BETWEEN #..# AND #..#)",
//   from after to "FALSE", only from "(f>=#..#)", only to "(f<=#..#)", none "".
std::string DateRangeCondition(std::string_view field_name, const Variant& date_from, const Variant& date_to);

// The shortest text that reads back to the same double, with "." as decimal
// sign: the run time's text of the number in the fixed locale, so very large
// and very small values take the exponent form ("1E-07"). A value that is not
// finite raises run-time error 6.
std::string DoubleToSqlText(double value);
// The exact amount with "." as decimal sign and no trailing zeros.
std::string CurrencyToSqlText(Currency value);
// "True" or "False", as the update statements write a Boolean.
const char* BooleanToSqlText(bool value);

// Adds one assignment to the SET list of an update, after ", " unless it is the first.
void AppendAssignment(std::string& set, std::string_view assignment);

}  // namespace ldg

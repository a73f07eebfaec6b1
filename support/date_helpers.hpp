// Dates for people and calendar arithmetic: texts of dates and date ranges,
// German month and period names, and the first and last days of months,
// quarters, half years and years. Calendar results are built from year, month
// and day alone, so they carry no time of day.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// "" for Null, for what is no date and for the date 0; else the date in the
// format, or its plain text form when the format is empty.
std::string FormatDate(const Variant& date, std::string_view format);
// FormatDate with "dd.mm.yyyy".
std::string ShortDate(const Variant& date);
// "Von a bis b", "Am a", "Nie" (from after to), "Von a", "Bis b" or "", with
// the dates as ShortDate; a value that is no date is a missing end.
std::string DateRangeText(const Variant& date_from, const Variant& date_to);
// "yyyymmdd hhmmss", fifteen characters; fifteen blanks for the date 0.
std::string SortableStamp(OleDate date);

// "Januar" ... "Dezember" for the month of a date or for a number 1 to 12;
// "" for anything else.
std::string MonthName(const Variant& month_or_date);
// "2023 - Jahr".
std::string YearName(int16_t year);
// "2023 - März".
std::string MonthPeriodName(OleDate date);

OleDate MonthStart(OleDate date);
OleDate MonthEnd(OleDate date);
OleDate YearStart(OleDate date);
OleDate YearEnd(OleDate date);
// Quarters begin on 1 January, 1 April, 1 July and 1 October.
OleDate QuarterStart(OleDate date);
OleDate QuarterEnd(OleDate date);
// Half years begin on 1 January and 1 July.
OleDate SemesterStart(OleDate date);
OleDate SemesterEnd(OleDate date);

}  // namespace ldg

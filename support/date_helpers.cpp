#include "support/date_helpers.hpp"

#include <array>
#include <cmath>
#include <cstdio>

#include "support/conversions.hpp"

namespace ldg {
namespace {

constexpr std::array<const char*, 12> kMonthNames = {"Januar",    "Februar", "März",     "April",
                                                     "Mai",       "Juni",    "Juli",     "August",
                                                     "September", "Oktober", "November", "Dezember"};

OleDate DayBefore(OleDate date) { return OleDate(date.Serial() - 1); }

// The first month of the date's period of period_months (3 for quarters, 6 for half years).
int FirstMonthOfPeriod(OleDate date, int period_months) {
  return (date.Month() - 1) / period_months * period_months + 1;
}

}  // namespace

std::string FormatDate(const Variant& date, std::string_view format) {
  if (!IsDate(date)) return "";
  OleDate value = CDate(date);
  if (value.Serial() == 0) return "";
  if (format.empty()) return CStr(date);
  return Format(Variant(value), format);
}

std::string ShortDate(const Variant& date) { return FormatDate(date, "dd.mm.yyyy"); }

std::string DateRangeText(const Variant& date_from, const Variant& date_to) {
  bool has_from = IsDate(date_from);
  bool has_to = IsDate(date_to);
  if (has_from && has_to) {
    OleDate from = CDate(date_from);
    OleDate to = CDate(date_to);
    if (from < to) return "Von " + ShortDate(date_from) + " bis " + ShortDate(date_to);
    if (from == to) return "Am " + ShortDate(date_from);
    return "Nie";
  }
  if (has_from) return "Von " + ShortDate(date_from);
  if (has_to) return "Bis " + ShortDate(date_to);
  return "";
}

std::string SortableStamp(OleDate date) {
  if (date.Serial() == 0) return std::string(15, ' ');
  CivilTime civil = date.ToCivil();
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%04d%02d%02d %02d%02d%02d", civil.year, civil.month, civil.day,
                civil.hour, civil.minute, civil.second);
  return buffer;
}

std::string MonthName(const Variant& month_or_date) {
  double month = 0;
  if (IsDate(month_or_date)) {
    month = CDate(month_or_date).Month();
  } else if (month_or_date.IsNumber()) {
    month = CDbl(month_or_date);
  }
  if (month < 1 || month > 12 || month != std::trunc(month)) return "";
  return kMonthNames[static_cast<size_t>(month) - 1];
}

std::string YearName(int16_t year) { return std::to_string(year) + " - Jahr"; }

std::string MonthPeriodName(OleDate date) {
  return std::to_string(date.Year()) + " - " + MonthName(Variant(date));
}

OleDate MonthStart(OleDate date) { return OleDate::FromYmd(date.Year(), date.Month(), 1); }

OleDate MonthEnd(OleDate date) { return DayBefore(OleDate::FromYmd(date.Year(), date.Month() + 1, 1)); }

OleDate YearStart(OleDate date) { return OleDate::FromYmd(date.Year(), 1, 1); }

OleDate YearEnd(OleDate date) { return OleDate::FromYmd(date.Year(), 12, 31); }

OleDate QuarterStart(OleDate date) { return OleDate::FromYmd(date.Year(), FirstMonthOfPeriod(date, 3), 1); }

OleDate QuarterEnd(OleDate date) {
  return DayBefore(OleDate::FromYmd(date.Year(), FirstMonthOfPeriod(date, 3) + 3, 1));
}

OleDate SemesterStart(OleDate date) { return OleDate::FromYmd(date.Year(), FirstMonthOfPeriod(date, 6), 1); }

OleDate SemesterEnd(OleDate date) {
  return DayBefore(OleDate::FromYmd(date.Year(), FirstMonthOfPeriod(date, 6) + 6, 1));
}

}  // namespace ldg

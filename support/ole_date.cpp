#include "support/ole_date.hpp"

#include <cmath>

#include "support/error.hpp"

namespace ldg {

namespace {

// Days from 1970-01-01 (H. Hinnant's civil calendar algorithms).
long DaysFromEpoch(long y, unsigned m, unsigned d) {
  y -= m <= 2;
  const long era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<long>(doe) - 719468;
}

void CivilFromEpoch(long z, int& year, int& month, int& day) {
  z += 719468;
  const long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const long y = static_cast<long>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(y + (month <= 2));
}

constexpr long kOleEpochFromUnix = 25569;  // 1899-12-30 is 25569 days before 1970-01-01

}  // namespace

long DaysFromCivil(int year, int month, int day) {
  // Carry months outside 1..12 into the year, then let days carry freely.
  long y = year + (month - 1 >= 0 ? (month - 1) / 12 : (month - 12) / 12);
  int m = ((month - 1) % 12 + 12) % 12 + 1;
  return DaysFromEpoch(y, static_cast<unsigned>(m), 1) + (day - 1) + kOleEpochFromUnix;
}

OleDate OleDate::FromYmd(int year, int month, int day) {
  double serial = static_cast<double>(DaysFromCivil(year, month, day));
  if (!IsValidSerial(serial)) RaiseRuntime(kErrInvalidCall);
  return OleDate(serial);
}

OleDate OleDate::FromCivil(const CivilTime& t) {
  double days = static_cast<double>(DaysFromCivil(t.year, t.month, t.day));
  double fraction = (t.hour * 3600.0 + t.minute * 60.0 + t.second) / 86400.0;
  // Before the epoch the fraction still runs forward through the day.
  double serial = days >= 0 ? days + fraction : days - fraction;
  if (!IsValidSerial(serial)) RaiseRuntime(kErrInvalidCall);
  return OleDate(serial);
}

CivilTime OleDate::ToCivil() const {
  double whole = std::trunc(serial_);
  double fraction = std::fabs(serial_ - whole);
  long seconds = std::lround(fraction * 86400.0);
  long day_number = static_cast<long>(whole);
  if (seconds >= 86400) {  // rounding reached midnight: the next day, on either side of the epoch
    seconds -= 86400;
    day_number += 1;
  }
  CivilTime t;
  CivilFromEpoch(day_number - kOleEpochFromUnix, t.year, t.month, t.day);
  t.hour = static_cast<int>(seconds / 3600);
  t.minute = static_cast<int>(seconds / 60 % 60);
  t.second = static_cast<int>(seconds % 60);
  return t;
}

OleDate OleDate::DatePart() const { return OleDate(std::trunc(serial_)); }

int OleDate::Weekday() const {
  long days = static_cast<long>(std::trunc(serial_));
  // 1899-12-30 was a Saturday (7).
  return static_cast<int>(((days + 6) % 7 + 7) % 7) + 1;
}

}  // namespace ldg

// OleDate: a point in time as the OLE day number, a double counting days since
// 1899-12-30 with the time of day as fraction. Before 1899-12-30 the whole part
// counts days backwards while the fraction still counts forward through that
// day: -1.25 is 1899-12-29 06:00. The value is what the store keeps (REAL).
#pragma once

#include <compare>
#include <optional>

namespace ldg {

struct CivilTime {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
};

class OleDate {
 public:
  constexpr OleDate() = default;
  constexpr explicit OleDate(double serial) : serial_(serial) {}

  // Valid for years 100 to 9999; run-time error 5 outside, as the run time's
  // date builders raise. Out-of-range months and days carry over (month 13 is
  // January of the next year, day 0 the last day of the month before).
  static OleDate FromYmd(int year, int month, int day);
  static OleDate FromCivil(const CivilTime& time);

  constexpr double Serial() const { return serial_; }
  // Whole seconds, rounded to the nearest second as the run time shows them.
  CivilTime ToCivil() const;
  int Year() const { return ToCivil().year; }
  int Month() const { return ToCivil().month; }
  int Day() const { return ToCivil().day; }
  // The date without its time of day.
  OleDate DatePart() const;
  // 1 = Sunday ... 7 = Saturday.
  int Weekday() const;

  constexpr auto operator<=>(const OleDate&) const = default;

  static constexpr double kMin = -657434.0;            // 0100-01-01
  static constexpr double kMax = 2958465.99998842593;  // 9999-12-31 23:59:59

  // Whether a serial lies in the years 100 to 9999. Before the epoch the time of
  // day makes a serial more negative, so 0100-01-01 12:00 is -657434.5.
  static constexpr bool IsValidSerial(double serial) {
    return serial > kMin - 1 && serial < kMax + 0.5 / 86400.0;
  }

 private:
  double serial_ = 0.0;
};

// Days since 1899-12-30 of a proleptic Gregorian date (no range check).
long DaysFromCivil(int year, int month, int day);

}  // namespace ldg

#include "support/ole_date.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

TEST(OleDate, EpochIsDecember30Of1899) {
  EXPECT_EQ(OleDate::FromYmd(1899, 12, 30).Serial(), 0.0);
  EXPECT_EQ(OleDate::FromYmd(1900, 1, 1).Serial(), 2.0);
  EXPECT_EQ(OleDate::FromYmd(2000, 1, 1).Serial(), 36526.0);
}

TEST(OleDate, NegativeSerialsCountDaysBackwards) {
  const CivilTime t = OleDate(-1.0).ToCivil();
  EXPECT_EQ(t.year, 1899);
  EXPECT_EQ(t.month, 12);
  EXPECT_EQ(t.day, 29);
  EXPECT_EQ(OleDate::FromYmd(1899, 12, 1).Serial(), -29.0);
}

TEST(OleDate, FractionRunsForwardBeforeTheEpoch) {
  const CivilTime t = OleDate(-1.25).ToCivil();
  EXPECT_EQ(t.day, 29);
  EXPECT_EQ(t.hour, 6);
  EXPECT_EQ(t.minute, 0);
  EXPECT_EQ(OleDate::FromCivil({1899, 12, 29, 6, 0, 0}).Serial(), -1.25);
  EXPECT_EQ(OleDate::FromCivil({1899, 12, 29, 18, 0, 0}).Serial(), -1.75);
}

TEST(OleDate, TimeOfDayAfterTheEpoch) {
  const CivilTime t = OleDate::FromCivil({2023, 3, 1, 4, 5, 6}).ToCivil();
  EXPECT_EQ(t.year, 2023);
  EXPECT_EQ(t.month, 3);
  EXPECT_EQ(t.day, 1);
  EXPECT_EQ(t.hour, 4);
  EXPECT_EQ(t.minute, 5);
  EXPECT_EQ(t.second, 6);
}

TEST(OleDate, SecondsRoundToTheNearest) {
  const CivilTime t = OleDate(0.99999999).ToCivil();
  EXPECT_EQ(t.day, 31);
  EXPECT_EQ(t.hour, 0);
  EXPECT_EQ(t.second, 0);
}

TEST(OleDate, MonthsAndDaysCarry) {
  EXPECT_EQ(OleDate::FromYmd(2004, 13, 1), OleDate::FromYmd(2005, 1, 1));
  EXPECT_EQ(OleDate::FromYmd(2004, 3, 0), OleDate::FromYmd(2004, 2, 29));
  EXPECT_EQ(OleDate::FromYmd(2004, 0, 31), OleDate::FromYmd(2003, 12, 31));
}

TEST(OleDate, YearRange100To9999) {
  EXPECT_EQ(OleDate::FromYmd(100, 1, 1).Serial(), OleDate::kMin);
  EXPECT_EQ(OleDate::FromYmd(9999, 12, 31).Serial(), 2958465.0);
  EXPECT_EQ(ErrorNumberOf([] { OleDate::FromYmd(99, 12, 31); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { OleDate::FromYmd(10000, 1, 1); }), 5);
}

TEST(OleDate, FirstDayOfYear100KeepsItsTimeOfDay) {
  EXPECT_EQ(OleDate::FromCivil({100, 1, 1, 12, 0, 0}).Serial(), -657434.5);
  EXPECT_TRUE(OleDate::IsValidSerial(-657434.5));
  EXPECT_FALSE(OleDate::IsValidSerial(-657435.0));
  EXPECT_TRUE(OleDate::IsValidSerial(OleDate::kMax));
  EXPECT_FALSE(OleDate::IsValidSerial(2958466.0));
  EXPECT_EQ(ErrorNumberOf([] { OleDate::FromCivil({10000, 1, 1, 0, 0, 0}); }), 5);
}

TEST(OleDate, DatePartDropsTheTimeOnBothSides) {
  EXPECT_EQ(OleDate(2.75).DatePart().Serial(), 2.0);
  EXPECT_EQ(OleDate(-1.25).DatePart().Serial(), -1.0);
}

TEST(OleDate, WeekdayStartsOnSunday) {
  EXPECT_EQ(OleDate(0.0).Weekday(), 7);                  // Saturday
  EXPECT_EQ(OleDate(1.0).Weekday(), 1);                  // Sunday
  EXPECT_EQ(OleDate(-1.0).Weekday(), 6);                 // Friday
  EXPECT_EQ(OleDate::FromYmd(2002, 3, 1).Weekday(), 6);  // Friday
}

TEST(OleDate, LeapYears) {
  EXPECT_EQ(OleDate::FromYmd(2000, 2, 29).Day(), 29);
  EXPECT_EQ(OleDate::FromYmd(1900, 2, 29), OleDate::FromYmd(1900, 3, 1));
  EXPECT_EQ(DaysFromCivil(2024, 3, 1) - DaysFromCivil(2024, 2, 1), 29);
}

}  // namespace
}  // namespace ldg

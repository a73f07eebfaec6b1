#include "support/date_helpers.hpp"

#include <gtest/gtest.h>

namespace ldg {
namespace {

OleDate Ymd(int year, int month, int day) { return OleDate::FromYmd(year, month, day); }
Variant Date(int year, int month, int day) { return Variant(Ymd(year, month, day)); }

TEST(FormatDateText, UsesTheFormat) {
  EXPECT_EQ(FormatDate(Date(2002, 3, 1), "dd.mm.yyyy"), "01.03.2002");
  EXPECT_EQ(FormatDate(Date(2002, 3, 1), "yyyy"), "2002");
}

TEST(FormatDateText, EmptyFormatGivesThePlainTextForm) {
  EXPECT_EQ(FormatDate(Date(2002, 3, 1), ""), "01.03.2002");
  EXPECT_EQ(FormatDate(Variant(OleDate(Ymd(2002, 3, 1).Serial() + 0.5)), ""), "01.03.2002 12:00:00");
}

TEST(FormatDateText, NullNoDateAndZeroGiveEmpty) {
  EXPECT_EQ(FormatDate(Variant::Null(), "dd.mm.yyyy"), "");
  EXPECT_EQ(FormatDate(Variant("abc"), "dd.mm.yyyy"), "");
  EXPECT_EQ(FormatDate(Variant(37316.0), "dd.mm.yyyy"), "");
  EXPECT_EQ(FormatDate(Variant(OleDate(0.0)), "dd.mm.yyyy"), "");
}

TEST(ShortDate, IsDayMonthYear) {
  EXPECT_EQ(ShortDate(Date(2002, 3, 1)), "01.03.2002");
  EXPECT_EQ(ShortDate(Variant("2023-12-31")), "31.12.2023");
}

TEST(ShortDate, OfZeroIsEmpty) { EXPECT_EQ(ShortDate(Variant(OleDate(0.0))), ""); }

TEST(DateRangeText, FromBeforeTo) {
  EXPECT_EQ(DateRangeText(Date(2023, 1, 1), Date(2023, 12, 31)), "Von 01.01.2023 bis 31.12.2023");
}

TEST(DateRangeText, EqualDates) {
  EXPECT_EQ(DateRangeText(Date(2023, 5, 1), Date(2023, 5, 1)), "Am 01.05.2023");
}

TEST(DateRangeText, FromAfterToIsNever) {
  EXPECT_EQ(DateRangeText(Date(2023, 12, 31), Date(2023, 1, 1)), "Nie");
}

TEST(DateRangeText, OnlyOneEnd) {
  EXPECT_EQ(DateRangeText(Date(2023, 1, 1), Variant::Null()), "Von 01.01.2023");
  EXPECT_EQ(DateRangeText(Variant(), Date(2023, 6, 30)), "Bis 30.06.2023");
}

TEST(DateRangeText, NoEnds) { EXPECT_EQ(DateRangeText(Variant("x"), Variant::Null()), ""); }

TEST(SortableStamp, IsFifteenCharactersOfDateAndTime) {
  OleDate stamp = OleDate::FromCivil(CivilTime{2002, 3, 1, 4, 5, 6});
  EXPECT_EQ(SortableStamp(stamp), "20020301 040506");
}

TEST(SortableStamp, OfZeroIsFifteenBlanks) { EXPECT_EQ(SortableStamp(OleDate(0.0)), "               "); }

TEST(MonthName, OfANumber) {
  EXPECT_EQ(MonthName(Variant(int32_t{1})), "Januar");
  EXPECT_EQ(MonthName(Variant(int16_t{3})), "März");
  EXPECT_EQ(MonthName(Variant(int32_t{12})), "Dezember");
}

TEST(MonthName, OfADate) { EXPECT_EQ(MonthName(Date(2023, 10, 15)), "Oktober"); }

TEST(MonthName, OtherNumbersGiveEmpty) {
  EXPECT_EQ(MonthName(Variant(int32_t{0})), "");
  EXPECT_EQ(MonthName(Variant(int32_t{13})), "");
  EXPECT_EQ(MonthName(Variant::Null()), "");
}

TEST(YearName, IsTheYearWithJahr) { EXPECT_EQ(YearName(2023), "2023 - Jahr"); }

TEST(MonthPeriodName, IsYearAndMonthName) { EXPECT_EQ(MonthPeriodName(Ymd(2023, 3, 17)), "2023 - März"); }

TEST(Calendar, MonthStartAndEnd) {
  EXPECT_EQ(MonthStart(Ymd(2023, 4, 17)), Ymd(2023, 4, 1));
  EXPECT_EQ(MonthEnd(Ymd(2023, 4, 17)), Ymd(2023, 4, 30));
  EXPECT_EQ(MonthEnd(Ymd(2023, 12, 5)), Ymd(2023, 12, 31));
}

TEST(Calendar, MonthEndOfFebruaryInALeapYearIsThe29th) {
  EXPECT_EQ(MonthEnd(Ymd(2024, 2, 10)), Ymd(2024, 2, 29));
  EXPECT_EQ(MonthEnd(Ymd(2023, 2, 10)), Ymd(2023, 2, 28));
}

TEST(Calendar, DropsTheTimeOfDay) {
  OleDate noon(Ymd(2023, 4, 17).Serial() + 0.5);
  EXPECT_EQ(MonthStart(noon), Ymd(2023, 4, 1));
  EXPECT_EQ(YearEnd(noon), Ymd(2023, 12, 31));
}

TEST(Calendar, YearStartAndEnd) {
  EXPECT_EQ(YearStart(Ymd(2023, 8, 15)), Ymd(2023, 1, 1));
  EXPECT_EQ(YearEnd(Ymd(2023, 8, 15)), Ymd(2023, 12, 31));
}

TEST(Calendar, Quarters) {
  EXPECT_EQ(QuarterStart(Ymd(2023, 8, 15)), Ymd(2023, 7, 1));
  EXPECT_EQ(QuarterEnd(Ymd(2023, 8, 15)), Ymd(2023, 9, 30));
  EXPECT_EQ(QuarterStart(Ymd(2023, 3, 31)), Ymd(2023, 1, 1));
  EXPECT_EQ(QuarterEnd(Ymd(2023, 3, 31)), Ymd(2023, 3, 31));
  EXPECT_EQ(QuarterStart(Ymd(2023, 4, 1)), Ymd(2023, 4, 1));
  EXPECT_EQ(QuarterEnd(Ymd(2023, 11, 2)), Ymd(2023, 12, 31));
}

TEST(Calendar, HalfYears) {
  EXPECT_EQ(SemesterStart(Ymd(2023, 3, 1)), Ymd(2023, 1, 1));
  EXPECT_EQ(SemesterEnd(Ymd(2023, 3, 1)), Ymd(2023, 6, 30));
  EXPECT_EQ(SemesterStart(Ymd(2023, 7, 1)), Ymd(2023, 7, 1));
  EXPECT_EQ(SemesterEnd(Ymd(2023, 7, 1)), Ymd(2023, 12, 31));
}

}  // namespace
}  // namespace ldg

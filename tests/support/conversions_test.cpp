#include "support/conversions.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <random>

#include "support/error.hpp"

namespace ldg {
namespace {

// Runs the action and returns "number: text" of the error it raises, or "" when it raises none.
std::string ErrorOf(auto&& action) {
  try {
    action();
  } catch (const Error& error) {
    return std::to_string(error.Number()) + ": " + error.Description();
  }
  return "";
}

OleDate Ymd(int year, int month, int day) { return OleDate::FromYmd(year, month, day); }

OleDate At(int year, int month, int day, int hour, int minute, int second) {
  return OleDate::FromCivil({year, month, day, hour, minute, second});
}

// ---- CStr

TEST(IsGivenText, NullEmptyAndTheEmptyTextAreNotGiven) {
  EXPECT_FALSE(IsGivenText(Variant::Null()));
  EXPECT_FALSE(IsGivenText(Variant()));
  EXPECT_FALSE(IsGivenText(Variant(std::string())));
  EXPECT_TRUE(IsGivenText(Variant(std::string(" "))));
  EXPECT_TRUE(IsGivenText(Variant(int32_t{0})));
}

TEST(CStr, NullIsInvalidUseOfNull) {
  EXPECT_EQ(ErrorOf([] { CStr(Variant::Null()); }), "94: Invalid use of Null");
}

TEST(CStr, EmptyIsTheEmptyText) { EXPECT_EQ(CStr(Variant()), ""); }

TEST(CStr, BooleansAreWahrAndFalsch) {
  EXPECT_EQ(CStr(true), "Wahr");
  EXPECT_EQ(CStr(false), "Falsch");
}

TEST(CStr, WholeNumbersArePlain) {
  EXPECT_EQ(CStr(int32_t{-123456}), "-123456");
  EXPECT_EQ(CStr(int16_t{-32768}), "-32768");
  EXPECT_EQ(CStr(uint8_t{255}), "255");
}

TEST(CStr, DoubleIsTheShortestTextThatReadsBack) {
  EXPECT_EQ(CStr(1.5), "1.5");
  EXPECT_EQ(CStr(-0.25), "-0.25");
  EXPECT_EQ(CStr(100.0), "100");
  EXPECT_EQ(CStr(0.1), "0.1");
  EXPECT_EQ(CStr(0.0), "0");
  EXPECT_EQ(CStr(123456789012345.0), "123456789012345");
  EXPECT_EQ(CStr(0.0001), "0.0001");
}

TEST(CStr, DoubleShowsEveryDigitNeededToReadBack) {
  EXPECT_EQ(CStr(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(CDbl(CStr(0.1 + 0.2)), 0.1 + 0.2);
}

TEST(CStr, EveryDoubleReadsBackExactly) {
  std::mt19937_64 random(42);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (std::isnan(value) || std::isinf(value)) continue;
    ASSERT_EQ(CDbl(CStr(value)), value) << CStr(value);
  }
}

TEST(CStr, EveryCurrencyReadsBackExactly) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    const Currency value = Currency::FromRaw(static_cast<int64_t>(random()) >> (random() % 64));
    ASSERT_EQ(CCur(CStr(value)), value) << CStr(value);
  }
}

TEST(CStr, VeryLargeAndSmallDoublesUseTheExponentForm) {
  EXPECT_EQ(CStr(1e20), "1E+20");
  EXPECT_EQ(CStr(1e15), "1E+15");
  EXPECT_EQ(CStr(0.00001), "1E-05");
  EXPECT_EQ(CStr(-1.5e-7), "-1.5E-07");
  EXPECT_EQ(CStr(1e100), "1E+100");
}

TEST(CStr, SingleUsesItsOwnPrecision) {
  EXPECT_EQ(CStr(0.1f), "0.1");
  EXPECT_EQ(CStr(1e7f), "1E+07");
  EXPECT_EQ(CStr(1234567.0f), "1234567");
}

TEST(CStr, CurrencyHasNoTrailingZeros) {
  EXPECT_EQ(CStr(*Currency::Parse("12.5000")), "12.5");
  EXPECT_EQ(CStr(Currency::Max()), "922337203685477.5807");
}

TEST(CStr, DecimalIsExact) {
  EXPECT_EQ(CStr(Decimal{12345, 2}), "123.45");
  EXPECT_EQ(CStr(Decimal{-5, 3}), "-0.005");
  EXPECT_EQ(CStr(Decimal{1200, 2}), "12");
}

TEST(CStr, DateWithoutTimeIsDayMonthYear) { EXPECT_EQ(CStr(Ymd(2004, 2, 29)), "29.02.2004"); }

TEST(CStr, DateWithTimeAddsTheTime) { EXPECT_EQ(CStr(At(2023, 3, 1, 4, 5, 6)), "01.03.2023 04:05:06"); }

TEST(CStr, PureTimeShowsOnlyTheTime) { EXPECT_EQ(CStr(OleDate(0.75)), "18:00:00"); }

TEST(CStr, DayZeroShowsAsMidnight) { EXPECT_EQ(CStr(OleDate(0.0)), "00:00:00"); }

TEST(CStr, DatesBeforeTheEpochCountBackwards) {
  EXPECT_EQ(CStr(OleDate(-1.0)), "29.12.1899");
  EXPECT_EQ(CStr(OleDate(-1.25)), "29.12.1899 06:00:00");
  EXPECT_EQ(CStr(OleDate(1.5)), "31.12.1899 12:00:00");
}

TEST(CStr, YearsFrom100To9999) {
  EXPECT_EQ(CStr(OleDate(OleDate::kMin)), "01.01.0100");
  EXPECT_EQ(CStr(Ymd(9999, 12, 31)), "31.12.9999");
}

TEST(CStr, ObjectIsTypeMismatchAndNothingIsNotSet) {
  EXPECT_EQ(ErrorOf([] { CStr(Variant(std::make_shared<Object>())); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CStr(Variant::Nothing()); }), "91: Object variable or With block variable not set");
}

// ---- CLng, CInt, CByte

TEST(CLng, RoundsHalfToEven) {
  EXPECT_EQ(CLng(0.5), 0);
  EXPECT_EQ(CLng(1.5), 2);
  EXPECT_EQ(CLng(2.5), 2);
  EXPECT_EQ(CLng(3.5), 4);
  EXPECT_EQ(CLng(-0.5), 0);
  EXPECT_EQ(CLng(-1.5), -2);
  EXPECT_EQ(CLng(-2.5), -2);
  EXPECT_EQ(CLng(2.500001), 3);
}

TEST(CLng, TextsRoundHalfToEvenToo) {
  EXPECT_EQ(CLng("0.5"), 0);
  EXPECT_EQ(CLng("1.5"), 2);
  EXPECT_EQ(CLng("2.5"), 2);
  EXPECT_EQ(CLng("-0.5"), 0);
}

TEST(CLng, CurrencyRoundsHalfToEvenExactly) {
  EXPECT_EQ(CLng(*Currency::Parse("2.5")), 2);
  EXPECT_EQ(CLng(*Currency::Parse("3.5")), 4);
  EXPECT_EQ(CLng(*Currency::Parse("-2.5001")), -3);
}

TEST(CLng, DecimalRoundsHalfToEven) {
  EXPECT_EQ(CLng(Decimal{25, 1}), 2);
  EXPECT_EQ(CLng(Decimal{-35, 1}), -4);
}

TEST(CLng, LimitsOfLong) {
  EXPECT_EQ(CLng(2147483647.0), INT32_MAX);
  EXPECT_EQ(CLng(-2147483648.0), INT32_MIN);
  EXPECT_EQ(CLng(2147483647.4), INT32_MAX);
  EXPECT_EQ(ErrorOf([] { CLng(2147483647.5); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CLng(2147483648.0); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CLng(-2147483649.0); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CLng("2147483648"); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CLng(Currency::Max()); }), "6: Overflow");
}

TEST(CInt, LimitsOfInteger) {
  EXPECT_EQ(CInt(32767.0), 32767);
  EXPECT_EQ(CInt(-32768.0), -32768);
  EXPECT_EQ(CInt(int32_t{32767}), 32767);
  EXPECT_EQ(ErrorOf([] { CInt(int32_t{32768}); }), "6: Overflow");
  EXPECT_EQ(CInt(-32768.5), -32768);
  EXPECT_EQ(ErrorOf([] { CInt(-32769.0); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CInt(32767.5); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CInt("40000"); }), "6: Overflow");
}

TEST(CInt, RoundsHalfToEven) {
  EXPECT_EQ(CInt(0.5), 0);
  EXPECT_EQ(CInt(1.5), 2);
  EXPECT_EQ(CInt(2.5), 2);
  EXPECT_EQ(CInt(-0.5), 0);
  EXPECT_EQ(CInt(-1.5), -2);
}

TEST(CByte, RangeIsZeroTo255) {
  EXPECT_EQ(CByte(255.0), 255);
  EXPECT_EQ(CByte(-0.5), 0);
  EXPECT_EQ(CByte(254.5), 254);
  EXPECT_EQ(ErrorOf([] { CByte(255.5); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CByte(int32_t{-1}); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CByte(true); }), "6: Overflow");
}

TEST(CLng, NullIsInvalidUseOfNull) {
  EXPECT_EQ(ErrorOf([] { CLng(Variant::Null()); }), "94: Invalid use of Null");
}

TEST(CLng, EmptyIsZero) { EXPECT_EQ(CLng(Variant()), 0); }

TEST(CLng, TrueIsMinusOne) {
  EXPECT_EQ(CLng(true), -1);
  EXPECT_EQ(CLng(false), 0);
  EXPECT_EQ(CInt(true), -1);
}

TEST(CLng, DateIsItsSerialNumber) {
  EXPECT_EQ(CLng(Ymd(2000, 1, 1)), 36526);
  EXPECT_EQ(CLng(OleDate(-1.25)), -1);
}

TEST(CLng, TextReadsThroughTheLocale) {
  EXPECT_EQ(CLng("  42  "), 42);
  EXPECT_EQ(CLng("-17"), -17);
  EXPECT_EQ(CLng("+17"), 17);
  EXPECT_EQ(CLng("1'234'567"), 1234567);
  EXPECT_EQ(CLng("12.4"), 12);
  EXPECT_EQ(CLng("1E3"), 1000);
  EXPECT_EQ(CLng("&H1F"), 31);
}

TEST(CLng, NonNumericTextIsTypeMismatch) {
  EXPECT_EQ(ErrorOf([] { CLng("abc"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CLng(""); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CLng("12abc"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CLng("1,5"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CLng("."); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CLng("'1"); }), "13: Type mismatch");
}

TEST(CLng, NothingIsObjectNotSet) {
  EXPECT_EQ(ErrorOf([] { CLng(Variant::Nothing()); }), "91: Object variable or With block variable not set");
}

// ---- CCur

TEST(CCur, RoundsHalfToEvenAtTheFourthDecimal) {
  EXPECT_EQ(CCur(0.00005), Currency());
  EXPECT_EQ(CCur("0.00005"), Currency());
  EXPECT_EQ(CCur("0.00015").Raw(), 2);
  EXPECT_EQ(CCur("0.00025").Raw(), 2);
  EXPECT_EQ(CCur("0.000250001").Raw(), 3);
  EXPECT_EQ(CCur("-0.00015").Raw(), -2);
}

TEST(CCur, TextIsReadExactly) {
  EXPECT_EQ(CCur("922337203685477.5807"), Currency::Max());
  EXPECT_EQ(CCur("-922337203685477.5808"), Currency::Min());
  EXPECT_EQ(CCur("0.1").Raw(), 1000);
  EXPECT_EQ(CCur("1'234.56").Raw(), 12345600);
  EXPECT_EQ(CCur(" 1.5E2 ").Raw(), 1500000);
  EXPECT_EQ(CCur("1.5E-4").Raw(), 2);
}

TEST(CCur, OverflowBeyondTheLimits) {
  EXPECT_EQ(ErrorOf([] { CCur("922337203685477.5808"); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CCur("-922337203685477.5809"); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CCur(1e15); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CCur("1E30"); }), "6: Overflow");
}

TEST(CCur, OtherKinds) {
  EXPECT_EQ(CCur(true).Raw(), -10000);
  EXPECT_EQ(CCur(Variant()).Raw(), 0);
  EXPECT_EQ(CCur(int32_t{7}).Raw(), 70000);
  EXPECT_EQ(CCur(Decimal{123456, 5}).Raw(), 12346);
  EXPECT_EQ(ErrorOf([] { CCur(Variant::Null()); }), "94: Invalid use of Null");
  EXPECT_EQ(ErrorOf([] { CCur("x"); }), "13: Type mismatch");
}

// ---- CDbl, CSng

TEST(CDbl, ConvertsEveryNumberKind) {
  EXPECT_EQ(CDbl("1'000.25"), 1000.25);
  EXPECT_EQ(CDbl(*Currency::Parse("1.5")), 1.5);
  EXPECT_EQ(CDbl(true), -1.0);
  EXPECT_EQ(CDbl(OleDate(-1.25)), -1.25);
  EXPECT_EQ(CDbl(Variant()), 0.0);
  EXPECT_EQ(CDbl(" -2.5e-3 "), -0.0025);
  EXPECT_EQ(ErrorOf([] { CDbl("1e400"); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CDbl("Wahr"); }), "13: Type mismatch");
}

TEST(CSng, OverflowBeyondTheSingleRange) {
  EXPECT_EQ(CSng(1.5), 1.5f);
  EXPECT_EQ(ErrorOf([] { CSng(1e39); }), "6: Overflow");
}

// ---- CBool

TEST(CBool, NumbersAreTrueWhenNotZero) {
  EXPECT_TRUE(CBool(int32_t{5}));
  EXPECT_TRUE(CBool(-0.1));
  EXPECT_FALSE(CBool(0.0));
  EXPECT_FALSE(CBool(Currency()));
  EXPECT_TRUE(CBool(Currency::FromRaw(1)));
  EXPECT_FALSE(CBool(Variant()));
}

TEST(CBool, WordsInEitherLanguageIgnoringCase) {
  EXPECT_TRUE(CBool("Wahr"));
  EXPECT_TRUE(CBool("WAHR"));
  EXPECT_TRUE(CBool("true"));
  EXPECT_FALSE(CBool("Falsch"));
  EXPECT_FALSE(CBool("FALSE"));
}

TEST(CBool, NumericTexts) {
  EXPECT_TRUE(CBool("-1"));
  EXPECT_FALSE(CBool("0"));
  EXPECT_TRUE(CBool("0.5"));
}

TEST(CBool, OtherTextIsTypeMismatch) {
  EXPECT_EQ(ErrorOf([] { CBool("ja"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CBool(""); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CBool(Variant::Null()); }), "94: Invalid use of Null");
}

// ---- CDate, DateValue, DateSerial

TEST(CDate, ReadsTheDateForms) {
  EXPECT_EQ(CDate("1.3.2002"), Ymd(2002, 3, 1));
  EXPECT_EQ(CDate("01.03.2002"), Ymd(2002, 3, 1));
  EXPECT_EQ(CDate("2002-03-01"), Ymd(2002, 3, 1));
  EXPECT_EQ(CDate("01.03.2002 04:05:06"), At(2002, 3, 1, 4, 5, 6));
  EXPECT_EQ(CDate("01.03.2002 4:05"), At(2002, 3, 1, 4, 5, 0));
}

TEST(CDate, NumbersAreSerials) {
  EXPECT_EQ(CDate(36526.0), Ymd(2000, 1, 1));
  EXPECT_EQ(CDate(-1.25).Serial(), -1.25);
  EXPECT_EQ(CDate(true).Serial(), -1.0);
  EXPECT_EQ(ErrorOf([] { CDate(1e10); }), "6: Overflow");
}

TEST(CDate, SerialsOutsideTheYears100To9999Overflow) {
  EXPECT_EQ(CDate(-657434.5).Serial(), -657434.5);
  EXPECT_EQ(ErrorOf([] { CDate(-657435.0); }), "6: Overflow");
  EXPECT_EQ(ErrorOf([] { CDate(2958466.0); }), "6: Overflow");
  EXPECT_EQ(CDate(2958465.0), Ymd(9999, 12, 31));
}

TEST(CDate, FailuresRaise) {
  EXPECT_EQ(ErrorOf([] { CDate("31.02.2004"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CDate("abc"); }), "13: Type mismatch");
  EXPECT_EQ(ErrorOf([] { CDate(Variant::Null()); }), "94: Invalid use of Null");
}

TEST(DateValue, DropsTheTime) {
  EXPECT_EQ(DateValue("01.03.2002 04:05:06"), Ymd(2002, 3, 1));
  EXPECT_EQ(DateValue(At(2002, 3, 1, 23, 59, 59)), Ymd(2002, 3, 1));
  EXPECT_EQ(DateValue(OleDate(-1.25)).Serial(), -1.0);
}

TEST(DateSerial, CarriesMonthsAndDays) {
  EXPECT_EQ(DateSerial(2004, 13, 1), Ymd(2005, 1, 1));
  EXPECT_EQ(DateSerial(2004, 3, 0), Ymd(2004, 2, 29));
  EXPECT_EQ(DateSerial(2004, 1, 32), Ymd(2004, 2, 1));
  EXPECT_EQ(DateSerial(2004, 0, 1), Ymd(2003, 12, 1));
  EXPECT_EQ(DateSerial(2004, -1, 15), Ymd(2003, 11, 15));
}

TEST(DateSerial, TwoDigitYearsAreMappedLikeTheRunTime) {
  EXPECT_EQ(DateSerial(5, 1, 1), Ymd(2005, 1, 1));
  EXPECT_EQ(DateSerial(29, 1, 1), Ymd(2029, 1, 1));
  EXPECT_EQ(DateSerial(30, 1, 1), Ymd(1930, 1, 1));
  EXPECT_EQ(DateSerial(99, 12, 31), Ymd(1999, 12, 31));
}

TEST(DateSerial, BeyondTheYearRangeIsInvalidCall) {
  EXPECT_EQ(ErrorOf([] { DateSerial(10000, 1, 1); }), "5: Invalid procedure call or argument");
  EXPECT_EQ(DateSerial(100, 1, 1).Serial(), OleDate::kMin);
}

// ---- DateAdd

TEST(DateAdd, MonthStepClampsToTheLastDay) {
  EXPECT_EQ(DateAdd("m", 1, Ymd(2004, 1, 31)), Ymd(2004, 2, 29));
  EXPECT_EQ(DateAdd("m", 1, Ymd(2003, 1, 31)), Ymd(2003, 2, 28));
  EXPECT_EQ(DateAdd("m", -1, Ymd(2004, 3, 31)), Ymd(2004, 2, 29));
  EXPECT_EQ(DateAdd("m", 13, Ymd(2004, 1, 15)), Ymd(2005, 2, 15));
}

TEST(DateAdd, YearsAndQuarters) {
  EXPECT_EQ(DateAdd("yyyy", 1, Ymd(2004, 2, 29)), Ymd(2005, 2, 28));
  EXPECT_EQ(DateAdd("q", 1, Ymd(2004, 11, 30)), Ymd(2005, 2, 28));
  EXPECT_EQ(DateAdd("q", -4, Ymd(2004, 1, 1)), Ymd(2003, 1, 1));
}

TEST(DateAdd, DaysAndWeeks) {
  EXPECT_EQ(DateAdd("d", 1, Ymd(2004, 2, 28)), Ymd(2004, 2, 29));
  EXPECT_EQ(DateAdd("y", -1, Ymd(2004, 1, 1)), Ymd(2003, 12, 31));
  EXPECT_EQ(DateAdd("w", 2, Ymd(2004, 1, 1)), Ymd(2004, 1, 3));
  EXPECT_EQ(DateAdd("ww", 2, Ymd(2004, 1, 1)), Ymd(2004, 1, 15));
}

TEST(DateAdd, TimeSteps) {
  EXPECT_EQ(DateAdd("h", 25, Ymd(2004, 1, 1)), At(2004, 1, 2, 1, 0, 0));
  EXPECT_EQ(DateAdd("n", 90, Ymd(2004, 1, 1)), At(2004, 1, 1, 1, 30, 0));
  EXPECT_EQ(DateAdd("s", -1, Ymd(2004, 1, 1)), At(2003, 12, 31, 23, 59, 59));
}

TEST(DateAdd, CountIsCutToAWholeNumber) {
  EXPECT_EQ(DateAdd("d", 1.9, Ymd(2004, 1, 1)), Ymd(2004, 1, 2));
  EXPECT_EQ(DateAdd("m", -1.9, Ymd(2004, 3, 15)), Ymd(2004, 2, 15));
}

TEST(DateAdd, KeepsTheTimeOnMonthSteps) {
  EXPECT_EQ(DateAdd("m", 1, At(2004, 1, 31, 12, 0, 0)), At(2004, 2, 29, 12, 0, 0));
}

TEST(DateAdd, CrossesTheEpochBackwards) {
  EXPECT_EQ(DateAdd("h", -18, OleDate(0.0)).Serial(), -1.25);
  EXPECT_EQ(DateAdd("h", 6, OleDate(-1.25)).Serial(), -1.5);
  EXPECT_EQ(DateAdd("h", 18, OleDate(-1.25)).Serial(), 0.0);
  EXPECT_EQ(DateAdd("d", -2, OleDate(0.5)).Serial(), -2.5);
  EXPECT_EQ(DateAdd("m", -1, OleDate(-1.25)), At(1899, 11, 29, 6, 0, 0));
}

TEST(DateAdd, UnknownIntervalOrOutOfRangeIsInvalidCall) {
  EXPECT_EQ(ErrorOf([] { DateAdd("x", 1, OleDate(0.0)); }), "5: Invalid procedure call or argument");
  EXPECT_EQ(ErrorOf([] { DateAdd("yyyy", 1, Ymd(9999, 6, 1)); }), "5: Invalid procedure call or argument");
}

// ---- Val

TEST(Val, ReadsTheLeadingNumber) {
  EXPECT_EQ(Val("12abc"), 12.0);
  EXPECT_EQ(Val("abc"), 0.0);
  EXPECT_EQ(Val("  -3.5xyz"), -3.5);
  EXPECT_EQ(Val("1.2.3"), 1.2);
  EXPECT_EQ(Val(""), 0.0);
  EXPECT_EQ(Val("ID17"), 0.0);
  EXPECT_EQ(Val("17"), 17.0);
}

TEST(Val, SkipsBlanksEvenInsideTheDigits) {
  EXPECT_EQ(Val(" 1 2 3"), 123.0);
  EXPECT_EQ(Val("\t1615 198th Street"), 1615198.0);
}

TEST(Val, HexAndOctalPrefixes) {
  EXPECT_EQ(Val("&H1F"), 31.0);
  EXPECT_EQ(Val("&h1f"), 31.0);
  EXPECT_EQ(Val("&O17"), 15.0);
  EXPECT_EQ(Val("&HFFFF"), -1.0);
  EXPECT_EQ(Val("&H10000"), 65536.0);
  EXPECT_EQ(Val("&HFFFFFFFF"), -1.0);
  EXPECT_EQ(Val("&Hxyz"), 0.0);
}

TEST(Val, OnlyPointIsTheDecimalSign) {
  EXPECT_EQ(Val("1,5"), 1.0);
  EXPECT_EQ(Val("1'000"), 1.0);
}

TEST(Val, Exponents) {
  EXPECT_EQ(Val("1e3"), 1000.0);
  EXPECT_EQ(Val("1.5E-1x"), 0.15);
  EXPECT_EQ(Val("2e"), 2.0);
}

// ---- IsNumeric, IsDate

TEST(IsNumeric, KindsOfValues) {
  EXPECT_TRUE(IsNumeric(Variant()));
  EXPECT_FALSE(IsNumeric(Variant::Null()));
  EXPECT_TRUE(IsNumeric(true));
  EXPECT_TRUE(IsNumeric(1.5));
  EXPECT_TRUE(IsNumeric(Currency()));
  EXPECT_FALSE(IsNumeric(Ymd(2000, 1, 1)));
  EXPECT_FALSE(IsNumeric(Variant::Nothing()));
}

TEST(IsNumeric, TextsAsTheLocaleReadsThem) {
  EXPECT_TRUE(IsNumeric("12"));
  EXPECT_TRUE(IsNumeric(" -1'234.50 "));
  EXPECT_TRUE(IsNumeric(".5"));
  EXPECT_TRUE(IsNumeric("1e5"));
  EXPECT_TRUE(IsNumeric("&HFF"));
  EXPECT_FALSE(IsNumeric(""));
  EXPECT_FALSE(IsNumeric("12abc"));
  EXPECT_FALSE(IsNumeric("1,5"));
  EXPECT_FALSE(IsNumeric("Wahr"));
  EXPECT_FALSE(IsNumeric("1e400"));
  EXPECT_FALSE(IsNumeric("&H123456789"));
}

TEST(IsDate, AcceptedForms) {
  EXPECT_TRUE(IsDate("1.3.2002"));
  EXPECT_TRUE(IsDate("01.03.2002"));
  EXPECT_TRUE(IsDate("2002-03-01"));
  EXPECT_TRUE(IsDate("01.03.2002 4:05"));
  EXPECT_TRUE(IsDate("01.03.2002 14:05:59"));
  EXPECT_TRUE(IsDate("2002-03-01 00:00"));
  EXPECT_TRUE(IsDate("29.02.2004"));
  EXPECT_TRUE(IsDate(" 01.03.2002 "));
}

TEST(IsDate, DateVariantIsAlwaysADate) {
  EXPECT_TRUE(IsDate(OleDate(0.0)));
  EXPECT_TRUE(IsDate(OleDate(-1.25)));
}

TEST(IsDate, RejectedForms) {
  EXPECT_FALSE(IsDate("29.02.2003"));
  EXPECT_FALSE(IsDate("31.04.2002"));
  EXPECT_FALSE(IsDate("1.13.2002"));
  EXPECT_FALSE(IsDate("0.1.2002"));
  EXPECT_FALSE(IsDate("01.03.02"));
  EXPECT_FALSE(IsDate("2002-3-1"));
  EXPECT_FALSE(IsDate("03/01/2002"));
  EXPECT_FALSE(IsDate("01.03.2002 24:00"));
  EXPECT_FALSE(IsDate("01.03.2002 12:60"));
  EXPECT_FALSE(IsDate("01.03.2002 12"));
  EXPECT_FALSE(IsDate("01.03.2002x"));
  EXPECT_FALSE(IsDate("12:30"));
  EXPECT_FALSE(IsDate(""));
  EXPECT_FALSE(IsDate("abc"));
}

TEST(IsDate, NumbersAreNotDates) {
  EXPECT_FALSE(IsDate(36526.0));
  EXPECT_FALSE(IsDate(int32_t{1}));
  EXPECT_FALSE(IsDate("36526"));
  EXPECT_FALSE(IsDate(Variant()));
  EXPECT_FALSE(IsDate(Variant::Null()));
}

// ---- Round, Fix, Int

TEST(Round, HalfToEven) {
  EXPECT_EQ(Round(0.5), 0.0);
  EXPECT_EQ(Round(1.5), 2.0);
  EXPECT_EQ(Round(2.5), 2.0);
  EXPECT_EQ(Round(-0.5), 0.0);
  EXPECT_EQ(Round(-1.5), -2.0);
  EXPECT_EQ(Round(0.125, 2), 0.12);
  EXPECT_EQ(Round(0.375, 2), 0.38);
  EXPECT_EQ(Round(1.2345678, 4), 1.2346);
}

TEST(Round, NegativeDecimalsAreInvalidCall) {
  EXPECT_EQ(ErrorOf([] { Round(1.0, -1); }), "5: Invalid procedure call or argument");
}

TEST(Round, CurrencyHalfToEven) {
  EXPECT_EQ(Round(*Currency::Parse("2.5"), 0), *Currency::Parse("2"));
  EXPECT_EQ(Round(*Currency::Parse("3.5"), 0), *Currency::Parse("4"));
  EXPECT_EQ(Round(*Currency::Parse("0.125"), 2), *Currency::Parse("0.12"));
  EXPECT_EQ(Round(*Currency::Parse("-0.135"), 2), *Currency::Parse("-0.14"));
  EXPECT_EQ(Round(*Currency::Parse("1.2345"), 4), *Currency::Parse("1.2345"));
  EXPECT_EQ(Round(Currency::Max(), 4), Currency::Max());
}

TEST(FixAndInt, DifferOnNegatives) {
  EXPECT_EQ(Fix(-1.5), -1.0);
  EXPECT_EQ(Int(-1.5), -2.0);
  EXPECT_EQ(Fix(1.5), 1.0);
  EXPECT_EQ(Int(1.5), 1.0);
}

}  // namespace
}  // namespace ldg

#include "support/format.hpp"

#include <gtest/gtest.h>

#include "support/conversions.hpp"

namespace ldg {
namespace {

Currency Money(const char* text) { return *Currency::Parse(text); }

OleDate At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  return OleDate::FromCivil({year, month, day, hour, minute, second});
}

TEST(FormatNumber, GroupedWithTwoDecimals) {
  EXPECT_EQ(Format(1234.5, "#,##0.00"), "1'234.50");
  EXPECT_EQ(Format(1234567.891, "#,##0.00"), "1'234'567.89");
  EXPECT_EQ(Format(0.0, "#,##0.00"), "0.00");
  EXPECT_EQ(Format(-1234.5, "#,##0.00"), "-1'234.50");
  EXPECT_EQ(Format(999.995, "#,##0.00"), "1'000.00");
  EXPECT_EQ(Format(Money("922337203685477.5807"), "#,##0.00"), "922'337'203'685'477.58");
}

TEST(FormatNumber, GroupedWithTrailingPoint) {
  EXPECT_EQ(Format(1234.5, "#,##0."), "1'235.");
  EXPECT_EQ(Format(0.2, "#,##0."), "0.");
}

TEST(FormatNumber, GroupedWithoutZeroPlace) {
  EXPECT_EQ(Format(1234.0, "#,##"), "1'234");
  EXPECT_EQ(Format(0.0, "#,##"), "");
  EXPECT_EQ(Format(0.4, "#,##"), "");
  EXPECT_EQ(Format(12.0, "#,##"), "12");
}

TEST(FormatNumber, ZeroWithPoint) {
  EXPECT_EQ(Format(5.0, "0."), "5.");
  EXPECT_EQ(Format(1234.6, "0."), "1235.");
}

TEST(FormatNumber, ZeroAlone) {
  EXPECT_EQ(Format(1234.4, "0"), "1234");
  EXPECT_EQ(Format(int32_t{-7}, "0"), "-7");
  EXPECT_EQ(Format(0.0, "0"), "0");
}

TEST(FormatNumber, RoundsHalfAwayFromZero) {
  EXPECT_EQ(Format(2.5, "0"), "3");
  EXPECT_EQ(Format(0.5, "0"), "1");
  EXPECT_EQ(Format(-2.5, "0"), "-3");
  EXPECT_EQ(Format(1.005, "0.00"), "1.01");
  EXPECT_EQ(Format(2.675, "0.00"), "2.68");
  EXPECT_EQ(Format(Money("0.125"), "0.00"), "0.13");
  // CLng rounds the same values half to even.
  EXPECT_EQ(CLng(2.5), 2);
}

TEST(FormatNumber, ValueRoundingToZeroLosesItsSign) {
  EXPECT_EQ(Format(-0.004, "0.00"), "0.00");
  EXPECT_EQ(Format(-0.4, "0"), "0");
}

TEST(FormatNumber, TwoDecimals) {
  EXPECT_EQ(Format(1234.5, "0.00"), "1234.50");
  EXPECT_EQ(Format(0.004, "0.00"), "0.00");
  EXPECT_EQ(Format(-0.5, "0.00"), "-0.50");
  EXPECT_EQ(Format(Money("12.3456"), "0.00"), "12.35");
}

TEST(FormatNumber, EightDecimals) {
  EXPECT_EQ(Format(1.23456789012, "0.00000000"), "1.23456789");
  EXPECT_EQ(Format(0.5, "0.00000000"), "0.50000000");
  EXPECT_EQ(Format(Money("1.2345"), "0.00000000"), "1.23450000");
}

TEST(FormatNumber, FourteenDigitsPadded) {
  EXPECT_EQ(Format(int32_t{12345}, "00000000000000"), "00000000012345");
  EXPECT_EQ(Format(123456789012345.0, "00000000000000"), "123456789012345");
  EXPECT_EQ(Format(0.0, "00000000000000"), "00000000000000");
}

TEST(FormatNumber, Percent) {
  EXPECT_EQ(Format(0.077, "#,##0.00%"), "7.70%");
  EXPECT_EQ(Format(12.345, "#,##0.00%"), "1'234.50%");
  EXPECT_EQ(Format(-0.5, "#,##0.00%"), "-50.00%");
  EXPECT_EQ(Format(0.0, "#,##0.00%"), "0.00%");
}

TEST(FormatNumber, HashDecimalsDropTrailingZeros) {
  EXPECT_EQ(Format(1.5, "0.##"), "1.5");
  EXPECT_EQ(Format(1.0, "0.##"), "1.");
  EXPECT_EQ(Format(1.256, "0.0#"), "1.26");
}

TEST(FormatNumber, SectionForNegativeNumbers) {
  EXPECT_EQ(Format(-5.0, "0.00;(0.00)"), "(5.00)");
  EXPECT_EQ(Format(5.0, "0.00;(0.00)"), "5.00");
  EXPECT_EQ(Format(0.0, "0.00;(0.00);\"null\""), "null");
  EXPECT_EQ(Format(-5.0, "0.00;"), "-5.00");
}

TEST(FormatNumber, LiteralsAroundTheNumber) {
  EXPECT_EQ(Format(5.0, "\"CHF \"0.00"), "CHF 5.00");
  EXPECT_EQ(Format(5.0, "0.00 \\F"), "5.00 F");
  EXPECT_EQ(Format(-5.0, "0.00 kg"), "-5.00 kg");
}

TEST(FormatNumber, LettersBesideDigitPlacesAreLiterals) {
  const char* amount_pattern = "#,##0.00 H;#,##0.00 S;0.00";
  EXPECT_EQ(Format(Money("1234.5"), amount_pattern), "1'234.50 H");
  EXPECT_EQ(Format(Money("-1234.5"), amount_pattern), "1'234.50 S");
  EXPECT_EQ(Format(Currency(), amount_pattern), "0.00");
  EXPECT_EQ(Format(Money("7"), "0.00 \\C\\H\\F"), "7.00 CHF");
  EXPECT_EQ(Format(Money("7"), "\\C\\H\\F 0.00"), "CHF 7.00");
}

TEST(FormatNumber, KindsOfValues) {
  EXPECT_EQ(Format(true, "0"), "-1");
  EXPECT_EQ(Format(1.5f, "0.00"), "1.50");
  EXPECT_EQ(Format("1234.5", "#,##0.00"), "1'234.50");
  EXPECT_EQ(Format("abc", "#,##0.00"), "abc");
  EXPECT_EQ(Format(Decimal{123456, 3}, "0.00"), "123.46");
  EXPECT_EQ(Format(OleDate(1.5), "0.00"), "1.50");
}

TEST(Format, NullAndEmptyGiveTheEmptyText) {
  EXPECT_EQ(Format(Variant::Null(), "#,##0.00"), "");
  EXPECT_EQ(Format(Variant::Null()), "");
  EXPECT_EQ(Format(Variant(), "dd.mm.yyyy"), "");
  EXPECT_EQ(Format(Variant(), "0.00"), "");
}

TEST(Format, EmptyPatternIsThePlainText) {
  EXPECT_EQ(Format(1.5), "1.5");
  EXPECT_EQ(Format(true), "Wahr");
  EXPECT_EQ(Format(At(2002, 3, 1)), "01.03.2002");
}

TEST(FormatDate, DayMonthYearWithPoints) {
  EXPECT_EQ(Format(At(2002, 3, 1), "dd.mm.yyyy"), "01.03.2002");
  EXPECT_EQ(Format(At(2002, 3, 1, 13, 14, 15), "dd.mm.yyyy"), "01.03.2002");
  EXPECT_EQ(Format(At(2002, 3, 1), "d.m.yy"), "1.3.02");
}

TEST(FormatDate, SlashStaysAsWritten) { EXPECT_EQ(Format(At(2002, 3, 1), "dd/mm/yyyy"), "01/03/2002"); }

TEST(FormatDate, SingleParts) {
  EXPECT_EQ(Format(At(2002, 3, 1), "yyyy"), "2002");
  EXPECT_EQ(Format(At(2002, 3, 1), "mm"), "03");
  EXPECT_EQ(Format(At(2002, 3, 1), "dd"), "01");
  EXPECT_EQ(Format(At(2002, 8, 15), "q"), "3");
}

TEST(FormatDate, Times) {
  EXPECT_EQ(Format(At(2002, 3, 1, 4, 5, 6), "hh:mm:ss"), "04:05:06");
  EXPECT_EQ(Format(At(2002, 3, 1, 14, 5, 6), "hh:mm"), "14:05");
  EXPECT_EQ(Format(At(2002, 3, 1, 14, 5, 6), "h:nn"), "14:05");
}

TEST(FormatDate, DateAndTimeTogether) {
  EXPECT_EQ(Format(At(2002, 3, 1, 4, 5, 6), "dd.mm.yyyy hh:mm:ss"), "01.03.2002 04:05:06");
  EXPECT_EQ(Format(At(2002, 3, 1, 4, 5, 6), "yyyymmdd hhmmss"), "20020301 040506");
}

TEST(FormatDate, GermanNames) {
  EXPECT_EQ(Format(At(2002, 3, 1), "mmmm yyyy"), "März 2002");
  EXPECT_EQ(Format(At(2002, 3, 1), "ddd, d. mmm"), "Fr, 1. Mär");
  EXPECT_EQ(Format(At(2002, 3, 1), "dddd"), "Freitag");
}

TEST(FormatDate, BeforeTheEpoch) {
  EXPECT_EQ(Format(OleDate(-1.25), "dd.mm.yyyy hh:mm"), "29.12.1899 06:00");
  EXPECT_EQ(Format(OleDate(OleDate::kMin), "dd.mm.yyyy"), "01.01.0100");
}

TEST(FormatDate, NumbersAndTextsAsDates) {
  EXPECT_EQ(Format(36526.0, "dd.mm.yyyy"), "01.01.2000");
  EXPECT_EQ(Format("2002-03-01", "dd.mm.yyyy"), "01.03.2002");
  EXPECT_EQ(Format("abc", "dd.mm.yyyy"), "abc");
}

TEST(Format, NamedPatterns) {
  EXPECT_EQ(Format(1234.5, "Standard"), "1'234.50");
  EXPECT_EQ(Format(At(2002, 3, 1), "Short Date"), "01.03.2002");
}

}  // namespace
}  // namespace ldg

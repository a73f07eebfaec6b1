#include "support/sql_text.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "support/error.hpp"

namespace ldg {
namespace {

Variant Date(int year, int month, int day) { return Variant(OleDate::FromYmd(year, month, day)); }

TEST(PastedText, NullAndEmptyPasteAsNothing) {
  EXPECT_EQ(PastedText(Variant::Null()), "");
  EXPECT_EQ(PastedText(Variant()), "");
}

TEST(PastedText, OtherValuesPasteAsTheirTextUnchanged) {
  EXPECT_EQ(PastedText(Variant("it's \"so\"")), "it's \"so\"");
  EXPECT_EQ(PastedText(Variant(int32_t{17})), "17");
}

TEST(DoubleApostrophes, DoublesEveryApostropheIncludingOneAtTheEnd) {
  EXPECT_EQ(DoubleApostrophes(Variant("O'Brien'")), Variant("O''Brien''"));
}

TEST(DoubleApostrophes, TextWithoutApostropheIsUnchanged) {
  EXPECT_EQ(DoubleApostrophes(Variant("Kasse")), Variant("Kasse"));
}

TEST(DoubleApostrophes, NullStaysNull) { EXPECT_TRUE(DoubleApostrophes(Variant::Null()).IsNull()); }

TEST(QuoteText, DefaultQuoteIsTheDoubleQuoteDoubledInside) {
  EXPECT_EQ(QuoteText("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(QuoteText(""), "\"\"");
}

TEST(QuoteText, TakesAnotherQuote) { EXPECT_EQ(QuoteText("it's", "'"), "'it''s'"); }

TEST(DateLiteral, IsMonthFirstWithoutPadding) {
  EXPECT_EQ(DateLiteral(Date(2002, 3, 1)), Variant("#3/1/2002#"));
}

TEST(DateLiteral, DropsTheTimeOfDay) {
  EXPECT_EQ(DateLiteral(Variant(OleDate(OleDate::FromYmd(2023, 12, 31).Serial() + 0.75))),
            Variant("#12/31/2023#"));
}

TEST(DateLiteral, ReadsADateText) { EXPECT_EQ(DateLiteral(Variant("01.03.2002")), Variant("#3/1/2002#")); }

TEST(DateLiteral, NoDateGivesEmpty) {
  EXPECT_TRUE(DateLiteral(Variant("x")).IsEmpty());
  EXPECT_TRUE(DateLiteral(Variant::Null()).IsEmpty());
  EXPECT_TRUE(DateLiteral(Variant(37316.0)).IsEmpty());
}

TEST(DateLiteralPadded, PadsMonthAndDayToTwoDigits) {
  EXPECT_EQ(DateLiteralPadded(OleDate::FromYmd(2002, 3, 1)), "#03/01/2002#");
  EXPECT_EQ(DateLiteralPadded(OleDate::FromYmd(999, 12, 31)), "#12/31/0999#");
}

TEST(DateRangeCondition, EqualDatesGiveAnEquality) {
  EXPECT_EQ(DateRangeCondition("D", Date(2023, 5, 1), Date(2023, 5, 1)), "(D=#05/01/2023#)");
}

TEST(DateRangeCondition, DatesInOrderGiveBetween) {
  EXPECT_EQ(DateRangeCondition("D", Date(2023, 1, 1), Date(2023, 12, 31)),
            "(D BETWEEN #01/01/2023# AND #12/31/2023#)");
}

TEST(DateRangeCondition, FromAfterToSelectsNothing) {
  EXPECT_EQ(DateRangeCondition("D", Date(2023, 12, 31), Date(2023, 1, 1)), "FALSE");
}

TEST(DateRangeCondition, OnlyFromGivesGreaterOrEqual) {
  EXPECT_EQ(DateRangeCondition("EntryDate", Date(2023, 1, 1), Variant::Null()), "(EntryDate>=#01/01/2023#)");
}

TEST(DateRangeCondition, OnlyToGivesLessOrEqual) {
  EXPECT_EQ(DateRangeCondition("EntryDate", Variant(), Date(2023, 6, 30)), "(EntryDate<=#06/30/2023#)");
}

TEST(DateRangeCondition, NoDatesGiveNoCondition) {
  EXPECT_EQ(DateRangeCondition("D", Variant("x"), Variant(44927.0)), "");
}

TEST(DoubleToSqlText, IsTheShortestTextThatReadsBack) {
  EXPECT_EQ(DoubleToSqlText(0.1), "0.1");
  EXPECT_EQ(DoubleToSqlText(-12.5), "-12.5");
  EXPECT_EQ(DoubleToSqlText(3.0), "3");
  EXPECT_EQ(DoubleToSqlText(1e-7), "1E-07");
  for (double value : {0.1 + 0.2, 1.0 / 3.0, 123456.789, 1e-7, 8.077}) {
    EXPECT_EQ(std::strtod(DoubleToSqlText(value).c_str(), nullptr), value);
  }
}

TEST(DoubleToSqlText, NonFiniteValueOverflows) {
  try {
    DoubleToSqlText(std::numeric_limits<double>::infinity());
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 6);
  }
}

TEST(CurrencyToSqlText, IsExactWithPointAndNoTrailingZeros) {
  EXPECT_EQ(CurrencyToSqlText(*Currency::Parse("1234.50")), "1234.5");
  EXPECT_EQ(CurrencyToSqlText(*Currency::Parse("-0.0001")), "-0.0001");
  EXPECT_EQ(CurrencyToSqlText(Currency()), "0");
}

TEST(BooleanToSqlText, IsTrueOrFalseWhateverTheLocale) {
  EXPECT_STREQ(BooleanToSqlText(true), "True");
  EXPECT_STREQ(BooleanToSqlText(false), "False");
}

TEST(AppendAssignment, JoinsAssignmentsWithCommaAndBlank) {
  std::string set;
  AppendAssignment(set, "Amount = 5");
  EXPECT_EQ(set, "Amount = 5");
  AppendAssignment(set, "TaxID = NULL");
  EXPECT_EQ(set, "Amount = 5, TaxID = NULL");
}

}  // namespace
}  // namespace ldg

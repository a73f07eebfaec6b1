#include "support/text_helpers.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"

namespace ldg {
namespace {

TEST(PadRightTo, FillsOnTheRight) { EXPECT_EQ(PadRightTo("AB", 4), "AB  "); }

TEST(PadRightTo, CutsFromTheLeftEnd) { EXPECT_EQ(PadRightTo("ABCDE", 4), "ABCD"); }

TEST(PadRightTo, UsesTheFirstCharacterOfThePad) { EXPECT_EQ(PadRightTo("AB", 5, "*-"), "AB***"); }

TEST(PadRightTo, WidthZeroOrBelowGivesEmpty) {
  EXPECT_EQ(PadRightTo("AB", 0), "");
  EXPECT_EQ(PadRightTo("AB", -2), "");
}

TEST(PadRightTo, CountsCharactersNotBytes) {
  EXPECT_EQ(PadRightTo("März", 5), "März ");
  EXPECT_EQ(PadRightTo("Geschäftsjahr", 6), "Geschä");
  EXPECT_EQ(PadRightTo("A", 3, "ü"), "Aüü");
}

TEST(PadLeftTo, FillsOnTheLeftWithThePad) { EXPECT_EQ(PadLeftTo("AB", 4, "0"), "00AB"); }

TEST(PadLeftTo, KeepsTheLastCharacters) { EXPECT_EQ(PadLeftTo("ABCDE", 4), "BCDE"); }

TEST(PadLeftTo, WithoutWidthRightAlignsTheTrimmedTextInItsOwnWidth) { EXPECT_EQ(PadLeftTo(" AB "), "  AB"); }

TEST(PadLeftTo, TrimsBeforeFilling) { EXPECT_EQ(PadLeftTo(" AB ", 3), " AB"); }

TEST(PadLeftTo, WidthZeroOrBelowGivesEmpty) {
  EXPECT_EQ(PadLeftTo("AB", 0), "");
  EXPECT_EQ(PadLeftTo("", std::nullopt), "");
}

TEST(PadLeftTo, CountsCharactersNotBytes) { EXPECT_EQ(PadLeftTo("Kursverlust ä", 3), "t ä"); }

TEST(NumberPadded, FillsWithZerosByDefault) {
  EXPECT_EQ(NumberPadded(7, 3), "007");
  EXPECT_EQ(NumberPadded(1234, 3), "234");
  EXPECT_EQ(NumberPadded(7, 3, " "), "  7");
}

TEST(MidPadded, CutInsideTheText) { EXPECT_EQ(MidPadded("ABCDEF", 2, 3), "BCD"); }

TEST(MidPadded, FillsBehindTheEnd) { EXPECT_EQ(MidPadded("ABC", 2, 4), "BC  "); }

TEST(MidPadded, FillsBeforeTheStart) { EXPECT_EQ(MidPadded("ABC", -1, 4, "."), "..AB"); }

TEST(MidPadded, WithoutLengthRunsToTheEnd) { EXPECT_EQ(MidPadded("ABCDE", 3), "CDE"); }

TEST(CutOut, RemovesTheStretch) {
  EXPECT_EQ(CutOut("ABCDEF", 2, 3), "AEF");
  EXPECT_EQ(CutOut("Märzen", 2, 2), "Mzen");
}

TEST(CutOut, WithoutLengthRemovesTheRest) { EXPECT_EQ(CutOut("ABCDEF", 3), "AB"); }

TEST(CutOut, StartBehindTheEndLeavesTheText) { EXPECT_EQ(CutOut("ABC", 7, 2), "ABC"); }

TEST(CutOut, StartBelowOneIsAnInvalidCall) {
  try {
    CutOut("ABC", 0, 1);
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 5);
  }
}

TEST(InsertAt, InsertsBeforeThePosition) {
  EXPECT_EQ(InsertAt("abc", "X", 1), "Xabc");
  EXPECT_EQ(InsertAt("abc", "X", 2), "aXbc");
  EXPECT_EQ(InsertAt("äbc", "X", 2), "äXbc");
}

TEST(InsertAt, PositionBehindTheLastCharacterAppends) { EXPECT_EQ(InsertAt("abc", "X", 4), "abcX"); }

TEST(InsertAt, PositionZeroOrBeyondLengthPlusOneLeavesTheText) {
  EXPECT_EQ(InsertAt("abc", "X", 0), "abc");
  EXPECT_EQ(InsertAt("abc", "X", 5), "abc");
  EXPECT_EQ(InsertAt("abc", "X", -1), "abc");
}

TEST(ScanChars, FindsTheFirstCharacterOfTheSet) {
  EXPECT_EQ(ScanChars("ab12c3", "0123456789"), 3);
  EXPECT_EQ(ScanChars("äb1", "1"), 3);
}

TEST(ScanChars, InvertedFindsTheFirstCharacterOutsideTheSet) { EXPECT_EQ(ScanChars("0012a", "0", true), 3); }

TEST(ScanChars, FromTheEndFindsTheLastAndCountsFromTheStart) {
  EXPECT_EQ(ScanChars("ab12c3x", "0123456789", false, true), 6);
  EXPECT_EQ(ScanChars("12.500", "0", true, true), 4);
}

TEST(ScanChars, NoneGivesZero) {
  EXPECT_EQ(ScanChars("abc", "xyz"), 0);
  EXPECT_EQ(ScanChars("", "a"), 0);
}

TEST(ReplaceAll, ReplacesEveryOccurrenceWithoutRescanningTheReplacement) {
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("a;b;c", ";", ", "), "a, b, c");
}

TEST(ReplaceAll, EmptySearchLeavesTheText) { EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc"); }

TEST(Repeat, RepeatsTheText) {
  EXPECT_EQ(Repeat(3, "ab"), "ababab");
  EXPECT_EQ(Repeat(0, "ab"), "");
  EXPECT_EQ(Repeat(-1, "ab"), "");
}

TEST(FormatMoney, UsesThousandsSignsAndTwoDecimals) {
  EXPECT_EQ(FormatMoney(*Currency::Parse("1234.5")), "1'234.50");
  EXPECT_EQ(FormatMoney(*Currency::Parse("0")), "0.00");
  EXPECT_EQ(FormatMoney(*Currency::Parse("-1234567.1")), "-1'234'567.10");
}

}  // namespace
}  // namespace ldg

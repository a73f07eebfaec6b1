#include "support/money_math.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"

namespace ldg {
namespace {

Currency Cur(const char* text) { return *Currency::Parse(text); }

TEST(MulDiv, MultipliesThenDivides) {
  EXPECT_EQ(MulDiv(Cur("100"), Cur("3"), Cur("4")), Cur("75"));
  EXPECT_EQ(MulDiv(Cur("10"), Cur("1"), Cur("3")), Cur("3.3333"));
}

TEST(MulDiv, DivisionByZeroGivesZero) { EXPECT_EQ(MulDiv(Cur("1"), Cur("2"), Cur("0")), Currency()); }

TEST(MulDiv, OverflowGivesZero) {
  EXPECT_EQ(MulDiv(Currency::Max(), Cur("2"), Cur("1")), Currency());
  EXPECT_EQ(MulDiv(Cur("900000000000000"), Cur("1"), Cur("0.5")), Currency());
}

TEST(MulDivByMiddle, MultipliesByTheLastAndDividesByTheMiddle) {
  EXPECT_EQ(MulDivByMiddle(Cur("100"), Cur("4"), Cur("3")), Cur("75"));
  EXPECT_EQ(MulDivByMiddle(Cur("1"), Cur("0"), Cur("2")), Currency());
}

TEST(DivMul, DividesThenMultipliesInDouble) {
  EXPECT_EQ(DivMul(Cur("10"), Cur("3"), Cur("3")), Cur("10"));
  EXPECT_EQ(DivMul(Cur("1"), Cur("8"), Cur("0.001")), Cur("0.0001"));
  EXPECT_EQ(DivMul(Cur("1"), Cur("0"), Cur("2")), Currency());
}

TEST(QuotientRounding, TiesGoToTheEvenFourthDecimal) {
  // 1.0625 / 2 = 0.53125 and 2.1875 / 2 = 1.09375 are exact binary ties at the fifth decimal.
  EXPECT_EQ(MulDiv(Cur("1.0625"), Cur("1"), Cur("2")), Cur("0.5312"));
  EXPECT_EQ(MulDiv(Cur("2.1875"), Cur("1"), Cur("2")), Cur("1.0938"));
}

TEST(RatePart, AddsTheShare) { EXPECT_EQ(RatePart(Cur("100"), Cur("0.077")), Cur("107.7")); }

TEST(RatePart, OverflowIsRaised) {
  try {
    RatePart(Currency::Max(), Cur("1"));
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 6);
  }
}

TEST(FromGross, GivesTheNet) {
  EXPECT_EQ(FromGross(Cur("107.70"), Cur("0.077")), Cur("100"));
  EXPECT_EQ(FromGross(Cur("100"), Cur("0.081")), Cur("92.5069"));
}

TEST(TaxPart, OfANetAmountIsTheProduct) { EXPECT_EQ(TaxPart(Cur("100"), Cur("0.077"), true), Cur("7.7")); }

TEST(TaxPart, OfAGrossAmountIsTheAmountLessItsNet) {
  EXPECT_EQ(TaxPart(Cur("107.7"), Cur("0.077"), false), Cur("7.7"));
  EXPECT_EQ(TaxPart(Cur("100"), Cur("0.081"), false), Cur("7.4931"));
}

}  // namespace
}  // namespace ldg

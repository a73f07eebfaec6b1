#include "support/currency.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

TEST(Currency, FromDoubleRoundsHalfToEvenAtFourthDecimal) {
  EXPECT_EQ(Currency::FromDouble(0.00005).Raw(), 0);
  // The double nearest 0.00015 lies below the tie, so it rounds down.
  EXPECT_EQ(Currency::FromDouble(0.00015).Raw(), 1);
  // Exact binary ties at the fifth decimal go to the even neighbour.
  EXPECT_EQ(Currency::FromDouble(1.03125).Raw(), 10312);
  EXPECT_EQ(Currency::FromDouble(1.09375).Raw(), 10938);
  EXPECT_EQ(Currency::FromDouble(-0.00005).Raw(), 0);
  EXPECT_EQ(Currency::FromDouble(1.5).Raw(), 15000);
}

TEST(Currency, OverflowAtTheLimitsRaisesError6) {
  EXPECT_EQ(Currency::Parse("922337203685477.5807")->Raw(), INT64_MAX);
  EXPECT_EQ(Currency::Parse("-922337203685477.5808")->Raw(), INT64_MIN);
  EXPECT_FALSE(Currency::Parse("922337203685477.5808").has_value());
  Currency max = Currency::Max();
  EXPECT_EQ(ErrorNumberOf([&] { return max + Currency::FromRaw(1); }), 6);
  EXPECT_EQ(ErrorNumberOf([&] { return Currency::Min() - Currency::FromRaw(1); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { return Currency::FromDouble(1e15); }), 6);
  EXPECT_EQ(ErrorNumberOf([] { return -Currency::Min(); }), 6);
}

TEST(Currency, ProductIsExactThenRoundedHalfToEven) {
  Currency a = *Currency::Parse("0.0001");
  Currency half = *Currency::Parse("0.5");
  EXPECT_EQ((a * half).Raw(), 0);  // 0.00005 -> 0
  Currency three = *Currency::Parse("0.0003");
  EXPECT_EQ((three * half).Raw(), 2);  // 0.00015 -> 0.0002
  EXPECT_EQ((*Currency::Parse("12.34") * *Currency::Parse("7.7")).ToString(), "95.018");
}

TEST(Currency, TextFormHasNoTrailingZeros) {
  EXPECT_EQ(Currency::Parse("12.50")->ToString(), "12.5");
  EXPECT_EQ(Currency::Parse("-0.0001")->ToString(), "-0.0001");
  EXPECT_EQ(Currency::FromUnits(3).ToString(), "3");
  EXPECT_EQ(Currency::Min().ToString(), "-922337203685477.5808");
}

TEST(Currency, IsNearZeroBelowHalfACent) {
  EXPECT_TRUE(IsNearZero(*Currency::Parse("0.0049")));
  EXPECT_FALSE(IsNearZero(*Currency::Parse("0.005")));
  EXPECT_TRUE(IsNearZero(*Currency::Parse("-0.0049")));
}

}  // namespace
}  // namespace ldg

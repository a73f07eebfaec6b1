// Amounts as the command line takes them: exact, with "." and up to four decimals.
#include "cli/entry_draft.hpp"

#include <gtest/gtest.h>

namespace ldg::cli {
namespace {

TEST(ReadAmount, ReadsWholeAndDecimalAmountsExactly) {
  EXPECT_EQ(ReadAmount("1250"), Currency::FromUnits(1250));
  EXPECT_EQ(ReadAmount("-80.5"), Currency::FromRaw(-805000));
  EXPECT_EQ(ReadAmount("0.0125"), Currency::FromRaw(125));
  EXPECT_EQ(ReadAmount("0.1"), Currency::FromRaw(1000));
  EXPECT_EQ(ReadAmount("922337203685477.5807"), Currency::Max());
  EXPECT_EQ(ReadAmount("-0"), Currency());
}

TEST(ReadAmount, RefusesEverythingElse) {
  for (const char* text : {"", "-", "+5", " 5", "5 ", "1'250", "1,5", "1.23456", ".5", "5.", "1e3", "0x10",
                           "--5", "922337203685477.5808"}) {
    EXPECT_EQ(ReadAmount(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace ldg::cli

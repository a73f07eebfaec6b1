// ldg balance: the trial balance of a year file, stored or after the entries of a day.
#include <gtest/gtest.h>

#include <string>

#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class BalanceCommandTest : public ChartFileTest {};

TEST_F(BalanceCommandTest, ListsTheBookableAccountsWithTheirStoredBalancesAndTotals) {
  EXPECT_EQ(testing::RunLdg({"balance", path_, "--format", "csv"}),
            "Code,Name,Debit,Credit\r\n"
            "1000,Kasse,150.00,\r\n"
            "11001,Kunde Eins,200.00,\r\n"
            "11002,Kunde Zwei,100.00,\r\n"
            "2000,Kreditoren,,100.00\r\n"
            "3200,Erlöse,,350.00\r\n"
            ",Total,450.00,450.00\r\n");
}

TEST_F(BalanceCommandTest, TextFormAlignsTheAmounts) {
  EXPECT_EQ(testing::RunLdg({"balance", path_}),
            "Code   Name         Debit  Credit\n"
            "-----  ----------  ------  ------\n"
            "1000   Kasse       150.00\n"
            "11001  Kunde Eins  200.00\n"
            "11002  Kunde Zwei  100.00\n"
            "2000   Kreditoren          100.00\n"
            "3200   Erlöse              350.00\n"
            "       Total       450.00  450.00\n");
}

TEST_F(BalanceCommandTest, AtADayCountsTheEntriesOfThatDay) {
  EXPECT_EQ(testing::RunLdg({"balance", path_, "--at", "2026-03-10", "--format", "csv"}),
            "Code,Name,Debit,Credit\r\n"
            "1000,Kasse,150.00,\r\n"
            "11001,Kunde Eins,200.00,\r\n"
            "11002,Kunde Zwei,,\r\n"
            "2000,Kreditoren,,100.00\r\n"
            "3200,Erlöse,,250.00\r\n"
            ",Total,350.00,350.00\r\n");
}

TEST_F(BalanceCommandTest, TheDayBeforeTheYearGivesTheOpeningBalances) {
  EXPECT_EQ(testing::RunLdg({"balance", path_, "--at", "2025-12-31", "--format", "csv"}),
            "Code,Name,Debit,Credit\r\n"
            "1000,Kasse,100.00,\r\n"
            "11001,Kunde Eins,,\r\n"
            "11002,Kunde Zwei,,\r\n"
            "2000,Kreditoren,,100.00\r\n"
            "3200,Erlöse,,\r\n"
            ",Total,100.00,100.00\r\n");
}

TEST_F(BalanceCommandTest, JsonFormGivesOneObjectPerRow) {
  const std::string out = testing::RunLdg({"balance", path_, "--format", "json"});
  EXPECT_NE(
      out.find("{\"Code\": \"2000\", \"Name\": \"Kreditoren\", \"Debit\": \"\", \"Credit\": \"100.00\"}"),
      std::string::npos)
      << out;
  EXPECT_NE(out.find("{\"Code\": \"\", \"Name\": \"Total\", \"Debit\": \"450.00\", \"Credit\": \"450.00\"}"),
            std::string::npos)
      << out;
}

TEST_F(BalanceCommandTest, ADayOutsideTheYearFailsWithTheEnginesMessage) {
  for (const char* day : {"2025-12-30", "2027-01-01"}) {
    const Error error = chart_testing::ErrorOf([&] { testing::RunLdg({"balance", path_, "--at", day}); });
    EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1161)) << day;
    EXPECT_EQ(error.Source(), "ldg");
    EXPECT_EQ(error.Description(),
              "Account can't return balance for dates outside the opened business year!");
  }
}

TEST_F(BalanceCommandTest, AtTakesOnlyIsoDates) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"balance", path_, "--at", "31.3.2026"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--at takes a date as yyyy-mm-dd, not '31.3.2026'.");
}

TEST_F(BalanceCommandTest, AnUnknownFormatFails) {
  const Error error = chart_testing::ErrorOf([&] { testing::RunLdg({"balance", path_, "--format", "xml"}); });
  EXPECT_EQ(error.Number(), 5);
}

}  // namespace
}  // namespace ldg::cli

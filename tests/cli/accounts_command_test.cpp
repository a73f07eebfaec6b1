// ldg accounts: the chart of a year file as a tree with balances, stored or at a date.
#include <gtest/gtest.h>

#include <string>

#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class AccountsCommandTest : public ChartFileTest {};

TEST_F(AccountsCommandTest, ListsTheTreeWithTheStoredBalances) {
  EXPECT_EQ(testing::RunLdg({"accounts", path_, "--format", "csv"}),
            "Code,Name,Kind,Balance\r\n"
            "A,Bilanz,Sum,350.00\r\n"
            "  1,Aktiven,Sum,450.00\r\n"
            "    1000,Kasse,Account,150.00\r\n"
            "    1100,Debitoren,Master,300.00\r\n"
            "      11001,Kunde Eins,Detail,200.00\r\n"
            "      11002,Kunde Zwei,Detail,100.00\r\n"
            "  2,Passiven,Sum,-100.00\r\n"
            "    2000,Kreditoren,Account,-100.00\r\n"
            "B,Erfolgsrechnung,Sum,-350.00\r\n"
            "  3,Ertrag,Sum,-350.00\r\n"
            "    3200,Erlöse,Account,-350.00\r\n");
}

TEST_F(AccountsCommandTest, TextFormIndentsByLevelAndAlignsTheBalances) {
  EXPECT_EQ(testing::RunLdg({"accounts", path_}),
            "Code         Name             Kind     Balance\n"
            "-----------  ---------------  -------  -------\n"
            "A            Bilanz           Sum       350.00\n"
            "  1          Aktiven          Sum       450.00\n"
            "    1000     Kasse            Account   150.00\n"
            "    1100     Debitoren        Master    300.00\n"
            "      11001  Kunde Eins       Detail    200.00\n"
            "      11002  Kunde Zwei       Detail    100.00\n"
            "  2          Passiven         Sum      -100.00\n"
            "    2000     Kreditoren       Account  -100.00\n"
            "B            Erfolgsrechnung  Sum      -350.00\n"
            "  3          Ertrag           Sum      -350.00\n"
            "    3200     Erlöse           Account  -350.00\n");
}

TEST_F(AccountsCommandTest, JsonFormGivesOneObjectPerAccount) {
  const std::string out = testing::RunLdg({"accounts", path_, "--format", "json"});
  EXPECT_EQ(
      out.rfind("[\n {\"Code\": \"A\", \"Name\": \"Bilanz\", \"Kind\": \"Sum\", \"Balance\": \"350.00\"},\n",
                0),
      0u)
      << out;
  EXPECT_NE(out.find("\n {\"Code\": \"      11001\", \"Name\": \"Kunde Eins\", \"Kind\": \"Detail\", "
                     "\"Balance\": \"200.00\"},\n"),
            std::string::npos)
      << out;
}

// Deliberate, pinned: at a date a plain account counts the movements before
// the day, while the sum above it counts those of the day too (Kasse's 50 of
// 10 March), and a master shows the stored totals of its details' children,
// here 0, whatever the date.
TEST_F(AccountsCommandTest, AtADateSumsCountTheDayAndPlainAccountsOnlyTheDaysBefore) {
  EXPECT_EQ(testing::RunLdg({"accounts", path_, "--at", "2026-03-10", "--format", "csv"}),
            "Code,Name,Kind,Balance\r\n"
            "A,Bilanz,Sum,350.00\r\n"
            "  1,Aktiven,Sum,450.00\r\n"
            "    1000,Kasse,Account,100.00\r\n"
            "    1100,Debitoren,Master,0.00\r\n"
            "      11001,Kunde Eins,Detail,200.00\r\n"
            "      11002,Kunde Zwei,Detail,0.00\r\n"
            "  2,Passiven,Sum,-100.00\r\n"
            "    2000,Kreditoren,Account,-100.00\r\n"
            "B,Erfolgsrechnung,Sum,-250.00\r\n"
            "  3,Ertrag,Sum,-250.00\r\n"
            "    3200,Erlöse,Account,-200.00\r\n");
}

TEST_F(AccountsCommandTest, TheDayBeforeTheYearGivesTheOpeningPosition) {
  const std::string out = testing::RunLdg({"accounts", path_, "--at", "2025-12-31", "--format", "csv"});
  EXPECT_NE(out.find("    1000,Kasse,Account,100.00\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("      11001,Kunde Eins,Detail,0.00\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("B,Erfolgsrechnung,Sum,0.00\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("    3200,Erlöse,Account,0.00\r\n"), std::string::npos) << out;
}

TEST_F(AccountsCommandTest, ADateAfterTheYearFailsWithTheEnginesError) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"accounts", path_, "--at", "2027-01-01"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1161));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "Account can't return balance for dates outside the opened business year!");
}

TEST_F(AccountsCommandTest, AtTakesOnlyIsoDates) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"accounts", path_, "--at", "10.03.2026"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--at takes a date as yyyy-mm-dd, not '10.03.2026'.");
}

TEST_F(AccountsCommandTest, AtRefusesADayThatDoesNotExist) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"accounts", path_, "--at", "2026-02-30"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--at takes a date as yyyy-mm-dd, not '2026-02-30'.");
}

}  // namespace
}  // namespace ldg::cli

// ldg post: one book entry from the command line, through BookEntries.Append.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class PostCommandTest : public ChartFileTest {
 protected:
  int32_t Count(const std::string& table) {
    return CLng(FileScalar("SELECT Count(*) AS N FROM " + table + ";", "N"));
  }
  Currency BalanceOf(const std::string& code) {
    return CCur(FileScalar("SELECT Balance FROM Accounts WHERE Code = '" + code + "';", "Balance"));
  }
  Error FailureOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"post", path_});
    return chart_testing::ErrorOf([&] { testing::RunLdg(arguments); });
  }
  // The three entries of the fixture are still all there is, with their balances.
  void ExpectFileUnchanged() {
    EXPECT_EQ(Count("BookEntries"), 3);
    EXPECT_EQ(Count("Movements"), 6);
    EXPECT_EQ(BalanceOf("1000"), Currency::FromUnits(150));
    EXPECT_EQ(BalanceOf("3200"), Currency::FromUnits(-350));
  }
  static std::string LineMessage(const std::string& line) {
    return "--line takes ACCOUNT:AMOUNT[:TEXT] with an amount such as -1250.50 (\".\" and up to 4 decimals), "
           "not '" +
           line + "'.";
  }
};

TEST_F(PostCommandTest, PostsTheEntryPrintsItsIdAndMovesTheBalances) {
  const std::string out =
      testing::RunLdg({"post", path_, "--journal", "2", "--date", "2026-04-15", "--doc", "42", "--line",
                       "1000:250.05:Barverkauf", "--line", "3200:-250.05:Barverkauf"});
  EXPECT_EQ(out, "4\n");
  EXPECT_EQ(Count("BookEntries"), 4);
  EXPECT_EQ(CStr(FileScalar("SELECT DocumentID FROM BookEntries WHERE ID = 4;", "DocumentID")),
            "00000000000042");
  EXPECT_EQ(CLng(FileScalar("SELECT JournalID FROM BookEntries WHERE ID = 4;", "JournalID")),
            CLng(FileScalar("SELECT ID FROM Journals WHERE Code = 2;", "ID")));
  EXPECT_EQ(CDate(FileScalar("SELECT Date FROM BookEntries WHERE ID = 4;", "Date")),
            chart_testing::Date(2026, 4, 15));
  EXPECT_EQ(CCur(FileScalar("SELECT Amount FROM Movements WHERE EntryID = 4 AND AccountID = " +
                                std::to_string(FileIdOf("1000")) + ";",
                            "Amount")),
            Currency::FromRaw(2500500));
  EXPECT_EQ(CStr(FileScalar("SELECT Text FROM Movements WHERE EntryID = 4 AND AccountID = " +
                                std::to_string(FileIdOf("3200")) + ";",
                            "Text")),
            "Barverkauf");
  EXPECT_EQ(BalanceOf("1000"), Currency::FromRaw(4000500));
  EXPECT_EQ(BalanceOf("3200"), Currency::FromRaw(-6000500));
}

TEST_F(PostCommandTest, TakesTheJournalByNameAndATextWithColonsAndFourDecimals) {
  testing::RunLdg({"post", path_, "--journal", "Bank", "--date", "2026-12-31", "--doc", "R-7", "--line",
                   "11002:0.0001:Zins: Dezember", "--line", "3200:-0.0001"});
  EXPECT_EQ(CStr(FileScalar("SELECT DocumentID FROM BookEntries WHERE ID = 4;", "DocumentID")), "R-7");
  EXPECT_EQ(CStr(FileScalar("SELECT Text FROM Movements WHERE EntryID = 4 AND Amount > 0;", "Text")),
            "Zins: Dezember");
  EXPECT_EQ(BalanceOf("11002"), Currency::FromRaw(1000001));
}

TEST_F(PostCommandTest, WithoutDocTheEntryHasNoDocumentNumber) {
  testing::RunLdg(
      {"post", path_, "--journal", "2", "--date", "2026-05-01", "--line", "1000:10", "--line", "2000:-10"});
  EXPECT_TRUE(FileScalar("SELECT DocumentID FROM BookEntries WHERE ID = 4;", "DocumentID").IsNull());
}

TEST_F(PostCommandTest, AnUnknownAccountFailsAndPostsNothing) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", "1000:5", "--line", "9999:-5"});
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "No account has the code '9999'.");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, AnAccountCodeMustMatchWhole) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", "1000 x:5", "--line", "3200:-5"});
  EXPECT_EQ(error.Description(), "No account has the code '1000 x'.");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, AnUnknownJournalFailsAndPostsNothing) {
  const Error error =
      FailureOf({"--journal", "Lohn", "--date", "2026-04-15", "--line", "1000:5", "--line", "3200:-5"});
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "No journal has the code or name 'Lohn'.");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, AmountsMustBeDigitsWithAPointAndUpToFourDecimals) {
  for (const std::string line : {"1000:12,50", "1000:1'250.00", "1000:12.34567", "1000:+5", "1000:1e3",
                                 "1000:", "1000", ":5", "1000:.5", "1000:5.", "1000: 5"}) {
    const Error error =
        FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", line, "--line", "3200:-5"});
    EXPECT_EQ(error.Number(), 5) << line;
    EXPECT_EQ(error.Description(), LineMessage(line));
  }
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, AnAmountBeyondTheCurrencyRangeFails) {
  const std::string line = "1000:922337203685478";
  const Error error =
      FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", line, "--line", "3200:-5"});
  EXPECT_EQ(error.Description(), LineMessage(line));
}

TEST_F(PostCommandTest, TheDateMustBeIso) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "15.04.2026", "--line", "1000:5", "--line", "3200:-5"});
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--date takes a date as yyyy-mm-dd, not '15.04.2026'.");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, AnUnbalancedEntryFailsWithTheEnginesMessage) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", "1000:5", "--line", "3200:-4"});
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1171));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "Book entry unbalanced!");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, ADateOutsideTheYearFailsWithTheEnginesMessage) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "2027-01-01", "--line", "1000:5", "--line", "3200:-5"});
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1168));
  EXPECT_EQ(error.Description(), "Entry date not in opened business year!");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, ALineOnASumRollsTheWholeEntryBack) {
  const Error error =
      FailureOf({"--journal", "2", "--date", "2026-04-15", "--line", "1000:5", "--line", "3:-5"});
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1220));
  EXPECT_EQ(error.Description(), "Cannot book on account sums");
  ExpectFileUnchanged();
}

TEST_F(PostCommandTest, LineIsRequired) {
  EXPECT_THROW(testing::RunLdg({"post", path_, "--journal", "2", "--date", "2026-04-15"}), CLI::ParseError);
}

}  // namespace
}  // namespace ldg::cli

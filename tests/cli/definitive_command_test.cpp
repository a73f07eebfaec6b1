// ldg definitive: one run of BookEntries.DoDefinitive up to a day.
#include <gtest/gtest.h>

#include <string>

#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class DefinitiveCommandTest : public ChartFileTest {
 protected:
  int32_t DefinitiveCount() {
    return CLng(FileScalar("SELECT Count(*) AS N FROM BookEntries WHERE Definitive Is Not Null;", "N"));
  }
  bool IsDefinitive(int32_t id) {
    return !FileScalar("SELECT Definitive FROM BookEntries WHERE ID = " + std::to_string(id) + ";",
                       "Definitive")
                .IsNull();
  }
};

TEST_F(DefinitiveCommandTest, MakesTheOpenEntriesUpToTheDayDefinitive) {
  EXPECT_EQ(testing::RunLdg({"definitive", path_, "--to", "2026-03-10"}),
            "Made 2 book entries definitive.\n");
  EXPECT_TRUE(IsDefinitive(1));
  EXPECT_TRUE(IsDefinitive(2));
  EXPECT_FALSE(IsDefinitive(3));
  EXPECT_EQ(CLng(FileScalar("SELECT Number FROM DefinitiveSets;", "Number")), 1);
  EXPECT_EQ(CDate(FileScalar("SELECT End FROM DefinitiveSets;", "End")), chart_testing::Date(2026, 3, 10));
  EXPECT_EQ(CLng(FileScalar("SELECT DefinitiveJournal FROM BookEntries WHERE ID = 2;", "DefinitiveJournal")),
            1);
}

TEST_F(DefinitiveCommandTest, FromLimitsTheFirstDayAndASecondRunGetsTheNextNumber) {
  EXPECT_EQ(testing::RunLdg({"definitive", path_, "--from", "2026-03-01", "--to", "2026-12-31"}),
            "Made 2 book entries definitive.\n");
  EXPECT_FALSE(IsDefinitive(1));
  EXPECT_EQ(testing::RunLdg({"definitive", path_, "--to", "2026-12-31"}),
            "Made 1 book entries definitive.\n");
  EXPECT_EQ(CLng(FileScalar("SELECT DefinitiveJournal FROM BookEntries WHERE ID = 1;", "DefinitiveJournal")),
            2);
  EXPECT_EQ(CLng(FileScalar("SELECT DefinitiveJournal FROM BookEntries WHERE ID = 3;", "DefinitiveJournal")),
            1);
}

TEST_F(DefinitiveCommandTest, NothingOpenUpToTheDayFailsWithTheEnginesMessage) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"definitive", path_, "--to", "2026-01-31"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1187));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "No book entries selected to be done definitive!");
  EXPECT_EQ(DefinitiveCount(), 0);
  EXPECT_EQ(CLng(FileScalar("SELECT Count(*) AS N FROM DefinitiveSets;", "N")), 0);
}

TEST_F(DefinitiveCommandTest, TheLastDayOfTheYearTakesEveryOpenEntry) {
  EXPECT_EQ(testing::RunLdg({"definitive", path_, "--to", "2026-12-31"}),
            "Made 3 book entries definitive.\n");
  EXPECT_EQ(DefinitiveCount(), 3);
}

TEST_F(DefinitiveCommandTest, ToTakesOnlyIsoDates) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"definitive", path_, "--to", "31.03.2026"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--to takes a date as yyyy-mm-dd, not '31.03.2026'.");
  EXPECT_EQ(DefinitiveCount(), 0);
}

TEST_F(DefinitiveCommandTest, ToIsRequired) {
  EXPECT_THROW(testing::RunLdg({"definitive", path_}), CLI::ParseError);
  EXPECT_EQ(DefinitiveCount(), 0);
}

}  // namespace
}  // namespace ldg::cli

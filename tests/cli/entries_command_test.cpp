// ldg entries: the book entries of a year file, one row per line.
#include <gtest/gtest.h>

#include <string>

#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class EntriesCommandTest : public ChartFileTest {};

TEST_F(EntriesCommandTest, ListsEveryLineWithItsEntryInDateOrder) {
  EXPECT_EQ(testing::RunLdg({"entries", path_, "--format", "csv"}),
            "Entry,Date,Doc,Journal,Account,Text,Amount\r\n"
            "1,2026-02-01,,2,11001,,200.00\r\n"
            "1,2026-02-01,,2,3200,,-200.00\r\n"
            "2,2026-03-10,,2,1000,,50.00\r\n"
            "2,2026-03-10,,2,3200,,-50.00\r\n"
            "3,2026-06-30,,2,11002,,100.00\r\n"
            "3,2026-06-30,,2,3200,,-100.00\r\n");
}

TEST_F(EntriesCommandTest, FromAndToLimitTheDatesBothEndsIncluded) {
  EXPECT_EQ(
      testing::RunLdg({"entries", path_, "--from", "2026-03-10", "--to", "2026-06-30", "--format", "csv"}),
      "Entry,Date,Doc,Journal,Account,Text,Amount\r\n"
      "2,2026-03-10,,2,1000,,50.00\r\n"
      "2,2026-03-10,,2,3200,,-50.00\r\n"
      "3,2026-06-30,,2,11002,,100.00\r\n"
      "3,2026-06-30,,2,3200,,-100.00\r\n");
  EXPECT_EQ(testing::RunLdg({"entries", path_, "--to", "2026-02-01", "--format", "csv"}),
            "Entry,Date,Doc,Journal,Account,Text,Amount\r\n"
            "1,2026-02-01,,2,11001,,200.00\r\n"
            "1,2026-02-01,,2,3200,,-200.00\r\n");
}

TEST_F(EntriesCommandTest, FromAfterToListsNothing) {
  EXPECT_EQ(
      testing::RunLdg({"entries", path_, "--from", "2026-07-01", "--to", "2026-01-01", "--format", "csv"}),
      "Entry,Date,Doc,Journal,Account,Text,Amount\r\n");
}

TEST_F(EntriesCommandTest, TextFormAlignsIdsAndAmounts) {
  EXPECT_EQ(testing::RunLdg({"entries", path_, "--from", "2026-06-01"}),
            "Entry  Date        Doc  Journal  Account  Text   Amount\n"
            "-----  ----------  ---  -------  -------  ----  -------\n"
            "    3  2026-06-30       2        11002           100.00\n"
            "    3  2026-06-30       2        3200           -100.00\n");
}

TEST_F(EntriesCommandTest, JsonFormGivesOneObjectPerLine) {
  const std::string out = testing::RunLdg({"entries", path_, "--from", "2026-06-01", "--format", "json"});
  EXPECT_NE(out.find("{\"Entry\": \"3\", \"Date\": \"2026-06-30\", \"Doc\": \"\", \"Journal\": \"2\", "
                     "\"Account\": \"11002\", \"Text\": \"\", \"Amount\": \"100.00\"}"),
            std::string::npos)
      << out;
}

TEST_F(EntriesCommandTest, FromTakesOnlyIsoDates) {
  const Error error = chart_testing::ErrorOf([&] {
    testing::RunLdg({"entries", path_, "--from", "2026-3-1"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--from takes a date as yyyy-mm-dd, not '2026-3-1'.");
}

}  // namespace
}  // namespace ldg::cli

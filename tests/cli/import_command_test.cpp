// ldg import: book entries from a CSV file, posted all together or not at all.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/entry_import.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/progress_bar.hpp"
#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

constexpr const char* kHeader = "entry,date,doc,account,amount,text\n";

class ImportCommandTest : public ChartFileTest {
 protected:
  std::string Import(const std::string& csv, std::vector<std::string> options = {}) {
    const std::string entries = PathOf("entries.csv");
    std::ofstream(entries, std::ios::binary) << csv;
    std::vector<std::string> arguments = {"import", path_, entries};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return testing::RunLdg(arguments);
  }
  Error FailureOf(const std::string& csv) {
    return chart_testing::ErrorOf([&] { Import(csv); });
  }
  int32_t Count(const std::string& table) {
    return CLng(FileScalar("SELECT Count(*) AS N FROM " + table + ";", "N"));
  }
  Currency BalanceOf(const std::string& code) {
    return CCur(FileScalar("SELECT Balance FROM Accounts WHERE Code = '" + code + "';", "Balance"));
  }
  // The three entries of the fixture are still all there is, with their balances.
  void ExpectFileUnchanged() {
    EXPECT_EQ(Count("BookEntries"), 3);
    EXPECT_EQ(Count("Movements"), 6);
    EXPECT_EQ(BalanceOf("1000"), Currency::FromUnits(150));
    EXPECT_EQ(BalanceOf("2000"), Currency::FromUnits(-100));
    EXPECT_EQ(BalanceOf("3200"), Currency::FromUnits(-350));
  }
  std::string JournalCodeOfEntry(int32_t id) {
    return CStr(
        FileScalar("SELECT Journals.Code FROM BookEntries INNER JOIN Journals ON BookEntries.JournalID = "
                   "Journals.ID WHERE BookEntries.ID = " +
                       std::to_string(id) + ";",
                   "Code"));
  }
};

TEST_F(ImportCommandTest, PostsEachEntryWithItsLinesAndTellsHowMany) {
  const std::string out = Import(std::string(kHeader) +
                                 "a,2026-04-01,100,1000,300.00,Barverkauf\n"
                                 "a,2026-04-01,100,3200,-300.00,Barverkauf\n"
                                 "b,2026-04-02,R-1,11001,80.5,\"Rechnung, April\"\n"
                                 "b,,,2000,-0.5,\n"
                                 "b,2026-04-02,R-1,3200,-80,\"Teil \"\"B\"\"\"\n");
  EXPECT_EQ(out, "Imported 2 book entries with 5 lines.\n");
  EXPECT_EQ(Count("BookEntries"), 5);
  EXPECT_EQ(Count("Movements"), 11);
  EXPECT_EQ(CStr(FileScalar("SELECT DocumentID FROM BookEntries WHERE ID = 4;", "DocumentID")),
            "00000000000100");
  EXPECT_EQ(CStr(FileScalar("SELECT DocumentID FROM BookEntries WHERE ID = 5;", "DocumentID")), "R-1");
  EXPECT_EQ(CDate(FileScalar("SELECT Date FROM BookEntries WHERE ID = 5;", "Date")),
            chart_testing::Date(2026, 4, 2));
  EXPECT_EQ(CStr(FileScalar("SELECT Text FROM Movements WHERE EntryID = 5 AND Amount = 80.5;", "Text")),
            "Rechnung, April");
  EXPECT_EQ(CStr(FileScalar("SELECT Text FROM Movements WHERE EntryID = 5 AND Amount = -80;", "Text")),
            "Teil \"B\"");
  EXPECT_EQ(BalanceOf("1000"), Currency::FromUnits(450));
  EXPECT_EQ(BalanceOf("2000"), Currency::FromRaw(-1005000));
  EXPECT_EQ(BalanceOf("3200"), Currency::FromUnits(-730));
  EXPECT_EQ(JournalCodeOfEntry(4), "1");
}

TEST_F(ImportCommandTest, RowsOfOneEntryNeedNotStandTogether) {
  EXPECT_EQ(Import(std::string(kHeader) + "1,2026-04-01,,1000,5,\n"
                                          "2,2026-04-03,,1000,7,\n"
                                          "1,2026-04-01,,3200,-5,\n"
                                          "2,2026-04-03,,3200,-7,\n"),
            "Imported 2 book entries with 4 lines.\n");
  EXPECT_EQ(CCur(FileScalar("SELECT Sum(Amount) AS S FROM Movements WHERE EntryID = 4 AND Amount > 0;", "S")),
            Currency::FromUnits(5));
  EXPECT_EQ(CDate(FileScalar("SELECT Date FROM BookEntries WHERE ID = 5;", "Date")),
            chart_testing::Date(2026, 4, 3));
}

TEST_F(ImportCommandTest, TheJournalColumnAndOptionChooseTheJournal) {
  Import(
      "journal,entry,date,doc,account,amount,text\r\n"
      "Bank,1,2026-04-01,,1000,5,\r\n"
      ",1,2026-04-01,,3200,-5,\r\n"
      ",2,2026-04-01,,1000,6,\r\n"
      ",2,2026-04-01,,3200,-6,\r\n",
      {"--journal", "2"});
  EXPECT_EQ(JournalCodeOfEntry(4), "2");
  EXPECT_EQ(JournalCodeOfEntry(5), "2");
  Import(
      "entry,date,doc,account,amount,text,journal\n"
      "1,2026-04-01,,1000,5,,1\n"
      "1,2026-04-01,,3200,-5,,\n");
  EXPECT_EQ(JournalCodeOfEntry(6), "1");
}

TEST_F(ImportCommandTest, ReadsCrLfWithAByteOrderMark) {
  EXPECT_EQ(
      Import("\xEF\xBB\xBF"
             "entry,date,doc,account,amount,text\r\n1,2026-04-01,,1000,5,\r\n1,2026-04-01,,3200,-5,\r\n"),
      "Imported 1 book entries with 2 lines.\n");
}

TEST_F(ImportCommandTest, AnUnbalancedEntryNamesItsFirstLineAndNothingIsPosted) {
  const Error error = FailureOf(std::string(kHeader) +
                                "1,2026-04-01,,1000,5,\n"
                                "1,2026-04-01,,3200,-5,\n"
                                "2,2026-04-02,,1000,5,\n"
                                "2,2026-04-02,,3200,-4,\n");
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1171));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "Line 4: Book entry unbalanced!");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, AFailureInsideTheSaveOfALaterEntryRollsBackTheEarlierOnes) {
  const Error error = FailureOf(std::string(kHeader) +
                                "1,2026-04-01,,1000,5,\n"
                                "1,2026-04-01,,3200,-5,\n"
                                "2,2026-04-02,,2000,5,\n"
                                "2,2026-04-02,,3,-5,\n");
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1220));
  EXPECT_EQ(error.Description(), "Line 4: Cannot book on account sums");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, ADateOutsideTheYearFailsWithTheEnginesMessage) {
  const Error error = FailureOf(std::string(kHeader) +
                                "1,2026-04-01,,1000,5,\n"
                                "1,2026-04-01,,3200,-5,\n"
                                "2,2027-01-01,,1000,5,\n"
                                "2,2027-01-01,,3200,-5,\n");
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1168));
  EXPECT_EQ(error.Description(), "Line 4: Entry date not in opened business year!");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, AnUnknownAccountNamesItsLine) {
  const Error error = FailureOf(std::string(kHeader) +
                                "1,2026-04-01,,1000,5,\n"
                                "1,2026-04-01,,3201,-5,\n");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "Line 3: No account has the code '3201'.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, AnUnknownJournalNamesItsLine) {
  const Error error = FailureOf(
      "entry,date,doc,account,amount,text,journal\n"
      "1,2026-04-01,,1000,5,,Lohn\n"
      "1,2026-04-01,,3200,-5,,\n");
  EXPECT_EQ(error.Description(), "Line 2: No journal has the code or name 'Lohn'.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, ABadAmountNamesItsLine) {
  const Error error = FailureOf(std::string(kHeader) +
                                "1,2026-04-01,,1000,5,\n"
                                "1,2026-04-01,,3200,\"-5,00\",\n");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(),
            "Line 3: '-5,00' is not an amount such as -1250.50 (\".\" and up to 4 decimals).");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, ABadDateNamesItsLine) {
  const Error error = FailureOf(std::string(kHeader) + "1,01.04.2026,,1000,5,\n1,,,3200,-5,\n");
  EXPECT_EQ(error.Description(), "Line 2: '01.04.2026' is not a date as yyyy-mm-dd.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, ALaterRowOfAnEntryMustNotChangeItsDateDocOrJournal) {
  EXPECT_EQ(FailureOf(std::string(kHeader) + "1,2026-04-01,,1000,5,\n1,2026-04-02,,3200,-5,\n").Description(),
            "Line 3: the entry began on line 2 with another date.");
  EXPECT_EQ(FailureOf(std::string(kHeader) + "1,2026-04-01,7,1000,5,\n1,,8,3200,-5,\n").Description(),
            "Line 3: the entry began on line 2 with another document number.");
  EXPECT_EQ(FailureOf("entry,date,doc,account,amount,text,journal\n"
                      "1,2026-04-01,,1000,5,,1\n"
                      "1,2026-04-01,,3200,-5,,2\n")
                .Description(),
            "Line 3: the entry began on line 2 with another journal.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, AnEmptyEntryNamesItsLine) {
  EXPECT_EQ(FailureOf(std::string(kHeader) + ",2026-04-01,,1000,5,\n").Description(),
            "Line 2: the entry is empty.");
}

TEST_F(ImportCommandTest, ARowWithTooFewFieldsNamesItsLine) {
  const Error error = FailureOf(std::string(kHeader) + "1,2026-04-01,,1000,5,\n1,2026-04-01,,3200,-5\n");
  EXPECT_EQ(error.Description(), "Line 3: 5 fields where the header has 6.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, TheHeaderNeedsEveryColumnAndNoOther) {
  EXPECT_EQ(FailureOf("entry,date,doc,account,text\n").Description(),
            "Line 1: the header has no column 'amount'.");
  EXPECT_EQ(
      FailureOf("entry,date,doc,account,amount,text,jounral\n").Description(),
      "Line 1: the header has a column 'jounral' that is not entry, date, doc, account, amount, text or "
      "journal.");
  EXPECT_EQ(FailureOf("").Description(), "Line 1: the file is empty; it needs a header row.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, BrokenQuotingFailsWithTheLineOfTheReader) {
  const Error error =
      FailureOf(std::string(kHeader) + "1,2026-04-01,,1000,5,ok\n1,2026-04-01,,3200,-5,\"open\n");
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "CSV line 3: a quoted field is not closed.");
  ExpectFileUnchanged();
}

TEST_F(ImportCommandTest, AMissingCsvFileFailsBeforeTheYearFileIsOpened) {
  const std::string missing = PathOf("none.csv");
  const Error error = chart_testing::ErrorOf([&] { testing::RunLdg({"import", path_, missing}); });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "Can't read the file '" + missing + "'.");
}

TEST_F(ImportCommandTest, ReportsProgressPerEntryToTheHostHooks) {
  std::ostringstream bar_text;
  {
    OpenedYearFile opened(path_);
    ProgressBar bar(bar_text, true);
    std::istringstream csv(std::string(kHeader) +
                           "1,2026-04-01,,1000,5,\n1,,,3200,-5,\n2,2026-04-02,,1000,6,\n2,,,3200,-6,\n");
    EntryImport(opened.engine(), "1").Run(csv);
  }
  EXPECT_EQ(bar_text.str(),
            "\rImport [..............................]   0% 0/2"
            "\rImport [###############...............]  50% 1/2"
            "\rImport [##############################] 100% 2/2\n");
  EXPECT_EQ(Count("BookEntries"), 5);
}

}  // namespace
}  // namespace ldg::cli

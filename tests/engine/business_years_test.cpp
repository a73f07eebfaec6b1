#include "engine/business_years.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg {
namespace {

using year_files_testing::Day;
using year_files_testing::ErrorOf;

constexpr int32_t kYearNotFoundNumber = static_cast<int32_t>(0x80040000u);
constexpr const char* kYearNotFoundText = "Business year definition could not be found!";

TEST(YearStatusTextTest, GivesTheTextOfEachStatus) {
  EXPECT_EQ(YearStatusText(lgrBsnYearActive), "Aktiv");
  EXPECT_EQ(YearStatusText(lgrBsnYearCloture), "Abschluss");
  EXPECT_EQ(YearStatusText(lgrBsnYearArchived), "Archiv");
  EXPECT_EQ(YearStatusText(lgrBsnYearRemoved), "Entfernt");
}

TEST(YearStatusTextTest, IsEmptyOutsideOneToFour) {
  EXPECT_EQ(YearStatusText(0), "");
  EXPECT_EQ(YearStatusText(5), "");
  EXPECT_EQ(YearStatusText(-1), "");
}

TEST(YearFileNameOfTest, CutsTheFolderAtTheLastSeparatorOfEitherKind) {
  EXPECT_EQ(YearFileNameOf("C:\\Daten\\Firma\\2023.qdb"), "2023.qdb");
  EXPECT_EQ(YearFileNameOf("/home/anna/2023.qdb"), "2023.qdb");
  EXPECT_EQ(YearFileNameOf("2023.qdb"), "2023.qdb");
}

class BusinessYearsTest : public year_files_testing::CreatedYearFileTest {};

TEST_F(BusinessYearsTest, ReadBusinessYearFindsTheFilesOwnRow) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  const BusinessYearRow row = ReadBusinessYear(*database);
  EXPECT_EQ(row.id, 1);
  EXPECT_EQ(CDate(row.beginn), OleDate::FromYmd(2023, 1, 1));
  EXPECT_EQ(CDate(row.end), OleDate::FromYmd(2023, 12, 31));
  EXPECT_EQ(row.status, lgrBsnYearActive);
}

TEST_F(BusinessYearsTest, ACopyUnderANewNameHealsItselfAndLeavesTheOriginalAlone) {
  const std::string original = MakeYearFile("firma2023.qdb");
  const std::string copy = PathOf("kopie2023.qdb");
  std::filesystem::copy_file(original, copy);

  auto copied = Open(copy);
  const BusinessYearRow row = ReadBusinessYear(*copied);
  EXPECT_EQ(row.id, 1);
  auto names = copied->OpenRecordset("SELECT DbName FROM BusinessYears;", store::dbOpenSnapshot);
  EXPECT_EQ(CStr(names->Value("DbName")), "kopie2023.qdb");
  names->Close();

  auto untouched = Open(original);
  auto old_names = untouched->OpenRecordset("SELECT DbName FROM BusinessYears;", store::dbOpenSnapshot);
  EXPECT_EQ(CStr(old_names->Value("DbName")), "firma2023.qdb");
  EXPECT_EQ(ReadBusinessYear(*untouched).id, 1);
}

TEST_F(BusinessYearsTest, RelinkChangesOnlyTheRowMatchingThePeriodSpan) {
  auto database = Open(MakeYearFile("firma2024.qdb", Day(2024, 1, 1), Day(2024, 12, 31)));
  database->Execute(
      "INSERT INTO BusinessYears (ID, Beginn, End, Status, DbName) VALUES (7, #1/1/2023#, #12/31/2023#, 2, "
      "'alt.qdb');");
  database->Execute("UPDATE BusinessYears SET DbName = 'weg.qdb' WHERE ID = 1;");
  RelinkBusinessYear(*database);
  auto rows =
      database->OpenRecordset("SELECT ID, DbName FROM BusinessYears ORDER BY ID;", store::dbOpenSnapshot);
  EXPECT_EQ(CLng(rows->Value("ID")), 1);
  EXPECT_EQ(CStr(rows->Value("DbName")), "firma2024.qdb");
  rows->MoveNext();
  EXPECT_EQ(CStr(rows->Value("DbName")), "alt.qdb");
}

TEST_F(BusinessYearsTest, AFileWithoutPeriodsCannotBeRelinked) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  database->Execute("DELETE * FROM Periods;");
  database->Execute("UPDATE BusinessYears SET DbName = 'anders.qdb';");
  const Error error = ErrorOf([&] { ReadBusinessYear(*database); });
  EXPECT_EQ(error.Number(), kYearNotFoundNumber);
  EXPECT_EQ(error.Description(), kYearNotFoundText);
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(BusinessYearsTest, APeriodSpanMatchingNoYearCannotBeRelinked) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  database->Execute("UPDATE Periods SET End = #6/30/2023#;");
  database->Execute("UPDATE BusinessYears SET DbName = 'anders.qdb';");
  const Error error = ErrorOf([&] { RelinkBusinessYear(*database); });
  EXPECT_EQ(error.Number(), kYearNotFoundNumber);
  EXPECT_EQ(error.Description(), kYearNotFoundText);
  auto names = database->OpenRecordset("SELECT DbName FROM BusinessYears;", store::dbOpenSnapshot);
  EXPECT_EQ(CStr(names->Value("DbName")), "anders.qdb");
}

class CheckDateInYearTest : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_beginn_ = State().year_beginn;
    saved_end_ = State().year_end;
    State().year_beginn = Day(2023, 1, 1);
    State().year_end = Day(2023, 12, 31);
  }
  void TearDown() override {
    State().year_beginn = saved_beginn_;
    State().year_end = saved_end_;
  }
  Variant saved_beginn_;
  Variant saved_end_;
};

TEST_F(CheckDateInYearTest, PassesTheFirstAndTheLastDay) {
  EXPECT_NO_THROW(CheckDateInYear(Day(2023, 1, 1)));
  EXPECT_NO_THROW(CheckDateInYear(Day(2023, 12, 31)));
}

TEST_F(CheckDateInYearTest, CutsTheTimeOfADateOnTheLastDay) {
  EXPECT_NO_THROW(CheckDateInYear(Variant(OleDate::FromCivil({2023, 12, 31, 23, 59, 0}))));
  EXPECT_NO_THROW(CheckDateInYear(Variant("31.12.2023 23:59")));
}

TEST_F(CheckDateInYearTest, RefusesTheDayAfterTheYear) {
  const Error error = ErrorOf([] { CheckDateInYear(Day(2024, 1, 1)); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004044Fu));
  EXPECT_EQ(error.Description(), "Date out of opened business year!");
}

TEST_F(CheckDateInYearTest, RefusesTheDayBeforeTheYear) {
  const Error error = ErrorOf([] { CheckDateInYear(Day(2022, 12, 31)); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004044Fu));
  EXPECT_EQ(error.Description(), "Date out of opened business year!");
}

TEST_F(CheckDateInYearTest, RefusesAValueThatIsNoDate) {
  const Error error = ErrorOf([] { CheckDateInYear(Variant("abc")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404A1u));
  EXPECT_EQ(error.Description(), "Value isn't a date!");
}

TEST_F(BusinessYearsTest, NextBusinessYearIdOfAnEmptyTableIsOne) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  database->Execute("DELETE * FROM BusinessYears;");
  EXPECT_EQ(NextBusinessYearID(*database), 1);
}

TEST_F(BusinessYearsTest, NextBusinessYearIdFollowsTheHighestId) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  database->Execute(
      "INSERT INTO BusinessYears (ID, Beginn, End, Status) VALUES (3, #1/1/2021#, #12/31/2021#, 3);");
  EXPECT_EQ(NextBusinessYearID(*database), 4);
}

class AddBusinessYearTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    database_ = Open(MakeYearFile("firma2023.qdb"));
  }
  void TearDown() override {
    database_->Close();
    database_.reset();
    CreatedYearFileTest::TearDown();
  }
  void ExpectRefused(const Variant& begin, const Variant& end, uint32_t number, const char* text) {
    const Error error = ErrorOf([&] { AddBusinessYear(*database_, 5, begin, end); });
    EXPECT_EQ(error.Number(), static_cast<int32_t>(number));
    EXPECT_EQ(error.Description(), text);
    EXPECT_EQ(Count(*database_, "BusinessYears"), 1);
  }
  std::shared_ptr<store::Database> database_;
};

TEST_F(AddBusinessYearTest, RefusesABeginThatIsNoDate) {
  ExpectRefused(Variant("abc"), Variant("xyz"), 0x800404A7u,
                "Beginn date for new business year is not a valide date!");
}

TEST_F(AddBusinessYearTest, RefusesAnEndThatIsNoDate) {
  ExpectRefused(Day(2024, 1, 1), Variant("xyz"), 0x800404A8u,
                "End date for new business year is not a valide date!");
}

TEST_F(AddBusinessYearTest, RefusesAYearOfOneDay) {
  ExpectRefused(Day(2024, 1, 1), Variant(OleDate::FromCivil({2024, 1, 1, 18, 0, 0})), 0x800404A9u,
                "Beginn date must preced end date in order to define a valid business year!");
}

TEST_F(AddBusinessYearTest, RefusesABeginEqualToTheEnd) {
  ExpectRefused(Day(2024, 1, 1), Day(2024, 1, 1), 0x800404A9u,
                "Beginn date must preced end date in order to define a valid business year!");
}

TEST_F(AddBusinessYearTest, RefusesAnEndBeforeTheBegin) {
  ExpectRefused(Day(2024, 12, 31), Day(2024, 1, 1), 0x800404A9u,
                "Beginn date must preced end date in order to define a valid business year!");
}

TEST_F(AddBusinessYearTest, RefusesAYearOverlappingAnotherOne) {
  ExpectRefused(Day(2023, 6, 1), Day(2024, 5, 31), 0x800404ACu,
                "Given business year overlaps with other business years in this database!");
}

TEST_F(AddBusinessYearTest, RefusesAYearBeforeALaterOne) {
  ExpectRefused(Day(2021, 1, 1), Day(2021, 12, 31), 0x800404ACu,
                "Given business year overlaps with other business years in this database!");
}

TEST_F(AddBusinessYearTest, AddsTheYearActiveAndLinkedToThisFile) {
  AddBusinessYear(*database_, 2, Variant("01.01.2024"), Variant("31.12.2024"));
  auto rows = database_->OpenRecordset("SELECT * FROM BusinessYears WHERE ID = 2;", store::dbOpenSnapshot);
  ASSERT_FALSE(rows->Eof());
  EXPECT_EQ(CDate(rows->Value("Beginn")), OleDate::FromYmd(2024, 1, 1));
  EXPECT_EQ(CDate(rows->Value("End")), OleDate::FromYmd(2024, 12, 31));
  EXPECT_EQ(CLng(rows->Value("Status")), 1);
  EXPECT_EQ(CStr(rows->Value("DbName")), "firma2023.qdb");
}

TEST_F(BusinessYearsTest, AddYearRowThroughLinkWritesIntoTheOtherFileAndDropsTheLink) {
  MakeYearFile("firma2023.qdb");
  auto newer = Open(MakeYearFile("firma2024.qdb", Day(2024, 1, 1), Day(2024, 12, 31)));
  BusinessYearRow row;
  row.id = 2;
  row.beginn = Day(2024, 1, 1);
  row.end = Day(2024, 12, 31);
  row.status = lgrBsnYearActive;
  AddYearRowThroughLink(*newer, 1, "firma2023.qdb", row, "firma2024.qdb");
  EXPECT_FALSE(newer->TableDefs().Contains("BusinessYears1"));
  auto older = Open(PathOf("firma2023.qdb"));
  auto rows = older->OpenRecordset("SELECT * FROM BusinessYears WHERE ID = 2;", store::dbOpenSnapshot);
  ASSERT_FALSE(rows->Eof());
  EXPECT_EQ(CStr(rows->Value("DbName")), "firma2024.qdb");
  EXPECT_EQ(CDate(rows->Value("End")), OleDate::FromYmd(2024, 12, 31));
  EXPECT_EQ(CLng(rows->Value("Status")), 1);
}

TEST_F(BusinessYearsTest, AddYearRowThroughLinkToAMissingFileFailsAndLeavesNoLink) {
  auto newer = Open(MakeYearFile("firma2024.qdb", Day(2024, 1, 1), Day(2024, 12, 31)));
  BusinessYearRow row;
  row.id = 2;
  row.beginn = Day(2024, 1, 1);
  row.end = Day(2024, 12, 31);
  row.status = lgrBsnYearActive;
  EXPECT_THROW(AddYearRowThroughLink(*newer, 1, "fehlt.qdb", row, "firma2024.qdb"), Error);
  EXPECT_FALSE(newer->TableDefs().Contains("BusinessYears1"));
}

}  // namespace
}  // namespace ldg

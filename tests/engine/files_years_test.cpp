#include "engine/files_years.hpp"

#include <gtest/gtest.h>

#include "engine/engine_state.hpp"
#include "support/error.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg {
namespace {

using year_files_testing::ErrorOf;

TEST(FilesYearsTest, StartsWithEveryFieldReset) {
  FilesYears years;
  EXPECT_EQ(years.Path(), "");
  EXPECT_EQ(years.Status(), 0);
  EXPECT_EQ(years.DateFrom(), OleDate());
  EXPECT_EQ(years.DateTo(), OleDate());
  EXPECT_EQ(years.ID(), 0);
}

TEST(FilesYearsTest, MoveFirstWithNoDatabaseOpenFailsForWantOfARecordSet) {
  ASSERT_FALSE(State().database);
  FilesYears years;
  const Error error = ErrorOf([&] { years.MoveFirst(); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
}

TEST(FilesYearsTest, MoveNextBeforeMoveFirstFailsForWantOfARecordSet) {
  FilesYears years;
  EXPECT_EQ(ErrorOf([&] { years.MoveNext(); }).Number(), 91);
  EXPECT_EQ(ErrorOf([&] { years.MovePrevious(); }).Number(), 91);
}

TEST(FilesYearsTest, FieldsCanBeWrittenAndReadBack) {
  FilesYears years;
  years.Path("x.qdb");
  years.Status(3);
  years.DateFrom(OleDate::FromYmd(2020, 1, 1));
  years.DateTo(OleDate::FromYmd(2020, 12, 31));
  years.ID(9);
  EXPECT_EQ(years.Path(), "x.qdb");
  EXPECT_EQ(years.Status(), 3);
  EXPECT_EQ(years.DateFrom(), OleDate::FromYmd(2020, 1, 1));
  EXPECT_EQ(years.DateTo(), OleDate::FromYmd(2020, 12, 31));
  EXPECT_EQ(years.ID(), 9);
}

// Year 2 (2024) stands before year 1 (2023) by id order, after it by last day.
class FilesYearsWalkTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    State().database = Open(MakeYearFile("firma2024.qdb", year_files_testing::Day(2024, 1, 1),
                                         year_files_testing::Day(2024, 12, 31)));
    State().database->Execute("UPDATE BusinessYears SET ID = 2;");
    State().database->Execute(
        "INSERT INTO BusinessYears (ID, Beginn, End, Status, DbName) VALUES (1, #1/1/2023#, #12/31/2023#, 2, "
        "'firma2023.qdb');");
  }
};

TEST_F(FilesYearsWalkTest, WalksTheYearsInOrderOfTheirLastDayAndEndsWithIdZero) {
  FilesYears years;
  years.MoveFirst();
  EXPECT_EQ(years.ID(), 1);
  EXPECT_EQ(years.Path(), "firma2023.qdb");
  EXPECT_EQ(years.Status(), 2);
  EXPECT_EQ(years.DateFrom(), OleDate::FromYmd(2023, 1, 1));
  EXPECT_EQ(years.DateTo(), OleDate::FromYmd(2023, 12, 31));
  years.MoveNext();
  EXPECT_EQ(years.ID(), 2);
  EXPECT_EQ(years.Path(), "firma2024.qdb");
  EXPECT_EQ(years.Status(), 1);
  years.MoveNext();
  EXPECT_EQ(years.ID(), 0);
  EXPECT_EQ(years.Path(), "");
  EXPECT_EQ(years.Status(), 0);
  EXPECT_EQ(years.DateFrom(), OleDate());
  EXPECT_EQ(years.DateTo(), OleDate());
}

TEST_F(FilesYearsWalkTest, WalksBackwardsFromTheLastYear) {
  FilesYears years;
  years.MoveLast();
  EXPECT_EQ(years.ID(), 2);
  years.MovePrevious();
  EXPECT_EQ(years.ID(), 1);
  years.MovePrevious();
  EXPECT_EQ(years.ID(), 0);
  EXPECT_EQ(years.Path(), "");
}

TEST_F(FilesYearsWalkTest, KeepsTheRowsReadAtTheFirstMove) {
  FilesYears years;
  years.MoveFirst();
  State().database->Execute("DELETE * FROM BusinessYears WHERE ID = 1;");
  years.MoveFirst();
  EXPECT_EQ(years.ID(), 1);
}

}  // namespace
}  // namespace ldg

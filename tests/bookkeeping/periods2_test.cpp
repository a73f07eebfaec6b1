#include "bookkeeping/periods2.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::Date;
using chart_testing::OpenChartTest;
using year_files_testing::Day;

Variant Pos(int32_t position) { return Variant(position); }

class Periods2Test : public OpenChartTest {
 protected:
  Periods2& Periods() { return *engine_->Periods2(); }

  // The start dates of all periods, in order.
  std::vector<OleDate> Starts() {
    std::vector<OleDate> starts;
    for (int32_t i = 1; i <= Periods().Count(); ++i) starts.push_back(Periods().DateFrom(Pos(i)));
    return starts;
  }

  // Makes and opens a year file with the given first and last day.
  void OpenYear(const std::string& name, OleDate begin, OleDate end) {
    engine_->CreateDatabase(Variant(PathOf(name)), Variant(begin), Variant(end));
  }

  void InsertRow(OleDate date_from, int32_t state) {
    auto table = Db().OpenRecordset("Periods2", store::dbOpenTable);
    table->AddNew();
    table->Value("DateFrom", Variant(date_from));
    table->Value("LockingState", Variant(state));
    table->Update();
    table->Close();
  }

  int32_t Rows() { return ReadLong(Scalar("SELECT Count(*) AS N FROM Periods2;", "N")); }
};

// ---- Creation and normalisation ----

TEST_F(Periods2Test, FreshDatabaseHasOneOpenPeriodOverTheYear) {
  ASSERT_NE(engine_->Periods2(), nullptr);
  EXPECT_EQ(Periods().Count(), 1);
  EXPECT_EQ(Periods().DateFrom(Pos(1)), Date(2026, 1, 1));
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 12, 31));
  EXPECT_EQ(Periods().LockingState(Pos(1)), 0);
  EXPECT_EQ(Rows(), 1);
}

TEST_F(Periods2Test, CreationDropsRowsOutsideTheYearAndDerivesDateTo) {
  InsertRow(Date(2025, 6, 1), 1);
  InsertRow(Date(2026, 6, 15), 1);
  InsertRow(Date(2027, 1, 1), 0);
  Periods2 reread;
  EXPECT_EQ(reread.Count(), 2);
  EXPECT_EQ(reread.DateTo(Pos(1)), Date(2026, 6, 14));
  EXPECT_EQ(reread.DateFrom(Pos(2)), Date(2026, 6, 15));
  EXPECT_EQ(reread.DateTo(Pos(2)), Date(2026, 12, 31));
  EXPECT_EQ(reread.LockingState(Pos(2)), 1);
  EXPECT_EQ(Rows(), 2);
}

TEST_F(Periods2Test, CreationOverAnEmptyTableGivesOnePeriod) {
  Db().Execute("DELETE FROM Periods2;", store::dbFailOnError);
  Periods2 reread;
  EXPECT_EQ(reread.Count(), 1);
  EXPECT_EQ(reread.DateFrom(Pos(1)), Date(2026, 1, 1));
  EXPECT_EQ(reread.DateTo(Pos(1)), Date(2026, 12, 31));
}

TEST_F(Periods2Test, CreationAddsTheFirstPeriodWhenOnlyLaterOnesExist) {
  Db().Execute("DELETE FROM Periods2;", store::dbFailOnError);
  InsertRow(Date(2026, 7, 1), 1);
  Periods2 reread;
  ASSERT_EQ(reread.Count(), 2);
  EXPECT_EQ(reread.DateFrom(Pos(1)), Date(2026, 1, 1));
  EXPECT_EQ(reread.DateTo(Pos(1)), Date(2026, 6, 30));
  EXPECT_EQ(reread.LockingState(Pos(1)), 0);
  EXPECT_EQ(reread.LockingState(Pos(2)), 1);
}

TEST_F(Periods2Test, LocksAreKeptInTheTableAcrossObjects) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  Periods().Locked(Pos(1), true);
  Periods2 reread;
  EXPECT_TRUE(reread.Locked(Pos(1)));
  EXPECT_FALSE(reread.Locked(Pos(2)));
}

// ---- Count ----

TEST_F(Periods2Test, CountIsNeverZero) {
  Periods().Reset();
  EXPECT_EQ(Periods().Count(), 1);
  EXPECT_TRUE(Periods().SetYear());
  EXPECT_EQ(Periods().Count(), 1);
  EXPECT_FALSE(Periods().Remove(Pos(1)));
  EXPECT_EQ(Periods().Count(), 1);
}

// ---- Locating ----

TEST_F(Periods2Test, ADateNamesThePeriodThatHoldsIt) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  EXPECT_EQ(Periods().DateFrom(Variant(Date(2026, 3, 31))), Date(2026, 1, 1));
  EXPECT_EQ(Periods().DateFrom(Variant(Date(2026, 4, 1))), Date(2026, 4, 1));
  EXPECT_EQ(Periods().DateFrom(Variant(Date(2026, 5, 20))), Date(2026, 4, 1));
  EXPECT_EQ(Periods().DateFrom(Variant(Date(2026, 12, 31))), Date(2026, 7, 1));
}

TEST_F(Periods2Test, ADateTextNamesThePeriodThatHoldsIt) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  EXPECT_EQ(Periods().DateFrom(Variant("15.05.2026")), Date(2026, 4, 1));
  EXPECT_EQ(Periods().DateTo(Variant("2026-02-01")), Date(2026, 3, 31));
}

TEST_F(Periods2Test, ANumberIsAOneBasedPosition) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  EXPECT_EQ(Periods().DateFrom(Variant(2.0)), Date(2026, 4, 1));
  EXPECT_EQ(Periods().DateFrom(Variant("1")), Date(2026, 1, 1));
}

TEST_F(Periods2Test, APositionOutsideTheCollectionLocatesNothing) {
  EXPECT_EQ(Periods().DateFrom(Pos(0)), OleDate());
  EXPECT_EQ(Periods().DateTo(Pos(2)), OleDate());
  EXPECT_EQ(Periods().Text(Pos(2)), "");
  EXPECT_EQ(Periods().Key(Pos(-1)), "");
  EXPECT_EQ(Periods().LockingState(Pos(2)), 2);
  EXPECT_TRUE(Periods().Locked(Pos(2)));
  EXPECT_TRUE(Periods().Permanent(Pos(2)));
}

TEST_F(Periods2Test, AValueThatIsNeitherDateNorNumberLocatesNothing) {
  EXPECT_EQ(Periods().DateFrom(Variant("abc")), OleDate());
  EXPECT_EQ(Periods().LockingState(Variant::Null()), 2);
}

TEST_F(Periods2Test, LockedOfADateOutsideTheYearIsTrueAndItsStateIsPermanent) {
  EXPECT_TRUE(Periods().Locked(Variant(Date(2027, 1, 1))));
  EXPECT_EQ(Periods().LockingState(Variant(Date(2027, 1, 1))), 2);
  EXPECT_TRUE(Periods().Locked(Variant(Date(2025, 12, 31))));
  EXPECT_TRUE(Periods().Permanent(Variant(Date(2025, 12, 31))));
  EXPECT_EQ(Periods().DateFrom(Variant(Date(2027, 1, 1))), OleDate());
}

TEST_F(Periods2Test, LockingALocationThatFailsChangesNothing) {
  Periods().Locked(Variant(Date(2027, 1, 1)), true);
  Periods().LockingState(Pos(5), 2);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 0);
}

// ---- Add ----

TEST_F(Periods2Test, AddOfAnExistingStartReturnsFalse) {
  EXPECT_FALSE(Periods().Add(Date(2026, 1, 1)));
  ASSERT_TRUE(Periods().Add(Date(2026, 5, 1)));
  EXPECT_FALSE(Periods().Add(Date(2026, 5, 1)));
  EXPECT_EQ(Periods().Count(), 2);
}

TEST_F(Periods2Test, AddOutsideTheYearReturnsFalse) {
  EXPECT_FALSE(Periods().Add(Date(2025, 12, 31)));
  EXPECT_FALSE(Periods().Add(Date(2027, 1, 1)));
  EXPECT_EQ(Periods().Count(), 1);
}

TEST_F(Periods2Test, AddOnTheLastDayGivesAOneDayPeriod) {
  ASSERT_TRUE(Periods().Add(Date(2026, 12, 31)));
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 12, 30));
  EXPECT_EQ(Periods().DateFrom(Pos(2)), Date(2026, 12, 31));
  EXPECT_EQ(Periods().DateTo(Pos(2)), Date(2026, 12, 31));
}

TEST_F(Periods2Test, AddInsideALockedPeriodSplitsItAndTheNewPeriodIsOpen) {
  Periods().Locked(Pos(1), true);
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  EXPECT_EQ(Periods().DateFrom(Pos(1)), Date(2026, 1, 1));
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 6, 30));
  EXPECT_EQ(Periods().LockingState(Pos(1)), 1);
  EXPECT_EQ(Periods().DateFrom(Pos(2)), Date(2026, 7, 1));
  EXPECT_EQ(Periods().DateTo(Pos(2)), Date(2026, 12, 31));
  EXPECT_EQ(Periods().LockingState(Pos(2)), 0);
}

TEST_F(Periods2Test, AddInsideAPermanentlyLockedPeriodGivesAnOpenPeriod) {
  Periods().Permanent(Pos(1), true);
  // Deliberately no lock test: a permanent lock is split like any other.
  ASSERT_TRUE(Periods().Add(Date(2026, 10, 1)));
  EXPECT_EQ(Periods().LockingState(Pos(1)), 2);
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 11, 1))));
}

// ---- Remove ----

TEST_F(Periods2Test, RemoveOfTheFirstPeriodReturnsFalseEvenWhenOpen) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  EXPECT_FALSE(Periods().Remove(Variant(Date(2026, 1, 1))));
  EXPECT_FALSE(Periods().Remove(Pos(1)));
  EXPECT_EQ(Periods().Count(), 2);
}

TEST_F(Periods2Test, RemoveOfALockedPeriodReturnsFalse) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  Periods().Locked(Pos(2), true);
  EXPECT_FALSE(Periods().Remove(Pos(2)));
  EXPECT_EQ(Periods().Count(), 2);
}

TEST_F(Periods2Test, RemoveExtendsThePreviousPeriodToTheRemovedEnd) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  Periods().Locked(Pos(1), true);
  EXPECT_TRUE(Periods().Remove(Variant(Date(2026, 5, 5))));
  ASSERT_EQ(Periods().Count(), 2);
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 6, 30));
  EXPECT_EQ(Periods().LockingState(Pos(1)), 1);
  EXPECT_EQ(Periods().DateFrom(Pos(2)), Date(2026, 7, 1));
}

TEST_F(Periods2Test, RemoveOfALocationThatFailsReturnsFalse) {
  EXPECT_FALSE(Periods().Remove(Pos(3)));
  EXPECT_FALSE(Periods().Remove(Variant(Date(2027, 2, 1))));
}

// ---- Locking states ----

TEST_F(Periods2Test, LockedTrueSetsStateOneAndFalseSetsZero) {
  Periods().Locked(Pos(1), true);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 1);
  EXPECT_TRUE(Periods().Locked(Pos(1)));
  EXPECT_FALSE(Periods().Permanent(Pos(1)));
  Periods().Locked(Pos(1), false);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 0);
  EXPECT_FALSE(Periods().Locked(Pos(1)));
}

TEST_F(Periods2Test, LockedFalseOnAPermanentlyLockedPeriodHasNoEffect) {
  Periods().Permanent(Pos(1), true);
  Periods().Locked(Pos(1), false);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 2);
  Periods().LockingState(Pos(1), 0);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 2);
  EXPECT_TRUE(Periods().Locked(Pos(1)));
}

TEST_F(Periods2Test, PermanentFalseDoesNothing) {
  Periods().Locked(Pos(1), true);
  Periods().Permanent(Pos(1), false);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 1);
}

TEST_F(Periods2Test, LockingStateIsClampedWhenWritten) {
  Periods().LockingState(Pos(1), -4);
  EXPECT_EQ(ReadLong(Scalar("SELECT LockingState FROM Periods2;", "LockingState")), 0);
  Periods().LockingState(Pos(1), 9);
  EXPECT_EQ(ReadLong(Scalar("SELECT LockingState FROM Periods2;", "LockingState")), 2);
}

TEST_F(Periods2Test, LockingStateIsClampedWhenRead) {
  Db().Execute("UPDATE Periods2 SET LockingState = 7;", store::dbFailOnError);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 2);
  Db().Execute("UPDATE Periods2 SET LockingState = -3;", store::dbFailOnError);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 0);
  EXPECT_FALSE(Periods().Locked(Pos(1)));
}

TEST_F(Periods2Test, PermanentIsNotTiedToTheOrderOfPeriods) {
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  Periods().Permanent(Pos(2), true);
  EXPECT_TRUE(Periods().Permanent(Pos(2)));
  EXPECT_FALSE(Periods().Locked(Pos(1)));
}

TEST_F(Periods2Test, CheckUnlockTellsWhetherAnyPeriodIsLocked) {
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  EXPECT_TRUE(Periods().CheckUnlock());
  Periods().Locked(Pos(2), true);
  EXPECT_FALSE(Periods().CheckUnlock());
}

// ---- Reset and the set operations ----

TEST_F(Periods2Test, ResetRemovesEvenPermanentlyLockedPeriods) {
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  Periods().Permanent(Pos(1), true);
  Periods().Permanent(Pos(2), true);
  Periods().Reset();
  EXPECT_EQ(Periods().Count(), 1);
  EXPECT_EQ(Periods().LockingState(Pos(1)), 0);
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 12, 31));
  EXPECT_EQ(Rows(), 1);
}

TEST_F(Periods2Test, SetQuarterWithALockedPeriodReturnsFalseAndKeepsThePeriods) {
  ASSERT_TRUE(Periods().Add(Date(2026, 3, 1)));
  ASSERT_TRUE(Periods().Add(Date(2026, 8, 1)));
  Periods().Locked(Pos(3), true);
  EXPECT_FALSE(Periods().SetQuarter());
  EXPECT_EQ(Starts(), (std::vector<OleDate>{Date(2026, 1, 1), Date(2026, 3, 1), Date(2026, 8, 1)}));
  EXPECT_EQ(Periods().LockingState(Pos(3)), 1);
  EXPECT_FALSE(Periods().SetMonth());
  EXPECT_FALSE(Periods().SetSemester());
  EXPECT_FALSE(Periods().SetYear());
  EXPECT_EQ(Periods().Count(), 3);
}

TEST_F(Periods2Test, SetYearLeavesOnePeriod) {
  ASSERT_TRUE(Periods().Add(Date(2026, 3, 1)));
  EXPECT_TRUE(Periods().SetYear());
  EXPECT_EQ(Starts(), (std::vector<OleDate>{Date(2026, 1, 1)}));
}

TEST_F(Periods2Test, SetMonthGivesTwelveCalendarMonths) {
  EXPECT_TRUE(Periods().SetMonth());
  ASSERT_EQ(Periods().Count(), 12);
  EXPECT_EQ(Periods().DateFrom(Pos(2)), Date(2026, 2, 1));
  EXPECT_EQ(Periods().DateTo(Pos(2)), Date(2026, 2, 28));
  EXPECT_EQ(Periods().DateFrom(Pos(12)), Date(2026, 12, 1));
  EXPECT_EQ(Periods().DateTo(Pos(12)), Date(2026, 12, 31));
}

TEST_F(Periods2Test, SetQuarterGivesFourCalendarQuarters) {
  EXPECT_TRUE(Periods().SetQuarter());
  EXPECT_EQ(Starts(),
            (std::vector<OleDate>{Date(2026, 1, 1), Date(2026, 4, 1), Date(2026, 7, 1), Date(2026, 10, 1)}));
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 3, 31));
}

TEST_F(Periods2Test, SetSemesterGivesTwoHalfYears) {
  EXPECT_TRUE(Periods().SetSemester());
  EXPECT_EQ(Starts(), (std::vector<OleDate>{Date(2026, 1, 1), Date(2026, 7, 1)}));
  EXPECT_EQ(Periods().DateTo(Pos(1)), Date(2026, 6, 30));
}

TEST_F(Periods2Test, SetQuarterOfAnAprilToMarchYearStartsOnCalendarQuarters) {
  OpenYear("april2026.qdb6f", Date(2026, 4, 1), Date(2027, 3, 31));
  EXPECT_TRUE(Periods().SetQuarter());
  EXPECT_EQ(Starts(),
            (std::vector<OleDate>{Date(2026, 4, 1), Date(2026, 7, 1), Date(2026, 10, 1), Date(2027, 1, 1)}));
  EXPECT_EQ(Periods().DateTo(Pos(4)), Date(2027, 3, 31));
}

TEST_F(Periods2Test, SetSemesterOfAnAprilToMarchYearHasAShortFirstPeriod) {
  OpenYear("april2026.qdb6f", Date(2026, 4, 1), Date(2027, 3, 31));
  EXPECT_TRUE(Periods().SetSemester());
  EXPECT_EQ(Starts(), (std::vector<OleDate>{Date(2026, 4, 1), Date(2026, 7, 1), Date(2027, 1, 1)}));
  EXPECT_EQ(Periods().Text(Pos(1)), "2026-Q2    (01.04.2026 - 30.06.2026)");
  EXPECT_EQ(Periods().Text(Pos(3)), "2027-Q1    (01.01.2027 - 31.03.2027)");
}

TEST_F(Periods2Test, SetMonthStepsFromThePreviousStartSoADayThirtyOneDrifts) {
  OpenYear("late2026.qdb6f", Date(2026, 1, 31), Date(2027, 1, 30));
  // Deliberately each start is a month after the previous one, not after the first.
  EXPECT_TRUE(Periods().SetMonth());
  ASSERT_EQ(Periods().Count(), 13);
  EXPECT_EQ(Periods().DateFrom(Pos(2)), Date(2026, 2, 28));
  EXPECT_EQ(Periods().DateFrom(Pos(3)), Date(2026, 3, 28));
  EXPECT_EQ(Periods().DateFrom(Pos(13)), Date(2027, 1, 28));
  EXPECT_EQ(Periods().DateTo(Pos(13)), Date(2027, 1, 30));
}

// ---- Texts and keys ----

TEST_F(Periods2Test, TextOfAWholeCalendarYear) { EXPECT_EQ(Periods().Text(Pos(1)), "2026 - Jahr"); }

TEST_F(Periods2Test, TextOfASemester) {
  ASSERT_TRUE(Periods().SetSemester());
  EXPECT_EQ(Periods().Text(Pos(1)), "2026-S1    (01.01.2026 - 30.06.2026)");
  EXPECT_EQ(Periods().Text(Pos(2)), "2026-S2    (01.07.2026 - 31.12.2026)");
}

TEST_F(Periods2Test, TextOfAQuarter) {
  ASSERT_TRUE(Periods().SetQuarter());
  EXPECT_EQ(Periods().Text(Pos(1)), "2026-Q1    (01.01.2026 - 31.03.2026)");
  EXPECT_EQ(Periods().Text(Variant(Date(2026, 8, 15))), "2026-Q3    (01.07.2026 - 30.09.2026)");
}

TEST_F(Periods2Test, TextOfAMonth) {
  ASSERT_TRUE(Periods().SetMonth());
  EXPECT_EQ(Periods().Text(Pos(3)), "2026 - März");
  EXPECT_EQ(Periods().Text(Pos(12)), "2026 - Dezember");
}

TEST_F(Periods2Test, TextOfAnyOtherPeriod) {
  ASSERT_TRUE(Periods().Add(Date(2026, 3, 15)));
  ASSERT_TRUE(Periods().Add(Date(2026, 3, 16)));
  EXPECT_EQ(Periods().Text(Pos(1)), "Von 01.01.2026 bis 14.03.2026");
  EXPECT_EQ(Periods().Text(Pos(2)), "Am 15.03.2026");
}

TEST_F(Periods2Test, KeyIsKeyFollowedByTheStartDate) {
  ASSERT_TRUE(Periods().Add(Date(2026, 4, 1)));
  EXPECT_EQ(Periods().Key(Pos(1)), "Key01.01.2026");
  EXPECT_EQ(Periods().Key(Variant(Date(2026, 6, 30))), "Key01.04.2026");
}

// ---- Locks asked inside a transaction ----
// Posting asks for the lock of every entry's date. Inside a transaction the
// answers come from the states as last read while the table stays unchanged;
// any change of the table shows at once.

TEST_F(Periods2Test, InsideATransactionEveryDayAnswersAsOutside) {
  ASSERT_TRUE(Periods().SetMonth());
  Periods().Locked(Pos(2), true);
  Periods().Permanent(Pos(5), true);
  Periods().LockingState(Pos(12), 1);
  std::vector<int32_t> outside;
  std::vector<int32_t> by_position;
  const double first = Date(2025, 12, 30).Serial();
  for (int day = 0; day < 368; ++day)
    outside.push_back(Periods().LockingState(Variant(OleDate(first + day))));
  for (int32_t position = 0; position <= 13; ++position)
    by_position.push_back(Periods().LockingState(Pos(position)));
  engine_->BeginTrans();
  for (int day = 0; day < 368; ++day) {
    const Variant date(OleDate(first + day));
    EXPECT_EQ(Periods().LockingState(date), outside[static_cast<size_t>(day)]) << CStr(date);
    EXPECT_EQ(Periods().Locked(date), outside[static_cast<size_t>(day)] >= 1) << CStr(date);
  }
  for (int32_t position = 0; position <= 13; ++position) {
    EXPECT_EQ(Periods().LockingState(Pos(position)), by_position[static_cast<size_t>(position)]) << position;
  }
  engine_->CommitTrans();
  EXPECT_EQ(by_position, (std::vector<int32_t>{2, 0, 1, 0, 0, 2, 0, 0, 0, 0, 0, 0, 1, 2}));
  EXPECT_EQ(outside[0], 2);
  EXPECT_EQ(outside[40], 1);
  EXPECT_EQ(outside[130], 2);
  EXPECT_EQ(outside[200], 0);
}

TEST_F(Periods2Test, InsideATransactionTheObjectsOwnLockIsSeen) {
  ASSERT_TRUE(Periods().Add(Date(2026, 7, 1)));
  engine_->BeginTrans();
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 8, 15))));
  Periods().Locked(Variant(Date(2026, 8, 15)), true);
  EXPECT_TRUE(Periods().Locked(Variant(Date(2026, 8, 15))));
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 6, 30))));
  ASSERT_TRUE(Periods().Add(Date(2026, 10, 1)));
  EXPECT_TRUE(Periods().Locked(Variant(Date(2026, 9, 30))));
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 10, 1))));
  engine_->CommitTrans();
}

TEST_F(Periods2Test, InsideATransactionALockOfAnotherObjectIsSeen) {
  engine_->BeginTrans();
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 5, 5))));
  Periods2 other;
  other.Locked(Pos(1), true);
  EXPECT_TRUE(Periods().Locked(Variant(Date(2026, 5, 5))));
  engine_->CommitTrans();
}

TEST_F(Periods2Test, InsideATransactionALockWrittenByAStatementIsSeen) {
  engine_->BeginTrans();
  EXPECT_EQ(Periods().LockingState(Variant(Date(2026, 5, 5))), 0);
  Db().Execute("UPDATE Periods2 SET LockingState = 2;", store::dbFailOnError);
  EXPECT_EQ(Periods().LockingState(Variant(Date(2026, 5, 5))), 2);
  engine_->CommitTrans();
}

TEST_F(Periods2Test, ALockRolledBackIsNoLongerSeen) {
  engine_->BeginTrans();
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 5, 5))));
  engine_->BeginTrans();
  Periods().Locked(Pos(1), true);
  EXPECT_TRUE(Periods().Locked(Variant(Date(2026, 5, 5))));
  engine_->Rollback();
  EXPECT_FALSE(Periods().Locked(Variant(Date(2026, 5, 5))));
  engine_->CommitTrans();
}

}  // namespace
}  // namespace ldg

#include "engine/current_objects.hpp"

#include <gtest/gtest.h>

#include <thread>

#include "engine/engine_state.hpp"
#include "tests/accounts/open_chart_fixture.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

// A thread of its own starts with engine-wide values of its own: none of the objects is there.
TEST(CurrentObjects, EachIsObjectVariableNotSetWhileThereIsNone) {
  std::thread([] {
    EXPECT_EQ(ErrorNumberOf([] { CurrentEngine(); }), 91);
    EXPECT_EQ(ErrorNumberOf([] { CurrentWorkspace(); }), 91);
    EXPECT_EQ(ErrorNumberOf([] { CurrentDatabase(); }), 91);
    EXPECT_EQ(ErrorNumberOf([] { CurrentAccounts(); }), 91);
  }).join();
}

class CurrentObjectsOfAnOpenYear : public chart_testing::OpenChartTest {};

TEST_F(CurrentObjectsOfAnOpenYear, AreTheObjectsOfTheEngineWideState) {
  EXPECT_EQ(&CurrentEngine(), engine_.get());
  EXPECT_EQ(&CurrentWorkspace(), State().workspace.get());
  EXPECT_EQ(&CurrentDatabase(), State().database.get());
  EXPECT_EQ(&CurrentAccounts(), State().accounts);
  EXPECT_NE(State().accounts, nullptr);
}

TEST_F(CurrentObjectsOfAnOpenYear, TheDatabaseIsGoneOnceTheYearIsClosed) {
  engine_->CloseDatabase();
  EXPECT_EQ(ErrorNumberOf([] { CurrentDatabase(); }), 91);
  EXPECT_EQ(ErrorNumberOf([] { CurrentAccounts(); }), 91);
}

TEST_F(CurrentObjectsOfAnOpenYear, RollbackAndRaiseUndoesTheTransactionAndRaisesTheErrorAgain) {
  const int32_t before = ReadLong(Scalar("SELECT Count(*) AS N FROM Accounts;", "N"));
  CurrentWorkspace().BeginTrans();
  InsertAccount(RootA(), "1990", "Scratch");
  try {
    RollbackAndRaise(Error(1234, "elsewhere", "the step failed"));
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 1234);
    EXPECT_EQ(error.Description(), "the step failed");
    EXPECT_EQ(error.Source(), kAppTitle);
  }
  EXPECT_EQ(ReadLong(Scalar("SELECT Count(*) AS N FROM Accounts;", "N")), before);
  EXPECT_EQ(IdOf("1990"), 0);
}

TEST_F(CurrentObjectsOfAnOpenYear, RollbackAndRaiseWithoutATransactionStillRaisesTheError) {
  EXPECT_EQ(ErrorNumberOf([] { RollbackAndRaise(Error(77, "", "no transaction")); }), 77);
}

}  // namespace
}  // namespace ldg

#include "engine/opening_balance.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/schema_upkeep.hpp"
#include "store/constants.hpp"
#include "support/nullable.hpp"
#include "template_file_fixture.hpp"

namespace ldg {
namespace {

class OpeningBalanceTest : public testing::TemplateFileTest {
 protected:
  void SetUp() override {
    TemplateFileTest::SetUp();
    UpdateAccountsTable(*db_);
  }

  Currency Column(int32_t id, const std::string& column) {
    return ReadCurrency(
        ValueOf("SELECT " + column + " FROM Accounts WHERE ID = " + std::to_string(id) + ";", column));
  }

  void Set(int32_t id, const std::string& column, const std::string& value) {
    db_->Execute("UPDATE Accounts SET " + column + " = " + value + " WHERE ID = " + std::to_string(id) + ";",
                 store::dbFailOnError);
  }
};

TEST_F(OpeningBalanceTest, AnEmptyChartSumsToZero) {
  EXPECT_EQ(OpeningBalance(*db_), Currency());
  EXPECT_EQ(SavedOpeningBalance(*db_), Currency());
}

TEST_F(OpeningBalanceTest, SumCountsPlainAndDetailAccountsOnly) {
  AddAccount("1000", Currency::FromUnits(100));
  AddAccount("1100.01", Currency::FromUnits(-30), false, false, 5);  // a detail account
  AddAccount("1999", Currency::FromUnits(500), true);                // a sum
  AddAccount("1100", Currency::FromUnits(1000), false, true, 5);     // a master
  EXPECT_EQ(OpeningBalance(*db_), Currency::FromUnits(70));
}

TEST_F(OpeningBalanceTest, SumKeepsFourDecimals) {
  AddAccount("1000", Currency::FromRaw(12345));
  AddAccount("1001", Currency::FromRaw(1));
  EXPECT_EQ(OpeningBalance(*db_), Currency::FromRaw(12346));
}

TEST_F(OpeningBalanceTest, NullOpeningBalancesSumToZero) {
  int32_t id = AddAccount("1000", Currency());
  Set(id, "OpeningBalance", "Null");
  EXPECT_EQ(OpeningBalance(*db_), Currency());
}

TEST_F(OpeningBalanceTest, SavedSumReadsSaveOB) {
  int32_t a = AddAccount("1000", Currency::FromUnits(1));
  int32_t b = AddAccount("1001", Currency::FromUnits(2));
  Set(a, "SaveOB", "40");
  Set(b, "SaveOB", "-15.5");
  EXPECT_EQ(SavedOpeningBalance(*db_), Currency::Parse("24.5").value());
  EXPECT_EQ(OpeningBalance(*db_), Currency::FromUnits(3));
}

TEST_F(OpeningBalanceTest, SavedSumLeavesSumsAndMastersOut) {
  int32_t sum = AddAccount("1999", Currency(), true);
  int32_t master = AddAccount("1100", Currency(), false, true, 2);
  Set(sum, "SaveOB", "40");
  Set(master, "SaveOB", "15");
  EXPECT_EQ(SavedOpeningBalance(*db_), Currency());
}

TEST_F(OpeningBalanceTest, SaveCopiesTheOpeningOfEveryRowIncludingSums) {
  int32_t plain = AddAccount("1000", Currency::FromUnits(100));
  int32_t sum = AddAccount("1999", Currency::FromUnits(7), true);
  Set(plain, "SaveOB", "1");
  SaveOpeningBalance(*db_, workspace_.get());
  EXPECT_EQ(Column(plain, "SaveOB"), Currency::FromUnits(100));
  EXPECT_EQ(Column(sum, "SaveOB"), Currency::FromUnits(7));
  EXPECT_EQ(SavedOpeningBalance(*db_), Currency::FromUnits(100));
  EXPECT_EQ(workspace_->TransactionLevel(), 0);
}

TEST_F(OpeningBalanceTest, SaveCopiesANullOpeningAsNull) {
  int32_t id = AddAccount("1000", Currency());
  Set(id, "SaveOB", "5");
  Set(id, "OpeningBalance", "Null");
  SaveOpeningBalance(*db_);
  EXPECT_TRUE(
      ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(id) + ";", "SaveOB").IsNull());
}

TEST_F(OpeningBalanceTest, SaveRunsInsideTheCallersTransaction) {
  int32_t id = AddAccount("1000", Currency::FromUnits(100));
  workspace_->BeginTrans();
  SaveOpeningBalance(*db_, workspace_.get());
  EXPECT_EQ(workspace_->TransactionLevel(), 1);
  workspace_->Rollback();
  EXPECT_EQ(Column(id, "SaveOB"), Currency());
}

TEST_F(OpeningBalanceTest, AFailedSaveLeavesTheTransactionOpenForTheCaller) {
  AddAccount("1000", Currency::FromUnits(100));
  db_->TableDefs().Item("Accounts")->Fields().Delete("SaveOB");
  try {
    SaveOpeningBalance(*db_, workspace_.get());
    ADD_FAILURE() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3265);
  }
  EXPECT_EQ(workspace_->TransactionLevel(), 1);
  workspace_->Rollback();
}

TEST_F(OpeningBalanceTest, RestoreBringsBackTheSavedOpeningsAndThenRecalculates) {
  int32_t a = AddAccount("1000", Currency::FromUnits(100));
  int32_t b = AddAccount("2000", Currency::FromUnits(-100));
  SaveOpeningBalance(*db_, workspace_.get());
  Set(a, "OpeningBalance", "120");
  Set(b, "OpeningBalance", "-20");
  int recalculations = 0;
  int level_at_recalculation = -1;
  RestoreOpeningBalance(*db_, workspace_.get(), [&] {
    ++recalculations;
    level_at_recalculation = workspace_->TransactionLevel();
  });
  EXPECT_EQ(Column(a, "OpeningBalance"), Currency::FromUnits(100));
  EXPECT_EQ(Column(b, "OpeningBalance"), Currency::FromUnits(-100));
  EXPECT_EQ(recalculations, 1);
  EXPECT_EQ(level_at_recalculation, 0);
  EXPECT_EQ(OpeningBalance(*db_), Currency());
}

TEST_F(OpeningBalanceTest, RestoreWithoutARecalculationOnlyCopies) {
  int32_t a = AddAccount("1000", Currency::FromUnits(100));
  Set(a, "SaveOB", "60");
  RestoreOpeningBalance(*db_);
  EXPECT_EQ(Column(a, "OpeningBalance"), Currency::FromUnits(60));
  EXPECT_EQ(Column(a, "Balance"), Currency());
}

}  // namespace
}  // namespace ldg

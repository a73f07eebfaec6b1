// The repair of stored balances from the movements: Balance always, and
// ChildrensBalance when asked.
#include "accounts/recalc_balances.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/engine_state.hpp"
#include "engine/host_hooks.hpp"
#include "store/database.hpp"
#include "tests/accounts/balance_fixture.hpp"

namespace ldg {
namespace {

using balance_testing::Amount;
using balance_testing::BalanceTest;
using balance_testing::Date;

class CountingHooks : public HostHooks {
 public:
  void Yield() override { ++yields; }
  void Progress(std::string_view work, int64_t done, int64_t total) override {
    works.emplace_back(work);
    last_done = done;
    last_total = total;
  }
  void Beep() override { ++beeps; }

  int yields = 0;
  int beeps = 0;
  std::vector<std::string> works;
  int64_t last_done = 0;
  int64_t last_total = 0;
};

class RecalcBalancesTest : public BalanceTest {
 protected:
  void TearDown() override {
    State().hooks = nullptr;
    BalanceTest::TearDown();
  }

  int32_t AccountCount() { return ReadLong(Scalar("SELECT Count(*) AS N FROM Accounts;", "N")); }
};

TEST_F(RecalcBalancesTest, BalanceBecomesTheOpeningPlusEveryMovement) {
  const int32_t j2 = AddJournal("Zwei");
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertPlain(assets, "1000", Amount("100"), Amount("999"));
  const int32_t bank = InsertPlain(assets, "1020", Amount("-20.5"), Amount("3"));
  const int32_t idle = InsertPlain(assets, "1090", Amount("7"));
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("10.25"));
  InsertMovementOn(j2, Date(2026, 12, 31), cash, Amount("-3"));
  InsertMovementOn(1, Date(2026, 6, 1), bank, Amount("0.0001"));
  SetColumn(assets, "Balance", "5");
  RecalcBalances(false);
  EXPECT_EQ(StoredCurrency(cash, "Balance"), Amount("107.25"));
  EXPECT_EQ(StoredCurrency(bank, "Balance"), Amount("-20.4999"));
  EXPECT_EQ(StoredCurrency(idle, "Balance"), Amount("7"));
  EXPECT_EQ(StoredCurrency(assets, "Balance"), Amount("0"));
}

TEST_F(RecalcBalancesTest, ForeignAndWorkedBalancesStayAsTheyAre) {
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  SetColumn(cash, "FCBalance", "12");
  SetColumn(cash, "WorkedBalance", "13");
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("10"), Amount("4"));
  RecalcBalances(true);
  EXPECT_EQ(StoredCurrency(cash, "Balance"), Amount("10"));
  EXPECT_EQ(StoredCurrency(cash, "FCBalance"), Amount("12"));
  EXPECT_EQ(StoredCurrency(cash, "WorkedBalance"), Amount("13"));
}

TEST_F(RecalcBalancesTest, WithoutTheFlagChildrensBalanceIsUnchanged) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100", Amount("77"));
  const int32_t detail = InsertDetail(master, master, "D1");
  InsertMovementOn(1, Date(2026, 1, 1), detail, Amount("10"));
  RecalcBalances(false);
  EXPECT_EQ(StoredCurrency(detail, "Balance"), Amount("10"));
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("77"));
}

TEST_F(RecalcBalancesTest, WithTheFlagAMasterHoldsTheSumOfItsDetailBalances) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t master = InsertMaster(assets, "1100", Amount("77"));
  const int32_t d1 = InsertDetail(master, master, "D1", Amount("1"), {}, Amount("55"));
  const int32_t d11 = InsertDetail(d1, master, "D11", Amount("2"));
  const int32_t d12 = InsertDetail(d1, master, "D12");
  const int32_t d2 = InsertDetail(master, master, "D2");
  const int32_t plain = InsertPlain(assets, "1000", {}, {});
  SetColumn(plain, "ChildrensBalance", "9");
  InsertMovementOn(1, Date(2026, 1, 1), d11, Amount("10"));
  InsertMovementOn(1, Date(2026, 1, 2), d12, Amount("20"));
  InsertMovementOn(1, Date(2026, 1, 3), d2, Amount("-4"));
  RecalcBalances(true);
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("29"));
  EXPECT_EQ(StoredCurrency(d1, "ChildrensBalance"), Amount("32"));
  EXPECT_EQ(StoredCurrency(d11, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(d2, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(plain, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(assets, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(master, "Balance"), Amount("0"));
}

TEST_F(RecalcBalancesTest, ReportsProgressAndYieldsPerAccountAndBeepsOnce) {
  InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  CountingHooks hooks;
  State().hooks = &hooks;
  RecalcBalances(false);
  const int32_t accounts = AccountCount();
  EXPECT_EQ(hooks.yields, accounts);
  EXPECT_EQ(static_cast<int32_t>(hooks.works.size()), accounts);
  EXPECT_EQ(hooks.works.front(), "RecalcBalances");
  EXPECT_EQ(hooks.last_done, accounts);
  EXPECT_EQ(hooks.last_total, accounts);
  EXPECT_EQ(hooks.beeps, 1);
}

TEST_F(RecalcBalancesTest, LeavesItsScratchQueryAndUsesItAgain) {
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("10"));
  RecalcBalances(false);
  EXPECT_TRUE(Db().QueryDefs().Contains("tempMovSums"));
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("5"));
  RecalcBalances(false);
  EXPECT_EQ(StoredCurrency(cash, "Balance"), Amount("15"));
}

TEST_F(RecalcBalancesTest, TheEngineForwardsToIt) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100");
  const int32_t detail = InsertDetail(master, master, "D1");
  InsertMovementOn(1, Date(2026, 1, 1), detail, Amount("8"));
  engine_->RecalcBalances(true);
  EXPECT_EQ(StoredCurrency(detail, "Balance"), Amount("8"));
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("8"));
}

TEST_F(RecalcBalancesTest, RestoreAfterSaveBringsBackTheOpeningsAndRecomputesEveryBalance) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertPlain(assets, "1000", Amount("100"), Amount("110"));
  const int32_t bank = InsertPlain(assets, "1020", Amount("50"), Amount("50"));
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("10"));
  engine_->SaveOpeningBalance();
  auto account = Load(cash);
  account->OpeningBalance(Amount("300"));
  account->Update();
  SetColumn(bank, "OpeningBalance", "1");
  SetColumn(bank, "Balance", "999");
  engine_->RestoreOpeningBalance();
  EXPECT_EQ(StoredCurrency(cash, "OpeningBalance"), Amount("100"));
  EXPECT_EQ(StoredCurrency(cash, "Balance"), Amount("110"));
  EXPECT_EQ(StoredCurrency(bank, "OpeningBalance"), Amount("50"));
  EXPECT_EQ(StoredCurrency(bank, "Balance"), Amount("50"));
}

}  // namespace
}  // namespace ldg

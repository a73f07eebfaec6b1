// Balances at dates on a generated chart with a few hundred movements, compared
// with a reference worked out here in plain C++ over the generated data.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/recalc_balances.hpp"
#include "engine/engine_state.hpp"
#include "store/workspace.hpp"
#include "tests/accounts/balance_fixture.hpp"

namespace ldg {
namespace {

using balance_testing::AccountRow;
using balance_testing::BalanceTest;
using balance_testing::Date;

struct Node {
  int32_t id = 0;
  int32_t parent_id = 0;
  bool is_sum = false;
  bool is_master = false;
  int32_t master_id = 0;
  Currency opening;
  std::vector<int32_t> children;
};

struct Booking {
  int32_t account_id = 0;
  OleDate date;
  int32_t journal_id = 0;
  Currency amount;
  Currency fc_amount;
};

class BalanceAtDateReferenceTest : public BalanceTest {
 protected:
  void SetUp() override {
    BalanceTest::SetUp();
    journals_ = {1, AddJournal("Zwei"), AddJournal("Drei")};
    // One transaction for the whole layout keeps the file writes few.
    State().workspace->BeginTrans();
    BuildChart();
    BuildMovements();
    State().workspace->CommitTrans();
    RecalcBalances(true);
  }

  int32_t AddNode(int32_t parent_id, const std::string& code, bool is_sum, bool is_master,
                  int32_t master_id) {
    AccountRow row;
    row.is_sum = is_sum;
    row.is_master = is_master;
    row.is_general_ledger = master_id == 0 || is_master;
    row.master_id = is_master ? -1 : master_id;
    if (!is_sum && !is_master) row.opening_balance = RandomAmount(100000);
    const int32_t id = InsertAccount(parent_id, code, "Konto " + code, row);
    Node node{id, parent_id, is_sum, is_master, is_master ? id : master_id, row.opening_balance, {}};
    nodes_[id] = node;
    if (nodes_.count(parent_id) != 0) nodes_[parent_id].children.push_back(id);
    if (!is_sum && !is_master) bookable_.push_back(id);
    return id;
  }
  int32_t AddSum(int32_t parent_id, const std::string& code) {
    return AddNode(parent_id, code, true, false, 0);
  }
  int32_t AddPlain(int32_t parent_id, const std::string& code) {
    return AddNode(parent_id, code, false, false, 0);
  }

  void BuildChart() {
    for (int32_t root : {RootA(), RootB()}) nodes_[root] = Node{root, 0, true, false, 0, {}, {}};
    const int32_t assets = AddSum(RootA(), "1");
    const int32_t cash = AddSum(assets, "10");
    AddPlain(cash, "1000");
    AddPlain(cash, "1010");
    AddPlain(cash, "1020");
    const int32_t receivables = AddSum(assets, "11");
    AddPlain(receivables, "1170");
    const int32_t master = AddNode(receivables, "1100", false, true, 0);
    const int32_t d1 = AddNode(master, "D1", false, false, master);
    AddNode(d1, "D11", false, false, master);
    AddNode(d1, "D12", false, false, master);
    AddNode(master, "D2", false, false, master);
    const int32_t second_master = AddNode(assets, "1200", false, true, 0);
    AddNode(second_master, "E1", false, false, second_master);
    const int32_t liabilities = AddSum(RootA(), "2");
    AddPlain(liabilities, "2000");
    AddPlain(AddSum(liabilities, "28"), "2800");
    const int32_t income = AddSum(RootB(), "3");
    AddPlain(income, "3000");
    AddPlain(income, "3200");
    AddPlain(AddSum(RootB(), "4"), "4000");
  }

  void BuildMovements() {
    // Every bookable account has a movement of the first journal on the first
    // day, so no journal list leaves an account without movements.
    for (int32_t id : bookable_) Book(id, Date(2026, 1, 1), 1);
    std::uniform_int_distribution<int32_t> account(0, static_cast<int32_t>(bookable_.size()) - 1);
    std::uniform_int_distribution<int32_t> day(0, 364);
    std::uniform_int_distribution<int32_t> journal(0, 2);
    for (int k = 0; k < 300; ++k) {
      Book(bookable_[account(random_)], OleDate(Date(2026, 1, 1).Serial() + day(random_)),
           journals_[journal(random_)]);
    }
  }

  void Book(int32_t account_id, OleDate date, int32_t journal_id) {
    Booking booking{account_id, date, journal_id, RandomAmount(500000), RandomAmount(1000)};
    InsertMovement(InsertEntry(journal_id, date), account_id, booking.amount, booking.fc_amount);
    bookings_.push_back(booking);
  }

  Currency RandomAmount(int32_t cents) {
    std::uniform_int_distribution<int32_t> value(-cents, cents);
    return Currency::FromRaw(int64_t{value(random_)} * 100);
  }

  // ---------------------------------------------------------------- the reference

  // Opening plus the movements before the date (or up to it), without the excluded journals.
  Currency MovedBalance(int32_t id, OleDate date, bool including_the_day, const std::set<int32_t>& excluded) {
    Currency total = nodes_[id].opening;
    for (const Booking& booking : bookings_) {
      if (booking.account_id != id || excluded.count(booking.journal_id) != 0) continue;
      if (booking.date < date || (including_the_day && booking.date == date)) total += booking.amount;
    }
    return total;
  }
  Currency MovedFCBalance(int32_t id, OleDate date, const std::set<int32_t>& excluded) {
    Currency total;
    for (const Booking& booking : bookings_) {
      if (booking.account_id == id && booking.date < date && excluded.count(booking.journal_id) == 0) {
        total += booking.fc_amount;
      }
    }
    return total;
  }
  Currency CurrentBalance(int32_t id) {
    const Node& node = nodes_[id];
    if (node.is_sum || node.is_master) return Currency();
    return MovedBalance(id, OleDate(1e6), false, {});
  }
  // The sum over the children of Balance + ChildrensBalance, as the repair keeps it.
  Currency ChildrensBalance(int32_t id) {
    Currency total;
    for (int32_t child : nodes_[id].children) total += CurrentBalance(child) + ChildrensBalance(child);
    return total;
  }
  // Sums add up their tree with movements up to and including the date; a
  // master child counts at its stored total plus the parent's own Balance.
  Currency TreeSum(int32_t id, OleDate date, const std::set<int32_t>& excluded, bool dated) {
    Currency total;
    for (int32_t child_id : nodes_[id].children) {
      const Node& child = nodes_[child_id];
      if (child.is_sum) total += TreeSum(child_id, date, excluded, dated);
      if (child.master_id != 0) total += ChildrensBalance(child_id) + CurrentBalance(id);
      if (!child.is_sum && child.master_id == 0) {
        total += dated ? MovedBalance(child_id, date, true, excluded) : CurrentBalance(child_id);
      }
    }
    return total;
  }

  // The ends of the year and dates between them, some of them days with movements.
  std::vector<OleDate> SomeDates(size_t count) {
    std::vector<OleDate> dates = {Date(2025, 12, 31), Date(2026, 1, 1), Date(2026, 12, 31)};
    const int step = static_cast<int>(720 / count);
    for (int day = 3; day < 365; day += step) dates.push_back(OleDate(Date(2026, 1, 1).Serial() + day));
    for (const Booking& booking : bookings_) {
      if (dates.size() >= count) break;
      if (booking.date > Date(2026, 1, 1)) dates.push_back(booking.date);
    }
    return dates;
  }
  std::vector<int32_t> Sums() {
    std::vector<int32_t> ids;
    for (const auto& [id, node] : nodes_) {
      if (node.is_sum || node.is_master) ids.push_back(id);
    }
    return ids;
  }

  std::mt19937 random_{20260101};
  std::vector<int32_t> journals_;
  std::map<int32_t, Node> nodes_;
  std::vector<int32_t> bookable_;
  std::vector<Booking> bookings_;
};

TEST_F(BalanceAtDateReferenceTest, TheRepairLeavesEveryStoredBalanceAsTheMovementsGiveIt) {
  for (const auto& [id, node] : nodes_) {
    EXPECT_EQ(StoredCurrency(id, "Balance"), CurrentBalance(id)) << id;
    if (node.master_id != 0) {
      EXPECT_EQ(StoredCurrency(id, "ChildrensBalance"), ChildrensBalance(id)) << id;
    }
  }
}

TEST_F(BalanceAtDateReferenceTest, PlainAccountsCountTheirMovementsBeforeTheDate) {
  for (int32_t id : bookable_) {
    auto account = Load(id);
    for (OleDate date : SomeDates(50)) {
      EXPECT_EQ(account->BalanceAtDate(date), MovedBalance(id, date, false, {}))
          << id << " " << date.Serial();
      EXPECT_EQ(account->FCBalanceAtDate(date), MovedFCBalance(id, date, {})) << id << " " << date.Serial();
    }
  }
}

TEST_F(BalanceAtDateReferenceTest, SumsAndMastersAddTheirTreeUpToAndIncludingTheDate) {
  for (OleDate date : SomeDates(16)) {
    for (int32_t id : Sums()) {
      EXPECT_EQ(Load(id)->BalanceAtDate(date), TreeSum(id, date, {}, true)) << id << " " << date.Serial();
    }
  }
}

TEST_F(BalanceAtDateReferenceTest, BalanceWithChildrensAddsTheCurrentTree) {
  for (const auto& [id, node] : nodes_) {
    Currency expected = CurrentBalance(id);
    if (node.is_sum) expected += TreeSum(id, OleDate(), {}, false);
    if (!node.is_sum && node.master_id != 0) expected += ChildrensBalance(id);
    EXPECT_EQ(Load(id)->BalanceWithChildrens(), expected) << id;
  }
}

TEST_F(BalanceAtDateReferenceTest, AJournalListLeavesItsJournalsOutOfPlainAccounts) {
  const std::set<int32_t> excluded = {journals_[1], journals_[2]};
  const Variant list(std::to_string(journals_[1]) + ";" + std::to_string(journals_[2]));
  for (int32_t id : bookable_) {
    auto account = Load(id);
    for (OleDate date : SomeDates(50)) {
      if (date <= Date(2026, 1, 1)) continue;
      EXPECT_EQ(account->BalanceAtDate(date, list), MovedBalance(id, date, false, excluded))
          << id << " " << date.Serial();
      EXPECT_EQ(Load(id)->FCBalanceAtDate(date, list), MovedFCBalance(id, date, excluded))
          << id << " " << date.Serial();
    }
  }
}

TEST_F(BalanceAtDateReferenceTest, AJournalListLeavesItsJournalsOutOfSums) {
  const std::set<int32_t> excluded = {journals_[2]};
  const Variant list(std::to_string(journals_[2]));
  for (OleDate date : SomeDates(16)) {
    for (int32_t id : Sums()) {
      EXPECT_EQ(Load(id)->BalanceAtDate(date, list), TreeSum(id, date, excluded, true))
          << id << " " << date.Serial();
    }
  }
}

// A sum counts the movements of the day itself and a plain account only those
// of the days before, with or without a journal list (deliberate).
TEST_F(BalanceAtDateReferenceTest, ASumCountsTheDayItselfWhileItsAccountsStopTheDayBefore) {
  const int32_t sum = AddSum(RootA(), "9");
  const int32_t account = AddPlain(sum, "9000");
  const OleDate day = Date(2026, 7, 15);
  Book(account, Date(2026, 7, 14), 1);
  Book(account, day, 1);
  const Currency opening = nodes_[account].opening;
  const Currency before = opening + bookings_[bookings_.size() - 2].amount;
  const Currency through = before + bookings_.back().amount;
  EXPECT_EQ(Load(sum)->BalanceAtDate(day), through);
  EXPECT_EQ(Load(account)->BalanceAtDate(day), before);
  EXPECT_EQ(Load(account)->BalanceAtDate(day, Variant(std::to_string(journals_[1]))), before);
  EXPECT_EQ(Load(sum)->BalanceAtDate(day, Variant(std::to_string(journals_[1]))), through);
}

// The whole chart at a date, every account a fresh object as a listing walks
// it, before and after movements are written and after one is rolled back:
// objects that share the built view still see every write.
TEST_F(BalanceAtDateReferenceTest, TheWholeChartFollowsWritesBetweenTwoListings) {
  const OleDate day = Date(2026, 7, 1);
  auto expect_chart = [&](const char* when) {
    for (const auto& [id, node] : nodes_) {
      const Currency expected =
          node.is_sum || node.is_master ? TreeSum(id, day, {}, true) : MovedBalance(id, day, false, {});
      EXPECT_EQ(Load(id)->BalanceAtDate(day), expected) << when << " " << id;
    }
  };
  expect_chart("first");
  const int32_t cash = IdOf("1000");
  const int32_t income = IdOf("3200");
  Book(cash, Date(2026, 3, 3), 1);
  Book(income, Date(2026, 6, 30), journals_[1]);
  Book(income, day, 1);
  expect_chart("after the writes");
  State().workspace->BeginTrans();
  InsertMovement(InsertEntry(1, Date(2026, 2, 2)), cash, Currency::FromUnits(1000));
  EXPECT_EQ(Load(RootA())->BalanceAtDate(day), TreeSum(RootA(), day, {}, true) + Currency::FromUnits(1000));
  State().workspace->Rollback();
  expect_chart("after the rollback");
}

// With a sum's dated view of the day open, plain and detail accounts take their
// sums from it; on days with movements too they count only the days before.
TEST_F(BalanceAtDateReferenceTest, PlainAccountsBesideAnOpenDatedViewMatchTheReference) {
  for (OleDate date : SomeDates(16)) {
    EXPECT_EQ(Load(RootB())->BalanceAtDate(date), TreeSum(RootB(), date, {}, true)) << date.Serial();
    for (int32_t id : bookable_) {
      auto account = Load(id);
      EXPECT_EQ(account->BalanceAtDate(date), MovedBalance(id, date, false, {}))
          << id << " " << date.Serial();
      EXPECT_EQ(account->FCBalanceAtDate(date), MovedFCBalance(id, date, {})) << id << " " << date.Serial();
    }
  }
}

}  // namespace
}  // namespace ldg

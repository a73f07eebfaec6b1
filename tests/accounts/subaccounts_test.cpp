// The children of one account, read afresh at every call.
#include "accounts/subaccounts.hpp"

#include <gtest/gtest.h>

#include "accounts/account.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::CollectionsTest;
using chart_testing::CountingYields;
using chart_testing::ErrorOf;

class SubaccountsTest : public CollectionsTest {
 protected:
  void SetUp() override {
    CollectionsTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    bank_ = InsertAccount(assets_, "1020", "Bank");
    cash_ = InsertAccount(assets_, "1000", "Kasse");
    post_ = InsertAccount(assets_, "1010", "Post");
    Db().Execute("UPDATE Accounts SET Position = 1 WHERE ID = " + std::to_string(cash_) + ";");
  }

  Subaccounts Of(int32_t id) {
    Subaccounts children;
    children.BindParent(Variant(id));
    return children;
  }

  int32_t assets_ = 0;
  int32_t bank_ = 0;
  int32_t cash_ = 0;
  int32_t post_ = 0;
};

TEST_F(SubaccountsTest, CountIsTheNumberOfChildren) {
  EXPECT_EQ(Of(assets_).Count(), 3);
  EXPECT_EQ(Of(cash_).Count(), 0);
  EXPECT_EQ(Of(RootA()).Count(), 1);
}

// Deliberate: key 0 counts Null values, which a grouped count never counts.
TEST_F(SubaccountsTest, TheRootsChildrenCountZeroThoughItemsGivesTheClassRoots) {
  EXPECT_EQ(Of(0).Count(), 0);
  EXPECT_EQ(Of(0).Items().size(), 2u);
}

TEST_F(SubaccountsTest, AnUnboundListSelectsTheClassRoots) {
  Subaccounts unbound;
  EXPECT_EQ(unbound.Items().size(), 2u);
}

TEST_F(SubaccountsTest, ItemsAreOrderedByPositionThenCode) {
  auto items = Of(assets_).Items();
  ASSERT_EQ(items.size(), 3u);
  EXPECT_EQ(items[0]->ID(), post_);  // 1010 and 1020 have Position 0, 1000 has 1
  EXPECT_EQ(items[1]->ID(), bank_);
  EXPECT_EQ(items[2]->ID(), cash_);
}

TEST_F(SubaccountsTest, ItemsYieldToTheHostOnce) {
  CountingYields hooks;
  State().hooks = &hooks;
  Of(assets_).Items();
  EXPECT_EQ(hooks.yields, 1);
}

TEST_F(SubaccountsTest, ItemIsOneBasedAndABadIndexGivesNothing) {
  Subaccounts children = Of(assets_);
  EXPECT_EQ(children.Item(1)->ID(), post_);
  EXPECT_EQ(children.Item(3)->ID(), cash_);
  EXPECT_EQ(children.Item(0), nullptr);
  EXPECT_EQ(children.Item(4), nullptr);
}

TEST_F(SubaccountsTest, ItemIndexIsTheOneBasedPlaceOrZero) {
  Subaccounts children = Of(assets_);
  EXPECT_EQ(children.ItemIndex(bank_), 2);
  EXPECT_EQ(children.ItemIndex(cash_), 3);
  EXPECT_EQ(children.ItemIndex(RootB()), 0);
}

TEST_F(SubaccountsTest, ItemsAreFreshObjectsAtEveryCall) {
  Subaccounts children = Of(assets_);
  auto first = children.Item(1);
  first->Name(Variant("anders"));
  EXPECT_EQ(CStr(children.Item(1)->Name()), "Post");
  EXPECT_NE(children.Item(1), children.Item(1));
}

// Deliberate: the changed objects die at once, so the update finds nothing to write.
TEST_F(SubaccountsTest, UpdateWritesNothingForChildrenChangedOnEarlierObjects) {
  Subaccounts children = Of(assets_);
  children.Item(1)->Tags("x");
  children.Update();
  EXPECT_TRUE(Column(post_, "Tags").IsNull());
}

TEST_F(SubaccountsTest, UpdateRunsTheUpdateOfEveryChild) {
  // A row that is its own parent is its own child, and its Update fails the validation.
  Db().Execute("UPDATE Accounts SET ParentID = ID WHERE ID = " + std::to_string(bank_) + ";");
  const Error error = ErrorOf([&] { Of(bank_).Update(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403E8));
  EXPECT_EQ(error.Description(), "Internal Error");
}

TEST_F(SubaccountsTest, ALoadedAccountsSubaccountsAreBoundToItsID) {
  auto assets = Fresh(assets_);
  EXPECT_EQ(assets->Subaccounts()->Count(), 3);
  EXPECT_EQ(assets->Children().size(), 3u);
}

}  // namespace
}  // namespace ldg

// The cached list of the master accounts.
#include "accounts/master_accounts.hpp"

#include <gtest/gtest.h>

#include "accounts/account.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::AccountRow;
using chart_testing::CollectionsTest;
using chart_testing::ErrorOf;

class MasterAccountsTest : public CollectionsTest {
 protected:
  void SetUp() override {
    CollectionsTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    creditors_ = MasterRow(assets_, "2000", "Kreditoren");
    debtors_ = MasterRow(assets_, "1100", "Debitoren");
    DetailRow(debtors_, debtors_, "110001", "Kunde");
    AccountRow half;
    half.is_master = true;
    InsertAccount(assets_, "1200", "Ohne MasterID", half);
    Masters().Reload();
  }

  int32_t assets_ = 0;
  int32_t creditors_ = 0;
  int32_t debtors_ = 0;
};

TEST_F(MasterAccountsTest, OpeningADatabaseCreatesTheMasterAccountsThatTheEngineWideStatePointsAt) {
  ASSERT_NE(engine_->MasterAccounts(), nullptr);
  EXPECT_EQ(State().master_accounts, engine_->MasterAccounts().get());
}

TEST_F(MasterAccountsTest, TheListHoldsTheMastersWithAMasterIDOrderedByCode) {
  ASSERT_EQ(Masters().Count(), 2);
  EXPECT_EQ(Masters().Item(Variant(int32_t{1}))->ID(), debtors_);
  EXPECT_EQ(Masters().Item(Variant(int32_t{2}))->ID(), creditors_);
}

TEST_F(MasterAccountsTest, EnumerationFollowsTheListsOrder) {
  std::vector<std::string> codes;
  for (const auto& master : Masters()) codes.push_back(CStr(master->Code()));
  EXPECT_EQ(codes, (std::vector<std::string>{"1100", "2000"}));
}

TEST_F(MasterAccountsTest, AKeyFindsItsMaster) {
  EXPECT_EQ(Masters().Item(BuildKey(creditors_))->ID(), creditors_);
  EXPECT_EQ(Masters().Item(Variant("ID" + std::to_string(debtors_)))->ID(), debtors_);
}

TEST_F(MasterAccountsTest, AKeyWithoutAMasterRaises1228) {
  const Error error = ErrorOf([&] { Masters().Item(BuildKey(assets_)); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404CC));
  EXPECT_EQ(error.Description(), "No Master Account found with given key!");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(MasterAccountsTest, APositionOutsideTheListRaisesError9) {
  EXPECT_EQ(ErrorOf([&] { Masters().Item(Variant(int32_t{0})); }).Number(), 9);
  EXPECT_EQ(ErrorOf([&] { Masters().Item(Variant(int32_t{3})); }).Number(), 9);
}

TEST_F(MasterAccountsTest, ATextOfDigitsIsAPosition) {
  EXPECT_EQ(Masters().Item(Variant("2"))->ID(), creditors_);
}

TEST_F(MasterAccountsTest, TheListIsACacheUntilReload) {
  auto first = Masters().Item(Variant(int32_t{1}));
  EXPECT_EQ(Masters().Item(Variant(int32_t{1})), first);
  MasterRow(assets_, "1050", "Neu");
  EXPECT_EQ(Masters().Count(), 2);
  Masters().Reload();
  EXPECT_EQ(Masters().Count(), 3);
  EXPECT_EQ(CStr(Masters().Item(Variant(int32_t{1}))->Code()), "1050");
}

}  // namespace
}  // namespace ldg

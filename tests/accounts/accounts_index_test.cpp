// The result of a type-ahead search: counts per zone, hits by position, the
// first hit over all zones and the data of a hit.
#include "accounts/accounts_index.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "accounts/accounts.hpp"
#include "store/store_error.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::AccountRow;
using chart_testing::ErrorOf;
using chart_testing::CashAndBankTest;

constexpr int32_t kInvalidParameter = static_cast<int32_t>(0x800403E8u);
constexpr int32_t kInternalError = static_cast<int32_t>(0x80040000u);

// A chart with two general ledger accounts, a master with one detail account
// and a sum, and the search table rebuilt from it.
class AccountsIndexTest : public CashAndBankTest {
 protected:
  void SetUp() override {
    CashAndBankTest::SetUp();
    AccountRow master_row;
    master_row.is_master = true;
    master_row.master_id = -1;
    debtors_ = InsertAccount(assets_, "1100", "Debitoren", master_row);
    AccountRow detail_row;
    detail_row.is_general_ledger = false;
    detail_row.master_id = debtors_;
    customer_ = InsertAccount(debtors_, "D100", "Kunde Muster", detail_row);
    engine_->DoAccountsIndex();
  }

  // A search made as Accounts makes it.
  std::shared_ptr<AccountsIndex> Search(const Variant& text, int16_t zones) {
    auto index = std::make_shared<AccountsIndex>();
    index->SearchText(text);
    index->Zones(zones);
    index->Run();
    return index;
  }

  int32_t IndexRows(const std::string& where) {
    return CLng(Scalar("SELECT Count(*) AS N FROM AccountsIndex WHERE " + where + ";", "N"));
  }

  void AssignToGroup(const std::string& group_name, int32_t account_id) {
    auto groups = Db().OpenRecordset("AccountsGroups", store::dbOpenTable);
    groups->AddNew();
    const int32_t group_id = CLng(groups->Value("ID"));
    groups->Value("Name", Variant(group_name));
    groups->Update();
    groups->Close();
    auto assignments = Db().OpenRecordset("AccountsGroupAssignements", store::dbOpenTable);
    assignments->AddNew();
    assignments->Value("AccountGroupID", Variant(group_id));
    assignments->Value("AccountID", Variant(account_id));
    assignments->Update();
    assignments->Close();
  }

  int32_t debtors_ = 0;
  int32_t customer_ = 0;
};

TEST_F(AccountsIndexTest, AnEmptySearchTextMatchesEveryRowOfTheZone) {
  auto index = Search(Variant(""), lgiSZGeneralLedger | lgiSZDetailAccounts);
  EXPECT_EQ(index->Count(lgiSZGeneralLedger), IndexRows("MasterID = 0 AND IsSum = False"));
  EXPECT_EQ(index->Count(lgiSZGeneralLedger), 4);
  EXPECT_EQ(index->Count(lgiSZDetailAccounts), IndexRows("MasterID > 0"));
  EXPECT_EQ(index->Count(lgiSZDetailAccounts), 4);
}

TEST_F(AccountsIndexTest, ANullSearchTextMatchesEveryRowToo) {
  auto index = Search(Variant::Null(), lgiSZGeneralLedger);
  EXPECT_EQ(index->Count(lgiSZGeneralLedger), 4);
}

TEST_F(AccountsIndexTest, TheSearchFindsCodesAndNamesByTheirFirstLetters) {
  EXPECT_EQ(Search(Variant("10"), lgiSZGeneralLedger)->Count(lgiSZGeneralLedger), 2);
  EXPECT_EQ(Search(Variant("Ka"), lgiSZGeneralLedger)->Count(lgiSZGeneralLedger), 1);
  EXPECT_EQ(Search(Variant("Kunde"), lgiSZDetailAccounts)->Count(lgiSZDetailAccounts), 1);
}

TEST_F(AccountsIndexTest, CountOfAZoneWithoutHitsIsZero) {
  auto index = Search(Variant("zzz"), lgiSZGeneralLedger);
  EXPECT_EQ(index->Count(lgiSZGeneralLedger), 0);
}

// Deliberate shift by one: Item sets the zero-based position to the one-based index.
TEST_F(AccountsIndexTest, ItemGivesTheHitBehindTheOneItNames) {
  auto index = Search(Variant("10"), lgiSZGeneralLedger);
  ASSERT_EQ(index->Count(lgiSZGeneralLedger), 2);
  EXPECT_EQ(index->Item(lgiSZGeneralLedger, 1)->ID(), bank_);
}

TEST_F(AccountsIndexTest, ItemInfoGivesTheDataOfTheHitItNames) {
  auto index = Search(Variant("10"), lgiSZGeneralLedger);
  const VariantArray info = index->ItemInfo(1, 1).AsArray();
  ASSERT_EQ(info.size(), 5u);
  EXPECT_EQ(CLng(info[lgrAccInfoID]), cash_);
  EXPECT_EQ(CStr(info[lgrAccInfoCode]), "1000");
  EXPECT_EQ(CStr(info[lgrAccInfoName]), "Kasse");
  EXPECT_FALSE(CBool(info[lgrAccInfoIsMaster]));
  EXPECT_EQ(CLng(info[lgrAccInfoMasterID]), 0);
  EXPECT_EQ(CLng(index->ItemInfo(1, 2).AsArray()[lgrAccInfoID]), bank_);
}

// The shift by one makes the last index point past the rows.
TEST_F(AccountsIndexTest, ItemWithTheIndexOfTheCountFailsInTheStore) {
  auto index = Search(Variant("10"), lgiSZGeneralLedger);
  const Error error = ErrorOf([&] { index->Item(lgiSZGeneralLedger, 2); });
  EXPECT_EQ(error.Number(), store::kErrInvalidArgument);
  EXPECT_EQ(error.Description(), store::StoreErrorText(store::kErrInvalidArgument));
}

TEST_F(AccountsIndexTest, ItemInfoCountsZonesByPositionSoTwoIsTheDetailZone) {
  auto index = Search(Variant("Kunde"), lgiSZDetailAccounts);
  const VariantArray info = index->ItemInfo(2, 1).AsArray();
  EXPECT_EQ(CLng(info[lgrAccInfoID]), customer_);
  EXPECT_EQ(CLng(info[lgrAccInfoMasterID]), debtors_);
}

TEST_F(AccountsIndexTest, ItemOfTheDetailZoneLoadsTheAccount) {
  auto index = Search(Variant(""), lgiSZDetailAccounts);
  // Name order: "1100", "D100", "Debitoren", "Kunde Muster"; position 1 is the second.
  auto account = index->Item(lgiSZDetailAccounts, 1);
  ASSERT_NE(account, nullptr);
  EXPECT_EQ(account->ID(), customer_);
  EXPECT_EQ(account->MasterID(), debtors_);
}

TEST_F(AccountsIndexTest, ZonesZeroOpenNothingAndFirstItemReturnsNothing) {
  auto index = Search(Variant(""), 0);
  EXPECT_EQ(index->FirstItem(), nullptr);
}

TEST_F(AccountsIndexTest, CountOfAZoneThatWasNotSearchedFailsWithObjectNotSet) {
  auto index = Search(Variant(""), 0);
  for (const int16_t zone : {lgiSZGeneralLedger, lgiSZAccountGroups, lgiSZDetailAccounts}) {
    const Error error = ErrorOf([&] { index->Count(zone); });
    EXPECT_EQ(error.Number(), 91);
    EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
  }
}

TEST_F(AccountsIndexTest, CountOfAValueThatIsNoZoneBitIsAnInvalidParameter) {
  auto index = Search(Variant(""), 7);
  const Error error = ErrorOf([&] { index->Count(3); });
  EXPECT_EQ(error.Number(), kInvalidParameter);
  EXPECT_EQ(error.Description(), "Invalid parameter value.");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(AccountsIndexTest, ItemOfAValueThatIsNoZoneBitIsAnInvalidParameter) {
  auto index = Search(Variant(""), 7);
  const Error error = ErrorOf([&] { index->Item(3, 1); });
  EXPECT_EQ(error.Number(), kInvalidParameter);
  EXPECT_EQ(error.Description(), "Invalid parameter value.");
}

TEST_F(AccountsIndexTest, ItemInfoTakesOnlyOneAndTwo) {
  auto index = Search(Variant(""), 7);
  const Error error = ErrorOf([&] { index->ItemInfo(4, 1); });
  EXPECT_EQ(error.Number(), kInvalidParameter);
  EXPECT_EQ(error.Description(), "Invalid parameter value.");
}

TEST_F(AccountsIndexTest, ItemOutsideOneToCountIsSubscriptOutOfRange) {
  auto index = Search(Variant("10"), lgiSZGeneralLedger);
  for (const int32_t position : {0, 3}) {
    const Error error = ErrorOf([&] { index->Item(lgiSZGeneralLedger, position); });
    EXPECT_EQ(error.Number(), 9);
    EXPECT_EQ(error.Description(), "Subscript out of range");
  }
}

TEST_F(AccountsIndexTest, ItemInfoOutsideOneToCountIsSubscriptOutOfRange) {
  auto index = Search(Variant("10"), lgiSZGeneralLedger);
  for (const int32_t position : {0, 3}) {
    const Error error = ErrorOf([&] { index->ItemInfo(1, position); });
    EXPECT_EQ(error.Number(), 9);
    EXPECT_EQ(error.Description(), "Subscript out of range");
  }
}

TEST_F(AccountsIndexTest, AnIndexRowOfADeletedAccountGivesInternalErrorForThatRowAlone) {
  Db().Execute("DELETE FROM Accounts WHERE ID = " + std::to_string(bank_) + ";");
  auto index = Search(Variant(""), lgiSZGeneralLedger);
  // Name order: "1000", "1020" (deleted), "Bank" (deleted), "Kasse".
  ASSERT_EQ(index->Count(lgiSZGeneralLedger), 4);
  const Error error = ErrorOf([&] { index->ItemInfo(1, 2); });
  EXPECT_EQ(error.Number(), kInternalError);
  EXPECT_EQ(error.Description(), "internal error.");
  EXPECT_EQ(error.Source(), "ldg");
  const Error shifted = ErrorOf([&] { index->Item(lgiSZGeneralLedger, 1); });
  EXPECT_EQ(shifted.Number(), kInternalError);
  EXPECT_EQ(shifted.Description(), "internal error.");
  EXPECT_EQ(CLng(index->ItemInfo(1, 1).AsArray()[lgrAccInfoID]), cash_);
  EXPECT_EQ(index->Item(lgiSZGeneralLedger, 3)->ID(), cash_);
}

TEST_F(AccountsIndexTest, AccountLookupGivesTheAccountOfTheFirstRow) {
  auto index = Search(Variant(""), 0);
  auto rows = Db().OpenRecordset("SELECT ID FROM Accounts WHERE ID = " + std::to_string(bank_) + ";",
                                 store::dbOpenSnapshot);
  EXPECT_EQ(index->AccountLookup(*rows)->ID(), bank_);
}

TEST_F(AccountsIndexTest, AccountLookupOfAnIdWithoutAccountIsAnInternalError) {
  auto index = Search(Variant(""), 0);
  auto rows = Db().OpenRecordset("SELECT 999999 AS ID FROM Accounts;", store::dbOpenSnapshot);
  const Error error = ErrorOf([&] { index->AccountLookup(*rows); });
  EXPECT_EQ(error.Number(), kInternalError);
  EXPECT_EQ(error.Description(), "internal error.");
}

TEST_F(AccountsIndexTest, FirstItemTakesTheGeneralLedgerHitBeforeTheDetailHit) {
  auto index = Search(Variant(""), lgiSZGeneralLedger | lgiSZDetailAccounts);
  EXPECT_EQ(index->FirstItem()->ID(), cash_);  // "1000" sorts first
}

TEST_F(AccountsIndexTest, FirstItemTakesTheDetailHitWhenItIsTheOnlyOne) {
  auto index = Search(Variant("Kunde"), lgiSZGeneralLedger | lgiSZDetailAccounts);
  EXPECT_EQ(index->FirstItem()->ID(), customer_);
}

TEST_F(AccountsIndexTest, FirstItemTakesTheGroupHitBeforeAllOthers) {
  AssignToGroup("Liquide Mittel", bank_);
  auto index = Search(Variant(""), lgiSZGeneralLedger | lgiSZAccountGroups | lgiSZDetailAccounts);
  EXPECT_EQ(index->FirstItem()->ID(), bank_);
}

TEST_F(AccountsIndexTest, TheGroupZoneFindsTheMembersOfGroupsByTheGroupName) {
  AssignToGroup("Liquide Mittel", cash_);
  AssignToGroup("Liquide Mittel 2", bank_);
  AssignToGroup("Debitoren", customer_);
  auto index = Search(Variant("Liq"), lgiSZAccountGroups);
  EXPECT_EQ(index->Count(lgiSZAccountGroups), 2);
  EXPECT_EQ(index->Item(lgiSZAccountGroups, 1)->ID(), bank_);
}

TEST_F(AccountsIndexTest, ARunDropsTheRecordSetsOfTheLastRun) {
  auto index = Search(Variant(""), lgiSZGeneralLedger);
  index->Zones(lgiSZDetailAccounts);
  index->Run();
  EXPECT_EQ(ErrorOf([&] { index->Count(lgiSZGeneralLedger); }).Number(), 91);
  EXPECT_EQ(index->Count(lgiSZDetailAccounts), 4);
}

TEST_F(AccountsIndexTest, AccountsSearchRunsTheGeneralLedgerAndDetailZonesByDefault) {
  auto index = State().accounts->Search(Variant(""));
  EXPECT_EQ(index->Count(lgiSZGeneralLedger), 4);
  EXPECT_EQ(index->Count(lgiSZDetailAccounts), 4);
  EXPECT_EQ(ErrorOf([&] { index->Count(lgiSZAccountGroups); }).Number(), 91);
}

}  // namespace
}  // namespace ldg

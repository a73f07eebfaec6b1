// The account's place in the tree: destinations, moves, deletes and the mark
// for deletion at the closing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/accounts_events.hpp"
#include "accounts/master_accounts.hpp"
#include "engine/engine_state.hpp"
#include "store/database.hpp"
#include "store/workspace.hpp"
#include "tests/accounts/balance_fixture.hpp"

namespace ldg {
namespace {

using balance_testing::Amount;
using balance_testing::BalanceTest;
using balance_testing::Date;
using balance_testing::Describe;
using balance_testing::ErrorOf;
using balance_testing::Expected;
using balance_testing::ExpectedMessage;

constexpr const char* kChildAsDestination =
    "Invalid destination. You can't choose a child as destination of this operation!";
constexpr const char* kDependencies =
    "Dependencies found on given account: cannot mark for deletion on cloture.";

class DeletedRecorder : public AccountsEvents {
 public:
  void Deleted(std::shared_ptr<Account>& account) override { ids.push_back(account ? account->ID() : 0); }
  std::vector<int32_t> ids;
};

class AccountTreeTest : public BalanceTest {
 protected:
  void SetUp() override {
    BalanceTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    income_ = InsertSum(RootB(), "3", "Ertrag");
  }

  bool Exists(int32_t id) {
    return !Scalar("SELECT ID FROM Accounts WHERE ID = " + std::to_string(id) + ";", "ID").IsEmpty();
  }
  int32_t StoredParent(int32_t id) {
    return ReadLong(
        Scalar("SELECT ParentID FROM Accounts WHERE ID = " + std::to_string(id) + ";", "ParentID"));
  }
  int32_t IndexRows(int32_t id) {
    return ReadLong(
        Scalar("SELECT Count(*) AS N FROM AccountsIndex WHERE ID = " + std::to_string(id) + ";", "N"));
  }

  int32_t assets_ = 0;
  int32_t income_ = 0;
};

// ---------------------------------------------------------------- destinations

TEST_F(AccountTreeTest, CheckDestinationOfADetailIntoAnotherMastersDetailRaises1014) {
  const int32_t m1 = InsertMaster(assets_, "1100");
  const int32_t m2 = InsertMaster(assets_, "1200");
  const int32_t d1 = InsertDetail(m1, m1, "D1");
  const int32_t d2 = InsertDetail(m2, m2, "D2");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(d1)->CheckDestination(*Load(d2)); })),
            ExpectedMessage(1014, "Destination account must be a child of the same master account"));
}

TEST_F(AccountTreeTest, CheckDestinationOfADetailIntoASumRaises1012) {
  const int32_t m1 = InsertMaster(assets_, "1100");
  const int32_t d1 = InsertDetail(m1, m1, "D1");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(d1)->CheckDestination(*Load(assets_)); })),
            ExpectedMessage(1012, "Wrong account destination."));
}

TEST_F(AccountTreeTest, CheckDestinationOfADetailWithinItsMasterPasses) {
  const int32_t m1 = InsertMaster(assets_, "1100");
  const int32_t d1 = InsertDetail(m1, m1, "D1");
  const int32_t d2 = InsertDetail(m1, m1, "D2");
  Load(d1)->CheckDestination(*Load(d2));
  Load(d2)->CheckDestination(*Load(m1));
  auto moved = Load(d2);
  moved->Tags("verschoben");
  moved->Move(d1);
  EXPECT_EQ(StoredParent(d2), d1);
}

TEST_F(AccountTreeTest, CheckDestinationOfAMasterToASumUnderBRaises1012) {
  const int32_t master = InsertMaster(assets_, "1100");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(master)->CheckDestination(*Load(income_)); })),
            ExpectedMessage(1012, "Wrong account destination."));
}

TEST_F(AccountTreeTest, CheckDestinationOfAMasterToASumUnderAPasses) {
  const int32_t master = InsertMaster(InsertSum(assets_, "11", "Forderungen"), "1100");
  Load(master)->CheckDestination(*Load(assets_));
  auto moved = Load(master);
  moved->Tags("verschoben");
  moved->Move(assets_);
  EXPECT_EQ(StoredParent(master), assets_);
}

TEST_F(AccountTreeTest, CheckDestinationOfASumOfAToASumOfBRaises1013) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(sum)->CheckDestination(*Load(income_)); })),
            ExpectedMessage(1013, "Account or sum can't be moved to different class."));
}

// The general ledger root reads as a sum of class 0, so no sum of a class root may move there.
TEST_F(AccountTreeTest, ASumMovedToTheGeneralLedgerRootRaises1013) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(sum)->Move(0); })),
            ExpectedMessage(1013, "Account or sum can't be moved to different class."));
  EXPECT_EQ(StoredParent(sum), assets_);
}

TEST_F(AccountTreeTest, CheckDestinationIntoAPlainAccountRaises1012) {
  const int32_t cash = InsertPlain(assets_, "1000");
  const int32_t bank = InsertPlain(assets_, "1020");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(bank)->CheckDestination(*Load(cash)); })),
            ExpectedMessage(1012, "Wrong account destination."));
}

TEST_F(AccountTreeTest, ASumMovedIntoItsOwnChildRaisesTheLiteralText) {
  const int32_t outer = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t inner = InsertSum(InsertSum(outer, "100", "Kassen"), "1001", "Nebenkassen");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(outer)->Move(inner); })),
            Expected(static_cast<int32_t>(0x80040BB8u), "ldg", kChildAsDestination));
}

// The walk starts at the destination's parent: a move into itself passes the
// check and fails in Update (deliberate).
TEST_F(AccountTreeTest, AnAccountMovedIntoItselfPassesTheCheckAndFailsInUpdate) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  auto account = Load(sum);
  account->CheckDestination(*Load(sum));
  EXPECT_EQ(Describe(ErrorOf([&] { account->Move(sum); })),
            Expected(MessageNumber(1000), "ldg(Account validation)", "Internal Error"));
}

TEST_F(AccountTreeTest, MoveWithAnUnknownIdRaises1017) {
  const int32_t cash = InsertPlain(assets_, "1000");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(cash)->Move(99999); })),
            ExpectedMessage(1017, "Destination account not found."));
}

// ParentID is in no dirty list, so a move of an unchanged account leaves the row (deliberate).
TEST_F(AccountTreeTest, AfterAMoveOfAnUnchangedAccountTheRowKeepsTheOldParent) {
  const int32_t other = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(assets_, "1000");
  auto account = Load(cash);
  account->Move(other);
  EXPECT_EQ(account->ParentID(), other);
  EXPECT_EQ(Load(cash)->ParentID(), assets_);
  EXPECT_EQ(StoredParent(cash), assets_);
}

TEST_F(AccountTreeTest, AMoveTogetherWithAChangedFieldWritesTheNewParent) {
  const int32_t other = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(assets_, "1000");
  auto account = Load(cash);
  account->Name(Variant("Hauptkasse"));
  account->Move(other);
  EXPECT_EQ(StoredParent(cash), other);
}

TEST_F(AccountTreeTest, AMoveRequeriesAnOpenBalanceView) {
  const int32_t other = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(assets_, "1000", {}, Amount("5"));
  EXPECT_EQ(Load(other)->BalanceWithChildrens(), Amount("0"));
  auto account = Load(cash);
  account->Name(Variant("Hauptkasse"));
  account->Move(other);
  ASSERT_TRUE(Handles().balance_view);
  Handles().balance_view->FindFirst("Accounts.ID=" + std::to_string(other));
  EXPECT_FALSE(Handles().balance_view->NoMatch());
}

// ---------------------------------------------------------------- deletes

TEST_F(AccountTreeTest, DeleteOnAClassRootRaises1003WithItsCodeAndName) {
  EXPECT_EQ(Describe(ErrorOf([&] { Load(RootA())->Delete(); })),
            ExpectedMessage(1003, "Account A Bilanz can't be deleted."));
  EXPECT_TRUE(Exists(RootA()));
}

TEST_F(AccountTreeTest, DeleteNormalOfAnAccountWithBalanceBelowTheToleranceGoesThrough) {
  const int32_t cash = InsertPlain(assets_, "1000", {}, Amount("0.004"));
  Load(cash)->DeleteNormal();
  EXPECT_FALSE(Exists(cash));
  EXPECT_EQ(IndexRows(cash), 0);
}

TEST_F(AccountTreeTest, DeleteNormalOfAnAccountWithBalanceAtTheToleranceRaises1236) {
  const int32_t cash = InsertPlain(assets_, "1000", {}, Amount("0.005"));
  EXPECT_EQ(Describe(ErrorOf([&] { Load(cash)->DeleteNormal(); })),
            ExpectedMessage(1236, "Cannot delete account when balance not equal 0."));
  EXPECT_TRUE(Exists(cash));
}

TEST_F(AccountTreeTest, DeleteOfAnAccountWithMovementsRaises1005WithTheStoresText) {
  const int32_t cash = InsertPlain(assets_, "1000");
  InsertMovementOn(1, Date(2026, 1, 5), cash, Amount("0"));
  EXPECT_EQ(Describe(ErrorOf([&] { Load(cash)->Delete(); })),
            ExpectedMessage(1005,
                            "Error occoured deleting account 1000.\r\n\r\nThe record cannot be deleted or "
                            "changed because table 'Movements' includes related records."));
  EXPECT_TRUE(Exists(cash));
}

// The children are handed to the parent on fresh objects only: their rows keep
// the deleted account as parent (deliberate).
TEST_F(AccountTreeTest, TheChildrenOfADeletedAccountKeepTheirParentID) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(sum, "1000");
  Load(sum)->Delete();
  EXPECT_FALSE(Exists(sum));
  EXPECT_EQ(StoredParent(cash), sum);
}

TEST_F(AccountTreeTest, AMoveBelowAnOrphanedSumFailsWhereTheWalkMeetsTheDeletedRow) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t orphan = InsertSum(sum, "100", "Kassen");
  const int32_t cash = InsertPlain(assets_, "1000");
  Load(sum)->Delete();
  const Error error = ErrorOf([&] { Load(cash)->Move(orphan); });
  EXPECT_EQ(error.Number(), 3021);
  EXPECT_EQ(StoredParent(cash), assets_);
}

TEST_F(AccountTreeTest, DeleteSignalsTheAccountWhileItsRowStands) {
  DeletedRecorder recorder;
  engine_->Accounts()->AddListener(&recorder);
  const int32_t cash = InsertPlain(assets_, "1000");
  Load(cash)->Delete();
  engine_->Accounts()->RemoveListener(&recorder);
  EXPECT_EQ(recorder.ids, std::vector<int32_t>{cash});
}

TEST_F(AccountTreeTest, DeleteOfAMasterReloadsTheMasterAccounts) {
  const int32_t master = InsertMaster(assets_, "1100");
  engine_->MasterAccounts()->Reload();
  ASSERT_EQ(engine_->MasterAccounts()->Count(), 1);
  Load(master)->Delete();
  EXPECT_EQ(engine_->MasterAccounts()->Count(), 0);
}

TEST_F(AccountTreeTest, ARecursiveDeleteGoesThroughAlongAChainOfSingleChildren) {
  DeletedRecorder recorder;
  engine_->Accounts()->AddListener(&recorder);
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t inner = InsertSum(sum, "100", "Kassen");
  const int32_t cash = InsertPlain(inner, "1000");
  Load(sum)->Delete(true);
  engine_->Accounts()->RemoveListener(&recorder);
  EXPECT_FALSE(Exists(sum));
  EXPECT_FALSE(Exists(inner));
  EXPECT_FALSE(Exists(cash));
  // The one-row delete signals after the row is gone (deliberate).
  EXPECT_EQ(recorder.ids, (std::vector<int32_t>{0, 0, 0}));
}

// The children are counted once while the list shrinks: the second child is
// never found and the whole delete rolls back (deliberate).
TEST_F(AccountTreeTest, ARecursiveDeleteOfTwoChildrenFailsAndRollsBack) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(sum, "1000");
  const int32_t bank = InsertPlain(sum, "1020");
  const Error error = ErrorOf([&] { Load(sum)->Delete(true); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_TRUE(Exists(sum));
  EXPECT_TRUE(Exists(cash));
  EXPECT_TRUE(Exists(bank));
}

TEST_F(AccountTreeTest, TheOneRowDeleteOfAnAccountWithBalanceRaisesItsOwnNumber) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  InsertPlain(sum, "1000", {}, Amount("-1234.5"));
  const Error error = ErrorOf([&] { Load(sum)->Delete(true); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80041ED2u));
  EXPECT_EQ(error.Description(), "1000 Konto 1000\r\nBalance(-1'234.50) <> 0");
  EXPECT_EQ(error.Source(), "ldg");  // Delete raises again with the application title
  EXPECT_TRUE(Exists(sum));
}

// The one-row delete removes the search rows of the account Delete was called on (deliberate).
TEST_F(AccountTreeTest, TheRecursiveDeleteRemovesOnlyTheSearchRowsOfTheCalledAccount) {
  const int32_t master = InsertMaster(assets_, "1100");
  const int32_t detail = InsertDetail(master, master, "D1");
  engine_->DoAccountsIndex();
  ASSERT_GT(IndexRows(master), 0);
  ASSERT_GT(IndexRows(detail), 0);
  Load(master)->Delete(true);
  EXPECT_EQ(IndexRows(master), 0);
  EXPECT_GT(IndexRows(detail), 0);
}

// ---------------------------------------------------------------- the mark for deletion at the closing

TEST_F(AccountTreeTest, MarkingATaxAccountRaises1235) {
  const int32_t vat = InsertPlain(assets_, "1170");
  InsertTaxHistory(vat);
  EXPECT_EQ(Describe(ErrorOf([&] { Load(vat)->DeleteOnCloture(true); })),
            ExpectedMessage(1235, kDependencies));
  EXPECT_FALSE(IsMarked(vat));
}

TEST_F(AccountTreeTest, MarkingAnExchangeLossAccountRaises1235) {
  const int32_t loss = InsertPlain(income_, "3800");
  InsertForeinCurrency("EUR", loss, 0);
  EXPECT_EQ(Describe(ErrorOf([&] { Load(loss)->DeleteOnCloture(true); })),
            ExpectedMessage(1235, kDependencies));
}

TEST_F(AccountTreeTest, MarkingAnExchangeGainAccountRaises1235) {
  const int32_t gain = InsertPlain(income_, "3810");
  InsertForeinCurrency("USD", 0, gain);
  EXPECT_EQ(Describe(ErrorOf([&] { Load(gain)->DeleteOnCloture(true); })),
            ExpectedMessage(1235, kDependencies));
}

TEST_F(AccountTreeTest, MarkingASumAboveATaxAccountRaises1235) {
  const int32_t outer = InsertSum(assets_, "11", "Forderungen");
  const int32_t inner = InsertSum(outer, "117", "Vorsteuer");
  InsertTaxHistory(InsertPlain(inner, "1170"));
  EXPECT_EQ(Describe(ErrorOf([&] { Load(outer)->DeleteOnCloture(true); })),
            ExpectedMessage(1235, kDependencies));
  EXPECT_FALSE(IsMarked(outer));
}

TEST_F(AccountTreeTest, MarkingASumAboveAnExchangeAccountRaises1235) {
  const int32_t sum = InsertSum(income_, "38", "Kursdifferenzen");
  InsertForeinCurrency("EUR", 0, InsertPlain(sum, "3810"));
  EXPECT_EQ(Describe(ErrorOf([&] { Load(sum)->DeleteOnCloture(true); })),
            ExpectedMessage(1235, kDependencies));
}

TEST_F(AccountTreeTest, UnmarkingAChildOfAMarkedParentRaises1232) {
  const int32_t sum = InsertSum(income_, "38", "Kursdifferenzen");
  const int32_t child = InsertPlain(sum, "3810");
  MarkRow(sum);
  MarkRow(child);
  EXPECT_EQ(Describe(ErrorOf([&] { Load(child)->DeleteOnCloture(false); })),
            ExpectedMessage(1232,
                            "Account cannot be demarked for deletion because the parent will be deleted on "
                            "cloture"));
  EXPECT_TRUE(IsMarked(child));
}

TEST_F(AccountTreeTest, UnmarkingWritesTheFlagAtOnce) {
  const int32_t cash = InsertPlain(assets_, "1000");
  MarkRow(cash);
  auto account = Load(cash);
  account->DeleteOnCloture(false);
  EXPECT_FALSE(account->DeleteOnCloture());
  EXPECT_FALSE(IsMarked(cash));
}

TEST_F(AccountTreeTest, MarkingWritesTheFlagAtOnceAndLeavesTheStoredCopy) {
  const int32_t cash = InsertPlain(assets_, "1000");
  auto account = Load(cash);
  account->DeleteOnCloture(true);
  EXPECT_TRUE(account->DeleteOnCloture());
  EXPECT_TRUE(IsMarked(cash));
  EXPECT_TRUE(account->HasChanged());
  EXPECT_EQ(account->FullName(), "Konto 1000 (wird gelöscht)");
}

TEST_F(AccountTreeTest, MarkingASumOfTheIncomeStatementMarksItsWholeTree) {
  const int32_t sum = InsertSum(income_, "38", "Kursdifferenzen");
  const int32_t inner = InsertSum(sum, "381", "Gewinne");
  const int32_t leaf = InsertPlain(inner, "3810", {}, Amount("12"));
  const int32_t other = InsertPlain(income_, "3000");
  Load(sum)->DeleteOnCloture(true);
  EXPECT_TRUE(IsMarked(sum));
  EXPECT_TRUE(IsMarked(inner));
  EXPECT_TRUE(IsMarked(leaf));
  EXPECT_FALSE(IsMarked(other));
}

// A balance sheet sum with its usual own Balance 0 is marked alone (deliberate).
TEST_F(AccountTreeTest, MarkingABalanceSheetSumWithoutOwnBalanceMarksItAlone) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(sum, "1000", {}, Amount("50"));
  Load(sum)->DeleteOnCloture(true);
  EXPECT_TRUE(IsMarked(sum));
  EXPECT_FALSE(IsMarked(cash));
}

TEST_F(AccountTreeTest, MarkingABalanceSheetSumWithOwnBalanceMarksItsTreeWhenNoChildHasABalance) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(sum, "1000", {}, Amount("0.004"));
  SetColumn(sum, "Balance", "3");
  Load(sum)->DeleteOnCloture(true);
  EXPECT_TRUE(IsMarked(sum));
  EXPECT_TRUE(IsMarked(cash));
}

TEST_F(AccountTreeTest, MarkingABalanceSheetSumWithOwnBalanceAndAChildWithBalanceRaises1231) {
  const int32_t sum = InsertSum(assets_, "10", "Flüssige Mittel");
  const int32_t cash = InsertPlain(InsertSum(sum, "100", "Kassen"), "1000", {}, Amount("0.005"));
  SetColumn(sum, "Balance", "3");
  EXPECT_EQ(Describe(ErrorOf([&] { Load(sum)->DeleteOnCloture(true); })),
            ExpectedMessage(1231,
                            "This account cannot be marked for deletion because at least one subaccount "
                            "has a balance <> 0"));
  EXPECT_FALSE(IsMarked(sum));
  EXPECT_FALSE(IsMarked(cash));
}

TEST_F(AccountTreeTest, MarkingABalanceSheetAccountWithBalanceRaises1230) {
  const int32_t cash = InsertPlain(assets_, "1000", {}, Amount("10"));
  EXPECT_EQ(Describe(ErrorOf([&] { Load(cash)->DeleteOnCloture(true); })),
            ExpectedMessage(1230,
                            "This account cannot be marked for deletion on clotue because the balance is "
                            "not equal 0"));
  EXPECT_FALSE(IsMarked(cash));
}

TEST_F(AccountTreeTest, MarkingADetailWithBalanceMarksItsDetailTree) {
  const int32_t master = InsertMaster(assets_, "1100");
  const int32_t detail = InsertDetail(master, master, "D1", {}, Amount("10"));
  const int32_t below = InsertDetail(detail, master, "D11");
  Load(detail)->DeleteOnCloture(true);
  EXPECT_TRUE(IsMarked(detail));
  EXPECT_TRUE(IsMarked(below));
  EXPECT_FALSE(IsMarked(master));
}

TEST_F(AccountTreeTest, MarkingDropsADatedBalanceView) {
  const int32_t cash = InsertPlain(assets_, "1000");
  Load(assets_)->BalanceAtDate(Date(2026, 3, 1));
  const std::string scratch = Handles().temp_query_name;
  ASSERT_FALSE(scratch.empty());
  Load(cash)->DeleteOnCloture(true);
  EXPECT_TRUE(Handles().balance_view_is_plain);
  EXPECT_FALSE(Db().QueryDefs().Contains(scratch));
}

}  // namespace
}  // namespace ldg

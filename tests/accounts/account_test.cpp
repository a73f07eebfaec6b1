// The account record: its fields, kinds, validation, and how it reads and
// writes its row and its search names.
#include "accounts/account.hpp"

#include <gtest/gtest.h>

#include "accounts/account_links.hpp"
#include "accounts/accounts.hpp"
#include "accounts/subaccounts.hpp"
#include "store/workspace.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::AccountRow;
using chart_testing::CollectionsTest;
using chart_testing::ErrorOf;
using chart_testing::LinksGuard;

class AccountTest : public CollectionsTest {
 protected:
  void SetUp() override {
    CollectionsTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    cash_ = InsertAccount(assets_, "1000", "Kasse");
  }

  int32_t assets_ = 0;
  int32_t cash_ = 0;
};

TEST_F(AccountTest, ANameGivenWithTheDeletionEndingIsStoredWithoutIt) {
  auto cash = Fresh(cash_);
  cash->Name(Variant("Kasse neu (wird gelöscht)"));
  EXPECT_EQ(CStr(cash->Name()), "Kasse neu");
  cash->Update();
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Kasse neu");
}

TEST_F(AccountTest, NameIsTrimmedAndCodeIsKeptAsGiven) {
  Account account;
  account.Name(Variant("  Bank  "));
  account.Code(Variant(" 1020 "));
  EXPECT_EQ(CStr(account.Name()), "Bank");
  EXPECT_EQ(CStr(account.Code()), " 1020 ");
}

TEST_F(AccountTest, FullNameOfAMarkedAccountEndsInTheDeletionText) {
  Db().Execute("UPDATE Accounts SET DeleteOnCloture = True WHERE ID = " + std::to_string(cash_) + ";");
  auto cash = Fresh(cash_);
  EXPECT_EQ(cash->FullName(), "Kasse (wird gelöscht)");
  EXPECT_EQ(cash->FullCodeName(), "1000 Kasse (wird gelöscht)");
}

TEST_F(AccountTest, FullCodeNameOfAnUnmarkedAccountIsCodeBlankName) {
  EXPECT_EQ(Fresh(cash_)->FullName(), "Kasse");
  EXPECT_EQ(Fresh(cash_)->FullCodeName(), "1000 Kasse");
}

TEST_F(AccountTest, ChangingTheCodeOfAStoredAccountRaises1237AndWritesNothing) {
  auto cash = Fresh(cash_);
  cash->Code(Variant("1001"));
  cash->Name(Variant("Kasse neu"));
  const Error error = ErrorOf([&] { cash->Update(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404D5));
  EXPECT_EQ(error.Description(), "Cannot change account code.");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  EXPECT_EQ(CStr(Column(cash_, "Code")), "1000");
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Kasse");
  EXPECT_EQ(CStr(cash->Code()), "1001");  // the object keeps its values
}

TEST_F(AccountTest, UpdateInCallersTransactionWritesIntoTheOpenTransactionAndLeavesItOpen) {
  State().workspace->BeginTrans();
  auto cash = Fresh(cash_);
  cash->Name(Variant("Kasse neu"));
  cash->UpdateInCallersTransaction();
  EXPECT_EQ(State().workspace->TransactionLevel(), 1);
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Kasse neu");
  State().workspace->Rollback();
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Kasse");
}

TEST_F(AccountTest, UpdateInCallersTransactionRaisesTheValidationErrorsOfUpdateAndWritesNothing) {
  State().workspace->BeginTrans();
  auto cash = Fresh(cash_);
  cash->Name(Variant("Kasse neu"));
  cash->TaxCanChoose(true);
  const Error error = ErrorOf([&] { cash->UpdateInCallersTransaction(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004046B));
  EXPECT_EQ(error.Description(), "TaxCanChoose property set to true, but no tax set!");
  EXPECT_EQ(State().workspace->TransactionLevel(), 1);
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Kasse");
  State().workspace->Rollback();
}

TEST_F(AccountTest, AFailingUpdateInsideACallersTransactionRollsBackOnlyItsOwnLevel) {
  State().workspace->BeginTrans();
  auto cash = Fresh(cash_);
  cash->Code(Variant("1001"));
  ErrorOf([&] { cash->Update(); });
  EXPECT_EQ(State().workspace->TransactionLevel(), 1);
  State().workspace->Rollback();
}

TEST_F(AccountTest, TaxCanChooseWithoutATaxFailsWith1131BeforeTheCurrencyIsLookedAt) {
  auto cash = Fresh(cash_);
  cash->TaxCanChoose(true);
  cash->FCCanChooseRate(true);
  const Error error = ErrorOf([&] { cash->Update(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004046B));
  EXPECT_EQ(error.Description(), "TaxCanChoose property set to true, but no tax set!");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(AccountTest, FCCanChooseRateWithoutACurrencyFailsWith1149) {
  auto cash = Fresh(cash_);
  cash->FCCanChooseRate(true);
  const Error error = ErrorOf([&] { cash->Update(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004047D));
  EXPECT_EQ(error.Description(), "FCCanChooseRate property set to true, but no forein currency set!");
}

TEST_F(AccountTest, AnAccountThatIsItsOwnParentFailsWithInternalErrorOfTheValidation) {
  auto cash = Fresh(cash_);
  cash->SetParentID(cash_);
  const Error error = ErrorOf([&] { cash->Update(); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403E8));
  EXPECT_EQ(error.Description(), "Internal Error");
  EXPECT_EQ(error.Source(), "ldg(Account validation)");
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
}

TEST_F(AccountTest, NodeTypeOfADetailAccountIsTwoAndItsKindFour) {
  const int32_t master = MasterRow(assets_, "1100", "Debitoren");
  auto detail = Fresh(DetailRow(master, master, "110001", "Kunde Muster"));
  EXPECT_EQ(detail->NodeType(), lgrAccGLNormal);
  EXPECT_EQ(detail->Kind(), lgrAccDetail);
}

TEST_F(AccountTest, KindAndNodeTypeOfSumsPlainAccountsAndMasters) {
  const int32_t master = MasterRow(assets_, "1100", "Debitoren");
  EXPECT_EQ(Fresh(assets_)->Kind(), lgrAccGLSum);
  EXPECT_EQ(Fresh(assets_)->NodeType(), lgrAccGLSum);
  EXPECT_EQ(Fresh(cash_)->Kind(), lgrAccGLNormal);
  EXPECT_EQ(Fresh(cash_)->NodeType(), lgrAccGLNormal);
  EXPECT_EQ(Fresh(master)->Kind(), lgrAccGLMaster);
  EXPECT_EQ(Fresh(master)->NodeType(), lgrAccGLMaster);
}

TEST_F(AccountTest, AGeneralLedgerAccountWithAMasterIDIsOfTheDetailKind) {
  AccountRow row;
  row.master_id = 77;
  EXPECT_EQ(Fresh(InsertAccount(assets_, "1200", "Halb", row))->Kind(), lgrAccDetail);
}

TEST_F(AccountTest, AMasterReadWithMasterIDZeroGetsItsOwnIDAtTheNextWrite) {
  AccountRow row;
  row.is_master = true;
  const int32_t master = InsertAccount(assets_, "1100", "Debitoren", row);
  auto account = Fresh(master);
  EXPECT_EQ(account->MasterID(), 0);
  account->Name(Variant("Debitoren Inland"));
  account->Update();
  EXPECT_EQ(CLng(Column(master, "MasterID")), master);
  EXPECT_EQ(account->MasterID(), master);
}

TEST_F(AccountTest, SettingFCIDLeavesForeinCurrencyUntilTheAccountIsReadAgain) {
  LinksGuard links;
  std::vector<int32_t> looked_up;
  RegisteredAccountLinks().forein_currency_item = [&](int32_t fc_id) {
    looked_up.push_back(fc_id);
    return std::shared_ptr<ForeinCurrency>();
  };
  auto cash = Fresh(cash_);
  cash->FCID(5);
  EXPECT_EQ(cash->FCID(), 5);
  EXPECT_EQ(cash->ForeinCurrency(), nullptr);
  EXPECT_TRUE(looked_up.empty());
  cash->Update();
  Fresh(cash_);
  EXPECT_EQ(looked_up, std::vector<int32_t>{5});
}

TEST_F(AccountTest, SettingTaxChangesTaxIDAtOnce) {
  LinksGuard links;
  RegisteredAccountLinks().tax_item = [](int32_t) { return std::shared_ptr<Tax>(); };
  Db().Execute("UPDATE Accounts SET TaxID = 7 WHERE ID = " + std::to_string(cash_) + ";");
  auto cash = Fresh(cash_);
  EXPECT_EQ(cash->TaxID(), 7);
  cash->Tax(nullptr);
  EXPECT_EQ(cash->TaxID(), 0);
}

TEST_F(AccountTest, ReadingAnAccountWithACurrencyFailsWhileNoCurrenciesAreLinked) {
  LinksGuard links;
  RegisteredAccountLinks().forein_currency_item = nullptr;
  Db().Execute("UPDATE Accounts SET FCID = 3 WHERE ID = " + std::to_string(cash_) + ";");
  const Error error = ErrorOf([&] { Fresh(cash_); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
}

TEST_F(AccountTest, ReadingAnAccountWithATaxFailsWhileNoTaxesAreLinked) {
  LinksGuard links;
  RegisteredAccountLinks().tax_item = nullptr;
  Db().Execute("UPDATE Accounts SET TaxID = 3 WHERE ID = " + std::to_string(cash_) + ";");
  EXPECT_EQ(ErrorOf([&] { Fresh(cash_); }).Number(), 91);
}

TEST_F(AccountTest, TheChoiceFlagsAreReadOnlyWithACurrencyOrATax) {
  Db().Execute("UPDATE Accounts SET FCCanChooseRate = True, TaxCanChoose = True WHERE ID = " +
               std::to_string(cash_) + ";");
  auto cash = Fresh(cash_);
  EXPECT_FALSE(cash->FCCanChooseRate());
  EXPECT_FALSE(cash->TaxCanChoose());
}

// Only the failing read is tested here; the budget object gives the value.
TEST_F(AccountTest, ReadingYearBudgetFails) {
  auto cash = Fresh(cash_);
  cash->YearBudget(Currency::FromUnits(500));
  const Error error = ErrorOf([&] { cash->YearBudget(); });
  EXPECT_EQ(error.Number(), 438);
  EXPECT_EQ(error.Description(), "Object doesn't support this property or method");
}

TEST_F(AccountTest, YearBudgetIsWrittenToTheBudgetColumn) {
  auto cash = Fresh(cash_);
  cash->YearBudget(Currency::FromUnits(500));
  cash->Update();
  EXPECT_EQ(CCur(Column(cash_, "Budget")), Currency::FromUnits(500));
}

TEST_F(AccountTest, ANewAccountGetsARowAndItsNewID) {
  Account account;
  account.SetParentID(assets_);
  account.SetClass(1);
  account.SetGeneralLedger(true);
  account.Code(Variant("1020"));
  account.Name(Variant("Bank"));
  account.Update();
  ASSERT_NE(account.ID(), 0);
  EXPECT_EQ(IdOf("1020"), account.ID());
  EXPECT_EQ(CLng(Column(account.ID(), "ParentID")), assets_);
  EXPECT_EQ(CStr(Column(account.ID(), "Name")), "Bank");
  EXPECT_FALSE(account.HasChanged());
}

// Deliberate: the refresh and the insert both add the search names, so a new
// account has each of them twice until the index is rebuilt.
TEST_F(AccountTest, ANewAccountStartsWithEachSearchNameTwice) {
  Account account;
  account.SetParentID(assets_);
  account.Code(Variant("1020"));
  account.Name(Variant("Bank"));
  account.Update();
  EXPECT_EQ(
      RowCount("FROM AccountsIndex WHERE ID = " + std::to_string(account.ID()) + " AND SearchName = '1020'"),
      2);
  EXPECT_EQ(
      RowCount("FROM AccountsIndex WHERE ID = " + std::to_string(account.ID()) + " AND SearchName = 'Bank'"),
      2);
}

TEST_F(AccountTest, ANewSumHasNoSearchNames) {
  Account account;
  account.SetParentID(assets_);
  account.IsSum(true);
  account.Code(Variant("10"));
  account.Update();
  EXPECT_EQ(IndexRows(account.ID()), 0);
}

TEST_F(AccountTest, ANewAccountEqualToTheEmptyStoredCopyGetsNoRow) {
  const int32_t rows = RowCount("FROM Accounts");
  Account account;
  account.SetParentID(assets_);
  account.Position(4);
  account.Update();
  EXPECT_EQ(account.ID(), 0);
  EXPECT_EQ(RowCount("FROM Accounts"), rows);
}

// Deliberate: Position, ParentID, Class and IsGeneralLedger are no part of the dirty check.
TEST_F(AccountTest, ChangingOnlyThePositionWritesNothing) {
  auto cash = Fresh(cash_);
  cash->Position(9);
  cash->SetParentID(RootB());
  EXPECT_FALSE(cash->HasChanged());
  cash->Update();
  EXPECT_EQ(CLng(Column(cash_, "Position")), 0);
  EXPECT_EQ(CLng(Column(cash_, "ParentID")), assets_);
}

TEST_F(AccountTest, APositionReachesTheRowTogetherWithAListedField) {
  auto cash = Fresh(cash_);
  cash->Position(9);
  cash->Tags("bar");
  cash->Update();
  EXPECT_EQ(CLng(Column(cash_, "Position")), 9);
  EXPECT_EQ(CStr(Column(cash_, "Tags")), "bar");
}

TEST_F(AccountTest, EmptyOptionalFieldsAreStoredAsNull) {
  auto cash = Fresh(cash_);
  cash->Tags("x");
  cash->Update();
  cash->Tags("");
  cash->Update();
  EXPECT_TRUE(Column(cash_, "Tags").IsNull());
  EXPECT_TRUE(Column(cash_, "FCID").IsNull());
  EXPECT_TRUE(Column(cash_, "TaxID").IsNull());
}

// Deliberate: ParentID is written as a plain Long, so an updated root holds 0, not Null.
TEST_F(AccountTest, AnUpdatedClassRootHoldsParentIDZero) {
  auto root = Fresh(RootA());
  root->Name(Variant("Bilanz neu"));
  root->Update();
  const Variant parent = Column(RootA(), "ParentID");
  ASSERT_FALSE(parent.IsNull());
  EXPECT_EQ(CLng(parent), 0);
}

// Deliberate: the general ledger root selects the rows whose ParentID is Null,
// so a class root that has been updated (ParentID 0) drops out of its children.
TEST_F(AccountTest, AnUpdatedClassRootIsNoLongerAChildOfTheGeneralLedgerRoot) {
  ASSERT_EQ(Fresh(0)->Children().size(), 2u);
  auto root = Fresh(RootA());
  root->Name(Variant("Bilanz neu"));
  root->Update();
  auto children = Fresh(0)->Children();
  ASSERT_EQ(children.size(), 1u);
  EXPECT_EQ(CStr(children[0]->Code()), "B");
}

TEST_F(AccountTest, AStoreErrorReachesTheCallerWithItsNumberAndTheTransactionIsRolledBack) {
  Account account;
  account.SetParentID(assets_);
  account.Code(Variant("1000"));
  account.Name(Variant("Doppelt"));
  const Error error = ErrorOf([&] { account.Update(); });
  EXPECT_EQ(error.Number(), 3022);
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  EXPECT_EQ(RowCount("FROM Accounts WHERE Name = 'Doppelt'"), 0);
  EXPECT_NE(Fresh(cash_), nullptr);  // the shared table is usable after the failure
}

TEST_F(AccountTest, ARenameReplacesTheSearchNames) {
  Db().Execute("INSERT INTO AccountsIndex (ID, SearchName) VALUES (" + std::to_string(cash_) + ", '1000');");
  Db().Execute("INSERT INTO AccountsIndex (ID, SearchName) VALUES (" + std::to_string(cash_) + ", 'Kasse');");
  auto cash = Fresh(cash_);
  cash->Name(Variant("Bargeld"));
  cash->Update();
  EXPECT_EQ(IndexRows(cash_), 2);
  EXPECT_EQ(RowCount("FROM AccountsIndex WHERE SearchName = 'Bargeld'"), 1);
  EXPECT_EQ(RowCount("FROM AccountsIndex WHERE SearchName = 'Kasse'"), 0);
}

TEST_F(AccountTest, AChangeBesidesCodeAndNameLeavesTheSearchNames) {
  Db().Execute("INSERT INTO AccountsIndex (ID, SearchName) VALUES (" + std::to_string(cash_) + ", 'Kasse');");
  auto cash = Fresh(cash_);
  cash->Postfix("CHF");
  cash->Update();
  EXPECT_EQ(IndexRows(cash_), 1);
}

TEST_F(AccountTest, LoadRecordReadsEveryField) {
  Db().Execute(
      "UPDATE Accounts SET Position = 3, IsDebit = False, Budget = 12.5, ReferenceNr = 4, LiegenCode = 8, "
      "Tags = 't', PostFix = 'p', StandartTextDebit = 'd', StandartTextCredit = 'c', ActivateValuta = True, "
      "ActivateReference = True, FCID2 = 2, WorkedBalance = 1.5, WorkedOpeningBalance = 0.5 WHERE ID = " +
      std::to_string(cash_) + ";");
  auto cash = Fresh(cash_);
  EXPECT_EQ(cash->ID(), cash_);
  EXPECT_EQ(cash->ParentID(), assets_);
  EXPECT_EQ(cash->Position(), 3);
  EXPECT_EQ(cash->Class(), 1);
  EXPECT_TRUE(cash->IsGeneralLedger());
  EXPECT_FALSE(cash->IsDebit());
  EXPECT_EQ(cash->ReferenceNr(), 4);
  EXPECT_EQ(cash->LiegenCode(), 8);
  EXPECT_EQ(cash->Tags(), "t");
  EXPECT_EQ(cash->Postfix(), "p");
  EXPECT_EQ(cash->StandartTextDebit(), "d");
  EXPECT_EQ(cash->StandartTextCredit(), "c");
  EXPECT_TRUE(cash->ActivateValuta());
  EXPECT_TRUE(cash->ActivateReference());
  EXPECT_EQ(cash->FCID2(), 2);
  EXPECT_EQ(cash->WorkedBalance(), Currency::Parse("1.5").value());
  EXPECT_EQ(cash->WorkedOpeningBalance(), Currency::Parse("0.5").value());
  EXPECT_FALSE(cash->HasChanged());
  EXPECT_FALSE(cash->HasChangedBalances());
}

TEST_F(AccountTest, ANewAccountStartsEmptyWithItsSubaccounts) {
  Account account;
  EXPECT_EQ(account.ID(), 0);
  EXPECT_EQ(CStr(account.Code()), "");
  EXPECT_FALSE(account.IsSum());
  EXPECT_EQ(account.Balance(), Currency());
  EXPECT_NE(account.Subaccounts(), nullptr);
}

TEST_F(AccountTest, TheParentOfAClassRootIsTheGeneralLedgerRoot) {
  auto parent = Fresh(RootA())->Parent();
  ASSERT_NE(parent, nullptr);
  EXPECT_EQ(parent->ID(), 0);
  EXPECT_EQ(CStr(parent->Name()), "Finanzbuchhaltung");
  EXPECT_EQ(Fresh(cash_)->Parent()->ID(), assets_);
}

TEST_F(AccountTest, ChildrenAreTheSubaccountsInOrder) {
  InsertAccount(assets_, "1010", "Post");
  auto children = Fresh(assets_)->Children();
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(CStr(children[0]->Code()), "1000");
  EXPECT_EQ(CStr(children[1]->Code()), "1010");
}

TEST_F(AccountTest, TheCodeOfAnInsertedRowIsWrittenOnlyWithTheNewRow) {
  Db().Execute("UPDATE Accounts SET Code = Null WHERE ID = " + std::to_string(cash_) + ";");
  auto cash = Fresh(cash_);
  cash->Code(Variant("1001"));  // a stored account without a code may receive one ...
  cash->Update();
  EXPECT_TRUE(Column(cash_, "Code").IsNull());  // ... but an edit never writes the code
}

TEST_F(AccountTest, TheBudgetObjectNeedsTheBudgetLayer) {
  LinksGuard links;
  RegisteredAccountLinks().new_budget = nullptr;
  EXPECT_EQ(ErrorOf([&] { Fresh(cash_)->Budget(); }).Number(), 91);
}

TEST_F(AccountTest, AnUpdateOfARowThatVanishedWritesNothingAndRaisesNothing) {
  auto cash = Fresh(cash_);
  Db().Execute("DELETE FROM Accounts WHERE ID = " + std::to_string(cash_) + ";");
  cash->Name(Variant("Bargeld"));
  cash->Update();
  EXPECT_EQ(RowCount("FROM Accounts WHERE ID = " + std::to_string(cash_)), 0);
  EXPECT_EQ(cash->ID(), cash_);
}

TEST_F(AccountTest, ExecuteUpdateWritesWithoutATransactionOfItsOwn) {
  auto cash = Fresh(cash_);
  cash->Name(Variant("Bargeld"));
  cash->ExecuteUpdate();
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  EXPECT_EQ(CStr(Column(cash_, "Name")), "Bargeld");
  EXPECT_FALSE(cash->HasChanged());
}

TEST_F(AccountTest, ExecuteInsertBindsTheSubaccountsToTheNewID) {
  Account account;
  account.SetParentID(assets_);
  account.IsSum(true);
  account.Code(Variant("10"));
  account.ExecuteInsert();
  InsertAccount(account.ID(), "1001", "Kasse 2");
  EXPECT_EQ(account.Subaccounts()->Count(), 1);
}

}  // namespace
}  // namespace ldg

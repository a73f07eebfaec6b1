// The Accounts collection: lookups, creation under the placement rules, new
// client numbers, the search and the events.
#include "accounts/accounts.hpp"

#include <gtest/gtest.h>

#include <optional>

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "accounts/account_links.hpp"
#include "accounts/accounts_index.hpp"
#include "accounts/master_accounts.hpp"
#include "accounts/subaccounts.hpp"
#include "engine/subsystems.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::CollectionsTest;
using chart_testing::CountingYields;
using chart_testing::ErrorOf;
using chart_testing::LinksGuard;
using chart_testing::RecordingListener;

NewAccount Placed(int16_t relationship, const char* code, const char* name = nullptr) {
  NewAccount options;
  options.relationship = relationship;
  options.code = Variant(code);
  if (name != nullptr) options.name = Variant(name);
  return options;
}

class AccountsTest : public CollectionsTest {
 protected:
  void SetUp() override {
    CollectionsTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    cash_ = InsertAccount(assets_, "1000", "Kasse");
    master_ = MasterRow(assets_, "1100", "Debitoren");
    detail_ = DetailRow(master_, master_, "110001", "Kunde Muster");
  }

  int32_t assets_ = 0;
  int32_t cash_ = 0;
  int32_t master_ = 0;
  int32_t detail_ = 0;
};

// ---- StoredMasterID ----

TEST_F(AccountsTest, StoredMasterIDGivesWhatTheItemWouldHold) {
  Accounts& accounts = *engine_->Accounts();
  for (int32_t id : {cash_, master_, detail_, assets_, 0}) {
    EXPECT_EQ(accounts.StoredMasterID(id), accounts.Item(Variant(id))->MasterID()) << id;
  }
  EXPECT_EQ(accounts.StoredMasterID(detail_), master_);
  EXPECT_EQ(accounts.StoredMasterID(cash_), 0);
}

TEST_F(AccountsTest, StoredMasterIDOfNoAccountIsNothing) {
  Accounts& accounts = *engine_->Accounts();
  EXPECT_EQ(accounts.StoredMasterID(4711), std::nullopt);
  EXPECT_EQ(accounts.StoredMasterID(-1), std::nullopt);
}

// Building such an account links its currency or tax, which may fail: only the item can tell.
TEST_F(AccountsTest, StoredMasterIDOfAnAccountWithACurrencyOrTaxIsNothing) {
  Accounts& accounts = *engine_->Accounts();
  Db().Execute("UPDATE Accounts SET FCID = 3 WHERE ID = " + std::to_string(cash_) + ";");
  Db().Execute("UPDATE Accounts SET TaxID = 2 WHERE ID = " + std::to_string(assets_) + ";");
  EXPECT_EQ(accounts.StoredMasterID(cash_), std::nullopt);
  EXPECT_EQ(accounts.StoredMasterID(assets_), std::nullopt);
}

TEST_F(AccountsTest, OpeningADatabaseCreatesTheAccountsThatTheEngineWideStatePointsAt) {
  ASSERT_NE(engine_->Accounts(), nullptr);
  EXPECT_EQ(State().accounts, engine_->Accounts().get());
}

TEST_F(AccountsTest, ClosingTheDatabaseReleasesTheSharedHandles) {
  EXPECT_NE(SharedAccountHandles().accounts_table, nullptr);
  engine_->CloseDatabase();
  EXPECT_EQ(State().accounts, nullptr);
  EXPECT_EQ(SharedAccountHandles().accounts_table, nullptr);
  EXPECT_EQ(SharedAccountHandles().index_table, nullptr);
  EXPECT_EQ(SharedAccountHandles().delete_index_entry, nullptr);
}

// Deliberate: the grouped count of the root counts Null values and gives 0.
TEST_F(AccountsTest, ItemZeroIsTheGeneralLedgerRootWithTheTwoClassRootsAsChildren) {
  auto root = Accs().Item(Variant(int32_t{0}));
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->ID(), 0);
  EXPECT_EQ(root->ParentID(), 0);
  EXPECT_EQ(CStr(root->Name()), "Finanzbuchhaltung");
  EXPECT_EQ(CStr(root->Code()), "");
  EXPECT_TRUE(root->IsSum());
  EXPECT_TRUE(root->IsGeneralLedger());
  auto children = root->Children();
  ASSERT_EQ(children.size(), 2u);
  EXPECT_EQ(CStr(children[0]->Code()), "A");
  EXPECT_EQ(CStr(children[1]->Code()), "B");
  EXPECT_EQ(root->Subaccounts()->Count(), 0);
}

TEST_F(AccountsTest, ItemByIDReadsTheRow) {
  auto cash = Accs().Item(Variant(cash_));
  ASSERT_NE(cash, nullptr);
  EXPECT_EQ(CStr(cash->Code()), "1000");
  EXPECT_EQ(Accs().Item(Variant(int16_t{static_cast<int16_t>(cash_)}))->ID(), cash_);
}

TEST_F(AccountsTest, ItemGivesAFreshObjectAtEveryCall) {
  auto first = Accs().Item(Variant(cash_));
  auto second = Accs().Item(Variant(cash_));
  EXPECT_NE(first, second);
  first->Name(Variant("anders"));
  EXPECT_EQ(CStr(second->Name()), "Kasse");
}

TEST_F(AccountsTest, AnUnknownOrNegativeIDGivesNothing) {
  EXPECT_EQ(Accs().Item(Variant(int32_t{99999})), nullptr);
  EXPECT_EQ(Accs().Item(Variant(int32_t{-1})), nullptr);
}

TEST_F(AccountsTest, ATextOfCodeBlankAndNameIsLookedUpByItsFirstWordAlone) {
  auto cash = Accs().Item(Variant("  1000 Kasse (wird gelöscht)"));
  ASSERT_NE(cash, nullptr);
  EXPECT_EQ(cash->ID(), cash_);
}

TEST_F(AccountsTest, ItemExistsOfAMissingCodeIsFalseAndItemGivesNothing) {
  EXPECT_FALSE(CBool(Accs().ItemExists(Variant("9999"))));
  EXPECT_EQ(Accs().Item(Variant("9999")), nullptr);
  EXPECT_TRUE(CBool(Accs().ItemExists(Variant("1000"))));
}

TEST_F(AccountsTest, AnEmptyTextGivesNothing) { EXPECT_EQ(Accs().Item(Variant("   ")), nullptr); }

TEST_F(AccountsTest, ADoubleIsLookedUpAsACode) {
  const int32_t five = InsertAccount(assets_, "5", "Fünf");
  auto found = Accs().Item(Variant(double{5}));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->ID(), five);
}

TEST_F(AccountsTest, AnAccountObjectIsGivenBackAndNothingGivesNothing) {
  auto cash = Accs().Item(Variant(cash_));
  EXPECT_EQ(Accs().Item(Variant(std::static_pointer_cast<Object>(cash))), cash);
  EXPECT_EQ(Accs().Item(cash), cash);
  EXPECT_EQ(Accs().Item(Variant::Nothing()), nullptr);
}

TEST_F(AccountsTest, AFieldIsLookedUpByCodeOrByIDAfterItsType) {
  auto rows =
      Db().OpenRecordset("SELECT ID, Code, IsSum FROM Accounts WHERE ID = " + std::to_string(cash_) + ";",
                         store::dbOpenSnapshot);
  EXPECT_EQ(Accs().Item(rows->Fields().Item("Code"))->ID(), cash_);
  EXPECT_EQ(Accs().Item(rows->Fields().Item("ID"))->ID(), cash_);
  EXPECT_EQ(Accs().Item(rows->Fields().Item("IsSum")), nullptr);
  rows->Close();
}

TEST_F(AccountsTest, ALookupLeavesTheSharedTableOnItsPrimaryKey) {
  Accs().Item(Variant("1000"));
  Accs().Item(Variant(cash_));
  EXPECT_EQ(SharedAccountHandles().accounts_table->Index(), "PrimaryKey");
}

TEST_F(AccountsTest, RefreshReopensTheSharedTable) {
  Accs().Refresh();
  ASSERT_NE(SharedAccountHandles().accounts_table, nullptr);
  EXPECT_EQ(SharedAccountHandles().accounts_table->Index(), "PrimaryKey");
  EXPECT_EQ(Accs().Item(Variant(cash_))->ID(), cash_);
}

TEST_F(AccountsTest, AddAsAChildOfTheGeneralLedgerRootRaises1015) {
  const Error error = ErrorOf([&] { Accs().Add(0, Placed(lgrAccRelChild, "X")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F7));
  EXPECT_EQ(error.Description(),
            "Only the balance and the economic account can exists in the general ledger root.");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(AccountsTest, AddAsASiblingOfNothingRaises1016) {
  const Error error = ErrorOf([&] { Accs().Add(0, Placed(lgrAccRelLast, "X")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F8));
  EXPECT_EQ(error.Description(),
            "New account must have child relationship if related to general ledger root item.");
}

TEST_F(AccountsTest, AMissingRelationshipPlacesASiblingToo) {
  NewAccount options;
  options.code = Variant("X");
  EXPECT_EQ(ErrorOf([&] { Accs().Add(0, options); }).Number(), static_cast<int32_t>(0x800403F8));
}

TEST_F(AccountsTest, AddAsASiblingNextToAMasterRaises1010) {
  const Error error = ErrorOf([&] { Accs().Add(master_, Placed(lgrAccRelLast, "1101")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F2));
  EXPECT_EQ(error.Description(),
            "You can only use the child relationship for new accounts related to the master account.");
  EXPECT_EQ(IdOf("1101"), 0);
}

TEST_F(AccountsTest, AddAsAChildOfAMasterMakesADetailAccount) {
  auto detail = Accs().Add(master_, Placed(lgrAccRelChild, "110002", "Kunde Zwei"));
  EXPECT_FALSE(detail->IsGeneralLedger());
  EXPECT_EQ(detail->MasterID(), master_);
  EXPECT_EQ(detail->Kind(), lgrAccDetail);
  EXPECT_EQ(CLng(Column(detail->ID(), "MasterID")), master_);
  EXPECT_FALSE(CBool(Column(detail->ID(), "IsGeneralLedger")));
}

TEST_F(AccountsTest, AddAsASiblingOfADetailAccountStaysInTheMastersTree) {
  auto detail = Accs().Add(detail_, Placed(lgrAccRelNext, "110003"));
  EXPECT_EQ(detail->ParentID(), master_);
  EXPECT_EQ(detail->MasterID(), master_);
  EXPECT_FALSE(detail->IsGeneralLedger());
}

TEST_F(AccountsTest, AddOfASumBelowAMasterRaises1009) {
  NewAccount options = Placed(lgrAccRelChild, "1109");
  options.is_sum = true;
  const Error error = ErrorOf([&] { Accs().Add(master_, options); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F1));
  EXPECT_EQ(error.Description(), "Invalid subaccount type. Only accounts allowed.");
}

TEST_F(AccountsTest, AddOfAMasterNextToADetailAccountRaises1009) {
  NewAccount options = Placed(lgrAccRelLast, "1109");
  options.is_master = true;
  EXPECT_EQ(ErrorOf([&] { Accs().Add(detail_, options); }).Number(), static_cast<int32_t>(0x800403F1));
}

TEST_F(AccountsTest, AddOfASumThatIsAMasterRaises1008WithoutText) {
  NewAccount options = Placed(lgrAccRelChild, "19");
  options.is_sum = true;
  options.is_master = true;
  const Error error = ErrorOf([&] { Accs().Add(assets_, options); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F0));
  EXPECT_EQ(error.Description(), "");
}

TEST_F(AccountsTest, AddBelowAPlainAccountRaises1002) {
  const Error error = ErrorOf([&] { Accs().Add(cash_, Placed(lgrAccRelChild, "1001")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403EA));
  EXPECT_EQ(error.Description(),
            "The parent of an account, master account or sum in general ledger must be a sum.");
}

TEST_F(AccountsTest, AddWithAnUnknownRelativeFailsWithTheObjectError) {
  EXPECT_EQ(ErrorOf([&] { Accs().Add(99999, Placed(lgrAccRelChild, "1001")); }).Number(), 91);
}

TEST_F(AccountsTest, AChildTakesClassMasterIDAndDebitSideFromItsParent) {
  const int32_t income = InsertSum(RootB(), "3", "Ertrag");
  auto sales = Accs().Add(income, Placed(lgrAccRelChild, "3000", "Verkauf"));
  EXPECT_EQ(sales->ParentID(), income);
  EXPECT_EQ(sales->Class(), 2);
  EXPECT_EQ(sales->MasterID(), 0);
  EXPECT_TRUE(sales->IsGeneralLedger());
  EXPECT_TRUE(sales->IsDebit());  // the fixture's sums are debit sums
  EXPECT_EQ(CLng(Column(sales->ID(), "Class")), 2);
  EXPECT_EQ(CStr(Column(sales->ID(), "Name")), "Verkauf");
}

TEST_F(AccountsTest, AGivenDebitSideWinsOverTheParents) {
  NewAccount options = Placed(lgrAccRelChild, "1010");
  options.is_debit = false;
  EXPECT_FALSE(Accs().Add(assets_, options)->IsDebit());
}

TEST_F(AccountsTest, TheOpeningAndCurrencyArgumentsAreIgnored) {
  NewAccount options = Placed(lgrAccRelChild, "1010");
  options.opening_value = Currency::FromUnits(500);
  options.value = Currency::FromUnits(7);
  options.fc_id = 3;
  options.tax_can_choose = true;
  options.year_budget = Currency::FromUnits(9);
  auto account = Accs().Add(assets_, options);
  EXPECT_EQ(account->OpeningBalance(), Currency());
  EXPECT_EQ(account->Balance(), Currency());
  EXPECT_EQ(account->FCID(), 0);
  EXPECT_FALSE(account->TaxCanChoose());
  EXPECT_EQ(CCur(Column(account->ID(), "OpeningBalance")), Currency());
}

TEST_F(AccountsTest, TheFlagsAndLiegenCodeAreTakenAsGiven) {
  NewAccount options = Placed(lgrAccRelChild, "1010");
  options.activate_valuta = true;
  options.activate_reference = true;
  options.liegen_code = 42;
  auto account = Accs().Add(assets_, options);
  EXPECT_TRUE(CBool(Column(account->ID(), "ActivateValuta")));
  EXPECT_TRUE(CBool(Column(account->ID(), "ActivateReference")));
  EXPECT_EQ(CLng(Column(account->ID(), "LiegenCode")), 42);
}

TEST_F(AccountsTest, AddWithATaxFailsWhileNoTaxesAreLinked) {
  LinksGuard links;
  RegisteredAccountLinks().tax_item = nullptr;
  NewAccount options = Placed(lgrAccRelChild, "1010");
  options.tax_id = 4;
  EXPECT_EQ(ErrorOf([&] { Accs().Add(assets_, options); }).Number(), 91);
  EXPECT_EQ(IdOf("1010"), 0);
}

TEST_F(AccountsTest, AChildAddedWithTheChildRelationshipHasPositionZeroAndSortsFirst) {
  Db().Execute("UPDATE Accounts SET Position = 1 WHERE ParentID = " + std::to_string(assets_) + ";");
  auto account = Accs().Add(assets_, Placed(lgrAccRelChild, "1900"));
  EXPECT_EQ(account->Position(), 0);
  EXPECT_EQ(CLng(Column(account->ID(), "Position")), 0);
  auto children = Accs().Item(Variant(assets_))->Children();
  ASSERT_FALSE(children.empty());
  EXPECT_EQ(CStr(children[0]->Code()), "1900");
}

TEST_F(AccountsTest, ALastSiblingIsNumberedBehindTheOthers) {
  auto account = Accs().Add(cash_, Placed(lgrAccRelLast, "1010"));
  EXPECT_EQ(account->ParentID(), assets_);
  EXPECT_EQ(account->Position(), 3);  // two siblings: 1000 and the master 1100
  EXPECT_EQ(CLng(Column(account->ID(), "Position")), 3);
}

TEST_F(AccountsTest, APreviousSiblingTakesThePlaceOfItsRelative) {
  const int32_t bank = InsertAccount(assets_, "1200", "Bank");  // children of "1": 1000, 1100, 1200
  EXPECT_EQ(Accs().Add(bank, Placed(lgrAccRelPrevious, "1150"))->Position(), 3);
}

TEST_F(AccountsTest, ANextSiblingTakesThePlaceBehindItsRelative) {
  EXPECT_EQ(Accs().Add(cash_, Placed(lgrAccRelNext, "1005"))->Position(), 2);
}

TEST_F(AccountsTest, AnAutomaticSiblingHasPositionZero) {
  EXPECT_EQ(Accs().Add(cash_, Placed(lgrAccRelAutomatic, "1005"))->Position(), 0);
  EXPECT_EQ(Accs().Add(cash_, Placed(17, "1006"))->Position(), 0);
}

// Deliberate: the siblings' new numbers are set on objects read afresh and never stored.
TEST_F(AccountsTest, TheSiblingsKeepTheirStoredNumbersWhenOneIsPlacedBeforeThem) {
  Db().Execute("UPDATE Accounts SET Position = 1 WHERE ID = " + std::to_string(cash_) + ";");
  Db().Execute("UPDATE Accounts SET Position = 2 WHERE ID = " + std::to_string(master_) + ";");
  Accs().Add(cash_, Placed(lgrAccRelPrevious, "0999"));
  EXPECT_EQ(CLng(Column(cash_, "Position")), 1);
  EXPECT_EQ(CLng(Column(master_, "Position")), 2);
}

// Deliberate: a sibling of a class root passes every check and hangs at ParentID 0 with Class 0.
TEST_F(AccountsTest, AddAsASiblingOfAClassRootStoresParentIDZeroAndClassZero) {
  auto account = Accs().Add(RootA(), Placed(lgrAccRelLast, "X", "Neben"));
  ASSERT_NE(account->ID(), 0);
  const Variant parent = Column(account->ID(), "ParentID");
  ASSERT_FALSE(parent.IsNull());
  EXPECT_EQ(CLng(parent), 0);
  EXPECT_EQ(CLng(Column(account->ID(), "Class")), 0);
  EXPECT_EQ(account->Class(), 0);
}

TEST_F(AccountsTest, AddingAMasterStoresItsOwnIDAndReloadsTheMasterAccounts) {
  NewAccount options = Placed(lgrAccRelChild, "2000", "Kreditoren");
  options.is_master = true;
  EXPECT_EQ(Masters().Count(), 0);  // read at open, before the fixture's master was written
  auto master = Accs().Add(assets_, options);
  EXPECT_EQ(master->MasterID(), master->ID());
  EXPECT_EQ(CLng(Column(master->ID(), "MasterID")), master->ID());
  EXPECT_TRUE(master->IsGeneralLedger());
  EXPECT_EQ(Masters().Count(), 2);
}

TEST_F(AccountsTest, AddRaisesCreatedOnceWithTheNewAccount) {
  RecordingListener listener;
  Accs().AddListener(&listener);
  auto account = Accs().Add(assets_, Placed(lgrAccRelChild, "1010"));
  Accs().RemoveListener(&listener);
  ASSERT_EQ(listener.events, std::vector<std::string>{"Created"});
  EXPECT_EQ(listener.accounts[0], account);
}

TEST_F(AccountsTest, AFailedAddRaisesNoEventAndLeavesNoRow) {
  RecordingListener listener;
  Accs().AddListener(&listener);
  EXPECT_EQ(ErrorOf([&] { Accs().Add(assets_, Placed(lgrAccRelChild, "1000")); }).Number(), 3022);
  Accs().RemoveListener(&listener);
  EXPECT_TRUE(listener.events.empty());
  EXPECT_EQ(RowCount("FROM Accounts WHERE Code = '1000'"), 1);
}

TEST_F(AccountsTest, AnUpdateOfAnAccountSignalsNothing) {
  RecordingListener listener;
  Accs().AddListener(&listener);
  auto cash = Accs().Item(Variant(cash_));
  cash->Name(Variant("Bargeld"));
  cash->Update();
  Accs().RemoveListener(&listener);
  EXPECT_TRUE(listener.events.empty());
}

TEST_F(AccountsTest, SignalUpdatedAndSignalCreatedReachEveryListenerInOrder) {
  RecordingListener first;
  RecordingListener second;
  Accs().AddListener(&first);
  Accs().AddListener(&second);
  auto cash = Accs().Item(Variant(cash_));
  Accs().SignalUpdated(cash);
  Accs().SignalCreated(cash);
  Accs().RemoveListener(&first);
  Accs().SignalUpdated(cash);
  Accs().RemoveListener(&second);
  EXPECT_EQ(first.events, (std::vector<std::string>{"Updated", "Created"}));
  EXPECT_EQ(second.events, (std::vector<std::string>{"Updated", "Created", "Updated"}));
}

TEST_F(AccountsTest, SignalDeletedFetchesTheAccountAndYieldsFirst) {
  CountingYields hooks;
  State().hooks = &hooks;
  RecordingListener listener;
  Accs().AddListener(&listener);
  Accs().SignalDeleted(cash_);
  Accs().SignalDeleted(99999);
  Accs().RemoveListener(&listener);
  ASSERT_EQ(listener.events, (std::vector<std::string>{"Deleted", "Deleted"}));
  ASSERT_NE(listener.accounts[0], nullptr);
  EXPECT_EQ(listener.accounts[0]->ID(), cash_);
  EXPECT_EQ(listener.accounts[1], nullptr);
  EXPECT_EQ(hooks.yields, 2);
}

TEST_F(AccountsTest, NewClientCodeWithoutAnEightDigitCodeIsOnePadded) {
  EXPECT_EQ(Accs().NewClientID(), 1);
  EXPECT_EQ(Accs().NewClientCode(), "00000001");
}

TEST_F(AccountsTest, NewClientIDFollowsTheHighestCodeWithEightLeadingDigits) {
  InsertAccount(master_, "10000005", "Kunde A");
  InsertAccount(master_, "20000001x", "Kunde B");
  InsertAccount(master_, "9999999", "Sieben Stellen");
  InsertAccount(master_, "3000000y", "Keine acht Ziffern");
  EXPECT_EQ(Accs().NewClientID(), 20000002);
  EXPECT_EQ(Accs().NewClientCode(), "20000002");
}

TEST_F(AccountsTest, SearchLooksInTheGeneralLedgerAndTheDetailAccountsByDefault) {
  engine_->DoAccountsIndex();
  auto found = Accs().Search(Variant("Kas"));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->Count(lgiSZGeneralLedger), 1);
  EXPECT_EQ(found->Count(lgiSZDetailAccounts), 0);
  EXPECT_EQ(ErrorOf([&] { found->Count(lgiSZAccountGroups); }).Number(), 91);
}

TEST_F(AccountsTest, SearchTakesTheZonesGiven) {
  engine_->DoAccountsIndex();
  auto found = Accs().Search(Variant("Kunde"), Variant(int16_t{lgiSZDetailAccounts}));
  EXPECT_EQ(found->Count(lgiSZDetailAccounts), 1);
  EXPECT_EQ(ErrorOf([&] { found->Count(lgiSZGeneralLedger); }).Number(), 91);
}

TEST_F(AccountsTest, TheChartRegistersItsCollectionsWithTheEngine) {
  EXPECT_TRUE(RegisteredSubsystems().create_accounts);
  EXPECT_TRUE(RegisteredSubsystems().create_master_accounts);
  EXPECT_TRUE(RegisteredSubsystems().release_shared_scratch_objects);
}

TEST_F(AccountsTest, ReleasingTheScratchObjectsDropsTheBalanceViewAndDeletesItsQuery) {
  AccountHandles& handles = SharedAccountHandles();
  Db().CreateQueryDef("4625000000000temp", "SELECT ID FROM Accounts;");
  handles.temp_query_name = "4625000000000temp";
  handles.balance_view = Db().OpenRecordset("viewAccountsRecursive", store::dbOpenSnapshot);
  handles.balance_view_is_plain = false;
  RegisteredSubsystems().release_shared_scratch_objects();
  EXPECT_EQ(handles.balance_view, nullptr);
  EXPECT_TRUE(handles.balance_view_is_plain);
  EXPECT_EQ(handles.temp_query_name, "");
  EXPECT_FALSE(Db().QueryDefs().Contains("4625000000000temp"));
  EXPECT_NE(handles.accounts_table, nullptr);  // the shared table stays open
}

TEST_F(AccountsTest, ReleasingTheBalanceViewIgnoresAScratchQueryThatIsGone) {
  SharedAccountHandles().temp_query_name = "1temp";
  SharedAccountHandles().ReleaseBalanceView();
  EXPECT_EQ(SharedAccountHandles().temp_query_name, "");
}

}  // namespace
}  // namespace ldg

// The balances of an account: guarded setters, the climb of a posting to the
// master, sums over the balance view, and the balance at a date.
#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "accounts/account.hpp"
#include "accounts/account_links.hpp"
#include "accounts/recalc_balances.hpp"
#include "engine/engine_state.hpp"
#include "store/database.hpp"
#include "store/workspace.hpp"
#include "tests/accounts/balance_fixture.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using balance_testing::Amount;
using balance_testing::BalanceTest;
using balance_testing::Date;
using balance_testing::Describe;
using balance_testing::ErrorOf;
using balance_testing::ExpectedMessage;

using AccountBalancesTest = BalanceTest;

constexpr const char* kReadOnlyForSums = "This property is read only for sums of accounts or master accounts";
constexpr const char* kNotForSums =
    "This property or method is not supported for sums of accounts or master accounts!";
constexpr const char* kMarked = "Account marked for deletion on cloture: cannot change balance";
constexpr const char* kOutsideYear =
    "Account can't return balance for dates outside the opened business year!";
constexpr const char* kBadList =
    "Optional parameter JournalToExclude does't contain a valid JournalID-List. A valid-List contains "
    "JournalsID to be exclude of the balance, separated with semicolons.";

// ---------------------------------------------------------------- setters and guards

TEST_F(AccountBalancesTest, LetOpeningBalanceShiftsBalanceByTheDifference) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("100"), Amount("150"));
  auto account = Load(id);
  account->OpeningBalance(Amount("120"));
  EXPECT_EQ(account->Balance(), Amount("170"));
  EXPECT_EQ(account->OpeningBalance(), Amount("120"));
  EXPECT_EQ(StoredCurrency(id, "Balance"), Amount("150"));  // nothing is stored before Update
  account->Update();
  EXPECT_EQ(StoredCurrency(id, "Balance"), Amount("170"));
  EXPECT_EQ(StoredCurrency(id, "OpeningBalance"), Amount("120"));
}

TEST_F(AccountBalancesTest, LetOpeningBalanceOnASumRaises1189) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  EXPECT_EQ(Describe(ErrorOf([&] { sum->OpeningBalance(Amount("1")); })),
            ExpectedMessage(1189, kReadOnlyForSums));
}

TEST_F(AccountBalancesTest, LetOpeningBalanceOnAMasterRaises1189) {
  auto master = Load(InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100"));
  EXPECT_EQ(Describe(ErrorOf([&] { master->OpeningBalance(Amount("1")); })),
            ExpectedMessage(1189, kReadOnlyForSums));
}

TEST_F(AccountBalancesTest, LetWorkedOpeningBalanceShiftsWorkedBalanceOnly) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("100"), Amount("150"));
  auto account = Load(id);
  account->WorkedBalance(Amount("40"));
  account->WorkedOpeningBalance(Amount("10"));
  EXPECT_EQ(account->WorkedBalance(), Amount("50"));
  EXPECT_EQ(account->WorkedOpeningBalance(), Amount("10"));
  EXPECT_EQ(account->Balance(), Amount("150"));
}

TEST_F(AccountBalancesTest, LetWorkedOpeningBalanceOnASumRaises1189) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  EXPECT_EQ(Describe(ErrorOf([&] { sum->WorkedOpeningBalance(Amount("1")); })),
            ExpectedMessage(1189, kReadOnlyForSums));
}

TEST_F(AccountBalancesTest, LetOpeningBalanceOnAMarkedAccountRaises1234) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  MarkRow(id);
  auto account = Load(id);
  EXPECT_EQ(Describe(ErrorOf([&] { account->OpeningBalance(Amount("1")); })), ExpectedMessage(1234, kMarked));
  EXPECT_EQ(Describe(ErrorOf([&] { account->WorkedOpeningBalance(Amount("1")); })),
            ExpectedMessage(1234, kMarked));
  EXPECT_EQ(Describe(ErrorOf([&] { account->WorkedBalance(Amount("1")); })), ExpectedMessage(1234, kMarked));
  EXPECT_EQ(account->Balance(), Amount("0"));
}

TEST_F(AccountBalancesTest, APostingOnAMarkedAccountRaises1234WithTheGermanTextCodeAndName) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  MarkRow(id);
  auto account = Load(id);
  account->ReloadBalances();
  EXPECT_EQ(Describe(ErrorOf([&] { account->SetBalance(Amount("5")); })),
            ExpectedMessage(1234,
                            "Konto '1000 Konto 1000' wird beim Abschluss gelöscht. Saldo kann nicht geändert "
                            "werden."));
  EXPECT_EQ(account->Balance(), Amount("0"));
}

// The year test compares the status text with the number 3 and never fires (deliberate).
TEST_F(AccountBalancesTest, TheYearTestNeverFiresEvenInAnArchivedYear) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("10"), Amount("10"));
  State().year_status_id = 3;
  EXPECT_FALSE(engine_->YearStatus() == Variant(int16_t{3}));
  auto account = Load(id);
  account->OpeningBalance(Amount("20"));
  account->WorkedBalance(Amount("1"));
  account->SetBalance(Amount("30"));
  EXPECT_EQ(account->Balance(), Amount("30"));
  EXPECT_EQ(account->OpeningBalance(), Amount("20"));
}

TEST_F(AccountBalancesTest, SetChildrensBalanceOnAnAccountWithoutMasterRaisesInternalError) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->ChildrensBalance(Amount("1")); })),
            ExpectedMessage(1000, "Internal error"));
}

TEST_F(AccountBalancesTest, SetChildrensBalanceOnAMarkedDetailRaises1234) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100");
  const int32_t detail = InsertDetail(master, master, "D1");
  MarkRow(detail);
  auto account = Load(detail);
  EXPECT_EQ(Describe(ErrorOf([&] { account->ChildrensBalance(Amount("1")); })),
            ExpectedMessage(1234, kMarked));
}

TEST_F(AccountBalancesTest, LetFCOpeningBalanceShiftsFCBalanceWithoutGuards) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  SetColumn(id, "FCOpeningBalance", "5");
  SetColumn(id, "FCBalance", "25");
  MarkRow(id);
  auto account = Load(id);
  account->FCOpeningBalance(Amount("8"));
  EXPECT_EQ(account->FCBalance(), Amount("28"));
  EXPECT_EQ(account->FCOpeningBalance(), Amount("8"));
}

TEST_F(AccountBalancesTest, LetFCOpeningBalanceOnASumRaises1188) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  EXPECT_EQ(Describe(ErrorOf([&] { sum->FCOpeningBalance(Amount("1")); })),
            ExpectedMessage(1188, kNotForSums));
}

TEST_F(AccountBalancesTest, FCBalanceOfASumIsZeroAndRaisesNothing) {
  const int32_t id = InsertSum(RootA(), "1", "Aktiven");
  SetColumn(id, "FCBalance", "12");
  SetColumn(id, "FCOpeningBalance", "3");
  auto sum = Load(id);
  EXPECT_EQ(sum->FCBalance(), Amount("0"));
  EXPECT_EQ(sum->FCOpeningBalance(), Amount("0"));
}

TEST_F(AccountBalancesTest, FCBalanceOfAMasterIsZero) {
  const int32_t id = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100");
  SetColumn(id, "FCBalance", "12");
  EXPECT_EQ(Load(id)->FCBalance(), Amount("0"));
}

TEST_F(AccountBalancesTest, FCBalanceAtDateOfASumRaises1188) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  EXPECT_EQ(Describe(ErrorOf([&] { sum->FCBalanceAtDate(Date(2026, 5, 1)); })),
            ExpectedMessage(1188, kNotForSums));
}

// ---------------------------------------------------------------- reload and the climb to the master

TEST_F(AccountBalancesTest, ReloadBalancesLetsTheRowWinOverTheObject) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", {}, Amount("10"));
  auto stale = Load(id);
  SetColumn(id, "Balance", "40");
  SetColumn(id, "FCBalance", "4");
  stale->ReloadBalances();
  EXPECT_EQ(stale->Balance(), Amount("40"));
  EXPECT_EQ(stale->FCBalance(), Amount("4"));
  EXPECT_FALSE(stale->HasChangedBalances());
}

TEST_F(AccountBalancesTest, ReloadBalancesTakesWorkedBalanceIntoTheStoredCopyOnly) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  auto account = Load(id);
  SetColumn(id, "WorkedBalance", "7");
  account->ReloadBalances();
  EXPECT_EQ(account->WorkedBalance(), Amount("0"));
  EXPECT_TRUE(account->HasChangedBalances());
  account->Update();
  EXPECT_EQ(StoredCurrency(id, "WorkedBalance"), Amount("0"));
}

TEST_F(AccountBalancesTest, APostingOnADetailTwoLevelsBelowAMasterRaisesItsParentAndTheMaster) {
  const int32_t sum = InsertSum(RootA(), "1", "Aktiven");
  const int32_t master = InsertMaster(sum, "1100", Amount("5"));
  const int32_t middle = InsertDetail(master, master, "D1", {}, Amount("5"));
  const int32_t leaf = InsertDetail(middle, master, "D11");
  Post(leaf, Amount("100"));
  EXPECT_EQ(StoredCurrency(leaf, "Balance"), Amount("100"));
  EXPECT_EQ(StoredCurrency(middle, "ChildrensBalance"), Amount("100"));
  EXPECT_EQ(StoredCurrency(middle, "Balance"), Amount("5"));
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("105"));
  EXPECT_EQ(StoredCurrency(sum, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(sum, "Balance"), Amount("0"));
}

TEST_F(AccountBalancesTest, APostingOnAPlainAccountClimbsNowhere) {
  const int32_t sum = InsertSum(RootA(), "1", "Aktiven");
  const int32_t id = InsertPlain(sum, "1000");
  Post(id, Amount("-30.5"));
  EXPECT_EQ(StoredCurrency(id, "Balance"), Amount("-30.5"));
  EXPECT_EQ(StoredCurrency(id, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(sum, "ChildrensBalance"), Amount("0"));
}

TEST_F(AccountBalancesTest, APostingOnAnAccountWhoseParentRowIsGoneRaises91) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  SetColumn(id, "ParentID", "4711");
  const Error error = ErrorOf([&] { Post(id, Amount("1")); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
  EXPECT_EQ(StoredCurrency(id, "Balance"), Amount("0"));
}

// The parent is built as an account, so a currency it can't link stops the posting.
TEST_F(AccountBalancesTest, APostingBelowASumWithACurrencyFailsWhileNoCurrenciesAreLinked) {
  const int32_t sum = InsertSum(RootA(), "1", "Aktiven");
  const int32_t id = InsertPlain(sum, "1000");
  chart_testing::LinksGuard links;
  RegisteredAccountLinks().forein_currency_item = nullptr;
  SetColumn(sum, "FCID", "3");
  const Error error = ErrorOf([&] { Post(id, Amount("1")); });
  EXPECT_EQ(error.Number(), 91);
  EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
  EXPECT_EQ(StoredCurrency(id, "Balance"), Amount("0"));
}

TEST_F(AccountBalancesTest, TheForeignBalanceIsNotPropagated) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100");
  const int32_t detail = InsertDetail(master, master, "D1");
  auto account = Load(detail);
  account->ReloadBalances();
  account->SetFCBalance(Amount("9"));
  account->Update();
  EXPECT_EQ(StoredCurrency(detail, "FCBalance"), Amount("9"));
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(master, "FCBalance"), Amount("0"));
}

TEST_F(AccountBalancesTest, APostingUnderAMarkedMasterFailsAtTheMaster) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100");
  const int32_t detail = InsertDetail(master, master, "D1");
  MarkRow(master);
  EXPECT_EQ(Describe(ErrorOf([&] { Post(detail, Amount("1")); })), ExpectedMessage(1234, kMarked));
  EXPECT_EQ(StoredCurrency(detail, "Balance"), Amount("0"));  // Update rolled back
  EXPECT_EQ(StoredCurrency(master, "ChildrensBalance"), Amount("0"));
}

// ---------------------------------------------------------------- BalanceWithChildrens and the tree sum

TEST_F(AccountBalancesTest, BalanceWithChildrensOfAPlainAccountIsItsBalance) {
  const int32_t id = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", {}, Amount("12"));
  SetColumn(id, "ChildrensBalance", "99");
  EXPECT_EQ(Load(id)->BalanceWithChildrens(), Amount("12"));
}

TEST_F(AccountBalancesTest, BalanceWithChildrensOfADetailAddsChildrensBalance) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100", Amount("30"));
  const int32_t detail = InsertDetail(master, master, "D1", {}, Amount("4"), Amount("26"));
  EXPECT_EQ(Load(detail)->BalanceWithChildrens(), Amount("30"));
  EXPECT_EQ(Load(master)->BalanceWithChildrens(), Amount("30"));
}

TEST_F(AccountBalancesTest, BalanceWithChildrensOfASumAddsItsTree) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertSum(assets, "10", "Flüssige Mittel");
  InsertPlain(cash, "1000", {}, Amount("100"));
  InsertPlain(cash, "1010", {}, Amount("-20.25"));
  InsertPlain(assets, "1500", {}, Amount("7"));
  const int32_t master = InsertMaster(assets, "1100", Amount("50"));
  InsertDetail(master, master, "D1", {}, Amount("50"));
  EXPECT_EQ(Load(cash)->BalanceWithChildrens(), Amount("79.75"));
  EXPECT_EQ(Load(assets)->BalanceWithChildrens(), Amount("136.75"));
  EXPECT_EQ(Load(RootA())->BalanceWithChildrens(), Amount("136.75"));
}

TEST_F(AccountBalancesTest, BalanceWithChildrensOfASumAddsItsOwnBalance) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  InsertPlain(assets, "1000", {}, Amount("100"));
  SetColumn(assets, "Balance", "3");
  auto sum = Load(assets);
  EXPECT_EQ(sum->Balance(), Amount("3"));
  EXPECT_EQ(sum->BalanceWithChildrens(), Amount("103"));
}

// A sum adds its own Balance once per master child, and a master's tree counts
// only the ChildrensBalance of its details (deliberate).
TEST_F(AccountBalancesTest, TheTreeSumAddsTheParentsBalanceOncePerMasterChild) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  InsertMaster(assets, "1100", Amount("10"));
  InsertMaster(assets, "1200", Amount("20"));
  SetColumn(assets, "Balance", "1");
  // 10 + 1 + 20 + 1 from the tree, + 1 of the sum itself.
  EXPECT_EQ(Load(assets)->BalanceWithChildrens(), Amount("33"));
}

TEST_F(AccountBalancesTest, TheTreeSumOfAMasterLeavesOutTheBalanceOfItsDetails) {
  const int32_t master = InsertMaster(InsertSum(RootA(), "1", "Aktiven"), "1100", Amount("60"));
  const int32_t d1 = InsertDetail(master, master, "D1", {}, Amount("10"), Amount("40"));
  InsertDetail(d1, master, "D11", {}, Amount("40"));
  InsertDetail(master, master, "D2", {}, Amount("10"));
  EXPECT_EQ(Load(master)->BalanceAtDate(Date(2026, 6, 30)), Amount("40"));
}

// ---------------------------------------------------------------- the balance view

bool IsScratchName(const std::string& name) {
  if (name.size() <= 4 || name.substr(name.size() - 4) != "temp") return false;
  for (size_t k = 0; k + 4 < name.size(); ++k) {
    if (!std::isdigit(static_cast<unsigned char>(name[k]))) return false;
  }
  return true;
}

TEST_F(AccountBalancesTest, ADatedViewIsAScratchQueryNamedByTheClock) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  sum->CreateViews(Variant(Date(2026, 3, 1)));
  const std::string name = Handles().temp_query_name;
  EXPECT_TRUE(IsScratchName(name)) << name;
  EXPECT_GT(name.size(), 18u);
  EXPECT_TRUE(Db().QueryDefs().Contains(name));
  EXPECT_FALSE(Handles().balance_view_is_plain);
  EXPECT_EQ(Db().QueryDefs().Item(name)->SQL(),
            "SELECT Movements.AccountID, Sum(Movements.Amount) AS [SumOfAmount] FROM BookEntries INNER JOIN "
            "Movements ON BookEntries.ID = Movements.EntryID WHERE ((BookEntries.Date)<=#3/1/2026#) GROUP BY "
            "Movements.AccountID;");
}

TEST_F(AccountBalancesTest, TheScratchQueryIsDeletedAtTheNextChangeOfView) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  sum->CreateViews(Variant(Date(2026, 3, 1)));
  const std::string name = Handles().temp_query_name;
  sum->CreateViews();
  EXPECT_FALSE(Db().QueryDefs().Contains(name));
  EXPECT_EQ(Handles().temp_query_name, "");
  EXPECT_TRUE(Handles().balance_view_is_plain);
}

TEST_F(AccountBalancesTest, ADatedViewWithAListJoinsTheConditions) {
  auto sum = Load(InsertSum(RootA(), "1", "Aktiven"));
  sum->CreateViews(Variant(Date(2026, 12, 31)), Variant("1,7"));
  EXPECT_EQ(Db().QueryDefs().Item(Handles().temp_query_name)->SQL(),
            "SELECT Movements.AccountID, Sum(Movements.Amount) AS [SumOfAmount] FROM BookEntries INNER JOIN "
            "Movements ON BookEntries.ID = Movements.EntryID WHERE ((BookEntries.Date)<=#12/31/2026# AND "
            "(BookEntries.JournalID) Not In (1,7)) GROUP BY Movements.AccountID;");
}

// The remembered arguments live in the object, the view doesn't: a fresh object
// without arguments reuses the dated view another object left (deliberate).
TEST_F(AccountBalancesTest, AFreshObjectWithoutArgumentsReusesTheDatedViewOfAnother) {
  const int32_t journal = AddJournal("Hauptjournal 2");
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertPlain(assets, "1000", {}, Amount("300"));
  InsertMovementOn(journal, Date(2026, 2, 1), cash, Amount("100"));
  InsertMovementOn(journal, Date(2026, 8, 1), cash, Amount("200"));
  EXPECT_EQ(Load(assets)->BalanceAtDate(Date(2026, 3, 1)), Amount("100"));
  EXPECT_EQ(Load(assets)->BalanceWithChildrens(), Amount("100"));
  // The same object asked again without a date builds the plain view.
  auto sum = Load(assets);
  sum->BalanceAtDate(Date(2026, 3, 1));
  EXPECT_EQ(sum->BalanceWithChildrens(), Amount("300"));
  EXPECT_EQ(sum->BalanceAtDate(Date(2026, 3, 1)), Amount("100"));
}

TEST_F(AccountBalancesTest, ASumWithACommaListLeavesThoseJournalsOut) {
  const int32_t j2 = AddJournal("Zwei");
  const int32_t j3 = AddJournal("Drei");
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertPlain(assets, "1000", Amount("1"));
  InsertMovementOn(1, Date(2026, 2, 1), cash, Amount("10"));
  InsertMovementOn(j2, Date(2026, 2, 1), cash, Amount("20"));
  InsertMovementOn(j3, Date(2026, 2, 1), cash, Amount("40"));
  const std::string list = std::to_string(j2) + "," + std::to_string(j3);
  EXPECT_EQ(Load(assets)->BalanceAtDate(Date(2026, 2, 1), Variant(list)), Amount("11"));
}

// The list goes into the dated view's statement as it stands, so a sum wants
// commas where an account wants semicolons (deliberate).
TEST_F(AccountBalancesTest, ASumWithASemicolonListFailsInTheStore) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  InsertPlain(assets, "1000", Amount("1"));
  const Error error = ErrorOf([&] { Load(assets)->BalanceAtDate(Date(2026, 2, 1), Variant("1;2")); });
  EXPECT_EQ(error.Number(), 3075) << error.Description();
}

// ---------------------------------------------------------------- the balance at a date

TEST_F(AccountBalancesTest, BalanceAtDateOnTheDayBeforeTheYearIsTheOpeningBalanceWithoutAQuery) {
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("250"), Amount("300"));
  InsertMovementOn(1, Date(2026, 1, 1), cash, Amount("50"));
  // Any use of the query would fail from here on.
  const auto saved = Handles().balance_at_date;
  Handles().balance_at_date = Db().CreateQueryDef(
      "", "PARAMETERS AccountID Long, [Date] DateTime; SELECT NoSuchColumn FROM NoSuchTable;");
  auto account = Load(cash);
  EXPECT_EQ(account->BalanceAtDate(Date(2025, 12, 31)), Amount("250"));
  EXPECT_EQ(account->FCBalanceAtDate(Date(2025, 12, 31)), Amount("0"));
  EXPECT_NE(ErrorOf([&] { account->BalanceAtDate(Date(2026, 1, 2)); }).Number(), 0);
  Handles().balance_at_date = saved;
}

TEST_F(AccountBalancesTest, BalanceAtDateTwoDaysBeforeTheYearRaises1161) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2025, 12, 30)); })),
            ExpectedMessage(1161, kOutsideYear));
}

TEST_F(AccountBalancesTest, BalanceAtDateAfterTheYearEndRaises1161) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2027, 1, 1)); })),
            ExpectedMessage(1161, kOutsideYear));
  EXPECT_EQ(Describe(ErrorOf([&] { account->FCBalanceAtDate(Date(2027, 1, 1)); })),
            ExpectedMessage(1161, kOutsideYear));
}

TEST_F(AccountBalancesTest, BalanceAtDateOfASumIsNotCheckedAgainstTheYear) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  InsertPlain(assets, "1000", Amount("5"), Amount("5"));
  EXPECT_EQ(Load(assets)->BalanceAtDate(Date(2027, 6, 1)), Amount("5"));
}

TEST_F(AccountBalancesTest, BalanceAtDateOfAPlainAccountCountsMovementsBeforeTheDate) {
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("10"));
  InsertMovementOn(1, Date(2026, 3, 1), cash, Amount("5"), Amount("2"));
  InsertMovementOn(1, Date(2026, 3, 2), cash, Amount("7"), Amount("3"));
  auto account = Load(cash);
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 3, 1)), Amount("10"));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 3, 2)), Amount("15"));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 12, 31)), Amount("22"));
  EXPECT_EQ(account->FCBalanceAtDate(Date(2026, 3, 3)), Amount("5"));
}

TEST_F(AccountBalancesTest, AListWithAnUnknownJournalRaises1162) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2026, 5, 1), Variant("1;99")); })),
            ExpectedMessage(1162, kBadList));
}

TEST_F(AccountBalancesTest, AListWithAWordThatIsNoNumberRaises1162) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2026, 5, 1), Variant("1;eins")); })),
            ExpectedMessage(1162, kBadList));
}

// An account splits its list at semicolons: a list with commas is one word,
// which names no journal, while a sum takes the same text as it stands.
TEST_F(AccountBalancesTest, AnAccountWithACommaListRaises1162) {
  AddJournal("Zwei");
  AddJournal("Drei");
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2026, 5, 1), Variant("1,3")); })),
            ExpectedMessage(1162, kBadList));
}

TEST_F(AccountBalancesTest, ANullListRaises1162) {
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000"));
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2026, 5, 1), Variant::Null()); })),
            ExpectedMessage(1162, kBadList));
}

// The list is checked through Journals.Item, which takes a bare number as a
// position and not as an ID (deliberate).
TEST_F(AccountBalancesTest, AJournalListIsCheckedByPositionNotById) {
  AddJournal("Zwei");
  AddJournal("Drei");
  Db().Execute("DELETE FROM Journals WHERE ID = 2;");
  engine_->OpenDatabase(Variant(PathOf("chart2026.qdb6f")));
  ASSERT_EQ(engine_->Journals()->Count(), 2);
  auto account = Load(InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("4")));
  InsertMovementOn(3, Date(2026, 2, 1), account->ID(), Amount("1"));
  // Journal 3 exists but is no position of two; no journal 2 exists, but position 2 does.
  EXPECT_EQ(Describe(ErrorOf([&] { account->BalanceAtDate(Date(2026, 5, 1), Variant("3")); })),
            ExpectedMessage(1162, kBadList));
  InsertMovementOn(1, Date(2026, 2, 1), account->ID(), Amount("10"));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 5, 1), Variant("2")), Amount("15"));
}

TEST_F(AccountBalancesTest, AListLeavesItsJournalsOutAndCountsMovementsBeforeTheDate) {
  const int32_t j2 = AddJournal("Zwei");
  const int32_t j3 = AddJournal("Drei");
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("1"));
  InsertMovementOn(1, Date(2026, 2, 1), cash, Amount("10"), Amount("1"));
  InsertMovementOn(j2, Date(2026, 2, 1), cash, Amount("20"), Amount("2"));
  InsertMovementOn(j3, Date(2026, 2, 1), cash, Amount("40"), Amount("4"));
  InsertMovementOn(1, Date(2026, 2, 5), cash, Amount("80"), Amount("8"));
  auto account = Load(cash);
  const Variant list(std::to_string(j2) + ";" + std::to_string(j3));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 2, 5), list), Amount("11"));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 2, 6), list), Amount("91"));
  EXPECT_EQ(Load(cash)->FCBalanceAtDate(Date(2026, 2, 6), list), Amount("9"));
  EXPECT_EQ(Load(cash)->BalanceAtDate(Date(2026, 2, 6), Variant(std::to_string(j2))), Amount("131"));
}

// No movement left by the list sums to Null, and the addition fails (deliberate).
TEST_F(AccountBalancesTest, AListThatLeavesNoMovementFailsWithInvalidUseOfNull) {
  const int32_t j2 = AddJournal("Zwei");
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("1"));
  InsertMovementOn(j2, Date(2026, 2, 1), cash, Amount("20"));
  const Error error =
      ErrorOf([&] { Load(cash)->BalanceAtDate(Date(2026, 3, 1), Variant(std::to_string(j2))); });
  EXPECT_EQ(error.Number(), 94);
}

TEST_F(AccountBalancesTest, TheDatedSumsAreKeptForTheObjectsLife) {
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000", Amount("1"));
  InsertMovementOn(1, Date(2026, 2, 1), cash, Amount("10"));
  auto account = Load(cash);
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 3, 1)), Amount("11"));
  InsertMovementOn(1, Date(2026, 2, 2), cash, Amount("5"));
  EXPECT_EQ(account->BalanceAtDate(Date(2026, 3, 1)), Amount("11"));
  EXPECT_EQ(Load(cash)->BalanceAtDate(Date(2026, 3, 1)), Amount("16"));
}

TEST_F(AccountBalancesTest, AListAskedAgainOnAnotherObjectIsNotCheckedAgainButStillApplied) {
  const int32_t j2 = AddJournal("Zwei");
  const int32_t cash = InsertPlain(InsertSum(RootA(), "1", "Aktiven"), "1000");
  const int32_t bank = InsertPlain(InsertSum(RootA(), "2", "Passiven"), "2000");
  InsertMovementOn(1, Date(2026, 2, 1), cash, Amount("10"));
  InsertMovementOn(j2, Date(2026, 2, 1), cash, Amount("20"));
  InsertMovementOn(1, Date(2026, 2, 1), bank, Amount("30"));
  InsertMovementOn(j2, Date(2026, 2, 1), bank, Amount("40"));
  const Variant list(std::to_string(j2));
  EXPECT_EQ(Load(cash)->BalanceAtDate(Date(2026, 3, 1), list), Amount("10"));
  EXPECT_EQ(Handles().last_journal_list, std::to_string(j2));
  EXPECT_EQ(Load(bank)->BalanceAtDate(Date(2026, 3, 1), list), Amount("30"));
}

// ---------------------------------------------------------------- the shared dated view

class SharedDatedViewTest : public BalanceTest {
 protected:
  void SetUp() override {
    BalanceTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    cash_ = InsertPlain(InsertSum(assets_, "10", "Flüssige Mittel"), "1000", Amount("300"), Amount("600"));
    bank_ = InsertPlain(assets_, "1020", Amount("50"), Amount("50"));
    InsertMovementOn(1, Date(2026, 2, 1), cash_, Amount("100"));
    InsertMovementOn(1, Date(2026, 8, 1), cash_, Amount("200"));
  }

  // From here on any use of viewBalanceAtDate fails.
  void BreakViewQuery() {
    saved_query_ = Handles().balance_at_date;
    Handles().balance_at_date = Db().CreateQueryDef(
        "", "PARAMETERS AccountID Long, [Date] DateTime; SELECT NoSuchColumn FROM NoSuchTable;");
  }
  void RestoreViewQuery() { Handles().balance_at_date = saved_query_; }

  int32_t assets_ = 0;
  int32_t cash_ = 0;
  int32_t bank_ = 0;
  std::shared_ptr<store::QueryDef> saved_query_;
};

TEST_F(SharedDatedViewTest, AFreshObjectAskingTheSameDateReusesTheViewAnotherBuilt) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  const std::string name = Handles().temp_query_name;
  const store::Recordset* view = Handles().balance_view.get();
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  EXPECT_EQ(Handles().temp_query_name, name);
  EXPECT_EQ(Handles().balance_view.get(), view);
  EXPECT_TRUE(Db().QueryDefs().Contains(name));
}

TEST_F(SharedDatedViewTest, AMovementWrittenBetweenTwoCallsIsSeenByTheReusedView) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  const std::string name = Handles().temp_query_name;
  InsertMovementOn(1, Date(2026, 2, 15), bank_, Amount("7"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("457"));
  EXPECT_EQ(Handles().temp_query_name, name);
  // The same object asked again requeries as well.
  auto sum = Load(assets_);
  EXPECT_EQ(sum->BalanceAtDate(Date(2026, 3, 1)), Amount("457"));
  InsertMovementOn(1, Date(2026, 1, 5), cash_, Amount("-20"));
  EXPECT_EQ(sum->BalanceAtDate(Date(2026, 3, 1)), Amount("437"));
}

TEST_F(SharedDatedViewTest, AChangedAmountBetweenTwoCallsIsSeen) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  Db().Execute("UPDATE Movements SET Amount = 1 WHERE AccountID = " + std::to_string(cash_) + ";");
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("351"));
}

TEST_F(SharedDatedViewTest, AMovementRolledBackBetweenTwoCallsIsGoneAgain) {
  State().workspace->BeginTrans();
  InsertMovementOn(1, Date(2026, 2, 15), bank_, Amount("7"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("457"));
  State().workspace->Rollback();
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
}

TEST_F(SharedDatedViewTest, AnotherDateBuildsTheViewAgain) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  const std::string name = Handles().temp_query_name;
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 9, 1)), Amount("650"));
  EXPECT_NE(Handles().temp_query_name, name);
  EXPECT_FALSE(Db().QueryDefs().Contains(name));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
}

TEST_F(SharedDatedViewTest, AnotherJournalListBuildsTheViewAgain) {
  const int32_t j2 = AddJournal("Zwei");
  InsertMovementOn(j2, Date(2026, 2, 1), bank_, Amount("5"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("455"));
  const std::string name = Handles().temp_query_name;
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1), Variant(std::to_string(j2))), Amount("450"));
  EXPECT_NE(Handles().temp_query_name, name);
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1), Variant(std::to_string(j2))), Amount("450"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("455"));
}

// The repair opens the plain tree as the shared view; a dated sum afterwards
// must not take it for the dated one it had before.
TEST_F(SharedDatedViewTest, TheViewOfTheRepairIsNotTakenForADatedOne) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  RecalcBalances(true);
  EXPECT_TRUE(Handles().balance_view_is_plain);
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  EXPECT_FALSE(Handles().balance_view_is_plain);
}

// A fresh object without arguments compares with its own empty memory, so it
// still reuses the dated view that is open (deliberate), while one that asks
// for the plain view after a date builds it.
TEST_F(SharedDatedViewTest, ThePlainViewIsBuiltOnlyForAnObjectThatHadADate) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  EXPECT_EQ(Load(assets_)->BalanceWithChildrens(), Amount("450"));
  auto sum = Load(assets_);
  sum->BalanceAtDate(Date(2026, 3, 1));
  EXPECT_EQ(sum->BalanceWithChildrens(), Amount("650"));
  EXPECT_TRUE(Handles().balance_view_is_plain);
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
}

// ---------------------------------------------------------------- plain accounts from the dated view

TEST_F(SharedDatedViewTest, APlainAccountAtTheDayOfTheViewTakesItsSumFromTheView) {
  InsertMovementOn(1, Date(2026, 3, 1), cash_, Amount("4"), Amount("3"));
  InsertMovementOn(1, Date(2026, 2, 1), cash_, Amount("1"), Amount("2"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("455"));
  BreakViewQuery();
  auto cash = Load(cash_);
  // The movement of the day itself is left out, as the query leaves it out.
  EXPECT_EQ(cash->BalanceAtDate(Date(2026, 3, 1)), Amount("401"));
  EXPECT_EQ(Load(bank_)->BalanceAtDate(Date(2026, 3, 1)), Amount("50"));
  // The view has no foreign amounts: those come from the query.
  EXPECT_NE(ErrorOf([&] { cash->FCBalanceAtDate(Date(2026, 3, 1)); }).Number(), 0);
  RestoreViewQuery();
  EXPECT_EQ(cash->FCBalanceAtDate(Date(2026, 3, 1)), Amount("2"));
  EXPECT_EQ(cash->BalanceAtDate(Date(2026, 3, 1)), Amount("401"));
}

TEST_F(SharedDatedViewTest, AnotherDayThanTheViewsGoesToTheQuery) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  BreakViewQuery();
  EXPECT_NE(ErrorOf([&] { Load(cash_)->BalanceAtDate(Date(2026, 3, 2)); }).Number(), 0);
  RestoreViewQuery();
  EXPECT_EQ(Load(cash_)->BalanceAtDate(Date(2026, 3, 2)), Amount("400"));
}

TEST_F(SharedDatedViewTest, AfterAWriteAPlainAccountGoesToTheQuery) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  InsertMovementOn(1, Date(2026, 2, 3), cash_, Amount("8"));
  BreakViewQuery();
  EXPECT_NE(ErrorOf([&] { Load(cash_)->BalanceAtDate(Date(2026, 3, 1)); }).Number(), 0);
  RestoreViewQuery();
  EXPECT_EQ(Load(cash_)->BalanceAtDate(Date(2026, 3, 1)), Amount("408"));
  // A sum asked again reads the view again, and plain accounts take it from there.
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("458"));
  BreakViewQuery();
  EXPECT_EQ(Load(cash_)->BalanceAtDate(Date(2026, 3, 1)), Amount("408"));
  RestoreViewQuery();
}

TEST_F(SharedDatedViewTest, AMovementOfTheDayWrittenLaterIsLeftOutToo) {
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("450"));
  EXPECT_EQ(Load(cash_)->BalanceAtDate(Date(2026, 3, 1)), Amount("400"));
  InsertMovementOn(1, Date(2026, 3, 1), bank_, Amount("9"));
  InsertMovementOn(1, Date(2026, 2, 28), bank_, Amount("6"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1)), Amount("465"));
  BreakViewQuery();
  EXPECT_EQ(Load(bank_)->BalanceAtDate(Date(2026, 3, 1)), Amount("56"));
  RestoreViewQuery();
}

TEST_F(SharedDatedViewTest, AViewWithAJournalListIsNotUsedForPlainAccounts) {
  const int32_t j2 = AddJournal("Zwei");
  InsertMovementOn(j2, Date(2026, 2, 1), cash_, Amount("5"));
  EXPECT_EQ(Load(assets_)->BalanceAtDate(Date(2026, 3, 1), Variant(std::to_string(j2))), Amount("450"));
  BreakViewQuery();
  EXPECT_NE(ErrorOf([&] { Load(cash_)->BalanceAtDate(Date(2026, 3, 1)); }).Number(), 0);
  RestoreViewQuery();
  EXPECT_EQ(Load(cash_)->BalanceAtDate(Date(2026, 3, 1)), Amount("405"));
}

TEST_F(SharedDatedViewTest, AViewAskedAtATimeOfDayIsNotUsedForPlainAccounts) {
  const OleDate noon(Date(2026, 3, 1).Serial() + 0.5);
  EXPECT_EQ(Load(assets_)->BalanceAtDate(noon), Amount("450"));
  BreakViewQuery();
  EXPECT_NE(ErrorOf([&] { Load(cash_)->BalanceAtDate(Date(2026, 3, 1)); }).Number(), 0);
  RestoreViewQuery();
}

}  // namespace
}  // namespace ldg

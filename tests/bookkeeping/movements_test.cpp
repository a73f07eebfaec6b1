#include "bookkeeping/movements.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movement.hpp"
#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "tests/bookkeeping/movements_fixture.hpp"

namespace ldg {
namespace {

using movement_testing::Amount;
using movement_testing::Date;
using movement_testing::Describe;
using movement_testing::ErrorOf;
using movement_testing::Expected;
using movement_testing::ExpectedMessage;
using movement_testing::kBareError;
using movement_testing::MovementsTest;
using movement_testing::Position;
using movement_testing::TaxLookupStandIn;

Variant Key(int32_t internal_id) { return Variant("ID" + std::to_string(internal_id)); }

NewMovement On(int32_t account_id, const char* amount = "0") {
  NewMovement values;
  values.account_id = account_id;
  values.amount = Amount(amount);
  return values;
}

class MovementsCollectionTest : public MovementsTest {
 protected:
  std::shared_ptr<BookEntry> NewBalancingEntry() {
    auto entry = EntryWithAccounts({});
    entry->BalancingAutomatismActive(true);
    return entry;
  }
};

// ---- Add, Item, Remove -----------------------------------------------------------

TEST_F(MovementsCollectionTest, AddGivesGrowingInternalNumbersThatAreNeverReused) {
  Movements lines;
  EXPECT_EQ(lines.Add()->InternalID(), 1);
  EXPECT_EQ(lines.Add()->InternalID(), 2);
  lines.Remove(Key(2));
  EXPECT_EQ(lines.Add()->InternalID(), 3);
  EXPECT_EQ(lines.Count(), 2);
}

TEST_F(MovementsCollectionTest, AddTakesEveryGivenValueAndSetsTheOwnerLast) {
  TaxLookupStandIn taxes({});  // a tax lookup would raise: Add runs no automatism
  auto entry = EntryWithAccounts({});
  entry->TaxAutomatismActive(true);
  NewMovement values;
  values.account_id = cash_;
  values.balancing_account_id = bank_;
  values.text = Variant("Kasse");
  values.amount = Amount("12.5");
  values.fc_amount = Amount("-3");
  values.reference = Variant("R1");
  values.valuta = Variant(Date(2026, 3, 2));
  values.tax_id = Variant(int32_t{77});
  values.tax_manual = true;
  auto line = entry->Movements().Add(values);
  EXPECT_EQ(line->Account()->ID(), cash_);
  EXPECT_EQ(line->BalancingAccountID(), bank_);
  EXPECT_EQ(line->Text(), Variant("Kasse"));
  EXPECT_EQ(line->Amount(), Amount("12.5"));
  EXPECT_EQ(line->FCAmount(), Amount("-3"));
  EXPECT_EQ(line->Reference(), Variant("R1"));
  EXPECT_EQ(line->Valuta(), Variant(Date(2026, 3, 2)));
  EXPECT_EQ(line->TaxID(), Variant(int32_t{77}));
  EXPECT_TRUE(line->TaxManual());
  EXPECT_EQ(line->Owner(), &entry->Movements());
}

TEST_F(MovementsCollectionTest, AddWithoutValuesGivesAnEmptyLine) {
  Movements lines;
  auto line = lines.Add();
  EXPECT_EQ(line->Account(), nullptr);
  EXPECT_EQ(line->Text(), Variant(""));
  EXPECT_EQ(line->Amount(), Amount("0"));
  EXPECT_TRUE(line->Reference().IsNull());
  EXPECT_TRUE(line->Valuta().IsNull());
  EXPECT_TRUE(line->TaxID().IsNull());
  EXPECT_FALSE(line->TaxManual());
}

TEST_F(MovementsCollectionTest, AddOfAnUnknownAccountGivesALineWithoutAccount) {
  Movements lines;
  EXPECT_EQ(lines.Add(On(99999))->Account(), nullptr);
}

TEST_F(MovementsCollectionTest, ItemTakesAKeyOrAPosition) {
  Movements lines;
  auto first = lines.Add();
  auto second = lines.Add();
  EXPECT_EQ(lines.Item(Key(2)), second);
  EXPECT_EQ(lines.Item(Position(1)), first);
  EXPECT_EQ(lines.Item(Variant("2")), second);
}

TEST_F(MovementsCollectionTest, ItemOfAMissingKeyRaises1176) {
  Movements lines;
  lines.Add();
  const Error error = ErrorOf([&] { lines.Item(Key(7)); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1176, "Movement with given Key not found!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040498u);
}

TEST_F(MovementsCollectionTest, ItemOutsideThePositionsRaisesError9) {
  Movements lines;
  lines.Add();
  EXPECT_EQ(ErrorOf([&] { lines.Item(Position(0)); }).Number(), 9);
  EXPECT_EQ(ErrorOf([&] { lines.Item(Position(2)); }).Number(), 9);
}

TEST_F(MovementsCollectionTest, RemoveOfAnUnknownKeyRaisesTheCollectionsOwnError) {
  Movements lines;
  lines.Add();
  EXPECT_EQ(ErrorOf([&] { lines.Remove(Key(5)); }).Number(), 5);
  EXPECT_EQ(ErrorOf([&] { lines.Remove(Position(3)); }).Number(), 9);
  EXPECT_EQ(lines.Count(), 1);
}

TEST_F(MovementsCollectionTest, RemoveReturnsItsArgumentAndClearsTheLinesOwner) {
  Movements lines;
  auto line = lines.Add();
  lines.Add();
  EXPECT_EQ(lines.Remove(Position(1)), Position(1));
  EXPECT_EQ(line->Owner(), nullptr);
  EXPECT_EQ(lines.Count(), 1);
}

TEST_F(MovementsCollectionTest, BalanceSumsTheLiveLines) {
  Movements lines;
  lines.Add(On(cash_, "30"));
  lines.Add(On(bank_, "-12.25"));
  lines.Add(On(bank_, "5"));
  lines.Remove(Position(3));
  EXPECT_EQ(lines.Balance(), Amount("17.75"));
}

TEST_F(MovementsCollectionTest, TiniClearsTheOwnerOfEveryLine) {
  Movements lines;
  auto kept = lines.Add();
  auto removed = lines.Add();
  lines.Remove(Key(2));
  removed->SetOwner(&lines);
  lines.Tini();
  EXPECT_EQ(lines.Count(), 0);
  EXPECT_EQ(kept->Owner(), nullptr);
  EXPECT_EQ(removed->Owner(), nullptr);
}

// ---- Tax lines and their owners ---------------------------------------------------

TEST_F(MovementsCollectionTest, RemovingATaxLineAddsItsAmountToTheOwnerAndClearsTheOwnersTax) {
  TaxLookupStandIn taxes({5});
  const auto rows = StoreTaxedEntry("100", "7.6", 5);
  auto entry = LoadEntry(rows.entry_id);
  auto owner = entry->Movements().Item(Position(1));
  entry->Movements().Remove(Position(2));
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(owner->Amount(), Amount("107.6"));
  EXPECT_TRUE(owner->TaxID().IsNull());
  EXPECT_EQ(owner->DependentMovementID(), 0);
}

TEST_F(MovementsCollectionTest, RemovingAnOwnerRemovesItsTaxLineFirst) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  entry->Movements().Remove(Position(1));
  ASSERT_EQ(entry->Movements().Count(), 1);
  EXPECT_EQ(entry->Movements().Item(Position(1))->ID(), rows.counter_id);
}

TEST_F(MovementsCollectionTest, LoadingTurnsStoredLinksIntoInternalNumbers) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  ASSERT_EQ(entry->Movements().Count(), 3);
  auto owner = entry->Movements().Item(Position(1));
  auto tax_line = entry->Movements().Item(Position(2));
  EXPECT_EQ(owner->ID(), rows.owner_id);
  EXPECT_EQ(owner->DependentMovementID(), tax_line->InternalID());
  EXPECT_TRUE(tax_line->IsDependent());
  EXPECT_EQ(entry->Movements().FindOwner(tax_line->InternalID()), owner);
}

TEST_F(MovementsCollectionTest, AStoredLinkThatNamesNoLineOfTheEntryLoadsAsZero) {
  const int32_t entry_id = InsertEntry(journal_id_, Date(2026, 3, 10), "X1");
  const int32_t row = InsertMovement(entry_id, cash_, Amount("5"));
  InsertMovement(entry_id, revenue_, Amount("-5"));
  SetMovementColumn(row, "DependentMovementID", "424242");
  EXPECT_EQ(LoadEntry(entry_id)->Movements().Item(Position(1))->DependentMovementID(), 0);
}

TEST_F(MovementsCollectionTest, AppendingAnEntryWithATaxLineWritesTheRealIDOfTheTaxLine) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = std::make_shared<BookEntry>();
  entry->JournalID(journal_id_);
  entry->EntryDate(Variant(Date(2026, 3, 11)));
  entry->DocumentID(Variant("K1"));
  entry->Movements().LoadFromDatabase(rows.entry_id);
  entry->Movements().ClearIDs();
  Entries().Append(*entry);
  auto owner = entry->Movements().Item(Position(1));
  auto tax_line = entry->Movements().Item(Position(2));
  ASSERT_NE(tax_line->ID(), rows.tax_line_id);
  EXPECT_EQ(CLng(MovementColumn(owner->ID(), "DependentMovementID")), tax_line->ID());
  EXPECT_EQ(MovementColumn(tax_line->ID(), "IsDependent"), Variant(true));
  EXPECT_EQ(owner->DependentMovementID(), tax_line->InternalID());
}

// ---- Balancing automatism --------------------------------------------------------

TEST_F(MovementsCollectionTest, TwoLinesPointAtEachOthersAccounts) {
  auto entry = NewBalancingEntry();
  auto first = entry->Movements().Add(On(cash_));
  auto second = entry->Movements().Add(On(revenue_));
  EXPECT_EQ(first->BalancingAccountID(), revenue_);
  EXPECT_EQ(second->BalancingAccountID(), cash_);
}

TEST_F(MovementsCollectionTest, SwitchingTheAutomatismOnPointsTheLinesAtEachOther) {
  auto entry = EntryWithAccounts({cash_, revenue_});
  EXPECT_EQ(entry->Movements().Item(Position(1))->BalancingAccountID(), 0);
  entry->BalancingAutomatismActive(true);
  EXPECT_EQ(entry->Movements().Item(Position(1))->BalancingAccountID(), revenue_);
  EXPECT_EQ(entry->Movements().Item(Position(2))->BalancingAccountID(), cash_);
}

TEST_F(MovementsCollectionTest, AThirdMainLineClearsEveryCounterAccount) {
  auto entry = NewBalancingEntry();
  entry->Movements().Add(On(cash_));
  entry->Movements().Add(On(revenue_));
  entry->Movements().Add(On(bank_));
  for (const auto& line : entry->Movements()) EXPECT_EQ(line->BalancingAccountID(), 0);
  entry->Movements().Remove(Position(3));
  EXPECT_EQ(entry->Movements().Item(Position(1))->BalancingAccountID(), revenue_);
}

TEST_F(MovementsCollectionTest, ALineWithoutAccountLeavesTheOtherLinesCounterAccount) {
  auto entry = NewBalancingEntry();
  auto first = entry->Movements().Add(On(cash_));
  auto second = entry->Movements().Add();
  EXPECT_EQ(first->BalancingAccountID(), 0);
  EXPECT_EQ(second->BalancingAccountID(), cash_);
}

TEST_F(MovementsCollectionTest, AnOwnerWithItsTaxLineAndACounterLineIsASimpleEntry) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  entry->BalancingAutomatismActive(true);
  auto& lines = entry->Movements();
  EXPECT_EQ(lines.Item(Position(1))->BalancingAccountID(), revenue_);
  EXPECT_EQ(lines.Item(Position(3))->BalancingAccountID(), cash_);
  EXPECT_EQ(lines.Item(Position(2))->BalancingAccountID(), revenue_);  // the owner's
  EXPECT_EQ(lines.Counterpart(1), lines.Item(Position(3)));
  EXPECT_EQ(lines.Counterpart(3), lines.Item(Position(1)));
}

TEST_F(MovementsCollectionTest, ATaxLineWithoutOwnerLosesItsMark) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  SetMovementColumn(rows.owner_id, "DependentMovementID", "Null");
  auto entry = LoadEntry(rows.entry_id);
  auto tax_line = entry->Movements().Item(Position(2));
  ASSERT_TRUE(tax_line->IsDependent());
  entry->Movements().Remove(Position(3));
  entry->Movements().Add(On(revenue_));
  entry->BalancingAutomatismActive(true);  // three lines, one marked as tax line: simple
  EXPECT_FALSE(tax_line->IsDependent());
}

TEST_F(MovementsCollectionTest, ThreeLinesWithTwoTaxLinesRaiseTheBareError) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  SetMovementColumn(rows.counter_id, "IsDependent", "True");
  auto entry = LoadEntry(rows.entry_id);
  const Error error = ErrorOf([&] { entry->BalancingAutomatismActive(true); });
  EXPECT_EQ(Describe(error), Expected(kBareError, "ldg", ""));
}

TEST_F(MovementsCollectionTest, TwoLinesWhereTheSecondIsATaxLineAreNoSimpleEntry) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  entry->Movements().Remove(Position(3));
  entry->BalancingAutomatismActive(true);
  EXPECT_EQ(entry->Movements().Item(Position(1))->BalancingAccountID(), 0);
  EXPECT_EQ(Describe(ErrorOf([&] { entry->Movements().Counterpart(1); })), Expected(kBareError, "ldg", ""));
}

TEST_F(MovementsCollectionTest, CounterpartOutsideASimpleEntryRaisesTheBareError) {
  auto entry = EntryWithAccounts({cash_, revenue_});
  EXPECT_EQ(Describe(ErrorOf([&] { entry->Movements().Counterpart(1); })), Expected(kBareError, "ldg", ""));
}

TEST_F(MovementsCollectionTest, AMainLineOfACompositeEntryTakesEveryCounterAccountAtSave) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "-40"}});
  auto main_line = entry->Movements().Item(Position(2));
  main_line->MainMovement(true);
  Entries().Append(*entry);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Position(1))->ID(), "BalancingAccountID")), revenue_);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Position(3))->ID(), "BalancingAccountID")), revenue_);
  EXPECT_TRUE(MovementColumn(main_line->ID(), "BalancingAccountID").IsNull());
}

TEST_F(MovementsCollectionTest, WithoutAMainLineTheDestinationLineTakesEveryCounterAccount) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "0"}});
  entry->Movements().Item(Position(3))->BalanceDestination(true);
  EXPECT_EQ(entry->Movements().Item(Position(3))->Amount(), Amount("-40"));
  Entries().Append(*entry);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Position(1))->ID(), "BalancingAccountID")), bank_);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Position(2))->ID(), "BalancingAccountID")), bank_);
  EXPECT_TRUE(MovementColumn(entry->Movements().Item(Position(3))->ID(), "BalancingAccountID").IsNull());
}

TEST_F(MovementsCollectionTest, ACompositeEntryWithoutMainOrDestinationKeepsItsCounterAccounts) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "-40"}});
  entry->Movements().Item(Position(1))->BalancingAccountID(Variant(bank_));
  Entries().Append(*entry);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Position(1))->ID(), "BalancingAccountID")), bank_);
  EXPECT_TRUE(MovementColumn(entry->Movements().Item(Position(2))->ID(), "BalancingAccountID").IsNull());
}

TEST_F(MovementsCollectionTest, MainMovementIsCarriedByOneLineAtMost) {
  auto entry = EntryWithAccounts({cash_, revenue_, bank_});
  entry->Movements().Item(Position(1))->MainMovement(true);
  entry->Movements().Item(Position(3))->MainMovement(true);
  EXPECT_FALSE(entry->Movements().Item(Position(1))->MainMovement());
  EXPECT_TRUE(entry->Movements().Item(Position(3))->MainMovement());
  entry->Movements().Item(Position(3))->MainMovement(false);
  EXPECT_FALSE(entry->Movements().Item(Position(3))->MainMovement());
}

// ---- Taking up the difference ----------------------------------------------------

TEST_F(MovementsCollectionTest, AddWithBalanceOnAdditionGivesTheNewLineMinusTheBalance) {
  auto entry = EntryWithAccounts({});
  entry->Movements().Add(On(cash_, "30"));
  entry->BalanceOnMovementAddition(true);
  auto line = entry->Movements().Add(On(revenue_, "0"));
  EXPECT_EQ(line->Amount(), Amount("-30"));
  EXPECT_TRUE(line->BalanceDestination());
  EXPECT_EQ(entry->Movements().Balance(), Amount("0"));
}

TEST_F(MovementsCollectionTest, AddWithBalanceOnAdditionCountsTheNewLinesOwnAmount) {
  auto entry = EntryWithAccounts({});
  entry->Movements().Add(On(cash_, "30"));
  entry->BalanceOnMovementAddition(true);
  auto line = entry->Movements().Add(On(revenue_, "5"));
  EXPECT_EQ(line->Amount(), Amount("-35"));
  EXPECT_EQ(entry->Movements().Balance(), Amount("-5"));
}

TEST_F(MovementsCollectionTest, EachAddedLineBecomesTheOnlyDestination) {
  auto entry = EntryWithAccounts({});
  entry->BalanceOnMovementAddition(true);
  auto first = entry->Movements().Add(On(cash_, "30"));
  auto second = entry->Movements().Add(On(revenue_, "0"));
  EXPECT_FALSE(first->BalanceDestination());
  EXPECT_TRUE(second->BalanceDestination());
}

TEST_F(MovementsCollectionTest, RemoveWithBalanceOnAdditionRebalances) {
  auto entry = EntryWithAccounts({});
  entry->Movements().Add(On(cash_, "30"));
  entry->Movements().Add(On(bank_, "20"));
  entry->BalanceOnMovementAddition(true);
  auto line = entry->Movements().Add(On(revenue_, "0"));
  ASSERT_EQ(line->Amount(), Amount("-50"));
  entry->Movements().Remove(Position(2));
  EXPECT_EQ(line->Amount(), Amount("-30"));
}

TEST_F(MovementsCollectionTest, BalanceDestinationTakesUpTheDifferenceAndIsUnique) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "7"}});
  auto& lines = entry->Movements();
  lines.Item(Position(2))->BalanceDestination(true);
  EXPECT_EQ(lines.Item(Position(2))->Amount(), Amount("-107"));
  lines.Item(Position(3))->BalanceDestination(true);
  EXPECT_FALSE(lines.Item(Position(2))->BalanceDestination());
  EXPECT_EQ(lines.Item(Position(3))->Amount(), Amount("7"));
  EXPECT_EQ(lines.Balance(), Amount("0"));
}

// Deliberate: the lines are walked in order, so a flag still carried by a later line keeps it out of the sum.
TEST_F(MovementsCollectionTest, ALaterLineStillCarryingTheFlagIsLeftOutOfTheSum) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "7"}});
  auto& lines = entry->Movements();
  lines.Item(Position(3))->BalanceDestination(true);
  ASSERT_EQ(lines.Item(Position(3))->Amount(), Amount("-40"));
  lines.Item(Position(2))->BalanceDestination(true);
  EXPECT_EQ(lines.Item(Position(2))->Amount(), Amount("-100"));
  EXPECT_FALSE(lines.Item(Position(3))->BalanceDestination());
}

TEST_F(MovementsCollectionTest, RebalanceWithoutDestinationChangesNothing) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}});
  entry->Movements().Rebalance();
  EXPECT_EQ(entry->Movements().Balance(), Amount("40"));
}

// ---- Texts -----------------------------------------------------------------------

TEST_F(MovementsCollectionTest, TheFirstLinesTextFollowsToTheCounterLineInASimpleEntry) {
  auto entry = NewBalancingEntry();
  auto first = entry->Movements().Add(On(cash_));
  auto second = entry->Movements().Add(On(revenue_));
  first->Text(Variant("Barverkauf"));
  EXPECT_EQ(second->Text(), Variant("Barverkauf"));
  second->Text(Variant("Ertrag"));
  EXPECT_EQ(first->Text(), Variant("Barverkauf"));
}

TEST_F(MovementsCollectionTest, TextsStayOnTheirLineOutsideASimpleEntry) {
  auto entry = EntryWithAccounts({cash_, revenue_});
  entry->Movements().Item(Position(1))->Text(Variant("Barverkauf"));
  EXPECT_EQ(entry->Movements().Item(Position(2))->Text(), Variant(""));
}

TEST_F(MovementsCollectionTest, ATaxLineTakesTheTextOfItsOwnerAndOfTheFirstLine) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  auto& lines = entry->Movements();
  lines.Item(Position(1))->Text(Variant("Einkauf"));
  EXPECT_EQ(lines.Item(Position(2))->Text(), Variant("Einkauf"));
  EXPECT_EQ(lines.Item(Position(3))->Text(), Variant(""));
  entry->BalancingAutomatismActive(true);
  lines.Item(Position(1))->Text(Variant("Einkauf 2"));
  EXPECT_EQ(lines.Item(Position(3))->Text(), Variant("Einkauf 2"));
}

// ---- Validate, rate date ---------------------------------------------------------

TEST_F(MovementsCollectionTest, ValidateWithoutLinesRaises1175) {
  Movements lines;
  const Error error = ErrorOf([&] { lines.Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1175, "No movements found!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040497u);
}

TEST_F(MovementsCollectionTest, ValidateOfOneLineOfZeroPassesTheBalanceTest) {
  Movements lines;
  lines.Add(On(cash_));
  EXPECT_NO_THROW(lines.Validate());
}

TEST_F(MovementsCollectionTest, ValidateOfUnbalancedLinesRaises1171) {
  Movements lines;
  lines.Add(On(cash_, "10"));
  lines.Add(On(revenue_, "-9.99"));
  const Error error = ErrorOf([&] { lines.Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1171, "Book entry unbalanced!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040493u);
}

TEST_F(MovementsCollectionTest, ValidateOfTwoLinesPointsThemAtEachOtherWhateverTheAutomatisms) {
  Movements lines;
  auto first = lines.Add(On(cash_, "10"));
  auto second = lines.Add(On(revenue_, "-10"));
  lines.Validate();
  EXPECT_EQ(first->BalancingAccountID(), revenue_);
  EXPECT_EQ(second->BalancingAccountID(), cash_);
}

TEST_F(MovementsCollectionTest, ValidateOfTwoLinesOneWithoutAccountFailsWithTheRunTimesError) {
  Movements lines;
  lines.Add(On(cash_, "10"));
  lines.Add();
  EXPECT_EQ(ErrorOf([&] { lines.Validate(); }).Number(), 91);
}

TEST_F(MovementsCollectionTest, TheRateDateIsTheEntryDateWithinTheYear) {
  auto entry = EntryWithAccounts({});
  EXPECT_EQ(entry->Movements().RateDate(), Date(2026, 3, 10));
  entry->EntryDate(Variant(Date(2027, 1, 5)));
  EXPECT_EQ(entry->Movements().RateDate(), Date(2026, 12, 31));
  entry->EntryDate(Variant("kein Datum"));
  EXPECT_EQ(entry->Movements().RateDate(), Date(2026, 12, 31));
  Movements alone;
  EXPECT_EQ(alone.RateDate(), Date(2026, 12, 31));
}

// ---- Saving ----------------------------------------------------------------------

TEST_F(MovementsCollectionTest, RemovingAStoredLineAndSavingTakesItsAmountOffAndDeletesItsRow) {
  auto posted = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-60"}, {bank_, "-40"}});
  Entries().Append(*posted);
  ASSERT_EQ(StoredCurrency(bank_, "Balance"), Amount("460"));
  auto entry = LoadEntry(posted->ID());
  const int32_t bank_row = entry->Movements().Item(Position(3))->ID();
  entry->Movements().Remove(Position(3));
  entry->Movements().Item(Position(2))->SetAmountSilently(Amount("-100"));
  entry->Update();
  EXPECT_EQ(StoredCurrency(bank_, "Balance"), Amount("500"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("-100"));
  EXPECT_TRUE(MovementColumn(bank_row, "ID").IsEmpty());
  EXPECT_EQ(MovementRows(posted->ID()), 2);
  ExpectBalancesMatchMovements();
}

TEST_F(MovementsCollectionTest, DeletingAnEntryTakesEveryLineOffItsAccount) {
  auto posted = Posted();
  auto entry = LoadEntry(posted->ID());
  entry->Delete();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("0"));
  EXPECT_EQ(MovementRows(posted->ID()), 0);
}

// Deliberate: a delete takes the amounts off the balance the account held when the entry was read.
TEST_F(MovementsCollectionTest, DeletingDoesNotRefreshTheBalanceFirst) {
  auto posted = Posted();
  auto entry = LoadEntry(posted->ID());
  Post(cash_, Amount("50"));
  ASSERT_EQ(StoredCurrency(cash_, "Balance"), Amount("150"));
  entry->Delete();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("0"));
}

TEST_F(MovementsCollectionTest, ARemovedLineIsKeptUntilTheEntryIsSaved) {
  auto entry = LoadEntry(Posted()->ID());
  auto removed = entry->Movements().Item(Position(2));
  entry->Movements().Remove(Position(2));
  entry->Movements().Add(On(bank_, "-100"));
  entry->Update();
  EXPECT_EQ(removed->Owner(), nullptr);
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(bank_, "Balance"), Amount("400"));
  ExpectBalancesMatchMovements();
}

TEST_F(MovementsCollectionTest, ClearIDsResetsEveryLiveLine) {
  auto entry = LoadEntry(Posted()->ID());
  entry->Movements().ClearIDs();
  for (const auto& line : entry->Movements()) EXPECT_EQ(line->ID(), 0);
}

}  // namespace
}  // namespace ldg

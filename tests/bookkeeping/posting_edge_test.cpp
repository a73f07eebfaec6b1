// Edges of posting that sit between the classes: the order in which an entry
// is checked before its transaction, what a run of definitive posting leaves
// to objects read before it, and how the change handlers of the lines treat a
// removed tax line, an amount of 0, a manual tax and a cleared account.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/movement.hpp"
#include "bookkeeping/movements.hpp"
#include "support/conversions.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "tests/bookkeeping/movements_fixture.hpp"

namespace ldg {
namespace {

using movement_testing::Amount;
using movement_testing::Date;
using movement_testing::Describe;
using movement_testing::ErrorOf;
using movement_testing::Expected;
using movement_testing::ExpectedMessage;
using movement_testing::Position;
using movement_testing::WatchedMovementsTest;

const int32_t kPeriodLocked = static_cast<int32_t>(0x800404CBu);

class PostingEdgeTest : public WatchedMovementsTest {};

// ---- The checks before the transaction -------------------------------------------

// The line on the master would fail only inside the transaction: the balance is
// tested before, so nothing of the entry is written and no line is looked at.
TEST_F(PostingEdgeTest, AnUnbalancedEntryIsRefusedBeforeAnyLineIsChecked) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {master_, "-90"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1171, "Book entry unbalanced!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040493u);
  EXPECT_EQ(entry->ID(), 0);
  EXPECT_EQ(Rows("BookEntries"), 0);
  EXPECT_EQ(Rows("Movements"), 0);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("0"));
}

TEST_F(PostingEdgeTest, AStoredDefinitiveEntryIsRefusedBeforeItsJournalIsLookedAt) {
  auto entry = Posted();
  entry->Definitive(true);
  entry->Update();
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  entry->JournalID(999);
  EXPECT_EQ(Describe(ErrorOf([&] { entry->Update(); })),
            ExpectedMessage(
                1170, "Book entry is permanently locked. Illegal call of method Append or Update failed."));
}

TEST_F(PostingEdgeTest, AnUnknownJournalIsReportedBeforeTheEntryDate) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  entry->JournalID(999);
  entry->EntryDate(Variant("kein Datum"));
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1166, "Journal not found!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x8004048Eu);
}

TEST_F(PostingEdgeTest, ALockedJournalIsReportedBeforeTheEntryDate) {
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  auto entry = NewEntry(Date(2027, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            ExpectedMessage(1169, "Journal locked! Book entry cannot be written to the choosen journal!"));
}

TEST_F(PostingEdgeTest, AnEntryDateThatIsNoDateIsReportedBeforeTheYear) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  entry->EntryDate(Variant("31.02.2026"));
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1167, "Invalid entry date!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x8004048Fu);
}

// The period table answers "locked" for a day outside the year: the year test comes first.
TEST_F(PostingEdgeTest, ADateOutsideTheYearIsReportedBeforeThePeriodAndTheBalance) {
  auto entry = NewEntry(Date(2027, 1, 1), {{cash_, "100"}, {revenue_, "-90"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1168, "Entry date not in opened business year!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040490u);
}

TEST_F(PostingEdgeTest, ALockedPeriodIsReportedBeforeTheBalance) {
  LockPeriodOf(Date(2026, 3, 1));
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            Expected(kPeriodLocked, "ldg", "Periode ist gesperrt!"));
  // The message table's own text of that number isn't the one used.
  EXPECT_NE(MessageText(1227), "Periode ist gesperrt!");
}

TEST_F(PostingEdgeTest, AnEntryWithoutLinesIsReportedAfterThePeriod) {
  LockPeriodOf(Date(2026, 3, 1));
  auto entry = NewEntry(Date(2026, 3, 10), {});
  EXPECT_EQ(ErrorOf([&] { Entries().Append(*entry); }).Number(), kPeriodLocked);
  entry->EntryDate(Variant(Date(2026, 2, 10)));
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1175, "No movements found!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040497u);
}

TEST_F(PostingEdgeTest, AnUpdateOfANewEntryIsRefusedBeforeItIsChecked) {
  auto entry = NewEntry(Date(2027, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  const Error error = ErrorOf([&] { entry->Update(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1164,
                                             "Can't update: a new BookEntry must be saved using the Append "
                                             "method of the BookEntries collection"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x8004048Cu);
}

// ---- Definitive runs and objects in memory ----------------------------------------

// Deliberate: the protection holds only for objects read after the run; one read
// before passes its checks and writes its changes into the definitive row.
TEST_F(PostingEdgeTest, AnObjectReadBeforeARunStillWritesIntoTheDefinitiveRow) {
  auto entry = Posted();
  auto held = Entries().Item(BuildKey(entry->ID()));
  ASSERT_EQ(Entries().DoDefinitive(), 1);
  const int32_t set_id = Entries().DefinitiveSets()->Item(Variant(int32_t{1}))->ID();
  held->Marked(true);
  held->Infotext("nachher");
  held->Update();
  EXPECT_TRUE(CBool(EntryColumn(entry->ID(), "Marked")));
  EXPECT_EQ(EntryColumn(entry->ID(), "Infotext"), Variant("nachher"));
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "Definitive")), set_id);
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "DefinitiveJournal")), 1);
  EXPECT_FALSE(held->Definitive());
}

TEST_F(PostingEdgeTest, ADefinitiveRequestAloneBlocksTheDelete) {
  auto entry = Posted();
  entry->Definitive(true);
  // Deliberate: the request alone counts, before any Update made the entry definitive.
  const Error error = ErrorOf([&] { entry->Delete(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1206, "Book entry is definitive and can not be deleted!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x800404B6u);
  EXPECT_EQ(Rows("BookEntries"), 1);
}

TEST_F(PostingEdgeTest, TheStornoOfADefinitiveEntryReversesEveryLine) {
  auto entry = Posted(Date(2026, 3, 10), Variant(int32_t{7}));
  entry->Definitive(true);
  entry->Update();
  auto storno = entry->Cancel();
  ASSERT_TRUE(storno);
  EXPECT_FALSE(storno->Definitive());
  EXPECT_EQ(storno->DocumentID(), Variant("00000000000007"));
  EXPECT_EQ(CDate(storno->EntryDate()), Date(2026, 3, 10));
  ASSERT_EQ(storno->Movements().Count(), 2);
  const auto second = LineAt(storno, 2);
  EXPECT_EQ(second->ID(), 0);
  EXPECT_EQ(second->Amount(), Amount("100"));
  EXPECT_EQ(second->Account()->ID(), revenue_);
  EXPECT_EQ(second->Text(), Variant("Storno, siehe Beleg 7"));
  const Error error = ErrorOf([&] { Entries().Append(*storno); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1166, "Journal not found!"));
  EXPECT_EQ(storno->ID(), 0);
  EXPECT_EQ(Rows("BookEntries"), 1);
}

// ---- Value dates -----------------------------------------------------------------

TEST_F(PostingEdgeTest, AnEmptyValutaIsPostedAsNull) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  auto line = LineAt(entry, 1);
  line->Valuta(Variant(""));
  Entries().Append(*entry);
  ASSERT_GT(line->ID(), 0);
  EXPECT_TRUE(MovementColumn(line->ID(), "Valuta").IsNull());
  EXPECT_TRUE(line->Valuta().IsNull());
}

// ---- Lines removed and amounts changed -------------------------------------------

// The tax line's amount reaches the owner through its Amount, as a caller's change:
// the counter line follows, and the change is reported for the owner.
TEST_F(PostingEdgeTest, RemovingATaxLineHandsItsAmountToTheOwnerAsACallersChange) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = Watched(LoadEntry(rows.entry_id));
  entry->BalancingAutomatismActive(true);
  auto owner = LineAt(entry, 1);
  auto counter = LineAt(entry, 3);
  counter->SetAmountSilently(Amount("-50"));
  entry->Movements().Remove(Position(2));
  ASSERT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(owner->Amount(), Amount("107.6"));
  EXPECT_EQ(counter->Amount(), Amount("-107.6"));
  EXPECT_EQ(owner->DependentMovementID(), 0);
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{owner->InternalID()});
  EXPECT_EQ(owner->BalancingAccountID(), revenue_);
  EXPECT_EQ(counter->BalancingAccountID(), cash_);
}

TEST_F(PostingEdgeTest, RemovingAnOwnerHandsItTheTaxFirstAndLeavesTheCounterLine) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = Watched(LoadEntry(rows.entry_id));
  auto owner = LineAt(entry, 1);
  entry->Movements().Remove(Position(1));
  ASSERT_EQ(entry->Movements().Count(), 1);
  EXPECT_EQ(LineAt(entry, 1)->ID(), rows.counter_id);
  // The owner took the tax through its Amount before it went itself.
  EXPECT_EQ(owner->Amount(), Amount("107.6"));
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{owner->InternalID()});
  EXPECT_EQ(owner->Owner(), nullptr);
}

// Amount 0 counts as positive: the foreign amount turns positive with it.
TEST_F(PostingEdgeTest, AnAmountOfZeroTakesTheSignOneForTheForeignAmount) {
  auto entry = SimpleEntry();
  auto line = LineAt(entry, 1);
  line->SetAmountSilently(Amount("-100"));
  line->SetFCAmountSilently(Amount("-5"));
  LineAt(entry, 2)->SetAmountSilently(Amount("100"));
  line->Amount(Amount("0"));
  EXPECT_EQ(line->FCAmount(), Amount("5"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("0"));
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{1});
}

TEST_F(PostingEdgeTest, ANegativeAmountTurnsTheForeignAmountNegative) {
  auto entry = SimpleEntry();
  auto line = LineAt(entry, 1);
  line->SetFCAmountSilently(Amount("5"));
  line->Amount(Amount("-20"));
  EXPECT_EQ(line->FCAmount(), Amount("-5"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("20"));
}

// The split is skipped for a manual tax, so the typed amount goes to the counter line as the gross.
TEST_F(PostingEdgeTest, AManualTaxInASimpleEntryMirrorsTheTypedAmountAndLeavesTheTaxLine) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  SetMovementColumn(rows.owner_id, "TaxManual", "True");
  auto entry = Watched(LoadEntry(rows.entry_id));
  entry->TaxAutomatismActive(true);
  entry->BalancingAutomatismActive(true);
  auto owner = LineAt(entry, 1);
  owner->Amount(Amount("250"));
  EXPECT_EQ(owner->Amount(), Amount("250"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("7.6"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-250"));
  EXPECT_TRUE(owner->TaxManual());
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{1});
}

TEST_F(PostingEdgeTest, AManualTaxLeavesTheTaxLineWhenTheOwnerTurnsNegative) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  SetMovementColumn(rows.owner_id, "TaxManual", "True");
  auto entry = Watched(LoadEntry(rows.entry_id));
  entry->TaxAutomatismActive(true);
  LineAt(entry, 1)->Amount(Amount("-40"));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("-40"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("7.6"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-107.6"));
}

// Deliberate: Amount keeps the line's role (only FCAmount ends it), so the rebalance
// at the end of the change takes the typed amount back; the change is still reported.
TEST_F(PostingEdgeTest, AnAmountTypedIntoTheDestinationLineIsTakenBackByTheRebalance) {
  auto entry = Watched(EntryWithAccounts({cash_, revenue_, bank_}));
  LineAt(entry, 1)->Amount(Amount("100"));
  LineAt(entry, 3)->BalanceDestination(true);
  ASSERT_EQ(LineAt(entry, 3)->Amount(), Amount("-100"));
  LineAt(entry, 3)->Amount(Amount("-30"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-100"));
  EXPECT_TRUE(LineAt(entry, 3)->BalanceDestination());
  EXPECT_EQ(events_.internal_ids, (std::vector<int32_t>{1, 3}));
}

// ---- Account changes -------------------------------------------------------------

TEST_F(PostingEdgeTest, ClearingTheAccountOfALineReportsNothing) {
  SetColumn(bank_, "ActivateValuta", "True");
  auto entry = SimpleEntry();
  auto line = LineAt(entry, 1);
  line->SetAmountSilently(Amount("40"));
  LineAt(entry, 2)->SetAmountSilently(Amount("-7"));
  line->Account(nullptr);
  EXPECT_EQ(line->Account(), nullptr);
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-7"));
  // The next real account is a change again and runs the handler.
  line->Account(AccountOf(bank_));
  EXPECT_EQ(line->Valuta(), Variant(Date(2026, 3, 10)));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-40"));
}

// Deliberate: the counter accounts are recounted after every account change, and
// without the balancing automatism no entry is simple, so all of them go to 0.
TEST_F(PostingEdgeTest, AnAccountChangeWithoutTheBalancingAutomatismClearsEveryCounterAccount) {
  auto entry = EntryWithAccounts({cash_, revenue_, bank_});
  LineAt(entry, 2)->BalancingAccountID(Variant(bank_));
  LineAt(entry, 3)->BalancingAccountID(Variant(cash_));
  LineAt(entry, 1)->Account(AccountOf(detail_));
  for (const auto& line : entry->Movements()) EXPECT_EQ(line->BalancingAccountID(), 0);
}

TEST_F(PostingEdgeTest, AnAccountChangeOfTheSecondLineMirrorsOntoTheFirst) {
  auto entry = SimpleEntry();
  LineAt(entry, 2)->SetAmountSilently(Amount("-60"));
  LineAt(entry, 2)->Account(AccountOf(bank_));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("60"));
  EXPECT_EQ(LineAt(entry, 1)->BalancingAccountID(), bank_);
  EXPECT_EQ(LineAt(entry, 2)->BalancingAccountID(), cash_);
  // An account change is no amount change: nothing is reported.
  EXPECT_TRUE(events_.internal_ids.empty());
}

TEST_F(PostingEdgeTest, AChangedAccountIsPostedWithTheMirroredAmounts) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->Amount(Amount("75"));
  LineAt(entry, 2)->Account(AccountOf(bank_));
  Entries().Append(*entry);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("75"));
  EXPECT_EQ(StoredCurrency(bank_, "Balance"), Amount("425"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("0"));
  EXPECT_EQ(CLng(MovementColumn(LineAt(entry, 1)->ID(), "BalancingAccountID")), bank_);
  ExpectBalancesMatchMovements();
}

}  // namespace
}  // namespace ldg

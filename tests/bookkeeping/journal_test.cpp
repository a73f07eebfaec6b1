#include "bookkeeping/journal.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "bookkeeping/journals.hpp"
#include "tests/bookkeeping/journals_fixture.hpp"

namespace ldg {
namespace {

using journal_testing::ErrorOf;
using journal_testing::JournalsTest;

constexpr int32_t kErrLockedOnLock = static_cast<int32_t>(0x80040481u);
constexpr int32_t kErrAlreadyUnlocked = static_cast<int32_t>(0x80040483u);
constexpr int32_t kErrAlreadyPermanentlyLocked = static_cast<int32_t>(0x80040484u);
constexpr int32_t kErrUnlockedEntriesFound = static_cast<int32_t>(0x80040499u);
constexpr int32_t kErrDuplicateOnInsert = static_cast<int32_t>(0x8004047Fu);
constexpr int32_t kErrDuplicateOnUpdate = static_cast<int32_t>(0x80040469u);

class JournalTest : public JournalsTest {
 protected:
  void SetUp() override {
    JournalsTest::SetUp();
    journal_ = engine_->Journals()->Add(Variant("Bank"));
  }
  Variant Stored(const std::string& column) { return StoredJournal(journal_->ID(), column); }

  std::shared_ptr<Journal> journal_;
};

TEST_F(JournalTest, CodeStoresTheValueConvertedToLong) {
  journal_->Code(Variant("12"));
  EXPECT_EQ(journal_->Code(), Variant(int32_t{12}));
  journal_->Code(Variant(2.5));
  EXPECT_EQ(journal_->Code(), Variant(int32_t{2}));
}

TEST_F(JournalTest, LockSetsLockedAndWritesIt) {
  journal_->ChangeLock(lgrJLMLock);
  EXPECT_EQ(journal_->Locked(), Variant(true));
  EXPECT_EQ(Stored("Locked"), Variant(true));
  EXPECT_EQ(Stored("LockedPermanently"), Variant(false));
}

// Deliberate: a journal that is merely locked reports the text of a permanent lock.
TEST_F(JournalTest, LockingALockedJournalReportsThePermanentLockText) {
  journal_->ChangeLock(lgrJLMLock);
  const Error error = ErrorOf([&] { journal_->ChangeLock(lgrJLMLock); });
  EXPECT_EQ(error.Number(), kErrLockedOnLock);
  EXPECT_EQ(error.Description(), "Journal is permanently locked. Unable to unlock!");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(JournalTest, UnlockClearsLockedAndWritesIt) {
  journal_->ChangeLock(lgrJLMLock);
  journal_->ChangeLock(lgrJLMUnlock);
  EXPECT_EQ(journal_->Locked(), Variant(false));
  EXPECT_EQ(Stored("Locked"), Variant(false));
}

TEST_F(JournalTest, UnlockingAnUnlockedJournalReportsMessage1155) {
  const Error error = ErrorOf([&] { journal_->ChangeLock(lgrJLMUnlock); });
  EXPECT_EQ(error.Number(), kErrAlreadyUnlocked);
  EXPECT_EQ(error.Description(), "Journal already unlocked!");
}

// Deliberate: the two flags are independent; unlocking doesn't look at the permanent lock.
TEST_F(JournalTest, UnlockingALockedAndPermanentlyLockedJournalLeavesThePermanentLock) {
  journal_->ChangeLock(lgrJLMLock);
  journal_->ChangeLock(lgrJLMLockPermanently);
  journal_->ChangeLock(lgrJLMUnlock);
  EXPECT_EQ(journal_->Locked(), Variant(false));
  EXPECT_EQ(journal_->LockedPermanently(), Variant(true));
  EXPECT_EQ(Stored("Locked"), Variant(false));
  EXPECT_EQ(Stored("LockedPermanently"), Variant(true));
}

TEST_F(JournalTest, PermanentLockKeepsLockedAsItWas) {
  journal_->ChangeLock(lgrJLMLockPermanently);
  EXPECT_EQ(journal_->LockedPermanently(), Variant(true));
  EXPECT_EQ(journal_->Locked(), Variant(false));
  EXPECT_EQ(Stored("LockedPermanently"), Variant(true));
  EXPECT_EQ(Stored("Locked"), Variant(false));
}

TEST_F(JournalTest, PermanentlyLockingTwiceReportsMessage1156) {
  journal_->ChangeLock(lgrJLMLockPermanently);
  const Error error = ErrorOf([&] { journal_->ChangeLock(lgrJLMLockPermanently); });
  EXPECT_EQ(error.Number(), kErrAlreadyPermanentlyLocked);
  EXPECT_EQ(error.Description(), "Journal already permanenlty locked!");
}

TEST_F(JournalTest, PermanentLockWithAnEntryNotDefinitiveFailsAndChangesNothing) {
  InsertEntry(journal_->ID(), journal_testing::Date(2026, 3, 1));
  const Error error = ErrorOf([&] { journal_->ChangeLock(lgrJLMLockPermanently); });
  EXPECT_EQ(error.Number(), kErrUnlockedEntriesFound);
  EXPECT_EQ(error.Description(), "Journal cannot be locked permanently! Unlocked book entries found!");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(journal_->LockedPermanently(), Variant(false));
  EXPECT_EQ(Stored("LockedPermanently"), Variant(false));
}

TEST_F(JournalTest, PermanentLockLooksOnlyAtTheJournalsOwnEntries) {
  InsertEntry(engine_->Journals()->Item(Variant(int32_t{1}))->ID(), journal_testing::Date(2026, 3, 1));
  InsertDefinitiveEntry(journal_->ID(), 1);
  journal_->ChangeLock(lgrJLMLockPermanently);
  EXPECT_EQ(Stored("LockedPermanently"), Variant(true));
}

TEST_F(JournalTest, AnUnknownLockModeDoesNothing) {
  journal_->ChangeLock(0);
  journal_->ChangeLock(4);
  EXPECT_EQ(journal_->Locked(), Variant(false));
  EXPECT_EQ(journal_->LockedPermanently(), Variant(false));
  EXPECT_EQ(Stored("Locked"), Variant(false));
}

TEST_F(JournalTest, UpdateOfAStoredJournalWithoutChangesIssuesNoStatement) {
  Db().Execute("UPDATE Accounts SET Name = Name;", store::dbFailOnError);
  ASSERT_EQ(Db().RecordsAffected(), 2);
  journal_->Update();
  EXPECT_EQ(Db().RecordsAffected(), 2);
  journal_->Name(Variant("Post"));
  journal_->Update();
  EXPECT_EQ(Db().RecordsAffected(), 1);
}

TEST_F(JournalTest, UpdateWritesOnlyWhatDiffersFromTheStoredCopy) {
  Db().Execute("UPDATE Journals SET Code = 55 WHERE ID = " + std::to_string(journal_->ID()) + ";",
               store::dbFailOnError);
  journal_->Name(Variant("Post"));
  journal_->Update();
  EXPECT_EQ(Stored("Name"), Variant("Post"));
  EXPECT_EQ(Stored("Code"), Variant(int32_t{55}));
}

TEST_F(JournalTest, UpdateOfANewJournalInsertsIt) {
  Journal journal;
  journal.Code(Variant(int32_t{20}));
  journal.Name(Variant("Lohn"));
  journal.Update();
  ASSERT_NE(journal.ID(), 0);
  EXPECT_EQ(StoredJournal(journal.ID(), "Code"), Variant(int32_t{20}));
  EXPECT_EQ(StoredJournal(journal.ID(), "Name"), Variant("Lohn"));
}

// A lock runs the update path only: a new journal gets its flag written with its insert.
TEST_F(JournalTest, LockingANewJournalWritesNothingUntilItsInsert) {
  Journal journal;
  journal.Code(Variant(int32_t{21}));
  journal.Name(Variant("Neu"));
  journal.ChangeLock(lgrJLMLock);
  EXPECT_EQ(journal.ID(), 0);
  EXPECT_EQ(JournalRows(), 2);
  journal.Update();
  EXPECT_EQ(StoredJournal(journal.ID(), "Locked"), Variant(true));
}

TEST_F(JournalTest, ADuplicateOnInsertReportsMessage1151AndLeavesTheIDAtZero) {
  Journal journal;
  journal.Code(Variant(int32_t{1}));
  journal.Name(Variant("Other"));
  const Error error = ErrorOf([&] { journal.Update(); });
  EXPECT_EQ(error.Number(), kErrDuplicateOnInsert);
  EXPECT_EQ(error.Description(), "Another journal with the same number or description already exists!");
  EXPECT_EQ(journal.ID(), 0);
}

// The update path reports a duplicate under another number than the insert, with the same text.
TEST_F(JournalTest, ADuplicateOnUpdateReports0x80040469AndRestoresTheStoredValues) {
  journal_->Code(Variant(int32_t{1}));
  journal_->Name(Variant("Journal"));
  const Error error = ErrorOf([&] { journal_->Update(); });
  EXPECT_EQ(error.Number(), kErrDuplicateOnUpdate);
  EXPECT_EQ(error.Description(), "Another journal with the same number or description already exists!");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(journal_->Code(), Variant(int32_t{0}));
  EXPECT_EQ(journal_->Name(), Variant("Bank"));
}

TEST_F(JournalTest, ANameWithAnApostropheIsInsertedButMakesTheUpdateFail) {
  Journal added;
  added.Code(Variant(int32_t{30}));
  added.Name(Variant("O'Neil"));
  added.Update();
  EXPECT_EQ(StoredJournal(added.ID(), "Name"), Variant("O'Neil"));
  journal_->Name(Variant("Bank's"));
  const Error error = ErrorOf([&] { journal_->Update(); });
  EXPECT_EQ(error.Number(), 3075);
  EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(journal_->Name(), Variant("Bank"));
  EXPECT_EQ(Stored("Name"), Variant("Bank"));
}

TEST_F(JournalTest, AStoredNameWithAnApostropheDoesntHinderALock) {
  Journal added;
  added.Code(Variant(int32_t{30}));
  added.Name(Variant("O'Neil"));
  added.Update();
  added.ChangeLock(lgrJLMLock);
  EXPECT_EQ(StoredJournal(added.ID(), "Locked"), Variant(true));
}

TEST_F(JournalTest, AFailedLockRestoresLocked) {
  journal_->Name(Variant("Bank's"));
  EXPECT_EQ(ErrorOf([&] { journal_->ChangeLock(lgrJLMLock); }).Number(), 3075);
  EXPECT_EQ(journal_->Locked(), Variant(false));
  EXPECT_EQ(Stored("Locked"), Variant(false));
}

// Deliberate: a failed update restores Code, Name and Locked, but LockedPermanently keeps the failed value.
TEST_F(JournalTest, AFailedPermanentLockKeepsThePermanentFlagInMemory) {
  journal_->Name(Variant("Bank's"));
  EXPECT_EQ(ErrorOf([&] { journal_->ChangeLock(lgrJLMLockPermanently); }).Number(), 3075);
  EXPECT_EQ(journal_->LockedPermanently(), Variant(true));
  EXPECT_EQ(Stored("LockedPermanently"), Variant(false));
  EXPECT_EQ(journal_->Name(), Variant("Bank"));
}

// Deliberate: Item is a stub that returns no book entry.
TEST_F(JournalTest, ItemReturnsNothingForEveryID) {
  const int32_t entry_id = InsertEntry(journal_->ID(), journal_testing::Date(2026, 3, 1));
  EXPECT_EQ(journal_->Item(entry_id), nullptr);
  EXPECT_EQ(journal_->Item(0), nullptr);
  EXPECT_EQ(journal_->Item(-1), nullptr);
}

}  // namespace
}  // namespace ldg

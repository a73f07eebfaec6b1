#include "bookkeeping/journals.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "accounts/account_links.hpp"
#include "support/keys.hpp"
#include "tests/bookkeeping/journals_fixture.hpp"

namespace ldg {
namespace {

using journal_testing::ErrorOf;
using journal_testing::JournalsTest;

constexpr int32_t kErrNoJournalWithID = static_cast<int32_t>(0x8004047Eu);
constexpr int32_t kErrDuplicateJournal = static_cast<int32_t>(0x8004047Fu);

TEST_F(JournalsTest, OpenReadsTheJournalThatTheCreationWrites) {
  ASSERT_NE(engine_->Journals(), nullptr);
  ASSERT_EQ(engine_->Journals()->Count(), 1);
  const auto journal = engine_->Journals()->Item(Variant(int32_t{1}));
  EXPECT_EQ(journal->Code(), Variant(int32_t{1}));
  EXPECT_EQ(journal->Name(), Variant("Journal"));
  EXPECT_EQ(journal->Locked(), Variant(false));
  EXPECT_EQ(journal->LockedPermanently(), Variant(false));
}

TEST_F(JournalsTest, FillFollowsTheOrderOfTheView) {
  auto journals = EmptyJournals();
  InsertJournal(7, "Seven");
  InsertJournal(3, "Three");
  InsertJournal(5, "Five");
  Journals reread;
  std::vector<Variant> codes;
  for (const auto& journal : reread) codes.push_back(journal->Code());
  EXPECT_EQ(codes, (std::vector<Variant>{Variant(int32_t{3}), Variant(int32_t{5}), Variant(int32_t{7})}));
}

TEST_F(JournalsTest, AddTwiceWithTheSameNameOnAnEmptyTableNumbersZeroThenOne) {
  auto journals = EmptyJournals();
  const auto first = journals->Add(Variant("Kasse"));
  const auto second = journals->Add(Variant("Kasse"));
  EXPECT_EQ(first->Code(), Variant(int32_t{0}));
  EXPECT_EQ(first->Name(), Variant("Kasse"));
  EXPECT_EQ(second->Code(), Variant(int32_t{1}));
  EXPECT_EQ(second->Name(), Variant("Kasse (1)"));
  EXPECT_EQ(StoredJournal(second->ID(), "Name"), Variant("Kasse (1)"));
  EXPECT_EQ(journals->Count(), 2);
}

// The number and the name are each unique, so a taken number also moves the name's suffix on.
TEST_F(JournalsTest, AddSkipsNumbersTakenByOtherJournals) {
  const auto first = engine_->Journals()->Add(Variant("Bank"));
  const auto second = engine_->Journals()->Add(Variant("Bank"));
  EXPECT_EQ(first->Code(), Variant(int32_t{0}));
  EXPECT_EQ(second->Code(), Variant(int32_t{2}));
  EXPECT_EQ(second->Name(), Variant("Bank (2)"));
}

TEST_F(JournalsTest, AddKeepsTheJournalUnderItsKey) {
  const auto added = engine_->Journals()->Add(Variant("Bank"));
  EXPECT_EQ(engine_->Journals()->Item(BuildKey(added->ID())), added);
  EXPECT_EQ(StoredJournal(added->ID(), "Code"), Variant(int32_t{0}));
}

TEST_F(JournalsTest, AddRaisesAnErrorOtherThanADuplicateWithItsNumberAndText) {
  const Error error = ErrorOf([&] { engine_->Journals()->Add(Variant(std::string(60, 'x'))); });
  EXPECT_EQ(error.Number(), 3163);
  EXPECT_EQ(error.Description(),
            "The field is too small to accept the amount of data you attempted to add. Try inserting or "
            "pasting less data.");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(engine_->Journals()->Count(), 1);
}

TEST_F(JournalsTest, ItemOfZeroRaisesError9) {
  const Error error = ErrorOf([&] { engine_->Journals()->Item(Variant(int32_t{0})); });
  EXPECT_EQ(error.Number(), 9);
  EXPECT_EQ(error.Description(), "Subscript out of range");
}

TEST_F(JournalsTest, ItemOfAPositionAboveCountRaisesError9) {
  EXPECT_EQ(ErrorOf([&] { engine_->Journals()->Item(Variant(int32_t{2})); }).Number(), 9);
}

// A bare number of two digits is a position, not an ID.
TEST_F(JournalsTest, ItemTakesABareNumberAsAPosition) {
  const int32_t id = engine_->Journals()->Item(Variant(int32_t{1}))->ID();
  EXPECT_EQ(ErrorOf([&] { engine_->Journals()->Item(Variant(std::to_string(id + 10))); }).Number(), 9);
  EXPECT_EQ(engine_->Journals()->Item(Variant("1"))->ID(), id);
}

TEST_F(JournalsTest, ItemWithTheKeyOfAMissingJournalReportsMessage1150WithTheID) {
  const Error error = ErrorOf([&] { engine_->Journals()->Item(Variant("ID99")); });
  EXPECT_EQ(error.Number(), kErrNoJournalWithID);
  EXPECT_EQ(error.Description(), "No Journal with ID=99 could be found!");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(JournalsTest, ItemReadsTheDigitsOfAKeyAsTheID) {
  const auto journal = engine_->Journals()->Item(Variant(int32_t{1}));
  EXPECT_EQ(engine_->Journals()->Item(Variant("ID0" + std::to_string(journal->ID()))), journal);
}

// Deliberate: Remove deletes the row but keeps the object in the collection.
TEST_F(JournalsTest, AfterRemoveCountStillCountsTheRemovedJournal) {
  const auto added = engine_->Journals()->Add(Variant("Bank"));
  engine_->Journals()->Remove(BuildKey(added->ID()));
  EXPECT_EQ(engine_->Journals()->Count(), 2);
  EXPECT_EQ(JournalRows(), 1);
  EXPECT_EQ(engine_->Journals()->Item(BuildKey(added->ID())), added);
}

TEST_F(JournalsTest, RemoveOfAJournalWithBookEntriesFailsWithTheRelationsError) {
  const auto journal = engine_->Journals()->Item(Variant(int32_t{1}));
  InsertEntry(journal->ID(), journal_testing::Date(2026, 2, 1));
  const Error error = ErrorOf([&] { engine_->Journals()->Remove(Variant(int32_t{1})); });
  EXPECT_EQ(error.Number(), 3200);
  EXPECT_EQ(error.Description(),
            "The record cannot be deleted or changed because table 'BookEntries' includes related records.");
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(JournalRows(), 1);
}

TEST_F(JournalsTest, RemoveOfAMissingKeyReportsMessage1150) {
  EXPECT_EQ(ErrorOf([&] { engine_->Journals()->Remove(Variant("ID42")); }).Number(), kErrNoJournalWithID);
}

TEST_F(JournalsTest, IDByCodeGivesTheIDOfTheJournalWithTheCode) {
  const int32_t id = InsertJournal(12, "Bank");
  EXPECT_EQ(engine_->Journals()->IDByCode(Variant(int32_t{12})), id);
  EXPECT_EQ(engine_->Journals()->IDByCode(Variant("12")), id);
}

TEST_F(JournalsTest, IDByCodeGivesZeroForACodeNoJournalHas) {
  EXPECT_EQ(engine_->Journals()->IDByCode(Variant(int32_t{12})), 0);
}

// A code that is no number would change the statement; it is refused as the statement would be.
TEST_F(JournalsTest, IDByCodeRefusesACodeThatIsNoNumber) {
  const Error error = ErrorOf([&] { engine_->Journals()->IDByCode(Variant("1) OR (1=1")); });
  EXPECT_EQ(error.Number(), 3075);
  EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
}

TEST_F(JournalsTest, IDSystemFindsTheJournalWithCode9999999) {
  EXPECT_EQ(engine_->Journals()->IDSystem(), 0);
  const int32_t id = InsertJournal(9999999, "System");
  EXPECT_EQ(engine_->Journals()->IDSystem(), id);
}

TEST_F(JournalsTest, AccountsCheckAJournalThroughTheOpenCollection) {
  const int32_t id = engine_->Journals()->Item(Variant(int32_t{1}))->ID();
  LinkedJournalItem(BuildKey(id));
  const Error error = ErrorOf([&] { LinkedJournalItem(Variant("ID99")); });
  EXPECT_EQ(error.Number(), kErrNoJournalWithID);
  EXPECT_EQ(error.Description(), "No Journal with ID=99 could be found!");
}

TEST_F(JournalsTest, AccountsCheckingAJournalWithNoDatabaseOpenRaiseError91) {
  engine_->CloseDatabase();
  ASSERT_EQ(engine_->Journals(), nullptr);
  EXPECT_EQ(ErrorOf([&] { LinkedJournalItem(Variant("ID1")); }).Number(), 91);
}

}  // namespace
}  // namespace ldg

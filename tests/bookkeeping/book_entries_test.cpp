#include "engine/options.hpp"
#include "store/store_error.hpp"
#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg::book_entry_testing {
namespace {

using BookEntriesTest = BookEntryTest;

TEST_F(BookEntriesTest, EngineHandsOutTheCollectionOfTheOpenFile) {
  ASSERT_NE(engine_->BookEntries(), nullptr);
  EXPECT_NE(Entries().DefinitiveSets(), nullptr);
  EXPECT_EQ(Entries().Count(), 0);
  engine_->CloseDatabase();
  EXPECT_EQ(engine_->BookEntries(), nullptr);
}

TEST_F(BookEntriesTest, ItemByKeyAndByDocumentNumberGiveDistinctObjectsOfOneEntry) {
  auto entry = Posted(Date(2026, 3, 10), Variant(int32_t{12}));
  auto by_key = Entries().Item(BuildKey(entry->ID()));
  auto by_number = Entries().Item(Variant("00000000000012"));
  ASSERT_TRUE(by_key);
  ASSERT_TRUE(by_number);
  EXPECT_NE(by_key.get(), by_number.get());
  EXPECT_EQ(by_key->ID(), entry->ID());
  EXPECT_EQ(by_number->ID(), entry->ID());
  EXPECT_EQ(by_number->Movements().Count(), 2);
}

TEST_F(BookEntriesTest, UnknownDocumentNumberFailsAndKeyStillWorksAfterwards) {
  auto entry = Posted();
  const Error error = ErrorOf([&] { Entries().Item(Variant("nope")); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1205, "No book entry found with given DocumentID!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404B5u));
  EXPECT_EQ(Entries().Item(BuildKey(entry->ID()))->ID(), entry->ID());
}

TEST_F(BookEntriesTest, UnknownKeyFails) {
  const Error error = ErrorOf([&] { Entries().Item(Variant("ID99")); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1204, "No book entry found with given ID!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404B4u));
}

TEST_F(BookEntriesTest, KeyPrefixIsCaseSensitive) {
  auto entry = Posted();
  // Deliberate: only "ID" reads as a key; "id1" is a document number.
  EXPECT_EQ(ErrorOf([&] { Entries().Item(Variant("id" + std::to_string(entry->ID()))); }).Number(),
            MessageNumber(1205));
}

TEST_F(BookEntriesTest, NumericDocumentNumberMustBeGivenInStoredForm) {
  Posted(Date(2026, 3, 10), Variant(int32_t{12}));
  EXPECT_EQ(ErrorOf([&] { Entries().Item(Variant(int32_t{12})); }).Number(), MessageNumber(1205));
}

TEST_F(BookEntriesTest, GetIDUsingDocIDFindsTheStoredForm) {
  auto numbered = Posted(Date(2026, 3, 10), Variant(int32_t{12}));
  auto text = Posted(Date(2026, 3, 10), Variant("ABC"));
  EXPECT_EQ(Entries().GetIDUsingDocID("12"), numbered->ID());
  EXPECT_EQ(Entries().GetIDUsingDocID("ABC"), text->ID());
  EXPECT_EQ(Entries().GetIDUsingDocID("XYZ"), 0);
  EXPECT_EQ(Entries().GetIDUsingDocID("13"), 0);
}

TEST_F(BookEntriesTest, NextNumericDocIDOnEmptyTableIsOne) {
  EXPECT_EQ(CDbl(Entries().GetNextNumericDocID()), 1.0);
}

TEST_F(BookEntriesTest, NextNumericDocIDIsEmptyTextWhenAutomaticNumbersAreOff) {
  engine_->Options()->BelegIDAuto(false);
  EXPECT_EQ(Entries().GetNextNumericDocID(), Variant(""));
  EXPECT_EQ(CDbl(Entries().GetNextNumericDocID(Variant(), true)), 1.0);
}

TEST_F(BookEntriesTest, TextDocumentNumbersDoNotDisturbTheNumbering) {
  Posted(Date(2026, 3, 10), Variant("00000000000007"));
  Posted(Date(2026, 3, 10), Variant("ABC"));
  Posted(Date(2026, 3, 10), Variant("99"));
  Posted(Date(2026, 3, 10), Variant("0000000000009X"));
  // "99" was stored as fourteen digits too.
  EXPECT_EQ(CDbl(Entries().GetNextNumericDocID()), 100.0);
}

TEST_F(BookEntriesTest, TextDocumentNumbersAloneLeaveOne) {
  Posted(Date(2026, 3, 10), Variant("ABC"));
  Posted(Date(2026, 3, 10), Variant("123456789012345"));
  EXPECT_EQ(CDbl(Entries().GetNextNumericDocID()), 1.0);
}

TEST_F(BookEntriesTest, GivenDocIDIsReturnedAsItIs) {
  EXPECT_EQ(Entries().GetNextNumericDocID(Variant(int32_t{7})), Variant(int32_t{7}));
}

TEST_F(BookEntriesTest, DateRangeCountCountsInTheRange) {
  Posted(Date(2026, 3, 10));
  Posted(Date(2026, 4, 10));
  auto late = Posted(Date(2026, 5, 10));
  EXPECT_EQ(Entries().DateRangeCount(), 3);
  EXPECT_EQ(Entries().DateRangeCount(Variant(), Variant(Date(2026, 4, 1))), 2);
  EXPECT_EQ(Entries().DateRangeCount(Variant(), Variant(), Variant(Date(2026, 4, 10))), 2);
  EXPECT_EQ(Entries().DateRangeCount(Variant(), Variant(Date(2026, 4, 10)), Variant(Date(2026, 4, 10))), 1);
  EXPECT_EQ(Entries().DateRangeCount(Variant(), Variant(Date(2026, 3, 1)), Variant(Date(2026, 4, 30))), 2);
  late->Definitive(true);
  late->Update();
  EXPECT_EQ(Entries().DateRangeCount(Variant(true)), 1);
  EXPECT_EQ(Entries().DateRangeCount(Variant(false)), 2);
  EXPECT_EQ(Entries().DateRangeCount(Variant(false), Variant(Date(2026, 4, 1))), 1);
}

TEST_F(BookEntriesTest, DateRangeCountWithFromAfterToIsZero) {
  Posted(Date(2026, 4, 10));
  EXPECT_EQ(Entries().DateRangeCount(Variant(), Variant(Date(2026, 5, 1)), Variant(Date(2026, 4, 1))), 0);
}

TEST_F(BookEntriesTest, ItemByTagWithoutMatchGivesNothing) {
  Posted();
  EXPECT_EQ(Entries().ItemByTag("zzz"), nullptr);
}

TEST_F(BookEntriesTest, ItemByTagAndTagsFindByPart) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->Tag(Variant("VAT2-2026"));
  entry->Tags("rot;grün");
  Entries().Append(*entry);
  ASSERT_NE(Entries().ItemByTag("2-20"), nullptr);
  EXPECT_EQ(Entries().ItemByTag("2-20")->ID(), entry->ID());
  ASSERT_NE(Entries().ItemByTags("grün"), nullptr);
  EXPECT_EQ(Entries().ItemByTags("grün")->ID(), entry->ID());
  EXPECT_EQ(Entries().ItemByField("Infotext", "x"), nullptr);
}

TEST_F(BookEntriesTest, ItemByFieldRefusesTextsThatWouldChangeTheStatement) {
  Posted();
  const std::string before = TablesDump();
  const Error quoted = ErrorOf([&] { Entries().ItemByTag("x') OR ('1'='1"); });
  EXPECT_EQ(quoted.Number(), store::kErrSyntax);
  EXPECT_EQ(quoted.Description(), "Syntax error (missing operator) in query expression.");
  EXPECT_EQ(ErrorOf([&] { Entries().ItemByField("Tag Like '*' OR Tag", "x"); }).Number(), store::kErrSyntax);
  EXPECT_EQ(TablesDump(), before);
}

TEST_F(BookEntriesTest, CountFollowsAppendAndDelete) {
  auto first = Posted();
  Posted();
  EXPECT_EQ(Entries().Count(), 2);
  Entries().Delete(first->ID());
  EXPECT_EQ(Entries().Count(), 1);
}

TEST_F(BookEntriesTest, DeleteOfUnknownIDFails) {
  EXPECT_EQ(ErrorOf([&] { Entries().Delete(99); }).Number(), MessageNumber(1204));
}

TEST_F(BookEntriesTest, JournalAppendPostsIntoThatJournal) {
  const int32_t other = AddJournal("Bank");
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  AllJournals().Item(BuildKey(other))->Append(*entry);
  EXPECT_EQ(entry->JournalID(), other);
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "JournalID")), other);
}

TEST_F(BookEntriesTest, JournalAppendIntoLockedJournalFails) {
  const int32_t other = AddJournal("Bank");
  auto journal = AllJournals().Item(BuildKey(other));
  journal->ChangeLock(lgrJLMLock);
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  EXPECT_EQ(ErrorOf([&] { journal->Append(*entry); }).Number(), MessageNumber(1169));
  EXPECT_EQ(entry->JournalID(), other);
  EXPECT_EQ(Rows("BookEntries"), 0);
}

TEST_F(BookEntriesTest, JournalDeleteIgnoresWhichJournalHoldsTheEntry) {
  const int32_t other = AddJournal("Bank");
  auto entry = Posted();
  AllJournals().Item(BuildKey(other))->Delete(entry->ID());
  EXPECT_EQ(Rows("BookEntries"), 0);
  ExpectBalancesMatchMovements();
}

}  // namespace
}  // namespace ldg::book_entry_testing

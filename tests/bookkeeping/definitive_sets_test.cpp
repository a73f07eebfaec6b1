#include "engine/session.hpp"
#include "store/store_error.hpp"
#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg::book_entry_testing {
namespace {

class DefinitiveSetsTest : public BookEntryTest {
 protected:
  DefinitiveSets& Sets() { return *Entries().DefinitiveSets(); }

  std::shared_ptr<BookEntry> PostedIn(int32_t journal_id, OleDate date = Date(2026, 3, 10)) {
    auto entry = NewEntry(date, {{cash_, "100"}, {revenue_, "-100"}});
    entry->JournalID(journal_id);
    Entries().Append(*entry);
    return entry;
  }
  bool IsDefinitive(int32_t entry_id) { return !EntryColumn(entry_id, "Definitive").IsNull(); }
  Variant SetColumn(int32_t set_id, const std::string& column) {
    return Scalar("SELECT [" + column + "] FROM DefinitiveSets WHERE ID = " + std::to_string(set_id) + ";",
                  column);
  }
};

TEST_F(DefinitiveSetsTest, RunWithNothingOpenFailsAndCreatesNoSet) {
  const Error error = ErrorOf([&] { Entries().DoDefinitive(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1187, "No book entries selected to be done definitive!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404A3u));
  EXPECT_EQ(Sets().Count(), 0);
  EXPECT_EQ(Rows("DefinitiveSets"), 0);
}

TEST_F(DefinitiveSetsTest, TwoRunsAreNumberedOneAndTwo) {
  RecordingCallback callback;
  engine_->Callback(std::shared_ptr<Callback>(&callback, [](Callback*) {}));
  auto first = Posted();
  EXPECT_EQ(Entries().DoDefinitive(), 1);
  auto second = Posted();
  auto third = Posted();
  EXPECT_EQ(Entries().DoDefinitive(), 2);
  ASSERT_EQ(Sets().Count(), 2);
  EXPECT_EQ(Sets().Item(Variant(int32_t{1}))->Number(), 1);
  EXPECT_EQ(Sets().Item(Variant(int32_t{2}))->Number(), 2);
  EXPECT_EQ(ReadLong(EntryColumn(first->ID(), "DefinitiveJournal")), 1);
  EXPECT_EQ(ReadLong(EntryColumn(second->ID(), "DefinitiveJournal")), 2);
  EXPECT_EQ(ReadLong(EntryColumn(first->ID(), "Definitive")), Sets().Item(Variant(int32_t{1}))->ID());
  EXPECT_EQ(ReadLong(EntryColumn(third->ID(), "Definitive")), Sets().Item(Variant(int32_t{2}))->ID());
  EXPECT_EQ(callback.actions, (std::vector<std::string>{"DoneDefinitive=1", "DoneDefinitive=2"}));
  engine_->Callback(nullptr);
}

TEST_F(DefinitiveSetsTest, ExcludedJournalsStayOpenAndAreRecorded) {
  const int32_t three = AddJournal("Drei");
  const int32_t seven = AddJournal("Sieben");
  auto kept = PostedIn(journal_id_);
  auto in_three = PostedIn(three);
  auto in_seven = PostedIn(seven);
  const std::string list = std::to_string(three) + "," + std::to_string(seven);
  EXPECT_EQ(Entries().DoDefinitive(Variant(list)), 1);
  EXPECT_TRUE(IsDefinitive(kept->ID()));
  EXPECT_FALSE(IsDefinitive(in_three->ID()));
  EXPECT_FALSE(IsDefinitive(in_seven->ID()));
  EXPECT_EQ(Sets().Item(Variant(int32_t{1}))->ExcludedJournals(), list);
  EXPECT_EQ(CStr(SetColumn(Sets().Item(Variant(int32_t{1}))->ID(), "ExcludedJournals")), list);
}

TEST_F(DefinitiveSetsTest, ExcludedJournalsThatAreNoListOfIDsAreRefused) {
  Posted();
  const std::string before = TablesDump();
  const Error error = ErrorOf([&] { Entries().DoDefinitive(Variant("1) OR (1=1")); });
  EXPECT_EQ(error.Number(), store::kErrSyntax);
  EXPECT_EQ(TablesDump(), before);
  EXPECT_EQ(Sets().Count(), 0);
}

TEST_F(DefinitiveSetsTest, EmptyBeginnDateIsIgnoredAndTextRaises) {
  Posted();
  const Error error = ErrorOf([&] { Entries().DoDefinitive(Variant(), Variant("abc")); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1185, "Value isn't a date!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404A1u));
  EXPECT_EQ(ErrorOf([&] { Entries().DoDefinitive(Variant(), Variant(), Variant("abc")); }).Number(),
            MessageNumber(1185));
  EXPECT_EQ(Entries().DoDefinitive(Variant(), Variant(), Variant("")), 1);
  EXPECT_TRUE(Sets().Item(Variant(int32_t{1}))->BeginnDate().IsNull());
  EXPECT_TRUE(Sets().Item(Variant(int32_t{1}))->EndDate().IsNull());
}

TEST_F(DefinitiveSetsTest, DateRangeSelectsAndIsRecorded) {
  auto march = Posted(Date(2026, 3, 10));
  auto april = Posted(Date(2026, 4, 10));
  auto may = Posted(Date(2026, 5, 10));
  EXPECT_EQ(Entries().DoDefinitive(Variant(), Variant(Date(2026, 4, 1)), Variant(Date(2026, 4, 30))), 1);
  EXPECT_FALSE(IsDefinitive(march->ID()));
  EXPECT_TRUE(IsDefinitive(april->ID()));
  EXPECT_FALSE(IsDefinitive(may->ID()));
  const auto set = Sets().Item(Variant(int32_t{1}));
  EXPECT_EQ(CDate(set->BeginnDate()), Date(2026, 4, 1));
  EXPECT_EQ(CDate(set->EndDate()), Date(2026, 4, 30));
  EXPECT_EQ(set->ExcludedJournals(), "");
  EXPECT_TRUE(SetColumn(set->ID(), "ExcludedJournals").IsNull());
  EXPECT_EQ(set->TransactionDate(), DefinitiveRunDate());
  EXPECT_EQ(set->User(), "Admin");
}

TEST_F(DefinitiveSetsTest, UsersEntriesOnlySelectsWhatTheUserCreatedOrChanged) {
  auto created = Posted();
  auto changed = Posted();
  auto foreign = Posted();
  Db().Execute("UPDATE BookEntries SET CreatedBy = 'Admin' WHERE ID = " + std::to_string(created->ID()) +
               ";");
  Db().Execute("UPDATE BookEntries SET ChangedBy = 'Admin' WHERE ID = " + std::to_string(changed->ID()) +
               ";");
  Db().Execute("UPDATE BookEntries SET CreatedBy = 'Other' WHERE ID = " + std::to_string(foreign->ID()) +
               ";");
  EXPECT_EQ(Entries().DoDefinitive(Variant(), Variant(), Variant(), true), 2);
  EXPECT_TRUE(IsDefinitive(created->ID()));
  EXPECT_TRUE(IsDefinitive(changed->ID()));
  EXPECT_FALSE(IsDefinitive(foreign->ID()));
  EXPECT_TRUE(Sets().Item(Variant(int32_t{1}))->UsersEntriesOnly());
}

TEST_F(DefinitiveSetsTest, UserNameWithQuoteIsRefusedForUsersEntriesOnly) {
  auto entry = Posted();
  State().session->User(Variant("O'Neil"));
  const std::string before = TablesDump();
  const Error error = ErrorOf([&] { Entries().DoDefinitive(Variant(), Variant(), Variant(), true); });
  EXPECT_EQ(error.Number(), store::kErrSyntax);
  EXPECT_EQ(TablesDump(), before);
  // Without the selection by user the name is only stored, as given.
  EXPECT_EQ(Entries().DoDefinitive(), 1);
  EXPECT_EQ(Sets().Item(Variant(int32_t{1}))->User(), "O'Neil");
  EXPECT_TRUE(IsDefinitive(entry->ID()));
}

TEST_F(DefinitiveSetsTest, EntryMadeDefinitiveByARunFailsUpdateOnceLoadedAgain) {
  auto entry = Posted();
  auto held = Entries().Item(BuildKey(entry->ID()));
  Entries().DoDefinitive();
  auto loaded = Entries().Item(BuildKey(entry->ID()));
  EXPECT_TRUE(loaded->Definitive());
  const Error error = ErrorOf([&] { loaded->Update(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1170, MessageText(1170)));
  EXPECT_EQ(ErrorOf([&] { loaded->Delete(); }).Number(), MessageNumber(1206));
  // Deliberate: an object loaded before the run doesn't learn of it.
  EXPECT_FALSE(held->Definitive());
}

TEST_F(DefinitiveSetsTest, RunDoesNotLookAtJournalOrPeriodLocks) {
  auto entry = Posted(Date(2026, 3, 10));
  LockPeriodOf(Date(2026, 3, 1));
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  EXPECT_EQ(Entries().DoDefinitive(), 1);
  EXPECT_TRUE(IsDefinitive(entry->ID()));
}

TEST_F(DefinitiveSetsTest, FailedRunRollsBackAndKeepsTheSetInMemory) {
  auto entry = Posted();
  const std::string before = TablesDump();
  // The date check of the set runs inside the transaction.
  const Error error = ErrorOf([&] { Entries().DoDefinitive(Variant(), Variant(Date(2025, 6, 1))); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1103, "Date out of opened business year!"));
  EXPECT_EQ(TablesDump(), before);
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  EXPECT_FALSE(IsDefinitive(entry->ID()));
}

TEST_F(DefinitiveSetsTest, AddChecksItsDates) {
  EXPECT_EQ(Describe(ErrorOf([&] { Sets().Add(Date(2026, 3, 1), "u", Variant("abc")); })),
            ExpectedMessage(1185, "Value isn't a date!"));
  EXPECT_EQ(
      Describe(ErrorOf([&] { Sets().Add(Date(2026, 3, 1), "u", Variant(), Variant(Date(2027, 1, 1))); })),
      ExpectedMessage(1103, "Date out of opened business year!"));
  EXPECT_EQ(Rows("DefinitiveSets"), 0);
}

TEST_F(DefinitiveSetsTest, AddWritesTheRowAndKeepsTheSet) {
  const auto set =
      Sets().Add(Date(2026, 3, 1), "Ueli \"U\" O'Neil", Variant("01.02.2026"), Variant(), " ", true);
  EXPECT_GT(set->ID(), 0);
  EXPECT_EQ(set->Number(), 1);
  EXPECT_EQ(set->TransactionDate(), Date(2026, 3, 1));
  EXPECT_EQ(set->User(), "Ueli \"U\" O'Neil");
  EXPECT_EQ(CDate(set->BeginnDate()), Date(2026, 2, 1));
  EXPECT_TRUE(set->EndDate().IsNull());
  EXPECT_EQ(set->ExcludedJournals(), "");
  EXPECT_TRUE(set->UsersEntriesOnly());
  EXPECT_EQ(Sets().Item(BuildKey(set->ID())), set);
  EXPECT_EQ(Sets().Add(Date(2026, 3, 2), "u")->Number(), 2);
}

TEST_F(DefinitiveSetsTest, ItemWithUnknownKeyReportsTheTextUnfilled) {
  const Error error = ErrorOf([&] { Sets().Item(Variant("ID99")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040451u));
  EXPECT_EQ(error.Source(), kAppTitle);
  // Deliberate: the text keeps "%1", since the fill only knows "1%".
  EXPECT_EQ(error.Description(), "No DefinitiveSet with ID=%1 could be found!");
}

TEST_F(DefinitiveSetsTest, ItemOutsideThePositionsIsSubscriptError) {
  Sets().Add(Date(2026, 3, 1), "u");
  EXPECT_EQ(ErrorOf([&] { Sets().Item(Variant(int32_t{0})); }).Number(), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { Sets().Item(Variant(int32_t{2})); }).Number(), kErrSubscript);
  EXPECT_EQ(Sets().Item(Variant(int32_t{1}))->User(), "u");
}

TEST_F(DefinitiveSetsTest, RefreshRereadsInIDOrderAndEnumerates) {
  Sets().Add(Date(2026, 3, 1), "a");
  Sets().Add(Date(2026, 3, 2), "b");
  DefinitiveSets fresh;
  ASSERT_EQ(fresh.Count(), 2);
  std::vector<std::string> users;
  for (const auto& set : fresh) users.push_back(set->User());
  EXPECT_EQ(users, (std::vector<std::string>{"a", "b"}));
  Db().Execute("DELETE FROM DefinitiveSets;");
  fresh.Refresh();
  EXPECT_EQ(fresh.Count(), 0);
}

TEST_F(DefinitiveSetsTest, NumberOfARolledBackRunIsUsedAgain) {
  Posted();
  ErrorOf([&] { Entries().DoDefinitive(Variant(), Variant(Date(2025, 6, 1))); });
  EXPECT_EQ(Entries().DoDefinitive(), 1);
  Sets().Refresh();
  ASSERT_EQ(Sets().Count(), 1);
  EXPECT_EQ(Sets().Item(Variant(int32_t{1}))->Number(), 1);
}

}  // namespace
}  // namespace ldg::book_entry_testing

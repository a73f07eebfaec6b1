#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg::book_entry_testing {
namespace {

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class CountingListener : public BookEntryEvents {
 public:
  void AmountChanged(int32_t internal_id) override { changed.push_back(internal_id); }
  std::vector<int32_t> changed;
};

// ---------------------------------------------------------------- append

TEST_F(BookEntryTest, AppendWritesEntryRowLinesAndBalances) {
  auto entry = Posted();
  ASSERT_GT(entry->ID(), 0);
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "JournalID")), journal_id_);
  EXPECT_EQ(CDate(EntryColumn(entry->ID(), "Date")), Date(2026, 3, 10));
  EXPECT_EQ(CStr(EntryColumn(entry->ID(), "DocumentID")), "B1");
  EXPECT_EQ(Rows("Movements WHERE EntryID = " + std::to_string(entry->ID())), 2);
  for (const auto& line : entry->Movements()) EXPECT_GT(line->ID(), 0);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("100"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("-100"));
  ExpectBalancesMatchMovements();
}

TEST_F(BookEntryTest, AppendOfUnbalancedEntryFailsBeforeTransaction) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-90"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1171, "Book entry unbalanced!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040493u));
  EXPECT_EQ(entry->ID(), 0);
  EXPECT_EQ(Rows("BookEntries"), 0);
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
}

TEST_F(BookEntryTest, AppendTwiceFailsTheSecondTime) {
  auto entry = Posted();
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error),
            ExpectedMessage(1165,
                            "Can't append: changes in an existing BookEntry must be saved using its Update "
                            "method."));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004048Du));
  EXPECT_EQ(Rows("BookEntries"), 1);
}

TEST_F(BookEntryTest, EntryOnLastDayOfLockedPeriodFails) {
  Periods().Add(Date(2026, 3, 1));
  Periods().Add(Date(2026, 4, 1));
  Periods().Locked(Variant(Date(2026, 3, 1)), true);
  auto entry = NewEntry(Date(2026, 3, 31), {{cash_, "100"}, {revenue_, "-100"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), Expected(static_cast<int32_t>(0x800404CBu), kAppTitle, "Periode ist gesperrt!"));
  EXPECT_EQ(Rows("BookEntries"), 0);
  // The day after the locked period is open again.
  auto next = NewEntry(Date(2026, 4, 1), {{cash_, "100"}, {revenue_, "-100"}});
  Entries().Append(*next);
  EXPECT_GT(next->ID(), 0);
}

TEST_F(BookEntryTest, FailedLineSaveRollsBackAndClearsIDs) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {master_, "-100"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1221, "Cannot book on master account"));
  EXPECT_EQ(entry->ID(), 0);
  for (const auto& line : entry->Movements()) EXPECT_EQ(line->ID(), 0);
  EXPECT_EQ(Rows("BookEntries"), 0);
  EXPECT_EQ(Rows("Movements"), 0);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Currency());
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
}

TEST_F(BookEntryTest, AppendWithoutLinesFails) {
  auto entry = NewEntry(Date(2026, 3, 10), {});
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            ExpectedMessage(1175, "No movements found!"));
}

// ---------------------------------------------------------------- validation

TEST_F(BookEntryTest, UnknownJournalFails) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->JournalID(999);
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            ExpectedMessage(1166, "Journal not found!"));
}

TEST_F(BookEntryTest, LockedJournalFails) {
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  const Error error = ErrorOf([&] { Entries().Append(*entry); });
  EXPECT_EQ(Describe(error),
            ExpectedMessage(1169, "Journal locked! Book entry cannot be written to the choosen journal!"));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040491u));
}

TEST_F(BookEntryTest, EntryDateThatIsNoDateFails) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->EntryDate(Variant("bald"));
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            ExpectedMessage(1167, "Invalid entry date!"));
  entry->EntryDate(Variant());
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
            ExpectedMessage(1167, "Invalid entry date!"));
}

TEST_F(BookEntryTest, EntryDateOutsideTheYearFails) {
  for (OleDate day : {Date(2025, 12, 31), Date(2027, 1, 1)}) {
    auto entry = NewEntry(day, {{cash_, "100"}, {revenue_, "-100"}});
    EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*entry); })),
              ExpectedMessage(1168, "Entry date not in opened business year!"));
  }
}

TEST_F(BookEntryTest, YearCheckComparesTheDatePartOnly) {
  auto entry = NewEntry(OleDate(Date(2026, 6, 30).Serial() + 0.75), {{cash_, "100"}, {revenue_, "-100"}});
  Entries().Append(*entry);
  EXPECT_GT(entry->ID(), 0);
  // On the last day a time passes the year check, but the period lookup takes the
  // full date, finds no period after the year's end and answers "locked".
  auto late = NewEntry(OleDate(Date(2026, 12, 31).Serial() + 0.75), {{cash_, "100"}, {revenue_, "-100"}});
  EXPECT_EQ(ErrorOf([&] { Entries().Append(*late); }).Number(), static_cast<int32_t>(0x800404CBu));
}

TEST_F(BookEntryTest, DateTextCountsAsDate) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->EntryDate(Variant("15.05.2026"));
  Entries().Append(*entry);
  EXPECT_EQ(CDate(EntryColumn(entry->ID(), "Date")), Date(2026, 5, 15));
}

// ---------------------------------------------------------------- members

TEST_F(BookEntryTest, MarkOutsideOneToSixIsSubscriptError) {
  BookEntry entry;
  EXPECT_EQ(ErrorOf([&] { entry.Mark(0); }).Number(), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { entry.Mark(7, true); }).Number(), kErrSubscript);
  entry.Mark(6, true);
  EXPECT_TRUE(entry.Mark(6));
  EXPECT_FALSE(entry.Mark(1));
}

TEST_F(BookEntryTest, DocumentIDSystemSetsTheSystemFlag) {
  BookEntry entry;
  entry.DocumentID(Variant("SYSTEM"));
  EXPECT_TRUE(entry.IsSystem());
  entry.DocumentID(Variant("System"));
  EXPECT_TRUE(entry.IsSystem());
  entry.DocumentID(Variant("Systems"));
  EXPECT_FALSE(entry.IsSystem());
  entry.DocumentID(Variant::Null());
  EXPECT_FALSE(entry.IsSystem());
}

TEST_F(BookEntryTest, SystemEntryMayBookOnTheSumWithIDTwo) {
  ASSERT_EQ(RootB(), 2);
  auto plain = NewEntry(Date(2026, 12, 31), {{cash_, "100"}, {RootB(), "-100"}});
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*plain); })),
            ExpectedMessage(1220, "Cannot book on account sums"));
  auto system = NewEntry(Date(2026, 12, 31), {{cash_, "100"}, {RootB(), "-100"}}, Variant("system"));
  Entries().Append(*system);
  EXPECT_GT(system->ID(), 0);
  EXPECT_EQ(EntryColumn(system->ID(), "DocumentID"), Variant("system"));
}

TEST_F(BookEntryTest, NumericDocumentIDIsStoredWithFourteenDigits) {
  auto entry = Posted(Date(2026, 3, 10), Variant(int32_t{12}));
  EXPECT_EQ(EntryColumn(entry->ID(), "DocumentID"), Variant("00000000000012"));
  auto text_digits = Posted(Date(2026, 3, 10), Variant("7"));
  EXPECT_EQ(EntryColumn(text_digits->ID(), "DocumentID"), Variant("00000000000007"));
}

TEST_F(BookEntryTest, EmptyDocumentIDAndTagAreStoredAsNull) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}}, Variant(""));
  entry->Tag(Variant(""));
  Entries().Append(*entry);
  EXPECT_TRUE(EntryColumn(entry->ID(), "DocumentID").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "Tag").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "Infotext").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "Tags").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "Definitive").IsNull());
}

TEST_F(BookEntryTest, DefinitiveFalseOnDefinitiveEntryFails) {
  auto entry = Posted();
  entry->Definitive(true);
  const Error error = ErrorOf([&] { entry->Definitive(false); });
  EXPECT_EQ(Describe(error),
            ExpectedMessage(1219,
                            "The book entry is definitive. The definitive state of a book entry cannot be "
                            "undone."));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404C3u));
  EXPECT_TRUE(entry->Definitive());
}

TEST_F(BookEntryTest, DefinitiveFalseOnOpenEntryStaysOpen) {
  BookEntry entry;
  entry.Definitive(false);
  EXPECT_FALSE(entry.Definitive());
  entry.Definitive(true);
  EXPECT_EQ(entry.DefinitiveKey(), -1);
}

TEST_F(BookEntryTest, AutomatismSwitchesPassThroughToTheLines) {
  BookEntry entry;
  EXPECT_FALSE(entry.TaxAutomatismActive());
  EXPECT_FALSE(entry.BalancingAutomatismActive());
  entry.TaxAutomatismActive(true);
  entry.BalancingAutomatismActive(true);
  EXPECT_TRUE(entry.Movements().TaxAutomatism());
  EXPECT_TRUE(entry.Movements().BalancingAutomatism());
}

TEST_F(BookEntryTest, ListenersHearAmountChanges) {
  BookEntry entry;
  CountingListener listener;
  entry.AddListener(&listener);
  entry.AddListener(&listener);
  entry.RaiseAmountChanged(3);
  entry.RemoveListener(&listener);
  entry.RaiseAmountChanged(4);
  EXPECT_EQ(listener.changed, std::vector<int32_t>{3});
}

// ---------------------------------------------------------------- definitive

TEST_F(BookEntryTest, UpdateAfterDefinitiveFails) {
  RecordingCallback callback;
  auto shared = std::shared_ptr<Callback>(&callback, [](Callback*) {});
  engine_->Callback(shared);
  auto entry = Posted();
  entry->Definitive(true);
  entry->Update();
  EXPECT_EQ(callback.actions, std::vector<std::string>{"DoneDefinitive=1"});
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "Definitive")), entry->DefinitiveKey());
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "DefinitiveJournal")), 1);
  ASSERT_EQ(Entries().DefinitiveSets()->Count(), 1);
  const auto set = Entries().DefinitiveSets()->Item(Variant(int32_t{1}));
  EXPECT_EQ(set->User(), "Admin");
  EXPECT_EQ(set->TransactionDate(), DefinitiveRunDate());
  EXPECT_TRUE(set->BeginnDate().IsNull());
  EXPECT_FALSE(set->UsersEntriesOnly());

  const Error error = ErrorOf([&] { entry->Update(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1170,
                                             "Book entry is permanently locked. Illegal call of method "
                                             "Append or Update failed."));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040492u));
  EXPECT_EQ(callback.actions.size(), 1u);
  engine_->Callback(nullptr);
}

TEST_F(BookEntryTest, DefinitiveRequestOnNewEntryIsNotStoredByAppend) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->Definitive(true);
  Entries().Append(*entry);
  EXPECT_TRUE(EntryColumn(entry->ID(), "Definitive").IsNull());
  EXPECT_TRUE(entry->Definitive());
  EXPECT_EQ(entry->DefinitiveKey(), -1);
  EXPECT_EQ(Rows("DefinitiveSets"), 0);
  // Deliberate: the request went into the stored copy, so this object's next Update fails.
  EXPECT_EQ(ErrorOf([&] { entry->Update(); }).Number(), MessageNumber(1170));
  // A fresh load of the same entry is open and can be made definitive.
  auto loaded = Entries().Item(BuildKey(entry->ID()));
  EXPECT_FALSE(loaded->Definitive());
}

TEST_F(BookEntryTest, DefinitiveEntryCannotBeDeleted) {
  auto entry = Posted();
  entry->Definitive(true);
  entry->Update();
  const Error error = ErrorOf([&] { entry->Delete(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1206, "Book entry is definitive and can not be deleted!"));
  EXPECT_EQ(Rows("BookEntries"), 1);
}

TEST_F(BookEntryTest, FailedDefinitiveUpdateKeepsTheAssignedKey) {
  auto entry = Posted();
  entry->Definitive(true);
  NewMovement on_master;
  on_master.account_id = master_;
  entry->Movements().Add(on_master);
  const std::string before = TablesDump();
  EXPECT_EQ(Describe(ErrorOf([&] { entry->Update(); })),
            ExpectedMessage(1221, "Cannot book on master account"));
  EXPECT_EQ(TablesDump(), before);
  // Unlike the append path nothing is reset: the key of the rolled-back run stays.
  EXPECT_GT(entry->DefinitiveKey(), 0);
  EXPECT_TRUE(entry->Definitive());
  EXPECT_GT(entry->ID(), 0);
  EXPECT_EQ(Rows("DefinitiveSets"), 0);
}

// ---------------------------------------------------------------- update

TEST_F(BookEntryTest, UpdateOfNewEntryFails) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  const Error error = ErrorOf([&] { entry->Update(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1164, MessageText(1164)));
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004048Cu));
}

TEST_F(BookEntryTest, UpdateWritesOnlyWhatChanged) {
  auto entry = Posted();
  EXPECT_EQ(entry->GetUpdateSet(), "");
  entry->EntryDate(Variant(Date(2026, 4, 2)));
  entry->DocumentID(Variant(int32_t{5}));
  entry->Tag(Variant("T"));
  entry->Mark(2, true);
  entry->Marked(true);
  entry->Infotext("Info");
  EXPECT_EQ(entry->GetUpdateSet(),
            "BookEntries.Date = #4/2/2026#, DocumentID = '00000000000005', Tag = 'T', Mark2 = True, "
            "Marked = True, InfoText = 'Info'");
  // The numeric document number took its stored form in the member itself.
  EXPECT_EQ(entry->DocumentID(), Variant("00000000000005"));
  entry->Update();
  EXPECT_EQ(CDate(EntryColumn(entry->ID(), "Date")), Date(2026, 4, 2));
  EXPECT_EQ(EntryColumn(entry->ID(), "DocumentID"), Variant("00000000000005"));
  EXPECT_EQ(EntryColumn(entry->ID(), "Tag"), Variant("T"));
  EXPECT_TRUE(CBool(EntryColumn(entry->ID(), "Mark2")));
  EXPECT_TRUE(CBool(EntryColumn(entry->ID(), "Marked")));
  EXPECT_EQ(EntryColumn(entry->ID(), "Infotext"), Variant("Info"));
  EXPECT_EQ(entry->GetUpdateSet(), "");
}

TEST_F(BookEntryTest, ClearedTextsAreWrittenAsNull) {
  auto entry = Posted();
  entry->Tag(Variant("T"));
  entry->Infotext("Info");
  entry->Update();
  entry->Tag(Variant(""));
  entry->Infotext("");
  entry->DocumentID(Variant(""));
  EXPECT_EQ(entry->GetUpdateSet(), "DocumentID = NULL, Tag = NULL, InfoText = NULL");
  entry->Update();
  EXPECT_TRUE(EntryColumn(entry->ID(), "Tag").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "Infotext").IsNull());
  EXPECT_TRUE(EntryColumn(entry->ID(), "DocumentID").IsNull());
}

TEST_F(BookEntryTest, ClientIDChangeReplacesTheOtherChanges) {
  auto entry = Posted();
  entry->Marked(true);
  entry->ClientID(42);
  // Deliberate: the ClientID piece replaces everything built before it.
  EXPECT_EQ(entry->GetUpdateSet(), "ClientID = 42");
  entry->Update();
  EXPECT_EQ(ReadLong(EntryColumn(entry->ID(), "ClientID")), 42);
  EXPECT_FALSE(CBool(EntryColumn(entry->ID(), "Marked")));
  EXPECT_TRUE(entry->Marked());
  EXPECT_FALSE(Entries().Item(BuildKey(entry->ID()))->Marked());
}

TEST_F(BookEntryTest, ClientIDZeroIsWrittenAsNull) {
  auto entry = Posted();
  entry->ClientID(7);
  entry->Update();
  entry->ClientID(0);
  EXPECT_EQ(entry->GetUpdateSet(), "ClientID = NULL");
  entry->Update();
  EXPECT_TRUE(EntryColumn(entry->ID(), "ClientID").IsNull());
}

TEST_F(BookEntryTest, TagsChangeOfStoredEntryIsNotWritten) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->Tags("a;b");
  Entries().Append(*entry);
  EXPECT_EQ(EntryColumn(entry->ID(), "Tags"), Variant("a;b"));
  entry->Tags("c");
  EXPECT_EQ(entry->GetUpdateSet(), "");
  entry->Update();
  EXPECT_EQ(EntryColumn(entry->ID(), "Tags"), Variant("a;b"));
}

TEST_F(BookEntryTest, UpdateMovesAmountsOfChangedLines) {
  auto entry = Posted();
  entry->Movements().Item(Variant(int32_t{1}))->Amount(Amount("150"));
  entry->Movements().Item(Variant(int32_t{2}))->Amount(Amount("-150"));
  entry->Update();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("150"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("-150"));
  ExpectBalancesMatchMovements();
}

TEST_F(BookEntryTest, UpdateInLockedJournalFails) {
  auto entry = Posted();
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  entry->Marked(true);
  EXPECT_EQ(ErrorOf([&] { entry->Update(); }).Number(), MessageNumber(1169));
  EXPECT_FALSE(CBool(EntryColumn(entry->ID(), "Marked")));
}

// ---------------------------------------------------------------- delete

TEST_F(BookEntryTest, DeleteOfNewEntryFails) {
  BookEntry entry;
  EXPECT_EQ(Describe(ErrorOf([&] { entry.Delete(); })),
            ExpectedMessage(1207, "Can't delete! New book entry"));
}

TEST_F(BookEntryTest, DeleteTakesAmountsOffAndRemovesRows) {
  auto entry = Posted();
  entry->Delete();
  EXPECT_EQ(Rows("BookEntries"), 0);
  EXPECT_EQ(Rows("Movements"), 0);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Currency());
  ExpectBalancesMatchMovements();
}

TEST_F(BookEntryTest, DeleteInLockedPeriodSucceeds) {
  auto entry = Posted(Date(2026, 3, 10));
  LockPeriodOf(Date(2026, 3, 1));
  ASSERT_TRUE(Periods().Locked(Variant(Date(2026, 3, 10))));
  entry->Delete();
  EXPECT_EQ(Rows("BookEntries"), 0);
  ExpectBalancesMatchMovements();
}

TEST_F(BookEntryTest, DeleteInLockedJournalSucceeds) {
  auto entry = Posted();
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  entry->Delete();
  EXPECT_EQ(Rows("BookEntries"), 0);
  ExpectBalancesMatchMovements();
}

// ---------------------------------------------------------------- load, copy, cancel

TEST_F(BookEntryTest, LoadReadsNullsAsEmptyValues) {
  const int32_t id = InsertEntry(journal_id_, Date(2026, 2, 1));
  InsertMovement(id, cash_, Amount("10"));
  InsertMovement(id, revenue_, Amount("-10"));
  auto entry = Entries().Item(BuildKey(id));
  EXPECT_EQ(entry->ID(), id);
  EXPECT_EQ(entry->DefinitiveKey(), 0);
  EXPECT_EQ(entry->ClientID(), 0);
  EXPECT_EQ(entry->Infotext(), "");
  EXPECT_EQ(entry->Tags(), "");
  EXPECT_TRUE(entry->DocumentID().IsNull());
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(entry->GetUpdateSet(), "");
}

TEST_F(BookEntryTest, CopyIsAnUnsavedEntryReadFromTheDatabase) {
  auto entry = Posted();
  entry->Infotext("nur im Speicher");
  auto copy = entry->Copy();
  ASSERT_TRUE(copy);
  EXPECT_NE(copy.get(), entry.get());
  EXPECT_EQ(copy->ID(), 0);
  EXPECT_EQ(copy->JournalID(), 0);
  EXPECT_EQ(copy->DocumentID(), Variant("B1"));
  EXPECT_EQ(copy->Infotext(), "");
  ASSERT_EQ(copy->Movements().Count(), 2);
  for (const auto& line : copy->Movements()) EXPECT_EQ(line->ID(), 0);
  AllJournals().Item(BuildKey(journal_id_))->Append(*copy);
  EXPECT_GT(copy->ID(), entry->ID());
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("200"));
  ExpectBalancesMatchMovements();
}

TEST_F(BookEntryTest, CopyAndCancelOfNewEntryGiveNothing) {
  BookEntry entry;
  EXPECT_EQ(entry.Copy(), nullptr);
  EXPECT_EQ(entry.Cancel(), nullptr);
}

TEST_F(BookEntryTest, CancelOfDefinitiveEntryNeedsAJournal) {
  auto entry = Posted(Date(2026, 3, 10), Variant("00000000000042"));
  entry->Definitive(true);
  entry->Update();
  auto storno = entry->Cancel();
  ASSERT_TRUE(storno);
  EXPECT_EQ(storno->ID(), 0);
  EXPECT_EQ(storno->JournalID(), 0);
  EXPECT_FALSE(storno->Definitive());
  ASSERT_EQ(storno->Movements().Count(), 2);
  auto first = storno->Movements().Item(Variant(int32_t{1}));
  EXPECT_EQ(first->ID(), 0);
  EXPECT_EQ(first->Amount(), Amount("-100"));
  EXPECT_EQ(CStr(first->Text()), "Storno, siehe Beleg 42");
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*storno); })),
            ExpectedMessage(1166, "Journal not found!"));
  AllJournals().Item(BuildKey(journal_id_))->Append(*storno);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Currency());
  ExpectBalancesMatchMovements();
}

// ---------------------------------------------------------------- texts

TEST_F(BookEntryTest, SpecialTextsAreStoredAndReadBackVerbatim) {
  const std::string text = "Müller \"Zürich\" * # [x] ?% äöü";
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}}, Variant("D\"*#ä"));
  entry->Tag(Variant("T*#\"ö"));
  entry->Tags("ü;\"*\";#");
  entry->Infotext(text);
  entry->Movements().Item(Variant(int32_t{1}))->Text(Variant(text));
  Entries().Append(*entry);
  auto loaded = Entries().Item(BuildKey(entry->ID()));
  EXPECT_EQ(loaded->DocumentID(), Variant("D\"*#ä"));
  EXPECT_EQ(loaded->Tag(), Variant("T*#\"ö"));
  EXPECT_EQ(loaded->Tags(), "ü;\"*\";#");
  EXPECT_EQ(loaded->Infotext(), text);
  EXPECT_EQ(CStr(loaded->Movements().Item(Variant(int32_t{1}))->Text()), text);

  loaded->Infotext(text + " neu");
  loaded->Tag(Variant("#*\"Ä"));
  loaded->DocumentID(Variant("*\"#"));
  loaded->Movements().Item(Variant(int32_t{2}))->Text(Variant(text + " 2"));
  loaded->Update();
  auto again = Entries().Item(BuildKey(entry->ID()));
  EXPECT_EQ(again->Infotext(), text + " neu");
  EXPECT_EQ(again->Tag(), Variant("#*\"Ä"));
  EXPECT_EQ(again->DocumentID(), Variant("*\"#"));
  EXPECT_EQ(CStr(again->Movements().Item(Variant(int32_t{2}))->Text()), text + " 2");
}

TEST_F(BookEntryTest, CraftedTextsAreStoredAsTheyAreByAppend) {
  const std::string crafted = "x', Amount=999 --";
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}}, Variant(crafted));
  entry->Tag(Variant(crafted));
  entry->Infotext(crafted);
  entry->Tags(crafted);
  Entries().Append(*entry);
  auto loaded = Entries().Item(BuildKey(entry->ID()));
  EXPECT_EQ(loaded->DocumentID(), Variant(crafted));
  EXPECT_EQ(loaded->Tag(), Variant(crafted));
  EXPECT_EQ(loaded->Infotext(), crafted);
  EXPECT_EQ(loaded->Tags(), crafted);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("100"));
  // An unchanged text isn't pasted again, so other changes still go through.
  loaded->Marked(true);
  loaded->Update();
  EXPECT_TRUE(CBool(EntryColumn(entry->ID(), "Marked")));
}

// ---------------------------------------------------------------- dump

TEST_F(BookEntryTest, DumpWritesCsvOfEntryAndLines) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100.5"}, {revenue_, "-100.5"}}, Variant("B,\"7\""));
  entry->Infotext("Zürich");
  Entries().Append(*entry);
  const std::string before = TablesDump();
  const std::string path = entry->Dump();
  ASSERT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(std::filesystem::path(path).extension(), ".csv");
  const std::string csv = FileText(path);
  std::filesystem::remove(path);
  EXPECT_EQ(TablesDump(), before);
  std::istringstream lines(csv);
  std::string header, row, line_header, line1, line2;
  std::getline(lines, header);
  std::getline(lines, row);
  std::getline(lines, line_header);
  std::getline(lines, line1);
  std::getline(lines, line2);
  EXPECT_EQ(header.rfind("ID,JournalID,EntryDate,DocumentID,Tag,", 0), 0u) << header;
  EXPECT_EQ(row.rfind(std::to_string(entry->ID()) + "," + std::to_string(journal_id_) +
                          ",10.03.2026,\"B,\"\"7\"\"\",,",
                      0),
            0u)
      << row;
  EXPECT_NE(row.find("Zürich"), std::string::npos);
  EXPECT_EQ(line_header.rfind("ID,InternalID,AccountID,AccountCode,", 0), 0u);
  EXPECT_NE(line1.find(",1000,"), std::string::npos) << line1;
  EXPECT_NE(line1.find(",100.5,"), std::string::npos) << line1;
  EXPECT_NE(line2.find(",-100.5,"), std::string::npos) << line2;
}

}  // namespace
}  // namespace ldg::book_entry_testing

// A posting that is refused, before or inside its transaction, leaves every
// table but the database log exactly as it was, and the stored balances equal
// the sums of the movements afterwards.
#include "store/store_error.hpp"
#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg::book_entry_testing {
namespace {

class PostingRollbackTest : public BookEntryTest {
 protected:
  void SetUp() override {
    BookEntryTest::SetUp();
    // Something already posted, so that a rollback has balances to keep.
    auto earlier = NewEntry(Date(2026, 2, 3), {{cash_, "70"}, {detail_, "30"}, {revenue_, "-100"}});
    Entries().Append(*earlier);
    ASSERT_GT(earlier->ID(), 0);
    earlier_ = earlier;
  }

  // The call fails with the error number, and nothing in the file changed.
  template <typename Call>
  Error ExpectRefusedWithoutChange(Call call, int32_t number) {
    const std::string before = TablesDump();
    const Error error = ErrorOf(call);
    EXPECT_EQ(error.Number(), number) << Describe(error);
    EXPECT_EQ(TablesDump(), before);
    EXPECT_EQ(State().workspace->TransactionLevel(), 0);
    ExpectBalancesMatchMovements();
    return error;
  }

  std::shared_ptr<BookEntry> earlier_;
};

TEST_F(PostingRollbackTest, LineOnMasterAccountChangesNothing) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {detail_, "50"}, {master_, "-150"}});
  const Error error = ExpectRefusedWithoutChange([&] { Entries().Append(*entry); }, MessageNumber(1221));
  EXPECT_EQ(Describe(error), ExpectedMessage(1221, "Cannot book on master account"));
  EXPECT_EQ(entry->ID(), 0);
  for (const auto& line : entry->Movements()) EXPECT_EQ(line->ID(), 0);
  EXPECT_EQ(StoredCurrency(master_, "ChildrensBalance"), Amount("30"));
}

TEST_F(PostingRollbackTest, LineOnSumChangesNothing) {
  const int32_t sum = InsertSum(RootA(), "10", "Summe 10");
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {sum, "-100"}});
  const Error error = ExpectRefusedWithoutChange([&] { Entries().Append(*entry); }, MessageNumber(1220));
  EXPECT_EQ(Describe(error), ExpectedMessage(1220, "Cannot book on account sums"));
}

TEST_F(PostingRollbackTest, LockedPeriodChangesNothing) {
  LockPeriodOf(Date(2026, 3, 1));
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  ExpectRefusedWithoutChange([&] { Entries().Append(*entry); }, static_cast<int32_t>(0x800404CBu));
}

TEST_F(PostingRollbackTest, UnbalancedEntryChangesNothing) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-99.99"}});
  ExpectRefusedWithoutChange([&] { Entries().Append(*entry); }, MessageNumber(1171));
}

TEST_F(PostingRollbackTest, LockedJournalChangesNothing) {
  AllJournals().Item(BuildKey(journal_id_))->ChangeLock(lgrJLMLock);
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  ExpectRefusedWithoutChange([&] { Entries().Append(*entry); }, MessageNumber(1169));
}

TEST_F(PostingRollbackTest, FailedUpdateUndoesTheEntryRowAndEarlierLines) {
  earlier_->Marked(true);
  earlier_->Infotext("geändert");
  earlier_->Movements().Item(Variant(int32_t{1}))->Amount(Amount("100"));
  earlier_->Movements().Item(Variant(int32_t{3}))->Amount(Amount("-80"));
  NewMovement on_master;
  on_master.account_id = master_;
  on_master.amount = Amount("-50");
  earlier_->Movements().Add(on_master);
  ExpectRefusedWithoutChange([&] { earlier_->Update(); }, MessageNumber(1221));
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("70"));
}

TEST_F(PostingRollbackTest, CraftedTextsOnUpdateAreRefusedWithoutChange) {
  const std::string crafted = "x', Amount=999 --";
  earlier_->Infotext(crafted);
  ExpectRefusedWithoutChange([&] { earlier_->Update(); }, store::kErrSyntax);
  earlier_->Infotext("");
  earlier_->Tag(Variant(crafted));
  const Error error = ExpectRefusedWithoutChange([&] { earlier_->Update(); }, store::kErrSyntax);
  EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
  earlier_->Tag(Variant());
  earlier_->DocumentID(Variant(crafted));
  ExpectRefusedWithoutChange([&] { earlier_->Update(); }, store::kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { earlier_->GetUpdateSet(); }).Number(), store::kErrSyntax);
}

TEST_F(PostingRollbackTest, CraftedLineTextChangesOnlyItself) {
  const std::string crafted = "x', Amount=999 --";
  earlier_->Movements().Item(Variant(int32_t{1}))->Text(Variant(crafted));
  earlier_->Update();
  auto loaded = Entries().Item(BuildKey(earlier_->ID()));
  EXPECT_EQ(CStr(loaded->Movements().Item(Variant(int32_t{1}))->Text()), crafted);
  EXPECT_EQ(loaded->Movements().Item(Variant(int32_t{1}))->Amount(), Amount("70"));
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("70"));
  ExpectBalancesMatchMovements();
}

TEST_F(PostingRollbackTest, CraftedLineReferenceFailsWithoutChange) {
  earlier_->Movements().Item(Variant(int32_t{1}))->Reference(Variant("x', Amount=999 --"));
  earlier_->Movements().Item(Variant(int32_t{1}))->Amount(Amount("90"));
  earlier_->Movements().Item(Variant(int32_t{3}))->Amount(Amount("-120"));
  ExpectRefusedWithoutChange([&] { earlier_->Update(); }, store::kErrSyntax);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("70"));
}

TEST_F(PostingRollbackTest, CraftedTextWithDefinitiveRequestAssignsNoRun) {
  earlier_->Definitive(true);
  earlier_->Infotext("a'b");
  ExpectRefusedWithoutChange([&] { earlier_->Update(); }, store::kErrSyntax);
  // The text is refused before the transaction, so no run was recorded, not even in memory.
  EXPECT_EQ(earlier_->DefinitiveKey(), -1);
  EXPECT_EQ(Entries().DefinitiveSets()->Count(), 0);
}

TEST_F(PostingRollbackTest, CraftedTextsAreHarmlessWhenTheyHoldNoQuote) {
  earlier_->Infotext("x\", Amount=999 --");
  earlier_->Tag(Variant("#1/1/2020# OR 1=1"));
  earlier_->Update();
  auto loaded = Entries().Item(BuildKey(earlier_->ID()));
  EXPECT_EQ(loaded->Infotext(), "x\", Amount=999 --");
  EXPECT_EQ(loaded->Tag(), Variant("#1/1/2020# OR 1=1"));
  ExpectBalancesMatchMovements();
  EXPECT_EQ(ReadCurrency(Scalar("SELECT Sum(Amount) AS S FROM Movements;", "S")), Currency());
}

TEST_F(PostingRollbackTest, SuccessfulPostingsKeepBalancesEqualToMovements) {
  Posted(Date(2026, 3, 10));
  auto entry = NewEntry(Date(2026, 4, 10), {{detail_, "20"}, {bank_, "-20"}});
  Entries().Append(*entry);
  ExpectBalancesMatchMovements();
  EXPECT_EQ(StoredCurrency(master_, "ChildrensBalance"), Amount("50"));
  entry->Delete();
  ExpectBalancesMatchMovements();
  EXPECT_EQ(StoredCurrency(master_, "ChildrensBalance"), Amount("30"));
}

}  // namespace
}  // namespace ldg::book_entry_testing

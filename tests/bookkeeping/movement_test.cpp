#include "bookkeeping/movement.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movements.hpp"
#include "store/store_error.hpp"
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
using movement_testing::MovementsTest;
using movement_testing::TaxLookupStandIn;

class MovementTest : public MovementsTest {
 protected:
  // A line of its own on the account, without an owner.
  std::shared_ptr<Movement> Lone(int32_t account_id) {
    auto line = std::make_shared<Movement>();
    line->SetAccountSilently(AccountOf(account_id));
    return line;
  }

  // The first line of the stored entry read afresh.
  std::shared_ptr<Movement> FirstStoredLine(const std::shared_ptr<BookEntry>& entry) {
    return entry->Movements().Item(Variant(int32_t{1}));
  }
};

// ---- Properties -----------------------------------------------------------------

TEST_F(MovementTest, NullsStoreZeroAndZeroReadsAsNull) {
  Movement line;
  line.BalancingAccountID(Variant(int32_t{7}));
  line.BalancingAccountID(Variant::Null());
  EXPECT_EQ(line.BalancingAccountID(), 0);
  line.FCID(Variant(int32_t{3}));
  EXPECT_EQ(line.FCID(), Variant(int32_t{3}));
  line.FCID(Variant::Null());
  EXPECT_TRUE(line.FCID().IsNull());
  EXPECT_TRUE(line.TaxID().IsNull());
}

TEST_F(MovementTest, ValutaStoresADateAndNullForNullEmptyOrEmptyText) {
  Movement line;
  line.Valuta(Variant("15.03.2026"));
  EXPECT_EQ(line.Valuta(), Variant(Date(2026, 3, 15)));
  line.Valuta(Variant::Null());
  EXPECT_TRUE(line.Valuta().IsNull());
  line.Valuta(Variant(Date(2026, 4, 1)));
  line.Valuta(Variant());
  EXPECT_TRUE(line.Valuta().IsNull());
  line.Valuta(Variant(""));
  EXPECT_TRUE(line.Valuta().IsNull());
}

TEST_F(MovementTest, ValutaThatIsNoDateRaises1163) {
  Movement line;
  const Error error = ErrorOf([&] { line.Valuta(Variant("morgen")); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1163, "Invalid value: movement's valuta is not a Date!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x8004048Bu);
}

// Deliberate: comparing with Null is never a difference, so a Null text changes nothing.
TEST_F(MovementTest, TextOfNullIsIgnored) {
  Movement line;
  line.Text(Variant("Miete"));
  line.Text(Variant::Null());
  EXPECT_EQ(line.Text(), Variant("Miete"));
}

TEST_F(MovementTest, TaxIDKeepsThePreviousValue) {
  Movement line;
  line.TaxID(Variant(int32_t{4}));
  line.TaxID(Variant(int32_t{6}));
  EXPECT_EQ(line.TaxID(), Variant(int32_t{6}));
  EXPECT_EQ(line.PreviousTaxID(), 4);
  line.SetTaxID(9);
  EXPECT_EQ(line.PreviousTaxID(), 4);
}

TEST_F(MovementTest, FCAmountClearsBalanceDestination) {
  Movement line;
  line.BalanceDestination(true);
  line.FCAmount(Amount("5"));
  EXPECT_FALSE(line.BalanceDestination());
  EXPECT_EQ(line.FCAmount(), Amount("5"));
}

TEST_F(MovementTest, AutomatismOwnerOfALoneLineIsNothing) {
  Movement line;
  EXPECT_EQ(line.AutomatismOwner(), nullptr);
}

TEST_F(MovementTest, AutomatismOwnerOfATaxLineIsItsOwner) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  auto entry = LoadEntry(rows.entry_id);
  auto tax_line = entry->Movements().Item(Variant(int32_t{2}));
  EXPECT_EQ(tax_line->AutomatismOwner(), entry->Movements().Item(Variant(int32_t{1})));
  EXPECT_EQ(entry->Movements().Item(Variant(int32_t{1}))->AutomatismOwner(), nullptr);
}

// ---- Validate -------------------------------------------------------------------

TEST_F(MovementTest, ALineWithoutAccountFailsWith1172) {
  Movement line;
  const Error error = ErrorOf([&] { line.Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1172, "Account not set!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040494u);
}

TEST_F(MovementTest, ALineOnASumFailsWith1220) {
  const int32_t sum = InsertSum(RootA(), "10", "Umlauf");
  const Error error = ErrorOf([&] { Lone(sum)->Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1220, "Cannot book on account sums"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x800404C4u);
}

TEST_F(MovementTest, ASystemEntryMayBookOnTheSumWithIDTwoOnly) {
  ASSERT_TRUE(AccountOf(2)->IsSum());
  const int32_t other_sum = InsertSum(RootA(), "10", "Umlauf");
  BookEntry entry;
  entry.DocumentID(Variant("sYsTeM"));
  auto on_two = entry.Movements().Add();
  on_two->SetAccountSilently(AccountOf(2));
  EXPECT_NO_THROW(on_two->Validate());
  auto on_other = entry.Movements().Add();
  on_other->SetAccountSilently(AccountOf(other_sum));
  EXPECT_EQ(Describe(ErrorOf([&] { on_other->Validate(); })),
            ExpectedMessage(1220, "Cannot book on account sums"));
}

TEST_F(MovementTest, TheSumWithIDTwoNeedsASystemEntry) {
  BookEntry entry;
  entry.DocumentID(Variant("B1"));
  auto line = entry.Movements().Add();
  line->SetAccountSilently(AccountOf(2));
  EXPECT_EQ(Describe(ErrorOf([&] { line->Validate(); })),
            ExpectedMessage(1220, "Cannot book on account sums"));
  // A line without an entry counts as not a system entry.
  EXPECT_EQ(Describe(ErrorOf([&] { Lone(2)->Validate(); })),
            ExpectedMessage(1220, "Cannot book on account sums"));
}

TEST_F(MovementTest, ALineOnAMasterFailsWith1221) {
  const Error error = ErrorOf([&] { Lone(master_)->Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1221, "Cannot book on master account"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x800404C5u);
  EXPECT_NO_THROW(Lone(detail_)->Validate());
}

TEST_F(MovementTest, AnEmptyValutaPassesValidate) {
  auto line = Lone(cash_);
  line->Valuta(Variant(""));
  EXPECT_TRUE(line->Valuta().IsNull());
  EXPECT_NO_THROW(line->Validate());
}

TEST_F(MovementTest, AmountZeroWithPositiveForeignAmountFailsTheSignCheck) {
  auto line = Lone(cash_);
  line->FCID(Variant(int32_t{1}));
  line->FCAmount(Amount("5"));
  const Error error = ErrorOf([&] { line->Validate(); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1174, "Amount has not the same sign as FCAmount!"));
  EXPECT_EQ(static_cast<uint32_t>(error.Number()), 0x80040496u);
}

TEST_F(MovementTest, AmountZeroWithNegativeForeignAmountPassesTheSignCheck) {
  auto line = Lone(cash_);
  line->FCID(Variant(int32_t{1}));
  line->FCAmount(Amount("-5"));
  EXPECT_NO_THROW(line->Validate());
}

TEST_F(MovementTest, TheSignCheckNeedsACurrencyAndAForeignAmount) {
  auto line = Lone(cash_);
  line->Amount(Amount("-10"));
  line->FCAmount(Amount("5"));
  EXPECT_NO_THROW(line->Validate());  // no currency
  line->FCID(Variant(int32_t{1}));
  line->FCAmount(Amount("0"));
  EXPECT_NO_THROW(line->Validate());  // no foreign amount
  line->Amount(Amount("10"));
  line->FCAmount(Amount("-5"));
  EXPECT_EQ(Describe(ErrorOf([&] { line->Validate(); })),
            ExpectedMessage(1174, "Amount has not the same sign as FCAmount!"));
}

// ---- Tax key ----------------------------------------------------------------------

// Deliberate: comparing with Null is never a difference, so no automatism runs.
TEST_F(MovementTest, TaxIDNullOnALineWithATaxLineStoresZeroAndKeepsTheTaxLine) {
  const auto rows = StoreTaxedEntry("100", "7.6", 5);
  auto entry = LoadEntry(rows.entry_id);
  entry->TaxAutomatismActive(true);
  auto owner = entry->Movements().Item(Variant(int32_t{1}));
  owner->TaxID(Variant::Null());
  EXPECT_TRUE(owner->TaxID().IsNull());
  EXPECT_EQ(entry->Movements().Count(), 3);
  EXPECT_EQ(owner->DependentMovementID(), 2);
  EXPECT_EQ(owner->Amount(), Amount("100"));
}

TEST_F(MovementTest, ATaxIDThatNamesNoTaxRaisesTheTaxCollectionsError) {
  TaxLookupStandIn taxes({5});
  auto entry = EntryWithAccounts({cash_, revenue_});
  auto line = entry->Movements().Item(Variant(int32_t{1}));
  const Error error = ErrorOf([&] { line->TaxID(Variant(int32_t{99})); });
  EXPECT_EQ(Describe(error), ExpectedMessage(1130, "No tax with ID=99 could be found!"));
}

TEST_F(MovementTest, ATaxIDOnALineWithoutOwnerReportsNothing) {
  TaxLookupStandIn taxes({});
  Movement line;
  EXPECT_NO_THROW(line.TaxID(Variant(int32_t{99})));
  EXPECT_EQ(line.TaxID(), Variant(int32_t{99}));
}

// ---- Saving ---------------------------------------------------------------------

TEST_F(MovementTest, AppendWritesTheLineAndShiftsTheStoredBalance) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {bank_, "-100"}});
  auto line = entry->Movements().Item(Variant(int32_t{1}));
  line->Reference(Variant("R-1"));
  line->Valuta(Variant(Date(2026, 3, 12)));
  Entries().Append(*entry);
  ASSERT_NE(line->ID(), 0);
  EXPECT_EQ(MovementColumn(line->ID(), "EntryID"), Variant(entry->ID()));
  EXPECT_EQ(MovementColumn(line->ID(), "AccountID"), Variant(cash_));
  EXPECT_EQ(MovementColumn(line->ID(), "BalancingAccountID"), Variant(bank_));
  EXPECT_EQ(CCur(MovementColumn(line->ID(), "Amount")), Amount("100"));
  EXPECT_TRUE(MovementColumn(line->ID(), "FCID").IsNull());
  EXPECT_EQ(MovementColumn(line->ID(), "Reference"), Variant("R-1"));
  EXPECT_EQ(CDate(MovementColumn(line->ID(), "Valuta")), Date(2026, 3, 12));
  EXPECT_TRUE(MovementColumn(line->ID(), "TaxID").IsNull());
  EXPECT_TRUE(MovementColumn(line->ID(), "DependentMovementID").IsNull());
  EXPECT_EQ(CLng(MovementColumn(line->ID(), "MasterID")), 0);
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("100"));
  EXPECT_EQ(StoredCurrency(bank_, "Balance"), Amount("400"));
  ExpectBalancesMatchMovements();
}

TEST_F(MovementTest, InsertWritesTheAccountsCurrencyNotTheLinesKey) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {bank_, "-100"}});
  auto line = entry->Movements().Item(Variant(int32_t{1}));
  line->FCID(Variant(int32_t{1}));
  Entries().Append(*entry);
  EXPECT_TRUE(MovementColumn(line->ID(), "FCID").IsNull());
}

TEST_F(MovementTest, ADetailLineStoresTheMasterOfItsAccount) {
  auto entry = NewEntry(Date(2026, 3, 10), {{detail_, "100"}, {bank_, "-100"}});
  Entries().Append(*entry);
  EXPECT_EQ(CLng(MovementColumn(entry->Movements().Item(Variant(int32_t{1}))->ID(), "MasterID")), master_);
}

TEST_F(MovementTest, ChangingOnlyTheAccountOfAStoredLineMovesItsAmount) {
  auto posted = Posted();
  auto entry = LoadEntry(posted->ID());
  auto line = FirstStoredLine(entry);
  line->SetAccountSilently(AccountOf(bank_));
  entry->Update();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("0"));
  EXPECT_EQ(StoredCurrency(bank_, "Balance"), Amount("600"));
  EXPECT_EQ(MovementColumn(line->ID(), "AccountID"), Variant(bank_));
  ExpectBalancesMatchMovements();
}

TEST_F(MovementTest, ChangingTheAmountOfAStoredLineShiftsByTheDifference) {
  auto posted = Posted();
  auto entry = LoadEntry(posted->ID());
  entry->Movements().Item(Variant(int32_t{1}))->SetAmountSilently(Amount("130"));
  entry->Movements().Item(Variant(int32_t{2}))->SetAmountSilently(Amount("-130"));
  entry->Update();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("130"));
  EXPECT_EQ(StoredCurrency(revenue_, "Balance"), Amount("-130"));
  ExpectBalancesMatchMovements();
}

TEST_F(MovementTest, AStoredLineRefreshesTheBalanceBeforeItShifts) {
  auto posted = Posted();
  auto entry = LoadEntry(posted->ID());
  Post(cash_, Amount("50"));  // another posting after the entry was read
  entry->Movements().Item(Variant(int32_t{1}))->SetAmountSilently(Amount("110"));
  entry->Movements().Item(Variant(int32_t{2}))->SetAmountSilently(Amount("-110"));
  entry->Update();
  EXPECT_EQ(StoredCurrency(cash_, "Balance"), Amount("160"));
}

TEST_F(MovementTest, UpdateSetListsOnlyTheChangedFieldsInOrder) {
  auto entry = LoadEntry(Posted()->ID());
  auto line = FirstStoredLine(entry);
  EXPECT_EQ(line->GetUpdateSet(), "");
  line->SetAmountSilently(Amount("12.5"));
  line->TaxManual(true);
  line->BalancingAccountID(Variant(int32_t{0}));
  line->SetTextSilently("");
  line->Reference(Variant("R7"));
  line->Valuta(Variant(Date(2026, 3, 5)));
  line->FCID(Variant(int32_t{4}));
  EXPECT_EQ(line->GetUpdateSet(),
            "BalancingAccountID = NULL, [Text] = NULL, Amount = 12.5, FCID = 4, Reference ='R7', "
            "Valuta = #3/5/2026#, TaxManual = True");
}

TEST_F(MovementTest, UpdateSetWritesTheAccountWhenItsCodeDiffers) {
  auto line = FirstStoredLine(LoadEntry(Posted()->ID()));
  line->SetAccountSilently(AccountOf(bank_));
  line->SetDependentMovementID(3);
  line->SetIsDependent(true);
  line->IsNetAmount(true);
  line->SetTaxID(2);
  EXPECT_EQ(line->GetUpdateSet(),
            "AccountID = " + std::to_string(bank_) +
                ", TaxID = 2, IsNetAmount = True, DependentMovementID = 3, IsDependent = True");
}

// Deliberate: a Null reference or value date is never a difference and is not written.
TEST_F(MovementTest, ClearingReferenceOrValutaOfAStoredLineWritesNothing) {
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  entry->Movements().Item(Variant(int32_t{1}))->Reference(Variant("R1"));
  entry->Movements().Item(Variant(int32_t{1}))->Valuta(Variant(Date(2026, 3, 1)));
  Entries().Append(*entry);
  auto line = FirstStoredLine(LoadEntry(entry->ID()));
  line->Reference(Variant::Null());
  line->Valuta(Variant::Null());
  EXPECT_EQ(line->GetUpdateSet(), "");
  line->Reference(Variant(""));
  EXPECT_EQ(line->GetUpdateSet(), "Reference =NULL");
}

// Deliberate: the doubling works on the member, so the object shows the apostrophe doubled.
TEST_F(MovementTest, ATextWithAnApostropheIsWrittenDoubledAndShowsDoubled) {
  auto entry = LoadEntry(Posted()->ID());
  auto line = FirstStoredLine(entry);
  line->Text(Variant("O'Brien"));
  entry->Update();
  EXPECT_EQ(MovementColumn(line->ID(), "Text"), Variant("O'Brien"));
  EXPECT_EQ(line->Text(), Variant("O''Brien"));
}

TEST_F(MovementTest, AReferenceWithAnApostropheMakesTheUpdateFailWithNothingChanged) {
  auto entry = LoadEntry(Posted()->ID());
  const std::string before = TablesDump();
  auto line = FirstStoredLine(entry);
  line->Reference(Variant("a'b"));
  line->SetAmountSilently(Amount("999"));
  entry->Movements().Item(Variant(int32_t{2}))->SetAmountSilently(Amount("-999"));
  const Error error = ErrorOf([&] { entry->Update(); });
  EXPECT_EQ(Describe(error),
            Expected(store::kErrSyntax, "ldg", "Syntax error (missing operator) in query expression."));
  EXPECT_EQ(TablesDump(), before);
}

TEST_F(MovementTest, TextsWithQuotesStarsHashesAndUmlautsStoreVerbatim) {
  const std::string text = "Zahlung \"Müller\" *Rabatt* #3 Gebühr";
  auto entry = NewEntry(Date(2026, 3, 10), {{cash_, "100"}, {revenue_, "-100"}});
  auto line = entry->Movements().Item(Variant(int32_t{1}));
  line->Text(Variant(text));
  line->Reference(Variant("\"Ref\" #1 *ä*"));
  Entries().Append(*entry);
  EXPECT_EQ(MovementColumn(line->ID(), "Text"), Variant(text));
  EXPECT_EQ(MovementColumn(line->ID(), "Reference"), Variant("\"Ref\" #1 *ä*"));
  auto loaded = LoadEntry(entry->ID());
  auto stored = FirstStoredLine(loaded);
  EXPECT_EQ(stored->Text(), Variant(text));
  stored->Text(Variant("Neu \"Ärger\" *#*"));
  stored->Reference(Variant("\"Öl\" #2 *"));
  loaded->Update();
  EXPECT_EQ(MovementColumn(line->ID(), "Text"), Variant("Neu \"Ärger\" *#*"));
  EXPECT_EQ(MovementColumn(line->ID(), "Reference"), Variant("\"Öl\" #2 *"));
  EXPECT_EQ(FirstStoredLine(LoadEntry(entry->ID()))->Text(), Variant("Neu \"Ärger\" *#*"));
}

TEST_F(MovementTest, ACraftedTextChangesNothingButItsOwnField) {
  auto entry = LoadEntry(Posted()->ID());
  auto line = FirstStoredLine(entry);
  line->Text(Variant("x', Amount=999 --"));
  entry->Update();
  EXPECT_EQ(MovementColumn(line->ID(), "Text"), Variant("x', Amount=999 --"));
  EXPECT_EQ(CCur(MovementColumn(line->ID(), "Amount")), Amount("100"));
  ExpectBalancesMatchMovements();
}

// ---- Loading, storno ------------------------------------------------------------

TEST_F(MovementTest, LoadingTurnsNullsIntoEmptyValuesButKeepsReferenceAndValutaNull) {
  const int32_t entry_id = InsertEntry(journal_id_, Date(2026, 3, 10), "L1");
  const int32_t row = InsertMovement(entry_id, cash_, Amount("42"));
  auto line = FirstStoredLine(LoadEntry(entry_id));
  EXPECT_EQ(line->ID(), row);
  EXPECT_EQ(line->Account()->ID(), cash_);
  EXPECT_EQ(line->Text(), Variant(""));
  EXPECT_EQ(line->Amount(), Amount("42"));
  EXPECT_TRUE(line->Reference().IsNull());
  EXPECT_TRUE(line->Valuta().IsNull());
  EXPECT_TRUE(line->TaxID().IsNull());
  EXPECT_EQ(line->BalancingAccountID(), 0);
  EXPECT_EQ(line->GetUpdateSet(), "");
}

TEST_F(MovementTest, StornoReversesTheAmountsAndNamesTheDocument) {
  BookEntry entry;
  entry.DocumentID(Variant(" 0042"));
  auto line = entry.Movements().Add();
  line->SetID(17);
  line->SetAmountSilently(Amount("100"));
  line->SetFCAmountSilently(Amount("80"));
  line->MakeStorno();
  EXPECT_EQ(line->ID(), 0);
  EXPECT_EQ(line->Text(), Variant("Storno, siehe Beleg 42"));
  EXPECT_EQ(line->Amount(), Amount("-100"));
  EXPECT_EQ(line->FCAmount(), Amount("-80"));
}

TEST_F(MovementTest, StornoOfATextDocumentNumberKeepsIt) {
  BookEntry entry;
  entry.DocumentID(Variant("RE-7"));
  auto line = entry.Movements().Add();
  line->MakeStorno();
  EXPECT_EQ(line->Text(), Variant("Storno, siehe Beleg RE-7"));
}

}  // namespace
}  // namespace ldg

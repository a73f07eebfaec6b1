#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movement.hpp"
#include "bookkeeping/movements.hpp"
#include "support/conversions.hpp"
#include "tests/bookkeeping/movements_fixture.hpp"

namespace ldg {
namespace {

using movement_testing::Amount;
using movement_testing::Date;
using movement_testing::WatchedMovementsTest;
using movement_testing::TaxLookupStandIn;

class AutomatismsTest : public WatchedMovementsTest {
 protected:
  // The stored entry of an owner, its tax line and a counter line, with the tax automatism on.
  std::shared_ptr<BookEntry> TaxedEntry(const char* owner_amount, const char* tax_amount, bool balancing,
                                        int32_t owner_tax_id = 0) {
    const auto rows = StoreTaxedEntry(owner_amount, tax_amount, owner_tax_id);
    auto entry = Watched(LoadEntry(rows.entry_id));
    entry->TaxAutomatismActive(true);
    entry->BalancingAutomatismActive(balancing);
    return entry;
  }
};

// ---- Amounts ---------------------------------------------------------------------

TEST_F(AutomatismsTest, AnAmountOnTheFirstLineIsMirroredAndReportedOnce) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->Amount(Amount("100"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-100"));
  EXPECT_EQ(entry->Movements().Balance(), Amount("0"));
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{1});
}

TEST_F(AutomatismsTest, ANegativeAmountGivesThePositiveCounterLine) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->Amount(Amount("-50"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("50"));
}

TEST_F(AutomatismsTest, AnAmountOnTheSecondLineIsMirroredToTheFirst) {
  auto entry = SimpleEntry();
  LineAt(entry, 2)->Amount(Amount("-80"));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("80"));
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{2});
}

TEST_F(AutomatismsTest, AnAmountOfZeroTakesTheSignOne) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->Amount(Amount("100"));
  LineAt(entry, 1)->Amount(Amount("0"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("0"));
  EXPECT_EQ(events_.internal_ids, (std::vector<int32_t>{1, 1}));
}

TEST_F(AutomatismsTest, TheSameAmountAgainReportsNothing) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->Amount(Amount("100"));
  LineAt(entry, 2)->SetAmountSilently(Amount("-3"));
  LineAt(entry, 1)->Amount(Amount("100"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-3"));
  EXPECT_EQ(events_.internal_ids.size(), 1u);
}

TEST_F(AutomatismsTest, WithoutTheBalancingAutomatismNothingIsMirroredButTheDestinationRebalances) {
  auto entry = Watched(EntryWithAccounts({cash_, revenue_, bank_}));
  LineAt(entry, 3)->BalanceDestination(true);
  LineAt(entry, 1)->Amount(Amount("100"));
  LineAt(entry, 2)->Amount(Amount("-30"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-30"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-70"));
  EXPECT_EQ(events_.internal_ids, (std::vector<int32_t>{1, 2}));
}

TEST_F(AutomatismsTest, ALineWithoutEntryReportsToNobody) {
  Movements lines;
  auto line = lines.Add(NewMovement{});
  line->Amount(Amount("5"));
  EXPECT_EQ(line->Amount(), Amount("5"));
}

TEST_F(AutomatismsTest, AnAmountWithoutCurrencyClearsTheManualRateAndSignsTheForeignAmount) {
  auto entry = SimpleEntry();
  auto line = LineAt(entry, 1);
  line->FCManualRate(Amount("1.5"));
  line->SetFCAmountSilently(Amount("5"));
  line->Amount(Amount("-100"));
  EXPECT_EQ(line->FCManualRate(), Amount("0"));
  EXPECT_EQ(line->FCAmount(), Amount("-5"));
  line->FCManualRate(Amount("1.5"));
  line->ChangeAmount(Amount("-90"), true);
  EXPECT_EQ(line->FCManualRate(), Amount("0"));
  EXPECT_EQ(line->FCAmount(), Amount("-5"));  // no currency: nothing to convert
}

// ---- Foreign amounts ---------------------------------------------------------------

TEST_F(AutomatismsTest, TheAmountTakesTheSignOfTheForeignAmount) {
  auto entry = SimpleEntry();
  auto line = LineAt(entry, 1);
  line->Amount(Amount("100"));
  events_.internal_ids.clear();
  line->FCAmount(Amount("-5"));
  EXPECT_EQ(line->Amount(), Amount("-100"));
  EXPECT_EQ(line->FCAmount(), Amount("-5"));
  EXPECT_EQ(line->FCManualRate(), Amount("0"));
  EXPECT_TRUE(events_.internal_ids.empty());  // no event for a foreign amount
}

TEST_F(AutomatismsTest, AForeignAmountRebalancesTheDestination) {
  auto entry = Watched(EntryWithAccounts({cash_, revenue_, bank_}));
  LineAt(entry, 1)->Amount(Amount("100"));
  LineAt(entry, 3)->BalanceDestination(true);
  ASSERT_EQ(LineAt(entry, 3)->Amount(), Amount("-100"));
  LineAt(entry, 1)->FCAmount(Amount("-1"));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("-100"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("100"));
}

TEST_F(AutomatismsTest, TheForeignAmountOfTheDestinationLineEndsItsRole) {
  auto entry = Watched(EntryWithAccounts({cash_, revenue_}));
  LineAt(entry, 2)->BalanceDestination(true);
  LineAt(entry, 2)->FCAmount(Amount("3"));
  EXPECT_FALSE(LineAt(entry, 2)->BalanceDestination());
}

// ---- Tax lines edited by hand -----------------------------------------------------

TEST_F(AutomatismsTest, EditingATaxLineWhereTheAccountAllowsNoChoiceChangesOnlyThatAmount) {
  auto entry = TaxedEntry("100", "7.6", true);
  LineAt(entry, 1)->BalanceDestination(true);
  LineAt(entry, 2)->Amount(Amount("8"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("8"));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("100"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-107.6"));
  EXPECT_FALSE(LineAt(entry, 1)->TaxManual());
  EXPECT_TRUE(events_.internal_ids.empty());
}

TEST_F(AutomatismsTest, EditingATaxLineWhereTheAccountAllowsAChoiceClearsTheTaxAndEndsTheSimpleEntry) {
  TaxLookupStandIn taxes({5});
  SetColumn(cash_, "TaxID", "5");  // the choice is read only for an account with a tax
  SetColumn(cash_, "TaxCanChoose", "True");
  auto entry = TaxedEntry("100", "7.6", true, 5);
  auto owner = LineAt(entry, 1);
  LineAt(entry, 2)->Amount(Amount("8"));
  EXPECT_TRUE(owner->TaxID().IsNull());
  EXPECT_TRUE(owner->TaxManual());
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-107.6"));
  EXPECT_TRUE(events_.internal_ids.empty());
  // The lines are independent now: the owner's amount is no longer mirrored, nor split.
  owner->Amount(Amount("200"));
  EXPECT_EQ(LineAt(entry, 3)->Amount(), Amount("-107.6"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("8"));
  EXPECT_EQ(events_.internal_ids, std::vector<int32_t>{1});
}

TEST_F(AutomatismsTest, AManualTaxLeavesTheTaxLineAlone) {
  const auto rows = StoreTaxedEntry("100", "7.6");
  SetMovementColumn(rows.owner_id, "TaxManual", "True");
  auto entry = Watched(LoadEntry(rows.entry_id));
  entry->TaxAutomatismActive(true);
  LineAt(entry, 1)->Amount(Amount("250"));
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("250"));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("7.6"));
}

TEST_F(AutomatismsTest, AnAmountOnALineWithAComputedTaxLooksItsTaxUp) {
  TaxLookupStandIn taxes({});
  auto entry = TaxedEntry("100", "7.6", false, 5);
  const Error error = movement_testing::ErrorOf([&] { LineAt(entry, 1)->Amount(Amount("200")); });
  EXPECT_EQ(error.Description(), "No tax with ID=5 could be found!");
}

// ---- Account changes ----------------------------------------------------------------

TEST_F(AutomatismsTest, AnAccountWithoutTaxFoldsTheTaxBackIntoTheLine) {
  auto entry = TaxedEntry("100", "7.6", true);
  auto owner = LineAt(entry, 1);
  owner->Account(AccountOf(bank_));
  ASSERT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(owner->Amount(), Amount("107.6"));
  EXPECT_EQ(owner->DependentMovementID(), 0);
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-107.6"));
  EXPECT_EQ(owner->BalancingAccountID(), revenue_);
  EXPECT_EQ(LineAt(entry, 2)->BalancingAccountID(), bank_);
}

TEST_F(AutomatismsTest, ANegativeLineFoldsItsTaxBackWithItsSign) {
  auto entry = TaxedEntry("-100", "-7.6", false);
  auto owner = LineAt(entry, 1);
  owner->Account(AccountOf(bank_));
  EXPECT_EQ(owner->Amount(), Amount("-107.6"));
  EXPECT_EQ(entry->Movements().Count(), 2);
}

TEST_F(AutomatismsTest, WithoutTheTaxAutomatismAnAccountChangeKeepsTheTaxLine) {
  auto entry = TaxedEntry("100", "7.6", false);
  entry->TaxAutomatismActive(false);
  LineAt(entry, 1)->Account(AccountOf(bank_));
  EXPECT_EQ(entry->Movements().Count(), 3);
  EXPECT_EQ(LineAt(entry, 1)->Amount(), Amount("100"));
}

TEST_F(AutomatismsTest, AnAccountChangeMirrorsTheAmountInASimpleEntry) {
  auto entry = SimpleEntry();
  LineAt(entry, 1)->SetAmountSilently(Amount("40"));
  LineAt(entry, 1)->Account(AccountOf(bank_));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("-40"));
  EXPECT_EQ(LineAt(entry, 2)->BalancingAccountID(), bank_);
}

TEST_F(AutomatismsTest, AnAccountChangeClearsRateCurrencyAndForeignAmount) {
  auto entry = Watched(EntryWithAccounts({cash_, revenue_}));
  auto line = LineAt(entry, 1);
  line->SetAmountSilently(Amount("40"));
  line->FCID(Variant(int32_t{2}));
  line->FCManualRate(Amount("1.6"));
  line->SetFCAmountSilently(Amount("25"));
  line->BalanceDestination(true);
  line->Account(AccountOf(bank_));
  EXPECT_TRUE(line->FCID().IsNull());
  EXPECT_EQ(line->FCManualRate(), Amount("0"));
  EXPECT_EQ(line->FCAmount(), Amount("0"));
  EXPECT_FALSE(line->BalanceDestination());
  EXPECT_TRUE(line->TaxID().IsNull());
}

TEST_F(AutomatismsTest, AnAccountWithValutaSetsTheEntryDateAsADate) {
  SetColumn(bank_, "ActivateValuta", "True");
  auto entry = Watched(EntryWithAccounts({cash_, revenue_}));
  LineAt(entry, 1)->Account(AccountOf(bank_));
  EXPECT_EQ(LineAt(entry, 1)->Valuta(), Variant(Date(2026, 3, 10)));
  EXPECT_EQ(LineAt(entry, 1)->Valuta().Type(), VarType::kDate);
  LineAt(entry, 2)->Account(AccountOf(cash_));
  EXPECT_TRUE(LineAt(entry, 2)->Valuta().IsNull());
}

TEST_F(AutomatismsTest, AnAccountWithValutaTakesTheYearEndAfterTheYearOrWithoutDate) {
  SetColumn(bank_, "ActivateValuta", "True");
  auto entry = Watched(EntryWithAccounts({cash_, revenue_}));
  entry->EntryDate(Variant(Date(2027, 2, 1)));
  LineAt(entry, 1)->Account(AccountOf(bank_));
  EXPECT_EQ(LineAt(entry, 1)->Valuta(), Variant(Date(2026, 12, 31)));
  entry->EntryDate(Variant::Null());
  LineAt(entry, 2)->Account(AccountOf(bank_));
  EXPECT_EQ(LineAt(entry, 2)->Valuta(), Variant(Date(2026, 12, 31)));
}

TEST_F(AutomatismsTest, AnAccountChangeOfATaxLineStopsAfterTheTax) {
  SetColumn(bank_, "ActivateValuta", "True");
  auto entry = TaxedEntry("100", "7.6", false);
  auto tax_line = LineAt(entry, 2);
  tax_line->Account(AccountOf(bank_));
  EXPECT_TRUE(tax_line->Valuta().IsNull());
  EXPECT_EQ(tax_line->Amount(), Amount("7.6"));
}

TEST_F(AutomatismsTest, TheSameAccountAgainOrALineWithoutOwnerReportsNothing) {
  SetColumn(bank_, "ActivateValuta", "True");
  auto entry = Watched(EntryWithAccounts({bank_, revenue_}));
  LineAt(entry, 1)->Account(AccountOf(bank_));
  EXPECT_TRUE(LineAt(entry, 1)->Valuta().IsNull());
  Movement alone;
  alone.Account(AccountOf(bank_));
  EXPECT_EQ(alone.Account()->ID(), bank_);
  EXPECT_TRUE(alone.Valuta().IsNull());
}

// ---- Tax key changes -----------------------------------------------------------------

TEST_F(AutomatismsTest, ATaxWithoutTheTaxAutomatismOnlyMirrors) {
  TaxLookupStandIn taxes({5});
  auto entry = SimpleEntry();
  LineAt(entry, 1)->SetAmountSilently(Amount("-100"));
  LineAt(entry, 1)->TaxID(Variant(int32_t{5}));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("100"));
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(LineAt(entry, 2)->BalancingAccountID(), cash_);
}

TEST_F(AutomatismsTest, ATaxOnATaxLineChangesNothingElse) {
  TaxLookupStandIn taxes({});
  auto entry = TaxedEntry("100", "7.6", false);
  EXPECT_NO_THROW(LineAt(entry, 2)->TaxID(Variant(int32_t{42})));
  EXPECT_EQ(LineAt(entry, 2)->Amount(), Amount("7.6"));
}

// The tax line's amount is added with its sign; then its removal hands that amount
// to the owner once more, through the owner's amount (the removal's own rule).
TEST_F(AutomatismsTest, ClearingTheTaxOfAPositiveLineAddsTheTaxLineTwice) {
  TaxLookupStandIn taxes({5});
  auto entry = TaxedEntry("100", "7.6", false, 5);
  auto owner = LineAt(entry, 1);
  owner->TaxID(Variant(int32_t{0}));
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(owner->DependentMovementID(), 0);
  EXPECT_EQ(owner->Amount(), Amount("115.2"));
}

// Deliberate: for a negative line the signed tax amount subtracts.
TEST_F(AutomatismsTest, ClearingTheTaxOfANegativeLineSubtractsTheTaxLine) {
  TaxLookupStandIn taxes({5});
  auto entry = TaxedEntry("-100", "-7.6", false, 5);
  auto owner = LineAt(entry, 1);
  owner->TaxID(Variant(int32_t{0}));
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(owner->Amount(), Amount("-100"));  // -92.4, then the removal's -7.6
}

TEST_F(AutomatismsTest, ClearingTheTaxLooksTheOldTaxUp) {
  TaxLookupStandIn taxes({});
  auto entry = TaxedEntry("100", "7.6", false, 5);
  const Error error = movement_testing::ErrorOf([&] { LineAt(entry, 1)->TaxID(Variant(int32_t{0})); });
  EXPECT_EQ(error.Description(), "No tax with ID=5 could be found!");
  EXPECT_EQ(entry->Movements().Count(), 3);
}

}  // namespace
}  // namespace ldg

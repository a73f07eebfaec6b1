#include "bookkeeping/amount_agent.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "engine/engine_state.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/locale.hpp"
#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::OpenChartTest;
using year_files_testing::ErrorOf;

Currency Money(const char* text) { return Currency::Parse(text).value(); }

// An agent with the fixed locale's signs, bookkeeping symbols behind, the code after a blank, two decimals.
void SetSwissSymbols(AmountAgent& agent) {
  agent.SetEnvironementSymbols(".", "'", ".", "'", " H ", " S ", "+ ", "- ", "1", "CHF", int16_t{2});
}

class AmountAgentLocaleTest : public ::testing::Test {
 protected:
  void TearDown() override { SetUserLocaleForTesting(std::nullopt); }
};

// ---- Creation ----

TEST(AmountAgentTest, ANewAgentHasSymbolsBehindNoDecimalsAndNoRounding) {
  AmountAgent agent;
  EXPECT_EQ(agent.Style(), kAmountSymbolBehind);
  EXPECT_EQ(agent.Decimals(), 0);
  EXPECT_EQ(agent.GetFormat(), "0;0;0");
  EXPECT_EQ(agent.GetRounded(Money("1.2345")), Money("1.2345"));
}

TEST_F(AmountAgentLocaleTest, CreationWritesAmountsWithTheLocaleSigns) {
  SetUserLocaleForTesting(LocaleItems{",", ".", "EUR"});
  AmountAgent agent;
  agent.Style(kAmountThousands);
  agent.Decimals(2);
  EXPECT_EQ(agent.GetFormatted(Money("1234.5")), "1.234,50");
}

TEST_F(AmountAgentLocaleTest, CreationFailsWhenTheLocaleGivesNoDecimalSign) {
  SetUserLocaleForTesting(LocaleItems{"", "'", "CHF"});
  const Error error = ErrorOf([] { AmountAgent agent; });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403E8u));
  EXPECT_EQ(error.Description(), "Internal error");
}

TEST_F(AmountAgentLocaleTest, CreationFailsWhenTheLocaleGivesNoCurrencySymbol) {
  SetUserLocaleForTesting(LocaleItems{".", "'", ""});
  EXPECT_EQ(ErrorOf([] { AmountAgent agent; }).Number(), static_cast<int32_t>(0x800403E8u));
}

// ---- GetRounded ----

TEST(AmountAgentTest, RoundingByFiveCentsGoesToTheNearestMultiple) {
  AmountAgent agent;
  agent.Round(Money("0.05"));
  EXPECT_EQ(agent.GetRounded(Money("1.024")), Money("1.00"));
  EXPECT_EQ(agent.GetRounded(Money("1.025")), Money("1.05"));
  EXPECT_EQ(agent.GetRounded(Money("1.075")), Money("1.10"));
}

TEST(AmountAgentTest, AnExactHalfOfANegativeAmountRoundsTowardsPlusInfinity) {
  AmountAgent agent;
  agent.Round(Money("0.05"));
  // Deliberately upwards, not away from zero.
  EXPECT_EQ(agent.GetRounded(Money("-0.025")), Money("0"));
  EXPECT_EQ(agent.GetRounded(Money("-1.075")), Money("-1.05"));
  EXPECT_EQ(agent.GetRounded(Money("-1.076")), Money("-1.10"));
}

TEST(AmountAgentTest, RoundingByOneCentLeavesTwoDecimalsAsTheyAre) {
  AmountAgent agent;
  agent.Round(Money("0.01"));
  EXPECT_EQ(agent.GetRounded(Money("717.33")), Money("717.33"));
  EXPECT_EQ(agent.GetRounded(Money("-12.07")), Money("-12.07"));
  EXPECT_EQ(agent.GetRounded(Money("717.3333")), Money("717.33"));
  EXPECT_EQ(agent.GetRounded(Money("-1.025")), Money("-1.02"));
}

TEST(AmountAgentTest, ARoundOfZeroRoundsNothing) {
  AmountAgent agent;
  EXPECT_EQ(agent.GetRounded(Money("1.2345")), Money("1.2345"));
}

TEST(AmountAgentTest, AnAmountTooLargeToScaleComesBackAsItIs) {
  AmountAgent agent;
  agent.Round(Money("0.05"));
  EXPECT_EQ(agent.GetRounded(Money("92233720368.5478")), Money("92233720368.5478"));
  EXPECT_EQ(agent.GetRounded(Currency::Min()), Currency::Min());
  EXPECT_EQ(agent.GetRounded(Money("92233720368.5477")), Money("92233720368.55"));
}

TEST(AmountAgentTest, RoundingByAWholeUnit) {
  AmountAgent agent;
  agent.Round(Money("5"));
  EXPECT_EQ(agent.GetRounded(Money("12.49")), Money("10"));
  EXPECT_EQ(agent.GetRounded(Money("12.5")), Money("15"));
}

// ---- Decimals and the rounding unit ----

TEST(AmountAgentTest, SetRoundAndDecTakesTheDecimalsOfTheUnit) {
  AmountAgent agent;
  agent.Style(0);
  agent.SetRoundAndDec(Money("0.05"));
  EXPECT_EQ(agent.Decimals(), 2);
  EXPECT_EQ(agent.GetFormat(), "0.00;0.00;0.00");
  agent.SetRoundAndDec(Money("1"));
  EXPECT_EQ(agent.Decimals(), 0);
  EXPECT_EQ(agent.GetFormat(), "0;0;0");
  agent.SetRoundAndDec(Money("0.5"));
  EXPECT_EQ(agent.Decimals(), 1);
}

TEST(AmountAgentTest, RoundOnlyRaisesDecimals) {
  AmountAgent agent;
  agent.Decimals(4);
  agent.Round(Money("0.05"));
  EXPECT_EQ(agent.Decimals(), 4);
  agent.Decimals(0);
  agent.Round(Money("0.05"));
  EXPECT_EQ(agent.Decimals(), 2);
}

TEST(AmountAgentTest, DecimalsMakeTheDecimalFormat) {
  AmountAgent agent;
  agent.Style(0);
  agent.Decimals(3);
  EXPECT_EQ(agent.GetFormat(), "0.000;0.000;0.000");
}

TEST(AmountAgentTest, SetCurrencyAndStyleSetsStyleCodeRoundAndDecimals) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.SetCurrencyAndStyle(" EUR ", kAmountCurrencyCode, Money("0.1"));
  EXPECT_EQ(agent.Style(), kAmountCurrencyCode);
  EXPECT_EQ(agent.Decimals(), 1);
  EXPECT_EQ(agent.GetFormat(), "0.0 \\E\\U\\R;0.0 \\E\\U\\R;0.0");
  EXPECT_EQ(agent.GetRounded(Money("1.25")), Money("1.3"));
}

// ---- GetFormat ----

TEST(AmountAgentTest, ThousandsStyleBeginsWithTheGrouping) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountThousands);
  EXPECT_EQ(agent.GetFormat(), "#,##0.00;#,##0.00;0.00");
}

TEST(AmountAgentTest, SymbolsBehindAreAppendedAndTrimmedOnTheRight) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountSymbolBehind);
  EXPECT_EQ(agent.GetFormat(), "0.00 H;0.00 S;0.00");
}

TEST(AmountAgentTest, SymbolsBeforeArePrependedAndTrimmedOnTheLeft) {
  AmountAgent agent;
  agent.SetEnvironementSymbols(".", "'", ".", "'", "", "", " + ", " - ", "1", "CHF", int16_t{2});
  agent.Style(kAmountSymbolBefore);
  EXPECT_EQ(agent.GetFormat(), "+ 0.00;- 0.00;0.00");
}

TEST(AmountAgentTest, CurrencyCodeGoesWhereItsPositionSays) {
  AmountAgent agent;
  agent.Style(kAmountCurrencyCode);
  const char* const expected[] = {"0.00\\C\\H\\F", "0.00 \\C\\H\\F", "\\C\\H\\F0.00", "\\C\\H\\F 0.00"};
  for (int position = 0; position < 4; ++position) {
    agent.SetEnvironementSymbols(".", "'", ".", "'", "", "", "", "", std::to_string(position), "CHF",
                                 int16_t{2});
    const std::string section = expected[position];
    EXPECT_EQ(agent.GetFormat(), section + ";" + section + ";0.00") << position;
  }
}

TEST(AmountAgentTest, AnUnknownCodePositionShowsNoCode) {
  AmountAgent agent;
  agent.Style(kAmountCurrencyCode);
  agent.SetEnvironementSymbols(".", "'", ".", "'", "", "", "", "", "7", "CHF", int16_t{2});
  EXPECT_EQ(agent.GetFormat(), "0.00;0.00;0.00");
}

TEST(AmountAgentTest, AllBitsTogether) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountSymbolBefore | kAmountSymbolBehind | kAmountThousands | kAmountCurrencyCode);
  EXPECT_EQ(agent.GetFormat(), "+ #,##0.00 H \\C\\H\\F;- #,##0.00 S \\C\\H\\F;0.00");
}

TEST(AmountAgentTest, CurTrimsAndEscapesEveryCharacter) {
  AmountAgent agent;
  agent.SetEnvironementSymbols(".", "'", ".", "'", "", "", "", "", "2", "CHF", int16_t{0});
  agent.Style(kAmountCurrencyCode);
  agent.Cur(Variant("  £ab "));
  EXPECT_EQ(agent.GetFormat(), "\\£\\a\\b0;\\£\\a\\b0;0");
}

// ---- GetFormatted ----

TEST(AmountAgentTest, PositiveAndNegativeAmountsShowTheirSymbolsAndNoSign) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountSymbolBehind | kAmountThousands);
  EXPECT_EQ(agent.GetFormatted(Money("1234.5")), "1'234.50 H");
  EXPECT_EQ(agent.GetFormatted(Money("-1234.5")), "1'234.50 S");
  EXPECT_EQ(agent.GetFormatted(Money("0")), "0.00");
}

TEST(AmountAgentTest, CurrencyCodeShowsInTheText) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountCurrencyCode);
  EXPECT_EQ(agent.GetFormatted(Money("12.5")), "12.50 CHF");
}

TEST(AmountAgentTest, WantedThousandsSignReplacesTheSystemOne) {
  AmountAgent agent;
  agent.SetEnvironementSymbols(".", "'", ".", ",", "", "", "", "", "1", "CHF", int16_t{2});
  agent.Style(kAmountThousands);
  EXPECT_EQ(agent.GetFormatted(Money("1234.5")), "1'234.50");
}

TEST(AmountAgentTest, EveryThousandsSignAndTheFirstDecimalSignAreReplaced) {
  AmountAgent agent;
  agent.SetEnvironementSymbols(",", " ", ".", "'", "", "", "", "", "1", "CHF", int16_t{2});
  agent.Style(kAmountThousands);
  EXPECT_EQ(agent.GetFormatted(Money("1234567.5")), "1 234 567,50");
}

TEST(AmountAgentTest, ASystemThousandsSignEqualToTheWantedDecimalSignIsReplacedAfterIt) {
  AmountAgent agent;
  agent.SetEnvironementSymbols(".", "'", ",", ".", "", "", "", "", "1", "CHF", int16_t{2});
  agent.Style(kAmountThousands);
  // Deliberately the decimal sign goes in first, so the thousands step turns it too.
  EXPECT_EQ(agent.GetFormatted(Money("1234.5")), "1'234'50");
}

TEST(AmountAgentTest, FormattingRoundsOnlyWhenStyleAndTheWholeUnitShareABit) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountThousands);
  agent.SetRoundAndDec(Money("0.05"));
  // Deliberately a unit below 1 never rounds here: 8 And 0 is 0.
  EXPECT_EQ(agent.GetFormatted(Money("1.024")), "1.02");
  agent.SetRoundAndDec(Money("5"));
  agent.Style(kAmountSymbolBefore);
  EXPECT_EQ(agent.GetFormatted(Money("12")), "+ 10");
  agent.Style(kAmountSymbolBehind);
  EXPECT_EQ(agent.GetFormatted(Money("12")), "12 H");
}

// ---- Clone ----

TEST(AmountAgentTest, CloneCopiesEveryValue) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountSymbolBefore | kAmountCurrencyCode);
  agent.Round(Money("0.05"));
  const auto clone = agent.Clone();
  EXPECT_EQ(clone->Style(), agent.Style());
  EXPECT_EQ(clone->Decimals(), 2);
  EXPECT_EQ(clone->GetFormat(), agent.GetFormat());
  EXPECT_EQ(clone->GetRounded(Money("1.025")), Money("1.05"));
}

TEST(AmountAgentTest, CloneIsIndependent) {
  AmountAgent agent;
  SetSwissSymbols(agent);
  agent.Style(kAmountThousands);
  const auto clone = agent.Clone();
  clone->Style(kAmountSymbolBehind);
  clone->SetRoundAndDec(Money("1"));
  EXPECT_EQ(agent.Style(), kAmountThousands);
  EXPECT_EQ(agent.Decimals(), 2);
  EXPECT_EQ(agent.GetFormat(), "#,##0.00;#,##0.00;0.00");
}

// ---- The engine's agent ----

using EngineAmountAgentTest = OpenChartTest;

TEST_F(EngineAmountAgentTest, OpenGivesTheEngineAnAgent) { ASSERT_NE(State().amount_agent, nullptr); }

TEST_F(EngineAmountAgentTest, WithTheDefaultOptionsAPositiveAmountShowsTheNegativeBookkeepingSymbol) {
  const AmountAgent& agent = *State().amount_agent;
  // Deliberately crossed at open: the negative bookkeeping symbol " H " stands behind a positive amount.
  EXPECT_EQ(agent.GetFormatted(Money("1234.5")), "1234.50 H");
  EXPECT_EQ(agent.GetFormatted(Money("-1234.5")), "1234.50 S");
}

TEST_F(EngineAmountAgentTest, OpenTakesDecimalsAndRoundFromTheOptions) {
  const AmountAgent& agent = *State().amount_agent;
  EXPECT_EQ(agent.Decimals(), 2);
  EXPECT_EQ(agent.GetRounded(Money("10.005")), Money("10.01"));
  EXPECT_EQ(agent.GetRounded(Money("10.0049")), Money("10.00"));
}

TEST_F(EngineAmountAgentTest, SymbolsAreCrossedInTheOrderTheEngineGivesThem) {
  AmountAgent agent;
  AmountAgentSymbols symbols;
  symbols.decimal_separator = ".";
  symbols.thousand_separator = "'";
  symbols.system_decimal_separator = ".";
  symbols.system_thousand_separator = "'";
  symbols.neg_bookkeeping_symbol = "nb";
  symbols.pos_bookkeeping_symbol = "pb";
  symbols.neg_arithmetic_symbol = "na";
  symbols.pos_arithmetic_symbol = "pa";
  symbols.cur_code_pos = 3;
  symbols.base_currency_code = "EUR";
  symbols.decimals = 1;
  symbols.round = Money("0.05");
  SetEngineSymbols(agent, symbols);
  agent.Style(kAmountSymbolBefore | kAmountSymbolBehind | kAmountCurrencyCode);
  EXPECT_EQ(agent.GetFormat(), "\\E\\U\\R na0.00nb;\\E\\U\\R pa0.00pb;0.00");
}

}  // namespace
}  // namespace ldg

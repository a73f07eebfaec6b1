#include "support/locale.hpp"

#include <gtest/gtest.h>

namespace ldg {
namespace {

class LocaleTest : public ::testing::Test {
 protected:
  void TearDown() override { SetUserLocaleForTesting(std::nullopt); }
};

TEST_F(LocaleTest, TheFixedLocaleIsSwissGerman) {
  LocaleItems items = UserLocale();
  EXPECT_EQ(items.decimal_sign, ".");
  EXPECT_EQ(items.thousands_sign, "'");
  EXPECT_EQ(items.currency_symbol, "CHF");
}

TEST_F(LocaleTest, GetLocalesReadsTheFixedLocale) {
  SystemSeparators separators;
  GetLocales(separators);
  EXPECT_EQ(separators.decimal_separator, ".");
  EXPECT_EQ(separators.thousand_separator, "'");
  EXPECT_EQ(separators.currency_symbol, "CHF");
}

TEST_F(LocaleTest, GetLocalesReadsAnInjectedLocale) {
  SetUserLocaleForTesting(LocaleItems{",", ".", "EUR"});
  SystemSeparators separators;
  GetLocales(separators);
  EXPECT_EQ(separators.decimal_separator, ",");
  EXPECT_EQ(separators.thousand_separator, ".");
  EXPECT_EQ(separators.currency_symbol, "EUR");
}

TEST_F(LocaleTest, OnlyTheFirstCharacterOfEachSeparatorCounts) {
  SetUserLocaleForTesting(LocaleItems{".,", "’x", "Fr."});
  SystemSeparators separators;
  GetLocales(separators);
  EXPECT_EQ(separators.decimal_separator, ".");
  EXPECT_EQ(separators.thousand_separator, "’");
  EXPECT_EQ(separators.currency_symbol, "Fr.");
}

TEST_F(LocaleTest, AnItemWithoutTextLeavesTheValueAsItWas) {
  SetUserLocaleForTesting(LocaleItems{"", "", ""});
  SystemSeparators separators{",", " ", "USD"};
  GetLocales(separators);
  EXPECT_EQ(separators.decimal_separator, ",");
  EXPECT_EQ(separators.thousand_separator, " ");
  EXPECT_EQ(separators.currency_symbol, "USD");
}

TEST_F(LocaleTest, ClearingTheInjectedLocaleBringsTheFixedOneBack) {
  SetUserLocaleForTesting(LocaleItems{",", ".", "EUR"});
  SetUserLocaleForTesting(std::nullopt);
  EXPECT_EQ(UserLocale().currency_symbol, "CHF");
}

}  // namespace
}  // namespace ldg

#include "support/locale.hpp"

#include "support/text.hpp"

namespace ldg {
namespace {

thread_local std::optional<LocaleItems> locale_for_testing;

}  // namespace

LocaleItems UserLocale() { return locale_for_testing.value_or(LocaleItems{}); }

void GetLocales(SystemSeparators& separators) {
  LocaleItems items = UserLocale();
  if (!items.decimal_sign.empty()) separators.decimal_separator = Left(items.decimal_sign, 1);
  if (!items.thousands_sign.empty()) separators.thousand_separator = Left(items.thousands_sign, 1);
  if (!items.currency_symbol.empty()) separators.currency_symbol = items.currency_symbol;
}

void SetUserLocaleForTesting(std::optional<LocaleItems> items) { locale_for_testing = std::move(items); }

}  // namespace ldg

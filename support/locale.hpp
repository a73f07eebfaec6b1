// The locale the engine reads its system separators from. There is one fixed
// locale, Swiss German: decimal sign ".", thousands sign "'", currency symbol
// "CHF". The machine's own locale is never read or changed; a test may put
// another locale in place of the fixed one.
#pragma once

#include <optional>
#include <string>

namespace ldg {

// The items of a locale as texts; an empty text is an item that gives none.
struct LocaleItems {
  std::string decimal_sign = ".";
  std::string thousands_sign = "'";
  std::string currency_symbol = "CHF";
};

// The system separators and currency symbol as the engine keeps them.
struct SystemSeparators {
  std::string decimal_separator;   // one character
  std::string thousand_separator;  // one character
  std::string currency_symbol;
};

// The locale of the user: the fixed one, or the one a test put in place.
LocaleItems UserLocale();

// Reads the user's locale into the separators: the first character of the
// decimal and of the thousands sign, and the whole currency symbol. An item
// that gives no text leaves its value as it was.
void GetLocales(SystemSeparators& separators);

// Hook for tests: puts a locale in place of the fixed one on this thread;
// nothing (std::nullopt) brings the fixed one back.
void SetUserLocaleForTesting(std::optional<LocaleItems> items);

}  // namespace ldg

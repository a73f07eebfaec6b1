// Options: the client's options of the open database, each a row of "Settings"
// named "Option" + the property's name under the open instance's id, its value
// kept as text. Every getter reads the row afresh and every setter writes it at
// once; with no database open the getters give the defaults and the setters do
// nothing. The system separators are read-only and never stored.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/variant.hpp"

namespace ldg {

class Options {
 public:
  Variant ClientName() const;
  void ClientName(const Variant& value);
  Variant ClientExtraText() const;
  void ClientExtraText(const Variant& value);
  // "CHF" by default.
  Variant BaseCurrencyCode() const;
  void BaseCurrencyCode(const Variant& value);
  // 2 by default.
  int16_t Decimals() const;
  void Decimals(int16_t value);
  Variant DecimalSep() const;
  void DecimalSep(const Variant& value);
  Variant ThousandSep() const;
  void ThousandSep(const Variant& value);
  // 1 by default.
  int16_t CurCodePos() const;
  void CurCodePos(int16_t value);
  Variant PosArithmeticSymbol() const;
  void PosArithmeticSymbol(const Variant& value);
  Variant NegArithmeticSymbol() const;
  void NegArithmeticSymbol(const Variant& value);
  // " S " by default.
  Variant PosBookkeepingSymbol() const;
  void PosBookkeepingSymbol(const Variant& value);
  // " H " by default.
  Variant NegBookkeepingSymbol() const;
  void NegBookkeepingSymbol(const Variant& value);
  // Read as "OptionDocIDFlags" and written as "OptiondocIDFlags": the store
  // ignores case, so both are one row (deliberate; pinned by a test).
  int16_t DocIDFlags() const;
  void DocIDFlags(int16_t value);
  // An option never written reads as "" and fails with a type mismatch (13),
  // with or without a database (deliberate; pinned by a test).
  int16_t PeriodLockFlags() const;
  void PeriodLockFlags(int16_t value);
  // True when the value equals 1, and when no row exists; written as 1 or 0.
  bool DoNotForceArchive() const;
  void DoNotForceArchive(bool value);
  // "0.01" by default.
  Variant BaseCurrencyRound() const;
  void BaseCurrencyRound(const Variant& value);
  // True when the text is empty or exactly "True"; written as "True" or "False".
  bool BelegIDAuto() const;
  void BelegIDAuto(bool value);

  // The system separators that Engine::GetLocales read.
  std::string SysDecimalSep() const;
  std::string SysThousandSep() const;

  // Any further option: the name is prefixed with "Option"; the default is "".
  Variant Value(std::string_view option_name) const;
  void Value(std::string_view option_name, const Variant& value);
};

}  // namespace ldg

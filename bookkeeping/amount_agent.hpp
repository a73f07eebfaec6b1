// AmountAgent: rounds amounts to a currency's smallest unit and formats them
// for people. The engine keeps one agent for the base currency, set up from the
// options when a database opens (reached through State().amount_agent); other
// code clones it for another currency or style. All rounding of amounts to a
// currency's unit goes through GetRounded. The agent holds no database state.
//
// The format has a positive, a negative and a zero section. Style bits decide
// what goes around the number: 1 the symbols before it, 2 the symbols behind
// it, 8 thousands grouping, 16 the currency code at its position ("0" right
// after, "1" after a blank, "2" right before, "3" before with a blank). The
// negative section has no minus sign: the symbol tells the side.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/subsystems.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

enum AmountStyleBits : int32_t {
  kAmountSymbolBefore = 1,
  kAmountSymbolBehind = 2,
  kAmountThousands = 8,
  kAmountCurrencyCode = 16,
};

class AmountAgent {
 public:
  // Takes the decimal sign, thousands sign and currency symbol of the user's
  // locale, as wanted and as system signs; the currency symbol is the code.
  // A locale item that gives no text raises 0x800403E8.
  AmountAgent();
  AmountAgent& operator=(const AmountAgent&) = delete;

  // In this order: decimal sign, thousands sign, system decimal sign, system
  // thousands sign, symbol behind a positive amount, behind a negative one,
  // before a positive one, before a negative one, currency code position
  // ("0" to "3"), currency code (through Cur), decimals (through Decimals).
  void SetEnvironementSymbols(const Variant& decimal_sign, const Variant& thousands_sign,
                              const Variant& system_decimal_sign, const Variant& system_thousands_sign,
                              const Variant& positive_behind, const Variant& negative_behind,
                              const Variant& positive_before, const Variant& negative_before,
                              const Variant& cur_code_position, const Variant& cur_code,
                              const Variant& decimals);

  int32_t Style() const { return style_; }
  void Style(int32_t value) { style_ = value; }
  int16_t Decimals() const { return decimals_; }
  // Also makes the decimal format: "0" for none, else "0." and as many "0".
  void Decimals(int16_t value);

  // To the nearest multiple of Round, an exact half upwards (towards plus
  // infinity, also for negative amounts); unchanged when Round is 0 or when the
  // amount is too large to scale.
  Currency GetRounded(Currency amount) const;

  // Style, then Cur, then SetRoundAndDec.
  void SetCurrencyAndStyle(const Variant& cur_code, int32_t style, Currency round);
  // Trims the code and keeps it with each character escaped by "\" for the format.
  void Cur(const Variant& code);
  // Sets the rounding unit (0 rounds nothing) and raises Decimals to the unit's decimals.
  void Round(Currency value);
  // Sets the rounding unit and Decimals from it, up or down.
  void SetRoundAndDec(Currency value);

  // The amount in the format, the system signs then replaced by the wanted ones.
  std::string GetFormatted(Currency amount) const;
  // "positive;negative;zero".
  std::string GetFormat() const;
  std::shared_ptr<AmountAgent> Clone() const;

 private:
  AmountAgent(const AmountAgent&) = default;

  // The number of decimals the unit's text shows behind the system decimal sign.
  int16_t DecimalsOf(Currency round) const;
  std::string WithCurrencyCode(const std::string& section) const;
  // The run time writes "." and "'"; a system whose signs differ would have written those.
  std::string AsSystemWritesIt(const std::string& text) const;

  int32_t style_ = kAmountSymbolBehind;
  int16_t decimals_ = 0;
  std::string decimal_format_ = "0";
  Currency round_;
  std::string decimal_sign_;
  std::string thousands_sign_;
  std::string system_decimal_sign_;
  std::string system_thousands_sign_;
  std::string positive_behind_;
  std::string negative_behind_;
  std::string positive_before_;
  std::string negative_before_;
  std::string cur_code_position_;
  std::string cur_;
};

// What the engine does with its agent at open: the eleven symbols in the order
// they come, then the rounding unit through Round. The bookkeeping symbols go
// in crossed, the negative one behind a positive amount (see the .cpp).
void SetEngineSymbols(AmountAgent& agent, const AmountAgentSymbols& symbols);

}  // namespace ldg

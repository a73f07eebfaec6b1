#include "bookkeeping/amount_agent.hpp"

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "support/conversions.hpp"
#include "support/format.hpp"
#include "support/locale.hpp"
#include "support/messages.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgInternalError = 1000;

__extension__ typedef __int128 Int128;

std::string TextOf(const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return "";
  return CStr(value);
}

// A locale item that gives no text fails the creation.
std::string RequiredItem(const std::string& item) {
  if (item.empty()) RaiseMessage(kMsgInternalError);
  return item;
}

std::string ReplaceFirst(const std::string& text, std::string_view find, std::string_view with) {
  const size_t at = text.find(find);
  if (at == std::string::npos) return text;
  return text.substr(0, at) + std::string(with) + text.substr(at + find.size());
}

int64_t FloorDiv(Int128 a, Int128 b) {
  Int128 quotient = a / b;
  if ((a % b != 0) && ((a < 0) != (b < 0))) --quotient;
  return static_cast<int64_t>(quotient);
}

}  // namespace

AmountAgent::AmountAgent() {
  const LocaleItems locale = UserLocale();
  decimal_sign_ = system_decimal_sign_ = RequiredItem(locale.decimal_sign);
  thousands_sign_ = system_thousands_sign_ = RequiredItem(locale.thousands_sign);
  Cur(Variant(RequiredItem(locale.currency_symbol)));
}

void AmountAgent::SetEnvironementSymbols(const Variant& decimal_sign, const Variant& thousands_sign,
                                         const Variant& system_decimal_sign,
                                         const Variant& system_thousands_sign, const Variant& positive_behind,
                                         const Variant& negative_behind, const Variant& positive_before,
                                         const Variant& negative_before, const Variant& cur_code_position,
                                         const Variant& cur_code, const Variant& decimals) {
  decimal_sign_ = TextOf(decimal_sign);
  thousands_sign_ = TextOf(thousands_sign);
  system_decimal_sign_ = TextOf(system_decimal_sign);
  system_thousands_sign_ = TextOf(system_thousands_sign);
  positive_behind_ = TextOf(positive_behind);
  negative_behind_ = TextOf(negative_behind);
  positive_before_ = TextOf(positive_before);
  negative_before_ = TextOf(negative_before);
  cur_code_position_ = TextOf(cur_code_position);
  Cur(cur_code);
  Decimals(CInt(decimals));
}

void AmountAgent::Decimals(int16_t value) {
  decimals_ = value;
  decimal_format_ = value > 0 ? "0." + std::string(static_cast<size_t>(value), '0') : "0";
}

// Works on the amount in ten-thousandths, where the unit is a whole number s:
// r = x - Int(x / s) * s is never negative for a positive unit, so an exact
// half rounds towards plus infinity (-0.025 by 0.05 gives 0).
Currency AmountAgent::GetRounded(Currency amount) const {
  if (round_.IsZero()) return amount;
  constexpr int64_t kScaleLimit = std::numeric_limits<int64_t>::max() / Currency::kScale;
  // The amount times 10000 must stay a Currency; an amount beyond that comes back as it is.
  if (amount.Raw() > kScaleLimit || amount.Raw() < -kScaleLimit) return amount;
  const Int128 s = round_.Raw();
  const Int128 x = amount.Raw();
  const Int128 r = x - static_cast<Int128>(FloorDiv(x, s)) * s;
  const double p = static_cast<double>(r) * 100.0 / static_cast<double>(s);
  const Int128 rounded = p < 50 ? x - r : s - r + x;
  if (rounded > std::numeric_limits<int64_t>::max() || rounded < std::numeric_limits<int64_t>::min()) {
    return amount;
  }
  return Currency::FromRaw(static_cast<int64_t>(rounded));
}

void AmountAgent::SetCurrencyAndStyle(const Variant& cur_code, int32_t style, Currency round) {
  Style(style);
  Cur(cur_code);
  SetRoundAndDec(round);
}

void AmountAgent::Cur(const Variant& code) {
  const std::string trimmed = Trim(TextOf(code));
  cur_.clear();
  for (size_t pos = 0; pos < trimmed.size();) {
    cur_ += '\\';
    AppendUtf8(cur_, DecodeUtf8(trimmed, pos));
  }
}

void AmountAgent::Round(Currency value) {
  round_ = value;
  const int16_t needed = DecimalsOf(value);
  if (needed > decimals_) Decimals(needed);
}

void AmountAgent::SetRoundAndDec(Currency value) {
  round_ = value;
  Decimals(DecimalsOf(value));
}

int16_t AmountAgent::DecimalsOf(Currency round) const {
  if (system_decimal_sign_.empty()) return 0;
  const std::string text = AsSystemWritesIt(CStr(Variant(round)));
  const size_t at = text.find(system_decimal_sign_);
  if (at == std::string::npos) return 0;
  return static_cast<int16_t>(Len(std::string_view(text).substr(at + system_decimal_sign_.size())));
}

std::string AmountAgent::GetFormat() const {
  std::string positive = decimal_format_;
  std::string negative = decimal_format_;
  if (style_ & kAmountThousands) {
    positive = "#,##" + positive;
    negative = "#,##" + negative;
  }
  if (style_ & kAmountSymbolBehind) {
    positive = RTrim(positive + positive_behind_);
    negative = RTrim(negative + negative_behind_);
  }
  if (style_ & kAmountSymbolBefore) {
    positive = LTrim(positive_before_ + positive);
    negative = LTrim(negative_before_ + negative);
  }
  if (style_ & kAmountCurrencyCode) {
    positive = WithCurrencyCode(positive);
    negative = WithCurrencyCode(negative);
  }
  return positive + ";" + negative + ";" + Trim(decimal_format_);
}

// A position other than "0" to "3" shows no code.
std::string AmountAgent::WithCurrencyCode(const std::string& section) const {
  if (cur_code_position_ == "0") return section + cur_;
  if (cur_code_position_ == "1") return section + " " + cur_;
  if (cur_code_position_ == "2") return cur_ + section;
  if (cur_code_position_ == "3") return cur_ + " " + section;
  return section;
}

std::string AmountAgent::GetFormatted(Currency amount) const {
  const std::string format = GetFormat();
  // Deliberately the And of Style with the unit as a whole number: a unit below 1 never rounds here
  // (pinned by a test).
  if ((style_ & CLng(Variant(round_))) >= 1) amount = GetRounded(amount);
  std::string text = AsSystemWritesIt(Format(Variant(amount), format));
  if (!system_decimal_sign_.empty()) text = ReplaceFirst(text, system_decimal_sign_, decimal_sign_);
  if (!system_thousands_sign_.empty()) text = ldg::Replace(text, system_thousands_sign_, thousands_sign_);
  return text;
}

std::shared_ptr<AmountAgent> AmountAgent::Clone() const {
  return std::shared_ptr<AmountAgent>(new AmountAgent(*this));
}

std::string AmountAgent::AsSystemWritesIt(const std::string& text) const {
  if (system_decimal_sign_ == "." && system_thousands_sign_ == "'") return text;
  std::string written;
  for (const char c : text) {
    if (c == '.') {
      written += system_decimal_sign_;
    } else if (c == '\'') {
      written += system_thousands_sign_;
    } else {
      written += c;
    }
  }
  return written;
}

// Deliberately crossed: the negative bookkeeping symbol stands behind a positive amount and the
// positive one behind a negative amount, so with the default options a positive amount shows " H "
// (pinned by a test).
void SetEngineSymbols(AmountAgent& agent, const AmountAgentSymbols& symbols) {
  agent.SetEnvironementSymbols(
      symbols.decimal_separator, symbols.thousand_separator, Variant(symbols.system_decimal_separator),
      Variant(symbols.system_thousand_separator), symbols.neg_bookkeeping_symbol,
      symbols.pos_bookkeeping_symbol, symbols.neg_arithmetic_symbol, symbols.pos_arithmetic_symbol,
      Variant(symbols.cur_code_pos), symbols.base_currency_code, Variant(symbols.decimals));
  agent.Round(symbols.round);
}

}  // namespace ldg

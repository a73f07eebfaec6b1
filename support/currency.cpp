#include "support/currency.hpp"

#include <cmath>
#include <cstdlib>

#include "support/error.hpp"

namespace ldg {

namespace {

__extension__ typedef __int128 Wide;

int64_t Narrow(Wide value) {
  if (value > INT64_MAX || value < INT64_MIN) RaiseRuntime(kErrOverflow);
  return static_cast<int64_t>(value);
}

// Divides rounding half to even; divisor > 0.
Wide DivideHalfEven(Wide dividend, Wide divisor) {
  Wide quotient = dividend / divisor;
  Wide remainder = dividend % divisor;
  if (remainder < 0) remainder = -remainder;
  Wide twice = remainder * 2;
  if (twice > divisor || (twice == divisor && (quotient % 2 != 0))) {
    quotient += dividend < 0 ? -1 : 1;
  }
  return quotient;
}

}  // namespace

Currency Currency::FromUnits(int64_t units) { return Currency(Narrow(Wide(units) * kScale)); }

Currency Currency::FromDouble(double value) {
  if (std::isnan(value)) RaiseRuntime(kErrOverflow);
  // nearbyint follows the default rounding mode: to nearest, ties to even.
  double scaled = std::nearbyint(value * kScale);
  // 2^63 is exactly representable; anything at or beyond it overflows.
  if (scaled >= 9223372036854775808.0 || scaled < -9223372036854775808.0) RaiseRuntime(kErrOverflow);
  return Currency(static_cast<int64_t>(scaled));
}

std::optional<Currency> Currency::Parse(std::string_view text) {
  size_t i = 0;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  Wide units = 0;
  int int_digits = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, ++int_digits) {
    units = units * 10 + (text[i] - '0');
    if (units > Wide(INT64_MAX)) return std::nullopt;
  }
  Wide fraction = 0;
  int frac_digits = 0;
  bool sticky = false;  // a non-zero digit beyond the fifth decimal
  int fifth = 0;
  if (i < text.size() && text[i] == '.') {
    for (++i; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, ++frac_digits) {
      int d = text[i] - '0';
      if (frac_digits < 4) {
        fraction = fraction * 10 + d;
      } else if (frac_digits == 4) {
        fifth = d;
      } else if (d != 0) {
        sticky = true;
      }
    }
  }
  if (i != text.size() || int_digits + frac_digits == 0) return std::nullopt;
  for (int k = frac_digits; k < 4; ++k) fraction *= 10;
  Wide raw = units * kScale + fraction;
  if (fifth > 5 || (fifth == 5 && (sticky || raw % 2 != 0))) raw += 1;
  if (negative) raw = -raw;
  if (raw > INT64_MAX || raw < INT64_MIN) return std::nullopt;
  return Currency(static_cast<int64_t>(raw));
}

std::string Currency::ToString() const {
  Wide value = raw_;
  bool negative = value < 0;
  if (negative) value = -value;
  Wide units = value / kScale;
  int fraction = static_cast<int>(value % kScale);
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(units % 10)));
    units /= 10;
  } while (units > 0);
  std::string text = negative ? "-" + digits : digits;
  if (fraction != 0) {
    std::string decimals = std::to_string(fraction + kScale).substr(1);
    while (decimals.back() == '0') decimals.pop_back();
    text += "." + decimals;
  }
  return text;
}

Currency Currency::operator-() const { return Currency(Narrow(-Wide(raw_))); }
Currency Currency::operator+(Currency other) const { return Currency(Narrow(Wide(raw_) + other.raw_)); }
Currency Currency::operator-(Currency other) const { return Currency(Narrow(Wide(raw_) - other.raw_)); }
Currency Currency::operator*(Currency other) const {
  return Currency(Narrow(DivideHalfEven(Wide(raw_) * other.raw_, kScale)));
}

bool IsNearZero(Currency value, Currency tolerance) { return value.Abs() < tolerance; }

}  // namespace ldg

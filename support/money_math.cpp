#include "support/money_math.hpp"

#include "support/error.hpp"

namespace ldg {
namespace {

constexpr Currency kOne = Currency::FromRaw(Currency::kScale);

Currency Quotient(Currency dividend, Currency divisor) {
  return Currency::FromDouble(dividend.ToDouble() / divisor.ToDouble());
}

template <typename Computation>
Currency ZeroOnFailure(Computation computation) {
  try {
    return computation();
  } catch (const Error&) {
    return Currency();
  }
}

}  // namespace

Currency MulDiv(Currency a, Currency b, Currency c) {
  return ZeroOnFailure([&] { return Quotient(a * b, c); });
}

Currency MulDivByMiddle(Currency a, Currency b, Currency c) {
  return ZeroOnFailure([&] { return Quotient(a * c, b); });
}

Currency DivMul(Currency a, Currency b, Currency c) {
  return ZeroOnFailure([&] { return Currency::FromDouble(a.ToDouble() / b.ToDouble() * c.ToDouble()); });
}

Currency RatePart(Currency a, Currency b) { return a * b + a; }

Currency FromGross(Currency a, Currency b) { return Quotient(a, kOne + b); }

Currency TaxPart(Currency a, Currency b, bool is_net) {
  if (is_net) return a * b;
  // The difference is taken in Double and rounded once.
  return Currency::FromDouble(a.ToDouble() - a.ToDouble() / (kOne + b).ToDouble());
}

}  // namespace ldg

// Arithmetic on amounts that divides. A product of two amounts stays an exact
// Currency; a quotient goes through Double, and the result comes back to
// Currency rounded half to even at the fourth decimal.
#pragma once

#include "support/currency.hpp"

namespace ldg {

// a * b / c. Gives 0 on any failure (division by zero, overflow).
Currency MulDiv(Currency a, Currency b, Currency c);
// a * c / b. Gives 0 on any failure.
Currency MulDivByMiddle(Currency a, Currency b, Currency c);
// a / b as Double, times c as Double. Gives 0 on any failure.
Currency DivMul(Currency a, Currency b, Currency c);

// The amount with a share added: a * b + a.
Currency RatePart(Currency a, Currency b);
// The net of a gross amount at share b: a / (1 + b).
Currency FromGross(Currency a, Currency b);
// The share of an amount: a * b for a net amount, else a less a / (1 + b).
Currency TaxPart(Currency a, Currency b, bool is_net);

}  // namespace ldg

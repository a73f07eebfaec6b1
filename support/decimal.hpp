// Decimal: the run time's scaled decimal number, a signed integer mantissa with
// a power-of-ten scale from 0 to 28 (value = mantissa / 10^scale).
#pragma once

#include <compare>
#include <cstdint>

namespace ldg {

struct Decimal {
  int64_t mantissa = 0;
  uint8_t scale = 0;

  double ToDouble() const;
  bool operator==(const Decimal&) const = default;
};

}  // namespace ldg

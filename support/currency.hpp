// Currency: an exact amount of money, a 64-bit count of ten-thousandths
// (four decimals), from -922337203685477.5808 to 922337203685477.5807.
// Every operation checks overflow and raises run-time error 6. Money never
// passes through binary floating point except where a caller converts on
// purpose with FromDouble/ToDouble, and FromDouble rounds half to even.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ldg {

class Currency {
 public:
  static constexpr int64_t kScale = 10000;

  constexpr Currency() = default;

  static constexpr Currency FromRaw(int64_t ten_thousandths) { return Currency(ten_thousandths); }
  // Whole units, checked.
  static Currency FromUnits(int64_t units);
  // Rounds half to even at the fourth decimal; error 6 outside the range or for NaN.
  static Currency FromDouble(double value);
  // Exact decimal text with "." as decimal sign, optional sign, up to any
  // number of decimals (rounded half to even at the fourth). Nothing else is
  // accepted: no blanks, no thousands signs, no exponent.
  static std::optional<Currency> Parse(std::string_view text);

  static constexpr Currency Max() { return Currency(INT64_MAX); }
  static constexpr Currency Min() { return Currency(INT64_MIN); }

  constexpr int64_t Raw() const { return raw_; }
  double ToDouble() const { return static_cast<double>(raw_) / kScale; }
  constexpr bool IsZero() const { return raw_ == 0; }

  // The run time's plain text form: "." as decimal sign, no thousands signs,
  // no trailing zeros ("12.5", "-0.0001", "3").
  std::string ToString() const;

  Currency operator-() const;
  Currency operator+(Currency other) const;
  Currency operator-(Currency other) const;
  // The exact product rounded half to even to four decimals.
  Currency operator*(Currency other) const;
  Currency& operator+=(Currency other) { return *this = *this + other; }
  Currency& operator-=(Currency other) { return *this = *this - other; }
  Currency Abs() const { return raw_ < 0 ? -*this : *this; }

  constexpr auto operator<=>(const Currency&) const = default;

 private:
  constexpr explicit Currency(int64_t raw) : raw_(raw) {}
  int64_t raw_ = 0;
};

// A Currency counts as zero when its absolute value is below the tolerance
// (0.005 unless another is given).
bool IsNearZero(Currency value, Currency tolerance = Currency::FromRaw(50));

}  // namespace ldg

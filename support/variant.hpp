// Variant: a value that is Empty, Null or one of the run time's types. It is the
// currency of every interface that the object model types as Variant: field
// values, collection keys, optional parameters. The conversions between the
// kinds (CStr, CLng, CCur, ...) live in support/conversions.hpp.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "support/currency.hpp"
#include "support/decimal.hpp"
#include "support/ole_date.hpp"

namespace ldg {

// The run time's type numbers (VarType).
enum class VarType : int {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,
  kLong = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kString = 8,
  kObject = 9,
  kBoolean = 11,
  kDecimal = 14,
  kByte = 17,
  kArray = 8192,
};

// Base of every object a Variant can hold; an Object Variant with no object is
// Nothing.
class Object {
 public:
  virtual ~Object() = default;
};

class Variant;
using VariantArray = std::vector<Variant>;

class Variant {
 public:
  struct NullValue {
    bool operator==(const NullValue&) const = default;
  };
  struct EmptyValue {
    bool operator==(const EmptyValue&) const = default;
  };

  Variant() = default;
  Variant(bool value) : value_(value) {}
  Variant(uint8_t value) : value_(value) {}
  Variant(int16_t value) : value_(value) {}
  Variant(int32_t value) : value_(value) {}
  Variant(float value) : value_(value) {}
  Variant(double value) : value_(value) {}
  Variant(Currency value) : value_(value) {}
  Variant(Decimal value) : value_(value) {}
  Variant(OleDate value) : value_(value) {}
  Variant(std::string value) : value_(std::move(value)) {}
  Variant(std::string_view value) : value_(std::string(value)) {}
  Variant(const char* value) : value_(std::string(value)) {}
  Variant(std::shared_ptr<Object> value) : value_(std::move(value)) {}
  Variant(VariantArray value) : value_(std::make_shared<VariantArray>(std::move(value))) {}

  static Variant Null() { return Variant(NullValue{}); }
  static Variant Nothing() { return Variant(std::shared_ptr<Object>()); }

  VarType Type() const;
  bool IsEmpty() const { return std::holds_alternative<EmptyValue>(value_); }
  bool IsNull() const { return std::holds_alternative<NullValue>(value_); }
  bool IsObject() const { return std::holds_alternative<std::shared_ptr<Object>>(value_); }
  bool IsNothing() const { return IsObject() && !std::get<std::shared_ptr<Object>>(value_); }
  // Byte, Integer, Long, Single, Double, Currency or Decimal.
  bool IsNumber() const;

  // The stored value of the exact kind; run-time error 13 for another kind.
  bool AsBoolean() const;
  uint8_t AsByte() const;
  int16_t AsInteger() const;
  int32_t AsLong() const;
  float AsSingle() const;
  double AsDouble() const;
  Currency AsCurrency() const;
  Decimal AsDecimal() const;
  OleDate AsDate() const;
  const std::string& AsString() const;
  const std::shared_ptr<Object>& AsObject() const;
  const VariantArray& AsArray() const;

  // Same kind and same value (not the run time's "=", which converts).
  bool operator==(const Variant& other) const;

 private:
  using Storage = std::variant<EmptyValue, NullValue, bool, uint8_t, int16_t, int32_t, float, double, Currency,
                               Decimal, OleDate, std::string, std::shared_ptr<Object>,
                               std::shared_ptr<VariantArray>>;
  explicit Variant(NullValue null) : value_(null) {}

  template <typename T>
  const T& Expect() const;

  Storage value_;
};

}  // namespace ldg

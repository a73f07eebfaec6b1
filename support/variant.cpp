#include "support/variant.hpp"

#include <cmath>

#include "support/error.hpp"

namespace ldg {

double Decimal::ToDouble() const { return static_cast<double>(mantissa) / std::pow(10.0, scale); }

VarType Variant::Type() const {
  static constexpr VarType kTypes[] = {
      VarType::kEmpty,  VarType::kNull,     VarType::kBoolean, VarType::kByte,   VarType::kInteger,
      VarType::kLong,   VarType::kSingle,   VarType::kDouble,  VarType::kCurrency, VarType::kDecimal,
      VarType::kDate,   VarType::kString,   VarType::kObject,  VarType::kArray,
  };
  return kTypes[value_.index()];
}

bool Variant::IsNumber() const {
  switch (Type()) {
    case VarType::kByte:
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kSingle:
    case VarType::kDouble:
    case VarType::kCurrency:
    case VarType::kDecimal:
      return true;
    default:
      return false;
  }
}

template <typename T>
const T& Variant::Expect() const {
  if (const T* value = std::get_if<T>(&value_)) return *value;
  RaiseRuntime(kErrTypeMismatch);
}

bool Variant::AsBoolean() const { return Expect<bool>(); }
uint8_t Variant::AsByte() const { return Expect<uint8_t>(); }
int16_t Variant::AsInteger() const { return Expect<int16_t>(); }
int32_t Variant::AsLong() const { return Expect<int32_t>(); }
float Variant::AsSingle() const { return Expect<float>(); }
double Variant::AsDouble() const { return Expect<double>(); }
Currency Variant::AsCurrency() const { return Expect<Currency>(); }
Decimal Variant::AsDecimal() const { return Expect<Decimal>(); }
OleDate Variant::AsDate() const { return Expect<OleDate>(); }
const std::string& Variant::AsString() const { return Expect<std::string>(); }
const std::shared_ptr<Object>& Variant::AsObject() const { return Expect<std::shared_ptr<Object>>(); }
const VariantArray& Variant::AsArray() const {
  const auto& array = Expect<std::shared_ptr<VariantArray>>();
  return *array;
}

bool Variant::operator==(const Variant& other) const {
  if (value_.index() != other.value_.index()) return false;
  if (auto* array = std::get_if<std::shared_ptr<VariantArray>>(&value_)) {
    return **array == *std::get<std::shared_ptr<VariantArray>>(other.value_);
  }
  return value_ == other.value_;
}

}  // namespace ldg

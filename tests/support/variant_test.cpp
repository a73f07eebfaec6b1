#include "support/variant.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

TEST(Variant, DefaultIsEmpty) {
  Variant value;
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_FALSE(value.IsNull());
  EXPECT_EQ(value.Type(), VarType::kEmpty);
}

TEST(Variant, NullIsNotEmpty) {
  Variant value = Variant::Null();
  EXPECT_TRUE(value.IsNull());
  EXPECT_FALSE(value.IsEmpty());
  EXPECT_EQ(value.Type(), VarType::kNull);
  EXPECT_NE(value, Variant());
}

TEST(Variant, NothingIsAnObjectWithoutObject) {
  Variant value = Variant::Nothing();
  EXPECT_TRUE(value.IsObject());
  EXPECT_TRUE(value.IsNothing());
  EXPECT_EQ(value.Type(), VarType::kObject);
  Variant some(std::make_shared<Object>());
  EXPECT_TRUE(some.IsObject());
  EXPECT_FALSE(some.IsNothing());
}

TEST(Variant, KindsFollowTheConstructors) {
  EXPECT_EQ(Variant(true).Type(), VarType::kBoolean);
  EXPECT_EQ(Variant(uint8_t{1}).Type(), VarType::kByte);
  EXPECT_EQ(Variant(int16_t{1}).Type(), VarType::kInteger);
  EXPECT_EQ(Variant(int32_t{1}).Type(), VarType::kLong);
  EXPECT_EQ(Variant(1.0f).Type(), VarType::kSingle);
  EXPECT_EQ(Variant(1.0).Type(), VarType::kDouble);
  EXPECT_EQ(Variant(Currency()).Type(), VarType::kCurrency);
  EXPECT_EQ(Variant(Decimal{}).Type(), VarType::kDecimal);
  EXPECT_EQ(Variant(OleDate(1.0)).Type(), VarType::kDate);
  EXPECT_EQ(Variant("a").Type(), VarType::kString);
  EXPECT_EQ(Variant(std::string_view("a")).Type(), VarType::kString);
  EXPECT_EQ(Variant(VariantArray{Variant(1.0)}).Type(), VarType::kArray);
}

TEST(Variant, TypeNumbersAreTheRunTimes) {
  EXPECT_EQ(static_cast<int>(VarType::kCurrency), 6);
  EXPECT_EQ(static_cast<int>(VarType::kDate), 7);
  EXPECT_EQ(static_cast<int>(VarType::kString), 8);
  EXPECT_EQ(static_cast<int>(VarType::kBoolean), 11);
  EXPECT_EQ(static_cast<int>(VarType::kByte), 17);
}

TEST(Variant, IsNumberForNumericKindsOnly) {
  EXPECT_TRUE(Variant(int32_t{1}).IsNumber());
  EXPECT_TRUE(Variant(Currency()).IsNumber());
  EXPECT_TRUE(Variant(Decimal{}).IsNumber());
  EXPECT_FALSE(Variant(true).IsNumber());
  EXPECT_FALSE(Variant(OleDate(1.0)).IsNumber());
  EXPECT_FALSE(Variant("1").IsNumber());
  EXPECT_FALSE(Variant().IsNumber());
}

TEST(Variant, AccessorsReturnTheStoredValue) {
  EXPECT_EQ(Variant(int32_t{7}).AsLong(), 7);
  EXPECT_EQ(Variant("abc").AsString(), "abc");
  EXPECT_EQ(Variant(OleDate(2.5)).AsDate().Serial(), 2.5);
  EXPECT_EQ(Variant(Currency::FromRaw(5)).AsCurrency().Raw(), 5);
  EXPECT_EQ(Variant(VariantArray{Variant(1.0), Variant("x")}).AsArray().size(), 2u);
}

TEST(Variant, AccessorOfAnotherKindIsTypeMismatch) {
  EXPECT_EQ(ErrorNumberOf([] { Variant(int16_t{7}).AsLong(); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { Variant().AsString(); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { Variant::Null().AsDouble(); }), 13);
}

TEST(Variant, EqualityNeedsTheSameKindAndValue) {
  EXPECT_EQ(Variant(int32_t{1}), Variant(int32_t{1}));
  EXPECT_NE(Variant(int32_t{1}), Variant(int16_t{1}));
  EXPECT_NE(Variant(int32_t{1}), Variant(1.0));
  EXPECT_NE(Variant("1"), Variant(int32_t{1}));
  EXPECT_EQ(Variant("Ä"), Variant("Ä"));
  EXPECT_NE(Variant("Ä"), Variant("ä"));
  EXPECT_EQ(Variant::Null(), Variant::Null());
  EXPECT_EQ(Variant(), Variant());
  EXPECT_EQ(Variant::Nothing(), Variant::Nothing());
}

TEST(Variant, ArraysCompareByContent) {
  Variant a(VariantArray{Variant(1.0), Variant("x")});
  Variant b(VariantArray{Variant(1.0), Variant("x")});
  Variant c(VariantArray{Variant(1.0)});
  EXPECT_EQ(a, b);
  EXPECT_NE(a, c);
}

TEST(Variant, ObjectsCompareByIdentity) {
  auto object = std::make_shared<Object>();
  EXPECT_EQ(Variant(object), Variant(object));
  EXPECT_NE(Variant(object), Variant(std::make_shared<Object>()));
}

}  // namespace
}  // namespace ldg

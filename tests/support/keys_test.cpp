#include "support/keys.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/error.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

TEST(BuildKey, IsIDFollowedByTheNumber) {
  EXPECT_EQ(BuildKey(17), Variant("ID17"));
  EXPECT_EQ(BuildKey(0), Variant("ID0"));
  EXPECT_EQ(BuildKey(-3), Variant("ID-3"));
}

TEST(KeyToID, ReadsTheNumberBehindID) {
  EXPECT_EQ(KeyToID(Variant("ID17")), 17);
  EXPECT_EQ(KeyToID(BuildKey(123456)), 123456);
}

TEST(KeyToID, OtherLettersInFrontAlsoMakeAKey) { EXPECT_EQ(KeyToID(Variant("ab17")), 17); }

// Deliberate: a key that is no key fails as a type mismatch, not with its own text.
TEST(KeyToID, TextStartingWithANumberIsNoKey) {
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("17")); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("1x7")); }), 13);
}

TEST(KeyToID, TextShorterThanTwoCharactersIsNoKey) {
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("I")); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("")); }), 13);
}

TEST(KeyToID, NoKeyErrorCarriesTheTypeMismatchText) {
  try {
    KeyToID(Variant("17"));
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Description(), RuntimeErrorText(13));
    EXPECT_EQ(error.Source(), "");
  }
}

TEST(KeyToID, PrefixAloneIsATypeMismatch) {
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("ID")); }), 13);
}

TEST(KeyToID, NonNumberBehindThePrefixIsATypeMismatch) {
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant("IDx")); }), 13);
}

TEST(KeyToID, NullIsAnInvalidUseOfNull) {
  EXPECT_EQ(ErrorNumberOf([] { KeyToID(Variant::Null()); }), 94);
}

TEST(TryKeyToID, GivesTheIDOfAKey) { EXPECT_EQ(TryKeyToID(Variant("ID17")), std::optional<int32_t>(17)); }

TEST(TryKeyToID, GivesNothingForAPosition) {
  EXPECT_EQ(TryKeyToID(Variant(int32_t{2})), std::nullopt);
  EXPECT_EQ(TryKeyToID(Variant("2")), std::nullopt);
}

TEST(TryKeyToID, GivesNothingForAKeyWhoseNumberDoesNotRead) {
  EXPECT_EQ(TryKeyToID(Variant("IDx")), std::nullopt);
  EXPECT_EQ(TryKeyToID(Variant::Null()), std::nullopt);
}

TEST(ItemAtPosition, CountsFromOne) {
  const std::vector<std::string> items{"a", "b", "c"};
  EXPECT_EQ(ItemAtPosition(items, Variant(int32_t{1})), "a");
  EXPECT_EQ(ItemAtPosition(items, Variant("3")), "c");
}

TEST(ItemAtPosition, OutsideOneToTheCountIsSubscriptOutOfRange) {
  const std::vector<std::string> items{"a", "b"};
  EXPECT_EQ(ErrorNumberOf([&] { ItemAtPosition(items, Variant(int32_t{0})); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { ItemAtPosition(items, Variant(int32_t{3})); }), 9);
  EXPECT_EQ(ErrorNumberOf([] { ItemAtPosition(std::vector<int>{}, Variant(int32_t{1})); }), 9);
}

TEST(ItemAtPosition, APositionThatIsNoNumberIsATypeMismatch) {
  const std::vector<std::string> items{"a"};
  EXPECT_EQ(ErrorNumberOf([&] { ItemAtPosition(items, Variant("first")); }), 13);
}

}  // namespace
}  // namespace ldg

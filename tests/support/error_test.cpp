#include "support/error.hpp"

#include <gtest/gtest.h>

#include <memory>

#include "tests/error_capture.hpp"

namespace ldg {
namespace {

TEST(Dereferenced, GivesTheObjectPointedTo) {
  const auto number = std::make_shared<int>(42);
  EXPECT_EQ(&Dereferenced(number), number.get());
  int plain = 7;
  int* pointer = &plain;
  Dereferenced(pointer) = 8;
  EXPECT_EQ(plain, 8);
}

TEST(Dereferenced, ANullPointerIsObjectVariableNotSet) {
  try {
    Dereferenced(std::unique_ptr<int>());
    FAIL() << "nothing was raised";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 91);
    EXPECT_EQ(error.Description(), "Object variable or With block variable not set");
    EXPECT_EQ(error.Source(), "");
  }
  int* none = nullptr;
  EXPECT_EQ(ErrorNumberOf([&] { Dereferenced(none); }), 91);
}

}  // namespace
}  // namespace ldg

#include "support/string_splitter.hpp"

#include <gtest/gtest.h>

namespace ldg {
namespace {

TEST(StringSplitter, SplitsAtTheSeparator) {
  StringSplitter words("a;b;;c", ";");
  ASSERT_EQ(words.Count(), 4);
  EXPECT_EQ(words.Word(1), "a");
  EXPECT_EQ(words.Word(3), "");
  EXPECT_EQ(words.Word(4), "c");
  EXPECT_EQ(words.Word(5), "");
}

TEST(StringSplitter, TrailingSeparatorGivesAnEmptyLastPart) {
  StringSplitter words("a;", ";");
  EXPECT_EQ(words.Count(), 2);
}

TEST(StringSplitter, EmptyTextHasNoParts) { EXPECT_EQ(StringSplitter("", ";").Count(), 0); }

TEST(StringSplitter, EmptySeparatorKeepsTheTextWhole) {
  StringSplitter words("a;b", "");
  ASSERT_EQ(words.Count(), 1);
  EXPECT_EQ(words.Word(1), "a;b");
}

TEST(StringSplitter, SplitReplacesTheParts) {
  StringSplitter words("a b", " ");
  words.Split("x-y-z", "-");
  EXPECT_EQ(words.Count(), 3);
  EXPECT_EQ(words.Word(2), "y");
}

}  // namespace
}  // namespace ldg

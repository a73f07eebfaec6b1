#include "support/tag_list.hpp"

#include <gtest/gtest.h>

namespace ldg {
namespace {

TEST(TagList, StartsWithItsDefaults) {
  TagList tags;
  EXPECT_EQ(tags.TagSep(), ";");
  EXPECT_EQ(tags.ValSep(), "=");
  EXPECT_FALSE(tags.LastSeparator());
  EXPECT_EQ(tags.Count(), 0);
  EXPECT_EQ(tags.List(), "");
}

TEST(TagList, ReadsTagsWithAndWithoutValues) {
  TagList tags;
  tags.List("A;B=7");
  ASSERT_EQ(tags.Count(), 2);
  EXPECT_EQ(tags.Item(1), "A");
  EXPECT_EQ(tags.Item(2), "B");
  EXPECT_EQ(tags.ItemValue(2), Variant("7"));
  EXPECT_EQ(tags.ValueLong("B"), 7);
}

TEST(TagList, BareTagHasTheValueTrueAndIsWrittenWithIt) {
  TagList tags;
  tags.List("A");
  EXPECT_EQ(tags.Value("A"), Variant(true));
  EXPECT_EQ(tags.List(), "A=Wahr");
}

TEST(TagList, EmptyPartIsATagWithAnEmptyNameWrittenAsNothing) {
  TagList tags;
  tags.List("A;B=7;");
  EXPECT_EQ(tags.Count(), 3);
  EXPECT_EQ(tags.Item(3), "");
  EXPECT_TRUE(tags.Tag(""));
  EXPECT_EQ(tags.List(), "A=Wahr;B=7");
}

TEST(TagList, EmptyPartBetweenTwoSeparators) {
  TagList tags;
  tags.List("A=1;;B=2");
  EXPECT_EQ(tags.Count(), 3);
  EXPECT_EQ(tags.List(), "A=1;B=2");
}

TEST(TagList, TagLetTrueOnAPresentTagMovesItToTheEnd) {
  TagList tags;
  tags.List("A=1;B=2");
  tags.Tag("A", true);
  EXPECT_EQ(tags.Item(1), "B");
  EXPECT_EQ(tags.Item(2), "A");
  EXPECT_EQ(tags.List(), "B=2;A=1");
}

TEST(TagList, TagsCompareIgnoringCaseAndTrimmed) {
  TagList tags;
  tags.List("Abc=5");
  EXPECT_TRUE(tags.Tag("aBC"));
  EXPECT_TRUE(tags.Tag("  ABC "));
  EXPECT_EQ(tags.ValueLong("abc"), 5);
  tags.List(" Ä =1");
  EXPECT_TRUE(tags.Tag("ä"));
  EXPECT_EQ(tags.Item(1), "Ä");
}

TEST(TagList, ValueLetMakesTheTagPresentAndSetsTheValue) {
  TagList tags;
  tags.Value("X", Variant(int32_t{5}));
  EXPECT_TRUE(tags.Tag("X"));
  EXPECT_EQ(tags.ValueLong("X"), 5);
  tags.Value("X", Variant("neu"));
  EXPECT_EQ(tags.Count(), 1);
  EXPECT_EQ(tags.ValueString("X"), "neu");
}

TEST(TagList, ValueLetMovesTheTagToTheEnd) {
  TagList tags;
  tags.List("A=1;B=2");
  tags.Value("a", Variant(int32_t{3}));
  EXPECT_EQ(tags.List(), "B=2;a=3");
}

TEST(TagList, ValueLongOfANumberBeyondLongIsZero) {
  TagList tags;
  tags.List("A=99999999999");
  EXPECT_EQ(tags.ValueLong("A"), 0);
}

TEST(TagList, UnknownTagReadsAsNullWithoutError) {
  TagList tags;
  EXPECT_TRUE(tags.Value("missing").IsNull());
  EXPECT_EQ(tags.ValueString("missing"), "");
  EXPECT_EQ(tags.ValueLong("missing"), 0);
  EXPECT_FALSE(tags.Tag("missing"));
}

TEST(TagList, RemovingWhatIsNotThereDoesNothing) {
  TagList tags;
  tags.List("A");
  tags.Remove("nothere");
  EXPECT_EQ(tags.Count(), 1);
}

TEST(TagList, RemoveDropsTheTagAndItsValue) {
  TagList tags;
  tags.List("A=1;B=2");
  tags.Remove("a");
  EXPECT_FALSE(tags.Tag("A"));
  EXPECT_TRUE(tags.Value("A").IsNull());
  tags.Add("A");
  EXPECT_EQ(tags.List(), "B=2;A");
}

TEST(TagList, AddedTagWithoutValueIsWrittenBare) {
  TagList tags;
  tags.Add("Neu");
  EXPECT_TRUE(tags.Value("Neu").IsNull());
  EXPECT_EQ(tags.List(), "Neu");
}

TEST(TagList, ValueLongOfTextThatIsNoNumberIsZero) {
  TagList tags;
  tags.List("A=abc");
  EXPECT_EQ(tags.ValueLong("A"), 0);
}

TEST(TagList, ValueLongOfABareTagIsTrueAsNumber) {
  TagList tags;
  tags.List("A");
  EXPECT_EQ(tags.ValueLong("A"), -1);
  EXPECT_EQ(tags.ValueString("A"), "Wahr");
}

TEST(TagList, LastSeparatorEndsTheListWithATagSep) {
  TagList tags;
  tags.LastSeparator(true);
  tags.List("A=1");
  EXPECT_EQ(tags.List(), "A=1;");
  tags.Clear();
  EXPECT_EQ(tags.List(), "");
}

TEST(TagList, OnlyTheFirstCharacterOfValSepIsLookedFor) {
  TagList tags;
  tags.ValSep(":=");
  tags.List("A:=1");
  EXPECT_EQ(tags.Value("A"), Variant("=1"));
  EXPECT_EQ(tags.List(), "A:==1");
}

TEST(TagList, ValueIsTheTextBehindTheFirstValSep) {
  TagList tags;
  tags.List("A=1=2");
  EXPECT_EQ(tags.Value("A"), Variant("1=2"));
}

TEST(TagList, OtherSeparators) {
  TagList tags;
  tags.TagSep(", ");
  tags.ValSep(":");
  tags.List("A:1, B");
  EXPECT_EQ(tags.Count(), 2);
  EXPECT_EQ(tags.List(), "A:1, B:Wahr");
}

TEST(TagList, ItemOutsideTheListGivesEmptyAndNull) {
  TagList tags;
  tags.List("A=1");
  EXPECT_EQ(tags.Item(0), "");
  EXPECT_EQ(tags.Item(2), "");
  EXPECT_TRUE(tags.ItemValue(2).IsNull());
}

TEST(TagList, EmptyTextHasNoTags) {
  TagList tags;
  tags.List("A=1");
  tags.List("");
  EXPECT_EQ(tags.Count(), 0);
}

}  // namespace
}  // namespace ldg

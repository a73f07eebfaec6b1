#include "support/case_tables.hpp"

#include <gtest/gtest.h>

#include "support/text.hpp"

namespace ldg {
namespace {

TEST(CaseTables, AsciiShortcutAgreesWithTheTable) {
  for (char32_t c = 0; c < 0x80; ++c) EXPECT_EQ(FoldCase(c), SimpleFold(c)) << static_cast<int>(c);
}

TEST(CaseTables, LatinGreekCyrillicFold) {
  EXPECT_EQ(SimpleFold(U'\u00C0'), U'\u00E0');  // À
  EXPECT_EQ(SimpleFold(U'\u00DE'), U'\u00FE');  // Þ
  EXPECT_EQ(SimpleFold(U'\u0178'), U'\u00FF');  // Ÿ
  EXPECT_EQ(SimpleFold(U'\u017F'), U's');       // long s
  EXPECT_EQ(SimpleFold(U'\u01C5'), U'\u01C6');  // title case Dž
  EXPECT_EQ(SimpleFold(U'\u0391'), U'\u03B1');  // Α
  EXPECT_EQ(SimpleFold(U'\u03A3'), U'\u03C3');  // Σ
  EXPECT_EQ(SimpleFold(U'\u0401'), U'\u0451');  // Ё
  EXPECT_EQ(SimpleFold(U'\u042F'), U'\u044F');  // Я
}

TEST(CaseTables, CodePointsWithOnlyAFullFoldingStay) {
  EXPECT_EQ(SimpleFold(U'\u00DF'), U'\u00DF');  // ß
  EXPECT_EQ(SimpleFold(U'\u0130'), U'\u0130');  // İ
  EXPECT_EQ(SimpleFold(U'\u0149'), U'\u0149');  // ŉ
}

TEST(CaseTables, SimpleFoldingBesideAFullOne) {
  EXPECT_EQ(SimpleFold(U'\u1E9E'), U'\u00DF');  // capital sharp s
  EXPECT_EQ(SimpleFold(U'\u1F88'), U'\u1F80');
}

TEST(CaseTables, FoldingIsNotAlwaysLowerCase) {
  EXPECT_EQ(SimpleFold(U'\u13F8'), U'\u13F0');  // Cherokee folds to its capital
  EXPECT_EQ(SimpleLower(U'\u13F8'), U'\u13F8');
}

TEST(CaseTables, UpperAndLower) {
  EXPECT_EQ(SimpleUpper(U'\u00E4'), U'\u00C4');
  EXPECT_EQ(SimpleUpper(U'\u00DF'), U'\u00DF');
  EXPECT_EQ(SimpleUpper(U'\u00FF'), U'\u0178');
  EXPECT_EQ(SimpleLower(U'\u0130'), U'i');
  EXPECT_EQ(SimpleLower(U'\u00C4'), U'\u00E4');
  EXPECT_EQ(SimpleUpper(U'\U00010428'), U'\U00010400');  // Deseret
}

TEST(CaseTables, FoldingIsIdempotent) {
  for (char32_t c = 0; c < 0x20000; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    ASSERT_EQ(SimpleFold(SimpleFold(c)), SimpleFold(c)) << static_cast<uint32_t>(c);
  }
}

}  // namespace
}  // namespace ldg

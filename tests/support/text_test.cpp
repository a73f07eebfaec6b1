#include "support/text.hpp"

#include <gtest/gtest.h>

#include "support/error.hpp"

namespace ldg {
namespace {

std::string ErrorOf(auto&& action) {
  try {
    action();
  } catch (const Error& error) {
    return std::to_string(error.Number()) + ": " + error.Description();
  }
  return "";
}

TEST(Len, CountsCharactersNotBytes) {
  EXPECT_EQ(Len("Müller"), 6u);
  EXPECT_EQ(std::string("Müller").size(), 7u);
  EXPECT_EQ(Len(""), 0u);
  EXPECT_EQ(Len("Größe €"), 7u);
  EXPECT_EQ(Len("\xF0\x9F\x98\x80"), 1u);
}

TEST(Len, InvalidBytesCountOneEach) {
  EXPECT_EQ(Len("a\xFF"
                "b"),
            3u);
  EXPECT_EQ(Len("\xC3"), 1u);
  EXPECT_EQ(Len("\xC0\xAF"), 2u);      // an overlong form is no character
  EXPECT_EQ(Len("\xED\xA0\x80"), 3u);  // nor is a surrogate
}

TEST(Mid, CutsInCharacters) {
  EXPECT_EQ(Mid("Müller", 2, 3), "üll");
  EXPECT_EQ(Mid("Müller", 3), "ller");
  EXPECT_EQ(Mid("Müller", 7), "");
  EXPECT_EQ(Mid("Müller", 5, 10), "er");
  EXPECT_EQ(Mid("Müller", 1, 0), "");
}

TEST(Mid, StartZeroIsInvalidCall) {
  EXPECT_EQ(ErrorOf([] { Mid("abc", 0); }), "5: Invalid procedure call or argument");
}

TEST(LeftRight, CountInCharacters) {
  EXPECT_EQ(Left("Äpfel", 2), "Äp");
  EXPECT_EQ(Left("Äpfel", 10), "Äpfel");
  EXPECT_EQ(Left("Äpfel", 0), "");
  EXPECT_EQ(Right("Straße", 3), "aße");
  EXPECT_EQ(Right("Straße", 10), "Straße");
  EXPECT_EQ(Right("Straße", 0), "");
}

TEST(Trim, RemovesBlanksOnly) {
  EXPECT_EQ(Trim("  ä b  "), "ä b");
  EXPECT_EQ(LTrim("  ä "), "ä ");
  EXPECT_EQ(RTrim("  ä "), "  ä");
  EXPECT_EQ(Trim("\tä\t"), "\tä\t");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Case, UpperAndLowerWithUmlauts) {
  EXPECT_EQ(UCase("müller straße"), "MÜLLER STRAßE");
  EXPECT_EQ(LCase("ÄÖÜ ABC"), "äöü abc");
  EXPECT_EQ(UCase("αβγ жз"), "ΑΒΓ ЖЗ");
  EXPECT_EQ(LCase("Ĳ Ő Ǆ"), "ĳ ő ǆ");
  EXPECT_EQ(UCase("a\xFF"), "A\xFF");
}

TEST(InStr, PositionInCharacters) {
  EXPECT_EQ(InStr("Müller", "ler"), 4u);
  EXPECT_EQ(InStr("Müller", "x"), 0u);
  EXPECT_EQ(InStr("abcabc", "c", 4), 6u);
  EXPECT_EQ(InStr("abc", "", 2), 2u);
  EXPECT_EQ(InStr("abc", "a", 4), 0u);
  EXPECT_EQ(InStr("", ""), 0u);
}

TEST(InStr, IgnoringCaseFoldsBothTexts) {
  EXPECT_EQ(InStr("MÜLLER", "üll", 1, true), 2u);
  EXPECT_EQ(InStr("MÜLLER", "üll"), 0u);
}

TEST(InStr, StartZeroIsInvalidCall) {
  EXPECT_EQ(ErrorOf([] { InStr("abc", "a", 0); }), "5: Invalid procedure call or argument");
}

TEST(Replace, EveryOccurrenceWithoutRescanning) {
  EXPECT_EQ(Replace("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(Replace("Müller-Müller", "ü", "ue"), "Mueller-Mueller");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Replace("abc", "b", ""), "ac");
}

TEST(Space, Blanks) {
  EXPECT_EQ(Space(3), "   ");
  EXPECT_EQ(Space(0), "");
}

TEST(FoldCase, SimpleFoldingOfCodePoints) {
  EXPECT_EQ(FoldCase(U'Ä'), U'ä');
  EXPECT_EQ(FoldCase(U'ä'), U'ä');
  EXPECT_EQ(FoldCase(U'A'), U'a');
  EXPECT_EQ(FoldCase(U'Σ'), U'σ');
  EXPECT_EQ(FoldCase(U'ς'), U'σ');
  EXPECT_EQ(FoldCase(U'Ж'), U'ж');
  EXPECT_EQ(FoldCase(U'Ő'), U'ő');
  EXPECT_EQ(FoldCase(U'Ǆ'), U'ǆ');
  EXPECT_EQ(FoldCase(U'ẞ'), U'ß');
  EXPECT_EQ(FoldCase(U'ß'), U'ß');
  EXPECT_EQ(FoldCase(U'\u212A'), U'k');  // the Kelvin sign
  EXPECT_EQ(FoldCase(U'1'), U'1');
}

TEST(FoldCase, OfAText) { EXPECT_EQ(FoldCase("Müller ÄÖÜ Straße"), "müller äöü straße"); }

TEST(EqualsNoCase, UmlautsEqualTheirCapitals) {
  EXPECT_TRUE(EqualsNoCase("ä", "Ä"));
  EXPECT_TRUE(EqualsNoCase("MÜLLER", "müller"));
  EXPECT_TRUE(EqualsNoCase("OptionDocIDFlags", "OptiondocIDFlags"));
  EXPECT_FALSE(EqualsNoCase("Müller", "Muller"));
  EXPECT_FALSE(EqualsNoCase("abc", "ab"));
}

TEST(EqualsNoCase, SimpleFoldingOnlySoSharpSIsNotDoubleS) {
  EXPECT_FALSE(EqualsNoCase("Straße", "STRASSE"));
  EXPECT_TRUE(EqualsNoCase("STRAẞE", "straße"));
}

TEST(CompareNoCase, OrdersByFoldedCodePoints) {
  EXPECT_EQ(CompareNoCase("abc", "ABD"), -1);
  EXPECT_EQ(CompareNoCase("B", "a"), 1);
  EXPECT_EQ(CompareNoCase("Ärger", "ärger"), 0);
  EXPECT_EQ(CompareNoCase("ab", "abc"), -1);
  EXPECT_EQ(CompareNoCase("abc", "ab"), 1);
  EXPECT_EQ(CompareNoCase("z", "ä"), -1);
}

TEST(Utf8, DecodeAndAppendRoundTrip) {
  const std::u32string code_points = {U'a', U'ü', U'€', U'\U0001F600'};
  std::string text;
  for (char32_t c : code_points) AppendUtf8(text, c);
  EXPECT_EQ(text, "aü€\xF0\x9F\x98\x80");
  size_t pos = 0;
  for (char32_t c : code_points) EXPECT_EQ(DecodeUtf8(text, pos), c);
  EXPECT_EQ(pos, text.size());
}

TEST(Utf8, ASequenceCutByTheEndOfTheViewIsInvalid) {
  const std::string text = "\xC3\xBC";
  const std::string_view cut(text.data(), 1);
  size_t pos = 0;
  EXPECT_EQ(DecodeUtf8(cut, pos), U'\uFFFD');
  EXPECT_EQ(pos, 1u);
  EXPECT_EQ(Len(cut), 1u);
}

TEST(Utf8, InvalidBytesDecodeAsReplacementOneAtATime) {
  const std::string text = "\xE2\x82x";
  size_t pos = 0;
  EXPECT_EQ(DecodeUtf8(text, pos), U'\uFFFD');
  EXPECT_EQ(pos, 1u);
  EXPECT_EQ(DecodeUtf8(text, pos), U'\uFFFD');
  EXPECT_EQ(DecodeUtf8(text, pos), U'x');
}

}  // namespace
}  // namespace ldg

// Text functions over UTF-8 strings that count in characters (code points),
// as the run time counts in characters: lengths, cuts, padding, case.
// Comparison ignoring case uses Unicode simple case folding ("ä" equals "Ä").
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ldg {

size_t Len(std::string_view text);
// One-based start, as the run time's Mid; a start beyond the text gives "", a
// start of 0 raises 5.
std::string Mid(std::string_view text, size_t start, size_t length = std::string_view::npos);
std::string Left(std::string_view text, size_t length);
std::string Right(std::string_view text, size_t length);
std::string Trim(std::string_view text);  // blanks only, as the run time trims
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);
// Simple (one to one) case mappings: "ß" stays "ß" in UCase.
std::string UCase(std::string_view text);
std::string LCase(std::string_view text);
// One-based position of find in text from start, 0 when absent or when start
// lies beyond the text; an empty find gives start; start 0 raises 5.
// ignore_case compares by simple case folding.
size_t InStr(std::string_view text, std::string_view find, size_t start = 1, bool ignore_case = false);
// Every occurrence, left to right, never searching inside what was put in; an
// empty find leaves the text as it is.
std::string Replace(std::string_view text, std::string_view find, std::string_view with);
std::string Space(size_t count);

// Simple case folding of one code point, and of a whole text.
char32_t FoldCase(char32_t code_point);
std::string FoldCase(std::string_view text);
// <0, 0, >0 comparing the folded texts code point by code point.
int CompareNoCase(std::string_view a, std::string_view b);
bool EqualsNoCase(std::string_view a, std::string_view b);

// Decodes one code point at text[pos] and advances pos; invalid bytes read as
// U+FFFD one byte at a time.
char32_t DecodeUtf8(std::string_view text, size_t& pos);
void AppendUtf8(std::string& out, char32_t code_point);

}  // namespace ldg

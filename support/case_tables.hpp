// Unicode's simple case mappings, one code point to one code point, from the generated tables in
// support/case_tables.cpp (scripts/generate_case_tables.py writes them). A code point without a mapping maps
// to itself; mappings that would need several code points ("ß" to "SS") are not simple and are absent.
#pragma once

namespace ldg {

char32_t SimpleFold(char32_t code_point);
char32_t SimpleUpper(char32_t code_point);
char32_t SimpleLower(char32_t code_point);

}  // namespace ldg

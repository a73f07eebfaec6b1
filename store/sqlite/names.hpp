// Names of tables, fields, indexes, queries and properties compare without
// regard to case. They are identifiers in ASCII; folding ASCII letters is what
// the catalog needs (data text compares through the store's Unicode NOCASE instead).
#pragma once

#include <string>
#include <string_view>

namespace ldg::store::sqlite {

inline char FoldAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

inline bool NamesEqual(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  }
  return true;
}

inline std::string FoldName(std::string_view name) {
  std::string out(name);
  for (char& c : out) c = FoldAscii(c);
  return out;
}

// A name as an SQLite identifier: double-quoted, inner quotes doubled.
inline std::string Quote(std::string_view name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

// A text as an SQLite string literal.
inline std::string QuoteText(std::string_view text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

}  // namespace ldg::store::sqlite

#include "support/text.hpp"

#include <vector>

#include "support/case_tables.hpp"
#include "support/error.hpp"

namespace ldg {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Folding with a shortcut for ASCII, which most names and keys are: the comparisons run as the store's
// collation.
inline char32_t Fold(char32_t code_point) {
  if (code_point < 0x80) return code_point >= 'A' && code_point <= 'Z' ? code_point + 32 : code_point;
  return SimpleFold(code_point);
}

// Decodes one code point; false for a byte that starts no valid sequence (then one byte is consumed).
bool DecodeOne(std::string_view text, size_t& pos, char32_t& code_point) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(pos);
  if (lead < 0x80) {
    code_point = lead;
    ++pos;
    return true;
  }
  int extra = 0;
  char32_t value = 0;
  char32_t minimum = 0;
  if ((lead & 0xE0) == 0xC0) {
    extra = 1, value = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2, value = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3, value = lead & 0x07, minimum = 0x10000;
  } else {
    code_point = kReplacement;
    ++pos;
    return false;
  }
  if (pos + extra >= text.size()) {
    code_point = kReplacement;
    ++pos;
    return false;
  }
  for (int i = 1; i <= extra; ++i) {
    const unsigned char next = byte(pos + i);
    if ((next & 0xC0) != 0x80) {
      code_point = kReplacement;
      ++pos;
      return false;
    }
    value = (value << 6) | (next & 0x3F);
  }
  if (value < minimum || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
    code_point = kReplacement;
    ++pos;
    return false;
  }
  code_point = value;
  pos += extra + 1;
  return true;
}

// Byte offset of the code point with the zero-based index `index`, or text.size() beyond the end.
size_t OffsetOf(std::string_view text, size_t index) {
  size_t pos = 0;
  char32_t ignored;
  for (size_t i = 0; i < index && pos < text.size(); ++i) DecodeOne(text, pos, ignored);
  return pos;
}

// Maps every valid code point through `map`; invalid bytes pass through unchanged.
template <typename Map>
std::string MapCodePoints(std::string_view text, Map map) {
  std::string out;
  out.reserve(text.size());
  size_t pos = 0;
  while (pos < text.size()) {
    const size_t start = pos;
    char32_t code_point;
    if (DecodeOne(text, pos, code_point)) {
      AppendUtf8(out, map(code_point));
    } else {
      out.append(text.substr(start, pos - start));
    }
  }
  return out;
}

std::vector<char32_t> Decode(std::string_view text, bool fold) {
  std::vector<char32_t> out;
  out.reserve(text.size());
  size_t pos = 0;
  while (pos < text.size()) {
    char32_t code_point = DecodeUtf8(text, pos);
    out.push_back(fold ? Fold(code_point) : code_point);
  }
  return out;
}

}  // namespace

char32_t DecodeUtf8(std::string_view text, size_t& pos) {
  char32_t code_point;
  DecodeOne(text, pos, code_point);
  return code_point;
}

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = kReplacement;
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

size_t Len(std::string_view text) {
  size_t count = 0;
  size_t pos = 0;
  char32_t ignored;
  while (pos < text.size()) {
    DecodeOne(text, pos, ignored);
    ++count;
  }
  return count;
}

std::string Mid(std::string_view text, size_t start, size_t length) {
  if (start == 0) RaiseRuntime(kErrInvalidCall);
  const size_t begin = OffsetOf(text, start - 1);
  std::string_view rest = text.substr(begin);
  if (length == std::string_view::npos) return std::string(rest);
  return std::string(rest.substr(0, OffsetOf(rest, length)));
}

std::string Left(std::string_view text, size_t length) {
  return std::string(text.substr(0, OffsetOf(text, length)));
}

std::string Right(std::string_view text, size_t length) {
  const size_t count = Len(text);
  if (length >= count) return std::string(text);
  return std::string(text.substr(OffsetOf(text, count - length)));
}

std::string LTrim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string RTrim(std::string_view text) {
  const size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string Trim(std::string_view text) { return LTrim(RTrim(text)); }

std::string UCase(std::string_view text) { return MapCodePoints(text, SimpleUpper); }
std::string LCase(std::string_view text) { return MapCodePoints(text, SimpleLower); }

size_t InStr(std::string_view text, std::string_view find, size_t start, bool ignore_case) {
  if (start == 0) RaiseRuntime(kErrInvalidCall);
  const std::vector<char32_t> haystack = Decode(text, ignore_case);
  const std::vector<char32_t> needle = Decode(find, ignore_case);
  if (start > haystack.size()) return 0;
  if (needle.empty()) return start;
  for (size_t i = start - 1; i + needle.size() <= haystack.size(); ++i) {
    bool match = true;
    for (size_t k = 0; k < needle.size() && match; ++k) match = haystack[i + k] == needle[k];
    if (match) return i + 1;
  }
  return 0;
}

std::string Replace(std::string_view text, std::string_view find, std::string_view with) {
  if (find.empty()) return std::string(text);
  std::string out;
  size_t pos = 0;
  for (size_t hit = text.find(find); hit != std::string_view::npos; hit = text.find(find, pos)) {
    out.append(text.substr(pos, hit - pos));
    out.append(with);
    pos = hit + find.size();
  }
  out.append(text.substr(pos));
  return out;
}

std::string Space(size_t count) { return std::string(count, ' '); }

char32_t FoldCase(char32_t code_point) { return Fold(code_point); }

std::string FoldCase(std::string_view text) { return MapCodePoints(text, Fold); }

int CompareNoCase(std::string_view a, std::string_view b) {
  size_t pos_a = 0;
  size_t pos_b = 0;
  while (pos_a < a.size() && pos_b < b.size()) {
    const char32_t ca = Fold(DecodeUtf8(a, pos_a));
    const char32_t cb = Fold(DecodeUtf8(b, pos_b));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  if (pos_a < a.size()) return 1;
  if (pos_b < b.size()) return -1;
  return 0;
}

bool EqualsNoCase(std::string_view a, std::string_view b) { return CompareNoCase(a, b) == 0; }

}  // namespace ldg

#include "support/text_helpers.hpp"

#include <algorithm>

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

std::u32string Decode(std::string_view text) {
  std::u32string chars;
  size_t pos = 0;
  while (pos < text.size()) chars.push_back(DecodeUtf8(text, pos));
  return chars;
}

std::string Encode(std::u32string_view chars) {
  std::string text;
  for (char32_t c : chars) AppendUtf8(text, c);
  return text;
}

// The first character of a pad; an empty pad fills with blanks.
char32_t PadChar(std::string_view pad) {
  if (pad.empty()) return U' ';
  size_t pos = 0;
  return DecodeUtf8(pad, pos);
}

}  // namespace

std::string PadRightTo(std::string_view text, int width, std::string_view pad) {
  if (width <= 0) return "";
  std::u32string chars = Decode(text);
  chars.resize(static_cast<size_t>(width), PadChar(pad));
  return Encode(chars);
}

std::string PadLeftTo(std::string_view text, std::optional<int> width, std::string_view pad) {
  int target = width.value_or(static_cast<int>(Len(text)));
  if (target <= 0) return "";
  std::u32string chars = Decode(Trim(text));
  size_t size = static_cast<size_t>(target);
  if (chars.size() >= size) return Encode(std::u32string_view(chars).substr(chars.size() - size));
  return Encode(std::u32string(size - chars.size(), PadChar(pad)) + chars);
}

std::string NumberPadded(int32_t value, int width, std::string_view pad) {
  return PadLeftTo(std::to_string(value), width, pad);
}

std::string MidPadded(std::string_view text, int start, std::optional<int> length, std::string_view pad) {
  std::u32string chars = Decode(text);
  int count = length.value_or(static_cast<int>(chars.size()) - start + 1);
  std::u32string cut;
  for (int position = start; position < start + count; ++position) {
    bool inside = position >= 1 && position <= static_cast<int>(chars.size());
    cut.push_back(inside ? chars[static_cast<size_t>(position - 1)] : PadChar(pad));
  }
  return Encode(cut);
}

std::string CutOut(std::string_view text, int start, std::optional<int> length) {
  if (start < 1 || length.value_or(0) < 0) RaiseRuntime(kErrInvalidCall);
  std::u32string chars = Decode(text);
  size_t from = std::min(static_cast<size_t>(start - 1), chars.size());
  size_t count = length ? static_cast<size_t>(*length) : chars.size();
  chars.erase(from, count);
  return Encode(chars);
}

std::string InsertAt(std::string_view text, std::string_view insertion, int position) {
  std::u32string chars = Decode(text);
  if (position < 1 || position > static_cast<int>(chars.size()) + 1) return std::string(text);
  chars.insert(static_cast<size_t>(position - 1), Decode(insertion));
  return Encode(chars);
}

int ScanChars(std::string_view text, std::string_view set, bool invert, bool from_end) {
  std::u32string chars = Decode(text);
  std::u32string members = Decode(set);
  auto matches = [&](char32_t c) { return (members.find(c) != std::u32string::npos) != invert; };
  int size = static_cast<int>(chars.size());
  for (int step = 0; step < size; ++step) {
    int index = from_end ? size - 1 - step : step;
    if (matches(chars[static_cast<size_t>(index)])) return index + 1;
  }
  return 0;
}

std::string ReplaceAll(std::string_view text, std::string_view search, std::string_view replacement) {
  if (search.empty()) return std::string(text);
  return Replace(text, search, replacement);
}

std::string Repeat(int32_t count, std::string_view text) {
  std::string result;
  for (int32_t i = 0; i < count; ++i) result.append(text);
  return result;
}

std::string FormatMoney(Currency value) { return Format(Variant(value), "#,##0.00"); }

}  // namespace ldg

#include "store/jet/like_pattern.hpp"

#include "store/jet/jet_error.hpp"
#include "support/text.hpp"

namespace ldg::store::jet {
namespace {

std::u32string FoldedCodePoints(std::string_view text) {
  std::u32string out;
  size_t pos = 0;
  while (pos < text.size()) out.push_back(FoldCase(DecodeUtf8(text, pos)));
  return out;
}

}  // namespace

LikePattern::LikePattern(std::string_view pattern) {
  const std::u32string code_points = FoldedCodePoints(pattern);
  for (size_t i = 0; i < code_points.size(); ++i) {
    Element element;
    const char32_t c = code_points[i];
    if (c == U'*') {
      element.kind = Element::Kind::kAny;
    } else if (c == U'?') {
      element.kind = Element::Kind::kOne;
    } else if (c == U'#') {
      element.kind = Element::Kind::kDigit;
    } else if (c == U'[') {
      size_t j = i + 1;
      element.kind = Element::Kind::kClass;
      if (j < code_points.size() && code_points[j] == U'!') {
        element.negated = true;
        ++j;
      }
      bool closed = false;
      for (; j < code_points.size(); ++j) {
        if (code_points[j] == U']') {
          closed = true;
          break;
        }
        char32_t low = code_points[j];
        char32_t high = low;
        if (j + 2 < code_points.size() && code_points[j + 1] == U'-' && code_points[j + 2] != U']') {
          high = code_points[j + 2];
          j += 2;
          if (high < low) RaiseStoreError(kErrSyntax, "Invalid pattern string.");
        }
        element.ranges.emplace_back(low, high);
      }
      if (!closed) RaiseStoreError(kErrSyntax, "Invalid pattern string.");
      i = j;
      // "[]" matches the empty string: it stands for nothing.
      if (element.ranges.empty() && !element.negated) continue;
    } else {
      element.code_point = c;
    }
    elements_.push_back(std::move(element));
  }
}

bool LikePattern::MatchesOne(const Element& element, char32_t code_point) const {
  switch (element.kind) {
    case Element::Kind::kAny:
      return true;
    case Element::Kind::kOne:
      return true;
    case Element::Kind::kDigit:
      return code_point >= U'0' && code_point <= U'9';
    case Element::Kind::kChar:
      return code_point == element.code_point;
    case Element::Kind::kClass:
      for (const auto& [low, high] : element.ranges) {
        if (code_point >= low && code_point <= high) return !element.negated;
      }
      return element.negated;
  }
  return false;
}

bool LikePattern::Matches(std::string_view text) const {
  const std::u32string value = FoldedCodePoints(text);
  // Greedy matching that goes back to the last "*" on a mismatch.
  size_t v = 0, p = 0;
  size_t star = std::u32string::npos, star_v = 0;
  while (v < value.size()) {
    if (p < elements_.size() && elements_[p].kind == Element::Kind::kAny) {
      star = p++;
      star_v = v;
    } else if (p < elements_.size() && MatchesOne(elements_[p], value[v])) {
      ++p;
      ++v;
    } else if (star != std::u32string::npos) {
      p = star + 1;
      v = ++star_v;
    } else {
      return false;
    }
  }
  while (p < elements_.size() && elements_[p].kind == Element::Kind::kAny) ++p;
  return p == elements_.size();
}

}  // namespace ldg::store::jet

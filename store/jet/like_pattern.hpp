// Jet's Like patterns: "*" any run, "?" one character, "#" one digit,
// "[abc]", "[a-z]" and "[!...]" classes; "%" and "_" are plain characters.
// Matching ignores case by Unicode simple case folding. A "[" without its "]"
// makes the pattern invalid (store error 3075, raised when compiled).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ldg::store::jet {

class LikePattern {
 public:
  explicit LikePattern(std::string_view pattern);

  bool Matches(std::string_view text) const;

 private:
  struct Element {
    enum class Kind { kAny, kOne, kDigit, kChar, kClass };
    Kind kind = Kind::kChar;
    char32_t code_point = 0;
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;
  };

  bool MatchesOne(const Element& element, char32_t code_point) const;

  std::vector<Element> elements_;
};

}  // namespace ldg::store::jet

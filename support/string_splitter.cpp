#include "support/string_splitter.hpp"

namespace ldg {

StringSplitter::StringSplitter(std::string_view text, std::string_view separator) { Split(text, separator); }

void StringSplitter::Split(std::string_view text, std::string_view separator) {
  words_.clear();
  if (text.empty()) return;
  if (separator.empty()) {
    words_.emplace_back(text);
    return;
  }
  size_t from = 0;
  for (size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator, from)) {
    words_.emplace_back(text.substr(from, at - from));
    from = at + separator.size();
  }
  words_.emplace_back(text.substr(from));
}

std::string StringSplitter::Word(int32_t index) const {
  if (index < 1 || index > Count()) return "";
  return words_[static_cast<size_t>(index - 1)];
}

}  // namespace ldg

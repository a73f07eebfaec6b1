// StringSplitter: a text split at a separator, its parts handed out by
// position. An empty text has no parts; an empty separator leaves the text as
// its one part; two separators in a row give an empty part between them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ldg {

class StringSplitter {
 public:
  StringSplitter() = default;
  StringSplitter(std::string_view text, std::string_view separator);

  // Splits a new text, replacing the parts held.
  void Split(std::string_view text, std::string_view separator);

  int32_t Count() const { return static_cast<int32_t>(words_.size()); }
  // The part at a one-based position; "" outside 1 to Count.
  std::string Word(int32_t index) const;

 private:
  std::vector<std::string> words_;
};

}  // namespace ldg

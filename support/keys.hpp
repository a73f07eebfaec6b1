// Keys of the in-memory collections: an id is kept under the text "ID"
// followed by its decimal number ("ID17"), and read back from such a key.
// A collection's Item takes a key or a one-based position in one argument.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/variant.hpp"

namespace ldg {

// "ID" followed by the decimal id, unpadded, as a String Variant.
Variant BuildKey(int32_t id);

// The id of a key: the text from its third character on, converted to Long.
// A text of fewer than two characters, or one whose first two characters read
// as a number above 0 ("17"), is no key and raises run-time error 13.
int32_t KeyToID(const Variant& key);

// The id of an argument that reads as a key; nothing when reading it as a key
// fails in any way, which is how a collection tells a position from a key.
std::optional<int32_t> TryKeyToID(const Variant& index_or_key);

// The item at a one-based position, the argument read as Long; run-time error 9
// outside 1 to the number of items.
template <typename T>
const T& ItemAtPosition(const std::vector<T>& items, const Variant& position) {
  const int32_t index = CLng(position);
  if (index < 1 || index > static_cast<int32_t>(items.size())) RaiseRuntime(kErrSubscript);
  return items[static_cast<size_t>(index - 1)];
}

}  // namespace ldg

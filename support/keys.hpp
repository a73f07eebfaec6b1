// Keys of the in-memory collections: an id is kept under the text "ID"
// followed by its decimal number ("ID17"), and read back from such a key.
#pragma once

#include <cstdint>

#include "support/variant.hpp"

namespace ldg {

// "ID" followed by the decimal id, unpadded, as a String Variant.
Variant BuildKey(int32_t id);

// The id of a key: the text from its third character on, converted to Long.
// A text of fewer than two characters, or one whose first two characters read
// as a number above 0 ("17"), is no key and raises run-time error 13.
int32_t KeyToID(const Variant& key);

}  // namespace ldg

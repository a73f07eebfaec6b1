#include "support/keys.hpp"

#include <string>

#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

// Deliberate: the text stands where the raising call wants the number, so the
// caller sees the type mismatch of its conversion, not this text (pinned by a test).
[[noreturn]] void RaiseNotAKey() { RaiseError(Variant("Value is not a key"), ""); }

}  // namespace

Variant BuildKey(int32_t id) { return Variant("ID" + std::to_string(id)); }

int32_t KeyToID(const Variant& key) {
  std::string text = CStr(key);
  if (Len(text) < 2) RaiseNotAKey();
  if (Val(Left(text, 2)) > 0) RaiseNotAKey();
  return CLng(Variant(Mid(text, 3)));
}

std::optional<int32_t> TryKeyToID(const Variant& index_or_key) {
  try {
    return KeyToID(index_or_key);
  } catch (const Error&) {
    return std::nullopt;
  }
}

}  // namespace ldg

// KeyedCollection: the in-memory collection behind the group classes, keeping
// its items in the order they were added, each under a unique text key
// ("ID17"). It fails as the run time's own collection does: a key already in
// use raises 457, removing a key that isn't there raises 5, a position outside
// 1 to Count raises 9. Keys are the ones BuildKey makes and compare exactly.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/error.hpp"

namespace ldg {

inline constexpr int32_t kErrKeyInUse = 457;
inline constexpr const char* kKeyInUseText =
    "This key is already associated with an element of this collection";

template <typename T>
class KeyedCollection {
 public:
  using Entry = std::pair<std::string, T>;

  int32_t Count() const { return static_cast<int32_t>(entries_.size()); }

  void Add(std::string key, T item) {
    if (Find(key) != nullptr) throw Error(kErrKeyInUse, "", kKeyInUseText);
    entries_.emplace_back(std::move(key), std::move(item));
  }

  // The item under the key, null when there is none.
  const T* Find(std::string_view key) const {
    const auto found = Position(key);
    return found == entries_.end() ? nullptr : &found->second;
  }

  void Remove(std::string_view key) {
    const auto found = Position(key);
    if (found == entries_.end()) RaiseRuntime(kErrInvalidCall);
    entries_.erase(found);
  }

  // One-based.
  const T& Item(int32_t position) const {
    if (position < 1 || position > Count()) RaiseRuntime(kErrSubscript);
    return entries_[static_cast<size_t>(position - 1)].second;
  }

  void Clear() { entries_.clear(); }

  auto begin() const { return entries_.begin(); }
  auto end() const { return entries_.end(); }

 private:
  auto Position(std::string_view key) const {
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return entry.first == key; });
  }

  std::vector<Entry> entries_;
};

}  // namespace ldg

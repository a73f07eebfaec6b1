// MasterAccounts: the cached list of every master account of the open chart,
// ordered by Code and keyed by "ID" + the ID. Filled at creation and by Reload.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "support/variant.hpp"

namespace ldg {

class Account;

class MasterAccounts {
 public:
  MasterAccounts();

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  // A key "ID<n>" looks the master up (1228 when missing); anything else is a
  // one-based position (run-time error 9 outside 1 to Count).
  std::shared_ptr<Account> Item(const Variant& index_or_key) const;
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  // Empties the list and reads it anew.
  void Reload();

 private:
  std::vector<std::shared_ptr<Account>> items_;
};

}  // namespace ldg

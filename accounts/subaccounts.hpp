// Subaccounts: the children of one account, bound to its ID (0 selects the two
// class roots, whose ParentID is Null). Every call reads the rows afresh, so
// walking the children by index is quadratic: tree walks ask for Items once.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/variant.hpp"

namespace ldg {

class Account;

class Subaccounts {
 public:
  // Counts by a grouped query: with key 0 it counts Null values and gives 0,
  // though Items gives the two class roots (deliberate).
  int32_t Count() const;
  // Ordered by Position, then Code; the objects belong to the caller.
  std::vector<std::shared_ptr<Account>> Items() const;
  // One-based; null for a bad index, no error.
  std::shared_ptr<Account> Item(int32_t index) const;
  // One-based place of the child with that ID, 0 if none.
  int32_t ItemIndex(int32_t id) const;
  // Update on each child, read afresh.
  void Update();

  // For Account.
  void BindParent(const Variant& id) { key_ = id; }

 private:
  // "(ParentID Is Null) " for key 0, else "(ParentID = <key>) ".
  std::string SelectionClause() const;

  Variant key_;
};

}  // namespace ldg

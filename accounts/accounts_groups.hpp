// AccountsGroups: the account groups of the open database, created when it
// opens and read whole at that moment, in the order of their Name, each under
// the key "ID" + its id. A group is found by its position, its key or its
// SystemCode (any value beginning with "lgr"). Groups are only added, never
// deleted, through this collection.
#pragma once

#include <cstdint>
#include <memory>

#include "accounts/accounts_group.hpp"
#include "accounts/keyed_collection.hpp"
#include "support/variant.hpp"

namespace ldg {

class AccountsGroups : public Object {
 public:
  int32_t Count() const { return groups_.Count(); }
  // A new group with the values given (Empty ones left out), stored and added.
  std::shared_ptr<AccountsGroup> Add(const Variant& name, const Variant& description = Variant(),
                                     const Variant& system_code = Variant());
  // Reads the table into the collection. Existing entries stay, so a second call
  // fails on the first duplicate key (error 457).
  void Refresh();
  // By SystemCode ("lgr..."), by key ("ID17") or by one-based position ("17", 17).
  std::shared_ptr<AccountsGroup> Item(const Variant& index_or_key_or_code) const;

  auto begin() const { return groups_.begin(); }
  auto end() const { return groups_.end(); }

 private:
  std::shared_ptr<AccountsGroup> ItemBySystemCode(const Variant& code) const;

  KeyedCollection<std::shared_ptr<AccountsGroup>> groups_;
};

// A new collection with the groups of the open database read into it: what the
// engine creates when a database opens.
std::shared_ptr<AccountsGroups> ReadAccountsGroups();

}  // namespace ldg

// AccountsGroup: one named, free set of accounts beside the tree of the chart,
// used for reports; one row of table AccountsGroups, its members rows of
// AccountsGroupAssignements. A group may carry a SystemCode, a fixed code by
// which the system or a front end finds it in any database.
//
// The object holds SystemCode, Name and Description and a stored copy of the
// three as last read or written; Update inserts a group whose ID is 0 and
// otherwise writes only the columns that differ from the stored copy. The
// members are read at their first use and held as fresh Account objects.
// Nothing here checks that a SystemCode is unique: a duplicate comes back as
// the store's own error.
#pragma once

#include <cstdint>
#include <memory>

#include "accounts/keyed_collection.hpp"
#include "support/variant.hpp"

namespace ldg {

class Account;

class AccountsGroup : public Object {
 public:
  int32_t ID() const { return id_; }
  Variant SystemCode() const { return system_code_; }
  void SystemCode(const Variant& value) { system_code_ = value; }
  Variant Name() const { return name_; }
  void Name(const Variant& value) { name_ = value; }
  Variant Description() const { return description_; }
  void Description(const Variant& value) { description_ = value; }

  // Inserts when ID is 0, else writes the differences; in one transaction,
  // rolled back on failure with the error raised again.
  void Update();

  // Number of members.
  int32_t Count();
  // Writes the assignment and adds the account to the members.
  void Append(int32_t account_id);
  // Takes the account out of the members and deletes its assignments.
  void Remove(int32_t account_id);
  // The member at a one-based position; error 9 outside 1 to Count.
  std::shared_ptr<Account> Item(int32_t index);

  // For AccountsGroups: the values of a row read from the table, taken as the stored copy.
  void LoadRow(int32_t id, const Variant& system_code, const Variant& description);

 private:
  // Checks nothing: a place for the checks of a new group.
  void Validate() const {}
  void Insert();
  void Write();
  void TakeStoredCopy();
  void LoadMembersIfNeeded();
  void AddMember(int32_t account_id);

  int32_t id_ = 0;
  Variant system_code_;
  Variant name_;
  Variant description_;
  Variant stored_system_code_;
  Variant stored_name_;
  Variant stored_description_;
  bool members_loaded_ = false;
  KeyedCollection<std::shared_ptr<Account>> members_;
};

}  // namespace ldg

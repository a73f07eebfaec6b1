// Subsystems: what the layers above the engine register so that the engine can
// build their part of the object tree at open and call into them, without a
// header of engine/ naming a folder above it. Each layer fills its slots once,
// at program start (see <folder>/<folder>_registration.cpp); an empty slot means
// that layer isn't linked, and the engine leaves that member empty.
#pragma once

#include <functional>
#include <memory>

namespace ldg {

class Journals;
class Accounts;
class MasterAccounts;
class AccountsGroups;

struct Subsystems {
  std::function<std::shared_ptr<ldg::Journals>()> create_journals;
  std::function<std::shared_ptr<ldg::Accounts>()> create_accounts;
  std::function<std::shared_ptr<ldg::MasterAccounts>()> create_master_accounts;
  std::function<std::shared_ptr<ldg::AccountsGroups>()> create_accounts_groups;
  // Drops the engine-wide scratch query and record sets (the dated balance view).
  std::function<void()> release_shared_scratch_objects;
  // Rebuilds every stored Balance from the movements, and ChildrensBalance when asked.
  std::function<void(bool recalc_children_balances)> recalc_balances;
};

// The one registry of the process; filled before main runs, read-only after.
Subsystems& RegisteredSubsystems();

}  // namespace ldg

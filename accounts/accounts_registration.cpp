// What the chart of accounts gives the engine at open and close.
#include <memory>

#include "accounts/account_handles.hpp"
#include "accounts/accounts.hpp"
#include "accounts/accounts_groups.hpp"
#include "accounts/master_accounts.hpp"
#include "accounts/recalc_balances.hpp"
#include "engine/subsystems.hpp"

namespace ldg {
namespace {

const bool kAccountsRegistered = [] {
  Subsystems& subsystems = RegisteredSubsystems();
  subsystems.create_accounts = [] { return std::make_shared<Accounts>(); };
  subsystems.create_master_accounts = [] { return std::make_shared<MasterAccounts>(); };
  subsystems.create_accounts_groups = ReadAccountsGroups;
  subsystems.recalc_balances = RecalcBalances;
  subsystems.release_shared_scratch_objects = [] { SharedAccountHandles().ReleaseBalanceView(); };
  return true;
}();

}  // namespace
}  // namespace ldg

#include "accounts/master_accounts.hpp"

#include "accounts/account.hpp"
#include "engine/current_objects.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"

namespace ldg {

MasterAccounts::MasterAccounts() { Reload(); }

void MasterAccounts::Reload() {
  items_.clear();
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM Accounts WHERE MasterID<>0 and IsMaster = True ORDER BY Code;", store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    auto account = std::make_shared<Account>();
    account->LoadRecord(rows.get());
    items_.push_back(std::move(account));
  }
  rows->Close();
}

std::shared_ptr<Account> MasterAccounts::Item(const Variant& index_or_key) const {
  const std::optional<int32_t> id = TryKeyToID(index_or_key);
  if (!id) return ItemAtPosition(items_, index_or_key);
  const std::string key = CStr(BuildKey(*id));
  for (const std::shared_ptr<Account>& master : items_) {
    if (CStr(BuildKey(master->ID())) == key) return master;
  }
  RaiseMessage(1228);
}

}  // namespace ldg

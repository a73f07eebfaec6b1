#include "accounts/master_accounts.hpp"

#include "accounts/account.hpp"
#include "engine/engine_state.hpp"
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
  auto rows = State().database->OpenRecordset(
      "SELECT * FROM Accounts WHERE MasterID<>0 and IsMaster = True ORDER BY Code;", store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    auto account = std::make_shared<Account>();
    account->LoadRecord(rows.get());
    items_.push_back(std::move(account));
  }
  rows->Close();
}

std::shared_ptr<Account> MasterAccounts::Item(const Variant& index_or_key) const {
  int32_t id = 0;
  bool is_key = true;
  try {
    id = KeyToID(index_or_key);
  } catch (const Error&) {
    is_key = false;
  }
  if (!is_key) {
    const int32_t position = CLng(index_or_key);
    if (position < 1 || position > Count()) RaiseRuntime(kErrSubscript);
    return items_[position - 1];
  }
  const std::string key = CStr(BuildKey(id));
  for (const std::shared_ptr<Account>& master : items_) {
    if (CStr(BuildKey(master->ID())) == key) return master;
  }
  RaiseMessage(1228);
}

}  // namespace ldg
